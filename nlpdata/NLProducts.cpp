#include "nlpdata/NLProducts.h"

#include "lpdata/ILPNonZero.h"
#include "lpdata/ILPVariable.h"
#include "nlpdata/NLTypeCodes.h"

NonLinearityProduct::NonLinearityProduct() : NLGradientTerm(kNLProduct, "XPROD") {}

NonLinearityProduct::NonLinearityProduct(int16_t code, const char* keyword)
    : NLGradientTerm(code, keyword) {}

double NonLinearityProduct::VarProduct() {
    double p = 1.0;
    for (ILPVariable* v : Vars()) p *= v->GetVarValue();
    return p;
}

double NonLinearityProduct::EvaluateTerm() { return GetFrstConstVal() * VarProduct(); }

bool NonLinearityProduct::Gradient(std::vector<double>& grad) {
    const std::vector<ILPVariable*>& vars = Vars();
    const size_t n = vars.size();
    if (n == 0) return false;
    const double c1 = GetFrstConstVal();
    // Product of all occurrences but i = prefix[i] * (product of those after i).
    m_prefix.resize(n);
    double p = 1.0;
    for (size_t i = 0; i < n; ++i) {
        m_prefix[i] = p;
        p *= vars[i]->GetVarValue();
    }
    double suffix = 1.0;
    for (size_t i = n; i-- > 0;) {
        AddToOccurrence(grad, i, c1 * m_prefix[i] * suffix);
        suffix *= vars[i]->GetVarValue();
    }
    return true;
}

void NonLinearityProduct::TermJacobian() {
    const std::vector<ILPVariable*>& vars = Vars();
    if (m_walkInStep) {
        if (m_cacheArgs != 0 && m_cacheArgs == static_cast<int32_t>(vars.size()) &&
            NonZeros()[0] == m_cache.nz) {
            m_cache.nz->AddPartialDeriv(2.0 * GetFrstConstVal() * m_cache.var->GetVarValue());
            return;
        }
        if (vars.size() == 2 && vars[0] == vars[1] && !NonZeros().empty() && NonZeros()[0]) {
            m_cache.var = vars[0];
            m_cache.nz = NonZeros()[0];
            m_cacheArgs = 2;
            m_cache.nz->AddPartialDeriv(2.0 * GetFrstConstVal() * m_cache.var->GetVarValue());
            return;
        }
        m_cacheArgs = 0;
    }
    m_grad.assign(UniqueVars().size(), 0.0);
    if (!Gradient(m_grad)) return;
    if (m_walkInStep)
        AddInStep(m_grad);
    else
        AddBySearch(m_grad);
}

void NonLinearityProduct::TermString(std::string& out) {
    out = FormatNumber(GetFrstConstVal());
    for (ILPVariable* v : Vars()) {
        out += " * ";
        out += v->GetName();
    }
}

void NonLinearityProduct::WriteHeader(std::ostream& os) {
    os << "NONLINEARITY TYPE : PRODUCT \n";
}

NonLinearityProduct2::NonLinearityProduct2() : NonLinearityProduct(kNLProduct2, "XPROD2") {}

void NonLinearityProduct2::WriteHeader(std::ostream& os) {
    os << "NONLINEARITY TYPE : PRODUCT2 \n";
}
