#include "xmpsutil/XMPSTokens.h"

#include <algorithm>

#include "xmpsutil/XMPSLineMap.h"

namespace xmpstok {

namespace {

bool isNumberChar(char c) { return (c >= '0' && c <= '9') || c == '+' || c == '-' || c == '.'; }

bool isExponentMark(char c) { return c == 'D' || c == 'E' || c == 'd' || c == 'e'; }

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
    LineMap map;
    map.Build(line, len);
    LocateFreeFormat(map, sectionHasKey, spans);
}

void LocateFreeFormat(const LineMap& map, bool sectionHasKey, FieldSpan* spans) {
    for (int f = 0; f < kCardFieldCount; ++f) spans[f] = FieldSpan{};
    const char* line = map.Line();
    const int len = map.Length();
    const int keyArea = len < 4 ? len : 4;

    // Count the tokens that start in the first four columns and see whether
    // one of them runs on into column 5.
    int keyTokens = 0;
    for (int i = 0; i < keyArea; ++i) {
        if (!isBlank(line[i]) && (i == 0 || isBlank(line[i - 1]))) ++keyTokens;
    }
    const bool crossesColumn5 = len > 4 && !isBlank(line[3]) && !isBlank(line[4]);

    int at = 0;    // where the next token is looked for
    int next = 1;  // next field to fill
    const bool aligned = sectionHasKey ? (keyTokens <= 1 && !crossesColumn5) : keyTokens == 0;
    const auto take = [&](int field) {
        const FieldSpan t = map.Next(at);
        if (t.text == nullptr) return false;
        // Member by member: a copy of the whole span is put together on the
        // stack by some compilers and read back at once, which stalls.
        spans[field].text = t.text;
        spans[field].n = t.n;
        at = static_cast<int>(t.text - line + t.n);
        return true;
    };
    if (aligned) {
        // The card is aligned on the columns: key from columns 1-4, first
        // name from column 5 when it starts there.
        spans[0] = FieldSpan{line, static_cast<size_t>(keyArea), true};
        at = keyArea;
        if (len > 4 && !isBlank(line[4])) take(1);
        next = 2;
    } else if (sectionHasKey) {
        // Laid out by tokens alone.
        take(0);
    }
    for (; next < kCardFieldCount && take(next); ++next) {
    }
}

FieldSpan NextToken(const char* line, int len, int from) {
    LineMap map;
    map.Build(line, len);
    return map.Next(from);
}

void ParseFreeFormat(const char* line, int len, bool sectionHasKey, char* const* fields) {
    FieldSpan spans[kCardFieldCount];
    LocateFreeFormat(line, len, sectionHasKey, spans);
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
            if (!isBlank(span.text[i])) fields[f][k++] = span.text[i];
        fields[f][k] = '\0';
    }
}

}  // namespace xmpstok
