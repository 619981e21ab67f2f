// Special ordered sets and their list. Set types, as the MPS SETS keys give
// them: 1 "S1", 2 "S2", 3 "S3", 4 "CS", 5 "TB", 6 "T2", 7 "DP".
#pragma once

#include <cstdint>
#include <istream>
#include <ostream>

class ILPVariable;

class ILPSpOrdSet {
public:
    virtual ~ILPSpOrdSet() = default;
    virtual void SetIndex(int index) = 0;
    virtual int GetIndex() const = 0;
    virtual void SetName(const char* name) = 0;
    virtual const char* GetName() const = 0;
    virtual void SetType(int16_t type) = 0;
    virtual int16_t GetType() const = 0;
    // Appends the variable unless it is already a member; returns the size.
    virtual int AddVariableObject(ILPVariable* var) = 0;
    virtual int AddVariableObjectPlain(ILPVariable* var) = 0;
    virtual bool RemoveVariableIfInSet(ILPVariable* var) = 0;
    virtual int GetSize() const = 0;
    virtual ILPVariable* FrstSetVar() = 0;
    virtual ILPVariable* NextSetVar() = 0;
    virtual void Display(std::ostream& os) = 0;
    // Reports differences in type, size and membership; returns -1 when any
    // was found, else 0.
    virtual int Compare(ILPSpOrdSet* other, std::ostream& os) = 0;
    virtual bool BeenDiffed() const = 0;
    virtual void SetDiffed(bool diffed) = 0;
};

class ILPSpOrdSetList {
public:
    virtual ~ILPSpOrdSetList() = default;
    virtual int NumberOfSpOrdSets() = 0;
    virtual void CreateNewSpOrdSetObject(ILPSpOrdSet** out) = 0;
    virtual int AddSpOrdSetObject(ILPSpOrdSet* set) = 0;
    virtual ILPSpOrdSet* SOSNameLookup(const char* name) = 0;
    virtual void RetrieveSpOrdSetObject(int index, ILPSpOrdSet** out) = 0;
    virtual int SOSTypeCount(int16_t type) = 0;
    virtual int TotalSOSVars() = 0;
    virtual ILPSpOrdSet* FrstSpOrdSetObject() = 0;
    virtual ILPSpOrdSet* NextSpOrdSetObject() = 0;
    virtual void RemoveVariable(ILPVariable* var) = 0;
    virtual void ProcessSpOrdSetCollection() = 0;
    virtual void Display(std::ostream& os) = 0;
    virtual void StreamWrite(std::ostream* os) = 0;
    // vars is the null-terminated table of the variable list's reader; the
    // array handed out is null-terminated too.
    virtual void StreamRead(int nSets, int nMembers, ILPSpOrdSet*** out, ILPVariable** vars,
                            std::istream* is) = 0;
    virtual void StreamReadSafe(int nSets, int nMembers, ILPSpOrdSet*** out, ILPVariable** vars,
                                std::istream* is) = 0;
    virtual void ClearDiffFlags() = 0;

protected:
    virtual void ResetSpOrdSetCollection() = 0;
    virtual void IncrTypeCount(int16_t type) = 0;
};
