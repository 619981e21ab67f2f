#include "lpdata/ZEMTypes.h"

const char* ZEMVarTypeWord(int16_t type) {
    switch (type) {
        case ZEM_VAR_CONTINUOUS: return "Continuous";
        case ZEM_VAR_BINARY: return "Binary";
        case ZEM_VAR_DISCRETE: return "Discrete";
        case ZEM_VAR_SEMICONTINUOUS: return "Semi-continuous";
        default: return "Unknown";
    }
}

const char* ZEMVarTypeCompareWord(int16_t type) {
    switch (type) {
        case ZEM_VAR_CONTINUOUS: return "continuous";
        case ZEM_VAR_BINARY: return "binary";
        case ZEM_VAR_DISCRETE: return "discrete";
        case ZEM_VAR_SEMICONTINUOUS: return "semi-continuous";
        default: return "";
    }
}

const char* ZEMVarTypeSummaryWord(int16_t type) {
    switch (type) {
        case ZEM_VAR_BINARY: return "BINARY";
        case ZEM_VAR_DISCRETE: return "INTEGER";
        case ZEM_VAR_SEMICONTINUOUS: return "SEMI-CONTIN";
        default: return "";
    }
}

const char* ZEMVarStatusWord(int16_t status) {
    switch (status) {
        case ZEM_STATUS_NONBASIC: return "NonBasic";
        case ZEM_STATUS_BASIC: return "Basic";
        case ZEM_STATUS_FIXED: return "Fixed";
        case ZEM_STATUS_NONBASIC_UB: return "NonBasic UB";
        case ZEM_STATUS_NONBASIC_LB: return "NonBasic LB";
        default: return "Unknown";
    }
}

const char* ZEMEqnTypeWord(int16_t type) {
    switch (type) {
        case ZEM_EQN_OBJECTIVE: return "OBJ";
        case ZEM_EQN_EQ: return "EQ";
        case ZEM_EQN_LE: return "LE";
        case ZEM_EQN_GE: return "GE";
        case ZEM_EQN_FREE: return "FREE";
        default: return "Unknown";
    }
}

const char* ZEMEqnTypeCompareWord(int16_t type) {
    switch (type) {
        case ZEM_EQN_OBJECTIVE: return "objfn";
        case ZEM_EQN_EQ: return "=";
        case ZEM_EQN_LE: return "<=";
        case ZEM_EQN_GE: return ">=";
        case ZEM_EQN_FREE: return "free";
        default: return "";
    }
}
