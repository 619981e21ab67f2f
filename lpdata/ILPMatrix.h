// The sparse matrix: every nonzero of the model, reachable in insertion
// order, by row and by column. Rows and columns are named by the 1-based
// indices of their equations and variables.
#pragma once

#include <istream>
#include <ostream>

class ILPEquation;
class ILPNonZero;
class ILPVariable;

class ILPMatrix {
public:
    virtual ~ILPMatrix() = default;
    virtual void Destroy() = 0;
    virtual int NumberOfNonZeros() = 0;
    virtual int NumberOfPersistedNonZeros() = 0;
    virtual int NumberOfNonLinearNonZeros() = 0;
    virtual void CreateNewNonZeroObject(ILPNonZero** out) = 0;
    // Adds the nonzero; a second entry for the same (row, column) is summed
    // into the first, destroyed, and the first is returned.
    virtual ILPNonZero* AddNonZeroObject(ILPNonZero* nz) = 0;
    virtual void RemoveNonZero(ILPNonZero* nz) = 0;
    virtual void TrashNonZero(ILPNonZero* nz) = 0;
    virtual void EmptyNonZeroTrash() = 0;
    virtual void EliminateVariable(ILPVariable* var) = 0;
    virtual void EliminateEquation(ILPEquation* eqn) = 0;
    virtual void TrashVariable(ILPVariable* var) = 0;
    virtual void TrashEquation(ILPEquation* eqn) = 0;
    virtual ILPNonZero* FrstNonZeroObject() = 0;
    virtual ILPNonZero* NextNonZeroObject() = 0;
    virtual ILPNonZero* FrstNonZeroObjectByRow() = 0;
    virtual ILPNonZero* NextNonZeroObjectByRow() = 0;
    virtual ILPNonZero* FrstNonZeroObjectByColumn() = 0;
    virtual ILPNonZero* NextNonZeroObjectByColumn() = 0;
    virtual ILPNonZero* RowFrstNonZeroObject(int row) = 0;
    virtual ILPNonZero* RowNextNonZeroObject() = 0;
    virtual ILPNonZero* ColFrstNonZeroObject(int col) = 0;
    virtual ILPNonZero* ColNextNonZeroObject() = 0;
    virtual ILPNonZero* ExistIncidence(int row, int col) = 0;
    virtual int NonZerosInRow(int row) = 0;
    virtual int NonZerosInColumn(int col) = 0;
    virtual void ProcessMatrixCollection() = 0;
    virtual void Display(std::ostream& os) = 0;
    virtual void DisplayByRow(std::ostream& os) = 0;
    virtual void DisplayByColumn(std::ostream& os) = 0;
    virtual void StreamWrite(std::ostream* os) = 0;
    // vars and eqns are the null-terminated tables of the list readers.
    virtual void StreamRead(int n, ILPNonZero*** out, ILPVariable** vars, ILPEquation** eqns,
                            std::istream* is) = 0;
    virtual void StreamReadSafe(int n, ILPNonZero*** out, ILPVariable** vars, ILPEquation** eqns,
                                std::istream* is) = 0;
    virtual void ClearDiffFlags() = 0;
    virtual void FastInsertNonZeroObject(ILPNonZero* nz) = 0;

protected:
    virtual void ResetMatrixCollection() = 0;
    virtual void EraseByRowNonZero(ILPNonZero* nz) = 0;
    virtual void EraseByColNonZero(ILPNonZero* nz) = 0;
    virtual void EraseByRowNonZerosInTrash() = 0;
    virtual void EraseByColNonZerosInTrash() = 0;
    virtual void ReIndexMatrixNZ(int from) = 0;
    virtual void FullReIndexMatrixNZ() = 0;
    virtual void ReIndexByRowMap(int removedRow) = 0;
    virtual void ReIndexByColMap(int removedCol) = 0;
    virtual ILPNonZero* InternalFrstNonZeroObjectByRow() = 0;
    virtual ILPNonZero* InternalNextNonZeroObjectByRow() = 0;
    virtual ILPNonZero* InternalRowFrstNonZeroObject(int row) = 0;
    virtual ILPNonZero* InternalRowNextNonZeroObject() = 0;
    virtual void BuildFastCollections() = 0;
};
