#include "cli/Json.h"

#include <charconv>
#include <cmath>
#include <cstdio>

namespace {

constexpr size_t kFlushSize = 1 << 16;

// Length of the valid UTF-8 sequence starting at s[i], or 0.
size_t utf8Length(std::string_view s, size_t i) {
    const auto b = [&](size_t k) { return static_cast<unsigned char>(s[k]); };
    const unsigned char c = b(i);
    size_t n = 0;
    uint32_t cp = 0;
    if (c >= 0xC2 && c <= 0xDF) {
        n = 2;
        cp = c & 0x1F;
    } else if (c >= 0xE0 && c <= 0xEF) {
        n = 3;
        cp = c & 0x0F;
    } else if (c >= 0xF0 && c <= 0xF4) {
        n = 4;
        cp = c & 0x07;
    } else {
        return 0;
    }
    if (i + n > s.size()) return 0;
    for (size_t k = 1; k < n; ++k) {
        if ((b(i + k) & 0xC0) != 0x80) return 0;
        cp = (cp << 6) | (b(i + k) & 0x3F);
    }
    // Overlong forms, surrogates and values beyond Unicode are not valid.
    if ((n == 3 && cp < 0x800) || (n == 4 && (cp < 0x10000 || cp > 0x10FFFF)) ||
        (cp >= 0xD800 && cp <= 0xDFFF)) {
        return 0;
    }
    return n;
}

}  // namespace

JsonWriter::JsonWriter(std::ostream& os, bool pretty) : m_os(os), m_pretty(pretty) {
    m_buffer.reserve(kFlushSize + 1024);
}

JsonWriter::~JsonWriter() { Flush(); }

std::string JsonWriter::Quote(std::string_view text) {
    std::string out;
    out.reserve(text.size() + 2);
    out += '"';
    for (size_t i = 0; i < text.size();) {
        const unsigned char c = static_cast<unsigned char>(text[i]);
        if (c >= 0x80) {
            const size_t n = utf8Length(text, i);
            if (n > 0) {
                out.append(text.substr(i, n));
                i += n;
                continue;
            }
        }
        switch (c) {
            case '"': out += "\\\""; break;
            case '\\': out += "\\\\"; break;
            case '\n': out += "\\n"; break;
            case '\r': out += "\\r"; break;
            case '\t': out += "\\t"; break;
            case '\b': out += "\\b"; break;
            case '\f': out += "\\f"; break;
            default:
                if (c < 0x20 || c >= 0x7F) {
                    char esc[8];
                    std::snprintf(esc, sizeof esc, "\\u%04x", c);
                    out += esc;
                } else {
                    out += static_cast<char>(c);
                }
        }
        ++i;
    }
    out += '"';
    return out;
}

std::string JsonWriter::NumberText(double value) {
    if (!std::isfinite(value)) return "null";
    char buf[32];
    const auto result = std::to_chars(buf, buf + sizeof buf, value);
    return std::string(buf, result.ptr);
}

void JsonWriter::Raw(std::string_view text) {
    m_buffer.append(text);
    if (m_buffer.size() >= kFlushSize) Flush();
}

void JsonWriter::Flush() {
    if (!m_buffer.empty()) {
        m_os.write(m_buffer.data(), static_cast<std::streamsize>(m_buffer.size()));
        m_buffer.clear();
    }
}

void JsonWriter::NewLine() {
    if (!m_pretty) return;
    m_buffer += '\n';
    m_buffer.append(2 * m_hasMember.size(), ' ');
}

void JsonWriter::BeforeValue() {
    if (m_afterKey) {
        m_afterKey = false;
        return;
    }
    if (!m_hasMember.empty()) {
        if (m_hasMember.back()) m_buffer += ',';
        m_hasMember.back() = true;
        NewLine();
    }
}

void JsonWriter::BeginObject() {
    BeforeValue();
    Raw("{");
    m_hasMember.push_back(false);
}

void JsonWriter::Close(const char* bracket) {
    const bool had = m_hasMember.back();
    m_hasMember.pop_back();
    if (had) NewLine();
    Raw(bracket);
}

void JsonWriter::EndObject() { Close("}"); }

void JsonWriter::BeginArray() {
    BeforeValue();
    Raw("[");
    m_hasMember.push_back(false);
}

void JsonWriter::EndArray() { Close("]"); }

void JsonWriter::Key(std::string_view key) {
    BeforeValue();
    Raw(Quote(key));
    Raw(m_pretty ? ": " : ":");
    m_afterKey = true;
}

void JsonWriter::String(std::string_view text) {
    BeforeValue();
    Raw(Quote(text));
}

void JsonWriter::Number(double value) {
    BeforeValue();
    if (!std::isfinite(value)) {
        Raw("null");
        return;
    }
    char buf[32];
    const auto result = std::to_chars(buf, buf + sizeof buf, value);
    Raw(std::string_view(buf, static_cast<size_t>(result.ptr - buf)));
}

void JsonWriter::Integer(int64_t value) {
    BeforeValue();
    char buf[24];
    const auto result = std::to_chars(buf, buf + sizeof buf, value);
    Raw(std::string_view(buf, static_cast<size_t>(result.ptr - buf)));
}

void JsonWriter::Bool(bool value) {
    BeforeValue();
    Raw(value ? "true" : "false");
}

void JsonWriter::Null() {
    BeforeValue();
    Raw("null");
}

void JsonWriter::Finish() {
    m_buffer += '\n';
    Flush();
    m_os.flush();
}
