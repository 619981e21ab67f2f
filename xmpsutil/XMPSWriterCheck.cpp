#include "xmpsutil/XMPSWriterCheck.h"

#include <cstring>
#include <string>
#include <string_view>
#include <unordered_set>
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
#include "nlpdata/NLTypeCodes.h"
#include "nlpdata/NonLinearity.h"
#include "xmpsutil/XMPSTokens.h"
#include "zemmgr/IZEMMgr.h"
#include "zemmgr/IZEMOptionTable.h"
#include "zemmgr/ZEMModelParts.h"

namespace xmpscheck {

namespace {

constexpr size_t kNameMax = 128;

// Refusals name the entity by kind and name: Variable "X1" cannot be
// written: <why>.
class Refusal {
public:
    explicit Refusal(const char* routine) : m_routine(routine) {}
    [[noreturn]] void Raise(const char* kind, const char* name, const std::string& why) const {
        ZEM_RAISE(zemsrc::kXmpsUtil, "XMPS Write Refused",
                  std::string(kind) + " \"" + (name != nullptr ? name : "") +
                      "\" cannot be written: " + why,
                  m_routine);
    }
    void Name(const char* kind, const char* name) const {
        if (const char* fault = NameFault(name)) Raise(kind, name, fault);
    }
    // A variable named on a coefficient or term card.
    void CardVariable(const ILPVariable* v) const {
        if (xmpstok::IsANumber(v->GetName())) {
            Raise("Variable", v->GetName(), "its name reads as a number in the extended format");
        }
    }

private:
    const char* m_routine;
};

bool IsRowType(int16_t t) { return t >= ZEM_EQN_OBJECTIVE && t <= ZEM_EQN_FREE; }

bool HasStatusKey(int16_t s) {
    return (s >= ZEM_STATUS_NONBASIC && s <= ZEM_STATUS_NONBASIC_LB) || s == ZEM_STATUS_STEP_BOUNDED;
}

// Which rows have a term card, and what the first "N" card depends on.
struct RowCards {
    std::vector<char> hasTerm;     // by equation index
    std::unordered_set<const ILPEquation*> freeRows;
    bool objectiveCoefficient = false;
    bool objectiveProduct = false;
    bool freeCoefficient = false;
    bool freeProduct = false;
};

void CheckEquations(const ZEMModelParts& m, const Refusal& refuse, ILPEquation*& objective, RowCards& rows) {
    ILPEquationList* eqns = m.eqns;
    if (eqns == nullptr) return;
    std::unordered_set<std::string_view> names;
    for (ILPEquation* e = eqns->FrstEquationObject(); e != nullptr; e = eqns->NextEquationObject()) {
        refuse.Name("Equation", e->GetName());
        if (!names.insert(e->GetName()).second)
            refuse.Raise("Equation", e->GetName(), "another equation has the same name");
        if (!IsRowType(e->GetType())) {
            refuse.Raise("Equation", e->GetName(),
                         "its type " + std::to_string(e->GetType()) + " has no row key");
        }
        if (e->GetBlkMember() != 0) {
            refuse.Raise("Equation", e->GetName(), "it belongs to a nonlinear block");
        }
        if (e->GetType() == ZEM_EQN_OBJECTIVE) {
            if (objective != nullptr) {
                refuse.Raise("Equation", e->GetName(),
                             "it is a second objective; the file carries one");
            }
            objective = e;
        }
        if (e->GetType() == ZEM_EQN_FREE) rows.freeRows.insert(e);
    }
}

void CheckVariables(const ZEMModelParts& m, const Refusal& refuse) {
    ILPVariableList* vars = m.vars;
    ILPMatrix* matrix = m.matrix;
    if (vars == nullptr) return;
    std::unordered_set<std::string_view> names;
    for (ILPVariable* v = vars->FrstVariableObject(); v != nullptr; v = vars->NextVariableObject()) {
        refuse.Name("Variable", v->GetName());
        if (!names.insert(v->GetName()).second)
            refuse.Raise("Variable", v->GetName(), "another variable has the same name");
        const int16_t type = v->GetVarType();
        if (type < ZEM_VAR_CONTINUOUS || type > ZEM_VAR_SEMICONTINUOUS) {
            refuse.Raise("Variable", v->GetName(), "its type " + std::to_string(type) + " has no bound key");
        }
        if (!HasStatusKey(v->GetVarStatus())) {
            refuse.Raise("Variable", v->GetName(),
                         "its basis state " + std::to_string(v->GetVarStatus()) + " has no key");
        }
        if (v->GetBlkMember() != 0) refuse.Raise("Variable", v->GetName(), "it belongs to a nonlinear block");
        // A column with entries stands on coefficient cards (its zero
        // entries are refused, or stand on term cards too).
        if (matrix != nullptr && matrix->NonZerosInColumn(v->GetIndex()) > 0) refuse.CardVariable(v);
        const char* description = v->GetDescription();
        if (description != nullptr && description[0] != '\0') {
            refuse.Raise("Variable", v->GetName(), "the format has no place for its description");
        }
    }
}

// One pass over the entries in storage order, reading the entries alone:
// zero coefficients, and whether the objective or a free row has an XLINEAR
// coefficient card. Reading each entry's row and column as well made the
// benchmark model's XMPS write take 844 ms instead of 671 ms (bench_xmps_io,
// full size: 173 against 218 MiB/s); columns and rows are checked once each
// instead, through their entry counts.
void CheckMatrix(ILPMatrix* matrix, const Refusal& refuse, const ILPEquation* objective, RowCards& rows) {
    if (matrix == nullptr) return;
    for (ILPNonZero* nz = matrix->FrstNonZeroObject(); nz != nullptr; nz = matrix->NextNonZeroObject()) {
        if (nz->GetCoefficient() == 0.0) {
            // Entries of the terms come back with the terms.
            if (nz->GetNonlinear() != 0) continue;
            refuse.Raise("Entry",
                         (std::string(nz->GetEquationPtr()->GetName()) + ", " + nz->GetVariablePtr()->GetName()).c_str(),
                         "its coefficient is 0, which the format does not write");
        }
        const ILPEquation* e = nz->GetEquationPtr();
        if (e == objective) rows.objectiveCoefficient = true;
        if (!rows.freeRows.empty() && rows.freeRows.count(e) != 0) rows.freeCoefficient = true;
    }
}

void CheckTerms(const ZEMModelParts& m, const Refusal& refuse, const ILPEquation* objective, RowCards& rows) {
    INonLinearModel* nl = m.terms;
    if (nl == nullptr) return;
    INonLinearBlockList* blocks = nl->NLBlockList();
    if (blocks != nullptr && blocks->NumberOfBlocks() > 0) {
        refuse.Raise("Model", "", "it holds nonlinear blocks, which the format does not carry");
    }
    int position = 0;
    for (INonLinearity* t = nl->FrstNonLinearityObject(); t != nullptr; t = nl->NextNonLinearityObject()) {
        ++position;
        const char* keyword = t->GetNonLinearityID();
        const std::string label = std::string(keyword != nullptr ? keyword : "") + " #" + std::to_string(position);
        if (t->GetBlkMember() != 0) refuse.Raise("Term", label.c_str(), "it belongs to a nonlinear block");
        ILPEquation* e = t->GetEquationPtr();
        if (e == nullptr) refuse.Raise("Term", label.c_str(), "it has no row");
        if (t->NumberOfVariableTerms() == 0) {
            refuse.Raise("Term", label.c_str(), "it has no variable, and the format reads no term without one");
        }
        if (t->NumberOfNLConstants() == 0) refuse.Raise("Term", label.c_str(), "it has no coefficient");
        if (NonLinearity::MultiplierApart(t))
            refuse.Raise("Term", label.c_str(), "its multiplier was changed apart from its first constant");
        const bool xlinear = OnXLinearCard(t);
        if (!xlinear && (NameFault(keyword) != nullptr || xmpstok::IsANumber(keyword))) {
            refuse.Raise("Term", label.c_str(), "its keyword cannot stand on a card");
        }
        for (ILPVariable* v = t->FrstVar(); v != nullptr; v = t->NextVar()) refuse.CardVariable(v);
        rows.hasTerm[static_cast<size_t>(e->GetIndex())] = 1;
        if (xlinear && e == objective) rows.objectiveProduct = true;
        if (xlinear && e->GetType() == ZEM_EQN_FREE) rows.freeProduct = true;
    }
}

void CheckRows(const ZEMModelParts& m, const Refusal& refuse, const ILPEquation* objective, const RowCards& rows) {
    ILPEquationList* eqns = m.eqns;
    ILPMatrix* matrix = m.matrix;
    if (eqns == nullptr) return;
    // The first "N" card read makes its row the objective: it must be the
    // objective's. The objective's coefficients come first, then the other
    // coefficients, then the products (the objective's first), then the
    // keyword terms (the objective's first).
    const bool objectiveFirst =
        objective != nullptr &&
        (rows.objectiveCoefficient || (!rows.freeCoefficient && (rows.objectiveProduct || !rows.freeProduct)));
    for (ILPEquation* e = eqns->FrstEquationObject(); e != nullptr; e = eqns->NextEquationObject()) {
        const bool hasCard = rows.hasTerm[static_cast<size_t>(e->GetIndex())] != 0 ||
                             (matrix != nullptr && matrix->NonZerosInRow(e->GetIndex()) > 0);
        if (!hasCard) {
            refuse.Raise("Equation", e->GetName(),
                         "it has no coefficient or term, and the format makes rows only from those");
        }
        if (e->GetType() == ZEM_EQN_FREE && !objectiveFirst) {
            refuse.Raise("Equation", e->GetName(),
                         "a free row whose card would come before the objective's reads back as the objective");
        }
    }
}

void CheckSetsGroupsOptions(IZEMDataMgr* m, ILPSpOrdSetList* sets, const Refusal& refuse) {
    if (sets != nullptr) {
        for (ILPSpOrdSet* s = sets->FrstSpOrdSetObject(); s != nullptr; s = sets->NextSpOrdSetObject()) {
            refuse.Name("Set", s->GetName());
            if (s->GetType() < 1 || s->GetType() > 7) {
                refuse.Raise("Set", s->GetName(), "its type " + std::to_string(s->GetType()) + " has no key");
            }
        }
    }
    ILPVariableCollection* group = nullptr;
    for (m->FrstNamedVarCollection(&group); group != nullptr; m->NextNamedVarCollection(&group)) {
        refuse.Name("Group", group->Name());
        if (group->CollectionSize() == 0) refuse.Raise("Group", group->Name(), "it is empty");
        if (group->GetDirection() < -1 || group->GetDirection() > 1 || group->GetType() != 0) {
            refuse.Raise("Group", group->Name(), "the format carries only the directions in, out and none");
        }
    }
    IZEMOptionTable* table = nullptr;
    m->GetOptionTableIntf(&table);
    if (table == nullptr) return;
    std::vector<std::string> names;
    table->OptionNames(names);
    for (const std::string& name : names) {
        refuse.Name("Option", name.c_str());
        const char* value = table->GetOptionValue(name.c_str());
        if (value == nullptr || value[0] == '\0') {
            refuse.Raise("Option", name.c_str(), "it has no value, which an option card needs");
        }
        if (NameFault(value) != nullptr) refuse.Raise("Option", name.c_str(), "its value is not one token");
        const char* second = table->GetOptionSecondValue(name.c_str());
        if (second != nullptr && second[0] != '\0' && NameFault(second) != nullptr) {
            refuse.Raise("Option", name.c_str(), "its second value is not one token");
        }
    }
}

}  // namespace

bool OnXLinearCard(INonLinearity* t) {
    return t->GetType() == kNLProduct && t->NumberOfVariableTerms() >= 2 && t->NumberOfNLConstants() == 1;
}

const char* NameFault(const char* name) {
    if (name == nullptr || name[0] == '\0') return "it is empty";
    const size_t n = std::strlen(name);
    if (n > kNameMax) return "it is longer than 128 characters";
    for (size_t i = 0; i < n; ++i) {
        const unsigned char c = static_cast<unsigned char>(name[i]);
        if (c <= ' ' || c == 0x7F) return "it holds a blank or a control character";
    }
    if (n == 1 && name[0] == '\\') return "a lone \"\\\" continues a card";
    return nullptr;
}

void CheckWritable(IZEMDataMgr* model, const char* routine) {
    const Refusal refuse(routine);
    std::string title;
    model->GetModelTitle(title);
    if (const char* fault = NameFault(title.c_str())) refuse.Raise("Model title", title.c_str(), fault);

    const ZEMModelParts parts(model);
    ILPEquation* objective = nullptr;
    RowCards rows;
    CheckEquations(parts, refuse, objective, rows);
    CheckVariables(parts, refuse);
    rows.hasTerm.assign(static_cast<size_t>(parts.eqns != nullptr ? parts.eqns->NumberOfEquations() : 0) + 1, 0);
    CheckMatrix(parts.matrix, refuse, objective, rows);
    CheckTerms(parts, refuse, objective, rows);
    CheckRows(parts, refuse, objective, rows);
    CheckSetsGroupsOptions(model, parts.sets, refuse);
}

}  // namespace xmpscheck
