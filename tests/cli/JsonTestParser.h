// A strict little JSON parser for checking zem's output in tests: any
// deviation from the JSON grammar makes Parse throw.
#pragma once

#include <cstdlib>
#include <map>
#include <memory>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace jsontest {

struct Value {
    enum Kind { Null, Bool, Number, String, Array, Object } kind = Null;
    bool boolean = false;
    double number = 0;
    std::string text;
    std::vector<Value> items;
    std::vector<std::pair<std::string, Value>> members;

    const Value& operator[](const std::string& key) const {
        for (const auto& m : members) {
            if (m.first == key) return m.second;
        }
        throw std::out_of_range("no key " + key);
    }
    const Value& operator[](size_t i) const { return items.at(i); }
    std::vector<std::string> Keys() const {
        std::vector<std::string> keys;
        for (const auto& m : members) keys.push_back(m.first);
        return keys;
    }
};

class Parser {
public:
    explicit Parser(const std::string& s) : s_(s) {}

    Value Parse() {
        Value v = ParseValue();
        Skip();
        if (i_ != s_.size()) Fail("trailing text");
        return v;
    }

private:
    [[noreturn]] void Fail(const std::string& why) {
        throw std::runtime_error("JSON error at " + std::to_string(i_) + ": " + why);
    }
    void Skip() {
        while (i_ < s_.size() && (s_[i_] == ' ' || s_[i_] == '\n' || s_[i_] == '\t' || s_[i_] == '\r')) ++i_;
    }
    void Expect(char c) {
        Skip();
        if (i_ >= s_.size() || s_[i_] != c) Fail(std::string("expected ") + c);
        ++i_;
    }
    bool Literal(const char* word) {
        const std::string w(word);
        if (s_.compare(i_, w.size(), w) != 0) return false;
        i_ += w.size();
        return true;
    }
    Value ParseValue() {
        Skip();
        if (i_ >= s_.size()) Fail("unexpected end");
        Value v;
        const char c = s_[i_];
        if (c == '{') {
            v.kind = Value::Object;
            ++i_;
            Skip();
            if (s_[i_] == '}') {
                ++i_;
                return v;
            }
            for (;;) {
                Skip();
                if (s_[i_] != '"') Fail("expected a key");
                std::string key = ParseString();
                Expect(':');
                v.members.emplace_back(key, ParseValue());
                Skip();
                if (s_[i_] == ',') {
                    ++i_;
                    continue;
                }
                Expect('}');
                return v;
            }
        }
        if (c == '[') {
            v.kind = Value::Array;
            ++i_;
            Skip();
            if (s_[i_] == ']') {
                ++i_;
                return v;
            }
            for (;;) {
                v.items.push_back(ParseValue());
                Skip();
                if (s_[i_] == ',') {
                    ++i_;
                    continue;
                }
                Expect(']');
                return v;
            }
        }
        if (c == '"') {
            v.kind = Value::String;
            v.text = ParseString();
            return v;
        }
        if (Literal("null")) return v;
        if (Literal("true") || Literal("false")) {
            v.kind = Value::Bool;
            v.boolean = s_[i_ - 1] == 'e' && s_[i_ - 2] == 'u';
            return v;
        }
        // Number: -?(0|[1-9][0-9]*)(\.[0-9]+)?([eE][+-]?[0-9]+)?
        const size_t start = i_;
        if (s_[i_] == '-') ++i_;
        if (i_ < s_.size() && s_[i_] == '0') {
            ++i_;
        } else if (i_ < s_.size() && s_[i_] >= '1' && s_[i_] <= '9') {
            while (i_ < s_.size() && isdigit(static_cast<unsigned char>(s_[i_]))) ++i_;
        } else {
            Fail("bad value");
        }
        if (i_ < s_.size() && s_[i_] == '.') {
            ++i_;
            if (i_ >= s_.size() || !isdigit(static_cast<unsigned char>(s_[i_]))) Fail("bad fraction");
            while (i_ < s_.size() && isdigit(static_cast<unsigned char>(s_[i_]))) ++i_;
        }
        if (i_ < s_.size() && (s_[i_] == 'e' || s_[i_] == 'E')) {
            ++i_;
            if (i_ < s_.size() && (s_[i_] == '+' || s_[i_] == '-')) ++i_;
            if (i_ >= s_.size() || !isdigit(static_cast<unsigned char>(s_[i_]))) Fail("bad exponent");
            while (i_ < s_.size() && isdigit(static_cast<unsigned char>(s_[i_]))) ++i_;
        }
        v.kind = Value::Number;
        v.number = std::strtod(s_.substr(start, i_ - start).c_str(), nullptr);
        return v;
    }
    // Returns the string's bytes; \u escapes below 0x100 become that byte
    // (zem writes invalid UTF-8 bytes that way), others UTF-8.
    std::string ParseString() {
        ++i_;
        std::string out;
        for (;;) {
            if (i_ >= s_.size()) Fail("unterminated string");
            const unsigned char c = static_cast<unsigned char>(s_[i_++]);
            if (c == '"') return out;
            if (c < 0x20) Fail("raw control character");
            if (c != '\\') {
                out += static_cast<char>(c);
                continue;
            }
            const char e = s_[i_++];
            switch (e) {
                case '"': out += '"'; break;
                case '\\': out += '\\'; break;
                case '/': out += '/'; break;
                case 'b': out += '\b'; break;
                case 'f': out += '\f'; break;
                case 'n': out += '\n'; break;
                case 'r': out += '\r'; break;
                case 't': out += '\t'; break;
                case 'u': {
                    const unsigned long cp = std::strtoul(s_.substr(i_, 4).c_str(), nullptr, 16);
                    i_ += 4;
                    if (cp < 0x100) {
                        out += static_cast<char>(cp);
                    } else if (cp < 0x800) {
                        out += static_cast<char>(0xC0 | (cp >> 6));
                        out += static_cast<char>(0x80 | (cp & 0x3F));
                    } else {
                        out += static_cast<char>(0xE0 | (cp >> 12));
                        out += static_cast<char>(0x80 | ((cp >> 6) & 0x3F));
                        out += static_cast<char>(0x80 | (cp & 0x3F));
                    }
                    break;
                }
                default: Fail("bad escape");
            }
        }
    }

    const std::string& s_;
    size_t i_ = 0;
};

inline Value Parse(const std::string& text) { return Parser(text).Parse(); }

}  // namespace jsontest
