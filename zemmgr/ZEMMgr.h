// The model manager behind IZEMMgr. See IZEMMgr.h for the contract; this
// file documents what the implementation chose where the contract is open.
//
// Evaluation helpers (all work on the nonlinear model at the variables'
// current values):
//   SetupModelLinearization  evaluates every row and the whole Jacobian, so
//                            each entry's partial derivative holds the slope
//                            of its row, and stores the point as the base
//                            point of variables and rows.
//   LinearizeGeneralNonlinear replaces every nonlinear row by its tangent at
//                            the current point: each entry's coefficient
//                            becomes its partial derivative, the terms are
//                            removed, and the row constant c = f(x) - J x is
//                            moved to the right-hand side (RHS -= c), so the
//                            row keeps its value at the point.
//   EvaluateInitial(row, var) sets `var` so that `row`'s activity equals its
//                            RHS, by Newton steps on the row (at most 50,
//                            stopping when the change is below 1e-10
//                            relative), keeping the variable inside its
//                            bounds; returns the new value. Without a
//                            variable name it returns the row's value.
//   UpdateEflo(row, var)     sets `var` to the activity of `row` at the
//                            current point (a flow computed by its row).
//
// Slots whose subsystems are not part of this build: the nonlinear block
// parameter list (GetNLBlockParameterList yields null), the external block
// host (UpdateNLBlockParametersInZOKA, Persist/RestoreExternalModelParameters
// do nothing), the closed distillation model (HasSCDModel is false,
// SetSCDControl only stores the pointer), and the XML exchange
// (XMPSWriteXML/XMPSReadXML report status 1).
#pragma once

#include <list>
#include <map>
#include <sstream>
#include <string>

#include "zemmgr/IZEMMgr.h"
#include "zemmgr/ZEMModelFile.h"

class ZEMOptionTable;
class ZEMModelBuilder;
class ZEMModelExecution;
class ZEMModelTransform;
class ZEMHierarchy;

class ZEMMgr : public IZEMMgr {
public:
    ZEMMgr();
    ~ZEMMgr() override;
    ZEMMgr(const ZEMMgr&) = delete;
    ZEMMgr& operator=(const ZEMMgr&) = delete;

    // ILPStdDataMgr
    void SetModelTitle(const char* title) override;
    void GetModelTitle(std::string& title) override;
    void ModelDimension(int& n, int& m, int& nz) override;
    void GetVariableCollectionIntf(ILPVariableList** out) override;
    void GetEquationCollectionIntf(ILPEquationList** out) override;
    void GetMatrixIntf(ILPMatrix** out) override;
    void GetSpOrdSetCollectionIntf(ILPSpOrdSetList** out) override;
    void IncludeObjectiveInMatrix() override;
    bool MatrixIncludesObjective() override;
    void RemoveVariable(const char* name) override;
    void RemoveVariable(ILPVariable* var) override;
    void RemoveEquation(const char* name) override;
    void RemoveEquation(ILPEquation* eqn) override;
    void ProcessFullCollection() override;
    void ReIndexConnectionEqn() override;
    void Destroy() override;
    void Display(std::ostream& os) override;
    void DisplayHeading(std::ostream& os) override;
    void DisplayByRow(std::ostream& os) override;
    void DisplayByColumn(std::ostream& os) override;
    void AlgebraicDisplay(std::ostream& os) override;
    void AlgebraicDisplayXLR(std::ostream& os) override;
    void SetValuesInitialized(bool v) override;
    bool GetValuesInitialized() override;
    void PersistAsFile(const char* path) override;
    void PersistAsFile(const char* path, double version) override;
    void PersistAsStream(std::stringstream* ss) override;
    void PersistAsStream(std::stringstream* ss, double version) override;
    bool RestoreFromFile(const char* path) override;
    void RestoreFromStream(std::istream* is) override;

    // IZEMDataMgr
    void GetNonLinearModelIntf(INonLinearModel** out) override;
    void GetNonLinearityCollectionIntf(INonLinearityList** out) override;
    void GetOptionTableIntf(IZEMOptionTable** out) override;
    void SetupModelLinearization() override;
    void NonLinearMatrixDisplay(std::ostream& os) override;
    void GAMSModelInput(std::ostream& os) override;
    // Refuses (ZEM_Exception naming the entity) a model that GAMSModelInput
    // cannot write as valid GAMS: a term without a GAMS form, names that do
    // not make distinct GAMS symbols of at most 63 characters.
    void CheckGAMSWritable();
    int IAddRef() override;
    int IRelease() override;
    void TrashVariable(ILPVariable* var) override;
    void TrashEquation(ILPEquation* eqn) override;
    void EmptyAllTrash() override;
    void WriteZEMSummary(const char* path) override;
    double EvaluateInitial(const char* eqnName, const char* varName) override;
    int UpdateEflo(const char* eqnName, const char* varName) override;
    int WritePenaltyFile(const char* path) override;
    bool AddNamedVarCollection(ILPVariableCollection* col) override;
    void NewNamedVarCollection(const char* name, ILPVariableCollection** out) override;
    bool RemoveNamedVarCollection(const char* name) override;
    void FindNamedVarCollection(const char* name, ILPVariableCollection** out) override;
    void FrstNamedVarCollection(ILPVariableCollection** out) override;
    void NextNamedVarCollection(ILPVariableCollection** out) override;
    void XMPSWriteXML(std::stringstream* ss, int* status) override;
    void XMPSReadXML(std::stringstream* ss, int* status) override;
    const char* GetModelDir() override;
    void SetModelDir(const char* dir) override;
    void AppendFromZEM(IZEMMgr* other, const char* prefix, const char* suffix) override;
    void GetModelBuilderIntf(IZEMModelBuilder** out) override;
    void GetModelExecutionIntf(IZEMModelExecution** out) override;
    void GetModelTransformIntf(IZEMModelTransform** out) override;
    void GetZEMHierarchyIntf(IZEMHierarchy** out) override;
    void PurgeContent() override;
    void PersistToLocalStream() override;
    void AppendFromFile(const char* path) override;
    void AppendFromStream(std::istream* is) override;
    void GetLastSerializationStream(std::stringstream** out) override;
    void PersistAsFileStream(std::ofstream* os) override;
    void StoreBaseModelDimension() override;
    void GetBaseModelDimension(int& n, int& m, int& nz) override;
    void OpenHqclEqnLogs(const char* hqclLog, const char* eqnLog, int flags) override;
    void CloseHqclEqnLogs() override;
    void GetNLBlockParameterList(const char* block, INLParameterList** out) override;
    void UpdateNLBlockParametersInZOKA(const char* block) override;
    void PersistExternalModelParameters(const char* path) override;
    void RestoreExternalModelParameters(const char* path) override;
    void NameScreen(std::string& name) override;
    bool HasSCDModel() override;
    void SetSCDControl(ISCDControl* control, std::string name) override;
    ISCDControl* GetSCDControl() override;
    int GetRank() override;
    void SetRank(int rank) override;
    int GetTrace() override;
    void SetTrace(int trace) override;
    void LinearizeGeneralNonlinear() override;
    void SetHybridModel(bool hybrid) override;
    bool IsHybridModel() override;
    void IfDirtyPurgeContent() override;
    void InsertMatrixEntry(const char* row, const char* col, double value,
                           ILPNonZero** result) override;
    void AppendVarList(ILPVariableList* src, ILPVariable*** map, const char* prefix,
                       const char* suffix) override;
    void AppendEqnList(ILPEquationList* src, ILPEquation*** map, const char* prefix,
                       const char* suffix) override;
    void AppendMatrix(ILPMatrix* src, ILPNonZero*** map, ILPVariable** varMap,
                      ILPEquation** eqnMap) override;
    void AppendSOSList(ILPSpOrdSetList* src, ILPSpOrdSet*** map, ILPVariable** varMap,
                       const char* prefix, const char* suffix) override;
    void AppendVarCollection(std::list<ILPVariableCollection*>& src, ILPVariable** varMap,
                             const char* prefix, const char* suffix) override;

    // The version written into file headers (2020.1 unless changed).
    double GetFileVersion() const { return m_fileVersion; }
    int GetRefCount() const { return m_refCount; }

    // The library's own empty text: SetModelDir ignores this pointer.
    static const char* const kEmptyString;

protected:
    void RemoveEmptyEquations() override;
    void Start() override;
    void Stop() override;

private:
    void ReadFrame(std::istream* is, bool append);
    void WriteFrame(std::ostream* os);
    // The parts and scalar state of this model as the model file sees them.
    ZEMModelContent FileContent();
    ZEMModelState FileState() const;
    ILPMatrix* Matrix();
    // Display helpers (ZEMMgrDisplay.cpp).
    void WriteAlgebraic(std::ostream& os, bool xlr);

    std::string m_title = "MDL";
    std::string m_modelDir;
    ILPVariableList* m_vars = nullptr;
    ILPEquationList* m_eqns = nullptr;
    INonLinearModel* m_nonlinear = nullptr;
    ILPSpOrdSetList* m_sets = nullptr;
    ZEMOptionTable* m_options = nullptr;
    ZEMModelBuilder* m_builder = nullptr;
    ZEMModelExecution* m_execution = nullptr;
    ZEMModelTransform* m_transform = nullptr;
    ZEMHierarchy* m_hierarchy = nullptr;
    bool m_matrixIncludesObjective = false;
    bool m_valuesInitialized = true;
    std::list<ILPVariableCollection*> m_collections;
    std::list<ILPVariableCollection*>::iterator m_collectionCursor = m_collections.end();
    // Parameters of nonlinear blocks, by block name (emptied by Stop).
    std::map<std::string, std::string> m_blockParameters;
    std::stringstream m_lastStream;
    int m_refCount = 0;
    double m_fileVersion = 2020.1;
    int m_baseDimStored = 0;
    int m_baseVars = 0;
    int m_baseEqns = 0;
    int m_baseNonZeros = 0;
    int m_rank = -1;
    int m_trace = 0;
    bool m_hybrid = false;
    ISCDControl* m_scdControl = nullptr;
    std::string m_scdName;
};

// Makes `name` safe for a case-blind target language, recoverably (see
// ZEMNameScreen.cpp). Throws ZEM_Exception when the recovery suffix would
// exceed 127 characters.
void ZEMNameScreen(std::string& name);
