#include "nlpdata/NLProcess.h"

#include <cmath>

#include "lpdata/ILPVariable.h"
#include "nlpdata/NLTypeCodes.h"

namespace {

// The smallest percentage step a TPERCENT segment is taken with.
constexpr double kMinPercentStep = 0.001;

// An integer held in a constant (truncated), 0 when it does not fit.
long IntegerOf(double v) {
    if (!(std::fabs(v) < 2e9)) return 0;
    return static_cast<long>(v);
}

}  // namespace

// ---- EVAP -------------------------------------------------------------------

NonLinearityEvaporationGDOT::NonLinearityEvaporationGDOT()
    : NLGradientTerm(kNLEvaporation, "EVAP") {}

void NonLinearityEvaporationGDOT::Band(double& high, double& low) const {
    const size_t m = Vars().size();
    high = 0.0;
    for (size_t i = 0; i + 1 < m; ++i) high += Vars()[i]->GetVarValue();
    low = ArgumentValue(m == 0 ? 0 : m - 1);
}

double NonLinearityEvaporationGDOT::EvaluateTerm() {
    const double t = GetFrstConstVal();
    double high, low;
    Band(high, low);
    if (t < low) return 0.0;
    if (t > high) return 100.0;
    if (high == low) return 0.0;
    return 100.0 * (t - low) / (high - low);
}

bool NonLinearityEvaporationGDOT::Gradient(std::vector<double>& grad) {
    const double t = GetFrstConstVal();
    double high, low;
    Band(high, low);
    if (t < low || t > high || high == low || Vars().empty()) return false;
    const double w2 = (high - low) * (high - low);
    const size_t m = Vars().size();
    for (size_t i = 0; i + 1 < m; ++i) AddToOccurrence(grad, i, -100.0 * (t - low) / w2);
    AddToOccurrence(grad, m - 1, 100.0 * (t - high) / w2);
    return true;
}

void NonLinearityEvaporationGDOT::TermString(std::string& out) {
    const size_t m = Vars().size();
    std::string high;
    for (size_t i = 0; i + 1 < m; ++i) {
        if (i) high += " + ";
        high += Vars()[i]->GetName();
    }
    out = "EVAP( " + FormatNumber(GetFrstConstVal()) + ", " +
          std::to_string(IntegerOf(ConstValue(1, 0.0))) + ", " + high + ", " +
          ArgumentName(m == 0 ? 0 : m - 1) + " )";
}

void NonLinearityEvaporationGDOT::WriteHeader(std::ostream& os) {
    os << "NONLINEARITY TYPE : EVAPORATION GDOT\n";
}

// ---- FLTQB ------------------------------------------------------------------

NonLinearityFloatingTankQualityBalance::NonLinearityFloatingTankQualityBalance()
    : NLGradientTerm(kNLFloatingTankQB, "FLTQB") {}

double NonLinearityFloatingTankQualityBalance::EvaluateTerm() {
    if (Vars().size() != 5) return 0.0;
    const double a = ArgumentValue(0), b = ArgumentValue(1), c = ArgumentValue(2),
                 d = ArgumentValue(3), e = ArgumentValue(4);
    if (b <= a) return d - e;
    return b * c + a * d - a * c - b * e;
}

bool NonLinearityFloatingTankQualityBalance::Gradient(std::vector<double>& grad) {
    if (Vars().size() != 5) return false;
    const double a = ArgumentValue(0), b = ArgumentValue(1), c = ArgumentValue(2),
                 d = ArgumentValue(3), e = ArgumentValue(4);
    if (b <= a) {
        AddToOccurrence(grad, 3, 1.0);
        AddToOccurrence(grad, 4, -1.0);
    } else {
        AddToOccurrence(grad, 0, d - c);
        AddToOccurrence(grad, 1, c - e);
        AddToOccurrence(grad, 2, b - a);
        AddToOccurrence(grad, 3, a);
        AddToOccurrence(grad, 4, -b);
    }
    return true;
}

void NonLinearityFloatingTankQualityBalance::TermString(std::string& out) {
    out = "* FLTQB( " + JoinArgumentNames(", ") + " )";
}

void NonLinearityFloatingTankQualityBalance::WriteHeader(std::ostream& os) {
    os << "NONLINEARITY TYPE : FLTQB\n";
}

// ---- TPERCENT ---------------------------------------------------------------

NonLinearityTPercent::NonLinearityTPercent() : NLGradientTerm(kNLTPercent, "TPERCENT") {}

bool NonLinearityTPercent::ArgSetup() {
    const size_t n = Vars().size();
    if (n < 2 || Constants().size() != n + 2) return false;
    m_temps.resize(n);
    m_percents.resize(n);
    for (size_t i = 0; i < n; ++i) {
        m_temps[i] = ConstValue(2 + i, 0.0);
        m_percents[i] = Vars()[i]->GetVarValue();
    }
    return true;
}

int NonLinearityTPercent::FindSegment() const {
    const double p = ConstValue(1, 0.0);
    const int last = static_cast<int>(m_percents.size()) - 2;
    for (int k = 0; k < last; ++k)
        if (p <= m_percents[static_cast<size_t>(k) + 1]) return k;
    return last;
}

double NonLinearityTPercent::EvaluateTerm() {
    if (!ArgSetup()) return 0.0;
    const size_t k = static_cast<size_t>(FindSegment());
    const double p = ConstValue(1, 0.0);
    double dy = m_percents[k + 1] - m_percents[k];
    if (dy < kMinPercentStep) dy = kMinPercentStep;
    const double slope = (m_temps[k + 1] - m_temps[k]) / dy;
    return GetFrstConstVal() * ((p - m_percents[k]) * slope + m_temps[k]);
}

bool NonLinearityTPercent::Gradient(std::vector<double>& grad) {
    if (!ArgSetup()) return false;
    const size_t k = static_cast<size_t>(FindSegment());
    const double a = GetFrstConstVal();
    const double p = ConstValue(1, 0.0);
    const double dt = m_temps[k + 1] - m_temps[k];
    const double dy = m_percents[k + 1] - m_percents[k];
    if (dy < kMinPercentStep) {
        AddToOccurrence(grad, k, -a * dt / kMinPercentStep);
        return true;
    }
    const double u = (p - m_percents[k]) / dy;  // position within the segment
    AddToOccurrence(grad, k, a * dt / dy * (u - 1.0));
    AddToOccurrence(grad, k + 1, -a * dt / dy * u);
    return true;
}

void NonLinearityTPercent::TermString(std::string& out) {
    out = FormatNumber(GetFrstConstVal()) + " * TPERCENT( " + FormatNumber(ConstValue(1, 0.0));
    for (size_t i = 0; i < Vars().size(); ++i) {
        out += i ? " + ( " : ", ( ";
        out += FormatNumber(ConstValue(2 + i, 0.0)) + ", " + Vars()[i]->GetName() + " )";
    }
    out += " )";
}

void NonLinearityTPercent::WriteHeader(std::ostream& os) {
    os << "NONLINEARITY TYPE : TPERCENT\n";
}
