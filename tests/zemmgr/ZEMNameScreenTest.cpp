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

TEST(ZEMNameScreen, SafeNamesLowerCaseSymbolsAndLeadingDigits) {
    // Lower-case letters and symbols are recorded in a suffix; a leading
    // digit becomes a letter without a record (only position 0 is moved).
    const std::pair<const char*, const char*> named[] = {
        {"a-b", "a1b_a01T1b2"}, {"ABC_12", "ABC_12"}, {"", ""}, {"Ab", "Ab_b1"},
        {"0X", "AX"},           {"9", "J"},           {"19", "B9"}};
    for (const auto& c : named) EXPECT_EQ(screen(c.first), c.second) << c.first;

    // Every character class maps to a digit and a letter.
    const struct {
        unsigned char code;
        char digit, letter;
    } codes[] = {{1, '0', 'B'},   {25, '0', 'Z'},  {32, '1', 'G'},  {47, '1', 'V'},
                 {58, '2', 'A'},  {64, '2', 'G'},  {91, '3', 'A'},  {96, '3', 'F'},
                 {123, '4', 'A'}, {148, '4', 'Z'}, {149, '5', 'A'}, {175, '6', 'A'},
                 {201, '7', 'A'}, {226, '7', 'Z'}, {227, '8', 'A'}, {252, '8', 'Z'},
                 {253, '9', 'A'}, {255, '9', 'C'}};
    for (const auto& c : codes)
        EXPECT_EQ(screen(std::string("X") + static_cast<char>(c.code)),
                  std::string("X") + c.digit + "_" + c.digit + c.letter + "1")
            << int(c.code);
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
