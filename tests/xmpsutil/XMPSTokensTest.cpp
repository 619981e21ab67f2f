#include "xmpsutil/XMPSTokens.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <vector>

using xmpstok::ExtractToken;
using xmpstok::IsANumber;
using xmpstok::ParseFreeFormat;

TEST(XMPSIsANumber, AcceptsNumbersAndTheFormatsLeniencyRejectsNames) {
    // The last character is never examined: one- and two-character tokens
    // that start like a number are numbers, and so is "1E5D".
    for (const char* t : {"0", "12", "-3", "+4.5", ".5", "1.5E+03", "-2.25e-7", "1.0D+02", "7d3",
                          "0.123450E+01", "-.123450E+01", "12x", "-", ".", "+Z", "1-2+3", "1E5D"}) {
        EXPECT_TRUE(IsANumber(t)) << t;
    }
    // A second exponent mark inside the token is refused.
    for (const char* t : {"", "X1", "FEED", "EXPX", "\\", "1.5EE3", "1e5e3", "12ab", "1,5", "12,", ",5", "E5",
                          "1E5D3", "1dE3"}) {
        EXPECT_FALSE(IsANumber(t)) << t;
    }
    EXPECT_FALSE(IsANumber(nullptr));
}

TEST(XMPSExtractToken, CopiesCutsAndCountsWhatItPassed) {
    const char* line = "   ABC  de f";
    char tok[16];
    int count = 0;
    for (const auto& [text, end] : std::vector<std::pair<const char*, int>>{{"ABC", 6}, {"de", 10}, {"f", 12}}) {
        ASSERT_TRUE(ExtractToken(count, line + count, tok, 15));
        EXPECT_STREQ(tok, text);
        EXPECT_EQ(count, end);
    }
    EXPECT_FALSE(ExtractToken(count, line + count, tok, 15));
    EXPECT_STREQ(tok, "");
    // Only blanks give an empty token; the count goes on from where it was.
    char small[8] = "junk";
    count = 5;
    EXPECT_FALSE(ExtractToken(count, " \t  ", small, 7));
    EXPECT_STREQ(small, "");
    EXPECT_EQ(count, 9);
    // A long token is cut and its rest skipped.
    char cut[4];
    count = 0;
    ASSERT_TRUE(ExtractToken(count, "ABCDEFG HI", cut, 3));
    EXPECT_STREQ(cut, "ABC");
    EXPECT_EQ(count, 7);
    ASSERT_TRUE(ExtractToken(count, "ABCDEFG HI" + count, cut, 3));
    EXPECT_STREQ(cut, "HI");
}

TEST(XMPSFreeFormat, SplitsCardsIntoTheSixFields) {
    struct Case {
        const char* line;
        bool hasKey;
        std::vector<std::string> fields;  // key, name1, name2, number1, name3, number2
    } cases[] = {
        // A blank column five leaves the first name empty.
        {" SB    X 5.0", true, {"SB", "", "X", "5.0", "", ""}},
        // All six fields, the rest ignored.
        {" S1 SET1 X1 1.0 X2 2.0 EXTRA", true, {"S1", "SET1", "X1", "1.0", "X2", "2.0"}},
        {" FR", true, {"FR", "", "", "", "", ""}},
        {"", true, {"", "", "", "", "", ""}},
        // Free MPS of other tools: a row name in column 4, a column name
        // across column 5 in a section without keys, a short column name
        // that ends before column 5.
        {" N cost", true, {"N", "cost", "", "", "", ""}},
        {" x[Seattle,New-York] cost 0.225 supply[Seattle] 1", false,
         {"", "x[Seattle,New-York]", "cost", "0.225", "supply[Seattle]", "1"}},
        {" RHS1 demand[Topeka] 275", false, {"", "RHS1", "demand[Topeka]", "275", "", ""}},
        {" x1 cost 0.5", false, {"", "x1", "cost", "0.5", "", ""}},
        // Without keys, blank first columns still need the first name to
        // start in column 5.
        {"      SRC  TGT", false, {"", "", "SRC", "TGT", "", ""}},
        {"    SRC  TGT", false, {"", "SRC", "TGT", "", "", ""}},
    };
    const auto parse = [](const std::string& line, bool hasKey) {
        char f[6][129];
        char* fields[] = {f[0], f[1], f[2], f[3], f[4], f[5]};
        ParseFreeFormat(line.c_str(), static_cast<int>(line.size()), hasKey, fields);
        return std::vector<std::string>(f, f + 6);
    };
    for (const Case& c : cases) EXPECT_EQ(parse(c.line, c.hasKey), c.fields) << "'" << c.line << "'";
    // Overlong tokens are cut to the field width.
    EXPECT_EQ(parse("    " + std::string(300, 'A') + " B", true),
              (std::vector<std::string>{"", std::string(128, 'A'), "B", "", "", ""}));
}
