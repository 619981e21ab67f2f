// Appending another model's content into this one (AppendFromZEM and the
// Append* component operations). Names of appended entities are wrapped in a
// prefix and a suffix; an entity whose wrapped name already exists here is
// shared rather than duplicated, so two models that name the same stream
// connect through it. Appending is a union: what this model already holds
// (a row, a column, a set or group member, an entry at the same row and
// column, a term alike in every part) stays as it is and is not added again,
// so appending a model into itself, or the same model twice, changes
// nothing. Each Append* hands out a new[] table (null-terminated) that maps
// the source's 1-based positions to this model's objects.
#include <memory>
#include <string>
#include <unordered_set>

#include "lpdata/ILPEquation.h"
#include "lpdata/ILPEquationList.h"
#include "lpdata/ILPMatrix.h"
#include "lpdata/ILPNonZero.h"
#include "lpdata/ILPSpOrdSet.h"
#include "lpdata/ILPVariable.h"
#include "lpdata/ILPVariableCollection.h"
#include "lpdata/ILPVariableList.h"
#include "lpdata/LPVariableCollection.h"
#include "nlpdata/INonLinearModel.h"
#include "zemmgr/ZEMMgr.h"
#include "zemmgr/ZEMModelParts.h"
#include "zemmgr/ZEMOptionTable.h"

namespace {

std::string wrapped(const char* prefix, const char* name, const char* suffix) {
    std::string out = prefix ? prefix : "";
    out += name ? name : "";
    out += suffix ? suffix : "";
    return out;
}

void copyVariable(const ILPVariable* src, ILPVariable* dst) {
    dst->SetDescription(src->GetDescription());
    dst->SetBoundLower(src->GetBoundLower());
    dst->SetBoundUpper(src->GetBoundUpper());
    dst->SetStepBound(src->GetStepBound());
    dst->SetTempBoundLower(src->GetTempBoundLower());
    dst->SetSampleBoundLower(src->GetSampleBoundLower());
    dst->SetSampleBoundUpper(src->GetSampleBoundUpper());
    dst->SetRelaxedBoundLower(src->GetRelaxedBoundLower());
    dst->SetRelaxedBoundUpper(src->GetRelaxedBoundUpper());
    dst->SetVarType(src->GetVarType());
    dst->SetVarValue(src->GetVarValue());
    dst->SetVarShadowPrice(src->GetVarShadowPrice());
    dst->SetBaseValue(src->GetBaseValue());
    dst->SetPersistentValue(src->GetPersistentValue());
    dst->SetVarStatus(src->GetVarStatus());
    dst->SetBlkMember(src->GetBlkMember());
}

void copyEquation(const ILPEquation* src, ILPEquation* dst) {
    // The type first: the row limits that RHS and range set depend on it.
    dst->SetType(src->GetType());
    dst->SetRHS(src->GetRHS());
    dst->SetRange(src->GetRange());
    dst->SetRHSLo(src->GetRHSLo());
    dst->SetRHSUp(src->GetRHSUp());
    dst->SetEqnValue(src->GetEqnValue());
    dst->SetEqnScale(src->GetEqnScale());
    dst->SetBaseValue(src->GetBaseValue());
    dst->SetResidualValue(src->GetResidualValue());
    dst->SetShadowPrice(src->GetShadowPrice());
    dst->SetInfeasValue(src->GetInfeasValue());
    dst->SetBlkMember(src->GetBlkMember());
}

// The mapped object of a source entity, or null for an index outside the
// table.
template <typename T>
T* mapped(T** table, int count, int index) {
    return index >= 1 && index <= count ? table[index - 1] : nullptr;
}

}  // namespace

void ZEMMgr::AppendVarList(ILPVariableList* src, ILPVariable*** map, const char* prefix,
                           const char* suffix) {
    const int n = src->NumberOfVariables();
    std::unique_ptr<ILPVariable*[]> table(new ILPVariable*[n + 1]());
    int i = 0;
    for (ILPVariable* v = src->FrstVariableObject(); v && i < n; v = src->NextVariableObject()) {
        const std::string name = wrapped(prefix, v->GetName(), suffix);
        ILPVariable* mine = m_vars->VarNameLookup(name.c_str());
        if (mine == nullptr) {
            m_vars->CreateNewVariableObject(&mine);
            copyVariable(v, mine);
            mine->SetName(name.c_str());
            m_vars->AddVariableObject(mine);
        }
        table[i++] = mine;
    }
    *map = table.release();
}

void ZEMMgr::AppendEqnList(ILPEquationList* src, ILPEquation*** map, const char* prefix,
                           const char* suffix) {
    const int n = src->NumberOfEquations();
    std::unique_ptr<ILPEquation*[]> table(new ILPEquation*[n + 1]());
    int i = 0;
    for (ILPEquation* e = src->FrstEquationObject(); e && i < n; e = src->NextEquationObject()) {
        const std::string name = wrapped(prefix, e->GetName(), suffix);
        ILPEquation* mine = m_eqns->EqnNameLookup(name.c_str());
        if (mine == nullptr) {
            m_eqns->CreateNewEquationObject(&mine);
            copyEquation(e, mine);
            mine->SetName(name.c_str());
            m_eqns->AddEquationObject(mine);
        }
        table[i++] = mine;
    }
    *map = table.release();
}

void ZEMMgr::AppendMatrix(ILPMatrix* src, ILPNonZero*** map, ILPVariable** varMap,
                          ILPEquation** eqnMap) {
    int nVars = 0, nEqns = 0;
    while (varMap[nVars] != nullptr) ++nVars;
    while (eqnMap[nEqns] != nullptr) ++nEqns;
    const int n = src->NumberOfNonZeros();
    std::unique_ptr<ILPNonZero*[]> table(new ILPNonZero*[n + 1]());
    ILPMatrix* matrix = Matrix();
    int i = 0;
    for (ILPNonZero* nz = src->FrstNonZeroObject(); nz && i < n; nz = src->NextNonZeroObject()) {
        ILPVariable* var = mapped(varMap, nVars, nz->GetVariableIdx());
        ILPEquation* eqn = mapped(eqnMap, nEqns, nz->GetEquationIdx());
        if (var == nullptr || eqn == nullptr) continue;
        // An entry this model already has is the same entry: it keeps its
        // coefficient, as a shared row or column keeps its fields.
        if (ILPNonZero* held = matrix->ExistIncidence(eqn->GetIndex(), var->GetIndex())) {
            table[i++] = held;
            continue;
        }
        ILPNonZero* mine = nullptr;
        matrix->CreateNewNonZeroObject(&mine);
        mine->SetEquationPtr(eqn);
        mine->SetVariablePtr(var);
        mine->SetCoefficient(nz->GetCoefficient());
        table[i++] = matrix->AddNonZeroObject(mine);
    }
    *map = table.release();
}

void ZEMMgr::AppendSOSList(ILPSpOrdSetList* src, ILPSpOrdSet*** map, ILPVariable** varMap,
                           const char* prefix, const char* suffix) {
    int nVars = 0;
    while (varMap[nVars] != nullptr) ++nVars;
    const int n = src->NumberOfSpOrdSets();
    std::unique_ptr<ILPSpOrdSet*[]> table(new ILPSpOrdSet*[n + 1]());
    int i = 0;
    for (ILPSpOrdSet* s = src->FrstSpOrdSetObject(); s && i < n; s = src->NextSpOrdSetObject()) {
        const std::string name = wrapped(prefix, s->GetName(), suffix);
        ILPSpOrdSet* mine = m_sets->SOSNameLookup(name.c_str());
        const bool fresh = mine == nullptr;
        if (fresh) {
            m_sets->CreateNewSpOrdSetObject(&mine);
            mine->SetName(name.c_str());
            mine->SetType(s->GetType());
        }
        std::unordered_set<ILPVariable*> members;
        for (ILPVariable* v = mine->FrstSetVar(); v; v = mine->NextSetVar()) members.insert(v);
        for (ILPVariable* v = s->FrstSetVar(); v; v = s->NextSetVar()) {
            ILPVariable* mv = mapped(varMap, nVars, v->GetIndex());
            if (mv != nullptr && members.insert(mv).second) mine->AddVariableObject(mv);
        }
        if (fresh) m_sets->AddSpOrdSetObject(mine);
        table[i++] = mine;
    }
    *map = table.release();
}

void ZEMMgr::AppendVarCollection(std::list<ILPVariableCollection*>& src, ILPVariable** varMap,
                                 const char* prefix, const char* suffix) {
    int nVars = 0;
    while (varMap[nVars] != nullptr) ++nVars;
    for (ILPVariableCollection* col : src) {
        const std::string name = wrapped(prefix, col->Name(), suffix);
        ILPVariableCollection* mine = nullptr;
        FindNamedVarCollection(name.c_str(), &mine);
        if (mine == nullptr) {
            NewNamedVarCollection(name.c_str(), &mine);
            mine->SetDirection(col->GetDirection());
            mine->SetType(col->GetType());
        }
        std::unordered_set<ILPVariable*> members;
        for (ILPVariable* v = mine->FrstVariableObject(); v; v = mine->NextVariableObject()) members.insert(v);
        for (ILPVariable* v = col->FrstVariableObject(); v; v = col->NextVariableObject()) {
            ILPVariable* mv = mapped(varMap, nVars, v->GetIndex());
            if (mv != nullptr && members.insert(mv).second) mine->AddVariableObject(mv);
        }
    }
}

void ZEMMgr::AppendFromZEM(IZEMMgr* other, const char* prefix, const char* suffix) {
    if (other == nullptr) return;
    if (other == this) {
        // Without a prefix or suffix every name is shared: nothing to add.
        if ((prefix == nullptr || *prefix == '\0') && (suffix == nullptr || *suffix == '\0')) return;
        // Otherwise through a copy, so no walk runs over a list that grows
        // under it.
        std::unique_ptr<ZEMMgr, void (*)(ZEMMgr*)> copy(new ZEMMgr(),
                                                        [](ZEMMgr* m) { m->Destroy(); });
        copy->AppendFromZEM(this, "", "");
        AppendFromZEM(copy.get(), prefix, suffix);
        return;
    }
    const ZEMModelParts source(other);

    ILPVariable** varRaw = nullptr;
    AppendVarList(source.vars, &varRaw, prefix, suffix);
    std::unique_ptr<ILPVariable*[]> varMap(varRaw);
    ILPEquation** eqnRaw = nullptr;
    AppendEqnList(source.eqns, &eqnRaw, prefix, suffix);
    std::unique_ptr<ILPEquation*[]> eqnMap(eqnRaw);
    ILPNonZero** nzRaw = nullptr;
    AppendMatrix(source.matrix, &nzRaw, varMap.get(), eqnMap.get());
    std::unique_ptr<ILPNonZero*[]> nzMap(nzRaw);
    ILPSpOrdSet** setRaw = nullptr;
    AppendSOSList(source.sets, &setRaw, varMap.get(), prefix, suffix);
    std::unique_ptr<ILPSpOrdSet*[]> setMap(setRaw);
    if (source.terms != nullptr) m_nonlinear->AppendNonLinearModel(source.terms, varMap.get(), eqnMap.get());

    std::list<ILPVariableCollection*> cols;
    ILPVariableCollection* col = nullptr;
    for (other->FrstNamedVarCollection(&col); col; other->NextNamedVarCollection(&col))
        cols.push_back(col);
    AppendVarCollection(cols, varMap.get(), prefix, suffix);

    // Options of the other model that this one does not set yet.
    IZEMOptionTable* otherOptions = nullptr;
    other->GetOptionTableIntf(&otherOptions);
    if (auto* table = dynamic_cast<ZEMOptionTable*>(otherOptions)) {
        for (const auto& e : table->FirstColumn())
            if (m_options->GetOptionValue(e.first.c_str()) == nullptr)
                m_options->SetOption(e.first.c_str(), e.second.c_str(), nullptr);
        for (const auto& e : table->SecondColumn())
            if (m_options->GetOptionSecondValue(e.first.c_str()) == nullptr)
                m_options->SetOption(e.first.c_str(), nullptr, e.second.c_str());
    }
    ProcessFullCollection();
}
