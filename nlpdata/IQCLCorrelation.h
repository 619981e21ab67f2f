// One instance of one correlation of the correlation library: the shape the
// library reports, and buffers for inputs, outputs and derivatives.
//
//   IQCLCorrelation* c = model->AddQCLCorrelationInstance(0);
//   double in = 9.0;
//   c->SetInputs(1, &in);
//   if (c->Calculate("RVPBLEND", 1.0, nullptr) == 0) {
//       double out = 0.0, d = 0.0;
//       c->GetOutputs(1, &out);       // 0; -2 with capacity 0
//       c->GetDerivatives(1, &d);     // derivative of output 0 by input 0
//   }
//
// Buffer requests return -1 before initialisation, -2 when the capacity is
// smaller than what they would copy, else 0.
#pragma once

#include <cstdint>
#include <ostream>
#include <string>

class IQCLCorrelation {
public:
    virtual ~IQCLCorrelation() = default;
    // Learns the correlation's shape from the library and sizes the buffers
    // (derivatives zeroed); throws ZEM_Exception when the library does not
    // know the correlation or reports an impossible count. True on success.
    virtual bool Initialise(int32_t correlationId) = 0;
    virtual int32_t GetCorrelationId() const = 0;
    virtual int32_t GetType() const = 0;
    virtual int32_t GetIndexPair() const = 0;
    virtual int32_t GetLogFlag() const = 0;
    virtual void SetLogFlag(int32_t on) = 0;
    virtual int32_t GetCoefCount() const = 0;
    virtual int32_t GetSlackCount() const = 0;
    virtual int32_t GetInputCount() const = 0;
    virtual int32_t GetOutputCount() const = 0;
    // Names of the correlation's properties as the library gives them.
    virtual std::string GetInputName(int32_t i) const = 0;
    virtual std::string GetOutputName(int32_t o) const = 0;
    // Copies `count` input values in: -1 not initialised, -2 count differs
    // from the input count, else 0.
    virtual int SetInputs(int count, const double* values) = 0;
    virtual int GetOutputs(int capacity, double* buffer) const = 0;
    // Output-major: derivative of output o by input i at o * inputs + i.
    virtual int GetDerivatives(int capacity, double* buffer) const = 0;
    // Asks the library to compute at the inputs for a stream of `flow`;
    // returns 0 or the library's error code (-1 when not initialised). When
    // the log flag is set and `log` is good, the calculation is reported
    // there under the row name `row`.
    virtual int32_t Calculate(const char* row, double flow, std::ostream* log) = 0;

    // Queries passed to the library for this correlation; each returns the
    // library's status (0 success) and fills its out-arguments only then.
    virtual int32_t GetDescription(std::string& text) const = 0;
    virtual int32_t GetOutputType(int32_t o, int32_t& type) const = 0;
    virtual int32_t GetCoefficient(int32_t c, std::string& name, double& value) const = 0;
    // Changes coefficient `c` in the library (for every instance of the
    // correlation); the library's status.
    virtual int32_t SetCoefficient(int32_t c, double value) = 0;
    // The input values: -1 not initialised, -2 capacity below the input
    // count, else copied and 0.
    virtual int GetInputs(int capacity, double* buffer) const = 0;
    // Sets input `i`: -1 not initialised, -2 no such input, else 0.
    virtual int SetInput(int i, double value) = 0;
    // Where Calculate takes the derivatives from: 0 (the default) the
    // library's own, 1 differences of the library's outputs, forward
    // (x + h, the default) or, with the forward option 0, central
    // (x - h, x + h), with h = 1e-6 * max(1, |x|); a shifted point the
    // library refuses fails the calculation with its code. Other values: -2.
    virtual int SetDerivativeOption(int32_t option) = 0;
    virtual void SetForwardOption(int32_t on) = 0;
};
