// A strict little JSON parser for checking zem's output in tests: any
// deviation from the JSON grammar makes Parse throw.
#pragma once

#include <cctype>
#include <cstdlib>
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
        while (i_ < s_.size() && std::string(" \n\t\r").find(s_[i_]) != std::string::npos) ++i_;
    }
    char Peek() {
        Skip();
        if (i_ >= s_.size()) Fail("unexpected end");
        return s_[i_];
    }
    bool Take(const std::string& w) {
        if (s_.compare(i_, w.size(), w) != 0) return false;
        i_ += w.size();
        return true;
    }
    bool Digit() const { return i_ < s_.size() && std::isdigit(static_cast<unsigned char>(s_[i_])); }
    void Digits(const char* what) {
        if (!Digit()) Fail(what);
        while (Digit()) ++i_;
    }
    // After an item of an array or object: true at ',', false at the closer.
    bool More(char close) {
        const char c = Peek();
        ++i_;
        if (c == ',') return true;
        if (c != close) Fail(std::string("expected , or ") + close);
        return false;
    }
    Value ParseValue() {
        Value v;
        const char c = Peek();
        if (c == '{') {
            v.kind = Value::Object;
            ++i_;
            if (Peek() == '}') return ++i_, v;
            do {
                if (Peek() != '"') Fail("expected a key");
                std::string key = ParseString();
                if (Peek() != ':') Fail("expected :");
                ++i_;
                v.members.emplace_back(key, ParseValue());
            } while (More('}'));
        } else if (c == '[') {
            v.kind = Value::Array;
            ++i_;
            if (Peek() == ']') return ++i_, v;
            do v.items.push_back(ParseValue());
            while (More(']'));
        } else if (c == '"') {
            v.kind = Value::String;
            v.text = ParseString();
        } else if (Take("true") || Take("false")) {
            v.kind = Value::Bool;
            v.boolean = s_[i_ - 1] == 'e' && s_[i_ - 2] == 'u';
        } else if (!Take("null")) {
            // -?(0|[1-9][0-9]*)(\.[0-9]+)?([eE][+-]?[0-9]+)?
            const size_t start = i_;
            Take("-");
            if (!Take("0")) {
                if (!Digit()) Fail("bad value");
                Digits("bad value");
            }
            if (Take(".")) Digits("bad fraction");
            if (Take("e") || Take("E")) {
                if (!Take("+")) Take("-");
                Digits("bad exponent");
            }
            v.kind = Value::Number;
            v.number = std::strtod(s_.substr(start, i_ - start).c_str(), nullptr);
        }
        return v;
    }
    // Returns the string's bytes; a \u escape is one byte (zem writes
    // control characters and invalid UTF-8 bytes that way).
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
            if (i_ >= s_.size()) Fail("unterminated escape");
            const char e = s_[i_++];
            const std::string plain = "\"\\/bfnrt", meant = "\"\\/\b\f\n\r\t";
            if (plain.find(e) != std::string::npos) {
                out += meant[plain.find(e)];
            } else if (e == 'u' && i_ + 4 <= s_.size()) {
                const unsigned long cp = std::strtoul(s_.substr(i_, 4).c_str(), nullptr, 16);
                i_ += 4;
                if (cp >= 0x100) Fail("escape above one byte");
                out += static_cast<char>(cp);
            } else {
                Fail("bad escape");
            }
        }
    }

    const std::string& s_;
    size_t i_ = 0;
};

inline Value Parse(const std::string& text) { return Parser(text).Parse(); }

}  // namespace jsontest
