// Builder, execution, transform and hierarchy companions, and the iteration
// data snapshot.
#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <functional>
#include <tuple>

#include "ZEMTestModel.h"
#include "zemmgr/IIterationData.h"
#include "zemmgr/IZEMHierarchy.h"
#include "zemmgr/IZEMModelExecution.h"
#include "zemmgr/IZEMModelTransform.h"

TEST(ZEMModelBuilder, PlainFormsReuseNamesNewFormsFillFields) {
    ZEMMgrPtr m = NewMgr();
    IZEMModelBuilder* b = Builder(m.get());
    EXPECT_EQ(Builder(m.get()), b);  // companions are made once
    IZEMModelExecution *x1 = nullptr, *x2 = nullptr;
    m->GetModelExecutionIntf(&x1);
    m->GetModelExecutionIntf(&x2);
    EXPECT_EQ(x1, x2);
    ILPVariable *v1 = nullptr, *v2 = nullptr;
    b->MakeAddReturnVariable("V", &v1);
    b->MakeAddReturnVariable("V", &v2);
    EXPECT_EQ(v1, v2);
    ILPVariable* n = nullptr;
    b->MakeAddReturnVariableNew("N", -2.0, 8.0, 3.0, 3, &n);
    EXPECT_EQ(std::make_tuple(n->GetBoundLower(), n->GetBoundUpper(), n->GetVarValue()),
              std::make_tuple(-2.0, 8.0, 3.0));
    EXPECT_EQ(std::make_tuple(n->GetVarType(), n->GetIndex()), std::make_tuple(int16_t(3), 2));

    ILPEquation *e1 = nullptr, *e2 = nullptr;
    b->MakeAddReturnEquation("E", &e1);
    b->MakeAddReturnEquation("E", &e2);
    EXPECT_EQ(e1, e2);
    ILPEquation* g = nullptr;
    b->MakeAddReturnEquationNew("G", 4, 10.0, -5.0, &g);
    EXPECT_EQ(std::make_tuple(int(g->GetType()), g->GetRHSLo(), g->GetRHSUp()),
              std::make_tuple(4, 10.0, 15.0));

    ILPNonZero *a = nullptr, *c = nullptr;
    b->MakeAddReturnLinearNonZeroNew(g, n, 1.5, &c);
    b->MakeAddReturnLinearNonZero("G", "N", 2.0, &a);  // through the manager's insertion
    EXPECT_EQ(a, c);  // summed into the same entry
    EXPECT_EQ(a->GetCoefficient(), 3.5);
}

TEST(ZEMModelBuilder, TermsAndSets) {
    ZEMMgrPtr m = NewMgr();
    IZEMModelBuilder* b = Builder(m.get());
    ILPVariable *x, *y;
    ILPEquation* r;
    b->MakeAddReturnVariableNew("X", 0, 10, 2.0, 1, &x);
    b->MakeAddReturnVariableNew("Y", 0, 10, 3.0, 1, &y);
    b->MakeAddReturnEquationNew("R", 2, 0.0, 0.0, &r);

    // Terms made by name and by code are filled and added through the
    // builder in the edit test below and in the flat functions' test.
    INonLinearity* byCode = nullptr;
    b->MakeNonLinearityByCode(3, r, &byCode);
    EXPECT_EQ(byCode->GetType(), 3);
    byCode->Destroy();  // never added to the pool
    INonLinearity* lg = nullptr;
    ILPVariable* arg[] = {x};
    const double c[] = {1.0, 1.0};
    b->MakeNonLinearityLog(r, 1, arg, 2, c, &lg);
    EXPECT_EQ(lg->GetType(), 2);
    INonLinearModel* nl = NL(m.get());
    EXPECT_EQ(nl->NumberOfNonLinearities(), 1);
    EXPECT_NEAR(nl->EvaluateRow(r->GetIndex()), std::log(3.0), 1e-12);

    ILPSpOrdSet* s = nullptr;
    ILPVariable* members[] = {x, y, x};
    b->MakeSpecialOrderedSet("S", 2, 3, members, &s);
    EXPECT_EQ(s->GetSize(), 2);
    EXPECT_EQ(s->GetType(), 2);
    ILPSpOrdSetList* sets = Sets(m.get());
    EXPECT_EQ(sets->SOSNameLookup("S"), s);
}

TEST(ZEMModelBuilder, FailureTexts) {
    ZEMMgrPtr m = NewMgr();
    IZEMModelBuilder* b = Builder(m.get());
    ILPVariable* x = nullptr;
    b->MakeAddReturnVariableNew("X", 0, 1, 0, 1, &x);
    ILPVariable* args[] = {x};
    const double c[] = {1.0};
    INonLinearity* t = nullptr;

    // Reason and routine of each refusal. A maker without a row cannot make
    // its term (one maker stands for those sharing that path); the power
    // makers report the exponential maker's function, the user-equation
    // maker the correlation maker's texts.
    const char* kNoTerm = " - Unable to create new Nonlinearity object";
    const struct {
        std::function<void()> call;
        std::string reason, routine;
    } cases[] = {
        {[&] { b->MakeNonLinearityByName("NOSUCH", nullptr, &t); },
         "MakeNonLinearityByName - Could not resolve nonlinearity by name",
         "MakeNonLinearityByName"},
        {[&] { b->MakeNonLinearityPow(nullptr, 1, args, 1, c, &t); },
         std::string("MakeNonLinearityPow") + kNoTerm, "MakeNonLinearityExp"},
        {[&] { b->MakeNonLinearityFastNLE("USEREQ:U", "", "", nullptr, 1, args, 1, c, &t); },
         std::string("MakeNonLinearityFastQCL") + kNoTerm, "MakeNonLinearityFastQCL"},
        {[&] { b->MakeAddLinearNonZeroNew(nullptr, x, 1.0); },
         "MakeAddLinearNonZeroNew - Unable to create new NonZero object",
         "MakeAddLinearNonZeroNew"},
        {[&] { b->MakeSpecialOrderedSet("S", 1, -1, nullptr, nullptr); },
         "MakeSpecialOrderedSet - Unable to create new Special Ordered Set object",
         "MakeSpecialOrderedSet"},
    };
    for (const auto& k : cases) {
        const Failure f = FailureOf(k.call);
        EXPECT_EQ(f.name, "ZEMModelBuilder Error") << k.reason;
        EXPECT_EQ(f.reason, k.reason);
        EXPECT_EQ(f.routine, "ZEMModelBuilder::" + k.routine);
    }
    INonLinearModel* nl = NL(m.get());
    EXPECT_EQ(nl->NumberOfNonLinearities(), 0);  // nothing half-made was kept
}

TEST(ZEMModelExecution, EvaluatesByNameAndReportsUnknownNames) {
    ZEMMgrPtr m = RichMgr();
    IZEMModelExecution* ex = nullptr;
    m->GetModelExecutionIntf(&ex);
    // E1 = 3 X1 + 2 X1 X2 + 4 with X1 = 0.5, X2 = 1.5.
    EXPECT_DOUBLE_EQ(ex->EvaluateEquation("E1"), 1.5 + 1.5 + 4.0);
    EXPECT_DOUBLE_EQ(ex->GetRowValue("E1"), 7.0);
    EXPECT_DOUBLE_EQ(ex->EquationResidual("E1"), 3.0);
    EXPECT_EQ(ex->EvaluateAllEquations(), 5);
    for (const char* op : {"EvaluateEquation", "GetRowValue"}) {
        Failure f = FailureOf([&] {
            if (std::string(op) == "GetRowValue")
                ex->GetRowValue("NOPE");
            else
                ex->EvaluateEquation("NOPE");
        });
        EXPECT_EQ(f.name, "ZEMModelExecution Error");
        EXPECT_EQ(f.reason, "Equation name not found");
        EXPECT_EQ(f.routine, std::string("ZEMModelExecution::") + op);
    }
}

TEST(ZEMModelTransform, FixScaleProjectDropRanges) {
    ZEMMgrPtr m = RichMgr();
    IZEMModelTransform* tr = nullptr;
    m->GetModelTransformIntf(&tr);

    EXPECT_TRUE(tr->FixVariable("X4", 2.5));
    EXPECT_EQ(Var(m.get(), "X4")->GetBoundLower(), 2.5);
    EXPECT_EQ(Var(m.get(), "X4")->GetVarStatus(), 3);
    EXPECT_FALSE(tr->FixVariable("NOPE", 1.0));

    // F1 is linear: 0.5 X5 + 6 X2.
    EXPECT_TRUE(tr->ScaleEquation("F1", -2.0));
    EXPECT_EQ(Entry(m.get(), "F1", "X2")->GetCoefficient(), -12.0);
    EXPECT_EQ(Eqn(m.get(), "F1")->GetEqnScale(), 5.0 * -2.0);
    // L1 (<=, range 2) is nonlinear: refused; G1 too.
    EXPECT_FALSE(tr->ScaleEquation("L1", 2.0));
    EXPECT_FALSE(tr->ScaleEquation("OBJ", 0.0));

    Var(m.get(), "X1")->SetVarValue(99.0);
    EXPECT_EQ(tr->ProjectValuesOntoBounds(), 1);
    EXPECT_EQ(Var(m.get(), "X1")->GetVarValue(), 10.0);
    EXPECT_EQ(tr->DropRanges(), 2);
    EXPECT_EQ(Eqn(m.get(), "G1")->GetRHSUp(), 1.0);
}

TEST(ZEMHierarchy, UnitsFromNames) {
    ZEMMgrPtr m = NewMgr();
    BuildRichModel(m.get(), "U1.");
    ZEMMgrPtr other = RichMgr();
    m->AppendFromZEM(other.get(), "U2.", nullptr);
    IZEMHierarchy* h = nullptr;
    m->GetZEMHierarchyIntf(&h);
    EXPECT_EQ(h->Units(), (std::vector<std::string>{"U1", "U2"}));
    EXPECT_EQ(h->UnitVariableCount("U2"), 5);
    EXPECT_EQ(h->UnitEquationCount("U1"), 5);
    EXPECT_EQ(h->CollectUnitVariables("U2", "U2VARS"), 5);
    EXPECT_EQ(h->CollectUnitVariables("U1", "U2VARS"), 5);  // refilled, not grown
    ILPVariableCollection* col = nullptr;
    m->FindNamedVarCollection("U2VARS", &col);
    EXPECT_STREQ(col->FrstVariableObject()->GetName(), "U1.X1");
    h->SetSeparator('_');
    EXPECT_TRUE(h->Units().empty());
}

TEST(ZEMIterationData, SnapshotAndRefresh) {
    IIterationData* empty = nullptr;
    IZEMIterationDataCreateInstance(&empty, 3, 0);
    ASSERT_NE(empty, nullptr);
    EXPECT_EQ(empty->NumberOfVarRecords(), 3);
    EXPECT_EQ(empty->NumberOfEqnRecords(), 0);
    empty->Destroy();

    ZEMMgrPtr m = RichMgr();
    IIterationData* it = nullptr;
    IZEMIterationDataCreateInstanceFromZEM(&it, m.get());
    ASSERT_NE(it, nullptr);
    ASSERT_EQ(it->NumberOfVarRecords(), 5);
    ASSERT_EQ(it->NumberOfEqnRecords(), 5);
    tVarIterDataStruct expected{};
    Var(m.get(), "X3")->PopulateVarIterStruct(expected);
    EXPECT_EQ(std::memcmp(&it->ArrayVarDataStruct()[2], &expected, sizeof expected), 0);

    std::vector<tVarIterDataStruct> before(it->ArrayVarDataStruct(),
                                           it->ArrayVarDataStruct() + 5);
    Var(m.get(), "X2")->SetVarValue(42.0);
    it->UpdateVarandEqnArrays(m.get());
    for (int k = 0; k < 5; ++k) {
        const bool same = std::memcmp(&before[k], &it->ArrayVarDataStruct()[k],
                                      sizeof(tVarIterDataStruct)) == 0;
        EXPECT_EQ(same, k != 1) << k;
    }
    it->Destroy();

    IZEMIterationDataCreateInstanceFromZEM(&it, nullptr);
    EXPECT_EQ(it, nullptr);
}

// Unknown names given to the builder are refused through the flat
// functions' test, which sees the builder's results.
TEST(ZEMModelBuilder, EditsOfWhatWasBuilt) {
    ZEMMgrPtr m = RichMgr();
    IZEMModelBuilder* b = Builder(m.get());
    INonLinearModel* nl = NL(m.get());

    ILPSpOrdSet* s = nullptr;
    b->FindSpecialOrderedSet("S1", &s);
    ASSERT_NE(s, nullptr);
    EXPECT_EQ(b->AddSpecialOrderedSetVariableByName(s, "X5"), 3);
    EXPECT_EQ(b->AddSpecialOrderedSetVariable(s, Var(m.get(), "X5")), 3);

    b->AddSoftBounds(Var(m.get(), "X4"), -50.0, 50.0);
    EXPECT_EQ(Var(m.get(), "X4")->GetRelaxedBoundUpper(), 50.0);

    // A term made by name and filled through the builder.
    INonLinearity* t = nullptr;
    b->MakeNonLinearityByName("XPROD", Eqn(m.get(), "F1"), &t);
    EXPECT_EQ(t->GetType(), 1);
    EXPECT_EQ(b->AddNonLinearityValue(t, 2.0), 1);
    EXPECT_EQ(b->AddNonLinearityVariableByName(t, "X4"), 1);
    EXPECT_EQ(b->AddNonLinearityVariable(t, Var(m.get(), "X4")), 2);
    const int before = nl->NumberOfNonLinearities();
    b->AddNonLinearity(t);
    EXPECT_EQ(nl->NumberOfNonLinearities(), before + 1);
    b->TrashNonLinearity(t);
    b->EmptyNonLinearityTrash();
    EXPECT_EQ(nl->NumberOfNonLinearities(), before);

    // X4 is linear again once that term is gone.
    EXPECT_TRUE(b->EliminateVariableByName("X4"));
    EXPECT_TRUE(b->EliminateEquationByName("F1"));
    EXPECT_EQ(Eqn(m.get(), "F1"), nullptr);
    EXPECT_THROW(b->EliminateVariable(Var(m.get(), "X1")), ZEM_Exception);
}
