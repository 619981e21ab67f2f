#include "mpsutil/MPSLineSource.h"

#include <algorithm>
#include <cstring>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace {

constexpr size_t kBlockSize = size_t(1) << 20;

// Offset of the first line feed, carriage return or NUL in s[0, n); n when
// there is none. One pass for the three, sixteen bytes at a time where the
// processor has 128-bit vectors; nothing past s + n is read.
size_t FirstStop(const char* s, size_t n) {
    size_t i = 0;
#if defined(__SSE2__)
    const __m128i lf = _mm_set1_epi8('\n');
    const __m128i cr = _mm_set1_epi8('\r');
    const __m128i nul = _mm_setzero_si128();
    const auto stops = [&](const char* p) {
        const __m128i v = _mm_loadu_si128(reinterpret_cast<const __m128i*>(p));
        const __m128i hit = _mm_or_si128(_mm_or_si128(_mm_cmpeq_epi8(v, lf), _mm_cmpeq_epi8(v, cr)),
                                         _mm_cmpeq_epi8(v, nul));
        return static_cast<unsigned>(_mm_movemask_epi8(hit));
    };
    for (; i + 16 <= n; i += 16)
        if (const unsigned hits = stops(s + i)) return i + static_cast<size_t>(__builtin_ctz(hits));
    if (i < n && n >= 16) {
        // The last bytes, read as the tail of the last sixteen.
        const unsigned hits = stops(s + n - 16) >> (16 - (n - i));
        return hits != 0 ? i + static_cast<size_t>(__builtin_ctz(hits)) : n;
    }
#endif
    for (; i < n; ++i)
        if (s[i] == '\n' || s[i] == '\r' || s[i] == '\0') return i;
    return n;
}

}  // namespace

void MPSLineSource::Attach(std::istream* in) {
    m_in = in;
    m_pos = m_end = 0;
    m_peekAt = kNoPeek;
    m_eof = (in == nullptr);
    m_failed = false;
    if (in != nullptr && !m_buf) {
        m_buf.reset(new char[kBlockSize + 1]);
        m_capacity = kBlockSize;
    }
}

void MPSLineSource::Fill(size_t need) {
    if (m_end - m_pos >= need || m_eof) return;
    if (m_pos > 0) {
        std::memmove(m_buf.get(), m_buf.get() + m_pos, m_end - m_pos);
        m_end -= m_pos;
        m_pos = 0;
    }
    while (m_end < need && !m_eof) {
        m_in->read(m_buf.get() + m_end, static_cast<std::streamsize>(m_capacity - m_end));
        const std::streamsize got = m_in->gcount();
        if (got > 0) m_end += static_cast<size_t>(got);
        if (!*m_in) {
            m_eof = true;
            m_failed = m_in->bad();
        }
    }
}

const char* MPSLineSource::TakeLine(char* spare, size_t cap, size_t& text) {
    text = 0;
    const size_t maxBytes = cap - 1;
    Fill(maxBytes);
    const size_t avail = std::min(m_end - m_pos, maxBytes);
    if (avail == 0) return nullptr;
    char* s = m_buf.get() + m_pos;
    // The text ends at the first line feed, carriage return or NUL; the
    // line, at its line feed (usually that same byte).
    // A peek is of the line at m_peekAt; moving the buffer's content to its
    // start (Fill) only happens for m_pos > 0, so a moved line never
    // matches. The peek is used once.
    text = m_peekAt == m_pos && m_peekText < avail ? m_peekText : FirstStop(s, avail);
    m_peekAt = kNoPeek;
    size_t n = avail;
    if (text < avail && s[text] == '\n') {
        n = text + 1;
    } else if (const void* nl = std::memchr(s + text, '\n', avail - text)) {
        n = static_cast<size_t>(static_cast<const char*>(nl) - s) + 1;
    }
    m_pos += n;
    // The byte after the text is this line's own (its line feed, carriage
    // return or NUL), or the spare byte past the buffered input; otherwise
    // it starts the remainder of a cut line, which must stay.
    if (text < n || m_pos == m_end) {
        s[text] = '\0';
        return s;
    }
    std::memcpy(spare, s, text);
    spare[text] = '\0';
    return spare;
}

bool MPSLineSource::Peek(const char*& line, size_t& len) const {
    if (m_pos >= m_end) return false;
    const char* s = m_buf.get() + m_pos;
    const size_t stop = FirstStop(s, m_end - m_pos);
    if (stop < m_end - m_pos && s[stop] == '\n') {
        m_peekAt = m_pos;
        m_peekText = stop;
        line = s;
        len = stop;
        return true;
    }
    const void* nl = std::memchr(s + stop, '\n', m_end - m_pos - stop);
    if (nl == nullptr) return false;
    line = s;
    len = static_cast<size_t>(static_cast<const char*>(nl) - s);
    if (len > 0 && s[len - 1] == '\r') --len;
    return true;
}
