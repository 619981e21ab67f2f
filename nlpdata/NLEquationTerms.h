// The equation-type and wrapper terms, which the nonlinear model or its block
// list make because they need the model's context:
//   NonLinearityBlockEquation ("NLBLKEQ", code 8)  - an equation of a nonlinear block
//   NonLinearityQCLEquation   ("QCLEQ", code 9)    - a blending-correlation equation,
//                                                    in nlpdata/NLQCLEquation.h
//   NonLinearityNLEEquation   ("USEREQ", code 11)  - a user equation, in
//                                                    nlpdata/NLUserEquation.h
//   NonLinearityWrap          ("WRAPEQ", code 12)  - a wrapper around another term
//   NonLinearitySCDEquation   ("SCDEQ", code 13)   - a closed distillation-model equation
//
// Their identifiers are composed from more than the keyword ("SCDEQ:name"),
// so each keeps the full identifier given at creation (the keyword alone
// when none is given), together with its arguments and constants, and
// survives writing and reading.
//
// Apart from the correlation and user equations, their evaluation is not
// built: each evaluates to 0 and adds no derivatives. A wrapper remembers the
// term handed to AddNonlinearityRef and returns it from GetNonlinearityRef;
// it does not own it.
#pragma once

#include "nlpdata/NLGradientTerm.h"

class NonLinearityEquationTerm : public NLGradientTerm {
public:
    double EvaluateTerm() override { return 0.0; }
    // "ID( ARG1, ARG2 ; c1, c2 )"
    void TermString(std::string& out) override;

protected:
    // `identifier` null or empty: the keyword.
    NonLinearityEquationTerm(int16_t code, const char* keyword, const char* identifier,
                             const char* title);

    // "NONLINEARITY TYPE : <title> : <identifier>"
    void WriteHeader(std::ostream& os) override;
    bool Gradient(std::vector<double>&) override { return false; }

private:
    const char* m_title;
};

class NonLinearityBlockEquation : public NonLinearityEquationTerm {
public:
    explicit NonLinearityBlockEquation(const char* identifier = nullptr);
};

class NonLinearitySCDEquation : public NonLinearityEquationTerm {
public:
    explicit NonLinearitySCDEquation(const char* identifier = nullptr);
};

class NonLinearityWrap : public NonLinearityEquationTerm {
public:
    explicit NonLinearityWrap(const char* identifier = nullptr);
    void AddNonlinearityRef(INonLinearity* term) override { m_wrapped = term; }
    INonLinearity* GetNonlinearityRef() override { return m_wrapped; }

private:
    INonLinearity* m_wrapped = nullptr;
};
