#include "xmpsutil/XMPSTokens.h"

#include <cstdint>
#include <cstring>

namespace xmpstok {

namespace {

bool isNumberChar(char c) { return (c >= '0' && c <= '9') || c == '+' || c == '-' || c == '.'; }

bool isExponentMark(char c) { return c == 'D' || c == 'E' || c == 'd' || c == 'e'; }

// Copies at most kTokenMax characters of [begin, end) into dst.
void copyToken(char* dst, const char* begin, const char* end) {
    if (begin == nullptr) {
        dst[0] = '\0';
        return;
    }
    size_t n = static_cast<size_t>(end - begin);
    if (n > static_cast<size_t>(kTokenMax)) n = kTokenMax;
    std::memcpy(dst, begin, n);
    dst[n] = '\0';
}

#if defined(__BYTE_ORDER__) && __BYTE_ORDER__ == __ORDER_LITTLE_ENDIAN__
// Eight characters at a time: the high bit of each byte of the result is
// set where the byte of w is a blank (space or tab), exactly.
uint64_t blankBytes(uint64_t w) {
    constexpr uint64_t kLow7 = 0x7f7f7f7f7f7f7f7full;
    const auto zero = [](uint64_t x) { return ~(((x & kLow7) + kLow7) | x) & ~kLow7; };
    return zero(w ^ 0x2020202020202020ull) | zero(w ^ 0x0909090909090909ull);
}

// Offset of the first byte of [p, end) whose blank bit (of blankBytes)
// equals `blank`, looked for a word at a time; end - p when there is none.
const char* firstWhere(const char* p, const char* end, bool blank) {
    for (; end - p >= 8; p += 8) {
        uint64_t w;
        std::memcpy(&w, p, 8);
        uint64_t hits = blankBytes(w);
        if (!blank) hits = ~hits & 0x8080808080808080ull;
        if (hits != 0) return p + __builtin_ctzll(hits) / 8;
    }
    while (p < end && isBlank(*p) != blank) ++p;
    return p;
}
#else
const char* firstWhere(const char* p, const char* end, bool blank) {
    while (p < end && isBlank(*p) != blank) ++p;
    return p;
}
#endif

// Returns the start of the next token at or after p (or end), and sets
// *tokEnd to its end.
const char* nextToken(const char* p, const char* end, const char** tokEnd) {
    p = firstWhere(p, end, false);
    *tokEnd = firstWhere(p, end, true);
    return p;
}

}  // namespace

bool IsANumber(const char* token) {
    if (token == nullptr || !isNumberChar(token[0])) return false;
    // One pass: a comma anywhere refuses the token; the characters between
    // the first and the last are checked (none for tokens of one or two).
    bool exponentSeen = false;
    for (size_t i = 1; token[i] != '\0'; ++i) {
        const char c = token[i];
        if (c == ',') return false;
        if (token[i + 1] == '\0') break;  // the last character
        if (isNumberChar(c)) continue;
        if (!exponentSeen && isExponentMark(c)) {
            exponentSeen = true;
            continue;
        }
        return false;
    }
    return true;
}

bool ExtractToken(int& count, const char* source, char* target, int maxLen) {
    const char* p = source;
    while (isBlank(*p)) ++p;
    // The token is copied while it is scanned; characters past maxLen are
    // passed over.
    size_t room = maxLen > 0 ? static_cast<size_t>(maxLen) : 0;
    char* out = target;
    for (; *p != '\0' && !isBlank(*p); ++p) {
        if (room > 0) {
            *out++ = *p;
            --room;
        }
    }
    *out = '\0';
    count += static_cast<int>(p - source);
    return out != target;
}

void LocateFreeFormat(const char* line, int len, bool sectionHasKey, FieldSpan* spans) {
    for (int f = 0; f < kCardFieldCount; ++f) spans[f] = FieldSpan{};
    const char* end = line + len;
    const int keyArea = len < 4 ? len : 4;

    // Count the tokens that start in the first four columns and see whether
    // one of them runs on into column 5.
    int keyTokens = 0;
    bool crossesColumn5 = false;
    for (int i = 0; i < keyArea; ++i) {
        if (!isBlank(line[i]) && (i == 0 || isBlank(line[i - 1]))) ++keyTokens;
    }
    if (len > 4 && !isBlank(line[3]) && !isBlank(line[4])) crossesColumn5 = true;

    const char* p;
    int next = 1;  // next field to fill
    const char* tokEnd;
    const bool aligned = sectionHasKey ? (keyTokens <= 1 && !crossesColumn5) : keyTokens == 0;
    if (aligned) {
        // The card is aligned on the columns: key from columns 1-4, first
        // name from column 5 when it starts there.
        spans[0] = FieldSpan{line, static_cast<size_t>(keyArea), true};
        p = line + keyArea;
        if (len > 4 && !isBlank(line[4])) {
            const char* tok = nextToken(p, end, &tokEnd);
            spans[1] = FieldSpan{tok, static_cast<size_t>(tokEnd - tok), false};
            p = tokEnd;
        }
        next = 2;
    } else {
        // Laid out by tokens alone.
        p = line;
        if (sectionHasKey) {
            const char* tok = nextToken(p, end, &tokEnd);
            spans[0] = FieldSpan{tok, static_cast<size_t>(tokEnd - tok), false};
            p = tokEnd;
        }
    }
    for (; next < kCardFieldCount; ++next) {
        const char* tok = nextToken(p, end, &tokEnd);
        if (tok == tokEnd) break;
        spans[next] = FieldSpan{tok, static_cast<size_t>(tokEnd - tok), false};
        p = tokEnd;
    }
}

FieldSpan NextToken(const char* line, int len, int from) {
    if (from >= len) return FieldSpan{};
    const char* tokEnd;
    const char* tok = nextToken(line + from, line + len, &tokEnd);
    return tok == tokEnd ? FieldSpan{} : FieldSpan{tok, static_cast<size_t>(tokEnd - tok), false};
}

void ParseFreeFormat(const char* line, int len, bool sectionHasKey, char* const* fields) {
    FieldSpan spans[kCardFieldCount];
    LocateFreeFormat(line, len, sectionHasKey, spans);
    for (int f = 0; f < kCardFieldCount; ++f) {
        const FieldSpan& span = spans[f];
        if (!span.keyColumns) {
            copyToken(fields[f], span.text, span.text + span.n);
            continue;
        }
        int k = 0;  // the key's non-blank characters of columns 1-4
        for (size_t i = 0; i < span.n; ++i)
            if (!isBlank(span.text[i])) fields[f][k++] = span.text[i];
        fields[f][k] = '\0';
    }
}

}  // namespace xmpstok
