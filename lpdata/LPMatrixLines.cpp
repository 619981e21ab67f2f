#include "lpdata/LPMatrixLines.h"

#include <algorithm>
#include <string>

#include "lpdata/ILPEquation.h"
#include "lpdata/ILPEquationList.h"
#include "lpdata/ILPNonZero.h"
#include "lpdata/ILPVariable.h"
#include "lpdata/ZEMException.h"

namespace {

// Column length from which a column keeps a hash index of its rows.
constexpr size_t kIndexFrom = 16;

constexpr const char* kIndexError =
    "Matrix Structure Error - Inconsistent Equation or Variable index";

const void* RowOwner(const ILPNonZero* nz) { return static_cast<const void*>(nz->GetEquationPtr()); }

}  // namespace

std::string DescribeNonZero(const ILPNonZero* nz) {
    const ILPEquation* e = nz->GetEquationPtr();
    const ILPVariable* v = nz->GetVariablePtr();
    return std::string("NonZero : ") + (e ? e->GetName() : "") + " : " + (v ? v->GetName() : "");
}

// ---- laid-out lines --------------------------------------------------------------

void LPMatrixLineStore::Adopt(std::vector<uint32_t>&& start, std::vector<ILPNonZero*>&& data) {
    m_start = std::move(start);
    m_data = std::move(data);
    m_extraOf.assign(Slots(), 0);
    std::vector<std::vector<ILPNonZero*>>().swap(m_extra);
    m_extraCount = 0;
}

void LPMatrixLineStore::Grow(size_t slots) {
    if (slots <= Slots()) return;
    m_start.resize(slots + 1, m_start.empty() ? 0 : m_start.back());
    m_extraOf.resize(slots, 0);
}

void LPMatrixLineStore::Push(size_t s, ILPNonZero* nz) {
    if (!m_extraOf[s]) {
        m_extra.emplace_back();
        m_extraOf[s] = static_cast<uint32_t>(m_extra.size());
    }
    m_extra[m_extraOf[s] - 1].push_back(nz);
    if (++m_extraCount > m_data.size() / 2 + 64) Relayout();
}

void LPMatrixLineStore::Relayout() {
    const size_t slots = Slots();
    std::vector<uint32_t> start(slots + 1, 0);
    std::vector<ILPNonZero*> data;
    data.reserve(Entries());
    for (size_t s = 0; s < slots; ++s) {
        start[s] = static_cast<uint32_t>(data.size());
        data.insert(data.end(), m_data.begin() + m_start[s], m_data.begin() + m_start[s + 1]);
        if (m_extraOf[s]) {
            const std::vector<ILPNonZero*>& extra = m_extra[m_extraOf[s] - 1];
            data.insert(data.end(), extra.begin(), extra.end());
        }
    }
    start[slots] = static_cast<uint32_t>(data.size());
    std::vector<ILPNonZero*>().swap(m_data);  // release before the new layout is kept
    Adopt(std::move(start), std::move(data));
}

void LPMatrixLineStore::Move(const std::vector<size_t>& oldOf) {
    const size_t slots = oldOf.size();
    std::vector<uint32_t> start(slots + 1, 0);
    std::vector<uint32_t> extraOf(slots, 0);
    size_t pos = 0;
    for (size_t r = 0; r < slots; ++r) {
        start[r] = static_cast<uint32_t>(pos);
        const size_t s = oldOf[r];
        if (s == kNone) continue;
        pos += m_start[s + 1] - m_start[s];
        extraOf[r] = m_extraOf[s];
    }
    start[slots] = static_cast<uint32_t>(pos);
    m_start.swap(start);
    m_extraOf.swap(extraOf);
}

void LPMatrixLineStore::Clear() {
    std::vector<uint32_t>().swap(m_start);
    std::vector<ILPNonZero*>().swap(m_data);
    std::vector<uint32_t>().swap(m_extraOf);
    std::vector<std::vector<ILPNonZero*>>().swap(m_extra);
    m_extraCount = 0;
}

// ---- columns -------------------------------------------------------------------

const ILPVariable* LPMatrixColumns::Owner(size_t c) const {
    return Size(c) ? At(c, 0)->GetVariablePtr() : nullptr;
}

size_t LPMatrixColumns::For(ILPNonZero* nz, int limit, const char* routine) {
    const ILPVariable* var = nz->GetVariablePtr();
    const int idx = nz->GetVariableIdx();
    if (idx < (limit >= 0 ? 1 : 0) || (limit >= 0 && idx > limit))
        ZEM_RAISE(zemsrc::kLpData, kIndexError, DescribeNonZero(nz), routine);
    const size_t c = static_cast<size_t>(idx);
    if (c == m_open && var == m_openVar) return c;
    for (int attempt = 0; attempt < 2; ++attempt) {
        if (c >= Slots()) {
            const size_t slots = static_cast<size_t>(std::max(idx, limit)) + 1;
            if (m_runs)
                m_run.resize(slots);
            else
                m_line.resize(slots);
        }
        const ILPVariable* owner = Owner(c);
        if (owner == nullptr || owner == var) return c;
        Rekey();
    }
    ZEM_RAISE(zemsrc::kLpData, kIndexError, DescribeNonZero(nz), routine);
}

const LPMatrixColumns::RowIndex* LPMatrixColumns::IndexOf(size_t c) {
    if (!m_index.empty()) {
        const auto it = m_index.find(c);
        if (it != m_index.end()) return &it->second;
    }
    const size_t n = Size(c);
    if (n < kIndexFrom) return nullptr;
    RowIndex& index = m_index[c];
    index.reserve(n * 2);
    for (size_t p = 0; p < n; ++p) {
        ILPNonZero* e = At(c, p);
        if (e->GetIndex() != 0) index.emplace(RowOwner(e), e);
    }
    return &index;
}

ILPNonZero* LPMatrixColumns::Find(size_t c, const ILPEquation* eqn) {
    const void* key = static_cast<const void*>(eqn);
    const size_t n = Size(c);
    if (n == 0) return nullptr;
    if (n >= kIndexFrom || !m_index.empty()) {
        if (const RowIndex* index = IndexOf(c)) {
            const auto it = index->find(key);
            return it == index->end() ? nullptr : it->second;
        }
    }
    const auto match = [key](const ILPNonZero* nz) { return RowOwner(nz) == key && nz->GetIndex() != 0; };
    if (!m_runs) {
        for (ILPNonZero* nz : m_line[c])
            if (match(nz)) return nz;
        return nullptr;
    }
    // The reading path: the first entry, then a scan of the rest of the run
    // with one list iterator.
    const Run& run = m_run[c];
    if (match(run.first)) return run.first;
    for (size_t p = 1; p < n; ++p) {
        ILPNonZero* nz = m_all[run.pos + p];
        if (match(nz)) return nz;
    }
    return nullptr;
}

void LPMatrixColumns::Append(size_t c, ILPNonZero* nz) {
    if (m_runs) {
        const size_t at = m_all.size() - 1;
        Run& run = m_run[c];
        if (run.count == 0 || (run.count == 1 && run.pos + 1 != at)) {
            // A new run: the column before it is complete, its index goes.
            // A column whose one entry sits apart (as when the objective
            // row's entries come first) starts its run here: the first
            // entry is held on its own.
            if (!m_index.empty() && m_open != kNone) m_index.erase(m_open);
            if (run.count == 0) run.first = nz;
            run.pos = static_cast<uint32_t>(run.count == 0 ? at : at - 1);
            ++run.count;
        } else if (run.pos + run.count == at) {
            ++run.count;
        } else {
            ToLines();
            m_line[c].push_back(nz);
        }
    } else {
        std::vector<ILPNonZero*>& line = m_line[c];
        // A line that starts here gets room for a typical column at once:
        // most hold a few to a dozen entries. With room for 4 (two
        // allocations for most columns) the row-by-row XMPS read took
        // 1.02-1.06 times as long in alternating runs, near the noise.
        if (line.empty()) line.reserve(8);
        line.push_back(nz);
    }
    m_open = c;
    m_openVar = nz->GetVariablePtr();
    if (!m_index.empty()) {
        const auto it = m_index.find(c);
        if (it != m_index.end()) it->second.emplace(RowOwner(nz), nz);
    }
}

void LPMatrixColumns::ToLines() {
    if (!m_runs) return;
    std::vector<std::vector<ILPNonZero*>> lines(m_run.size());
    for (size_t c = 0; c < m_run.size(); ++c) {
        const Run& run = m_run[c];
        if (run.count == 0) continue;
        lines[c].reserve(run.count);
        lines[c].push_back(run.first);
        for (size_t p = 1; p < run.count; ++p) lines[c].push_back(m_all[run.pos + p]);
    }
    m_run = LPBlockTable<Run>();
    m_line.swap(lines);
    m_runs = false;
}

bool LPMatrixColumns::Holds(ILPNonZero* nz) const {
    const int c = nz->GetVariableIdx();
    if (c < 0) return false;
    const size_t n = Size(static_cast<size_t>(c));
    for (size_t p = 0; p < n; ++p)
        if (At(static_cast<size_t>(c), p) == nz) return true;
    return false;
}

bool LPMatrixColumns::Erase(ILPNonZero* nz) {
    if (!Holds(nz)) return false;
    Unindex(nz);
    ToLines();
    const size_t c = static_cast<size_t>(nz->GetVariableIdx());
    std::vector<ILPNonZero*>& line = m_line[c];
    line.erase(std::find(line.begin(), line.end(), nz));
    if (line.empty()) m_index.erase(c);
    m_open = kNone;
    return true;
}

void LPMatrixColumns::Unindex(ILPNonZero* nz) {
    if (m_index.empty()) return;
    const auto line = m_index.find(static_cast<size_t>(nz->GetVariableIdx()));
    if (line == m_index.end()) return;
    const auto it = line->second.find(RowOwner(nz));
    if (it != line->second.end() && it->second == nz) line->second.erase(it);
}

void LPMatrixColumns::Compact(const std::vector<ILPNonZero*>& doomed,
                              const std::unordered_set<const ILPNonZero*>& set) {
    std::vector<size_t> keys;
    keys.reserve(doomed.size());
    for (const ILPNonZero* nz : doomed)
        if (nz->GetVariableIdx() >= 0) keys.push_back(static_cast<size_t>(nz->GetVariableIdx()));
    std::sort(keys.begin(), keys.end());
    keys.erase(std::unique(keys.begin(), keys.end()), keys.end());
    ToLines();
    for (const size_t key : keys) {
        if (key >= m_line.size()) continue;
        std::vector<ILPNonZero*>& line = m_line[key];
        line.erase(std::remove_if(line.begin(), line.end(),
                                  [&set](const ILPNonZero* nz) { return set.count(nz) > 0; }),
                   line.end());
        m_index.erase(key);
    }
    m_open = kNone;
}

void LPMatrixColumns::Rekey() {
    // Validate every new key before moving anything.
    const size_t slots = Slots();
    std::vector<int> keys(slots, -1);
    size_t top = 0;
    for (size_t s = 0; s < slots; ++s) {
        if (Size(s) == 0) continue;
        const int key = At(s, 0)->GetVariableIdx();
        if (key < 0) ZEM_RAISE(zemsrc::kLpData, kIndexError, DescribeNonZero(At(s, 0)), "LPMatrix::ReIndexByColMap");
        keys[s] = key;
        top = std::max(top, static_cast<size_t>(key) + 1);
    }
    std::vector<size_t> oldOf(top, kNone);
    for (size_t s = 0; s < slots; ++s) {
        if (keys[s] < 0) continue;
        if (oldOf[static_cast<size_t>(keys[s])] != kNone)
            ZEM_RAISE(zemsrc::kLpData, kIndexError, DescribeNonZero(At(s, 0)), "LPMatrix::ReIndexByColMap");
        oldOf[static_cast<size_t>(keys[s])] = s;
    }
    if (m_runs) {
        LPBlockTable<Run> run;
        run.resize(top);
        for (size_t r = 0; r < top; ++r)
            if (oldOf[r] != kNone) run[r] = m_run[oldOf[r]];
        m_run = std::move(run);
    } else {
        std::vector<std::vector<ILPNonZero*>> lines(top);
        for (size_t r = 0; r < top; ++r)
            if (oldOf[r] != kNone) lines[r] = std::move(m_line[oldOf[r]]);
        m_line.swap(lines);
    }
    m_index.clear();
    m_open = kNone;
}

void LPMatrixColumns::TrimTail() {
    if (!m_runs) {
        while (!m_line.empty() && m_line.back().empty()) m_line.pop_back();
        return;
    }
    size_t n = m_run.size();
    while (n > 0 && m_run[n - 1].count == 0) --n;
    m_run.resize(n);
}

// ---- rows ------------------------------------------------------------------------

size_t LPMatrixRows::KeyOf(ILPNonZero* nz, const ILPEquation* eqn, int limit) const {
    const int r = eqn ? eqn->GetIndex() : -1;
    if (r < (limit >= 0 ? 1 : 0) || (limit >= 0 && r > limit))
        ZEM_RAISE(zemsrc::kLpData, kIndexError, DescribeNonZero(nz), "LPMatrix::BuildFastCollections");
    return static_cast<size_t>(r);
}

void LPMatrixRows::Claim(size_t r, ILPNonZero* nz, const ILPEquation* owner) {
    if (m_owner[r] == nullptr)
        m_owner[r] = owner;
    else if (m_owner[r] != owner)
        ZEM_RAISE(zemsrc::kLpData, kIndexError, DescribeNonZero(nz), "LPMatrix::BuildFastCollections");
}

void LPMatrixRows::CountRoom(size_t r, int limit) {
    if (r < m_count.size()) return;
    const size_t known = limit >= 0 ? static_cast<size_t>(limit) + 1 : 0;
    m_count.resize(std::max({r + 1, known, m_count.size() + m_count.size() / 2}), 0);
}

void LPMatrixRows::Count(const LPNonZeroList& all, int limit, ILPEquationList* list) {
    if (m_built || list == nullptr) {
        Settle(all, limit);
        return;
    }
    if (m_counted == kNotCounted || m_counted > all.size()) {
        m_count.assign(limit >= 0 ? static_cast<size_t>(limit) + 1 : 0, 0);
        m_counted = 0;
        m_lateCount = m_lateOldest = 0;
    } else {
        ApplyLate();
    }
    constexpr size_t kAhead = 32;  // see Rebuild
    const size_t n = all.size();
    for (size_t i = m_counted; i < n; ++i) {
        if (i + kAhead < n) __builtin_prefetch(all[i + kAhead]->GetEquationPtr());
        const ILPEquation* eqn = all[i]->GetEquationPtr();
        const size_t r = KeyOf(all[i], eqn, limit);
        ILPEquation* held = nullptr;
        list->RetrieveEquationObject(static_cast<int>(r), &held);
        if (held != eqn)
            ZEM_RAISE(zemsrc::kLpData, kIndexError, DescribeNonZero(all[i]), "LPMatrix::BuildFastCollections");
        CountRoom(r, limit);
        ++m_count[r];
        m_counted = i + 1;
    }
}

void LPMatrixRows::NoteAppended(size_t i, size_t r, int limit) {
    if (m_built || m_counted != i) return;
    CountRoom(r, limit);
    __builtin_prefetch(&m_count[r], 1);
    if (m_lateCount < kLate) {
        m_late[m_lateCount++] = r;
    } else {
        ++m_count[m_late[m_lateOldest]];
        m_late[m_lateOldest] = r;
        m_lateOldest = (m_lateOldest + 1) % kLate;
    }
    m_counted = i + 1;
}

void LPMatrixRows::ApplyLate() {
    for (size_t k = 0; k < m_lateCount; ++k) ++m_count[m_late[k]];
    m_lateCount = m_lateOldest = 0;
}

size_t LPMatrixRows::Counted(size_t r) const {
    if (m_built) return Size(r);
    if (r >= m_count.size() || m_counted == kNotCounted) return 0;
    size_t n = m_count[r];
    for (size_t k = 0; k < m_lateCount; ++k) n += m_late[k] == r ? 1 : 0;
    return n;
}

void LPMatrixRows::Rebuild(const LPNonZeroList& all, int limit) {
    m_built = false;
    m_counted = kNotCounted;
    m_lateCount = m_lateOldest = 0;
    std::vector<uint32_t>().swap(m_count);
    const size_t n = all.size();
    // One pass reads each entry's row (and checks its owner), one places it.
    std::vector<uint32_t> keys(n);
    m_owner.assign(limit >= 0 ? static_cast<size_t>(limit) + 1 : 0, nullptr);
    // Reading an entry's row index touches its equation, which is rarely in
    // cache on a large model: the equations are requested a few entries
    // before they are read.
    constexpr size_t kAhead = 32;
    for (size_t i = 0; i < n; ++i) {
        if (i + kAhead < n) __builtin_prefetch(all[i + kAhead]->GetEquationPtr());
        const ILPEquation* eqn = all[i]->GetEquationPtr();
        const size_t r = KeyOf(all[i], eqn, limit);
        if (r >= m_owner.size()) m_owner.resize(r + 1, nullptr);
        Claim(r, all[i], eqn);
        keys[i] = static_cast<uint32_t>(r);
    }
    const size_t slots = m_owner.size();
    std::vector<uint32_t> start(slots + 1, 0);
    for (size_t i = 0; i < n; ++i) ++start[keys[i] + 1];
    for (size_t r = 0; r < slots; ++r) start[r + 1] += start[r];
    std::vector<uint32_t> fill(start.begin(), start.end() - 1);
    m_lines.Clear();  // release the old layout before allocating the new one
    std::vector<ILPNonZero*> data(n);
    for (size_t i = 0; i < n; ++i) data[fill[keys[i]]++] = all[i];
    m_lines.Adopt(std::move(start), std::move(data));
    m_settled = n;
    m_built = true;
}

void LPMatrixRows::Settle(const LPNonZeroList& all, int limit) {
    if (!m_built || m_settled > all.size()) {
        Rebuild(all, limit);
        return;
    }
    const size_t pending = all.size() - m_settled;
    if (pending == 0) return;
    if (pending > m_lines.Entries() / 2 + 64) {
        Rebuild(all, limit);
        return;
    }
    for (size_t i = m_settled; i < all.size(); ++i) {
        ILPNonZero* nz = all[i];
        const ILPEquation* eqn = nz->GetEquationPtr();
        const size_t r = KeyOf(nz, eqn, limit);
        if (r >= Slots()) {
            m_lines.Grow(r + 1);
            m_owner.resize(r + 1, nullptr);
        }
        Claim(r, nz, eqn);
        m_lines.Push(r, nz);
        m_settled = i + 1;
    }
}

void LPMatrixRows::Rekey(int limit) {
    m_counted = kNotCounted;
    m_lateCount = m_lateOldest = 0;
    if (!m_built) return;
    const size_t oldSlots = Slots();
    std::vector<size_t> oldOf(limit >= 0 ? static_cast<size_t>(limit) + 1 : oldSlots, LPMatrixLineStore::kNone);
    long long last = -1;
    for (size_t s = 0; s < oldSlots; ++s) {
        if (Size(s) == 0) continue;
        const int r = m_owner[s]->GetIndex();
        if (r <= last || r < (limit >= 0 ? 1 : 0) || (limit >= 0 && r > limit)) {
            m_built = false;  // order not kept: derive afresh
            return;
        }
        last = r;
        if (static_cast<size_t>(r) >= oldOf.size()) oldOf.resize(static_cast<size_t>(r) + 1, LPMatrixLineStore::kNone);
        oldOf[static_cast<size_t>(r)] = s;
    }
    std::vector<const ILPEquation*> owner(oldOf.size(), nullptr);
    for (size_t r = 0; r < oldOf.size(); ++r)
        if (oldOf[r] != LPMatrixLineStore::kNone) owner[r] = m_owner[oldOf[r]];
    m_lines.Move(oldOf);
    m_owner.swap(owner);
}
