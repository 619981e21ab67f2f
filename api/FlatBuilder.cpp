// The flat functions of the model builder: variables, equations, entries,
// eliminations, special ordered sets and nonlinear terms.
#include "api/FlatSupport.h"
#include "api/zemxmps.h"
#include "lpdata/ILPEquation.h"
#include "lpdata/ILPVariable.h"
#include "lpdata/ZEMTypes.h"
#include "nlpdata/INonLinearModel.h"
#include "nlpdata/INonLinearity.h"
#include "nlpdata/NLTypeCodes.h"
#include "zemmgr/IZEMModelBuilder.h"

using flat::As;
using flat::AsArray;
using flat::StoreFound;

namespace {

IZEMModelBuilder* B(void* h) { return As<IZEMModelBuilder>(h); }
ILPEquation* Eqn(void* h) { return As<ILPEquation>(h); }
ILPVariable* Var(void* h) { return As<ILPVariable>(h); }
INonLinearity* Term(void* h) { return As<INonLinearity>(h); }

// Stores a made object through an out-parameter the caller may leave null.
template <typename T>
int32_t Made(void** out, T* p) {
    if (out) *out = p;
    return 0;
}

// The makers of one term kind share one argument list.
using TermMaker = void (IZEMModelBuilder::*)(ILPEquation*, int, ILPVariable**, int, const double*,
                                             INonLinearity**);

int32_t MakeTerm(void* builder, TermMaker make, void* eqn, int32_t nVars, void** vars,
                 int32_t nConsts, const double* consts, void** out) {
    INonLinearity* t = nullptr;
    (B(builder)->*make)(Eqn(eqn), nVars, AsArray<ILPVariable>(vars), nConsts, consts, &t);
    return Made(out, t);
}

using IdTermMaker = void (IZEMModelBuilder::*)(const char*, ILPEquation*, int, ILPVariable**, int,
                                               const double*, INonLinearity**);

int32_t MakeIdTerm(void* builder, IdTermMaker make, const char* id, void* eqn, int32_t nVars,
                   void** vars, int32_t nConsts, const double* consts, void** out) {
    INonLinearity* t = nullptr;
    (B(builder)->*make)(id, Eqn(eqn), nVars, AsArray<ILPVariable>(vars), nConsts, consts, &t);
    return Made(out, t);
}

}  // namespace

#define ZEM_FLAT_TERM(fn, method)                                                             \
    int32_t fn(void* builder, void* eqn, int32_t nVars, void** vars, int32_t nConsts,          \
               const double* consts, void** out) {                                            \
        return MakeTerm(builder, &IZEMModelBuilder::method, eqn, nVars, vars, nConsts, consts, \
                        out);                                                                 \
    }
#define ZEM_FLAT_ID_TERM(fn, method)                                                           \
    int32_t fn(void* builder, const char* id, void* eqn, int32_t nVars, void** vars,            \
               int32_t nConsts, const double* consts, void** out) {                            \
        return MakeIdTerm(builder, &IZEMModelBuilder::method, id, eqn, nVars, vars, nConsts,    \
                          consts, out);                                                        \
    }

extern "C" {

int32_t MakeAddVariable(void* builder, const char* name) {
    B(builder)->MakeAddVariable(name);
    return 0;
}
int32_t MakeAddVariableNew(void* builder, const char* name, double lower, double upper,
                           double value, int16_t type) {
    B(builder)->MakeAddVariableNew(name, lower, upper, value, type);
    return 0;
}
int32_t MakeAddVarNew(void* builder, const char* name, double lower, double upper, double value) {
    return MakeAddVariableNew(builder, name, lower, upper, value, ZEM_VAR_CONTINUOUS);
}
int32_t MakeAddVarTypeNew(void* builder, const char* name, double lower, double upper,
                          double value, int16_t type) {
    return MakeAddVariableNew(builder, name, lower, upper, value, type);
}
int32_t MakeAddReturnVariable(void* builder, const char* name, void** out) {
    ILPVariable* v = nullptr;
    B(builder)->MakeAddReturnVariable(name, &v);
    return Made(out, v);
}
int32_t MakeAddReturnVariableNew(void* builder, const char* name, double lower, double upper,
                                 double value, int16_t type, void** out) {
    ILPVariable* v = nullptr;
    B(builder)->MakeAddReturnVariableNew(name, lower, upper, value, type, &v);
    return Made(out, v);
}
int32_t MakeAddEquation(void* builder, const char* name) {
    B(builder)->MakeAddEquation(name);
    return 0;
}
int32_t MakeAddEquationNew(void* builder, const char* name, int16_t type, double rhs,
                           double range) {
    B(builder)->MakeAddEquationNew(name, type, rhs, range);
    return 0;
}
int32_t MakeAddEqn(void* builder, const char* name) { return MakeAddEquation(builder, name); }
int32_t MakeAddEqnNew(void* builder, const char* name, int16_t type, double rhs, double range) {
    return MakeAddEquationNew(builder, name, type, rhs, range);
}
int32_t MakeAddReturnEquation(void* builder, const char* name, void** out) {
    ILPEquation* e = nullptr;
    B(builder)->MakeAddReturnEquation(name, &e);
    return Made(out, e);
}
int32_t MakeAddReturnEquationNew(void* builder, const char* name, int16_t type, double rhs,
                                 double range, void** out) {
    ILPEquation* e = nullptr;
    B(builder)->MakeAddReturnEquationNew(name, type, rhs, range, &e);
    return Made(out, e);
}
int32_t MakeAddLinearNonZero(void* builder, const char* eqnName, const char* varName,
                             double coefficient) {
    B(builder)->MakeAddLinearNonZero(eqnName, varName, coefficient);
    return 0;
}
int32_t MakeAddReturnLinearNonZero(void* builder, const char* eqnName, const char* varName,
                                   double coefficient, void** out) {
    ILPNonZero* nz = nullptr;
    B(builder)->MakeAddReturnLinearNonZero(eqnName, varName, coefficient, &nz);
    return Made(out, nz);
}
int32_t MakeAddReturnLinearNonZeroNew(void* builder, void* eqn, void* var, double coefficient,
                                      void** out) {
    ILPNonZero* nz = nullptr;
    B(builder)->MakeAddReturnLinearNonZeroNew(Eqn(eqn), Var(var), coefficient, &nz);
    return Made(out, nz);
}
int32_t AddSoftBounds(void* builder, void* var, double relaxedLower, double relaxedUpper) {
    B(builder)->AddSoftBounds(Var(var), relaxedLower, relaxedUpper);
    return 0;
}
int32_t EliminateVariable(void* builder, void* var) {
    B(builder)->EliminateVariable(Var(var));
    return 0;
}
int32_t EliminateVariableByName(void* builder, const char* name) {
    return B(builder)->EliminateVariableByName(name) ? 0 : 1;
}
int32_t EliminateEquation(void* builder, void* eqn) {
    B(builder)->EliminateEquation(Eqn(eqn));
    return 0;
}
int32_t EliminateEquationByName(void* builder, const char* name) {
    return B(builder)->EliminateEquationByName(name) ? 0 : 1;
}

int32_t MakeSpecialOrderedSet(void* builder, const char* name, int16_t type, int32_t nVars,
                              void** vars, void** out) {
    ILPSpOrdSet* s = nullptr;
    B(builder)->MakeSpecialOrderedSet(name, type, nVars, AsArray<ILPVariable>(vars), &s);
    return Made(out, s);
}
int32_t AddSpecialOrderedSet(void* builder, const char* name, int16_t type, void** out) {
    return MakeSpecialOrderedSet(builder, name, type, 0, nullptr, out);
}
int32_t AddSpecialOrderedSetVariable(void* builder, void* set, void* var) {
    B(builder)->AddSpecialOrderedSetVariable(As<ILPSpOrdSet>(set), Var(var));
    return 0;
}
int32_t AddSpecialOrderedSetVariableByName(void* builder, void* set, const char* varName) {
    return B(builder)->AddSpecialOrderedSetVariableByName(As<ILPSpOrdSet>(set), varName) < 0 ? 1 : 0;
}
int32_t FindSpecialOrderedSet(void* builder, const char* name, void** out) {
    ILPSpOrdSet* s = nullptr;
    B(builder)->FindSpecialOrderedSet(name, &s);
    return StoreFound(out, s);
}

int32_t MakeNonLinearityByCode(void* builder, int16_t code, void* eqn, void** out) {
    INonLinearity* t = nullptr;
    B(builder)->MakeNonLinearityByCode(code, Eqn(eqn), &t);
    return StoreFound(out, t);
}
int32_t MakeNonLinearityByName(void* builder, const char* keyword, void* eqn, void** out) {
    INonLinearity* t = nullptr;
    B(builder)->MakeNonLinearityByName(keyword, Eqn(eqn), &t);
    return StoreFound(out, t);
}
int32_t FindNonLinearityCode(void* nlmodel, const char* keyword, int16_t* out) {
    int16_t code = kNLUnknown;
    As<INonLinearModel>(nlmodel)->NonlinearityTypeNameToTypeID(keyword, &code);
    if (code == kNLUnknown) return 1;
    *out = code;
    return 0;
}
ZEM_FLAT_TERM(MakeNonLinearityDivision, MakeNonLinearityDivision)
ZEM_FLAT_TERM(MakeNonLinearityEI, MakeNonLinearityEI)
ZEM_FLAT_TERM(MakeNonLinearityEvapGDOT, MakeNonLinearityEVAPGDOT)
ZEM_FLAT_TERM(MakeNonLinearityExp, MakeNonLinearityExp)
ZEM_FLAT_TERM(MakeNonLinearityFLTQB, MakeNonLinearityFLTQB)
ZEM_FLAT_TERM(MakeNonLinearityLog, MakeNonLinearityLog)
ZEM_FLAT_TERM(MakeNonLinearityPow, MakeNonLinearityPow)
ZEM_FLAT_TERM(MakeNonLinearityTPercent, MakeNonLinearityTPercent)
ZEM_FLAT_TERM(MakeNonLinearityXPow, MakeNonLinearityXPow)
ZEM_FLAT_ID_TERM(MakeNonLinearityFastQCL, MakeNonLinearityFastQCL)
ZEM_FLAT_ID_TERM(MakeNonLinearityFastSCD, MakeNonLinearityFastSCD)
ZEM_FLAT_ID_TERM(MakeNonLinearityFastWRAP, MakeNonLinearityFastWRAP)
int32_t MakeNonLinearityFast(void* builder, int16_t code, void* eqn, int32_t nVars, void** vars,
                             int32_t nConsts, const double* consts, void** out) {
    INonLinearity* t = nullptr;
    B(builder)->MakeNonLinearityFast(code, Eqn(eqn), nVars, AsArray<ILPVariable>(vars), nConsts,
                                     consts, &t);
    return Made(out, t);
}
int32_t MakeNonLinearityFastNLE(void* builder, const char* id, const char* text1,
                                const char* text2, void* eqn, int32_t nVars, void** vars,
                                int32_t nConsts, const double* consts, void** out) {
    INonLinearity* t = nullptr;
    B(builder)->MakeNonLinearityFastNLE(id, text1, text2, Eqn(eqn), nVars,
                                        AsArray<ILPVariable>(vars), nConsts, consts, &t);
    return Made(out, t);
}
int32_t AddNonLinearity(void* builder, void* term) {
    B(builder)->AddNonLinearity(Term(term));
    return 0;
}
int32_t AddNonLinearityValue(void* builder, void* term, double value) {
    B(builder)->AddNonLinearityValue(Term(term), value);
    return 0;
}
int32_t AddNonLinearityVariable(void* builder, void* term, void* var) {
    B(builder)->AddNonLinearityVariable(Term(term), Var(var));
    return 0;
}
int32_t AddNonLinearityVariableByName(void* builder, void* term, const char* varName) {
    return B(builder)->AddNonLinearityVariableByName(Term(term), varName) < 0 ? 1 : 0;
}
int32_t TrashNonLinearity(void* builder, void* term) {
    B(builder)->TrashNonLinearity(Term(term));
    return 0;
}
int32_t EmptyNonLinearityTrash(void* builder) {
    B(builder)->EmptyNonLinearityTrash();
    return 0;
}
int32_t GetFirstNLVariable(void* term, void** out) { return StoreFound(out, Term(term)->FrstVar()); }
int32_t GetNextNLVariable(void* term, void** out) { return StoreFound(out, Term(term)->NextVar()); }
int32_t GetFirstNLConstant(void* term, double* out) {
    INLConstant* c = Term(term)->FrstNLConst();
    if (!c) return 1;
    *out = c->GetValue();
    return 0;
}
int32_t GetFirstBiLinearVarEqn(void* nlmodel, int32_t varIndex, int32_t eqnIndex, void** out) {
    return StoreFound(out, As<INonLinearModel>(nlmodel)->GetFirstBiLinearVarEqn(varIndex, eqnIndex));
}

}  // extern "C"
