#include "cases/ZEMCaseMgr.h"

#include <cstring>
#include <memory>
#include <string>

#include "cases/ZEMEdit.h"
#include "cases/ZEMEditRecord.h"
#include "lpdata/ILPEquationList.h"
#include "lpdata/ILPMatrix.h"
#include "lpdata/ILPVariableList.h"
#include "lpdata/LPRecordIO.h"
#include "lpdata/ZEMBinaryIO.h"
#include "lpdata/ZEMException.h"
#include "zemmgr/IZEMMgr.h"

namespace {

constexpr const char* kCategory = "CZEMCaseMgr Error";
// Smallest edit record: code, index and a 16-bit type.
constexpr uint64_t kMinEditRecord = 8;

[[noreturn]] void raise(const std::string& message, const char* routine) {
    ZEM_RAISE(zemsrc::kCases, kCategory, message, routine);
}

void copyText(char* field, const char* text) {
    zembin::putName(reinterpret_cast<unsigned char*>(field), CZEMCaseMgr::kTextField,
                    text != nullptr ? text : "");
}

}  // namespace

CZEMCaseMgr::CZEMCaseMgr(int number, const char* name, const char* description, IZEMMgr* mgr)
    : CZEMCaseMgr(number, name, description, mgr, nullptr) {}

CZEMCaseMgr::CZEMCaseMgr(int number, const char* name, const char* description, IZEMMgr* mgr,
                         IORVA_Control* control)
    : m_number(number), m_mgr(mgr), m_control(control) {
    copyText(m_name, name);
    copyText(m_description, description);
}

CZEMCaseMgr::~CZEMCaseMgr() {
    for (IZEMEdit* e : m_edits) e->Destroy();
}

void CZEMCaseMgr::SetCaseName(const char* name) { copyText(m_name, name); }
void CZEMCaseMgr::SetCaseDescription(const char* text) { copyText(m_description, text); }

// ---- adding edits -------------------------------------------------------

ILPVariable* CZEMCaseMgr::Var(const char* name) {
    ILPVariableList* vars = nullptr;
    if (m_mgr != nullptr) m_mgr->GetVariableCollectionIntf(&vars);
    ILPVariable* v = (vars != nullptr && name != nullptr) ? vars->VarNameLookup(name) : nullptr;
    if (v == nullptr) raise(std::string("Unknown variable: ") + (name ? name : ""), "CZEMCaseMgr::AddEdit");
    return v;
}

ILPEquation* CZEMCaseMgr::Eqn(const char* name) {
    ILPEquationList* eqns = nullptr;
    if (m_mgr != nullptr) m_mgr->GetEquationCollectionIntf(&eqns);
    ILPEquation* e = (eqns != nullptr && name != nullptr) ? eqns->EqnNameLookup(name) : nullptr;
    if (e == nullptr) raise(std::string("Unknown equation: ") + (name ? name : ""), "CZEMCaseMgr::AddEdit");
    return e;
}

template <class E, class T, class... A>
void CZEMCaseMgr::Add(T* target, const char* what, A... args) {
    if (target == nullptr) raise(std::string("Edit without its ") + what, "CZEMCaseMgr::AddEdit");
    m_edits.push_back(new E(m_mgr, target, args...));
}

void CZEMCaseMgr::AddEqnRHSEdit(ILPEquation* eqn, double value) {
    Add<ZEMEditEqnRHS>(eqn, "equation", value);
}
void CZEMCaseMgr::AddEqnRHSEdit(const char* eqn, double value) { AddEqnRHSEdit(Eqn(eqn), value); }
void CZEMCaseMgr::AddEqnRangeEdit(ILPEquation* eqn, double value) {
    Add<ZEMEditEqnRange>(eqn, "equation", value);
}
void CZEMCaseMgr::AddEqnRangeEdit(const char* eqn, double value) { AddEqnRangeEdit(Eqn(eqn), value); }
void CZEMCaseMgr::AddEqnTypeEdit(ILPEquation* eqn, int16_t type) {
    Add<ZEMEditEqnType>(eqn, "equation", type);
}
void CZEMCaseMgr::AddEqnTypeEdit(const char* eqn, int16_t type) { AddEqnTypeEdit(Eqn(eqn), type); }
void CZEMCaseMgr::AddVarValueEdit(ILPVariable* var, double value) {
    Add<ZEMEditVarValue>(var, "variable", value);
}
void CZEMCaseMgr::AddVarValueEdit(const char* var, double value) { AddVarValueEdit(Var(var), value); }
void CZEMCaseMgr::AddVarBoundEdit(ILPVariable* var, int16_t selector, double value) {
    Add<ZEMEditVarBoundValue>(var, "variable", selector, value);
}
void CZEMCaseMgr::AddVarBoundEdit(const char* var, int16_t selector, double value) {
    AddVarBoundEdit(Var(var), selector, value);
}
void CZEMCaseMgr::AddVarTypeEdit(ILPVariable* var, int16_t type) {
    Add<ZEMEditVarType>(var, "variable", type);
}
void CZEMCaseMgr::AddVarTypeEdit(const char* var, int16_t type) { AddVarTypeEdit(Var(var), type); }

void CZEMCaseMgr::AddMatrixCoeffEdit(ILPEquation* eqn, ILPVariable* var, double value) {
    ILPMatrix* matrix = nullptr;
    if (m_mgr != nullptr) m_mgr->GetMatrixIntf(&matrix);
    ILPNonZero* nz = FindMatrixEntry(matrix, eqn, var);
    if (nz == nullptr && eqn != nullptr && var != nullptr)
        raise(std::string("No matrix coefficient in equation ") + eqn->GetName() + " for variable " +
                  var->GetName(),
              "CZEMCaseMgr::AddMatrixCoeffEdit");
    AddMatrixCoeffEdit(nz, value);
}
void CZEMCaseMgr::AddMatrixCoeffEdit(ILPNonZero* nz, double value) {
    Add<ZEMEditNZCoeff>(nz, "matrix coefficient", value);
}
void CZEMCaseMgr::AddMatrixCoeffEdit(const char* eqn, const char* var, double value) {
    ILPEquation* row = Eqn(eqn);
    AddMatrixCoeffEdit(row, Var(var), value);
}

void CZEMCaseMgr::AddMatrixNonLinearityCoeffEdit(INonLinearity* term, double value) {
    auto* nl = dynamic_cast<NonLinearity*>(term);
    if (term != nullptr && nl == nullptr)
        raise("The term's multiplier cannot be edited", "CZEMCaseMgr::AddMatrixNonLinearityCoeffEdit");
    Add<ZEMEditNonLinearityCoeff>(nl, "nonlinear term", value);
}

void CZEMCaseMgr::AddOptionTableEdit(const char* name, const char* value) {
    m_edits.push_back(new ZEMEditOptionTable(m_mgr, name, value));
}

void CZEMCaseMgr::AddInitialVectorEdits(const double* values) {
    if (values == nullptr || m_mgr == nullptr) return;
    ILPVariableList* vars = nullptr;
    m_mgr->GetVariableCollectionIntf(&vars);
    if (vars == nullptr) return;
    m_edits.reserve(m_edits.size() + static_cast<size_t>(vars->NumberOfVariables()));
    size_t i = 0;
    for (ILPVariable* v = vars->FrstVariableObject(); v; v = vars->NextVariableObject())
        AddVarValueEdit(v, values[i++]);
}

void CZEMCaseMgr::AddZEMEditOp(IZEMEdit* edit) {
    if (edit == nullptr) return;
    if (dynamic_cast<ZEMEditBase*>(edit) == nullptr) ++m_foreign;
    m_edits.push_back(edit);
}

// ---- applying -----------------------------------------------------------

void CZEMCaseMgr::Apply() {
    m_appliedStack.clear();
    try {
        for (IZEMEdit* e : m_edits) {
            m_appliedStack.push_back(e);
            e->Apply();
        }
    } catch (...) {
        // What was reached, the failing edit included, can be taken back.
        m_applied = true;
        throw;
    }
    m_applied = true;
}

void CZEMCaseMgr::UnApply() {
    if (!m_applied || m_appliedStack.empty()) return;
    while (!m_appliedStack.empty()) {
        m_appliedStack.back()->UnApply();
        m_appliedStack.pop_back();
    }
    m_applied = false;
}

void CZEMCaseMgr::ApplySettings() {
    for (IZEMEdit* e : m_edits) e->ApplySettings();
}

void CZEMCaseMgr::Display(std::ostream& os) {
    os << "Z E M   C A S E   - " << (m_name[0] != '\0' ? m_name : "NO NAME") << "\nID = ("
       << m_number << ")\nDESCRIPTION : \"" << m_description << "\"\n"
       << "\nEDIT LIST - ORDER OF APPLICATION\n\n";
    for (IZEMEdit* e : m_edits) e->Display(os);
    os << "\nEND EDIT LIST\n\n";
}

// ---- records ------------------------------------------------------------

int CZEMCaseMgr::PersistAsStream(std::stringstream* ss) {
    std::string buffer(kRecordSize, '\0');
    auto* rec = reinterpret_cast<unsigned char*>(&buffer[0]);
    zembin::put32(rec, m_number);
    zembin::putName(rec + 4, kTextField, m_name);
    zembin::putName(rec + 133, kTextField, m_description);
    zembin::put32(rec + 264, static_cast<int32_t>(m_edits.size()));
    // The library's own edits are gathered into large writes; others write
    // themselves. Only a case that holds others needs to tell them apart.
    constexpr size_t kFlushAt = 1 << 16;
    for (IZEMEdit* e : m_edits) {
        auto* known = m_foreign == 0 ? static_cast<ZEMEditBase*>(e) : dynamic_cast<ZEMEditBase*>(e);
        if (known == nullptr) {
            zembin::writeBytes(ss, buffer.data(), buffer.size());
            buffer.clear();
            e->StreamWrite(ss);
            continue;
        }
        const size_t at = buffer.size();
        buffer.resize(at + known->RecordSize());
        known->PutRecord(reinterpret_cast<unsigned char*>(&buffer[at]));
        if (buffer.size() >= kFlushAt) {
            zembin::writeBytes(ss, buffer.data(), buffer.size());
            buffer.clear();
        }
    }
    zembin::writeBytes(ss, buffer.data(), buffer.size());
    return 0;
}

int CZEMCaseMgr::RestoreFromStream(std::istream* is, IZEMMgr* mgr, IORVA_Control* control,
                                   const ZEMEditTargets& targets, IZEMCaseMgr** out) {
    unsigned char rec[kRecordSize];
    if (!zembin::readExact(is, rec, sizeof rec))
        CaseReadError("Error during read of XLMFile Header from binary file");
    const std::string name = zembin::getName(rec + 4, kTextField);
    const std::string description = zembin::getName(rec + 133, kTextField);
    if (name.size() >= kTextField || description.size() >= kTextField)
        CaseReadError("XLMFile case name or description without its terminator");
    const int32_t count = zembin::get32(rec + 264);
    if (count < 0) CaseReadError("Negative edit count in XLMFile case record");
    // The count is believed only as far as the stream can hold its records.
    if (!zembin::canHold(is, count, kMinEditRecord))
        CaseReadError("Error during read of XLMFile edit record from binary file");

    std::unique_ptr<CZEMCaseMgr, void (*)(CZEMCaseMgr*)> made(
        new CZEMCaseMgr(zembin::get32(rec), name.c_str(), description.c_str(), mgr, control),
        [](CZEMCaseMgr* c) { c->Destroy(); });
    made->m_edits.reserve(lprec::ReserveHint(is, count));
    EditRecordSource source(is);
    for (int32_t i = 0; i < count; ++i) made->m_edits.push_back(ReadEditRecord(source, targets));
    *out = made.release();
    return 0;
}
