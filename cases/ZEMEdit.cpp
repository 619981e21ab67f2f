#include "cases/ZEMEdit.h"

#include <cstdio>
#include <cstring>

#include "lpdata/ZEMBinaryIO.h"
#include "lpdata/ZEMException.h"
#include "zemmgr/IZEMMgr.h"
#include "zemmgr/IZEMOptionTable.h"

namespace zemedit {

void PutIndex(unsigned char* p, int index) { zembin::put32(p, index); }

void PutIndex(unsigned char* p, const ILPNonZero* nz) {
    zembin::put32(p, nz->GetEquationIdx());
    zembin::put32(p + 4, nz->GetVariableIdx());
}

void PutValue(unsigned char* p, double v) { zembin::putF64(p, v); }
void PutValue(unsigned char* p, int16_t v) { zembin::put16(p, v); }

void Describe(ZEMEditFields& f, ILPVariable* v) { f.var = v; }
void Describe(ZEMEditFields& f, ILPEquation* e) { f.eqn = e; }
void Describe(ZEMEditFields& f, ILPNonZero* nz) {
    f.var = nz->GetVariablePtr();
    f.eqn = nz->GetEquationPtr();
}
void Describe(ZEMEditFields& f, NonLinearity* t) { f.term = t; }

}  // namespace zemedit

namespace {

// Display labels by edit code (index 0 unused).
const char* const kLabels[] = {"",
                               "VARIABLE VALUE",
                               "VARIABLE BOUND",
                               "VARIABLE TYPE",
                               "EQUATION RHS",
                               "EQUATION RANGE",
                               "MATRIX COEFFICIENT",
                               "EQUATION TYPE",
                               "NONLINEAR COEFFICIENT",
                               "OPTION"};

const char* const kBoundNames[] = {"LOWER", "FIXED", "UPPER"};

const char* nameOf(const char* name) { return name != nullptr ? name : ""; }

IZEMOptionTable* optionTable(IZEMMgr* mgr) {
    IZEMOptionTable* table = nullptr;
    if (mgr != nullptr) mgr->GetOptionTableIntf(&table);
    if (table == nullptr)
        ZEM_RAISE(zemsrc::kCases, "ZEMEdit Error", "The option edit has no model option table",
                  "ZEMEditOptionTable::Apply");
    return table;
}

}  // namespace

void ZEMEditBase::Display(std::ostream& os) {
    const ZEMEditFields f = Fields();
    std::string target;
    if (f.eqn != nullptr) target = nameOf(f.eqn->GetName());
    if (f.var != nullptr) target += (target.empty() ? "" : " / ") + std::string(nameOf(f.var->GetName()));
    if (f.term != nullptr) target = "TERM " + std::to_string(f.term->GetIndex());
    char line[96];
    if (f.code == eEditOptionTable) {
        os << "  " << kLabels[f.code] << "  " << f.optionName << " = \"" << f.optionValue
           << "\"\n";
        return;
    }
    std::snprintf(line, sizeof line, "  %-22s", kLabels[f.code]);
    os << line << target;
    if (f.code == eEditVarBoundValue && f.selector >= -1 && f.selector <= 1)
        os << "  " << kBoundNames[f.selector + 1];
    std::snprintf(line, sizeof line, "  NEW VALUE = %.10g\n", f.value);
    os << line;
}

void ZEMEditBase::StreamWrite(std::stringstream* ss) {
    unsigned char rec[kMaxEditRecord];
    PutRecord(rec);
    zembin::writeBytes(ss, rec, RecordSize());
}

// ---- bound edit ---------------------------------------------------------

void ZEMEditVarBoundValue::Apply() {
    if (!m_active) return;
    if (m_selector == kLower || m_selector == kBoth) {
        m_oldLower = m_var->GetBoundLower();
        m_var->SetBoundLower(m_new);
    }
    if (m_selector == kUpper || m_selector == kBoth) {
        m_oldUpper = m_var->GetBoundUpper();
        m_var->SetBoundUpper(m_new);
    }
}

void ZEMEditVarBoundValue::UnApply() {
    if (!m_active) return;
    if (m_selector == kLower || m_selector == kBoth) m_var->SetBoundLower(m_oldLower);
    if (m_selector == kUpper || m_selector == kBoth) m_var->SetBoundUpper(m_oldUpper);
}

ZEMEditFields ZEMEditVarBoundValue::Fields() const {
    ZEMEditFields f;
    f.code = eEditVarBoundValue;
    f.var = m_var;
    f.selector = m_selector;
    f.value = m_new;
    return f;
}

void ZEMEditVarBoundValue::PutRecord(unsigned char* rec) const {
    zembin::put16(rec, eEditVarBoundValue);
    zembin::put32(rec + 2, m_var->GetIndex());
    zembin::put16(rec + 6, m_selector);
    zembin::putF64(rec + 8, m_new);
}

// ---- option edit --------------------------------------------------------

ZEMEditOptionTable::ZEMEditOptionTable(IZEMMgr* mgr, const char* name, const char* value)
    : ZEMEditBase(mgr) {
    const char* routine = "ZEMEditOptionTable::ZEMEditOptionTable";
    name = nameOf(name);
    value = nameOf(value);
    if (name[0] == '\0') ZEM_RAISE(zemsrc::kCases, "ZEMEdit Error", "Option edit without a name", routine);
    if (std::strlen(name) >= kField || std::strlen(value) >= kField)
        ZEM_RAISE(zemsrc::kCases, "ZEMEdit Error",
                  std::string("Option name or value longer than 99 characters: ") + name, routine);
    std::memcpy(m_name, name, std::strlen(name));
    std::memcpy(m_value, value, std::strlen(value));
}

void ZEMEditOptionTable::Apply() {
    if (!m_active) return;
    IZEMOptionTable* table = optionTable(m_mgr);
    const char* old = table->GetOptionValue(m_name);
    m_hadValue = old != nullptr;
    m_oldValue = m_hadValue ? old : "";
    if (m_value[0] == '\0') {
        table->RemoveOptionValue(m_name);
    } else {
        table->SetOption(m_name, m_value, nullptr);
    }
}

void ZEMEditOptionTable::UnApply() {
    if (!m_active) return;
    IZEMOptionTable* table = optionTable(m_mgr);
    table->RemoveOptionValue(m_name);
    if (m_hadValue) table->SetOption(m_name, m_oldValue.c_str(), nullptr);
}

ZEMEditFields ZEMEditOptionTable::Fields() const {
    ZEMEditFields f;
    f.code = eEditOptionTable;
    f.optionName = m_name;
    f.optionValue = m_value;
    return f;
}

void ZEMEditOptionTable::PutRecord(unsigned char* rec) const {
    zembin::put16(rec, eEditOptionTable);
    zembin::putName(rec + 2, kField, m_name);
    zembin::putName(rec + 2 + kField, kField, m_value);
}
