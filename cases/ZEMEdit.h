// The nine kinds of edit and their common base.
//
//   code  kind                        record after the 16-bit code
//   1     ZEMEditVarValue             variable index (int32), value (double)
//   2     ZEMEditVarBoundValue        variable index (int32), selector (int16), value (double)
//   3     ZEMEditVarType              variable index (int32), type (int16)
//   4     ZEMEditEqnRHS               equation index (int32), value (double)
//   5     ZEMEditEqnRange             equation index (int32), value (double)
//   6     ZEMEditNZCoeff              equation index (int32), variable index (int32), value (double)
//   7     ZEMEditEqnType              equation index (int32), type (int16)
//   8     ZEMEditNonLinearityCoeff    term index (int32), value (double)
//   9     ZEMEditOptionTable          name (100 bytes), value (100 bytes), NUL-padded
//
// Apply reads the target's current value through its getter, keeps it and
// sets the new value; UnApply sets the kept value back. An inactive edit
// does neither.
//
// The bound edit's selector picks the bound: -1 the lower bound, 1 the upper
// bound, 0 both (lower first, then upper, each set to the new value, which
// fixes the variable). The old lower and old upper bound are kept apart, and
// UnApply restores the same selection. Any other selector changes nothing.
//
// The nonlinear coefficient is the term's multiplier (its first constant as
// changed by setFrstConstVal); the stored constant itself is not touched.
//
// The option edit works on the model's own option table: the library has no
// solver control. Apply (and ApplySettings) sets the first-column value of
// the option, or removes it when the new value is empty; UnApply puts back
// the value the option had, or removes the value when the option had none.
// Name and value are fixed fields of 100 bytes, so each holds at most 99
// characters: a longer one is refused when the edit is made.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

#include "cases/IZEMEdit.h"
#include "lpdata/ILPEquation.h"
#include "lpdata/ILPNonZero.h"
#include "lpdata/ILPVariable.h"
#include "nlpdata/NonLinearity.h"

class IZEMMgr;

// The longest edit record (the option edit's).
constexpr size_t kMaxEditRecord = 202;

// What an edit changes, for displays and for callers that list edits.
// Entities not concerned by the kind are null; `value` is the new value
// (type codes as numbers).
struct ZEMEditFields {
    int16_t code = 0;
    ILPVariable* var = nullptr;
    ILPEquation* eqn = nullptr;
    INonLinearity* term = nullptr;
    int16_t selector = 0;
    double value = 0.0;
    std::string optionName;
    std::string optionValue;
};

class ZEMEditBase : public IZEMEdit {
public:
    explicit ZEMEditBase(IZEMMgr* mgr) : m_mgr(mgr) {}
    ~ZEMEditBase() override = default;

    void ApplySettings() override {}
    // One line: the kind, the target's name(s) and the new value.
    void Display(std::ostream& os) override;
    void StreamWrite(std::stringstream* ss) override;
    void Destroy() override { delete this; }
    void Activate() override { m_active = true; }
    void DeActivate() override { m_active = false; }
    bool Active() override { return m_active; }

    IZEMMgr* GetZEMMgr() const { return m_mgr; }
    virtual ZEMEditFields Fields() const = 0;
    // The record, code included: its size and its bytes.
    virtual size_t RecordSize() const = 0;
    virtual void PutRecord(unsigned char* rec) const = 0;

protected:
    IZEMMgr* m_mgr;
    bool m_active = true;
};

namespace zemedit {
void PutIndex(unsigned char* p, int index);
// Index fields of the record: one index for a variable, equation or term,
// the equation index then the variable index for a nonzero.
inline size_t IndexSize(const ILPNonZero*) { return 8; }
template <class T>
size_t IndexSize(const T*) { return 4; }
void PutIndex(unsigned char* p, const ILPNonZero* nz);
template <class T>
void PutIndex(unsigned char* p, const T* target) {
    zemedit::PutIndex(p, target->GetIndex());
}
void PutValue(unsigned char* p, double v);
void PutValue(unsigned char* p, int16_t v);
void Describe(ZEMEditFields& f, ILPVariable* v);
void Describe(ZEMEditFields& f, ILPEquation* e);
void Describe(ZEMEditFields& f, ILPNonZero* nz);
void Describe(ZEMEditFields& f, NonLinearity* t);
}  // namespace zemedit

// An edit of one scalar of one entity through its getter and setter.
template <class T, class V, V (T::*Get)() const, void (T::*Set)(V), ZEMEditCode C>
class ZEMEditScalar final : public ZEMEditBase {
public:
    ZEMEditScalar(IZEMMgr* mgr, T* target, V value)
        : ZEMEditBase(mgr), m_target(target), m_new(value), m_old(value) {}

    void Apply() override {
        if (!m_active) return;
        m_old = (m_target->*Get)();
        (m_target->*Set)(m_new);
    }
    void UnApply() override {
        if (m_active) (m_target->*Set)(m_old);
    }
    ZEMEditFields Fields() const override {
        ZEMEditFields f;
        f.code = C;
        zemedit::Describe(f, m_target);
        f.value = static_cast<double>(m_new);
        return f;
    }
    size_t RecordSize() const override { return 2 + zemedit::IndexSize(m_target) + sizeof(V); }
    void PutRecord(unsigned char* rec) const override {
        zemedit::PutValue(rec, static_cast<int16_t>(C));
        zemedit::PutIndex(rec + 2, m_target);
        zemedit::PutValue(rec + 2 + zemedit::IndexSize(m_target), m_new);
    }

    T* Target() const { return m_target; }
    V NewValue() const { return m_new; }

private:
    T* m_target;
    V m_new;
    V m_old;
};

using ZEMEditVarValue = ZEMEditScalar<ILPVariable, double, &ILPVariable::GetVarValue,
                                      &ILPVariable::SetVarValue, eEditVarValue>;
using ZEMEditVarType = ZEMEditScalar<ILPVariable, int16_t, &ILPVariable::GetVarType,
                                     &ILPVariable::SetVarType, eEditVarType>;
using ZEMEditEqnRHS =
    ZEMEditScalar<ILPEquation, double, &ILPEquation::GetRHS, &ILPEquation::SetRHS, eEditEqnRHS>;
using ZEMEditEqnRange = ZEMEditScalar<ILPEquation, double, &ILPEquation::GetRange,
                                      &ILPEquation::SetRange, eEditEqnRange>;
using ZEMEditEqnType = ZEMEditScalar<ILPEquation, int16_t, &ILPEquation::GetType,
                                     &ILPEquation::SetType, eEditEqnType>;
using ZEMEditNZCoeff = ZEMEditScalar<ILPNonZero, double, &ILPNonZero::GetCoefficient,
                                     &ILPNonZero::SetCoefficient, eEditNZCoeff>;
using ZEMEditNonLinearityCoeff =
    ZEMEditScalar<NonLinearity, double, &NonLinearity::GetFrstConstVal,
                  &NonLinearity::setFrstConstVal, eEditNonLinearityCoeff>;

class ZEMEditVarBoundValue final : public ZEMEditBase {
public:
    // Selectors of the bound to change.
    static constexpr int16_t kLower = -1;
    static constexpr int16_t kBoth = 0;
    static constexpr int16_t kUpper = 1;

    ZEMEditVarBoundValue(IZEMMgr* mgr, ILPVariable* var, int16_t selector, double value)
        : ZEMEditBase(mgr), m_var(var), m_selector(selector), m_new(value) {}

    void Apply() override;
    void UnApply() override;
    ZEMEditFields Fields() const override;
    size_t RecordSize() const override { return 16; }
    void PutRecord(unsigned char* rec) const override;

private:
    ILPVariable* m_var;
    int16_t m_selector;
    double m_new;
    double m_oldLower = 0.0;
    double m_oldUpper = 0.0;
};

class ZEMEditOptionTable final : public ZEMEditBase {
public:
    static constexpr size_t kField = 100;

    // Throws ZEM_Exception when the name is empty or the name or value does
    // not fit its field.
    ZEMEditOptionTable(IZEMMgr* mgr, const char* name, const char* value);

    void Apply() override;
    void UnApply() override;
    void ApplySettings() override { Apply(); }
    ZEMEditFields Fields() const override;
    size_t RecordSize() const override { return 2 + 2 * kField; }
    void PutRecord(unsigned char* rec) const override;

private:
    char m_name[kField] = {};
    char m_value[kField] = {};
    bool m_hadValue = false;
    std::string m_oldValue;
};
