#include "ZEMTestModel.h"

#include <gtest/gtest.h>

#include <sstream>
#include <vector>

#include "lpdata/ILPEquation.h"
#include "lpdata/ILPEquationList.h"
#include "lpdata/ILPMatrix.h"
#include "lpdata/ILPNonZero.h"
#include "lpdata/ILPSpOrdSet.h"
#include "lpdata/ILPVariable.h"
#include "lpdata/ILPVariableCollection.h"
#include "lpdata/ILPVariableList.h"
#include "nlpdata/INonLinearModel.h"
#include "zemmgr/IZEMModelBuilder.h"
#include "zemmgr/IZEMOptionTable.h"

ZEMMgrPtr NewMgr() {
    IZEMMgr* m = nullptr;
    ZEMObjectFactory(&m);
    m->IAddRef();
    return ZEMMgrPtr(m);
}

void BuildRichModel(IZEMMgr* mgr, const std::string& p) {
    IZEMModelBuilder* b = nullptr;
    mgr->GetModelBuilderIntf(&b);
    mgr->SetModelTitle("RICHMODEL");

    ILPVariable* x[5] = {};
    for (int i = 0; i < 5; ++i) {
        const std::string name = p + "X" + std::to_string(i + 1);
        b->MakeAddReturnVariableNew(name.c_str(), -1.0 - i, 10.0 + i, 0.5 + i,
                                    static_cast<int16_t>(i < 2 ? 1 : i - 1), &x[i]);
        x[i]->SetBaseValue(0.25 * i);
        x[i]->SetPersistentValue(0.125 * i + 1);
        x[i]->SetTempBoundLower(-0.5 * i);
        x[i]->SetStepBound(3.0 + i);
        x[i]->SetSampleBoundLower(-7.0 - i);
        x[i]->SetSampleBoundUpper(7.0 + i);
        x[i]->SetVarStatus(static_cast<int16_t>(1 + i % 5));
        x[i]->SetVarShadowPrice(0.01 * (i + 1));
    }
    struct RowSpec {
        const char* name;
        int16_t type;
        double rhs, range;
    };
    const RowSpec specs[] = {{"OBJ", 1, 0.0, 0.0},
                             {"E1", 2, 4.0, 0.0},
                             {"L1", 3, 9.0, 2.0},
                             {"G1", 4, 1.0, 3.0},
                             {"F1", 5, 0.0, 0.0}};
    ILPEquation* r[5] = {};
    for (int i = 0; i < 5; ++i) {
        const std::string name = p + specs[i].name;
        b->MakeAddReturnEquationNew(name.c_str(), specs[i].type, specs[i].rhs, specs[i].range,
                                    &r[i]);
        r[i]->SetEqnValue(1.5 * i);
        r[i]->SetBaseValue(0.75 * i);
        r[i]->SetShadowPrice(-0.2 * i);
        r[i]->SetEqnScale(1.0 + i);
    }
    // Linear entries: every row gets at least one.
    b->MakeAddLinearNonZeroNew(r[0], x[0], 1.0);
    b->MakeAddLinearNonZeroNew(r[0], x[4], -2.5);
    b->MakeAddLinearNonZeroNew(r[1], x[0], 3.0);
    b->MakeAddLinearNonZeroNew(r[2], x[1], 1.25);
    b->MakeAddLinearNonZeroNew(r[2], x[2], -1.0);
    b->MakeAddLinearNonZeroNew(r[3], x[3], 2.0);
    b->MakeAddLinearNonZeroNew(r[4], x[4], 0.5);
    b->MakeAddLinearNonZeroNew(r[4], x[1], 6.0);

    ILPVariable* prod[] = {x[0], x[1]};
    const double two[] = {2.0};
    b->MakeNonLinearityFast(1, r[1], 2, prod, 1, two, nullptr);
    ILPVariable* logArg[] = {x[2]};
    const double logC[] = {1.5, 0.5};
    b->MakeNonLinearityLog(r[2], 1, logArg, 2, logC, nullptr);
    ILPVariable* expArg[] = {x[0]};
    const double expC[] = {0.1};
    b->MakeNonLinearityExp(r[3], 1, expArg, 1, expC, nullptr);
    const double four[] = {4.0};
    b->MakeNonLinearityFast(4, r[1], 0, nullptr, 1, four, nullptr);

    ILPVariable* s1[] = {x[0], x[1]};
    ILPVariable* s2[] = {x[2], x[3], x[4]};
    b->MakeSpecialOrderedSet((p + "S1").c_str(), 1, 2, s1, nullptr);
    b->MakeSpecialOrderedSet((p + "S2").c_str(), 2, 3, s2, nullptr);

    IZEMOptionTable* opt = nullptr;
    mgr->GetOptionTableIntf(&opt);
    opt->SetOption("A", "1", nullptr);
    opt->SetOption("B", nullptr, "2");
    opt->SetOption("C", "3", "4");

    ILPVariableCollection* in = nullptr;
    mgr->NewNamedVarCollection((p + "IN").c_str(), &in);
    in->SetDirection(1);
    in->SetType(7);
    in->AddVariableObject(x[0]);
    in->AddVariableObject(x[1]);
    ILPVariableCollection* out = nullptr;
    mgr->NewNamedVarCollection((p + "OUT").c_str(), &out);
    out->SetDirection(-1);
    out->AddVariableObject(x[4]);

    mgr->IncludeObjectiveInMatrix();
    mgr->SetValuesInitialized(false);
    mgr->SetHybridModel(true);
    mgr->ProcessFullCollection();
}

namespace {

std::vector<std::string> memberNames(ILPVariableCollection* c) {
    std::vector<std::string> out;
    for (ILPVariable* v = c->FrstVariableObject(); v; v = c->NextVariableObject())
        out.push_back(v->GetName());
    return out;
}

std::vector<std::string> setNames(ILPSpOrdSet* s) {
    std::vector<std::string> out;
    for (ILPVariable* v = s->FrstSetVar(); v; v = s->NextSetVar()) out.push_back(v->GetName());
    return out;
}

struct TermView {
    int type;
    std::string row;
    std::vector<std::string> vars;
    std::vector<double> consts;
    bool operator==(const TermView& o) const {
        return type == o.type && row == o.row && vars == o.vars && consts == o.consts;
    }
};

std::vector<TermView> terms(IZEMMgr* m) {
    INonLinearModel* nl = nullptr;
    m->GetNonLinearModelIntf(&nl);
    std::vector<TermView> out;
    for (INonLinearity* t = nl->FrstNonLinearityObject(); t; t = nl->NextNonLinearityObject()) {
        TermView tv{t->GetType(), t->GetEquationPtr() ? t->GetEquationPtr()->GetName() : "", {}, {}};
        for (ILPVariable* v = t->FrstVar(); v; v = t->NextVar()) tv.vars.push_back(v->GetName());
        for (INLConstant* c = t->FrstNLConst(); c; c = t->NextNLConst())
            tv.consts.push_back(c->GetValue());
        out.push_back(tv);
    }
    return out;
}

}  // namespace

void ExpectSameModel(IZEMMgr* a, IZEMMgr* b, bool compareTitleAndFlags) {
    if (compareTitleAndFlags) {
        std::string ta, tb;
        a->GetModelTitle(ta);
        b->GetModelTitle(tb);
        EXPECT_EQ(ta, tb);
        EXPECT_EQ(a->MatrixIncludesObjective(), b->MatrixIncludesObjective());
        EXPECT_EQ(a->GetValuesInitialized(), b->GetValuesInitialized());
        EXPECT_EQ(a->IsHybridModel(), b->IsHybridModel());
    }
    int na, ma, nza, nb, mb, nzb;
    a->ModelDimension(na, ma, nza);
    b->ModelDimension(nb, mb, nzb);
    ASSERT_EQ(na, nb);
    ASSERT_EQ(ma, mb);
    ASSERT_EQ(nza, nzb);

    ILPVariableList *va, *vb;
    a->GetVariableCollectionIntf(&va);
    b->GetVariableCollectionIntf(&vb);
    for (ILPVariable *x = va->FrstVariableObject(), *y = vb->FrstVariableObject(); x && y;
         x = va->NextVariableObject(), y = vb->NextVariableObject()) {
        SCOPED_TRACE(x->GetName());
        EXPECT_STREQ(x->GetName(), y->GetName());
        EXPECT_EQ(x->GetIndex(), y->GetIndex());
        EXPECT_EQ(x->GetVarValue(), y->GetVarValue());
        EXPECT_EQ(x->GetBoundLower(), y->GetBoundLower());
        EXPECT_EQ(x->GetBoundUpper(), y->GetBoundUpper());
        EXPECT_EQ(x->GetBaseValue(), y->GetBaseValue());
        EXPECT_EQ(x->GetPersistentValue(), y->GetPersistentValue());
        EXPECT_EQ(x->GetTempBoundLower(), y->GetTempBoundLower());
        EXPECT_EQ(x->GetStepBound(), y->GetStepBound());
        EXPECT_EQ(x->GetSampleBoundLower(), y->GetSampleBoundLower());
        EXPECT_EQ(x->GetSampleBoundUpper(), y->GetSampleBoundUpper());
        EXPECT_EQ(x->GetVarType(), y->GetVarType());
        EXPECT_EQ(x->GetVarStatus(), y->GetVarStatus());
        EXPECT_EQ(x->GetNonlinear(), y->GetNonlinear());
        EXPECT_EQ(x->GetVarShadowPrice(), y->GetVarShadowPrice());
        EXPECT_EQ(x->GetNumberNZ(), y->GetNumberNZ());
    }
    ILPEquationList *ea, *eb;
    a->GetEquationCollectionIntf(&ea);
    b->GetEquationCollectionIntf(&eb);
    for (ILPEquation *x = ea->FrstEquationObject(), *y = eb->FrstEquationObject(); x && y;
         x = ea->NextEquationObject(), y = eb->NextEquationObject()) {
        SCOPED_TRACE(x->GetName());
        EXPECT_STREQ(x->GetName(), y->GetName());
        EXPECT_EQ(x->GetIndex(), y->GetIndex());
        EXPECT_EQ(x->GetType(), y->GetType());
        EXPECT_EQ(x->GetRHS(), y->GetRHS());
        EXPECT_EQ(x->GetRange(), y->GetRange());
        EXPECT_EQ(x->GetRHSLo(), y->GetRHSLo());
        EXPECT_EQ(x->GetRHSUp(), y->GetRHSUp());
        EXPECT_EQ(x->GetEqnValue(), y->GetEqnValue());
        EXPECT_EQ(x->GetBaseValue(), y->GetBaseValue());
        EXPECT_EQ(x->GetShadowPrice(), y->GetShadowPrice());
        EXPECT_EQ(x->GetEqnScale(), y->GetEqnScale());
        EXPECT_EQ(x->GetNonlinear(), y->GetNonlinear());
        EXPECT_EQ(x->GetNumberNZ(), y->GetNumberNZ());
    }
    ILPMatrix *xa, *xb;
    a->GetMatrixIntf(&xa);
    b->GetMatrixIntf(&xb);
    for (ILPNonZero *x = xa->FrstNonZeroObject(), *y = xb->FrstNonZeroObject(); x && y;
         x = xa->NextNonZeroObject(), y = xb->NextNonZeroObject()) {
        EXPECT_EQ(x->GetEquationIdx(), y->GetEquationIdx());
        EXPECT_EQ(x->GetVariableIdx(), y->GetVariableIdx());
        EXPECT_EQ(x->GetCoefficient(), y->GetCoefficient());
        EXPECT_EQ(x->GetNonlinear(), y->GetNonlinear());
    }
    EXPECT_TRUE(terms(a) == terms(b));
    EXPECT_EQ(terms(a).size(), terms(b).size());

    ILPSpOrdSetList *sa, *sb;
    a->GetSpOrdSetCollectionIntf(&sa);
    b->GetSpOrdSetCollectionIntf(&sb);
    ASSERT_EQ(sa->NumberOfSpOrdSets(), sb->NumberOfSpOrdSets());
    for (ILPSpOrdSet *x = sa->FrstSpOrdSetObject(), *y = sb->FrstSpOrdSetObject(); x && y;
         x = sa->NextSpOrdSetObject(), y = sb->NextSpOrdSetObject()) {
        EXPECT_STREQ(x->GetName(), y->GetName());
        EXPECT_EQ(x->GetType(), y->GetType());
        EXPECT_EQ(setNames(x), setNames(y));
    }

    IZEMOptionTable *oa, *ob;
    a->GetOptionTableIntf(&oa);
    b->GetOptionTableIntf(&ob);
    std::ostringstream da, db;
    oa->Display(da);
    ob->Display(db);
    EXPECT_EQ(da.str(), db.str());

    ILPVariableCollection *ca = nullptr, *cb = nullptr;
    std::vector<std::string> colsA, colsB;
    for (a->FrstNamedVarCollection(&ca); ca; a->NextNamedVarCollection(&ca)) {
        colsA.push_back(std::string(ca->Name()) + "/" + std::to_string(ca->GetDirection()) + "/" +
                        std::to_string(ca->GetType()));
        for (const std::string& n : memberNames(ca)) colsA.push_back(n);
    }
    for (b->FrstNamedVarCollection(&cb); cb; b->NextNamedVarCollection(&cb)) {
        colsB.push_back(std::string(cb->Name()) + "/" + std::to_string(cb->GetDirection()) + "/" +
                        std::to_string(cb->GetType()));
        for (const std::string& n : memberNames(cb)) colsB.push_back(n);
    }
    EXPECT_EQ(colsA, colsB);
}

std::string ModelBytes(IZEMMgr* mgr, double version) {
    std::stringstream ss;
    if (version == 0.0)
        mgr->PersistAsStream(&ss);
    else
        mgr->PersistAsStream(&ss, version);
    return ss.str();
}
