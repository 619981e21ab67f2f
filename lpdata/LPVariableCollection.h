// A named group of distinct variables with a direction (1 input, -1 output,
// anything else unspecified) and a type whose meaning its users settle. The
// members are held by pointer and not owned.
//
// Binary record (StreamWrite): one 72-byte record,
//   0 name (61 bytes, NUL-terminated, at most 60 characters) | 61 reserved (3) |
//   64 number of members (int32) | 68 direction (int16) | 70 type (int16)
// followed by the 1-based index (int32) of each member. StreamRead replaces
// the collection's content with what it reads, resolving the indices through
// the variable list reader's null-terminated table.
#pragma once

#include <cstdint>
#include <string>

#include "lpdata/ILPVariableCollection.h"
#include "lpdata/LPMemberList.h"

class LPVariableCollection : public ILPVariableCollection {
public:
    LPVariableCollection() = default;
    ~LPVariableCollection() override = default;

    void Destroy() override { delete this; }
    const char* Name() const override { return m_name.c_str(); }
    void SetName(const char* name) override { m_name = name ? name : ""; }
    int CollectionSize() const override { return m_members.Size(); }
    bool RemoveVariable(ILPVariable* var) override { return m_members.Remove(var); }
    // Appends var unless it is already a member; returns the size.
    int AddVariableObject(ILPVariable* var) override;
    ILPVariable* FrstVariableObject() override { return m_members.First(); }
    ILPVariable* NextVariableObject() override { return m_members.Next(); }
    void SetDirection(int16_t direction) override { m_direction = direction; }
    int16_t GetDirection() const override { return m_direction; }
    void SetType(int16_t type) override { m_type = type; }
    int16_t GetType() const override { return m_type; }
    void Display(std::ostream& os) override;
    void StreamWrite(std::ostream* os) override;
    void StreamRead(ILPVariable** vars, std::istream* is) override;
    int Compare(ILPVariableCollection* other, std::ostream& os) override;
    bool BeenDiffed() const override { return m_diffed; }
    void SetDiffed(bool diffed) override { m_diffed = diffed; }
    // Copies name, direction, type and members of src. With a map, each
    // member becomes map[index - 1]; members whose index falls outside the
    // (null-terminated) map are left out. Without a map the members are
    // shared as they are.
    void CopyCollection(ILPVariableCollection* src, ILPVariable** map) override;

private:
    std::string m_name = "UNNAMED";
    int16_t m_direction = 0;
    int16_t m_type = 0;
    LPMemberList m_members;
    bool m_diffed = false;
};
