// Shared helpers of the model manager tests: managers that release
// themselves, a small model with every kind of content, a field-by-field
// comparison of two models, and short forms of common look-ups.
#pragma once

#include <gtest/gtest.h>

#include <array>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include "lpdata/ILPEquation.h"
#include "lpdata/ILPEquationList.h"
#include "lpdata/ILPMatrix.h"
#include "lpdata/ILPNonZero.h"
#include "lpdata/ILPSpOrdSet.h"
#include "lpdata/ILPVariable.h"
#include "lpdata/ILPVariableCollection.h"
#include "lpdata/ILPVariableList.h"
#include "lpdata/ZEMException.h"
#include "nlpdata/INonLinearModel.h"
#include "zemmgr/IZEMModelBuilder.h"
#include "zemmgr/IZEMOptionTable.h"
#include "zemmgr/ZEMMgr.h"

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

// A new manager holding BuildRichModel's model.
ZEMMgrPtr RichMgr(const std::string& prefix = "");

// Title "small"; row R: X - 2 y + 3 X*y >= 1 with range 4 (limits [1, 5]);
// X in [0, 5] at 1, y fixed at 2; objective COST = X.
ZEMMgrPtr SmallMgr();

// Checks with gtest that two models hold the same persisted content: their
// model files at the current version are the same bytes. Without
// compareTitleAndFlags, b first takes a's title and flags.
void ExpectSameModel(IZEMMgr* a, IZEMMgr* b, bool compareTitleAndFlags = true);

// The model's bytes as PersistAsStream writes them.
std::string ModelBytes(IZEMMgr* mgr, double version = 0.0);

// Restores `mgr` from `bytes` through RestoreFromStream.
void Restore(IZEMMgr* mgr, const std::string& bytes);

// Variables, rows and nonzeros.
std::array<int, 3> Dims(IZEMMgr* mgr);

// The manager's parts.
inline ILPVariableList* Vars(IZEMMgr* m) { ILPVariableList* p = nullptr; m->GetVariableCollectionIntf(&p); return p; }
inline ILPEquationList* Eqns(IZEMMgr* m) { ILPEquationList* p = nullptr; m->GetEquationCollectionIntf(&p); return p; }
inline ILPMatrix* Matrix(IZEMMgr* m) { ILPMatrix* p = nullptr; m->GetMatrixIntf(&p); return p; }
inline INonLinearModel* NL(IZEMMgr* m) { INonLinearModel* p = nullptr; m->GetNonLinearModelIntf(&p); return p; }
inline ILPSpOrdSetList* Sets(IZEMMgr* m) { ILPSpOrdSetList* p = nullptr; m->GetSpOrdSetCollectionIntf(&p); return p; }
inline IZEMOptionTable* Options(IZEMMgr* m) { IZEMOptionTable* p = nullptr; m->GetOptionTableIntf(&p); return p; }

ILPVariable* Var(IZEMMgr* m, const char* name);
ILPEquation* Eqn(IZEMMgr* m, const char* name);
IZEMModelBuilder* Builder(IZEMMgr* m);
// The entry at (row, column) by names, or null.
ILPNonZero* Entry(IZEMMgr* m, const char* row, const char* col);

std::string ReadFile(const std::string& path);
// A path in the build tree for a scratch file.
std::string TempPath(const std::string& name);
inline bool Has(const std::string& text, const std::string& piece) {
    return text.find(piece) != std::string::npos;
}

// Name, reason and routine of the ZEM_Exception `f` throws; routine is
// "no exception" when it throws none.
struct Failure {
    std::string name, reason, routine;
};
template <typename F>
Failure FailureOf(F&& f) {
    try {
        f();
    } catch (ZEM_Exception& e) {
        return {e.Name(), e.Reason(), e.Routine()};
    }
    return {"", "", "no exception"};
}
