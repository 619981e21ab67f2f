#include "nlpdata/NLCurve.h"

#include <algorithm>
#include <cmath>
#include <numeric>

#include "nlpdata/NLTypeCodes.h"

NonLinearityCurve::NonLinearityCurve() : NLGradientTerm(kNLCurve, "GNREQ") {}

int NonLinearityCurve::AddNLConstantObject(INLConstant* c) {
    m_needSetup = true;
    return NLGradientTerm::AddNLConstantObject(c);
}

bool NonLinearityCurve::ArgSetup() {
    m_needSetup = false;
    m_valid = false;
    const size_t nc = Constants().size();
    if (nc < 5 || nc % 2 == 0) return false;
    const size_t n = (nc - 1) / 2;
    for (size_t i = 1; i < nc; ++i)
        if (!std::isfinite(ConstValue(i, 0.0))) return false;
    std::vector<size_t> order(n);
    std::iota(order.begin(), order.end(), size_t(0));
    std::stable_sort(order.begin(), order.end(), [this](size_t i, size_t j) {
        return ConstValue(1 + 2 * i, 0.0) < ConstValue(1 + 2 * j, 0.0);
    });
    m_x.resize(n);
    m_y.resize(n);
    for (size_t i = 0; i < n; ++i) {
        m_x[i] = ConstValue(1 + 2 * order[i], 0.0);
        m_y[i] = ConstValue(2 + 2 * order[i], 0.0);
        if (i > 0 && !(m_x[i] > m_x[i - 1])) return false;
    }
    // Shape-preserving knot slopes: the secant at the ends, a weighted
    // harmonic mean of the neighbouring secants inside, and 0 at a local
    // extremum of the data.
    std::vector<double> h(n - 1), d(n - 1);
    for (size_t k = 0; k + 1 < n; ++k) {
        h[k] = m_x[k + 1] - m_x[k];
        d[k] = (m_y[k + 1] - m_y[k]) / h[k];
    }
    m_slope.assign(n, 0.0);
    m_slope[0] = d[0];
    m_slope[n - 1] = d[n - 2];
    for (size_t k = 1; k + 1 < n; ++k) {
        if (d[k - 1] * d[k] <= 0.0) continue;
        const double w1 = 2.0 * h[k] + h[k - 1];
        const double w2 = h[k] + 2.0 * h[k - 1];
        m_slope[k] = (w1 + w2) / (w1 / d[k - 1] + w2 / d[k]);
    }
    m_valid = true;
    return true;
}

bool NonLinearityCurve::CurveAt(double x, double& f, double& slope) {
    if (m_needSetup) ArgSetup();
    if (!m_valid || std::isnan(x)) return false;
    const size_t n = m_x.size();
    if (x <= m_x[0]) {
        slope = m_slope[0];
        f = m_y[0] + slope * (x - m_x[0]);
        return true;
    }
    if (x >= m_x[n - 1]) {
        slope = m_slope[n - 1];
        f = m_y[n - 1] + slope * (x - m_x[n - 1]);
        return true;
    }
    const size_t k =
        static_cast<size_t>(std::upper_bound(m_x.begin(), m_x.end(), x) - m_x.begin()) - 1;
    const double h = m_x[k + 1] - m_x[k];
    const double t = (x - m_x[k]) / h;
    const double t2 = t * t, t3 = t2 * t;
    const double h00 = 2 * t3 - 3 * t2 + 1, h10 = t3 - 2 * t2 + t;
    const double h01 = -2 * t3 + 3 * t2, h11 = t3 - t2;
    f = h00 * m_y[k] + h10 * h * m_slope[k] + h01 * m_y[k + 1] + h11 * h * m_slope[k + 1];
    const double d00 = 6 * t2 - 6 * t, d10 = 3 * t2 - 4 * t + 1;
    const double d01 = -6 * t2 + 6 * t, d11 = 3 * t2 - 2 * t;
    slope = (d00 * m_y[k] + d01 * m_y[k + 1]) / h + d10 * m_slope[k] + d11 * m_slope[k + 1];
    return true;
}

double NonLinearityCurve::EvaluateTerm() {
    double f, slope;
    if (!CurveAt(ArgumentSum(), f, slope)) return 0.0;
    return GetFrstConstVal() * f;
}

bool NonLinearityCurve::Gradient(std::vector<double>& grad) {
    double f, slope;
    if (Vars().empty() || !CurveAt(ArgumentSum(), f, slope)) return false;
    AddToEveryOccurrence(grad, GetFrstConstVal() * slope);
    return true;
}

void NonLinearityCurve::TermString(std::string& out) {
    out = FormatNumber(GetFrstConstVal()) + " * GNREQ( " + JoinArgumentNames(" + ") + " ;";
    for (size_t i = 1; i + 1 < Constants().size(); i += 2)
        out += " (" + FormatNumber(ConstValue(i, 0.0)) + ", " + FormatNumber(ConstValue(i + 1, 0.0)) +
               ")";
    out += " )";
}

void NonLinearityCurve::WriteHeader(std::ostream& os) {
    os << "NONLINEARITY TYPE : GNREQ CURVE\n";
}
