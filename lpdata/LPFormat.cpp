#include "lpdata/LPFormat.h"

#include <cstdarg>
#include <cstdio>
#include <vector>

namespace lpfmt {

std::string format(const char* fmt, ...) {
    char small[256];
    va_list args;
    va_start(args, fmt);
    va_list again;
    va_copy(again, args);
    const int n = std::vsnprintf(small, sizeof small, fmt, args);
    va_end(args);
    std::string out;
    if (n < 0) {
        va_end(again);
        return out;
    }
    if (static_cast<size_t>(n) < sizeof small) {
        out.assign(small, static_cast<size_t>(n));
    } else {
        std::vector<char> big(static_cast<size_t>(n) + 1);
        std::vsnprintf(big.data(), big.size(), fmt, again);
        out.assign(big.data(), static_cast<size_t>(n));
    }
    va_end(again);
    return out;
}

std::string underline(const std::string& heading) {
    std::string out(heading);
    for (char& c : out)
        if (c != ' ') c = '-';
    return out;
}

}  // namespace lpfmt
