#include "nlpdata/NLPowers.h"

#include <cmath>
#include <limits>

#include "nlpdata/NLTypeCodes.h"

namespace {

constexpr double kXPowFloor = 1e-6;

}  // namespace

// ---- POW --------------------------------------------------------------------

NonLinearityPower::NonLinearityPower() : NLGradientTerm(kNLPower, "POW") {}

double NonLinearityPower::ClampedExponent(double a, double b, double x) {
    if (!(x > 0.0)) return x;
    const double top = std::log(std::fabs(std::numeric_limits<double>::max() / a));
    const double n = std::trunc(b);
    // Callers have b > 0, so n >= 0. ln(1) = 0 makes the limit infinite, as
    // does an infinite top (c1 = 0); ln(0) = -inf makes top / ln(n) = -0.
    if (n == 1.0 || !(top < HUGE_VAL)) return x;
    const double xmax = n == 0.0 ? -1e-6 : top / std::log(n) - 1e-6;
    if (x > xmax) x = (x - xmax) / x + xmax;
    return x;
}

double NonLinearityPower::EvaluateTerm() {
    const double a = GetFrstConstVal();
    const double b = ConstValue(1, 0.0);
    if (!(b > 0.0)) return 0.0;
    return Finite(std::pow(b, ClampedExponent(a, b, ArgumentSum())) * a);
}

bool NonLinearityPower::Gradient(std::vector<double>& grad) {
    const double a = GetFrstConstVal();
    const double b = ConstValue(1, 0.0);
    if (!(b > 0.0) || Vars().empty()) return false;
    const double x = ClampedExponent(a, b, ArgumentSum());
    AddToEveryOccurrence(grad, Finite(a * std::pow(b, x) * std::log(b)));
    return true;
}

void NonLinearityPower::TermString(std::string& out) {
    out = FormatNumber(GetFrstConstVal()) + " * POW( " + FormatNumber(ConstValue(1, 0.0)) + ", " +
          JoinArgumentNames(" + ") + " )";
}

void NonLinearityPower::WriteHeader(std::ostream& os) { os << "NONLINEARITY TYPE : POWER\n"; }

// ---- XPOW -------------------------------------------------------------------

NonLinearityXPower::NonLinearityXPower() : NLGradientTerm(kNLXPower, "XPOW") {}

double NonLinearityXPower::Value(double a, double p, double x) {
    if (x >= kXPowFloor) return Finite(a * std::pow(x, p));
    const double n = std::round(p);
    if (std::fabs(n - p) < 1e-6) return Finite(n == 2.0 ? a * x * x : a * std::pow(x, n));
    return Finite(a * (std::pow(kXPowFloor, p) +
                       p * std::pow(kXPowFloor, p - 1.0) * (x - kXPowFloor)));
}

double NonLinearityXPower::Derivative(double a, double p, double x) {
    if (x >= kXPowFloor) return Finite(a * p * std::pow(x, p - 1.0));
    const double n = std::round(p);
    // The integral branch differentiates the power it evaluates, x^n.
    if (std::fabs(n - p) < 1e-6) return Finite(a * n * std::pow(x, n - 1.0));
    return Finite(a * p * std::pow(kXPowFloor, p - 1.0));
}

double NonLinearityXPower::Argument() const {
    const double offset = Constants().size() == 3 ? ConstValue(2, 0.0) : 0.0;
    return offset + ArgumentSum();
}

double NonLinearityXPower::EvaluateTerm() {
    return Value(GetFrstConstVal(), ConstValue(1, 0.0), Argument());
}

bool NonLinearityXPower::Gradient(std::vector<double>& grad) {
    AddToEveryOccurrence(grad, Derivative(GetFrstConstVal(), ConstValue(1, 0.0), Argument()));
    return true;
}

void NonLinearityXPower::TermString(std::string& out) {
    std::string arg = JoinArgumentNames(" + ");
    if (Constants().size() == 3) arg = FormatNumber(ConstValue(2, 0.0)) + " + " + arg;
    out = FormatNumber(GetFrstConstVal()) + " * POW( " + arg + ", " +
          FormatNumber(ConstValue(1, 0.0)) + " )";
}

void NonLinearityXPower::WriteHeader(std::ostream& os) { os << "NONLINEARITY TYPE : X POWER\n"; }
