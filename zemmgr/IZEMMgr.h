// The model manager: the root object of one optimisation model.
//
// It owns the variable list, the equation list, the nonlinear model (which
// owns the sparse matrix), the special ordered sets, the option table, the
// named variable collections and four companions made on first request
// (builder, execution, transform, hierarchy). Callers hold IZEMMgr pointers
// made by ZEMObjectFactory / ZEMDataObjectFactory and keep the object alive
// with IAddRef / IRelease; the object deletes itself and everything it owns
// when its count returns to exactly 0.
//
//   IZEMMgr* mgr = nullptr;
//   ZEMObjectFactory(&mgr);
//   mgr->IAddRef();
//   mgr->RestoreFromFile("plant.zem");
//   ILPVariableList* vars = nullptr;
//   mgr->GetVariableCollectionIntf(&vars);
//   ...
//   mgr->IRelease();
//
// IZEMDataMgr holds every public operation of a model (what readers, writers,
// cases and the flat interface use); IZEMMgr adds the protected life cycle.
// The operations are declared in their fixed slot order; InsertMatrixEntry
// and RemoveEmptyEquations are inherited from ILPStdDataMgr.
#pragma once

#include <fstream>
#include <istream>
#include <list>
#include <ostream>
#include <sstream>
#include <string>

#include "lpdata/ILPStdDataMgr.h"

class ILPSpOrdSet;
class ILPVariableCollection;
class INonLinearModel;
class INonLinearityList;
class IZEMOptionTable;
class IZEMModelBuilder;
class IZEMModelExecution;
class IZEMModelTransform;
class IZEMHierarchy;
class INLParameterList;
class ISCDControl;
class IZEMMgr;

class IZEMDataMgr : public ILPStdDataMgr {
public:
    ~IZEMDataMgr() override = default;

    virtual void GetNonLinearModelIntf(INonLinearModel** out) = 0;
    // The nonlinear model seen as its list of terms.
    virtual void GetNonLinearityCollectionIntf(INonLinearityList** out) = 0;
    virtual void GetOptionTableIntf(IZEMOptionTable** out) = 0;
    // Evaluates every row and the Jacobian at the current point and stores
    // that point as the base point of variables and rows.
    virtual void SetupModelLinearization() = 0;
    virtual void NonLinearMatrixDisplay(std::ostream& os) = 0;
    // Writes the model as source for the GAMS modelling system: every row
    // valid GAMS, every term as GAMS algebra. A model with a term GAMS cannot
    // express, or names that do not make distinct GAMS symbols, is refused
    // (ZEM_Exception naming the entity) before anything is written.
    virtual void GAMSModelInput(std::ostream& os) = 0;
    // Both return the reference count after the change.
    virtual int IAddRef() = 0;
    virtual int IRelease() = 0;
    virtual void TrashVariable(ILPVariable* var) = 0;
    virtual void TrashEquation(ILPEquation* eqn) = 0;
    virtual void EmptyAllTrash() = 0;
    // Writes heading, algebraic listing and full listing to a text file.
    // The summary is a report for people, not a model format: nothing reads
    // it back, so it refuses nothing.
    virtual void WriteZEMSummary(const char* path) = 0;
    // Solves the named row for the named variable at the current values of
    // the others; see ZEMMgr.h.
    virtual double EvaluateInitial(const char* eqnName, const char* varName) = 0;
    // Sets the named variable to the activity of the named row; 0 on
    // success, 1 when either name is unknown.
    virtual int UpdateEflo(const char* eqnName, const char* varName) = 0;
    // 0 on success.
    virtual int WritePenaltyFile(const char* path) = 0;
    // Takes ownership; false (and nothing taken) when the name is in use.
    virtual bool AddNamedVarCollection(ILPVariableCollection* col) = 0;
    virtual void NewNamedVarCollection(const char* name, ILPVariableCollection** out) = 0;
    virtual bool RemoveNamedVarCollection(const char* name) = 0;
    virtual void FindNamedVarCollection(const char* name, ILPVariableCollection** out) = 0;
    virtual void FrstNamedVarCollection(ILPVariableCollection** out) = 0;
    virtual void NextNamedVarCollection(ILPVariableCollection** out) = 0;
    // XML exchange of the extended MPS form; the status is set to 0 on
    // success and 1 when the operation is not available.
    virtual void XMPSWriteXML(std::stringstream* ss, int* status) = 0;
    virtual void XMPSReadXML(std::stringstream* ss, int* status) = 0;
    virtual const char* GetModelDir() = 0;
    virtual void SetModelDir(const char* dir) = 0;
    // Adds a copy of another model's content, names wrapped in prefix and
    // suffix; entities whose wrapped name already exists are shared and keep
    // their fields. It is a union: an entry at a row and column this model
    // already has keeps its coefficient, a term alike in every part to one
    // of its row is not added again, set and group members are not
    // repeated. So appending a model into itself or the same model twice
    // without a prefix changes nothing; with a prefix it adds a renamed copy.
    virtual void AppendFromZEM(IZEMMgr* other, const char* prefix, const char* suffix) = 0;
    virtual void GetModelBuilderIntf(IZEMModelBuilder** out) = 0;
    virtual void GetModelExecutionIntf(IZEMModelExecution** out) = 0;
    virtual void GetModelTransformIntf(IZEMModelTransform** out) = 0;
    virtual void GetZEMHierarchyIntf(IZEMHierarchy** out) = 0;
    // Empties the model: every owned component is made anew, so earlier
    // interface pointers to them become invalid.
    virtual void PurgeContent() = 0;
    // PersistAsStream into the manager's own stream (GetLastSerializationStream).
    virtual void PersistToLocalStream() = 0;
    // Adds a model file's content as new objects (a file that cannot be
    // opened is skipped). A variable, equation or set whose name the model
    // already holds is refused ("Error Safe Append - ... of same name
    // already exists"), so appending a model's own file, or one file twice,
    // is an error rather than a model with every name twice; what was read
    // before the refusal stays.
    virtual void AppendFromFile(const char* path) = 0;
    virtual void AppendFromStream(std::istream* is) = 0;
    // Rewinds the write position of the manager's own stream and hands it out.
    virtual void GetLastSerializationStream(std::stringstream** out) = 0;
    virtual void PersistAsFileStream(std::ofstream* os) = 0;
    virtual void StoreBaseModelDimension() = 0;
    virtual void GetBaseModelDimension(int& n, int& m, int& nz) = 0;
    // Log files of the correlation binding and of the equation terms.
    virtual void OpenHqclEqnLogs(const char* hqclLog, const char* eqnLog, int flags) = 0;
    virtual void CloseHqclEqnLogs() = 0;
    // Nonlinear blocks and the external block host are not part of this
    // library build: these report nothing found / do nothing.
    virtual void GetNLBlockParameterList(const char* block, INLParameterList** out) = 0;
    virtual void UpdateNLBlockParametersInZOKA(const char* block) = 0;
    virtual void PersistExternalModelParameters(const char* path) = 0;
    virtual void RestoreExternalModelParameters(const char* path) = 0;
    // Makes a name safe for a case-blind target language, recoverably.
    virtual void NameScreen(std::string& name) = 0;
    // Closed distillation model: not part of this library build.
    virtual bool HasSCDModel() = 0;
    virtual void SetSCDControl(ISCDControl* control, std::string name) = 0;
    virtual ISCDControl* GetSCDControl() = 0;
    virtual int GetRank() = 0;
    virtual void SetRank(int rank) = 0;
    virtual int GetTrace() = 0;
    virtual void SetTrace(int trace) = 0;
    // Replaces every nonlinear row by its linearisation at the current point.
    virtual void LinearizeGeneralNonlinear() = 0;
    virtual void SetHybridModel(bool hybrid) = 0;
    virtual bool IsHybridModel() = 0;
    // PurgeContent when the model holds any variable, equation or nonzero.
    virtual void IfDirtyPurgeContent() = 0;
    void InsertMatrixEntry(const char* row, const char* col, double value,
                           ILPNonZero** result) override = 0;
    // Append another model's components; each hands out (new[]) the table
    // that maps the source's 1-based positions to this model's objects.
    virtual void AppendVarList(ILPVariableList* src, ILPVariable*** map, const char* prefix,
                               const char* suffix) = 0;
    virtual void AppendEqnList(ILPEquationList* src, ILPEquation*** map, const char* prefix,
                               const char* suffix) = 0;
    virtual void AppendMatrix(ILPMatrix* src, ILPNonZero*** map, ILPVariable** varMap,
                              ILPEquation** eqnMap) = 0;
    virtual void AppendSOSList(ILPSpOrdSetList* src, ILPSpOrdSet*** map, ILPVariable** varMap,
                               const char* prefix, const char* suffix) = 0;
    virtual void AppendVarCollection(std::list<ILPVariableCollection*>& src,
                                     ILPVariable** varMap, const char* prefix,
                                     const char* suffix) = 0;
};

class IZEMMgr : public IZEMDataMgr {
public:
    ~IZEMMgr() override = default;

protected:
    virtual void Start() = 0;
    virtual void Stop() = 0;
};

// Store a new model manager (reference count 0) in *out, or null when it
// cannot be made. The two factories make the same object.
void ZEMObjectFactory(IZEMMgr** out);
void ZEMDataObjectFactory(IZEMMgr** out);
