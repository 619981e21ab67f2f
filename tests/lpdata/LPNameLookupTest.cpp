// Name lookups of the lists: names that share their first eight bytes,
// differ only in length or run past eight characters must each find their
// own entity, through additions, single removals and batch removals.
#include <gtest/gtest.h>

#include <random>
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

TEST(LPNameLookup, RandomEditsOnLongAndPrefixSharingNames) {
    std::mt19937 rng(2024);
    // Lengths 6 to 20 over a shared eight-byte stem, so that many names agree
    // in their first eight bytes and in their hash's neighbourhood.
    auto name = [&] {
        const size_t len = 6 + rng() % 15;
        std::string n = "ROW_STEM" + std::to_string(rng() % 40);
        n.resize(len, 'z');
        return n;
    };
    LPEquationList list;
    std::vector<std::pair<ILPEquation*, std::string>> ref;
    for (int step = 0; step < 3000; ++step) {
        const unsigned op = rng() % 10;
        if (op < 6 || ref.empty()) {
            const std::string n = name();
            ILPEquation* e = nullptr;
            list.CreateNewEquationObject(&e);
            e->SetName(n.c_str());
            list.AddEquationObject(e);
            ref.emplace_back(e, n);
        } else if (op < 8) {
            const size_t pos = rng() % ref.size();
            list.RemoveEquation(ref[pos].first);
            ref.erase(ref.begin() + static_cast<std::ptrdiff_t>(pos));
        } else {
            for (size_t k = rng() % 6; k > 0 && !ref.empty(); --k) {
                const size_t pos = rng() % ref.size();
                list.TrashEquation(ref[pos].first);
                ref.erase(ref.begin() + static_cast<std::ptrdiff_t>(pos));
            }
            list.EmptyTrash();
        }
        if (step % 60 != 0) continue;
        // Every name, present or not, finds the first entity added under it.
        for (int k = 0; k < 200; ++k) {
            const std::string n = name();
            ILPEquation* first = nullptr;
            for (const auto& entry : ref)
                if (entry.second == n) {
                    first = entry.first;
                    break;
                }
            ASSERT_EQ(list.EqnNameLookup(n.c_str()), first) << n << " at step " << step;
        }
    }
}

}  // namespace
