// The flat functions of the cases: case managers and their edits, case
// collections and the case file. Edits take entity handles; a collection
// takes ownership of each case added to it.
#include <fstream>
#include <new>

#include "api/FlatSupport.h"
#include "api/zemxmps.h"
#include "cases/ZEMCaseCollection.h"
#include "cases/ZEMCaseMgr.h"
#include "lpdata/ZEMException.h"
#include "zemmgr/ZEMModelFile.h"

using flat::As;

class ILPEquation;
class ILPNonZero;
class ILPVariable;
class INonLinearity;

namespace {

IZEMCaseMgr* Case(void* h) { return As<IZEMCaseMgr>(h); }
CZEMCaseCollection* Cases(void* h) { return As<CZEMCaseCollection>(h); }
ILPEquation* Eqn(void* h) { return As<ILPEquation>(h); }
ILPVariable* Var(void* h) { return As<ILPVariable>(h); }

// 1 when the case of that name is absent, else 0 after `op` ran on it.
int32_t ByName(void* collection, const char* name, int (CZEMCaseCollection::*op)(const char*)) {
    CZEMCaseCollection* c = Cases(collection);
    if (c->GetCaseByName(name) == nullptr) return 1;
    return (c->*op)(name);
}

}  // namespace

extern "C" {

int32_t CreateZEMCaseMgr(void* mgr, int32_t number, const char* name, const char* description,
                         void** out) {
    IZEMCaseMgr* c = new (std::nothrow) CZEMCaseMgr(number, name, description, As<IZEMMgr>(mgr));
    *out = c;
    return c ? 0 : 1;
}

int32_t DestroyZEMCaseMgr(void* caseMgr) {
    Case(caseMgr)->Destroy();
    return 0;
}

int32_t CreateZEMCaseCollection(void* mgr, void** out) {
    return flat::StoreFound(out, new (std::nothrow) CZEMCaseCollection(As<IZEMMgr>(mgr)));
}

int32_t DestroyZEMCaseCollection(void* collection) {
    Cases(collection)->Destroy();
    return 0;
}

int32_t AddZEMCaseToCollection(void* collection, void* caseMgr) {
    Cases(collection)->AddCaseMgr(Case(caseMgr));
    return 0;
}

int32_t AddEqnRHSEdit(void* caseMgr, void* eqn, double value) {
    Case(caseMgr)->AddEqnRHSEdit(Eqn(eqn), value);
    return 0;
}

int32_t AddEqnRangeEdit(void* caseMgr, void* eqn, double value) {
    Case(caseMgr)->AddEqnRangeEdit(Eqn(eqn), value);
    return 0;
}

int32_t AddEqnTypeEdit(void* caseMgr, void* eqn, int16_t type) {
    Case(caseMgr)->AddEqnTypeEdit(Eqn(eqn), type);
    return 0;
}

int32_t AddMatrixCoeffEdit(void* caseMgr, void* eqn, void* var, double value) {
    Case(caseMgr)->AddMatrixCoeffEdit(Eqn(eqn), Var(var), value);
    return 0;
}

int32_t AddMatrixCoeffEditNZ(void* caseMgr, void* nz, double value) {
    Case(caseMgr)->AddMatrixCoeffEdit(As<ILPNonZero>(nz), value);
    return 0;
}

int32_t AddMatrixNonLinearityCoeffEdit(void* caseMgr, void* term, double value) {
    Case(caseMgr)->AddMatrixNonLinearityCoeffEdit(As<INonLinearity>(term), value);
    return 0;
}

int32_t AddOptionTableEdit(void* caseMgr, const char* name, const char* value) {
    Case(caseMgr)->AddOptionTableEdit(name, value);
    return 0;
}

int32_t AddVarBoundEdit(void* caseMgr, void* var, int16_t selector, double value) {
    Case(caseMgr)->AddVarBoundEdit(Var(var), selector, value);
    return 0;
}

int32_t AddVarTypeEdit(void* caseMgr, void* var, int16_t type) {
    Case(caseMgr)->AddVarTypeEdit(Var(var), type);
    return 0;
}

int32_t AddVarValueEdit(void* caseMgr, void* var, double value) {
    Case(caseMgr)->AddVarValueEdit(Var(var), value);
    return 0;
}

int32_t AddInitialVectorEdits(void* caseMgr, const double* values) {
    Case(caseMgr)->AddInitialVectorEdits(values);
    return 0;
}

int32_t ApplyCase(void* collection, const char* name) {
    return ByName(collection, name, &CZEMCaseCollection::ApplyCase);
}

int32_t UnApplyCase(void* collection, const char* name) {
    return ByName(collection, name, &CZEMCaseCollection::UnApplyCase);
}

int32_t ApplyCaseNumber(void* collection, int32_t number) {
    return Cases(collection)->ApplyCaseNumber(number);
}

int32_t UnApplyCaseNumber(void* collection, int32_t number) {
    return Cases(collection)->UnApplyCaseNumber(number);
}

int32_t PersistCasesToXLMFile(void* collection, const char* path) {
    return Cases(collection)->PersistXLMAsFile(path);
}

int32_t RestoreCasesFromXLMFile(void* collection, const char* path) {
    return Cases(collection)->RestoreXLMFile(path);
}

int32_t DisplayCaseCollectionToFile(void* collection, const char* path) {
    // The display has no result of its own; a path that cannot be written
    // throws like the case file's writer.
    ZEMModelFile::WriteToPath(path, "CZEMCaseCollection::Display", zemsrc::kCases,
                              [collection](std::ofstream* out) { Cases(collection)->Display(*out); });
    return 0;
}

}  // extern "C"
