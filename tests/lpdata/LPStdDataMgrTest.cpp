#include "lpdata/LPStdDataMgr.h"

#include <gtest/gtest.h>

#include <tuple>

#include <sstream>
#include <string>

#include "lpdata/ILPEquation.h"
#include "lpdata/ILPEquationList.h"
#include "lpdata/ILPMatrix.h"
#include "lpdata/ILPNonZero.h"
#include "lpdata/ILPSpOrdSet.h"
#include "lpdata/ILPVariable.h"
#include "lpdata/ILPVariableList.h"
#include "LPTestRig.h"

namespace {

class DataMgrTest : public ::testing::Test {
protected:
    void SetUp() override {
        CreateLPStdDataObject(&mgr);
        ASSERT_NE(mgr, nullptr);
        mgr->GetVariableCollectionIntf(&vars);
        mgr->GetEquationCollectionIntf(&eqns);
        mgr->GetMatrixIntf(&matrix);
        mgr->GetSpOrdSetCollectionIntf(&sets);
    }
    void TearDown() override { mgr->Destroy(); }

    ILPStdDataMgr* mgr = nullptr;
    ILPVariableList* vars = nullptr;
    ILPEquationList* eqns = nullptr;
    ILPMatrix* matrix = nullptr;
    ILPSpOrdSetList* sets = nullptr;
};

}  // namespace

TEST_F(DataMgrTest, InsertMatrixEntrySumsRepeatsAndRefusesUnknownNames) {
    eqns->InsertEquation("R1");
    vars->InsertVariable("X1");
    ILPNonZero* first = nullptr;
    ILPNonZero* again = nullptr;
    mgr->InsertMatrixEntry("R1", "X1", 2.0, &first);
    mgr->InsertMatrixEntry("R1", "X1", -0.5, &again);
    ASSERT_NE(first, nullptr);
    EXPECT_EQ(first, again);
    EXPECT_EQ(first->GetCoefficient(), 1.5);
    EXPECT_EQ(matrix->NumberOfNonZeros(), 1);
    ILPNonZero* result = first;
    lptest::ExpectError([&] { mgr->InsertMatrixEntry("NOROW", "X1", 1.0, &result); }, "LPStdDataMgr Error", "",
                        "LPStdDataMgr::InsertMatrixEntry");
    EXPECT_EQ(result, nullptr);
    EXPECT_THROW(mgr->InsertMatrixEntry("R1", "NOCOL", 1.0, &result), ZEM_Exception);
    EXPECT_EQ(matrix->NumberOfNonZeros(), 1);
}

TEST_F(DataMgrTest, ProcessFullCollectionDropsEmptyRowsAndRenumbers) {
    eqns->InsertEquation("OBJ")->SetType(ZEM_EQN_OBJECTIVE);  // no entries: removed too
    eqns->InsertEquation("R1");
    eqns->InsertEquation("EMPTY1");
    eqns->InsertEquation("R2")->SetType(ZEM_EQN_LE);
    eqns->InsertEquation("EMPTY2");
    ILPVariable* x = vars->InsertVariable("X");
    ILPVariable* y = vars->InsertVariable("Y");
    vars->InsertVariable("Z");
    y->SetVarType(ZEM_VAR_BINARY);
    mgr->InsertMatrixEntry("R1", "X", 1, nullptr);
    mgr->InsertMatrixEntry("R2", "X", 2, nullptr);
    mgr->InsertMatrixEntry("R2", "Y", 3, nullptr);
    mgr->ProcessFullCollection();

    ASSERT_EQ(eqns->NumberOfEquations(), 2);
    EXPECT_EQ(eqns->EqnNameLookup("OBJ"), nullptr);
    EXPECT_EQ(eqns->EqnNameLookup("EMPTY1"), nullptr);
    ILPEquation* r1 = eqns->EqnNameLookup("R1");
    ILPEquation* r2 = eqns->EqnNameLookup("R2");
    EXPECT_EQ(std::make_pair(r1->GetIndex(), r2->GetIndex()), std::make_pair(1, 2));
    // Entry counts of R1, R2, X, Y and Z: empty columns stay.
    EXPECT_EQ(std::make_tuple(r1->GetNumberNZ(), r2->GetNumberNZ(), x->GetNumberNZ(), y->GetNumberNZ(),
                              vars->VarNameLookup("Z")->GetNumberNZ()),
              std::make_tuple(1, 2, 2, 1, 0));
    // The matrix follows the renumbered rows.
    EXPECT_EQ(matrix->ExistIncidence(2, 2)->GetCoefficient(), 3);
    EXPECT_EQ(matrix->NonZerosInRow(1), 1);
    EXPECT_EQ(std::make_tuple(eqns->EqnTypeCount(ZEM_EQN_LE), eqns->EqnTypeCount(ZEM_EQN_OBJECTIVE),
                              vars->VarTypeCount(ZEM_VAR_BINARY), vars->VarTypeCount(ZEM_VAR_CONTINUOUS)),
              std::make_tuple(1, 0, 1, 2));
}

TEST_F(DataMgrTest, RemoveEntitiesWithTheirNonzerosAndMemberships) {
    eqns->InsertEquation("R1");
    eqns->InsertEquation("R2");
    vars->InsertVariable("X");
    ILPVariable* y = vars->InsertVariable("Y");
    mgr->InsertMatrixEntry("R1", "X", 1, nullptr);
    mgr->InsertMatrixEntry("R2", "X", 2, nullptr);
    mgr->InsertMatrixEntry("R2", "Y", 3, nullptr);
    ILPSpOrdSet* set = nullptr;
    sets->CreateNewSpOrdSetObject(&set);
    set->SetName("S");
    set->AddVariableObject(vars->VarNameLookup("X"));
    set->AddVariableObject(y);
    sets->AddSpOrdSetObject(set);

    mgr->RemoveVariable("X");
    EXPECT_EQ(vars->NumberOfVariables(), 1);
    EXPECT_EQ(y->GetIndex(), 1);
    EXPECT_EQ(matrix->NumberOfNonZeros(), 1);
    EXPECT_EQ(set->GetSize(), 1);
    EXPECT_EQ(set->FrstSetVar(), y);
    EXPECT_EQ(matrix->ExistIncidence(2, 1)->GetCoefficient(), 3);

    mgr->RemoveEquation("R1");
    EXPECT_EQ(eqns->NumberOfEquations(), 1);
    EXPECT_EQ(matrix->ExistIncidence(1, 1)->GetCoefficient(), 3);
    mgr->RemoveEquation(eqns->EqnNameLookup("R2"));
    EXPECT_EQ(matrix->NumberOfNonZeros(), 0);
    mgr->RemoveVariable("NOSUCH");  // unknown names change nothing
    mgr->RemoveEquation(static_cast<ILPEquation*>(nullptr));
    EXPECT_EQ(vars->NumberOfVariables(), 1);
}

TEST_F(DataMgrTest, HeadingAndComposedDisplays) {
    mgr->SetModelTitle("BLEND");
    eqns->InsertEquation("R1");
    vars->InsertVariable("X");
    vars->InsertVariable("Y");
    mgr->InsertMatrixEntry("R1", "X", 2, nullptr);
    const std::string heading =
        "\nD I S P L A Y   O F   L P   D A T A   O B J E C T\n"
        "- - - - - - -   - -   - -   - - - -   - - - - - -\n\n"
        "M O D E L   T I T L E   : BLEND\n"
        "D I M E N S I O N S   : N = 2 M = 1 NZ = 1\n";
    std::ostringstream h;
    mgr->DisplayHeading(h);
    EXPECT_EQ(h.str(), heading);

    std::ostringstream full, parts;
    mgr->Display(full);
    vars->Display(parts);
    eqns->Display(parts);
    matrix->Display(parts);
    EXPECT_EQ(full.str(), heading + parts.str());

    std::ostringstream byCol, colParts;
    mgr->DisplayByColumn(byCol);
    matrix->DisplayByColumn(colParts);
    EXPECT_EQ(byCol.str(), heading + colParts.str());
}

TEST_F(DataMgrTest, AlgebraicDisplay) {
    eqns->InsertEquation("COST")->SetType(ZEM_EQN_OBJECTIVE);
    ILPEquation* cap = eqns->InsertEquation("CAP");
    cap->SetType(ZEM_EQN_LE);
    cap->SetRHS(10);
    ILPEquation* dem = eqns->InsertEquation("DEM");
    dem->SetType(ZEM_EQN_GE);
    dem->SetRHS(2);
    dem->SetRange(3);
    eqns->InsertEquation("BAL")->SetRHS(0.5);
    ILPVariable* x = vars->InsertVariable("X");
    ILPVariable* y = vars->InsertVariable("Y");
    x->SetBoundUpper(4);
    y->SetVarType(ZEM_VAR_BINARY);
    y->SetBoundUpper(1);
    mgr->InsertMatrixEntry("COST", "X", 1, nullptr);
    mgr->InsertMatrixEntry("COST", "Y", -2.5, nullptr);
    mgr->InsertMatrixEntry("CAP", "X", 1, nullptr);
    mgr->InsertMatrixEntry("DEM", "Y", 3, nullptr);
    ILPNonZero* nl = nullptr;
    mgr->InsertMatrixEntry("BAL", "X", -1, &nl);
    nl->IncrNonlinear();
    std::ostringstream os;
    mgr->AlgebraicDisplay(os);
    EXPECT_EQ(os.str(),
              "\nA L G E B R A I C   D I S P L A Y   O F   M A T R I X\n"
              "\nOBJEQN :\n   + 1.000 X - 2.500 Y\n"
              "\nCAP :\n   + 1.000 X <=     10\n"
              "\nDEM :\n        2 <= + 3.000 Y <=      5\n"
              "\nBAL :\n   - 1.000*X ==    0.5\n"
              "\nV A R I A B L E   S U M M A R Y\n"
              "     0 <=        X <=      4    \n"
              "     0 <=        Y <=      1    BINARY\n");
}

TEST_F(DataMgrTest, AlgebraicDisplayContinuesLongRows) {
    eqns->InsertEquation("R")->SetType(ZEM_EQN_FREE);
    for (int j = 1; j <= 8; ++j) {
        const std::string name = "X" + std::to_string(j);
        vars->InsertVariable(name.c_str());
        mgr->InsertMatrixEntry("R", name.c_str(), j, nullptr);
    }
    std::ostringstream os;
    mgr->AlgebraicDisplay(os);
    EXPECT_NE(os.str().find("\nR :\n   + 1.000 X1 + 2.000 X2 + 3.000 X3 + 4.000 X4 + 5.000 X5 + 6.000 X6\n"
                            "         ... + 7.000 X7 + 8.000 X8\n"),
              std::string::npos)
        << os.str();
}
