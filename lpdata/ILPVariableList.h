// The model's variables: insertion order, name index, cursors, removal with
// renumbering, trash, and the binary records.
//
// Stream readers (StreamRead*) hand the caller a new[]-allocated array of the
// entities they created, in record order, with one extra null entry at the
// end; the caller delete[]s it. Later sections of a file refer to variables
// by their 1-based position in that array.
#pragma once

#include <cstdint>
#include <istream>
#include <ostream>

class ILPVariable;

class ILPVariableList {
public:
    virtual ~ILPVariableList() = default;
    virtual void Destroy() = 0;
    virtual int NumberOfVariables() = 0;
    virtual int NumberOfPersistedVariables() = 0;
    // Returns the variable of that name, creating and adding it when absent.
    virtual ILPVariable* InsertVariable(const char* name) = 0;
    virtual void RemoveVariable(ILPVariable* var) = 0;
    virtual void TrashVariable(ILPVariable* var) = 0;
    virtual void EmptyTrash() = 0;
    virtual void CreateNewVariableObject(ILPVariable** out) = 0;
    // Appends the variable, gives it the next index and returns that index.
    virtual int AddVariableObject(ILPVariable* var) = 0;
    virtual ILPVariable* VarNameLookup(const char* name) = 0;
    virtual void RetrieveVariableObject(int index, ILPVariable** out) = 0;
    virtual int VarTypeCount(int16_t type) = 0;
    virtual ILPVariable* FrstVariableObject() = 0;
    virtual ILPVariable* NextVariableObject() = 0;
    virtual int NumberOfComplementPairs() = 0;
    // Sets the values of the variables, in list order, from values[0..n-1].
    virtual void UpdateValues(const double* values) = 0;
    virtual void UpdateBasePointValues() = 0;
    virtual void UpdateValuesFromBasePoint() = 0;
    virtual void UpdatePersistentValues(int16_t mode) = 0;
    virtual void UpdateValuesFromPersistentPoint() = 0;
    virtual ILPVariable* FrstComplementarityVar() = 0;
    virtual ILPVariable* NextComplementarityVar() = 0;
    virtual void ProcessVariableCollection() = 0;
    virtual void Display(std::ostream& os) = 0;
    virtual void DisplayPersistedValues(std::ostream& os) = 0;
    virtual void StreamWrite(std::ostream* os, double version) = 0;
    virtual void StreamWrite(std::ostream* os) = 0;
    virtual void StreamWrite3(std::ostream* os) = 0;
    virtual void StreamRead(int n, ILPVariable*** out, std::istream* is, double version) = 0;
    virtual void StreamRead(int n, ILPVariable*** out, std::istream* is) = 0;
    virtual void StreamRead3(int n, ILPVariable*** out, std::istream* is) = 0;
    virtual void StreamReadSafe(int n, ILPVariable*** out, std::istream* is, double version) = 0;
    virtual void ClearDiffFlags() = 0;
    virtual void ClearElements() = 0;
    virtual void StreamWrite4(std::ostream* os) = 0;
    virtual void StreamRead4(int n, ILPVariable*** out, std::istream* is) = 0;

protected:
    virtual void ResetVariableCollection() = 0;
    virtual void IncrTypeCount(int16_t type) = 0;
    virtual void BuildFastCollections() = 0;
    virtual ILPVariable* InternalFrstVariableObject() = 0;
    virtual ILPVariable* InternalNextVariableObject() = 0;
};
