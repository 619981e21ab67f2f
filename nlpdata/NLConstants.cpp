#include "nlpdata/NLConstants.h"

#include "nlpdata/NLTypeCodes.h"

NonLinearityConstant::NonLinearityConstant() : NLGradientTerm(kNLConstant, "CONST") {}

double NonLinearityConstant::EvaluateTerm() {
    double s = 0.0;
    for (INLConstant* c : Constants()) s += c->GetValue();
    return s;
}

void NonLinearityConstant::TermString(std::string& out) {
    out.clear();
    if (Constants().empty()) {
        out = FormatNumber(0.0);
        return;
    }
    for (size_t i = 0; i < Constants().size(); ++i) {
        if (i) out += " + ";
        out += FormatNumber(ConstValue(i, 0.0));
    }
}

void NonLinearityConstant::WriteHeader(std::ostream& os) {
    os << "NONLINEARITY TYPE : CONSTANT (SUM) \n";
}

NonLinearityConstantProd::NonLinearityConstantProd() : NLGradientTerm(kNLConstantProd, "CONSTPROD") {}

double NonLinearityConstantProd::EvaluateTerm() {
    double p = 1.0;
    for (INLConstant* c : Constants()) p *= c->GetValue();
    return p;
}

void NonLinearityConstantProd::TermString(std::string& out) {
    out.clear();
    if (Constants().empty()) {
        out = FormatNumber(1.0);
        return;
    }
    for (size_t i = 0; i < Constants().size(); ++i) {
        if (i) out += " * ";
        out += FormatNumber(ConstValue(i, 0.0));
    }
}

void NonLinearityConstantProd::WriteHeader(std::ostream& os) {
    os << "NONLINEARITY TYPE : CONSTANT PRODUCT \n";
}
