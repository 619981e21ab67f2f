// Small whole-model transformations used around solver passes. Made by the
// manager on first GetModelTransformIntf and owned by it.
#pragma once

class IZEMModelTransform {
public:
    virtual ~IZEMModelTransform() = default;
    // Fixes the named variable at `value` (both bounds and the value, status
    // fixed); false when the name is unknown.
    virtual bool FixVariable(const char* varName, double value) = 0;
    // Multiplies a row's linear coefficients, right-hand side, value and
    // scale by `factor` (the range by its magnitude; a negative factor turns
    // <= into >= and back) and divides its shadow price by it. Nonlinear
    // rows, unknown names and a zero or non-finite factor are refused
    // (false).
    virtual bool ScaleEquation(const char* eqnName, double factor) = 0;
    // Moves each variable's value inside its bounds; returns how many moved.
    virtual int ProjectValuesOntoBounds() = 0;
    // Gives the range rows (<= or >= with a non-zero range) a zero range,
    // keeping their RHS; returns how many changed.
    virtual int DropRanges() = 0;
};
