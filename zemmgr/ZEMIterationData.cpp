#include "zemmgr/ZEMIterationData.h"

#include <new>

#include "lpdata/ILPEquation.h"
#include "lpdata/ILPEquationList.h"
#include "lpdata/ILPVariable.h"
#include "lpdata/ILPVariableList.h"
#include "zemmgr/IZEMMgr.h"

ZEMIterationData::ZEMIterationData(int nVars, int nEqns)
    : m_vars(nVars > 0 ? static_cast<size_t>(nVars) : 0, tVarIterDataStruct{}),
      m_eqns(nEqns > 0 ? static_cast<size_t>(nEqns) : 0, tEqnIterDataStruct{}) {}

ZEMIterationData::ZEMIterationData(IZEMMgr* mgr) { AllocateAndPopulateVarEqnArrays(mgr); }

void ZEMIterationData::AllocateAndPopulateVarEqnArrays(IZEMMgr* mgr) {
    ILPVariableList* vars = nullptr;
    ILPEquationList* eqns = nullptr;
    mgr->GetVariableCollectionIntf(&vars);
    mgr->GetEquationCollectionIntf(&eqns);
    m_vars.assign(static_cast<size_t>(vars->NumberOfVariables()), tVarIterDataStruct{});
    m_eqns.assign(static_cast<size_t>(eqns->NumberOfEquations()), tEqnIterDataStruct{});
    UpdateVarandEqnArrays(mgr);
}

// Refills in place; a model that grew since the arrays were made gets larger
// arrays (earlier array pointers are then no longer valid).
void ZEMIterationData::UpdateVarandEqnArrays(IZEMMgr* mgr) {
    if (mgr == nullptr) return;
    ILPVariableList* vars = nullptr;
    ILPEquationList* eqns = nullptr;
    mgr->GetVariableCollectionIntf(&vars);
    mgr->GetEquationCollectionIntf(&eqns);
    const size_t nv = static_cast<size_t>(vars->NumberOfVariables());
    const size_t ne = static_cast<size_t>(eqns->NumberOfEquations());
    if (m_vars.size() < nv) m_vars.resize(nv, tVarIterDataStruct{});
    if (m_eqns.size() < ne) m_eqns.resize(ne, tEqnIterDataStruct{});
    size_t k = 0;
    for (ILPVariable* v = vars->FrstVariableObject(); v && k < m_vars.size();
         v = vars->NextVariableObject())
        v->PopulateVarIterStruct(m_vars[k++]);
    k = 0;
    for (ILPEquation* e = eqns->FrstEquationObject(); e && k < m_eqns.size();
         e = eqns->NextEquationObject())
        e->PopulateEqnIterStruct(m_eqns[k++]);
}

void IZEMIterationDataCreateInstance(IIterationData** out, int nVars, int nEqns) {
    if (out == nullptr) return;
    try {
        *out = new ZEMIterationData(nVars, nEqns);
    } catch (const std::bad_alloc&) {
        *out = nullptr;
    }
}

void IZEMIterationDataCreateInstanceFromZEM(IIterationData** out, IZEMMgr* mgr) {
    if (out == nullptr) return;
    *out = nullptr;
    if (mgr == nullptr) return;
    try {
        *out = new ZEMIterationData(mgr);
    } catch (const std::bad_alloc&) {
        *out = nullptr;
    }
}
