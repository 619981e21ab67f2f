// QCLCorrelation: the instance of one library correlation (IQCLCorrelation).
//
// Initialise asks the library, in this order, for the coefficient count (a
// negative count is kept as 0), the type, the index pair, the input count,
// the output count and the slack count, then sizes the input, output and
// derivative arrays; derivatives start at 0. The log flag starts at 0.
//
// The report of one calculation, when the log flag is set (numbers with up
// to 10 significant digits):
//   Equation: RVPBLEND
//   PCC Flow: 1
//   CorrIndex: 0
//   Input Values: RVP = 9
//   Output Property: RVPI = 15.59
//   Coefficients: EXPONENT = 1.25
//   Partial Derivatives: 
//   Output Prop RVPI: RVP = 2.165
// An output or derivative above 1e9 in absolute value (strictly) gets the
// "Unbounded property values" / "Unbounded derivatives" warning at the end of
// its line. A failure is the one line
//   Equation: RVPBLEND HQCL FAILED ****** Error code 3
// A library that claims more or fewer outputs than it has fails with code
// kBadOutputCount.
#pragma once

#include <vector>

#include "nlpdata/IQCLCorrelation.h"

class QCLLibrary;

class QCLCorrelation : public IQCLCorrelation {
public:
    // Code of a calculation whose actual output count is out of range.
    static constexpr int32_t kBadOutputCount = -1000;
    // Strict limit above which outputs and derivatives are flagged.
    static constexpr double kUnbounded = 1e9;

    explicit QCLCorrelation(const QCLLibrary& library) : m_lib(library) {}

    bool Initialise(int32_t correlationId) override;
    int32_t GetCorrelationId() const override { return m_id; }
    int32_t GetType() const override { return m_type; }
    int32_t GetIndexPair() const override { return m_indexPair; }
    int32_t GetLogFlag() const override { return m_log; }
    void SetLogFlag(int32_t on) override { m_log = on; }
    int32_t GetCoefCount() const override { return m_coefCount; }
    int32_t GetSlackCount() const override { return m_slackCount; }
    int32_t GetInputCount() const override { return m_inputCount; }
    int32_t GetOutputCount() const override { return m_outputCount; }
    std::string GetInputName(int32_t i) const override;
    std::string GetOutputName(int32_t o) const override;
    int SetInputs(int count, const double* values) override;
    int GetOutputs(int capacity, double* buffer) const override;
    int GetDerivatives(int capacity, double* buffer) const override;
    int32_t Calculate(const char* row, double flow, std::ostream* log) override;
    int32_t GetDescription(std::string& text) const override;
    int32_t GetOutputType(int32_t o, int32_t& type) const override;
    int32_t GetCoefficient(int32_t c, std::string& name, double& value) const override;
    int32_t SetCoefficient(int32_t c, double value) override;
    int GetInputs(int capacity, double* buffer) const override;
    int SetInput(int i, double value) override;
    int SetDerivativeOption(int32_t option) override;
    void SetForwardOption(int32_t on) override { m_forward = on != 0; }

private:
    void Report(std::ostream& os, const char* row, double flow) const;
    // Replaces the derivatives by differences of the outputs around the
    // inputs; 0 or the library's code for a shifted point.
    int32_t Differences(double flow);

    const QCLLibrary& m_lib;
    int32_t m_id = -1;
    int32_t m_type = 0;
    int32_t m_indexPair = -1;
    int32_t m_log = 0;
    int32_t m_coefCount = 0;
    int32_t m_slackCount = 0;
    int32_t m_inputCount = 0;
    int32_t m_outputCount = 0;
    bool m_allocated = false;
    bool m_differences = false;
    bool m_forward = true;
    std::vector<double> m_inputs;
    std::vector<double> m_outputs;
    std::vector<double> m_derivs;
};
