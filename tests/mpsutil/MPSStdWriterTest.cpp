// The standard writer and the manager that drives reads and writes.
#include "mpsutil/MPSStdWriter.h"

#include <gtest/gtest.h>

#include <fstream>
#include <memory>
#include <sstream>
#include <string>

#include "MPSTestUtil.h"
#include "mpsutil/MPSStdManager.h"

using namespace mpstest;

namespace {

std::string Slurp(const std::string& path) {
    std::ostringstream ss;
    ss << std::ifstream(path, std::ios::binary).rdbuf();
    return ss.str();
}

// A writer that fills data cards, as the extended writer does.
class CardWriter : public MPSStdWriter {
public:
    using MPSStdWriter::MPSStdWriter;
    std::vector<std::vector<std::string>> cards;

    std::vector<std::string> Written() {
        std::ostringstream os;
        WriteMPSToStream(os);
        std::istringstream lines(os.str());
        std::vector<std::string> all;
        for (std::string line; std::getline(lines, line);) all.push_back(line);
        return all;
    }

protected:
    void COLUMNSData() override {
        COLUMNSCard();
        for (const auto& card : cards) {
            for (size_t f = 0; f < card.size(); ++f) SetField(static_cast<int>(f), card[f].c_str());
            WriteMPSDataCard();
        }
    }
};

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
const std::string kHeaders = "ROWS\nCOLUMNS\nRHS\nRANGES\nBOUNDS\n";

}  // namespace

TEST(MPSStdWriter, WritesTheHeaderCardsInOrderWithSetsOnlyWhenPresent) {
    ModelPtr m = Read(kModel);
    m->SetModelTitle("BLEND");
    TempDir dir;
    const std::string path = dir.path() + "/out.mps";
    MPSStdWriter* writer = nullptr;
    CreateMPSStdWriterObject(&writer, m.get());
    ASSERT_NE(writer, nullptr);
    writer->WriteMPSFile(path.c_str());
    EXPECT_EQ(writer->LineCount(), 7);
    writer->Destroy();
    EXPECT_EQ(Slurp(path), "NAME          BLEND\n" + kHeaders + "ENDATA\n");

    ModelPtr withSet = Read(Lines({"NAME", "ROWS", Card("N", "C"), "COLUMNS", Card("", "X", "C", "1"),
                                   "SETS", Card("S1", "S", "X", "1"), "ENDATA"}));
    std::ostringstream os;
    MPSStdWriter(withSet.get()).WriteMPSToStream(os);
    EXPECT_EQ(os.str(), "NAME          ZEMMODEL\n" + kHeaders + "SETS\nENDATA\n");
}

TEST(MPSStdWriter, DataCardsRightAlignEachFieldAndClipToTheLine) {
    ModelPtr m = NewModel();
    CardWriter writer(m.get());
    writer.cards = {{"", "X", "R1", "1.5", "ROW2", "-2"},
                    {"UP", "BND", "LONGNAME"},
                    {"", "", "", "", "", "7"},
                    {"", "X", "", "", "R"}};
    const std::vector<std::string> all = writer.Written();
    ASSERT_EQ(all.size(), 11u);
    // Columns (0-based): key 1-2, names 4-11, 14-21 and 39-46, numbers
    // 24-35 and 49-60.
    EXPECT_EQ(all[3], "           X        R1           1.5       ROW2            -2");
    EXPECT_EQ(all[4], " UP      BND  LONGNAME");
    EXPECT_EQ(all[5], std::string(60, ' ') + "7");
    EXPECT_EQ(all[6], "           X                                  R");

    // Overlong texts are clipped to the line buffer.
    m->SetModelTitle(std::string(3000, 'T').c_str());
    writer.cards = {{"", std::string(2000, 'N'), "", "", "", std::string(1500, '9')}};
    const std::vector<std::string> clipped = writer.Written();
    EXPECT_EQ(clipped[0], "NAME          " + std::string(1023 - 14, 'T'));
    EXPECT_EQ(clipped[3].size(), 1023u);
    EXPECT_EQ(clipped[3].substr(0, 4), "    ");
    EXPECT_EQ(clipped[3].substr(49), std::string(1023 - 49, '9'));
}

TEST(MPSStdWriter, RefusesAnUncreatableFileAMissingModelAndAFullDevice) {
    MPSStdWriter writer;
    const auto fe = Raised<ZEM_ExcpFileError>([&] { writer.WriteMPSFile("/nonexistent/dir/out.mps"); });
    EXPECT_EQ(fe.ErrorType(), eFileCreateForWrite);
    EXPECT_EQ(fe.FileName(), "/nonexistent/dir/out.mps");
    EXPECT_EQ(fe.Routine(), "MPSStdWriter::OpenMPSFile");
    TempDir dir;
    const std::string path = dir.path() + "/none.mps";
    const auto e = Raised([&] { writer.WriteMPSFile(path.c_str()); }, true);
    EXPECT_EQ(e.Name(), "MPS File Write Error");
    EXPECT_EQ(e.Reason(), "No LP Data Object Available");
    EXPECT_EQ(e.Routine(), "MPSStdWriter::WriteMPSFile");
    EXPECT_EQ(Slurp(path), "");

    if (!std::ifstream("/dev/full")) GTEST_SKIP() << "/dev/full is not available";
    ModelPtr m = NewModel();
    MPSStdWriter full(m.get());
    EXPECT_EQ(Raised<ZEM_ExcpFileError>([&] { full.WriteMPSFile("/dev/full"); }).ErrorType(),
              eFileWriteError);
}

TEST(MPSStdManager, ReadsIntoTheGivenModelOrHandsOverANewOneAndWrites) {
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
    std::stringstream out;
    mgr->WriteMPSStream(&out);
    EXPECT_EQ(out.str(), "NAME          ZEMMODEL\n" + kHeaders + "ENDATA\n");

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

TEST(MPSStdManager, WrapsReaderAndWriterFailuresAndPassesFileErrorsOn) {
    ManagerPtr mgr = NewManager();
    const auto check = [](const ZEM_Exception& e, const char* name, const char* reason) {
        EXPECT_EQ(e.Name(), name);
        EXPECT_EQ(e.Reason(), reason);
    };
    const auto noSpec = Raised([&] { mgr->ReadMPSFile(); });
    check(noSpec, "MPS Read Error", "No MPS file specification provided");
    EXPECT_EQ(noSpec.Routine(), "MPSStdManager::ReadMPSFile");
    check(Raised([&] { mgr->WriteMPSFile(); }), "MPS Write Error", "No MPS file specification provided");
    check(Raised([&] { mgr->ReadMPSStream(nullptr); }), "MPS Read Error", "No stream provided");

    mgr->SetMPSFileSpec("/nonexistent/dir/model.mps");
    EXPECT_EQ(Raised<ZEM_ExcpFileError>([&] { mgr->ReadMPSFile(); }).ErrorType(), eFileNotFound);
    EXPECT_EQ(Raised<ZEM_ExcpFileError>([&] { mgr->WriteMPSFile(); }).ErrorType(),
              eFileCreateForWrite);

    TempDir dir;
    const std::string bad = Lines({"NAME", "ROWS", Card("Q", "R"), "ENDATA"});
    mgr->SetMPSFileSpec(dir.File("bad.mps", bad).c_str());
    ModelPtr model = NewModel();
    mgr->SetLPDataMgr(model.get());
    const auto e = Raised([&] { mgr->ReadMPSFile(); });
    check(e, "MPS Manager Failure", "Read of MPS Failed");
    EXPECT_EQ(e.Routine(), "MPSStdManager::ReadMPSFile");
    EXPECT_EQ(e.SourceFile(), "mpsutil");
    std::stringstream badStream(bad);
    check(Raised([&] { mgr->ReadMPSStream(&badStream); }), "MPS Manager Failure",
          "Read of MPS Stream Failed");

    ManagerPtr noModel = NewManager();
    noModel->SetMPSFileSpec((dir.path() + "/x.mps").c_str());
    check(Raised([&] { noModel->WriteMPSFile(); }, true), "MPS Manager Failure", "Write of MPS Failed");
}
