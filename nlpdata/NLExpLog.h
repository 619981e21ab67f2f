// Exponential, logarithm and exponential integral of a sum of arguments:
// NonLinearityExponentialX ("EXPX", code 3), NonLinearityNaturalLogX ("LNX",
// code 2) and NonLinearityEI ("EI", code 17).
//
// Inputs of all three: the multiplier c1 (the first constant), the offset c2
// (second constant, 0 when absent) and the arguments; the argument of the
// function is x = c2 + the sum of the current values of all argument
// occurrences. An argument that occurs k times receives k times the
// derivative with respect to x.
//
// Each function is continued by a straight line where it would overflow or is
// not defined, so that values and derivatives stay finite:
//   EXPX  c1 * exp(x); beyond xmax = ln(|1.7797162035136925e308 / c1|) the
//         tangent at xmax, (x - xmax + 1) * exp(xmax) * c1 (a result past the
//         largest double is held at the largest double).
//   LNX   c1 * ln(x); below eps the tangent at eps,
//         c1 * (ln(eps) + (x - eps) / eps). eps is the third constant when the
//         term has exactly three constants (a non-positive one is replaced by
//         1e-6), else 1e-6.
//   EI    c1 * Ei(x), Ei the exponential integral: below 0.001 the line
//         (x - 0.001) * 1001.0005001667084 - 6.33; above 700 the line
//         (x - 700) * 1.4489029353357207e301 + 1.4509787360525608e301;
//         between, a power series (x < 36.04365338911715) or the asymptotic
//         series.
#pragma once

#include "nlpdata/NLGradientTerm.h"

class NonLinearityExponentialX : public NLGradientTerm {
public:
    NonLinearityExponentialX();
    double EvaluateTerm() override;
    // "c1 * EXP( c2 + X1 + X2 )"
    void TermString(std::string& out) override;

    // Value and derivative of a * exp(x) with the overflow continuation.
    static double Value(double a, double x);
    static double Derivative(double a, double x);

protected:
    void WriteHeader(std::ostream& os) override;
    bool Gradient(std::vector<double>& grad) override;
};

class NonLinearityNaturalLogX : public NLGradientTerm {
public:
    NonLinearityNaturalLogX();
    double EvaluateTerm() override;
    // "c1 * LN( c2 + X1 + X2 )"
    void TermString(std::string& out) override;

    // Value and derivative of a * ln(x) continued linearly below eps.
    static double Value(double a, double x, double eps);
    static double Derivative(double a, double x, double eps);

protected:
    // The threshold of the linear continuation.
    double Epsilon() const;
    void WriteHeader(std::ostream& os) override;
    bool Gradient(std::vector<double>& grad) override;
};

class NonLinearityEI : public NLGradientTerm {
public:
    NonLinearityEI();
    double EvaluateTerm() override;
    // "c1 * EI( c2 + X1 + X2 )"
    void TermString(std::string& out) override;

    // Value and derivative of a * Ei(x) with the linear continuations.
    static double Value(double a, double x);
    static double Derivative(double a, double x);

protected:
    void WriteHeader(std::ostream& os) override;
    bool Gradient(std::vector<double>& grad) override;
};
