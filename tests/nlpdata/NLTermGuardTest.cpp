// Exact values, constants and guards of the elementary term types: the
// continuations that keep values and derivatives finite, their thresholds,
// and the special cases of products, constants and quotients.
#include <gtest/gtest.h>

#include <cmath>

#include "NLRig.h"
#include "nlpdata/NLPowers.h"
#include "nlpdata/NLProducts.h"

namespace {
const double kMax = std::numeric_limits<double>::max();
}  // namespace

TEST(ElementaryTerms, ValuesAndDerivativesAtChosenPoints) {
    const double xmaxExp = std::log(1.7797162035136925e308);
    const double eTiny = std::exp(1000.0 + std::log(1e-300));
    const double lnEps = std::log(1e-6) - 1.0;
    const double p10 = 1.5 * std::pow(1.5, 10.0);
    const double clamped = NonLinearityPower::ClampedExponent(1.0, 2.0, 2000.0);
    const double tangent = 2.0 * (std::sqrt(1e-6) + 0.5 * std::pow(1e-6, -0.5) * (-3.0 - 1e-6));
    const double eiSlope = 1001.0005001667084, eiHigh = 1.4489029353357207e301, ei700 = 1.4509787360525608e301;
    ExpectProbes({
        // Exponential: a tangent beyond the limit, held at the largest double.
        {"EXPX", {1.0}, {-3.0}, std::exp(-3.0), {}, kUlps},
        {"EXPX", {1.0}, {xmaxExp + 0.005}, 1.005 * std::exp(xmaxExp), {}, 1e-14},
        {"EXPX", {1.0}, {800.0}, kMax, {}, kExact},
        {"EXPX", {1.0}, {800.0}, kSkip, {std::exp(xmaxExp)}, 1e-14},
        {"EXPX", {-1.0}, {800.0}, -kMax, {}, kExact},  // the limit is on |c1|
        {"EXPX", {1e-300}, {1000.0}, eTiny, {eTiny}, 1e-12},  // exp(1000) alone overflows
        {"EXPX", {0.0}, {1e6}, 0.0, {0.0}, kExact},
        // Logarithm: a tangent below epsilon, which is the third constant only
        // when there are exactly three and it is positive.
        {"LNX", {1.0, 0.0}, {0.0}, lnEps, {1e6}, kUlps},
        {"LNX", {1.0, 0.0}, {2.0}, std::log(2.0), {0.5}, kUlps},
        {"LNX", {2.0, 0.0, 0.5}, {0.2}, 2.0 * (std::log(0.5) + (0.2 - 0.5) / 0.5), {2.0 / 0.5}, kUlps},
        {"LNX", {2.0, 0.0, 0.5}, {1.0}, 0.0, {}, kUlps},
        {"LNX", {2.0, 0.0, 0.5, 9.0}, {0.2}, 2.0 * std::log(0.2), {}, kUlps},
        {"LNX", {1.0, 0.0, -1.0}, {0.0}, lnEps, {}, kUlps},
        // Power of a base: derivatives at the clamped exponent; no real power
        // of a base <= 0.
        {"POW", {1.5, 1.5}, {10.0}, p10, {p10 * std::log(1.5)}, kUlps},
        {"POW", {1.5, 1.5}, {-3.0}, 1.5 * std::pow(1.5, -3.0), {}, kUlps},
        {"POW", {1.0, 2.0}, {2000.0}, kSkip, {std::fmin(kMax, std::pow(2.0, clamped) * std::log(2.0))}, kUlps},
        {"POW", {1.0, -2.0}, {0.5}, 0.0, {0.0}, kExact},
        {"POW", {1.0}, {0.5}, 0.0, {}, kExact},
        // Power of the argument: integral exponents (within 1e-6) allow
        // negative arguments; others take a tangent below the floor.
        {"XPOW", {1.5, 2.0}, {-3.0}, 13.5, {-9.0}, kUlps},
        {"XPOW", {1.0, 3.0}, {-2.0}, -8.0, {12.0}, kUlps},
        {"XPOW", {1.0, 2.0000000001}, {-3.0}, 9.0, {-6.0}, kUlps},
        {"XPOW", {1.0, -1.0}, {0.0}, kMax, {}, kExact},
        {"XPOW", {2.0, 0.5}, {-3.0}, tangent, {2.0 * 0.5 * 1e3}, kUlps},
        {"XPOW", {2.0, 0.5}, {4.0}, 4.0, {2.0 * 0.5 / 2.0}, kUlps},
        {"XPOW", {1.0, 2.5, 2.0}, {1.0}, std::pow(3.0, 2.5), {}, kUlps},  // offset only with three
        {"XPOW", {1.0, 2.5, 2.0, 7.0}, {1.0}, 1.0, {}, kUlps},
        // Exponential integral: lines below 0.001 and above 700.
        {"EI", {3.0}, {0.0005}, ((-0.0005) * eiSlope - 6.33) * 3.0, {3.0 * eiSlope}, kUlps},
        {"EI", {3.0}, {-100.0}, ((-100.001) * eiSlope - 6.33) * 3.0, {}, kUlps},
        {"EI", {1e-290}, {800.0}, (100.0 * eiHigh + ei700) * 1e-290, {1e-290 * eiHigh}, kUlps},
        {"EI", {1.0}, {1e10}, kMax, {}, kExact},
        {"EI", {1.0}, {1.0}, 1.89511781635593675546652093433, {}, 1e-13},
        {"EI", {1.0}, {30.0}, 368973209407.274197064006328911, {}, 1e-13},
        {"EI", {1.0}, {200.0}, 3.63123523315935685239671004385e+84, {}, 1e-13},
        // The two series agree where they hand over; the series meets the line at 700.
        {"EI", {1.0}, {std::nextafter(36.04365338911715, 0.0)}, 128625505067379.494142124403919, {}, 1e-13},
        {"EI", {1.0}, {36.04365338911715}, 128625505067379.494142124403919, {}, 1e-13},
        {"EI", {1.0}, {700.0}, ei700, {}, 1e-12},
        {"EI", {1.0}, {std::nextafter(700.0, 800.0)}, ei700, {}, 1e-12},
        // Products: a zero factor gives the others to its variable only.
        {"XPROD", {2.0}, {0.0, 5.0}, 0.0, {10.0, 0.0}, kExact},
        {"XPROD", {2.0}, {0.0, 0.0, 5.0}, 0.0, {0.0, 0.0, 0.0}, kExact},
        {"XPROD", {2.5}, {}, 2.5, {}, kExact},
        // Constants add no derivatives, even with an argument.
        {"CONST", {}, {}, 0.0, {}, kExact},
        {"CONSTPROD", {}, {}, 1.0, {}, kExact},
        {"CONST", {2.0, 3.0, 4.0}, {7.0}, 9.0, {0.0}, kExact},
        {"CONSTPROD", {2.0, 3.0, 4.0}, {7.0}, 24.0, {0.0}, kExact},
        // Quotient: n = 1 denominator (4 y), m = 2 numerators, N = 2 (z1 + 3 z2);
        // counts are read as integers.
        {"DIV", {1, 2, 2.0, 4.0, 1.0, 3.0}, {2.0, 1.0, 1.0}, 1.0, {-0.5, 0.25, 0.75}, kUlps},
        {"DIV", {1.7, 2.2, 2.0, 4.0, 1.0, 3.0}, {2.0, 1.0, 1.0}, 1.0, {}, kUlps},
        // Invalid quotient layouts evaluate to zero without derivatives.
        {"DIV", {1, 1, 1.0, 2.0}, {2.0, 3.0}, 0.0, {0.0, 0.0}, kExact},           // one coefficient short
        {"DIV", {3, 0, 1.0, 2.0, 1.0}, {2.0, 3.0}, 0.0, {0.0, 0.0}, kExact},      // too many denominators
        {"DIV", {-1, 3, 1.0, 2.0, 1.0}, {2.0, 3.0}, 0.0, {0.0, 0.0}, kExact},     // negative count
        {"DIV", {NAN, 1, 1.0, 2.0, 1.0}, {2.0, 3.0}, 0.0, {0.0, 0.0}, kExact},    // not a number
        {"DIV", {1e300, 1, 1.0, 2.0, 1.0}, {2.0, 3.0}, 0.0, {0.0, 0.0}, kExact},  // absurd count
        {"DIV", {1, 5, 1.0, 2.0, 1.0}, {2.0, 3.0}, 0.0, {0.0, 0.0}, kExact},      // numerators disagree
        {"DIV", {1, 1}, {2.0, 3.0}, 0.0, {0.0, 0.0}, kExact},                     // no multiplier
    });
}

TEST(ElementaryTerms, ContinuityAtThresholdsAndFiniteDerivatives) {
    TermRig rig;
    const double xmax = std::log(1.7797162035136925e308);
    BuiltTerm e = rig.Build("EXPX", {1.0}, {0.0});
    EXPECT_NEAR(e.At(xmax + 1e-9), e.At(xmax - 1e-9), 1e-8 * e.At(xmax - 1e-9));
    EXPECT_TRUE(std::isfinite(e.DerivAt(1e6)));
    BuiltTerm l = rig.Build("LNX", {1.0, 0.0}, {0.0});
    EXPECT_TRUE(std::isfinite(l.At(-1e10)));
    EXPECT_NEAR(l.At(1e-6 - 1e-15), l.At(1e-6), 1e-8);
    BuiltTerm l3 = rig.Build("LNX", {2.0, 0.0, 0.5}, {0.2});
    EXPECT_NEAR(l3.At(0.5 - 1e-12), l3.At(0.5), 1e-10);
    EXPECT_TRUE(std::isfinite(rig.Build("POW", {1.0, 2.0}, {2000.0}).Value()));
    EXPECT_TRUE(std::isfinite(rig.Build("XPOW", {1.0, -1.0}, {0.0}).DerivAt(0.0)));
    BuiltTerm xp = rig.Build("XPOW", {2.0, 0.5}, {0.0});
    EXPECT_NEAR(xp.At(1e-6 - 1e-13), xp.At(1e-6), 1e-9);
    // The rounded -6.33 leaves a small step at 0.001 (Ei(0.001) = -6.3295...).
    BuiltTerm ei = rig.Build("EI", {1.0}, {0.0});
    EXPECT_NEAR(ei.At(0.001), -6.32953936402503819672, 1e-12);
    EXPECT_NEAR(ei.At(0.001 - 1e-12), -6.33, 1e-8);
}

TEST(ElementaryTerms, PowerClampFollowsTheTruncatedBase) {
    // b = 1.5 truncates to 1: ln(1) = 0, no clamp at all.
    EXPECT_EQ(NonLinearityPower::ClampedExponent(1.0, 1.5, 1e6), 1e6);
    // b = 2.5 truncates to 2.
    const double xmax = std::log(kMax / 3.0) / std::log(2.0) - 1e-6;
    EXPECT_DOUBLE_EQ(NonLinearityPower::ClampedExponent(3.0, 2.5, 2000.0), (2000.0 - xmax) / 2000.0 + xmax);
    EXPECT_EQ(NonLinearityPower::ClampedExponent(3.0, 2.5, 100.0), 100.0);
    // 0 < b < 1 truncates to 0: every positive exponent lands just above 1.
    EXPECT_DOUBLE_EQ(NonLinearityPower::ClampedExponent(1.0, 0.5, 3.0), (3.0 + 1e-6) / 3.0 - 1e-6);
    // Non-positive exponents are never clamped.
    EXPECT_EQ(NonLinearityPower::ClampedExponent(1.0, 0.5, -3.0), -3.0);
}

TEST(ProductTerm, SquareMultiplierAndSearchPaths) {
    TermRig rig;
    BuiltTerm sq0 = rig.Build("XPROD", {2.0}, {0.0});
    sq0.term->AddVariableObject(sq0.vars[0]);  // x * x at 0
    EXPECT_EQ(TermRig::Jacobian(sq0.term), (std::vector<double>{0.0}));
    // The multiplier follows setFrstConstVal.
    BuiltTerm t = rig.Build("XPROD", {2.0}, {3.0, 4.0});
    t.term->setFrstConstVal(-1.0);
    EXPECT_EQ(t.Value(), -12.0);
    EXPECT_EQ(TermRig::Jacobian(t.term), (std::vector<double>{-4.0, -3.0}));
    // The square path reads the current value and ends when arguments are added.
    BuiltTerm sq = rig.Build("XPROD", {0.75}, {3.0});
    sq.term->AddVariableObject(sq.vars[0]);
    EXPECT_EQ(sq.Value(), 6.75);
    LPVariable* y = rig.Var("Y", 5.0);
    sq.term->AddVariableObject(y);
    LPNonZero nzY;
    nzY.SetVariablePtr(y);
    sq.term->StoreNonZeroReference(&nzY);
    // 0.75 * x * x * y: d/dx = 1.5 * x * y, d/dy = 0.75 * x * x.
    EXPECT_EQ(sq.DerivAt(-2.0), -15.0);
    EXPECT_EQ(nzY.GetPartialDeriv(), 3.0);

    // Entries stored in another order than the arguments.
    LPVariable* a = rig.Var("A", 2.0);
    LPVariable* b = rig.Var("B", 3.0);
    TermPtr p = TermRig::Make("XPROD");
    p->AddNLConstantObject(1.0);
    p->AddVariableObject(a);
    p->AddVariableObject(b);
    LPNonZero nzB, nzA;
    nzB.SetVariablePtr(b);
    nzA.SetVariablePtr(a);
    p->StoreNonZeroReference(&nzB);
    p->StoreNonZeroReference(&nzA);
    auto* prod = dynamic_cast<NonLinearityProduct*>(p.get());
    ASSERT_NE(prod, nullptr);
    EXPECT_TRUE(prod->GetNonZeroWalkInStep());
    prod->SetNonZeroWalkInStep(false);  // the search walk finds them
    p->TermJacobian();
    EXPECT_EQ(nzA.GetPartialDeriv(), 3.0);
    EXPECT_EQ(nzB.GetPartialDeriv(), 2.0);
    // Walking in step trusts the order, so these entries get swapped values.
    prod->SetNonZeroWalkInStep(true);
    nzA.SetPartialDeriv(0.0);
    nzB.SetPartialDeriv(0.0);
    p->TermJacobian();
    EXPECT_EQ(nzB.GetPartialDeriv(), 3.0);
}

TEST(DivisionTerm, ZeroDenominatorGivesZeroAndLeavesTheEntriesAlone) {
    TermRig rig;
    BuiltTerm t = rig.Build("DIV", {1, 1, 1.0, 2.0, 1.0}, {0.0, 3.0});
    EXPECT_EQ(t.Value(), 0.0);
    for (ILPNonZero* nz = t.term->FrstNZ(); nz; nz = t.term->NextNZ()) nz->SetPartialDeriv(7.0);
    t.term->TermJacobian();
    for (ILPNonZero* nz = t.term->FrstNZ(); nz; nz = t.term->NextNZ()) EXPECT_EQ(nz->GetPartialDeriv(), 7.0);
}
