// Special ordered sets and the model's set list.
//
// A set is a named, typed, ordered group of distinct variables (held by
// pointer, not owned). The list owns its sets, numbers them from 1 and finds
// them by name.
//
// Binary records of the list (StreamWrite), written only when it holds at
// least one set: one 68-byte record per set in list order,
//   0 name (61 bytes, NUL-terminated, at most 60 characters) | 61 reserved |
//   62 type (int16) | 64 number of members (int32)
// then one block of the 1-based variable indices (int32) of all members of
// all sets, set after set in member order; the block has TotalSOSVars()
// entries. The reader is given both counts by its caller.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <unordered_map>
#include <vector>

#include "lpdata/ILPSpOrdSet.h"
#include "lpdata/LPMemberList.h"

class LPSpOrdSet : public ILPSpOrdSet {
public:
    LPSpOrdSet() = default;
    ~LPSpOrdSet() override = default;

    void SetIndex(int index) override { m_index = index; }
    int GetIndex() const override { return m_index; }
    void SetName(const char* name) override { m_name = name ? name : ""; }
    const char* GetName() const override { return m_name.c_str(); }
    void SetType(int16_t type) override { m_type = type; }
    int16_t GetType() const override { return m_type; }
    int AddVariableObject(ILPVariable* var) override;
    int AddVariableObjectPlain(ILPVariable* var) override;
    bool RemoveVariableIfInSet(ILPVariable* var) override { return m_members.Remove(var); }
    int GetSize() const override { return m_members.Size(); }
    ILPVariable* FrstSetVar() override { return m_members.First(); }
    ILPVariable* NextSetVar() override { return m_members.Next(); }
    void Display(std::ostream& os) override;
    int Compare(ILPSpOrdSet* other, std::ostream& os) override;
    bool BeenDiffed() const override { return m_diffed; }
    void SetDiffed(bool diffed) override { m_diffed = diffed; }

    const std::vector<ILPVariable*>& Members() const { return m_members.Items(); }

private:
    int32_t m_index = 0;
    std::string m_name;
    int16_t m_type = 1;
    LPMemberList m_members;
    bool m_diffed = false;
};

class LPSpOrdSetList : public ILPSpOrdSetList {
public:
    LPSpOrdSetList() = default;
    LPSpOrdSetList(const LPSpOrdSetList&) = delete;
    LPSpOrdSetList& operator=(const LPSpOrdSetList&) = delete;
    ~LPSpOrdSetList() override;

    int NumberOfSpOrdSets() override { return static_cast<int>(m_sets.size()); }
    void CreateNewSpOrdSetObject(ILPSpOrdSet** out) override;
    // Appends the set with the next index and returns that index; the first
    // set of a name is the one found by name.
    int AddSpOrdSetObject(ILPSpOrdSet* set) override;
    ILPSpOrdSet* SOSNameLookup(const char* name) override;
    // Index above the count: null; index 1 or below: the first set.
    void RetrieveSpOrdSetObject(int index, ILPSpOrdSet** out) override;
    int SOSTypeCount(int16_t type) override;
    int TotalSOSVars() override;
    ILPSpOrdSet* FrstSpOrdSetObject() override;
    ILPSpOrdSet* NextSpOrdSetObject() override;
    void RemoveVariable(ILPVariable* var) override;
    void ProcessSpOrdSetCollection() override;
    void Display(std::ostream& os) override;
    void StreamWrite(std::ostream* os) override;
    void StreamRead(int nSets, int nMembers, ILPSpOrdSet*** out, ILPVariable** vars,
                    std::istream* is) override;
    // As StreamRead, refusing a set whose name is already in the list.
    void StreamReadSafe(int nSets, int nMembers, ILPSpOrdSet*** out, ILPVariable** vars,
                        std::istream* is) override;
    void ClearDiffFlags() override;

protected:
    void ResetSpOrdSetCollection() override { m_typeCounts.clear(); }
    void IncrTypeCount(int16_t type) override { ++m_typeCounts[type]; }

private:
    static constexpr size_t kNoWalk = static_cast<size_t>(-1);
    void Read(int nSets, int nMembers, ILPSpOrdSet*** out, ILPVariable** vars, std::istream* is,
              bool safe);

    std::vector<ILPSpOrdSet*> m_sets;
    std::unordered_map<std::string, ILPSpOrdSet*> m_names;
    std::map<int16_t, int> m_typeCounts;
    size_t m_cursor = kNoWalk;
};
