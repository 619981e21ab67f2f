#include "mpsutil/MPSStdReader.h"

#include <gtest/gtest.h>

#include <cmath>
#include <sstream>
#include <string>

#include "MPSTestUtil.h"

using namespace mpstest;

namespace {

// ROWS and COLUMNS of a small model that the section tests extend.
std::string Head(const std::vector<std::string>& more = {}) {
    std::vector<std::string> lines = {
        "NAME          TEST", "ROWS", Card("N", "COST"), Card("L", "LIM1"), Card("G", "LIM2"),
        Card("E", "MYEQN"), "COLUMNS", Card("", "X1", "COST", "1.0", "LIM1", "1.0"),
        Card("", "X1", "LIM2", "1.0"), Card("", "X2", "COST", "2.0", "LIM1", "1.0"),
        Card("", "X2", "MYEQN", "-1.0", "LIM2", "3.0")};
    lines.insert(lines.end(), more.begin(), more.end());
    return Lines(lines);
}

std::string Model(const std::vector<std::string>& sections) {
    std::vector<std::string> lines = sections;
    lines.push_back("ENDATA");
    return Head(lines);
}

using Names = std::vector<std::string>;

}  // namespace

TEST(MPSStdReader, RefusesBadCardsNamingTheCardAndTheRoutine) {
    struct Case {
        std::string text;
        std::string name;
        std::string reason;
        std::string routine;
    };
    const std::string rows = "MPS ROWS Section Error - ", cols = "MPS COLUMNS Section Error - ",
                      bnds = "MPS BOUNDS Section Error - ", sets = "MPS SETS Section Error - ";
    const std::string incomplete = "Incomplete Data Entry";
    const std::string marker = "    MARK0001  'MARKER'                 'INTORG'";
    auto in = [&](const char* section, const std::string& card, const std::string& name,
                  const char* routine) {
        return Case{Model({section, card}), name, card, routine};
    };
    std::vector<Case> cases = {
        {Lines({"NAME", "ROWS", Card("X", "R1"), "COLUMNS", Card("", "X", "R1", "1"), "ENDATA"}),
         rows + "Unknown Row Type Key Found", Card("X", "R1"), "ROWSData"},
        {Lines({"NAME", "ROWS", Card("E", "R1"), Card("L", "R1"), "COLUMNS", "ENDATA"}),
         rows + "Row Name Already Used", Card("L", "R1"), "ROWSData"},
        {Lines({"NAME", "ROWS", " N", "COLUMNS", "ENDATA"}), rows + incomplete, " N", "ROWSData"},
        {Lines({"NAME", "ROWS", "COLUMNS", "ENDATA"}), "MPS Read/Process Error",
         "ROWSData section appears empty - no data card following header", "ROWSData"},
        // The line ends before the number field.
        {Head({"    X1        LIM1", "ENDATA"}), cols + incomplete, "    X1        LIM1", "COLUMNSData"},
        {Head({Card("", "X3", "COST", "1", "LIM1"), "ENDATA"}), cols + incomplete,
         Card("", "X3", "COST", "1", "LIM1"), "COLUMNSData"},
        // Integer markers are not understood: 'MARKER' is a row without a value.
        {Head({marker, "ENDATA"}), cols + incomplete, marker, "COLUMNSData"},
        {Head({Card("", "X3", "NOROW", "1"), "ENDATA"}), cols + "Invalid Row Name",
         Card("", "X3", "NOROW", "1"), "COLUMNSData"},
        {Lines({"NAME", "ROWS", Card("N", "C"), "COLUMNS", "RHS", "ENDATA"}), "MPS Read/Process Error",
         "COLUMNSData section appears empty - no data card following header", "COLUMNSData"},
        // In RHS only the second row name must exist.
        in("RHS", Card("", "RHS", "LIM1", "4.0", "NOSUCH", "1.0"),
           "MPS RHS Section Error - Invalid Row Name", "RHSData"),
        in("RHS", Card("", "", "LIM1", "4.0"), "MPS RHS Section Error - " + incomplete, "RHSData"),
        in("RHS", Card("", "RHS", "NOSUCH"), "MPS RHS Section Error - " + incomplete, "RHSData"),
        in("RANGES", Card("", "RNG", "NOSUCH", "1"), "MPS RANGES Section Error - Invalid Row Name",
           "RANGESData"),
        in("RANGES", Card("", "RNG", "LIM1", "1", "NOSUCH", "1"),
           "MPS RANGES Section Error - Invalid Row Name", "RANGESData"),
        in("RANGES", Card("", "RNG", "LIM1"), "MPS RANGES Section Error - " + incomplete, "RANGESData"),
        in("BOUNDS", Card("", "BND", "X1", "1"), bnds + incomplete + " - no KEY", "BOUNDSData"),
        in("BOUNDS", Card("UP", "BND", "", "1"), bnds + incomplete + " - no COLUMN NAME", "BOUNDSData"),
        in("BOUNDS", Card("UP", "BND", "X1"), bnds + incomplete, "BOUNDSData"),
        in("SETS", Card("S4", "SOS", "X1", "1"), sets + "Unrecognized SOS Type Key", "SETSData"),
        in("SETS", Card("S1", "", "X1", "1"), sets + incomplete, "SETSData"),
        in("SETS", Card("S1", "SOS", "X1", "1", "NOCOL", "2"), sets + "Invalid Column Name", "SETSData"),
        {Head({"OBJSENSE", "ENDATA"}), "Unknown Header Card Read in MPS File", "OBJSENSE",
         "ReadMPSCard"},
        {Head({"\tRHS", "ENDATA"}), "Unknown Header Card Read in MPS File", "\tRHS", "ReadMPSCard"},
        {Head({"ROWS", Card("L", "R9"), "ENDATA"}), "Unexpected Header Card Read in MPS File", "ROWS",
         "ReadMPSFile"},
    };
    for (const char* key : {"XX", "U", "up", "BX"}) {
        cases.push_back(in("BOUNDS", Card(key, "BND", "X1", "1"),
                           bnds + "Unknown Bound Type Key Found", "BOUNDSData"));
    }
    const std::string fileError = "MPS File Read Error", noEnd = "Unexpected end of MPS file - no ENDATA card";
    for (const auto& [text, reason] : std::vector<std::pair<std::string, std::string>>{
             {"ROWS\n", "Expected NAME Card"},
             {"NAME\n N  C\nROWS\n", "Expected ROWS Card"},
             {"NAME\nROWS\n N  C\nRHS\n", "Expected COLUMNS Card"},
             {Head({"RHS"}), noEnd}}) {
        cases.push_back({text, fileError, reason, "ReadMPSFile"});
    }
    for (const Case& c : cases) {
        const ZEM_Exception e = ReadError(c.text);
        EXPECT_EQ(e.Name(), c.name) << c.text;
        EXPECT_EQ(e.Reason(), c.reason) << c.text;
        EXPECT_EQ(e.Routine(), "MPSStdReader::" + c.routine) << c.text;
        EXPECT_EQ(e.SourceFile(), "mpsutil");
        EXPECT_GT(e.Line(), 0);
    }
    // The traceback names the input line.
    const ZEM_Exception e = ReadError(Head({Card("", "X3", "NOROW", "1"), "ENDATA"}));
    ASSERT_NE(e.Getbufptr(), nullptr);
    EXPECT_EQ(e.Getbufptr()->str(), "MPS input line 12\n");
}

TEST(MPSStdReader, RowKeysGiveTypesAndOnlyTheFirstNRowIsTheObjective) {
    ModelPtr m = Read(Lines({"NAME", "ROWS", Card("N", "OBJ"), Card("N", "FREE1"), Card("LE", "R1"),
                             Card("GE", "R2"), Card("L", "R3"), Card("NE", "R4"), Card(" G", "R5"),
                             "COLUMNS", Card("", "X", "OBJ", "1", "FREE1", "1"),
                             Card("", "X", "R1", "1", "R2", "1"), Card("", "X", "R3", "1", "R4", "1"),
                             Card("", "X", "R5", "1"), "ENDATA"}));
    EXPECT_TRUE(m->MatrixIncludesObjective());
    EXPECT_EQ(EqnNames(m.get()), (Names{"OBJ", "FREE1", "R1", "R2", "R3", "R4", "R5"}));
    // E is tested before G and L, N before everything.
    const int types[] = {ZEM_EQN_OBJECTIVE, ZEM_EQN_FREE, ZEM_EQN_EQ, ZEM_EQN_EQ, ZEM_EQN_LE, ZEM_EQN_FREE, ZEM_EQN_GE};
    const Names names = EqnNames(m.get());
    for (size_t i = 0; i < names.size(); ++i) EXPECT_EQ(Eqn(m.get(), names[i].c_str())->GetType(), types[i]) << names[i];
}

TEST(MPSStdReader, ColumnEntriesAreSummedInOrderOfFirstAppearance) {
    ModelPtr m = Read(Lines({"NAME", "ROWS", Card("N", "COST"), Card("L", "R1"), Card("L", "MY ROW"),
                             "COLUMNS", Card("", "B", "R1", "1.5"), Card("", "A", "COST", "2"),
                             Card("", "B", "COST", "-1", "R1", "2.25"), Card("", "A", "R1", "4"),
                             // Numbers follow strtod; blanks inside names become underscores.
                             Card("", "AB CD", "COST", "1.5E+2", "R1", "12abc"),
                             Card("", "AB CD", "MY ROW", "junk"), "ENDATA"}));
    EXPECT_EQ(VarNames(m.get()), (Names{"B", "A", "AB_CD"}));
    EXPECT_EQ(EqnNames(m.get()), (Names{"COST", "R1", "MY_ROW"}));
    EXPECT_EQ(Coef(m.get(), "R1", "B"), 3.75);
    EXPECT_EQ(Coef(m.get(), "COST", "B"), -1.0);
    EXPECT_EQ(Coef(m.get(), "COST", "A"), 2.0);
    EXPECT_EQ(Coef(m.get(), "COST", "AB_CD"), 150.0);
    EXPECT_EQ(Coef(m.get(), "R1", "AB_CD"), 12.0);
    EXPECT_EQ(Coef(m.get(), "MY_ROW", "AB_CD"), 0.0);
    EXPECT_EQ(NonZeroCount(m.get()), 7);
    EXPECT_EQ(Var(m.get(), "B")->GetNumberNZ(), 2);
    EXPECT_EQ(Eqn(m.get(), "R1")->GetNumberNZ(), 3);
}

TEST(MPSStdReader, ColumnWithoutEntriesIsRememberedNotMade) {
    ModelPtr m = Read(Head({Card("", "EMPTY"), "BOUNDS", Card("UP", "BND", "EMPTY", "4"),
                            Card("UP", "BND", "NEWCOL", "7"), "ENDATA"}));
    EXPECT_EQ(Var(m.get(), "EMPTY"), nullptr);
    ASSERT_NE(Var(m.get(), "NEWCOL"), nullptr);
    EXPECT_EQ(Var(m.get(), "NEWCOL")->GetBoundUpper(), 7.0);
    EXPECT_EQ(VarNames(m.get()), (Names{"X1", "X2", "NEWCOL"}));
}

TEST(MPSStdReader, RhsFirstPairIsLenientAndRangesSetRowLimits) {
    ModelPtr m = Read(Model({"RHS", Card("", "RHS", "LIM1", "4.0", "LIM2", "1.0"),
                             Card("", "RHS", "NOSUCH", "9.0", "COST", "-3.5"),
                             Card("", "RHS", "MYEQN", "2")}));
    EXPECT_EQ(Eqn(m.get(), "LIM1")->GetRHS(), 4.0);
    EXPECT_EQ(Eqn(m.get(), "LIM2")->GetRHS(), 1.0);
    EXPECT_EQ(Eqn(m.get(), "COST")->GetRHS(), -3.5);
    EXPECT_EQ(Eqn(m.get(), "MYEQN")->GetRHS(), 2.0);

    ModelPtr r = Read(Model({"RHS", Card("", "RHS", "LIM1", "10", "LIM2", "10"), "RANGES",
                             Card("", "RNG", "LIM1", "-5", "LIM2", "-5")}));
    EXPECT_EQ(Eqn(r.get(), "LIM1")->GetRHSLo(), 5.0);
    EXPECT_EQ(Eqn(r.get(), "LIM1")->GetRHSUp(), 10.0);
    EXPECT_EQ(Eqn(r.get(), "LIM2")->GetRHSLo(), 10.0);
    EXPECT_EQ(Eqn(r.get(), "LIM2")->GetRHSUp(), 15.0);
    EXPECT_EQ(Eqn(r.get(), "LIM2")->GetRange(), -5.0);
    // RANGES before RHS gives the same limits: RHS re-derives them.
    ModelPtr late = Read(Model({"RANGES", Card("", "RNG", "LIM1", "2"), "RHS",
                                Card("", "RHS", "LIM1", "6")}));
    EXPECT_EQ(Eqn(late.get(), "LIM1")->GetRHSLo(), 4.0);
    EXPECT_EQ(Eqn(late.get(), "LIM1")->GetRHSUp(), 6.0);
    // A zero range makes an equality.
    ModelPtr zero = Read(Model({"RANGES", Card("", "RNG", "LIM1", "0.0", "LIM2", "3")}));
    EXPECT_EQ(Eqn(zero.get(), "LIM1")->GetType(), ZEM_EQN_EQ);
    EXPECT_EQ(Eqn(zero.get(), "LIM2")->GetType(), ZEM_EQN_GE);
}

TEST(MPSStdReader, EveryBoundKeyHasItsEffect) {
    const char* const cols[] = {"LO", "UP", "SB", "FX", "FR", "MI", "PL", "BV", "LI", "UI", "SC", "UPNEG"};
    std::vector<std::string> lines = {"NAME", "ROWS", Card("N", "C"), "COLUMNS"};
    for (const char* c : cols) lines.push_back(Card("", c, "C", "1"));
    lines.insert(lines.end(), {"BOUNDS",
        Card("UP", "B", "LO", "9"),  // an upper bound first: LO must keep it
        Card("LO", "B", "LO", "2.5"), Card("UP", "B", "UP", "8"), Card("SB", "B", "SB", "0.5"),
        Card("FX", "B", "FX", "3"), Card("FR", "B", "FR"), Card("MI", "B", "MI"),
        Card("UP", "B", "PL", "5"), Card("PL", "B", "PL"), Card("BV", "B", "BV"),
        Card("LI", "B", "LI", "-2"), Card("UI", "B", "UI", "12"), Card("SC", "B", "SC", "4"),
        Card("UP", "B", "UPNEG", "-3"), "ENDATA"});
    ModelPtr m = Read(Lines(lines));
    const int C = ZEM_VAR_CONTINUOUS, D = ZEM_VAR_DISCRETE, B = ZEM_STATUS_BASIC;
    const struct {
        const char* col;
        double lower, upper;
        int type, status;
    } want[] = {
        {"LO", 2.5, 9, C, B}, {"UP", 0, 8, C, B}, {"SB", 0, 1e20, C, 203},
        {"FX", 3, 3, C, ZEM_STATUS_FIXED}, {"FR", -1e20, 1e20, C, B}, {"MI", -1e20, 1e20, C, B},
        {"PL", 0, 1e20, C, B}, {"BV", 0, 1, ZEM_VAR_BINARY, B}, {"LI", -2, 1e20, D, B},
        {"UI", 0, 12, D, B},
        // The semi-continuous value is kept as the lower bound.
        {"SC", 4, 1e20, ZEM_VAR_SEMICONTINUOUS, B},
        // A negative upper bound leaves the lower bound alone.
        {"UPNEG", 0, -3, C, B},
    };
    for (const auto& w : want) {
        ILPVariable* v = Var(m.get(), w.col);
        EXPECT_EQ(v->GetBoundLower(), w.lower) << w.col;
        EXPECT_EQ(v->GetBoundUpper(), w.upper) << w.col;
        EXPECT_EQ(v->GetVarType(), w.type) << w.col;
        EXPECT_EQ(v->GetVarStatus(), w.status) << w.col;
    }
    EXPECT_EQ(Var(m.get(), "SB")->GetStepBound(), 0.5);
    EXPECT_EQ(Var(m.get(), "FX")->GetVarValue(), 3.0);
}

TEST(MPSStdReader, SetsCollectTheirColumnsByKeyType) {
    ModelPtr m = Read(Model({"SETS", Card("S1", "SOS1", "X1", "1", "X2", "2"),
                             Card("S2", "SOS2", "X2", "1"), Card("S1", "SOS1", "X1", "3"),
                             Card("DP", "SOS3")}));
    ILPSpOrdSetList* sets = nullptr;
    m->GetSpOrdSetCollectionIntf(&sets);
    ASSERT_EQ(sets->NumberOfSpOrdSets(), 3);
    ILPSpOrdSet* s1 = sets->SOSNameLookup("SOS1");
    ASSERT_NE(s1, nullptr);
    EXPECT_EQ(s1->GetType(), 1);
    EXPECT_EQ(s1->GetSize(), 2);  // X1 twice counts once
    EXPECT_EQ(s1->FrstSetVar(), Var(m.get(), "X1"));
    EXPECT_EQ(s1->NextSetVar(), Var(m.get(), "X2"));
    EXPECT_EQ(sets->SOSNameLookup("SOS2")->GetType(), 2);
    EXPECT_EQ(sets->SOSNameLookup("SOS3")->GetType(), 7);
    EXPECT_EQ(sets->SOSNameLookup("SOS3")->GetSize(), 0);
}

TEST(MPSStdReader, SectionsRepeatInAnyOrderAndEmptyRowsAreRemoved) {
    ModelPtr m = Read(Lines({"NAME", "ROWS", Card("N", "COST"), Card("L", "UNUSED"), Card("L", "R1"),
                             Card("G", "R2"), "COLUMNS", Card("", "X", "COST", "1", "R1", "1"),
                             Card("", "Y", "R2", "1"), "BOUNDS", Card("UP", "B", "X", "4"), "RHS",
                             Card("", "RHS", "UNUSED", "3", "R1", "5"), "BOUNDS",
                             Card("LO", "B", "Y", "1"), "RHSIDE", Card("", "RHS", "R2", "2"),
                             "ENDATAXYZ"}));
    // UNUSED had an RHS but no coefficient: it is gone, the rest renumbered.
    EXPECT_EQ(EqnNames(m.get()), (Names{"COST", "R1", "R2"}));
    EXPECT_EQ(Eqn(m.get(), "R1")->GetIndex(), 2);
    EXPECT_EQ(Eqn(m.get(), "R2")->GetIndex(), 3);
    EXPECT_EQ(Eqn(m.get(), "R1")->GetRHS(), 5.0);
    // Header words are matched as prefixes.
    EXPECT_EQ(Eqn(m.get(), "R2")->GetRHS(), 2.0);
    EXPECT_EQ(Var(m.get(), "X")->GetBoundUpper(), 4.0);
    EXPECT_EQ(Var(m.get(), "Y")->GetBoundLower(), 1.0);
}

TEST(MPSStdReader, CommentsBlankLinesAndLineEndings) {
    ModelPtr m = Read("* comment\r\n\r\n$ another\nNAME\r\nROWS\r\n N  COST\r\n\n L  R1   \r\n"
                      "COLUMNS\r\n" + Card("", "X", "COST", "1.0", "R1", "2.0") +
                      "\r\n* inside\r\nENDATA\r\n");
    EXPECT_EQ(EqnNames(m.get()), (Names{"COST", "R1"}));
    EXPECT_EQ(Coef(m.get(), "R1", "X"), 2.0);
}

TEST(MPSStdReader, NameCardSetsOnlyAnEmptyTitle) {
    const std::string body = Lines({"ROWS", Card("N", "C"), "COLUMNS", Card("", "X", "C", "1"), "ENDATA"});
    auto readTitle = [&](const std::string& nameCard, bool clear) {
        ModelPtr m = NewModel();
        if (clear) m->SetModelTitle("");
        ReadInto(m.get(), nameCard + "\n" + body);
        std::string t;
        m->GetModelTitle(t);
        return t;
    };
    EXPECT_EQ(readTitle("NAME          PLAN", false), "ZEMMODEL");
    EXPECT_EQ(readTitle("NAME          PLAN", true), "PLAN");
    // The name is read as an 8-wide field from column 11, blanks included.
    EXPECT_EQ(readTitle("NAME          ICECREAM", true), "ICEC");
    EXPECT_EQ(readTitle("NAME      MODEL123", true), "MODEL123");
    EXPECT_EQ(readTitle("NAME      MY MODEL", true), "MY_MODEL");
    EXPECT_EQ(readTitle("NAME", true), "NOTITLE");
    EXPECT_EQ(readTitle("NAME      ", true), "NOTITLE");
}

TEST(MPSStdReader, LongLinesAreSplitAndBinaryBytesRefused) {
    // A comment longer than the line buffer: its remainder is read as a
    // line of its own, here an unknown header card.
    const ZEM_Exception e = ReadError(Head({"*" + std::string(1100, 'x'), "ENDATA"}));
    EXPECT_EQ(e.Name(), "Unknown Header Card Read in MPS File");
    EXPECT_EQ(e.Reason(), std::string(1101 - 1023, 'x'));
    // Trailing blanks past the buffer come back as a card of blanks.
    const std::string padded = Card("", "X3", "LIM1", "1") + std::string(2000, ' ');
    const ZEM_Exception blanks = ReadError(Head({padded, "ENDATA"}));
    EXPECT_EQ(blanks.Name(), "MPS COLUMNS Section Error - Incomplete Data Entry");
    EXPECT_EQ(blanks.Reason(), std::string(padded.size() - 1023, ' '));
    // A long line that ends exactly at the buffer is read whole.
    ModelPtr m = Read(Head({Card("", "X3", "LIM1", "1") + std::string(1023 - 36, ' '), "ENDATA"}));
    EXPECT_EQ(Coef(m.get(), "LIM1", "X3"), 1.0);

    std::string junk = Head() + std::string("\x01\xff\x00\x80 \x00", 6) + "\n";
    junk += " \x02\x03\x04\x05\x06\x07\x08\x09\x0a\x0b\x0c\xfe\xfd\n";
    EXPECT_EQ(ReadError(junk).Name(), "Unknown Header Card Read in MPS File");
    // A NUL byte ends a line's text: the second pair after it is not read.
    const std::string withNul = Card("", "X3", "LIM1", "1.0") + std::string("\0", 1) + "  LIM2  7";
    ModelPtr nul = Read(Head({withNul, "ENDATA"}));
    EXPECT_EQ(Coef(nul.get(), "LIM1", "X3"), 1.0);
    EXPECT_TRUE(std::isnan(Coef(nul.get(), "LIM2", "X3")));
}

TEST(MPSStdReader, FilesMissingOrReadIntoAModelOfItsOwn) {
    MPSStdReader missing;
    const auto fe = Raised<ZEM_ExcpFileError>([&] { missing.ReadMPSFile("/nonexistent/dir/model.mps"); });
    EXPECT_EQ(fe.ErrorType(), eFileNotFound);
    EXPECT_EQ(fe.FileName(), "/nonexistent/dir/model.mps");
    EXPECT_EQ(fe.FileDirectory(), " ");
    EXPECT_EQ(fe.Routine(), "MPSStdReader::OpenMPSFile");

    // A reader made without a model makes one per read and hands it over; a
    // model the caller never took is released with the reader.
    TempDir dir;
    const std::string path = dir.File("m.mps", Model({}));
    MPSStdReader* reader = nullptr;
    CreateMPSStdReaderObject(&reader, nullptr);
    ASSERT_NE(reader, nullptr);
    ILPStdDataMgr *first = nullptr, *second = nullptr;
    reader->ReadMPSFile(path.c_str());
    reader->TakeLPStdDataObject(&first);
    ModelPtr firstModel(first);
    reader->ReadMPSFile(path.c_str());
    reader->TakeLPStdDataObject(&second);
    ModelPtr secondModel(second);
    reader->Destroy();
    ASSERT_NE(first, nullptr);
    EXPECT_NE(first, second);
    EXPECT_EQ(VarNames(first), (Names{"X1", "X2"}));
    EXPECT_EQ(NonZeroCount(second), 7);
    MPSStdReader keeps;
    keeps.ReadMPSFile(path.c_str());
}
