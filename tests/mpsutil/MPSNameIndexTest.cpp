#include "mpsutil/MPSNameIndex.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

struct Entity {
    std::string name;
};

}  // namespace

TEST(MPSNameIndex, FindsEveryNameOfEveryLengthThroughGrowth) {
    // Names around the 8-byte boundary, with high-bit bytes, and many of
    // them so the table grows several times.
    std::vector<std::string> names = {"A", "AB", "ABCDEFG", "ABCDEFGH", "ABCDEFGHI",
                                      "\xff\xfe\x80", "\xff\xff\xff\xff\xff\xff\xff\xff",
                                      std::string(300, 'L'), std::string(299, 'L')};
    for (int i = 0; i < 20000; ++i) names.push_back("N" + std::to_string(i * 7919));
    for (int i = 0; i < 3000; ++i) names.push_back("LONGNAME_" + std::to_string(i));
    std::vector<Entity> entities(names.size());
    MPSNameIndex<Entity> index;
    for (size_t i = 0; i < names.size(); ++i) {
        entities[i].name = names[i];
        ASSERT_EQ(index.Find(names[i].c_str()), nullptr) << names[i];
        index.Insert(names[i].c_str(), &entities[i]);
    }
    EXPECT_EQ(index.Size(), names.size());
    for (size_t i = 0; i < names.size(); ++i) {
        ASSERT_EQ(index.Find(names[i].c_str()), &entities[i]) << names[i];
    }
    // Prefixes, extensions and the empty name are not found.
    for (const char* absent : {"", "ABC", "ABCDEFGHIJ", "N1", "LONGNAME_", "LONGNAME_30000"}) {
        EXPECT_EQ(index.Find(absent), nullptr) << absent;
    }
    EXPECT_EQ(index.Find(std::string(301, 'L').c_str()), nullptr);

    index.Clear();
    EXPECT_EQ(index.Size(), 0u);
    EXPECT_EQ(index.Find("A"), nullptr);
    index.Prefetch("A");
    index.Insert("A", &entities[0]);
    EXPECT_EQ(index.Find("A"), &entities[0]);
}
