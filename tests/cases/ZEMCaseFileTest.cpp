#include <cstring>
#include <sstream>

#include "cases/CaseTestModel.h"
#include "cases/ZEMCaseCollection.h"
#include "cases/ZEMCaseMgr.h"
#include "cases/ZEMEdit.h"
#include "cases/ZEMEditRecord.h"
#include "lpdata/ZEMBinaryIO.h"
#include "nlpdata/INonLinearModel.h"

namespace {

struct CaseFileTest : ::testing::Test {
    RefineryModel m;

    // Two cases holding every kind of edit, then an empty one.
    void Fill(CZEMCaseCollection& col) {
        IZEMCaseMgr* a = col.CreateNewCaseMgr(1, "CRUDEPRICE", "crude 1 dearer");
        a->AddMatrixCoeffEdit("PROFIT", "CRUDE1", -40.0);
        a->AddVarValueEdit("CRUDE1", 10.0);
        a->AddVarBoundEdit("CRUDE2", -1, 5.0);
        a->AddVarTypeEdit("TEMP", 3);
        col.AddCaseMgr(a);
        IZEMCaseMgr* b = col.CreateNewCaseMgr(2, "CAPACITY", "bigger CDU");
        b->AddEqnRHSEdit("CDUCAP", 150.0);
        b->AddEqnRangeEdit("CDUCAP", 50.0);
        b->AddEqnTypeEdit("SEVERITY", 2);
        INonLinearModel* nl = nullptr;
        m.mgr->GetNonLinearModelIntf(&nl);
        b->AddMatrixNonLinearityCoeffEdit(nl->FrstNonLinearityObject(), 3.0);
        b->AddOptionTableEdit("ITERLIM", "900");
        col.AddCaseMgr(b);
        col.AddCaseMgr(col.CreateNewCaseMgr(3, "EMPTY", ""));
    }
    std::string Bytes(CZEMCaseCollection& col) {
        std::stringstream ss;
        col.PersistXLMAsStream(&ss);
        return ss.str();
    }
    // Reads `bytes` into a fresh collection; returns the failure text.
    std::string Read(const std::string& bytes, int* cases = nullptr, int* rc = nullptr) {
        CZEMCaseCollection col(m.mgr);
        std::stringstream ss(bytes);
        const std::string failure = FailureOf([&] {
            const int r = col.RestoreXLMStream(&ss);
            if (rc) *rc = r;
        });
        if (cases) *cases = col.NumberOfCases();
        return failure;
    }
};

TEST_F(CaseFileTest, FileRoundTripKeepsEveryRecord) {
    CZEMCaseCollection col(m.mgr);
    Fill(col);
    const std::string bytes = Bytes(col);
    // header, three case records, 4 + 5 edit records
    EXPECT_EQ(bytes.size(), 160u + 3 * 268 + (18 + 14 + 16 + 8) + (14 + 14 + 8 + 14 + 202));
    EXPECT_EQ(zembin::getF64(reinterpret_cast<const unsigned char*>(bytes.data())), 2008.1);
    EXPECT_STREQ(bytes.data() + 24, "REFINERY");

    const std::string path = std::string(ZEM_BINARY_DIR) + "/cases_roundtrip.xlm";
    col.PersistXLMAsFile(path.c_str());
    CZEMCaseCollection back(m.mgr);
    ASSERT_EQ(back.RestoreXLMFile(path.c_str()), 0);
    EXPECT_EQ(Bytes(back), bytes);
    ASSERT_NE(back.GetCaseByName("CAPACITY"), nullptr);
    EXPECT_EQ(back.GetCaseByIndex(2), back.GetCaseByName("CAPACITY"));
    EXPECT_STREQ(back.GetCaseByIndex(1)->GetCaseDescription(), "crude 1 dearer");
}

// A stream over bytes that cannot seek (std::streambuf's own seekoff fails).
struct OneWayBuf : std::streambuf {
    explicit OneWayBuf(std::string& b) { setg(&b[0], &b[0], &b[0] + b.size()); }
};

TEST_F(CaseFileTest, CaseReadStopsAtItsLastRecordOnAnyStream) {
    CZEMCaseCollection col(m.mgr);
    Fill(col);
    std::string bytes = Bytes(col).substr(160);
    const ZEMEditTargets targets = ZEMEditTargets::FromModel(m.mgr);
    OneWayBuf oneWay(bytes);
    std::istream plain(&oneWay);
    std::stringstream seekable(bytes);
    for (std::istream* is : {static_cast<std::istream*>(&plain), static_cast<std::istream*>(&seekable)}) {
        IZEMCaseMgr* c = nullptr;
        CZEMCaseMgr::RestoreFromStream(is, m.mgr, nullptr, targets, &c);
        EXPECT_EQ(c->CaseEditListPtr()->size(), 4u);
        c->Destroy();
        CZEMCaseMgr::RestoreFromStream(is, m.mgr, nullptr, targets, &c);
        EXPECT_STREQ(c->GetCaseName(), "CAPACITY");
        c->Destroy();
    }
}

TEST_F(CaseFileTest, EmptyCollectionAndOtherVersionsReadNoCase) {
    CZEMCaseCollection col(m.mgr);
    std::string bytes = Bytes(col);
    EXPECT_EQ(bytes.size(), 160u);
    Fill(col);
    bytes = Bytes(col);
    const double other = 2008.2;
    std::memcpy(&bytes[0], &other, 8);
    int cases = -5, rc = 0;
    EXPECT_EQ(Read(bytes, &cases, &rc), "none");
    EXPECT_EQ(rc, -1);
    EXPECT_EQ(cases, 0);
    // Applying by name and number, and unknown cases: the flat functions' test.
}

TEST_F(CaseFileTest, UndoResetsTheSavedValuesWithinBounds) {
    ILPVariable* crude = m.Var("CRUDE1");
    const double saved = crude->GetVarValue();  // 60, upper bound 80
    CZEMCaseCollection col(m.mgr);
    IZEMCaseMgr* c = col.CreateNewCaseMgr(1, "LOWCAP", "");
    c->AddVarBoundEdit(crude, 1, 50.0);
    col.AddCaseMgr(c);
    crude->SetVarValue(75.0);
    col.ApplyCase("LOWCAP");
    crude->SetVarValue(79.0);
    col.UnApplyCase("LOWCAP");
    EXPECT_EQ(crude->GetVarValue(), saved);
    // A saved value outside the bounds of the moment is clamped.
    crude->SetBoundUpper(40.0);
    col.ResetInitialValues();
    EXPECT_EQ(crude->GetVarValue(), 40.0);

    std::ostringstream os;
    col.Display(os);
    EXPECT_EQ(os.str().rfind("\nZ E M   C A S E   S T A C K I N G   S U M M A R Y ...\n\nZ E M   C A S E   - LOWCAP", 0), 0u);
}

TEST_F(CaseFileTest, MalformedFilesRaiseAndKeepEarlierCases) {
    EXPECT_EQ(Read(std::string(159, '\0')),
              "CZEMCaseCollection Error: Error during read of XLMFile Header from binary stream @ "
              "CZEMCaseCollection::RestoreFromStream");
    CZEMCaseCollection col(m.mgr);
    Fill(col);
    const std::string good = Bytes(col);
    const size_t firstEnd = 160 + 268 + 56;  // header, case 1 and its edits
    const size_t secondEnd = firstEnd + 268 + 252;
    // Every cut inside the cases raises; the cases read whole are kept.
    for (size_t cut = 160; cut < good.size(); ++cut) {
        int cases = -1;
        const std::string failure = Read(good.substr(0, cut), &cases);
        ASSERT_NE(failure, "none") << cut;
        EXPECT_EQ(cases, (cut >= firstEnd) + (cut >= secondEnd)) << cut;
    }
    EXPECT_EQ(Read(good.substr(0, 160 + 100)),
              "CZEMCaseMgr Error: Error during read of XLMFile Header from binary file @ "
              "CZEMCaseMgr::RestoreFromStream");

    auto patched = [&](size_t at, const std::string& bytes) {
        std::string b = good;
        b.replace(at, bytes.size(), bytes);
        return b;
    };
    auto i32 = [](int32_t v) {
        unsigned char b[4];
        zembin::put32(b, v);
        return std::string(reinterpret_cast<char*>(b), 4);
    };
    const size_t edit1 = 160 + 268;
    int cases = -1;
    EXPECT_NE(Read(patched(edit1, std::string("\x0a\x00", 2)), &cases).find("Unknown edit code"), std::string::npos);
    EXPECT_NE(Read(patched(edit1 + 2, i32(16)), &cases).find("equation index 16"), std::string::npos);
    EXPECT_NE(Read(patched(edit1 + 6, i32(0))).find("variable index 0"), std::string::npos);
    EXPECT_NE(Read(patched(160 + 264, i32(-1))).find("Negative edit count"), std::string::npos);
    EXPECT_NE(Read(patched(160 + 264, i32(1 << 30))).find("edit record"), std::string::npos);
    EXPECT_NE(Read(patched(8, i32(-3))).find("Negative case count"), std::string::npos);
    EXPECT_NE(Read(patched(8, i32(1 << 30))).find("Header from binary file"), std::string::npos);
    EXPECT_NE(Read(patched(12, i32(19))).find("made for a model of 19 variables"), std::string::npos);
    EXPECT_NE(Read(patched(160 + 4, std::string(129, 'N'))).find("terminator"), std::string::npos);
    EXPECT_NE(Read(patched(24, std::string(129, 'N'))).find("terminator"), std::string::npos);
    EXPECT_EQ(cases, 0);
}

}  // namespace
