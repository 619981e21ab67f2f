#include <gtest/gtest.h>

#include <cmath>
#include <sstream>
#include <string>

#include "lpdata/LPColdBlock.h"
#include "lpdata/LPEquation.h"
#include "lpdata/LPName.h"
#include "lpdata/LPNonZero.h"
#include "lpdata/LPVariable.h"

TEST(LPVariable, CopyIsDeep) {
    LPVariable a;
    a.SetName("X1");
    a.SetDescription("first");
    a.SetBoundUpper(7);
    LPVariable b(a);
    a.SetDescription("changed");
    EXPECT_STREQ(b.GetName(), "X1");
    EXPECT_STREQ(b.GetDescription(), "first");
    EXPECT_EQ(b.GetBoundUpper(), 7);
}

// An equality row keeps limits set directly (the reader's RANGES tests cover
// how a range widens an inequality row).
TEST(LPEquation, RangeAndLimitSettersByType) {
    LPEquation eq;
    eq.SetRHSLo(1);
    eq.SetRHSUp(2);
    eq.SetRHS(10);
    eq.SetRange(-5);
    EXPECT_EQ(eq.GetRHSLo(), 1);
    EXPECT_EQ(eq.GetRHSUp(), 2);
    // The limit setters move the rhs only on the row's own side.
    LPEquation le;
    le.SetType(3);
    le.SetRHSUp(7);
    EXPECT_EQ(le.GetRHS(), 7);
    LPEquation ge;
    ge.SetType(4);
    ge.SetRHSUp(7);
    EXPECT_EQ(ge.GetRHS(), 0);
    ge.SetRHSLo(3);
    EXPECT_EQ(ge.GetRHS(), 3);
}

TEST(ZEMTypes, RelativeTolerance) {
    EXPECT_TRUE(ZEMValuesEqual(1e-9, 2e-9, 1e-6));
    EXPECT_FALSE(ZEMValuesEqual(1000, 1001, 1e-4));
    EXPECT_TRUE(ZEMValuesEqual(1000, 1000.05, 1e-4));
}

TEST(LPVariable, CompareReportsFieldsInOrder) {
    LPVariable a, b;
    a.SetName("X");
    b.SetName("X");
    b.SetBoundLower(2);  // a's value 1 lies below b's lower bound
    b.SetStepBound(5);
    b.SetVarType(3);
    std::ostringstream os;
    EXPECT_EQ(a.Compare(&b, os, 1, false, false, false, 1e-6, 2, 3), -1);
    EXPECT_EQ(os.str(),
              "Problem Variable X lower bounds do not match: p1 is 0, p2 is 2   ******* VIOLATED \n"
              "Problem Variable X step bounds do not match: p1 is 2e+20, p2 is 5\n"
              "Problem Variable X types do not match: p1 is continuous, p2 is discrete\n"
              "Problem Variable X number NZs do not match: p1 is 2, p2 is 3\n");
}

TEST(LPVariable, CompareMode3LabelsAndExemptions) {
    LPVariable a, b;
    a.SetName("IEXC1");
    b.SetName("IEXC1");
    b.SetBoundUpper(5);
    b.SetStepBound(5);
    b.SetBoundLower(0.5);
    std::ostringstream os;
    EXPECT_EQ(a.Compare(&b, os, 3, false, false, true, 1e-6, 1, 1), -1);
    EXPECT_EQ(os.str(),
              "Problem Variable IEXC1 lower bounds do not match: old MG is 0, zem MG is 0.5 \n");
    LPVariable c;
    std::ostringstream none;
    EXPECT_EQ(c.Compare(&c, none, 1, true, true, false, 1e-6, 0, 0), 0);
    EXPECT_EQ(none.str(), "");
}

TEST(LPEquation, CompareExemptsBcapRowsInMode3) {
    LPEquation a, b;
    a.SetName("BCAP1");
    b.SetName("BCAP1");
    b.SetRHS(4);
    b.SetEqnScale(2);
    std::ostringstream os;
    EXPECT_EQ(a.Compare(&b, os, 3, false, 1e-6, 1, 2, false), -1);
    EXPECT_EQ(os.str(), "Problem Equation BCAP1 scales do not match: old MG is 1, zem MG is 2\n");
}

TEST(LPNonZero, CompareSkipsCoefficientsOfNonlinearEntries) {
    LPVariable v;
    v.SetIndex(5);
    v.SetName("C5");
    LPEquation e;
    e.SetIndex(3);
    e.SetName("R3");
    LPNonZero nz;
    nz.SetIndex(9);
    nz.SetVariablePtr(&v);
    nz.SetEquationPtr(&e);
    nz.SetCoefficient(2.5);
    nz.IncrNonlinear();

    LPNonZero other(nz);
    other.SetCoefficient(3);
    std::ostringstream cmp;
    EXPECT_EQ(nz.Compare(&other, 1, 1e-6, cmp), 0);  // both nonlinear: coefficients not compared
    other.DecrNonlinear();
    EXPECT_EQ(nz.Compare(&other, 1, 1e-6, cmp), -1);
    EXPECT_EQ(cmp.str(),
              "Problem Linear NonZero for Variable C5 getnonlinear() does not match: p1 is 1, p2 is 0"
              " in Equation R3\n");
}

// The rarely-set fields read their defaults until a write changes one; a
// write of the current value makes no block, -0.0 is not taken for 0.0, and
// copies and Compare see the block's values.
TEST(LPColdBlock, DefaultsFirstWriteCopyAndCompare) {
    struct Cold {
        double step = 2.0;
    };
    LPColdBlock<Cold> c;
    c.Set(&Cold::step, 2.0);
    EXPECT_FALSE(c.Made());
    c.Set(&Cold::step, -0.0);
    const LPColdBlock<Cold> copy(c);
    c.Set(&Cold::step, 5.0);
    EXPECT_TRUE(copy.Made() && std::signbit(copy.Get(&Cold::step)));

    LPVariable v, plain;
    v.SetStepBound(4.0);
    v.SetComplementarityTarget(&v);
    const LPVariable vCopy(v);
    v.SetStepBound(6.0);
    EXPECT_EQ(vCopy.GetStepBound(), 4.0);
    EXPECT_EQ(vCopy.GetComplementarityTarget(), &v);
    EXPECT_EQ(vCopy.GetSampleBoundLower(), -1e20);
    std::ostringstream os;
    EXPECT_EQ(plain.Compare(&v, os, 1, true, true, false, 1e-9, 0, 0), -1);
    EXPECT_NE(os.str().find(" step bounds do not match: p1 is 2e+20"), std::string::npos);

    LPEquation e;
    e.SetType(ZEM_EQN_GE);
    e.SetRHS(2.0);
    e.SetRange(-3.0);
    const LPEquation eCopy(e);
    EXPECT_EQ(eCopy.GetRHSUp(), 5.0);
    EXPECT_EQ(LPEquation(eCopy).Compare(&e, os, 1, true, 1e-9, 0, 0, false), 0);
}

TEST(LPName, ShortAndLongNames) {
    const std::string n15(15, 'a'), n100(100, 'c');
    LPName n;
    for (const std::string* s : {&n15, &n100, &n15}) {
        n.Assign(s->c_str());
        EXPECT_EQ(n.c_str(), *s);
    }
    n.Assign(nullptr);
    EXPECT_STREQ(n.c_str(), "");
    n.Assign(n100.c_str());
    const LPName copy(n);
    n.Assign(n.c_str());  // from its own text
    n.Assign("ROW1");
    EXPECT_EQ(copy.c_str(), n100);
    EXPECT_STREQ(n.c_str(), "ROW1");
    EXPECT_FALSE(LPName("CDE").StartsWith("CDEC"));

    LPEquation e;
    e.SetName(n100.c_str());
    EXPECT_EQ(LPEquation(e).GetName(), n100);
}
