// Round trip as a property: random models with every kind of content are
// written as XMPS and read back, and must come back equal within the
// precision of the number forms.
#include <algorithm>
#include <cmath>
#include <map>
#include <random>
#include <set>
#include <string>
#include <tuple>

#include "lpdata/ILPSpOrdSet.h"
#include "lpdata/ILPVariableCollection.h"
#include "tests/xmpsutil/XMPSTestSupport.h"
#include "zemmgr/IZEMOptionTable.h"

using namespace xmpstest;

namespace {

struct Gen {
    std::mt19937 rng;
    explicit Gen(unsigned seed) : rng(seed) {}
    double uniform(double a, double b) { return std::uniform_real_distribution<double>(a, b)(rng); }
    int pick(int n) { return std::uniform_int_distribution<int>(0, n - 1)(rng); }
    bool coin(double p = 0.5) { return uniform(0.0, 1.0) < p; }
    double nonzero() {
        double v = uniform(-100.0, 100.0);
        return std::fabs(v) < 1e-3 ? 1.5 : v;
    }
};

// Keyword, number of constants (coefficient included), number of variables.
struct TermShape {
    const char* keyword;
    int constants;
    int variables;
};
const TermShape kShapes[] = {
    {"XPROD", 1, 3},    {"XPROD", 2, 1},     {"XPROD", 1, 2},  {"LNX", 3, 2},
    {"EXPX", 2, 1},     {"CONST", 2, 1},     {"CONSTPROD", 3, 1}, {"POW", 2, 2},
    {"XPOW", 3, 1},     {"EI", 2, 1},        {"EVAP", 2, 3},   {"FLTQB", 1, 5},
    {"TPERCENT", 4, 2}, {"GNREQ", 2, 2},     {"DIV", 5, 2},    {"XPROD2", 1, 7},
    {"DIBIFUNC", 5, 1}, {"DIBIFUNCX", 2, 4}, {"SIMDISTINTRP", 6, 2},
    {"SIMDISTINTRPFVT", 7, 3}, {"MYFUNC", 2, 2}, {"LNX", 1, 8},
};

void BuildRandomModel(IZEMMgr* m, Gen& g, int rows, int cols) {
    ILPEquationList* eqns = Eqns(m);
    ILPVariableList* vars = Vars(m);
    std::vector<ILPEquation*> E;
    std::vector<ILPVariable*> V;
    for (int i = 0; i < rows; ++i) {
        ILPEquation* e = eqns->InsertEquation(("ROW" + std::to_string(i)).c_str());
        const int16_t types[] = {ZEM_EQN_EQ, ZEM_EQN_LE, ZEM_EQN_GE, ZEM_EQN_FREE};
        e->SetType(i == 0 ? static_cast<int16_t>(ZEM_EQN_OBJECTIVE) : types[g.pick(4)]);
        E.push_back(e);
    }
    for (int j = 0; j < cols; ++j) {
        ILPVariable* v = vars->InsertVariable(("C" + std::to_string(j)).c_str());
        v->SetVarType(static_cast<int16_t>(1 + g.pick(4)));
        const double lowers[] = {0.0, -ZEM_INFINITY, g.uniform(-50, 50)};
        const double lower = lowers[g.pick(3)];
        const double uppers[] = {ZEM_INFINITY, lower + g.uniform(0.5, 100), lower, 1.0};
        v->SetBoundLower(lower);
        v->SetBoundUpper(uppers[g.pick(4)]);
        if (g.coin(0.3)) v->SetStepBound(g.uniform(0.1, 10));
        if (g.coin(0.3)) v->SetTempBoundLower(g.uniform(-5, 5));
        if (g.coin(0.6)) v->SetVarValue(g.coin(0.1) ? 1.000003 : g.uniform(-100, 100));
        const int16_t statuses[] = {1, 2, 3, 4, 5, 203};
        v->SetVarStatus(statuses[g.pick(6)]);
        V.push_back(v);
    }
    // Linear coefficients: every row gets some, the objective included, and
    // a few columns get none at all.
    for (int i = 0; i < rows; ++i) {
        const int n = 1 + g.pick(4);
        for (int k = 0; k < n; ++k) {
            const int j = g.pick(cols - 3);
            const double c = g.coin(0.1) ? 0.999995 : g.nonzero();
            ILPNonZero* nz = nullptr;
            m->InsertMatrixEntry(E[i]->GetName(), V[j]->GetName(), c, &nz);
        }
        if (E[i]->GetType() != ZEM_EQN_OBJECTIVE && g.coin()) E[i]->SetRHS(g.nonzero());
        if (g.coin(0.3)) E[i]->SetRange(g.nonzero());
    }
    // Terms of every shape, never two with the same row, keyword and
    // variables (their order would then be arbitrary).
    INonLinearModel* nl = NL(m);
    std::set<std::string> seen;
    for (int k = 0; k < 3 * static_cast<int>(sizeof kShapes / sizeof kShapes[0]); ++k) {
        const TermShape& s = kShapes[k % (sizeof kShapes / sizeof kShapes[0])];
        ILPEquation* e = E[g.pick(rows)];
        std::vector<ILPVariable*> args;
        std::string key = std::string(e->GetName()) + "|" + s.keyword;
        for (int a = 0; a < s.variables; ++a) {
            args.push_back(V[g.pick(cols)]);
            key += std::string("|") + args.back()->GetName();
        }
        if (!seen.insert(key).second) continue;
        INonLinearity* t = nullptr;
        nl->CreateNonLinearityObject(s.keyword, &t);
        ASSERT_NE(t, nullptr) << s.keyword;
        t->SetEquationPtr(e);
        for (int c = 0; c < s.constants; ++c) t->AddNLConstantObject(g.nonzero());
        for (ILPVariable* v : args) t->AddVariableObject(v);
        nl->AddNonLinearityObject(t);
    }
    // Sets of every type, groups of every direction, options, pairs.
    ILPSpOrdSetList* sets = nullptr;
    m->GetSpOrdSetCollectionIntf(&sets);
    for (int type = 1; type <= 7; ++type) {
        ILPSpOrdSet* s = nullptr;
        sets->CreateNewSpOrdSetObject(&s);
        s->SetName(("SET" + std::to_string(type)).c_str());
        s->SetType(static_cast<int16_t>(type));
        sets->AddSpOrdSetObject(s);
        const int n = type == 7 ? 0 : 1 + g.pick(4);
        for (int k = 0; k < n; ++k) s->AddVariableObject(V[g.pick(cols)]);
    }
    for (int d = -1; d <= 1; ++d) {
        ILPVariableCollection* c = nullptr;
        m->NewNamedVarCollection(("GROUP" + std::to_string(d + 1)).c_str(), &c);
        c->SetDirection(static_cast<int16_t>(d));
        for (int k = 0; k < 3; ++k) c->AddVariableObject(V[g.pick(cols)]);
    }
    IZEMOptionTable* options = nullptr;
    m->GetOptionTableIntf(&options);
    options->SetOption("ITERLIM", "500", "FIXED");
    options->SetOption("TOLERANCE", "1e-6", nullptr);
    options->SetOption("SOLVER", "SLP", "2");
    V[0]->SetComplementarityTarget(V[1]);
    V[cols - 1]->SetComplementarityTarget(V[2]);
}

}  // namespace

TEST(XMPSRoundTrip, RandomModelsComeBackEqual) {
    for (unsigned seed = 1; seed <= 12; ++seed) {
        SCOPED_TRACE("seed " + std::to_string(seed));
        Gen g(seed);
        Model original = NewModel();
        BuildRandomModel(original.get(), g, 6 + static_cast<int>(seed % 5), 20 + static_cast<int>(seed));
        const std::string text = Write(original.get());
        Model back = Read(text);
        ExpectSameModel(original.get(), back.get(), false);
        // Written again, the model read back gives a file that reads back
        // to the same cards: the number forms are a fixed point (rows may
        // be met in another order, so the lines are compared as a set).
        const std::string text2 = Write(back.get());
        Model again = Read(text2);
        std::vector<std::string> lines2 = Lines(text2);
        std::vector<std::string> lines3 = Lines(Write(again.get()));
        std::sort(lines2.begin(), lines2.end());
        std::sort(lines3.begin(), lines3.end());
        EXPECT_EQ(lines3, lines2);
        if (HasFailure()) {
            ADD_FAILURE() << text;
            break;
        }
    }
}

TEST(XMPSRoundTrip, ObjectiveStaysTheObjectiveWhenAFreeRowComesFirst) {
    Model m = NewModel();
    ILPEquation* free = Eqns(m.get())->InsertEquation("FREE");
    free->SetType(ZEM_EQN_FREE);
    ILPEquation* obj = Eqns(m.get())->InsertEquation("OBJ");
    obj->SetType(ZEM_EQN_OBJECTIVE);
    Vars(m.get())->InsertVariable("X");
    ILPNonZero* nz = nullptr;
    m->InsertMatrixEntry("FREE", "X", 2.0, &nz);
    m->InsertMatrixEntry("OBJ", "X", 3.0, &nz);
    Model back = Read(Write(m.get()));
    EXPECT_EQ(Eqn(back.get(), "OBJ")->GetType(), ZEM_EQN_OBJECTIVE);
    EXPECT_EQ(Eqn(back.get(), "FREE")->GetType(), ZEM_EQN_FREE);
}
