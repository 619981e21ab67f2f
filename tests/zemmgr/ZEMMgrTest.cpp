// The model manager: life cycle, components, collections, removal, trash,
// evaluation helpers and appending other models.
#include <gtest/gtest.h>

#include <tuple>

#include "ZEMTestModel.h"

TEST(ZEMMgr, NewManagerDefaultsAndReferenceCounting) {
    ZEMMgrPtr m = NewMgr();
    // The title "MDL" shows in the empty model's file.
    EXPECT_EQ(std::make_tuple(m->MatrixIncludesObjective(), m->GetValuesInitialized(),
                              m->IsHybridModel(), m->GetRank(), m->GetTrace()),
              std::make_tuple(false, true, false, -1, 0));
    EXPECT_STREQ(m->GetModelDir(), "");
    IZEMMgr* viaData = nullptr;
    ZEMDataObjectFactory(&viaData);
    ASSERT_NE(viaData, nullptr);
    EXPECT_EQ(viaData->IAddRef(), 1);
    EXPECT_EQ(viaData->IRelease(), 0);  // destroyed here

    IZEMMgr* r = nullptr;
    ZEMObjectFactory(&r);
    ASSERT_NE(r, nullptr);
    // Releasing at 0 goes to -1 and does not destroy.
    EXPECT_EQ(r->IRelease(), -1);
    EXPECT_EQ(dynamic_cast<ZEMMgr*>(r)->GetRefCount(), -1);
    EXPECT_EQ(r->IAddRef(), 0);
    EXPECT_EQ(r->IAddRef(), 1);
    EXPECT_EQ(r->IAddRef(), 2);
    EXPECT_EQ(r->IRelease(), 1);
    EXPECT_EQ(r->IRelease(), 0);  // deleted; ASan reports any leak or reuse
}

TEST(ZEMMgr, ModelDirectory) {
    ZEMMgrPtr m = NewMgr();
    // Each call, then the directory it leaves.
    const struct {
        const char* set;
        const char* expected;
    } steps[] = {{"C:\\m", "C:\\m\\"},
                 {"C:\\m\\", "C:\\m\\"},
                 {nullptr, "C:\\m\\"},
                 {ZEMMgr::kEmptyString, "C:\\m\\"}};  // the library's own constant
    for (const auto& s : steps) {
        m->SetModelDir(s.set);
        EXPECT_STREQ(m->GetModelDir(), s.expected);
    }
    std::string empty;  // an empty text that is not the constant
    m->SetModelDir(empty.c_str());
    EXPECT_STREQ(m->GetModelDir(), "\\");
}

TEST(ZEMMgr, PurgeAndIfDirtyPurge) {
    ZEMMgrPtr m = NewMgr();
    m->IfDirtyPurgeContent();  // clean: nothing happens
    IZEMOptionTable* opt = Options(m.get());
    opt->SetOption("K", "V", nullptr);
    m->IfDirtyPurgeContent();  // options alone do not make it dirty
    opt = Options(m.get());
    EXPECT_STREQ(opt->GetOptionValue("K"), "V");

    ILPVariableList* vars = Vars(m.get());
    vars->InsertVariable("ONLY");
    m->SetHybridModel(true);
    m->SetRank(4);
    m->IfDirtyPurgeContent();  // a variable without rows is enough
    EXPECT_EQ(Dims(m.get())[0], 0);
    opt = Options(m.get());
    EXPECT_EQ(opt->GetOptionValue("K"), nullptr);
    EXPECT_FALSE(m->IsHybridModel());
    EXPECT_EQ(m->GetRank(), -1);

    BuildRichModel(m.get());
    m->PurgeContent();
    EXPECT_EQ(Dims(m.get()), (std::array<int, 3>{0, 0, 0}));
    ILPVariableCollection* col = nullptr;
    m->FrstNamedVarCollection(&col);
    EXPECT_EQ(col, nullptr);
    std::string title;
    m->GetModelTitle(title);
    EXPECT_EQ(title, "RICHMODEL");  // the title is not content
}

TEST(ZEMMgr, BaseModelDimension) {
    ZEMMgrPtr m = RichMgr();
    const std::array<int, 3> d = Dims(m.get());
    std::array<int, 3> base{};
    m->GetBaseModelDimension(base[0], base[1], base[2]);  // not stored: current
    EXPECT_EQ(base, d);
    m->StoreBaseModelDimension();
    ILPVariableList* vars = Vars(m.get());
    vars->InsertVariable("EXTRA");
    m->GetBaseModelDimension(base[0], base[1], base[2]);
    EXPECT_EQ(base, d);
}

TEST(ZEMMgr, NamedCollections) {
    ZEMMgrPtr m = RichMgr();
    ILPVariableCollection* c = nullptr;
    m->FindNamedVarCollection("OUT", &c);
    ASSERT_NE(c, nullptr);
    EXPECT_EQ(c->GetDirection(), -1);
    m->FindNamedVarCollection("NONE", &c);
    EXPECT_EQ(c, nullptr);

    ILPVariableCollection *same = nullptr, *in = nullptr;
    m->NewNamedVarCollection("IN", &same);  // existing name: the same one
    m->FindNamedVarCollection("IN", &in);
    EXPECT_EQ(same, in);

    auto order = [&] {
        std::string s;
        for (m->FrstNamedVarCollection(&c); c; m->NextNamedVarCollection(&c))
            s += std::string(c->Name()) + ";";
        return s;
    };
    EXPECT_EQ(order(), "IN;OUT;");
    EXPECT_TRUE(m->RemoveNamedVarCollection("IN"));
    EXPECT_FALSE(m->RemoveNamedVarCollection("IN"));
    EXPECT_EQ(order(), "OUT;");
    EXPECT_FALSE(m->AddNamedVarCollection(nullptr));
}

// Empty rows go in one batch: rows without entries, also those holding only
// a term without arguments (which goes with them); the rows after them move
// down with their entries and terms; pending variable trash is left.
TEST(ZEMMgr, ProcessFullCollectionDropsEmptyRowsAndCounts) {
    ZEMMgrPtr m = RichMgr();
    IZEMModelBuilder* b = Builder(m.get());
    ILPEquationList* eqns = Eqns(m.get());
    INonLinearModel* nl = NL(m.get());
    eqns->InsertEquation("EMPTY");
    ILPEquation* constOnly = eqns->InsertEquation("CONSTONLY");
    ILPEquation* kept = eqns->InsertEquation("KEPT");
    const double two[] = {2.0};
    b->MakeNonLinearityFast(4, constOnly, 0, nullptr, 1, two, nullptr);
    b->MakeAddLinearNonZeroNew(kept, Var(m.get(), "X5"), 2.0);
    ILPVariable* args[] = {Var(m.get(), "X3"), Var(m.get(), "X5")};
    b->MakeNonLinearityFast(1, kept, 2, args, 1, two, nullptr);
    const int terms = nl->NumberOfNonLinearities();
    ILPVariable* spare = nullptr;
    b->MakeAddReturnVariable("SPARE", &spare);
    m->TrashVariable(spare);
    m->ProcessFullCollection();
    EXPECT_EQ(eqns->EqnNameLookup("EMPTY"), nullptr);
    EXPECT_EQ(eqns->EqnNameLookup("CONSTONLY"), nullptr);
    EXPECT_EQ(eqns->NumberOfEquations(), 6);
    EXPECT_EQ(eqns->EqnNameLookup("KEPT"), kept);
    EXPECT_EQ(kept->GetIndex(), 6);
    EXPECT_EQ(nl->NumberOfNonLinearities(), terms - 1);
    EXPECT_EQ(nl->RowFrstNonLinearityObject(6)->GetEquationPtr(), kept);
    EXPECT_EQ(Matrix(m.get())->RowFrstNonZeroObject(6)->GetEquationPtr(), kept);
    EXPECT_EQ(Eqn(m.get(), "L1")->GetNumberNZ(), 2);
    EXPECT_EQ(Var(m.get(), "X1")->GetNumberNZ(), 3);  // OBJ, E1 (linear and term), G1 (term)
    EXPECT_EQ(Var(m.get(), "SPARE"), spare);
    m->EmptyAllTrash();
    EXPECT_EQ(Var(m.get(), "SPARE"), nullptr);
}

TEST(ZEMMgr, RemovalAndTrash) {
    ZEMMgrPtr m = RichMgr();
    // X5 is linear: it leaves its rows, sets and collections.
    m->RemoveVariable("X5");
    EXPECT_EQ(Var(m.get(), "X5"), nullptr);
    ILPSpOrdSetList* sets = Sets(m.get());
    EXPECT_EQ(sets->SOSNameLookup("S2")->GetSize(), 2);
    ILPVariableCollection* out = nullptr;
    m->FindNamedVarCollection("OUT", &out);
    EXPECT_EQ(out->CollectionSize(), 0);
    // X1 is in a term: refused, nothing changes.
    EXPECT_THROW(m->RemoveVariable("X1"), ZEM_Exception);
    EXPECT_NE(Var(m.get(), "X1"), nullptr);
    // An entry needs a known row and a known column (summing: the builder's test).
    EXPECT_THROW(m->InsertMatrixEntry("NOROW", "X4", 1.0, nullptr), ZEM_Exception);
    EXPECT_THROW(m->InsertMatrixEntry("L1", "NOCOL", 1.0, nullptr), ZEM_Exception);

    m->TrashVariable(Var(m.get(), "X4"));
    m->EmptyAllTrash();
    EXPECT_EQ(Var(m.get(), "X4"), nullptr);
    EXPECT_EQ(sets->SOSNameLookup("S2")->GetSize(), 1);
    m->RemoveEquation("F1");
    EXPECT_EQ(Eqn(m.get(), "F1"), nullptr);
    // The model still saves and restores after the edits (the counts are
    // brought up to date by the end-of-edit processing).
    m->ProcessFullCollection();
    ZEMMgrPtr b = NewMgr();
    Restore(b.get(), ModelBytes(m.get()));
    ExpectSameModel(m.get(), b.get());
}

TEST(ZEMMgr, LinearizationAtTheCurrentPoint) {
    // R = X - 2 y + 3 X y at X = 1, y = 2: value 3, slopes 1 + 3*2 = 7 and
    // -2 + 3*1 = 1.
    ZEMMgrPtr m = SmallMgr();
    m->SetupModelLinearization();
    ASSERT_NE(Entry(m.get(), "R", "X"), nullptr);
    EXPECT_DOUBLE_EQ(Entry(m.get(), "R", "X")->GetPartialDeriv(), 7.0);
    EXPECT_DOUBLE_EQ(Entry(m.get(), "R", "y")->GetPartialDeriv(), 1.0);
    EXPECT_DOUBLE_EQ(Eqn(m.get(), "R")->GetEqnValue(), 3.0);
    EXPECT_DOUBLE_EQ(Var(m.get(), "X")->GetBaseValue(), 1.0);
    EXPECT_DOUBLE_EQ(Eqn(m.get(), "R")->GetBaseValue(), 3.0);

    // Linearizing replaces the term by its tangent.
    m = SmallMgr();
    m->LinearizeGeneralNonlinear();
    INonLinearModel* nl = NL(m.get());
    EXPECT_EQ(nl->NumberOfNonLinearities(), 0);
    ILPEquation* r = Eqn(m.get(), "R");
    EXPECT_EQ(r->GetNonlinear(), 0);
    EXPECT_DOUBLE_EQ(Entry(m.get(), "R", "X")->GetCoefficient(), 7.0);
    EXPECT_DOUBLE_EQ(Entry(m.get(), "R", "y")->GetCoefficient(), 1.0);
    EXPECT_EQ(Entry(m.get(), "R", "X")->GetNonlinear(), 0);
    // f(x) = 3, J x = 9: the constant -6 moves to the right-hand side.
    EXPECT_DOUBLE_EQ(r->GetRHS(), 7.0);
    // At the point the row keeps its residual.
    EXPECT_DOUBLE_EQ(nl->EvaluateRow(r->GetIndex()) - r->GetRHS(), 3.0 - 1.0);
    // Away from the point it is the tangent: X = 3 gives 7*3 + 1*2.
    Var(m.get(), "X")->SetVarValue(3.0);
    EXPECT_DOUBLE_EQ(nl->EvaluateRow(r->GetIndex()), 23.0);
}

TEST(ZEMMgr, EvaluateInitialAndUpdateEflo) {
    ZEMMgrPtr m = SmallMgr();
    // X - 4 + 6 X = 1 with y = 2: X = 5 / 7.
    EXPECT_NEAR(m->EvaluateInitial("R", "X"), 5.0 / 7.0, 1e-9);
    EXPECT_NEAR(Var(m.get(), "X")->GetVarValue(), 5.0 / 7.0, 1e-9);
    // Without a variable: the row's value.
    Var(m.get(), "X")->SetVarValue(1.0);
    EXPECT_DOUBLE_EQ(m->EvaluateInitial("R", nullptr), 3.0);
    // The bound stops the solve.
    Var(m.get(), "X")->SetBoundUpper(0.5);
    EXPECT_DOUBLE_EQ(m->EvaluateInitial("R", "X"), 0.5);
    EXPECT_THROW(m->EvaluateInitial("NOROW", "X"), ZEM_Exception);
    EXPECT_THROW(m->EvaluateInitial("R", "NOVAR"), ZEM_Exception);

    // UpdateEflo copies the row's activity into a variable.
    m = SmallMgr();
    ILPVariableList* vars = Vars(m.get());
    vars->InsertVariable("FLOW");
    EXPECT_EQ(m->UpdateEflo("R", "FLOW"), 0);
    EXPECT_DOUBLE_EQ(Var(m.get(), "FLOW")->GetVarValue(), 3.0);
    EXPECT_EQ(m->UpdateEflo("R", "NOVAR"), 1);
    EXPECT_EQ(m->UpdateEflo("NOROW", "FLOW"), 1);
}

TEST(ZEMMgr, AppendFromZEMWithPrefixSharesExistingNames) {
    ZEMMgrPtr a = RichMgr();
    ZEMMgrPtr b = RichMgr();
    const std::array<int, 3> d = Dims(b.get());
    const std::array<int, 3> twice{2 * d[0], 2 * d[1], 2 * d[2]};
    INonLinearModel* nl = NL(b.get());
    const int terms = nl->NumberOfNonLinearities();

    b->AppendFromZEM(a.get(), "U1.", nullptr);
    EXPECT_EQ(Dims(b.get()), twice);
    EXPECT_EQ(nl->NumberOfNonLinearities(), 2 * terms);
    ASSERT_NE(Var(b.get(), "U1.X2"), nullptr);
    EXPECT_EQ(Var(b.get(), "U1.X2")->GetBoundUpper(), 11.0);
    ILPVariableCollection* col = nullptr;
    b->FindNamedVarCollection("U1.IN", &col);
    ASSERT_NE(col, nullptr);
    EXPECT_EQ(col->CollectionSize(), 2);

    // Without a prefix every name is shared and appending is a union: the
    // same model appended, or a model appended to itself, changes nothing.
    ZEMMgrPtr c = RichMgr();
    const std::string bytes = ModelBytes(c.get());
    c->AppendFromZEM(a.get(), nullptr, nullptr);
    c->AppendFromZEM(c.get(), "", "");
    EXPECT_EQ(ModelBytes(c.get()), bytes);

    // With a prefix, a model appended to itself gains a renamed copy.
    ZEMMgrPtr self = RichMgr();
    self->AppendFromZEM(self.get(), "B_", "");
    EXPECT_EQ(Dims(self.get()), twice);
    EXPECT_EQ(Entry(self.get(), "B_L1", "B_X2")->GetCoefficient(), Entry(self.get(), "L1", "X2")->GetCoefficient());
}

