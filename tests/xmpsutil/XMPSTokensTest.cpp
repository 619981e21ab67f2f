#include "xmpsutil/XMPSTokens.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>

using xmpstok::ExtractToken;
using xmpstok::IsANumber;
using xmpstok::ParseFreeFormat;

TEST(XMPSIsANumber, AcceptsOrdinaryNumbers) {
    for (const char* t : {"0", "12", "-3", "+4.5", ".5", "1.5E+03", "-2.25e-7", "1.0D+02", "7d3",
                          "0.123450E+01", "-.123450E+01"}) {
        EXPECT_TRUE(IsANumber(t)) << t;
    }
}

TEST(XMPSIsANumber, KeepsTheFormatsLeniency) {
    // The last character is never examined, one- and two-character tokens
    // that start like a number are numbers.
    EXPECT_TRUE(IsANumber("12x"));
    EXPECT_TRUE(IsANumber("-"));
    EXPECT_TRUE(IsANumber("."));
    EXPECT_TRUE(IsANumber("+Z"));
    EXPECT_TRUE(IsANumber("1-2+3"));
}

TEST(XMPSIsANumber, RejectsNames) {
    for (const char* t : {"", "X1", "FEED", "EXPX", "\\", "1.5EE3", "1e5e3", "12ab", "1,5", "12,",
                          ",5", "E5"}) {
        EXPECT_FALSE(IsANumber(t)) << t;
    }
    EXPECT_FALSE(IsANumber(nullptr));
}

TEST(XMPSIsANumber, SecondExponentMarkMustBeNumberCharacter) {
    EXPECT_TRUE(IsANumber("1E5D"));    // the second mark is the unexamined last character
    EXPECT_FALSE(IsANumber("1E5D3"));  // a second mark inside is refused
    EXPECT_FALSE(IsANumber("1dE3"));
}

TEST(XMPSExtractToken, CopiesTokensAndCountsWhatItPassed) {
    const char* line = "   ABC  de f";
    char tok[16];
    int count = 0;
    ASSERT_TRUE(ExtractToken(count, line, tok, 15));
    EXPECT_STREQ(tok, "ABC");
    EXPECT_EQ(count, 6);
    ASSERT_TRUE(ExtractToken(count, line + count, tok, 15));
    EXPECT_STREQ(tok, "de");
    EXPECT_EQ(count, 10);
    ASSERT_TRUE(ExtractToken(count, line + count, tok, 15));
    EXPECT_STREQ(tok, "f");
    EXPECT_EQ(count, 12);
    EXPECT_FALSE(ExtractToken(count, line + count, tok, 15));
    EXPECT_STREQ(tok, "");
}

TEST(XMPSExtractToken, OnlyBlanksGiveAnEmptyToken) {
    char tok[8] = "junk";
    int count = 5;
    EXPECT_FALSE(ExtractToken(count, " \t  ", tok, 7));
    EXPECT_STREQ(tok, "");
    EXPECT_EQ(count, 9);
}

TEST(XMPSExtractToken, CutsLongTokensAndSkipsTheirRest) {
    char tok[4];
    int count = 0;
    ASSERT_TRUE(ExtractToken(count, "ABCDEFG HI", tok, 3));
    EXPECT_STREQ(tok, "ABC");
    EXPECT_EQ(count, 7);
    ASSERT_TRUE(ExtractToken(count, "ABCDEFG HI" + count, tok, 3));
    EXPECT_STREQ(tok, "HI");
}

namespace {
struct CardFields {
    char key[129], name1[129], name2[129], number1[129], name3[129], number2[129];
};
CardFields parse(const char* line, bool hasKey = true) {
    CardFields f;
    char* const fields[] = {f.key, f.name1, f.name2, f.number1, f.name3, f.number2};
    ParseFreeFormat(line, static_cast<int>(std::strlen(line)), hasKey, fields);
    return f;
}
}  // namespace

TEST(XMPSFreeFormat, ReadsTheWritersCards) {
    CardFields f = parse(" UP BND1              FEED1             0.2500000000E+03");
    EXPECT_STREQ(f.key, "UP");
    EXPECT_STREQ(f.name1, "BND1");
    EXPECT_STREQ(f.name2, "FEED1");
    EXPECT_STREQ(f.number1, "0.2500000000E+03");
    EXPECT_STREQ(f.name3, "");

    f = parse("    RHS1              ROW_A             0.500000E+01");
    EXPECT_STREQ(f.key, "");
    EXPECT_STREQ(f.name1, "RHS1");
    EXPECT_STREQ(f.name2, "ROW_A");
    EXPECT_STREQ(f.number1, "0.500000E+01");
}

TEST(XMPSFreeFormat, BlankColumnFiveLeavesTheFirstNameEmpty) {
    CardFields f = parse(" SB    X 5.0");
    EXPECT_STREQ(f.key, "SB");
    EXPECT_STREQ(f.name1, "");
    EXPECT_STREQ(f.name2, "X");
    EXPECT_STREQ(f.number1, "5.0");
}

TEST(XMPSFreeFormat, FillsAllSixFieldsAndIgnoresTheRest) {
    CardFields f = parse(" S1 SET1 X1 1.0 X2 2.0 EXTRA");
    EXPECT_STREQ(f.key, "S1");
    EXPECT_STREQ(f.name1, "SET1");
    EXPECT_STREQ(f.name2, "X1");
    EXPECT_STREQ(f.number1, "1.0");
    EXPECT_STREQ(f.name3, "X2");
    EXPECT_STREQ(f.number2, "2.0");
}

TEST(XMPSFreeFormat, ShortLinesLeaveFieldsEmpty) {
    CardFields f = parse(" FR");
    EXPECT_STREQ(f.key, "FR");
    EXPECT_STREQ(f.name1, "");
    EXPECT_STREQ(f.name2, "");
    f = parse("");
    EXPECT_STREQ(f.key, "");
}

TEST(XMPSFreeFormat, ReadsFreeMpsFromOtherTools) {
    // A row name in column 4.
    CardFields f = parse(" N cost");
    EXPECT_STREQ(f.key, "N");
    EXPECT_STREQ(f.name1, "cost");
    // A column name that runs across column 5, in a section without keys.
    f = parse(" x[Seattle,New-York] cost 0.225 supply[Seattle] 1", false);
    EXPECT_STREQ(f.key, "");
    EXPECT_STREQ(f.name1, "x[Seattle,New-York]");
    EXPECT_STREQ(f.name2, "cost");
    EXPECT_STREQ(f.number1, "0.225");
    EXPECT_STREQ(f.name3, "supply[Seattle]");
    EXPECT_STREQ(f.number2, "1");
    f = parse(" RHS1 demand[Topeka] 275", false);
    EXPECT_STREQ(f.name1, "RHS1");
    EXPECT_STREQ(f.name2, "demand[Topeka]");
    EXPECT_STREQ(f.number1, "275");
    // A short column name ends before column 5 but is still a name.
    f = parse(" x1 cost 0.5", false);
    EXPECT_STREQ(f.key, "");
    EXPECT_STREQ(f.name1, "x1");
    EXPECT_STREQ(f.name2, "cost");
    EXPECT_STREQ(f.number1, "0.5");
}

TEST(XMPSFreeFormat, SectionsWithoutKeysStillNeedColumnFiveForTheFirstName) {
    // Blank first columns: the first name must start in column 5.
    CardFields f = parse("      SRC  TGT", false);
    EXPECT_STREQ(f.name1, "");
    EXPECT_STREQ(f.name2, "SRC");
    EXPECT_STREQ(f.number1, "TGT");
    f = parse("    SRC  TGT", false);
    EXPECT_STREQ(f.name1, "SRC");
    EXPECT_STREQ(f.name2, "TGT");
}

TEST(XMPSFreeFormat, CutsOverlongTokens) {
    std::string line = "    " + std::string(300, 'A') + " B";
    CardFields f = parse(line.c_str());
    EXPECT_EQ(std::strlen(f.name1), 128u);
    EXPECT_STREQ(f.name2, "B");
}
