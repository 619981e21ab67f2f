// The model's equations: insertion order, name index, cursors, removal with
// renumbering, trash, type counts and the binary records. Stream readers hand
// out a null-terminated array as ILPVariableList's do.
#pragma once

#include <cstdint>
#include <istream>
#include <ostream>

class ILPEquation;

class ILPEquationList {
public:
    virtual ~ILPEquationList() = default;
    virtual void Destroy() = 0;
    virtual int NumberOfEquations() = 0;
    virtual int NumberOfPersistedEquations() = 0;
    virtual int NumberOfNLEquations() = 0;
    // Numbers of equality, less-or-equal, greater-or-equal and free rows that
    // carry nonlinear terms.
    virtual void NLEquationProfile(int& eq, int& le, int& ge, int& fr) = 0;
    virtual ILPEquation* InsertEquation(const char* name) = 0;
    virtual void RemoveEquation(ILPEquation* eqn) = 0;
    virtual void TrashEquation(ILPEquation* eqn) = 0;
    virtual void EmptyTrash() = 0;
    virtual void CreateNewEquationObject(ILPEquation** out) = 0;
    virtual int AddEquationObject(ILPEquation* eqn) = 0;
    virtual ILPEquation* EqnNameLookup(const char* name) = 0;
    virtual void RetrieveEquationObject(int index, ILPEquation** out) = 0;
    virtual int EqnTypeCount(int16_t type) = 0;
    // Range rows and the nonzeros they hold.
    virtual void RangeEqnCount(int& rows, int& nonzeros) = 0;
    // Free rows, their nonzeros and the objective's nonzeros.
    virtual void FreeEqnCount(int& rows, int& nonzeros, int& objNonzeros) = 0;
    virtual ILPEquation* FrstEquationObject() = 0;
    virtual ILPEquation* NextEquationObject() = 0;
    virtual void UpdateBasePointValues() = 0;
    virtual void UpdateValuesFromBasePoint() = 0;
    virtual void ProcessEquationCollection() = 0;
    virtual void Display(std::ostream& os) = 0;
    virtual void StreamWrite(std::ostream* os, double version) = 0;
    virtual void StreamWrite(std::ostream* os) = 0;
    virtual void StreamWrite3(std::ostream* os) = 0;
    virtual void StreamWrite4(std::ostream* os) = 0;
    virtual void StreamRead(int n, ILPEquation*** out, std::istream* is, double version) = 0;
    virtual void StreamRead(int n, ILPEquation*** out, std::istream* is) = 0;
    virtual void StreamRead3(int n, ILPEquation*** out, std::istream* is) = 0;
    virtual void StreamRead4(int n, ILPEquation*** out, std::istream* is) = 0;
    virtual void StreamReadSafe(int n, ILPEquation*** out, std::istream* is, double version) = 0;
    virtual void ClearDiffFlags() = 0;
    virtual void ClearElements() = 0;
    virtual void UpdateResidualValues(const double* residuals) = 0;
    virtual void StreamWrite5(std::ostream* os) = 0;
    virtual void StreamRead5(int n, ILPEquation*** out, std::istream* is) = 0;

protected:
    virtual void ResetEquationCollection() = 0;
    virtual void IncrTypeCount(int16_t type) = 0;
    virtual void BuildFastCollections() = 0;
    virtual ILPEquation* InternalFrstEquationObject() = 0;
    virtual ILPEquation* InternalNextEquationObject() = 0;
};
