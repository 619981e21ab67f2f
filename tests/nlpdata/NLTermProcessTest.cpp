// Values, thresholds and invalid layouts of the process, curve and
// distillation term types.
#include <gtest/gtest.h>

#include <cmath>

#include "NLRig.h"
#include "nlpdata/NLCurve.h"
#include "nlpdata/NLDistillation.h"
#include "nlpdata/NLSimDistInterp.h"

TEST(EvaporationTerm, ZeroBelowTheBandHundredAboveLinearInside) {
    TermRig rig;
    // H = 30 + 40, L = 20.
    BuiltTerm t = rig.Build("EVAP", {50.0, 3.0}, {30.0, 40.0, 20.0});
    EXPECT_DOUBLE_EQ(t.Value(), 60.0);
    EXPECT_EQ(TermRig::Jacobian(t.term), (std::vector<double>{-1.2, -1.2, -0.8}));
    t.term->setFrstConstVal(10.0);
    EXPECT_EQ(t.Value(), 0.0);
    EXPECT_EQ(TermRig::Jacobian(t.term), (std::vector<double>{0.0, 0.0, 0.0}));
    t.term->setFrstConstVal(80.0);
    EXPECT_EQ(t.Value(), 100.0);
    EXPECT_EQ(TermRig::Jacobian(t.term), (std::vector<double>{0.0, 0.0, 0.0}));
    // The band's ends meet the constant parts.
    t.term->setFrstConstVal(20.0);
    EXPECT_EQ(t.Value(), 0.0);
    t.term->setFrstConstVal(70.0);
    EXPECT_DOUBLE_EQ(t.Value(), 100.0);
}

TEST(EvaporationTerm, DegenerateBandsStayFinite) {
    TermRig rig;
    BuiltTerm t = rig.Build("EVAP", {20.0, 0.0}, {20.0, 20.0});  // H = L = T
    EXPECT_EQ(t.Value(), 0.0);
    EXPECT_EQ(TermRig::Jacobian(t.term), (std::vector<double>{0.0, 0.0}));
    BuiltTerm none = rig.Build("EVAP", {5.0}, {});
    EXPECT_EQ(none.Value(), 100.0);  // H = L = 0 < T
    // The integer constant does not enter the value.
    BuiltTerm other = rig.Build("EVAP", {50.0, 7.0}, {30.0, 40.0, 20.0});
    EXPECT_DOUBLE_EQ(other.Value(), 60.0);
}

TEST(FloatingTankTerm, BothBranchesAndTheirDerivatives) {
    TermRig rig;
    BuiltTerm low = rig.Build("FLTQB", {1.0}, {1.0, 0.5, 3.0, 4.0, 5.0});  // B <= A
    EXPECT_EQ(low.Value(), -1.0);
    EXPECT_EQ(TermRig::Jacobian(low.term), (std::vector<double>{0, 0, 0, 1, -1}));
    BuiltTerm high = rig.Build("FLTQB", {7.0}, {1.0, 2.0, 3.0, 4.0, 5.0});
    EXPECT_EQ(high.Value(), 2.0 * 3.0 + 1.0 * 4.0 - 1.0 * 3.0 - 2.0 * 5.0);  // not scaled by c1
    EXPECT_EQ(TermRig::Jacobian(high.term), (std::vector<double>{4 - 3, 3 - 5, 2 - 1, 1, -2}));
    BuiltTerm four = rig.Build("FLTQB", {1.0}, {1.0, 2.0, 3.0, 4.0});
    EXPECT_EQ(four.Value(), 0.0);
    EXPECT_EQ(TermRig::Jacobian(four.term), (std::vector<double>{0, 0, 0, 0}));
}

TEST(TPercentTerm, InverseInterpolationOnTheSegmentFound) {
    TermRig rig;
    // Points (T, y): (100, 20), (200, 40), (300, 80).
    auto at = [&](double a, double p) {
        BuiltTerm t = rig.Build("TPERCENT", {a, p, 100.0, 200.0, 300.0}, {20.0, 40.0, 80.0});
        return t.Value();
    };
    EXPECT_DOUBLE_EQ(at(1.0, 30.0), 150.0);
    EXPECT_DOUBLE_EQ(at(1.0, 40.0), 200.0);
    EXPECT_DOUBLE_EQ(at(1.0, 50.0), 225.0);
    EXPECT_DOUBLE_EQ(at(2.0, 50.0), 450.0);
    // The end segments are extended.
    EXPECT_DOUBLE_EQ(at(1.0, 10.0), 50.0);
    EXPECT_DOUBLE_EQ(at(1.0, 90.0), 325.0);
}

TEST(TPercentTerm, ContinuousWhenThePointCrossesTheTarget) {
    TermRig rig;
    BuiltTerm t = rig.Build("TPERCENT", {1.0, 40.0, 100.0, 200.0, 300.0}, {20.0, 40.0, 80.0});
    t.vars[1]->SetVarValue(40.0 - 1e-9);
    const double below = t.Value();
    t.vars[1]->SetVarValue(40.0 + 1e-9);
    EXPECT_NEAR(t.Value(), below, 1e-6);
}

TEST(TPercentTerm, FlatSegmentUsesTheSmallestStep) {
    TermRig rig;
    BuiltTerm t = rig.Build("TPERCENT", {1.0, 20.0002, 100.0, 200.0, 300.0}, {20.0, 20.0005, 80.0});
    EXPECT_NEAR(t.Value(), 100.0 + 0.0002 * 100.0 / 0.001, 1e-9);
    const std::vector<double> d = TermRig::Jacobian(t.term);
    EXPECT_DOUBLE_EQ(d[0], -100.0 / 0.001);
    EXPECT_EQ(d[1], 0.0);
    EXPECT_EQ(d[2], 0.0);
    // A falling segment is taken with the same step, not a negative one.
    BuiltTerm f = rig.Build("TPERCENT", {1.0, 15.0, 100.0, 200.0}, {20.0, 10.0});
    EXPECT_TRUE(std::isfinite(f.Value()));
    EXPECT_NEAR(f.Value(), 100.0 + (15.0 - 20.0) * 100.0 / 0.001, 1e-6);
}

TEST(TPercentTerm, InvalidLayoutsEvaluateToZero) {
    TermRig rig;
    BuiltTerm one = rig.Build("TPERCENT", {1.0, 50.0, 100.0}, {20.0});
    EXPECT_EQ(one.Value(), 0.0);
    BuiltTerm shortC = rig.Build("TPERCENT", {1.0, 50.0, 100.0}, {20.0, 40.0});
    EXPECT_EQ(shortC.Value(), 0.0);
    EXPECT_EQ(TermRig::Jacobian(shortC.term), (std::vector<double>{0.0, 0.0}));
}

TEST(CurveTerm, PassesThroughItsPointsWithoutOvershoot) {
    TermRig rig;
    // Monotone data with a flat stretch: (0,0) (1,1) (2,1.1) (3,5).
    BuiltTerm t = rig.Build("GNREQ", {2.0, 0.0, 0.0, 1.0, 1.0, 2.0, 1.1, 3.0, 5.0}, {0.0});
    const double xs[] = {0.0, 1.0, 2.0, 3.0}, ys[] = {0.0, 1.0, 1.1, 5.0};
    for (int i = 0; i < 4; ++i) EXPECT_NEAR(t.At(xs[i]), 2.0 * ys[i], 1e-12);
    double previous = t.At(0.0);
    for (double x = 0.01; x <= 3.0; x += 0.01) {
        const double v = t.At(x);
        EXPECT_GE(v, previous - 1e-12) << x;
        previous = v;
        if (x > 1.0 && x < 2.0) {
            EXPECT_GE(v, 2.0 * 1.0 - 1e-12) << x;
            EXPECT_LE(v, 2.0 * 1.1 + 1e-12) << x;
        }
    }
}

TEST(CurveTerm, StraightBeyondTheEndsAndIndependentOfPointOrder) {
    TermRig rig;
    BuiltTerm t = rig.Build("GNREQ", {1.0, 0.0, 1.0, 1.0, 3.0, 2.0, 4.0}, {0.0});
    BuiltTerm u = rig.Build("GNREQ", {1.0, 2.0, 4.0, 0.0, 1.0, 1.0, 3.0}, {0.0});
    for (double x : {-2.0, -0.5, 0.3, 1.0, 1.7, 2.5, 6.0}) EXPECT_DOUBLE_EQ(t.At(x), u.At(x)) << x;
    // Slope 2 at the first point, 1 at the last.
    EXPECT_DOUBLE_EQ(t.At(-1.0), -1.0);
    EXPECT_DOUBLE_EQ(t.DerivAt(-5.0), 2.0);
    EXPECT_DOUBLE_EQ(t.At(4.0), 6.0);
    EXPECT_DOUBLE_EQ(t.DerivAt(10.0), 1.0);
}

TEST(CurveTerm, InvalidTablesEvaluateToZero) {
    TermRig rig;
    for (const std::vector<double>& c : std::vector<std::vector<double>>{
             {1.0, 0.0, 1.0},                      // one point
             {1.0, 0.0, 1.0, 1.0},                 // a lone abscissa
             {1.0, 0.0, 1.0, 0.0, 2.0},            // the same abscissa twice
             {1.0, 0.0, 1.0, NAN, 2.0},            // not a number
         }) {
        BuiltTerm t = rig.Build("GNREQ", c, {0.5});
        EXPECT_EQ(t.Value(), 0.0);
        EXPECT_EQ(t.DerivAt(0.5), 0.0);
    }
    BuiltTerm t = rig.Build("GNREQ", {1.0, 0.0, 0.0, 1.0, 1.0}, {0.5});
    t.vars[0]->SetVarValue(NAN);
    EXPECT_EQ(t.Value(), 0.0);
}

TEST(CurveTerm, SetUpAgainWhenPointsChange) {
    TermRig rig;
    BuiltTerm t = rig.Build("GNREQ", {1.0, 0.0, 0.0, 1.0, 1.0}, {2.0});
    EXPECT_DOUBLE_EQ(t.Value(), 2.0);
    // A new point is taken at once.
    t.term->AddNLConstantObject(2.0);
    t.term->AddNLConstantObject(1.0);
    EXPECT_NEAR(t.Value(), 1.0, 1e-12);
    // A value changed in place is taken after RequestArgSetup.
    INLConstant* c = t.term->FrstNLConst();
    for (int i = 0; i < 6; ++i) c = t.term->NextNLConst();
    ASSERT_NE(c, nullptr);
    c->SetValue(3.0);
    dynamic_cast<NonLinearityCurve*>(t.term)->RequestArgSetup();
    EXPECT_NEAR(t.Value(), 3.0, 1e-12);
}

TEST(DiBiFunctions, ExtendedExponential) {
    using F = XNonLinearityDiBiDistFunc;
    EXPECT_EQ(F::ExtendedExp(35.0), std::exp(35.0));
    EXPECT_EQ(F::ExtendedExp(36.0), 1.586013575e15 + 1586013452313430.8);
    EXPECT_EQ(F::ExtendedExp(-1e6), 1e-38);
    EXPECT_EQ(F::ExtendedExp(-35.5), -0.5 * 6.305117315892082e-16 + 6.305116760146989e-16);
    EXPECT_EQ(F::ExtendedExp(-35.0), std::exp(-35.0));
    // Continuous where the lines take over.
    EXPECT_NEAR(F::ExtendedExp(std::nextafter(35.0, 36.0)), std::exp(35.0), 1e-14 * std::exp(35.0));
    EXPECT_NEAR(F::ExtendedExp(std::nextafter(-35.0, -36.0)), std::exp(-35.0),
                1e-14 * std::exp(-35.0));
    EXPECT_EQ(F::ExtendedExpDerivative(40.0), 1.586013575e15);
    EXPECT_EQ(F::ExtendedExpDerivative(-35.5), 6.305117315892082e-16);
    EXPECT_EQ(F::ExtendedExpDerivative(-40.0), 0.0);
}

TEST(DiBiFunctions, BreakPointUsesTheLowerSlope) {
    TermRig rig;
    // a = 3, NBP = 0.5, OFS = 0, ST = 4, SB = 2.
    BuiltTerm t = rig.Build("DIBIFUNC", {3.0, 0.5, 0.0, 4.0, 2.0}, {0.5});
    EXPECT_DOUBLE_EQ(t.Value(), 1.5);
    EXPECT_DOUBLE_EQ(t.DerivAt(0.5), 3.0 / 4.0 * 2.0);
    // z = (x - NBP) * ST above the break point.
    const double u = (0.75 - 0.5) * 4.0;
    EXPECT_DOUBLE_EQ(t.At(0.75), 3.0 * (1.0 - 1.0 / (std::exp(u) + 1.0)));
    // Far out the value tends to 0 and a, finitely.
    EXPECT_NEAR(t.At(1e9), 3.0, 1e-12);
    EXPECT_NEAR(t.At(-1e9), 0.0, 1e-30);
    EXPECT_NEAR(t.DerivAt(1e9), 0.0, 1e-30);
}

TEST(DiBiFunctions, FullFormTakesItsParametersFromVariables) {
    TermRig rig;
    // x = NBP = 0.3, OFS = 0, ST = 5, SB = 1.5.
    BuiltTerm t = rig.Build("DIBIFUNCX", {2.0, 0.3}, {0.3, 0.0, 5.0, 1.5});
    EXPECT_DOUBLE_EQ(t.Value(), 1.0);
    std::vector<double> d = TermRig::Jacobian(t.term);
    EXPECT_DOUBLE_EQ(d[0], 2.0 / 4.0 * 1.5);  // the lower slope at the break point
    EXPECT_DOUBLE_EQ(d[1], 2.0 / 4.0);
    EXPECT_EQ(d[2], 0.0);
    EXPECT_EQ(d[3], 0.0);
    // Above the break point ST counts, SB does not.
    t.vars[0]->SetVarValue(0.5);
    d = TermRig::Jacobian(t.term);
    EXPECT_GT(d[2], 0.0);
    EXPECT_EQ(d[3], 0.0);
}

TEST(SimDistInterp, TemperatureAtThePercentageDistilled) {
    TermRig rig;
    // Boiling points 100, 200, 300; amounts 1, 1, 2. Cuts [50,150] [150,250]
    // [250,350]; a * s = 1.
    auto at = [&](double p) {
        BuiltTerm t = rig.Build("SIMDISTINTRP", {2.0, p, 0.5, 100.0, 200.0, 300.0}, {1.0, 1.0, 2.0});
        return t.Value();
    };
    EXPECT_DOUBLE_EQ(at(25.0), 150.0);
    EXPECT_DOUBLE_EQ(at(50.0), 250.0);
    EXPECT_DOUBLE_EQ(at(75.0), 300.0);
    EXPECT_DOUBLE_EQ(at(12.5), 100.0);
    // Held within 1% and 99% of the total.
    EXPECT_DOUBLE_EQ(at(0.0), 54.0);
    EXPECT_DOUBLE_EQ(at(-20.0), 54.0);
    EXPECT_DOUBLE_EQ(at(100.0), 348.0);
    // Points in any order, with their amounts in the same order.
    BuiltTerm u = rig.Build("SIMDISTINTRP", {1.0, 75.0, 1.0, 300.0, 100.0, 200.0}, {2.0, 1.0, 1.0});
    EXPECT_DOUBLE_EQ(u.Value(), 300.0);
}

TEST(SimDistInterp, FlowFormMultipliesByItsLastArgument) {
    TermRig rig;
    BuiltTerm t =
        rig.Build("SIMDISTINTRPFVT", {2.0, 75.0, 0.5, 100.0, 200.0, 300.0}, {1.0, 1.0, 2.0, 3.0});
    EXPECT_DOUBLE_EQ(t.Value(), 900.0);
    EXPECT_DOUBLE_EQ(TermRig::Jacobian(t.term).back(), 300.0);
}

TEST(SimDistInterp, EmptyComponentsAndBadLayouts) {
    TermRig rig;
    // A component with no amount (or a negative one) is skipped over.
    // Here the curve stands still at 50% from 150 to 250; the lower end is taken.
    BuiltTerm t = rig.Build("SIMDISTINTRP", {1.0, 75.0, 1.0, 100.0, 200.0, 300.0}, {1.0, -1.0, 1.0});
    EXPECT_DOUBLE_EQ(t.Value(), 300.0);
    EXPECT_EQ(TermRig::Jacobian(t.term)[1], 0.0);
    BuiltTerm half = rig.Build("SIMDISTINTRP", {1.0, 50.0, 1.0, 100.0, 200.0, 300.0}, {1.0, 0.0, 1.0});
    EXPECT_DOUBLE_EQ(half.Value(), 150.0);
    const std::vector<std::pair<std::vector<double>, std::vector<double>>> bad = {
        {{1.0, 50.0, 1.0, 100.0, 200.0}, {0.0, 0.0}},          // nothing to distil
        {{1.0, 50.0, 1.0, 100.0}, {1.0}},                      // one point
        {{1.0, 50.0, 1.0, 100.0, 200.0, 300.0}, {1.0, 1.0}},   // counts disagree
        {{1.0, NAN, 1.0, 100.0, 200.0}, {1.0, 1.0}},           // no percentage
        {{1.0, 50.0, 1.0, 100.0, NAN}, {1.0, 1.0}},            // no boiling point
    };
    for (const auto& b : bad) {
        BuiltTerm x = rig.Build("SIMDISTINTRP", b.first, b.second);
        EXPECT_EQ(x.Value(), 0.0);
        for (double d : TermRig::Jacobian(x.term)) EXPECT_EQ(d, 0.0);
    }
}

TEST(SimDistInterp, RememberedSegmentDoesNotChangeResults) {
    TermRig rig;
    const std::vector<double> c = {1.0, 60.0, 1.0, 100.0, 150.0, 200.0, 250.0, 300.0};
    BuiltTerm t = rig.Build("SIMDISTINTRP", c, {1.0, 1.0, 1.0, 1.0, 1.0});
    const std::vector<std::vector<double>> amounts = {
        {10.0, 0.1, 0.1, 0.1, 0.1}, {0.1, 0.1, 0.1, 0.1, 10.0}, {1.0, 2.0, 3.0, 2.0, 1.0},
        {0.1, 0.1, 0.1, 0.1, 10.0}, {10.0, 0.1, 0.1, 0.1, 0.1}};
    for (const auto& a : amounts) {
        for (size_t i = 0; i < a.size(); ++i) t.vars[i]->SetVarValue(a[i]);
        BuiltTerm fresh = rig.Build("SIMDISTINTRP", c, a);
        EXPECT_DOUBLE_EQ(t.Value(), fresh.Value());
    }
}
