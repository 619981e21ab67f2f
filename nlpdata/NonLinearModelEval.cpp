// Evaluation of rows, the Jacobian and the linearised model.
#include <algorithm>
#include <cmath>

#include "lpdata/ILPEquation.h"
#include "lpdata/ILPEquationList.h"
#include "lpdata/ILPMatrix.h"
#include "lpdata/ILPNonZero.h"
#include "lpdata/ILPVariable.h"
#include "lpdata/LPVariableList.h"
#include "lpdata/ZEMTypes.h"
#include "nlpdata/INonLinearBlockList.h"
#include "nlpdata/NonLinearModel.h"

double NonLinearModel::TermsSum(const std::vector<INonLinearity*>& terms) {
    double sum = 0.0;
    for (INonLinearity* t : terms)
        if (t->Active()) sum += t->EvaluateTerm();
    return sum;
}

double NonLinearModel::LinearRowSum(int row, ILPEquation** eqn) {
    double sum = 0.0;
    ILPNonZero* nz = m_matrix->RowFrstNonZeroObject(row);
    if (nz) *eqn = nz->GetEquationPtr();
    for (; nz; nz = m_matrix->RowNextNonZeroObject())
        if (ILPVariable* v = nz->GetVariablePtr()) sum += nz->GetCoefficient() * v->GetVarValue();
    return sum;
}

double NonLinearModel::EvaluateRow(int row) {
    ILPEquation* eqn = nullptr;
    double sum = LinearRowSum(row, &eqn);
    const std::vector<INonLinearity*>* terms = RowTerms(row);
    if (terms && !terms->empty()) {
        if (!eqn) eqn = terms->front()->GetEquationPtr();
        sum += TermsSum(*terms);
    }
    if (eqn) eqn->SetEqnValue(sum);
    return sum;
}

void NonLinearModel::JacobianRow(int row) {
    for (ILPNonZero* nz = m_matrix->RowFrstNonZeroObject(row); nz;
         nz = m_matrix->RowNextNonZeroObject())
        nz->SetPartialDeriv(nz->GetCoefficient());
    const std::vector<INonLinearity*>* terms = RowTerms(row);
    if (!terms) return;
    for (INonLinearity* t : *terms)
        if (t->Active()) t->TermJacobian();
}

template <typename RowDone>
void NonLinearModel::LinearRowSums(RowDone done) {
    if (m_matrixImpl && m_snapshot.Refresh(m_matrixImpl, m_varImpl, m_eqnImpl)) {
        const std::vector<ILPVariable*>& vars = m_varImpl->Items();
        m_values.resize(vars.size());
        for (size_t i = 0; i < vars.size(); ++i) m_values[i] = vars[i]->GetVarValue();
        m_snapshot.RowSums(m_values.data(), done);
        return;
    }
    // Lists or entries of other implementations: walk the matrix itself.
    ILPNonZero* nz = m_matrix->FrstNonZeroObjectByRow();
    while (nz) {
        ILPEquation* eqn = nz->GetEquationPtr();
        double sum = 0.0;
        do {
            if (ILPVariable* v = nz->GetVariablePtr()) sum += nz->GetCoefficient() * v->GetVarValue();
            nz = m_matrix->NextNonZeroObjectByRow();
        } while (nz && nz->GetEquationPtr() == eqn);
        if (eqn) done(eqn, sum);
    }
}

size_t NonLinearModel::StartRowPass() {
    EnsureRowMap();
    if (++m_evalEpoch == 0) {
        std::fill(m_rowSeen.begin(), m_rowSeen.end(), 0u);
        m_evalEpoch = 1;
    }
    if (m_rowSeen.size() < m_rowMap.size()) m_rowSeen.resize(m_rowMap.size(), 0u);
    return m_rowMap.size();
}

bool NonLinearModel::EvaluateModel() {
    if (!PreEvaluateModel()) return false;
    const size_t mapped = StartRowPass();
    LinearRowSums([&](ILPEquation* eqn, double sum) {
        const int r = eqn->GetIndex();
        if (r >= 1 && static_cast<size_t>(r) < mapped) {
            sum += TermsSum(m_rowMap[r]);
            m_rowSeen[r] = m_evalEpoch;
        }
        eqn->SetEqnValue(sum);
        UpdateResidualValue(eqn);
    });
    // Rows whose only content is terms (no matrix entries).
    for (size_t r = 1; r < mapped; ++r) {
        const std::vector<INonLinearity*>& terms = m_rowMap[r];
        if (terms.empty() || m_rowSeen[r] == m_evalEpoch) continue;
        ILPEquation* eqn = terms.front()->GetEquationPtr();
        eqn->SetEqnValue(TermsSum(terms));
        UpdateResidualValue(eqn);
    }
    return true;
}

bool NonLinearModel::EvaluateLinearEqns() {
    const size_t mapped = StartRowPass();
    LinearRowSums([&](ILPEquation* eqn, double sum) {
        eqn->SetEqnValue(sum);
        const int r = eqn->GetIndex();
        if (r >= 1 && static_cast<size_t>(r) < mapped) m_rowSeen[r] = m_evalEpoch;
    });
    // Rows made of terms only have no linear part.
    for (size_t r = 1; r < mapped; ++r)
        if (!m_rowMap[r].empty() && m_rowSeen[r] != m_evalEpoch)
            m_rowMap[r].front()->GetEquationPtr()->SetEqnValue(0.0);
    return true;
}

void NonLinearModel::EvaluateNonlinearities() {
    EnsureRowMap();
    for (size_t r = 1; r < m_rowMap.size(); ++r)
        for (INonLinearity* t : m_rowMap[r])
            if (t->Active()) t->EvaluateTermAndAdd();
}

bool NonLinearModel::EvaluateJacobian() {
    if (!PreEvaluateJacobian()) return false;
    for (ILPNonZero* nz = m_matrix->FrstNonZeroObject(); nz; nz = m_matrix->NextNonZeroObject())
        nz->SetPartialDeriv(nz->GetCoefficient());
    for (INonLinearity* t : m_pool)
        if (t->Active()) t->TermJacobian();
    return true;
}

bool NonLinearModel::EvaluateNonlinearRows() {
    if (!PreEvaluateModel()) return false;
    EnsureRowMap();
    for (size_t r = 1; r < m_rowMap.size(); ++r) {
        if (m_rowMap[r].empty()) continue;
        EvaluateRow(static_cast<int>(r));
        UpdateResidualValue(m_rowMap[r].front()->GetEquationPtr());
    }
    return true;
}

void NonLinearModel::EvaluateNonlinearRowsJacobian() {
    if (!PreEvaluateJacobian()) return;
    EnsureRowMap();
    for (size_t r = 1; r < m_rowMap.size(); ++r)
        if (!m_rowMap[r].empty()) JacobianRow(static_cast<int>(r));
}

void NonLinearModel::EvaluateNonlinearityJacobian() {
    for (INonLinearity* t : m_pool)
        for (ILPNonZero* nz = t->FrstNZ(); nz; nz = t->NextNZ())
            nz->SetPartialDeriv(nz->GetCoefficient());
    for (INonLinearity* t : m_pool)
        if (t->Active()) t->TermJacobian();
}

void NonLinearModel::EvaluateLinearizedModel() {
    EnsureRowMap();
    std::vector<char> seen(m_rowMap.size(), 0);
    ILPNonZero* nz = m_matrix->FrstNonZeroObjectByRow();
    while (nz) {
        ILPEquation* eqn = nz->GetEquationPtr();
        double sum = 0.0;
        do {
            if (ILPVariable* v = nz->GetVariablePtr())
                sum += nz->GetPartialDeriv() * (v->GetVarValue() - v->GetBaseValue());
            nz = m_matrix->NextNonZeroObjectByRow();
        } while (nz && nz->GetEquationPtr() == eqn);
        if (!eqn) continue;
        eqn->SetEqnValue(eqn->GetBaseValue() + sum);
        const int r = eqn->GetIndex();
        if (r >= 1 && static_cast<size_t>(r) < seen.size()) seen[r] = 1;
    }
    for (size_t r = 1; r < m_rowMap.size(); ++r)
        if (!m_rowMap[r].empty() && !seen[r]) {
            ILPEquation* eqn = m_rowMap[r].front()->GetEquationPtr();
            eqn->SetEqnValue(eqn->GetBaseValue());
        }
}

bool NonLinearModel::PreEvaluateModel() {
    std::ostream* log = EqnLog();
    if (log) *log << "---------------------------- New Iteration ---------------------------- \n\n";
    if (m_blocks && !m_blocks->PreEvaluateBlocks()) {
        if (log) *log << "*** ERROR: PreEvaluateModel Failed for Block Residuals or Sensitivity. \n\n";
        return false;
    }
    // External blocks are not hosted by this library: nothing else to compute.
    return true;
}

bool NonLinearModel::PreEvaluateJacobian() {
    // Block sensitivities are computed with the residuals in PreEvaluateModel;
    // external blocks, which would need their own pass, are not hosted here.
    return true;
}

void NonLinearModel::UpdateResidualValue(ILPEquation* eqn) {
    if (!eqn) return;
    const double v = eqn->GetEqnValue();
    const double rhs = eqn->GetRHS();
    const bool ranged = eqn->GetRange() != 0.0;
    double residual = 0.0;
    switch (eqn->GetType()) {
        case ZEM_EQN_EQ: residual = std::fabs(v - rhs); break;
        case ZEM_EQN_LE:
            residual = std::max(0.0, v - rhs);
            if (ranged) residual += std::max(0.0, eqn->GetRHSLo() - v);
            break;
        case ZEM_EQN_GE:
            residual = std::max(0.0, rhs - v);
            if (ranged) residual += std::max(0.0, v - eqn->GetRHSUp());
            break;
        default: residual = 0.0; break;
    }
    eqn->SetResidualValue(residual);
}
