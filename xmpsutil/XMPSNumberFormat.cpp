#include "xmpsutil/XMPSNumberFormat.h"

#include <charconv>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace xmpsnum {

namespace {

// Ten times the value in the "% W.PE" layout with the first digit and the
// point exchanged: the shared body of the short and long forms.
int ShiftedForm(char* buf, double value, int precision, int width) {
    if (value != 1.0 && std::fabs(value - 1.0) < 1e-5) value = 1.0;
    if (value != -1.0 && std::fabs(value + 1.0) < 1e-5) value = -1.0;
    const double scaled = value * 10.0;
    if (!std::isfinite(scaled)) {
        if (std::isfinite(value)) {
            // Ten times the value overflows: print the value itself with its
            // exponent raised by one, which is the same text.
            char tmp[kNumberBufSize];
            SignedExp(tmp, value, precision, true);
            // tmp: sign, digit, '.', digits, 'E', exponent sign, exponent.
            const char* e = std::strchr(tmp, 'E');
            const int exponent = std::atoi(e + 1) + 1;
            int k = 0;
            buf[k++] = tmp[0] == '-' ? '-' : '0';
            buf[k++] = '.';
            buf[k++] = tmp[1];
            std::memcpy(buf + k, tmp + 3, static_cast<size_t>(e - (tmp + 3)));
            k += static_cast<int>(e - (tmp + 3));
            k += std::snprintf(buf + k, static_cast<size_t>(kNumberBufSize - k), "E%+03d", exponent);
            return k;
        }
        // Infinity or NaN: printf's own text, padded to the width.
        return std::snprintf(buf, kNumberBufSize, "% *.*E", width, precision, value);
    }
    const int n = SignedExp(buf, scaled, precision, true);
    // buf: sign, digit, '.', ... -> sign, '.', digit, ...
    const char digit = buf[1];
    buf[1] = buf[2];
    buf[2] = digit;
    if (buf[0] == ' ') buf[0] = '0';
    return n;
}

}  // namespace

int SignedExp(char* buf, double value, int precision, bool upper) {
    if (!std::isfinite(value)) {
        return std::snprintf(buf, kNumberBufSize, upper ? "% .*E" : "% .*e", precision, value);
    }
    // std::to_chars gives the correctly rounded digits that printf gives,
    // without printf's parsing and locale lookups.
    char tmp[kNumberBufSize];
    const auto res = std::to_chars(tmp, tmp + sizeof tmp, value, std::chars_format::scientific,
                                   precision);
    const char* p = tmp;
    int k = 0;
    if (*p == '-') {
        buf[k++] = '-';
        ++p;
    } else {
        buf[k++] = ' ';
    }
    for (; p < res.ptr; ++p) buf[k++] = (*p == 'e') ? (upper ? 'E' : 'e') : *p;
    buf[k] = '\0';
    return k;
}

int ShortForm(char* buf, double value) { return ShiftedForm(buf, value, 5, 12); }

int LongForm(char* buf, double value) { return ShiftedForm(buf, value, 9, 16); }

int ConstantForm(char* buf, double value) {
    if (!std::isfinite(value)) return std::snprintf(buf, kNumberBufSize, "% #12.6e", value);
    // "% #12.6e" of a finite value is never shorter than 13 characters, so
    // the width adds nothing.
    return SignedExp(buf, value, 6, false);
}

int ExactForm(char* buf, double value) {
    if (!std::isfinite(value)) return std::snprintf(buf, kNumberBufSize, "%g", value);
    const auto res = std::to_chars(buf, buf + kNumberBufSize - 1, value);
    *res.ptr = '\0';
    return static_cast<int>(res.ptr - buf);
}

}  // namespace xmpsnum
