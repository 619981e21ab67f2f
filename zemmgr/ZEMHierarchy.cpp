#include "zemmgr/ZEMHierarchy.h"

#include <cstring>
#include <unordered_set>

#include "lpdata/ILPEquation.h"
#include "lpdata/ILPEquationList.h"
#include "lpdata/ILPVariable.h"
#include "lpdata/ILPVariableCollection.h"
#include "lpdata/ILPVariableList.h"
#include "zemmgr/IZEMMgr.h"

bool ZEMHierarchy::UnitOf(const char* name, std::string& unit) const {
    const char* sep = name ? std::strchr(name, m_sep) : nullptr;
    if (sep == nullptr || sep == name) return false;
    unit.assign(name, static_cast<size_t>(sep - name));
    return true;
}

std::vector<std::string> ZEMHierarchy::Units() {
    ILPVariableList* vars = nullptr;
    ILPEquationList* eqns = nullptr;
    m_mgr->GetVariableCollectionIntf(&vars);
    m_mgr->GetEquationCollectionIntf(&eqns);
    std::vector<std::string> units;
    std::unordered_set<std::string> seen;
    std::string unit;
    for (ILPVariable* v = vars->FrstVariableObject(); v; v = vars->NextVariableObject())
        if (UnitOf(v->GetName(), unit) && seen.insert(unit).second) units.push_back(unit);
    for (ILPEquation* e = eqns->FrstEquationObject(); e; e = eqns->NextEquationObject())
        if (UnitOf(e->GetName(), unit) && seen.insert(unit).second) units.push_back(unit);
    return units;
}

int ZEMHierarchy::UnitVariableCount(const char* unit) {
    ILPVariableList* vars = nullptr;
    m_mgr->GetVariableCollectionIntf(&vars);
    int n = 0;
    std::string u;
    for (ILPVariable* v = vars->FrstVariableObject(); v; v = vars->NextVariableObject())
        if (unit && UnitOf(v->GetName(), u) && u == unit) ++n;
    return n;
}

int ZEMHierarchy::UnitEquationCount(const char* unit) {
    ILPEquationList* eqns = nullptr;
    m_mgr->GetEquationCollectionIntf(&eqns);
    int n = 0;
    std::string u;
    for (ILPEquation* e = eqns->FrstEquationObject(); e; e = eqns->NextEquationObject())
        if (unit && UnitOf(e->GetName(), u) && u == unit) ++n;
    return n;
}

int ZEMHierarchy::CollectUnitVariables(const char* unit, const char* collectionName) {
    ILPVariableCollection* col = nullptr;
    m_mgr->NewNamedVarCollection(collectionName, &col);
    if (col == nullptr) return 0;
    // Refill: drop the present members first.
    std::vector<ILPVariable*> old;
    for (ILPVariable* v = col->FrstVariableObject(); v; v = col->NextVariableObject())
        old.push_back(v);
    for (ILPVariable* v : old) col->RemoveVariable(v);
    ILPVariableList* vars = nullptr;
    m_mgr->GetVariableCollectionIntf(&vars);
    std::string u;
    for (ILPVariable* v = vars->FrstVariableObject(); v; v = vars->NextVariableObject())
        if (unit && UnitOf(v->GetName(), u) && u == unit) col->AddVariableObject(v);
    return col->CollectionSize();
}
