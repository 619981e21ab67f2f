#include "xmpsutil/MPSExportCheck.h"

#include <cmath>
#include <cstring>
#include <string>
#include <vector>

#include "lpdata/ILPEquation.h"
#include "lpdata/ILPEquationList.h"
#include "lpdata/ILPMatrix.h"
#include "lpdata/ILPNonZero.h"
#include "lpdata/ILPSpOrdSet.h"
#include "lpdata/ILPVariable.h"
#include "lpdata/ILPVariableCollection.h"
#include "lpdata/ILPVariableList.h"
#include "lpdata/ZEMException.h"
#include "lpdata/ZEMTypes.h"
#include "nlpdata/INonLinearBlockList.h"
#include "nlpdata/INonLinearModel.h"
#include "nlpdata/INonLinearity.h"
#include "xmpsutil/XMPSNumberFormat.h"
#include "xmpsutil/XMPSWriterCheck.h"
#include "zemmgr/IZEMMgr.h"
#include "zemmgr/IZEMOptionTable.h"

namespace mpsexport {

namespace {

constexpr size_t kFixedName = 8;
constexpr int kFixedNumber = 12;
// CoinMpsIO drops matrix entries below 1e-14 in magnitude, GLPK tiny ones
// too; 1e-12 keeps clear of both.
constexpr double kSmallestCoefficient = 1e-12;

class Refusal {
public:
    explicit Refusal(const char* routine) : m_routine(routine) {}
    [[noreturn]] void Raise(const char* kind, const char* name, const std::string& why) const {
        ZEM_RAISE(zemsrc::kXmpsUtil, "MPS Write Refused",
                  std::string(kind) + " \"" + (name != nullptr ? name : "") +
                      "\" cannot be written: " + why,
                  m_routine);
    }
    // Refuses a name no MPS field can hold; true when it fits a fixed field.
    bool Name(const char* kind, const char* name) const {
        if (const char* fault = xmpscheck::NameFault(name)) Raise(kind, name, fault);
        if (name[0] == '$') Raise(kind, name, "other tools read a name starting with $ as a comment");
        return std::strlen(name) <= kFixedName;
    }

private:
    const char* m_routine;
};

bool FitsFixed(double value) {
    char buf[xmpsnum::kNumberBufSize];
    return xmpsnum::ExactForm(buf, value) <= kFixedNumber;
}

// Nonlinear parts, sets, groups and options: none of them has a place in
// standard MPS.
void CheckModelParts(IZEMDataMgr* m, const Refusal& refuse) {
    INonLinearModel* nl = nullptr;
    m->GetNonLinearModelIntf(&nl);
    if (nl != nullptr) {
        INonLinearBlockList* blocks = nl->NLBlockList();
        if (blocks != nullptr && blocks->NumberOfBlocks() > 0) {
            refuse.Raise("Model", "", "it has nonlinear blocks");
        }
        if (INonLinearity* t = nl->FrstNonLinearityObject()) {
            const ILPEquation* row = t->GetEquationPtr();
            refuse.Raise("Model", "",
                         "standard MPS is linear, and the model has " +
                             std::to_string(nl->NumberOfNonLinearities()) +
                             " nonlinear terms; the first is " + t->GetNonLinearityID() +
                             " in row \"" + (row != nullptr ? row->GetName() : "") + "\"");
        }
    }
    ILPSpOrdSetList* sets = nullptr;
    m->GetSpOrdSetCollectionIntf(&sets);
    if (sets != nullptr && sets->NumberOfSpOrdSets() > 0) {
        refuse.Raise("Model", "", "special ordered sets are read differently by other tools");
    }
    ILPVariableCollection* group = nullptr;
    m->FrstNamedVarCollection(&group);
    if (group != nullptr) refuse.Raise("Group", group->Name(), "standard MPS has no variable groups");
    IZEMOptionTable* table = nullptr;
    m->GetOptionTableIntf(&table);
    std::vector<std::string> names;
    if (table != nullptr) table->OptionNames(names);
    if (!names.empty()) refuse.Raise("Option", names.front().c_str(), "standard MPS has no options");
}

// Rows: returns whether every name and number fits the fixed layout.
bool CheckRows(IZEMDataMgr* m, const Refusal& refuse) {
    ILPEquationList* eqns = nullptr;
    m->GetEquationCollectionIntf(&eqns);
    ILPMatrix* matrix = nullptr;
    m->GetMatrixIntf(&matrix);
    bool fixed = true;
    bool objective = false;
    for (ILPEquation* e = eqns->FrstEquationObject(); e != nullptr; e = eqns->NextEquationObject()) {
        const char* name = e->GetName();
        fixed = refuse.Name("Equation", name) && fixed;
        const int16_t type = e->GetType();
        const double range = e->GetRange();
        if (e->GetNonlinear() > 0) refuse.Raise("Equation", name, "it has nonlinear terms");
        if (type == ZEM_EQN_OBJECTIVE) {
            if (objective) refuse.Raise("Equation", name, "it is a second objective");
            if (e->GetRHS() != 0.0) {
                refuse.Raise("Equation", name, "other tools read a right-hand side on the objective as a constant");
            }
        } else if (type == ZEM_EQN_FREE) {
            refuse.Raise("Equation", name, "other tools drop free rows other than the objective");
        } else if (type != ZEM_EQN_EQ && type != ZEM_EQN_LE && type != ZEM_EQN_GE) {
            refuse.Raise("Equation", name, "its type has no ROWS key");
        }
        objective = objective || type == ZEM_EQN_OBJECTIVE;
        if (range != 0.0 && type != ZEM_EQN_LE && type != ZEM_EQN_GE) {
            refuse.Raise("Equation", name, "a range on this row type is read differently by other tools");
        }
        if (matrix->RowFrstNonZeroObject(e->GetIndex()) == nullptr) refuse.Raise("Equation", name, "it has no coefficient, and the standard reader drops such rows");
        fixed = fixed && FitsFixed(e->GetRHS()) && FitsFixed(range);
    }
    return fixed;
}

bool CheckColumns(IZEMDataMgr* m, const Refusal& refuse) {
    ILPVariableList* vars = nullptr;
    m->GetVariableCollectionIntf(&vars);
    ILPMatrix* matrix = nullptr;
    m->GetMatrixIntf(&matrix);
    bool fixed = true;
    for (ILPVariable* v = vars->FrstVariableObject(); v != nullptr; v = vars->NextVariableObject()) {
        const char* name = v->GetName();
        fixed = refuse.Name("Variable", name) && fixed;
        const char* description = v->GetDescription();
        if (description != nullptr && description[0] != '\0') {
            refuse.Raise("Variable", name, "standard MPS has no variable descriptions");
        }
        if (v->GetComplementarityTarget() != nullptr) {
            refuse.Raise("Variable", name, "standard MPS has no complementarity pairs");
        }
        BoundCard cards[2];
        const char* why = nullptr;
        const int n = BoundCards(v, cards, &why);
        if (why != nullptr) refuse.Raise("Variable", name, why);
        for (int i = 0; i < n; ++i) fixed = fixed && FitsFixed(cards[i].value);
        const bool fx = n == 1 && std::strcmp(cards[0].key, "FX") == 0;
        if (v->GetVarValue() != (fx ? v->GetBoundLower() : 1.0) ||
            v->GetVarStatus() != (fx ? ZEM_STATUS_FIXED : ZEM_STATUS_BASIC) ||
            v->GetStepBound() != ZEM_STEP_BOUND_DEFAULT || v->GetTempBoundLower() != 0.0) {
            refuse.Raise("Variable", name,
                         "its value, status, step bound or temporary bound has no place in standard MPS");
        }
        ILPNonZero* nz = matrix->ColFrstNonZeroObject(v->GetIndex());
        if (nz == nullptr) refuse.Raise("Variable", name, "it has no coefficient, and the standard reader makes no such column");
        for (; nz != nullptr; nz = matrix->ColNextNonZeroObject()) {
            if (std::fabs(nz->GetCoefficient()) < kSmallestCoefficient) {
                refuse.Raise("Variable", name, "other tools drop a coefficient this small (row \"" +
                                                   std::string(nz->GetEquationPtr()->GetName()) + "\")");
            }
            fixed = fixed && FitsFixed(nz->GetCoefficient());
        }
    }
    return fixed;
}

}  // namespace

int BoundCards(const ILPVariable* v, BoundCard out[2], const char** why) {
    const double lo = v->GetBoundLower();
    const double up = v->GetBoundUpper();
    const bool noLower = lo <= -ZEM_INFINITY;
    const bool noUpper = up >= ZEM_INFINITY;
    *why = nullptr;
    int n = 0;
    switch (v->GetVarType()) {
        case ZEM_VAR_CONTINUOUS:
            if (lo == 0.0 && up < 0.0) {
                *why = "other tools read an upper bound below 0 over a lower bound of 0 as a free lower bound";
            } else if (lo == up && v->GetVarStatus() == ZEM_STATUS_FIXED) {
                out[n++] = {"FX", lo, true};
            } else if (noLower && noUpper) {
                out[n++] = {"FR", 0.0, false};
            } else {
                if (noLower) out[n++] = {"MI", 0.0, false};
                if (!noLower && lo != 0.0) out[n++] = {"LO", lo, true};
                if (!noUpper) out[n++] = {"UP", up, true};
            }
            return n;
        case ZEM_VAR_BINARY:
            if (lo != 0.0 || up != 1.0) *why = "a binary column is read with bounds [0, 1]";
            out[n++] = {"BV", 0.0, false};
            return n;
        case ZEM_VAR_DISCRETE:
            if (noLower) *why = "an integer column needs a finite lower bound to be marked by LI";
            if (lo == 0.0 && up < 0.0) *why = "other tools read an upper bound below 0 over a lower bound of 0 as a free lower bound";
            out[n++] = {"LI", lo, true};
            if (!noUpper) out[n++] = {"UI", up, true};
            return n;
        case ZEM_VAR_SEMICONTINUOUS:
            *why = "semi-continuous columns are read differently by other tools";
            return 0;
        default:
            *why = "its type has no bound key";
            return 0;
    }
}

bool CheckExportable(IZEMDataMgr* model, const char* routine) {
    const Refusal refuse(routine);
    std::string title;
    model->GetModelTitle(title);
    bool fixed = refuse.Name("Model", title.c_str());
    CheckModelParts(model, refuse);
    fixed = CheckRows(model, refuse) && fixed;
    fixed = CheckColumns(model, refuse) && fixed;
    return !fixed;
}

}  // namespace mpsexport
