#include "mpsutil/MPSFieldParser.h"

#include <algorithm>
#include <charconv>
#include <cstdlib>
#include <cstring>

namespace {

int16_t clampWidth(int16_t w) {
    return static_cast<int16_t>(std::clamp<int>(w, 0, kMPSMaxFieldWidth));
}

}  // namespace

void MPSFieldGeometry::Set(int16_t name, int16_t number, int16_t key) {
    nameWidth = clampWidth(name);
    numberWidth = clampWidth(number);
    keyWidth = clampWidth(key);
    start[kMPSFieldKey] = 1;
    start[kMPSFieldName1] = keyWidth + 2;
    start[kMPSFieldName2] = start[kMPSFieldName1] + nameWidth + 2;
    start[kMPSFieldNumber1] = start[kMPSFieldName2] + nameWidth + 2;
    start[kMPSFieldName3] = start[kMPSFieldNumber1] + numberWidth + 3;
    start[kMPSFieldNumber2] = start[kMPSFieldName3] + nameWidth + 2;
}

int MPSFieldGeometry::Width(int field) const {
    switch (field) {
        case kMPSFieldKey: return keyWidth;
        case kMPSFieldNumber1:
        case kMPSFieldNumber2: return numberWidth;
        default: return nameWidth;
    }
}

size_t MPSExtractField(char* dst, const char* text, int width) {
    const size_t w = width > 0 ? static_cast<size_t>(width) : 0;
    size_t i = 0;
    size_t out = 0;
    while (i < w && text[i] == ' ') ++i;
    for (;;) {
        while (i < w && text[i] != ' ' && text[i] != '\0') dst[out++] = text[i++];
        if (i >= w || text[i] == '\0') break;
        // A run of blanks: inside the name when more text follows within the
        // field, trailing otherwise.
        size_t j = i;
        while (j < w && text[j] == ' ') ++j;
        if (j >= w || text[j] == '\0') break;
        while (i < j) {
            dst[out++] = '_';
            ++i;
        }
    }
    dst[out] = '\0';
    return out;
}

void MPSExtractFixedFields(const char* line, int length, const MPSFieldGeometry& geometry,
                           char (*fields)[kMPSLineSize]) {
    for (int f = 0; f < kMPSFieldCount; ++f) fields[f][0] = '\0';
    for (int f = 0; f < kMPSFieldCount; ++f) {
        const int start = geometry.start[f];
        if (start >= length) break;
        MPSExtractField(fields[f], line + start, geometry.Width(f));
    }
}

double MPSParseNumber(const char* text) {
    const char* p = text;
    // strtod skips white space (a tab is not a field blank, so one may reach
    // here) and accepts a leading '+', which from_chars does not.
    while (*p == ' ' || (*p >= '\t' && *p <= '\r')) ++p;
    if (*p == '+') {
        ++p;
        if (*p == '+' || *p == '-') return 0.0;
    }
    const char* end = p + std::strlen(p);
    double value = 0.0;
    const auto result = std::from_chars(p, end, value, std::chars_format::general);
    if (result.ec == std::errc() &&
        !(result.ptr < end && (*result.ptr == 'x' || *result.ptr == 'X'))) {
        return value;
    }
    // Out of range, hexadecimal or no number at all: let strtod decide
    // (it yields +-HUGE_VAL, the hexadecimal value, or 0).
    return std::strtod(text, nullptr);
}

bool MPSHasPrefix(const char* line, const char* keyword, size_t n) {
    return std::strncmp(line, keyword, n) == 0;
}
