#include "nlpdata/NLSimDistInterp.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <numeric>

#include "lpdata/ILPVariable.h"
#include "nlpdata/NLTypeCodes.h"

namespace {

// The target is kept within these fractions of the total amount.
constexpr double kLowLimit = 0.01;
constexpr double kHighLimit = 0.99;
// Boiling points listed in the text form before it is cut short.
constexpr size_t kListedPoints = 6;

}  // namespace

XNonLinearitySimDistInterp::XNonLinearitySimDistInterp()
    : XNonLinearitySimDistInterp(kNLSimDistInterp, "SIMDISTINTRP", 0) {}

XNonLinearitySimDistInterp::XNonLinearitySimDistInterp(int16_t code, const char* keyword,
                                                       int32_t extraInputs)
    : NLGradientTerm(code, keyword), m_extraInputs(extraInputs) {}

bool XNonLinearitySimDistInterp::ArgSetup() {
    const size_t nArgs = Vars().size();
    const size_t extra = static_cast<size_t>(m_extraInputs);
    m_inputs = static_cast<int32_t>(nArgs);
    m_points = 0;
    if (nArgs < 2 + extra || Constants().size() != nArgs - extra + 3) return false;
    const size_t n = nArgs - extra;
    m_factors[0] = ConstValue(1, 0.0);
    m_factors[1] = GetFrstConstVal();
    m_factors[2] = ConstValue(2, 0.0);
    if (!std::isfinite(m_factors[0])) return false;
    for (size_t i = 0; i < n; ++i)
        if (!std::isfinite(ConstValue(3 + i, 0.0))) return false;

    // Points sorted by boiling point; m_order remembers their arguments.
    m_order.resize(n);
    std::iota(m_order.begin(), m_order.end(), 0);
    // Equal boiling points keep their argument order (sorted in place, no
    // temporary buffer: this runs at every evaluation).
    std::sort(m_order.begin(), m_order.end(), [this](int32_t i, int32_t j) {
        const double bi = ConstValue(3 + static_cast<size_t>(i), 0.0);
        const double bj = ConstValue(3 + static_cast<size_t>(j), 0.0);
        return bi < bj || (bi == bj && i < j);
    });
    m_abscissas.resize(n);
    m_amounts.resize(n);
    for (size_t q = 0; q < n; ++q) {
        const size_t arg = static_cast<size_t>(m_order[q]);
        m_abscissas[q] = ConstValue(3 + arg, 0.0);
        m_amounts[q] = std::max(Vars()[arg]->GetVarValue(), 0.0);
    }
    // Cut bounds halfway between neighbouring points; half a step beyond the ends.
    m_bounds.resize(n + 1);
    m_bounds[0] = m_abscissas[0] - std::fabs(m_abscissas[1] - m_abscissas[0]) / 2.0;
    for (size_t q = 1; q < n; ++q) m_bounds[q] = (m_abscissas[q - 1] + m_abscissas[q]) / 2.0;
    m_bounds[n] = m_abscissas[n - 1] + std::fabs(m_abscissas[n - 1] - m_abscissas[n - 2]) / 2.0;
    // Amount not yet distilled at each cut bound, the total first.
    m_values.resize(n + 1);
    m_values[0] = std::accumulate(m_amounts.begin(), m_amounts.end(), 0.0);
    for (size_t q = 0; q < n; ++q) m_values[q + 1] = m_values[q] - m_amounts[q];
    const double total = m_values[0];
    if (!(total > 0.0) || !std::isfinite(total)) return false;

    const double low = kLowLimit * total, high = kHighLimit * total;
    m_fraction = m_factors[0] / 100.0;
    m_target = m_fraction * total;
    if (m_target < low) {
        m_fraction = kLowLimit;
        m_target = low;
    } else if (m_target > high) {
        m_fraction = kHighLimit;
        m_target = high;
    }
    m_points = static_cast<int32_t>(n);
    return true;
}

int32_t XNonLinearitySimDistInterp::FindSegment(double target) {
    // Segment i holds the target when values[i-1] > remaining >= values[i].
    const double remaining = m_values[0] - target;
    int32_t i = std::min(std::max(m_lastSegment, int32_t(1)), m_points);
    while (i > 1 && m_values[static_cast<size_t>(i) - 1] <= remaining) --i;
    while (i < m_points && m_values[static_cast<size_t>(i)] > remaining) ++i;
    m_lastSegment = i;
    return i;
}

bool XNonLinearitySimDistInterp::Temperature(double& t) {
    if (!ArgSetup()) return false;
    const size_t i = static_cast<size_t>(FindSegment(m_target));
    const double remaining = m_values[0] - m_target;
    const double amount = m_amounts[i - 1];
    t = m_bounds[i - 1] + (m_values[i - 1] - remaining) / amount * (m_bounds[i] - m_bounds[i - 1]);
    return true;
}

double XNonLinearitySimDistInterp::FactorProduct() const { return m_factors[1] * m_factors[2]; }

double XNonLinearitySimDistInterp::EvaluateTerm() {
    double t;
    if (!Temperature(t)) return 0.0;
    return Finite(FactorProduct() * t);
}

bool XNonLinearitySimDistInterp::Gradient(std::vector<double>& grad) {
    double t;
    if (!Temperature(t)) return false;
    const size_t i = static_cast<size_t>(m_lastSegment);
    const double amount = m_amounts[i - 1];
    const double width = m_bounds[i] - m_bounds[i - 1];
    const double into = m_values[i - 1] - (m_values[0] - m_target);  // distilled within the cut
    const double g = FactorProduct();
    const double p = m_fraction;
    for (size_t q = 0; q < static_cast<size_t>(m_points); ++q) {
        if (!(m_amounts[q] > 0.0)) continue;
        double d;
        if (q + 1 < i)
            d = (p - 1.0) * width / amount;
        else if (q + 1 == i)
            d = p * width / amount - into * width / (amount * amount);
        else
            d = p * width / amount;
        AddToOccurrence(grad, static_cast<size_t>(m_order[q]), Finite(g * d));
    }
    return true;
}

void XNonLinearitySimDistInterp::TermString(std::string& out) {
    const size_t n = Vars().size() > static_cast<size_t>(m_extraInputs)
                         ? Vars().size() - static_cast<size_t>(m_extraInputs)
                         : 0;
    std::string amounts;
    for (size_t i = 0; i < n; ++i) {
        if (i) amounts += " + ";
        amounts += Vars()[i]->GetName();
    }
    std::string points;
    const size_t listed = Constants().size() > 3 ? Constants().size() - 3 : 0;
    for (size_t i = 0; i < listed && i < kListedPoints; ++i) {
        char buf[48];
        std::snprintf(buf, sizeof buf, "% #8.4e,", ConstValue(3 + i, 0.0));
        points += buf;
    }
    if (listed > kListedPoints)
        points += " ...";
    else if (!points.empty())
        points.pop_back();
    out = FormatNumber(GetFrstConstVal()) + " * SIMDISTINTRP( " + FormatNumber(ConstValue(1, 0.0)) +
          ", " + FormatNumber(ConstValue(2, 0.0)) + ", " + amounts + ", VDIST=" + points + " )";
}

void XNonLinearitySimDistInterp::WriteHeader(std::ostream& os) {
    os << "NONLINEARITY TYPE : SIM DIST INTERPOLATION\n";
}

// ---- SIMDISTINTRPFVT --------------------------------------------------------

XNonLinearitySimDistInterpFVT::XNonLinearitySimDistInterpFVT()
    : XNonLinearitySimDistInterp(kNLSimDistInterpFVT, "SIMDISTINTRPFVT", 1) {}

bool XNonLinearitySimDistInterpFVT::ArgSetup() {
    if (!XNonLinearitySimDistInterp::ArgSetup()) return false;
    m_factors[3] = Vars().back()->GetVarValue();
    return true;
}

double XNonLinearitySimDistInterpFVT::FactorProduct() const {
    return m_factors[1] * m_factors[2] * m_factors[3];
}

bool XNonLinearitySimDistInterpFVT::Gradient(std::vector<double>& grad) {
    if (!XNonLinearitySimDistInterp::Gradient(grad)) return false;
    double t;
    Temperature(t);
    AddToOccurrence(grad, Vars().size() - 1, Finite(m_factors[1] * m_factors[2] * t));
    return true;
}

void XNonLinearitySimDistInterpFVT::TermString(std::string& out) {
    XNonLinearitySimDistInterp::TermString(out);
    out += " * " + ArgumentName(Vars().empty() ? 0 : Vars().size() - 1);
}

void XNonLinearitySimDistInterpFVT::WriteHeader(std::ostream& os) {
    os << "NONLINEARITY TYPE : SIM DIST INTERPOLATION FVT\n";
}
