#include "zemmgr/ZEMOptionTable.h"

#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <vector>

#include "lpdata/ZEMException.h"

namespace {

std::string persisted(ZEMOptionTable& t) {
    std::stringstream ss;
    t.StreamWrite(&ss);
    return ss.str();
}

void expectReadError(const std::string& bytes) {
    std::istringstream in(bytes);
    ZEMOptionTable t;
    try {
        t.StreamRead(&in);
        FAIL() << "no exception for " << bytes.size() << " bytes";
    } catch (ZEM_Exception& e) {
        EXPECT_EQ(e.Name(), "ZEMDataMgr Error");
        EXPECT_EQ(e.Reason(), "Error during read of ZEM Option List from binary file");
        EXPECT_EQ(e.Routine(), "ZEMOptionTable::StreamRead");
        EXPECT_EQ(e.SourceFile(), "zemmgr");
    }
}

}  // namespace

TEST(ZEMOptionTable, ColumnsAreSetIndependentlyAndOrderedBytewise) {
    ZEMOptionTable t;
    std::vector<std::string> names{"stale"};
    t.OptionNames(names);
    EXPECT_TRUE(names.empty());
    t.SetOption("a", "1", nullptr);
    t.SetOption("a", "", "second");  // empty first value keeps "1"
    EXPECT_STREQ(t.GetOptionValue("a"), "1");
    EXPECT_STREQ(t.GetOptionSecondValue("a"), "second");
    t.SetOption("a", "2", "");
    EXPECT_STREQ(t.GetOptionValue("a"), "2");
    EXPECT_STREQ(t.GetOptionSecondValue("a"), "second");
    t.SetOption("b", nullptr, "only2");
    EXPECT_EQ(t.GetOptionValue("b"), nullptr);
    EXPECT_STREQ(t.GetOptionSecondValue("b"), "only2");
    EXPECT_EQ(t.GetOptionValue("missing"), nullptr);
    EXPECT_EQ(t.GetOptionValue(nullptr), nullptr);
    t.SetOption("ab", "3", nullptr);
    t.SetOption("B", "4", nullptr);
    t.SetOption("\xC3\xA9", "5", nullptr);  // high bytes sort after ASCII
    std::string order;
    for (const auto& e : t.FirstColumn()) order += e.second;
    EXPECT_EQ(order, "4235");
    // Names of both columns merged in byte order.
    t.OptionNames(names);
    EXPECT_EQ(names, (std::vector<std::string>{"B", "a", "ab", "b", "\xC3\xA9"}));
    // An empty or null name is ignored.
    ZEMOptionTable u;
    u.SetOption("", "v", "w");
    u.SetOption(nullptr, "v", "w");
    EXPECT_TRUE(u.FirstColumn().empty());
    EXPECT_TRUE(u.SecondColumn().empty());
}

TEST(ZEMOptionTable, DisplayEmptyAndMixedColumns) {
    ZEMOptionTable t;
    std::ostringstream empty;
    t.Display(empty);
    EXPECT_EQ(empty.str(),
              "\nO P T I O N   T A B L E   D I S P L A Y\n"
              "- - - - - -   - - - - -   - - - - - - -\n\n -- EMPTY --\n\n");

    t.SetOption("B", "2", "x");
    t.SetOption("A", "1", nullptr);
    t.SetOption("C", nullptr, "3");
    std::ostringstream os;
    t.Display(os);
    EXPECT_EQ(os.str(),
              "\nO P T I O N   T A B L E   D I S P L A Y\n"
              "- - - - - -   - - - - -   - - - - - - -\n\n"
              "  A : 1\n  B : 2 : x\n  C : -------- : 3\n");
}

// Reading the table back (exactly its own bytes, both columns) is checked
// byte for byte by the model file round trip in tests/xmpsutil.
TEST(ZEMOptionTable, PersistedLayout) {
    ZEMOptionTable t;
    EXPECT_EQ(persisted(t), std::string(8, '\0'));  // empty: two zero lengths
    t.SetOption("K", "vv", nullptr);
    t.SetOption("J", "u", "w");
    const std::string bytes = persisted(t);
    // First column: J\0u\0K\0vv\0 = 9 bytes; second: J\0w\0 = 4 bytes.
    const std::string expected = std::string("\x09\0\0\0", 4) + std::string("J\0u\0K\0vv\0", 9) +
                                 std::string("\x04\0\0\0", 4) + std::string("J\0w\0", 4);
    EXPECT_EQ(bytes, expected);
}

TEST(ZEMOptionTable, TruncatedOrDamagedInputIsAReadError) {
    ZEMOptionTable t;
    t.SetOption("NAME", "VALUE", "SECOND");
    const std::string bytes = persisted(t);
    for (size_t cut = 0; cut < bytes.size(); ++cut) expectReadError(bytes.substr(0, cut));
    // A body whose last text has no terminator, and a name without value.
    expectReadError(std::string("\x03\0\0\0", 4) + "A\0B" + std::string(4, '\0'));
    expectReadError(std::string("\x02\0\0\0", 4) + std::string("A\0", 2) + std::string(4, '\0'));
    // A length far beyond the stream.
    expectReadError(std::string("\xff\xff\xff\xff", 4) + "abc");
}
