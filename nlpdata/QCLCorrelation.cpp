#include "nlpdata/QCLCorrelation.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <locale>
#include <sstream>

#include "lpdata/ZEMException.h"
#include "nlpdata/QCLLibrary.h"

namespace {

const char* const kUnboundedOutput = " Unbounded property values - Check correlation validity range. \n";
const char* const kUnboundedDerivs = " Unbounded derivatives - Check correlation validity range. \n";

// A number for the log, independent of the global locale.
std::string Num(double v) {
    std::ostringstream os;
    os.imbue(std::locale::classic());
    os.precision(10);
    os << v;
    return os.str();
}

}  // namespace

bool QCLCorrelation::Initialise(int32_t correlationId) {
    m_allocated = false;
    m_id = correlationId;
    m_log = 0;
    int32_t coefs = 0;
    if (m_lib.coefCount(correlationId, &coefs) != 0 || coefs < 0) coefs = 0;
    if (coefs > QCLLibrary::kMaxCount) coefs = m_lib.Count(m_lib.coefCount, correlationId, "coefficient count");
    m_coefCount = coefs;
    if (m_lib.correlationType(correlationId, &m_type) != 0) {
        const std::string reason = "The correlation library " + m_lib.Path() +
                                   " does not know correlation " + std::to_string(correlationId);
        ZEM_RAISE(zemsrc::kNlpData, "QCL Library Error", reason.c_str(), "QCLCorrelation::Initialise");
    }
    if (m_lib.indexPair(correlationId, &m_indexPair) != 0) m_indexPair = -1;
    m_inputCount = m_lib.Count(m_lib.inpPropCount, correlationId, "input count");
    m_outputCount = m_lib.Count(m_lib.outPropCount, correlationId, "output count");
    m_slackCount = m_lib.Count(m_lib.slackCount, correlationId, "slack count");
    m_inputs.assign(static_cast<size_t>(m_inputCount), 0.0);
    m_outputs.assign(static_cast<size_t>(m_outputCount), 0.0);
    m_derivs.assign(static_cast<size_t>(m_outputCount) * static_cast<size_t>(m_inputCount), 0.0);
    m_allocated = true;
    return true;
}

std::string QCLCorrelation::GetInputName(int32_t i) const { return m_lib.Text(m_lib.inpPropId, m_id, i); }

std::string QCLCorrelation::GetOutputName(int32_t o) const { return m_lib.Text(m_lib.outPropId, m_id, o); }

int QCLCorrelation::SetInputs(int count, const double* values) {
    if (!m_allocated) return -1;
    if (count != m_inputCount) return -2;
    m_inputs.assign(values, values + count);
    return 0;
}

int QCLCorrelation::GetOutputs(int capacity, double* buffer) const {
    if (!m_allocated) return -1;
    if (capacity < m_outputCount) return -2;
    std::copy(m_outputs.begin(), m_outputs.end(), buffer);
    return 0;
}

int QCLCorrelation::GetDerivatives(int capacity, double* buffer) const {
    if (!m_allocated) return -1;
    if (static_cast<size_t>(capacity < 0 ? 0 : capacity) < m_derivs.size()) return -2;
    std::copy(m_derivs.begin(), m_derivs.end(), buffer);
    return 0;
}

int32_t QCLCorrelation::Calculate(const char* row, double flow, std::ostream* log) {
    if (!m_allocated) return -1;
    int32_t code = m_lib.genCalc(m_id, m_inputs.data(), m_inputCount, flow, m_outputs.data(),
                                 m_outputCount, m_derivs.data(), static_cast<int32_t>(m_derivs.size()));
    if (code == 0) {
        int32_t actual = -1;
        if (m_lib.actualOutputCount(m_id, &actual) != 0 || actual < 0 || actual > m_outputCount)
            code = kBadOutputCount;
    }
    if (code == 0 && m_differences) code = Differences(flow);
    if (m_log && log && log->good()) {
        if (code == 0)
            Report(*log, row ? row : "", flow);
        else
            *log << "Equation: " << (row ? row : "") << " HQCL FAILED ****** Error code " << code << "\n";
    }
    return code;
}

int32_t QCLCorrelation::Differences(double flow) {
    std::vector<double> at(m_inputs), up(m_outputs.size()), down(m_outputs), scratch(m_derivs.size());
    const int32_t nDerivs = static_cast<int32_t>(scratch.size());
    for (int32_t i = 0; i < m_inputCount; ++i) {
        const double x = m_inputs[i];
        const double h = 1e-6 * std::max(1.0, std::fabs(x));
        at[i] = x + h;
        int32_t code = m_lib.genCalc(m_id, at.data(), m_inputCount, flow, up.data(), m_outputCount,
                                     scratch.data(), nDerivs);
        if (code == 0 && !m_forward) {
            at[i] = x - h;
            code = m_lib.genCalc(m_id, at.data(), m_inputCount, flow, down.data(), m_outputCount,
                                 scratch.data(), nDerivs);
        }
        at[i] = x;
        if (code != 0) return code;
        const double span = m_forward ? h : 2.0 * h;
        for (int32_t o = 0; o < m_outputCount; ++o)
            m_derivs[static_cast<size_t>(o) * m_inputCount + i] = (up[o] - down[o]) / span;
    }
    return 0;
}

int32_t QCLCorrelation::GetDescription(std::string& text) const {
    char buf[1024] = {};
    const int32_t status = m_lib.correlationDesc(m_id, buf, sizeof buf);
    if (status == 0) text.assign(buf, strnlen(buf, sizeof buf - 1));
    return status;
}

int32_t QCLCorrelation::GetOutputType(int32_t o, int32_t& type) const {
    int32_t t = 0;
    const int32_t status = m_lib.outPropType(m_id, o, &t);
    if (status == 0) type = t;
    return status;
}

int32_t QCLCorrelation::GetCoefficient(int32_t c, std::string& name, double& value) const {
    char buf[256] = {};
    double v = 0.0;
    const int32_t status = m_lib.getCoef(m_id, c, buf, sizeof buf, &v);
    if (status == 0) {
        name.assign(buf, strnlen(buf, sizeof buf - 1));
        value = v;
    }
    return status;
}

int32_t QCLCorrelation::SetCoefficient(int32_t c, double value) { return m_lib.setCoefValue(m_id, c, value); }

int QCLCorrelation::GetInputs(int capacity, double* buffer) const {
    if (!m_allocated) return -1;
    if (capacity < m_inputCount) return -2;
    std::copy(m_inputs.begin(), m_inputs.end(), buffer);
    return 0;
}

int QCLCorrelation::SetInput(int i, double value) {
    if (!m_allocated) return -1;
    if (i < 0 || i >= m_inputCount) return -2;
    m_inputs[static_cast<size_t>(i)] = value;
    return 0;
}

int QCLCorrelation::SetDerivativeOption(int32_t option) {
    if (option != 0 && option != 1) return -2;
    m_differences = option == 1;
    return 0;
}

void QCLCorrelation::Report(std::ostream& os, const char* row, double flow) const {
    os << "Equation: " << row << "\n";
    os << "PCC Flow: " << Num(flow) << "\n";
    os << "CorrIndex: " << m_id << "\n";
    os << "Input Values: ";
    for (int32_t i = 0; i < m_inputCount; ++i)
        os << (i ? ", " : "") << GetInputName(i) << " = " << Num(m_inputs[i]);
    os << "\n";
    for (int32_t o = 0; o < m_outputCount; ++o) {
        os << "Output Property: " << GetOutputName(o) << " = " << Num(m_outputs[o]);
        os << (std::fabs(m_outputs[o]) > kUnbounded ? kUnboundedOutput : "\n");
    }
    os << "Coefficients: ";
    char name[256];
    for (int32_t c = 0; c < m_coefCount; ++c) {
        double value = 0.0;
        name[0] = '\0';
        if (m_lib.getCoef(m_id, c, name, sizeof name, &value) != 0) continue;
        name[sizeof name - 1] = '\0';
        os << (c ? ", " : "") << name << " = " << Num(value);
    }
    os << "\n";
    os << "Partial Derivatives: \n";
    for (int32_t o = 0; o < m_outputCount; ++o) {
        os << "Output Prop " << GetOutputName(o) << ":";
        bool unbounded = false;
        for (int32_t i = 0; i < m_inputCount; ++i) {
            const double d = m_derivs[static_cast<size_t>(o) * m_inputCount + i];
            os << (i ? ", " : " ") << GetInputName(i) << " = " << Num(d);
            unbounded = unbounded || std::fabs(d) > kUnbounded;
        }
        os << (unbounded ? kUnboundedDerivs : "\n");
    }
}
