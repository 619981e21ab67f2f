// Row-ordered copy of the matrix's linear part, for evaluation.
//
// Evaluating the linear part of every row through the matrix walks one
// separately allocated entry object per coefficient and one variable object
// per entry. The snapshot holds the same coefficients in compressed row form
// (coefficient array, value positions, row starts, and the equation of each
// row), so a pass over the model reads contiguous arrays only.
//
// Rows appear in the order of the matrix's by-row walk; a row's entries keep
// their walk order, so sums are formed in the same order as through the
// matrix. Entries without a variable are left out; a row all of whose
// entries lack a variable is kept with no entries.
//
// Validity: the snapshot is rebuilt when any of these moved since it was
// built: the matrix's structure counter (entries added, summed into, removed),
// the process-wide change counter of the entries (every coefficient, row or
// column pointer written through an LPNonZero), or the renumbering epochs of
// the variable and equation lists. It is only used when every entry is an
// LPNonZero (other entry types do not report their changes) and every
// entry's variable sits in the variable list; otherwise Refresh says no and
// the caller evaluates through the matrix.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

class ILPEquation;
class LPEquationList;
class LPMatrix;
class LPVariableList;

class NLLinearSnapshot {
public:
    // Brings the snapshot up to date. False when it cannot stand in for the
    // matrix (see above).
    bool Refresh(LPMatrix* matrix, const LPVariableList* vars, const LPEquationList* eqns);
    // Forgets the snapshot, so that the next Refresh rebuilds it.
    void Invalidate() { m_state = State::kStale; }

    size_t Rows() const { return m_rowEqn.size(); }
    size_t Entries() const { return m_coef.size(); }

    // Calls done(equation, sum) for each row in order, where sum is the
    // coefficient times values[position of the entry's variable] summed over
    // the row's entries.
    template <typename Done>
    void RowSums(const double* values, Done done) const {
        const double* coef = m_coef.data();
        const int32_t* col = m_col.data();
        const size_t rows = m_rowEqn.size();
        for (size_t r = 0; r < rows; ++r) {
            double sum = 0.0;
            for (size_t k = m_start[r], end = m_start[r + 1]; k < end; ++k) sum += coef[k] * values[col[k]];
            done(m_rowEqn[r], sum);
        }
    }

private:
    enum class State { kStale, kCurrent, kUnusable };
    void Build(LPMatrix* matrix, const LPVariableList* vars);

    State m_state = State::kStale;
    uint64_t m_entryChanges = 0;
    uint64_t m_structure = 0;
    uint64_t m_varEpoch = 0;
    uint64_t m_eqnEpoch = 0;

    std::vector<ILPEquation*> m_rowEqn;
    std::vector<size_t> m_start;  // Rows() + 1 starts into m_coef / m_col
    std::vector<int32_t> m_col;   // position of the variable in the list
    std::vector<double> m_coef;
};
