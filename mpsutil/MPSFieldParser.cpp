#include "mpsutil/MPSFieldParser.h"

#include <algorithm>
#include <charconv>
#include <cstdlib>
#include <cstring>

namespace {

int16_t ClampWidth(int16_t w) {
    return static_cast<int16_t>(std::clamp<int>(w, 0, kMPSMaxFieldWidth));
}

// The common case of a data card's number: optional '-', decimal digits with
// an optional point, an optional exponent, and nothing after it. When the
// digits form an integer below 2^53 and the decimal exponent lies within
// +-22, both are exact doubles and one multiplication or division gives the
// correctly rounded value, the one a full conversion gives. Returns false
// (leaving `value` alone) for anything else.
bool ParseSimpleNumber(const char* p, double& value) {
    static constexpr double kPow10[] = {1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                        1e8,  1e9,  1e10, 1e11, 1e12, 1e13, 1e14, 1e15,
                                        1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};
    const bool negative = *p == '-';
    if (negative) ++p;
    // Every digit, leading zeros included, goes into the mantissa: at most
    // 19 of them cannot overflow it, and longer texts are left to the full
    // conversion.
    uint64_t mantissa = 0;
    const char* first = p;
    for (; static_cast<unsigned>(*p - '0') < 10u; ++p)
        mantissa = mantissa * 10 + static_cast<unsigned>(*p - '0');
    int digits = static_cast<int>(p - first);
    int fraction = 0;  // digits after the point
    if (*p == '.') {
        const char* point = ++p;
        for (; static_cast<unsigned>(*p - '0') < 10u; ++p)
            mantissa = mantissa * 10 + static_cast<unsigned>(*p - '0');
        fraction = static_cast<int>(p - point);
        digits += fraction;
    }
    if (digits == 0 || digits > 19) return false;
    int exponent = 0;
    if (*p == 'e' || *p == 'E') {
        ++p;
        const bool negExp = *p == '-';
        if (*p == '+' || *p == '-') ++p;
        if (*p < '0' || *p > '9') return false;
        for (; *p >= '0' && *p <= '9'; ++p) {
            if (exponent > 1000) return false;
            exponent = exponent * 10 + (*p - '0');
        }
        if (negExp) exponent = -exponent;
    }
    if (*p != '\0' || mantissa > (uint64_t(1) << 53)) return false;
    const int scale = exponent - fraction;
    if (scale < -22 || scale > 22) return false;
    double v = static_cast<double>(mantissa);
    v = scale < 0 ? v / kPow10[-scale] : v * kPow10[scale];
    value = negative ? -v : v;
    return true;
}

}  // namespace

void MPSFieldGeometry::Set(int16_t name, int16_t number, int16_t key) {
    nameWidth = ClampWidth(name);
    numberWidth = ClampWidth(number);
    keyWidth = ClampWidth(key);
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
    // The field's text ends at its width or at the end of the line. Leading
    // and trailing blanks are dropped; what is left keeps every character,
    // blanks becoming underscores. One pass: blanks are copied as '_' and
    // the text is cut after its last other character.
    const size_t w = width > 0 ? static_cast<size_t>(width) : 0;
    size_t i = 0;
    while (i < w && text[i] == ' ') ++i;
    size_t out = 0;
    size_t kept = 0;  // length up to the last non-blank character
    for (; i < w; ++i) {
        const char c = text[i];
        if (c == '\0') break;  // never looks past the end of the line
        if (c == ' ') {
            dst[out++] = '_';
        } else {
            dst[out++] = c;
            kept = out;
        }
    }
    dst[kept] = '\0';
    return kept;
}

void MPSExtractFixedFields(const char* line, int length, const MPSFieldGeometry& geometry,
                           char (*fields)[kMPSLineSize]) {
    for (int f = 0; f < kMPSFieldCount; ++f) fields[f][0] = '\0';
    const int width[kMPSFieldCount] = {geometry.keyWidth,    geometry.nameWidth,
                                       geometry.nameWidth,   geometry.numberWidth,
                                       geometry.nameWidth,   geometry.numberWidth};
    for (int f = 0; f < kMPSFieldCount; ++f) {
        const int start = geometry.start[f];
        if (start >= length) break;
        MPSExtractField(fields[f], line + start, width[f]);
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
    double value = 0.0;
    if (ParseSimpleNumber(p, value)) return value;
    const char* end = p + std::strlen(p);
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
