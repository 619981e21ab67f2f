// NonLinearityNLEEquation ("USEREQ", code 11): a user equation, a term whose
// value is a formula over its variables.
//
//   identifier "USEREQ:2*FEED*ln(TEMP)-FEED^2", constant 0.5, variables FEED, TEMP
//   value      0.5 * (2*FEED*ln(TEMP) - FEED^2)
//
// The formula is the part of the identifier after "USEREQ:" (the language of
// CExpEval). The model's CreateNLNleObject(name, out, p1, p2) takes it from
// p1 when the name carries none ("USEREQ"); a name and a p1 that both carry
// a formula must agree; p2 is not used. The term keeps the formula without
// white space (that never changes what an accepted formula means) and makes
// its identifier "USEREQ:" + formula, so the identifier alone carries the
// formula through the XMPS file (it is the card's keyword) and the model
// file. An identifier is at most 128 characters, the longest keyword an XMPS
// card holds.
//
// The formula's names are its variables' names, compared exactly (as the
// model compares names). A variable whose name the formula language cannot
// spell (a function name such as "ln", a name that begins with a digit or
// holds ".", "+", "=" and the like) cannot be named in a formula. The first constant, when
// there is one, multiplies the formula; a term takes at most one constant.
//
// Refusals (ZEM_Exception, category "NonLinearModel Error"):
//   - when the term is made: a missing, unreadable or too long formula, with
//     the evaluator's message and position;
//   - when the term is added to the model (CheckComplete): a formula name
//     that is none of its variables, or more than one constant.
// Derivatives are those of the parsed formula (CExpEval::EvaluateGradient),
// exact up to rounding; an infinite value or derivative is replaced by the
// largest finite double of its sign, as in the elementary types. A variable
// the formula does not name gets 0. At a
// point where the formula fails (a division by exactly 0) the term's value
// is NaN and it adds no derivatives, so the failure shows in the row.
#pragma once

#include <string>
#include <vector>

#include "nlpdata/CExpEval.h"
#include "nlpdata/NLEquationTerms.h"

class NonLinearityNLEEquation : public NonLinearityEquationTerm {
public:
    static constexpr size_t kMaxIdentifier = 128;

    // Throws ZEM_Exception when the formula is refused.
    explicit NonLinearityNLEEquation(const char* identifier, const char* formula = nullptr);

    int AddVariableObject(ILPVariable* var) override;
    double EvaluateTerm() override;

    // Throws ZEM_Exception when the term is not ready to join a model.
    void CheckComplete() const;
    // Calls CheckComplete when `term` is a user equation.
    static void CheckIfUserEquation(INonLinearity* term);

    const std::string& Formula() const { return m_formula; }

protected:
    bool Gradient(std::vector<double>& grad) override;

private:
    // Copies the variables' values into the evaluator's symbols.
    void LoadValues();
    double Multiplier() const { return Constants().empty() ? 1.0 : GetFrstConstVal(); }

    std::string m_formula;
    CExpEval m_eval;
    std::vector<ILPVariable*> m_bound;  // per symbol: its variable, null until given
    std::vector<int> m_slot;            // per symbol: its variable's place among the distinct ones
    std::vector<double> m_symbolGrad;
};
