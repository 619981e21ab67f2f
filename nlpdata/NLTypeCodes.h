// Type codes of the nonlinear term types (signed 16-bit), one table for the
// whole library: files, the model file and the flat interface use them.
// Code 6 has no keyword and no class; the factory makes an unknown term for it.
#pragma once

#include <cstdint>

enum : int16_t {
    kNLProduct = 1,          // "XPROD"
    kNLNaturalLogX = 2,      // "LNX"
    kNLExponentialX = 3,     // "EXPX"
    kNLConstant = 4,         // "CONST"
    kNLConstantProd = 5,     // "CONSTPROD"
    kNLUnknown = 7,          // "NLUNKNOWN"
    kNLBlockEquation = 8,    // "NLBLKEQ"
    kNLQCLEquation = 9,      // "QCLEQ"
    kNLCurve = 10,           // "GNREQ"
    kNLNLEEquation = 11,     // "USEREQ"
    kNLWrap = 12,            // "WRAPEQ"
    kNLSCDEquation = 13,     // "SCDEQ"
    kNLPower = 14,           // "POW"
    kNLXPower = 15,          // "XPOW"
    kNLEvaporation = 16,     // "EVAP"
    kNLEI = 17,              // "EI"
    kNLTPercent = 18,        // "TPERCENT"
    kNLProduct2 = 19,        // "XPROD2"
    kNLFloatingTankQB = 20,  // "FLTQB"
    kNLDivision = 21,        // "DIV"
    kNLDiBiDistFunc = 91,    // "DIBIFUNC"
    kNLDiBiFullDistFunc = 92,  // "DIBIFUNCX"
    kNLSimDistInterp = 93,     // "SIMDISTINTRP"
    kNLSimDistInterpFVT = 94   // "SIMDISTINTRPFVT"
};
