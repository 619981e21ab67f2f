// The pool of nonlinear terms of one model.
//
// INonLinearityList is the term-list face of the pool (creation, adding,
// walking, listing and the binary section); INonLinearModel adds the matrix
// it owns, evaluation of rows and Jacobians, removal, and the settings of the
// correlation binding and the equation terms.
//
// Typical use, after the LP rows and variables exist:
//
//   INonLinearity* t = nullptr;
//   model->CreateNonLinearityObject("LNX", &t);
//   t->SetEquationPtr(row);
//   t->AddNLConstantObject(3.0);
//   t->AddVariableObject(x);
//   model->AddNonLinearityObject(t);   // makes the (row, x) entry if missing
//   model->EvaluateModel();            // every row's value
//   model->EvaluateJacobian();         // every entry's partial derivative
//
// Indices of rows, variables and terms are 1-based, as in the LP lists.
#pragma once

#include <cstdint>
#include <istream>
#include <ostream>
#include <string>

#include "nlpdata/INonLinearity.h"

class ILPEquation;
class ILPEquationList;
class ILPMatrix;
class ILPNonZero;
class ILPVariable;
class ILPVariableList;
class INonLinearBlockList;
class INonLinearityFactory;

// Components that live outside the nonlinear model and are reached only by
// pointer through it: one correlation of the external blending-correlation
// library, the closed model of the distillation equation terms, and the
// registry of externally cached evaluations handed to the factory.
class IQCLCorrelation;
class ISCDClosedModel;
class INLModelExtCachedEvalRegistration;

class INonLinearityList {
public:
    virtual ~INonLinearityList() = default;
    // Opens the correlation and equation logs named by the settings when their
    // flags are set; false when a log that was asked for could not be opened.
    virtual bool OpenLogFiles() = 0;
    virtual void CloseLogFiles() = 0;
    virtual int NumberOfNonLinearities() = 0;
    // Terms that are not members of a nonlinear block (those that are saved).
    virtual int NumberOfPersistedNonLinearities() = 0;
    virtual void NonlinearityTypeNameToTypeID(const char* name, int16_t* code) = 0;
    virtual void CreateNonLinearityObject(int16_t code, INonLinearity** out) = 0;
    virtual void CreateNonLinearityObject(const char* name, INonLinearity** out, const char* p1,
                                          const char* p2) = 0;
    virtual void CreateNonLinearityObject(const char* name, INonLinearity** out) = 0;
    virtual void CreateNLQclObject(const char* name, INonLinearity** out) = 0;
    virtual void CreateNLScdObject(const char* name, INonLinearity** out) = 0;
    virtual void CreateNLNleObject(const char* name, INonLinearity** out, const char* p1,
                                   const char* p2) = 0;
    virtual void CreateNLConstantObject(INLConstant** out) = 0;
    // Takes ownership of the term; returns the new number of terms.
    virtual int AddNonLinearityObject(INonLinearity* term) = 0;
    // Trashes the term and empties the trash at once.
    virtual void EliminateNonLinearity(INonLinearity* term) = 0;
    virtual void BulkEliminateNonLinearity(INonLinearity** terms, int count) = 0;
    // The term of that index (a walk from the head), null when out of range.
    virtual void RetrieveNonLinearityObject(int index, INonLinearity** out) = 0;
    virtual int NonLinearityTypeCount(int16_t code) = 0;
    virtual INonLinearity* FrstNonLinearityObject() = 0;
    virtual INonLinearity* NextNonLinearityObject() = 0;
    // The first term (pool order) that takes the variable as an argument.
    virtual INonLinearity* CheckNonLinearVariable(ILPVariable* var) = 0;
    // The first product term (pool order) in row `eqnIdx` with exactly two
    // argument occurrences, one of which is variable `varIdx`.
    virtual INonLinearity* GetFirstBiLinearVarEqn(int varIdx, int eqnIdx) = 0;
    virtual void ProcessNonLinearityCollection() = 0;
    virtual void Display(std::ostream& os) = 0;
    virtual void StreamWrite(std::ostream* os, double version) = 0;
    // vars, eqns and nzs are the null-terminated tables of the LP readers;
    // records refer to their entries by 1-based position.
    virtual void StreamRead(double version, int count, ILPVariable** vars, ILPEquation** eqns,
                            ILPNonZero** nzs, std::istream* is) = 0;
    virtual void StreamReadSafe(double version, int count, ILPVariable** vars, ILPEquation** eqns,
                                ILPNonZero** nzs, std::istream* is) = 0;
    virtual void ClearDiffFlags() = 0;
};

class INonLinearModel : public INonLinearityList {
public:
    virtual void Destroy() = 0;
    virtual int NumberOfNonZeros() = 0;
    virtual int NumberOfNonLinearNonZeros() = 0;
    virtual INonLinearity* FrstNonLinearityObjectByRow() = 0;
    virtual INonLinearity* NextNonLinearityObjectByRow() = 0;
    virtual INonLinearity* RowFrstNonLinearityObject(int row) = 0;
    virtual INonLinearity* RowNextNonLinearityObject() = 0;
    virtual INonLinearBlockList* NLBlockList() = 0;
    // Linear part plus terms; sets and returns the row's value.
    virtual double EvaluateRow(int row) = 0;
    // Sets each entry of the row to its coefficient plus the terms' derivatives.
    virtual void JacobianRow(int row) = 0;
    virtual bool EvaluateModel() = 0;
    virtual bool EvaluateLinearEqns() = 0;
    virtual bool EvaluateJacobian() = 0;
    virtual bool EvaluateNonlinearRows() = 0;
    virtual void EvaluateNonlinearRowsJacobian() = 0;
    virtual void EvaluateNonlinearities() = 0;
    virtual void EvaluateNonlinearityJacobian() = 0;
    virtual void EvaluateLinearizedModel() = 0;
    virtual bool PreEvaluateModel() = 0;
    virtual bool PreEvaluateJacobian() = 0;
    virtual bool PreEvaluateSCDModel(INonLinearity* term) = 0;
    virtual void ProcessNonLinearModel() = 0;
    virtual void GetMatrixIntf(ILPMatrix** out) = 0;
    virtual void EliminateVariable(ILPVariable* var) = 0;
    virtual void EliminateEquation(ILPEquation* eqn) = 0;
    virtual void TrashVariable(ILPVariable* var) = 0;
    virtual void TrashEquation(ILPEquation* eqn) = 0;
    virtual void TrashNonLinearity(INonLinearity* term) = 0;
    virtual void EmptyNonLinearityTrash() = 0;
    virtual void EmptyAllTrash() = 0;
    virtual void DisplayByRow(std::ostream& os) = 0;
    virtual void DisplayByColumn(std::ostream& os) = 0;
    virtual void OverrideNonLinearityFactory(INonLinearityFactory* factory) = 0;
    virtual void GetVarAndEqnLists(ILPVariableList** vars, ILPEquationList** eqns) = 0;
    virtual bool InitializeQCL() = 0;
    virtual void CreateQCLIdMap() = 0;
    virtual int GetQCLCorrelationCount() = 0;
    virtual bool GetQCLCorrelationId(int index, std::string& id) = 0;
    virtual int GetQCLCorrelationIndex(std::string id) = 0;
    virtual IQCLCorrelation* AddQCLCorrelationInstance(int index) = 0;
    virtual void UninitializeQCL() = 0;
    virtual void SetSCDClosedModel(ISCDClosedModel* closed) = 0;
    virtual ISCDClosedModel* GetSCDClosedModel() = 0;
    virtual INonLinearity* FrstNonLinearitySCDEquation() = 0;
    virtual void SetFrstNonLinearitySCDEquation(INonLinearity* term) = 0;
    virtual void SetJacobianMode(int mode) = 0;
    virtual const char* GetModelDir() = 0;
    virtual void SetModelDir(const char* dir) = 0;
    virtual const char* GetHqclLogFile() = 0;
    virtual void SetHqclLogFile(const char* path) = 0;
    virtual const char* GetEqnLogFile() = 0;
    virtual void SetEqnLogFile(const char* path) = 0;
    virtual bool GetHqcl() = 0;
    virtual void SetHqcl(bool on) = 0;
    virtual bool GetEqn() = 0;
    virtual void SetEqn(bool on) = 0;
    virtual int GetRank() = 0;
    virtual void SetRank(int rank) = 0;
    virtual int GetTrace() = 0;
    virtual void SetTrace(int trace) = 0;
    virtual void CreateNLWrapObject(const char* name, INonLinearity** out) = 0;
    virtual void StreamWriteV1(std::ostream* os) = 0;
    virtual void StreamWriteV2(std::ostream* os) = 0;
    virtual void StreamWriteV3(std::ostream* os) = 0;
    virtual void StreamWriteV4(std::ostream* os) = 0;
    virtual void StreamWriteV5(std::ostream* os) = 0;
    virtual void StreamReadV1(int count, ILPVariable** vars, ILPEquation** eqns, ILPNonZero** nzs,
                              std::istream* is) = 0;
    virtual void StreamReadV2(int count, ILPVariable** vars, ILPEquation** eqns, ILPNonZero** nzs,
                              std::istream* is) = 0;
    virtual void StreamReadV3(int count, ILPVariable** vars, ILPEquation** eqns, ILPNonZero** nzs,
                              std::istream* is) = 0;
    virtual void StreamReadV4(int count, ILPVariable** vars, ILPEquation** eqns, ILPNonZero** nzs,
                              std::istream* is) = 0;
    virtual void StreamReadV5(int count, ILPVariable** vars, ILPEquation** eqns, ILPNonZero** nzs,
                              std::istream* is) = 0;
    // Copies every persisted term of `other` into this pool; vars and eqns map
    // the other model's 1-based variable and row indices to this model's
    // entities (null-terminated tables, as made by the list appenders).
    virtual void AppendNonLinearModel(INonLinearModel* other, ILPVariable** vars,
                                      ILPEquation** eqns) = 0;
    // Detaches the term from its row, variables and entries and deletes it.
    virtual void RemoveNonLinearity(INonLinearity* term) = 0;
    virtual void BulkRemoveNonLinearity(INonLinearity** terms, int count) = 0;
    // The correlation library to open on first use ("" = the environment
    // variable ZEM_QCL_LIBRARY, else libzemqcl.so next to libzemxmps.so).
    virtual void SetQCLLibraryPath(const char* path) = 0;
    virtual const char* GetQCLLibraryPath() = 0;

protected:
    virtual void ReIndexRowNonLinearityMap(int removedRow) = 0;
    virtual void MapNonLinearityToRow(int row, INonLinearity* term) = 0;
    virtual void FullReIndexNonLinearities() = 0;
    virtual void ResetNonLinearityCollection() = 0;
    virtual void IncrNLTypeCount(int16_t code) = 0;
    virtual void BuildFastCollections() = 0;
    virtual INonLinearity* InternalFrstNonLinearityObjectByRow() = 0;
    virtual INonLinearity* InternalNextNonLinearityObjectByRow() = 0;
    virtual void UpdateResidualValue(ILPEquation* eqn) = 0;
};
