// The sparse matrix: owns every nonzero of the model and reaches them in
// insertion order, by row and by column.
//
// Layout: the nonzeros sit in one array in insertion order (a nonzero's
// 1-based index is its position there), and each row and each column has a
// line: a contiguous array of its nonzeros in insertion order. Lines are kept
// in two arrays indexed by the current index of their equation or variable,
// so row and column access is O(1). When the variable or equation list
// renumbers (a removal), the lines are re-keyed from their entities' new
// indices in one pass at the next access; the lists' renumbering epochs tell
// the matrix when that is due.
//
// Duplicates: a second entry for the same (row, column) is summed into the
// first. Short columns are scanned; a column that grows past a few entries
// gets a hash index from equation to nonzero, so AddNonZeroObject costs O(1)
// expected whatever the column length.
//
// Removal: RemoveNonZero removes one nonzero and renumbers the rest (O(nz)).
// TrashNonZero / TrashVariable / TrashEquation only mark (index 0), and
// EmptyNonZeroTrash removes every marked nonzero with one compaction and one
// renumbering; EliminateVariable / EliminateEquation remove a whole column or
// row the same way. Nonlinear nonzeros (nonlinear count 1 or more) and rows
// with nonlinear terms are refused.
//
// Preconditions: the nonzeros' equations and variables belong to the lists
// given to the constructor (the lists are not owned); an entity's nonzeros are
// removed from the matrix before the entity is removed from its list. Only
// one walk of each kind may be in progress; entries may be added during a
// walk.
//
// Binary records (StreamWrite / StreamRead), 16 bytes per nonzero in
// insertion order, skipping nonzeros whose equation belongs to a nonlinear
// block: 0 variable index (int32, 1-based) | 4 equation index (int32) |
// 8 coefficient (double). The reader resolves the indices through the
// null-terminated tables of the list readers; an index outside a table is a
// read error.
#pragma once

#include <cstdint>
#include <deque>
#include <memory>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "lpdata/ILPMatrix.h"

class ILPEquationList;
class ILPVariableList;
class LPEquationList;
class LPVariableList;

class LPMatrix : public ILPMatrix {
public:
    LPMatrix(ILPVariableList* vars, ILPEquationList* eqns);
    LPMatrix(const LPMatrix&) = delete;
    LPMatrix& operator=(const LPMatrix&) = delete;
    ~LPMatrix() override;

    void Destroy() override { delete this; }
    int NumberOfNonZeros() override { return static_cast<int>(m_all.size()); }
    int NumberOfPersistedNonZeros() override { return m_persisted; }
    int NumberOfNonLinearNonZeros() override;
    void CreateNewNonZeroObject(ILPNonZero** out) override;
    ILPNonZero* AddNonZeroObject(ILPNonZero* nz) override;
    void RemoveNonZero(ILPNonZero* nz) override;
    void TrashNonZero(ILPNonZero* nz) override;
    void EmptyNonZeroTrash() override;
    void EliminateVariable(ILPVariable* var) override;
    void EliminateEquation(ILPEquation* eqn) override;
    void TrashVariable(ILPVariable* var) override;
    void TrashEquation(ILPEquation* eqn) override;
    ILPNonZero* FrstNonZeroObject() override;
    ILPNonZero* NextNonZeroObject() override;
    ILPNonZero* FrstNonZeroObjectByRow() override;
    ILPNonZero* NextNonZeroObjectByRow() override;
    ILPNonZero* FrstNonZeroObjectByColumn() override;
    ILPNonZero* NextNonZeroObjectByColumn() override;
    ILPNonZero* RowFrstNonZeroObject(int row) override;
    ILPNonZero* RowNextNonZeroObject() override;
    ILPNonZero* ColFrstNonZeroObject(int col) override;
    ILPNonZero* ColNextNonZeroObject() override;
    ILPNonZero* ExistIncidence(int row, int col) override;
    int NonZerosInRow(int row) override;
    int NonZerosInColumn(int col) override;
    void ProcessMatrixCollection() override;
    void Display(std::ostream& os) override;
    void DisplayByRow(std::ostream& os) override;
    void DisplayByColumn(std::ostream& os) override;
    void StreamWrite(std::ostream* os) override;
    void StreamRead(int n, ILPNonZero*** out, ILPVariable** vars, ILPEquation** eqns,
                    std::istream* is) override;
    void StreamReadSafe(int n, ILPNonZero*** out, ILPVariable** vars, ILPEquation** eqns,
                        std::istream* is) override;
    void ClearDiffFlags() override;
    void FastInsertNonZeroObject(ILPNonZero* nz) override;

protected:
    // Forgets the key state of the row and column lines, so that they are
    // re-keyed from their entities' indices at the next access.
    void ResetMatrixCollection() override;
    void EraseByRowNonZero(ILPNonZero* nz) override;
    void EraseByColNonZero(ILPNonZero* nz) override;
    // Remove the nonzeros of the batch being removed from the row (column)
    // lines they sit in.
    void EraseByRowNonZerosInTrash() override;
    void EraseByColNonZerosInTrash() override;
    // Renumbers from the nonzero of index `from` on; marked (index 0)
    // nonzeros keep index 0.
    void ReIndexMatrixNZ(int from) override;
    void FullReIndexMatrixNZ() override;
    // Re-key the row (column) lines from their entities' current indices;
    // the argument names the removed row (column) and is not needed for that.
    void ReIndexByRowMap(int removedRow) override;
    void ReIndexByColMap(int removedCol) override;
    ILPNonZero* InternalFrstNonZeroObjectByRow() override;
    ILPNonZero* InternalNextNonZeroObjectByRow() override;
    ILPNonZero* InternalRowFrstNonZeroObject(int row) override;
    ILPNonZero* InternalRowNextNonZeroObject() override;
    // Brings the row and column lines up to date with the lists' indices
    // and releases the lines beyond the lists' ends.
    void BuildFastCollections() override;

private:
    using PartnerIndex = std::unordered_map<const void*, ILPNonZero*>;
    struct Line {
        std::vector<ILPNonZero*> entries;
        const void* owner = nullptr;          // its entity, while entries is not empty
        std::unique_ptr<PartnerIndex> index;  // columns only: equation -> nonzero
    };
    static constexpr size_t kNone = static_cast<size_t>(-1);
    struct Walk {
        size_t slot = kNone;
        size_t pos = 0;
    };
    enum Axis { kRows, kCols };

    void Sync();
    void Rekey(Axis axis);
    Line* LineAt(Axis axis, int idx);
    Line& LineFor(Axis axis, const void* entity, int idx, ILPNonZero* nz, const char* routine);
    void Append(Line& row, Line& col, ILPNonZero* nz);
    ILPNonZero* FindInColumn(Line& col, const ILPEquation* eqn);
    size_t FindInLine(Axis axis, ILPNonZero* nz, Line** line);
    void EraseFromLine(Axis axis, ILPNonZero* nz, const char* routine);
    void CompactLines(Axis axis);
    void RemoveBatch(const std::vector<ILPNonZero*>& doomed);
    void RefuseNonlinear(ILPNonZero* nz, const char* routine);
    void RefuseNonlinearEquation(ILPEquation* eqn, const char* routine);
    void MarkTrashed(ILPNonZero* nz);
    ILPNonZero* WalkFirst(Axis axis, Walk& walk);
    ILPNonZero* WalkNext(Axis axis, Walk& walk);
    ILPNonZero* LineFirst(Axis axis, int idx, Walk& walk);
    ILPNonZero* LineNext(Axis axis, Walk& walk);
    void ReadRecords(int n, ILPNonZero*** out, ILPVariable** vars, ILPEquation** eqns,
                     std::istream* is, const char* routine);
    std::vector<Line>& Lines(Axis axis) { return axis == kRows ? m_rows : m_cols; }

    ILPVariableList* m_vars;
    ILPEquationList* m_eqns;
    const LPVariableList* m_varImpl;
    const LPEquationList* m_eqnImpl;
    uint64_t m_varEpoch = 0;
    uint64_t m_eqnEpoch = 0;
    bool m_rowsStale = false;
    bool m_colsStale = false;

    std::deque<ILPNonZero*> m_all;
    std::vector<Line> m_rows;
    std::vector<Line> m_cols;
    std::vector<ILPNonZero*> m_trash;
    std::unordered_set<const ILPNonZero*> m_doomed;  // the batch being removed
    std::vector<ILPNonZero*> m_doomedList;
    int m_persisted = 0;

    size_t m_allCursor = kNone;
    Walk m_byRow, m_byCol, m_inRow, m_inCol, m_internalByRow, m_internalInRow;
};
