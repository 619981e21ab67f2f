// Derivative correctness of every term type: TermJacobian() must agree with
// central finite differences of EvaluateTerm() at many random points away
// from the types' kinks, with the term's entries made as the pool makes them.
#include <gtest/gtest.h>

#include <functional>
#include <random>
#include <string>
#include <vector>

#include "NLRig.h"

namespace {

struct DerivCase {
    std::string label;
    const char* keyword;
    std::vector<double> constants;
    // Occurrence -> distinct variable; the variables are V0, V1, ...
    std::vector<int> args;
    // Draws the distinct variables' values.
    std::function<void(std::mt19937&, std::vector<double>&)> draw;
};

// Independent uniform values in [lo, hi].
std::function<void(std::mt19937&, std::vector<double>&)> Uniform(double lo, double hi) {
    return [lo, hi](std::mt19937& g, std::vector<double>& x) {
        std::uniform_real_distribution<double> u(lo, hi);
        for (double& v : x) v = u(g);
    };
}

// Per-variable ranges.
std::function<void(std::mt19937&, std::vector<double>&)> Ranges(
    std::vector<std::pair<double, double>> r) {
    return [r](std::mt19937& g, std::vector<double>& x) {
        for (size_t i = 0; i < x.size(); ++i) {
            std::uniform_real_distribution<double> u(r[i].first, r[i].second);
            x[i] = u(g);
        }
    };
}

// Increasing values: a start in [lo, lo + step], then steps in [step, 3 step].
std::function<void(std::mt19937&, std::vector<double>&)> Increasing(double lo, double step) {
    return [lo, step](std::mt19937& g, std::vector<double>& x) {
        std::uniform_real_distribution<double> u(0.0, 1.0);
        double v = lo + step * u(g);
        for (double& xi : x) {
            xi = v;
            v += step * (1.0 + 2.0 * u(g));
        }
    };
}

void PrintTo(const DerivCase& c, std::ostream* os) { *os << c.label; }

int Distinct(const std::vector<int>& args) {
    int n = 0;
    for (int a : args) n = std::max(n, a + 1);
    return n;
}

// A case whose lines and branches another case covers with the same kind of
// data is left out (the plain product, exponential, logarithm and quotient
// are in their cases with repeated or shared arguments).
std::vector<DerivCase> Cases() {
    const auto any = Uniform(-3.0, 3.0);
    return {
        {"ProductSquare", "XPROD", {0.75}, {0, 0}, any},
        {"ProductCubeAndOthers", "XPROD", {1.25}, {1, 0, 2, 0, 0}, Uniform(-2.0, 2.0)},
        {"Product2OfFour", "XPROD2", {3.0}, {0, 1, 2, 3}, any},
        {"ExpWithARepeat", "EXPX", {-0.8, 0.25}, {0, 1, 0}, Uniform(-2.0, 2.0)},
        {"ExpNegativeOnly", "EXPX", {2.0}, {0}, Uniform(-20.0, 0.0)},
        {"LogWithARepeat", "LNX", {-1.0, 0.1}, {1, 0, 1}, Uniform(0.1, 4.0)},
        {"LogTangentBelowEps", "LNX", {1.5, 0.0, 1.0}, {0, 1}, Uniform(-5.0, 0.45)},
        {"PowBaseTwoAndAHalf", "POW", {1.5, 2.5}, {0, 1}, Uniform(-3.0, 3.0)},
        {"PowBaseBelowTwo", "POW", {-0.5, 1.7}, {0, 0, 1}, Uniform(-3.0, 3.0)},
        {"XPowFractional", "XPOW", {1.5, 2.5, 0.5}, {0, 1}, Uniform(0.05, 3.0)},
        {"XPowNegativeExponent", "XPOW", {2.0, -1.5}, {0}, Uniform(0.2, 5.0)},
        {"XPowIntegralBelowFloor", "XPOW", {0.5, 3.0}, {0, 1}, Uniform(-3.0, -0.01)},
        {"XPowSquareBelowFloor", "XPOW", {1.0, 2.0}, {0, 0}, Uniform(-3.0, -0.01)},
        {"XPowTangentBelowFloor", "XPOW", {1.0, 0.5}, {0}, Uniform(-3.0, -0.01)},
        {"EiSeries", "EI", {0.7, 0.2}, {0, 1}, Uniform(0.01, 15.0)},
        {"EiAsymptotic", "EI", {1.0e-20, 0.0}, {0, 1}, Uniform(20.0, 300.0)},
        {"EiBelowThreshold", "EI", {2.0}, {0}, Uniform(-5.0, 0.0009)},
        {"EiAboveThreshold", "EI", {1.0e-290}, {0}, Uniform(701.0, 900.0)},
        {"DivisionSharedVariable", "DIV", {2, 2, -2.0, 1.0, 0.5, 1.5, 4.0}, {0, 1, 0, 2},
         Uniform(1.0, 3.0)},
        {"Evaporation", "EVAP", {50.0, 3.0}, {0, 1, 2},
         Ranges({{30.0, 40.0}, {30.0, 40.0}, {10.0, 45.0}})},
        {"FloatingTankRepeatedArgument", "FLTQB", {1.0}, {0, 1, 2, 0, 3}, any},
        {"TPercent", "TPERCENT", {1.2, 50.0, 100.0, 150.0, 200.0, 250.0}, {0, 1, 2, 3},
         Increasing(0.0, 15.0)},
        {"TPercentExtrapolated", "TPERCENT", {-0.5, 95.0, 100.0, 150.0, 200.0}, {0, 1, 2},
         Increasing(5.0, 10.0)},
        {"Curve", "GNREQ", {2.0, 0.0, 1.0, 1.0, 3.0, 2.0, 4.0, 4.0, 4.5, 5.0, 7.0}, {0, 1},
         Uniform(-0.8, 3.3)},
        {"CurveUnsortedPoints", "GNREQ", {-1.0, 3.0, 0.0, 1.0, 2.0, 0.0, 1.0, 2.0, 5.0}, {0},
         Uniform(-1.0, 4.0)},
        {"DiBi", "DIBIFUNC", {3.0, 0.5, 0.2, 4.0, 2.0}, {0}, Uniform(-2.0, 3.0)},
        {"DiBiOnTheLinearContinuation", "DIBIFUNC", {1.0, 0.0, 0.0, 100.0, 100.0}, {0},
         Uniform(-0.6, 0.6)},
        {"DiBiFull", "DIBIFUNCX", {2.0, 0.3}, {0, 1, 2, 3},
         Ranges({{-1.0, 2.0}, {-1.0, 1.0}, {0.5, 3.0}, {0.5, 3.0}})},
        {"DiBiFullSharedSlope", "DIBIFUNCX", {-1.5, 0.0}, {0, 1, 2, 2},
         Ranges({{-2.0, 2.0}, {-1.0, 1.0}, {0.5, 3.0}})},
        {"SimDist", "SIMDISTINTRP", {1.1, 40.0, 1.8, 300.0, 100.0, 200.0, 400.0, 250.0},
         {0, 1, 2, 3, 4}, Uniform(0.5, 5.0)},
        {"SimDistLowLimit", "SIMDISTINTRP", {2.0, 0.0, 1.0, 100.0, 200.0, 300.0}, {0, 1, 2},
         Uniform(0.5, 5.0)},
        {"SimDistFVTFlowIsAnAmount", "SIMDISTINTRPFVT", {1.0, 50.0, 2.0, 150.0, 250.0, 350.0},
         {0, 1, 2, 1}, Uniform(0.5, 5.0)},
    };
}

class TermDerivatives : public ::testing::TestWithParam<DerivCase> {};

}  // namespace

TEST_P(TermDerivatives, MatchCentralDifferencesAtRandomPoints) {
    const DerivCase& c = GetParam();
    TermRig rig;
    TermPtr t = TermRig::Make(c.keyword);
    ASSERT_NE(t->GetType(), 7) << c.keyword;
    std::vector<LPVariable*> vars, args;
    for (int i = 0; i < Distinct(c.args); ++i) vars.push_back(rig.Var("V" + std::to_string(i), 1.0));
    for (int a : c.args) args.push_back(vars[static_cast<size_t>(a)]);
    rig.Fill(t.get(), c.constants, args);

    std::mt19937 gen(12345);
    std::vector<double> x(vars.size());
    int tested = 0;
    const int points = 200;
    for (int p = 0; p < points && !HasFailure(); ++p) {
        c.draw(gen, x);
        for (size_t i = 0; i < vars.size(); ++i) vars[i]->SetVarValue(x[i]);
        if (TermRig::CheckDerivativesIfSmooth(t.get(), c.label + " point " + std::to_string(p)))
            ++tested;
    }
    // Most points must be smooth: a term whose value jumps everywhere is wrong too.
    EXPECT_GE(tested, points * 3 / 4) << c.label;
}

INSTANTIATE_TEST_SUITE_P(AllTypes, TermDerivatives, ::testing::ValuesIn(Cases()),
                         [](const ::testing::TestParamInfo<DerivCase>& info) {
                             return info.param.label;
                         });

// A term with fewer entries than distinct arguments writes only the ones it
// holds.
TEST(TermDerivativesAccumulate, ArgumentWithoutAnEntryReceivesNothing) {
    TermRig rig;
    TermPtr t = TermRig::Make("XPROD");
    LPVariable* x = rig.Var("X", 2.0);
    LPVariable* y = rig.Var("Y", 3.0);
    t->AddNLConstantObject(1.0);
    t->AddVariableObject(x);
    LPNonZero nz;
    nz.SetVariablePtr(x);
    t->StoreNonZeroReference(&nz);
    t->AddVariableObject(y);
    t->TermJacobian();
    EXPECT_DOUBLE_EQ(nz.GetPartialDeriv(), 3.0);
}
