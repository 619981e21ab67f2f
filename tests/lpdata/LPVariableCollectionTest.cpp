#include "lpdata/LPVariableCollection.h"

#include <gtest/gtest.h>

#include <sstream>

#include "lpdata/LPVariableList.h"

// Membership (distinct, ordered, removable) is the member list the sets use,
// checked with the sets; the default name with the collection record.
TEST(LPVariableCollection, DisplayByDirection) {
    LPVariableList vars;
    LPVariableCollection col;
    col.SetName("FEEDS");
    std::ostringstream empty;
    col.Display(empty);
    EXPECT_EQ(empty.str(), "Collection Name = FEEDS Size = 0 Direction: UnSpecified\n  -- Empty -- \n");
    col.AddVariableObject(vars.InsertVariable("X1"));
    col.AddVariableObject(vars.InsertVariable("X2"));
    const struct {
        int16_t direction;
        const char* word;
    } cases[] = {{1, " Input\n"}, {-1, " Output\n"}, {0, " UnSpecified\n"}, {2, " UnSpecified\n"}};
    for (const auto& c : cases) {
        col.SetDirection(c.direction);
        std::ostringstream os;
        col.Display(os);
        EXPECT_EQ(os.str(), std::string("Collection Name = FEEDS Size = 2 Direction:") + c.word +
                                "  X1\n  X2\n");
    }
}

TEST(LPVariableCollection, CompareByDirectionAndMemberNames) {
    LPVariableList m1, m2;
    LPVariableCollection p1, p2;
    p1.SetName("IN");
    p2.SetName("IN");
    p1.SetDirection(1);
    p2.SetDirection(-1);
    p1.AddVariableObject(m1.InsertVariable("A"));
    p1.AddVariableObject(m1.InsertVariable("B"));
    p2.AddVariableObject(m2.InsertVariable("B"));
    p2.AddVariableObject(m2.InsertVariable("C"));
    std::ostringstream os;
    EXPECT_EQ(p1.Compare(&p2, os), -1);
    EXPECT_EQ(os.str(),
              "Problem named variable collection IN directions do not match: p1 is 1, p2 is -1\n"
              "Problem named variable collection IN A is in named var col in p1, but not in p2\n"
              "Problem named variable collection IN C is in named var col in p2, but not in p1\n");
    p2.SetDirection(1);
    p2.RemoveVariable(m2.VarNameLookup("C"));
    p2.AddVariableObject(m2.InsertVariable("A"));
    std::ostringstream clean;
    EXPECT_EQ(p1.Compare(&p2, clean), 0);
    EXPECT_EQ(clean.str(), "");
}

TEST(LPVariableCollection, CopyMapsMembersByIndex) {
    LPVariableList src, dst;
    for (const char* n : {"A", "B", "C"}) src.InsertVariable(n);
    for (const char* n : {"a", "b"}) dst.InsertVariable(n);
    ILPVariable* map[] = {dst.VarNameLookup("a"), dst.VarNameLookup("b"), nullptr};
    LPVariableCollection from, to;
    from.SetName("G");
    from.SetDirection(-1);
    from.SetType(7);
    from.AddVariableObject(src.VarNameLookup("B"));
    from.AddVariableObject(src.VarNameLookup("C"));  // index 3: outside the map
    from.AddVariableObject(src.VarNameLookup("A"));
    to.AddVariableObject(src.VarNameLookup("C"));  // replaced by the copy
    to.CopyCollection(&from, map);
    EXPECT_STREQ(to.Name(), "G");
    EXPECT_EQ(to.GetDirection(), -1);
    EXPECT_EQ(to.GetType(), 7);
    ASSERT_EQ(to.CollectionSize(), 2);
    EXPECT_EQ(to.FrstVariableObject(), dst.VarNameLookup("b"));
    EXPECT_EQ(to.NextVariableObject(), dst.VarNameLookup("a"));
    LPVariableCollection shared;
    shared.CopyCollection(&from, nullptr);
    EXPECT_EQ(shared.CollectionSize(), 3);
    EXPECT_EQ(shared.FrstVariableObject(), src.VarNameLookup("B"));
}
