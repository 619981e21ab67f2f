#include "zemmgr/ZEMModelExecution.h"

#include "lpdata/ILPEquation.h"
#include "lpdata/ILPEquationList.h"
#include "lpdata/ZEMException.h"
#include "nlpdata/INonLinearModel.h"
#include "zemmgr/IZEMMgr.h"

ZEMModelExecution::ZEMModelExecution(IZEMDataMgr* mgr) {
    mgr->GetEquationCollectionIntf(&m_eqns);
    mgr->GetNonLinearModelIntf(&m_nonlinear);
}

ILPEquation* ZEMModelExecution::Find(const char* eqnName, const char* routine) {
    ILPEquation* eqn = eqnName ? m_eqns->EqnNameLookup(eqnName) : nullptr;
    if (eqn == nullptr)
        ZEM_RAISE(zemsrc::kZemMgr, "ZEMModelExecution Error", "Equation name not found", routine);
    return eqn;
}

double ZEMModelExecution::EvaluateEquation(const char* eqnName) {
    ILPEquation* eqn = Find(eqnName, "ZEMModelExecution::EvaluateEquation");
    return m_nonlinear->EvaluateRow(eqn->GetIndex());
}

double ZEMModelExecution::GetRowValue(const char* eqnName) {
    return Find(eqnName, "ZEMModelExecution::GetRowValue")->GetEqnValue();
}

int ZEMModelExecution::EvaluateAllEquations() {
    m_nonlinear->EvaluateModel();
    return m_eqns->NumberOfEquations();
}

double ZEMModelExecution::EquationResidual(const char* eqnName) {
    ILPEquation* eqn = Find(eqnName, "ZEMModelExecution::EquationResidual");
    return m_nonlinear->EvaluateRow(eqn->GetIndex()) - eqn->GetRHS();
}
