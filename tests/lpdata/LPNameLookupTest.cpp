// Name lookups of the lists: names that share their first eight bytes,
// differ only in length or run past eight characters must each find their
// own entity (the random edits of the variable list use such names too).
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "lpdata/LPEquationList.h"

namespace {

TEST(LPNameLookup, NamesSharingTheirFirstBytesAreToldApart) {
    LPEquationList list;
    const std::vector<std::string> names = {"ABCDEFG",   "ABCDEFGH",  "ABCDEFGHI", "ABCDEFGHJ",
                                            "ABCDEFGHIJKLMNOPQ", "ABCDEFGHIJKLMNOPR", "A", ""};
    for (const std::string& n : names) list.InsertEquation(n.c_str());
    for (const std::string& n : names) {
        ILPEquation* e = list.EqnNameLookup(n.c_str());
        ASSERT_NE(e, nullptr) << n;
        EXPECT_EQ(std::string(e->GetName()), n);
    }
    for (const char* absent : {"ABCDEF", "ABCDEFGHK", "ABCDEFGHIJ", "ABCDEFGHIJKLMNOP", "ABCDEFGHIJKLMNOPQR", "B"})
        EXPECT_EQ(list.EqnNameLookup(absent), nullptr) << absent;
}

}  // namespace
