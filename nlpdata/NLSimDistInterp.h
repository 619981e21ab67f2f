// Interpolation on a simulated distillation curve:
// XNonLinearitySimDistInterp ("SIMDISTINTRP", code 93) and
// XNonLinearitySimDistInterpFVT ("SIMDISTINTRPFVT", code 94).
//
// A stream is described by n >= 2 pseudo-components, each with a normal
// boiling point (a constant) and an amount (a variable). The term returns the
// temperature at which a given percentage of the stream has distilled, read
// from the stream's simulated distillation curve:
//   - each component boils over its cut, from halfway to its lower neighbour
//     to halfway to its upper one (the first cut starts half a step below the
//     first point, the last ends half a step above the last point);
//   - within its cut a component distils evenly, so the cumulative amount
//     distilled is piecewise linear in temperature.
//
// Constants: c1 = a, the multiplier; c2 = P, the percentage distilled (0-100);
//   c3 = s, a scale of the result (1, or a unit conversion);
//   c4..c(n+3) = B1..Bn, the boiling points, in any order.
// Arguments: v1..vn, the amounts of the components, in the order of B1..Bn;
//   SIMDISTINTRPFVT takes one more argument last, F (a flow), and multiplies
//   the result by it, which gives the flow-weighted temperature a property
//   balance blends.
// Value: SIMDISTINTRP a * s * T(P); SIMDISTINTRPFVT a * s * F * T(P).
//
// The target amount is P / 100 of the total W, kept within the limits 1% and
// 99% of W (the initial and final boiling points are not sharp). Negative
// amounts count as 0. A term whose argument or constant counts do not fit
// the layout, or whose total amount is not positive, evaluates to 0 and adds
// no derivatives. Derivatives are analytic with respect to every amount (and
// F); the temperature does not depend on a component's amount while it is 0.
#pragma once

#include <cstdint>

#include "nlpdata/NLGradientTerm.h"

class XNonLinearitySimDistInterp : public NLGradientTerm {
public:
    XNonLinearitySimDistInterp();
    double EvaluateTerm() override;
    // "a * SIMDISTINTRP( P, s, V1 + V2, VDIST= B1, B2, ... )"
    void TermString(std::string& out) override;

    // The curve's temperature at the target percentage (no factors); false
    // when the term is not a valid curve.
    bool Temperature(double& t);

protected:
    XNonLinearitySimDistInterp(int16_t code, const char* keyword, int32_t extraInputs);

    // Builds the curve table from the constants and the arguments; false
    // when they do not fit the layout or the total amount is not positive.
    virtual bool ArgSetup();
    // Product of the stored factors (a and s; F for the FVT form).
    virtual double FactorProduct() const;
    // Finds the component whose cut holds the target amount, starting from
    // the one found last; returns its position (1-based) in the sorted table.
    int32_t FindSegment(double target);

    void WriteHeader(std::ostream& os) override;
    bool Gradient(std::vector<double>& grad) override;

    // Stored factors: P, a, s and (FVT) F.
    double m_factors[4] = {0.0, 0.0, 0.0, 1.0};

private:
    std::vector<double> m_abscissas;  // boiling points, sorted
    std::vector<double> m_values;     // amount not yet distilled at each cut bound; [0] = total
    std::vector<double> m_bounds;     // cut bounds, n + 1
    std::vector<int32_t> m_order;     // argument occurrence of each sorted point
    std::vector<double> m_amounts;    // amounts in sorted order, negatives as 0
    int32_t m_points = 0;
    int32_t m_inputs = 0;
    int32_t m_extraInputs = 0;
    int32_t m_lastSegment = 1;
    // Target amount and its fraction of the total after the limits.
    double m_target = 0.0;
    double m_fraction = 0.0;
};

class XNonLinearitySimDistInterpFVT : public XNonLinearitySimDistInterp {
public:
    XNonLinearitySimDistInterpFVT();
    // "a * SIMDISTINTRP( P, s, V1 + V2, VDIST= B1, B2, ... ) * F"
    void TermString(std::string& out) override;

protected:
    bool ArgSetup() override;
    double FactorProduct() const override;
    void WriteHeader(std::ostream& os) override;
    bool Gradient(std::vector<double>& grad) override;
};
