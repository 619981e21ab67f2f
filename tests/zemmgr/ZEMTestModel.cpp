#include "ZEMTestModel.h"

#include <fstream>

ZEMMgrPtr NewMgr() {
    IZEMMgr* m = nullptr;
    ZEMObjectFactory(&m);
    m->IAddRef();
    return ZEMMgrPtr(m);
}

void BuildRichModel(IZEMMgr* mgr, const std::string& p) {
    IZEMModelBuilder* b = Builder(mgr);
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
    // Linear entries (row, column, coefficient): every row gets at least one.
    const struct { int row, col; double a; } entries[] = {
        {0, 0, 1.0}, {0, 4, -2.5}, {1, 0, 3.0}, {2, 1, 1.25},
        {2, 2, -1.0}, {3, 3, 2.0}, {4, 4, 0.5}, {4, 1, 6.0}};
    for (const auto& e : entries) b->MakeAddLinearNonZeroNew(r[e.row], x[e.col], e.a);

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

    IZEMOptionTable* opt = Options(mgr);
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

void ExpectSameModel(IZEMMgr* a, IZEMMgr* b, bool compareTitleAndFlags) {
    if (!compareTitleAndFlags) {
        std::string title;
        a->GetModelTitle(title);
        b->SetModelTitle(title.c_str());
        b->SetValuesInitialized(a->GetValuesInitialized());
        b->SetHybridModel(a->IsHybridModel());
        if (a->MatrixIncludesObjective()) b->IncludeObjectiveInMatrix();
    }
    const std::string x = ModelBytes(a), y = ModelBytes(b);
    size_t at = 0;
    while (at < x.size() && at < y.size() && x[at] == y[at]) ++at;
    EXPECT_TRUE(x == y) << "model files differ from byte " << at << " (of " << x.size() << " and " << y.size() << ")";
}

std::string ModelBytes(IZEMMgr* mgr, double version) {
    std::stringstream ss;
    if (version == 0.0)
        mgr->PersistAsStream(&ss);
    else
        mgr->PersistAsStream(&ss, version);
    return ss.str();
}

void Restore(IZEMMgr* mgr, const std::string& bytes) {
    std::istringstream in(bytes);
    mgr->RestoreFromStream(&in);
}

ZEMMgrPtr SmallMgr() {
    ZEMMgrPtr m = NewMgr();
    m->SetModelTitle("small");
    IZEMModelBuilder* b = Builder(m.get());
    ILPVariable *x, *y;
    ILPEquation *r, *obj;
    b->MakeAddReturnVariableNew("X", 0.0, 5.0, 1.0, 1, &x);
    b->MakeAddReturnVariableNew("y", 2.0, 2.0, 2.0, 1, &y);
    b->MakeAddReturnEquationNew("R", 4, 1.0, 4.0, &r);
    b->MakeAddReturnEquationNew("COST", 1, 0.0, 0.0, &obj);
    b->MakeAddLinearNonZeroNew(r, x, 1.0);
    b->MakeAddLinearNonZeroNew(r, y, -2.0);
    b->MakeAddLinearNonZeroNew(obj, x, 1.0);
    ILPVariable* args[] = {x, y};
    const double c[] = {3.0};
    b->MakeNonLinearityFast(1, r, 2, args, 1, c, nullptr);
    m->ProcessFullCollection();
    return m;
}

ZEMMgrPtr RichMgr(const std::string& prefix) {
    ZEMMgrPtr m = NewMgr();
    BuildRichModel(m.get(), prefix);
    return m;
}

std::array<int, 3> Dims(IZEMMgr* mgr) {
    std::array<int, 3> d{};
    mgr->ModelDimension(d[0], d[1], d[2]);
    return d;
}

ILPVariable* Var(IZEMMgr* m, const char* name) { return Vars(m)->VarNameLookup(name); }

ILPEquation* Eqn(IZEMMgr* m, const char* name) { return Eqns(m)->EqnNameLookup(name); }

IZEMModelBuilder* Builder(IZEMMgr* m) {
    IZEMModelBuilder* b = nullptr;
    m->GetModelBuilderIntf(&b);
    return b;
}

ILPNonZero* Entry(IZEMMgr* m, const char* row, const char* col) {
    ILPMatrix* mx = Matrix(m);
    return mx->ExistIncidence(Eqn(m, row)->GetIndex(), Var(m, col)->GetIndex());
}

std::string ReadFile(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    std::ostringstream ss;
    ss << in.rdbuf();
    return ss.str();
}

std::string TempPath(const std::string& name) {
    return std::string(ZEM_BINARY_DIR) + "/zemmgr_test_" + name;
}
