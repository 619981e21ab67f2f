// Test models for the model manager tests: a small model with every kind of
// content, and a field-by-field comparison of two models.
#pragma once

#include <memory>
#include <string>

#include "zemmgr/IZEMMgr.h"

struct ZEMMgrReleaser {
    void operator()(IZEMMgr* m) const {
        if (m != nullptr) m->IRelease();
    }
};
using ZEMMgrPtr = std::unique_ptr<IZEMMgr, ZEMMgrReleaser>;

// A new manager holding one reference.
ZEMMgrPtr NewMgr();

// Fills `mgr` with: title "RICHMODEL"; variables X1..X5 (every persisted
// field away from its default; X3 binary, X4 discrete, X5 semi-continuous);
// rows OBJ (objective), E1 (=), L1 (<=, range 2), G1 (>=, range 3), F1
// (free), each with linear entries; terms XPROD 2*X1*X2 on E1, LNX on L1,
// EXPX on G1 and CONST 4 on E1; sets S1 {X1,X2} type 1 and S2 {X3,X4,X5}
// type 2; options in both columns; collections IN (input: X1, X2) and OUT
// (output: X5); objective-in-matrix on, values-initialized off, hybrid on.
// Names can be given a prefix so that two such models can be appended.
void BuildRichModel(IZEMMgr* mgr, const std::string& prefix = "");

// Checks with gtest that two models hold the same persisted content: title
// and flags, every variable, equation and nonzero field the file carries,
// the nonlinear terms (type, row, arguments, constants), sets, options and
// named collections.
void ExpectSameModel(IZEMMgr* a, IZEMMgr* b, bool compareTitleAndFlags = true);

// The model's bytes as PersistAsStream writes them.
std::string ModelBytes(IZEMMgr* mgr, double version = 0.0);
