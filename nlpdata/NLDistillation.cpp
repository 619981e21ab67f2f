#include "nlpdata/NLDistillation.h"

#include <cmath>
#include <cstdio>

#include "nlpdata/NLTypeCodes.h"

namespace {

// exp(35) and the slope of the continuation above 35.
constexpr double kExpHighValue = 1586013452313430.8;
constexpr double kExpHighSlope = 1.586013575e15;
// exp(-35) and the slope of the continuation below -35.
constexpr double kExpLowValue = 6.305116760146989e-16;
constexpr double kExpLowSlope = 6.305117315892082e-16;
// The floor of the continuation below -35.
constexpr double kExpFloor = 1e-38;

// A distribution parameter in the listing's own format.
std::string Param(double v) {
    char buf[48];
    std::snprintf(buf, sizeof buf, "% #8.4e", v);
    return buf;
}

}  // namespace

XNonLinearityDiBiDistFunc::XNonLinearityDiBiDistFunc()
    : NLGradientTerm(kNLDiBiDistFunc, "DIBIFUNC") {}

XNonLinearityDiBiDistFunc::XNonLinearityDiBiDistFunc(int16_t code, const char* keyword)
    : NLGradientTerm(code, keyword) {}

double XNonLinearityDiBiDistFunc::ExtendedExp(double u) {
    if (u > 35.0) return (u - 35.0) * kExpHighSlope + kExpHighValue;
    if (u >= -35.0) return std::exp(u);
    const double v = (u + 35.0) * kExpLowSlope + kExpLowValue;
    return v >= 0.0 ? v : kExpFloor;
}

double XNonLinearityDiBiDistFunc::ExtendedExpDerivative(double u) {
    if (u > 35.0) return kExpHighSlope;
    if (u >= -35.0) return std::exp(u);
    const double v = (u + 35.0) * kExpLowSlope + kExpLowValue;
    return v >= 0.0 ? kExpLowSlope : 0.0;
}

void XNonLinearityDiBiDistFunc::ArgSetup(DistArgs& args) {
    args.a = GetFrstConstVal();
    args.nbp = ConstValue(1, 0.0);
    args.ofs = ConstValue(2, 0.0);
    args.st = ConstValue(3, 0.0);
    args.sb = ConstValue(4, 0.0);
    args.x = ArgumentValue(0);
    args.z = (args.x - args.nbp) * (args.x > args.nbp ? args.st : args.sb);
}

double XNonLinearityDiBiDistFunc::Logistic(const DistArgs& args, double& dValue) {
    const double u = args.z + args.ofs;
    const double e = ExtendedExp(u);
    const double q = e + 1.0;
    dValue = args.a * ExtendedExpDerivative(u) / q / q;
    return args.a * (1.0 - 1.0 / q);
}

double XNonLinearityDiBiDistFunc::EvaluateTerm() {
    DistArgs args;
    ArgSetup(args);
    double d;
    return Logistic(args, d);
}

bool XNonLinearityDiBiDistFunc::Gradient(std::vector<double>& grad) {
    if (Vars().empty()) return false;
    DistArgs args;
    ArgSetup(args);
    double d;
    Logistic(args, d);
    AddToOccurrence(grad, 0, d * (args.x > args.nbp ? args.st : args.sb));
    return true;
}

void XNonLinearityDiBiDistFunc::TermString(std::string& out) {
    out = FormatNumber(GetFrstConstVal()) + " * DIBIDIST( " + ArgumentName(0) +
          ", NBP=" + Param(ConstValue(1, 0.0)) + ", OFS=" + Param(ConstValue(2, 0.0)) +
          ", ST=" + Param(ConstValue(3, 0.0)) + ", SB=" + Param(ConstValue(4, 0.0)) + " )";
}

void XNonLinearityDiBiDistFunc::WriteHeader(std::ostream& os) {
    os << "NONLINEARITY TYPE : DIBI DISTRIBUTION (ECP)\n";
}

// ---- DIBIFUNCX --------------------------------------------------------------

XNonLinearityDiBiFullDistFunc::XNonLinearityDiBiFullDistFunc()
    : XNonLinearityDiBiDistFunc(kNLDiBiFullDistFunc, "DIBIFUNCX") {}

void XNonLinearityDiBiFullDistFunc::ArgSetup(DistArgs& args) {
    args.a = GetFrstConstVal();
    args.nbp = ConstValue(1, 0.0);
    args.x = ArgumentValue(0);
    args.ofs = ArgumentValue(1);
    args.st = ArgumentValue(2);
    args.sb = ArgumentValue(3);
    args.z = (args.x - args.nbp) * (args.nbp >= args.x ? args.sb : args.st);
}

bool XNonLinearityDiBiFullDistFunc::Gradient(std::vector<double>& grad) {
    if (Vars().empty()) return false;
    DistArgs args;
    ArgSetup(args);
    double d;
    Logistic(args, d);
    const bool lower = args.nbp >= args.x;
    const double dist = args.x - args.nbp;
    AddToOccurrence(grad, 0, d * (lower ? args.sb : args.st));
    AddToOccurrence(grad, 1, d);
    AddToOccurrence(grad, 2, lower ? 0.0 : d * dist);
    AddToOccurrence(grad, 3, lower ? d * dist : 0.0);
    return true;
}

void XNonLinearityDiBiFullDistFunc::TermString(std::string& out) {
    out = FormatNumber(GetFrstConstVal()) + " * DIBIFUNCX( " + ArgumentName(0) +
          ", NBP=" + Param(ConstValue(1, 0.0)) + ", OFS= " + ArgumentName(1) +
          ", ST= " + ArgumentName(2) + ", SB= " + ArgumentName(3) + " )";
}

void XNonLinearityDiBiFullDistFunc::WriteHeader(std::ostream& os) {
    os << "NONLINEARITY TYPE : DIBI DISTRIBUTION (FULL)\n";
}
