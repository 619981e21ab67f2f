#include "mpsutil/MPSModelSink.h"

#include "lpdata/ILPStdDataMgr.h"

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

