#include "xmpsutil/XMPSLineMap.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <random>
#include <string>
#include <vector>

namespace {

// Every token of line[0, len) at or after each offset, by a plain scan.
std::vector<std::string> TokensFrom(const std::string& line, int from) {
    std::vector<std::string> tokens;
    const auto blank = [](char c) { return c == ' ' || c == '\t'; };
    size_t i = static_cast<size_t>(from);
    while (i < line.size()) {
        while (i < line.size() && blank(line[i])) ++i;
        const size_t start = i;
        while (i < line.size() && !blank(line[i])) ++i;
        if (i > start) tokens.push_back(line.substr(start, i - start));
    }
    return tokens;
}

std::vector<std::string> MapTokensFrom(const xmpstok::LineMap& map, int from) {
    std::vector<std::string> tokens;
    for (xmpstok::FieldSpan t = map.Next(from); t.text != nullptr;
         t = map.Next(static_cast<int>(t.text - map.Line() + t.n))) {
        tokens.emplace_back(t.text, t.n);
    }
    return tokens;
}

}  // namespace

// Lines of every length up to the longest, of blanks, tabs, text and NULs
// (a NUL is text to the map), each placed at the very end of its buffer so
// that a read past the line's end is caught under AddressSanitizer.
TEST(XMPSLineMap, FindsTheTokensOfAPlainScan) {
    std::mt19937 rng(7);
    const char alphabet[] = {' ', ' ', ' ', '\t', 'A', 'b', '1', '.', '\0', '\\'};
    for (int len = 0; len <= xmpstok::LineMap::kMaxLength; len += (len < 140 ? 1 : 37)) {
        for (int round = 0; round < 3; ++round) {
            std::string line(static_cast<size_t>(len), ' ');
            for (char& c : line) c = alphabet[rng() % sizeof alphabet];
            const std::unique_ptr<char[]> exact(new char[line.size() + 1]);
            char* text = exact.get() + 1;
            std::copy(line.begin(), line.end(), text);
            xmpstok::LineMap map;
            map.Build(text, len);
            for (int from : {0, 1, len / 3, len - 1, len, len + 5}) {
                const std::vector<std::string> want = TokensFrom(line, from);
                ASSERT_EQ(MapTokensFrom(map, from), want) << "length " << len << " from " << from;
            }
        }
    }
}

TEST(XMPSLineMap, TokensRunAcrossWordsAndToTheEnd) {
    // A token that spans the 64-character words of the map, and one that
    // ends exactly at the end of a line whose length is a multiple of 64.
    const std::string line = std::string(60, ' ') + std::string(10, 'X') + std::string(58, ' ') + "END";
    xmpstok::LineMap map;
    map.Build(line.data(), static_cast<int>(line.size()));
    EXPECT_EQ(MapTokensFrom(map, 0), (std::vector<std::string>{std::string(10, 'X'), "END"}));
    EXPECT_EQ(MapTokensFrom(map, 65), (std::vector<std::string>{std::string(5, 'X'), "END"}));
    const std::string full(128, 'Y');
    map.Build(full.data(), 128);
    EXPECT_EQ(MapTokensFrom(map, 3), std::vector<std::string>{std::string(125, 'Y')});
    // Longer lines are mapped up to the longest length.
    const std::string tooLong(xmpstok::LineMap::kMaxLength + 10, 'Z');
    map.Build(tooLong.data(), static_cast<int>(tooLong.size()));
    EXPECT_EQ(map.Length(), xmpstok::LineMap::kMaxLength);
    EXPECT_EQ(map.Next(0).n, static_cast<size_t>(xmpstok::LineMap::kMaxLength));
}
