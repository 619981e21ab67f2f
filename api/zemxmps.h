/* zemxmps.h - the flat interface of libzemxmps: plain exported functions with
 * C linkage over opaque object handles, for callers that cannot use the C++
 * class interfaces (C programs, Python through ctypes, other languages).
 *
 *   void* mgr = NULL; void* b = NULL; void* x = NULL; void* r = NULL;
 *   CreateZEMObject(&mgr);                      // one reference held
 *   GetZEMBuilder(mgr, &b);
 *   MakeAddReturnVariableNew(b, "X", 0.0, 10.0, 1.0, 1, &x);
 *   MakeAddReturnEquationNew(b, "R", 3, 5.0, 0.0, &r);
 *   MakeAddReturnLinearNonZeroNew(b, r, x, 1.0, NULL);
 *   WriteZEMFile(mgr, "plan.zem");
 *   ReleaseZEMObject(mgr);                      // the model is deleted
 *
 * Handles. Every object argument is the object's C++ interface pointer,
 * passed as void*. There is no handle table and no check: a null handle or
 * a handle of the wrong kind is undefined behaviour. Each family below says
 * which handle its functions take. Entity handles (variables, equations,
 * nonzeros, terms, sets, collections) stay owned by the model and must not
 * be used after the model is released or the entity removed.
 *
 * Results. Every function returns an int32_t status: 0 success; 1 "nothing"
 * (nothing made, nothing found, the list is empty or its end is reached), in
 * which case an out-parameter is left unchanged, or for a name buffer set to
 * "". Functions with other results say so.
 *
 * Strings. Strings in are NUL-terminated and copied by the library. Strings
 * out go to a buffer the caller supplies, with no length passed: the direct
 * getters (VarNameGet, EqnNameGet, GetCollectionName, GetQCLCorrelationDesc,
 * the correlation's Id getters, the manifest getters)
 * copy the whole text, so the buffer must hold the longest name; the walks
 * (Frst/NextVariableName, Frst/NextEquationName) and the packed lists
 * (VariableNames, EquationNames) cut a name of 128 or more characters to its
 * first 127, so 128 bytes per name suffice for them.
 *
 * EXCEPTIONS PASS THROUGH. No function catches anything: a failure inside
 * the library is thrown as a C++ exception (ZEM_Exception) out of the flat
 * function. A C caller, or Python through ctypes, cannot catch it and the
 * process ends. Such callers must not pass input that makes the library
 * throw (unreadable or malformed model files, unknown term keywords, bad
 * arguments to the builder), or must call through C++ and catch
 * ZEM_Exception by reference.
 */
#ifndef ZEMXMPS_FLAT_H
#define ZEMXMPS_FLAT_H

#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

/* Status of the functions that need the external block host (see the
 * nonlinear-block family). */
#define ZEM_FLAT_NO_BLOCK_HOST 3

/* ---- Model object. Handle: none for CreateZEMObject, else the model
 * manager. CreateZEMObject makes a manager holding one reference (1 and
 * *out unchanged when it cannot be made); ReleaseZEMObject drops that
 * reference and the model is deleted when none is left. The Get...Intf
 * functions and GetZEMBuilder store the component (the builder is made on
 * first request) and return 0, or 1 with *out unchanged when it is absent.
 * UpdateEflo returns the manager's result (1 when a name is unknown). */
int32_t CreateZEMObject(void** out);
int32_t ReleaseZEMObject(void* mgr);
int32_t GetZEMBuilder(void* mgr, void** out);
int32_t SetZEMModelName(void* mgr, const char* title);
int32_t IsHybridModel(void* mgr, int32_t* out);
int32_t SetHybridModel(void* mgr, int32_t hybrid);
int32_t ProcessFullCollection(void* mgr);
int32_t ReIndexConnectionEqn(void* mgr);
int32_t LinearizeGeneralNonlinear(void* mgr);
int32_t EvaluateInitial(void* mgr, const char* eqnName, const char* varName, double* out);
int32_t UpdateEflo(void* mgr, const char* eqnName, const char* varName);
/* Copies the screened form of `name` into `out` (whole). */
int32_t NameScreen(void* mgr, const char* name, char* out);
/* `control` is the closed distillation model's control object. */
int32_t SetSCDControl(void* mgr, void* control, const char* name);
/* Puts (key, value) into the option table with an empty second value. */
int32_t PutOptionTable(void* mgr, const char* key, const char* value);
int32_t GetVariableCollectionIntf(void* mgr, void** out);
int32_t GetEquationCollectionIntf(void* mgr, void** out);
int32_t GetMatrixIntf(void* mgr, void** out);
int32_t GetNonLinearModelIntf(void* mgr, void** out);

/* ---- Model files. Handle: the model manager (CopyFromZEM and AppendFromZEM
 * take two). RestoreFromZEMFile returns 0 whatever happened: a file that
 * cannot be opened leaves the model as it was and is not reported.
 * CopyFromZEM saves `src` into memory and restores it into `dst`.
 * RestoreFromMPSStream takes a std::stringstream* (C++ callers only).
 * WritePenaltyFile returns the manager's result. CheckDuplicateNames joins
 * `dir` and `file`, with a '/' between them unless `dir` is empty or ends
 * in '/' or '\' (the joined path must be shorter than 1,024 bytes, else
 * ZEM_Exception), writes the report of names that collide once screened to
 * that file and returns the number of colliding groups (0 when none).
 * CompareZEMtoBasis reads the basis model from the extended MPS file named
 * `path` followed by "xmps.mps", compares the model (p1) with it (p2) within
 * `tolerance`, writes one line per difference to `reportPath`, stores the
 * number of differences in *differences (when not null) and returns 0; -1
 * when the basis model cannot be made, -2 when the file cannot be opened. */
int32_t RestoreFromZEMFile(void* mgr, const char* path);
int32_t WriteZEMFile(void* mgr, const char* path);
int32_t AppendFromZEM(void* mgr, void* other, const char* prefix, const char* suffix);
int32_t AppendFromZEMFile(void* mgr, const char* path);
int32_t CopyFromZEM(void* dst, void* src);
int32_t CreateZEMStream(void* mgr);
int32_t WriteZEMSummary(void* mgr, const char* path);
int32_t WritePenaltyFile(void* mgr, const char* path);
int32_t RestoreFromMPSFile(void* mgr, const char* path);
int32_t RestoreFromMPSStream(void* mgr, void* stream);
int32_t WriteXMPSFile(void* mgr, const char* path);
int32_t CompareZEMtoBasis(void* mgr, const char* path, const char* reportPath, double tolerance,
                          int32_t* differences);
int32_t CheckDuplicateNames(void* mgr, const char* dir, const char* file);

/* ---- Counts and walks. Handle: the variable list or the equation list
 * (GetVariableCollectionIntf, GetEquationCollectionIntf). NumberOf... on an
 * empty list returns 1 and leaves *out unchanged. Frst/Next...Name store ""
 * and return 1 at the end; the ...Object forms leave *out unchanged there.
 * VariableNames/EquationNames pack every name with its NUL into `buf` and
 * RetrieveAll...Objects store every handle into `out` (room for the whole
 * list); these four return 1 in every case. Find...Object stores the
 * handle, or NULL when the name is absent, and returns 0. */
int32_t NumberOfVariables(void* vars, int32_t* out);
int32_t NumberOfEquations(void* eqns, int32_t* out);
int32_t FrstVariableName(void* vars, char* buf);
int32_t NextVariableName(void* vars, char* buf);
int32_t FrstEquationName(void* eqns, char* buf);
int32_t NextEquationName(void* eqns, char* buf);
int32_t FrstVariableObject(void* vars, void** out);
int32_t NextVariableObject(void* vars, void** out);
int32_t FrstEquationObject(void* eqns, void** out);
int32_t NextEquationObject(void* eqns, void** out);
int32_t VariableNames(void* vars, char* buf);
int32_t EquationNames(void* eqns, char* buf);
int32_t RetrieveAllVariableObjects(void* vars, void** out);
int32_t RetrieveAllEquationObjects(void* eqns, void** out);
int32_t FindVariableObject(void* vars, const char* name, void** out);
int32_t FindEquationObject(void* eqns, const char* name, void** out);

/* ---- Variable fields. Handle: a variable. Types: 1 continuous, 2 binary,
 * 3 discrete, 4 semi-continuous. Statuses: 1 nonbasic, 2 basic, 3 fixed,
 * 4 at upper bound, 5 at lower bound. VarNonlin is the number of terms that
 * use the variable. All return 0. */
int32_t VarIndexGet(void* var, int32_t* out);
int32_t VarNameGet(void* var, char* buf);
int32_t VarNameSet(void* var, const char* name);
int32_t VarLowerBndGet(void* var, double* out);
int32_t VarLowerBndSet(void* var, double value);
int32_t VarUpperBndGet(void* var, double* out);
int32_t VarUpperBndSet(void* var, double value);
int32_t VarTempLowerBndGet(void* var, double* out);
int32_t VarTempLowerBndSet(void* var, double value);
int32_t VarValueGet(void* var, double* out);
int32_t VarValueSet(void* var, double value);
int32_t VarTypeGet(void* var, int16_t* out);
int32_t VarTypeSet(void* var, int16_t type);
int32_t VarStatusGet(void* var, int16_t* out);
int32_t VarStatusSet(void* var, int16_t status);
int32_t VarNonlinGet(void* var, int32_t* out);
int32_t VarNonlinSet(void* var, int32_t count);

/* ---- Equation fields. Handle: an equation. Types: 1 objective, 2 equal,
 * 3 less-or-equal, 4 greater-or-equal, 5 free. EqnNonlinGet gives the number
 * of terms in the row, EqnNonLinear 1 when the row has any, else 0. All
 * return 0. */
int32_t EqnIndexGet(void* eqn, int32_t* out);
int32_t EqnNameGet(void* eqn, char* buf);
int32_t EqnNameSet(void* eqn, const char* name);
int32_t EqnRHSGet(void* eqn, double* out);
int32_t EqnRHSSet(void* eqn, double value);
int32_t EqnRangeGet(void* eqn, double* out);
int32_t EqnRangeSet(void* eqn, double value);
int32_t EqnScaleGet(void* eqn, double* out);
int32_t EqnScaleSet(void* eqn, double value);
int32_t EqnTypeGet(void* eqn, int16_t* out);
int32_t EqnTypeSet(void* eqn, int16_t type);
int32_t EqnNonlinGet(void* eqn, int32_t* out);
int32_t EqnNonLinear(void* eqn, int32_t* out);

/* ---- Matrix. Handles: the matrix (GetMatrixIntf) with an equation or a
 * variable for the row and column walks; the nonlinear model
 * (GetNonLinearModelIntf) with an equation for the walk over a row's terms;
 * a nonzero for its fields; the model manager for the ...ByNames forms.
 * Walks and FindNonZeroObject return 1 with *out unchanged when there is
 * nothing; the ...ByNames forms return 1 when the row, the column or the
 * entry does not exist. */
int32_t RowFrstNonZeroObject(void* matrix, void* eqn, void** out);
int32_t RowNextNonZeroObject(void* matrix, void** out);
int32_t ColFrstNonZeroObject(void* matrix, void* var, void** out);
int32_t ColNextNonZeroObject(void* matrix, void** out);
int32_t RowFrstNonLinearityObject(void* nlmodel, void* eqn, void** out);
int32_t RowNextNonLinearityObject(void* nlmodel, void** out);
int32_t FindNonZeroObject(void* matrix, void* eqn, void* var, void** out);
int32_t GetNZVarEqnObjects(void* nz, void** var, void** eqn);
int32_t GetCoefficient(void* nz, double* out);
int32_t SetLinearNonZeroEntry(void* nz, double coefficient);
int32_t RemoveNonZero(void* matrix, void* nz);
int32_t RemoveNonZeroByNames(void* mgr, const char* eqnName, const char* varName);
int32_t TrashNonZero(void* matrix, void* nz);
int32_t TrashNonZeroByNames(void* mgr, const char* eqnName, const char* varName);
int32_t EmptyNonZeroTrash(void* matrix);

/* ---- Building. Handle: the model builder (GetZEMBuilder). Plain forms
 * return the existing object when the name is already in use; "New" forms
 * always make a fresh one. MakeAddVarNew makes a continuous variable;
 * MakeAddEqn and MakeAddEqnNew are the short names of MakeAddEquation and
 * MakeAddEquationNew. Entry forms by name sum into an existing entry.
 * Eliminate...ByName return 1 when the name is unknown. `out` of the
 * MakeAddReturn... forms may be NULL. */
int32_t MakeAddVariable(void* builder, const char* name);
int32_t MakeAddVariableNew(void* builder, const char* name, double lower, double upper,
                           double value, int16_t type);
int32_t MakeAddVarNew(void* builder, const char* name, double lower, double upper, double value);
int32_t MakeAddVarTypeNew(void* builder, const char* name, double lower, double upper,
                          double value, int16_t type);
int32_t MakeAddReturnVariable(void* builder, const char* name, void** out);
int32_t MakeAddReturnVariableNew(void* builder, const char* name, double lower, double upper,
                                 double value, int16_t type, void** out);
int32_t MakeAddEquation(void* builder, const char* name);
int32_t MakeAddEquationNew(void* builder, const char* name, int16_t type, double rhs,
                           double range);
int32_t MakeAddEqn(void* builder, const char* name);
int32_t MakeAddEqnNew(void* builder, const char* name, int16_t type, double rhs, double range);
int32_t MakeAddReturnEquation(void* builder, const char* name, void** out);
int32_t MakeAddReturnEquationNew(void* builder, const char* name, int16_t type, double rhs,
                                 double range, void** out);
int32_t MakeAddLinearNonZero(void* builder, const char* eqnName, const char* varName,
                             double coefficient);
int32_t MakeAddReturnLinearNonZero(void* builder, const char* eqnName, const char* varName,
                                   double coefficient, void** out);
int32_t MakeAddReturnLinearNonZeroNew(void* builder, void* eqn, void* var, double coefficient,
                                      void** out);
int32_t AddSoftBounds(void* builder, void* var, double relaxedLower, double relaxedUpper);
int32_t EliminateVariable(void* builder, void* var);
int32_t EliminateVariableByName(void* builder, const char* name);
int32_t EliminateEquation(void* builder, void* eqn);
int32_t EliminateEquationByName(void* builder, const char* name);

/* ---- Special ordered sets. Handle: the model builder, with a set handle
 * for the member functions. MakeSpecialOrderedSet makes a set with
 * `nVars` members; AddSpecialOrderedSet makes an empty one. The ...ByName
 * member form returns 1 for an unknown variable; FindSpecialOrderedSet
 * returns 1 with *out unchanged when there is no such set. */
int32_t MakeSpecialOrderedSet(void* builder, const char* name, int16_t type, int32_t nVars,
                              void** vars, void** out);
int32_t AddSpecialOrderedSet(void* builder, const char* name, int16_t type, void** out);
int32_t AddSpecialOrderedSetVariable(void* builder, void* set, void* var);
int32_t AddSpecialOrderedSetVariableByName(void* builder, void* set, const char* varName);
int32_t FindSpecialOrderedSet(void* builder, const char* name, void** out);

/* ---- Nonlinear terms. Handle: the model builder for making and adding
 * terms; the nonlinear model for FindNonLinearityCode and
 * GetFirstBiLinearVarEqn; a term for its variable and constant walks.
 * The makers take the row, `nVars` variable handles (in order, repeats
 * allowed) and `nConsts` constants, put the term into the model and store
 * it in *out (which may be NULL). MakeNonLinearityByCode/ByName make an
 * empty term, not yet in the model, to be filled with AddNonLinearityValue
 * and AddNonLinearityVariable... and handed to AddNonLinearity; they return
 * 1 when nothing was made. FindNonLinearityCode returns 1 for an unknown
 * keyword; the walks return 1 with *out unchanged at the end;
 * AddNonLinearityVariableByName returns 1 for an unknown variable. */
int32_t MakeNonLinearityByCode(void* builder, int16_t code, void* eqn, void** out);
int32_t MakeNonLinearityByName(void* builder, const char* keyword, void* eqn, void** out);
int32_t FindNonLinearityCode(void* nlmodel, const char* keyword, int16_t* out);
int32_t MakeNonLinearityDivision(void* builder, void* eqn, int32_t nVars, void** vars,
                                 int32_t nConsts, const double* consts, void** out);
int32_t MakeNonLinearityEI(void* builder, void* eqn, int32_t nVars, void** vars, int32_t nConsts,
                           const double* consts, void** out);
int32_t MakeNonLinearityEvapGDOT(void* builder, void* eqn, int32_t nVars, void** vars,
                                 int32_t nConsts, const double* consts, void** out);
int32_t MakeNonLinearityExp(void* builder, void* eqn, int32_t nVars, void** vars,
                            int32_t nConsts, const double* consts, void** out);
int32_t MakeNonLinearityFLTQB(void* builder, void* eqn, int32_t nVars, void** vars,
                              int32_t nConsts, const double* consts, void** out);
int32_t MakeNonLinearityFast(void* builder, int16_t code, void* eqn, int32_t nVars, void** vars,
                             int32_t nConsts, const double* consts, void** out);
int32_t MakeNonLinearityFastQCL(void* builder, const char* id, void* eqn, int32_t nVars,
                                void** vars, int32_t nConsts, const double* consts, void** out);
int32_t MakeNonLinearityFastNLE(void* builder, const char* id, const char* text1,
                                const char* text2, void* eqn, int32_t nVars, void** vars,
                                int32_t nConsts, const double* consts, void** out);
int32_t MakeNonLinearityFastSCD(void* builder, const char* id, void* eqn, int32_t nVars,
                                void** vars, int32_t nConsts, const double* consts, void** out);
int32_t MakeNonLinearityFastWRAP(void* builder, const char* id, void* eqn, int32_t nVars,
                                 void** vars, int32_t nConsts, const double* consts, void** out);
int32_t MakeNonLinearityLog(void* builder, void* eqn, int32_t nVars, void** vars,
                            int32_t nConsts, const double* consts, void** out);
int32_t MakeNonLinearityPow(void* builder, void* eqn, int32_t nVars, void** vars,
                            int32_t nConsts, const double* consts, void** out);
int32_t MakeNonLinearityTPercent(void* builder, void* eqn, int32_t nVars, void** vars,
                                 int32_t nConsts, const double* consts, void** out);
int32_t MakeNonLinearityXPow(void* builder, void* eqn, int32_t nVars, void** vars,
                             int32_t nConsts, const double* consts, void** out);
int32_t AddNonLinearity(void* builder, void* term);
int32_t AddNonLinearityValue(void* builder, void* term, double value);
int32_t AddNonLinearityVariable(void* builder, void* term, void* var);
int32_t AddNonLinearityVariableByName(void* builder, void* term, const char* varName);
int32_t TrashNonLinearity(void* builder, void* term);
int32_t EmptyNonLinearityTrash(void* builder);
int32_t GetFirstNLVariable(void* term, void** out);
int32_t GetNextNLVariable(void* term, void** out);
int32_t GetFirstNLConstant(void* term, double* out);
int32_t GetFirstBiLinearVarEqn(void* nlmodel, int32_t varIndex, int32_t eqnIndex, void** out);

/* ---- Named variable collections. Handle: the model manager for making,
 * finding, walking and removing collections; a collection for its members
 * and fields. Find/First/Next return 1 with *out unchanged when there is
 * nothing; RemoveNamedVarCollection returns 1 when there was no such
 * collection; AddVarByNameToNamedVarCollection returns 1 for an unknown
 * collection, 2 for an unknown variable, else 0. GetCollectionName copies
 * the whole name. */
int32_t MakeAddReturnNamedVarCollection(void* mgr, const char* name, void** out);
int32_t FindNamedVarCollection(void* mgr, const char* name, void** out);
int32_t FirstNamedVarCollection(void* mgr, void** out);
int32_t NextNamedVarCollection(void* mgr, void** out);
int32_t RemoveNamedVarCollection(void* mgr, const char* name);
int32_t AddVariableToNamedVarCollection(void* collection, void* var);
int32_t AddVarByNameToNamedVarCollection(void* mgr, const char* collectionName,
                                         const char* varName);
int32_t GetCollectionName(void* collection, char* buf);
int32_t GetCollectionNumberVariables(void* collection, int32_t* out);
int32_t GetCollectionFirstVariable(void* collection, void** out);
int32_t GetCollectionNextVariable(void* collection, void** out);
int32_t GetDirection(void* collection, int16_t* out);
int32_t SetDirection(void* collection, int16_t direction);
int32_t GetType(void* collection, int16_t* out);
int32_t SetType(void* collection, int16_t type);

/* ---- Cases. Handles: the model manager for making a case or a collection;
 * a case (made by CreateZEMCaseMgr) for the Add...Edit functions; a case
 * collection for the others.
 *
 * A case is a numbered, named list of edits of one model; applying it
 * applies the edits in order, saving each old value, and undoing it puts
 * them back last-applied first. Name and description keep at most 128
 * characters. The edits take entity handles: an equation, a variable, a
 * nonzero (AddMatrixCoeffEditNZ) or a term (AddMatrixNonLinearityCoeffEdit,
 * which edits its multiplier). AddMatrixCoeffEdit needs an existing matrix
 * entry of the row and the column; AddVarBoundEdit's selector is -1 lower
 * bound, 1 upper bound, 0 both (fixes the variable); AddInitialVectorEdits
 * adds one value edit per variable, in list order, from `values` (one per
 * variable; NULL adds nothing). AddOptionTableEdit sets an option of the
 * model's option table; its name must be non-empty and name and value
 * shorter than 100 characters. A NULL entity handle, a missing matrix entry
 * or an option that does not fit throws.
 *
 * A collection takes a reference to its model and the model's variable
 * values when it is made; after each undo it puts those values back (each
 * kept inside the variable's bounds). AddZEMCaseToCollection hands the case
 * to the collection, which destroys it with itself; DestroyZEMCaseMgr is
 * only for a case never added. DestroyZEMCaseCollection destroys the
 * collection and its cases and drops its model reference.
 *
 * Statuses. CreateZEMCaseMgr stores the case, or NULL and returns 1 when it
 * cannot be made; CreateZEMCaseCollection returns 1 with *out unchanged when
 * it cannot be made. ApplyCase and UnApplyCase return 1 for an unknown name;
 * ApplyCaseNumber and UnApplyCaseNumber return -1 for an unknown number. The
 * case file functions return the collection's result: RestoreCasesFromXLMFile
 * gives -1 for a file of another version, reading nothing; a file that
 * cannot be opened or read, or one made for a model of another dimension,
 * throws; the cases read are added to those already held.
 * DisplayCaseCollectionToFile writes the collection's listing to `path`.
 * Other functions return 0. */
int32_t CreateZEMCaseMgr(void* mgr, int32_t number, const char* name, const char* description,
                         void** out);
int32_t DestroyZEMCaseMgr(void* caseMgr);
int32_t CreateZEMCaseCollection(void* mgr, void** out);
int32_t DestroyZEMCaseCollection(void* collection);
int32_t AddZEMCaseToCollection(void* collection, void* caseMgr);
int32_t AddEqnRHSEdit(void* caseMgr, void* eqn, double value);
int32_t AddEqnRangeEdit(void* caseMgr, void* eqn, double value);
int32_t AddEqnTypeEdit(void* caseMgr, void* eqn, int16_t type);
int32_t AddMatrixCoeffEdit(void* caseMgr, void* eqn, void* var, double value);
int32_t AddMatrixCoeffEditNZ(void* caseMgr, void* nz, double value);
int32_t AddMatrixNonLinearityCoeffEdit(void* caseMgr, void* term, double value);
int32_t AddOptionTableEdit(void* caseMgr, const char* name, const char* value);
int32_t AddVarBoundEdit(void* caseMgr, void* var, int16_t selector, double value);
int32_t AddVarTypeEdit(void* caseMgr, void* var, int16_t type);
int32_t AddVarValueEdit(void* caseMgr, void* var, double value);
int32_t AddInitialVectorEdits(void* caseMgr, const double* values);
int32_t ApplyCase(void* collection, const char* name);
int32_t UnApplyCase(void* collection, const char* name);
int32_t ApplyCaseNumber(void* collection, int32_t number);
int32_t UnApplyCaseNumber(void* collection, int32_t number);
int32_t PersistCasesToXLMFile(void* collection, const char* path);
int32_t RestoreCasesFromXLMFile(void* collection, const char* path);
int32_t DisplayCaseCollectionToFile(void* collection, const char* path);

/* ---- Correlation library. Handles: the nonlinear model
 * (GetNonLinearModelIntf) for the model's list of library correlations and
 * for making instances; a correlation instance (made by
 * MakeAddQCLCorrelationInstance, owned by the nonlinear model and gone after
 * UninitializeQCL or the release of the model) for everything else;
 * QCLCalculate takes both.
 *
 * The library is opened on first use (InitializeQCL or any model-handle
 * function); one that cannot be opened throws. Correlations, their
 * properties and coefficients are numbered from 0.
 *
 * Statuses. GetQCLCorrelationId and the ...PropertyId getters store "" and
 * return 1 for a number out of range; GetQCLCorrelationIndex returns 1 with
 * *out unchanged for an unknown identifier; MakeAddQCLCorrelationInstance
 * stores the instance and returns 0 (an unknown correlation throws).
 * QCLCalculate, GetQCLCorrelationDesc, GetQCLOutputPropertyType,
 * GetQCLCoefficientValue and SetQCLCoefficient return the library's own
 * code (0 success; the out-arguments are filled only then, except that the
 * description buffer always gets a string). The value-buffer functions take
 * the buffer's capacity in doubles and return -1 before initialisation, -2
 * when the capacity is too small (SetQCLInputProperties: when `count` is not
 * the input count; SetQCLInputProperty: no such input), else 0; derivatives
 * are output-major, output o by input i at o * inputs + i.
 * SetQCLDerivativeOption: 0 (default) derivatives from the library, 1 by
 * differences of its outputs, forward or, after SetQCLForwardOption(c, 0),
 * central (a shifted point the library refuses fails QCLCalculate with its
 * code); -2 for another value. SetQCLCoefficient changes the coefficient
 * in the library, for every instance of that correlation. The library has
 * no monotone mode: SetMonotoneOption changes nothing and returns
 * ZEM_FLAT_QCL_NO_MONOTONE. Other functions return 0. */
#define ZEM_FLAT_QCL_NO_MONOTONE 4
int32_t InitializeQCL(void* nlmodel);
int32_t UninitializeQCL(void* nlmodel);
int32_t CreateQCLIdMap(void* nlmodel);
int32_t GetQCLCorrelationCount(void* nlmodel, int32_t* out);
int32_t GetQCLCorrelationId(void* nlmodel, int32_t index, char* buf);
int32_t GetQCLCorrelationIndex(void* nlmodel, const char* id, int32_t* out);
int32_t MakeAddQCLCorrelationInstance(void* nlmodel, int32_t index, void** out);
/* Computes at the instance's inputs for a stream of `flow`; when the model's
 * correlation log is open and the instance's log flag set, reports there
 * under the row name `row`. */
int32_t QCLCalculate(void* nlmodel, void* correlation, const char* row, double flow);
int32_t GetQCLCorrelationDesc(void* correlation, char* buf);
int32_t GetQCLCorrelationType(void* correlation, int32_t* out);
/* The correlation's index pair (-1 when it has none). */
int32_t GetQCLCorrelationBlendIndex(void* correlation, int32_t* out);
int32_t GetQCLInputPropertyCount(void* correlation, int32_t* out);
int32_t GetQCLInputPropertyId(void* correlation, int32_t input, char* buf);
int32_t GetQCLInputPropertyValues(void* correlation, int32_t capacity, double* out);
int32_t GetQCLOutputPropertyCount(void* correlation, int32_t* out);
int32_t GetQCLOutputPropertyId(void* correlation, int32_t output, char* buf);
int32_t GetQCLOutputPropertyType(void* correlation, int32_t output, int32_t* out);
int32_t GetQCLOutputPropertyValues(void* correlation, int32_t capacity, double* out);
int32_t GetQCLCoefficientCount(void* correlation, int32_t* out);
/* The coefficient's value, and its name into `name` (whole) unless NULL. */
int32_t GetQCLCoefficientValue(void* correlation, int32_t coef, char* name, double* out);
int32_t GetQCLDerivativeValues(void* correlation, int32_t capacity, double* out);
int32_t GetQCLSlackCount(void* correlation, int32_t* out);
int32_t SetQCLCoefficient(void* correlation, int32_t coef, double value);
int32_t SetQCLDerivativeOption(void* correlation, int32_t option);
int32_t SetQCLForwardOption(void* correlation, int32_t forward);
int32_t SetQCLInputProperties(void* correlation, int32_t count, const double* values);
int32_t SetQCLInputProperty(void* correlation, int32_t input, double value);
int32_t SetMonotoneOption(void* correlation, int32_t on);

/* ---- Nonlinear blocks. Handles: the model manager; a manifest for the
 * NLBlkManifest... functions.
 *
 * A manifest is a record of named text fields describing one block
 * (initially all ""): Get copies the whole text into `buf`, Set stores a
 * copy. NLBlkManifestVerify returns 0 when the required fields
 * BlockInstanceName, ModelSourceType and SourceFileSpec are all non-empty,
 * else 1. A manifest made by CreateNonLinearBlockManifest belongs to the
 * caller, who releases it with DestroyNonLinearBlockManifest.
 *
 * Blocks themselves are built and evaluated by the external modelling host,
 * which this library build does not have. Therefore CreateNonLinearBlock
 * makes nothing and returns 1; AddNonLinearBlock, NLBlkConstructBlock and
 * NLBlkInitializeBlockHost change nothing and return
 * ZEM_FLAT_NO_BLOCK_HOST. */
int32_t CreateNonLinearBlock(void* mgr, const char* name, void** out);
int32_t CreateNonLinearBlockManifest(void* mgr, void** out);
int32_t DestroyNonLinearBlockManifest(void* manifest);
int32_t AddNonLinearBlock(void* mgr, void* block);
int32_t NLBlkConstructBlock(void* mgr, void* manifest, void** out);
int32_t NLBlkInitializeBlockHost(void* mgr, const char* hostSpec);
int32_t NLBlkManifestVerify(void* manifest);
int32_t NLBlkManifestGetGQTModelType(void* manifest, char* buf);
int32_t NLBlkManifestSetGQTModelType(void* manifest, const char* text);
int32_t NLBlkManifestGetKebDfFileSpec(void* manifest, char* buf);
int32_t NLBlkManifestSetKebDfFileSpec(void* manifest, const char* text);
int32_t NLBlkManifestGetBlockInstanceName(void* manifest, char* buf);
int32_t NLBlkManifestSetBlockInstanceName(void* manifest, const char* text);
int32_t NLBlkManifestGetDelayLoad(void* manifest, char* buf);
int32_t NLBlkManifestSetDelayLoad(void* manifest, const char* text);
int32_t NLBlkManifestGetInitScriptSpec(void* manifest, char* buf);
int32_t NLBlkManifestSetInitScriptSpec(void* manifest, const char* text);
int32_t NLBlkManifestGetInputOutputMap(void* manifest, char* buf);
int32_t NLBlkManifestSetInputOutputMap(void* manifest, const char* text);
int32_t NLBlkManifestGetModelSourceType(void* manifest, char* buf);
int32_t NLBlkManifestSetModelSourceType(void* manifest, const char* text);
int32_t NLBlkManifestGetPerioModelTags(void* manifest, char* buf);
int32_t NLBlkManifestSetPerioModelTags(void* manifest, const char* text);
int32_t NLBlkManifestGetSolver(void* manifest, char* buf);
int32_t NLBlkManifestSetSolver(void* manifest, const char* text);
int32_t NLBlkManifestGetSourceDirSpec(void* manifest, char* buf);
int32_t NLBlkManifestSetSourceDirSpec(void* manifest, const char* text);
int32_t NLBlkManifestGetSourceFileSpec(void* manifest, char* buf);
int32_t NLBlkManifestSetSourceFileSpec(void* manifest, const char* text);

#ifdef __cplusplus
}
#endif

#endif /* ZEMXMPS_FLAT_H */
