#include "lpdata/LPVariableList.h"

#include <gtest/gtest.h>

#include <random>
#include <sstream>
#include <string>
#include <vector>

#include "lpdata/LPVariable.h"


TEST(LPVariableList, LookupIsExactAndAddingAMemberAgainChangesNothing) {
    LPVariableList list;
    ILPVariable* a = list.InsertVariable("X1");
    EXPECT_EQ(list.VarNameLookup("x1"), nullptr);
    EXPECT_EQ(list.VarNameLookup("X1 "), nullptr);
    EXPECT_EQ(list.VarNameLookup(nullptr), nullptr);
    EXPECT_EQ(list.AddVariableObject(a), 1);
    EXPECT_EQ(list.NumberOfPersistedVariables(), 1);
}

// Retrieval by position walks from the first entry: 0 takes no step, past
// the end (or an empty list) gives null; the cursors end and restart.
TEST(LPVariableList, RetrieveByIndexAndCursors) {
    LPVariableList list;
    ILPVariable* out = reinterpret_cast<ILPVariable*>(&list);
    list.RetrieveVariableObject(0, &out);
    EXPECT_EQ(out, nullptr);
    EXPECT_EQ(list.FrstVariableObject(), nullptr);
    EXPECT_EQ(list.NextVariableObject(), nullptr);
    ILPVariable* a = list.InsertVariable("A");
    ILPVariable* b = list.InsertVariable("B");
    EXPECT_EQ(list.NextVariableObject(), nullptr);  // walk ended before B existed
    const struct {
        int pos;
        ILPVariable* expected;
    } cases[] = {{0, a}, {1, a}, {2, b}, {3, nullptr}};
    for (const auto& c : cases) {
        list.RetrieveVariableObject(c.pos, &out);
        EXPECT_EQ(out, c.expected) << c.pos;
    }
    EXPECT_EQ(list.FrstVariableObject(), a);
    EXPECT_EQ(list.NextVariableObject(), b);
    EXPECT_EQ(list.NextVariableObject(), nullptr);
    EXPECT_EQ(list.NextVariableObject(), nullptr);
    EXPECT_EQ(list.FrstVariableObject(), a);
}

TEST(LPVariableList, RenamedVariableIsRemovedFromTheIndex) {
    LPVariableList list;
    ILPVariable* v = list.InsertVariable("OLD");
    v->SetName("NEW");
    EXPECT_EQ(list.VarNameLookup("OLD"), v);  // the index keeps the name it was added under
    list.RemoveVariable(v);
    EXPECT_EQ(list.VarNameLookup("OLD"), nullptr);  // no dangling entry
    EXPECT_EQ(list.VarNameLookup("NEW"), nullptr);
}

TEST(LPVariableList, ProcessCountsTypesAndComplementPairs) {
    LPVariableList list;
    ILPVariable* a = list.InsertVariable("A");
    ILPVariable* b = list.InsertVariable("B");
    ILPVariable* c = list.InsertVariable("C");
    list.InsertVariable("D")->SetVarType(ZEM_VAR_BINARY);
    b->SetVarType(ZEM_VAR_DISCRETE);
    c->SetVarType(9);
    a->SetComplementarityTarget(c);
    c->SetComplementarityTarget(a);
    EXPECT_EQ(list.VarTypeCount(ZEM_VAR_CONTINUOUS), 0);  // only counted when processed
    list.ProcessVariableCollection();
    std::vector<int> counts;
    for (int type : {int(ZEM_VAR_CONTINUOUS), int(ZEM_VAR_BINARY), int(ZEM_VAR_DISCRETE), int(ZEM_VAR_SEMICONTINUOUS), 9})
        counts.push_back(list.VarTypeCount(type));
    EXPECT_EQ(counts, (std::vector<int>{1, 1, 1, 0, 1}));
    EXPECT_EQ(list.NumberOfComplementPairs(), 2);
    EXPECT_EQ(list.FrstComplementarityVar(), a);
    EXPECT_EQ(list.NextComplementarityVar(), c);
    EXPECT_EQ(list.NextComplementarityVar(), nullptr);
    list.ProcessVariableCollection();  // processing twice does not double the counts
    EXPECT_EQ(list.VarTypeCount(ZEM_VAR_CONTINUOUS), 1);
    EXPECT_EQ(list.NumberOfComplementPairs(), 2);
}

TEST(LPVariableList, Displays) {
    LPVariableList list;
    ILPVariable* a = list.InsertVariable("A");
    ILPVariable* b = list.InsertVariable("B");
    b->SetVarType(ZEM_VAR_SEMICONTINUOUS);
    b->SetVarStatus(9);
    a->SetVarValue(2.5);
    a->SetPersistentValue(1.0);
    std::ostringstream os;
    list.Display(os);
    EXPECT_EQ(os.str(),
              "\nD I S P L A Y   O F   M A T R I X   V A R I A B L E S\n"
              "         1  Continuous\n"
              "         0  Binary\n"
              "         0  Discrete\n"
              "         1  Semi-continuous\n"
              "         0  Unknown\n"
              "\n"
              "Variable [1] : A\n Lower = 0, Value = 2.5, Upper = 1e+20\n"
              " Type = Continuous, Status = Basic\n Matrix Nonzeros = 0\n"
              " Number NonLinearities = 0\n\n"
              "Variable [2] : B\n Lower = 0, Value = 1, Upper = 1e+20\n"
              " Type = Semi-continuous, Status = Unknown\n Matrix Nonzeros = 0\n"
              " Number NonLinearities = 0\n\n");
    std::ostringstream ps;
    list.DisplayPersistedValues(ps);
    EXPECT_EQ(ps.str(),
              "\nP E R S I S T E D    P O I N T\n"
              "N A M E           V A L U E        P V A L U E      D E L T A\n"
              "-------------     ------------     ------------     ------------ \n"
              "A                  2.5000e+00      1.0000e+00      1.5000e+00\n"
              "B                  1.0000e+00      0.0000e+00      1.0000e+00\n");
}

// Random adds (duplicate names included), single removals and trash batches,
// checked against a plain list: a name finds the first variable in list order
// that was added under it, and indices stay consecutive.
TEST(LPVariableList, RandomEditsKeepTheNameIndexRight) {
    std::mt19937 rng(99);
    LPVariableList list;
    LPVariable stranger;
    std::vector<std::pair<ILPVariable*, std::string>> ref;
    // 150 names over a few shared stems, 6 to 20 characters long, so that
    // many agree in their first eight bytes or differ only in length.
    auto nameOf = [](unsigned id) {
        std::string n = "ROW_STEM" + std::to_string(id % 40);
        n.resize(6 + id % 15, 'z');
        return n;
    };
    auto name = [&] { return nameOf(static_cast<unsigned>(rng() % 150)); };
    for (int step = 0; step < 4000; ++step) {
        const unsigned op = rng() % 10;
        if (op < 5 || ref.empty()) {
            const std::string n = name();
            if (op == 0) {
                ILPVariable* v = list.InsertVariable(n.c_str());
                bool known = false;
                for (const auto& e : ref) known = known || e.second == n;
                if (!known) ref.emplace_back(v, n);
            } else {
                ILPVariable* v = nullptr;
                list.CreateNewVariableObject(&v);
                v->SetName(n.c_str());
                list.AddVariableObject(v);
                ref.emplace_back(v, n);
            }
        } else if (op < 8) {
            const size_t pos = rng() % ref.size();
            list.RemoveVariable(ref[pos].first);
            list.RemoveVariable(&stranger);  // not a member: ignored
            ref.erase(ref.begin() + static_cast<std::ptrdiff_t>(pos));
        } else {
            // Strangers and variables trashed twice are removed once; a batch
            // that removes something renumbers once.
            const uint64_t epoch = list.RenumberEpoch();
            list.TrashVariable(&stranger);
            bool trashed = false;
            for (size_t k = rng() % 8; k > 0 && !ref.empty(); --k) {
                const size_t pos = rng() % ref.size();
                list.TrashVariable(ref[pos].first);
                list.TrashVariable(ref[pos].first);
                trashed = true;
                ref.erase(ref.begin() + static_cast<std::ptrdiff_t>(pos));
            }
            list.EmptyTrash();
            EXPECT_EQ(list.RenumberEpoch(), epoch + (trashed ? 1 : 0));
        }
        if (step % 50 != 0) continue;
        ASSERT_EQ(list.NumberOfVariables(), static_cast<int>(ref.size()));
        for (size_t i = 0; i < ref.size(); ++i) ASSERT_EQ(ref[i].first->GetIndex(), static_cast<int>(i + 1));
        for (int k = 0; k < 150; ++k) {
            const std::string n = nameOf(static_cast<unsigned>(k));
            ILPVariable* first = nullptr;
            for (const auto& e : ref)
                if (e.second == n) {
                    first = e.first;
                    break;
                }
            ASSERT_EQ(list.VarNameLookup(n.c_str()), first) << n << " at step " << step;
        }
    }
}
