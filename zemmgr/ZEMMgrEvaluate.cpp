// Evaluation helpers of the model manager: linearisation at the current
// point, solving a row for one variable, and flow updates. See ZEMMgr.h.
#include <algorithm>
#include <cmath>
#include <vector>

#include "lpdata/ILPEquation.h"
#include "lpdata/ILPEquationList.h"
#include "lpdata/ILPMatrix.h"
#include "lpdata/ILPNonZero.h"
#include "lpdata/ILPVariable.h"
#include "lpdata/ILPVariableList.h"
#include "lpdata/ZEMException.h"
#include "nlpdata/INonLinearModel.h"
#include "zemmgr/ZEMMgr.h"

void ZEMMgr::SetupModelLinearization() {
    m_nonlinear->PreEvaluateModel();
    m_nonlinear->EvaluateModel();
    m_nonlinear->PreEvaluateJacobian();
    m_nonlinear->EvaluateJacobian();
    m_vars->UpdateBasePointValues();
    m_eqns->UpdateBasePointValues();
}

void ZEMMgr::LinearizeGeneralNonlinear() {
    ILPMatrix* matrix = Matrix();
    std::vector<ILPEquation*> rows;
    for (ILPEquation* e = m_eqns->FrstEquationObject(); e; e = m_eqns->NextEquationObject())
        if (e->GetNonlinear() > 0) rows.push_back(e);
    if (rows.empty()) return;
    m_nonlinear->PreEvaluateModel();
    m_nonlinear->PreEvaluateJacobian();

    // First take every tangent at the unchanged point, then change the model.
    struct Tangent {
        ILPEquation* row;
        double constant;
    };
    std::vector<Tangent> tangents;
    std::vector<INonLinearity*> terms;
    for (ILPEquation* e : rows) {
        const int idx = e->GetIndex();
        const double value = m_nonlinear->EvaluateRow(idx);
        m_nonlinear->JacobianRow(idx);
        double slopeTimesPoint = 0.0;
        for (ILPNonZero* nz = matrix->RowFrstNonZeroObject(idx); nz;
             nz = matrix->RowNextNonZeroObject())
            slopeTimesPoint += nz->GetPartialDeriv() * nz->GetVariablePtr()->GetVarValue();
        tangents.push_back({e, value - slopeTimesPoint});
        for (INonLinearity* t = m_nonlinear->RowFrstNonLinearityObject(idx); t;
             t = m_nonlinear->RowNextNonLinearityObject())
            terms.push_back(t);
    }
    for (const Tangent& t : tangents) {
        const int idx = t.row->GetIndex();
        for (ILPNonZero* nz = matrix->RowFrstNonZeroObject(idx); nz;
             nz = matrix->RowNextNonZeroObject())
            nz->SetCoefficient(nz->GetPartialDeriv());
    }
    m_nonlinear->BulkRemoveNonLinearity(terms.data(), static_cast<int>(terms.size()));
    for (const Tangent& t : tangents) t.row->SetRHS(t.row->GetRHS() - t.constant);
    ProcessFullCollection();
}

double ZEMMgr::EvaluateInitial(const char* eqnName, const char* varName) {
    ILPEquation* eqn = eqnName ? m_eqns->EqnNameLookup(eqnName) : nullptr;
    if (eqn == nullptr)
        ZEM_RAISE(zemsrc::kZemMgr, "ZEMMgr Error",
                  std::string("EvaluateInitial - Equation name not found : ") +
                      (eqnName ? eqnName : ""),
                  "ZEMMgr::EvaluateInitial");
    const int row = eqn->GetIndex();
    if (varName == nullptr || varName[0] == '\0') return m_nonlinear->EvaluateRow(row);
    ILPVariable* var = m_vars->VarNameLookup(varName);
    if (var == nullptr)
        ZEM_RAISE(zemsrc::kZemMgr, "ZEMMgr Error",
                  std::string("EvaluateInitial - Variable name not found : ") + varName,
                  "ZEMMgr::EvaluateInitial");
    ILPNonZero* entry = Matrix()->ExistIncidence(row, var->GetIndex());
    if (entry == nullptr)
        ZEM_RAISE(zemsrc::kZemMgr, "ZEMMgr Error",
                  std::string("EvaluateInitial - Variable not in Equation : ") + varName + " : " +
                      eqnName,
                  "ZEMMgr::EvaluateInitial");
    const double target = eqn->GetRHS();
    const double lower = var->GetBoundLower();
    const double upper = var->GetBoundUpper();
    for (int iter = 0; iter < 50; ++iter) {
        const double residual = m_nonlinear->EvaluateRow(row) - target;
        m_nonlinear->JacobianRow(row);
        const double slope = entry->GetPartialDeriv();
        if (slope == 0.0 || !std::isfinite(slope) || !std::isfinite(residual)) break;
        const double x = var->GetVarValue();
        const double next = std::min(upper, std::max(lower, x - residual / slope));
        var->SetVarValue(next);
        if (std::fabs(next - x) <= 1e-10 * (1.0 + std::fabs(x))) break;
    }
    m_nonlinear->EvaluateRow(row);
    return var->GetVarValue();
}

int ZEMMgr::UpdateEflo(const char* eqnName, const char* varName) {
    ILPEquation* eqn = eqnName ? m_eqns->EqnNameLookup(eqnName) : nullptr;
    ILPVariable* var = varName ? m_vars->VarNameLookup(varName) : nullptr;
    if (eqn == nullptr || var == nullptr) return 1;
    var->SetVarValue(m_nonlinear->EvaluateRow(eqn->GetIndex()));
    return 0;
}
