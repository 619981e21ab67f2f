#include "lpdata/LPMatrix.h"

#include <algorithm>
#include <new>
#include <string>

#include "lpdata/ILPEquation.h"
#include "lpdata/ILPNonZero.h"
#include "lpdata/ILPVariable.h"
#include "lpdata/LPEquationList.h"
#include "lpdata/LPNonZero.h"
#include "lpdata/LPNonZeroPool.h"
#include "lpdata/LPVariableList.h"
#include "lpdata/ZEMException.h"

namespace {

constexpr const char* kLocateError = "Matrix Structure Error - Unable to Locate NonZero object";
constexpr const char* kNonlinearNZ =
    "NonLinear Matrix Edit Error - Can't Remove NonLinear NonZeros";
constexpr const char* kNonlinearEqn =
    "NonLinear Matrix Edit Error - Can't Remove NonLinear Equation";

}  // namespace

LPMatrix::LPMatrix(ILPVariableList* vars, ILPEquationList* eqns)
    : m_vars(vars),
      m_eqns(eqns),
      m_varImpl(dynamic_cast<const LPVariableList*>(vars)),
      m_eqnImpl(dynamic_cast<const LPEquationList*>(eqns)),
      m_pool(LPNonZeroPool::Create()),
      m_all(m_pool),
      m_cols(m_all) {
    if (m_varImpl) m_varEpoch = m_varImpl->RenumberEpoch();
    if (m_eqnImpl) m_eqnEpoch = m_eqnImpl->RenumberEpoch();
}

LPMatrix::~LPMatrix() {
    for (ILPNonZero* nz : m_all) nz->Destroy();
    m_pool->Drop();
}

void LPMatrix::CreateNewNonZeroObject(ILPNonZero** out) {
    if (out != nullptr) *out = m_pool->Make();
}

int LPMatrix::NumberOfNonLinearNonZeros() {
    int n = 0;
    for (const ILPNonZero* nz : m_all)
        if (nz->GetNonlinear() > 0) ++n;
    return n;
}

int LPMatrix::RowLimit() const { return m_eqns ? m_eqns->NumberOfEquations() : -1; }
int LPMatrix::ColLimit() const { return m_vars ? m_vars->NumberOfVariables() : -1; }

// Follows renumberings of the lists by re-keying rows and columns.
void LPMatrix::Sync() {
    if (m_eqnImpl && m_eqnImpl->RenumberEpoch() != m_eqnEpoch) {
        m_rows.Rekey(RowLimit());
        m_eqnEpoch = m_eqnImpl->RenumberEpoch();
    }
    if (m_varImpl && m_varImpl->RenumberEpoch() != m_varEpoch) {
        m_cols.Rekey();
        m_varEpoch = m_varImpl->RenumberEpoch();
    }
}

void LPMatrix::SettleRows() {
    Sync();
    m_rows.Settle(m_all, RowLimit());
}

// ---- insertion ----------------------------------------------------------------

ILPNonZero* LPMatrix::AddNonZeroObject(ILPNonZero* nz) {
    if (nz == nullptr) return nullptr;
    ILPEquation* eqn = nz->GetEquationPtr();
    if (eqn == nullptr || nz->GetVariablePtr() == nullptr)
        ZEM_RAISE(zemsrc::kLpData, "LPStdDataMgr Error", "NonZero object has no Equation or Variable",
                  "LPMatrix::AddNonZeroObject");
    Sync();
    ++m_structure;
    const size_t col = m_cols.For(nz, ColLimit(), "LPMatrix::AddNonZeroObject");
    if (ILPNonZero* dup = m_cols.Find(col, eqn)) {
        if (dup != nz) {
            dup->SetCoefficient(dup->GetCoefficient() + nz->GetCoefficient());
            nz->Destroy();
        }
        return dup;
    }
    m_all.push_back(nz);
    nz->SetIndex(static_cast<int>(m_all.size()));
    m_cols.Append(col, nz);
    return nz;
}

ILPNonZero* LPMatrix::AddNonZeroObject(ILPNonZero* nz, int row) {
    const size_t before = m_all.size();
    ILPNonZero* kept = AddNonZeroObject(nz);
    if (m_all.size() > before && row >= 1 && row <= RowLimit())
        m_rows.NoteAppended(before, static_cast<size_t>(row), RowLimit());
    return kept;
}

void LPMatrix::FastInsertNonZeroObject(ILPNonZero* nz) {
    if (nz == nullptr) return;
    if (nz->GetEquationPtr() == nullptr || nz->GetVariablePtr() == nullptr)
        ZEM_RAISE(zemsrc::kLpData, "LPStdDataMgr Error", "NonZero object has no Equation or Variable",
                  "LPMatrix::FastInsertNonZeroObject");
    Sync();
    ++m_structure;
    const size_t col = m_cols.For(nz, ColLimit(), "LPMatrix::FastInsertNonZeroObject");
    m_all.push_back(nz);
    nz->SetIndex(static_cast<int>(m_all.size()));
    ++m_persisted;
    m_cols.Append(col, nz);
}

// ---- removal -------------------------------------------------------------------

void LPMatrix::RefuseNonlinear(ILPNonZero* nz, const char* routine) {
    if (nz->GetNonlinear() >= 1) ZEM_RAISE(zemsrc::kLpData, kNonlinearNZ, DescribeNonZero(nz), routine);
}

void LPMatrix::RefuseNonlinearEquation(ILPEquation* eqn, const char* routine) {
    if (eqn->GetNonlinear() >= 1)
        ZEM_RAISE(zemsrc::kLpData, kNonlinearEqn, std::string("Equation : ") + eqn->GetName(),
                  routine);
}

size_t LPMatrix::PositionOf(ILPNonZero* nz) const {
    const int idx = nz->GetIndex();
    if (idx >= 1 && static_cast<size_t>(idx) <= m_all.size() && m_all[idx - 1] == nz)
        return static_cast<size_t>(idx) - 1;
    const size_t pos = m_all.Find(nz);
    return pos == LPNonZeroList::npos ? kNone : pos;
}

void LPMatrix::EraseByRowNonZero(ILPNonZero* nz) {
    if (PositionOf(nz) == kNone)
        ZEM_RAISE(zemsrc::kLpData, kLocateError, DescribeNonZero(nz), "LPMatrix::EraseByRowNonZero");
    m_rows.Invalidate();
}

void LPMatrix::EraseByColNonZero(ILPNonZero* nz) {
    Sync();
    if (!m_cols.Erase(nz))
        ZEM_RAISE(zemsrc::kLpData, kLocateError, DescribeNonZero(nz), "LPMatrix::EraseByColNonZero");
}

void LPMatrix::RemoveNonZero(ILPNonZero* nz) {
    if (nz == nullptr) return;
    RefuseNonlinear(nz, "LPMatrix::RemoveNonZero");
    // Locate it in its row and column before changing anything; the rows
    // hold exactly the nonzeros of the list.
    Sync();
    if (PositionOf(nz) == kNone)
        ZEM_RAISE(zemsrc::kLpData, kLocateError, DescribeNonZero(nz), "LPMatrix::EraseByRowNonZero");
    if (!m_cols.Holds(nz))
        ZEM_RAISE(zemsrc::kLpData, kLocateError, DescribeNonZero(nz), "LPMatrix::EraseByColNonZero");
    EraseByRowNonZero(nz);
    EraseByColNonZero(nz);
    const size_t pos = PositionOf(nz);
    if (pos != kNone) m_all.erase(pos);
    ++m_structure;
    m_trash.erase(std::remove(m_trash.begin(), m_trash.end(), nz), m_trash.end());
    ReIndexMatrixNZ(pos == kNone ? 1 : static_cast<int>(pos) + 1);
    if (m_persisted > 0) --m_persisted;
    nz->Destroy();
}

void LPMatrix::MarkTrashed(ILPNonZero* nz) {
    if (nz->GetIndex() == 0) return;  // already marked
    m_cols.Unindex(nz);
    nz->SetIndex(0);
    ++m_structure;
    m_trash.push_back(nz);
}

void LPMatrix::TrashNonZero(ILPNonZero* nz) {
    if (nz == nullptr) return;
    RefuseNonlinear(nz, "LPMatrix::TrasnNonZero");
    const int idx = nz->GetIndex();
    if (idx == 0) return;
    Sync();
    const bool atIndex = static_cast<size_t>(idx) <= m_all.size() && idx >= 1 && m_all[idx - 1] == nz;
    if (!atIndex && !m_cols.Holds(nz))
        ZEM_RAISE(zemsrc::kLpData, kLocateError, DescribeNonZero(nz), "LPMatrix::TrasnNonZero");
    MarkTrashed(nz);
}

std::vector<ILPNonZero*> LPMatrix::ColEntries(ILPVariable* var) {
    Sync();
    const int c = var->GetIndex();
    if (c < 0 || m_cols.Owner(static_cast<size_t>(c)) != var) return {};
    const size_t n = m_cols.Size(static_cast<size_t>(c));
    std::vector<ILPNonZero*> out;
    out.reserve(n);
    for (size_t p = 0; p < n; ++p) out.push_back(m_cols.At(static_cast<size_t>(c), p));
    return out;
}

std::vector<ILPNonZero*> LPMatrix::RowEntries(ILPEquation* eqn) {
    const int r = eqn->GetIndex();
    // An empty row needs no laid-out rows to say so (dropping the empty
    // rows after a read would otherwise lay them out).
    if (r >= 0 && NonZerosInRow(r) == 0) return {};
    SettleRows();
    std::vector<ILPNonZero*> out;
    if (r < 0 || m_rows.Owner(static_cast<size_t>(r)) != eqn) return out;
    const size_t n = m_rows.Size(static_cast<size_t>(r));
    out.reserve(n);
    for (size_t p = 0; p < n; ++p) out.push_back(m_rows.At(static_cast<size_t>(r), p));
    return out;
}

void LPMatrix::TrashVariable(ILPVariable* var) {
    if (var == nullptr) return;
    const std::vector<ILPNonZero*> entries = ColEntries(var);
    for (ILPNonZero* nz : entries) RefuseNonlinear(nz, "LPMatrix::TrashVariable");
    for (ILPNonZero* nz : entries) MarkTrashed(nz);
}

void LPMatrix::TrashEquation(ILPEquation* eqn) {
    if (eqn == nullptr) return;
    RefuseNonlinearEquation(eqn, "LPMatrix::TrashEquation");
    const std::vector<ILPNonZero*> entries = RowEntries(eqn);
    for (ILPNonZero* nz : entries) RefuseNonlinear(nz, "LPMatrix::TrashEquation");
    for (ILPNonZero* nz : entries) MarkTrashed(nz);
}

void LPMatrix::EmptyNonZeroTrash() {
    std::vector<ILPNonZero*> doomed;
    std::unordered_set<const ILPNonZero*> seen;
    for (ILPNonZero* nz : m_trash)
        if (nz->GetIndex() == 0 && seen.insert(nz).second) doomed.push_back(nz);
    m_trash.clear();
    RemoveBatch(doomed);
}

void LPMatrix::EliminateVariable(ILPVariable* var) {
    if (var == nullptr) return;
    const std::vector<ILPNonZero*> doomed = ColEntries(var);
    for (ILPNonZero* nz : doomed) RefuseNonlinear(nz, "LPMatrix::EliminateVariable");
    RemoveBatch(doomed);
}

void LPMatrix::EliminateEquation(ILPEquation* eqn) {
    if (eqn == nullptr) return;
    RefuseNonlinearEquation(eqn, "LPMatrix::EliminateEquation");
    RemoveBatch(RowEntries(eqn));
}

void LPMatrix::EraseByRowNonZerosInTrash() { m_rows.Invalidate(); }
void LPMatrix::EraseByColNonZerosInTrash() { m_cols.Compact(m_doomedList, m_doomed); }

void LPMatrix::RemoveBatch(const std::vector<ILPNonZero*>& doomed) {
    if (doomed.empty()) return;
    Sync();
    m_doomedList = doomed;
    m_doomed.clear();
    m_doomed.insert(doomed.begin(), doomed.end());
    EraseByRowNonZerosInTrash();
    EraseByColNonZerosInTrash();
    const auto gone = [this](const ILPNonZero* nz) { return m_doomed.count(nz) > 0; };
    m_all.RemoveIf(gone);
    ++m_structure;
    m_trash.erase(std::remove_if(m_trash.begin(), m_trash.end(), gone), m_trash.end());
    FullReIndexMatrixNZ();
    for (ILPNonZero* nz : m_doomedList) nz->Destroy();
    m_persisted = std::max(0, m_persisted - static_cast<int>(m_doomedList.size()));
    m_doomed.clear();
    m_doomedList.clear();
}

void LPMatrix::ReIndexMatrixNZ(int from) {
    size_t pos = from > 1 ? static_cast<size_t>(from) - 1 : 0;
    int next = 0;
    for (size_t back = std::min(pos, m_all.size()); back > 0; --back) {
        const int idx = m_all[back - 1]->GetIndex();
        if (idx != 0) {
            next = idx;
            break;
        }
    }
    for (; pos < m_all.size(); ++pos)
        if (m_all[pos]->GetIndex() != 0) m_all[pos]->SetIndex(++next);
}

void LPMatrix::FullReIndexMatrixNZ() { ReIndexMatrixNZ(1); }

void LPMatrix::ReIndexByRowMap(int /*removedRow*/) { m_rows.Rekey(RowLimit()); }
void LPMatrix::ReIndexByColMap(int /*removedCol*/) { m_cols.Rekey(); }

void LPMatrix::ResetMatrixCollection() {
    m_rows.Invalidate();
    m_cols.Rekey();
}

void LPMatrix::BuildFastCollections() {
    // Checks every entry's row and counts the rows; the row layout itself
    // is derived when a row is first walked.
    Sync();
    m_rows.Count(m_all, RowLimit(), m_eqns);
    m_cols.TrimTail();
}

void LPMatrix::ProcessMatrixCollection() { BuildFastCollections(); }

void LPMatrix::ClearDiffFlags() {
    for (ILPNonZero* nz : m_all) nz->SetDiffed(false);
}

// ---- walks and lookups --------------------------------------------------------

ILPNonZero* LPMatrix::RowWalkFirst(Walk& walk) {
    walk.slot = 0;
    walk.pos = 0;
    SettleRows();
    for (; walk.slot < m_rows.Slots(); ++walk.slot, walk.pos = 0)
        if (walk.pos < m_rows.Size(walk.slot)) return m_rows.At(walk.slot, walk.pos);
    walk.slot = kNone;
    return nullptr;
}

ILPNonZero* LPMatrix::RowWalkNext(Walk& walk) {
    if (walk.slot == kNone) return nullptr;
    SettleRows();
    for (++walk.pos; walk.slot < m_rows.Slots(); ++walk.slot, walk.pos = 0)
        if (walk.pos < m_rows.Size(walk.slot)) return m_rows.At(walk.slot, walk.pos);
    walk.slot = kNone;
    return nullptr;
}

ILPNonZero* LPMatrix::ColWalkFirst(Walk& walk) {
    Sync();
    walk.slot = 0;
    walk.pos = 0;
    return ColWalkSettle(walk);
}

ILPNonZero* LPMatrix::ColWalkNext(Walk& walk) {
    if (walk.slot == kNone) return nullptr;
    Sync();
    ++walk.pos;
    return ColWalkSettle(walk);
}

// Moves the walk to the first existing entry at or after its position.
ILPNonZero* LPMatrix::ColWalkSettle(Walk& walk) {
    for (; walk.slot < m_cols.Slots(); ++walk.slot, walk.pos = 0)
        if (walk.pos < m_cols.Size(walk.slot)) return m_cols.At(walk.slot, walk.pos);
    walk.slot = kNone;
    return nullptr;
}

ILPNonZero* LPMatrix::RowFirst(int row, Walk& walk) {
    walk.slot = kNone;
    SettleRows();
    if (row < 0 || m_rows.Size(static_cast<size_t>(row)) == 0) return nullptr;
    walk.slot = static_cast<size_t>(row);
    walk.pos = 0;
    return m_rows.At(walk.slot, 0);
}

ILPNonZero* LPMatrix::RowNext(Walk& walk) {
    if (walk.slot == kNone) return nullptr;
    SettleRows();
    if (walk.pos + 1 < m_rows.Size(walk.slot)) return m_rows.At(walk.slot, ++walk.pos);
    walk.slot = kNone;  // a walk that ran off the end stays ended
    return nullptr;
}

ILPNonZero* LPMatrix::FrstNonZeroObject() {
    m_allCursor = kNone;
    if (m_all.empty()) return nullptr;
    m_allCursor = 0;
    return m_all[0];
}

ILPNonZero* LPMatrix::NextNonZeroObject() {
    if (m_allCursor == kNone) return nullptr;
    if (++m_allCursor < m_all.size()) return m_all[m_allCursor];
    m_allCursor = kNone;  // a walk that ran off the end stays ended
    return nullptr;
}

ILPNonZero* LPMatrix::FrstNonZeroObjectByRow() { return RowWalkFirst(m_byRow); }
ILPNonZero* LPMatrix::NextNonZeroObjectByRow() { return RowWalkNext(m_byRow); }
ILPNonZero* LPMatrix::FrstNonZeroObjectByColumn() { return ColWalkFirst(m_byCol); }
ILPNonZero* LPMatrix::NextNonZeroObjectByColumn() { return ColWalkNext(m_byCol); }
ILPNonZero* LPMatrix::InternalFrstNonZeroObjectByRow() { return RowWalkFirst(m_internalByRow); }
ILPNonZero* LPMatrix::InternalNextNonZeroObjectByRow() { return RowWalkNext(m_internalByRow); }
ILPNonZero* LPMatrix::RowFrstNonZeroObject(int row) { return RowFirst(row, m_inRow); }
ILPNonZero* LPMatrix::RowNextNonZeroObject() { return RowNext(m_inRow); }
ILPNonZero* LPMatrix::InternalRowFrstNonZeroObject(int row) { return RowFirst(row, m_internalInRow); }
ILPNonZero* LPMatrix::InternalRowNextNonZeroObject() { return RowNext(m_internalInRow); }

ILPNonZero* LPMatrix::ColFrstNonZeroObject(int col) {
    Sync();
    m_inCol.slot = kNone;
    ILPNonZero* nz = col < 0 ? nullptr : m_cols.At(static_cast<size_t>(col), 0);
    if (nz == nullptr) return nullptr;
    m_inCol.slot = static_cast<size_t>(col);
    m_inCol.pos = 0;
    return nz;
}

ILPNonZero* LPMatrix::ColNextNonZeroObject() {
    if (m_inCol.slot == kNone) return nullptr;
    Sync();
    if (ILPNonZero* nz = m_cols.At(m_inCol.slot, m_inCol.pos + 1)) {
        ++m_inCol.pos;
        return nz;
    }
    m_inCol.slot = kNone;
    return nullptr;
}

int LPMatrix::NonZerosInRow(int row) {
    Sync();
    m_rows.Count(m_all, RowLimit(), m_eqns);
    return row < 0 ? 0 : static_cast<int>(m_rows.Counted(static_cast<size_t>(row)));
}

int LPMatrix::NonZerosInColumn(int col) {
    Sync();
    return col < 0 ? 0 : static_cast<int>(m_cols.Size(static_cast<size_t>(col)));
}

ILPNonZero* LPMatrix::ExistIncidence(int row, int col) {
    Sync();
    if (col < 0 || m_cols.Size(static_cast<size_t>(col)) == 0) return nullptr;
    const size_t c = static_cast<size_t>(col);
    if (const LPMatrixColumns::RowIndex* index = m_cols.IndexOf(c)) {
        const void* eqn = nullptr;
        if (m_eqns != nullptr) {
            ILPEquation* e = nullptr;
            if (row >= 1) m_eqns->RetrieveEquationObject(row, &e);
            eqn = e;
        } else {
            SettleRows();
            eqn = row < 0 ? nullptr : m_rows.Owner(static_cast<size_t>(row));
        }
        const auto it = eqn ? index->find(eqn) : index->end();
        return it == index->end() ? nullptr : it->second;
    }
    const size_t n = m_cols.Size(c);
    for (size_t p = 0; p < n; ++p) {
        ILPNonZero* nz = m_cols.At(c, p);
        if (nz->GetIndex() != 0 && nz->GetEquationIdx() == row) return nz;
    }
    return nullptr;
}
