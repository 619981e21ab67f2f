// One reversible change to a loaded model: a new value, bound or type of a
// variable, a new right-hand side, range or type of an equation, a new
// matrix coefficient, a new multiplier of a nonlinear term, or an option
// setting. The edit keeps the value it overwrote, so UnApply restores the
// model exactly.
//
//   IZEMEdit* e = new ZEMEditEqnRHS(mgr, row, 120.0);
//   e->Apply();      // row's RHS is 120, the old RHS is kept
//   e->UnApply();    // the old RHS is back
//   e->Destroy();
//
// Only an active edit (the default) changes anything. Applying twice and
// undoing once restores the value that stood before the second application.
//
// Record (little-endian, no padding): the 16-bit edit code, then the fields
// of the kind (see ZEMEdit.h). Indices are the entities' own 1-based indices.
#pragma once

#include <cstdint>
#include <ostream>
#include <sstream>

// The edit codes that begin each record.
enum ZEMEditCode : int16_t {
    eEditVarValue = 1,
    eEditVarBoundValue = 2,
    eEditVarType = 3,
    eEditEqnRHS = 4,
    eEditEqnRange = 5,
    eEditNZCoeff = 6,
    eEditEqnType = 7,
    eEditNonLinearityCoeff = 8,
    eEditOptionTable = 9
};

class IZEMEdit {
public:
    virtual ~IZEMEdit() = default;
    virtual void Apply() = 0;
    virtual void UnApply() = 0;
    // Brings a setting into force; only option edits have one, the other
    // kinds do nothing.
    virtual void ApplySettings() = 0;
    virtual void Display(std::ostream& os) = 0;
    // Appends the edit's record to the stream.
    virtual void StreamWrite(std::stringstream* ss) = 0;
    virtual void Destroy() = 0;
    virtual void Activate() = 0;
    virtual void DeActivate() = 0;
    virtual bool Active() = 0;
};
