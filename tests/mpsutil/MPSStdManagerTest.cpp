#include "mpsutil/MPSStdManager.h"

#include <gtest/gtest.h>

#include <memory>
#include <sstream>
#include <string>

#include "MPSTestUtil.h"

using namespace mpstest;

namespace {

struct DestroyManager {
    void operator()(MPSStdManager* m) const { m->Destroy(); }
};
using ManagerPtr = std::unique_ptr<MPSStdManager, DestroyManager>;

ManagerPtr NewManager() {
    MPSStdManager* m = nullptr;
    CreateMPSStdManagerObject(&m);
    return ManagerPtr(m);
}

const std::string kModel = Lines({"NAME", "ROWS", Card("N", "C"), Card("L", "R"), "COLUMNS",
                                  Card("", "X", "C", "1", "R", "2"), "RHS", Card("", "RHS", "R", "5"),
                                  "ENDATA"});

}  // namespace

TEST(MPSStdManager, ReadsIntoTheGivenModelOrHandsOverANewOne) {
    TempDir dir;
    const std::string path = dir.File("m.mps", kModel);
    ModelPtr model = NewModel();
    ManagerPtr mgr = NewManager();
    mgr->SetLPDataMgr(model.get());
    mgr->SetMPSFileSpec(path.c_str());
    mgr->ReadMPSFile();
    EXPECT_EQ(Eqn(model.get(), "R")->GetRHS(), 5.0);
    ILPStdDataMgr* got = nullptr;
    mgr->GetLPDataMgr(&got);
    EXPECT_EQ(got, model.get());

    ManagerPtr fresh = NewManager();
    fresh->SetMPSFileSpec(path.c_str());
    fresh->ReadMPSFile();
    ILPStdDataMgr* made = nullptr;
    fresh->GetLPDataMgr(&made);
    ASSERT_NE(made, nullptr);
    ModelPtr owned(made);
    EXPECT_EQ(Coef(made, "R", "X"), 2.0);

    std::stringstream ss(kModel);
    ModelPtr streamed = NewModel();
    ManagerPtr viaStream = NewManager();
    viaStream->SetLPDataMgr(streamed.get());
    viaStream->ReadMPSStream(&ss);
    EXPECT_EQ(Coef(streamed.get(), "C", "X"), 1.0);
}

TEST(MPSStdManager, WrapsReaderFailuresAndPassesFileErrorsOn) {
    ManagerPtr mgr = NewManager();
    try {
        mgr->ReadMPSFile();
        FAIL() << "no exception";
    } catch (ZEM_Exception& e) {
        EXPECT_EQ(e.Name(), "MPS Read Error");
        EXPECT_EQ(e.Reason(), "No MPS file specification provided");
        EXPECT_EQ(e.Routine(), "MPSStdManager::ReadMPSFile");
    }

    mgr->SetMPSFileSpec("/nonexistent/model.mps");
    try {
        mgr->ReadMPSFile();
        FAIL() << "no exception";
    } catch (ZEM_ExcpFileError& e) {
        EXPECT_EQ(e.ErrorType(), eFileNotFound);
    }

    TempDir dir;
    const std::string bad = Lines({"NAME", "ROWS", Card("Q", "R"), "ENDATA"});
    mgr->SetMPSFileSpec(dir.File("bad.mps", bad).c_str());
    ModelPtr model = NewModel();
    mgr->SetLPDataMgr(model.get());
    try {
        mgr->ReadMPSFile();
        FAIL() << "no exception";
    } catch (ZEM_Exception& e) {
        EXPECT_EQ(e.Name(), "MPS Manager Failure");
        EXPECT_EQ(e.Reason(), "Read of MPS Failed");
        EXPECT_EQ(e.Routine(), "MPSStdManager::ReadMPSFile");
        EXPECT_EQ(e.SourceFile(), "mpsutil");
        ASSERT_NE(e.Getbufptr(), nullptr);
        const std::string trace = e.Getbufptr()->str();
        EXPECT_NE(trace.find("Exception Name : MPS ROWS Section Error - Unknown Row Type Key Found\n"),
                  std::string::npos)
            << trace;
        EXPECT_NE(trace.find("Exception Reason : " + Card("Q", "R") + "\n"), std::string::npos);
        EXPECT_NE(trace.find("MPS input line 3\n"), std::string::npos);
    }

    try {
        mgr->ReadMPSStream(nullptr);
        FAIL() << "no exception";
    } catch (ZEM_Exception& e) {
        EXPECT_EQ(e.Name(), "MPS Read Error");
        EXPECT_EQ(e.Reason(), "No stream provided");
    }
    std::stringstream badStream(bad);
    try {
        mgr->ReadMPSStream(&badStream);
        FAIL() << "no exception";
    } catch (ZEM_Exception& e) {
        EXPECT_EQ(e.Reason(), "Read of MPS Stream Failed");
    }
}

TEST(MPSStdManager, WritesHeaderCardsAndReportsWriteFailures) {
    ModelPtr model = Read(kModel);
    ManagerPtr mgr = NewManager();
    mgr->SetLPDataMgr(model.get());
    std::stringstream ss;
    mgr->WriteMPSStream(&ss);
    EXPECT_EQ(ss.str(), "NAME          ZEMMODEL\nROWS\nCOLUMNS\nRHS\nRANGES\nBOUNDS\nENDATA\n");

    try {
        mgr->WriteMPSFile();
        FAIL() << "no exception";
    } catch (ZEM_Exception& e) {
        EXPECT_EQ(e.Name(), "MPS Write Error");
        EXPECT_EQ(e.Reason(), "No MPS file specification provided");
    }
    mgr->SetMPSFileSpec("/nonexistent/dir/out.mps");
    EXPECT_THROW(mgr->WriteMPSFile(), ZEM_ExcpFileError);

    ManagerPtr noModel = NewManager();
    TempDir dir;
    noModel->SetMPSFileSpec((dir.path() + "/x.mps").c_str());
    try {
        noModel->WriteMPSFile();
        FAIL() << "no exception";
    } catch (ZEM_ExcpFileError&) {
        FAIL() << "not a file error";
    } catch (ZEM_Exception& e) {
        EXPECT_EQ(e.Name(), "MPS Manager Failure");
        EXPECT_EQ(e.Reason(), "Write of MPS Failed");
    }
}
