// Dropping empty rows at the end of model processing when there are many of
// them: the survivors keep their order, get consecutive indices, stay
// findable by name and keep their entries and terms;
// pending variable trash is left to the caller.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "ZEMTestModel.h"
#include "nlpdata/INonLinearity.h"

TEST(ZEMMgrEmptyRows, ManyEmptyRowsGoInOneProcessingPass) {
    // Row i is: empty when i % 3 == 1; a constant-only term (no entries, so
    // also empty) when i % 9 == 4; otherwise (i+1) * V(i % 50) plus, when
    // i % 5 == 0, 2 * V0 * V1.
    const int kRows = 6000, kVars = 50;
    ZEMMgrPtr m = NewMgr();
    IZEMModelBuilder* b = Builder(m.get());
    ILPEquationList* eqns = Eqns(m.get());
    ILPMatrix* matrix = Matrix(m.get());
    INonLinearModel* nl = NL(m.get());
    std::vector<ILPVariable*> v(kVars);
    for (int j = 0; j < kVars; ++j)
        b->MakeAddReturnVariableNew(("V" + std::to_string(j)).c_str(), 0, 1e20, 0.5 + j, 1, &v[j]);
    ILPVariable* spare = nullptr;
    b->MakeAddReturnVariable("SPARE", &spare);
    std::vector<int> kept;
    int terms = 0;
    const double two[] = {2.0}, three[] = {3.0};
    for (int i = 0; i < kRows; ++i) {
        ILPEquation* e = eqns->InsertEquation(("R" + std::to_string(i)).c_str());
        if (i % 9 == 4) b->MakeNonLinearityFast(4, e, 0, nullptr, 1, three, nullptr);
        if (i % 3 == 1 || i % 9 == 4) continue;
        kept.push_back(i);
        b->MakeAddLinearNonZeroNew(e, v[i % kVars], i + 1.0);
        if (i % 5 == 0) {
            ILPVariable* args[] = {v[0], v[1]};
            b->MakeNonLinearityFast(1, e, 2, args, 1, two, nullptr);
            ++terms;
        }
    }
    const int entriesBefore = matrix->NumberOfNonZeros();
    m->TrashVariable(spare);
    m->ProcessFullCollection();

    ASSERT_EQ(eqns->NumberOfEquations(), static_cast<int>(kept.size()));
    EXPECT_EQ(matrix->NumberOfNonZeros(), entriesBefore);
    EXPECT_EQ(nl->NumberOfNonLinearities(), terms);  // constant-only rows took their terms
    int idx = 0;
    for (ILPEquation* e = eqns->FrstEquationObject(); e; e = eqns->NextEquationObject()) {
        const int i = kept[static_cast<size_t>(idx++)];
        const std::string name = "R" + std::to_string(i);
        ASSERT_EQ(name, e->GetName());
        ASSERT_EQ(e->GetIndex(), idx);
        ASSERT_EQ(eqns->EqnNameLookup(name.c_str()), e);
        ILPNonZero* nz = matrix->RowFrstNonZeroObject(idx);
        ASSERT_NE(nz, nullptr) << name;
        EXPECT_EQ(nz->GetEquationPtr(), e);
        EXPECT_EQ(nz->GetCoefficient(), i + 1.0);
        INonLinearity* t = nl->RowFrstNonLinearityObject(idx);
        EXPECT_EQ(t != nullptr, i % 5 == 0) << name;
        if (t) {
            EXPECT_EQ(t->GetEquationPtr(), e);
        }
    }
    for (int i = 1; i < kRows; i += 3)
        ASSERT_EQ(eqns->EqnNameLookup(("R" + std::to_string(i)).c_str()), nullptr);
    // Pending variable trash is the caller's to empty.
    EXPECT_EQ(Var(m.get(), "SPARE"), spare);
    m->EmptyAllTrash();
    EXPECT_EQ(Var(m.get(), "SPARE"), nullptr);
}
