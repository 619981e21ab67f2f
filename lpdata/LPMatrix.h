// The sparse matrix: owns every nonzero of the model and reaches them in
// insertion order, by row and by column.
//
// Layout: the nonzeros sit in one list in insertion order (a nonzero's
// 1-based index is its position there; LPNonZeroList.h, which computes the
// entries from the pool's slots while it can). Columns are runs of that list
// while entries arrive column by column, and compressed lines once they do
// not; rows are derived from the insertion-ordered list when first asked
// for and kept up to date incrementally (LPMatrixLines.h). When the variable
// or equation list renumbers (a removal), the columns and rows are re-keyed
// at the next access, in O(columns) and O(rows) (O(entries) for columns
// whose order changes); the lists' renumbering epochs tell the matrix when
// that is due.
//
// Duplicates: a second entry for the same (row, column) is summed into the
// first. Short columns are scanned; a column of 16 entries or more that is
// searched gets a hash index from equation to nonzero, so AddNonZeroObject
// costs O(1) expected whatever the column length.
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
// removed from the matrix before the entity is removed from its list. A
// variable outside its list is refused when the entry is added; an equation
// outside its list (checking it there would cost a memory access to the
// equation per entry) when the rows are next derived: row access then throws
// the structure error naming the entry until the entry is removed. Only
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
#include <unordered_set>
#include <vector>

#include "lpdata/ILPMatrix.h"
#include "lpdata/LPMatrixLines.h"
#include "lpdata/LPNonZeroList.h"

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
    // AddNonZeroObject for a caller that knows the index of nz's equation
    // in the equation list (a reader that found it by name): the rows'
    // entry counts are kept up to date without reading the equation.
    ILPNonZero* AddNonZeroObject(ILPNonZero* nz, int row);

    // Advances whenever entries are added (or summed into), inserted or
    // removed; copies of the matrix's content compare it to know they are
    // out of date. Coefficient writes to existing entries are counted by the
    // entries themselves (LPNonZero::ChangeCount).
    uint64_t StructureCount() const { return m_structure; }

protected:
    // Forgets the key state of the rows and columns, so that they are re-keyed
    // from their entities' indices at the next access.
    void ResetMatrixCollection() override;
    // Rows are derived from the nonzero list, so taking an entry out of its
    // row is checking that it is in the list and letting the rows be derived
    // again once it has left.
    void EraseByRowNonZero(ILPNonZero* nz) override;
    void EraseByColNonZero(ILPNonZero* nz) override;
    // Take the nonzeros of the batch being removed out of their rows and
    // columns.
    void EraseByRowNonZerosInTrash() override;
    void EraseByColNonZerosInTrash() override;
    // Renumbers from the nonzero of index `from` on; marked (index 0)
    // nonzeros keep index 0.
    void ReIndexMatrixNZ(int from) override;
    void FullReIndexMatrixNZ() override;
    // Re-key the rows (columns) from their entities' current indices; the
    // argument names the removed row (column) and is not needed for that.
    void ReIndexByRowMap(int removedRow) override;
    void ReIndexByColMap(int removedCol) override;
    ILPNonZero* InternalFrstNonZeroObjectByRow() override;
    ILPNonZero* InternalNextNonZeroObjectByRow() override;
    ILPNonZero* InternalRowFrstNonZeroObject(int row) override;
    ILPNonZero* InternalRowNextNonZeroObject() override;
    // Brings rows and columns up to date with the lists' indices, checks
    // every entry's row and counts the rows' entries (the row layout is
    // derived at the first row walk).
    void BuildFastCollections() override;

private:
    static constexpr size_t kNone = static_cast<size_t>(-1);
    struct Walk {
        size_t slot = kNone;
        size_t pos = 0;
    };

    void Sync();
    void SettleRows();
    int RowLimit() const;
    int ColLimit() const;
    size_t PositionOf(ILPNonZero* nz) const;
    void RemoveBatch(const std::vector<ILPNonZero*>& doomed);
    void RefuseNonlinear(ILPNonZero* nz, const char* routine);
    void RefuseNonlinearEquation(ILPEquation* eqn, const char* routine);
    void MarkTrashed(ILPNonZero* nz);
    std::vector<ILPNonZero*> RowEntries(ILPEquation* eqn);
    std::vector<ILPNonZero*> ColEntries(ILPVariable* var);
    ILPNonZero* RowWalkFirst(Walk& walk);
    ILPNonZero* RowWalkNext(Walk& walk);
    ILPNonZero* ColWalkFirst(Walk& walk);
    ILPNonZero* ColWalkNext(Walk& walk);
    ILPNonZero* ColWalkSettle(Walk& walk);
    ILPNonZero* RowFirst(int row, Walk& walk);
    ILPNonZero* RowNext(Walk& walk);
    void ReadRecords(int n, ILPNonZero*** out, ILPVariable** vars, ILPEquation** eqns,
                     std::istream* is, const char* routine);

    ILPVariableList* m_vars;
    ILPEquationList* m_eqns;
    const LPVariableList* m_varImpl;
    const LPEquationList* m_eqnImpl;
    uint64_t m_varEpoch = 0;
    uint64_t m_eqnEpoch = 0;

    LPNonZeroPool* m_pool;  // storage of the nonzeros this matrix creates
    LPNonZeroList m_all;    // the nonzeros in index order
    LPMatrixColumns m_cols;
    LPMatrixRows m_rows;
    std::vector<ILPNonZero*> m_trash;
    std::unordered_set<const ILPNonZero*> m_doomed;  // the batch being removed
    std::vector<ILPNonZero*> m_doomedList;
    int m_persisted = 0;
    uint64_t m_structure = 0;

    size_t m_allCursor = kNone;
    Walk m_byRow, m_byCol, m_inRow, m_inCol, m_internalByRow, m_internalInRow;
};
