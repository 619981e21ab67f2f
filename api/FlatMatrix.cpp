// The flat functions of the matrix: row and column walks, the walk over a
// row's terms, one entry's fields, and removal of entries.
#include "api/FlatSupport.h"
#include "api/zemxmps.h"
#include "lpdata/ILPEquation.h"
#include "lpdata/ILPEquationList.h"
#include "lpdata/ILPMatrix.h"
#include "lpdata/ILPNonZero.h"
#include "lpdata/ILPVariable.h"
#include "lpdata/ILPVariableList.h"
#include "nlpdata/INonLinearModel.h"
#include "zemmgr/IZEMMgr.h"
#include "zemmgr/ZEMModelParts.h"

using flat::As;
using flat::StoreFound;

namespace {

ILPMatrix* Matrix(void* h) { return As<ILPMatrix>(h); }
ILPNonZero* NonZero(void* h) { return As<ILPNonZero>(h); }

// Removes or trashes the entry at the named row and column of the model;
// 1 when the row, the column or the entry does not exist.
int32_t DropByNames(void* mgr, const char* eqnName, const char* varName,
                    void (ILPMatrix::*drop)(ILPNonZero*)) {
    const ZEMModelParts m(As<IZEMMgr>(mgr));
    ILPEquation* e = m.eqns->EqnNameLookup(eqnName);
    ILPVariable* v = m.vars->VarNameLookup(varName);
    ILPNonZero* nz = e && v ? m.matrix->ExistIncidence(e->GetIndex(), v->GetIndex()) : nullptr;
    if (!nz) return 1;
    (m.matrix->*drop)(nz);
    return 0;
}

}  // namespace

extern "C" {

int32_t RowFrstNonZeroObject(void* matrix, void* eqn, void** out) {
    return StoreFound(out, Matrix(matrix)->RowFrstNonZeroObject(As<ILPEquation>(eqn)->GetIndex()));
}
int32_t RowNextNonZeroObject(void* matrix, void** out) {
    return StoreFound(out, Matrix(matrix)->RowNextNonZeroObject());
}
int32_t ColFrstNonZeroObject(void* matrix, void* var, void** out) {
    return StoreFound(out, Matrix(matrix)->ColFrstNonZeroObject(As<ILPVariable>(var)->GetIndex()));
}
int32_t ColNextNonZeroObject(void* matrix, void** out) {
    return StoreFound(out, Matrix(matrix)->ColNextNonZeroObject());
}
int32_t RowFrstNonLinearityObject(void* nlmodel, void* eqn, void** out) {
    return StoreFound(out, As<INonLinearModel>(nlmodel)->RowFrstNonLinearityObject(
                               As<ILPEquation>(eqn)->GetIndex()));
}
int32_t RowNextNonLinearityObject(void* nlmodel, void** out) {
    return StoreFound(out, As<INonLinearModel>(nlmodel)->RowNextNonLinearityObject());
}
int32_t FindNonZeroObject(void* matrix, void* eqn, void* var, void** out) {
    return StoreFound(out, Matrix(matrix)->ExistIncidence(As<ILPEquation>(eqn)->GetIndex(),
                                                          As<ILPVariable>(var)->GetIndex()));
}
int32_t GetNZVarEqnObjects(void* nz, void** var, void** eqn) {
    *var = NonZero(nz)->GetVariablePtr();
    *eqn = NonZero(nz)->GetEquationPtr();
    return 0;
}
ZEM_FLAT_GET(GetCoefficient, ILPNonZero, double, GetCoefficient)
ZEM_FLAT_SET(SetLinearNonZeroEntry, ILPNonZero, double, SetCoefficient)

int32_t RemoveNonZero(void* matrix, void* nz) {
    Matrix(matrix)->RemoveNonZero(NonZero(nz));
    return 0;
}
int32_t RemoveNonZeroByNames(void* mgr, const char* eqnName, const char* varName) {
    return DropByNames(mgr, eqnName, varName, &ILPMatrix::RemoveNonZero);
}
int32_t TrashNonZero(void* matrix, void* nz) {
    Matrix(matrix)->TrashNonZero(NonZero(nz));
    return 0;
}
int32_t TrashNonZeroByNames(void* mgr, const char* eqnName, const char* varName) {
    return DropByNames(mgr, eqnName, varName, &ILPMatrix::TrashNonZero);
}
int32_t EmptyNonZeroTrash(void* matrix) {
    Matrix(matrix)->EmptyNonZeroTrash();
    return 0;
}

}  // extern "C"
