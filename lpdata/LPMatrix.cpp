#include "lpdata/LPMatrix.h"

#include <algorithm>
#include <new>
#include <string>

#include "lpdata/ILPEquation.h"
#include "lpdata/ILPNonZero.h"
#include "lpdata/ILPVariable.h"
#include "lpdata/LPEquationList.h"
#include "lpdata/LPNonZero.h"
#include "lpdata/LPVariableList.h"
#include "lpdata/ZEMException.h"

namespace {

// Column length from which a column keeps a hash index of its rows.
constexpr size_t kIndexFrom = 16;

constexpr const char* kLocateError = "Matrix Structure Error - Unable to Locate NonZero object";
constexpr const char* kNonlinearNZ =
    "NonLinear Matrix Edit Error - Can't Remove NonLinear NonZeros";
constexpr const char* kNonlinearEqn =
    "NonLinear Matrix Edit Error - Can't Remove NonLinear Equation";
constexpr const char* kIndexError =
    "Matrix Structure Error - Inconsistent Equation or Variable index";

std::string Describe(const ILPNonZero* nz) {
    const ILPEquation* e = nz->GetEquationPtr();
    const ILPVariable* v = nz->GetVariablePtr();
    return std::string("NonZero : ") + (e ? e->GetName() : "") + " : " + (v ? v->GetName() : "");
}

const void* RowOwner(const ILPNonZero* nz) { return static_cast<const void*>(nz->GetEquationPtr()); }
const void* ColOwner(const ILPNonZero* nz) { return static_cast<const void*>(nz->GetVariablePtr()); }

}  // namespace

LPMatrix::LPMatrix(ILPVariableList* vars, ILPEquationList* eqns)
    : m_vars(vars),
      m_eqns(eqns),
      m_varImpl(dynamic_cast<const LPVariableList*>(vars)),
      m_eqnImpl(dynamic_cast<const LPEquationList*>(eqns)) {
    if (m_varImpl) m_varEpoch = m_varImpl->RenumberEpoch();
    if (m_eqnImpl) m_eqnEpoch = m_eqnImpl->RenumberEpoch();
}

LPMatrix::~LPMatrix() {
    for (ILPNonZero* nz : m_all) nz->Destroy();
}

void LPMatrix::CreateNewNonZeroObject(ILPNonZero** out) {
    if (out != nullptr) *out = new (std::nothrow) LPNonZero();
}

int LPMatrix::NumberOfNonLinearNonZeros() {
    int n = 0;
    for (const ILPNonZero* nz : m_all)
        if (nz->GetNonlinear() > 0) ++n;
    return n;
}

// ---- keys of the row and column lines ------------------------------------------

static int KeyOf(bool rows, const ILPNonZero* nz) {
    return rows ? nz->GetEquationIdx() : nz->GetVariableIdx();
}

void LPMatrix::Sync() {
    if (m_eqnImpl && m_eqnImpl->RenumberEpoch() != m_eqnEpoch) m_rowsStale = true;
    if (m_varImpl && m_varImpl->RenumberEpoch() != m_varEpoch) m_colsStale = true;
    if (m_rowsStale) Rekey(kRows);
    if (m_colsStale) Rekey(kCols);
}

void LPMatrix::Rekey(Axis axis) {
    const bool rows = axis == kRows;
    std::vector<Line>& lines = Lines(axis);
    const char* routine = rows ? "LPMatrix::ReIndexByRowMap" : "LPMatrix::ReIndexByColMap";
    // Validate every new key before moving anything.
    std::vector<int> keys(lines.size(), -1);
    size_t top = 0;
    for (size_t i = 0; i < lines.size(); ++i) {
        if (lines[i].entries.empty()) continue;
        const int key = KeyOf(rows, lines[i].entries.front());
        if (key < 0) ZEM_RAISE(zemsrc::kLpData, kIndexError, Describe(lines[i].entries.front()), routine);
        keys[i] = key;
        top = std::max(top, static_cast<size_t>(key) + 1);
    }
    std::vector<char> taken(top, 0);
    for (size_t i = 0; i < lines.size(); ++i) {
        if (keys[i] < 0) continue;
        if (taken[static_cast<size_t>(keys[i])])
            ZEM_RAISE(zemsrc::kLpData, kIndexError, Describe(lines[i].entries.front()), routine);
        taken[static_cast<size_t>(keys[i])] = 1;
    }
    std::vector<Line> fresh(top);
    for (size_t i = 0; i < lines.size(); ++i)
        if (keys[i] >= 0) fresh[static_cast<size_t>(keys[i])] = std::move(lines[i]);
    lines.swap(fresh);
    if (rows) {
        m_rowsStale = false;
        if (m_eqnImpl) m_eqnEpoch = m_eqnImpl->RenumberEpoch();
    } else {
        m_colsStale = false;
        if (m_varImpl) m_varEpoch = m_varImpl->RenumberEpoch();
    }
}

LPMatrix::Line* LPMatrix::LineAt(Axis axis, int idx) {
    std::vector<Line>& lines = Lines(axis);
    if (idx < 0 || static_cast<size_t>(idx) >= lines.size()) return nullptr;
    return &lines[static_cast<size_t>(idx)];
}

LPMatrix::Line& LPMatrix::LineFor(Axis axis, const void* entity, int idx, ILPNonZero* nz,
                                  const char* routine) {
    std::vector<Line>& lines = Lines(axis);
    int limit = -1;
    if (axis == kRows && m_eqns) limit = m_eqns->NumberOfEquations();
    if (axis == kCols && m_vars) limit = m_vars->NumberOfVariables();
    if (idx < 0 || (limit >= 0 && idx > limit))
        ZEM_RAISE(zemsrc::kLpData, kIndexError, Describe(nz), routine);
    for (int attempt = 0; attempt < 2; ++attempt) {
        if (static_cast<size_t>(idx) >= lines.size())
            lines.resize(static_cast<size_t>(std::max(idx, limit)) + 1);
        Line& line = lines[static_cast<size_t>(idx)];
        if (line.entries.empty()) line.owner = entity;
        if (line.owner == entity) return line;
        // The slot holds another entity's line: the keys are out of date
        // (an index changed behind the lists' backs). Re-key once and retry.
        Rekey(axis);
    }
    ZEM_RAISE(zemsrc::kLpData, kIndexError, Describe(nz), routine);
}

ILPNonZero* LPMatrix::FindInColumn(Line& col, const ILPEquation* eqn) {
    const void* key = static_cast<const void*>(eqn);
    if (col.index) {
        const auto it = col.index->find(key);
        return it == col.index->end() ? nullptr : it->second;
    }
    for (ILPNonZero* nz : col.entries)
        if (RowOwner(nz) == key && nz->GetIndex() != 0) return nz;
    return nullptr;
}

void LPMatrix::Append(Line& row, Line& col, ILPNonZero* nz) {
    col.entries.push_back(nz);
    if (col.index) {
        col.index->emplace(RowOwner(nz), nz);
    } else if (col.entries.size() >= kIndexFrom) {
        col.index = std::make_unique<PartnerIndex>();
        col.index->reserve(col.entries.size() * 2);
        for (ILPNonZero* e : col.entries)
            if (e->GetIndex() != 0) col.index->emplace(RowOwner(e), e);
    }
    row.entries.push_back(nz);
}

// ---- insertion ----------------------------------------------------------------

ILPNonZero* LPMatrix::AddNonZeroObject(ILPNonZero* nz) {
    if (nz == nullptr) return nullptr;
    ILPEquation* eqn = nz->GetEquationPtr();
    ILPVariable* var = nz->GetVariablePtr();
    if (eqn == nullptr || var == nullptr)
        ZEM_RAISE(zemsrc::kLpData, "LPStdDataMgr Error", "NonZero object has no Equation or Variable",
                  "LPMatrix::AddNonZeroObject");
    Sync();
    Line& col = LineFor(kCols, var, var->GetIndex(), nz, "LPMatrix::AddNonZeroObject");
    if (ILPNonZero* dup = FindInColumn(col, eqn)) {
        if (dup != nz) {
            dup->SetCoefficient(dup->GetCoefficient() + nz->GetCoefficient());
            nz->Destroy();
        }
        return dup;
    }
    Line& row = LineFor(kRows, eqn, eqn->GetIndex(), nz, "LPMatrix::AddNonZeroObject");
    m_all.push_back(nz);
    nz->SetIndex(static_cast<int>(m_all.size()));
    Append(row, col, nz);
    return nz;
}

void LPMatrix::FastInsertNonZeroObject(ILPNonZero* nz) {
    if (nz == nullptr) return;
    ILPEquation* eqn = nz->GetEquationPtr();
    ILPVariable* var = nz->GetVariablePtr();
    if (eqn == nullptr || var == nullptr)
        ZEM_RAISE(zemsrc::kLpData, "LPStdDataMgr Error", "NonZero object has no Equation or Variable",
                  "LPMatrix::FastInsertNonZeroObject");
    Sync();
    Line& col = LineFor(kCols, var, var->GetIndex(), nz, "LPMatrix::FastInsertNonZeroObject");
    Line& row = LineFor(kRows, eqn, eqn->GetIndex(), nz, "LPMatrix::FastInsertNonZeroObject");
    m_all.push_back(nz);
    nz->SetIndex(static_cast<int>(m_all.size()));
    ++m_persisted;
    Append(row, col, nz);
}

// ---- removal -------------------------------------------------------------------

void LPMatrix::RefuseNonlinear(ILPNonZero* nz, const char* routine) {
    if (nz->GetNonlinear() >= 1) ZEM_RAISE(zemsrc::kLpData, kNonlinearNZ, Describe(nz), routine);
}

void LPMatrix::RefuseNonlinearEquation(ILPEquation* eqn, const char* routine) {
    if (eqn->GetNonlinear() >= 1)
        ZEM_RAISE(zemsrc::kLpData, kNonlinearEqn, std::string("Equation : ") + eqn->GetName(),
                  routine);
}

size_t LPMatrix::FindInLine(Axis axis, ILPNonZero* nz, Line** line) {
    *line = LineAt(axis, KeyOf(axis == kRows, nz));
    if (*line == nullptr) return kNone;
    const auto& entries = (*line)->entries;
    const auto it = std::find(entries.begin(), entries.end(), nz);
    return it == entries.end() ? kNone : static_cast<size_t>(it - entries.begin());
}

void LPMatrix::EraseFromLine(Axis axis, ILPNonZero* nz, const char* routine) {
    Line* line = nullptr;
    const size_t pos = FindInLine(axis, nz, &line);
    if (pos == kNone) ZEM_RAISE(zemsrc::kLpData, kLocateError, Describe(nz), routine);
    line->entries.erase(line->entries.begin() + static_cast<std::ptrdiff_t>(pos));
    if (line->index) {
        const auto it = line->index->find(RowOwner(nz));
        if (it != line->index->end() && it->second == nz) line->index->erase(it);
    }
    if (line->entries.empty()) {
        line->owner = nullptr;
        line->index.reset();
    }
}

void LPMatrix::EraseByRowNonZero(ILPNonZero* nz) {
    Sync();
    EraseFromLine(kRows, nz, "LPMatrix::EraseByRowNonZero");
}

void LPMatrix::EraseByColNonZero(ILPNonZero* nz) {
    Sync();
    EraseFromLine(kCols, nz, "LPMatrix::EraseByColNonZero");
}

void LPMatrix::RemoveNonZero(ILPNonZero* nz) {
    if (nz == nullptr) return;
    RefuseNonlinear(nz, "LPMatrix::RemoveNonZero");
    Sync();
    Line* line = nullptr;
    if (FindInLine(kRows, nz, &line) == kNone)
        ZEM_RAISE(zemsrc::kLpData, kLocateError, Describe(nz), "LPMatrix::EraseByRowNonZero");
    if (FindInLine(kCols, nz, &line) == kNone)
        ZEM_RAISE(zemsrc::kLpData, kLocateError, Describe(nz), "LPMatrix::EraseByColNonZero");
    EraseByRowNonZero(nz);
    EraseByColNonZero(nz);

    size_t pos = 0;
    const int idx = nz->GetIndex();
    if (idx >= 1 && static_cast<size_t>(idx) <= m_all.size() && m_all[idx - 1] == nz)
        pos = static_cast<size_t>(idx) - 1;
    else
        pos = static_cast<size_t>(std::find(m_all.begin(), m_all.end(), nz) - m_all.begin());
    if (pos < m_all.size()) m_all.erase(m_all.begin() + static_cast<std::ptrdiff_t>(pos));
    m_trash.erase(std::remove(m_trash.begin(), m_trash.end(), nz), m_trash.end());
    ReIndexMatrixNZ(static_cast<int>(pos) + 1);
    if (m_persisted > 0) --m_persisted;
    nz->Destroy();
}

void LPMatrix::MarkTrashed(ILPNonZero* nz) {
    if (nz->GetIndex() == 0) return;  // already marked
    Line* col = LineAt(kCols, nz->GetVariableIdx());
    if (col && col->index) {
        const auto it = col->index->find(RowOwner(nz));
        if (it != col->index->end() && it->second == nz) col->index->erase(it);
    }
    nz->SetIndex(0);
    m_trash.push_back(nz);
}

void LPMatrix::TrashNonZero(ILPNonZero* nz) {
    if (nz == nullptr) return;
    RefuseNonlinear(nz, "LPMatrix::TrasnNonZero");
    const int idx = nz->GetIndex();
    if (idx == 0) return;
    Sync();
    const bool atIndex = idx >= 1 && static_cast<size_t>(idx) <= m_all.size() && m_all[idx - 1] == nz;
    Line* line = nullptr;
    if (!atIndex && FindInLine(kCols, nz, &line) == kNone)
        ZEM_RAISE(zemsrc::kLpData, kLocateError, Describe(nz), "LPMatrix::TrasnNonZero");
    MarkTrashed(nz);
}

void LPMatrix::TrashVariable(ILPVariable* var) {
    if (var == nullptr) return;
    Sync();
    Line* col = LineAt(kCols, var->GetIndex());
    if (col == nullptr || col->entries.empty() || col->owner != static_cast<const void*>(var)) return;
    for (ILPNonZero* nz : col->entries) RefuseNonlinear(nz, "LPMatrix::TrashVariable");
    const std::vector<ILPNonZero*> entries = col->entries;
    for (ILPNonZero* nz : entries) MarkTrashed(nz);
}

void LPMatrix::TrashEquation(ILPEquation* eqn) {
    if (eqn == nullptr) return;
    RefuseNonlinearEquation(eqn, "LPMatrix::TrashEquation");
    Sync();
    Line* row = LineAt(kRows, eqn->GetIndex());
    if (row == nullptr || row->entries.empty() || row->owner != static_cast<const void*>(eqn)) return;
    for (ILPNonZero* nz : row->entries) RefuseNonlinear(nz, "LPMatrix::TrashEquation");
    const std::vector<ILPNonZero*> entries = row->entries;
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
    Sync();
    Line* col = LineAt(kCols, var->GetIndex());
    if (col == nullptr || col->entries.empty() || col->owner != static_cast<const void*>(var)) return;
    for (ILPNonZero* nz : col->entries) RefuseNonlinear(nz, "LPMatrix::EliminateVariable");
    const std::vector<ILPNonZero*> doomed = col->entries;
    RemoveBatch(doomed);
}

void LPMatrix::EliminateEquation(ILPEquation* eqn) {
    if (eqn == nullptr) return;
    RefuseNonlinearEquation(eqn, "LPMatrix::EliminateEquation");
    Sync();
    Line* row = LineAt(kRows, eqn->GetIndex());
    if (row == nullptr || row->entries.empty() || row->owner != static_cast<const void*>(eqn)) return;
    const std::vector<ILPNonZero*> doomed = row->entries;
    RemoveBatch(doomed);
}

void LPMatrix::CompactLines(Axis axis) {
    const bool rows = axis == kRows;
    std::vector<int> keys;
    keys.reserve(m_doomedList.size());
    for (const ILPNonZero* nz : m_doomedList) keys.push_back(KeyOf(rows, nz));
    std::sort(keys.begin(), keys.end());
    keys.erase(std::unique(keys.begin(), keys.end()), keys.end());
    for (const int key : keys) {
        Line* line = LineAt(axis, key);
        if (line == nullptr) continue;
        auto& entries = line->entries;
        entries.erase(std::remove_if(entries.begin(), entries.end(),
                                     [this](const ILPNonZero* nz) { return m_doomed.count(nz) > 0; }),
                      entries.end());
        line->index.reset();
        if (entries.empty()) {
            line->owner = nullptr;
        } else if (!rows && entries.size() >= kIndexFrom) {
            line->index = std::make_unique<PartnerIndex>();
            for (ILPNonZero* e : entries)
                if (e->GetIndex() != 0) line->index->emplace(RowOwner(e), e);
        }
    }
}

void LPMatrix::EraseByRowNonZerosInTrash() { CompactLines(kRows); }
void LPMatrix::EraseByColNonZerosInTrash() { CompactLines(kCols); }

void LPMatrix::RemoveBatch(const std::vector<ILPNonZero*>& doomed) {
    if (doomed.empty()) return;
    Sync();
    m_doomedList = doomed;
    m_doomed.clear();
    m_doomed.insert(doomed.begin(), doomed.end());
    EraseByRowNonZerosInTrash();
    EraseByColNonZerosInTrash();
    const auto gone = [this](const ILPNonZero* nz) { return m_doomed.count(nz) > 0; };
    m_all.erase(std::remove_if(m_all.begin(), m_all.end(), gone), m_all.end());
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
    for (size_t back = pos; back > 0; --back) {
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

void LPMatrix::ReIndexByRowMap(int /*removedRow*/) { Rekey(kRows); }
void LPMatrix::ReIndexByColMap(int /*removedCol*/) { Rekey(kCols); }

void LPMatrix::ResetMatrixCollection() { m_rowsStale = m_colsStale = true; }

void LPMatrix::BuildFastCollections() {
    Sync();
    for (std::vector<Line>* lines : {&m_rows, &m_cols})
        while (!lines->empty() && lines->back().entries.empty()) lines->pop_back();
}

void LPMatrix::ProcessMatrixCollection() { BuildFastCollections(); }

void LPMatrix::ClearDiffFlags() {
    for (ILPNonZero* nz : m_all) nz->SetDiffed(false);
}

// ---- walks and lookups --------------------------------------------------------

ILPNonZero* LPMatrix::WalkFirst(Axis axis, Walk& walk) {
    Sync();
    walk.slot = 0;
    walk.pos = 0;
    const std::vector<Line>& lines = Lines(axis);
    while (walk.slot < lines.size()) {
        if (walk.pos < lines[walk.slot].entries.size()) return lines[walk.slot].entries[walk.pos];
        ++walk.slot;
        walk.pos = 0;
    }
    walk.slot = kNone;
    return nullptr;
}

ILPNonZero* LPMatrix::WalkNext(Axis axis, Walk& walk) {
    if (walk.slot == kNone) return nullptr;
    const std::vector<Line>& lines = Lines(axis);
    ++walk.pos;
    while (walk.slot < lines.size()) {
        if (walk.pos < lines[walk.slot].entries.size()) return lines[walk.slot].entries[walk.pos];
        ++walk.slot;
        walk.pos = 0;
    }
    walk.slot = kNone;
    return nullptr;
}

ILPNonZero* LPMatrix::LineFirst(Axis axis, int idx, Walk& walk) {
    Sync();
    walk.slot = kNone;
    const Line* line = LineAt(axis, idx);
    if (line == nullptr || line->entries.empty()) return nullptr;
    walk.slot = static_cast<size_t>(idx);
    walk.pos = 0;
    return line->entries.front();
}

ILPNonZero* LPMatrix::LineNext(Axis axis, Walk& walk) {
    if (walk.slot == kNone) return nullptr;
    const std::vector<Line>& lines = Lines(axis);
    if (walk.slot < lines.size() && walk.pos + 1 < lines[walk.slot].entries.size())
        return lines[walk.slot].entries[++walk.pos];
    walk.slot = kNone;  // a walk that ran off the end stays ended
    return nullptr;
}

ILPNonZero* LPMatrix::FrstNonZeroObject() {
    m_allCursor = kNone;
    if (m_all.empty()) return nullptr;
    m_allCursor = 0;
    return m_all.front();
}

ILPNonZero* LPMatrix::NextNonZeroObject() {
    if (m_allCursor == kNone) return nullptr;
    if (++m_allCursor < m_all.size()) return m_all[m_allCursor];
    m_allCursor = kNone;  // a walk that ran off the end stays ended
    return nullptr;
}

ILPNonZero* LPMatrix::FrstNonZeroObjectByRow() { return WalkFirst(kRows, m_byRow); }
ILPNonZero* LPMatrix::NextNonZeroObjectByRow() { return WalkNext(kRows, m_byRow); }
ILPNonZero* LPMatrix::FrstNonZeroObjectByColumn() { return WalkFirst(kCols, m_byCol); }
ILPNonZero* LPMatrix::NextNonZeroObjectByColumn() { return WalkNext(kCols, m_byCol); }
ILPNonZero* LPMatrix::InternalFrstNonZeroObjectByRow() { return WalkFirst(kRows, m_internalByRow); }
ILPNonZero* LPMatrix::InternalNextNonZeroObjectByRow() { return WalkNext(kRows, m_internalByRow); }

ILPNonZero* LPMatrix::RowFrstNonZeroObject(int row) { return LineFirst(kRows, row, m_inRow); }
ILPNonZero* LPMatrix::RowNextNonZeroObject() { return LineNext(kRows, m_inRow); }
ILPNonZero* LPMatrix::ColFrstNonZeroObject(int col) { return LineFirst(kCols, col, m_inCol); }
ILPNonZero* LPMatrix::ColNextNonZeroObject() { return LineNext(kCols, m_inCol); }
ILPNonZero* LPMatrix::InternalRowFrstNonZeroObject(int row) {
    return LineFirst(kRows, row, m_internalInRow);
}
ILPNonZero* LPMatrix::InternalRowNextNonZeroObject() { return LineNext(kRows, m_internalInRow); }

int LPMatrix::NonZerosInRow(int row) {
    Sync();
    const Line* line = LineAt(kRows, row);
    return line ? static_cast<int>(line->entries.size()) : 0;
}

int LPMatrix::NonZerosInColumn(int col) {
    Sync();
    const Line* line = LineAt(kCols, col);
    return line ? static_cast<int>(line->entries.size()) : 0;
}

ILPNonZero* LPMatrix::ExistIncidence(int row, int col) {
    Sync();
    Line* r = LineAt(kRows, row);
    Line* c = LineAt(kCols, col);
    if (r == nullptr || c == nullptr || r->entries.empty() || c->entries.empty()) return nullptr;
    if (c->index) {
        const auto it = c->index->find(r->owner);
        return it == c->index->end() ? nullptr : it->second;
    }
    if (c->entries.size() <= r->entries.size()) {
        for (ILPNonZero* nz : c->entries)
            if (RowOwner(nz) == r->owner && nz->GetIndex() != 0) return nz;
    } else {
        for (ILPNonZero* nz : r->entries)
            if (ColOwner(nz) == c->owner && nz->GetIndex() != 0) return nz;
    }
    return nullptr;
}
