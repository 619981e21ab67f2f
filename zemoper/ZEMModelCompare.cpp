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
#include "zemoper/ZEMModelParts.h"

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

void CompareVariables(const ModelParts& a, const ModelParts& b, double tol, bool values,
                      DifferenceList& diffs) {
    for (ILPVariable* v = a.vars->FrstVariableObject(); v; v = a.vars->NextVariableObject()) {
        ILPVariable* w = b.vars->VarNameLookup(v->GetName());
        if (!w) {
            diffs.OneSide("Variable", v->GetName(), true);
            continue;
        }
        std::ostringstream text;
        v->Compare(w, text, 0, values, false, true, tol, a.matrix->NonZerosInColumn(v->GetIndex()),
                   b.matrix->NonZerosInColumn(w->GetIndex()));
        diffs.Lines("Variable", v->GetName(), text.str());
    }
    for (ILPVariable* w = b.vars->FrstVariableObject(); w; w = b.vars->NextVariableObject())
        if (!a.vars->VarNameLookup(w->GetName())) diffs.OneSide("Variable", w->GetName(), false);
}

void CompareEquations(const ModelParts& a, const ModelParts& b, double tol, bool values,
                      DifferenceList& diffs) {
    for (ILPEquation* e = a.eqns->FrstEquationObject(); e; e = a.eqns->NextEquationObject()) {
        ILPEquation* f = b.eqns->EqnNameLookup(e->GetName());
        if (!f) {
            diffs.OneSide("Equation", e->GetName(), true);
            continue;
        }
        std::ostringstream text;
        e->Compare(f, text, 0, values, tol, a.matrix->NonZerosInRow(e->GetIndex()),
                   b.matrix->NonZerosInRow(f->GetIndex()), true);
        diffs.Lines("Equation", e->GetName(), text.str());
    }
    for (ILPEquation* f = b.eqns->FrstEquationObject(); f; f = b.eqns->NextEquationObject())
        if (!a.eqns->EqnNameLookup(f->GetName())) diffs.OneSide("Equation", f->GetName(), false);
}

// The entry of `to` at the row and column named like `nz`'s, if any.
ILPNonZero* Counterpart(ILPNonZero* nz, const ModelParts& to) {
    ILPEquation* e = to.eqns->EqnNameLookup(nz->GetEquationPtr()->GetName());
    ILPVariable* v = to.vars->VarNameLookup(nz->GetVariablePtr()->GetName());
    return e && v ? to.matrix->ExistIncidence(e->GetIndex(), v->GetIndex()) : nullptr;
}

std::string EntryName(ILPNonZero* nz) {
    return std::string(nz->GetEquationPtr()->GetName()) + "/" + nz->GetVariablePtr()->GetName();
}

void CompareNonZeros(const ModelParts& a, const ModelParts& b, double tol,
                     DifferenceList& diffs) {
    for (ILPNonZero* nz = a.matrix->FrstNonZeroObjectByRow(); nz;
         nz = a.matrix->NextNonZeroObjectByRow()) {
        ILPNonZero* other = Counterpart(nz, b);
        if (!other) {
            diffs.OneSide("NonZero", EntryName(nz), true);
            continue;
        }
        std::ostringstream text;
        nz->Compare(other, 0, tol, text);
        diffs.Lines("NonZero", EntryName(nz), text.str());
    }
    for (ILPNonZero* nz = b.matrix->FrstNonZeroObjectByRow(); nz;
         nz = b.matrix->NextNonZeroObjectByRow())
        if (!Counterpart(nz, a)) diffs.OneSide("NonZero", EntryName(nz), false);
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
    CompareVariables(pa, pb, tolerance, checkValues, diffs);
    CompareEquations(pa, pb, tolerance, checkValues, diffs);
    CompareNonZeros(pa, pb, tolerance, diffs);
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
