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
        m_buf.reset(new char[kBlockSize]);
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

bool MPSLineSource::ReadLine(char* dst, size_t cap, size_t& len) {
    const size_t maxBytes = cap - 1;
    Fill(maxBytes);
    size_t avail = m_end - m_pos;
    if (avail == 0) {
        len = 0;
        dst[0] = '\0';
        return false;
    }
    if (avail > maxBytes) avail = maxBytes;
    const char* s = m_buf.get() + m_pos;
    const void* nl = std::memchr(s, '\n', avail);
    const size_t n = nl ? static_cast<size_t>(static_cast<const char*>(nl) - s) + 1 : avail;
    std::memcpy(dst, s, n);
    dst[n] = '\0';
    m_pos += n;
    len = n;
    return true;
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
