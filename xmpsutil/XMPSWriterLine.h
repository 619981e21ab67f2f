// The line builder of the XMPS writer, shared by its source files.
#pragma once

#include <cstring>

#include "xmpsutil/XMPSNumberFormat.h"
#include "xmpsutil/XMPSWriter.h"

// Builds one output line in the writer's line buffer; text beyond what a
// line may hold is dropped.
class XMPSWriter::Line {
public:
    explicit Line(XMPSWriter& w) : m_w(w) {}
    Line& ch(char c) {
        if (m_n < kCap) m_w.m_lineBuffer[m_n++] = c;
        return *this;
    }
    Line& blanks(int n) {
        while (n-- > 0) ch(' ');
        return *this;
    }
    Line& text(const char* s, size_t len) {
        size_t room = static_cast<size_t>(kCap - m_n);
        if (len > room) len = room;
        char* dst = m_w.m_lineBuffer + m_n;
        // Names and numbers are short: a plain loop beats memcpy's set-up.
        if (len <= 32) {
            for (size_t i = 0; i < len; ++i) dst[i] = s[i];
        } else {
            std::memcpy(dst, s, len);
        }
        m_n += static_cast<int>(len);
        return *this;
    }
    Line& text(const char* s) { return text(s, std::strlen(s)); }
    // "%-<width>s"
    Line& left(const char* s, int width) {
        const size_t len = std::strlen(s);
        text(s, len);
        return blanks(width - static_cast<int>(len));
    }
    // "%<width>s"
    Line& right(const char* s, int len, int width) {
        blanks(width - len);
        return text(s, static_cast<size_t>(len));
    }
    Line& number(int (*form)(char*, double), double v, int width) {
        char buf[xmpsnum::kNumberBufSize];
        const int len = form(buf, v);
        return right(buf, len, width);
    }
    int length() const { return m_n; }
    void put() {
        m_w.EmitLine(m_w.m_lineBuffer, static_cast<size_t>(m_n));
        m_n = 0;
    }

private:
    static constexpr int kCap = kMPSLineSize - 1;
    XMPSWriter& m_w;
    int m_n = 0;
};

