// Exact values, constants and guards of the elementary term types: the
// continuations that keep values and derivatives finite, their thresholds,
// and the special cases of products, constants and quotients.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "NLRig.h"
#include "nlpdata/NLPowers.h"
#include "nlpdata/NLProducts.h"

namespace {

const double kMax = std::numeric_limits<double>::max();

void ExpectRelNear(double expected, double actual, double rel) {
    EXPECT_NEAR(actual, expected, rel * std::fabs(expected)) << "expected " << expected;
}

}  // namespace

TEST(ExpXGuard, TangentBeyondTheLimitIsFinite) {
    TermRig rig;
    BuiltTerm t = rig.Build("EXPX", {1.0}, {0.0});
    EXPECT_DOUBLE_EQ(t.At(-3.0), std::exp(-3.0));
    const double xmax = std::log(1.7797162035136925e308);
    // Just beyond the limit the tangent is still representable.
    ExpectRelNear((0.005 + 1.0) * std::exp(xmax), t.At(xmax + 0.005), 1e-14);
    // Continuous at the limit.
    ExpectRelNear(t.At(xmax - 1e-9), t.At(xmax + 1e-9), 1e-8);
    // Far beyond, the tangent passes the largest double and is held there.
    EXPECT_EQ(t.At(800.0), kMax);
    ExpectRelNear(std::exp(xmax), t.DerivAt(800.0), 1e-14);
    EXPECT_TRUE(std::isfinite(t.DerivAt(1e6)));
    // Negative multiplier: the same limit on |c1|, the sign kept.
    BuiltTerm n = rig.Build("EXPX", {-1.0}, {800.0});
    EXPECT_EQ(n.Value(), -kMax);
}

TEST(ExpXGuard, TinyAndZeroMultipliers) {
    TermRig rig;
    // exp(1000) alone overflows; 1e-300 * exp(1000) does not.
    BuiltTerm tiny = rig.Build("EXPX", {1e-300}, {1000.0});
    ExpectRelNear(std::exp(1000.0 + std::log(1e-300)), tiny.Value(), 1e-12);
    ExpectRelNear(std::exp(1000.0 + std::log(1e-300)), tiny.DerivAt(1000.0), 1e-12);
    BuiltTerm zero = rig.Build("EXPX", {0.0}, {1e6});
    EXPECT_EQ(zero.Value(), 0.0);
    EXPECT_EQ(zero.DerivAt(1e6), 0.0);
}

TEST(LnXGuard, TangentBelowTheDefaultEpsilon) {
    TermRig rig;
    BuiltTerm t = rig.Build("LNX", {1.0, 0.0}, {0.0});
    EXPECT_DOUBLE_EQ(t.Value(), std::log(1e-6) - 1.0);
    EXPECT_DOUBLE_EQ(t.DerivAt(0.0), 1e6);
    EXPECT_DOUBLE_EQ(t.At(2.0), std::log(2.0));
    EXPECT_DOUBLE_EQ(t.DerivAt(2.0), 0.5);
    EXPECT_TRUE(std::isfinite(t.At(-1e10)));
    // Continuous at the threshold.
    EXPECT_NEAR(t.At(1e-6 - 1e-15), t.At(1e-6), 1e-8);
}

TEST(LnXGuard, ThirdConstantIsTheEpsilonOnlyWhenThereAreExactlyThree) {
    TermRig rig;
    BuiltTerm three = rig.Build("LNX", {2.0, 0.0, 0.5}, {0.2});
    EXPECT_DOUBLE_EQ(three.Value(), 2.0 * (std::log(0.5) + (0.2 - 0.5) / 0.5));
    EXPECT_DOUBLE_EQ(three.DerivAt(0.2), 2.0 / 0.5);
    EXPECT_DOUBLE_EQ(three.At(1.0), 0.0);
    EXPECT_NEAR(three.At(0.5 - 1e-12), three.At(0.5), 1e-10);
    BuiltTerm four = rig.Build("LNX", {2.0, 0.0, 0.5, 9.0}, {0.2});
    EXPECT_DOUBLE_EQ(four.Value(), 2.0 * std::log(0.2));
    // A non-positive epsilon falls back to 1e-6 instead of a logarithm of <= 0.
    BuiltTerm bad = rig.Build("LNX", {1.0, 0.0, -1.0}, {0.0});
    EXPECT_DOUBLE_EQ(bad.Value(), std::log(1e-6) - 1.0);
}

TEST(PowGuard, TruncatedBaseDecidesTheClamp) {
    // b = 1.5 truncates to 1: ln(1) = 0, no clamp at all.
    EXPECT_EQ(NonLinearityPower::ClampedExponent(1.0, 1.5, 1e6), 1e6);
    // b = 2.5 truncates to 2.
    const double xmax = std::log(kMax / 3.0) / std::log(2.0) - 1e-6;
    EXPECT_DOUBLE_EQ(NonLinearityPower::ClampedExponent(3.0, 2.5, 2000.0),
                     (2000.0 - xmax) / 2000.0 + xmax);
    EXPECT_EQ(NonLinearityPower::ClampedExponent(3.0, 2.5, 100.0), 100.0);
    // 0 < b < 1 truncates to 0: every positive exponent lands just above 1.
    EXPECT_DOUBLE_EQ(NonLinearityPower::ClampedExponent(1.0, 0.5, 3.0), (3.0 + 1e-6) / 3.0 - 1e-6);
    // Non-positive exponents are never clamped.
    EXPECT_EQ(NonLinearityPower::ClampedExponent(1.0, 0.5, -3.0), -3.0);
}

TEST(PowGuard, ValuesAndDerivatives) {
    TermRig rig;
    BuiltTerm t = rig.Build("POW", {1.5, 1.5}, {10.0});
    EXPECT_DOUBLE_EQ(t.Value(), 1.5 * std::pow(1.5, 10.0));
    EXPECT_DOUBLE_EQ(t.DerivAt(10.0), 1.5 * std::pow(1.5, 10.0) * std::log(1.5));
    EXPECT_DOUBLE_EQ(t.At(-3.0), 1.5 * std::pow(1.5, -3.0));
    // The derivative is taken at the clamped exponent.
    BuiltTerm c = rig.Build("POW", {1.0, 2.0}, {2000.0});
    const double x = NonLinearityPower::ClampedExponent(1.0, 2.0, 2000.0);
    EXPECT_TRUE(std::isfinite(c.Value()));
    EXPECT_DOUBLE_EQ(c.DerivAt(2000.0), std::fmin(kMax, std::pow(2.0, x) * std::log(2.0)));
    // A base of 0 or less has no real power: 0 and no derivatives.
    BuiltTerm neg = rig.Build("POW", {1.0, -2.0}, {0.5});
    EXPECT_EQ(neg.Value(), 0.0);
    EXPECT_EQ(neg.DerivAt(0.5), 0.0);
    EXPECT_EQ(rig.Build("POW", {1.0}, {0.5}).Value(), 0.0);
}

TEST(XPowGuard, IntegralExponentsAllowNegativeArguments) {
    TermRig rig;
    BuiltTerm sq = rig.Build("XPOW", {1.5, 2.0}, {-3.0});
    EXPECT_DOUBLE_EQ(sq.Value(), 13.5);
    EXPECT_DOUBLE_EQ(sq.DerivAt(-3.0), -9.0);
    BuiltTerm cube = rig.Build("XPOW", {1.0, 3.0}, {-2.0});
    EXPECT_DOUBLE_EQ(cube.Value(), -8.0);
    EXPECT_DOUBLE_EQ(cube.DerivAt(-2.0), 12.0);
    // Within 1e-6 of an integer counts as integral; value and derivative
    // both use the integer.
    BuiltTerm near = rig.Build("XPOW", {1.0, 2.0000000001}, {-3.0});
    EXPECT_DOUBLE_EQ(near.Value(), 9.0);
    EXPECT_DOUBLE_EQ(near.DerivAt(-3.0), -6.0);
    // A negative integral power at 0 is held finite.
    BuiltTerm inv = rig.Build("XPOW", {1.0, -1.0}, {0.0});
    EXPECT_EQ(inv.Value(), kMax);
    EXPECT_TRUE(std::isfinite(inv.DerivAt(0.0)));
}

TEST(XPowGuard, TangentBelowTheFloorForOtherExponents) {
    TermRig rig;
    BuiltTerm t = rig.Build("XPOW", {2.0, 0.5}, {-3.0});
    const double tangent = 2.0 * (std::sqrt(1e-6) + 0.5 * std::pow(1e-6, -0.5) * (-3.0 - 1e-6));
    EXPECT_DOUBLE_EQ(t.Value(), tangent);
    EXPECT_DOUBLE_EQ(t.DerivAt(-3.0), 2.0 * 0.5 * 1e3);
    EXPECT_NEAR(t.At(1e-6 - 1e-13), t.At(1e-6), 1e-9);
    EXPECT_DOUBLE_EQ(t.At(4.0), 4.0);
    EXPECT_DOUBLE_EQ(t.DerivAt(4.0), 2.0 * 0.5 / 2.0);
    // The third constant is an offset only when there are exactly three.
    EXPECT_DOUBLE_EQ(rig.Build("XPOW", {1.0, 2.5, 2.0}, {1.0}).Value(), std::pow(3.0, 2.5));
    EXPECT_DOUBLE_EQ(rig.Build("XPOW", {1.0, 2.5, 2.0, 7.0}, {1.0}).Value(), 1.0);
}

TEST(EIGuard, LinearContinuationsAndTheirSlopes) {
    TermRig rig;
    BuiltTerm t = rig.Build("EI", {3.0}, {0.0005});
    EXPECT_DOUBLE_EQ(t.Value(), ((-0.0005) * 1001.0005001667084 - 6.33) * 3.0);
    EXPECT_DOUBLE_EQ(t.DerivAt(0.0005), 3.0 * 1001.0005001667084);
    EXPECT_DOUBLE_EQ(t.At(-100.0), ((-100.001) * 1001.0005001667084 - 6.33) * 3.0);
    BuiltTerm big = rig.Build("EI", {1e-290}, {800.0});
    EXPECT_DOUBLE_EQ(big.Value(), (100.0 * 1.4489029353357207e301 + 1.4509787360525608e301) * 1e-290);
    EXPECT_DOUBLE_EQ(big.DerivAt(800.0), 1e-290 * 1.4489029353357207e301);
    // With a unit multiplier the line passes the largest double: held there.
    BuiltTerm huge = rig.Build("EI", {1.0}, {1e10});
    EXPECT_EQ(huge.Value(), kMax);
}

TEST(EIGuard, SeriesMatchReferenceValues) {
    TermRig rig;
    BuiltTerm t = rig.Build("EI", {1.0}, {1.0});
    const struct {
        double x, ei;
    } ref[] = {{0.5, 0.454219904863173579920523812663},
               {1.0, 1.89511781635593675546652093433},
               {10.0, 2492.228976241877759138440144},
               {30.0, 368973209407.274197064006328911},
               {40.0, 6039718263611241.57835923141851},
               {50.0, 105856368971316909630.615414332},
               {200.0, 3.63123523315935685239671004385e+84}};
    for (const auto& r : ref) ExpectRelNear(r.ei, t.At(r.x), 1e-13);
    // The two series agree where they hand over, and the series meets the
    // upper line at 700.
    const double cut = 36.04365338911715;
    ExpectRelNear(128625505067379.494142124403919, t.At(std::nextafter(cut, 0.0)), 1e-13);
    ExpectRelNear(128625505067379.494142124403919, t.At(cut), 1e-13);
    ExpectRelNear(1.4509787360525608e301, t.At(700.0), 1e-12);
    ExpectRelNear(1.4509787360525608e301, t.At(std::nextafter(700.0, 800.0)), 1e-12);
    EXPECT_DOUBLE_EQ(t.DerivAt(5.0), std::exp(5.0) / 5.0);
    // The rounded -6.33 leaves a small step at 0.001 (Ei(0.001) = -6.3295...).
    EXPECT_NEAR(t.At(0.001), -6.32953936402503819672, 1e-12);
    EXPECT_NEAR(t.At(0.001 - 1e-12), -6.33, 1e-8);
}

TEST(ProductTerm, ZeroFactorGivesTheOtherFactorsToTheZeroVariableOnly) {
    TermRig rig;
    BuiltTerm t = rig.Build("XPROD", {2.0}, {0.0, 5.0});
    EXPECT_EQ(t.Value(), 0.0);
    EXPECT_EQ(TermRig::Jacobian(t.term), (std::vector<double>{10.0, 0.0}));
    BuiltTerm two = rig.Build("XPROD", {2.0}, {0.0, 0.0, 5.0});
    EXPECT_EQ(TermRig::Jacobian(two.term), (std::vector<double>{0.0, 0.0, 0.0}));
    BuiltTerm sq = rig.Build("XPROD", {2.0}, {0.0});
    sq.term->AddVariableObject(sq.vars[0]);  // x * x at 0
    EXPECT_EQ(TermRig::Jacobian(sq.term), (std::vector<double>{0.0}));
}

TEST(ProductTerm, MultiplierFollowsSetFrstConstValAndStandsAloneWithoutArguments) {
    TermRig rig;
    BuiltTerm t = rig.Build("XPROD", {2.0}, {3.0, 4.0});
    t.term->setFrstConstVal(-1.0);
    EXPECT_EQ(t.Value(), -12.0);
    EXPECT_EQ(TermRig::Jacobian(t.term), (std::vector<double>{-4.0, -3.0}));
    EXPECT_EQ(rig.Build("XPROD", {2.5}, {}).Value(), 2.5);
}

TEST(ProductTerm, SearchWalkFindsEntriesStoredInAnotherOrder) {
    TermRig rig;
    LPVariable* x = rig.Var("X", 2.0);
    LPVariable* y = rig.Var("Y", 3.0);
    TermPtr t = TermRig::Make("XPROD");
    t->AddNLConstantObject(1.0);
    t->AddVariableObject(x);
    t->AddVariableObject(y);
    LPNonZero nzY, nzX;
    nzY.SetVariablePtr(y);
    nzX.SetVariablePtr(x);
    t->StoreNonZeroReference(&nzY);
    t->StoreNonZeroReference(&nzX);
    auto* prod = dynamic_cast<NonLinearityProduct*>(t.get());
    ASSERT_NE(prod, nullptr);
    EXPECT_TRUE(prod->GetNonZeroWalkInStep());
    prod->SetNonZeroWalkInStep(false);
    t->TermJacobian();
    EXPECT_EQ(nzX.GetPartialDeriv(), 3.0);
    EXPECT_EQ(nzY.GetPartialDeriv(), 2.0);
    // Walking in step trusts the order, so these entries get swapped values.
    prod->SetNonZeroWalkInStep(true);
    nzX.SetPartialDeriv(0.0);
    nzY.SetPartialDeriv(0.0);
    t->TermJacobian();
    EXPECT_EQ(nzY.GetPartialDeriv(), 3.0);
}

TEST(ProductTerm, SquarePathFollowsTheValueAndEndsWhenArgumentsAreAdded) {
    TermRig rig;
    BuiltTerm t = rig.Build("XPROD", {0.75}, {3.0});
    t.term->AddVariableObject(t.vars[0]);
    EXPECT_EQ(t.Value(), 6.75);
    EXPECT_EQ(TermRig::Jacobian(t.term), std::vector<double>{4.5});
    EXPECT_EQ(t.DerivAt(-2.0), -3.0);  // the cached path reads the current value
    LPVariable* y = rig.Var("Y", 5.0);
    t.term->AddVariableObject(y);
    LPNonZero nzY;
    nzY.SetVariablePtr(y);
    t.term->StoreNonZeroReference(&nzY);
    // 0.75 * x * x * y: d/dx = 1.5 * x * y, d/dy = 0.75 * x * x.
    EXPECT_EQ(t.DerivAt(-2.0), -15.0);
    EXPECT_EQ(nzY.GetPartialDeriv(), 3.0);
}

TEST(ConstantTerms, SumAndProductOfConstants) {
    TermRig rig;
    EXPECT_EQ(rig.Build("CONST", {}, {}).Value(), 0.0);
    EXPECT_EQ(rig.Build("CONSTPROD", {}, {}).Value(), 1.0);
    BuiltTerm sum = rig.Build("CONST", {2.0, 3.0, 4.0}, {7.0});
    EXPECT_EQ(sum.Value(), 9.0);
    BuiltTerm prod = rig.Build("CONSTPROD", {2.0, 3.0, 4.0}, {7.0});
    EXPECT_EQ(prod.Value(), 24.0);
    // Even with an argument they add no derivatives.
    EXPECT_EQ(TermRig::Jacobian(sum.term), std::vector<double>{0.0});
    EXPECT_EQ(TermRig::Jacobian(prod.term), std::vector<double>{0.0});
}

TEST(DivisionTerm, QuotientAndItsDerivatives) {
    TermRig rig;
    // n = 1 denominator (4 y), m = 2 numerators, k = 2: N = 2 (z1 + 3 z2).
    BuiltTerm t = rig.Build("DIV", {1, 2, 2.0, 4.0, 1.0, 3.0}, {2.0, 1.0, 1.0});
    EXPECT_DOUBLE_EQ(t.Value(), 1.0);
    EXPECT_EQ(TermRig::Jacobian(t.term), (std::vector<double>{-0.5, 0.25, 0.75}));
    // Counts are read as integers.
    BuiltTerm trunc = rig.Build("DIV", {1.7, 2.2, 2.0, 4.0, 1.0, 3.0}, {2.0, 1.0, 1.0});
    EXPECT_DOUBLE_EQ(trunc.Value(), 1.0);
}

TEST(DivisionTerm, ZeroDenominatorGivesZeroAndLeavesTheEntriesAlone) {
    TermRig rig;
    BuiltTerm t = rig.Build("DIV", {1, 1, 1.0, 2.0, 1.0}, {0.0, 3.0});
    EXPECT_EQ(t.Value(), 0.0);
    for (ILPNonZero* nz = t.term->FrstNZ(); nz; nz = t.term->NextNZ()) nz->SetPartialDeriv(7.0);
    t.term->TermJacobian();
    for (ILPNonZero* nz = t.term->FrstNZ(); nz; nz = t.term->NextNZ())
        EXPECT_EQ(nz->GetPartialDeriv(), 7.0);
}

TEST(DivisionTerm, InvalidLayoutsEvaluateToZeroWithoutDerivatives) {
    TermRig rig;
    const std::vector<std::vector<double>> constants = {
        {1, 1, 1.0, 2.0},             // one coefficient short
        {3, 0, 1.0, 2.0, 1.0},        // more denominators than arguments
        {-1, 3, 1.0, 2.0, 1.0},       // negative count
        {NAN, 1, 1.0, 2.0, 1.0},      // not a number
        {1e300, 1, 1.0, 2.0, 1.0},    // absurd count
        {1, 5, 1.0, 2.0, 1.0},        // numerator count disagrees
        {1, 1},                       // no multiplier
    };
    for (const auto& c : constants) {
        BuiltTerm t = rig.Build("DIV", c, {2.0, 3.0});
        EXPECT_EQ(t.Value(), 0.0) << c[0];
        EXPECT_EQ(TermRig::Jacobian(t.term), (std::vector<double>{0.0, 0.0})) << c[0];
    }
}
