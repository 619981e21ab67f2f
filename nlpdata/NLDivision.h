// NonLinearityDivision ("DIV", code 21): a quotient of two linear forms.
//
// Constants: c1 = n, the number of denominator variables; c2 = m, the number
// of numerator variables; c3 = k, the numerator multiplier; then the n
// denominator coefficients d1..dn; then the m numerator coefficients e1..em.
// Arguments: the n denominator variables, then the m numerator variables.
//   D = d1 * y1 + ... + dn * yn
//   N = k * (e1 * z1 + ... + em * zm)
//   value = N / D; 0 when D is exactly 0.
// The counts are read as integers (truncated). The term is set up only when
// n + m arguments and 3 + n + m constants are given (n, m >= 0); otherwise it
// evaluates to 0 and adds no derivatives. The first constant is a count here,
// not a multiplier.
//
// Derivatives (quotient rule): each argument receives
// NumeratorDerivative(x) / D + N * DenominatorDerivative(x, D), nothing when
// D is 0. A variable that stands in both forms, or more than once in one,
// receives the sum of its coefficients' contributions.
#pragma once

#include "nlpdata/NLGradientTerm.h"

class NonLinearityDivision : public NLGradientTerm {
public:
    NonLinearityDivision();
    double EvaluateTerm() override;
    // "k * DIV( e1 * Z1 + e2 * Z2, d1 * Y1 )"
    void TermString(std::string& out) override;

protected:
    // Reads the counts and coefficients and pairs them with the arguments;
    // false when the term is not a valid quotient.
    virtual bool ArgSetup();
    // dN/dx for the distinct argument x at position `x`: its (k-multiplied)
    // numerator coefficient, 0 when it is not in the numerator.
    virtual double NumeratorDerivative(size_t x);
    // d(1/D)/dx: -(denominator coefficient of x) / D^2; 0 when D is 0 or x is
    // not in the denominator.
    virtual double DenominatorDerivative(size_t x, double d);

    void WriteHeader(std::ostream& os) override;
    bool Gradient(std::vector<double>& grad) override;

private:
    // Numerator and denominator at the current point.
    void Forms(double& num, double& den) const;

    std::vector<double> m_numCoefs;  // already multiplied by k
    std::vector<ILPVariable*> m_numVars;
    std::vector<double> m_denCoefs;
    std::vector<ILPVariable*> m_denVars;
    // Summed coefficients of each distinct argument, for the derivatives.
    std::vector<double> m_numByPos;
    std::vector<double> m_denByPos;
};
