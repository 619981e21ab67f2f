// An ordered list of distinct variables with a cursor: the members of a
// special ordered set or of a variable collection. Members are held by
// pointer and not owned. Membership tests are O(1) (a hash set is kept once
// the list grows past a few entries).
#pragma once

#include <memory>
#include <unordered_set>
#include <vector>

class ILPVariable;

class LPMemberList {
public:
    bool Contains(const ILPVariable* var) const;
    // Appends var unless it is already a member; false when it was.
    bool Add(ILPVariable* var);
    // Removes var; false when it was not a member.
    bool Remove(const ILPVariable* var);
    void Clear();
    int Size() const { return static_cast<int>(m_items.size()); }
    const std::vector<ILPVariable*>& Items() const { return m_items; }

    ILPVariable* First();
    ILPVariable* Next();

private:
    static constexpr size_t kIndexFrom = 16;
    static constexpr size_t kNoWalk = static_cast<size_t>(-1);
    std::vector<ILPVariable*> m_items;
    std::unique_ptr<std::unordered_set<const ILPVariable*>> m_index;
    size_t m_cursor = kNoWalk;
};
