// Small process formulas: NonLinearityEvaporationGDOT ("EVAP", code 16),
// NonLinearityFloatingTankQualityBalance ("FLTQB", code 20) and
// NonLinearityTPercent ("TPERCENT", code 18). None of them uses the first
// constant as a multiplier except TPERCENT.
//
// EVAP: the percentage of a band reached by a temperature.
//   Constants: c1 = T, the temperature; c2 is kept as an integer (shown in
//   the text form; it does not enter the value).
//   Arguments: y1..ym. H = y1 + ... + y(m-1), L = ym.
//   Value: 0 when T < L; 100 when T > H; else 100 * (T - L) / (H - L).
//   A band of no width (H = L = T) gives 0 with no derivatives.
//
// FLTQB: a floating tank's quality balance over exactly five arguments
//   A, B, C, D, E (in this order). Value: D - E when B <= A, else
//   B*C + A*D - A*C - B*E. Any other number of arguments: 0, no derivatives.
//
// TPERCENT: the temperature at which a stream reaches a given percentage
//   evaporated, read from its evaporation curve by inverse linear
//   interpolation. The curve is given at n >= 2 fixed temperatures as
//   variables (the percentage evaporated at each, which blends linearly by
//   volume), so the term turns blended curve points into a cut point.
//   Constants: c1 = a, the multiplier; c2 = P, the target percentage;
//     c3..c(n+2) = T1..Tn, the temperatures of the curve points, ascending.
//   Arguments: y1..yn, the percentage evaporated at T1..Tn.
//   Segment: the first k (1 <= k < n) with P <= y(k+1), else the last one;
//   below y1 and above yn the end segments are extended.
//   Value: a * ((P - yk) * slope + Tk), slope = (T(k+1) - Tk) / dy with
//   dy = y(k+1) - yk, but never less than 0.001 (a flat or falling segment is
//   taken with the smallest step 0.001; then y(k+1) gets no derivative).
//   A term with fewer than two points or with other than n + 2 constants
//   evaluates to 0 and adds no derivatives.
#pragma once

#include <cstdint>

#include "nlpdata/NLGradientTerm.h"

class NonLinearityEvaporationGDOT : public NLGradientTerm {
public:
    NonLinearityEvaporationGDOT();
    double EvaluateTerm() override;
    // "EVAP( T, c2, Y1 + Y2, Y3 )": T, the integer, the H sum, L.
    void TermString(std::string& out) override;

protected:
    void WriteHeader(std::ostream& os) override;
    bool Gradient(std::vector<double>& grad) override;

private:
    // H and L at the current point.
    void Band(double& high, double& low) const;
};

class NonLinearityFloatingTankQualityBalance : public NLGradientTerm {
public:
    NonLinearityFloatingTankQualityBalance();
    double EvaluateTerm() override;
    // "* FLTQB( A, B, C, D, E )"
    void TermString(std::string& out) override;

protected:
    void WriteHeader(std::ostream& os) override;
    bool Gradient(std::vector<double>& grad) override;
};

class NonLinearityTPercent : public NLGradientTerm {
public:
    NonLinearityTPercent();
    double EvaluateTerm() override;
    // "a * TPERCENT( P, ( T1, Y1 ) + ( T2, Y2 ) )"
    void TermString(std::string& out) override;

protected:
    // Reads the curve: the temperatures from the constants, the percentages
    // from the arguments; false when the term is not a valid curve.
    virtual bool ArgSetup();
    // The segment k (0-based) that holds the target percentage.
    int FindSegment() const;

    void WriteHeader(std::ostream& os) override;
    bool Gradient(std::vector<double>& grad) override;

private:
    std::vector<double> m_temps;
    std::vector<double> m_percents;
};
