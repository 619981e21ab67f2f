#include "nlpdata/NLUserEquation.h"

#include <cmath>
#include <cstring>
#include <limits>

#include "lpdata/ILPVariable.h"
#include "lpdata/ZEMException.h"
#include "nlpdata/NLTypeCodes.h"

namespace {

constexpr const char* kCategory = "NonLinearModel Error";
constexpr const char* kMakePlace = "NonLinearModel::CreateNLNleObject";
constexpr const char* kAddPlace = "NonLinearModel::AddNonLinearityObject";
constexpr const char* kPrefix = "USEREQ:";

[[noreturn]] void Refuse(const std::string& reason, const char* place) {
    ZEM_RAISE(zemsrc::kNlpData, kCategory, reason, place);
}

// The formula carried by the identifier or by the separate text, checked and
// without white space.
std::string AcceptedFormula(const char* identifier, const char* text) {
    const char* colon = identifier ? std::strchr(identifier, ':') : nullptr;
    const std::string fromId = colon ? colon + 1 : "";
    const std::string fromText = text ? text : "";
    if (!fromId.empty() && !fromText.empty() && fromId != fromText)
        Refuse("User equation " + std::string(identifier) + " is also given the formula '" + fromText + "'",
               kMakePlace);
    const std::string& formula = fromId.empty() ? fromText : fromId;
    if (formula.empty()) Refuse("User equation without a formula: expected USEREQ:formula", kMakePlace);
    CExpEval check(true, true);
    if (check.Parse(formula.c_str()) != CExpEval::kOk)
        Refuse("User equation formula '" + formula + "' : " + check.GetErrorMessage() + " (position " +
                   std::to_string(check.GetErrorPosition()) + ")",
               kMakePlace);
    std::string compact;
    for (char c : formula)
        if (!std::strchr(" \t\n\r\v\f", c)) compact += c;
    if (std::strlen(kPrefix) + compact.size() > NonLinearityNLEEquation::kMaxIdentifier)
        Refuse("User equation formula '" + compact + "' is longer than " +
                   std::to_string(NonLinearityNLEEquation::kMaxIdentifier - std::strlen(kPrefix)) + " characters",
               kMakePlace);
    return compact;
}

}  // namespace

NonLinearityNLEEquation::NonLinearityNLEEquation(const char* identifier, const char* formula)
    : NonLinearityEquationTerm(kNLNLEEquation, "USEREQ",
                               (kPrefix + AcceptedFormula(identifier, formula)).c_str(), "USER EQUATION"),
      m_formula(GetNonLinearityID() + std::strlen(kPrefix)),
      m_eval(true, true) {
    if (m_eval.Parse(m_formula.c_str()) != CExpEval::kOk)
        Refuse("User equation formula '" + m_formula + "' : " + m_eval.GetErrorMessage(), kMakePlace);
    const size_t n = static_cast<size_t>(m_eval.NumberOfSymbols());
    m_bound.assign(n, nullptr);
    m_slot.assign(n, 0);
    m_symbolGrad.assign(n, 0.0);
}

int NonLinearityNLEEquation::AddVariableObject(ILPVariable* var) {
    const int count = NonLinearity::AddVariableObject(var);
    if (!var) return count;
    const int symbol = m_eval.FindSymbol(var->GetName());
    if (symbol >= 0 && !m_bound[symbol]) {
        m_bound[symbol] = var;
        const std::vector<ILPVariable*>& uv = UniqueVars();
        for (size_t k = uv.size(); k-- > 0;)
            if (uv[k] == var) m_slot[symbol] = static_cast<int>(k);
    }
    return count;
}

void NonLinearityNLEEquation::CheckComplete() const {
    const std::string id = GetNonLinearityID();
    for (size_t i = 0; i < m_bound.size(); ++i)
        if (!m_bound[i])
            Refuse("User equation " + id + " : the name '" + m_eval.SymbolName(static_cast<int>(i)) +
                       "' in its formula is none of its variables",
                   kAddPlace);
    if (Constants().size() > 1)
        Refuse("User equation " + id + " takes one constant, its multiplier, not " +
                   std::to_string(Constants().size()),
               kAddPlace);
}

void NonLinearityNLEEquation::CheckIfUserEquation(INonLinearity* term) {
    if (term && term->GetType() == kNLNLEEquation)
        if (auto* user = dynamic_cast<NonLinearityNLEEquation*>(term)) user->CheckComplete();
}

void NonLinearityNLEEquation::LoadValues() {
    for (size_t i = 0; i < m_bound.size(); ++i)
        m_eval.SetSymbolValue(static_cast<int>(i), m_bound[i] ? m_bound[i]->GetVarValue() : 0.0);
}

double NonLinearityNLEEquation::EvaluateTerm() {
    LoadValues();
    double value = 0.0;
    if (m_eval.EvaluatePostfix(value) != CExpEval::kOk) return std::numeric_limits<double>::quiet_NaN();
    return Finite(Multiplier() * value);
}

bool NonLinearityNLEEquation::Gradient(std::vector<double>& grad) {
    LoadValues();
    double value = 0.0;
    if (m_eval.EvaluateGradient(value, m_symbolGrad.data()) != CExpEval::kOk) return false;
    const double k = Multiplier();
    for (size_t i = 0; i < m_bound.size(); ++i)
        if (m_bound[i] && static_cast<size_t>(m_slot[i]) < grad.size()) grad[m_slot[i]] += Finite(k * m_symbolGrad[i]);
    return true;
}
