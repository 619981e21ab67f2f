#include "nlpdata/NLGradientTerm.h"

#include <cmath>
#include <limits>
#include <unordered_map>

#include "lpdata/ILPEquation.h"
#include "lpdata/ILPNonZero.h"
#include "lpdata/ILPVariable.h"

NLGradientTerm::NLGradientTerm(int16_t code, const char* keyword) {
    SetTypeAndID(code, keyword);
}

std::vector<double> NLGradientTerm::Derivatives() {
    std::vector<double> grad(UniqueVars().size(), 0.0);
    if (!Gradient(grad)) grad.clear();
    return grad;
}

void NLGradientTerm::TermJacobian() {
    m_grad.assign(UniqueVars().size(), 0.0);
    if (Gradient(m_grad)) AddInStep(m_grad);
}

void NLGradientTerm::TermJacobian(std::ostream& os) {
    os << "Jacobian of NonLinearity [" << GetIndex() << "] EqnIdx = "
       << (GetEquationPtr() ? GetEquationPtr()->GetIndex() : 0) << " : "
       << (GetNonLinearityID() ? GetNonLinearityID() : "") << "\n";
    const std::vector<double> grad = Derivatives();
    if (grad.empty()) {
        os << "   no derivatives\n";
        return;
    }
    const std::vector<ILPVariable*>& uv = UniqueVars();
    for (size_t i = 0; i < uv.size(); ++i)
        os << "   " << uv[i]->GetName() << " = " << FormatNumber(grad[i]) << "\n";
}

void NLGradientTerm::Display(std::ostream& os) {
    WriteHeader(os);
    NonLinearity::Display(os);
}

const std::vector<int>& NLGradientTerm::OccurrencePositions() {
    const std::vector<ILPVariable*>& vars = Vars();
    if (m_positions.size() == vars.size()) return m_positions;
    const std::vector<ILPVariable*>& uv = UniqueVars();
    m_positions.assign(vars.size(), 0);
    if (uv.size() <= 8) {
        for (size_t i = 0; i < vars.size(); ++i)
            for (size_t j = 0; j < uv.size(); ++j)
                if (uv[j] == vars[i]) {
                    m_positions[i] = static_cast<int>(j);
                    break;
                }
    } else {
        std::unordered_map<const ILPVariable*, int> where;
        where.reserve(uv.size());
        for (size_t j = 0; j < uv.size(); ++j) where.emplace(uv[j], static_cast<int>(j));
        for (size_t i = 0; i < vars.size(); ++i) m_positions[i] = where[vars[i]];
    }
    return m_positions;
}

double NLGradientTerm::ArgumentSum() const {
    double s = 0.0;
    for (ILPVariable* v : Vars()) s += v->GetVarValue();
    return s;
}

double NLGradientTerm::ArgumentValue(size_t i) const {
    return i < Vars().size() ? Vars()[i]->GetVarValue() : 0.0;
}

void NLGradientTerm::AddToEveryOccurrence(std::vector<double>& grad, double g) {
    for (int p : OccurrencePositions()) grad[static_cast<size_t>(p)] += g;
}

void NLGradientTerm::AddToOccurrence(std::vector<double>& grad, size_t i, double g) {
    const std::vector<int>& pos = OccurrencePositions();
    if (i < pos.size()) grad[static_cast<size_t>(pos[i])] += g;
}

void NLGradientTerm::AddInStep(const std::vector<double>& grad) {
    const std::vector<ILPNonZero*>& nz = NonZeros();
    const size_t n = nz.size() < grad.size() ? nz.size() : grad.size();
    for (size_t i = 0; i < n; ++i)
        if (nz[i]) nz[i]->AddPartialDeriv(grad[i]);
}

void NLGradientTerm::AddBySearch(const std::vector<double>& grad) {
    const std::vector<ILPVariable*>& uv = UniqueVars();
    const std::vector<ILPNonZero*>& nz = NonZeros();
    for (size_t i = 0; i < uv.size() && i < grad.size(); ++i)
        for (ILPNonZero* e : nz)
            if (e && e->GetVariablePtr() == uv[i]) {
                e->AddPartialDeriv(grad[i]);
                break;
            }
}

std::string NLGradientTerm::JoinArgumentNames(const char* sep) const {
    std::string out;
    for (size_t i = 0; i < Vars().size(); ++i) {
        if (i) out += sep;
        out += Vars()[i]->GetName();
    }
    return out;
}

std::string NLGradientTerm::ArgumentName(size_t i) const {
    return i < Vars().size() ? std::string(Vars()[i]->GetName()) : std::string();
}

double NLGradientTerm::Finite(double v) {
    if (std::isinf(v)) return std::copysign(std::numeric_limits<double>::max(), v);
    return v;
}
