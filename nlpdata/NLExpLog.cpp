#include "nlpdata/NLExpLog.h"

#include <cmath>

#include "nlpdata/NLTypeCodes.h"

namespace {

// Deliberately a little below the largest double: the exponential is
// continued by its tangent before a * exp(x) gets there.
constexpr double kExpCeiling = 1.7797162035136925e308;

// Ei at 0.001 (rounded, as the continuation requires) and its slope there.
constexpr double kEiLowX = 0.001;
constexpr double kEiLowValue = -6.33;
constexpr double kEiLowSlope = 1001.0005001667084;
// Ei at 700 and its slope there.
constexpr double kEiHighX = 700.0;
constexpr double kEiHighValue = 1.4509787360525608e301;
constexpr double kEiHighSlope = 1.4489029353357207e301;
// Where the power series hands over to the asymptotic series.
constexpr double kEiSeriesSwitch = 36.04365338911715;
constexpr double kEpsilon = 2.220446049250313e-16;
constexpr double kEulerGamma = 0.577215664901533;

// a * exp(x) without overflowing in exp(x) when a is small.
double ScaledExp(double a, double x) {
    if (a == 0.0) return 0.0;
    if (x < 700.0) return a * std::exp(x);
    return std::copysign(std::exp(x + std::log(std::fabs(a))), a);
}

// Where EXPX leaves the exponential; +inf when there is no limit (a == 0).
double ExpLimit(double a) {
    if (a == 0.0) return HUGE_VAL;
    return std::log(std::fabs(kExpCeiling / a));
}

// a * (the sum of the function's arguments) as a text: "c2 + X1 + X2".
std::string SumText(const std::string& offset, const std::string& names) {
    return names.empty() ? offset : offset + " + " + names;
}

}  // namespace

// ---- EXPX -------------------------------------------------------------------

NonLinearityExponentialX::NonLinearityExponentialX() : NLGradientTerm(kNLExponentialX, "EXPX") {}

double NonLinearityExponentialX::Value(double a, double x) {
    if (x <= 0.0) return a * std::exp(x);
    const double xmax = ExpLimit(a);
    if (x > xmax) return Finite((x - xmax + 1.0) * ScaledExp(a, xmax));
    return Finite(ScaledExp(a, x));
}

double NonLinearityExponentialX::Derivative(double a, double x) {
    if (x <= 0.0) return a * std::exp(x);
    const double xmax = ExpLimit(a);
    return Finite(ScaledExp(a, x > xmax ? xmax : x));
}

double NonLinearityExponentialX::EvaluateTerm() {
    return Value(GetFrstConstVal(), ConstValue(1, 0.0) + ArgumentSum());
}

bool NonLinearityExponentialX::Gradient(std::vector<double>& grad) {
    AddToEveryOccurrence(grad, Derivative(GetFrstConstVal(), ConstValue(1, 0.0) + ArgumentSum()));
    return true;
}

void NonLinearityExponentialX::TermString(std::string& out) {
    out = FormatNumber(GetFrstConstVal()) + " * EXP( " +
          SumText(FormatNumber(ConstValue(1, 0.0)), JoinArgumentNames(" + ")) + " )";
}

void NonLinearityExponentialX::WriteHeader(std::ostream& os) {
    os << "NONLINEARITY TYPE : EXPONENTIAL X\n";
}

// ---- LNX --------------------------------------------------------------------

NonLinearityNaturalLogX::NonLinearityNaturalLogX() : NLGradientTerm(kNLNaturalLogX, "LNX") {}

double NonLinearityNaturalLogX::Epsilon() const {
    if (Constants().size() != 3) return 1e-6;
    const double eps = ConstValue(2, 1e-6);
    return eps > 0.0 ? eps : 1e-6;
}

double NonLinearityNaturalLogX::Value(double a, double x, double eps) {
    if (x >= eps) return a * std::log(x);
    return a * (std::log(eps) + (x - eps) / eps);
}

double NonLinearityNaturalLogX::Derivative(double a, double x, double eps) {
    return x >= eps ? a / x : a / eps;
}

double NonLinearityNaturalLogX::EvaluateTerm() {
    return Value(GetFrstConstVal(), ConstValue(1, 0.0) + ArgumentSum(), Epsilon());
}

bool NonLinearityNaturalLogX::Gradient(std::vector<double>& grad) {
    AddToEveryOccurrence(
        grad, Derivative(GetFrstConstVal(), ConstValue(1, 0.0) + ArgumentSum(), Epsilon()));
    return true;
}

void NonLinearityNaturalLogX::TermString(std::string& out) {
    out = FormatNumber(GetFrstConstVal()) + " * LN( " +
          SumText(FormatNumber(ConstValue(1, 0.0)), JoinArgumentNames(" + ")) + " )";
}

void NonLinearityNaturalLogX::WriteHeader(std::ostream& os) {
    os << "NONLINEARITY TYPE : NATURAL LOG\n";
}

// ---- EI ---------------------------------------------------------------------

NonLinearityEI::NonLinearityEI() : NLGradientTerm(kNLEI, "EI") {}

double NonLinearityEI::Value(double a, double x) {
    if (x < kEiLowX) return ((x - kEiLowX) * kEiLowSlope + kEiLowValue) * a;
    if (x > kEiHighX) return Finite(((x - kEiHighX) * kEiHighSlope + kEiHighValue) * a);
    if (x < kEiSeriesSwitch) {
        // Ei(x) = gamma + ln(x) + sum x^k / (k * k!)
        double s = 0.0, t = 1.0;
        for (int k = 1;; ++k) {
            t = t * x / k;
            const double term = t / k;
            s += term;
            if (term < s * kEpsilon || k >= 99) break;
        }
        return (std::log(x) + s + kEulerGamma) * a;
    }
    // Ei(x) ~ exp(x) / x * (1 + sum k! / x^k), cut where its terms start to grow.
    double s = 0.0, t = 1.0;
    for (int k = 1; k <= 100; ++k) {
        const double previous = t;
        t = t * k / x;
        if (t < kEpsilon) break;
        if (t >= previous) {
            s -= previous;
            break;
        }
        s += t;
    }
    return Finite(std::exp(x) * (1.0 + s) / x * a);
}

double NonLinearityEI::Derivative(double a, double x) {
    if (x < kEiLowX) return a * kEiLowSlope;
    if (x > kEiHighX) return a * kEiHighSlope;
    return Finite(a * std::exp(x) / x);
}

double NonLinearityEI::EvaluateTerm() {
    return Value(GetFrstConstVal(), ConstValue(1, 0.0) + ArgumentSum());
}

bool NonLinearityEI::Gradient(std::vector<double>& grad) {
    AddToEveryOccurrence(grad, Derivative(GetFrstConstVal(), ConstValue(1, 0.0) + ArgumentSum()));
    return true;
}

void NonLinearityEI::TermString(std::string& out) {
    out = FormatNumber(GetFrstConstVal()) + " * EI( " +
          SumText(FormatNumber(ConstValue(1, 0.0)), JoinArgumentNames(" + ")) + " )";
}

void NonLinearityEI::WriteHeader(std::ostream& os) { os << "NONLINEARITY TYPE : EI\n"; }
