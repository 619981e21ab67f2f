#include "nlpdata/NLDivision.h"

#include <cmath>

#include "lpdata/ILPVariable.h"
#include "nlpdata/NLTypeCodes.h"

namespace {

// A count held in a constant, truncated; -1 when it is not a usable count.
long CountOf(double v) {
    if (!(v >= 0.0) || v > 1e9) return -1;
    return static_cast<long>(v);
}

}  // namespace

NonLinearityDivision::NonLinearityDivision() : NLGradientTerm(kNLDivision, "DIV") {}

bool NonLinearityDivision::ArgSetup() {
    m_numCoefs.clear();
    m_numVars.clear();
    m_denCoefs.clear();
    m_denVars.clear();
    m_numByPos.assign(UniqueVars().size(), 0.0);
    m_denByPos.assign(UniqueVars().size(), 0.0);
    const long n = CountOf(ConstValue(0, -1.0));
    const long m = CountOf(ConstValue(1, -1.0));
    const size_t nVars = Vars().size();
    const size_t nConsts = Constants().size();
    if (n < 0 || m < 0 || static_cast<size_t>(n) > nVars || nConsts < 3 ||
        nVars != nConsts - 3 || static_cast<size_t>(n + m) != nVars)
        return false;
    const double k = ConstValue(2, 0.0);
    const std::vector<int>& pos = OccurrencePositions();
    const size_t nd = static_cast<size_t>(n);
    for (size_t i = 0; i < nd; ++i) {
        m_denCoefs.push_back(ConstValue(3 + i, 0.0));
        m_denVars.push_back(Vars()[i]);
        m_denByPos[static_cast<size_t>(pos[i])] += m_denCoefs.back();
    }
    for (size_t i = nd; i < nVars; ++i) {
        m_numCoefs.push_back(k * ConstValue(3 + i, 0.0));
        m_numVars.push_back(Vars()[i]);
        m_numByPos[static_cast<size_t>(pos[i])] += m_numCoefs.back();
    }
    return true;
}

void NonLinearityDivision::Forms(double& num, double& den) const {
    num = 0.0;
    den = 0.0;
    for (size_t i = 0; i < m_numVars.size(); ++i) num += m_numCoefs[i] * m_numVars[i]->GetVarValue();
    for (size_t i = 0; i < m_denVars.size(); ++i) den += m_denCoefs[i] * m_denVars[i]->GetVarValue();
}

double NonLinearityDivision::NumeratorDerivative(size_t x) {
    return x < m_numByPos.size() ? m_numByPos[x] : 0.0;
}

double NonLinearityDivision::DenominatorDerivative(size_t x, double d) {
    if (d == 0.0 || x >= m_denByPos.size()) return 0.0;
    return -m_denByPos[x] / d / d;
}

double NonLinearityDivision::EvaluateTerm() {
    if (!ArgSetup()) return 0.0;
    double num, den;
    Forms(num, den);
    return den == 0.0 ? 0.0 : Finite(num / den);
}

bool NonLinearityDivision::Gradient(std::vector<double>& grad) {
    if (!ArgSetup()) return false;
    double num, den;
    Forms(num, den);
    if (den == 0.0) return false;
    for (size_t i = 0; i < grad.size(); ++i)
        grad[i] = Finite(NumeratorDerivative(i) / den + num * DenominatorDerivative(i, den));
    return true;
}

void NonLinearityDivision::TermString(std::string& out) {
    // Printed from the constants as given, so that an incomplete term shows
    // what it holds.
    const long n = CountOf(ConstValue(0, -1.0));
    const size_t nd = n < 0 ? 0 : static_cast<size_t>(n);
    auto form = [&](size_t from, size_t to) {
        std::string s;
        for (size_t i = from; i < to && i < Vars().size(); ++i) {
            if (i > from) s += " + ";
            s += FormatNumber(ConstValue(3 + i, 0.0)) + " * " + Vars()[i]->GetName();
        }
        return s;
    };
    out = FormatNumber(ConstValue(2, 0.0)) + " * DIV( " + form(nd, Vars().size()) + ", " +
          form(0, nd) + " )";
}

void NonLinearityDivision::WriteHeader(std::ostream& os) { os << "NONLINEARITY TYPE : DIV\n"; }
