// The model manager: life cycle, components, collections, removal, trash,
// evaluation helpers and appending other models.
#include <gtest/gtest.h>

#include <cmath>
#include <sstream>
#include <string>

#include "ZEMTestModel.h"
#include "lpdata/ILPEquation.h"
#include "lpdata/ILPEquationList.h"
#include "lpdata/ILPMatrix.h"
#include "lpdata/ILPNonZero.h"
#include "lpdata/ILPSpOrdSet.h"
#include "lpdata/ILPVariable.h"
#include "lpdata/ILPVariableCollection.h"
#include "lpdata/ILPVariableList.h"
#include "lpdata/ZEMException.h"
#include "nlpdata/INonLinearModel.h"
#include "zemmgr/IZEMModelBuilder.h"
#include "zemmgr/IZEMOptionTable.h"
#include "zemmgr/ZEMMgr.h"

namespace {

ILPVariable* var(IZEMMgr* m, const char* name) {
    ILPVariableList* l = nullptr;
    m->GetVariableCollectionIntf(&l);
    return l->VarNameLookup(name);
}

ILPEquation* eqn(IZEMMgr* m, const char* name) {
    ILPEquationList* l = nullptr;
    m->GetEquationCollectionIntf(&l);
    return l->EqnNameLookup(name);
}

// Row "R": 1*X + 2*X*Y = 12, with X = 2, Y = 3.
ZEMMgrPtr productModel() {
    ZEMMgrPtr m = NewMgr();
    IZEMModelBuilder* b = nullptr;
    m->GetModelBuilderIntf(&b);
    ILPVariable *x, *y;
    ILPEquation* r;
    b->MakeAddReturnVariableNew("X", -100.0, 100.0, 2.0, 1, &x);
    b->MakeAddReturnVariableNew("Y", -100.0, 100.0, 3.0, 1, &y);
    b->MakeAddReturnEquationNew("R", 2, 12.0, 0.0, &r);
    b->MakeAddLinearNonZeroNew(r, x, 1.0);
    ILPVariable* args[] = {x, y};
    const double c[] = {2.0};
    b->MakeNonLinearityFast(1, r, 2, args, 1, c, nullptr);
    m->ProcessFullCollection();
    return m;
}

}  // namespace

TEST(ZEMMgr, NewManagerDefaults) {
    ZEMMgrPtr m = NewMgr();
    std::string title;
    m->GetModelTitle(title);
    EXPECT_EQ(title, "MDL");
    int n = -1, r = -1, nz = -1;
    m->ModelDimension(n, r, nz);
    EXPECT_EQ(n + r + nz, 0);
    EXPECT_FALSE(m->MatrixIncludesObjective());
    EXPECT_TRUE(m->GetValuesInitialized());
    EXPECT_FALSE(m->IsHybridModel());
    EXPECT_EQ(m->GetRank(), -1);
    EXPECT_EQ(m->GetTrace(), 0);
    EXPECT_STREQ(m->GetModelDir(), "");
    EXPECT_EQ(dynamic_cast<ZEMMgr*>(m.get())->GetFileVersion(), 2020.1);
    IZEMMgr* viaData = nullptr;
    ZEMDataObjectFactory(&viaData);
    ASSERT_NE(viaData, nullptr);
    EXPECT_EQ(viaData->IAddRef(), 1);
    EXPECT_EQ(viaData->IRelease(), 0);  // destroyed here
}

TEST(ZEMMgr, ReferenceCounting) {
    IZEMMgr* m = nullptr;
    ZEMObjectFactory(&m);
    ASSERT_NE(m, nullptr);
    // Releasing at 0 goes to -1 and does not destroy.
    EXPECT_EQ(m->IRelease(), -1);
    EXPECT_EQ(dynamic_cast<ZEMMgr*>(m)->GetRefCount(), -1);
    EXPECT_EQ(m->IAddRef(), 0);
    EXPECT_EQ(m->IAddRef(), 1);
    EXPECT_EQ(m->IAddRef(), 2);
    EXPECT_EQ(m->IRelease(), 1);
    EXPECT_EQ(m->IRelease(), 0);  // deleted; ASan reports any leak or reuse
}

TEST(ZEMMgr, ModelDirectory) {
    ZEMMgrPtr m = NewMgr();
    m->SetModelDir("C:\\m");
    EXPECT_STREQ(m->GetModelDir(), "C:\\m\\");
    m->SetModelDir("C:\\m\\");
    EXPECT_STREQ(m->GetModelDir(), "C:\\m\\");
    m->SetModelDir(nullptr);
    EXPECT_STREQ(m->GetModelDir(), "C:\\m\\");
    m->SetModelDir(ZEMMgr::kEmptyString);  // the library's own constant
    EXPECT_STREQ(m->GetModelDir(), "C:\\m\\");
    std::string empty;  // an empty text that is not the constant
    m->SetModelDir(empty.c_str());
    EXPECT_STREQ(m->GetModelDir(), "\\");
}

TEST(ZEMMgr, PurgeAndIfDirtyPurge) {
    ZEMMgrPtr m = NewMgr();
    m->IfDirtyPurgeContent();  // clean: nothing happens
    IZEMOptionTable* opt = nullptr;
    m->GetOptionTableIntf(&opt);
    opt->SetOption("K", "V", nullptr);
    m->IfDirtyPurgeContent();  // options alone do not make it dirty
    m->GetOptionTableIntf(&opt);
    EXPECT_STREQ(opt->GetOptionValue("K"), "V");

    ILPVariableList* vars = nullptr;
    m->GetVariableCollectionIntf(&vars);
    vars->InsertVariable("ONLY");
    m->SetHybridModel(true);
    m->SetRank(4);
    m->IfDirtyPurgeContent();  // a variable without rows is enough
    int n, r, nz;
    m->ModelDimension(n, r, nz);
    EXPECT_EQ(n, 0);
    m->GetOptionTableIntf(&opt);
    EXPECT_EQ(opt->GetOptionValue("K"), nullptr);
    EXPECT_FALSE(m->IsHybridModel());
    EXPECT_EQ(m->GetRank(), -1);

    BuildRichModel(m.get());
    m->PurgeContent();
    m->ModelDimension(n, r, nz);
    EXPECT_EQ(n + r + nz, 0);
    ILPVariableCollection* col = nullptr;
    m->FrstNamedVarCollection(&col);
    EXPECT_EQ(col, nullptr);
    std::string title;
    m->GetModelTitle(title);
    EXPECT_EQ(title, "RICHMODEL");  // the title is not content
}

TEST(ZEMMgr, BaseModelDimension) {
    ZEMMgrPtr m = NewMgr();
    BuildRichModel(m.get());
    int n, r, nz, bn, br, bnz;
    m->ModelDimension(n, r, nz);
    m->GetBaseModelDimension(bn, br, bnz);  // not stored: current
    EXPECT_EQ(bn, n);
    m->StoreBaseModelDimension();
    ILPVariableList* vars = nullptr;
    m->GetVariableCollectionIntf(&vars);
    vars->InsertVariable("EXTRA");
    m->GetBaseModelDimension(bn, br, bnz);
    EXPECT_EQ(bn, n);
    EXPECT_EQ(br, r);
    EXPECT_EQ(bnz, nz);
}

TEST(ZEMMgr, NamedCollections) {
    ZEMMgrPtr m = NewMgr();
    BuildRichModel(m.get());
    ILPVariableCollection* c = nullptr;
    m->FindNamedVarCollection("OUT", &c);
    ASSERT_NE(c, nullptr);
    EXPECT_EQ(c->GetDirection(), -1);
    m->FindNamedVarCollection("NONE", &c);
    EXPECT_EQ(c, nullptr);

    ILPVariableCollection* same = nullptr;
    m->NewNamedVarCollection("IN", &same);  // existing name: the same one
    ILPVariableCollection* in = nullptr;
    m->FindNamedVarCollection("IN", &in);
    EXPECT_EQ(same, in);

    std::string order;
    for (m->FrstNamedVarCollection(&c); c; m->NextNamedVarCollection(&c))
        order += std::string(c->Name()) + ";";
    EXPECT_EQ(order, "IN;OUT;");

    EXPECT_TRUE(m->RemoveNamedVarCollection("IN"));
    EXPECT_FALSE(m->RemoveNamedVarCollection("IN"));
    m->FrstNamedVarCollection(&c);
    ASSERT_NE(c, nullptr);
    EXPECT_STREQ(c->Name(), "OUT");
    m->NextNamedVarCollection(&c);
    EXPECT_EQ(c, nullptr);
    EXPECT_FALSE(m->AddNamedVarCollection(nullptr));
}

TEST(ZEMMgr, ProcessFullCollectionDropsEmptyRowsAndCounts) {
    ZEMMgrPtr m = NewMgr();
    BuildRichModel(m.get());
    ILPEquationList* eqns = nullptr;
    m->GetEquationCollectionIntf(&eqns);
    eqns->InsertEquation("EMPTY");
    m->ProcessFullCollection();
    EXPECT_EQ(eqns->EqnNameLookup("EMPTY"), nullptr);
    EXPECT_EQ(eqns->NumberOfEquations(), 5);
    EXPECT_EQ(eqn(m.get(), "L1")->GetNumberNZ(), 2);
    EXPECT_EQ(var(m.get(), "X1")->GetNumberNZ(), 3);  // OBJ, E1 (linear and term), G1 (term)
}

TEST(ZEMMgr, RemovalAndTrash) {
    ZEMMgrPtr m = NewMgr();
    BuildRichModel(m.get());
    // X5 is linear: it leaves its rows, sets and collections.
    m->RemoveVariable("X5");
    EXPECT_EQ(var(m.get(), "X5"), nullptr);
    ILPSpOrdSetList* sets = nullptr;
    m->GetSpOrdSetCollectionIntf(&sets);
    EXPECT_EQ(sets->SOSNameLookup("S2")->GetSize(), 2);
    ILPVariableCollection* out = nullptr;
    m->FindNamedVarCollection("OUT", &out);
    EXPECT_EQ(out->CollectionSize(), 0);
    // X1 is in a term: refused, nothing changes.
    EXPECT_THROW(m->RemoveVariable("X1"), ZEM_Exception);
    EXPECT_NE(var(m.get(), "X1"), nullptr);

    m->TrashVariable(var(m.get(), "X4"));
    m->EmptyAllTrash();
    EXPECT_EQ(var(m.get(), "X4"), nullptr);
    EXPECT_EQ(sets->SOSNameLookup("S2")->GetSize(), 1);
    m->RemoveEquation("F1");
    EXPECT_EQ(eqn(m.get(), "F1"), nullptr);
    // The model still saves and restores after the edits (the counts are
    // brought up to date by the end-of-edit processing).
    m->ProcessFullCollection();
    ZEMMgrPtr b = NewMgr();
    std::istringstream in(ModelBytes(m.get()));
    b->RestoreFromStream(&in);
    ExpectSameModel(m.get(), b.get());
}

TEST(ZEMMgr, InsertMatrixEntrySumsAndRefusesUnknownNames) {
    ZEMMgrPtr m = NewMgr();
    BuildRichModel(m.get());
    ILPNonZero* nz = nullptr;
    m->InsertMatrixEntry("L1", "X4", 2.0, &nz);
    ASSERT_NE(nz, nullptr);
    ILPNonZero* again = nullptr;
    m->InsertMatrixEntry("L1", "X4", 1.5, &again);
    EXPECT_EQ(again, nz);
    EXPECT_EQ(nz->GetCoefficient(), 3.5);
    EXPECT_THROW(m->InsertMatrixEntry("NOROW", "X4", 1.0, &nz), ZEM_Exception);
    EXPECT_THROW(m->InsertMatrixEntry("L1", "NOCOL", 1.0, &nz), ZEM_Exception);
}

TEST(ZEMMgr, SetupModelLinearizationStoresSlopesAndBasePoint) {
    ZEMMgrPtr m = productModel();
    m->SetupModelLinearization();
    ILPMatrix* mx = nullptr;
    m->GetMatrixIntf(&mx);
    ILPEquation* r = eqn(m.get(), "R");
    ILPNonZero* nx = mx->ExistIncidence(r->GetIndex(), var(m.get(), "X")->GetIndex());
    ILPNonZero* ny = mx->ExistIncidence(r->GetIndex(), var(m.get(), "Y")->GetIndex());
    ASSERT_NE(nx, nullptr);
    ASSERT_NE(ny, nullptr);
    EXPECT_DOUBLE_EQ(nx->GetPartialDeriv(), 1.0 + 2.0 * 3.0);
    EXPECT_DOUBLE_EQ(ny->GetPartialDeriv(), 2.0 * 2.0);
    EXPECT_DOUBLE_EQ(r->GetEqnValue(), 2.0 + 12.0);
    EXPECT_DOUBLE_EQ(var(m.get(), "X")->GetBaseValue(), 2.0);
    EXPECT_DOUBLE_EQ(r->GetBaseValue(), 14.0);
}

TEST(ZEMMgr, LinearizeReplacesTermsByTangent) {
    ZEMMgrPtr m = productModel();
    m->LinearizeGeneralNonlinear();
    INonLinearModel* nl = nullptr;
    m->GetNonLinearModelIntf(&nl);
    EXPECT_EQ(nl->NumberOfNonLinearities(), 0);
    ILPEquation* r = eqn(m.get(), "R");
    EXPECT_EQ(r->GetNonlinear(), 0);
    ILPMatrix* mx = nullptr;
    m->GetMatrixIntf(&mx);
    ILPNonZero* nx = mx->ExistIncidence(r->GetIndex(), var(m.get(), "X")->GetIndex());
    ILPNonZero* ny = mx->ExistIncidence(r->GetIndex(), var(m.get(), "Y")->GetIndex());
    EXPECT_DOUBLE_EQ(nx->GetCoefficient(), 7.0);
    EXPECT_DOUBLE_EQ(ny->GetCoefficient(), 4.0);
    EXPECT_EQ(nx->GetNonlinear(), 0);
    // f(x) = 14, J x = 26: the constant -12 moves to the right-hand side.
    EXPECT_DOUBLE_EQ(r->GetRHS(), 24.0);
    // At the point the row keeps its residual.
    EXPECT_DOUBLE_EQ(nl->EvaluateRow(r->GetIndex()) - r->GetRHS(), 14.0 - 12.0);
    // Away from the point it is the tangent: X = 3 gives 7*3 + 4*3.
    var(m.get(), "X")->SetVarValue(3.0);
    EXPECT_DOUBLE_EQ(nl->EvaluateRow(r->GetIndex()), 33.0);
}

TEST(ZEMMgr, EvaluateInitialSolvesRowForVariable) {
    ZEMMgrPtr m = productModel();
    // X + 2 X Y = 12 with Y = 3: X = 12 / 7.
    EXPECT_NEAR(m->EvaluateInitial("R", "X"), 12.0 / 7.0, 1e-9);
    EXPECT_NEAR(var(m.get(), "X")->GetVarValue(), 12.0 / 7.0, 1e-9);
    // Without a variable: the row's value.
    var(m.get(), "X")->SetVarValue(1.0);
    EXPECT_DOUBLE_EQ(m->EvaluateInitial("R", nullptr), 1.0 + 6.0);
    // The bound stops the solve.
    var(m.get(), "X")->SetBoundUpper(1.5);
    EXPECT_DOUBLE_EQ(m->EvaluateInitial("R", "X"), 1.5);
    EXPECT_THROW(m->EvaluateInitial("NOROW", "X"), ZEM_Exception);
    EXPECT_THROW(m->EvaluateInitial("R", "NOVAR"), ZEM_Exception);
}

TEST(ZEMMgr, UpdateEfloCopiesRowActivity) {
    ZEMMgrPtr m = productModel();
    ILPVariableList* vars = nullptr;
    m->GetVariableCollectionIntf(&vars);
    vars->InsertVariable("FLOW");
    EXPECT_EQ(m->UpdateEflo("R", "FLOW"), 0);
    EXPECT_DOUBLE_EQ(var(m.get(), "FLOW")->GetVarValue(), 14.0);
    EXPECT_EQ(m->UpdateEflo("R", "NOVAR"), 1);
    EXPECT_EQ(m->UpdateEflo("NOROW", "FLOW"), 1);
}

TEST(ZEMMgr, AppendFromZEMWithPrefixSharesExistingNames) {
    ZEMMgrPtr a = NewMgr();
    BuildRichModel(a.get());
    ZEMMgrPtr b = NewMgr();
    BuildRichModel(b.get());
    int n, r, nz;
    b->ModelDimension(n, r, nz);
    INonLinearModel* nl = nullptr;
    b->GetNonLinearModelIntf(&nl);
    const int terms = nl->NumberOfNonLinearities();

    b->AppendFromZEM(a.get(), "U1.", nullptr);
    int n2, r2, nz2;
    b->ModelDimension(n2, r2, nz2);
    EXPECT_EQ(n2, 2 * n);
    EXPECT_EQ(r2, 2 * r);
    EXPECT_EQ(nz2, 2 * nz);
    EXPECT_EQ(nl->NumberOfNonLinearities(), 2 * terms);
    ASSERT_NE(var(b.get(), "U1.X2"), nullptr);
    EXPECT_EQ(var(b.get(), "U1.X2")->GetBoundUpper(), 11.0);
    ILPVariableCollection* col = nullptr;
    b->FindNamedVarCollection("U1.IN", &col);
    ASSERT_NE(col, nullptr);
    EXPECT_EQ(col->CollectionSize(), 2);

    // Without a prefix every name exists: the entries add into the shared
    // rows and columns and nothing new is made.
    ZEMMgrPtr c = NewMgr();
    BuildRichModel(c.get());
    ILPMatrix* mx = nullptr;
    c->GetMatrixIntf(&mx);
    const double before = mx->ExistIncidence(eqn(c.get(), "L1")->GetIndex(),
                                             var(c.get(), "X2")->GetIndex())
                              ->GetCoefficient();
    c->AppendFromZEM(a.get(), nullptr, nullptr);
    int n3, r3, nz3;
    c->ModelDimension(n3, r3, nz3);
    EXPECT_EQ(n3, n);
    EXPECT_EQ(r3, r);
    EXPECT_EQ(nz3, nz);
    c->GetMatrixIntf(&mx);
    EXPECT_EQ(mx->ExistIncidence(eqn(c.get(), "L1")->GetIndex(), var(c.get(), "X2")->GetIndex())
                  ->GetCoefficient(),
              2 * before);

    // Appending a model to itself doubles it.
    ZEMMgrPtr d = NewMgr();
    BuildRichModel(d.get());
    d->AppendFromZEM(d.get(), "B_", "");
    int n4, r4, nz4;
    d->ModelDimension(n4, r4, nz4);
    EXPECT_EQ(n4, 2 * n);
}

TEST(ZEMMgr, PartsThatAreNotInThisBuild) {
    ZEMMgrPtr m = NewMgr();
    INLParameterList* params = reinterpret_cast<INLParameterList*>(m.get());
    m->GetNLBlockParameterList("B", &params);
    EXPECT_EQ(params, nullptr);
    EXPECT_FALSE(m->HasSCDModel());
    int status = 0;
    std::stringstream ss;
    m->XMPSWriteXML(&ss, &status);
    EXPECT_EQ(status, 1);
    status = 0;
    m->XMPSReadXML(&ss, &status);
    EXPECT_EQ(status, 1);
    m->SetSCDControl(nullptr, "x");
    EXPECT_EQ(m->GetSCDControl(), nullptr);
}
