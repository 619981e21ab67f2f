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
        "NAME          TEST",
        "ROWS",
        Card("N", "COST"),
        Card("L", "LIM1"),
        Card("G", "LIM2"),
        Card("E", "MYEQN"),
        "COLUMNS",
        Card("", "X1", "COST", "1.0", "LIM1", "1.0"),
        Card("", "X1", "LIM2", "1.0"),
        Card("", "X2", "COST", "2.0", "LIM1", "1.0"),
        Card("", "X2", "MYEQN", "-1.0", "LIM2", "3.0"),
    };
    lines.insert(lines.end(), more.begin(), more.end());
    return Lines(lines);
}

std::string Model(const std::vector<std::string>& sections) {
    std::vector<std::string> lines = sections;
    lines.push_back("ENDATA");
    return Head(lines);
}

void ExpectCardError(const std::string& text, const char* name, const std::string& card,
                     const char* routine) {
    const ZEM_Exception e = ReadError(text);
    EXPECT_EQ(e.Name(), name);
    EXPECT_EQ(e.Reason(), card);
    EXPECT_EQ(e.Routine(), routine);
    EXPECT_EQ(e.SourceFile(), "mpsutil");
    EXPECT_GT(e.Line(), 0);
}

}  // namespace

TEST(MPSStdReaderRows, KeysGiveTypesAndOnlyTheFirstNRowIsTheObjective) {
    ModelPtr m = Read(Lines({"NAME", "ROWS", Card("N", "OBJ"), Card("N", "FREE1"), Card("LE", "R1"),
                             Card("GE", "R2"), Card("L", "R3"), Card("NE", "R4"), Card(" G", "R5"),
                             "COLUMNS", Card("", "X", "OBJ", "1", "FREE1", "1"),
                             Card("", "X", "R1", "1", "R2", "1"), Card("", "X", "R3", "1", "R4", "1"),
                             Card("", "X", "R5", "1"), "ENDATA"}));
    EXPECT_TRUE(m->MatrixIncludesObjective());
    EXPECT_EQ(Eqn(m.get(), "OBJ")->GetType(), ZEM_EQN_OBJECTIVE);
    EXPECT_EQ(Eqn(m.get(), "FREE1")->GetType(), ZEM_EQN_FREE);
    // E is tested before G and L, N before everything.
    EXPECT_EQ(Eqn(m.get(), "R1")->GetType(), ZEM_EQN_EQ);
    EXPECT_EQ(Eqn(m.get(), "R2")->GetType(), ZEM_EQN_EQ);
    EXPECT_EQ(Eqn(m.get(), "R3")->GetType(), ZEM_EQN_LE);
    EXPECT_EQ(Eqn(m.get(), "R4")->GetType(), ZEM_EQN_FREE);
    EXPECT_EQ(Eqn(m.get(), "R5")->GetType(), ZEM_EQN_GE);
    EXPECT_EQ(EqnNames(m.get()),
              (std::vector<std::string>{"OBJ", "FREE1", "R1", "R2", "R3", "R4", "R5"}));
}

TEST(MPSStdReaderRows, RefusesBadKeysDuplicatesAndMissingNames) {
    const std::string bad = Card("X", "R1");
    ExpectCardError(Lines({"NAME", "ROWS", bad, "COLUMNS", Card("", "X", "R1", "1"), "ENDATA"}),
                    "MPS ROWS Section Error - Unknown Row Type Key Found", bad,
                    "MPSStdReader::ROWSData");
    const std::string dup = Card("L", "R1");
    ExpectCardError(Lines({"NAME", "ROWS", Card("E", "R1"), dup, "COLUMNS", "ENDATA"}),
                    "MPS ROWS Section Error - Row Name Already Used", dup, "MPSStdReader::ROWSData");
    ExpectCardError(Lines({"NAME", "ROWS", " N", "COLUMNS", "ENDATA"}),
                    "MPS ROWS Section Error - Incomplete Data Entry", " N", "MPSStdReader::ROWSData");
    const ZEM_Exception empty = ReadError(Lines({"NAME", "ROWS", "COLUMNS", "ENDATA"}));
    EXPECT_EQ(empty.Name(), "MPS Read/Process Error");
    EXPECT_EQ(empty.Reason(), "ROWSData section appears empty - no data card following header");
}

TEST(MPSStdReaderColumns, EntriesAreSummedAndColumnsMadeInOrderOfFirstAppearance) {
    ModelPtr m = Read(Lines({"NAME", "ROWS", Card("N", "COST"), Card("L", "R1"), "COLUMNS",
                             Card("", "B", "R1", "1.5"), Card("", "A", "COST", "2"),
                             Card("", "B", "COST", "-1", "R1", "2.25"), Card("", "A", "R1", "4"),
                             "ENDATA"}));
    EXPECT_EQ(VarNames(m.get()), (std::vector<std::string>{"B", "A"}));
    EXPECT_EQ(Coef(m.get(), "R1", "B"), 3.75);
    EXPECT_EQ(Coef(m.get(), "COST", "B"), -1.0);
    EXPECT_EQ(Coef(m.get(), "COST", "A"), 2.0);
    EXPECT_EQ(NonZeroCount(m.get()), 4);
    EXPECT_EQ(Var(m.get(), "B")->GetNumberNZ(), 2);
    EXPECT_EQ(Eqn(m.get(), "R1")->GetNumberNZ(), 2);
}

TEST(MPSStdReaderColumns, NumbersFollowStrtodRules) {
    ModelPtr m = Read(Lines({"NAME", "ROWS", Card("N", "COST"), Card("L", "R1"), Card("L", "R2"),
                             "COLUMNS", Card("", "X", "COST", "1.5E+2", "R1", "12abc"),
                             Card("", "X", "R2", "junk"), "ENDATA"}));
    EXPECT_EQ(Coef(m.get(), "COST", "X"), 150.0);
    EXPECT_EQ(Coef(m.get(), "R1", "X"), 12.0);
    EXPECT_EQ(Coef(m.get(), "R2", "X"), 0.0);
}

TEST(MPSStdReaderColumns, BlanksInsideNamesBecomeUnderscores) {
    ModelPtr m = Read(Lines({"NAME", "ROWS", Card("N", "MY ROW"), "COLUMNS",
                             Card("", "AB CD", "MY ROW", "1"), Card("", "ABCD", "MY ROW", "2"),
                             "ENDATA"}));
    EXPECT_EQ(EqnNames(m.get()), (std::vector<std::string>{"MY_ROW"}));
    EXPECT_EQ(VarNames(m.get()), (std::vector<std::string>{"AB_CD", "ABCD"}));
}

TEST(MPSStdReaderColumns, RefusesIncompleteCardsAndUnknownRows) {
    const char* kIncomplete = "MPS COLUMNS Section Error - Incomplete Data Entry";
    const char* kRoutine = "MPSStdReader::COLUMNSData";
    // The line ends before the number field.
    const std::string shortCard = "    X1        LIM1";
    ExpectCardError(Head({shortCard, "ENDATA"}), kIncomplete, shortCard, kRoutine);
    const std::string noSecondValue = Card("", "X3", "COST", "1", "LIM1");
    ExpectCardError(Head({noSecondValue, "ENDATA"}), kIncomplete, noSecondValue, kRoutine);
    // A continuation card without a column name.
    const std::string noColumn = Card("", "", "LIM1", "1.0");
    ExpectCardError(Head({noColumn, "ENDATA"}), kIncomplete, noColumn, kRoutine);
    // Integer markers are not understood: 'MARKER' is a row without a value.
    const std::string marker = "    MARK0001  'MARKER'                 'INTORG'";
    ExpectCardError(Head({marker, "ENDATA"}), kIncomplete, marker, kRoutine);
    const std::string unknownRow = Card("", "X3", "NOROW", "1");
    ExpectCardError(Head({unknownRow, "ENDATA"}), "MPS COLUMNS Section Error - Invalid Row Name",
                    unknownRow, kRoutine);
    const ZEM_Exception empty = ReadError(Lines({"NAME", "ROWS", Card("N", "C"), "COLUMNS", "RHS",
                                                 "ENDATA"}));
    EXPECT_EQ(empty.Name(), "MPS Read/Process Error");
    EXPECT_EQ(empty.Reason(), "COLUMNSData section appears empty - no data card following header");
}

TEST(MPSStdReaderColumns, ColumnWithoutEntriesIsRememberedNotMade) {
    ModelPtr m = Read(Head({Card("", "EMPTY"), "BOUNDS", Card("UP", "BND", "EMPTY", "4"),
                            Card("UP", "BND", "NEWCOL", "7"), "ENDATA"}));
    EXPECT_EQ(Var(m.get(), "EMPTY"), nullptr);
    ILPVariable* made = Var(m.get(), "NEWCOL");
    ASSERT_NE(made, nullptr);
    EXPECT_EQ(made->GetBoundUpper(), 7.0);
    EXPECT_EQ(VarNames(m.get()), (std::vector<std::string>{"X1", "X2", "NEWCOL"}));
}

TEST(MPSStdReaderRhs, SetsValuesWithTheFirstPairLenientAndTheSecondStrict) {
    ModelPtr m = Read(Model({"RHS", Card("", "RHS", "LIM1", "4.0", "LIM2", "1.0"),
                             Card("", "RHS", "NOSUCH", "9.0", "COST", "-3.5"),
                             Card("", "RHS", "MYEQN", "2")}));
    EXPECT_EQ(Eqn(m.get(), "LIM1")->GetRHS(), 4.0);
    EXPECT_EQ(Eqn(m.get(), "LIM2")->GetRHS(), 1.0);
    EXPECT_EQ(Eqn(m.get(), "COST")->GetRHS(), -3.5);
    EXPECT_EQ(Eqn(m.get(), "MYEQN")->GetRHS(), 2.0);

    const std::string second = Card("", "RHS", "LIM1", "4.0", "NOSUCH", "1.0");
    ExpectCardError(Model({"RHS", second}), "MPS RHS Section Error - Invalid Row Name", second,
                    "MPSStdReader::RHSData");
    const std::string noSet = Card("", "", "LIM1", "4.0");
    ExpectCardError(Model({"RHS", noSet}), "MPS RHS Section Error - Incomplete Data Entry", noSet,
                    "MPSStdReader::RHSData");
    const std::string noValue = Card("", "RHS", "NOSUCH");
    ExpectCardError(Model({"RHS", noValue}), "MPS RHS Section Error - Incomplete Data Entry",
                    noValue, "MPSStdReader::RHSData");
}

TEST(MPSStdReaderRanges, RangesSetRowLimitsAndZeroMakesAnEquality) {
    ModelPtr m = Read(Model({"RHS", Card("", "RHS", "LIM1", "10", "LIM2", "10"), "RANGES",
                             Card("", "RNG", "LIM1", "-5", "LIM2", "-5")}));
    ILPEquation* le = Eqn(m.get(), "LIM1");
    ILPEquation* ge = Eqn(m.get(), "LIM2");
    EXPECT_EQ(le->GetRHSLo(), 5.0);
    EXPECT_EQ(le->GetRHSUp(), 10.0);
    EXPECT_EQ(ge->GetRHSLo(), 10.0);
    EXPECT_EQ(ge->GetRHSUp(), 15.0);
    EXPECT_EQ(ge->GetRange(), -5.0);

    // RANGES before RHS gives the same limits: RHS re-derives them.
    ModelPtr late = Read(Model({"RANGES", Card("", "RNG", "LIM1", "2"), "RHS",
                                Card("", "RHS", "LIM1", "6")}));
    EXPECT_EQ(Eqn(late.get(), "LIM1")->GetRHSLo(), 4.0);
    EXPECT_EQ(Eqn(late.get(), "LIM1")->GetRHSUp(), 6.0);

    ModelPtr zero = Read(Model({"RANGES", Card("", "RNG", "LIM1", "0.0", "LIM2", "3")}));
    EXPECT_EQ(Eqn(zero.get(), "LIM1")->GetType(), ZEM_EQN_EQ);
    EXPECT_EQ(Eqn(zero.get(), "LIM2")->GetType(), ZEM_EQN_GE);

    for (const std::string& card :
         {Card("", "RNG", "NOSUCH", "1"), Card("", "RNG", "LIM1", "1", "NOSUCH", "1")}) {
        ExpectCardError(Model({"RANGES", card}), "MPS RANGES Section Error - Invalid Row Name", card,
                        "MPSStdReader::RANGESData");
    }
    const std::string noValue = Card("", "RNG", "LIM1");
    ExpectCardError(Model({"RANGES", noValue}), "MPS RANGES Section Error - Incomplete Data Entry",
                    noValue, "MPSStdReader::RANGESData");
}

TEST(MPSStdReaderBounds, EveryKeyHasItsEffect) {
    ModelPtr m = Read(Lines({
        "NAME", "ROWS", Card("N", "C"), "COLUMNS",
        Card("", "LO", "C", "1"), Card("", "UP", "C", "1"), Card("", "SB", "C", "1"),
        Card("", "FX", "C", "1"), Card("", "FR", "C", "1"), Card("", "MI", "C", "1"),
        Card("", "PL", "C", "1"), Card("", "BV", "C", "1"), Card("", "LI", "C", "1"),
        Card("", "UI", "C", "1"), Card("", "SC", "C", "1"), Card("", "UPNEG", "C", "1"),
        "BOUNDS",
        Card("UP", "B", "LO", "9"),  // an upper bound first: LO must keep it
        Card("LO", "B", "LO", "2.5"), Card("UP", "B", "UP", "8"), Card("SB", "B", "SB", "0.5"),
        Card("FX", "B", "FX", "3"), Card("FR", "B", "FR"), Card("MI", "B", "MI"),
        Card("UP", "B", "PL", "5"), Card("PL", "B", "PL"), Card("BV", "B", "BV"),
        Card("LI", "B", "LI", "-2"), Card("UI", "B", "UI", "12"), Card("SC", "B", "SC", "4"),
        Card("UP", "B", "UPNEG", "-3"), "ENDATA"}));
    auto v = [&](const char* n) { return Var(m.get(), n); };
    EXPECT_EQ(v("LO")->GetBoundLower(), 2.5);
    EXPECT_EQ(v("LO")->GetBoundUpper(), 9.0);
    EXPECT_EQ(v("UP")->GetBoundUpper(), 8.0);
    EXPECT_EQ(v("UP")->GetBoundLower(), 0.0);
    EXPECT_EQ(v("SB")->GetVarStatus(), 203);
    EXPECT_EQ(v("SB")->GetStepBound(), 0.5);
    EXPECT_EQ(v("SB")->GetBoundUpper(), 1e20);
    EXPECT_EQ(v("FX")->GetVarStatus(), ZEM_STATUS_FIXED);
    EXPECT_EQ(v("FX")->GetVarValue(), 3.0);
    EXPECT_EQ(v("FX")->GetBoundLower(), 3.0);
    EXPECT_EQ(v("FX")->GetBoundUpper(), 3.0);
    EXPECT_EQ(v("FR")->GetBoundLower(), -1e20);
    EXPECT_EQ(v("FR")->GetBoundUpper(), 1e20);
    EXPECT_EQ(v("MI")->GetBoundLower(), -1e20);
    EXPECT_EQ(v("MI")->GetBoundUpper(), 1e20);
    EXPECT_EQ(v("PL")->GetBoundUpper(), 1e20);
    EXPECT_EQ(v("BV")->GetVarType(), ZEM_VAR_BINARY);
    EXPECT_EQ(v("BV")->GetBoundLower(), 0.0);
    EXPECT_EQ(v("BV")->GetBoundUpper(), 1.0);
    EXPECT_EQ(v("LI")->GetVarType(), ZEM_VAR_DISCRETE);
    EXPECT_EQ(v("LI")->GetBoundLower(), -2.0);
    EXPECT_EQ(v("UI")->GetVarType(), ZEM_VAR_DISCRETE);
    EXPECT_EQ(v("UI")->GetBoundUpper(), 12.0);
    // The semi-continuous value is kept as the lower bound.
    EXPECT_EQ(v("SC")->GetVarType(), ZEM_VAR_SEMICONTINUOUS);
    EXPECT_EQ(v("SC")->GetBoundLower(), 4.0);
    EXPECT_EQ(v("SC")->GetBoundUpper(), 1e20);
    // A negative upper bound leaves the lower bound alone.
    EXPECT_EQ(v("UPNEG")->GetBoundUpper(), -3.0);
    EXPECT_EQ(v("UPNEG")->GetBoundLower(), 0.0);
    // Untouched defaults.
    EXPECT_EQ(v("UP")->GetVarStatus(), ZEM_STATUS_BASIC);
    EXPECT_EQ(v("UP")->GetVarType(), ZEM_VAR_CONTINUOUS);
}

TEST(MPSStdReaderBounds, RefusesMissingPartsAndUnknownKeys) {
    const char* kRoutine = "MPSStdReader::BOUNDSData";
    const std::string noKey = Card("", "BND", "X1", "1");
    ExpectCardError(Model({"BOUNDS", noKey}), "MPS BOUNDS Section Error - Incomplete Data Entry - no KEY",
                    noKey, kRoutine);
    const std::string noColumn = Card("UP", "BND", "", "1");
    ExpectCardError(Model({"BOUNDS", noColumn}),
                    "MPS BOUNDS Section Error - Incomplete Data Entry - no COLUMN NAME", noColumn,
                    kRoutine);
    const std::string noValue = Card("UP", "BND", "X1");
    ExpectCardError(Model({"BOUNDS", noValue}), "MPS BOUNDS Section Error - Incomplete Data Entry",
                    noValue, kRoutine);
    for (const char* key : {"XX", "U", "up", "BX"}) {
        const std::string card = Card(key, "BND", "X1", "1");
        ExpectCardError(Model({"BOUNDS", card}),
                        "MPS BOUNDS Section Error - Unknown Bound Type Key Found", card, kRoutine);
    }
}

TEST(MPSStdReaderSets, SetsCollectTheirColumnsByKeyType) {
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

    const char* kRoutine = "MPSStdReader::SETSData";
    const std::string badKey = Card("S4", "SOS", "X1", "1");
    ExpectCardError(Model({"SETS", badKey}), "MPS SETS Section Error - Unrecognized SOS Type Key",
                    badKey, kRoutine);
    const std::string noName = Card("S1", "", "X1", "1");
    ExpectCardError(Model({"SETS", noName}), "MPS SETS Section Error - Incomplete Data Entry", noName,
                    kRoutine);
    const std::string badColumn = Card("S1", "SOS", "X1", "1", "NOCOL", "2");
    ExpectCardError(Model({"SETS", badColumn}), "MPS SETS Section Error - Invalid Column Name",
                    badColumn, kRoutine);
}

TEST(MPSStdReaderFile, SectionsRepeatInAnyOrderAndEmptyRowsAreRemoved) {
    ModelPtr m = Read(Lines({"NAME", "ROWS", Card("N", "COST"), Card("L", "UNUSED"), Card("L", "R1"),
                             Card("G", "R2"), "COLUMNS", Card("", "X", "COST", "1", "R1", "1"),
                             Card("", "Y", "R2", "1"), "BOUNDS", Card("UP", "B", "X", "4"), "RHS",
                             Card("", "RHS", "UNUSED", "3", "R1", "5"), "BOUNDS",
                             Card("LO", "B", "Y", "1"), "RHS", Card("", "RHS", "R2", "2"), "ENDATA"}));
    // UNUSED had an RHS but no coefficient: it is gone, the rest renumbered.
    EXPECT_EQ(EqnNames(m.get()), (std::vector<std::string>{"COST", "R1", "R2"}));
    EXPECT_EQ(Eqn(m.get(), "R1")->GetIndex(), 2);
    EXPECT_EQ(Eqn(m.get(), "R2")->GetIndex(), 3);
    EXPECT_EQ(Eqn(m.get(), "R1")->GetRHS(), 5.0);
    EXPECT_EQ(Eqn(m.get(), "R2")->GetRHS(), 2.0);
    EXPECT_EQ(Var(m.get(), "X")->GetBoundUpper(), 4.0);
    EXPECT_EQ(Var(m.get(), "Y")->GetBoundLower(), 1.0);
    EXPECT_EQ(Coef(m.get(), "R2", "Y"), 1.0);
}

TEST(MPSStdReaderFile, CommentsBlankLinesAndLineEndings) {
    ModelPtr m = Read("* comment\r\n\r\n$ another\nNAME\r\nROWS\r\n N  COST\r\n\n L  R1   \r\n"
                      "COLUMNS\r\n" + Card("", "X", "COST", "1.0", "R1", "2.0") +
                      "\r\n* inside\r\nENDATA\r\n");
    EXPECT_EQ(EqnNames(m.get()), (std::vector<std::string>{"COST", "R1"}));
    EXPECT_EQ(Coef(m.get(), "R1", "X"), 2.0);
}

TEST(MPSStdReaderFile, NameCardSetsOnlyAnEmptyTitle) {
    const std::string body = Lines({"ROWS", Card("N", "C"), "COLUMNS", Card("", "X", "C", "1"), "ENDATA"});
    ModelPtr kept = Read("NAME          PLAN\n" + body);
    std::string title;
    kept->GetModelTitle(title);
    EXPECT_EQ(title, "ZEMMODEL");

    auto readTitle = [&](const std::string& nameCard) {
        ModelPtr m = NewModel();
        m->SetModelTitle("");
        ReadInto(m.get(), nameCard + "\n" + body);
        std::string t;
        m->GetModelTitle(t);
        return t;
    };
    EXPECT_EQ(readTitle("NAME          PLAN"), "PLAN");
    // The name is read as an 8-wide field from column 11, blanks included.
    EXPECT_EQ(readTitle("NAME          ICECREAM"), "ICEC");
    EXPECT_EQ(readTitle("NAME      MODEL123"), "MODEL123");
    EXPECT_EQ(readTitle("NAME      MY MODEL"), "MY_MODEL");
    EXPECT_EQ(readTitle("NAME"), "NOTITLE");
    EXPECT_EQ(readTitle("NAME      "), "NOTITLE");
}

TEST(MPSStdReaderFile, RefusesMisplacedOrUnknownHeaders) {
    const char* kRoutine = "MPSStdReader::ReadMPSFile";
    struct Case {
        std::string text;
        const char* name;
        const char* reason;
    } cases[] = {
        {"", "MPS File Read Error", "Expected NAME Card"},
        {"ROWS\n", "MPS File Read Error", "Expected NAME Card"},
        {"NAME\nCOLUMNS\n", "MPS File Read Error", "Expected ROWS Card"},
        {"NAME\n N  C\nROWS\n", "MPS File Read Error", "Expected ROWS Card"},
        {"NAME\nROWS\n N  C\nRHS\n", "MPS File Read Error", "Expected COLUMNS Card"},
        {Head(), "MPS File Read Error", "Unexpected end of MPS file - no ENDATA card"},
        {Head({"RHS"}), "MPS File Read Error", "Unexpected end of MPS file - no ENDATA card"},
    };
    for (const Case& c : cases) {
        const ZEM_Exception e = ReadError(c.text);
        EXPECT_EQ(e.Name(), c.name) << c.text;
        EXPECT_EQ(e.Reason(), c.reason) << c.text;
        EXPECT_EQ(e.Routine(), kRoutine);
    }
    ExpectCardError(Head({"OBJSENSE", "ENDATA"}), "Unknown Header Card Read in MPS File", "OBJSENSE",
                    "MPSStdReader::ReadMPSCard");
    ExpectCardError(Head({"\tRHS", "ENDATA"}), "Unknown Header Card Read in MPS File", "\tRHS",
                    "MPSStdReader::ReadMPSCard");
    ExpectCardError(Head({"ROWS", Card("L", "R9"), "ENDATA"}), "Unexpected Header Card Read in MPS File",
                    "ROWS", kRoutine);
    // Header words are matched as prefixes.
    ModelPtr m = Read(Head({"RHSIDE", Card("", "RHS", "LIM1", "3"), "ENDATAXYZ"}));
    EXPECT_EQ(Eqn(m.get(), "LIM1")->GetRHS(), 3.0);
}

TEST(MPSStdReaderFile, LongLinesAreSplitIntoLinesOf1023Characters) {
    // A comment longer than the line buffer: its remainder is read as a
    // line of its own, here an unknown header card.
    const std::string longComment = "*" + std::string(1100, 'x');
    const ZEM_Exception e = ReadError(Head({longComment, "ENDATA"}));
    EXPECT_EQ(e.Name(), "Unknown Header Card Read in MPS File");
    EXPECT_EQ(e.Reason(), std::string(1101 - 1023, 'x'));
    // Trailing blanks past the buffer come back as a card of blanks.
    const std::string padded = Card("", "X3", "LIM1", "1") + std::string(2000, ' ');
    const ZEM_Exception blanks = ReadError(Head({padded, "ENDATA"}));
    EXPECT_EQ(blanks.Name(), "MPS COLUMNS Section Error - Incomplete Data Entry");
    EXPECT_EQ(blanks.Reason(), std::string(padded.size() - 1023, ' '));
    // A long line that ends exactly at the buffer is read whole.
    const std::string exact = Card("", "X3", "LIM1", "1") + std::string(1023 - 36, ' ');
    ModelPtr m = Read(Head({exact, "ENDATA"}));
    EXPECT_EQ(Coef(m.get(), "LIM1", "X3"), 1.0);
}

TEST(MPSStdReaderFile, BinaryBytesEndInTheLibraryException) {
    std::string junk = Head();
    junk += std::string("\x01\xff\x00\x80 \x00", 6) + "\n";
    junk += " \x02\x03\x04\x05\x06\x07\x08\x09\x0a\x0b\x0c\xfe\xfd\n";
    const ZEM_Exception e = ReadError(junk);
    EXPECT_EQ(e.Name(), "Unknown Header Card Read in MPS File");
    // A NUL byte ends a line's text: the second pair after it is not read.
    const std::string withNul = Card("", "X3", "LIM1", "1.0") + std::string("\0", 1) + "  LIM2  7";
    ModelPtr m = Read(Head({withNul, "ENDATA"}));
    EXPECT_EQ(Coef(m.get(), "LIM1", "X3"), 1.0);
    EXPECT_TRUE(std::isnan(Coef(m.get(), "LIM2", "X3")));
}

TEST(MPSStdReaderFile, MissingFileIsAFileNotFoundError) {
    MPSStdReader reader;
    try {
        reader.ReadMPSFile("/nonexistent/dir/model.mps");
        FAIL() << "no exception";
    } catch (ZEM_ExcpFileError& e) {
        EXPECT_EQ(e.ErrorType(), eFileNotFound);
        EXPECT_EQ(e.FileName(), "/nonexistent/dir/model.mps");
        EXPECT_EQ(e.FileDirectory(), " ");
        EXPECT_EQ(e.Routine(), "MPSStdReader::OpenMPSFile");
    }
}

TEST(MPSStdReaderFile, ReaderMakesItsOwnModelAndHandsItOver) {
    TempDir dir;
    const std::string path = dir.File("m.mps", Model({}));
    MPSStdReader* reader = nullptr;
    CreateMPSStdReaderObject(&reader, nullptr);
    ASSERT_NE(reader, nullptr);
    reader->ReadMPSFile(path.c_str());
    ILPStdDataMgr* raw = nullptr;
    reader->TakeLPStdDataObject(&raw);
    reader->Destroy();
    ASSERT_NE(raw, nullptr);
    ModelPtr model(raw);
    EXPECT_EQ(VarNames(model.get()), (std::vector<std::string>{"X1", "X2"}));

    // After handing a model over, the next read makes a fresh one; a model
    // the caller never took is released with the reader.
    MPSStdReader again;
    again.ReadMPSFile(path.c_str());
    ILPStdDataMgr* first = nullptr;
    again.TakeLPStdDataObject(&first);
    ModelPtr firstModel(first);
    again.ReadMPSFile(path.c_str());
    ILPStdDataMgr* second = nullptr;
    again.TakeLPStdDataObject(&second);
    ModelPtr secondModel(second);
    EXPECT_NE(first, second);
    EXPECT_EQ(NonZeroCount(second), 7);
    MPSStdReader keeps;
    keeps.ReadMPSFile(path.c_str());
}

TEST(MPSStdReaderFile, ErrorsTellTheInputLineInTheTraceback) {
    ZEM_Exception e = ReadError(Head({Card("", "X3", "NOROW", "1"), "ENDATA"}));
    ASSERT_NE(e.Getbufptr(), nullptr);
    EXPECT_EQ(e.Getbufptr()->str(), "MPS input line 12\n");
}

TEST(MPSStdReaderFile, ExtendedWidthsReadLongNames) {
    const std::string longRow(100, 'R');
    const std::string longCol(128, 'C');
    auto wide = [](const std::string& key, const std::string& n1, const std::string& n2 = "",
                   const std::string& v1 = "") {
        std::string line(300, ' ');
        line.replace(1, key.size(), key);
        line.replace(4, n1.size(), n1);
        line.replace(134, n2.size(), n2);
        line.replace(264, v1.size(), v1);
        line.erase(line.find_last_not_of(' ') + 1);
        return line;
    };
    ModelPtr m = NewModel();
    MPSStdReader reader(m.get(), true);
    std::istringstream in(Lines({"NAME", "ROWS", wide("N", longRow), "COLUMNS",
                                 wide("", longCol, longRow, "2.5"), "ENDATA"}));
    reader.ReadMPSFromStream(in);
    EXPECT_EQ(Coef(m.get(), longRow.c_str(), longCol.c_str()), 2.5);
}
