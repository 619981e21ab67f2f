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

std::string Describe(const ILPNonZero* nz) {
    const ILPEquation* e = nz->GetEquationPtr();
    const ILPVariable* v = nz->GetVariablePtr();
    return std::string("NonZero : ") + (e ? e->GetName() : "") + " : " + (v ? v->GetName() : "");
}

const void* RowOwner(const ILPNonZero* nz) { return static_cast<const void*>(nz->GetEquationPtr()); }
const void* ColOwner(const ILPNonZero* nz) { return static_cast<const void*>(nz->GetVariablePtr()); }

}  // namespace

// ---- columns -------------------------------------------------------------------

LPMatrixColumns::Line* LPMatrixColumns::At(int idx) {
    if (idx < 0 || static_cast<size_t>(idx) >= m_lines.size()) return nullptr;
    return &m_lines[static_cast<size_t>(idx)];
}

LPMatrixColumns::Line& LPMatrixColumns::For(ILPNonZero* nz, int limit, const char* routine) {
    const void* owner = ColOwner(nz);
    const int idx = nz->GetVariableIdx();
    if (idx < (limit >= 0 ? 1 : 0) || (limit >= 0 && idx > limit))
        ZEM_RAISE(zemsrc::kLpData, kIndexError, Describe(nz), routine);
    for (int attempt = 0; attempt < 2; ++attempt) {
        if (static_cast<size_t>(idx) >= m_lines.size())
            m_lines.resize(static_cast<size_t>(std::max(idx, limit)) + 1);
        Line& line = m_lines[static_cast<size_t>(idx)];
        if (line.entries.empty()) line.owner = owner;
        if (line.owner == owner) return line;
        Rekey();
    }
    ZEM_RAISE(zemsrc::kLpData, kIndexError, Describe(nz), routine);
}

ILPNonZero* LPMatrixColumns::Find(const Line& line, const ILPEquation* eqn) const {
    const void* key = static_cast<const void*>(eqn);
    if (line.index) {
        const auto it = line.index->find(key);
        return it == line.index->end() ? nullptr : it->second;
    }
    for (ILPNonZero* nz : line.entries)
        if (RowOwner(nz) == key && nz->GetIndex() != 0) return nz;
    return nullptr;
}

void LPMatrixColumns::Append(Line& line, ILPNonZero* nz) {
    // Room for a typical column at once: most columns of a model hold a few
    // to a dozen entries, and a column that starts small would move twice.
    if (line.entries.empty()) line.entries.reserve(8);
    line.entries.push_back(nz);
    if (line.index)
        line.index->emplace(RowOwner(nz), nz);
    else if (line.entries.size() >= kIndexFrom)
        Reindex(line);
}

void LPMatrixColumns::Reserve(size_t idx, size_t extra) {
    if (idx >= m_lines.size()) m_lines.resize(idx + 1);
    std::vector<ILPNonZero*>& entries = m_lines[idx].entries;
    entries.reserve(entries.size() + extra);
}

void LPMatrixColumns::Reindex(Line& line) {
    line.index.reset();
    if (line.entries.size() < kIndexFrom) return;
    line.index = std::make_unique<RowIndex>();
    line.index->reserve(line.entries.size() * 2);
    for (ILPNonZero* e : line.entries)
        if (e->GetIndex() != 0) line.index->emplace(RowOwner(e), e);
}

bool LPMatrixColumns::Erase(ILPNonZero* nz) {
    Line* line = At(nz->GetVariableIdx());
    if (line == nullptr) return false;
    auto& entries = line->entries;
    const auto it = std::find(entries.begin(), entries.end(), nz);
    if (it == entries.end()) return false;
    entries.erase(it);
    Unindex(nz);
    if (entries.empty()) {
        line->owner = nullptr;
        line->index.reset();
    }
    return true;
}

void LPMatrixColumns::Unindex(ILPNonZero* nz) {
    Line* line = At(nz->GetVariableIdx());
    if (line == nullptr || !line->index) return;
    const auto it = line->index->find(RowOwner(nz));
    if (it != line->index->end() && it->second == nz) line->index->erase(it);
}

void LPMatrixColumns::Compact(const std::vector<ILPNonZero*>& doomed,
                              const std::unordered_set<const ILPNonZero*>& set) {
    std::vector<int> keys;
    keys.reserve(doomed.size());
    for (const ILPNonZero* nz : doomed) keys.push_back(nz->GetVariableIdx());
    std::sort(keys.begin(), keys.end());
    keys.erase(std::unique(keys.begin(), keys.end()), keys.end());
    for (const int key : keys) {
        Line* line = At(key);
        if (line == nullptr) continue;
        auto& entries = line->entries;
        entries.erase(std::remove_if(entries.begin(), entries.end(),
                                     [&set](const ILPNonZero* nz) { return set.count(nz) > 0; }),
                      entries.end());
        if (entries.empty()) line->owner = nullptr;
        Reindex(*line);
    }
}

void LPMatrixColumns::Rekey() {
    // Validate every new key before moving anything.
    std::vector<int> keys(m_lines.size(), -1);
    size_t top = 0;
    for (size_t i = 0; i < m_lines.size(); ++i) {
        if (m_lines[i].entries.empty()) continue;
        const int key = m_lines[i].entries.front()->GetVariableIdx();
        if (key < 0)
            ZEM_RAISE(zemsrc::kLpData, kIndexError, Describe(m_lines[i].entries.front()),
                      "LPMatrix::ReIndexByColMap");
        keys[i] = key;
        top = std::max(top, static_cast<size_t>(key) + 1);
    }
    std::vector<char> taken(top, 0);
    for (size_t i = 0; i < m_lines.size(); ++i) {
        if (keys[i] < 0) continue;
        if (taken[static_cast<size_t>(keys[i])])
            ZEM_RAISE(zemsrc::kLpData, kIndexError, Describe(m_lines[i].entries.front()),
                      "LPMatrix::ReIndexByColMap");
        taken[static_cast<size_t>(keys[i])] = 1;
    }
    std::vector<Line> fresh(top);
    for (size_t i = 0; i < m_lines.size(); ++i)
        if (keys[i] >= 0) fresh[static_cast<size_t>(keys[i])] = std::move(m_lines[i]);
    m_lines.swap(fresh);
}

void LPMatrixColumns::TrimTail() {
    while (!m_lines.empty() && m_lines.back().entries.empty()) m_lines.pop_back();
}

// ---- rows ------------------------------------------------------------------------

size_t LPMatrixRows::Size(size_t r) const {
    if (r >= Slots()) return 0;
    return m_start[r + 1] - m_start[r] + m_extra[r].size();
}

ILPNonZero* LPMatrixRows::At(size_t r, size_t p) const {
    if (r >= Slots()) return nullptr;
    const size_t base = m_start[r + 1] - m_start[r];
    if (p < base) return m_data[m_start[r] + p];
    p -= base;
    return p < m_extra[r].size() ? m_extra[r][p] : nullptr;
}

size_t LPMatrixRows::KeyOf(ILPNonZero* nz, const ILPEquation* eqn, int limit) const {
    const int r = eqn ? eqn->GetIndex() : -1;
    if (r < (limit >= 0 ? 1 : 0) || (limit >= 0 && r > limit))
        ZEM_RAISE(zemsrc::kLpData, kIndexError, Describe(nz), "LPMatrix::BuildFastCollections");
    return static_cast<size_t>(r);
}

void LPMatrixRows::Claim(size_t r, ILPNonZero* nz, const ILPEquation* owner) {
    if (m_owner[r] == nullptr)
        m_owner[r] = owner;
    else if (m_owner[r] != owner)
        ZEM_RAISE(zemsrc::kLpData, kIndexError, Describe(nz), "LPMatrix::BuildFastCollections");
}

void LPMatrixRows::CountRoom(size_t r) {
    if (r >= m_count.size()) m_count.resize(std::max(r + 1, m_count.size() + m_count.size() / 2), 0);
}

void LPMatrixRows::Count(const std::deque<ILPNonZero*>& all, int limit, ILPEquationList* list) {
    if (m_built || list == nullptr) {
        Settle(all, limit);
        return;
    }
    if (m_counted == kNotCounted || m_counted > all.size()) {
        m_count.assign(limit >= 0 ? static_cast<size_t>(limit) + 1 : 0, 0);
        m_counted = 0;
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
            ZEM_RAISE(zemsrc::kLpData, kIndexError, Describe(all[i]), "LPMatrix::BuildFastCollections");
        CountRoom(r);
        ++m_count[r];
        m_counted = i + 1;
    }
}

void LPMatrixRows::NoteAppended(size_t i, size_t r) {
    if (m_built || m_counted != i) return;
    CountRoom(r);
    ++m_count[r];
    m_counted = i + 1;
}

size_t LPMatrixRows::Counted(size_t r) const {
    if (m_built) return Size(r);
    return r < m_count.size() && m_counted != kNotCounted ? m_count[r] : 0;
}

void LPMatrixRows::Rebuild(const std::deque<ILPNonZero*>& all, int limit) {
    m_built = false;
    m_counted = kNotCounted;
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
    m_start.assign(slots + 1, 0);
    for (size_t i = 0; i < n; ++i) ++m_start[keys[i] + 1];
    for (size_t r = 0; r < slots; ++r) m_start[r + 1] += m_start[r];
    std::vector<size_t> fill(m_start.begin(), m_start.end() - 1);
    // Release the old layout before allocating the new one.
    std::vector<ILPNonZero*>().swap(m_data);
    std::vector<std::vector<ILPNonZero*>>().swap(m_extra);
    m_data.resize(n);
    for (size_t i = 0; i < n; ++i) m_data[fill[keys[i]]++] = all[i];
    m_extra.resize(slots);
    m_extraCount = 0;
    m_settled = n;
    m_built = true;
}

void LPMatrixRows::Settle(const std::deque<ILPNonZero*>& all, int limit) {
    if (!m_built || m_settled > all.size()) {
        Rebuild(all, limit);
        return;
    }
    const size_t pending = all.size() - m_settled;
    if (pending == 0) return;
    if (pending > (m_data.size() + m_extraCount) / 2 + 64) {
        Rebuild(all, limit);
        return;
    }
    for (size_t i = m_settled; i < all.size(); ++i) {
        ILPNonZero* nz = all[i];
        const ILPEquation* eqn = nz->GetEquationPtr();
        const size_t r = KeyOf(nz, eqn, limit);
        if (r >= Slots()) {
            m_start.resize(r + 2, m_start.empty() ? 0 : m_start.back());
            m_extra.resize(r + 1);
            m_owner.resize(r + 1, nullptr);
        }
        Claim(r, nz, eqn);
        m_extra[r].push_back(nz);
        ++m_extraCount;
        m_settled = i + 1;
    }
}

void LPMatrixRows::Rekey(int limit) {
    m_counted = kNotCounted;
    if (!m_built) return;
    const size_t oldSlots = Slots();
    std::vector<size_t> oldOf(limit >= 0 ? static_cast<size_t>(limit) + 1 : oldSlots, static_cast<size_t>(-1));
    long long last = -1;
    for (size_t s = 0; s < oldSlots; ++s) {
        if (Size(s) == 0) continue;
        const int r = m_owner[s]->GetIndex();
        if (r <= last || r < (limit >= 0 ? 1 : 0) || (limit >= 0 && r > limit)) {
            m_built = false;  // order not kept: derive afresh
            return;
        }
        last = r;
        if (static_cast<size_t>(r) >= oldOf.size()) oldOf.resize(static_cast<size_t>(r) + 1, static_cast<size_t>(-1));
        oldOf[static_cast<size_t>(r)] = s;
    }
    const size_t slots = oldOf.size();
    std::vector<size_t> start(slots + 1, 0);
    std::vector<std::vector<ILPNonZero*>> extra(slots);
    std::vector<const ILPEquation*> owner(slots, nullptr);
    size_t pos = 0;
    for (size_t r = 0; r < slots; ++r) {
        start[r] = pos;
        const size_t s = oldOf[r];
        if (s == static_cast<size_t>(-1)) continue;
        pos += m_start[s + 1] - m_start[s];
        extra[r] = std::move(m_extra[s]);
        owner[r] = m_owner[s];
    }
    start[slots] = pos;
    m_start.swap(start);
    m_extra.swap(extra);
    m_owner.swap(owner);
}
