#include "nlpdata/NonLinearity.h"

#include <cstdio>
#include <cstring>
#include <unordered_map>

#include "lpdata/ILPEquation.h"
#include "lpdata/ILPVariable.h"
#include "lpdata/ZEMTypes.h"
#include "nlpdata/NLConstant.h"

namespace {

// True when `f` holds exactly one floating-point conversion and otherwise
// only plain text or "%%", so that it can be given one double safely.
bool IsSingleDoubleFormat(const char* f) {
    int conversions = 0;
    for (const char* p = f; *p; ++p) {
        if (*p != '%') continue;
        ++p;
        if (*p == '%') continue;
        while (*p && std::strchr("-+ #0", *p)) ++p;
        while (*p >= '0' && *p <= '9') ++p;
        if (*p == '.') {
            ++p;
            while (*p >= '0' && *p <= '9') ++p;
        }
        if (!*p || !std::strchr("eEfFgGaA", *p)) return false;
        ++conversions;
    }
    return conversions == 1;
}

template <typename T>
T* CursorFirst(const std::vector<T*>& v, size_t& cursor) {
    cursor = 0;
    if (v.empty()) return nullptr;
    cursor = 1;
    return v[0];
}

template <typename T>
T* CursorNext(const std::vector<T*>& v, size_t& cursor) {
    if (cursor >= v.size()) return nullptr;
    return v[cursor++];
}

}  // namespace

NonLinearity::NonLinearity() { std::strcpy(m_format, kDefaultFormat); }

NonLinearity::~NonLinearity() {
    for (size_t i = 0; i < m_consts.size(); ++i)
        if (m_constOwned[i]) m_consts[i]->Destroy();
}

const char* NonLinearity::GetNonLinearityID() const { return m_id.get(); }

void NonLinearity::SetNonLinearityID(const char* id) {
    if (!id) {
        m_id.reset();
        return;
    }
    const size_t n = std::strlen(id);
    std::unique_ptr<char[]> copy(new char[n + 1]);
    std::memcpy(copy.get(), id, n + 1);
    m_id = std::move(copy);
}

void NonLinearity::SetTypeAndID(int16_t type, const char* id) {
    m_type = type;
    SetNonLinearityID(id);
}

int NonLinearity::AddVariableObject(ILPVariable* var) {
    if (!var) return static_cast<int>(m_vars.size());
    m_vars.push_back(var);
    bool seen;
    if (m_uniqueSet) {
        seen = !m_uniqueSet->insert(var).second;
    } else {
        seen = false;
        for (ILPVariable* u : m_uniqueVars)
            if (u == var) {
                seen = true;
                break;
            }
    }
    if (!seen) {
        m_uniqueVars.push_back(var);
        if (!m_uniqueSet && m_uniqueVars.size() > kHashThreshold)
            m_uniqueSet.reset(
                new std::unordered_set<ILPVariable*>(m_uniqueVars.begin(), m_uniqueVars.end()));
    }
    return static_cast<int>(m_vars.size());
}

ILPVariable* NonLinearity::FrstVar() { return CursorFirst(m_vars, m_varCursor); }
ILPVariable* NonLinearity::NextVar() { return CursorNext(m_vars, m_varCursor); }
ILPVariable* NonLinearity::FrstUniqueVar() { return CursorFirst(m_uniqueVars, m_uniqueCursor); }
ILPVariable* NonLinearity::NextUniqueVar() { return CursorNext(m_uniqueVars, m_uniqueCursor); }

int NonLinearity::AddNLConstantObject(INLConstant* c) {
    if (!c) return static_cast<int>(m_consts.size());
    m_consts.push_back(c);
    m_constOwned.push_back(false);
    if (m_consts.size() == 1) m_frstConst = c->GetValue();
    return static_cast<int>(m_consts.size());
}

int NonLinearity::AddNLConstantObject(double value) {
    std::unique_ptr<NLConstant> c(new NLConstant(value));
    const int n = AddNLConstantObject(c.get());
    c.release();
    m_constOwned.back() = true;
    return n;
}

INLConstant* NonLinearity::FrstNLConst() { return CursorFirst(m_consts, m_constCursor); }
INLConstant* NonLinearity::NextNLConst() { return CursorNext(m_consts, m_constCursor); }

double NonLinearity::ConstValue(size_t i, double dflt) const {
    return i < m_consts.size() && m_consts[i] ? m_consts[i]->GetValue() : dflt;
}

ILPNonZero* NonLinearity::FrstNZ() { return CursorFirst(m_nonZeros, m_nzCursor); }
ILPNonZero* NonLinearity::NextNZ() { return CursorNext(m_nonZeros, m_nzCursor); }

void NonLinearity::EvaluateTermAndAdd() {
    const double v = EvaluateTerm();
    if (m_equation) m_equation->AddEqnValue(v);
}

int NonLinearity::AddRelatedNonlinearityRef(INonLinearity* term) {
    if (!m_relatedTerms) m_relatedTerms.reset(new std::vector<INonLinearity*>());
    m_relatedTerms->push_back(term);
    return static_cast<int>(m_relatedTerms->size());
}

INonLinearity* NonLinearity::FrstRelatedNonlinearityRef() {
    return m_relatedTerms ? CursorFirst(*m_relatedTerms, m_relatedTermCursor) : nullptr;
}

INonLinearity* NonLinearity::NextRelatedNonlinearityRef() {
    return m_relatedTerms ? CursorNext(*m_relatedTerms, m_relatedTermCursor) : nullptr;
}

int NonLinearity::AddRelatedVariableRef(ILPVariable* var) {
    if (!m_relatedVars) m_relatedVars.reset(new std::vector<ILPVariable*>());
    m_relatedVars->push_back(var);
    return static_cast<int>(m_relatedVars->size());
}

ILPVariable* NonLinearity::FrstRelatedVariableRef() {
    return m_relatedVars ? CursorFirst(*m_relatedVars, m_relatedVarCursor) : nullptr;
}

ILPVariable* NonLinearity::NextRelatedVariableRef() {
    return m_relatedVars ? CursorNext(*m_relatedVars, m_relatedVarCursor) : nullptr;
}

void NonLinearity::ConcatVarListNames(std::string& out) {
    for (ILPVariable* v : m_vars) {
        const char* name = v ? v->GetName() : "";
        if (name[0] != '_') out += '_';
        out += name;
    }
}

bool NonLinearity::SetNumericFormat(const char* format) {
    if (format && std::strlen(format) < 17 && IsSingleDoubleFormat(format)) {
        std::strcpy(m_format, format);
        return true;
    }
    std::strcpy(m_format, kDefaultFormat);
    return false;
}

std::string NonLinearity::FormatNumber(double v) const {
    char buf[64];
    int n = std::snprintf(buf, sizeof buf, m_format, v);
    if (n < 0) return std::string();
    if (static_cast<size_t>(n) < sizeof buf) return std::string(buf, static_cast<size_t>(n));
    // A wide field: print again into a buffer of the exact size.
    std::string out(static_cast<size_t>(n) + 1, '\0');
    std::snprintf(&out[0], out.size(), m_format, v);
    out.resize(static_cast<size_t>(n));
    return out;
}

void NonLinearity::TermString(const char* format, char* buffer, int length) {
    SetNumericFormat(format);
    if (!buffer || length < 1) return;
    std::string text;
    TermString(text);
    std::strncpy(buffer, text.c_str(), static_cast<size_t>(length));
}

void NonLinearity::Display(std::ostream& os) {
    os << "NonLinearity [" << m_index << "]" << " EqnIdx = "
       << (m_equation ? m_equation->GetIndex() : 0) << "\n";
    if (!m_vars.empty()) {
        os << " Variable Participant List ...\n";
        for (ILPVariable* v : m_vars) os << "   " << (v ? v->GetName() : "") << "\n";
    }
    if (!m_consts.empty()) {
        os << " Constant Pool for Term : ( ";
        for (size_t i = 0; i < m_consts.size(); ++i) {
            if (i) os << ", ";
            os << ConstValue(i, 0.0);
        }
        os << " )\n";
    }
    std::string text;
    TermString(text);
    os << text << "\n\n";
}

namespace {

// The constants of a term that are not zero.
std::vector<double> NonZeroConstants(INonLinearity* t) {
    std::vector<double> out;
    for (INLConstant* c = t->FrstNLConst(); c; c = t->NextNLConst())
        if (c->GetValue() != 0.0) out.push_back(c->GetValue());
    return out;
}

std::vector<double> AllConstants(INonLinearity* t) {
    std::vector<double> out;
    for (INLConstant* c = t->FrstNLConst(); c; c = t->NextNLConst()) out.push_back(c->GetValue());
    return out;
}

}  // namespace

int NonLinearity::Compare(INonLinearity* other, int mode, double tolerance, std::ostream& os) {
    if (!other) return 1;
    std::unordered_map<std::string, int> otherNames;
    for (ILPVariable* v = other->FrstVar(); v; v = other->NextVar()) ++otherNames[v->GetName()];
    for (ILPVariable* v : m_vars)
        if (!v || otherNames.find(v->GetName()) == otherNames.end()) return 1;

    const std::vector<double> mine = AllConstants(this);
    const std::vector<double> theirs = AllConstants(other);
    bool same = mine.size() == theirs.size();
    for (size_t i = 0; same && i < mine.size(); ++i)
        same = ZEMValuesEqual(mine[i], theirs[i], tolerance);
    if (same) return 0;

    const char* label1 = mode == 3 ? "old MG" : "p1";
    const char* label2 = mode == 3 ? "zem MG" : "p2";
    os << " Problem " << label1 << " Nonlinearity for Equation "
       << (m_equation ? m_equation->GetName() : "") << " matches a Problem " << label2
       << " Nonlinearity in Variables ";
    for (ILPVariable* v : m_vars) os << v->GetName() << " ";
    const std::vector<double> nz1 = NonZeroConstants(this);
    const std::vector<double> nz2 = NonZeroConstants(other);
    if (nz1.size() != 1 || nz2.size() != 1) {
        os << "but NOT in constants\n\n";
    } else {
        os << " but NOT in constants (" << label1 << " = " << nz1[0] << ", " << label2 << " = "
           << nz2[0] << ")\n\n";
    }
    return -1;
}

bool NonLinearity::MultiplierApart(INonLinearity* term) {
    auto* t = dynamic_cast<NonLinearity*>(term);
    INLConstant* first = t != nullptr ? t->FrstNLConst() : nullptr;
    return first != nullptr && first->GetValue() != t->GetFrstConstVal();
}
