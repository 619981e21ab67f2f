#include "zemmgr/ZEMOptionTable.h"

#include <algorithm>
#include <cstdint>
#include <vector>

#include "lpdata/ZEMBinaryIO.h"
#include "lpdata/ZEMException.h"

namespace {

bool hasText(const char* s) { return s != nullptr && s[0] != '\0'; }

const char* lookup(const ZEMOptionTable::Column& column, const char* name) {
    if (name == nullptr) return nullptr;
    const auto it = column.find(name);
    return it == column.end() ? nullptr : it->second.c_str();
}

[[noreturn]] void readError() {
    ZEM_RAISE(zemsrc::kZemMgr, "ZEMDataMgr Error",
              "Error during read of ZEM Option List from binary file", "ZEMOptionTable::StreamRead");
}

}  // namespace

void ZEMOptionTable::SetOption(const char* name, const char* value, const char* secondValue) {
    if (!hasText(name)) return;
    if (hasText(value)) m_first[name] = value;
    if (hasText(secondValue)) m_second[name] = secondValue;
}

const char* ZEMOptionTable::GetOptionValue(const char* name) { return lookup(m_first, name); }

const char* ZEMOptionTable::GetOptionSecondValue(const char* name) {
    return lookup(m_second, name);
}

void ZEMOptionTable::RemoveOptionValue(const char* name) {
    if (name != nullptr) m_first.erase(name);
}

void ZEMOptionTable::Display(std::ostream& os) {
    os << "\nO P T I O N   T A B L E   D I S P L A Y\n";
    os << "- - - - - -   - - - - -   - - - - - - -\n\n";
    if (m_first.empty() && m_second.empty()) {
        os << " -- EMPTY --\n\n";
        return;
    }
    for (const auto& entry : m_first) {
        os << "  " << entry.first << " : " << entry.second;
        const auto second = m_second.find(entry.first);
        if (second != m_second.end()) os << " : " << second->second;
        os << "\n";
    }
    for (const auto& entry : m_second) {
        if (m_first.count(entry.first) != 0) continue;
        os << "  " << entry.first << " : -------- : " << entry.second << "\n";
    }
}

void ZEMOptionTable::WriteColumn(std::ostream* os, const Column& column) {
    std::string body;
    for (const auto& entry : column) {
        body.append(entry.first);
        body.push_back('\0');
        body.append(entry.second);
        body.push_back('\0');
    }
    unsigned char len[4];
    zembin::put32(len, static_cast<int32_t>(static_cast<uint32_t>(body.size())));
    zembin::writeBytes(os, len, sizeof len);
    if (!body.empty()) zembin::writeBytes(os, body.data(), body.size());
}

void ZEMOptionTable::StreamWrite(std::ostream* os) {
    WriteColumn(os, m_first);
    WriteColumn(os, m_second);
}

void ZEMOptionTable::ReadColumn(std::istream* is, Column& column) {
    unsigned char lenBytes[4];
    if (!zembin::readExact(is, lenBytes, sizeof lenBytes)) readError();
    const uint32_t len = static_cast<uint32_t>(zembin::get32(lenBytes));
    if (len == 0) return;
    // The length comes from the file: never allocate more than it can hold,
    // and on a stream that cannot tell its size grow only as bytes arrive.
    if (!zembin::canHold(is, len, 1)) readError();
    std::vector<char> body;
    constexpr size_t kChunk = size_t(1) << 20;
    while (body.size() < len) {
        const size_t part = std::min<size_t>(kChunk, len - body.size());
        const size_t at = body.size();
        body.resize(at + part);
        if (!zembin::readExact(is, body.data() + at, part)) readError();
    }
    // Pairs of NUL-terminated texts; a body that ends inside a pair is
    // damaged.
    size_t pos = 0;
    while (pos < body.size()) {
        const size_t nameEnd = pos;
        size_t end = pos;
        while (end < body.size() && body[end] != '\0') ++end;
        if (end == body.size()) readError();
        std::string name(body.data() + nameEnd, end - nameEnd);
        pos = end + 1;
        end = pos;
        while (end < body.size() && body[end] != '\0') ++end;
        if (end == body.size()) readError();
        column[name] = std::string(body.data() + pos, end - pos);
        pos = end + 1;
    }
}

void ZEMOptionTable::StreamRead(std::istream* is) {
    ReadColumn(is, m_first);
    ReadColumn(is, m_second);
}

void ZEMOptionTable::OptionNames(std::vector<std::string>& names) {
    names.clear();
    names.reserve(m_first.size() + m_second.size());
    auto a = m_first.begin();
    auto b = m_second.begin();
    // Merge the two ordered key sets.
    while (a != m_first.end() || b != m_second.end()) {
        if (b == m_second.end() || (a != m_first.end() && a->first < b->first)) {
            names.push_back((a++)->first);
        } else if (a == m_first.end() || b->first < a->first) {
            names.push_back((b++)->first);
        } else {
            names.push_back(a->first);
            ++a;
            ++b;
        }
    }
}
