// Activity limits of a row, as the displays and the GAMS writer need them:
// lower <= activity <= upper, with +/-1e20 standing for no limit.
#pragma once

#include <cmath>

#include "lpdata/ILPEquation.h"
#include "lpdata/ZEMTypes.h"

struct ZEMRowLimits {
    double lower;
    double upper;
    // A <= or >= row with a non-zero range, or an equality row whose limits
    // were spread by a range: both limits are finite and differ.
    bool ranged;
};

inline ZEMRowLimits ZEMGetRowLimits(const ILPEquation* e) {
    const double rhs = e->GetRHS();
    const bool hasRange = e->GetRange() != 0.0;
    switch (e->GetType()) {
    case ZEM_EQN_EQ:
        if (hasRange && e->GetRHSLo() < e->GetRHSUp()) return {e->GetRHSLo(), e->GetRHSUp(), true};
        return {rhs, rhs, false};
    case ZEM_EQN_LE:
        return {hasRange ? e->GetRHSLo() : -ZEM_INFINITY, rhs, hasRange};
    case ZEM_EQN_GE:
        return {rhs, hasRange ? e->GetRHSUp() : ZEM_INFINITY, hasRange};
    default:
        return {-ZEM_INFINITY, ZEM_INFINITY, false};
    }
}
