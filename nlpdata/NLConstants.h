// Terms made of constants only: NonLinearityConstant ("CONST", code 4), the
// sum of all constants (0 with none), and NonLinearityConstantProd
// ("CONSTPROD", code 5), their product (1 with none). Neither depends on a
// variable, so neither adds derivatives.
#pragma once

#include "nlpdata/NLGradientTerm.h"

class NonLinearityConstant : public NLGradientTerm {
public:
    NonLinearityConstant();
    double EvaluateTerm() override;
    // "c1 + c2 + ... + cn" ("0" printed in the numeric format with none).
    void TermString(std::string& out) override;

protected:
    void WriteHeader(std::ostream& os) override;
    bool Gradient(std::vector<double>&) override { return false; }
};

class NonLinearityConstantProd : public NLGradientTerm {
public:
    NonLinearityConstantProd();
    double EvaluateTerm() override;
    // "c1 * c2 * ... * cn" ("1" printed in the numeric format with none).
    void TermString(std::string& out) override;

protected:
    void WriteHeader(std::ostream& os) override;
    bool Gradient(std::vector<double>&) override { return false; }
};
