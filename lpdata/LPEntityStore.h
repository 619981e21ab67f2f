// Storage shared by the variable and equation lists.
//
// Entities live in one contiguous array in list order, so the entity at
// 1-based index i sits at position i-1 and retrieval by index is O(1). Names
// are found through a flat hash index (LPNameIndex) over copies of the names
// taken when the entities were added; the first entity of a name is the one
// found. Removal renumbers the entities after the removed one so that
// indices stay consecutive from 1; removing a batch (the trash) compacts,
// renumbers and re-indexes once. Every renumbering bumps an epoch counter
// that the matrix reads to know when to re-key its row and column structures.
//
// The store owns its entities and deletes them on removal and destruction.
#pragma once

#include <cstdint>
#include <vector>

#include "lpdata/LPNameIndex.h"

template <class E>
class LPEntityStore {
public:
    static constexpr size_t npos = static_cast<size_t>(-1);

    LPEntityStore() = default;
    LPEntityStore(const LPEntityStore&) = delete;
    LPEntityStore& operator=(const LPEntityStore&) = delete;
    ~LPEntityStore() { Clear(); }

    int Count() const { return static_cast<int>(m_items.size()); }
    const std::vector<E*>& Items() const { return m_items; }
    uint64_t Epoch() const { return m_epoch; }
    E* At(size_t pos) const { return pos < m_items.size() ? m_items[pos] : nullptr; }

    // Appends e with the next index and returns that index. Adding an entity
    // that already sits at its own index changes nothing.
    int Add(E* e) {
        if (e == nullptr) return 0;
        const int idx = e->GetIndex();
        if (idx >= 1 && static_cast<size_t>(idx) <= m_items.size() && m_items[idx - 1] == e)
            return idx;
        m_items.push_back(e);
        try {
            m_names.Insert(m_items.size() - 1, e->GetName(), e);
        } catch (...) {
            m_items.pop_back();
            throw;
        }
        const int newIdx = static_cast<int>(m_items.size());
        e->SetIndex(newIdx);
        return newIdx;
    }

    // Asks for the memory a lookup of the name (s, n) will read first.
    void Prefetch(const char* s, size_t n) const { m_names.Prefetch(s, n); }

    // The first entity added under `name`, or null; its position (index - 1)
    // in *pos when pos is given.
    E* Lookup(const char* name, size_t* pos = nullptr) const {
        return static_cast<E*>(m_names.FindItem(name, pos));
    }

    // Index above the count: null; index 1 or below: the first entity.
    E* Retrieve(int index) const {
        if (m_items.empty() || index > Count()) return nullptr;
        return index <= 1 ? m_items.front() : m_items[static_cast<size_t>(index) - 1];
    }

    // Position of e in the list, or npos. O(1) while indices are consistent.
    size_t Find(const E* e) const {
        if (e == nullptr) return npos;
        const int idx = e->GetIndex();
        if (idx >= 1 && static_cast<size_t>(idx) <= m_items.size() && m_items[idx - 1] == e)
            return static_cast<size_t>(idx) - 1;
        for (size_t i = 0; i < m_items.size(); ++i)
            if (m_items[i] == e) return i;
        return npos;
    }

    // Appends entities that are in no list yet (a read), as Add would one by
    // one; storage and the name index are sized once and indexed in one
    // pass. Returns the number added. When it throws nothing was added.
    size_t AddBatch(const std::vector<E*>& batch) {
        if (batch.empty()) return 0;
        const size_t from = m_items.size();
        LPNameIndex::CheckRoom(from + batch.size());
        m_items.reserve(from + batch.size());
        std::vector<LPNameIndex::Named> named;
        named.reserve(batch.size());
        for (E* e : batch) named.push_back({e->GetName(), e});
        m_names.InsertRange(from, named);
        for (E* e : batch) {
            m_items.push_back(e);
            e->SetIndex(static_cast<int>(m_items.size()));
        }
        return batch.size();
    }

    // Removes and deletes e; the entities after it move down one index.
    // Returns false (and leaves e alone) when e is not in the list.
    bool Remove(E* e) {
        const size_t pos = Find(e);
        if (pos == npos) return false;
        m_items.erase(m_items.begin() + static_cast<std::ptrdiff_t>(pos));
        for (size_t i = pos; i < m_items.size(); ++i) m_items[i]->SetIndex(static_cast<int>(i + 1));
        m_names.Erase(pos);
        if (m_names.Wasteful()) m_names.Rebuild();
        for (size_t i = 0; i < m_trash.size();)
            m_trash[i] == e ? (void)m_trash.erase(m_trash.begin() + static_cast<std::ptrdiff_t>(i))
                            : (void)++i;
        delete e;
        ++m_epoch;
        return true;
    }

    void Trash(E* e) {
        if (e != nullptr) m_trash.push_back(e);
    }

    // Removes every trashed entity that is in the list, in one compaction,
    // one renumbering and one re-indexing pass. Returns the number removed.
    size_t EmptyTrash() {
        if (m_trash.empty()) return 0;
        std::vector<char> doomed(m_items.size(), 0);
        size_t count = 0;
        for (E* e : m_trash) {
            const size_t pos = Find(e);
            if (pos != npos && !doomed[pos]) {
                doomed[pos] = 1;
                ++count;
            }
        }
        m_trash.clear();
        if (count == 0) return 0;
        std::vector<E*> removed;
        removed.reserve(count);
        size_t out = 0;
        for (size_t i = 0; i < m_items.size(); ++i) {
            E* e = m_items[i];
            if (doomed[i]) {
                removed.push_back(e);
                continue;
            }
            m_items[out++] = e;
            e->SetIndex(static_cast<int>(out));
        }
        m_items.resize(out);
        m_names.EraseBatch(doomed);
        for (E* e : removed) delete e;
        ++m_epoch;
        return count;
    }

    void Clear() {
        for (E* e : m_items) delete e;
        m_items.clear();
        m_names.Clear();
        m_trash.clear();
        ++m_epoch;
    }

private:
    std::vector<E*> m_items;
    LPNameIndex m_names;
    std::vector<E*> m_trash;
    uint64_t m_epoch = 0;
};
