// Cases through the flat functions: a collection built from handles applies
// and undoes a case by name and by number, reports unknown cases, and keeps
// its cases through the case file.
#include <gtest/gtest.h>

#include <cstdio>
#include <fstream>
#include <iterator>
#include <string>
#include <tuple>

#include "api/zemxmps.h"

TEST(FlatCases, CollectionAppliesUndoesAndKeepsItsCasesInTheFile) {
    void *mgr = nullptr, *b = nullptr, *x = nullptr, *cap = nullptr, *nz = nullptr;
    ASSERT_EQ(CreateZEMObject(&mgr), 0);
    GetZEMBuilder(mgr, &b);
    MakeAddReturnVariableNew(b, "X", 0.0, 10.0, 1.0, 1, &x);
    MakeAddReturnEquationNew(b, "CAP", 3, 8.0, 0.0, &cap);
    MakeAddReturnLinearNonZeroNew(b, cap, x, 1.0, &nz);
    auto now = [&] {  // CAP's right-hand side, X's upper bound, CAP's X entry
        double rhs = 0, upper = 0, coef = 0;
        EqnRHSGet(cap, &rhs);
        VarUpperBndGet(x, &upper);
        GetCoefficient(nz, &coef);
        return std::make_tuple(rhs, upper, coef);
    };
    const auto base = std::make_tuple(8.0, 10.0, 1.0), edited = std::make_tuple(12.0, 4.0, 2.5);

    void *cases = nullptr, *c = nullptr, *spare = nullptr;
    ASSERT_EQ(CreateZEMCaseCollection(mgr, &cases), 0);
    ASSERT_EQ(CreateZEMCaseMgr(mgr, 7, "HIGHCAP", "capacity up", &c), 0);
    AddEqnRHSEdit(c, cap, 12.0);
    AddVarBoundEdit(c, x, 1, 4.0);
    AddMatrixCoeffEdit(c, cap, x, 2.5);
    AddZEMCaseToCollection(cases, c);
    ASSERT_EQ(CreateZEMCaseMgr(mgr, 8, "SPARE", "", &spare), 0);
    DestroyZEMCaseMgr(spare);  // never added: the caller's to destroy

    EXPECT_EQ(ApplyCase(cases, "HIGHCAP"), 0);
    EXPECT_EQ(now(), edited);
    EXPECT_EQ(UnApplyCase(cases, "HIGHCAP"), 0);
    EXPECT_EQ(now(), base);
    EXPECT_EQ(ApplyCaseNumber(cases, 7), 0);
    EXPECT_EQ(now(), edited);
    EXPECT_EQ(UnApplyCaseNumber(cases, 7), 0);
    EXPECT_EQ(now(), base);
    EXPECT_EQ(ApplyCaseNumber(cases, 8), -1);
    EXPECT_EQ(UnApplyCaseNumber(cases, 8), -1);
    EXPECT_EQ(ApplyCase(cases, "SPARE"), 1);
    EXPECT_EQ(now(), base);

    char tmpl[] = "/tmp/zem_flat_cases_XXXXXX";
    const std::string dir = mkdtemp(tmpl);
    const std::string file = dir + "/cases.xlm", listing = dir + "/cases.txt";
    EXPECT_EQ(PersistCasesToXLMFile(cases, file.c_str()), 0);
    EXPECT_EQ(DisplayCaseCollectionToFile(cases, listing.c_str()), 0);
    std::ifstream in(listing);
    const std::string text{std::istreambuf_iterator<char>(in), {}};
    EXPECT_NE(text.find("capacity up"), std::string::npos) << text;
    DestroyZEMCaseCollection(cases);

    void* restored = nullptr;
    CreateZEMCaseCollection(mgr, &restored);
    EXPECT_EQ(ApplyCaseNumber(restored, 7), -1);
    EXPECT_EQ(RestoreCasesFromXLMFile(restored, file.c_str()), 0);
    ReleaseZEMObject(mgr);  // the collection still holds the model
    EXPECT_EQ(ApplyCaseNumber(restored, 7), 0);
    EXPECT_EQ(now(), edited);
    DestroyZEMCaseCollection(restored);

    std::remove(file.c_str());
    std::remove(listing.c_str());
    std::remove(dir.c_str());
}
