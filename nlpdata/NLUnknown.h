// NonLinearityUnknown (type 7, "NLUNKNOWN"): a term whose type is not known
// to this library.
//
// The factory makes one for any code or keyword it has no class for. It keeps
// the name it was asked for (so that a model read with a foreign keyword is
// written out again with that keyword) together with its arguments and
// constants, evaluates to 0.0 and adds no derivatives.
#pragma once

#include "nlpdata/NLGradientTerm.h"

class NonLinearityUnknown : public NLGradientTerm {
public:
    // Remembers "NLUNKNOWN".
    NonLinearityUnknown();
    // Remembers `name` (null or empty: "NLUNKNOWN").
    explicit NonLinearityUnknown(const char* name);

    double EvaluateTerm() override { return 0.0; }
    // "NAME( ARG1, ARG2, c1, c2 )": the remembered name, then the arguments
    // and the constants in their order.
    void TermString(std::string& out) override;

protected:
    // "NONLINEARITY TYPE : *** WARNING UNRECOGNIZED TYPE *** : NAME".
    void WriteHeader(std::ostream& os) override;
    bool Gradient(std::vector<double>&) override { return false; }
};
