#include "xmpsutil/XMPSLineMap.h"

#include <cstring>

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

}  // namespace

// Each word of the map is put together in a register and stored once.
void LineMap::Build(const char* line, int len) {
    m_line = line;
    m_len = len < 0 ? 0 : (len > kMaxLength ? kMaxLength : len);
    int i = 0;
    uint64_t word = 0;
    for (; i + 8 <= m_len; i += 8) {
        word |= TextBits8(line + i) << (i % 64);
        if ((i + 8) % 64 == 0) {
            m_text[i / 64] = word;
            word = 0;
        }
    }
    if (i < m_len) m_text[i / 64] = word | TextBitsBytes(line + i, m_len - i) << (i % 64);
    else if (i % 64 != 0) m_text[i / 64] = word;
}

}  // namespace xmpstok
