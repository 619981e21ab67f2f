// Nonzeros made by a matrix live in its pooled storage: they must keep their
// contents while others come and go, and stay usable (and destroyable) after
// the matrix that made them is gone.
#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <random>
#include <vector>

#include "lpdata/LPNonZero.h"
#include "lpdata/LPNonZeroList.h"
#include "lpdata/LPNonZeroPool.h"
#include "LPTestRig.h"

namespace {

TEST(LPNonZeroPool, LiveEntriesKeepTheirContentsWhileOthersAreRecycled) {
    lptest::Model m;
    ILPVariable* v = m.vars.InsertVariable("X");
    ILPEquation* e = m.eqns.InsertEquation("R");
    std::mt19937 rng(7);
    std::vector<std::pair<ILPNonZero*, double>> live;
    for (int round = 0; round < 6; ++round) {
        for (int i = 0; i < 3000; ++i) {
            ILPNonZero* nz = nullptr;
            m.matrix.CreateNewNonZeroObject(&nz);
            ASSERT_NE(nz, nullptr);
            const double c = round * 10000.0 + i;
            nz->SetEquationPtr(e);
            nz->SetVariablePtr(v);
            nz->SetCoefficient(c);
            live.emplace_back(nz, c);
        }
        // Destroy a random half; their storage is handed out again next round.
        std::shuffle(live.begin(), live.end(), rng);
        for (size_t k = live.size() / 2; k < live.size(); ++k) live[k].first->Destroy();
        live.resize(live.size() / 2);
        for (const auto& [nz, c] : live) {
            ASSERT_EQ(nz->GetCoefficient(), c);
            ASSERT_EQ(nz->GetEquationPtr(), e);
            ASSERT_EQ(nz->GetVariablePtr(), v);
        }
    }
    for (const auto& entry : live) entry.first->Destroy();
}

TEST(LPNonZeroPool, EntriesOutliveTheMatrixThatMadeThem) {
    lptest::Model keeper;
    ILPVariable* v = keeper.vars.InsertVariable("X");
    ILPEquation* e = keeper.eqns.InsertEquation("R");
    ILPNonZero* loose = nullptr;
    ILPNonZero* moved = nullptr;
    std::unique_ptr<LPNonZero> copy;
    {
        lptest::Model maker;
        maker.matrix.CreateNewNonZeroObject(&loose);
        maker.matrix.CreateNewNonZeroObject(&moved);
        loose->SetCoefficient(2.5);
        moved->SetEquationPtr(e);
        moved->SetVariablePtr(v);
        moved->SetCoefficient(4.0);
        keeper.matrix.AddNonZeroObject(moved);
        // A copy is an ordinary heap object, not a slot of the pool.
        copy.reset(new LPNonZero(*static_cast<LPNonZero*>(loose)));
    }
    EXPECT_EQ(loose->GetCoefficient(), 2.5);
    EXPECT_EQ(keeper.matrix.ExistIncidence(1, 1), moved);
    EXPECT_EQ(moved->GetCoefficient(), 4.0);
    loose->Destroy();
    EXPECT_EQ(copy->GetCoefficient(), 2.5);
    // `moved` goes with the keeper's matrix; `copy` with its unique_ptr.
}

// The matrix's list computes its entries from the pool's slot numbers while
// entries come in the order the pool made them (past the doubling chunks:
// 511 pages of 73 slots), and holds them once they do not.
TEST(LPNonZeroList, EntriesAreTheNonzerosAppendedInEveryLayout) {
    LPNonZeroPool* pool = LPNonZeroPool::Create();
    std::vector<ILPNonZero*> made;
    {
        LPNonZeroList list(pool);
        for (int i = 0; i < 60000; ++i) {
            made.push_back(pool->Make());
            if (i % 1000 == 7) {  // a duplicate: destroyed before it is appended
                made.back()->Destroy();
                made.back() = pool->Make();
            }
            list.push_back(made.back());
        }
        ASSERT_EQ(list.size(), made.size());
        EXPECT_FALSE(list.Stored());
        for (size_t i = 0; i < made.size(); ++i) ASSERT_EQ(list[i], made[i]) << i;
        EXPECT_EQ(list.Find(made[54321]), 54321u);
        // Made before the last one but appended after it.
        ILPNonZero* early = pool->Make();
        ILPNonZero* late = pool->Make();
        list.push_back(late);
        EXPECT_TRUE(list.Stored());
        list.push_back(early);
        made.push_back(late);
        made.push_back(early);
        std::vector<ILPNonZero*> removed = {made[3], made[11], early};
        list.erase(3);
        list.RemoveIf([&](const ILPNonZero* nz) { return nz == removed[1] || nz == early; });
        made.erase(made.begin() + 11);
        made.erase(made.begin() + 3);
        made.pop_back();
        ASSERT_EQ(list.size(), made.size());
        EXPECT_TRUE(std::equal(list.begin(), list.end(), made.begin()));
        EXPECT_EQ(list.Find(early), LPNonZeroList::npos);
        for (ILPNonZero* nz : removed) nz->Destroy();
    }
    for (ILPNonZero* nz : made) nz->Destroy();
    pool->Drop();
}

#if defined(__SANITIZE_ADDRESS__)
// The pool poisons free slots, so AddressSanitizer still reports a destroyed
// nonzero being touched, as it would for a heap object.
TEST(LPNonZeroPoolDeathTest, TouchingADestroyedEntryIsReported) {
    lptest::Model m;
    ILPNonZero* nz = nullptr;
    m.matrix.CreateNewNonZeroObject(&nz);
    nz->Destroy();
    EXPECT_DEATH(nz->GetCoefficient(), "use-after-poison");
}
#endif

}  // namespace
