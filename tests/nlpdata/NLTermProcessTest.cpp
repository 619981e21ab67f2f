// Values, thresholds and invalid layouts of the process, curve and
// distillation term types.
#include <gtest/gtest.h>

#include <cmath>

#include "NLRig.h"
#include "nlpdata/NLCurve.h"
#include "nlpdata/NLDistillation.h"
#include "nlpdata/NLSimDistInterp.h"

TEST(ProcessTerms, ValuesAndDerivativesAtChosenPoints) {
    const std::vector<double> tp = {100.0, 200.0, 300.0}, ty = {20.0, 40.0, 80.0};
    auto tpercent = [&](double a, double p, double want) {
        return Probe{"TPERCENT", {a, p, tp[0], tp[1], tp[2]}, ty, want, {}, kUlps};
    };
    // Boiling points 100, 200, 300; amounts 1, 1, 2; cuts [50,150] [150,250] [250,350]; a * s = 1.
    auto simdist = [](double p, double want) {
        return Probe{"SIMDISTINTRP", {2.0, p, 0.5, 100.0, 200.0, 300.0}, {1.0, 1.0, 2.0}, want, {}, kUlps};
    };
    const double z = 0.0;
    ExpectProbes({
        // Evaporation: H = 30 + 40, L = 20; zero below the band, 100 above,
        // linear inside; the integer constant does not enter the value.
        {"EVAP", {50.0, 3.0}, {30.0, 40.0, 20.0}, 60.0, {-1.2, -1.2, -0.8}, kUlps},
        {"EVAP", {10.0, 3.0}, {30.0, 40.0, 20.0}, 0.0, {z, z, z}, kExact},
        {"EVAP", {80.0, 3.0}, {30.0, 40.0, 20.0}, 100.0, {z, z, z}, kExact},
        {"EVAP", {20.0, 3.0}, {30.0, 40.0, 20.0}, 0.0, {}, kExact},
        {"EVAP", {70.0, 3.0}, {30.0, 40.0, 20.0}, 100.0, {}, kUlps},
        {"EVAP", {50.0, 7.0}, {30.0, 40.0, 20.0}, 60.0, {}, kUlps},
        {"EVAP", {20.0, 0.0}, {20.0, 20.0}, 0.0, {z, z}, kExact},  // H = L = T
        {"EVAP", {5.0}, {}, 100.0, {}, kExact},                    // H = L = 0 < T
        // Floating tank: B <= A, B > A (not scaled by c1), too few arguments.
        {"FLTQB", {1.0}, {1.0, 0.5, 3.0, 4.0, 5.0}, -1.0, {0, 0, 0, 1, -1}, kExact},
        {"FLTQB", {7.0}, {1.0, 2.0, 3.0, 4.0, 5.0}, 2.0 * 3.0 + 4.0 - 3.0 - 2.0 * 5.0, {1, -2, 1, 1, -2}, kExact},
        {"FLTQB", {1.0}, {1.0, 2.0, 3.0, 4.0}, 0.0, {0, 0, 0, 0}, kExact},
        // T at a percentage: inverse interpolation on the segment found, the
        // end segments extended; invalid layouts give zero.
        tpercent(1.0, 30.0, 150.0), tpercent(1.0, 40.0, 200.0), tpercent(1.0, 50.0, 225.0),
        tpercent(2.0, 50.0, 450.0), tpercent(1.0, 10.0, 50.0), tpercent(1.0, 90.0, 325.0),
        {"TPERCENT", {1.0, 50.0, 100.0}, {20.0}, 0.0, {}, kExact},
        {"TPERCENT", {1.0, 50.0, 100.0}, {20.0, 40.0}, 0.0, {z, z}, kExact},
        // Curves: invalid tables give zero.
        {"GNREQ", {1.0, 0.0, 1.0}, {0.5}, 0.0, {z}, kExact},                 // one point
        {"GNREQ", {1.0, 0.0, 1.0, 1.0}, {0.5}, 0.0, {z}, kExact},            // a lone abscissa
        {"GNREQ", {1.0, 0.0, 1.0, 0.0, 2.0}, {0.5}, 0.0, {z}, kExact},       // the same abscissa twice
        {"GNREQ", {1.0, 0.0, 1.0, NAN, 2.0}, {0.5}, 0.0, {z}, kExact},       // not a number
        // DiBi: a = 3, NBP = 0.5, OFS = 0, ST = 4, SB = 2; the lower slope at
        // the break point, z = (x - NBP) * ST above it.
        {"DIBIFUNC", {3.0, 0.5, 0.0, 4.0, 2.0}, {0.5}, 1.5, {3.0 / 4.0 * 2.0}, kUlps},
        {"DIBIFUNC", {3.0, 0.5, 0.0, 4.0, 2.0}, {0.75}, 3.0 * (1.0 - 1.0 / (std::exp(1.0) + 1.0)), {}, kUlps},
        // Full form: x = NBP = 0.3, OFS = 0, ST = 5, SB = 1.5, from variables.
        {"DIBIFUNCX", {2.0, 0.3}, {0.3, 0.0, 5.0, 1.5}, 1.0, {2.0 / 4.0 * 1.5, 2.0 / 4.0, z, z}, kUlps},
        // Distillation curve: held within 1% and 99% of the total; points in
        // any order with their amounts in the same order.
        simdist(25.0, 150.0), simdist(50.0, 250.0), simdist(75.0, 300.0), simdist(12.5, 100.0),
        simdist(0.0, 54.0), simdist(-20.0, 54.0), simdist(100.0, 348.0),
        {"SIMDISTINTRP", {1.0, 75.0, 1.0, 300.0, 100.0, 200.0}, {2.0, 1.0, 1.0}, 300.0, {}, kUlps},
        // A component with no amount is skipped; where the curve stands still
        // the lower end is taken.
        {"SIMDISTINTRP", {1.0, 50.0, 1.0, 100.0, 200.0, 300.0}, {1.0, 0.0, 1.0}, 150.0, {}, kUlps},
        {"SIMDISTINTRP", {1.0, 50.0, 1.0, 100.0, 200.0}, {0.0, 0.0}, 0.0, {z, z}, kExact},  // nothing to distil
        {"SIMDISTINTRP", {1.0, 50.0, 1.0, 100.0}, {1.0}, 0.0, {z}, kExact},               // one point
        {"SIMDISTINTRP", {1.0, 50.0, 1.0, 100.0, 200.0, 300.0}, {1.0, 1.0}, 0.0, {z, z}, kExact},
        {"SIMDISTINTRP", {1.0, NAN, 1.0, 100.0, 200.0}, {1.0, 1.0}, 0.0, {z, z}, kExact},
        {"SIMDISTINTRP", {1.0, 50.0, 1.0, 100.0, NAN}, {1.0, 1.0}, 0.0, {z, z}, kExact},
    });
}

TEST(ProcessTerms, CachedConstantsSegmentsAndThresholds) {
    TermRig rig;
    BuiltTerm evap = rig.Build("EVAP", {50.0, 3.0}, {30.0, 40.0, 20.0});
    evap.term->setFrstConstVal(10.0);
    EXPECT_EQ(evap.Value(), 0.0);
    // TPERCENT is continuous where the point crosses the target.
    BuiltTerm t = rig.Build("TPERCENT", {1.0, 40.0, 100.0, 200.0, 300.0}, {20.0, 40.0, 80.0});
    t.vars[1]->SetVarValue(40.0 - 1e-9);
    const double below = t.Value();
    t.vars[1]->SetVarValue(40.0 + 1e-9);
    EXPECT_NEAR(t.Value(), below, 1e-6);
    // A flat (or falling) segment is taken with the smallest positive step.
    BuiltTerm flat = rig.Build("TPERCENT", {1.0, 20.0002, 100.0, 200.0, 300.0}, {20.0, 20.0005, 80.0});
    EXPECT_NEAR(flat.Value(), 100.0 + 0.0002 * 100.0 / 0.001, 1e-9);
    const std::vector<double> d = TermRig::Jacobian(flat.term);
    EXPECT_DOUBLE_EQ(d[0], -100.0 / 0.001);
    EXPECT_EQ(d[1], 0.0);
    EXPECT_EQ(d[2], 0.0);
    BuiltTerm f = rig.Build("TPERCENT", {1.0, 15.0, 100.0, 200.0}, {20.0, 10.0});
    EXPECT_NEAR(f.Value(), 100.0 + (15.0 - 20.0) * 100.0 / 0.001, 1e-6);
    // DiBi: far out the value tends to 0 and a, finitely; above the break
    // point ST counts, SB does not.
    BuiltTerm dibi = rig.Build("DIBIFUNC", {3.0, 0.5, 0.0, 4.0, 2.0}, {0.5});
    EXPECT_NEAR(dibi.At(1e9), 3.0, 1e-12);
    EXPECT_NEAR(dibi.At(-1e9), 0.0, 1e-30);
    EXPECT_NEAR(dibi.DerivAt(1e9), 0.0, 1e-30);
    BuiltTerm full = rig.Build("DIBIFUNCX", {2.0, 0.3}, {0.5, 0.0, 5.0, 1.5});
    const std::vector<double> fd = TermRig::Jacobian(full.term);
    EXPECT_GT(fd[2], 0.0);
    EXPECT_EQ(fd[3], 0.0);
    // The flow form multiplies by its last argument.
    BuiltTerm fvt = rig.Build("SIMDISTINTRPFVT", {2.0, 75.0, 0.5, 100.0, 200.0, 300.0}, {1.0, 1.0, 2.0, 3.0});
    EXPECT_DOUBLE_EQ(fvt.Value(), 900.0);
    // A negative amount is skipped over and gets no derivative.
    BuiltTerm neg = rig.Build("SIMDISTINTRP", {1.0, 75.0, 1.0, 100.0, 200.0, 300.0}, {1.0, -1.0, 1.0});
    EXPECT_DOUBLE_EQ(neg.Value(), 300.0);
    EXPECT_EQ(TermRig::Jacobian(neg.term)[1], 0.0);
    // The remembered segment does not change results.
    const std::vector<double> c = {1.0, 60.0, 1.0, 100.0, 150.0, 200.0, 250.0, 300.0};
    BuiltTerm sd = rig.Build("SIMDISTINTRP", c, {1.0, 1.0, 1.0, 1.0, 1.0});
    for (const std::vector<double>& a : std::vector<std::vector<double>>{{10.0, 0.1, 0.1, 0.1, 0.1},
                                                                         {0.1, 0.1, 0.1, 0.1, 10.0},
                                                                         {1.0, 2.0, 3.0, 2.0, 1.0},
                                                                         {0.1, 0.1, 0.1, 0.1, 10.0},
                                                                         {10.0, 0.1, 0.1, 0.1, 0.1}}) {
        for (size_t i = 0; i < a.size(); ++i) sd.vars[i]->SetVarValue(a[i]);
        EXPECT_DOUBLE_EQ(sd.Value(), rig.Build("SIMDISTINTRP", c, a).Value());
    }
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
    BuiltTerm nan = rig.Build("GNREQ", {1.0, 0.0, 0.0, 1.0, 1.0}, {0.5});
    EXPECT_EQ(nan.At(NAN), 0.0);
}

TEST(CurveTerm, StraightBeyondTheEndsIndependentOfPointOrderAndSetUpAgain) {
    TermRig rig;
    BuiltTerm t = rig.Build("GNREQ", {1.0, 0.0, 1.0, 1.0, 3.0, 2.0, 4.0}, {0.0});
    BuiltTerm u = rig.Build("GNREQ", {1.0, 2.0, 4.0, 0.0, 1.0, 1.0, 3.0}, {0.0});
    for (double x : {-2.0, -0.5, 0.3, 1.0, 1.7, 2.5, 6.0}) EXPECT_DOUBLE_EQ(t.At(x), u.At(x)) << x;
    // Slope 2 at the first point, 1 at the last.
    EXPECT_DOUBLE_EQ(t.At(-1.0), -1.0);
    EXPECT_DOUBLE_EQ(t.At(4.0), 6.0);
    EXPECT_DOUBLE_EQ(t.DerivAt(10.0), 1.0);

    BuiltTerm s = rig.Build("GNREQ", {1.0, 0.0, 0.0, 1.0, 1.0}, {2.0});
    EXPECT_DOUBLE_EQ(s.Value(), 2.0);
    // A new point is taken at once.
    s.term->AddNLConstantObject(2.0);
    s.term->AddNLConstantObject(1.0);
    EXPECT_NEAR(s.Value(), 1.0, 1e-12);
    // A value changed in place is taken after RequestArgSetup.
    INLConstant* c = s.term->FrstNLConst();
    for (int i = 0; i < 6; ++i) c = s.term->NextNLConst();
    ASSERT_NE(c, nullptr);
    c->SetValue(3.0);
    dynamic_cast<NonLinearityCurve*>(s.term)->RequestArgSetup();
    EXPECT_NEAR(s.Value(), 3.0, 1e-12);
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
    EXPECT_NEAR(F::ExtendedExp(std::nextafter(-35.0, -36.0)), std::exp(-35.0), 1e-14 * std::exp(-35.0));
    EXPECT_EQ(F::ExtendedExpDerivative(40.0), 1.586013575e15);
    EXPECT_EQ(F::ExtendedExpDerivative(-35.5), 6.305117315892082e-16);
    EXPECT_EQ(F::ExtendedExpDerivative(-40.0), 0.0);
}
