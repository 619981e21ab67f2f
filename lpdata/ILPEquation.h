// A row of the model (the objective included): type, right-hand side, range
// and the row limits derived from them.
#pragma once

#include <cstdint>
#include <ostream>

#include "lpdata/ZEMTypes.h"

class ILPEquation {
public:
    virtual ~ILPEquation() = default;
    virtual void SetIndex(int index) = 0;
    virtual int GetIndex() const = 0;
    virtual void SetName(const char* name) = 0;
    virtual const char* GetName() const = 0;
    virtual void SetRange(double v) = 0;
    virtual double GetRange() const = 0;
    virtual void SetType(int16_t type) = 0;
    virtual int16_t GetType() const = 0;
    virtual void SetRHS(double v) = 0;
    virtual double GetRHS() const = 0;
    virtual double GetRHSLo() const = 0;
    virtual double GetRHSUp() const = 0;
    virtual void SetRHSLo(double v) = 0;
    virtual void SetRHSUp(double v) = 0;
    virtual void SetNumberNZ(int n) = 0;
    virtual int GetNumberNZ() const = 0;
    virtual void SetEqnValue(double v) = 0;
    virtual void AddEqnValue(double v) = 0;
    virtual double GetEqnValue() const = 0;
    virtual void SetEqnScale(double v) = 0;
    virtual double GetEqnScale() const = 0;
    virtual void SetBaseValue(double v) = 0;
    virtual double GetBaseValue() const = 0;
    virtual void SetResidualValue(double v) = 0;
    virtual double GetResidualValue() const = 0;
    virtual void SetShadowPrice(double v) = 0;
    virtual double GetShadowPrice() const = 0;
    virtual void SetInfeasValue(double v) = 0;
    virtual double GetInfeasValue() const = 0;
    virtual void IncrNonlinear() = 0;
    virtual void DecrNonlinear() = 0;
    virtual int GetNonlinear() const = 0;
    virtual void Display(std::ostream& os) = 0;
    virtual void SetModelIndex(int index) = 0;
    virtual int GetModelIndex() const = 0;
    // Writes one line per differing field; checkValues also compares the
    // value, residual and infeasibility; nz1/nz2 are the row counts of the
    // two models; shortForm is accepted for symmetry with the variable's.
    // Returns -1 when any difference was found, else 0.
    virtual int Compare(ILPEquation* other, std::ostream& os, int mode, bool checkValues,
                        double tolerance, int nz1, int nz2, bool shortForm) = 0;
    virtual bool BeenDiffed() const = 0;
    virtual void SetDiffed(bool diffed) = 0;
    virtual int GetBlkMember() const = 0;
    virtual void SetBlkMember(int block) = 0;
    virtual void PopulateEqnIterStruct(tEqnIterDataStruct& rec) const = 0;

protected:
    // Recomputes the row limits from RHS and range after either changed.
    virtual void ProcessRangeRHS() = 0;
};
