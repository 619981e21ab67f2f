// Enumerations, constants and small value types shared by the whole library.
#pragma once

#include <cmath>
#include <cstdint>

// Bounds at or beyond +/-1e20 mean "unbounded".
constexpr double ZEM_INFINITY = 1e20;
// Default step bound of a new variable.
constexpr double ZEM_STEP_BOUND_DEFAULT = 2e20;

// Variable types.
enum : int16_t {
    ZEM_VAR_CONTINUOUS = 1,
    ZEM_VAR_BINARY = 2,
    ZEM_VAR_DISCRETE = 3,
    ZEM_VAR_SEMICONTINUOUS = 4
};

// Variable (basis) statuses. The MPS "SB" bound key stores the special
// status 203.
enum : int16_t {
    ZEM_STATUS_NONBASIC = 1,
    ZEM_STATUS_BASIC = 2,
    ZEM_STATUS_FIXED = 3,
    ZEM_STATUS_NONBASIC_UB = 4,
    ZEM_STATUS_NONBASIC_LB = 5,
    ZEM_STATUS_STEP_BOUNDED = 203
};

// Equation types. 0 only results from an unrecognised row key.
enum : int16_t {
    ZEM_EQN_UNKNOWN = 0,
    ZEM_EQN_OBJECTIVE = 1,
    ZEM_EQN_EQ = 2,
    ZEM_EQN_LE = 3,
    ZEM_EQN_GE = 4,
    ZEM_EQN_FREE = 5
};

// Words of the enumerations as the displays, comparisons and summaries print
// them. Unknown codes give "Unknown" (display) or "" (compare, summary).
const char* ZEMVarTypeWord(int16_t type);
const char* ZEMVarTypeCompareWord(int16_t type);
const char* ZEMVarTypeSummaryWord(int16_t type);
const char* ZEMVarStatusWord(int16_t status);
const char* ZEMEqnTypeWord(int16_t type);
const char* ZEMEqnTypeCompareWord(int16_t type);

// The comparison every model compare uses: a equals b within tolerance t when
// |a - b| / (|a| + 1) < t, a being the first model's value.
inline bool ZEMValuesEqual(double a, double b, double t) {
    return std::fabs(a - b) / (std::fabs(a) + 1.0) < t;
}

// Per-entity iteration records (24 bytes each) kept by the iteration data
// between solver passes: the current value, the value at the base point and
// the dual information of the entity.
struct tVarIterDataStruct {
    double value;
    double baseValue;
    double shadowPrice;
};

struct tEqnIterDataStruct {
    double value;
    double baseValue;
    double shadowPrice;
};

static_assert(sizeof(tVarIterDataStruct) == 24, "iteration record is 24 bytes");
static_assert(sizeof(tEqnIterDataStruct) == 24, "iteration record is 24 bytes");
