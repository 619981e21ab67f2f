// libFuzzer target: any text (NUL ends it) with any symbol table given to the
// expression evaluator ends in a value or in a message with a code and a
// position inside the text, never in a crash, an overflow or a hang.
#include <fuzzer/FuzzedDataProvider.h>

#include <cstdint>
#include <cstring>
#include <string>
#include <vector>

#include "nlpdata/CExpEval.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    FuzzedDataProvider in(data, size);
    const bool declare = in.ConsumeBool();
    const bool exact = in.ConsumeBool();
    CExpEval ev(declare, exact);
    const int symbols = in.ConsumeIntegralInRange<int>(0, 600);
    for (int i = 0; i < symbols && in.remaining_bytes() > 0; ++i) {
        const std::string name = in.ConsumeRandomLengthString(12);
        ev.AddSymbol(name.c_str(), in.ConsumeFloatingPoint<double>());
    }
    const std::string text = in.ConsumeRemainingBytesAsString();
    ev.SetExpression(text.c_str());
    double value = 0.0;
    const int length = static_cast<int>(std::strlen(text.c_str()));
    if (ev.Evaluate(value)) {
        std::vector<double> grad(static_cast<size_t>(ev.NumberOfSymbols()));
        if (ev.EvaluateGradient(value, grad.data()) != 0) __builtin_trap();
    } else {
        const int code = ev.GetErrorCode();
        const int at = ev.GetErrorPosition();
        if (*ev.GetErrorMessage() == '\0' || code < 1 || code > 10 || at < -1 || at > length) __builtin_trap();
    }
    return 0;
}
