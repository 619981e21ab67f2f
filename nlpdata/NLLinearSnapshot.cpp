#include "nlpdata/NLLinearSnapshot.h"

#include <typeinfo>

#include "lpdata/ILPNonZero.h"
#include "lpdata/ILPVariable.h"
#include "lpdata/LPEquationList.h"
#include "lpdata/LPMatrix.h"
#include "lpdata/LPNonZero.h"
#include "lpdata/LPVariableList.h"

bool NLLinearSnapshot::Refresh(LPMatrix* matrix, const LPVariableList* vars,
                               const LPEquationList* eqns) {
    if (matrix == nullptr || vars == nullptr || eqns == nullptr) return false;
    const uint64_t entryChanges = LPNonZero::ChangeCount();
    const uint64_t structure = matrix->StructureCount();
    const uint64_t varEpoch = vars->RenumberEpoch();
    const uint64_t eqnEpoch = eqns->RenumberEpoch();
    if (m_state != State::kStale && entryChanges == m_entryChanges && structure == m_structure &&
        varEpoch == m_varEpoch && eqnEpoch == m_eqnEpoch)
        return m_state == State::kCurrent;
    Build(matrix, vars);
    m_entryChanges = entryChanges;
    m_structure = structure;
    m_varEpoch = varEpoch;
    m_eqnEpoch = eqnEpoch;
    return m_state == State::kCurrent;
}

void NLLinearSnapshot::Build(LPMatrix* matrix, const LPVariableList* vars) {
    m_rowEqn.clear();
    m_start.clear();
    m_col.clear();
    m_coef.clear();
    m_state = State::kUnusable;
    const size_t total = static_cast<size_t>(matrix->NumberOfNonZeros());
    m_col.reserve(total);
    m_coef.reserve(total);
    const std::vector<ILPVariable*>& items = vars->Items();
    ILPEquation* current = nullptr;
    for (ILPNonZero* nz = matrix->FrstNonZeroObjectByRow(); nz; nz = matrix->NextNonZeroObjectByRow()) {
        if (typeid(*nz) != typeid(LPNonZero)) return;
        const LPNonZero* entry = static_cast<const LPNonZero*>(nz);
        ILPEquation* eqn = entry->GetEquationPtr();
        if (eqn == nullptr) return;
        if (eqn != current || m_rowEqn.empty()) {
            m_start.push_back(m_col.size());
            m_rowEqn.push_back(eqn);
            current = eqn;
        }
        ILPVariable* var = entry->GetVariablePtr();
        if (var == nullptr) continue;
        const int idx = var->GetIndex();
        if (idx < 1 || static_cast<size_t>(idx) > items.size() || items[static_cast<size_t>(idx) - 1] != var)
            return;
        m_col.push_back(idx - 1);
        m_coef.push_back(entry->GetCoefficient());
    }
    m_start.push_back(m_col.size());
    m_state = State::kCurrent;
}
