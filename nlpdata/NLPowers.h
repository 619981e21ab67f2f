// Powers: NonLinearityPower ("POW", code 14), a constant base raised to a sum
// of arguments, and NonLinearityXPower ("XPOW", code 15), a sum of arguments
// raised to a constant exponent.
//
// POW inputs: c1 the multiplier, c2 the base b (0 when absent); x = the sum
// of the argument values (each occurrence counts). Value c1 * b^x. For x > 0
// the exponent is clamped against overflow: with n = b truncated toward zero,
//   xmax = ln(|1.7976931348623157e308 / c1|) / ln(n) - 1e-6,
// and beyond xmax, x is replaced by (x - xmax) / x + xmax. The logarithm base
// is the truncated n, not b: for 1 <= b < 2, ln(1) = 0 and nothing is
// clamped; for 0 < b < 1, ln(0) = -inf and xmax = -1e-6, so every positive x
// is replaced by a value just above 1. The derivative, c1 * b^x * ln(b), is
// taken at the same (possibly replaced) x. A base b <= 0 has no real power:
// such a term evaluates to 0 and adds no derivatives.
//
// XPOW inputs: c1 the multiplier, c2 the exponent p (0 when absent), c3 an
// offset (only when the term has exactly three constants, else 0);
// x = c3 + the sum of the argument values. Value c1 * x^p for x >= 1e-6.
// Below 1e-6: an exponent within 1e-6 of an integer n gives c1 * x^n (so
// negative x is allowed: c1 * x * x for n = 2); any other exponent gives the
// tangent at 1e-6, c1 * (1e-6^p + p * 1e-6^(p-1) * (x - 1e-6)).
// Results past the largest double (x^n at 0 for n < 0, for instance) are held
// at the largest double.
#pragma once

#include "nlpdata/NLGradientTerm.h"

class NonLinearityPower : public NLGradientTerm {
public:
    NonLinearityPower();
    double EvaluateTerm() override;
    // "c1 * POW( b, X1 + X2 )"
    void TermString(std::string& out) override;

    // The exponent after the overflow clamp.
    static double ClampedExponent(double a, double b, double x);

protected:
    void WriteHeader(std::ostream& os) override;
    bool Gradient(std::vector<double>& grad) override;
};

class NonLinearityXPower : public NLGradientTerm {
public:
    NonLinearityXPower();
    double EvaluateTerm() override;
    // "c1 * POW( c3 + X1 + X2, p )"
    void TermString(std::string& out) override;

    // Value and derivative of a * x^p with the guard below 1e-6.
    static double Value(double a, double p, double x);
    static double Derivative(double a, double p, double x);

protected:
    // x = offset + the sum of the argument values.
    double Argument() const;
    void WriteHeader(std::ostream& os) override;
    bool Gradient(std::vector<double>& grad) override;
};
