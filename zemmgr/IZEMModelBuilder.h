// Builds a model through its manager: variables, equations, linear entries,
// special ordered sets and nonlinear terms. Made by the manager on first
// GetModelBuilderIntf and owned by it.
//
//   IZEMModelBuilder* b = nullptr;
//   mgr->GetModelBuilderIntf(&b);
//   ILPVariable* x = nullptr;
//   ILPEquation* r = nullptr;
//   b->MakeAddReturnVariableNew("X", 0.0, 10.0, 1.0, 1, &x);
//   b->MakeAddReturnEquationNew("R", 3, 5.0, 0.0, &r);      // X <= 5
//   b->MakeAddLinearNonZeroNew(r, x, 1.0);
//   ILPVariable* args[] = {x, x};
//   double c[] = {2.0};
//   b->MakeNonLinearityFast(1, r, 2, args, 1, c, nullptr);  // + 2*X*X
//
// Plain forms forward to the lists' own make-and-add (a name already present
// returns the existing object). "New" forms make a fresh object, fill the
// given fields and add it; they do not look for an existing name. Every
// failure throws ZEM_Exception.
#pragma once

#include <cstdint>

class ILPEquation;
class ILPNonZero;
class ILPSpOrdSet;
class ILPVariable;
class INonLinearity;

class IZEMModelBuilder {
public:
    virtual ~IZEMModelBuilder() = default;

    virtual void MakeAddVariable(const char* name) = 0;
    virtual void MakeAddReturnVariable(const char* name, ILPVariable** out) = 0;
    virtual void MakeAddVariableNew(const char* name, double lower, double upper, double value,
                                    int16_t type) = 0;
    virtual void MakeAddReturnVariableNew(const char* name, double lower, double upper,
                                          double value, int16_t type, ILPVariable** out) = 0;

    virtual void MakeAddEquation(const char* name) = 0;
    virtual void MakeAddReturnEquation(const char* name, ILPEquation** out) = 0;
    virtual void MakeAddEquationNew(const char* name, int16_t type, double rhs, double range) = 0;
    virtual void MakeAddReturnEquationNew(const char* name, int16_t type, double rhs,
                                          double range, ILPEquation** out) = 0;

    // Plain entry forms work by names, like InsertMatrixEntry: an entry for
    // the same row and column is summed into the existing one.
    virtual void MakeAddLinearNonZero(const char* eqnName, const char* varName, double coef) = 0;
    virtual void MakeAddReturnLinearNonZero(const char* eqnName, const char* varName, double coef,
                                            ILPNonZero** out) = 0;
    virtual void MakeAddLinearNonZeroNew(ILPEquation* eqn, ILPVariable* var, double coef) = 0;
    virtual void MakeAddReturnLinearNonZeroNew(ILPEquation* eqn, ILPVariable* var, double coef,
                                               ILPNonZero** out) = 0;

    // An empty term of the given keyword or code for row `eqn`, not yet in
    // the pool: the caller adds variables and constants and then hands it to
    // AddNonLinearity. ByName refuses a keyword the factory does not know.
    virtual void MakeNonLinearityByName(const char* name, ILPEquation* eqn,
                                        INonLinearity** out) = 0;
    virtual void MakeNonLinearityByCode(int16_t code, ILPEquation* eqn, INonLinearity** out) = 0;
    // Puts a term made by the two operations above into the pool.
    virtual int AddNonLinearity(INonLinearity* term) = 0;

    // One maker per kind: makes the term, gives it its row, its variables
    // (in order, repeats allowed) and constants, and puts it into the pool.
    // `out` may be null. MakeNonLinearityFast takes any factory type code.
    virtual void MakeNonLinearityFast(int16_t code, ILPEquation* eqn, int nVars,
                                      ILPVariable** vars, int nConsts, const double* consts,
                                      INonLinearity** out) = 0;
    virtual void MakeNonLinearityLog(ILPEquation* eqn, int nVars, ILPVariable** vars,
                                     int nConsts, const double* consts, INonLinearity** out) = 0;
    virtual void MakeNonLinearityExp(ILPEquation* eqn, int nVars, ILPVariable** vars,
                                     int nConsts, const double* consts, INonLinearity** out) = 0;
    virtual void MakeNonLinearityPow(ILPEquation* eqn, int nVars, ILPVariable** vars,
                                     int nConsts, const double* consts, INonLinearity** out) = 0;
    virtual void MakeNonLinearityDivision(ILPEquation* eqn, int nVars, ILPVariable** vars,
                                          int nConsts, const double* consts,
                                          INonLinearity** out) = 0;
    virtual void MakeNonLinearityEVAPGDOT(ILPEquation* eqn, int nVars, ILPVariable** vars,
                                          int nConsts, const double* consts,
                                          INonLinearity** out) = 0;
    virtual void MakeNonLinearityXPow(ILPEquation* eqn, int nVars, ILPVariable** vars,
                                      int nConsts, const double* consts, INonLinearity** out) = 0;
    virtual void MakeNonLinearityEI(ILPEquation* eqn, int nVars, ILPVariable** vars, int nConsts,
                                    const double* consts, INonLinearity** out) = 0;
    virtual void MakeNonLinearityTPercent(ILPEquation* eqn, int nVars, ILPVariable** vars,
                                          int nConsts, const double* consts,
                                          INonLinearity** out) = 0;
    // The equation-type terms take their full identifier ("QCLEQ:...",
    // "USEREQ:...", "SCDEQ:..."); the user equation also takes its two texts.
    virtual void MakeNonLinearityFastQCL(const char* id, ILPEquation* eqn, int nVars,
                                         ILPVariable** vars, int nConsts, const double* consts,
                                         INonLinearity** out) = 0;
    virtual void MakeNonLinearityFastNLE(const char* id, const char* text1, const char* text2,
                                         ILPEquation* eqn, int nVars, ILPVariable** vars,
                                         int nConsts, const double* consts,
                                         INonLinearity** out) = 0;
    virtual void MakeNonLinearityFastSCD(const char* id, ILPEquation* eqn, int nVars,
                                         ILPVariable** vars, int nConsts, const double* consts,
                                         INonLinearity** out) = 0;
    virtual void MakeNonLinearityFLTQB(ILPEquation* eqn, int nVars, ILPVariable** vars,
                                       int nConsts, const double* consts,
                                       INonLinearity** out) = 0;

    // A new set of the given name and type with the given members, added to
    // the model's set list.
    virtual void MakeSpecialOrderedSet(const char* name, int16_t type, int nVars,
                                       ILPVariable** vars, ILPSpOrdSet** out) = 0;

    // A wrapper term ("WRAPEQ:..."), made and placed like the kinds above.
    virtual void MakeNonLinearityFastWRAP(const char* id, ILPEquation* eqn, int nVars,
                                          ILPVariable** vars, int nConsts, const double* consts,
                                          INonLinearity** out) = 0;

    // Edits of what was built. The eliminations go through the manager's
    // removal (a variable used by a nonlinear term is refused); the ByName
    // forms return false when the name is unknown.
    virtual void EliminateVariable(ILPVariable* var) = 0;
    virtual bool EliminateVariableByName(const char* name) = 0;
    virtual void EliminateEquation(ILPEquation* eqn) = 0;
    virtual bool EliminateEquationByName(const char* name) = 0;
    // Soft bounds: the relaxed bounds a penalised pass may move to.
    virtual void AddSoftBounds(ILPVariable* var, double relaxedLower, double relaxedUpper) = 0;
    // Set members; both return the set's size, ByName -1 for an unknown
    // variable.
    virtual int AddSpecialOrderedSetVariable(ILPSpOrdSet* set, ILPVariable* var) = 0;
    virtual int AddSpecialOrderedSetVariableByName(ILPSpOrdSet* set, const char* varName) = 0;
    virtual void FindSpecialOrderedSet(const char* name, ILPSpOrdSet** out) = 0;
    // Arguments of a term that is not yet in the pool (see
    // MakeNonLinearityByName); each returns the new count, ByName -1 for an
    // unknown variable.
    virtual int AddNonLinearityValue(INonLinearity* term, double value) = 0;
    virtual int AddNonLinearityVariable(INonLinearity* term, ILPVariable* var) = 0;
    virtual int AddNonLinearityVariableByName(INonLinearity* term, const char* varName) = 0;
    virtual void TrashNonLinearity(INonLinearity* term) = 0;
    virtual void EmptyNonLinearityTrash() = 0;
};
