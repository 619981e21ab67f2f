#include "xmpsutil/XMPSTokens.h"

#include <algorithm>
#include <cstdint>
#include <cstring>

#include "xmpsutil/XMPSLineMap.h"

namespace xmpstok {

namespace {

// Character classes of the number test.
constexpr unsigned char kNumberChar = 1;  // a digit, "+", "-" or "."
constexpr unsigned char kExponent = 2;    // "D", "E", "d" or "e"

struct CharClasses {
    unsigned char of[256] = {};
    constexpr CharClasses() {
        for (int c = '0'; c <= '9'; ++c) of[c] = kNumberChar;
        of[static_cast<unsigned char>('+')] = of[static_cast<unsigned char>('-')] = kNumberChar;
        of[static_cast<unsigned char>('.')] = kNumberChar;
        for (const char c : {'D', 'E', 'd', 'e'}) of[static_cast<unsigned char>(c)] = kExponent;
    }
    unsigned char operator()(char c) const { return of[static_cast<unsigned char>(c)]; }
};
constexpr CharClasses kClassOf;

}  // namespace

bool IsANumber(const char* token) { return token != nullptr && IsANumber(token, std::strlen(token)); }

bool IsANumber(const char* token, size_t n) {
    if (n == 0 || kClassOf(token[0]) != kNumberChar) return false;
    // A comma anywhere refuses the token (the first character is no comma
    // already); otherwise the characters between the first and the last are
    // checked, none for tokens of one or two.
    if (token[n - 1] == ',') return false;
    bool exponentSeen = false;
    for (size_t i = 1; i + 1 < n; ++i) {
        const unsigned char c = kClassOf(token[i]);
        if (c == kNumberChar) continue;
        if (c == kExponent && !exponentSeen) {
            exponentSeen = true;
            continue;
        }
        return false;
    }
    return true;
}

bool ExtractToken(int& count, const char* source, char* target, int maxLen) {
    const char* p = source;
    while (IsBlank(*p)) ++p;
    // The token is copied while it is scanned; characters past maxLen are
    // passed over.
    size_t room = maxLen > 0 ? static_cast<size_t>(maxLen) : 0;
    char* out = target;
    for (; *p != '\0' && !IsBlank(*p); ++p) {
        if (room > 0) {
            *out++ = *p;
            --room;
        }
    }
    *out = '\0';
    count += static_cast<int>(p - source);
    return out != target;
}

void LocateFreeFormat(const LineMap& map, bool sectionHasKey, FieldSpan* spans) {
    const char* line = map.Line();
    const int len = map.Length();
    const int keyArea = len < 4 ? len : 4;
    const auto set = [spans](int field, const char* text, size_t n, bool keyColumns) {
        spans[field] = FieldSpan{text, n, keyColumns};
    };

    // The tokens that start in the first four columns, and whether one of
    // them runs on into column 5 (bits past the line's end are clear).
    const uint64_t head = map.FirstWord();
    const uint64_t keyText = head & 0xf;
    const uint64_t keyStarts = keyText & ~(keyText << 1);
    const bool atMostOneKeyToken = (keyStarts & (keyStarts - 1)) == 0;
    const bool column5 = (head >> 4) & 1;
    const bool crossesColumn5 = column5 && ((head >> 3) & 1);

    int at = 0;    // where the next token is looked for
    int next = 0;  // next field to fill
    const auto take = [&] {
        const FieldSpan t = map.Next(at);
        if (t.text == nullptr) return false;
        set(next++, t.text, t.n, false);
        at = static_cast<int>(t.text - line + t.n);
        return true;
    };
    const bool aligned = sectionHasKey ? (atMostOneKeyToken && !crossesColumn5) : keyText == 0;
    if (aligned) {
        // The card is aligned on the columns: key from columns 1-4, first
        // name from column 5 when it starts there.
        set(0, line, static_cast<size_t>(keyArea), true);
        at = keyArea;
        next = 1;
        if (!column5 || !take()) set(next++, nullptr, 0, false);
    } else if (!sectionHasKey) {
        // Laid out by tokens alone, from the first name on.
        set(next++, nullptr, 0, false);
    }
    while (next < kCardFieldCount && take()) {
    }
    while (next < kCardFieldCount) set(next++, nullptr, 0, false);
}

void ParseFreeFormat(const char* line, int len, bool sectionHasKey, char* const* fields) {
    LineMap map;
    map.Build(line, len);
    FieldSpan spans[kCardFieldCount];
    LocateFreeFormat(map, sectionHasKey, spans);
    CopyFields(spans, fields);
}

void CopyFields(const FieldSpan* spans, char* const* fields) {
    for (int f = 0; f < kCardFieldCount; ++f) {
        const FieldSpan& span = spans[f];
        if (!span.keyColumns) {
            CopyToken(fields[f], span.text, std::min(span.n, static_cast<size_t>(kTokenMax)));
            continue;
        }
        int k = 0;  // the key's non-blank characters of columns 1-4
        for (size_t i = 0; i < span.n; ++i)
            if (!IsBlank(span.text[i])) fields[f][k++] = span.text[i];
        fields[f][k] = '\0';
    }
}

}  // namespace xmpstok
