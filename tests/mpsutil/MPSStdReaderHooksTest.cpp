// The extension slots of the reader, as a derived dialect reader uses them.
#include <gtest/gtest.h>

#include <cstring>
#include <sstream>
#include <string>
#include <vector>

#include "MPSTestUtil.h"
#include "mpsutil/MPSStdReader.h"

using namespace mpstest;

namespace {

constexpr int16_t kNotesSection = 120;
constexpr int16_t kStuckSection = 121;

class DialectReader : public MPSStdReader {
public:
    DialectReader(ILPStdDataMgr* model, bool extended) : MPSStdReader(model, extended) {}

    std::vector<std::string> notes;
    std::vector<int> widthCalls;
    int rowsAtCheck = -1;

    void IgnoreRow(const char* name) { m_ignoredRows.insert(name); }

protected:
    int16_t ExtendedHeaderCardSet() override {
        if (MPSHasPrefix(m_line, "NOTES", 5)) return kNotesSection;
        if (MPSHasPrefix(m_line, "STUCK", 5)) return kStuckSection;
        return 0;
    }
    void ProcessExtendedSections() override {
        if (m_section != kNotesSection) return;
        while (ReadMPSCard() == kMPSCardData) notes.push_back(Field(kMPSFieldName1));
    }
    bool ProcessExtendedBOUNDSKeySet(const char* key, ILPVariable* var) override {
        if (std::strcmp(key, "ZZ") != 0) return false;
        var->SetStepBound(FieldNumber(kMPSFieldNumber1));
        return true;
    }
    void CheckMPSStatus() override {
        ILPEquationList* eqns = nullptr;
        m_model->GetEquationCollectionIntf(&eqns);
        rowsAtCheck = eqns->NumberOfEquations();
    }
    void SetFieldWidth(int16_t nameWidth, int16_t numberWidth, int16_t keyWidth) override {
        widthCalls.insert(widthCalls.end(), {nameWidth, numberWidth, keyWidth});
        MPSStdReader::SetFieldWidth(nameWidth, numberWidth, keyWidth);
    }
};

std::string Base(const std::vector<std::string>& more) {
    std::vector<std::string> lines = {"NAME", "ROWS", Card("N", "COST"), Card("L", "R1"),
                                      Card("L", "EMPTY"), "COLUMNS", Card("", "X", "COST", "1", "R1", "2")};
    lines.insert(lines.end(), more.begin(), more.end());
    lines.push_back("ENDATA");
    return Lines(lines);
}

}  // namespace

TEST(MPSStdReaderHooks, DerivedSectionsKeysIgnoredRowsAndStatusCheckRunInPlace) {
    ModelPtr m = NewModel();
    DialectReader reader(m.get(), false);
    reader.IgnoreRow("GONE");
    std::istringstream in(Base({"BOUNDS", Card("ZZ", "B", "X", "7.5"), "NOTES", Card("", "first"),
                                Card("", "second"), "BOUNDS", Card("UP", "B", "X", "3"), "RHS",
                                Card("", "RHS", "R1", "4", "GONE", "1"), "RANGES",
                                Card("", "RNG", "GONE", "1", "R1", "2")}));
    reader.ReadMPSFromStream(in);
    EXPECT_EQ(reader.notes, (std::vector<std::string>{"first", "second"}));
    EXPECT_EQ(Var(m.get(), "X")->GetStepBound(), 7.5);
    EXPECT_EQ(Var(m.get(), "X")->GetBoundUpper(), 3.0);
    // Ignored rows are accepted in the second pair of RHS and RANGES.
    EXPECT_EQ(Eqn(m.get(), "R1")->GetRHS(), 4.0);
    EXPECT_EQ(Eqn(m.get(), "R1")->GetRHSLo(), 2.0);
    // The status check runs before the empty row is removed.
    EXPECT_EQ(reader.rowsAtCheck, 3);
    EXPECT_EQ(EqnNames(m.get()), (std::vector<std::string>{"COST", "R1"}));
    EXPECT_TRUE(reader.widthCalls.empty());
}

TEST(MPSStdReaderHooks, UnprocessedSectionsFail) {
    // A section whose handler reads nothing must not loop for ever.
    ModelPtr m = NewModel();
    DialectReader reader(m.get(), false);
    std::istringstream in(Base({"STUCK", Card("", "data")}));
    const ZEM_Exception e = Raised([&] { reader.ReadMPSFromStream(in); });
    EXPECT_EQ(e.Name(), "MPS Read/Process Error");
    EXPECT_EQ(e.Reason(), "No handler for the section of this header card");
}

// The extended flag sets the widths through the virtual slot, and names as
// long as the widths allow are read whole.
TEST(MPSStdReaderHooks, ExtendedFlagSetsTheWidthsThroughTheVirtualSlot) {
    const std::string longRow(100, 'R'), longCol(128, 'C');
    std::string card(300, ' ');
    card.replace(4, longCol.size(), longCol);
    card.replace(134, longRow.size(), longRow);
    card.replace(264, 3, "2.5");
    card.erase(card.find_last_not_of(' ') + 1);
    ModelPtr m = NewModel();
    DialectReader reader(m.get(), true);
    std::istringstream in(Lines({"NAME", "ROWS", " N  " + longRow, "COLUMNS", card, "ENDATA"}));
    reader.ReadMPSFromStream(in);
    EXPECT_EQ(reader.widthCalls, (std::vector<int>{128, 13, 2}));
    EXPECT_EQ(Coef(m.get(), longRow.c_str(), longCol.c_str()), 2.5);
}
