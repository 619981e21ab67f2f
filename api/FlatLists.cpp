// The flat functions of the variable and equation lists (counts, walks,
// packed names, lookups) and of the variables' and equations' fields.
#include "api/FlatSupport.h"
#include "api/zemxmps.h"
#include "lpdata/ILPEquation.h"
#include "lpdata/ILPEquationList.h"
#include "lpdata/ILPVariable.h"
#include "lpdata/ILPVariableList.h"

using flat::As;
using flat::StoreFound;

namespace {

ILPVariableList* Vars(void* h) { return As<ILPVariableList>(h); }
ILPEquationList* Eqns(void* h) { return As<ILPEquationList>(h); }

int32_t CountOrNothing(int n, int32_t* out) {
    if (n == 0) return 1;
    *out = n;
    return 0;
}

// Names one after another, each cut to 127 characters and NUL-terminated.
// The result 1 on success is the interface's long-standing behaviour.
template <typename List, typename Entity>
int32_t PackNames(List* list, Entity* (List::*first)(), Entity* (List::*next)(), char* buf) {
    for (Entity* e = (list->*first)(); e; e = (list->*next)()) buf += flat::CopyCut(buf, e->GetName());
    return 1;
}

template <typename List, typename Entity>
int32_t AllObjects(List* list, Entity* (List::*first)(), Entity* (List::*next)(), void** out) {
    for (Entity* e = (list->*first)(); e; e = (list->*next)()) *out++ = e;
    return 1;
}

}  // namespace

extern "C" {

int32_t NumberOfVariables(void* vars, int32_t* out) {
    return CountOrNothing(Vars(vars)->NumberOfVariables(), out);
}
int32_t NumberOfEquations(void* eqns, int32_t* out) {
    return CountOrNothing(Eqns(eqns)->NumberOfEquations(), out);
}
int32_t FrstVariableName(void* vars, char* buf) {
    return flat::WalkName(buf, Vars(vars)->FrstVariableObject());
}
int32_t NextVariableName(void* vars, char* buf) {
    return flat::WalkName(buf, Vars(vars)->NextVariableObject());
}
int32_t FrstEquationName(void* eqns, char* buf) {
    return flat::WalkName(buf, Eqns(eqns)->FrstEquationObject());
}
int32_t NextEquationName(void* eqns, char* buf) {
    return flat::WalkName(buf, Eqns(eqns)->NextEquationObject());
}
int32_t FrstVariableObject(void* vars, void** out) {
    return StoreFound(out, Vars(vars)->FrstVariableObject());
}
int32_t NextVariableObject(void* vars, void** out) {
    return StoreFound(out, Vars(vars)->NextVariableObject());
}
int32_t FrstEquationObject(void* eqns, void** out) {
    return StoreFound(out, Eqns(eqns)->FrstEquationObject());
}
int32_t NextEquationObject(void* eqns, void** out) {
    return StoreFound(out, Eqns(eqns)->NextEquationObject());
}
int32_t VariableNames(void* vars, char* buf) {
    return PackNames(Vars(vars), &ILPVariableList::FrstVariableObject,
                     &ILPVariableList::NextVariableObject, buf);
}
int32_t EquationNames(void* eqns, char* buf) {
    return PackNames(Eqns(eqns), &ILPEquationList::FrstEquationObject,
                     &ILPEquationList::NextEquationObject, buf);
}
int32_t RetrieveAllVariableObjects(void* vars, void** out) {
    return AllObjects(Vars(vars), &ILPVariableList::FrstVariableObject,
                      &ILPVariableList::NextVariableObject, out);
}
int32_t RetrieveAllEquationObjects(void* eqns, void** out) {
    return AllObjects(Eqns(eqns), &ILPEquationList::FrstEquationObject,
                      &ILPEquationList::NextEquationObject, out);
}
int32_t FindVariableObject(void* vars, const char* name, void** out) {
    *out = Vars(vars)->VarNameLookup(name);
    return 0;
}
int32_t FindEquationObject(void* eqns, const char* name, void** out) {
    *out = Eqns(eqns)->EqnNameLookup(name);
    return 0;
}

ZEM_FLAT_GET(VarIndexGet, ILPVariable, int32_t, GetIndex)
int32_t VarNameGet(void* var, char* buf) {
    flat::CopyWhole(buf, As<ILPVariable>(var)->GetName());
    return 0;
}
ZEM_FLAT_SET(VarNameSet, ILPVariable, const char*, SetName)
ZEM_FLAT_GET(VarLowerBndGet, ILPVariable, double, GetBoundLower)
ZEM_FLAT_SET(VarLowerBndSet, ILPVariable, double, SetBoundLower)
ZEM_FLAT_GET(VarUpperBndGet, ILPVariable, double, GetBoundUpper)
ZEM_FLAT_SET(VarUpperBndSet, ILPVariable, double, SetBoundUpper)
ZEM_FLAT_GET(VarTempLowerBndGet, ILPVariable, double, GetTempBoundLower)
ZEM_FLAT_SET(VarTempLowerBndSet, ILPVariable, double, SetTempBoundLower)
ZEM_FLAT_GET(VarValueGet, ILPVariable, double, GetVarValue)
ZEM_FLAT_SET(VarValueSet, ILPVariable, double, SetVarValue)
ZEM_FLAT_GET(VarTypeGet, ILPVariable, int16_t, GetVarType)
ZEM_FLAT_SET(VarTypeSet, ILPVariable, int16_t, SetVarType)
ZEM_FLAT_GET(VarStatusGet, ILPVariable, int16_t, GetVarStatus)
ZEM_FLAT_SET(VarStatusSet, ILPVariable, int16_t, SetVarStatus)
ZEM_FLAT_GET(VarNonlinGet, ILPVariable, int32_t, GetNonlinear)
ZEM_FLAT_SET(VarNonlinSet, ILPVariable, int32_t, SetNonlinear)

ZEM_FLAT_GET(EqnIndexGet, ILPEquation, int32_t, GetIndex)
int32_t EqnNameGet(void* eqn, char* buf) {
    flat::CopyWhole(buf, As<ILPEquation>(eqn)->GetName());
    return 0;
}
ZEM_FLAT_SET(EqnNameSet, ILPEquation, const char*, SetName)
ZEM_FLAT_GET(EqnRHSGet, ILPEquation, double, GetRHS)
ZEM_FLAT_SET(EqnRHSSet, ILPEquation, double, SetRHS)
ZEM_FLAT_GET(EqnRangeGet, ILPEquation, double, GetRange)
ZEM_FLAT_SET(EqnRangeSet, ILPEquation, double, SetRange)
ZEM_FLAT_GET(EqnScaleGet, ILPEquation, double, GetEqnScale)
ZEM_FLAT_SET(EqnScaleSet, ILPEquation, double, SetEqnScale)
ZEM_FLAT_GET(EqnTypeGet, ILPEquation, int16_t, GetType)
ZEM_FLAT_SET(EqnTypeSet, ILPEquation, int16_t, SetType)
ZEM_FLAT_GET(EqnNonlinGet, ILPEquation, int32_t, GetNonlinear)
int32_t EqnNonLinear(void* eqn, int32_t* out) {
    *out = As<ILPEquation>(eqn)->GetNonlinear() != 0 ? 1 : 0;
    return 0;
}

}  // extern "C"
