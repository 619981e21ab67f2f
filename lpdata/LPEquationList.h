// The model's equations (rows, the objective included).
//
// Equations are kept in insertion order with consecutive 1-based indices,
// found by name through a hash index and walked with a cursor
// (FrstEquationObject / NextEquationObject). The list owns its equations.
//
// Binary records, one per equation in list order, followed by the name block
// (LPRecordIO.h); an empty list writes nothing at all:
//
//   version 5 (files after 2017.5), 56 bytes:
//     0 value | 8 RHS | 16 range | 24 base value            (doubles)
//     32 type (int16) | 34 six reserved bytes (written as zero) |
//     40 shadow price | 48 scale                            (doubles)
//   version 4 (files after 2011.5 up to 2017.5), 48 bytes: without the scale.
//   version 3 (files 2011.1 to 2011.5), 40 bytes: the version 4 record
//     without its trailing shadow price.
//   oldest (files before 2011.1): written and read in the version 3 layout.
//
// The reader sets the type before RHS and range, so the row limits derived
// from them (see LPEquation.h) come out as they were.
#pragma once

#include <cstdint>
#include <map>

#include "lpdata/ILPEquation.h"
#include "lpdata/ILPEquationList.h"
#include "lpdata/LPEntityStore.h"


class LPEquationList : public ILPEquationList {
public:
    LPEquationList() = default;
    LPEquationList(const LPEquationList&) = delete;
    LPEquationList& operator=(const LPEquationList&) = delete;
    ~LPEquationList() override = default;

    void Destroy() override { delete this; }
    int NumberOfEquations() override { return m_store.Count(); }
    int NumberOfPersistedEquations() override { return m_persisted; }
    int NumberOfNLEquations() override;
    // Nonlinear rows by type; objective rows count as free.
    void NLEquationProfile(int& eq, int& le, int& ge, int& fr) override;
    ILPEquation* InsertEquation(const char* name) override;
    void RemoveEquation(ILPEquation* eqn) override;
    void TrashEquation(ILPEquation* eqn) override { m_store.Trash(eqn); }
    void EmptyTrash() override;
    void CreateNewEquationObject(ILPEquation** out) override;
    int AddEquationObject(ILPEquation* eqn) override;
    ILPEquation* EqnNameLookup(const char* name) override { return m_store.Lookup(name); }
    // EqnNameLookup that also gives the equation's index, known without
    // reading the equation (0 when not found).
    ILPEquation* EqnNameLookupIndexed(const char* name, int& index) const {
        size_t pos = 0;
        ILPEquation* e = m_store.Lookup(name, &pos);
        index = e != nullptr ? static_cast<int>(pos) + 1 : 0;
        return e;
    }
    // A hint that the name (s, n) will be looked up soon.
    void PrefetchName(const char* s, size_t n) const { m_store.Prefetch(s, n); }
    void RetrieveEquationObject(int index, ILPEquation** out) override;
    int EqnTypeCount(int16_t type) override;
    // Rows with a nonzero range, and their nonzeros.
    void RangeEqnCount(int& rows, int& nonzeros) override;
    void FreeEqnCount(int& rows, int& nonzeros, int& objNonzeros) override;
    ILPEquation* FrstEquationObject() override;
    ILPEquation* NextEquationObject() override;
    void UpdateBasePointValues() override;
    void UpdateValuesFromBasePoint() override;
    void ProcessEquationCollection() override;
    void Display(std::ostream& os) override;
    void StreamWrite(std::ostream* os, double version) override;
    void StreamWrite(std::ostream* os) override;
    void StreamWrite3(std::ostream* os) override;
    void StreamWrite4(std::ostream* os) override;
    void StreamRead(int n, ILPEquation*** out, std::istream* is, double version) override;
    void StreamRead(int n, ILPEquation*** out, std::istream* is) override;
    void StreamRead3(int n, ILPEquation*** out, std::istream* is) override;
    void StreamRead4(int n, ILPEquation*** out, std::istream* is) override;
    void StreamReadSafe(int n, ILPEquation*** out, std::istream* is, double version) override;
    void ClearDiffFlags() override;
    void ClearElements() override;
    void UpdateResidualValues(const double* residuals) override;
    void StreamWrite5(std::ostream* os) override;
    void StreamRead5(int n, ILPEquation*** out, std::istream* is) override;

    // Changes whenever existing equations were renumbered or removed.
    uint64_t RenumberEpoch() const { return m_store.Epoch(); }

protected:
    void ResetEquationCollection() override { m_typeCounts.clear(); }
    void IncrTypeCount(int16_t type) override { ++m_typeCounts[type]; }
    // The equations are already held in one contiguous array in list order,
    // which is all a fast collection would give: nothing to build.
    void BuildFastCollections() override {}
    ILPEquation* InternalFrstEquationObject() override;
    ILPEquation* InternalNextEquationObject() override;

private:
    static constexpr size_t kNoWalk = static_cast<size_t>(-1);
    ILPEquation* Step(size_t& cursor, bool first);
    void ReadRecords(int n, ILPEquation*** out, std::istream* is, size_t recordSize,
                     const char* namesRoutine);
    void WriteRecords(std::ostream* os, size_t recordSize);

    LPEntityStore<ILPEquation> m_store;
    int m_persisted = 0;
    // Set while StreamReadSafe appends: a name the list already holds is
    // refused instead of being added a second time.
    bool m_appending = false;
    std::map<int16_t, int> m_typeCounts;
    size_t m_cursor = kNoWalk;
    size_t m_internalCursor = kNoWalk;
};
