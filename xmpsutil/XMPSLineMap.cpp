#include "xmpsutil/XMPSLineMap.h"

#include <cstring>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace xmpstok {

namespace {

// Eight characters at a time: the high bit of each byte of the result is
// set where the byte of w is a blank (space or tab), exactly.
uint64_t BlankBytes(uint64_t w) {
    constexpr uint64_t kLow7 = 0x7f7f7f7f7f7f7f7full;
    const auto zero = [](uint64_t x) { return ~(((x & kLow7) + kLow7) | x) & ~kLow7; };
    return zero(w ^ 0x2020202020202020ull) | zero(w ^ 0x0909090909090909ull);
}

// One bit per character of the eight at p (bit k: p[k] is no blank), p[0]
// first whatever the byte order.
uint64_t TextBits8(const char* p) {
    uint64_t w;
    std::memcpy(&w, p, 8);
#if defined(__BYTE_ORDER__) && __BYTE_ORDER__ == __ORDER_BIG_ENDIAN__
    w = __builtin_bswap64(w);
#endif
    // Gathers the high bit of byte k into bit k.
    const uint64_t blanks = ((BlankBytes(w) >> 7) * 0x0102040810204080ull) >> 56;
    return ~blanks & 0xffu;
}

uint64_t TextBitsBytes(const char* p, int n) {
    uint64_t bits = 0;
    for (int k = 0; k < n; ++k)
        if (!IsBlank(p[k])) bits |= uint64_t(1) << k;
    return bits;
}

#if defined(__SSE2__)
// Sixteen characters at a time where the processor has 128-bit vectors
// (bit k: p[k] is no blank).
uint64_t TextBits16(const char* p) {
    const __m128i v = _mm_loadu_si128(reinterpret_cast<const __m128i*>(p));
    const __m128i blank = _mm_or_si128(_mm_cmpeq_epi8(v, _mm_set1_epi8(' ')), _mm_cmpeq_epi8(v, _mm_set1_epi8('\t')));
    return ~static_cast<uint64_t>(_mm_movemask_epi8(blank)) & 0xffffu;
}
#endif

}  // namespace

// Each word of the map is put together in a register and stored once. The
// last characters of a line of eight or more are taken as the tail of its
// last eight, so no character is looked at alone.
void LineMap::Build(const char* line, int len) {
    m_line = line;
    m_len = len < 0 ? 0 : (len > kMaxLength ? kMaxLength : len);
    int i = 0;
    uint64_t word = 0;
#if defined(__SSE2__)
    for (; i + 16 <= m_len; i += 16) {
        word |= TextBits16(line + i) << (i % 64);
        if ((i + 16) % 64 == 0) {
            m_text[i / 64] = word;
            word = 0;
        }
    }
#endif
    for (; i + 8 <= m_len; i += 8) {
        word |= TextBits8(line + i) << (i % 64);
        if ((i + 8) % 64 == 0) {
            m_text[i / 64] = word;
            word = 0;
        }
    }
    if (i < m_len) {
        const uint64_t tail = m_len >= 8 ? TextBits8(line + m_len - 8) >> (8 - (m_len - i))
                                         : TextBitsBytes(line + i, m_len - i);
        m_text[i / 64] = word | tail << (i % 64);
    } else if (i % 64 != 0) {
        m_text[i / 64] = word;
    }
}

}  // namespace xmpstok
