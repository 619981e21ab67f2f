// One coefficient of the matrix, joining one row and one column.
#pragma once

#include <cstdint>
#include <ostream>

class ILPEquation;
class ILPVariable;

class ILPNonZero {
public:
    virtual ~ILPNonZero() = default;
    virtual void Destroy() = 0;
    virtual void SetIndex(int index) = 0;
    virtual int GetIndex() const = 0;
    virtual void GetCoordinates(int& row, int& col) const = 0;
    virtual int GetEquationIdx() const = 0;
    virtual int GetVariableIdx() const = 0;
    virtual void SetEquationPtr(ILPEquation* eqn) = 0;
    virtual ILPEquation* GetEquationPtr() const = 0;
    virtual void SetVariablePtr(ILPVariable* var) = 0;
    virtual ILPVariable* GetVariablePtr() const = 0;
    virtual void SetCoefficient(double v) = 0;
    virtual double GetCoefficient() const = 0;
    virtual void SetPartialDeriv(double v) = 0;
    virtual void AddPartialDeriv(double v) = 0;
    virtual double GetPartialDeriv() const = 0;
    virtual void IncrNonlinear() = 0;
    virtual void DecrNonlinear() = 0;
    virtual int16_t GetNonlinear() const = 0;
    virtual void Display(std::ostream& os) = 0;
    virtual void SetModelIndex(int index) = 0;
    virtual int GetModelIndex() const = 0;
    // Reports a differing coefficient or nonlinear flag; returns -1 when a
    // difference was found, else 0.
    virtual int Compare(ILPNonZero* other, int mode, double tolerance, std::ostream& os) = 0;
    virtual bool BeenDiffed() const = 0;
    virtual void SetDiffed(bool diffed) = 0;
};
