// The pool of nonlinear terms of one model, with the sparse matrix it owns.
//
// Construction takes the model's variable and equation lists (not owned),
// makes the LPMatrix over them (owned) and the standard term factory (held by
// reference count), and an empty nonlinear block list (owned).
//
// Adding a term (AddNonLinearityObject) gives it the next index, marks its
// row nonlinear, and for each distinct variable finds the row's entry for it
// or makes one with coefficient 0, marks entry and variable nonlinear and
// stores the entry in the term; the term is then entered in its row's list.
//
// Evaluation:
//   EvaluateRow(r)     row value = sum(coefficient * value) + active terms
//   JacobianRow(r)     entry derivative = coefficient + terms' derivatives
//   EvaluateModel()    every row, walking the matrix by row, with residuals
//   EvaluateJacobian() every entry
//   EvaluateLinearEqns() + EvaluateNonlinearities() == EvaluateModel()
// Inactive terms (Active() == 0) take no part in any evaluation.
//
// Residual (UpdateResidualValue): how far the row's value violates its
// limits, never negative. Equality rows: |value - RHS|. <= rows: the excess
// over RHS, plus the shortfall below RHS - |range| when a range is set. >=
// rows: the shortfall below RHS, plus the excess over RHS + |range| when a
// range is set. Objective and free rows: 0.
//
// Linearised model (EvaluateLinearizedModel): each row's value becomes its
// first-order model around the base point, base value of the row plus the
// sum over its entries of partial derivative * (value - base value of the
// variable). Call it after the base point was stored (UpdateBasePointValues
// of both lists) and the Jacobian evaluated there.
//
// Row bookkeeping: the terms of each row are kept by row index. Removing
// terms or rows, a renumbering of the equation list, or a drop in the number
// of equations, make the model rebuild that map from the terms' current row indices on next use, so rows
// renumbered by the equation list after EliminateEquation, after a trash is
// emptied or after empty rows were removed are followed.
//
// Removal: EliminateVariable and TrashVariable refuse a variable that a term
// uses ("NonLinear Matrix Edit Error - Can't Remove NonLinear Variables").
// EliminateEquation removes the row's terms and then the row's entries;
// TrashEquation trashes the row's terms and, when the term trash is emptied,
// hands the row to the matrix's trash. Removing a term lowers the nonlinear
// counts of its row, variables and entries; the entries themselves stay in
// the matrix (with their coefficients, often 0). Related-term references that
// other terms hold to a removed term are not followed up.
//
// Log files: OpenLogFiles opens the correlation log when GetHqcl() and the
// equation log when GetEqn(), each at the file name given by its setting,
// used as given (the model directory is not prefixed). Each
// PreEvaluateModel starts the equation log with the new-iteration line.
//
// Correlation library (QCLBinding): opened on first use of a correlation,
// never at construction; see nlpdata/QCLLibrary.h for where it is found and
// nlpdata/QCLLibraryAbi.h for what it must export. The correlation slots
// (InitializeQCL ... AddQCLCorrelationInstance) load it when needed and throw
// ZEM_Exception when it is missing or incomplete.
//
// Components not built into this library: the closed distillation model
// (PreEvaluateSCDModel returns false; the closed model pointer is only
// stored) and external blocks (nothing to pre-evaluate).
#pragma once

#include <cstdint>
#include <fstream>
#include <map>
#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

#include "nlpdata/INonLinearModel.h"
#include "nlpdata/NLLinearSnapshot.h"

class LPEquationList;
class LPMatrix;
class LPVariableList;
class QCLBinding;

class NonLinearModel : public INonLinearModel {
public:
    NonLinearModel(ILPVariableList* vars, ILPEquationList* eqns);
    NonLinearModel(const NonLinearModel&) = delete;
    NonLinearModel& operator=(const NonLinearModel&) = delete;
    ~NonLinearModel() override;

    // INonLinearityList
    bool OpenLogFiles() override;
    void CloseLogFiles() override;
    int NumberOfNonLinearities() override { return static_cast<int>(m_pool.size()); }
    int NumberOfPersistedNonLinearities() override { return m_persisted; }
    void NonlinearityTypeNameToTypeID(const char* name, int16_t* code) override;
    void CreateNonLinearityObject(int16_t code, INonLinearity** out) override;
    void CreateNonLinearityObject(const char* name, INonLinearity** out, const char* p1,
                                  const char* p2) override;
    void CreateNonLinearityObject(const char* name, INonLinearity** out) override;
    void CreateNLQclObject(const char* name, INonLinearity** out) override;
    void CreateNLScdObject(const char* name, INonLinearity** out) override;
    // The user equation term of this build takes no parameters: p1 and p2
    // are not used.
    void CreateNLNleObject(const char* name, INonLinearity** out, const char* p1,
                           const char* p2) override;
    void CreateNLConstantObject(INLConstant** out) override;
    // Refuses (throws, ownership stays with the caller, nothing changes) a
    // null term, a term without row, a row or variable without index, or a
    // term that is already in the pool.
    int AddNonLinearityObject(INonLinearity* term) override;
    void EliminateNonLinearity(INonLinearity* term) override;
    void BulkEliminateNonLinearity(INonLinearity** terms, int count) override;
    // Indices below 1 give the first term; above the count, null.
    void RetrieveNonLinearityObject(int index, INonLinearity** out) override;
    int NonLinearityTypeCount(int16_t code) override;
    INonLinearity* FrstNonLinearityObject() override;
    INonLinearity* NextNonLinearityObject() override;
    INonLinearity* CheckNonLinearVariable(ILPVariable* var) override;
    INonLinearity* GetFirstBiLinearVarEqn(int varIdx, int eqnIdx) override;
    void ProcessNonLinearityCollection() override;
    void Display(std::ostream& os) override;
    void StreamWrite(std::ostream* os, double version) override;
    // Both readers check every count against the stream and every index
    // against the given tables, and create nothing unless the whole section
    // is sound. Variables keep the nonlinear counts of their own records;
    // rows and entries are marked nonlinear as the terms are added.
    void StreamRead(double version, int count, ILPVariable** vars, ILPEquation** eqns,
                    ILPNonZero** nzs, std::istream* is) override;
    void StreamReadSafe(double version, int count, ILPVariable** vars, ILPEquation** eqns,
                        ILPNonZero** nzs, std::istream* is) override;
    void ClearDiffFlags() override;

    // INonLinearModel
    void Destroy() override { delete this; }
    int NumberOfNonZeros() override;
    int NumberOfNonLinearNonZeros() override;
    INonLinearity* FrstNonLinearityObjectByRow() override;
    INonLinearity* NextNonLinearityObjectByRow() override;
    INonLinearity* RowFrstNonLinearityObject(int row) override;
    INonLinearity* RowNextNonLinearityObject() override;
    INonLinearBlockList* NLBlockList() override { return m_blocks; }
    double EvaluateRow(int row) override;
    void JacobianRow(int row) override;
    bool EvaluateModel() override;
    bool EvaluateLinearEqns() override;
    bool EvaluateJacobian() override;
    bool EvaluateNonlinearRows() override;
    void EvaluateNonlinearRowsJacobian() override;
    // Adds the active terms' values to their rows' current values.
    void EvaluateNonlinearities() override;
    // Resets the entries held by terms to their coefficients and adds the
    // terms' derivatives; linear entries are left alone.
    void EvaluateNonlinearityJacobian() override;
    void EvaluateLinearizedModel() override;
    bool PreEvaluateModel() override;
    bool PreEvaluateJacobian() override;
    bool PreEvaluateSCDModel(INonLinearity* term) override;
    // Counts the terms by type and rebuilds the row lists.
    void ProcessNonLinearModel() override;
    void GetMatrixIntf(ILPMatrix** out) override;
    void EliminateVariable(ILPVariable* var) override;
    void EliminateEquation(ILPEquation* eqn) override;
    void TrashVariable(ILPVariable* var) override;
    void TrashEquation(ILPEquation* eqn) override;
    void TrashNonLinearity(INonLinearity* term) override;
    void EmptyNonLinearityTrash() override;
    // The term trash, then the matrix's trash.
    void EmptyAllTrash() override;
    void DisplayByRow(std::ostream& os) override;
    // Terms ordered by the smallest index among their variables (terms
    // without variables last), pool order among equals.
    void DisplayByColumn(std::ostream& os) override;
    void OverrideNonLinearityFactory(INonLinearityFactory* factory) override;
    void GetVarAndEqnLists(ILPVariableList** vars, ILPEquationList** eqns) override;
    bool InitializeQCL() override;
    void CreateQCLIdMap() override;
    int GetQCLCorrelationCount() override;
    // Correlation numbers are the library's, 0 .. count - 1.
    bool GetQCLCorrelationId(int index, std::string& id) override;
    int GetQCLCorrelationIndex(std::string id) override;
    IQCLCorrelation* AddQCLCorrelationInstance(int index) override;
    void UninitializeQCL() override;
    void SetQCLLibraryPath(const char* path) override;
    const char* GetQCLLibraryPath() override;
    void SetSCDClosedModel(ISCDClosedModel* closed) override { m_scdClosed = closed; }
    ISCDClosedModel* GetSCDClosedModel() override { return m_scdClosed; }
    // The stored first distillation-equation term (code 13); when none is
    // stored, the first such term of the pool, which is then stored.
    INonLinearity* FrstNonLinearitySCDEquation() override;
    void SetFrstNonLinearitySCDEquation(INonLinearity* term) override { m_firstScd = term; }
    void SetJacobianMode(int mode) override { m_jacobianMode = mode; }
    const char* GetModelDir() override { return m_modelDir.c_str(); }
    void SetModelDir(const char* dir) override { m_modelDir = dir ? dir : ""; }
    const char* GetHqclLogFile() override { return m_hqclLogName.c_str(); }
    void SetHqclLogFile(const char* path) override { m_hqclLogName = path ? path : ""; }
    const char* GetEqnLogFile() override { return m_eqnLogName.c_str(); }
    void SetEqnLogFile(const char* path) override { m_eqnLogName = path ? path : ""; }
    bool GetHqcl() override { return m_hqcl; }
    // Also sets the log flag of the correlation instances made so far.
    void SetHqcl(bool on) override;
    bool GetEqn() override { return m_eqn; }
    void SetEqn(bool on) override { m_eqn = on; }
    int GetRank() override { return m_rank; }
    void SetRank(int rank) override { m_rank = rank; }
    int GetTrace() override { return m_trace; }
    void SetTrace(int trace) override { m_trace = trace; }
    void CreateNLWrapObject(const char* name, INonLinearity** out) override;
    void StreamWriteV1(std::ostream* os) override;
    void StreamWriteV2(std::ostream* os) override;
    void StreamWriteV3(std::ostream* os) override;
    void StreamWriteV4(std::ostream* os) override;
    void StreamWriteV5(std::ostream* os) override;
    void StreamReadV1(int count, ILPVariable** vars, ILPEquation** eqns, ILPNonZero** nzs,
                      std::istream* is) override;
    void StreamReadV2(int count, ILPVariable** vars, ILPEquation** eqns, ILPNonZero** nzs,
                      std::istream* is) override;
    void StreamReadV3(int count, ILPVariable** vars, ILPEquation** eqns, ILPNonZero** nzs,
                      std::istream* is) override;
    void StreamReadV4(int count, ILPVariable** vars, ILPEquation** eqns, ILPNonZero** nzs,
                      std::istream* is) override;
    void StreamReadV5(int count, ILPVariable** vars, ILPEquation** eqns, ILPNonZero** nzs,
                      std::istream* is) override;
    // Each persisted term of `other` is made again here by its identifier
    // (by its code when it has none), with its active flag, its constants'
    // values, its row eqns[r-1] and its variables vars[v-1], and added. An
    // index outside a table throws before anything is added.
    void AppendNonLinearModel(INonLinearModel* other, ILPVariable** vars,
                              ILPEquation** eqns) override;
    void RemoveNonLinearity(INonLinearity* term) override;
    // Terms that are not in the pool are skipped; repeats count once.
    void BulkRemoveNonLinearity(INonLinearity** terms, int count) override;

    // Not part of the interfaces: the open logs (null when closed), for the
    // equation terms and the correlation binding, and the wiring of another
    // block list implementation (taken over; null restores an empty list).
    std::ostream* EqnLog() { return m_eqnLog.is_open() ? &m_eqnLog : nullptr; }
    std::ostream* HqclLog() { return m_hqclLog.is_open() ? &m_hqclLog : nullptr; }
    int GetJacobianMode() const { return m_jacobianMode; }
    // The shared correlation instance for the library correlation named `id`,
    // loading the library on first use; throws ZEM_Exception when it cannot.
    IQCLCorrelation* QCLInstance(const std::string& id);
    void SetNLBlockList(INonLinearBlockList* blocks);

protected:
    void ReIndexRowNonLinearityMap(int removedRow) override;
    void MapNonLinearityToRow(int row, INonLinearity* term) override;
    void FullReIndexNonLinearities() override;
    void ResetNonLinearityCollection() override;
    void IncrNLTypeCount(int16_t code) override;
    void BuildFastCollections() override;
    INonLinearity* InternalFrstNonLinearityObjectByRow() override;
    INonLinearity* InternalNextNonLinearityObjectByRow() override;
    void UpdateResidualValue(ILPEquation* eqn) override;

private:
    // One decoded term record of the binary section.
    struct TermRecord {
        int16_t type;
        int16_t active;
        int32_t row;
        int32_t nVars;
        int32_t nUnique;
        int32_t nConsts;
        std::string id;
    };

    // Enters a checked term in the pool. `entries` (one per distinct
    // variable) are a read term's matrix entries; without them the row's
    // entries are looked up or made, and the variables marked nonlinear.
    int Insert(INonLinearity* term, ILPNonZero* const* entries);
    // True when rows were renumbered since the last call (the equation
    // list's renumbering epoch moved, or the number of equations dropped).
    bool RowsRenumbered();
    // Makes the row lists current (rebuilding them when stale).
    void EnsureRowMap();
    const std::vector<INonLinearity*>* RowTerms(int row);
    void MarkRowMapStale() { m_rowMapStale = true; }
    // Lowers the counts that adding the term raised.
    void Detach(INonLinearity* term);
    // Linear part of a row through the matrix's row walk; sets *eqn to the
    // row found on the first entry (left as is when the row has none).
    double LinearRowSum(int row, ILPEquation** eqn);
    double TermsSum(const std::vector<INonLinearity*>& terms);
    // Walks the rows in matrix row order and calls done(row, linear sum) once
    // for each row that has entries, through the row-ordered snapshot when it
    // can stand in for the matrix.
    template <typename RowDone>
    void LinearRowSums(RowDone done);
    // Starts a pass that marks the rows it visits in m_rowSeen; returns the
    // size of the row map.
    size_t StartRowPass();
    void ThrowIfUsed(ILPVariable* var, const char* place);
    bool InPool(INonLinearity* term) const;

    void WriteFixedRecords(std::ostream* os, size_t idField, size_t recordSize);
    void WriteArrays(std::ostream* os, const std::vector<INonLinearity*>& terms);
    std::vector<INonLinearity*> PersistedTerms();
    void ReadSection(int version, int count, ILPVariable** vars, ILPEquation** eqns,
                     ILPNonZero** nzs, std::istream* is);
    // The stream version whose layout a file version selects (1 to 5).
    static int LayoutFor(double version);

    ILPVariableList* m_vars;
    ILPEquationList* m_eqns;
    const LPEquationList* m_eqnImpl;  // null for other list implementations
    uint64_t m_eqnEpoch = 0;
    ILPMatrix* m_matrix = nullptr;
    INonLinearityFactory* m_factory = nullptr;
    INonLinearBlockList* m_blocks = nullptr;
    INLModelExtCachedEvalRegistration* m_extRegistry = nullptr;

    std::vector<INonLinearity*> m_pool;
    size_t m_poolCursor = 0;
    int m_persisted = 0;
    std::map<int16_t, int32_t> m_typeCounts;
    // Number of pool terms that take each variable.
    std::unordered_map<ILPVariable*, int> m_varUse;
    std::vector<INonLinearity*> m_trash;
    std::vector<ILPEquation*> m_trashRows;

    // Terms of each row by row index; stale after removals.
    std::vector<std::vector<INonLinearity*>> m_rowMap;
    bool m_rowMapStale = false;
    int m_rowMapEqnCount = 0;
    const std::vector<INonLinearity*>* m_rowCursorList = nullptr;
    size_t m_rowCursor = 0;
    // All terms in row order, for the by-row walk.
    std::vector<INonLinearity*> m_byRow;
    bool m_byRowStale = true;
    size_t m_byRowCursor = 0;
    // Rows already visited in the current EvaluateModel pass.
    std::vector<uint32_t> m_rowSeen;
    uint32_t m_evalEpoch = 0;
    // Evaluation copy of the variables' values (position = index - 1) and
    // the row-ordered copy of the matrix's coefficients.
    const LPVariableList* m_varImpl;
    LPMatrix* m_matrixImpl = nullptr;
    std::vector<double> m_values;
    NLLinearSnapshot m_snapshot;

    std::string m_modelDir;
    std::string m_hqclLogName;
    std::string m_eqnLogName;
    bool m_hqcl = false;
    bool m_eqn = false;
    std::ofstream m_hqclLog;
    std::ofstream m_eqnLog;
    int m_rank = -1;
    int m_trace = 0;
    int m_jacobianMode = 0;
    ISCDClosedModel* m_scdClosed = nullptr;
    INonLinearity* m_firstScd = nullptr;
    // The correlation library binding, made on first use.
    QCLBinding& Qcl();
    std::unique_ptr<QCLBinding> m_qcl;
};
