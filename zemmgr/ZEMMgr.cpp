#include "zemmgr/ZEMMgr.h"

#include <fstream>
#include <memory>
#include <new>
#include <vector>

#include "lpdata/ILPEquation.h"
#include "lpdata/ILPEquationList.h"
#include "lpdata/ILPMatrix.h"
#include "lpdata/ILPNonZero.h"
#include "lpdata/ILPSpOrdSet.h"
#include "lpdata/ILPVariable.h"
#include "lpdata/ILPVariableCollection.h"
#include "lpdata/ILPVariableList.h"
#include "lpdata/LPEquationList.h"
#include "lpdata/LPSpOrdSet.h"
#include "lpdata/LPVariableCollection.h"
#include "lpdata/LPVariableList.h"
#include "lpdata/ZEMException.h"
#include "nlpdata/NonLinearModel.h"
#include "zemmgr/ZEMHierarchy.h"
#include "zemmgr/ZEMModelBuilder.h"
#include "zemmgr/ZEMModelExecution.h"
#include "zemmgr/ZEMModelFile.h"
#include "zemmgr/ZEMModelTransform.h"
#include "zemmgr/ZEMOptionTable.h"

const char* const ZEMMgr::kEmptyString = "";

void ZEMObjectFactory(IZEMMgr** out) {
    if (out == nullptr) return;
    *out = new (std::nothrow) ZEMMgr();
}

void ZEMDataObjectFactory(IZEMMgr** out) { ZEMObjectFactory(out); }

ZEMMgr::ZEMMgr() { Start(); }

ZEMMgr::~ZEMMgr() { Stop(); }

void ZEMMgr::Start() {
    m_vars = new LPVariableList();
    m_eqns = new LPEquationList();
    m_sets = new LPSpOrdSetList();
    m_nonlinear = new NonLinearModel(m_vars, m_eqns);
    m_options = new ZEMOptionTable();
    m_builder = nullptr;
    m_execution = nullptr;
    m_transform = nullptr;
    m_hierarchy = nullptr;
    m_matrixIncludesObjective = false;
    m_valuesInitialized = true;
    m_baseDimStored = 0;
    m_baseVars = m_baseEqns = m_baseNonZeros = 0;
    m_lastStream.clear();
    m_rank = -1;
    m_trace = 0;
    m_hybrid = false;
}

void ZEMMgr::Stop() {
    // The terms and the matrix entries point at variables and rows, so the
    // nonlinear model goes before the lists.
    if (m_nonlinear != nullptr) m_nonlinear->Destroy();
    m_nonlinear = nullptr;
    if (m_vars != nullptr) m_vars->Destroy();
    m_vars = nullptr;
    if (m_eqns != nullptr) m_eqns->Destroy();
    m_eqns = nullptr;
    delete m_sets;
    m_sets = nullptr;
    delete m_options;
    m_options = nullptr;
    delete m_builder;
    m_builder = nullptr;
    delete m_execution;
    m_execution = nullptr;
    delete m_transform;
    m_transform = nullptr;
    delete m_hierarchy;
    m_hierarchy = nullptr;
    for (ILPVariableCollection* col : m_collections) col->Destroy();
    m_collections.clear();
    m_collectionCursor = m_collections.end();
    m_blockParameters.clear();
    m_lastStream.clear();
}

void ZEMMgr::PurgeContent() {
    Stop();
    Start();
}

void ZEMMgr::IfDirtyPurgeContent() {
    int n = 0, m = 0, nz = 0;
    ModelDimension(n, m, nz);
    if (n >= 1 || m >= 1 || nz >= 1) PurgeContent();
}

int ZEMMgr::IAddRef() { return ++m_refCount; }

int ZEMMgr::IRelease() {
    const int count = --m_refCount;
    if (count == 0) Destroy();
    return count;
}

void ZEMMgr::Destroy() { delete this; }

// ---- title, dimensions, component access -------------------------------

void ZEMMgr::SetModelTitle(const char* title) { m_title = title ? title : ""; }
void ZEMMgr::GetModelTitle(std::string& title) { title = m_title; }

void ZEMMgr::ModelDimension(int& n, int& m, int& nz) {
    n = m_vars->NumberOfVariables();
    m = m_eqns->NumberOfEquations();
    nz = m_nonlinear->NumberOfNonZeros();
}

ILPMatrix* ZEMMgr::Matrix() {
    ILPMatrix* matrix = nullptr;
    m_nonlinear->GetMatrixIntf(&matrix);
    return matrix;
}

void ZEMMgr::GetVariableCollectionIntf(ILPVariableList** out) { *out = m_vars; }
void ZEMMgr::GetEquationCollectionIntf(ILPEquationList** out) { *out = m_eqns; }
void ZEMMgr::GetMatrixIntf(ILPMatrix** out) { m_nonlinear->GetMatrixIntf(out); }
void ZEMMgr::GetSpOrdSetCollectionIntf(ILPSpOrdSetList** out) { *out = m_sets; }
void ZEMMgr::GetNonLinearModelIntf(INonLinearModel** out) { *out = m_nonlinear; }
void ZEMMgr::GetNonLinearityCollectionIntf(INonLinearityList** out) { *out = m_nonlinear; }
void ZEMMgr::GetOptionTableIntf(IZEMOptionTable** out) { *out = m_options; }

void ZEMMgr::IncludeObjectiveInMatrix() { m_matrixIncludesObjective = true; }
bool ZEMMgr::MatrixIncludesObjective() { return m_matrixIncludesObjective; }
void ZEMMgr::SetValuesInitialized(bool v) { m_valuesInitialized = v; }
bool ZEMMgr::GetValuesInitialized() { return m_valuesInitialized; }
void ZEMMgr::SetHybridModel(bool hybrid) { m_hybrid = hybrid; }
bool ZEMMgr::IsHybridModel() { return m_hybrid; }

int ZEMMgr::GetRank() { return m_rank; }
void ZEMMgr::SetRank(int rank) {
    m_rank = rank;
    m_nonlinear->SetRank(rank);
}
int ZEMMgr::GetTrace() { return m_trace; }
void ZEMMgr::SetTrace(int trace) {
    m_trace = trace;
    m_nonlinear->SetTrace(trace);
}

const char* ZEMMgr::GetModelDir() { return m_modelDir.c_str(); }

void ZEMMgr::SetModelDir(const char* dir) {
    // The library's own empty text is recognised by its address.
    if (dir == nullptr || dir == kEmptyString) return;
    m_modelDir = dir;
    if (m_modelDir.empty() || m_modelDir.back() != '\\') m_modelDir += '\\';
}

void ZEMMgr::StoreBaseModelDimension() {
    ModelDimension(m_baseVars, m_baseEqns, m_baseNonZeros);
    m_baseDimStored = 1;
}

void ZEMMgr::GetBaseModelDimension(int& n, int& m, int& nz) {
    if (m_baseDimStored == 0) {
        ModelDimension(n, m, nz);
        return;
    }
    n = m_baseVars;
    m = m_baseEqns;
    nz = m_baseNonZeros;
}

// ---- removal, trash and end-of-read processing --------------------------

void ZEMMgr::RemoveVariable(const char* name) {
    if (ILPVariable* var = m_vars->VarNameLookup(name)) RemoveVariable(var);
}

void ZEMMgr::RemoveVariable(ILPVariable* var) {
    if (var == nullptr) return;
    // Refuses a variable that a nonlinear term uses, before anything changes.
    m_nonlinear->EliminateVariable(var);
    m_sets->RemoveVariable(var);
    for (ILPVariableCollection* col : m_collections) col->RemoveVariable(var);
    m_vars->RemoveVariable(var);
}

void ZEMMgr::RemoveEquation(const char* name) {
    if (ILPEquation* eqn = m_eqns->EqnNameLookup(name)) RemoveEquation(eqn);
}

void ZEMMgr::RemoveEquation(ILPEquation* eqn) {
    if (eqn == nullptr) return;
    m_nonlinear->EliminateEquation(eqn);
    m_eqns->RemoveEquation(eqn);
}

void ZEMMgr::TrashVariable(ILPVariable* var) {
    m_nonlinear->TrashVariable(var);
    m_sets->RemoveVariable(var);
    // Collections hold plain pointers: drop the variable from them now so
    // none is left pointing at it once the trash is emptied.
    for (ILPVariableCollection* col : m_collections) col->RemoveVariable(var);
    m_vars->TrashVariable(var);
}

void ZEMMgr::TrashEquation(ILPEquation* eqn) {
    m_nonlinear->TrashEquation(eqn);
    m_eqns->TrashEquation(eqn);
}

void ZEMMgr::EmptyAllTrash() {
    m_nonlinear->EmptyAllTrash();
    m_vars->EmptyTrash();
    m_eqns->EmptyTrash();
}

void ZEMMgr::ProcessFullCollection() {
    ILPMatrix* matrix = Matrix();
    for (ILPEquation* e = m_eqns->FrstEquationObject(); e; e = m_eqns->NextEquationObject())
        e->SetNumberNZ(matrix->NonZerosInRow(e->GetIndex()));
    for (ILPVariable* v = m_vars->FrstVariableObject(); v; v = m_vars->NextVariableObject())
        v->SetNumberNZ(matrix->NonZerosInColumn(v->GetIndex()));
    m_vars->ProcessVariableCollection();
    m_eqns->ProcessEquationCollection();
    if (m_sets != nullptr) m_sets->ProcessSpOrdSetCollection();
    m_nonlinear->ProcessNonLinearModel();
    RemoveEmptyEquations();
}

// The rows go as one batch through the trash (their terms, entries and the
// rows themselves, each container compacting and renumbering once), so the
// cost is linear in the model whatever the number of empty rows. Anything
// already waiting in the nonlinear model's, the matrix's or the equation
// list's trash is emptied with them; trashed variables stay in theirs.
void ZEMMgr::RemoveEmptyEquations() {
    std::vector<ILPEquation*> empty;
    for (ILPEquation* e = m_eqns->FrstEquationObject(); e; e = m_eqns->NextEquationObject())
        if (e->GetNumberNZ() == 0) empty.push_back(e);
    if (empty.empty()) return;
    for (ILPEquation* e : empty) TrashEquation(e);
    m_nonlinear->EmptyAllTrash();
    m_eqns->EmptyTrash();
}

void ZEMMgr::ReIndexConnectionEqn() {
    // Model indices follow the list positions.
    for (ILPVariable* v = m_vars->FrstVariableObject(); v; v = m_vars->NextVariableObject())
        v->SetModelIndex(v->GetIndex());
    for (ILPEquation* e = m_eqns->FrstEquationObject(); e; e = m_eqns->NextEquationObject())
        e->SetModelIndex(e->GetIndex());
    ILPMatrix* matrix = Matrix();
    for (ILPNonZero* nz = matrix->FrstNonZeroObject(); nz; nz = matrix->NextNonZeroObject())
        nz->SetModelIndex(nz->GetIndex());
}

void ZEMMgr::InsertMatrixEntry(const char* row, const char* col, double value,
                               ILPNonZero** result) {
    ILPEquation* eqn = row ? m_eqns->EqnNameLookup(row) : nullptr;
    ILPVariable* var = col ? m_vars->VarNameLookup(col) : nullptr;
    if (eqn == nullptr || var == nullptr)
        ZEM_RAISE(zemsrc::kZemMgr, "ZEMMgr Error",
                  std::string("InsertMatrixEntry unknown row or column : ") + (row ? row : "") +
                      " : " + (col ? col : ""),
                  "ZEMMgr::InsertMatrixEntry");
    ILPMatrix* matrix = Matrix();
    ILPNonZero* nz = nullptr;
    matrix->CreateNewNonZeroObject(&nz);
    if (nz == nullptr)
        ZEM_RAISE(zemsrc::kZemMgr, "LPStdDataMgr Error",
                  "InsertMatrixEntry Unable to create new NonZero object",
                  "ZEMMgr::InsertMatrixEntry");
    nz->SetEquationPtr(eqn);
    nz->SetVariablePtr(var);
    nz->SetCoefficient(value);
    ILPNonZero* added = matrix->AddNonZeroObject(nz);
    if (result != nullptr) *result = added;
}

// ---- named variable collections ----------------------------------------

bool ZEMMgr::AddNamedVarCollection(ILPVariableCollection* col) {
    if (col == nullptr) return false;
    ILPVariableCollection* same = nullptr;
    FindNamedVarCollection(col->Name(), &same);
    if (same != nullptr) return false;
    m_collections.push_back(col);
    return true;
}

void ZEMMgr::NewNamedVarCollection(const char* name, ILPVariableCollection** out) {
    ILPVariableCollection* col = nullptr;
    FindNamedVarCollection(name, &col);
    if (col == nullptr) {
        col = new LPVariableCollection();
        if (name != nullptr) col->SetName(name);
        m_collections.push_back(col);
    }
    if (out != nullptr) *out = col;
}

bool ZEMMgr::RemoveNamedVarCollection(const char* name) {
    if (name == nullptr) return false;
    for (auto it = m_collections.begin(); it != m_collections.end(); ++it) {
        if (std::string((*it)->Name()) != name) continue;
        if (m_collectionCursor == it) m_collectionCursor = m_collections.end();
        (*it)->Destroy();
        m_collections.erase(it);
        return true;
    }
    return false;
}

void ZEMMgr::FindNamedVarCollection(const char* name, ILPVariableCollection** out) {
    *out = nullptr;
    if (name == nullptr) return;
    for (ILPVariableCollection* col : m_collections) {
        if (std::string(col->Name()) == name) {
            *out = col;
            return;
        }
    }
}

void ZEMMgr::FrstNamedVarCollection(ILPVariableCollection** out) {
    m_collectionCursor = m_collections.begin();
    *out = m_collectionCursor == m_collections.end() ? nullptr : *m_collectionCursor;
}

void ZEMMgr::NextNamedVarCollection(ILPVariableCollection** out) {
    if (m_collectionCursor != m_collections.end()) ++m_collectionCursor;
    *out = m_collectionCursor == m_collections.end() ? nullptr : *m_collectionCursor;
}

// ---- saving and restoring ----------------------------------------------

ZEMModelContent ZEMMgr::FileContent() {
    ZEMModelContent content;
    content.vars = m_vars;
    content.eqns = m_eqns;
    content.matrix = Matrix();
    content.sets = m_sets;
    content.nonlinear = m_nonlinear;
    content.options = m_options;
    return content;
}

ZEMModelState ZEMMgr::FileState() const {
    ZEMModelState state;
    state.title = m_title;
    state.matrixIncludesObjective = m_matrixIncludesObjective;
    state.valuesInitialized = m_valuesInitialized;
    state.hybrid = m_hybrid;
    return state;
}

void ZEMMgr::WriteFrame(std::ostream* os) {
    const std::vector<ILPVariableCollection*> cols(m_collections.begin(), m_collections.end());
    ZEMModelFile::Write(os, m_fileVersion, FileState(), FileContent(), cols);
}

void ZEMMgr::ReadFrame(std::istream* is, bool append) {
    const ZEMModelContent content = FileContent();
    ZEMModelState state = FileState();
    ZEMCollectionSink sink;
    sink.make = []() -> ILPVariableCollection* { return new LPVariableCollection(); };
    sink.add = [this](ILPVariableCollection* col) { return AddNamedVarCollection(col); };
    auto apply = [&]() {
        m_title = state.title;
        m_matrixIncludesObjective = state.matrixIncludesObjective;
        m_valuesInitialized = state.valuesInitialized;
        m_hybrid = state.hybrid;
    };
    try {
        ZEMModelFile::Read(is, append ? ZEMModelFile::Mode::Append : ZEMModelFile::Mode::Replace,
                           content, state, m_modelDir, sink);
    } catch (...) {
        apply();  // what was read before the error stays
        throw;
    }
    apply();
}

namespace {

// Sets a value for the life of a scope.
class VersionOverride {
public:
    VersionOverride(double& slot, double value) : m_slot(slot), m_saved(slot) { slot = value; }
    ~VersionOverride() { m_slot = m_saved; }

private:
    double& m_slot;
    double m_saved;
};

}  // namespace

void ZEMMgr::PersistAsFile(const char* path) {
    // Refuse before the file is created, so a refused save writes nothing.
    ZEMModelFile::CheckWritable(FileState(), FileContent(),
                                std::vector<ILPVariableCollection*>(m_collections.begin(), m_collections.end()),
                                "ZEMMgr::PersistAsFile");
    try {
        ZEMModelFile::WriteToPath(path, "ZEMMgr::PersistAsFile", zemsrc::kZemMgr,
                                  [this](std::ofstream* os) { PersistAsFileStream(os); });
    } catch (ZEM_Exception&) {
        throw;
    } catch (std::exception& e) {
        ZEM_RAISE(zemsrc::kZemMgr, "ZEMMgr Error", e.what(), "ZEMMgr::PersistAsFile");
    } catch (...) {
        ZEM_RAISE(zemsrc::kZemMgr, "ZEMMgr Error", "Unhandled Exception from PersistAsFile",
                  "ZEMMgr::PersistAsFile");
    }
}

void ZEMMgr::PersistAsFile(const char* path, double version) {
    VersionOverride scoped(m_fileVersion, version);
    PersistAsFile(path);
}

void ZEMMgr::PersistAsFileStream(std::ofstream* os) {
    os->clear();
    WriteFrame(os);
}

void ZEMMgr::PersistAsStream(std::stringstream* ss) {
    ss->clear();
    WriteFrame(ss);
}

void ZEMMgr::PersistAsStream(std::stringstream* ss, double version) {
    VersionOverride scoped(m_fileVersion, version);
    PersistAsStream(ss);
}

void ZEMMgr::PersistToLocalStream() {
    m_lastStream.str(std::string());
    m_lastStream.clear();
    PersistAsStream(&m_lastStream);
}

void ZEMMgr::GetLastSerializationStream(std::stringstream** out) {
    m_lastStream.clear();
    m_lastStream.seekp(0);
    // The read position is rewound too, so the stream can be read again.
    m_lastStream.seekg(0);
    *out = &m_lastStream;
}

bool ZEMMgr::RestoreFromFile(const char* path) {
    std::ifstream in(path ? path : "", std::ios::in | std::ios::binary);
    if (in.fail() || in.bad()) return false;
    RestoreFromStream(&in);
    return true;
}

void ZEMMgr::RestoreFromStream(std::istream* is) {
    IfDirtyPurgeContent();
    ReadFrame(is, false);
    ProcessFullCollection();
}

void ZEMMgr::AppendFromFile(const char* path) {
    std::ifstream in(path ? path : "", std::ios::in | std::ios::binary);
    if (in.fail() || in.bad()) return;
    AppendFromStream(&in);
}

void ZEMMgr::AppendFromStream(std::istream* is) {
    ReadFrame(is, true);
    ProcessFullCollection();
}

// ---- companions --------------------------------------------------------

void ZEMMgr::GetModelBuilderIntf(IZEMModelBuilder** out) {
    if (m_builder == nullptr) m_builder = new ZEMModelBuilder(this);
    *out = m_builder;
}

void ZEMMgr::GetModelExecutionIntf(IZEMModelExecution** out) {
    if (m_execution == nullptr) m_execution = new ZEMModelExecution(this);
    *out = m_execution;
}

void ZEMMgr::GetModelTransformIntf(IZEMModelTransform** out) {
    if (m_transform == nullptr) m_transform = new ZEMModelTransform(this);
    *out = m_transform;
}

void ZEMMgr::GetZEMHierarchyIntf(IZEMHierarchy** out) {
    if (m_hierarchy == nullptr) m_hierarchy = new ZEMHierarchy(this);
    *out = m_hierarchy;
}

// ---- logs, names and the parts that are not in this build ---------------

void ZEMMgr::OpenHqclEqnLogs(const char* hqclLog, const char* eqnLog, int flags) {
    m_nonlinear->SetHqclLogFile(hqclLog ? hqclLog : "");
    m_nonlinear->SetEqnLogFile(eqnLog ? eqnLog : "");
    // Bit 0 turns the correlation log on, bit 1 the equation log.
    m_nonlinear->SetHqcl((flags & 1) != 0);
    m_nonlinear->SetEqn((flags & 2) != 0);
    m_nonlinear->OpenLogFiles();
}

void ZEMMgr::CloseHqclEqnLogs() { m_nonlinear->CloseLogFiles(); }

void ZEMMgr::NameScreen(std::string& name) { ZEMNameScreen(name); }

void ZEMMgr::GetNLBlockParameterList(const char*, INLParameterList** out) {
    if (out != nullptr) *out = nullptr;
}
void ZEMMgr::UpdateNLBlockParametersInZOKA(const char*) {}
void ZEMMgr::PersistExternalModelParameters(const char*) {}
void ZEMMgr::RestoreExternalModelParameters(const char*) {}
bool ZEMMgr::HasSCDModel() { return false; }
void ZEMMgr::SetSCDControl(ISCDControl* control, std::string name) {
    m_scdControl = control;
    m_scdName = std::move(name);
}
ISCDControl* ZEMMgr::GetSCDControl() { return m_scdControl; }

void ZEMMgr::XMPSWriteXML(std::stringstream*, int* status) {
    if (status != nullptr) *status = 1;
}
void ZEMMgr::XMPSReadXML(std::stringstream*, int* status) {
    if (status != nullptr) *status = 1;
}
