#include "mpsutil/MPSLineSource.h"

#include <cstring>

namespace {
constexpr size_t kBlockSize = size_t(1) << 20;
}

void MPSLineSource::Attach(std::istream* in) {
    m_in = in;
    m_pos = m_end = 0;
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

bool MPSLineSource::Next(size_t maxBytes, char*& s, size_t& n, bool& fed) {
    Fill(maxBytes);
    size_t avail = m_end - m_pos;
    if (avail == 0) return false;
    if (avail > maxBytes) avail = maxBytes;
    s = m_buf.get() + m_pos;
    const void* nl = std::memchr(s, '\n', avail);
    fed = nl != nullptr;
    n = fed ? static_cast<size_t>(static_cast<const char*>(nl) - s) + 1 : avail;
    m_pos += n;
    return true;
}

const char* MPSLineSource::TakeLine(char* spare, size_t cap, size_t& text) {
    char* s = nullptr;
    size_t n = 0;
    bool fed = false;
    text = 0;
    if (!Next(cap - 1, s, n, fed)) return nullptr;
    text = fed ? n - 1 : n;
    if (const void* cr = std::memchr(s, '\r', text)) text = static_cast<size_t>(static_cast<const char*>(cr) - s);
    if (const void* nul = std::memchr(s, '\0', text)) text = static_cast<size_t>(static_cast<const char*>(nul) - s);
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
    const void* nl = std::memchr(s, '\n', m_end - m_pos);
    if (nl == nullptr) return false;
    line = s;
    len = static_cast<size_t>(static_cast<const char*>(nl) - s);
    if (len > 0 && s[len - 1] == '\r') --len;
    return true;
}
