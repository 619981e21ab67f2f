// The model's variables (columns).
//
// Variables are kept in insertion order with consecutive 1-based indices,
// found by name through a hash index and walked with a cursor
// (FrstVariableObject / NextVariableObject). The list owns its variables.
//
// Binary records, one per variable in list order, followed by the name block
// (LPRecordIO.h); an empty list writes nothing at all:
//
//   version 4 (files after 2011.5), 88 bytes:
//     0 value | 8 lower bound | 16 upper bound | 24 base value |
//     32 persistent value | 40 temporary lower bound | 48 step bound |
//     56 sample lower bound | 64 sample upper bound        (doubles)
//     72 type (int16) | 74 status (int16) | 76 nonlinear count (int32) |
//     80 shadow price (double)
//   version 3 (files 2011.1 to 2011.5), 80 bytes: the version 4 record
//     without its trailing shadow price.
//   oldest (files before 2011.1): written and read in the version 3 layout.
//
// StreamRead(n, &table, is, version) picks the layout by the file version and
// hands out a new[] table of the variables read (record order, terminating
// null entry) that later sections use to resolve 1-based variable indices.
#pragma once

#include <cstdint>
#include <map>

#include "lpdata/ILPVariable.h"
#include "lpdata/ILPVariableList.h"
#include "lpdata/LPEntityStore.h"


class LPVariableList : public ILPVariableList {
public:
    LPVariableList() = default;
    LPVariableList(const LPVariableList&) = delete;
    LPVariableList& operator=(const LPVariableList&) = delete;
    ~LPVariableList() override = default;

    void Destroy() override { delete this; }
    int NumberOfVariables() override { return m_store.Count(); }
    int NumberOfPersistedVariables() override { return m_persisted; }
    ILPVariable* InsertVariable(const char* name) override;
    void RemoveVariable(ILPVariable* var) override;
    void TrashVariable(ILPVariable* var) override { m_store.Trash(var); }
    void EmptyTrash() override;
    void CreateNewVariableObject(ILPVariable** out) override;
    int AddVariableObject(ILPVariable* var) override;
    ILPVariable* VarNameLookup(const char* name) override { return m_store.Lookup(name); }
    // A hint that the name (s, n) will be looked up soon.
    void PrefetchName(const char* s, size_t n) const { m_store.Prefetch(s, n); }
    void RetrieveVariableObject(int index, ILPVariable** out) override;
    int VarTypeCount(int16_t type) override;
    ILPVariable* FrstVariableObject() override;
    ILPVariable* NextVariableObject() override;
    int NumberOfComplementPairs() override { return m_complementPairs; }
    void UpdateValues(const double* values) override;
    void UpdateBasePointValues() override;
    void UpdateValuesFromBasePoint() override;
    // Copies the current values into the persistent values, whatever the mode.
    void UpdatePersistentValues(int16_t mode) override;
    void UpdateValuesFromPersistentPoint() override;
    ILPVariable* FrstComplementarityVar() override;
    ILPVariable* NextComplementarityVar() override;
    void ProcessVariableCollection() override;
    void Display(std::ostream& os) override;
    void DisplayPersistedValues(std::ostream& os) override;
    void StreamWrite(std::ostream* os, double version) override;
    void StreamWrite(std::ostream* os) override;
    void StreamWrite3(std::ostream* os) override;
    void StreamRead(int n, ILPVariable*** out, std::istream* is, double version) override;
    void StreamRead(int n, ILPVariable*** out, std::istream* is) override;
    void StreamRead3(int n, ILPVariable*** out, std::istream* is) override;
    void StreamReadSafe(int n, ILPVariable*** out, std::istream* is, double version) override;
    void ClearDiffFlags() override;
    void ClearElements() override;
    void StreamWrite4(std::ostream* os) override;
    void StreamRead4(int n, ILPVariable*** out, std::istream* is) override;

    // Changes whenever existing variables were renumbered or removed.
    uint64_t RenumberEpoch() const { return m_store.Epoch(); }
    // The variables in list order (position = index - 1).
    const std::vector<ILPVariable*>& Items() const { return m_store.Items(); }

protected:
    void ResetVariableCollection() override;
    void IncrTypeCount(int16_t type) override;
    // The variables are already held in one contiguous array in list order,
    // which is all a fast collection would give: nothing to build.
    void BuildFastCollections() override {}
    ILPVariable* InternalFrstVariableObject() override;
    ILPVariable* InternalNextVariableObject() override;

private:
    static constexpr size_t kNoWalk = static_cast<size_t>(-1);
    ILPVariable* Step(size_t& cursor, bool first);
    void ReadRecords(int n, ILPVariable*** out, std::istream* is, size_t recordSize,
                     const char* namesRoutine);
    void WriteRecords(std::ostream* os, size_t recordSize);

    LPEntityStore<ILPVariable> m_store;
    int m_persisted = 0;
    // Set while StreamReadSafe appends: a name the list already holds is
    // refused instead of being added a second time.
    bool m_appending = false;
    std::map<int16_t, int> m_typeCounts;
    int m_complementPairs = 0;
    size_t m_cursor = kNoWalk;
    size_t m_internalCursor = kNoWalk;
    size_t m_complementCursor = kNoWalk;
};
