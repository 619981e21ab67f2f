// The flat functions' status rules where they differ from plain forwarding:
// results of 1 that leave out-parameters alone, names cut in walks but whole
// in getters, the always-1 packed lists, the file functions' special
// results, collections' 1/2/0, and the block functions without a host.
#include <gtest/gtest.h>

#include <cstdio>
#include <cctype>
#include <fstream>
#include <iterator>
#include <string>

#include "api/zemxmps.h"
#include "lpdata/ZEMException.h"

namespace {

class Flat : public ::testing::Test {
protected:
    void SetUp() override {
        ASSERT_EQ(CreateZEMObject(&mgr), 0);
        ASSERT_EQ(GetZEMBuilder(mgr, &builder), 0);
        GetVariableCollectionIntf(mgr, &vars);
        GetEquationCollectionIntf(mgr, &eqns);
        char tmpl[] = "/tmp/zem_flat_test_XXXXXX";
        dir = mkdtemp(tmpl);
    }
    void TearDown() override {
        ReleaseZEMObject(mgr);
        std::remove((dir + "/basisxmps.mps").c_str());
        std::remove((dir + "/report.txt").c_str());
        std::remove(dir.c_str());
    }
    void* Var(const char* name, double upper = 10.0) {
        void* v = nullptr;
        MakeAddReturnVariableNew(builder, name, 0.0, upper, 1.0, 1, &v);
        return v;
    }
    int32_t Count(void* m) {
        void* list = nullptr;
        int32_t n = -7;
        GetVariableCollectionIntf(m, &list);
        NumberOfVariables(list, &n);
        return n;
    }
    std::string Report() {
        std::ifstream in(dir + "/report.txt");
        return std::string(std::istreambuf_iterator<char>(in), {});
    }

    void *mgr = nullptr, *builder = nullptr, *vars = nullptr, *eqns = nullptr;
    std::string dir;
};

}  // namespace

TEST_F(Flat, EmptyListsReportNothingAndLeaveTheCallersStorage) {
    int32_t n = -7;
    EXPECT_EQ(NumberOfVariables(vars, &n), 1);
    EXPECT_EQ(NumberOfEquations(eqns, &n), 1);
    EXPECT_EQ(n, -7);
    char buf[128] = "stale";
    EXPECT_EQ(FrstVariableName(vars, buf), 1);
    EXPECT_STREQ(buf, "");
    void* untouched = &n;
    EXPECT_EQ(FrstEquationObject(eqns, &untouched), 1);
    EXPECT_EQ(untouched, &n);
    EXPECT_EQ(FindVariableObject(vars, "NONE", &untouched), 0);  // stores null
    EXPECT_EQ(untouched, nullptr);
}

TEST_F(Flat, WalksAndPackedListsCutLongNamesGettersDoNot) {
    const std::string longName(200, 'L');
    void* a = Var("A");
    Var(longName.c_str());
    Var("C");
    char whole[256];
    char walked[128];
    FrstVariableName(vars, walked);
    EXPECT_STREQ(walked, "A");
    EXPECT_EQ(NextVariableName(vars, walked), 0);
    EXPECT_EQ(std::string(walked), longName.substr(0, 127));
    void* second = nullptr;
    FindVariableObject(vars, longName.c_str(), &second);
    VarNameGet(second, whole);
    EXPECT_EQ(std::string(whole), longName);

    char packed[3 * 128];
    EXPECT_EQ(VariableNames(vars, packed), 1);  // 1 also on success
    EXPECT_STREQ(packed, "A");
    EXPECT_EQ(std::string(packed + 2), longName.substr(0, 127));
    EXPECT_STREQ(packed + 2 + 128, "C");
    void* all[3] = {};
    EXPECT_EQ(RetrieveAllVariableObjects(vars, all), 1);
    EXPECT_EQ(all[0], a);
    EXPECT_EQ(all[1], second);
}

TEST_F(Flat, ModelFilesKeepTheirSpecialResults) {
    Var("X");
    EXPECT_EQ(RestoreFromZEMFile(mgr, (dir + "/missing.zem").c_str()), 0);
    EXPECT_EQ(Count(mgr), 1);  // left as it was

    void* copy = nullptr;
    CreateZEMObject(&copy);
    EXPECT_EQ(CopyFromZEM(copy, mgr), 0);
    EXPECT_EQ(Count(copy), 1);

    const std::string basis = dir + "/basis";
    EXPECT_EQ(CompareZEMtoBasis(mgr, basis.c_str(), (dir + "/report.txt").c_str(), 1e-6, nullptr), -2);
    WriteXMPSFile(copy, (basis + "xmps.mps").c_str());
    int32_t differences = -1;
    EXPECT_EQ(CompareZEMtoBasis(mgr, basis.c_str(), (dir + "/report.txt").c_str(), 1e-6,
                                &differences), 0);
    EXPECT_EQ(differences, 0);
    void* x = nullptr;
    FindVariableObject(vars, "X", &x);
    VarUpperBndSet(x, 4.0);
    EXPECT_EQ(CompareZEMtoBasis(mgr, basis.c_str(), (dir + "/report.txt").c_str(), 1e-6,
                                &differences), 0);
    EXPECT_EQ(differences, 1);
    EXPECT_NE(Report().find("Problem Variable X upper bounds do not match: p1 is 4, p2 is 10"),
              std::string::npos);
    ReleaseZEMObject(copy);
}

TEST_F(Flat, DuplicateNameReportGoesToTheJoinedPathWhichMustFit) {
    char screened[256];
    NameScreen(mgr, "ab", screened);
    for (char* c = screened; *c; ++c) *c = static_cast<char>(std::toupper(*c));
    Var("ab");
    MakeAddEquation(builder, screened);
    EXPECT_EQ(CheckDuplicateNames(mgr, dir.c_str(), "report.txt"), 1);
    EXPECT_NE(Report().find("Variable ab"), std::string::npos);
    EXPECT_THROW(CheckDuplicateNames(mgr, std::string(1100, 'd').c_str(), "r.txt"), ZEM_Exception);
}

TEST_F(Flat, CollectionsAnswerOneTwoOrZero) {
    Var("X");
    void* col = nullptr;
    void* untouched = &col;
    EXPECT_EQ(FindNamedVarCollection(mgr, "G", &untouched), 1);
    EXPECT_EQ(untouched, &col);
    EXPECT_EQ(AddVarByNameToNamedVarCollection(mgr, "G", "X"), 1);
    MakeAddReturnNamedVarCollection(mgr, "G", &col);
    EXPECT_EQ(AddVarByNameToNamedVarCollection(mgr, "G", "NOPE"), 2);
    EXPECT_EQ(AddVarByNameToNamedVarCollection(mgr, "G", "X"), 0);
    int32_t n = 0;
    GetCollectionNumberVariables(col, &n);
    EXPECT_EQ(n, 1);
    EXPECT_EQ(RemoveNamedVarCollection(mgr, "G"), 0);
    EXPECT_EQ(RemoveNamedVarCollection(mgr, "G"), 1);
}

TEST_F(Flat, TermsAndSetsReportUnknownNames) {
    void* x = Var("X");
    void* nl = nullptr;
    GetNonLinearModelIntf(mgr, &nl);
    int16_t code = -5;
    EXPECT_EQ(FindNonLinearityCode(nl, "NOSUCHTERM", &code), 1);
    EXPECT_EQ(code, -5);
    EXPECT_EQ(FindNonLinearityCode(nl, "XPROD", &code), 0);
    void* row = nullptr;
    MakeAddReturnEquationNew(builder, "R", 2, 1.0, 0.0, &row);
    void* term = nullptr;
    ASSERT_EQ(MakeNonLinearityByCode(builder, code, row, &term), 0);
    EXPECT_EQ(AddNonLinearityVariableByName(builder, term, "NOPE"), 1);
    AddNonLinearityValue(builder, term, 2.0);
    AddNonLinearityVariable(builder, term, x);
    AddNonLinearity(builder, term);
    int32_t nonlinear = 0;
    EqnNonLinear(row, &nonlinear);
    EXPECT_EQ(nonlinear, 1);

    void* set = nullptr;
    EXPECT_EQ(FindSpecialOrderedSet(builder, "S", &set), 1);
    AddSpecialOrderedSet(builder, "S", 1, &set);
    EXPECT_EQ(AddSpecialOrderedSetVariableByName(builder, set, "NOPE"), 1);
    EXPECT_EQ(AddSpecialOrderedSetVariableByName(builder, set, "X"), 0);
    EXPECT_EQ(EliminateVariableByName(builder, "NOPE"), 1);
}

TEST_F(Flat, ManifestIsARecordAndBlocksNeedTheHost) {
    void* manifest = nullptr;
    ASSERT_EQ(CreateNonLinearBlockManifest(mgr, &manifest), 0);
    EXPECT_EQ(NLBlkManifestVerify(manifest), 1);
    NLBlkManifestSetBlockInstanceName(manifest, "CDU1");
    NLBlkManifestSetModelSourceType(manifest, "FILE");
    EXPECT_EQ(NLBlkManifestVerify(manifest), 1);
    NLBlkManifestSetSourceFileSpec(manifest, "cdu.mdl");
    EXPECT_EQ(NLBlkManifestVerify(manifest), 0);
    char buf[64];
    NLBlkManifestGetBlockInstanceName(manifest, buf);
    EXPECT_STREQ(buf, "CDU1");
    NLBlkManifestGetSolver(manifest, buf);
    EXPECT_STREQ(buf, "");

    void* block = &buf;
    EXPECT_EQ(CreateNonLinearBlock(mgr, "B", &block), 1);
    EXPECT_EQ(NLBlkConstructBlock(mgr, manifest, &block), ZEM_FLAT_NO_BLOCK_HOST);
    EXPECT_EQ(block, static_cast<void*>(&buf));
    EXPECT_EQ(NLBlkInitializeBlockHost(mgr, "host"), ZEM_FLAT_NO_BLOCK_HOST);
    DestroyNonLinearBlockManifest(manifest);
}
