#include "mpsutil/MPSStdWriter.h"

#include <gtest/gtest.h>

#include <fstream>
#include <sstream>
#include <string>

#include "MPSTestUtil.h"

using namespace mpstest;

namespace {

std::string Slurp(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    std::ostringstream ss;
    ss << in.rdbuf();
    return ss.str();
}

// A writer that fills data cards, as the extended writer does.
class CardWriter : public MPSStdWriter {
public:
    using MPSStdWriter::MPSStdWriter;
    std::vector<std::vector<std::string>> cards;

protected:
    void COLUMNSData() override {
        COLUMNSCard();
        for (const auto& card : cards) {
            for (size_t f = 0; f < card.size(); ++f) SetField(static_cast<int>(f), card[f].c_str());
            WriteMPSDataCard();
        }
    }
};

}  // namespace

TEST(MPSStdWriter, WritesTheHeaderCardsInOrderWithSetsOnlyWhenPresent) {
    ModelPtr m = Read(Lines({"NAME", "ROWS", Card("N", "C"), "COLUMNS", Card("", "X", "C", "1"),
                             "ENDATA"}));
    m->SetModelTitle("BLEND");
    TempDir dir;
    const std::string path = dir.path() + "/out.mps";
    MPSStdWriter* writer = nullptr;
    CreateMPSStdWriterObject(&writer, m.get());
    ASSERT_NE(writer, nullptr);
    writer->WriteMPSFile(path.c_str());
    EXPECT_EQ(writer->LineCount(), 7);
    writer->Destroy();
    EXPECT_EQ(Slurp(path), "NAME          BLEND\nROWS\nCOLUMNS\nRHS\nRANGES\nBOUNDS\nENDATA\n");

    ModelPtr withSet = Read(Lines({"NAME", "ROWS", Card("N", "C"), "COLUMNS", Card("", "X", "C", "1"),
                                   "SETS", Card("S1", "S", "X", "1"), "ENDATA"}));
    std::ostringstream os;
    MPSStdWriter(withSet.get()).WriteMPSToStream(os);
    EXPECT_EQ(os.str(), "NAME          ZEMMODEL\nROWS\nCOLUMNS\nRHS\nRANGES\nBOUNDS\nSETS\nENDATA\n");
}

TEST(MPSStdWriter, DataCardsRightAlignEachFieldInItsColumns) {
    ModelPtr m = NewModel();
    CardWriter writer(m.get());
    writer.cards = {{"", "X", "R1", "1.5", "ROW2", "-2"},
                    {"UP", "BND", "LONGNAME"},
                    {"", "", "", "", "", "7"},
                    {"", "X", "", "", "R"}};
    std::ostringstream os;
    writer.WriteMPSToStream(os);
    std::istringstream lines(os.str());
    std::string line;
    std::vector<std::string> all;
    while (std::getline(lines, line)) all.push_back(line);
    ASSERT_EQ(all.size(), 11u);
    // Columns (0-based): key 1-2, names 4-11, 14-21 and 39-46, numbers
    // 24-35 and 49-60.
    EXPECT_EQ(all[3], "           X        R1           1.5       ROW2            -2");
    EXPECT_EQ(all[4], " UP      BND  LONGNAME");
    EXPECT_EQ(all[5], std::string(60, ' ') + "7");
    EXPECT_EQ(all[6], "           X                                  R");
    // What the writer places, the reader reads back into the same fields.
    ModelPtr back = Read(Lines({"NAME", "ROWS", Card("N", "R1"), Card("L", "ROW2"), "COLUMNS",
                                all[3], "ENDATA"}));
    EXPECT_EQ(Coef(back.get(), "R1", "X"), 1.5);
    EXPECT_EQ(Coef(back.get(), "ROW2", "X"), -2.0);
}

TEST(MPSStdWriter, OverlongTextsAreClippedToTheLine) {
    ModelPtr m = NewModel();
    m->SetModelTitle(std::string(3000, 'T').c_str());
    CardWriter writer(m.get());
    writer.cards = {{"", std::string(2000, 'N'), "", "", "", std::string(1500, '9')}};
    std::ostringstream os;
    writer.WriteMPSToStream(os);
    std::istringstream lines(os.str());
    std::string line;
    std::getline(lines, line);
    EXPECT_EQ(line, "NAME          " + std::string(1023 - 14, 'T'));
    std::getline(lines, line);
    std::getline(lines, line);
    std::getline(lines, line);
    EXPECT_EQ(line.size(), 1023u);
    EXPECT_EQ(line.substr(0, 4), "    ");
    EXPECT_EQ(line.substr(49), std::string(1023 - 49, '9'));
}

TEST(MPSStdWriter, RefusesAnUncreatableFileAndAMissingModel) {
    MPSStdWriter writer;
    try {
        writer.WriteMPSFile("/nonexistent/dir/out.mps");
        FAIL() << "no exception";
    } catch (ZEM_ExcpFileError& e) {
        EXPECT_EQ(e.ErrorType(), eFileCreateForWrite);
        EXPECT_EQ(e.FileName(), "/nonexistent/dir/out.mps");
        EXPECT_EQ(e.Routine(), "MPSStdWriter::OpenMPSFile");
    }
    TempDir dir;
    const std::string path = dir.path() + "/none.mps";
    try {
        writer.WriteMPSFile(path.c_str());
        FAIL() << "no exception";
    } catch (ZEM_ExcpFileError&) {
        FAIL() << "a file error for a missing model";
    } catch (ZEM_Exception& e) {
        EXPECT_EQ(e.Name(), "MPS File Write Error");
        EXPECT_EQ(e.Reason(), "No LP Data Object Available");
        EXPECT_EQ(e.Routine(), "MPSStdWriter::WriteMPSFile");
    }
    EXPECT_EQ(Slurp(path), "");
}

TEST(MPSStdWriter, AFullDeviceIsAWriteError) {
    std::ifstream probe("/dev/full");
    if (!probe) GTEST_SKIP() << "/dev/full is not available";
    ModelPtr m = NewModel();
    MPSStdWriter writer(m.get());
    try {
        writer.WriteMPSFile("/dev/full");
        FAIL() << "no exception";
    } catch (ZEM_ExcpFileError& e) {
        EXPECT_EQ(e.ErrorType(), eFileWriteError);
    }
}
