// Evaluates rows of a model by name. Made by the manager on first
// GetModelExecutionIntf and owned by it.
#pragma once

class IZEMModelExecution {
public:
    virtual ~IZEMModelExecution() = default;
    // Evaluates the row at the current variable values (linear part plus
    // nonlinear terms), stores it as the row's value and returns it.
    virtual double EvaluateEquation(const char* eqnName) = 0;
    // The row's stored value (the result of the last evaluation).
    virtual double GetRowValue(const char* eqnName) = 0;
    // Evaluates every row; returns the number of rows evaluated.
    virtual int EvaluateAllEquations() = 0;
    // Row value minus its right-hand side after evaluating the row.
    virtual double EquationResidual(const char* eqnName) = 0;
};
