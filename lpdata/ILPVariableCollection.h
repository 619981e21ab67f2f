// A named group of variables with a direction (1 input, -1 output, anything
// else unspecified), used to mark a model's inputs and outputs.
#pragma once

#include <cstdint>
#include <istream>
#include <ostream>

class ILPVariable;

class ILPVariableCollection {
public:
    virtual ~ILPVariableCollection() = default;
    virtual void Destroy() = 0;
    virtual const char* Name() const = 0;
    virtual void SetName(const char* name) = 0;
    virtual int CollectionSize() const = 0;
    virtual bool RemoveVariable(ILPVariable* var) = 0;
    virtual int AddVariableObject(ILPVariable* var) = 0;
    virtual ILPVariable* FrstVariableObject() = 0;
    virtual ILPVariable* NextVariableObject() = 0;
    virtual void SetDirection(int16_t direction) = 0;
    virtual int16_t GetDirection() const = 0;
    virtual void SetType(int16_t type) = 0;
    virtual int16_t GetType() const = 0;
    virtual void Display(std::ostream& os) = 0;
    virtual void StreamWrite(std::ostream* os) = 0;
    // vars is the null-terminated table of the variable list's reader.
    virtual void StreamRead(ILPVariable** vars, std::istream* is) = 0;
    virtual int Compare(ILPVariableCollection* other, std::ostream& os) = 0;
    virtual bool BeenDiffed() const = 0;
    virtual void SetDiffed(bool diffed) = 0;
    // Makes this collection a copy of `src`, mapping each member through
    // map[index - 1] (the members' 1-based indices in the source model).
    virtual void CopyCollection(ILPVariableCollection* src, ILPVariable** map) = 0;
};
