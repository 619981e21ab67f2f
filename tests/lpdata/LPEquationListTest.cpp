#include "lpdata/LPEquationList.h"

#include <gtest/gtest.h>

#include <tuple>

#include <sstream>

#include "lpdata/LPEquation.h"

TEST(LPEquationList, CountsByKind) {
    LPEquationList list;
    ILPEquation* obj = list.InsertEquation("OBJ");
    obj->SetType(ZEM_EQN_OBJECTIVE);
    obj->SetNumberNZ(4);
    ILPEquation* le = list.InsertEquation("LE");
    le->SetType(ZEM_EQN_LE);
    le->SetRange(2);
    le->SetNumberNZ(3);
    le->IncrNonlinear();
    ILPEquation* fr = list.InsertEquation("FR");
    fr->SetType(ZEM_EQN_FREE);
    fr->SetNumberNZ(5);
    fr->IncrNonlinear();
    ILPEquation* ge = list.InsertEquation("GE");
    ge->SetType(ZEM_EQN_GE);
    ge->SetRange(-1);
    ge->SetNumberNZ(7);
    list.InsertEquation("EQ")->IncrNonlinear();

    EXPECT_EQ(list.NumberOfNLEquations(), 3);
    int eq = -1, l = -1, g = -1, f = -1;
    list.NLEquationProfile(eq, l, g, f);  // nonlinear rows by kind
    EXPECT_EQ(std::make_tuple(eq, l, g, f), std::make_tuple(1, 1, 0, 1));
    int rows = -1, nz = -1, objNz = -1;
    list.RangeEqnCount(rows, nz);
    EXPECT_EQ(std::make_pair(rows, nz), std::make_pair(2, 10));
    list.FreeEqnCount(rows, nz, objNz);
    EXPECT_EQ(std::make_tuple(rows, nz, objNz), std::make_tuple(1, 5, 4));
    list.ProcessEquationCollection();
    EXPECT_EQ(std::make_tuple(list.EqnTypeCount(ZEM_EQN_OBJECTIVE), list.EqnTypeCount(ZEM_EQN_EQ),
                              list.EqnTypeCount(ZEM_EQN_UNKNOWN)),
              std::make_tuple(1, 1, 0));
}

TEST(LPEquationList, Display) {
    LPEquationList list;
    ILPEquation* o = list.InsertEquation("COST");
    o->SetType(ZEM_EQN_OBJECTIVE);
    o->SetNumberNZ(2);
    ILPEquation* r = list.InsertEquation("CAP");
    r->SetType(ZEM_EQN_LE);
    r->SetRHS(10);
    r->SetRange(4);
    r->SetNumberNZ(3);
    std::ostringstream os;
    list.Display(os);
    EXPECT_EQ(os.str(),
              "\nD I S P L A Y   O F   M A T R I X   E Q U A T I O N S\n"
              "         1  Objective\n"
              "         0  Equality\n"
              "         1  LessThanEqualTo\n"
              "         0  GreaterThanEqualTo\n"
              "         0  Free\n"
              "         0  Nonlinear Rows\n"
              "Range Rows :         1         3  Range Row NonZeros\n"
              "Free Rows :         0         0  Total Free Row NonZeros\n"
              "Obj NonZeros :         2\n\n"
              "Equation [1] : COST\n RHS = 0, Range = 0\n Type = OBJ\n EqnValue w/o RHS = 0\n"
              " Matrix Nonzeros = 2\n Number NonLinearities = 0\n\n"
              "Equation [2] : CAP\n RHS = 10, Range = 4\n Type = LE\n EqnValue w/o RHS = 0\n"
              " Matrix Nonzeros = 3\n Number NonLinearities = 0\n\n");
}
