// The comparison of two models (see ZEMModelOperations.h). The entities'
// own Compare operations write the field texts; this file pairs the
// entities, finds those present on one side only, and cuts the texts into
// one difference per line.
#include <algorithm>
#include <fstream>
#include <sstream>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "lpdata/ILPEquation.h"
#include "lpdata/ILPEquationList.h"
#include "lpdata/ILPMatrix.h"
#include "lpdata/ILPNonZero.h"
#include "lpdata/ILPVariable.h"
#include "lpdata/ILPVariableList.h"
#include "lpdata/ZEMException.h"
#include "nlpdata/INonLinearModel.h"
#include "nlpdata/INonLinearity.h"
#include "zemmgr/IZEMMgr.h"
#include "zemmgr/ZEMModelFile.h"
#include "zemoper/ZEMModelOperations.h"
#include "zemmgr/ZEMModelParts.h"

namespace {

using ModelParts = ZEMModelParts;

class DifferenceList {
public:
    explicit DifferenceList(std::vector<ZEMModelDifference>& out) : m_out(out) {}

    // Every non-blank line of `text`, without its outer blanks, becomes one
    // difference.
    void Lines(const char* kind, const std::string& name, const std::string& text) {
        std::istringstream in(text);
        for (std::string line; std::getline(in, line);) {
            const size_t begin = line.find_first_not_of(' ');
            if (begin == std::string::npos) continue;
            const size_t end = line.find_last_not_of(' ');
            m_out.push_back({kind, name, line.substr(begin, end + 1 - begin)});
        }
    }

    void OneSide(const char* kind, const std::string& name, bool inFirst) {
        m_out.push_back({kind, name,
                         std::string("Problem ") + kind + " " + name +
                             (inFirst ? " is in p1 but not in p2" : " is in p2 but not in p1")});
    }

private:
    std::vector<ZEMModelDifference>& m_out;
};

// Counterparts of the other model's entities by 1-based index, both ways,
// filled while variables and equations are compared, so that entries are
// paired without a name look-up each.
template <typename T>
class IndexPairs {
public:
    void Pair(T* first, T* second) {
        Put(m_ab, first->GetIndex(), second);
        Put(m_ba, second->GetIndex(), first);
    }
    T* InSecond(T* first) const { return At(m_ab, first->GetIndex()); }
    T* InFirst(T* second) const { return At(m_ba, second->GetIndex()); }

private:
    static void Put(std::vector<T*>& v, int index, T* p) {
        if (index < 0) return;
        if (static_cast<size_t>(index) >= v.size()) v.resize(static_cast<size_t>(index) + 1, nullptr);
        v[static_cast<size_t>(index)] = p;
    }
    static T* At(const std::vector<T*>& v, int index) {
        return index >= 0 && static_cast<size_t>(index) < v.size() ? v[static_cast<size_t>(index)]
                                                                   : nullptr;
    }
    std::vector<T*> m_ab, m_ba;
};

struct Pairing {
    IndexPairs<ILPVariable> vars;
    IndexPairs<ILPEquation> eqns;
};

// Reused by every entity's Compare: emptied before each use.
std::ostringstream& Fresh(std::ostringstream& text) {
    text.str(std::string());
    text.clear();
    return text;
}

// Pairs the entities of two lists by name, lets `compare` write the
// differences of each pair, and names those present on one side only.
template <typename T, typename List, typename CompareFn>
void CompareNamed(const char* kind, List* a, List* b, T* (List::*first)(), T* (List::*next)(),
                  T* (List::*lookup)(const char*), IndexPairs<T>& pairs, DifferenceList& diffs,
                  CompareFn compare) {
    std::ostringstream text;
    for (T* x = (a->*first)(); x; x = (a->*next)()) {
        T* y = (b->*lookup)(x->GetName());
        if (!y) {
            diffs.OneSide(kind, x->GetName(), true);
            continue;
        }
        pairs.Pair(x, y);
        compare(x, y, Fresh(text));
        diffs.Lines(kind, x->GetName(), text.str());
    }
    for (T* y = (b->*first)(); y; y = (b->*next)())
        if (!pairs.InFirst(y)) diffs.OneSide(kind, y->GetName(), false);
}

void CompareVariables(const ModelParts& a, const ModelParts& b, double tol, bool values,
                      Pairing& pairs, DifferenceList& diffs) {
    CompareNamed("Variable", a.vars, b.vars, &ILPVariableList::FrstVariableObject,
                 &ILPVariableList::NextVariableObject, &ILPVariableList::VarNameLookup, pairs.vars,
                 diffs, [&](ILPVariable* v, ILPVariable* w, std::ostream& os) {
                     v->Compare(w, os, 0, values, false, true, tol,
                                a.matrix->NonZerosInColumn(v->GetIndex()),
                                b.matrix->NonZerosInColumn(w->GetIndex()));
                 });
}

void CompareEquations(const ModelParts& a, const ModelParts& b, double tol, bool values,
                      Pairing& pairs, DifferenceList& diffs) {
    CompareNamed("Equation", a.eqns, b.eqns, &ILPEquationList::FrstEquationObject,
                 &ILPEquationList::NextEquationObject, &ILPEquationList::EqnNameLookup, pairs.eqns,
                 diffs, [&](ILPEquation* e, ILPEquation* f, std::ostream& os) {
                     e->Compare(f, os, 0, values, tol, a.matrix->NonZerosInRow(e->GetIndex()),
                                b.matrix->NonZerosInRow(f->GetIndex()), true);
                 });
}

std::string EntryName(ILPNonZero* nz) {
    return std::string(nz->GetEquationPtr()->GetName()) + "/" + nz->GetVariablePtr()->GetName();
}

// Entries are paired row by row: the second model's row is spread into a
// slot per first-model column, then the first model's row is read against
// the slots, so each entry is touched a fixed number of times.
void CompareNonZeros(const ModelParts& a, const ModelParts& b, double tol, const Pairing& pairs,
                     DifferenceList& diffs) {
    std::vector<ILPNonZero*> slot(static_cast<size_t>(a.vars->NumberOfVariables()) + 1, nullptr);
    auto slotOf = [&](ILPVariable* v) -> ILPNonZero*& {
        const size_t i = static_cast<size_t>(v->GetIndex());
        if (i >= slot.size()) slot.resize(i + 1, nullptr);
        return slot[i];
    };
    std::ostringstream text;
    for (ILPEquation* e = a.eqns->FrstEquationObject(); e; e = a.eqns->NextEquationObject()) {
        ILPEquation* f = pairs.eqns.InSecond(e);
        if (f) {
            for (ILPNonZero* nz = b.matrix->RowFrstNonZeroObject(f->GetIndex()); nz;
                 nz = b.matrix->RowNextNonZeroObject()) {
                ILPVariable* v = pairs.vars.InFirst(nz->GetVariablePtr());
                if (v)
                    slotOf(v) = nz;
                else
                    diffs.OneSide("NonZero", EntryName(nz), false);
            }
        }
        for (ILPNonZero* nz = a.matrix->RowFrstNonZeroObject(e->GetIndex()); nz;
             nz = a.matrix->RowNextNonZeroObject()) {
            ILPNonZero*& other = slotOf(nz->GetVariablePtr());
            if (!other) {
                diffs.OneSide("NonZero", EntryName(nz), true);
                continue;
            }
            nz->Compare(other, 0, tol, Fresh(text));
            diffs.Lines("NonZero", EntryName(nz), text.str());
            other = nullptr;
        }
        if (!f) continue;
        // What is left in the slots is in the second model only.
        for (ILPNonZero* nz = b.matrix->RowFrstNonZeroObject(f->GetIndex()); nz;
             nz = b.matrix->RowNextNonZeroObject()) {
            ILPVariable* v = pairs.vars.InFirst(nz->GetVariablePtr());
            if (!v || slotOf(v) != nz) continue;
            diffs.OneSide("NonZero", EntryName(nz), false);
            slotOf(v) = nullptr;
        }
    }
    for (ILPEquation* f = b.eqns->FrstEquationObject(); f; f = b.eqns->NextEquationObject()) {
        if (pairs.eqns.InFirst(f)) continue;
        for (ILPNonZero* nz = b.matrix->RowFrstNonZeroObject(f->GetIndex()); nz;
             nz = b.matrix->RowNextNonZeroObject())
            diffs.OneSide("NonZero", EntryName(nz), false);
    }
}

// Terms are paired by row name, type and the set of their variables' names;
// within one such group each term of the first model takes the first unused
// term of the second whose constants agree, else the first unused one.
std::string TermKey(INonLinearity* t) {
    std::vector<std::string> names;
    for (ILPVariable* v = t->FrstVar(); v; v = t->NextVar()) names.emplace_back(v->GetName());
    std::sort(names.begin(), names.end());
    names.erase(std::unique(names.begin(), names.end()), names.end());
    std::string key = t->GetEquationPtr() ? t->GetEquationPtr()->GetName() : "";
    key += '\n' + std::to_string(t->GetType());
    for (const std::string& n : names) key += '\n' + n;
    return key;
}

std::string TermLabel(INonLinearity* t) {
    std::string label = std::string(t->GetEquationPtr() ? t->GetEquationPtr()->GetName() : "");
    label += " in Variables";
    for (ILPVariable* v = t->FrstVar(); v; v = t->NextVar()) label += std::string(" ") + v->GetName();
    return label;
}

void CompareTerms(const ModelParts& a, const ModelParts& b, double tol, DifferenceList& diffs) {
    if (!a.terms || !b.terms) return;
    std::unordered_map<std::string, std::vector<INonLinearity*>> groups;
    for (INonLinearity* t = b.terms->FrstNonLinearityObject(); t; t = b.terms->NextNonLinearityObject())
        groups[TermKey(t)].push_back(t);
    std::unordered_set<INonLinearity*> used;
    for (INonLinearity* t = a.terms->FrstNonLinearityObject(); t; t = a.terms->NextNonLinearityObject()) {
        const auto group = groups.find(TermKey(t));
        INonLinearity* match = nullptr;
        std::string matchText;
        if (group != groups.end()) {
            for (INonLinearity* u : group->second) {
                if (used.count(u)) continue;
                std::ostringstream text;
                const int r = t->Compare(u, 0, tol, text);
                if (r == 1) continue;
                if (!match || r == 0) {
                    match = u;
                    matchText = text.str();
                }
                if (r == 0) break;
            }
        }
        const std::string row = t->GetEquationPtr() ? t->GetEquationPtr()->GetName() : "";
        if (!match) {
            diffs.OneSide("Nonlinearity", "for Equation " + TermLabel(t), true);
            continue;
        }
        used.insert(match);
        diffs.Lines("Nonlinearity", row, matchText);
    }
    for (INonLinearity* u = b.terms->FrstNonLinearityObject(); u; u = b.terms->NextNonLinearityObject())
        if (!used.count(u)) diffs.OneSide("Nonlinearity", "for Equation " + TermLabel(u), false);
}

}  // namespace

std::vector<ZEMModelDifference> ZEMModelOperations::CompareModels(IZEMDataMgr* a, IZEMDataMgr* b,
                                                                  double tolerance,
                                                                  bool checkValues) {
    const ModelParts pa(a), pb(b);
    if (!pa.vars || !pa.eqns || !pa.matrix || !pb.vars || !pb.eqns || !pb.matrix)
        ZEM_RAISE(zemsrc::kZemOper, "ZEMOper Error", "model has no lists to compare",
                  "ZEMModelOperations::CompareModels");
    std::vector<ZEMModelDifference> out;
    DifferenceList diffs(out);
    Pairing pairs;
    CompareVariables(pa, pb, tolerance, checkValues, pairs, diffs);
    CompareEquations(pa, pb, tolerance, checkValues, pairs, diffs);
    CompareNonZeros(pa, pb, tolerance, pairs, diffs);
    CompareTerms(pa, pb, tolerance, diffs);
    return out;
}

int ZEMModelOperations::CompareModelsToFile(IZEMDataMgr* a, IZEMDataMgr* b, const char* path,
                                            double tolerance) {
    const std::vector<ZEMModelDifference> diffs = CompareModels(a, b, tolerance);
    ZEMModelFile::WriteToPath(path, "ZEMModelOperations::CompareModelsToFile", zemsrc::kZemOper,
                [&](std::ofstream* os) {
                    for (const ZEMModelDifference& d : diffs) *os << d.text << "\n";
                    *os << diffs.size() << " difference(s)\n";
                });
    return static_cast<int>(diffs.size());
}
