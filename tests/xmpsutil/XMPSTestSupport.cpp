
#include "tests/xmpsutil/XMPSTestSupport.h"

#include <cmath>
#include <map>
#include <tuple>

#include "lpdata/ILPSpOrdSet.h"
#include "lpdata/ILPVariableCollection.h"
#include "zemmgr/ZEMOptionTable.h"

namespace xmpstest {

double Coefficient(IZEMMgr* m, const char* row, const char* col) {
    ILPEquation* e = Eqn(m, row);
    ILPVariable* v = Var(m, col);
    if (e == nullptr || v == nullptr) return std::nan("");
    ILPNonZero* nz = Matrix(m)->ExistIncidence(e->GetIndex(), v->GetIndex());
    return nz != nullptr ? nz->GetCoefficient() : std::nan("");
}

std::vector<INonLinearity*> Terms(IZEMMgr* m) {
    std::vector<INonLinearity*> out;
    INonLinearModel* nl = NL(m);
    for (INonLinearity* t = nl->FrstNonLinearityObject(); t != nullptr; t = nl->NextNonLinearityObject()) out.push_back(t);
    return out;
}

std::vector<double> Constants(INonLinearity* t) {
    std::vector<double> out;
    for (INLConstant* c = t->FrstNLConst(); c != nullptr; c = t->NextNLConst()) out.push_back(c->GetValue());
    return out;
}

std::vector<std::string> VarNames(INonLinearity* t) {
    std::vector<std::string> out;
    for (ILPVariable* v = t->FrstVar(); v != nullptr; v = t->NextVar()) out.push_back(v->GetName());
    return out;
}

std::vector<std::string> Lines(const std::string& text) {
    std::vector<std::string> out;
    std::istringstream in(text);
    std::string line;
    while (std::getline(in, line)) out.push_back(line);
    return out;
}

namespace {
// Equal within the short form's six digits (and its snapping near +-1).
bool ShortClose(double a, double b) { return ZEMValuesEqual(a, b, 2e-5); }
// Within the long form's ten digits, or its snapping near +-1.
bool LongClose(double a, double b) {
    if (std::fabs(std::fabs(a) - 1.0) < 1e-5) return ZEMValuesEqual(a, b, 2e-5);
    return ZEMValuesEqual(a, b, 1e-9);
}

using TermKey = std::tuple<std::string, std::string, std::vector<std::string>>;

std::map<TermKey, std::vector<double>> TermsByKey(IZEMMgr* m) {
    std::map<TermKey, std::vector<double>> out;
    for (INonLinearity* t : Terms(m)) {
        out[TermKey(t->GetEquationPtr()->GetName(), t->GetNonLinearityID(), VarNames(t))] = Constants(t);
    }
    return out;
}

}  // namespace

void ExpectSameModel(IZEMMgr* a, IZEMMgr* b, bool exact) {
    auto shortClose = [exact](double x, double y) { return exact ? x == y : ShortClose(x, y); };
    auto longClose = [exact](double x, double y) { return exact ? x == y : LongClose(x, y); };
    ASSERT_EQ(Eqns(a)->NumberOfEquations(), Eqns(b)->NumberOfEquations());
    ASSERT_EQ(Vars(a)->NumberOfVariables(), Vars(b)->NumberOfVariables());
    ILPEquationList* ea = Eqns(a);
    for (ILPEquation* e = ea->FrstEquationObject(); e != nullptr; e = ea->NextEquationObject()) {
        ILPEquation* f = Eqn(b, e->GetName());
        ASSERT_NE(f, nullptr) << e->GetName();
        EXPECT_EQ(e->GetType(), f->GetType()) << e->GetName();
        EXPECT_TRUE(shortClose(e->GetRHS(), f->GetRHS())) << e->GetName();
        EXPECT_TRUE(shortClose(e->GetRange(), f->GetRange())) << e->GetName();
    }
    ILPVariableList* va = Vars(a);
    for (ILPVariable* v = va->FrstVariableObject(); v != nullptr; v = va->NextVariableObject()) {
        ILPVariable* w = Var(b, v->GetName());
        ASSERT_NE(w, nullptr) << v->GetName();
        EXPECT_EQ(v->GetVarType(), w->GetVarType()) << v->GetName();
        EXPECT_EQ(v->GetBoundLower(), w->GetBoundLower()) << v->GetName();
        EXPECT_EQ(v->GetBoundUpper(), w->GetBoundUpper()) << v->GetName();
        EXPECT_EQ(v->GetStepBound(), w->GetStepBound()) << v->GetName();
        EXPECT_EQ(v->GetTempBoundLower(), w->GetTempBoundLower()) << v->GetName();
        EXPECT_TRUE(longClose(v->GetVarValue(), w->GetVarValue()))
            << v->GetName() << " " << v->GetVarValue() << " " << w->GetVarValue();
        EXPECT_EQ(v->GetVarStatus(), w->GetVarStatus()) << v->GetName();
        const auto target = [](ILPVariable* x) { return x != nullptr ? std::string(x->GetName()) : "(none)"; };
        EXPECT_EQ(target(v->GetComplementarityTarget()), target(w->GetComplementarityTarget())) << v->GetName();
    }
    // Every matrix entry, those the terms made included.
    ILPMatrix* ma = Matrix(a);
    int entries = 0;
    for (ILPNonZero* nz = ma->FrstNonZeroObject(); nz != nullptr; nz = ma->NextNonZeroObject()) {
        ++entries;
        const double c = Coefficient(b, nz->GetEquationPtr()->GetName(),
                                     nz->GetVariablePtr()->GetName());
        EXPECT_TRUE(shortClose(nz->GetCoefficient(), c))
            << nz->GetEquationPtr()->GetName() << "/" << nz->GetVariablePtr()->GetName();
    }
    EXPECT_EQ(entries, Matrix(b)->NumberOfNonZeros());
    // Terms, matched by row, keyword and variables.
    const auto ta = TermsByKey(a);
    const auto tb = TermsByKey(b);
    ASSERT_EQ(ta.size(), tb.size());
    for (const auto& [key, constants] : ta) {
        auto it = tb.find(key);
        ASSERT_NE(it, tb.end()) << std::get<0>(key) << " " << std::get<1>(key);
        ASSERT_EQ(constants.size(), it->second.size()) << std::get<1>(key);
        // Products on XLINEAR cards carry their coefficient in the short
        // form, every other constant is printed with seven digits.
        const bool onXLinear = std::get<1>(key) == "XPROD" && constants.size() == 1 &&
                               std::get<2>(key).size() >= 2;
        for (size_t k = 0; k < constants.size(); ++k) {
            EXPECT_TRUE(onXLinear ? shortClose(constants[k], it->second[k])
                                  : exact ? constants[k] == it->second[k]
                                          : ZEMValuesEqual(constants[k], it->second[k], 1e-6))
                << std::get<1>(key);
        }
    }
    // Sets, groups and options.
    const auto members = [](ILPSpOrdSet* s) {
        std::vector<std::string> names;
        for (ILPVariable* v = s->FrstSetVar(); v != nullptr; v = s->NextSetVar()) names.push_back(v->GetName());
        return names;
    };
    ASSERT_EQ(Sets(a)->NumberOfSpOrdSets(), Sets(b)->NumberOfSpOrdSets());
    for (ILPSpOrdSet* s = Sets(a)->FrstSpOrdSetObject(); s != nullptr; s = Sets(a)->NextSpOrdSetObject()) {
        ILPSpOrdSet* t = Sets(b)->SOSNameLookup(s->GetName());
        ASSERT_NE(t, nullptr) << s->GetName();
        EXPECT_EQ(s->GetType(), t->GetType());
        EXPECT_EQ(members(s), members(t)) << s->GetName();
    }
    ILPVariableCollection* c = nullptr;
    for (a->FrstNamedVarCollection(&c); c != nullptr; a->NextNamedVarCollection(&c)) {
        ILPVariableCollection* d = nullptr;
        b->FindNamedVarCollection(c->Name(), &d);
        ASSERT_NE(d, nullptr) << c->Name();
        EXPECT_EQ(c->GetDirection(), d->GetDirection());
        EXPECT_EQ(c->CollectionSize(), d->CollectionSize());
    }
    const auto* oa = dynamic_cast<ZEMOptionTable*>(Options(a));
    const auto* ob = dynamic_cast<ZEMOptionTable*>(Options(b));
    EXPECT_EQ(oa->FirstColumn(), ob->FirstColumn());
    EXPECT_EQ(oa->SecondColumn(), ob->SecondColumn());
}

}  // namespace xmpstest
