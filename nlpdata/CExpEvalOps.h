// The steps of CExpEval's postfix program (internal to the evaluator).
#pragma once

#include <cstdint>

namespace expops {

enum : uint8_t {
    kNumberOp, kSymbolOp,
    kAddOp, kSubOp, kMulOp, kDivOp, kPowOp,
    kNegOp, kFunctionOp, kNotOp,
    kAndOp, kOrOp,
    // In the order of the comparison characters "><glen": >, <, >=, <=, ==, !=.
    kGtOp, kLtOp, kGeOp, kLeOp, kEqOp, kNeOp,
    kEndOp,  // an end marker in the sequence
    kBadOp,  // a token kind the machine does not know
};

}  // namespace expops
