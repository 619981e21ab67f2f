#include "lpdata/LPNameIndex.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "lpdata/ZEMException.h"

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
