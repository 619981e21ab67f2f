// The flat functions of the correlation library: the nonlinear model's list
// of library correlations, and the instances it makes (IQCLCorrelation).
// Statuses are those of the operation behind each function: the library's
// code for its queries, -1/-2 for the instance's buffers.
#include <string>

#include "api/FlatSupport.h"
#include "api/zemxmps.h"
#include "nlpdata/INonLinearModel.h"
#include "nlpdata/IQCLCorrelation.h"
#include "nlpdata/NonLinearModel.h"

using flat::As;

namespace {

INonLinearModel* Model(void* h) { return As<INonLinearModel>(h); }
IQCLCorrelation* Corr(void* h) { return As<IQCLCorrelation>(h); }

// A property name by number: "" and 1 when there is no such property.
int32_t PropertyName(char* buf, int32_t item, int32_t count, const std::string& name) {
    if (item < 0 || item >= count) {
        buf[0] = '\0';
        return 1;
    }
    flat::CopyWhole(buf, name.c_str());
    return 0;
}

}  // namespace

extern "C" {

int32_t InitializeQCL(void* nlmodel) { return Model(nlmodel)->InitializeQCL() ? 0 : 1; }

int32_t UninitializeQCL(void* nlmodel) {
    Model(nlmodel)->UninitializeQCL();
    return 0;
}

int32_t CreateQCLIdMap(void* nlmodel) {
    Model(nlmodel)->CreateQCLIdMap();
    return 0;
}

ZEM_FLAT_GET(GetQCLCorrelationCount, INonLinearModel, int32_t, GetQCLCorrelationCount)

int32_t GetQCLCorrelationId(void* nlmodel, int32_t index, char* buf) {
    std::string id;
    if (!Model(nlmodel)->GetQCLCorrelationId(index, id)) {
        buf[0] = '\0';
        return 1;
    }
    flat::CopyWhole(buf, id.c_str());
    return 0;
}

int32_t GetQCLCorrelationIndex(void* nlmodel, const char* id, int32_t* out) {
    const int index = Model(nlmodel)->GetQCLCorrelationIndex(id ? id : "");
    if (index < 0) return 1;
    *out = index;
    return 0;
}

int32_t MakeAddQCLCorrelationInstance(void* nlmodel, int32_t index, void** out) {
    return flat::StoreFound(out, Model(nlmodel)->AddQCLCorrelationInstance(index));
}

int32_t QCLCalculate(void* nlmodel, void* correlation, const char* row, double flow) {
    // The model's correlation log, when it is open, receives the report.
    auto* model = dynamic_cast<NonLinearModel*>(Model(nlmodel));
    return Corr(correlation)->Calculate(row, flow, model ? model->HqclLog() : nullptr);
}

int32_t GetQCLCorrelationDesc(void* correlation, char* buf) {
    std::string text;
    const int32_t status = Corr(correlation)->GetDescription(text);
    flat::CopyWhole(buf, text.c_str());
    return status;
}

ZEM_FLAT_GET(GetQCLCorrelationType, IQCLCorrelation, int32_t, GetType)
ZEM_FLAT_GET(GetQCLCorrelationBlendIndex, IQCLCorrelation, int32_t, GetIndexPair)
ZEM_FLAT_GET(GetQCLInputPropertyCount, IQCLCorrelation, int32_t, GetInputCount)
ZEM_FLAT_GET(GetQCLOutputPropertyCount, IQCLCorrelation, int32_t, GetOutputCount)
ZEM_FLAT_GET(GetQCLCoefficientCount, IQCLCorrelation, int32_t, GetCoefCount)
ZEM_FLAT_GET(GetQCLSlackCount, IQCLCorrelation, int32_t, GetSlackCount)

int32_t GetQCLInputPropertyId(void* correlation, int32_t input, char* buf) {
    IQCLCorrelation* c = Corr(correlation);
    const int32_t n = c->GetInputCount();
    return PropertyName(buf, input, n, input >= 0 && input < n ? c->GetInputName(input) : "");
}

int32_t GetQCLOutputPropertyId(void* correlation, int32_t output, char* buf) {
    IQCLCorrelation* c = Corr(correlation);
    const int32_t n = c->GetOutputCount();
    return PropertyName(buf, output, n, output >= 0 && output < n ? c->GetOutputName(output) : "");
}

int32_t GetQCLOutputPropertyType(void* correlation, int32_t output, int32_t* out) {
    return Corr(correlation)->GetOutputType(output, *out);
}

int32_t GetQCLInputPropertyValues(void* correlation, int32_t capacity, double* out) {
    return Corr(correlation)->GetInputs(capacity, out);
}

int32_t GetQCLOutputPropertyValues(void* correlation, int32_t capacity, double* out) {
    return Corr(correlation)->GetOutputs(capacity, out);
}

int32_t GetQCLDerivativeValues(void* correlation, int32_t capacity, double* out) {
    return Corr(correlation)->GetDerivatives(capacity, out);
}

int32_t GetQCLCoefficientValue(void* correlation, int32_t coef, char* name, double* out) {
    std::string text;
    const int32_t status = Corr(correlation)->GetCoefficient(coef, text, *out);
    if (status == 0 && name) flat::CopyWhole(name, text.c_str());
    return status;
}

int32_t SetQCLCoefficient(void* correlation, int32_t coef, double value) {
    return Corr(correlation)->SetCoefficient(coef, value);
}

int32_t SetQCLDerivativeOption(void* correlation, int32_t option) {
    return Corr(correlation)->SetDerivativeOption(option);
}

int32_t SetQCLForwardOption(void* correlation, int32_t forward) {
    Corr(correlation)->SetForwardOption(forward);
    return 0;
}

int32_t SetQCLInputProperties(void* correlation, int32_t count, const double* values) {
    return Corr(correlation)->SetInputs(count, values);
}

int32_t SetQCLInputProperty(void* correlation, int32_t input, double value) {
    return Corr(correlation)->SetInput(input, value);
}

// The correlation library offers no monotone mode: nothing changes.
int32_t SetMonotoneOption(void*, int32_t) { return ZEM_FLAT_QCL_NO_MONOTONE; }

}  // extern "C"
