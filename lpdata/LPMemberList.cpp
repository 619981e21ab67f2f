#include "lpdata/LPMemberList.h"

#include <algorithm>

bool LPMemberList::Contains(const ILPVariable* var) const {
    if (m_index) return m_index->count(var) > 0;
    return std::find(m_items.begin(), m_items.end(), var) != m_items.end();
}

bool LPMemberList::Add(ILPVariable* var) {
    if (var == nullptr || Contains(var)) return false;
    m_items.push_back(var);
    if (m_index) {
        m_index->insert(var);
    } else if (m_items.size() >= kIndexFrom) {
        m_index = std::make_unique<std::unordered_set<const ILPVariable*>>(m_items.begin(),
                                                                          m_items.end());
    }
    return true;
}

bool LPMemberList::Remove(const ILPVariable* var) {
    if (!Contains(var)) return false;
    m_items.erase(std::find(m_items.begin(), m_items.end(), var));
    if (m_index) m_index->erase(var);
    return true;
}

void LPMemberList::Clear() {
    m_items.clear();
    m_index.reset();
    m_cursor = kNoWalk;
}

ILPVariable* LPMemberList::First() {
    m_cursor = kNoWalk;
    if (m_items.empty()) return nullptr;
    m_cursor = 0;
    return m_items.front();
}

ILPVariable* LPMemberList::Next() {
    if (m_cursor == kNoWalk) return nullptr;
    if (++m_cursor < m_items.size()) return m_items[m_cursor];
    m_cursor = kNoWalk;  // a walk that ran off the end stays ended
    return nullptr;
}
