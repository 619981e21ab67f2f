// One case: a numbered, named list of edits against one model. Apply runs
// the edits in list order, UnApply takes back exactly the edits that Apply
// reached, last-applied first (an edit whose Apply threw is still undone).
//
//   CZEMCaseMgr c(1, "HIGHDEMAND", "demand up 10%", mgr);
//   c.AddEqnRHSEdit("DEMAND", 110.0);
//   c.AddVarBoundEdit("CRUDE", ZEMEditVarBoundValue::kUpper, 500.0);
//   c.Apply();     // the model now holds the case
//   c.UnApply();   // and is as before
//
// Adding by name looks the name up in the model; an unknown name, a matrix
// entry that does not exist or an edit that cannot be made throws
// ZEM_Exception (category "CZEMCaseMgr Error") and adds nothing.
#pragma once

#include <cstdint>
#include <ostream>
#include <sstream>
#include <vector>

class ILPEquation;
class ILPNonZero;
class ILPVariable;
class INonLinearity;
class IZEMEdit;
class IZEMMgr;

// The solver control of a solver that hosts the library. This library has
// none: the type is opaque, a case only keeps and hands back the pointer it
// was made with, and option edits act on the model's option table.
class IORVA_Control;

class IZEMCaseMgr {
public:
    virtual ~IZEMCaseMgr() = default;

    virtual int GetCaseNumber() = 0;
    virtual void SetCaseNumber(int number) = 0;
    // Name and description hold at most 128 characters; longer texts are cut.
    virtual void SetCaseName(const char* name) = 0;
    virtual const char* GetCaseName() = 0;
    virtual void SetCaseDescription(const char* text) = 0;
    virtual const char* GetCaseDescription() = 0;
    virtual IZEMMgr* GetZEMMgr() = 0;
    virtual IORVA_Control* GetSolverControl() = 0;
    // The edits in list order; the case owns them (add with the Add operations).
    virtual const std::vector<IZEMEdit*>* CaseEditListPtr() = 0;

    virtual void AddEqnRHSEdit(ILPEquation* eqn, double value) = 0;
    virtual void AddEqnRHSEdit(const char* eqn, double value) = 0;
    virtual void AddEqnRangeEdit(ILPEquation* eqn, double value) = 0;
    virtual void AddEqnRangeEdit(const char* eqn, double value) = 0;
    virtual void AddEqnTypeEdit(ILPEquation* eqn, int16_t type) = 0;
    virtual void AddEqnTypeEdit(const char* eqn, int16_t type) = 0;
    virtual void AddVarValueEdit(ILPVariable* var, double value) = 0;
    virtual void AddVarValueEdit(const char* var, double value) = 0;
    // selector: -1 lower bound, 1 upper bound, 0 both (fixes the variable).
    virtual void AddVarBoundEdit(ILPVariable* var, int16_t selector, double value) = 0;
    virtual void AddVarBoundEdit(const char* var, int16_t selector, double value) = 0;
    virtual void AddVarTypeEdit(ILPVariable* var, int16_t type) = 0;
    virtual void AddVarTypeEdit(const char* var, int16_t type) = 0;
    // The entry must exist in the matrix.
    virtual void AddMatrixCoeffEdit(ILPEquation* eqn, ILPVariable* var, double value) = 0;
    virtual void AddMatrixCoeffEdit(ILPNonZero* nz, double value) = 0;
    virtual void AddMatrixCoeffEdit(const char* eqn, const char* var, double value) = 0;
    // Edits the term's multiplier.
    virtual void AddMatrixNonLinearityCoeffEdit(INonLinearity* term, double value) = 0;
    virtual void AddOptionTableEdit(const char* name, const char* value) = 0;
    // One value edit per variable, in list order, with the next array value;
    // the array must hold one value per variable. A null array adds nothing.
    virtual void AddInitialVectorEdits(const double* values) = 0;
    // Takes ownership of a ready-made edit.
    virtual void AddZEMEditOp(IZEMEdit* edit) = 0;

    virtual void Apply() = 0;
    virtual void UnApply() = 0;
    // Each edit's ApplySettings in list order (nothing is stacked).
    virtual void ApplySettings() = 0;
    virtual void Display(std::ostream& os) = 0;
    // Appends the case record and the edits' records; returns 0.
    virtual int PersistAsStream(std::stringstream* ss) = 0;
    virtual void Destroy() = 0;
};
