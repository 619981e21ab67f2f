// NonLinearityCurve ("GNREQ", code 10): a general correlation curve y = f(x)
// given by points, for relations known only as a table (a yield or a
// property against a severity, for instance).
//
// Constants: c1 = a, the multiplier; then the points as pairs
//   X1, Y1, X2, Y2, ..., Xn, Yn   (n >= 2, any order, abscissas distinct).
// Arguments: x = the sum of the argument values (each occurrence counts).
// Value: a * f(x), where f is the shape-preserving piecewise cubic Hermite
// interpolant of the points (monotone wherever the data are, no overshoot,
// continuous first derivative), extended beyond the first and last points by
// straight lines with the end slopes.
//
// The points are sorted and the knot slopes computed by ArgSetup, once; the
// set-up is done again before the next evaluation when a constant is added
// or after RequestArgSetup() (call it after changing a constant's value in
// place). A term with an even number of constants, fewer than two points or
// two points at the same abscissa evaluates to 0 and adds no derivatives.
#pragma once

#include "nlpdata/NLGradientTerm.h"

class NonLinearityCurve : public NLGradientTerm {
public:
    NonLinearityCurve();

    using NLGradientTerm::AddNLConstantObject;
    // Adds the constant and asks for a new set-up.
    int AddNLConstantObject(INLConstant* c) override;
    double EvaluateTerm() override;
    // "a * GNREQ( X1 + X2 ; (x1, y1) (x2, y2) ... )"
    void TermString(std::string& out) override;

    // Makes the next evaluation read the points again.
    void RequestArgSetup() { m_needSetup = true; }
    // f and f' at x (without the multiplier); false when the curve is invalid.
    bool CurveAt(double x, double& f, double& slope);

protected:
    // Reads, sorts and checks the points and computes the knot slopes.
    virtual bool ArgSetup();
    void WriteHeader(std::ostream& os) override;
    bool Gradient(std::vector<double>& grad) override;

private:
    bool m_needSetup = true;
    bool m_valid = false;
    std::vector<double> m_x;
    std::vector<double> m_y;
    std::vector<double> m_slope;  // f' at each point
};
