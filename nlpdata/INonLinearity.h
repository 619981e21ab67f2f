// Interfaces of a nonlinear term and of its numeric constants.
//
// A term belongs to one row, takes an ordered list of variables (repeats
// allowed) and an ordered list of numeric constants, and computes its value
// and its partial derivatives at the variables' current values. The pool that
// owns the terms (INonLinearModel) gives each term the matrix entries (one per
// distinct variable, in order of first occurrence) that receive its
// derivatives.
//
//   INonLinearity* t = nullptr;
//   model->CreateNonLinearityObject("XPROD", &t);
//   t->SetEquationPtr(row);
//   t->AddNLConstantObject(2.0);          // multiplier
//   t->AddVariableObject(x);
//   t->AddVariableObject(y);
//   model->AddNonLinearityObject(t);      // the pool owns t from here
//   double v = t->EvaluateTerm();         // 2 * x * y
//
// Walks (FrstVar/NextVar and the like) keep their cursor inside the term: one
// walk over one list of one term at a time.
#pragma once

#include <cstdint>
#include <ostream>
#include <string>

class ILPEquation;
class ILPNonZero;
class ILPVariable;

// One numeric constant of a term.
class INLConstant {
public:
    virtual ~INLConstant() = default;
    virtual void Destroy() = 0;
    virtual void SetValue(double v) = 0;
    virtual double GetValue() const = 0;
    virtual void Display(std::ostream& os) = 0;
};

class INonLinearity {
public:
    virtual ~INonLinearity() = default;
    virtual void Destroy() = 0;
    virtual void SetIndex(int index) = 0;
    virtual int GetIndex() const = 0;
    virtual int16_t GetType() const = 0;
    // The keyword or composed identifier; null for a term without one.
    virtual const char* GetNonLinearityID() const = 0;
    virtual void SetEquationPtr(ILPEquation* eqn) = 0;
    virtual ILPEquation* GetEquationPtr() const = 0;
    // Appends an argument; returns the number of arguments (repeats counted).
    virtual int AddVariableObject(ILPVariable* var) = 0;
    virtual ILPVariable* FrstVar() = 0;
    virtual ILPVariable* NextVar() = 0;
    virtual ILPVariable* FrstUniqueVar() = 0;
    virtual ILPVariable* NextUniqueVar() = 0;
    // Appends a constant owned by the caller; returns the number of constants.
    virtual int AddNLConstantObject(INLConstant* c) = 0;
    // Appends a new constant owned by the term; returns the number of constants.
    virtual int AddNLConstantObject(double value) = 0;
    virtual INLConstant* FrstNLConst() = 0;
    virtual INLConstant* NextNLConst() = 0;
    virtual int NumberOfVariableTerms() const = 0;
    virtual int NumberOfUniqueVariableEntries() const = 0;
    virtual int NumberOfNLConstants() const = 0;
    virtual void StoreNonZeroReference(ILPNonZero* nz) = 0;
    virtual ILPNonZero* FrstNZ() = 0;
    virtual ILPNonZero* NextNZ() = 0;
    // The term's value at the variables' current values.
    virtual double EvaluateTerm() = 0;
    // Adds EvaluateTerm() to the row's value.
    virtual void EvaluateTermAndAdd() = 0;
    // Diagnostic form of TermJacobian(): writes the derivatives to `os`.
    virtual void TermJacobian(std::ostream& os) = 0;
    // Adds the term's partial derivatives into its matrix entries.
    virtual void TermJacobian() = 0;
    virtual void DeActivate() = 0;
    virtual void Activate() = 0;
    virtual int16_t Active() const = 0;
    virtual int AddRelatedNonlinearityRef(INonLinearity* term) = 0;
    virtual INonLinearity* FrstRelatedNonlinearityRef() = 0;
    virtual INonLinearity* NextRelatedNonlinearityRef() = 0;
    virtual int AddRelatedVariableRef(ILPVariable* var) = 0;
    virtual ILPVariable* FrstRelatedVariableRef() = 0;
    virtual ILPVariable* NextRelatedVariableRef() = 0;
    virtual void AddNonlinearityRef(INonLinearity* term) = 0;
    // Appends "_" + name for each argument ("_" left out when the name starts
    // with one).
    virtual void ConcatVarListNames(std::string& out) = 0;
    // Copies the formula text, numbers printed with `format`, into `buffer`
    // with strncpy semantics (at most `length` bytes, no terminator when the
    // text fills the buffer).
    virtual void TermString(const char* format, char* buffer, int length) = 0;
    // The formula as text.
    virtual void TermString(std::string& out) = 0;
    virtual void Display(std::ostream& os) = 0;
    // Diagnostic comparison with the corresponding term of another model.
    virtual int Compare(INonLinearity* other, int mode, double tolerance, std::ostream& os) = 0;
    virtual bool BeenDiffed() const = 0;
    virtual void SetDiffed(bool diffed) = 0;
    virtual int GetBlkMember() const = 0;
    virtual void SetBlkMember(int block) = 0;
    // Changes the multiplier copy only; the stored first constant keeps its value.
    virtual void setFrstConstVal(double v) = 0;
    // The wrapped term of a wrapper; null otherwise.
    virtual INonLinearity* GetNonlinearityRef() = 0;
};
