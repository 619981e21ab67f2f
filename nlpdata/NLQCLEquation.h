// NonLinearityQCLEquation ("QCLEQ", code 9): a blending-correlation term.
//
// Form (the same in XMPS cards and in the model file, through the term's
// identifier, its variables and its constants):
//   identifier  "QCLEQ:<correlation>" or "QCLEQ:<correlation>:<output>",
//               the correlation's and the output property's identifiers as
//               the correlation library gives them (output: the first one
//               when not named);
//   variables   the flow first, then one per input of the correlation, in
//               the library's input order;
//   constants   the first is the multiplier c (1 when there is none).
// Value: c * flow * output(inputs). Derivatives: c * output by the flow, and
// c * flow * d output / d input_i by input i.
//
// In XMPS, a row that blends gasoline vapour pressure by its RVP index:
//    E  RVPBLEND   QCLEQ:RVP  -1.000000e+00     GASOLINE     RVPG
// adds -GASOLINE * RVPG^1.25 to row RVPBLEND.
//
// Evaluation goes through the model's shared instance of the correlation,
// loading the library on first use. A term without a model, a correlation or
// output the library does not know, a variable count that does not match the
// correlation's inputs, a failed calculation (after the failure line in the
// correlation log) or an output or derivative that is not finite each throw
// ZEM_Exception ("NonLinearModel Error") naming the row.
#pragma once

#include <string>
#include <vector>

#include "nlpdata/NLEquationTerms.h"

class NonLinearModel;

class NonLinearityQCLEquation : public NonLinearityEquationTerm {
public:
    explicit NonLinearityQCLEquation(const char* identifier = nullptr, NonLinearModel* model = nullptr);

    double EvaluateTerm() override;
    // The base listing, then "*** WARNING: Unbounded derivatives - Check
    // correlation validity range. \n\n" when a derivative exceeds 1e9.
    void TermJacobian(std::ostream& os) override;
    using NLGradientTerm::TermJacobian;

    // The correlation and output named by the identifier ("" when absent).
    const std::string& Correlation() const { return m_correlation; }
    const std::string& Output() const { return m_output; }

protected:
    bool Gradient(std::vector<double>& grad) override;

private:
    // Calculates at the current point; fills `grad` when given.
    double Compute(std::vector<double>* grad);
    [[noreturn]] void Fail(const std::string& why) const;

    NonLinearModel* m_model;
    std::string m_correlation;
    std::string m_output;
    std::vector<double> m_inputs;
    std::vector<double> m_outputs;
    std::vector<double> m_derivs;
};
