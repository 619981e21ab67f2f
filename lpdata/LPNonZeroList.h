// The matrix's nonzeros in insertion order: entry i (0-based) is the nonzero
// of index i + 1.
//
// While each entry appended is the pool slot that follows the previous
// entry's (LPNonZeroPool::SlotAt), as it is when a reader or a model file
// makes each nonzero and adds it at once, the list stores nothing: entry i
// is slot i of the matrix's pool, computed from its number. The first append
// that breaks the pattern (a nonzero made elsewhere or earlier) and the
// first removal write the list out as an array of pointers, which it keeps
// from then on:
//
//   LPNonZeroList all(pool);
//   all.push_back(pool->Make());   // slot 0: nothing stored
//   all.push_back(pool->Make());   // slot 1: nothing stored
//   all.erase(0);                  // written out: {slot 1}
//
// A nonzero that turned out to be a duplicate and was destroyed before it
// was appended gives its slot back, and the pool hands that slot out next,
// so duplicates keep the pattern.
//
// The array cost 8 bytes per entry: 19.9 MB of a standard read's peak on
// the 2.4-million-entry benchmark (244.3 -> 225.0 MiB).
#pragma once

#include <cstddef>
#include <deque>
#include <iterator>
#include <new>

#include "lpdata/LPNonZero.h"
#include "lpdata/LPNonZeroPool.h"

class LPNonZeroList {
public:
    explicit LPNonZeroList(const LPNonZeroPool* pool) : m_pool(pool) {}

    size_t size() const { return m_stored ? m_items.size() : m_size; }
    // Whether the entries are held as pointers (the pattern broke).
    bool Stored() const { return m_stored; }
    bool empty() const { return size() == 0; }
    ILPNonZero* operator[](size_t i) const { return m_stored ? m_items[i] : InSlot(m_pool->SlotAt(i)); }
    // Asks for the memory that reading entry i will touch first.
    void Prefetch(size_t i) const;

    void push_back(ILPNonZero* nz);
    // Removes entry pos; the entries after it move up one place.
    void erase(size_t pos);
    // Removes every entry for which gone(entry) holds, keeping the order.
    template <class Pred>
    void RemoveIf(Pred gone) {
        Store();
        size_t out = 0;
        for (ILPNonZero* nz : m_items)
            if (!gone(nz)) m_items[out++] = nz;
        m_items.resize(out);
    }
    // Position of nz, or npos.
    static constexpr size_t npos = static_cast<size_t>(-1);
    size_t Find(const ILPNonZero* nz) const;

    // Read-only walk in order.
    class const_iterator {
    public:
        using iterator_category = std::forward_iterator_tag;
        using value_type = ILPNonZero*;
        using difference_type = std::ptrdiff_t;
        using pointer = ILPNonZero* const*;
        using reference = ILPNonZero*;
        const_iterator(const LPNonZeroList* list, size_t i) : m_list(list), m_i(i) {}
        ILPNonZero* operator*() const { return (*m_list)[m_i]; }
        const_iterator& operator++() {
            ++m_i;
            return *this;
        }
        bool operator==(const const_iterator& o) const { return m_i == o.m_i; }
        bool operator!=(const const_iterator& o) const { return m_i != o.m_i; }

    private:
        const LPNonZeroList* m_list;
        size_t m_i;
    };
    const_iterator begin() const { return const_iterator(this, 0); }
    const_iterator end() const { return const_iterator(this, size()); }

private:
    // The nonzero in a pool slot that holds one.
    static ILPNonZero* InSlot(void* slot) { return std::launder(static_cast<LPNonZero*>(slot)); }
    // Writes the computed entries out as pointers (once).
    void Store();

    const LPNonZeroPool* m_pool;
    bool m_stored = false;
    size_t m_size = 0;                // entries while computed
    std::deque<ILPNonZero*> m_items;  // entries once stored
};
