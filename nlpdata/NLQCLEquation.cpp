#include "nlpdata/NLQCLEquation.h"

#include <cmath>

#include "lpdata/ILPEquation.h"
#include "lpdata/ZEMException.h"
#include "nlpdata/IQCLCorrelation.h"
#include "nlpdata/NLTypeCodes.h"
#include "nlpdata/NonLinearModel.h"
#include "nlpdata/QCLCorrelation.h"

NonLinearityQCLEquation::NonLinearityQCLEquation(const char* identifier, NonLinearModel* model)
    : NonLinearityEquationTerm(kNLQCLEquation, "QCLEQ", identifier, "QCL EQUATION"), m_model(model) {
    // "QCLEQ:<correlation>[:<output>]"
    const std::string id = GetNonLinearityID();
    const size_t first = id.find(':');
    if (first == std::string::npos) return;
    const size_t second = id.find(':', first + 1);
    m_correlation = id.substr(first + 1, second == std::string::npos ? std::string::npos : second - first - 1);
    if (second != std::string::npos) m_output = id.substr(second + 1);
}

void NonLinearityQCLEquation::Fail(const std::string& why) const {
    ILPEquation* eqn = GetEquationPtr();
    const std::string reason = std::string("Correlation term ") + GetNonLinearityID() +
                               " of row " + (eqn ? eqn->GetName() : "(none)") + ": " + why;
    ZEM_RAISE(zemsrc::kNlpData, "NonLinearModel Error", reason.c_str(), "NonLinearityQCLEquation::Compute");
}

double NonLinearityQCLEquation::Compute(std::vector<double>* grad) {
    if (!m_model) Fail("the term belongs to no nonlinear model");
    if (m_correlation.empty()) Fail("the identifier names no correlation");
    IQCLCorrelation* corr = m_model->QCLInstance(m_correlation);
    const int nIn = corr->GetInputCount();
    const int nOut = corr->GetOutputCount();
    if (NumberOfVariableTerms() != nIn + 1) {
        Fail("correlation " + m_correlation + " takes a flow and " + std::to_string(nIn) +
             " inputs, the term has " + std::to_string(NumberOfVariableTerms()) + " variables");
    }
    int out = m_output.empty() ? 0 : -1;
    for (int o = 0; out < 0 && o < nOut; ++o)
        if (corr->GetOutputName(o) == m_output) out = o;
    if (out < 0 || out >= nOut) Fail("correlation " + m_correlation + " has no output " + (m_output.empty() ? "at all" : m_output));

    const double flow = ArgumentValue(0);
    m_inputs.resize(static_cast<size_t>(nIn));
    for (int i = 0; i < nIn; ++i) m_inputs[static_cast<size_t>(i)] = ArgumentValue(static_cast<size_t>(i) + 1);
    corr->SetInputs(nIn, m_inputs.data());
    ILPEquation* eqn = GetEquationPtr();
    const int32_t code = corr->Calculate(eqn ? eqn->GetName() : "", flow, m_model->HqclLog());
    if (code != 0) Fail("the calculation failed with error code " + std::to_string(code));
    m_outputs.resize(static_cast<size_t>(nOut));
    corr->GetOutputs(nOut, m_outputs.data());
    const double value = m_outputs[static_cast<size_t>(out)];
    if (!std::isfinite(value)) Fail("output " + corr->GetOutputName(out) + " is not finite");
    const double c = ConstValue(0, 1.0);
    if (grad) {
        m_derivs.resize(static_cast<size_t>(nOut) * static_cast<size_t>(nIn));
        corr->GetDerivatives(static_cast<int>(m_derivs.size()), m_derivs.data());
        AddToOccurrence(*grad, 0, c * value);
        for (int i = 0; i < nIn; ++i) {
            const double d = m_derivs[static_cast<size_t>(out) * nIn + i];
            if (!std::isfinite(d)) Fail("a derivative of output " + corr->GetOutputName(out) + " is not finite");
            AddToOccurrence(*grad, static_cast<size_t>(i) + 1, c * flow * d);
        }
    }
    return c * flow * value;
}

double NonLinearityQCLEquation::EvaluateTerm() { return Compute(nullptr); }

bool NonLinearityQCLEquation::Gradient(std::vector<double>& grad) {
    Compute(&grad);
    return true;
}

void NonLinearityQCLEquation::TermJacobian(std::ostream& os) {
    NLGradientTerm::TermJacobian(os);
    for (double d : Derivatives()) {
        if (std::fabs(d) > QCLCorrelation::kUnbounded) {
            os << "*** WARNING: Unbounded derivatives - Check correlation validity range. \n\n";
            break;
        }
    }
}
