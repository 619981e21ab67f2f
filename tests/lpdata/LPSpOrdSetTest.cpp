#include "lpdata/LPSpOrdSet.h"

#include <gtest/gtest.h>

#include <tuple>

#include <sstream>
#include <string>

#include "lpdata/LPVariableList.h"
#include "lpdata/ZEMException.h"

namespace {

class SetTest : public ::testing::Test {
protected:
    void SetUp() override {
        for (const char* n : {"A", "B", "C", "D"}) vars.InsertVariable(n);
    }
    ILPVariable* V(const char* name) { return vars.VarNameLookup(name); }
    LPSpOrdSet* MakeSet(LPSpOrdSetList& list, const char* name, int16_t type,
                        std::initializer_list<const char*> members) {
        ILPSpOrdSet* s = nullptr;
        list.CreateNewSpOrdSetObject(&s);
        s->SetName(name);
        s->SetType(type);
        for (const char* m : members) s->AddVariableObject(V(m));
        list.AddSpOrdSetObject(s);
        return static_cast<LPSpOrdSet*>(s);
    }
    LPVariableList vars;
};

}  // namespace

TEST_F(SetTest, MembersAreDistinctAndOrdered) {
    LPSpOrdSet set;
    EXPECT_EQ(set.GetType(), 1);
    EXPECT_EQ(set.AddVariableObject(V("C")), 1);
    EXPECT_EQ(set.AddVariableObject(V("C")), 1);
    EXPECT_EQ(set.AddVariableObjectPlain(V("A")), 2);
    EXPECT_EQ(set.AddVariableObjectPlain(V("A")), 2);
    EXPECT_EQ(set.FrstSetVar(), V("C"));
    EXPECT_EQ(set.NextSetVar(), V("A"));
    EXPECT_EQ(set.NextSetVar(), nullptr);
    EXPECT_TRUE(set.RemoveVariableIfInSet(V("C")));
    EXPECT_FALSE(set.RemoveVariableIfInSet(V("C")));
    EXPECT_EQ(set.GetSize(), 1);
}

TEST_F(SetTest, LargeSetStaysDistinct) {
    LPVariableList many;
    LPSpOrdSet set;
    for (int i = 0; i < 200; ++i) many.InsertVariable(("V" + std::to_string(i)).c_str());
    for (int round = 0; round < 2; ++round)  // every variable offered twice
        for (ILPVariable* v = many.FrstVariableObject(); v; v = many.NextVariableObject())
            set.AddVariableObject(v);
    EXPECT_EQ(set.GetSize(), 200);
    EXPECT_TRUE(set.RemoveVariableIfInSet(many.VarNameLookup("V100")));
    EXPECT_EQ(set.AddVariableObject(many.VarNameLookup("V100")), 200);
    EXPECT_EQ(set.AddVariableObject(many.VarNameLookup("V5")), 200);
}

TEST_F(SetTest, ListNumbersFindsCountsAndRemovesMembers) {
    LPSpOrdSetList list;
    MakeSet(list, "S1", 1, {"A", "B"});
    MakeSet(list, "S2", 2, {"B", "C", "D"});
    MakeSet(list, "S3", 1, {});
    EXPECT_EQ(list.NumberOfSpOrdSets(), 3);
    EXPECT_EQ(list.SOSNameLookup("S2")->GetIndex(), 2);
    EXPECT_EQ(list.SOSNameLookup("s2"), nullptr);
    ILPSpOrdSet* out = nullptr;
    list.RetrieveSpOrdSetObject(0, &out);
    EXPECT_STREQ(out->GetName(), "S1");
    list.RetrieveSpOrdSetObject(3, &out);
    EXPECT_STREQ(out->GetName(), "S3");
    list.RetrieveSpOrdSetObject(4, &out);
    EXPECT_EQ(out, nullptr);
    EXPECT_EQ(list.TotalSOSVars(), 5);
    list.ProcessSpOrdSetCollection();
    EXPECT_EQ(std::make_tuple(list.SOSTypeCount(1), list.SOSTypeCount(2), list.SOSTypeCount(7)),
              std::make_tuple(2, 1, 0));
    list.RemoveVariable(V("B"));
    EXPECT_EQ(list.TotalSOSVars(), 3);
    int walked = 0;
    for (ILPSpOrdSet* s = list.FrstSpOrdSetObject(); s; s = list.NextSpOrdSetObject()) ++walked;
    EXPECT_EQ(walked, 3);
}

TEST_F(SetTest, Displays) {
    LPSpOrdSetList list;
    MakeSet(list, "S1", 2, {"A", "D"});
    std::ostringstream os;
    list.Display(os);
    EXPECT_EQ(os.str(),
              "\nD I S P L A Y   O F   S P E C I A L   O R D E R E D   S E T S\n"
              "         0  Type 1\n"
              "         1  Type 2\n"
              "         0  Type 3\n"
              "\n"
              "Special Ordered Set [1] : S1\n"
              " SOSType = 2\n"
              " Variable List:\n"
              "  A\n"
              "  D\n");
}

TEST_F(SetTest, CompareReportsTypeSizeAndMembership) {
    LPVariableList other;
    for (const char* n : {"A", "B", "E"}) other.InsertVariable(n);
    LPSpOrdSet p1, p2, same;
    p1.SetName("SET");
    p1.AddVariableObject(V("A"));
    p1.AddVariableObject(V("C"));
    p1.AddVariableObject(V("D"));
    p2.SetName("SET");
    p2.SetType(2);
    p2.AddVariableObject(other.VarNameLookup("A"));
    p2.AddVariableObject(other.VarNameLookup("E"));
    std::ostringstream os;
    EXPECT_EQ(p1.Compare(&p2, os), -1);
    EXPECT_EQ(os.str(),
              "Problem SOS SET types do not match: p1 is 1, p2 is 2\n"
              "Problem SOS SET sizes do not match: p1 is 3, p2 is 2\n"
              "Problem SOS SET C is in SOS1, but not in SOS2\n"
              "Problem SOS SET D is in SOS1, but not in SOS2\n"
              "Problem SOS SET E is in SOS2, but not in SOS1\n");
    // Membership is by name, so equal sets of two models compare clean.
    same.SetName("SET");
    same.AddVariableObject(other.VarNameLookup("A"));
    LPSpOrdSet mine;
    mine.SetName("SET");
    mine.AddVariableObject(V("A"));
    std::ostringstream clean;
    EXPECT_EQ(mine.Compare(&same, clean), 0);
    EXPECT_EQ(clean.str(), "");
}
