#include "lpdata/LPStdDataMgr.h"

#include <cmath>
#include <new>

#include "lpdata/ILPEquation.h"
#include "lpdata/ILPNonZero.h"
#include "lpdata/ILPVariable.h"
#include "lpdata/LPEquationList.h"
#include "lpdata/LPMatrix.h"
#include "lpdata/LPSpOrdSet.h"
#include "lpdata/LPVariableList.h"
#include "lpdata/ZEMException.h"

LPStdDataMgr::LPStdDataMgr()
    : m_vars(new LPVariableList()),
      m_eqns(new LPEquationList()),
      m_matrix(new LPMatrix(m_vars, m_eqns)),
      m_sets(new LPSpOrdSetList()) {}

LPStdDataMgr::~LPStdDataMgr() {
    // The matrix goes first: its nonzeros point into the lists.
    delete m_sets;
    m_matrix->Destroy();
    m_eqns->Destroy();
    m_vars->Destroy();
}

void CreateLPStdDataObject(ILPStdDataMgr** out) {
    if (out == nullptr) return;
    try {
        *out = new LPStdDataMgr();
    } catch (const std::bad_alloc&) {
        *out = nullptr;
    }
}

void LPStdDataMgr::ModelDimension(int& n, int& m, int& nz) {
    n = m_vars->NumberOfVariables();
    m = m_eqns->NumberOfEquations();
    nz = m_matrix->NumberOfNonZeros();
}

void LPStdDataMgr::GetVariableCollectionIntf(ILPVariableList** out) {
    if (out) *out = m_vars;
}
void LPStdDataMgr::GetEquationCollectionIntf(ILPEquationList** out) {
    if (out) *out = m_eqns;
}
void LPStdDataMgr::GetMatrixIntf(ILPMatrix** out) {
    if (out) *out = m_matrix;
}
void LPStdDataMgr::GetSpOrdSetCollectionIntf(ILPSpOrdSetList** out) {
    if (out) *out = m_sets;
}

void LPStdDataMgr::RemoveVariable(const char* name) { RemoveVariable(m_vars->VarNameLookup(name)); }

void LPStdDataMgr::RemoveVariable(ILPVariable* var) {
    if (var == nullptr) return;
    m_matrix->EliminateVariable(var);
    m_sets->RemoveVariable(var);
    m_vars->RemoveVariable(var);
}

void LPStdDataMgr::RemoveEquation(const char* name) { RemoveEquation(m_eqns->EqnNameLookup(name)); }

void LPStdDataMgr::RemoveEquation(ILPEquation* eqn) {
    if (eqn == nullptr) return;
    m_matrix->EliminateEquation(eqn);
    m_eqns->RemoveEquation(eqn);
}

void LPStdDataMgr::InsertMatrixEntry(const char* row, const char* col, double value,
                                     ILPNonZero** result) {
    if (result) *result = nullptr;
    ILPEquation* eqn = m_eqns->EqnNameLookup(row);
    if (eqn == nullptr)
        ZEM_RAISE(zemsrc::kLpData, "LPStdDataMgr Error",
                  std::string("InsertMatrixEntry Unknown Equation name : ") + (row ? row : ""),
                  "LPStdDataMgr::InsertMatrixEntry");
    ILPVariable* var = m_vars->VarNameLookup(col);
    if (var == nullptr)
        ZEM_RAISE(zemsrc::kLpData, "LPStdDataMgr Error",
                  std::string("InsertMatrixEntry Unknown Variable name : ") + (col ? col : ""),
                  "LPStdDataMgr::InsertMatrixEntry");
    ILPNonZero* nz = nullptr;
    m_matrix->CreateNewNonZeroObject(&nz);
    if (nz == nullptr)
        ZEM_RAISE(zemsrc::kLpData, "LPStdDataMgr Error",
                  "InsertMatrixEntry Unable to create new NonZero object",
                  "LPStdDataMgr::InsertMatrixEntry");
    nz->SetEquationPtr(eqn);
    nz->SetVariablePtr(var);
    nz->SetCoefficient(value);
    ILPNonZero* kept = m_matrix->AddNonZeroObject(nz);
    if (result) *result = kept;
}

void LPStdDataMgr::ProcessFullCollection() {
    for (ILPEquation* e = m_eqns->FrstEquationObject(); e; e = m_eqns->NextEquationObject())
        e->SetNumberNZ(m_matrix->NonZerosInRow(e->GetIndex()));
    for (ILPVariable* v = m_vars->FrstVariableObject(); v; v = m_vars->NextVariableObject())
        v->SetNumberNZ(m_matrix->NonZerosInColumn(v->GetIndex()));
    m_matrix->ProcessMatrixCollection();
    RemoveEmptyEquations();
    m_vars->ProcessVariableCollection();
    m_eqns->ProcessEquationCollection();
    m_sets->ProcessSpOrdSetCollection();
}

void LPStdDataMgr::RemoveEmptyEquations() {
    bool any = false;
    for (ILPEquation* e = m_eqns->FrstEquationObject(); e; e = m_eqns->NextEquationObject()) {
        if (e->GetNumberNZ() != 0) continue;
        m_matrix->EliminateEquation(e);
        m_eqns->TrashEquation(e);
        any = true;
    }
    if (any) m_eqns->EmptyTrash();
}

void LPStdDataMgr::ReIndexConnectionEqn() {
    for (ILPEquation* e = m_eqns->FrstEquationObject(); e; e = m_eqns->NextEquationObject())
        e->SetModelIndex(e->GetIndex());
}
