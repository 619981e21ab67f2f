#include <clocale>
#include <cmath>
#include <cstdio>
#include <string>

#include "lpdata/ILPVariableCollection.h"
#include "tests/xmpsutil/XMPSTestSupport.h"

using namespace xmpstest;

namespace {

const char* const kSmall =
    "NAME TINY\n"
    "XTNDFMT\n"
    "XLINEAR\n"
    " N  PROFIT            0.120000E+02  GASOLINE\n"
    " L  CAP               0.100000E+01  CRUDE1\n"
    " E  BLEND            -.100000E+01  GASOLINE     CRUDE1  CRUDE2\n"
    "NONLINEAR\n"
    " G  QUAL   LNX  2.000000e+00     CRUDE1     CRUDE2   \\\n"
    "              1.000000e-01\n"
    "RHS\n"
    "    RHS1              CAP               0.500000E+03\n"
    "ENDATA\n";

const char* const kTempHead = "NAME X\nROWS\n E  R\nCOLUMNS\n    EMPTY\n    A  R  1.0\nTEMPBOUNDS\n";

}  // namespace

TEST(XMPSReaderBadInput, EveryRefusalCarriesItsTexts) {
    // Any first line but NAME, the framing lines included when broken.
    for (const char* text : {"ROWS\n", "HELLO WORLD\n", " E  R1  1.0  X\n", "", "* only a comment\n",
                             "<zemXMPS\nNAME X\nENDATA\n"}) {
        ZEM_Exception e = Thrown([&] { Read(text); });
        EXPECT_EQ(e.Name(), "MPS File Read Error") << text;
        EXPECT_EQ(e.Reason(), "Expected NAME Card") << text;
        EXPECT_EQ(e.Routine(), "XMPSReader::ReadMPSStream");
        EXPECT_EQ(e.SourceFile(), "xmpsutil");
    }
    // NONLINEAR card errors carry the card as their reason.
    const std::string nl = "NAME X\nNONLINEAR\n";
    for (const auto& [card, name] : std::vector<std::pair<std::string, std::string>>{
             {" E  R   EXPX  1.0  2.0  3.0", "Incomplete Data Entry - No Variables in Function"},
             {" E  R   1.0  A  2.0", "Numerical constants in Linear term entry"},
             {" E  R   EXPX  A", "Incomplete Data Entry - No Coefficient"},
             {" E", "Incomplete Data Entry"},
             {" Q  R   1.0  A", "Unknown Row Type Key Found"}}) {
        ZEM_Exception e = Thrown([&] { Read(nl + card + "\nENDATA\n"); });
        EXPECT_EQ(e.Name(), (card[1] == 'Q' ? "XMPS" : "MPS") + std::string(" NONLINEAR Section Error - ") + name);
        EXPECT_EQ(e.Reason(), card);
        EXPECT_EQ(e.Routine(), "XMPSReader::NONLINEARData");
        EXPECT_EQ(e.SourceFile(), "xmpsutil");
    }
    // The rest: the exception's name, reason and routine, each checked
    // unless null.
    struct Case {
        std::string text;
        const char* name;
        const char* reason = nullptr;
        const char* routine = nullptr;
    };
    const char* const kNoEnd = "Unexpected end of XMPS file - no ENDATA card";
    const char* const kHeader = "Unknown Header Card Read in MPS File";
    const char* const kEmpty = "MPS Read/Process Error";
    const std::string ab = "NAME X\nXLINEAR\n E  R  1.0  A\n E  R  1.0  B\n", temp = kTempHead;
    const Case cases[] = {
        {"NAME X\nXLINEAR\n E  R  1.0  X\n", nullptr, kNoEnd},
        // A continuation at the very end of the input ends the card, then
        // the missing ENDATA fails the read.
        {nl + " E  R  EXPX  1.0  A  \\\n", nullptr, kNoEnd},
        {"NAME X\nBOGUS\nENDATA\n", kHeader, "BOGUS"},
        // A line beyond the 1,023 characters a line holds is split; its rest
        // is read as a line of its own (here a header that does not exist).
        {nl + " E  R  EXPX  1.0  " + std::string(1500, 'A') + "\nENDATA\n", kHeader},
        {"NAME X\nXLINEAR\nRHS\nENDATA\n", kEmpty, "XLINEAR Data section appears empty - no data card following header"},
        {nl + "ENDATA\n", kEmpty, "NONLINEAR Data section appears empty - no data card following header"},
        {"NAME X\nXTNDFMT\n E  R  1.0  A\nENDATA\n", nullptr,
         "XTNDFMTData data cards entered - no data should accompany this header card"},
        {"NAME X\nINITIAL\n BS    A\nENDATA\n", "MPS INITIAL Section Error - Incomplete Data Entry - no VALUE",
         nullptr, "MPSStdReader::INITIALData"},
        {"NAME X\nINITIAL\n BS\nENDATA\n", "MPS INITIAL Section Error - Incomplete Data Entry - no COLUMN NAME"},
        {"NAME X\nINITIAL\n ZZ    A  1\nENDATA\n", "MPS INITIAL Section Error - Unknown Bound Type Key Found"},
        {temp + " LO BND2 NOSUCH 3\nENDATA\n", "MPS BOUNDS Section Error - Invalid Column Name"},
        {temp + " LO BND2 A\nENDATA\n", "XMPS TEMPBOUNDS Section Error - Incomplete Data Entry"},
        {temp + " QQ BND2 A 1\nENDATA\n", "XMPS BOUNDS Section Error - Unknown Bound Type Key Found"},
        {temp + "    BND2 A 1\nENDATA\n", "XMPS TEMPBOUNDS Section Error - Incomplete Data Entry - no KEY"},
        {"NAME X\nVARGROUPS\n IN G  NOSUCH\nENDATA\n", "MPS VARGROUPS Section Error - Invalid Column Name"},
        {ab + "COMPLEMENT\n      A  B\nENDATA\n",
         "MPS COMPLEMENT Section Error - Incomplete Data Entry - no SOURCE VARIABLE NAME"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.text.substr(0, 80));
        ZEM_Exception e = Thrown([&] { Read(c.text); });
        if (c.name) { EXPECT_EQ(e.Name(), c.name); }
        if (c.reason) { EXPECT_EQ(e.Reason(), c.reason); }
        if (c.routine) { EXPECT_EQ(e.Routine(), c.routine); }
    }
}

TEST(XMPSReaderTerms, ReadsWithAndWithoutFramingOneVariableIsACoefficientSeveralAProduct) {
    Model plain = Read(kSmall);
    Model framed = Read(std::string("<zemblockpersist type=\"XMPS\" version=\"7.2\">\n<zemXMPS>\n") +
                        kSmall + "</zemXMPS>\n</zemblockpersist>\n");
    for (IZEMMgr* m : {plain.get(), framed.get()}) {
        EXPECT_EQ(Eqns(m)->NumberOfEquations(), 4);
        EXPECT_EQ(Vars(m)->NumberOfVariables(), 3);
        EXPECT_DOUBLE_EQ(Coefficient(m, "PROFIT", "GASOLINE"), 12.0);
        EXPECT_DOUBLE_EQ(Coefficient(m, "CAP", "CRUDE1"), 1.0);
        EXPECT_DOUBLE_EQ(Eqn(m, "CAP")->GetRHS(), 500.0);
        EXPECT_EQ(Eqn(m, "QUAL")->GetType(), ZEM_EQN_GE);
        const std::vector<INonLinearity*> terms = Terms(m);
        ASSERT_EQ(terms.size(), 2u);
        EXPECT_EQ(terms[0]->GetType(), 1);
        EXPECT_STREQ(terms[0]->GetEquationPtr()->GetName(), "BLEND");
        EXPECT_EQ(VarNames(terms[0]), (std::vector<std::string>{"GASOLINE", "CRUDE1", "CRUDE2"}));
        EXPECT_EQ(Constants(terms[0]), (std::vector<double>{-1.0}));
        // The product's variables get entries of coefficient 0 in its row.
        EXPECT_DOUBLE_EQ(Coefficient(m, "BLEND", "CRUDE2"), 0.0);
        // A keyword card takes its numbers as constants across continuations.
        EXPECT_EQ(terms[1]->GetType(), 2);
        EXPECT_STREQ(terms[1]->GetNonLinearityID(), "LNX");
        EXPECT_EQ(VarNames(terms[1]), (std::vector<std::string>{"CRUDE1", "CRUDE2"}));
        EXPECT_EQ(Constants(terms[1]), (std::vector<double>{2.0, 0.1}));
    }
    // Headers are matched as prefixes.
    EXPECT_DOUBLE_EQ(Coefficient(Read("NAME X\nXLINEARSTUFF\n E  R  2.0  X\nENDATA\n").get(), "R", "X"), 2.0);
}

TEST(XMPSReaderTerms, ContinuationSkipsCommentsAndUnknownKeywordsAreKeptByName) {
    Model m = Read(
        "NAME X\nNONLINEAR\n E  R   XPOW  3.0  A  \\\n* a comment\n\n$ another\n   B 2.0  \\\n"
        "  C\n E  R   MYFUNC  1.5  A  7\nENDATA\n");
    std::vector<INonLinearity*> terms = Terms(m.get());
    ASSERT_EQ(terms.size(), 2u);
    EXPECT_EQ(VarNames(terms[0]), (std::vector<std::string>{"A", "B", "C"}));
    EXPECT_EQ(Constants(terms[0]), (std::vector<double>{3.0, 2.0}));
    EXPECT_EQ(terms[1]->GetType(), 7);
    EXPECT_STREQ(terms[1]->GetNonLinearityID(), "MYFUNC");
}

TEST(XMPSReaderTerms, RowKeysSetTypesTheFirstNIsTheObjectiveAndNamesAreCut) {
    Model m = Read(
        "NAME X\nXLINEAR\n N  OBJ  1.0  A\n N  FREE 1.0  A\n L  LE   1.0  A\n G  GE   1.0  A\n"
        "    NOKEY  1.0  A\n N  OBJ  2.0  B\n E  FREE 1.0  B\n E  OBJ  3.0  C\nENDATA\n");
    EXPECT_EQ(Eqn(m.get(), "OBJ")->GetType(), ZEM_EQN_OBJECTIVE);
    EXPECT_EQ(Eqn(m.get(), "LE")->GetType(), ZEM_EQN_LE);
    EXPECT_EQ(Eqn(m.get(), "GE")->GetType(), ZEM_EQN_GE);
    EXPECT_EQ(Eqn(m.get(), "NOKEY")->GetType(), ZEM_EQN_EQ);
    // A later key changes a row's type, but never the objective's.
    EXPECT_EQ(Eqn(m.get(), "FREE")->GetType(), ZEM_EQN_EQ);
    EXPECT_TRUE(m->MatrixIncludesObjective());
    // Equation names are cut to the name width outside the extended format.
    m = Read("NAME X\nXLINEAR\n E  ABCDEFGHIJ  1.0  X\nXTNDFMT\nXLINEAR\n E  KLMNOPQRST  1.0  X\n"
                   "ENDATA\n");
    EXPECT_NE(Eqn(m.get(), "ABCDEFGH"), nullptr);
    EXPECT_NE(Eqn(m.get(), "KLMNOPQRST"), nullptr);
}

TEST(XMPSReaderTerms, LocaleIsRestoredWhenASectionFails) {
    const std::string before = std::setlocale(LC_NUMERIC, nullptr);
    if (std::setlocale(LC_NUMERIC, "C.UTF-8") == nullptr) GTEST_SKIP() << "no C.UTF-8 locale";
    Thrown([] { Read("NAME X\nNONLINEAR\n E  R   EXPX  1.0  2.0\nENDATA\n"); });
    EXPECT_STREQ(std::setlocale(LC_NUMERIC, nullptr), "C.UTF-8");
    std::setlocale(LC_NUMERIC, before.c_str());
}

TEST(XMPSReaderSections, InitialSetsValuesAndBasisStates) {
    Model m = Read(
        "NAME X\nXLINEAR\n E  R  1.0  A\nINITIAL\n SB    NEWVAR 5.0\n NB    A  2.5\n"
        " UB                   A  3.5\n       A 4.5\nENDATA\n");
    ILPVariable* made = Var(m.get(), "NEWVAR");
    ASSERT_NE(made, nullptr);
    EXPECT_EQ(made->GetVarStatus(), 203);
    EXPECT_DOUBLE_EQ(made->GetVarValue(), 5.0);
    ILPVariable* a = Var(m.get(), "A");
    EXPECT_EQ(a->GetVarStatus(), ZEM_STATUS_NONBASIC_UB);  // a blank key leaves the state
    EXPECT_DOUBLE_EQ(a->GetVarValue(), 4.5);
}

TEST(XMPSReaderSections, TempBoundsFollowTheVariable) {
    Model m = Read(
        "NAME X\nXLINEAR\n E  R  1.0  C\n E  R  1.0  D\n E  R  1.0  F\n E  R  1.0  G\n"
        "BOUNDS\n LI BND  D  2\n FX BND  F  3\n UP BND  G  9\n"
        "TEMPBOUNDS\n LO BND2 C  4\n LO BND2 D  4\n LO BND2 F  4\n FX BND2 G  6\n UP BND2 C  1\n"
        "ENDATA\n");
    EXPECT_DOUBLE_EQ(Var(m.get(), "C")->GetTempBoundLower(), 4.0);
    EXPECT_DOUBLE_EQ(Var(m.get(), "D")->GetTempBoundLower(), 0.0);  // discrete
    EXPECT_DOUBLE_EQ(Var(m.get(), "F")->GetTempBoundLower(), 0.0);  // fixed
    EXPECT_DOUBLE_EQ(Var(m.get(), "G")->GetTempBoundLower(), 6.0);
    EXPECT_DOUBLE_EQ(Var(m.get(), "C")->GetBoundUpper(), ZEM_INFINITY);
    // A column without entries is not made by its temporary bound.
    m = Read(kTempHead + std::string(" LO BND2 EMPTY 3\nENDATA\n"));
    EXPECT_EQ(Var(m.get(), "EMPTY"), nullptr);
}

TEST(XMPSReaderSections, GroupsKeepTheirFirstDirectionAndExternalModelsAreSkipped) {
    Model m = Read(
        "NAME X\nXLINEAR\n E  R  1.0  A\n E  R  1.0  B\nVARGROUPS\n IN FEEDS  A\n OT FEEDS  B\n XX OTHER  B\n"
        "EXTERNMDLS\n BLOCK1 whatever 1 2 3\nENDATA\n");
    EXPECT_EQ(Vars(m.get())->NumberOfVariables(), 2);
    // A group keeps the direction of its first card.
    ILPVariableCollection* feeds = nullptr;
    m->FindNamedVarCollection("FEEDS", &feeds);
    ASSERT_NE(feeds, nullptr);
    EXPECT_EQ(feeds->GetDirection(), 1);
    EXPECT_EQ(feeds->CollectionSize(), 2);
    ILPVariableCollection* other = nullptr;
    m->FindNamedVarCollection("OTHER", &other);
    ASSERT_NE(other, nullptr);
    EXPECT_EQ(other->GetDirection(), 0);
}

namespace {
// Reaches the protected handlers.
class ProbeReader : public XMPSReader {
public:
    using XMPSReader::XMPSReader;
    void CallNonLinear() { NONLINEARData(); }
    void CallXLinear() { XLINEARData(); }
    void CallInitial() { INITIALData(); }
    void SetSection(int16_t s) { m_section = s; }
    void Attach(std::istream* in) { AttachInput(in); }
};
}  // namespace

TEST(XMPSReaderHandlers, WrongStateNamesTheHandlerAndFixedColumnXLinearRule) {
    Model m = NewModel();
    ProbeReader r(m.get(), false);
    ZEM_Exception e = Thrown([&] { r.CallNonLinear(); });
    EXPECT_EQ(e.Name(), "MPS Read/Process Synchronization Error");
    EXPECT_EQ(e.Reason(), "NONLINEARData method invoked in wrong state");
    EXPECT_EQ(e.Routine(), "XMPSReader:NONLINEARData");
    EXPECT_EQ(Thrown([&] { r.CallXLinear(); }).Routine(), "XMPSReader:XLINEARData");
    EXPECT_EQ(Thrown([&] { r.CallInitial(); }).Routine(), "XMPSReader::INITIALData");
    // Fixed columns in the standard layout: key at 1, equation at 4,
    // coefficient at 14, names from 28 on, each 8 wide with 2 blanks between.
    std::stringstream in(" E  ROW1      2.5           VARA      VARB\n"
                         " L  ROW2      1.5           VARA\nENDATA\n");
    r.Attach(&in);
    r.SetSection(kXMPSXLINEAR);
    r.CallXLinear();
    EXPECT_DOUBLE_EQ(Coefficient(m.get(), "ROW2", "VARA"), 1.5);
    EXPECT_EQ(Eqn(m.get(), "ROW2")->GetType(), ZEM_EQN_LE);
    std::vector<INonLinearity*> terms = Terms(m.get());
    ASSERT_EQ(terms.size(), 1u);
    EXPECT_EQ(VarNames(terms[0]), (std::vector<std::string>{"VARA", "VARB"}));
    EXPECT_EQ(Constants(terms[0]), (std::vector<double>{2.5}));
}

TEST(XMPSReaderHandlers, EndlessContinuationEndsWithTheInput) {
    std::string text = "NAME X\nNONLINEAR\n E  R  EXPX  1.0  A";
    for (int i = 0; i < 2000; ++i) text += "  \\\n B";
    text += "\nENDATA\n";
    Model m = Read(text);
    EXPECT_EQ(Terms(m.get())[0]->NumberOfVariableTerms(), 2001);
}

TEST(XMPSReaderBadInput, OverlongTokensOddNumbersAndRowsBeforeAFailure) {
    // Tokens are cut to 128 characters.
    const std::string name200(200, 'V');
    Model m = Read("NAME X\nXTNDFMT\nXLINEAR\n E  R  1.0  " + name200 + "\nENDATA\n");
    EXPECT_NE(Var(m.get(), std::string(128, 'V').c_str()), nullptr);
    // The lenient number test lets "12x" and "-" through as coefficients;
    // they convert by their leading numeric part.
    m = Read("NAME X\nXLINEAR\n E  R  12x  A\n E  R  -  B\nENDATA\n");
    EXPECT_DOUBLE_EQ(Coefficient(m.get(), "R", "A"), 12.0);
    EXPECT_DOUBLE_EQ(Coefficient(m.get(), "R", "B"), 0.0);
    // Rows read before a failure keep their types.
    m = NewModel();
    XMPSReader reader(m.get(), false);
    std::stringstream in("NAME X\nXLINEAR\n L  R1  1.0  A\n G  R2  1.0  A\n Q  R3  1.0  B\nENDATA\n");
    EXPECT_THROW(reader.ReadMPSStream(&in), ZEM_Exception);
    EXPECT_EQ(Eqn(m.get(), "R1")->GetType(), ZEM_EQN_LE);
    EXPECT_EQ(Eqn(m.get(), "R2")->GetType(), ZEM_EQN_GE);
    EXPECT_EQ(Eqn(m.get(), "R3"), nullptr);
}

// Cards are parsed from what the look-ahead found on their lines: a file of
// several input blocks, whose lines move when the buffer is refilled, and a
// line cut short by a carriage return must still come out card by card.
TEST(XMPSReaderLookAhead, EveryCardOfALongFileKeepsItsOwnFields) {
    constexpr int kRows = 50000;
    std::string text = "NAME BIG\nXLINEAR\n";
    char line[96];
    for (int i = 0; i < kRows; ++i) {
        std::snprintf(line, sizeof line, " %c  R%05d  %d.5  C%05d\n", i == 0 ? 'N' : 'E', i, i, i / 2);
        text += line;
    }
    text += "RHS\n";
    for (int i = 1; i < kRows; ++i) {
        std::snprintf(line, sizeof line, "    RHS1  R%05d  %d.25%s\n", i, i, i == 7 ? "\r 99" : "");
        text += line;
    }
    text += "ENDATA\n";
    ASSERT_GT(text.size(), 2u << 20);
    Model m = Read(text);
    char row[16], col[16];
    for (int i = 0; i < kRows; ++i) {
        std::snprintf(row, sizeof row, "R%05d", i);
        std::snprintf(col, sizeof col, "C%05d", i / 2);
        ASSERT_EQ(Coefficient(m.get(), row, col), i + 0.5) << row;
        if (i > 0) {
            ASSERT_EQ(Eqn(m.get(), row)->GetRHS(), i + 0.25) << row;
        }
    }
}
