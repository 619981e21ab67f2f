#include "xmpsutil/XMPSLineMap.h"

#include <cstring>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace xmpstok {

namespace {

// Eight characters at a time: the high bit of each byte of the result is
// set where the byte of w is a blank (space or tab), exactly.
uint64_t blankBytes(uint64_t w) {
    constexpr uint64_t kLow7 = 0x7f7f7f7f7f7f7f7full;
    const auto zero = [](uint64_t x) { return ~(((x & kLow7) + kLow7) | x) & ~kLow7; };
    return zero(w ^ 0x2020202020202020ull) | zero(w ^ 0x0909090909090909ull);
}

// One bit per character of the eight at p (bit k: p[k] is no blank), p[0]
// first whatever the byte order.
uint64_t textBits8(const char* p) {
    uint64_t w;
    std::memcpy(&w, p, 8);
#if defined(__BYTE_ORDER__) && __BYTE_ORDER__ == __ORDER_BIG_ENDIAN__
    w = __builtin_bswap64(w);
#endif
    // Gathers the high bit of byte k into bit k.
    const uint64_t blanks = ((blankBytes(w) >> 7) * 0x0102040810204080ull) >> 56;
    return ~blanks & 0xffu;
}

uint64_t textBitsBytes(const char* p, int n) {
    uint64_t bits = 0;
    for (int k = 0; k < n; ++k)
        if (!isBlank(p[k])) bits |= uint64_t(1) << k;
    return bits;
}

}  // namespace

// Maps the line from a function giving the bits of the `step` characters
// at an offset (step 8 or 16) and one for a last, shorter piece. Each word
// of the map is put together in a register and stored once.
template <int step, typename Full, typename Tail>
void LineMap::Fill(const char* line, int len, Full full, Tail tail) {
    m_line = line;
    m_len = len < 0 ? 0 : (len > kMaxLength ? kMaxLength : len);
    int i = 0;
    uint64_t word = 0;
    for (; i + step <= m_len; i += step) {
        word |= full(i) << (i % 64);
        if ((i + step) % 64 == 0) {
            m_text[i / 64] = word;
            word = 0;
        }
    }
    if (i < m_len) m_text[i / 64] = word | tail(i) << (i % 64);
    else if (i % 64 != 0) m_text[i / 64] = word;
}

void LineMap::BuildPortable(const char* line, int len) {
    Fill<8>(
        line, len, [line](int i) { return textBits8(line + i); },
        [this, line](int i) { return textBitsBytes(line + i, m_len - i); });
}

#if defined(__SSE2__)
void LineMap::Build(const char* line, int len) {
    const __m128i blank = _mm_set1_epi8(' ');
    const __m128i tab = _mm_set1_epi8('\t');
    // Bit k of the result: p[k] is no blank, for the sixteen characters at p.
    const auto text16 = [blank, tab](const char* p) {
        const __m128i v = _mm_loadu_si128(reinterpret_cast<const __m128i*>(p));
        const int blanks = _mm_movemask_epi8(_mm_or_si128(_mm_cmpeq_epi8(v, blank), _mm_cmpeq_epi8(v, tab)));
        return static_cast<uint64_t>(~blanks & 0xffff);
    };
    // The last characters (fewer than sixteen) are read as the tail of the
    // line's last sixteen when the line is that long, so that nothing past
    // its end is read.
    Fill<16>(
        line, len, [line, text16](int i) { return text16(line + i); },
        [this, line, text16](int i) {
            const int rest = m_len - i;
            return m_len >= 16 ? text16(line + m_len - 16) >> (16 - rest) : textBitsBytes(line + i, rest);
        });
}
#else
void LineMap::Build(const char* line, int len) { BuildPortable(line, len); }
#endif

}  // namespace xmpstok
