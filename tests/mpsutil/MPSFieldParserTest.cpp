#include "mpsutil/MPSFieldParser.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <random>
#include <sstream>
#include <string>
#include <vector>

#include "mpsutil/MPSLineSource.h"

namespace {

std::string extract(const char* text, int width) {
    char buf[kMPSLineSize];
    std::memset(buf, 'Z', sizeof buf);
    const size_t n = MPSExtractField(buf, text, width);
    EXPECT_EQ(n, std::strlen(buf));
    return buf;
}

}  // namespace

TEST(MPSExtractField, BlanksInsideBecomeUnderscoresAndTheWidthBoundsTheField) {
    const struct {
        const char* text;
        int width;
        const char* field;
    } cases[] = {
        {"AB CD   ", 8, "AB_CD"}, {"  AB  CD", 8, "AB__CD"}, {"A B C D ", 8, "A_B_C_D"},
        {"        ", 8, ""},      {"", 8, ""},              {"ABCDEFGHIJ", 8, "ABCDEFGH"},
        // Leading blanks use up the width: only four characters remain.
        {"    ICECREAM", 8, "ICEC"},
        // A blank run that reaches the end of the field is trailing.
        {"ABC     X", 8, "ABC"},
        // Text ending early (end of the line) ends the field.
        {"AB", 8, "AB"},          {"AB ", 8, "AB"},         {"ABC", 0, ""},
        {"ABC", -3, ""},
    };
    for (const auto& c : cases) EXPECT_EQ(extract(c.text, c.width), c.field) << '"' << c.text << '"';
}

// Extended widths move the later fields; silly widths are clamped.
TEST(MPSFieldGeometry, ExtendedColumnsAndClamps) {
    MPSFieldGeometry g;
    g.Set(128, 13, 2);
    const int extended[] = {1, 4, 134, 264, 280, 410};
    for (int f = 0; f < kMPSFieldCount; ++f) EXPECT_EQ(g.start[f], extended[f]) << f;
    g.Set(-5, 30000, 2);
    EXPECT_EQ(g.nameWidth, 0);
    EXPECT_EQ(g.numberWidth, kMPSMaxFieldWidth);
}

// The parser must give strtod's result bit for bit. Plain decimals take a
// short path, so the list covers its edges: 15 to 20 significant digits,
// mantissas near 2^53, decimal exponents near +-22, leading and trailing
// zeros; then random decimals.
TEST(MPSParseNumber, AgreesWithStrtodBitForBit) {
    std::vector<std::string> texts = {
        "1", "-2.5", "+3", ".5", "5.", "1e5", "1.5E-3", "-0", "12.5abc", "abc", "", "-", "+-5", "1e", "1e+",
        "0x1A", "-0x10", "1e400", "-1e400", "1e-400", "1_000", "\t7", "1D3", "00012", "1e20", "-1e+20", "inf",
        "-Infinity", "3.14159265358979", "0.1", "123456789012345678901234567890", "9007199254740992",
        "9007199254740993", "9007199254740991", "18014398509481985", "1e22", "1e23", "1e-22", "1e-23", "4.5e22",
        "123456.789e-28", "0.000000000000000000000001", "1234567890123456789", "12345678901234567890",
        "0.1234567890123456789", "000000000000000000000000001.5", "1.50000000000000000000", "-.385401E+03",
        "0.679434E+03", "-0.0e5", "7E+0", "2.2250738585072014e-308", "1.7976931348623157e308", "5e-324", "0.3",
        "100000000000000000000000"};
    uint64_t state = 12345;
    const auto next = [&state] {
        state = state * 6364136223846793005ull + 1442695040888963407ull;
        return static_cast<unsigned>(state >> 33);
    };
    for (int i = 0; i < 20000; ++i) {
        std::string t;
        if (next() % 3 == 0) t += '-';
        const int digits = 1 + static_cast<int>(next() % 20);
        const int pointAt = static_cast<int>(next() % (digits + 2)) - 1;  // -1: no point
        for (int d = 0; d < digits; ++d) {
            if (d == pointAt) t += '.';
            t += static_cast<char>('0' + next() % 10);
        }
        if (next() % 2 == 0) {
            t += (next() % 2 == 0) ? 'e' : 'E';
            const unsigned sign = next() % 3;
            t += sign == 1 ? "-" : sign == 2 ? "+" : "";
            t += std::to_string(next() % 40);
        }
        texts.push_back(t);
    }
    for (const std::string& t : texts) {
        const double expected = std::strtod(t.c_str(), nullptr);
        const double got = MPSParseNumber(t.c_str());
        uint64_t a = 0, b = 0;
        std::memcpy(&a, &expected, sizeof a);
        std::memcpy(&b, &got, sizeof b);
        EXPECT_EQ(a, b) << '"' << t << "\" read as " << got << ", expected " << expected;
    }
    EXPECT_TRUE(std::isnan(MPSParseNumber("nan")));
}

// Takes every line of `text` from a fresh source, peeking at every other
// line first (a peeked line is taken without a second scan).
static std::vector<std::string> TakeAll(const std::string& text) {
    std::istringstream in(text);
    MPSLineSource src;
    src.Attach(&in);
    char spare[kMPSLineSize];
    std::vector<std::string> lines;
    size_t n = 0;
    for (;;) {
        const char* peeked = nullptr;
        if (lines.size() % 2 == 0) src.Peek(peeked, n);
        const char* line = src.TakeLine(spare, sizeof spare, n);
        if (line == nullptr) break;
        EXPECT_EQ(std::strlen(line), n);
        lines.emplace_back(line, n);
    }
    EXPECT_FALSE(src.InputFailed());
    return lines;
}

TEST(MPSLineSource, SplitsLongLinesLikeFgetsAndCutsTheText) {
    const std::string longLine(2500, 'x');
    const std::vector<std::string> want = {"first", std::string(1023, 'x'), std::string(1023, 'x'),
                                           std::string(2500 - 2046, 'x'), "ab", "a", "", "last"};
    EXPECT_EQ(TakeAll("first\r\n" + longLine + "\nab\rcd\n" + std::string("a\0b\n", 4) + "\nlast"),
              want);
}

// Random text of letters, blanks, line feeds, carriage returns and NULs, at
// every distance from one another: lines as a plain scan cuts them.
TEST(MPSLineSource, CutsRandomTextAsAPlainScanDoes) {
    std::mt19937 rng(11);
    const char alphabet[] = {'a', 'b', ' ', ' ', '\n', '\r', '\0', 'z', 'q'};
    for (int round = 0; round < 200; ++round) {
        // Every other round, stops are rare and lines long.
        const unsigned sparse = round % 2 == 0 ? 1 : 12;
        std::string text(static_cast<size_t>(rng() % 300), ' ');
        for (char& c : text) c = rng() % sparse == 0 ? alphabet[rng() % sizeof alphabet] : 'x';
        std::vector<std::string> want;
        for (size_t at = 0; at < text.size();) {
            const size_t nl = text.find('\n', at);
            const size_t end = nl == std::string::npos ? text.size() : nl;
            const std::string line = text.substr(at, end - at);
            want.push_back(line.substr(0, line.find_first_of(std::string("\r\0", 2))));
            at = end + 1;
        }
        ASSERT_EQ(TakeAll(text), want) << "round " << round;
    }
}

TEST(MPSLineSource, LineCutAtTheEndOfTheBufferKeepsItsRemainder) {
    // Short lines up to 1023 bytes before the end of the first 1 MiB block,
    // then a long line: its first 1023 bytes end exactly at the block's end.
    std::string text = "yy\n";
    while (text.size() < (size_t(1) << 20) - 1023) text += "y\n";
    ASSERT_EQ(text.size(), (size_t(1) << 20) - 1023);
    text += std::string(2000, 'x') + "\nend";
    const std::vector<std::string> lines = TakeAll(text);
    ASSERT_GE(lines.size(), 3u);
    EXPECT_EQ(lines[lines.size() - 3], std::string(1023, 'x'));
    EXPECT_EQ(lines[lines.size() - 2], std::string(2000 - 1023, 'x'));
    EXPECT_EQ(lines.back(), "end");
}

// The word-wise copy and compare of names, for every length around the word
// sizes and a difference at every place.
TEST(MPSTextBytes, CopyAndCompareEveryLengthAndEveryDifference) {
    const std::string text = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmn";
    for (size_t n = 0; n <= text.size(); ++n) {
        std::vector<char> buffer(64, '#');
        // Through a volatile pointer: the compiler, seeing the buffer's size
        // but not that n stays below it, would warn of copies past its end.
        char* volatile opaque = buffer.data();
        char* copy = opaque;
        MPSCopyText(copy, text.data(), n);
        ASSERT_EQ(std::string(copy), text.substr(0, n));
        EXPECT_TRUE(MPSSameBytes(copy, text.data(), n)) << n;
        for (size_t at = 0; at < n; ++at) {
            std::string other = text.substr(0, n);
            other[at] = '*';
            EXPECT_FALSE(MPSSameBytes(other.data(), text.data(), n)) << n << " " << at;
        }
    }
}
