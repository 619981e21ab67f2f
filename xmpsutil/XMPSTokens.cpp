#include "xmpsutil/XMPSTokens.h"

#include <cstring>

namespace xmpstok {

namespace {

bool isNumberChar(char c) { return (c >= '0' && c <= '9') || c == '+' || c == '-' || c == '.'; }

bool isExponentMark(char c) { return c == 'D' || c == 'E' || c == 'd' || c == 'e'; }

// Copies at most kTokenMax characters of [begin, end) into dst.
void copyToken(char* dst, const char* begin, const char* end) {
    size_t n = static_cast<size_t>(end - begin);
    if (n > static_cast<size_t>(kTokenMax)) n = kTokenMax;
    std::memcpy(dst, begin, n);
    dst[n] = '\0';
}

// Returns the start of the next token at or after p (or end), and sets
// *tokEnd to its end.
const char* nextToken(const char* p, const char* end, const char** tokEnd) {
    while (p < end && isBlank(*p)) ++p;
    const char* q = p;
    while (q < end && !isBlank(*q)) ++q;
    *tokEnd = q;
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

void ParseFreeFormat(const char* line, int len, bool sectionHasKey, char* const* fields) {
    for (int f = 0; f < kCardFieldCount; ++f) fields[f][0] = '\0';
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

    char* const* rest = fields + 1;  // name 1 .. number 2
    const char* p;
    int next = 0;  // next field of `rest` to fill
    const bool aligned = sectionHasKey ? (keyTokens <= 1 && !crossesColumn5) : keyTokens == 0;
    if (aligned) {
        // The card is aligned on the columns: key from columns 1-4, first
        // name from column 5 when it starts there.
        int k = 0;
        for (int i = 0; i < keyArea; ++i) {
            if (!isBlank(line[i])) fields[0][k++] = line[i];
        }
        fields[0][k] = '\0';
        p = line + keyArea;
        if (len > 4 && !isBlank(line[4])) {
            const char* tokEnd;
            const char* tok = nextToken(p, end, &tokEnd);
            copyToken(fields[1], tok, tokEnd);
            p = tokEnd;
        }
        next = 1;
    } else {
        // Laid out by tokens alone.
        p = line;
        if (sectionHasKey) {
            const char* tokEnd;
            const char* tok = nextToken(p, end, &tokEnd);
            copyToken(fields[0], tok, tokEnd);
            p = tokEnd;
        }
        next = 0;
    }
    while (next < 5) {
        const char* tokEnd;
        const char* tok = nextToken(p, end, &tokEnd);
        if (tok == tokEnd) break;
        copyToken(rest[next++], tok, tokEnd);
        p = tokEnd;
    }
}

}  // namespace xmpstok
