#include "lpdata/LPNonZeroList.h"

void LPNonZeroList::Prefetch(size_t i) const {
    if (i >= size()) return;
    if (m_stored)
        __builtin_prefetch(&m_items[i]);
    else
        __builtin_prefetch(m_pool->SlotAt(i));
}

void LPNonZeroList::push_back(ILPNonZero* nz) {
    // A pool slot only ever holds an LPNonZero, so a nonzero whose object
    // starts at the next slot is the one in it.
    if (!m_stored && nz != nullptr && dynamic_cast<const void*>(nz) == m_pool->SlotAt(m_size)) {
        ++m_size;
        return;
    }
    Store();
    m_items.push_back(nz);
}

void LPNonZeroList::erase(size_t pos) {
    Store();
    m_items.erase(m_items.begin() + static_cast<std::ptrdiff_t>(pos));
}

size_t LPNonZeroList::Find(const ILPNonZero* nz) const {
    const size_t n = size();
    for (size_t i = 0; i < n; ++i)
        if ((*this)[i] == nz) return i;
    return npos;
}

void LPNonZeroList::Store() {
    if (m_stored) return;
    for (size_t i = 0; i < m_size; ++i) m_items.push_back(InSlot(m_pool->SlotAt(i)));
    m_stored = true;
    m_size = 0;
}
