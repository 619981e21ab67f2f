#include <gtest/gtest.h>

#include <string>

#include "lpdata/ZEMException.h"
#include "zemmgr/ZEMMgr.h"

namespace {

std::string screen(std::string s) {
    ZEMNameScreen(s);
    return s;
}

}  // namespace

TEST(ZEMNameScreen, KeepsSafeNamesAndRecordsLowerCaseAndSymbols) {
    EXPECT_EQ(screen("a-b"), "a1b_a01T1b2");
    EXPECT_EQ(screen("ABC_12"), "ABC_12");
    EXPECT_EQ(screen(""), "");
    EXPECT_EQ(screen("Ab"), "Ab_b1");
}

TEST(ZEMNameScreen, LeadingDigitBecomesALetterWithoutRecord) {
    EXPECT_EQ(screen("0X"), "AX");
    EXPECT_EQ(screen("9"), "J");
    EXPECT_EQ(screen("19"), "B9");  // only position 0 is moved
}

TEST(ZEMNameScreen, EveryCharacterClassMapsToALetter) {
    struct Case {
        unsigned char code;
        char digit;
        char letter;
    };
    const Case cases[] = {
        {1, '0', 'B'},      {25, '0', 'Z'},    {32, '1', 'G'},  {47, '1', 'V'},
        {58, '2', 'A'},     {64, '2', 'G'},    {91, '3', 'A'},  {96, '3', 'F'},
        {123, '4', 'A'},    {148, '4', 'Z'},   {149, '5', 'A'}, {175, '6', 'A'},
        {201, '7', 'A'},    {226, '7', 'Z'},   {227, '8', 'A'}, {252, '8', 'Z'},
        {253, '9', 'A'},    {255, '9', 'C'},
    };
    for (const Case& c : cases) {
        std::string name = "X";
        name += static_cast<char>(c.code);
        const std::string expected = std::string("X") + c.digit + "_" + c.digit + c.letter + "1";
        EXPECT_EQ(screen(name), expected) << int(c.code);
    }
}

TEST(ZEMNameScreen, OverlongSuffixIsRefusedAndNameKept) {
    // n lower-case letters make a suffix of 1 + 10 x 2 + (n - 10) x 3
    // characters: 126 for 45 letters, 129 for 46.
    const std::string name(46, 'q');
    std::string s = name;
    EXPECT_THROW(ZEMNameScreen(s), ZEM_Exception);
    EXPECT_EQ(s, name);
    EXPECT_EQ(screen(std::string(45, 'q')).size(), 45u + 126u);
}
