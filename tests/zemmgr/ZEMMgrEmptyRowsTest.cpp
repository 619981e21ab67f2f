// Dropping empty rows at the end of model processing when there are many of
// them: the survivors keep their order, get consecutive indices, stay
// findable by name, keep their entries and terms, and evaluate as before.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "ZEMTestModel.h"
#include "lpdata/ILPEquation.h"
#include "lpdata/ILPEquationList.h"
#include "lpdata/ILPMatrix.h"
#include "lpdata/ILPNonZero.h"
#include "lpdata/ILPVariable.h"
#include "lpdata/ILPVariableList.h"
#include "nlpdata/INonLinearModel.h"
#include "nlpdata/INonLinearity.h"

namespace {

// Rows R0..R(n-1). Row i is: empty when i % 3 == 1; a constant-only term
// (no entries) when i % 9 == 4 (also counts as empty); otherwise
// (i+1) * V(i % vars) plus, when i % 5 == 0, 2 * V0 * V1.
struct ManyEmptyRows {
    static constexpr int kRows = 6000;
    static constexpr int kVars = 50;
    static bool Kept(int i) { return i % 3 != 1; }

    ZEMMgrPtr mgr = NewMgr();
    ILPVariableList* vars = nullptr;
    ILPEquationList* eqns = nullptr;
    ILPMatrix* matrix = nullptr;
    INonLinearModel* nl = nullptr;

    ManyEmptyRows() {
        mgr->GetVariableCollectionIntf(&vars);
        mgr->GetEquationCollectionIntf(&eqns);
        mgr->GetMatrixIntf(&matrix);
        mgr->GetNonLinearModelIntf(&nl);
        std::vector<ILPVariable*> v;
        for (int j = 0; j < kVars; ++j) {
            v.push_back(vars->InsertVariable(("V" + std::to_string(j)).c_str()));
            v.back()->SetVarValue(0.5 + j);
        }
        for (int i = 0; i < kRows; ++i) {
            ILPEquation* e = eqns->InsertEquation(("R" + std::to_string(i)).c_str());
            if (i % 9 == 4) {
                INonLinearity* t = nullptr;
                nl->CreateNonLinearityObject("CONST", &t);
                t->SetEquationPtr(e);
                t->AddNLConstantObject(3.0);
                nl->AddNonLinearityObject(t);
                continue;
            }
            if (!Kept(i)) continue;
            ILPNonZero* nz = nullptr;
            matrix->CreateNewNonZeroObject(&nz);
            nz->SetEquationPtr(e);
            nz->SetVariablePtr(v[static_cast<size_t>(i % kVars)]);
            nz->SetCoefficient(i + 1.0);
            matrix->AddNonZeroObject(nz);
            if (i % 5 == 0) {
                INonLinearity* t = nullptr;
                nl->CreateNonLinearityObject("XPROD", &t);
                t->SetEquationPtr(e);
                t->AddNLConstantObject(2.0);
                t->AddVariableObject(v[0]);
                t->AddVariableObject(v[1]);
                nl->AddNonLinearityObject(t);
            }
        }
    }

    static double Value(int i) {
        double value = (i + 1.0) * (0.5 + i % kVars);
        if (i % 5 == 0) value += 2.0 * 0.5 * 1.5;
        return value;
    }
};

TEST(ZEMMgrEmptyRows, ManyEmptyRowsGoInOneProcessingPass) {
    ManyEmptyRows m;
    std::vector<int> kept;
    int terms = 0;
    for (int i = 0; i < ManyEmptyRows::kRows; ++i)
        if (ManyEmptyRows::Kept(i) && i % 9 != 4) {
            kept.push_back(i);
            if (i % 5 == 0) ++terms;
        }
    const int entriesBefore = m.matrix->NumberOfNonZeros();
    m.mgr->ProcessFullCollection();

    ASSERT_EQ(m.eqns->NumberOfEquations(), static_cast<int>(kept.size()));
    EXPECT_EQ(m.matrix->NumberOfNonZeros(), entriesBefore);
    // The constant-only rows took their terms with them.
    EXPECT_EQ(m.nl->NumberOfNonLinearities(), terms);

    int idx = 0;
    for (ILPEquation* e = m.eqns->FrstEquationObject(); e; e = m.eqns->NextEquationObject()) {
        const int i = kept[static_cast<size_t>(idx)];
        ++idx;
        const std::string name = "R" + std::to_string(i);
        ASSERT_EQ(name, e->GetName());
        ASSERT_EQ(e->GetIndex(), idx);
        ASSERT_EQ(m.eqns->EqnNameLookup(name.c_str()), e);
        ILPNonZero* nz = m.matrix->RowFrstNonZeroObject(idx);
        ASSERT_NE(nz, nullptr) << name;
        EXPECT_EQ(nz->GetEquationPtr(), e);
        EXPECT_EQ(nz->GetCoefficient(), i + 1.0);
        INonLinearity* t = m.nl->RowFrstNonLinearityObject(idx);
        EXPECT_EQ(t != nullptr, i % 5 == 0) << name;
        if (t) {
            EXPECT_EQ(t->GetEquationPtr(), e);
        }
    }
    for (int i = 1; i < ManyEmptyRows::kRows; i += 3)
        ASSERT_EQ(m.eqns->EqnNameLookup(("R" + std::to_string(i)).c_str()), nullptr);

    ASSERT_TRUE(m.nl->EvaluateModel());
    for (int i : kept) {
        ILPEquation* e = m.eqns->EqnNameLookup(("R" + std::to_string(i)).c_str());
        ASSERT_DOUBLE_EQ(e->GetEqnValue(), ManyEmptyRows::Value(i)) << e->GetName();
    }
}

TEST(ZEMMgrEmptyRows, PendingVariableTrashIsLeftToTheCaller) {
    ManyEmptyRows m;
    ILPVariable* spare = m.vars->InsertVariable("SPARE");
    m.mgr->TrashVariable(spare);
    m.mgr->ProcessFullCollection();
    EXPECT_EQ(m.vars->VarNameLookup("SPARE"), spare);
    m.mgr->EmptyAllTrash();
    EXPECT_EQ(m.vars->VarNameLookup("SPARE"), nullptr);
    EXPECT_EQ(m.vars->NumberOfVariables(), ManyEmptyRows::kVars);
}

}  // namespace
