// Round trip as a property: random models with every kind of content go
// through the XMPS writer and reader and through the model file. Each comes
// back equal (XMPS within the precision of its number forms, the model file
// to the byte) or is refused by the writer with an exception that names the
// offending entity, and then no file is left behind. Never a third outcome.
//
// Each model gets at most one hazard: something the XMPS format cannot
// carry. A model without a hazard must come back; a model with one must be
// refused, naming the entity the hazard put there.
#include <cmath>
#include <cstring>
#include <cstdio>
#include <fstream>
#include <functional>
#include <random>
#include <set>
#include <string>

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

// Names that every format carries, odd as they look: 8 and 128
// characters, comment and continuation characters inside a name, signs
// and points after a letter.
std::string BenignName(Gen& g, const char* stem, int i) {
    switch (g.pick(8)) {
        case 0: return (std::string(stem) + "0000000").substr(0, 7) + std::to_string(i % 10);
        case 1: return std::string(stem) + std::to_string(i) + std::string(60 - std::strlen(stem) - std::to_string(i).size(), 'L');
        case 2: return "*" + std::string(stem) + std::to_string(i);
        case 3: return std::string(stem) + "\\" + std::to_string(i);
        case 4: return std::string(stem) + "-1.5E+" + std::to_string(i);
        default: return std::string(stem) + std::to_string(i);
    }
}

// Keyword, number of constants (coefficient included), number of variables.
struct TermShape {
    const char* keyword;
    int constants;
    int variables;
};
const TermShape kShapes[] = {
    {"XPROD", 1, 3},    {"XPROD", 2, 1},     {"XPROD", 1, 2},  {"LNX", 3, 2},
    {"EXPX", 2, 1},     {"POW", 2, 2},       {"XPOW", 3, 1},   {"EI", 2, 1},
    {"EVAP", 2, 3},     {"FLTQB", 1, 5},     {"TPERCENT", 4, 2}, {"GNREQ", 2, 2},
    {"DIV", 5, 2},      {"XPROD2", 1, 7},    {"DIBIFUNC", 5, 1}, {"DIBIFUNCX", 2, 4},
    {"SIMDISTINTRP", 6, 2}, {"SIMDISTINTRPFVT", 7, 3}, {"MYFUNC", 2, 2}, {"LNX", 1, 8},
};

struct Built {
    std::vector<ILPEquation*> rows;
    std::vector<ILPVariable*> cols;
};

Built BuildRandomModel(IZEMMgr* m, Gen& g, int rows, int cols) {
    Built b;
    m->SetModelTitle(g.coin() ? "RANDOM" : std::string(128, 'T').c_str());
    for (int i = 0; i < rows; ++i) {
        // A row may be named like a number: only columns must not be.
        ILPEquation* e = Eqns(m)->InsertEquation(i == 2 ? "1E5X" : BenignName(g, "ROW", i).c_str());
        const int16_t types[] = {ZEM_EQN_EQ, ZEM_EQN_LE, ZEM_EQN_GE, ZEM_EQN_FREE};
        e->SetType(i == rows - 1 ? static_cast<int16_t>(ZEM_EQN_OBJECTIVE) : types[g.pick(4)]);
        b.rows.push_back(e);
    }
    for (int j = 0; j < cols; ++j) {
        ILPVariable* v = Vars(m)->InsertVariable(BenignName(g, "C", j).c_str());
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
        b.cols.push_back(v);
    }
    // Every row gets coefficients (the objective, last in the list, too); a
    // few columns get none.
    for (int i = 0; i < rows; ++i) {
        for (int k = 1 + g.pick(4); k > 0; --k) {
            const int j = g.pick(cols - 3);
            ILPNonZero* nz = nullptr;
            m->InsertMatrixEntry(b.rows[i]->GetName(), b.cols[j]->GetName(),
                                 g.coin(0.1) ? 0.999995 : g.nonzero(), &nz);
        }
        if (b.rows[i]->GetType() != ZEM_EQN_OBJECTIVE && g.coin()) b.rows[i]->SetRHS(g.nonzero());
        if (g.coin(0.3)) b.rows[i]->SetRange(g.nonzero());
    }
    // Terms of every shape, never two alike (their order would be arbitrary).
    std::set<std::string> seen;
    const int shapes = static_cast<int>(sizeof kShapes / sizeof kShapes[0]);
    for (int k = 0; k < 2 * shapes; ++k) {
        const TermShape& s = kShapes[k % shapes];
        ILPEquation* e = b.rows[g.pick(rows)];
        std::vector<ILPVariable*> args;
        std::string key = std::string(e->GetName()) + "|" + s.keyword;
        for (int a = 0; a < s.variables; ++a) {
            args.push_back(b.cols[g.pick(cols)]);
            key += std::string("|") + args.back()->GetName();
        }
        if (!seen.insert(key).second) continue;
        INonLinearity* t = nullptr;
        NL(m)->CreateNonLinearityObject(s.keyword, &t);
        t->SetEquationPtr(e);
        for (int c = 0; c < s.constants; ++c) t->AddNLConstantObject(g.nonzero());
        for (ILPVariable* v : args) t->AddVariableObject(v);
        NL(m)->AddNonLinearityObject(t);
    }
    // A correlation term (flow, input), and a user equation over two
    // columns whose names the formula language reads as names.
    std::vector<ILPVariable*> plain;
    for (ILPVariable* v : b.cols)
        if (std::strlen(v->GetName()) < 10 && std::strspn(v->GetName(), "C0123456789") == std::strlen(v->GetName()))
            plain.push_back(v);
    const auto addTerm = [&](const std::string& keyword, const std::vector<ILPVariable*>& args) {
        INonLinearity* t = nullptr;
        NL(m)->CreateNonLinearityObject(keyword.c_str(), &t);
        t->SetEquationPtr(b.rows[g.pick(rows)]);
        t->AddNLConstantObject(g.nonzero());
        for (ILPVariable* v : args) t->AddVariableObject(v);
        NL(m)->AddNonLinearityObject(t);
    };
    addTerm("QCLEQ:RVP", {b.cols[0], b.cols[1]});
    if (plain.size() >= 2) {
        const std::string x = plain[0]->GetName(), y = plain[1]->GetName();
        addTerm("USEREQ:2*" + x + "*" + y + "+" + x + "^2/(1+" + y + "^2)", {plain[0], plain[1]});
    }
    ILPSpOrdSetList* sets = nullptr;
    m->GetSpOrdSetCollectionIntf(&sets);
    for (int type = 1; type <= 7; ++type) {
        ILPSpOrdSet* s = nullptr;
        sets->CreateNewSpOrdSetObject(&s);
        s->SetName(("SET" + std::to_string(type)).c_str());
        s->SetType(static_cast<int16_t>(type));
        sets->AddSpOrdSetObject(s);
        for (int k = type == 7 ? 0 : 1 + g.pick(4); k > 0; --k) s->AddVariableObject(b.cols[g.pick(cols)]);
    }
    for (int d = -1; d <= 1; ++d) {
        ILPVariableCollection* c = nullptr;
        m->NewNamedVarCollection(("GROUP" + std::to_string(d + 1)).c_str(), &c);
        c->SetDirection(static_cast<int16_t>(d));
        for (int k = 0; k < 3; ++k) c->AddVariableObject(b.cols[g.pick(cols)]);
    }
    IZEMOptionTable* options = nullptr;
    m->GetOptionTableIntf(&options);
    options->SetOption("ITERLIM", "500", "FIXED");
    options->SetOption("TOLERANCE", "1e-6", nullptr);
    return b;
}

// Something a format cannot carry, put into a built model; returns the
// name the refusal must mention. The flags say which writers refuse it.
struct Hazard {
    std::function<std::string(IZEMMgr*, Built&)> put;
    bool xmps;
    bool zem;
};

// A column with a coefficient on the first row, named `name`.
std::string NamedColumn(IZEMMgr* m, Built& b, const std::string& name) {
    Vars(m)->InsertVariable(name.c_str());
    ILPNonZero* nz = nullptr;
    m->InsertMatrixEntry(b.rows[0]->GetName(), name.c_str(), 2.0, &nz);
    return name;
}

std::string TermWithoutVariables(IZEMMgr* m, Built& b, const char* keyword, int constants) {
    INonLinearity* t = nullptr;
    NL(m)->CreateNonLinearityObject(keyword, &t);
    t->SetEquationPtr(b.rows[1]);
    for (int c = 0; c < constants; ++c) t->AddNLConstantObject(3.0 + c);
    NL(m)->AddNonLinearityObject(t);
    return keyword;
}

Hazard Column(const std::string& name, bool zem = false) {
    return {[name](IZEMMgr* m, Built& b) { return NamedColumn(m, b, name); }, true, zem};
}

const std::vector<Hazard>& Hazards() {
    static const std::vector<Hazard> h = {
        Column("100001"), Column("-Z"), Column(".5"), Column("12x"), Column("1E5X"),
        Column("A B"), Column("A\tB"), Column("\\"),
        {[](IZEMMgr* m, Built& b) { return NamedColumn(m, b, std::string(61, 'V')); }, false, true},
        Column(std::string(129, 'V'), true), Column(std::string(1500, 'W'), true),
        {[](IZEMMgr* m, Built& b) { return TermWithoutVariables(m, b, "CONST", 2); }, true, false},
        {[](IZEMMgr* m, Built& b) { return TermWithoutVariables(m, b, "CONSTPROD", 3); }, true, false},
        {[](IZEMMgr* m, Built&) { m->SetModelTitle("TWO WORDS"); return std::string("TWO WORDS"); }, true, false},
        {[](IZEMMgr* m, Built&) { m->SetModelTitle(std::string(129, 'T').c_str()); return std::string("Model title"); }, true, true},
        {[](IZEMMgr* m, Built&) { Eqns(m)->InsertEquation("EMPTYROW"); return std::string("EMPTYROW"); }, true, true},
        {[](IZEMMgr* m, Built& b) {
             Vars(m)->InsertVariable("ZEROCOL");
             ILPNonZero* nz = nullptr;
             m->InsertMatrixEntry(b.rows[1]->GetName(), "ZEROCOL", 0.0, &nz);
             return std::string("ZEROCOL");
         }, true, false},
        // The objective is the last row: the second one met is named.
        {[](IZEMMgr*, Built& b) { b.rows[1]->SetType(ZEM_EQN_OBJECTIVE); return std::string(b.rows.back()->GetName()); }, true, false},
        {[](IZEMMgr*, Built& b) { b.rows[1]->SetType(6); return std::string(b.rows[1]->GetName()); }, true, false},
        {[](IZEMMgr*, Built& b) { b.cols[3]->SetVarStatus(0); return std::string(b.cols[3]->GetName()); }, true, false},
        {[](IZEMMgr* m, Built& b) {
             // A twin alike in every field, so that comparing by name holds.
             ILPVariable* twin = nullptr;
             const ILPVariable* v = b.cols[4];
             Vars(m)->CreateNewVariableObject(&twin);
             twin->SetName(v->GetName());
             twin->SetVarType(v->GetVarType());
             twin->SetBoundLower(v->GetBoundLower());
             twin->SetBoundUpper(v->GetBoundUpper());
             twin->SetStepBound(v->GetStepBound());
             twin->SetTempBoundLower(v->GetTempBoundLower());
             twin->SetVarValue(v->GetVarValue());
             twin->SetVarStatus(v->GetVarStatus());
             Vars(m)->AddVariableObject(twin);
             return std::string(b.cols[4]->GetName());
         }, true, false},
        {[](IZEMMgr*, Built& b) { b.cols[3]->SetDescription("a note"); return std::string(b.cols[3]->GetName()); }, true, true},
        {[](IZEMMgr*, Built& b) { b.rows[1]->SetBlkMember(1); return std::string(b.rows[1]->GetName()); }, true, true},
        {[](IZEMMgr*, Built& b) {
             b.cols[0]->SetComplementarityTarget(b.cols[1]);
             return std::string(b.cols[0]->GetName());
         }, false, true},
        {[](IZEMMgr* m, Built&) { Options(m)->SetOption("SPACED", "two words", nullptr); return std::string("SPACED"); }, true, false},
        {[](IZEMMgr* m, Built&) { Options(m)->SetOption("ONLYSECOND", "", "2"); return std::string("ONLYSECOND"); }, true, false},
        {[](IZEMMgr* m, Built&) {
             ILPVariableCollection* c = nullptr;
             m->NewNamedVarCollection("NOBODY", &c);
             return std::string("NOBODY");
         }, true, false},
        {[](IZEMMgr* m, Built&) {
             ILPSpOrdSet* s = nullptr;
             Sets(m)->CreateNewSpOrdSetObject(&s);
             s->SetName("SET8");
             s->SetType(8);
             Sets(m)->AddSpOrdSetObject(s);
             return std::string("SET8");
         }, true, false},
    };
    return h;
}

// The model's bytes as the model file holds them.
std::string Bytes(IZEMMgr* m) { std::stringstream ss; m->PersistAsStream(&ss); return ss.str(); }
std::string Title(IZEMMgr* m) { std::string title; m->GetModelTitle(title); return title; }

// Writes `original` with `write`; returns false when the writer refused it
// (checking that the refusal names `named` and that `path` was not left
// behind), true when it wrote.
template <class W>
bool WroteOrRefused(W write, bool expectRefusal, const std::string& named, const std::string& path) {
    std::remove(path.c_str());
    try {
        write();
    } catch (ZEM_Exception& e) {
        EXPECT_TRUE(expectRefusal) << "refused a model it can carry: " << e.Reason();
        EXPECT_NE(e.Reason().find(named.substr(0, 40)), std::string::npos) << e.Reason();
        EXPECT_FALSE(std::ifstream(path).good()) << "a refused write left a file";
        return false;
    }
    EXPECT_FALSE(expectRefusal) << "wrote a model it cannot carry: " << named;
    return true;
}

}  // namespace

TEST(ModelRoundTrip, EveryModelComesBackEqualOrIsRefusedByName) {
    const std::string xmpsPath = std::string(ZEM_BINARY_DIR) + "/roundtrip_property.xmps";
    const std::string zemPath = std::string(ZEM_BINARY_DIR) + "/roundtrip_property.zem";
    const int hazards = static_cast<int>(Hazards().size());
    // Every hazard twice, then as many clean models.
    for (int k = 0; k < 3 * hazards && !HasFailure(); ++k) {
        SCOPED_TRACE("model " + std::to_string(k));
        Gen g(static_cast<unsigned>(k) + 1);
        Model original = NewModel();
        Built b = BuildRandomModel(original.get(), g, 6 + k % 5, 20 + k % 9);
        const Hazard* hazard = k < 2 * hazards ? &Hazards()[static_cast<size_t>(k % hazards)] : nullptr;
        const std::string named = hazard != nullptr ? hazard->put(original.get(), b) : "";

        // The model file carries what it carries to the byte.
        if (WroteOrRefused([&] { original->PersistAsFile(zemPath.c_str()); }, hazard && hazard->zem, named, zemPath)) {
            Model restored = NewModel();
            ASSERT_TRUE(restored->RestoreFromFile(zemPath.c_str()));
            ExpectSameModel(original.get(), restored.get(), true);
            EXPECT_EQ(Title(restored.get()), Title(original.get()));
            EXPECT_TRUE(Bytes(restored.get()) == Bytes(original.get()));
        }
        if (WroteOrRefused([&] { XMPSWriter(original.get()).WriteMPSFile(xmpsPath.c_str()); },
                           hazard && hazard->xmps, named, xmpsPath)) {
            Model back = ReadFile(xmpsPath);
            ExpectSameModel(original.get(), back.get(), false);
            EXPECT_EQ(Title(back.get()), Title(original.get()));
            // Written again, the model read back reads back the same: the
            // number forms are a fixed point.
            Model again = Read(Write(back.get()));
            ExpectSameModel(back.get(), again.get(), true);
        }
    }
    std::remove(xmpsPath.c_str());
    std::remove(zemPath.c_str());
}
