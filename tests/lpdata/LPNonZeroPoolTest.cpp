// Nonzeros made by a matrix live in its pooled storage: they must keep their
// contents while others come and go, and stay usable (and destroyable) after
// the matrix that made them is gone.
#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <random>
#include <vector>

#include "lpdata/LPNonZero.h"
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
