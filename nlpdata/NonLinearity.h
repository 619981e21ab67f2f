// The common base of every nonlinear term.
//
// It keeps the term's row, its argument list (repeats allowed), the distinct
// arguments in order of first occurrence, its constants, the matrix entries
// that receive its derivatives (stored by the pool in the order of the
// distinct arguments), related-term and related-variable references, the
// numeric format of its text form, and the index, active, diffed and block
// fields. Concrete term types set their type code and identifier in their
// constructor (SetTypeAndID) and override EvaluateTerm, TermJacobian,
// TermString(std::string&) and usually Display. A type that overrides
// TermString(std::string&) should add `using NonLinearity::TermString;` so
// that the buffer form stays callable on the concrete class too.
//
// The base does not own variables, rows or entries (they belong to the LP
// model). It owns its identifier and the constants made by
// AddNLConstantObject(double); a constant handed in by pointer stays the
// caller's. Null variables and constants are ignored (the count is returned
// unchanged), so every walk ends only at the end of its list.
//
// Fast access for evaluation: concrete types may read Vars(), UniqueVars(),
// NonZeros() and Constants() (contiguous arrays) instead of the cursor walks,
// which keeps hot loops free of virtual calls per argument.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <unordered_set>
#include <vector>

#include "nlpdata/INonLinearity.h"

class NonLinearity : public INonLinearity {
public:
    // Default numeric format of the text forms.
    static constexpr const char* kDefaultFormat = "% #12.6e";

    NonLinearity();
    NonLinearity(const NonLinearity&) = delete;
    NonLinearity& operator=(const NonLinearity&) = delete;
    ~NonLinearity() override;

    void Destroy() override { delete this; }
    void SetIndex(int index) override { m_index = index; }
    int GetIndex() const override { return m_index; }
    int16_t GetType() const override { return m_type; }
    const char* GetNonLinearityID() const override;
    void SetEquationPtr(ILPEquation* eqn) override { m_equation = eqn; }
    ILPEquation* GetEquationPtr() const override { return m_equation; }
    int AddVariableObject(ILPVariable* var) override;
    ILPVariable* FrstVar() override;
    ILPVariable* NextVar() override;
    ILPVariable* FrstUniqueVar() override;
    ILPVariable* NextUniqueVar() override;
    int AddNLConstantObject(INLConstant* c) override;
    int AddNLConstantObject(double value) override;
    INLConstant* FrstNLConst() override;
    INLConstant* NextNLConst() override;
    int NumberOfVariableTerms() const override { return static_cast<int>(m_vars.size()); }
    int NumberOfUniqueVariableEntries() const override {
        return static_cast<int>(m_uniqueVars.size());
    }
    int NumberOfNLConstants() const override { return static_cast<int>(m_consts.size()); }
    void StoreNonZeroReference(ILPNonZero* nz) override { m_nonZeros.push_back(nz); }
    ILPNonZero* FrstNZ() override;
    ILPNonZero* NextNZ() override;
    // The bare base evaluates to -1.0.
    double EvaluateTerm() override { return -1.0; }
    void EvaluateTermAndAdd() override;
    void TermJacobian(std::ostream&) override {}
    void TermJacobian() override {}
    void DeActivate() override { m_active = 0; }
    void Activate() override { m_active = 1; }
    int16_t Active() const override { return m_active; }
    int AddRelatedNonlinearityRef(INonLinearity* term) override;
    INonLinearity* FrstRelatedNonlinearityRef() override;
    INonLinearity* NextRelatedNonlinearityRef() override;
    int AddRelatedVariableRef(ILPVariable* var) override;
    ILPVariable* FrstRelatedVariableRef() override;
    ILPVariable* NextRelatedVariableRef() override;
    void AddNonlinearityRef(INonLinearity*) override {}
    void ConcatVarListNames(std::string& out) override;
    // Takes `format` as the numeric format when it is a usable one (see
    // SetNumericFormat), else the default; then copies TermString(string&)
    // into `buffer`, at most `length` bytes, NUL-padded like strncpy. A null
    // buffer or a length below 1 copies nothing.
    void TermString(const char* format, char* buffer, int length) override;
    void TermString(std::string& out) override = 0;
    // "NonLinearity [i] EqnIdx = r", the arguments, the constants and the
    // formula text; see the implementation for the exact lines.
    void Display(std::ostream& os) override;
    // Looks for the arguments of this term (by name) among the other term's.
    // When all are found but the constants differ (count, or a value outside
    // the tolerance), writes the mismatch report and returns -1. Returns 0
    // when the arguments match and the constants agree, 1 when some argument
    // of this term is not among the other's (the terms do not correspond;
    // nothing is written).
    int Compare(INonLinearity* other, int mode, double tolerance, std::ostream& os) override;
    bool BeenDiffed() const override { return m_diffed; }
    void SetDiffed(bool diffed) override { m_diffed = diffed; }
    int GetBlkMember() const override { return m_blkMember; }
    void SetBlkMember(int block) override { m_blkMember = block; }
    void setFrstConstVal(double v) override { m_frstConst = v; }
    INonLinearity* GetNonlinearityRef() override { return nullptr; }

    // The multiplier copy of the first constant (0 until a constant is added).
    double GetFrstConstVal() const { return m_frstConst; }
    // True when the multiplier was changed apart from the first constant
    // (setFrstConstVal, as a case's term edit does). Files carry the
    // constants only, so their writers refuse such a term.
    static bool MultiplierApart(INonLinearity* term);
    const char* GetNumericFormat() const { return m_format; }
    // Sets the numeric format when `format` is non-null, shorter than 17
    // characters and holds exactly one floating-point conversion (flags,
    // width and precision allowed; "%%" allowed anywhere); otherwise the
    // default is restored. Returns whether `format` was taken.
    bool SetNumericFormat(const char* format);
    // `v` printed with the numeric format.
    std::string FormatNumber(double v) const;

protected:
    // Set by each concrete type's constructor: its code and its identifier
    // (copied; null clears it).
    void SetTypeAndID(int16_t type, const char* id);
    void SetNonLinearityID(const char* id);

    const std::vector<ILPVariable*>& Vars() const { return m_vars; }
    const std::vector<ILPVariable*>& UniqueVars() const { return m_uniqueVars; }
    const std::vector<ILPNonZero*>& NonZeros() const { return m_nonZeros; }
    const std::vector<INLConstant*>& Constants() const { return m_consts; }
    // Value of the i-th constant (0-based), `dflt` when there is none.
    double ConstValue(size_t i, double dflt) const;

private:
    // A linear search of the distinct arguments is fastest for the usual few;
    // past this many the term keeps a hash set instead.
    static constexpr size_t kHashThreshold = 16;

    int32_t m_index = 0;
    int16_t m_active = 1;
    std::unique_ptr<char[]> m_id;
    int16_t m_type = 0;
    ILPEquation* m_equation = nullptr;
    std::vector<ILPVariable*> m_vars;
    size_t m_varCursor = 0;
    std::vector<ILPVariable*> m_uniqueVars;
    std::unique_ptr<std::unordered_set<ILPVariable*>> m_uniqueSet;
    size_t m_uniqueCursor = 0;
    std::vector<INLConstant*> m_consts;
    std::vector<bool> m_constOwned;
    size_t m_constCursor = 0;
    double m_frstConst = 0.0;
    std::vector<ILPNonZero*> m_nonZeros;
    size_t m_nzCursor = 0;
    std::unique_ptr<std::vector<ILPVariable*>> m_relatedVars;
    size_t m_relatedVarCursor = 0;
    std::unique_ptr<std::vector<INonLinearity*>> m_relatedTerms;
    size_t m_relatedTermCursor = 0;
    // Room for any accepted format (at most 16 characters) and its NUL.
    char m_format[17];
    bool m_diffed = false;
    int32_t m_blkMember = 0;
};
