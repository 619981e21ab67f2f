// Blank map of one card line: which of its characters are blanks (spaces and
// tabs), one bit per character, found for the whole line in one pass. Tokens
// are then located with bit scans instead of a character loop per token:
//
//   line   " N  R0000000           0.694012E+03  C0000000"
//   text    .X..XXXXXXXX...........XXXXXXXXXXXX..XXXXXXXX   (X: bit set)
//   Next(4)  -> "R0000000"     Next(12) -> "0.694012E+03"
//
// The line is read eight characters at a time with plain word arithmetic;
// nothing beyond the line's end is read. (A 128-bit vector variant made a
// whole XMPS read of the benchmark model about 2% faster, within the noise,
// and went.)
#pragma once

#include <cstddef>
#include <cstdint>

#include "mpsutil/MPSFieldParser.h"
#include "xmpsutil/XMPSTokens.h"

namespace xmpstok {

class LineMap {
public:
    // Longest line mapped; a longer one is mapped up to this length.
    static constexpr int kMaxLength = kMPSLineSize;

    // Maps line[0, len). The line must stay in place while the map is used.
    void Build(const char* line, int len);

    // The first token at or after offset `from`; absent (null text) when
    // only blanks remain. Inline: it is called for every token of every card.
    FieldSpan Next(int from) const;
    const char* Line() const { return m_line; }
    // The bits of the first 64 characters (bit i: line[i] is no blank).
    uint64_t FirstWord() const { return m_len > 0 ? m_text[0] : 0; }
    int Length() const { return m_len; }

private:
    static constexpr int kWords = (kMaxLength + 63) / 64;

    const char* m_line = nullptr;
    int m_len = 0;
    // Bit i of word i / 64: line[i] is no blank. Only the words a built
    // line covers are written and read, so the rest is left uninitialised:
    // clearing it would cost more than mapping a short line.
    uint64_t m_text[kWords];
};

inline FieldSpan LineMap::Next(int from) const {
    if (from < 0) from = 0;
    if (from >= m_len) return FieldSpan{};
    const int words = (m_len + 63) / 64;
    int w = from / 64;
    uint64_t bits = m_text[w] & (~uint64_t(0) << (from % 64));
    while (bits == 0) {
        if (++w == words) return FieldSpan{};
        bits = m_text[w];
    }
    const int start = w * 64 + __builtin_ctzll(bits);
    // Bits past the line's end are clear, so the token ends at the latest
    // there.
    uint64_t blanks = ~m_text[w] & (~uint64_t(0) << (start % 64));
    int end = m_len;
    while (blanks == 0 && ++w < words) blanks = ~m_text[w];
    if (blanks != 0) end = w * 64 + __builtin_ctzll(blanks);
    if (end > m_len) end = m_len;
    return FieldSpan{m_line + start, static_cast<size_t>(end - start), false};
}

}  // namespace xmpstok
