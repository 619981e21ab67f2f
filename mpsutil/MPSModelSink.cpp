#include "mpsutil/MPSModelSink.h"

#include <algorithm>

#include "lpdata/ILPStdDataMgr.h"
#include "lpdata/ZEMTypes.h"

bool MPSModelSink::Attach(ILPStdDataMgr* model) {
    m_varList = nullptr;
    m_eqnList = nullptr;
    m_matrix = nullptr;
    if (model != nullptr) {
        model->GetVariableCollectionIntf(&m_varList);
        model->GetEquationCollectionIntf(&m_eqnList);
        model->GetMatrixIntf(&m_matrix);
    }
    NoteLibraryParts();
    return m_varList != nullptr && m_eqnList != nullptr && m_matrix != nullptr;
}

bool MPSModelSink::AttachVariables(ILPStdDataMgr* model) {
    m_varList = nullptr;
    if (model != nullptr) model->GetVariableCollectionIntf(&m_varList);
    NoteLibraryParts();
    return m_varList != nullptr;
}

void MPSModelSink::Detach() {
    m_varList = nullptr;
    m_eqnList = nullptr;
    m_matrix = nullptr;
    NoteLibraryParts();
    Forget();
}

void MPSModelSink::Forget() {
    m_lastColumn = nullptr;
    m_lastEquation = nullptr;
    m_lastEquationIndex = 0;
    m_lastVariable = nullptr;
    m_lastEquationName.Clear();
    m_lastVariableName.Clear();
    m_typeLog.clear();
    m_pendingTypeAt.clear();
    m_pendingTypes.clear();
}

void MPSModelSink::NoteLibraryParts() {
    m_varImpl = dynamic_cast<const LPVariableList*>(m_varList);
    m_eqnImpl = dynamic_cast<const LPEquationList*>(m_eqnList);
    m_matrixImpl = dynamic_cast<LPMatrix*>(m_matrix);
}

ILPEquation* MPSModelSink::FindEquation(const char* name) const {
    return m_eqnList->EqnNameLookup(name);
}

ILPVariable* MPSModelSink::FindVariable(const char* name) const {
    return m_varList->VarNameLookup(name);
}

ILPEquation* MPSModelSink::NewEquation(const char* name, int16_t type) {
    ILPEquation* eqn = nullptr;
    m_eqnList->CreateNewEquationObject(&eqn);
    if (eqn == nullptr) return nullptr;
    eqn->SetName(name);
    if (type != 0) eqn->SetType(type);
    m_eqnList->AddEquationObject(eqn);
    return eqn;
}

ILPVariable* MPSModelSink::NewVariable(const char* name) {
    ILPVariable* var = nullptr;
    m_varList->CreateNewVariableObject(&var);
    if (var == nullptr) return nullptr;
    var->SetName(name);
    m_varList->AddVariableObject(var);
    return var;
}

ILPVariable* MPSModelSink::LookUpColumn(const char* name) {
    ILPVariable* var = FindVariable(name);
    if (var != nullptr) m_lastColumn = var;
    return var;
}

ILPVariable* MPSModelSink::NewColumn(const char* name) {
    ILPVariable* var = NewVariable(name);
    if (var != nullptr) m_lastColumn = var;
    return var;
}

ILPEquation* MPSModelSink::FindOrCreateEquation(const char* name, size_t n, int& index) {
    if (m_lastEquation != nullptr && m_lastEquationName.Is(name, n)) {
        index = m_lastEquationIndex;
        return m_lastEquation;
    }
    ILPEquation* eqn = FindEquation(name, index);
    if (eqn == nullptr) {
        eqn = NewEquation(name);
        if (eqn == nullptr) return nullptr;
        if (m_eqnImpl != nullptr) index = eqn->GetIndex();
    }
    m_lastEquation = m_lastEquationName.Set(name, n) ? eqn : nullptr;
    m_lastEquationIndex = index;
    return eqn;
}

ILPVariable* MPSModelSink::FindOrCreateVariable(const char* name, size_t n) {
    if (IsLastVariable(name, n)) return m_lastVariable;
    ILPVariable* var = FindVariable(name);
    if (var == nullptr) var = NewVariable(name);
    if (var == nullptr) return nullptr;
    m_lastVariable = m_lastVariableName.Set(name, n) ? var : nullptr;
    return var;
}

void MPSModelSink::DeferRowType(ILPEquation* eqn, int index, int16_t type) {
    if (index > 0) {
        constexpr size_t kBatch = 4096;
        m_typeLog.push_back(static_cast<uint32_t>(index) |
                            static_cast<uint64_t>(static_cast<uint16_t>(type)) << 32);
        if (m_typeLog.size() >= kBatch) FoldTypeLog();
        return;
    }
    if (m_pendingTypes.empty() || m_pendingTypes.back().first != eqn ||
        m_pendingTypes.back().second != type) {
        m_pendingTypes.emplace_back(eqn, type);
    }
}

void MPSModelSink::FoldTypeLog() {
    for (const uint64_t entry : m_typeLog) {
        const size_t at = static_cast<uint32_t>(entry);
        if (at >= m_pendingTypeAt.size()) {
            m_pendingTypeAt.resize(std::max(at + 1, 2 * m_pendingTypeAt.size()), 0);
        }
        if (m_pendingTypeAt[at] != ZEM_EQN_OBJECTIVE)
            m_pendingTypeAt[at] = static_cast<int16_t>(static_cast<uint16_t>(entry >> 32));
    }
    m_typeLog.clear();
}

// Sets the types that the section's keys gave: a key sets its row's type
// unless the row is the objective.
void MPSModelSink::ApplyDeferredRowTypes() {
    FoldTypeLog();
    for (size_t at = 1; at < m_pendingTypeAt.size(); ++at) {
        if (m_pendingTypeAt[at] == 0) continue;
        ILPEquation* eqn = nullptr;
        m_eqnList->RetrieveEquationObject(static_cast<int>(at), &eqn);
        if (eqn != nullptr && eqn->GetType() != ZEM_EQN_OBJECTIVE) {
            eqn->SetType(m_pendingTypeAt[at]);
        }
    }
    m_pendingTypeAt.clear();
    for (const auto& [eqn, type] : m_pendingTypes)
        if (eqn->GetType() != ZEM_EQN_OBJECTIVE) eqn->SetType(type);
    m_pendingTypes.clear();
}
