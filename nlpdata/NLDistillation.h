// Two-slope logistic distribution functions of distillation:
// XNonLinearityDiBiDistFunc ("DIBIFUNC", code 91) with constant parameters
// and XNonLinearityDiBiFullDistFunc ("DIBIFUNCX", code 92) with its offset
// and slopes taken from variables.
//
// Both read seven numbers through ArgSetup: the multiplier a, the argument
// x, the break point NBP, the offset OFS, the upper slope ST, the lower slope
// SB and the scaled distance z, and evaluate
//   a * (1 - 1 / (ExtendedExp(z + OFS) + 1)),
// a logistic curve between 0 and a.
//
// DIBIFUNC: constants a, NBP, OFS, ST, SB in this order (absent ones read 0);
//   x is the value of the first argument (0 with none; further arguments
//   are ignored). z = (x - NBP) * ST when x > NBP, else (x - NBP) * SB.
// DIBIFUNCX: constants a, NBP; arguments x, OFS, ST, SB in this order (absent
//   ones read 0). z = (x - NBP) * SB when NBP >= x, else (x - NBP) * ST.
// At x = NBP both use the lower slope SB, for the value and the derivatives.
#pragma once

#include "nlpdata/NLGradientTerm.h"

class XNonLinearityDiBiDistFunc : public NLGradientTerm {
public:
    XNonLinearityDiBiDistFunc();
    double EvaluateTerm() override;
    // "a * DIBIDIST( X, NBP= n, OFS= o, ST= t, SB= b )"
    void TermString(std::string& out) override;

    // exp(u) continued by straight lines outside [-35, 35]: above 35 the
    // line (u - 35) * 1.586013575e15 + exp(35); below -35 the line
    // (u + 35) * 6.305117315892082e-16 + exp(-35) while it stays >= 0, and
    // 1e-38 below that.
    static double ExtendedExp(double u);
    static double ExtendedExpDerivative(double u);

protected:
    XNonLinearityDiBiDistFunc(int16_t code, const char* keyword);

    struct DistArgs {
        double a = 0.0, x = 0.0, nbp = 0.0, ofs = 0.0, st = 0.0, sb = 0.0, z = 0.0;
    };
    virtual void ArgSetup(DistArgs& args);
    // Logistic value and its derivative with respect to z + OFS.
    static double Logistic(const DistArgs& args, double& dValue);

    void WriteHeader(std::ostream& os) override;
    bool Gradient(std::vector<double>& grad) override;
};

class XNonLinearityDiBiFullDistFunc : public XNonLinearityDiBiDistFunc {
public:
    XNonLinearityDiBiFullDistFunc();
    // "a * DIBIFUNCX( X, NBP= n, OFS= O, ST= T, SB= B )"
    void TermString(std::string& out) override;

protected:
    void ArgSetup(DistArgs& args) override;
    void WriteHeader(std::ostream& os) override;
    bool Gradient(std::vector<double>& grad) override;
};
