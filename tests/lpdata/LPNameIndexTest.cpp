#include "lpdata/LPNameIndex.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "lpdata/ZEMException.h"

// Later entities of a name wait behind the first and take over, in order,
// when it goes, by single removal or in a batch; short, eight-byte, longer
// and empty names stay apart.
TEST(LPNameIndex, NextEntityOfANameTakesOverWhenTheFirstGoes) {
    int items[6];
    const char* names[6] = {"ABCDEFGH", "ABCDEFGHI", "ABCDEFGH", "", "ABCDEFGH", "ABCDEFGHI"};
    LPNameIndex index;
    index.Insert(0, names[0], &items[0]);
    std::vector<LPNameIndex::Named> rest;
    for (int i = 1; i < 6; ++i) rest.push_back({names[i], &items[i]});
    index.InsertRange(1, rest);
    size_t pos = LPNameIndex::npos;
    EXPECT_EQ(index.FindItem("ABCDEFGHI", &pos), &items[1]);
    EXPECT_EQ(pos, 1u);
    EXPECT_EQ(index.FindItem("", &pos), &items[3]);
    EXPECT_EQ(index.FindItem("ABCDEFG"), nullptr);
    index.Erase(0);  // ABCDEFGH: the one at 2, now 1
    EXPECT_EQ(index.FindItem("ABCDEFGH", &pos), &items[2]);
    EXPECT_EQ(pos, 1u);
    index.EraseBatch({1, 1, 0, 0, 0});  // both first ones go; the rest move down by two
    EXPECT_EQ(index.FindItem("ABCDEFGH", &pos), &items[4]);
    EXPECT_EQ(pos, 1u);
    EXPECT_EQ(index.FindItem("ABCDEFGHI", &pos), &items[5]);
    EXPECT_EQ(pos, 2u);
}

// Removed long names are reclaimed from the arena; the survivors stay found.
TEST(LPNameIndex, ArenaCompactionKeepsTheSurvivorsFound) {
    const auto name = [](size_t i) { return "a_rather_long_name_" + std::to_string(i); };
    std::vector<int> items(3000);
    LPNameIndex index;
    for (size_t i = 0; i < items.size(); ++i) index.Insert(i, name(i).c_str(), &items[i]);
    bool compacted = false;
    for (size_t i = 0; i < 2500; ++i) {
        index.Erase(0);
        if (index.Wasteful()) {
            index.Rebuild();
            compacted = !index.Wasteful();
        }
    }
    EXPECT_TRUE(compacted);
    for (size_t i = 0; i < items.size(); ++i) {
        size_t pos = LPNameIndex::npos;
        EXPECT_EQ(index.FindItem(name(i).c_str(), &pos), i < 2500 ? nullptr : &items[i]) << i;
        EXPECT_EQ(pos, i < 2500 ? LPNameIndex::npos : i - 2500);
    }
}

// Positions take 31 bits of a slot: one more is refused, not wrapped.
TEST(LPNameIndex, RefusesMorePositionsThanASlotHolds) {
    EXPECT_NO_THROW(LPNameIndex::CheckRoom(0x7fffffffu));
    EXPECT_THROW(LPNameIndex::CheckRoom(0x80000000u), ZEM_Exception);
}
