// A flat snapshot of the per-variable and per-equation iteration values of a
// model: two plain arrays of 24-byte records in list order, for solver passes
// that should not walk the object lists.
//
//   IIterationData* it = nullptr;
//   IZEMIterationDataCreateInstanceFromZEM(&it, mgr);
//   const tVarIterDataStruct* v = it->ArrayVarDataStruct();
//   ... change values in the model ...
//   it->UpdateVarandEqnArrays(mgr);
//   it->Destroy();
#pragma once

#include "lpdata/ZEMTypes.h"

class IZEMMgr;

class IIterationData {
public:
    virtual ~IIterationData() = default;
    virtual tVarIterDataStruct* ArrayVarDataStruct() = 0;
    virtual tEqnIterDataStruct* ArrayEqnDataStruct() = 0;
    virtual int NumberOfVarRecords() const = 0;
    virtual int NumberOfEqnRecords() const = 0;
    // Refills both arrays from the model, growing them when the model grew.
    virtual void UpdateVarandEqnArrays(IZEMMgr* mgr) = 0;
    virtual void Destroy() = 0;
};

// Each stores the new object, or null when it could not be made.
void IZEMIterationDataCreateInstance(IIterationData** out, int nVars, int nEqns);
void IZEMIterationDataCreateInstanceFromZEM(IIterationData** out, IZEMMgr* mgr);
