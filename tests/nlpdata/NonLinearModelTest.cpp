// The nonlinear model's pool: adding terms, their matrix entries, walks,
// removal and trash.
#include <gtest/gtest.h>

#include <tuple>

#include <sstream>

#include "NLRig.h"
#include "lpdata/ZEMException.h"
#include "nlpdata/NLTypeCodes.h"

namespace {

class NonLinearModelAdd : public ::testing::Test {
protected:
    ModelRig m;
    ILPEquation* r = m.Row("R1");
    ILPVariable* x = m.Var("X");
};

TEST_F(NonLinearModelAdd, TermOverNewVariableMakesAZeroEntryAndReusesIt) {
    ILPVariable* y = m.Var("Y");
    m.Coef(r, y, 4.0);
    INonLinearity* t1 = m.Term("XPROD", r, {2.0}, {x, y});
    EXPECT_EQ(m.matrix->NumberOfNonZeros(), 2);
    ILPNonZero* nx = m.matrix->ExistIncidence(r->GetIndex(), x->GetIndex());
    ILPNonZero* ny = m.matrix->ExistIncidence(r->GetIndex(), y->GetIndex());
    ASSERT_NE(nx, nullptr);
    EXPECT_EQ(nx->GetCoefficient(), 0.0);
    EXPECT_EQ(ny->GetCoefficient(), 4.0);  // the linear entry is reused as it is
    EXPECT_EQ(t1->FrstNZ(), nx);           // entries follow the distinct arguments
    EXPECT_EQ(t1->NextNZ(), ny);
    EXPECT_EQ(t1->NextNZ(), nullptr);

    INonLinearity* t2 = m.Term("LNX", r, {1.0}, {x});
    EXPECT_EQ(m.matrix->NumberOfNonZeros(), 2);
    EXPECT_EQ(t2->FrstNZ(), nx);
    // Nonlinear marks of the entries, the variables and the row.
    EXPECT_EQ(std::make_tuple(nx->GetNonlinear(), ny->GetNonlinear(), x->GetNonlinear(), y->GetNonlinear(),
                              r->GetNonlinear()),
              std::make_tuple(2, 1, 2, 1, 2));

    // A repeated argument gets one entry and one count.
    ILPVariable* z = m.Var("Z");
    INonLinearity* t3 = m.Term("XPROD", r, {1.0}, {z, z});
    EXPECT_EQ(m.matrix->NumberOfNonZeros(), 3);
    EXPECT_EQ(z->GetNonlinear(), 1);
    EXPECT_EQ(t3->FrstNZ()->GetNonlinear(), 1);
    EXPECT_EQ(t3->NextNZ(), nullptr);
}

TEST_F(NonLinearModelAdd, IndicesCountsAndTypeCounts) {
    INonLinearity* a = m.Term("XPROD", r, {1.0}, {x});
    INonLinearity* b = m.Make("EXPX", r, {1.0}, {x});
    b->SetBlkMember(2);
    EXPECT_EQ(m.model->AddNonLinearityObject(b), 2);
    INonLinearity* c = m.Term("XPROD", r, {1.0}, {x});
    EXPECT_EQ(a->GetIndex(), 1);
    EXPECT_EQ(c->GetIndex(), 3);
    EXPECT_EQ(m.model->NumberOfNonLinearities(), 3);
    EXPECT_EQ(m.model->NumberOfPersistedNonLinearities(), 2);
    EXPECT_EQ(std::make_tuple(m.model->NonLinearityTypeCount(kNLProduct), m.model->NonLinearityTypeCount(kNLExponentialX),
                              m.model->NonLinearityTypeCount(kNLEI)),
              std::make_tuple(2, 1, 0));
    m.model->ProcessNonLinearModel();
    EXPECT_EQ(m.model->NonLinearityTypeCount(kNLProduct), 2);
}

TEST_F(NonLinearModelAdd, RefusesTermsItCannotPlace) {
    EXPECT_THROW(m.model->AddNonLinearityObject(nullptr), ZEM_Exception);
    INonLinearity* noRow = m.Make("XPROD", nullptr, {1.0}, {x});
    EXPECT_THROW(m.model->AddNonLinearityObject(noRow), ZEM_Exception);
    noRow->Destroy();
    ILPVariable* stray = nullptr;
    m.vars->CreateNewVariableObject(&stray);  // never added: index 0
    stray->SetName("STRAY");
    INonLinearity* bad = m.Make("XPROD", r, {1.0}, {x, stray});
    EXPECT_THROW(m.model->AddNonLinearityObject(bad), ZEM_Exception);
    bad->Destroy();
    delete stray;
    INonLinearity* ok = m.Term("XPROD", r, {1.0}, {x});
    EXPECT_THROW(m.model->AddNonLinearityObject(ok), ZEM_Exception);
    // Nothing of the refused attempts is left behind.
    EXPECT_EQ(std::make_tuple(m.model->NumberOfNonLinearities(), m.matrix->NumberOfNonZeros(), x->GetNonlinear(),
                              r->GetNonlinear()),
              std::make_tuple(1, 1, 1, 1));
}

TEST_F(NonLinearModelAdd, WalksByPoolByRowAndRetrieval) {
    ILPEquation* r2 = m.Row("R2");
    ILPEquation* r3 = m.Row("R3");
    INonLinearity* a = m.Term("LNX", r3, {1.0}, {x});
    INonLinearity* b = m.Term("LNX", r, {1.0}, {x});
    INonLinearity* c = m.Term("LNX", r3, {1.0}, {x});
    INonLinearity* d = m.Term("LNX", r2, {1.0}, {x});
    EXPECT_EQ(m.Pool(), (std::vector<INonLinearity*>{a, b, c, d}));
    EXPECT_EQ(m.RowTerms(3), (std::vector<INonLinearity*>{a, c}));
    EXPECT_TRUE(m.RowTerms(0).empty());
    EXPECT_TRUE(m.RowTerms(99).empty());
    std::vector<INonLinearity*> byRow;
    for (INonLinearity* t = m.model->FrstNonLinearityObjectByRow(); t; t = m.model->NextNonLinearityObjectByRow())
        byRow.push_back(t);
    EXPECT_EQ(byRow, (std::vector<INonLinearity*>{b, d, a, c}));
    INonLinearity* got = nullptr;
    m.model->RetrieveNonLinearityObject(3, &got);
    EXPECT_EQ(got, c);
    m.model->RetrieveNonLinearityObject(0, &got);
    EXPECT_EQ(got, a);
    m.model->RetrieveNonLinearityObject(5, &got);
    EXPECT_EQ(got, nullptr);
}

TEST_F(NonLinearModelAdd, CheckNonLinearVariableAndBilinearLookup) {
    ILPEquation* r2 = m.Row("R2");
    ILPVariable* y = m.Var("Y");
    ILPVariable* z = m.Var("Z");
    ILPVariable* w = m.Var("W");
    m.Coef(r, w, 1.0);
    m.Term("XPROD", r, {1.0}, {x, y, z});  // three arguments: not bilinear
    INonLinearity* bl = m.Term("XPROD", r2, {1.0}, {y, z});
    EXPECT_EQ(m.model->CheckNonLinearVariable(w), nullptr);
    EXPECT_EQ(m.model->CheckNonLinearVariable(z)->GetEquationPtr(), r);
    EXPECT_EQ(m.model->GetFirstBiLinearVarEqn(z->GetIndex(), r->GetIndex()), nullptr);
    EXPECT_EQ(m.model->GetFirstBiLinearVarEqn(z->GetIndex(), r2->GetIndex()), bl);
    EXPECT_EQ(m.model->GetFirstBiLinearVarEqn(x->GetIndex(), r2->GetIndex()), nullptr);
}

TEST_F(NonLinearModelAdd, CreationDispatchAndOverrideFactory) {
    INonLinearity* t = nullptr;
    m.model->CreateNonLinearityObject(kNLProduct, &t);
    EXPECT_EQ(t->GetType(), kNLProduct);
    t->Destroy();
    int16_t code = 0;
    m.model->NonlinearityTypeNameToTypeID("XPROD2", &code);
    EXPECT_EQ(code, kNLProduct2);
    // Equation terms are made by the model and keep their whole identifier;
    // unknown names are kept too. (A user equation's p1, its formula, must
    // agree with the one its name carries.)
    const struct {
        const char* name;
        int16_t code;
    } named[] = {{"SCDEQ:A", kNLSCDEquation}, {"QCLEQ:ABC", kNLQCLEquation}, {"USEREQ:p1", kNLNLEEquation},
                 {"WRAPEQ:W", kNLWrap},       {"NOSUCH", kNLUnknown}};
    for (const auto& e : named) {
        m.model->CreateNonLinearityObject(e.name, &t, "p1", "p2");
        ASSERT_NE(t, nullptr) << e.name;
        EXPECT_EQ(t->GetType(), e.code) << e.name;
        EXPECT_STREQ(t->GetNonLinearityID(), e.name);
        t->Destroy();
    }
    INLConstant* c = nullptr;
    m.model->CreateNLConstantObject(&c);
    ASSERT_NE(c, nullptr);
    EXPECT_EQ(c->GetValue(), 0.0);
    c->Destroy();

    // An override factory is referenced, used, and released with the model.
    bool destroyed = false;
    CountingFactory* f = new CountingFactory(&destroyed);
    {
        ModelRig local;
        f->IAddRef();  // the test's own reference
        local.model->OverrideNonLinearityFactory(f);
        EXPECT_EQ(f->registrySet, 1);
        local.model->OverrideNonLinearityFactory(nullptr);  // ignored
        local.model->OverrideNonLinearityFactory(f);        // same factory again
        EXPECT_EQ(f->IAddRef(), 3);
        f->IRelease();
        local.model->CreateNonLinearityObject("EXPX", &t);
        EXPECT_EQ(f->made, 1);
        t->Destroy();
        f->IRelease();
        EXPECT_FALSE(destroyed);  // still held by the model
    }
    EXPECT_TRUE(destroyed);
}

class NonLinearModelRemove : public ::testing::Test {
protected:
    void SetUp() override {
        r1 = m.Row("R1");
        r2 = m.Row("R2");
        r3 = m.Row("R3");
        x = m.Var("X");
        y = m.Var("Y");
        lin = m.Var("L");
        m.Coef(r1, lin, 5.0);
        m.Coef(r2, lin, 6.0);
        m.Coef(r2, y, 7.0);
        t1 = m.Term("XPROD", r1, {2.0}, {x, y});
        t2 = m.Term("LNX", r2, {1.0}, {y});
        t3 = m.Term("EXPX", r3, {1.0}, {x});
    }
    ModelRig m;
    ILPEquation *r1, *r2, *r3;
    ILPVariable *x, *y, *lin;
    INonLinearity *t1, *t2, *t3;
};

TEST_F(NonLinearModelRemove, VariableUsedByATermIsRefusedWithTheExactTexts) {
    const int nz = m.matrix->NumberOfNonZeros();
    try {
        m.model->EliminateVariable(y);
        FAIL() << "no exception";
    } catch (ZEM_Exception& e) {
        EXPECT_EQ(e.Name(), "NonLinear Matrix Edit Error - Can't Remove NonLinear Variables");
        EXPECT_EQ(e.Reason(), "NonLinearity : R1 : Y");
        EXPECT_EQ(e.Routine(), "NonLinearModel::EliminateVariable");
        EXPECT_EQ(e.SourceFile(), "nlpdata");
    }
    EXPECT_THROW(m.model->TrashVariable(x), ZEM_Exception);
    EXPECT_EQ(m.matrix->NumberOfNonZeros(), nz);
}

TEST_F(NonLinearModelRemove, RemovingATermLowersCountsAndRenumbers) {
    ILPNonZero* nx = t1->FrstNZ();
    const int nz = m.matrix->NumberOfNonZeros();
    m.model->RemoveNonLinearity(t1);
    EXPECT_EQ(m.model->NumberOfNonLinearities(), 2);
    EXPECT_EQ(m.model->NumberOfPersistedNonLinearities(), 2);
    EXPECT_EQ(std::make_pair(t2->GetIndex(), t3->GetIndex()), std::make_pair(1, 2));
    EXPECT_EQ(std::make_tuple(r1->GetNonlinear(), x->GetNonlinear(), y->GetNonlinear(), nx->GetNonlinear()),
              std::make_tuple(0, 1, 1, 0));
    EXPECT_EQ(m.matrix->NumberOfNonZeros(), nz);  // entries stay
    EXPECT_TRUE(m.RowTerms(1).empty());
    EXPECT_EQ(m.RowTerms(3), std::vector<INonLinearity*>{t3});
    EXPECT_EQ(m.model->NonLinearityTypeCount(kNLProduct), 0);
    // A variable only in linear entries loses them.
    m.model->EliminateVariable(lin);
    EXPECT_EQ(m.matrix->ColFrstNonZeroObject(lin->GetIndex()), nullptr);
    EXPECT_EQ(m.model->CheckNonLinearVariable(x), t3);
}

TEST_F(NonLinearModelRemove, TrashAndBulkRemovalSkipRepeatsAndStrangers) {
    m.model->TrashNonLinearity(t1);
    m.model->TrashNonLinearity(t1);
    m.model->TrashNonLinearity(t3);
    EXPECT_EQ(m.model->NumberOfNonLinearities(), 3);  // trash keeps them until emptied
    m.model->RemoveNonLinearity(t3);                  // removed at once, leaves the trash
    m.model->EmptyNonLinearityTrash();
    EXPECT_EQ(m.Pool(), std::vector<INonLinearity*>{t2});
    EXPECT_EQ(t2->GetIndex(), 1);
    m.model->EmptyNonLinearityTrash();
    EXPECT_EQ(m.model->NumberOfNonLinearities(), 1);

    ModelRig n;
    ILPEquation* r = n.Row("R");
    ILPVariable* v = n.Var("V");
    INonLinearity* a = n.Term("XPROD", r, {1.0}, {v});
    INonLinearity* b = n.Term("EXPX", r, {1.0}, {v});
    INonLinearity* c = n.Term("LNX", r, {1.0}, {v});
    INonLinearity* stranger = n.Make("XPROD", r, {1.0}, {v});
    INonLinearity* list[] = {c, stranger, c, nullptr, a};
    n.model->BulkRemoveNonLinearity(list, 5);
    EXPECT_EQ(n.Pool(), std::vector<INonLinearity*>{b});
    stranger->Destroy();
}

TEST_F(NonLinearModelRemove, RowsRemovedTrashedOrShiftedAreFollowed) {
    // A row without terms removed by the equation list alone (as empty rows
    // are after a read) shifts the later rows; the row lists follow.
    ILPEquation* empty = m.eqns->InsertEquation("EMPTY");
    ILPEquation* r5 = m.Row("R5");
    INonLinearity* t5 = m.Term("EXPX", r5, {1.0}, {x});
    m.eqns->RemoveEquation(empty);
    EXPECT_EQ(r5->GetIndex(), 4);
    EXPECT_EQ(m.RowTerms(4), std::vector<INonLinearity*>{t5});

    m.model->EliminateEquation(r2);
    EXPECT_EQ(r2->GetNonlinear(), 0);
    EXPECT_EQ(m.matrix->RowFrstNonZeroObject(r2->GetIndex()), nullptr);
    m.eqns->RemoveEquation(r2);
    EXPECT_EQ(r3->GetIndex(), 2);
    EXPECT_EQ(m.RowTerms(2), std::vector<INonLinearity*>{t3});
    EXPECT_EQ(m.RowTerms(3), std::vector<INonLinearity*>{t5});
    EXPECT_EQ(m.model->NumberOfNonLinearities(), 3);
    EXPECT_EQ(y->GetNonlinear(), 1);

    m.model->TrashEquation(r1);
    EXPECT_EQ(m.model->NumberOfNonLinearities(), 3);
    m.model->EmptyAllTrash();
    EXPECT_EQ(m.model->NumberOfNonLinearities(), 2);
    EXPECT_EQ(r1->GetNonlinear(), 0);
    EXPECT_EQ(m.matrix->RowFrstNonZeroObject(r1->GetIndex()), nullptr);
}

TEST_F(NonLinearModelRemove, FirstDistillationTermIsFoundInThePoolAndForgottenWithIt) {
    EXPECT_EQ(m.model->FrstNonLinearitySCDEquation(), nullptr);
    INonLinearity* scd = m.Term("SCDEQ:COL1", r3, {}, {x});
    m.Term("SCDEQ:COL2", r3, {}, {y});
    EXPECT_EQ(m.model->FrstNonLinearitySCDEquation(), scd);
    m.model->SetFrstNonLinearitySCDEquation(t2);
    EXPECT_EQ(m.model->FrstNonLinearitySCDEquation(), t2);
    m.model->RemoveNonLinearity(t2);  // forgotten: the pool's first is found again
    EXPECT_EQ(m.model->FrstNonLinearitySCDEquation(), scd);
}

TEST(NonLinearModelListing, DisplayShowsMatrixThenPoolAndByColumnOrders) {
    ModelRig m;
    ILPEquation* r = m.Row("R1");
    ILPVariable* x = m.Var("X");
    ILPVariable* y = m.Var("Y");
    m.Term("EXPX", r, {1.0}, {y});
    std::ostringstream os, matrixOnly, term;
    m.model->Display(os);
    m.matrix->Display(matrixOnly);
    m.model->FrstNonLinearityObject()->Display(term);
    EXPECT_EQ(os.str(),
              "\nD I S P L A Y   O F   N O N L I N E A R   M O D E L\n"
              "- - - - - - -   - -   - - - - - - - - -   - - - - -\n\n" +
                  matrixOnly.str() +
                  "\n\nN O N L I N E A R I T Y   P O O L\n"
                  "- - - - - - - - - - - -   - - - -\n\n" +
                  term.str() + "\n");
    m.Term("LNX", r, {1.0}, {x});
    std::ostringstream col;
    m.model->DisplayByColumn(col);
    EXPECT_LT(col.str().find("NATURAL LOG"), col.str().find("EXPONENTIAL X"));
}

}  // namespace
