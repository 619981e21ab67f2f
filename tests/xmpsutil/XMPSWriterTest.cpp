#include <cstdio>
#include <fstream>
#include <string>

#include "tests/xmpsutil/XMPSTestSupport.h"
#include "xmpsutil/XMPSManager.h"

using namespace xmpstest;

namespace {

Model OneRowModel(double coefficient) {
    Model m = NewModel();
    ILPEquation* e = Eqns(m.get())->InsertEquation("ROW");
    e->SetType(ZEM_EQN_LE);
    Vars(m.get())->InsertVariable("X");
    Vars(m.get())->InsertVariable("Y");
    ILPNonZero* nz = nullptr;
    m->InsertMatrixEntry("ROW", "X", coefficient, &nz);
    m->InsertMatrixEntry("ROW", "Y", 2.0, &nz);
    return m;
}

}  // namespace

// The whole text, card by card: framing, section order, number forms, row
// letters, and the bound, temporary bound and initial cards of each kind of
// column.
TEST(XMPSWriterLayout, EveryCardOfASmallModel) {
    Model m = OneRowModel(0.999995);
    m->SetModelTitle("PLANT");
    ILPEquation* row = Eqn(m.get(), "ROW");
    row->SetRHS(12.5);
    row->SetRange(-3.0);
    // A column on no card is named by BOUNDS so that it exists.
    Vars(m.get())->InsertVariable("LONE");
    for (const char* n : {"FREE", "FIXED", "BIN", "INT", "STEP"}) {
        Vars(m.get())->InsertVariable(n);
        ILPNonZero* nz = nullptr;
        m->InsertMatrixEntry("ROW", n, 1.0, &nz);
    }
    Var(m.get(), "FREE")->SetBoundLower(-ZEM_INFINITY);
    Var(m.get(), "FREE")->SetBoundUpper(ZEM_INFINITY);
    Var(m.get(), "FIXED")->SetBoundLower(2.5);
    Var(m.get(), "FIXED")->SetBoundUpper(2.5);
    Var(m.get(), "FIXED")->SetTempBoundLower(1.5);
    Var(m.get(), "BIN")->SetVarType(ZEM_VAR_BINARY);
    Var(m.get(), "INT")->SetVarType(ZEM_VAR_DISCRETE);
    Var(m.get(), "INT")->SetBoundUpper(9.0);
    Var(m.get(), "STEP")->SetStepBound(0.25);
    Var(m.get(), "STEP")->SetTempBoundLower(-3.0);
    Var(m.get(), "STEP")->SetVarValue(7.0);
    // Each line ends at the '|'; the blanks before it are written too.
    std::string expected = R"(<zemblockpersist type="XMPS" version="7.2">|
<zemXMPS>|
NAME PLANT|
XTNDFMT|
XLINEAR|
 L  ROW                0.100000E+01  X               |
 L  ROW                0.200000E+01  Y               |
 L  ROW                0.100000E+01  FREE            |
 L  ROW                0.100000E+01  FIXED           |
 L  ROW                0.100000E+01  BIN             |
 L  ROW                0.100000E+01  INT             |
 L  ROW                0.100000E+01  STEP            |
RHS|
    RHS1              ROW                    0.125000E+02|
RANGES|
    RNG1              ROW                    -.300000E+01|
BOUNDS|
 PL BND1              LONE            |
 FR BND1              FREE            |
 FX BND1              FIXED                           2.5|
 BV BND1              BIN             |
 PL BND1              BIN             |
 LI BND1              INT                               0|
 UI BND1              INT                               9|
 SB BND1              STEP                           0.25|
TEMPBOUNDS|
 FX BND2              FIXED                           1.5|
 LO BND2              STEP                             -3|
INITIAL|
 BS                   FIXED              0.1000000000E+01|
 BS                   STEP               0.7000000000E+01|
VARGROUPS|
ENDATA|
</zemXMPS>|
</zemblockpersist>|
)";
    for (size_t at = 0; (at = expected.find('|', at)) != std::string::npos;) expected.erase(at, 1);
    EXPECT_EQ(Write(m.get()), expected);
}

// A keyword term breaks every three variables and lists its constants; a
// product too long for one line is continued.
TEST(XMPSWriterLayout, TermsAreContinuedAcrossLines) {
    Model m = NewModel();
    ILPEquation* e = Eqns(m.get())->InsertEquation("R");
    e->SetType(ZEM_EQN_GE);
    INonLinearity* t = nullptr;
    NL(m.get())->CreateNonLinearityObject("XPROD2", &t);
    t->SetEquationPtr(e);
    for (double c : {2.5, 0.5, -7.0}) t->AddNLConstantObject(c);
    for (int i = 1; i <= 7; ++i) {
        t->AddVariableObject(Vars(m.get())->InsertVariable(("V" + std::to_string(i)).c_str()));
    }
    NL(m.get())->AddNonLinearityObject(t);
    const std::vector<std::string> lines = Lines(Write(m.get()));
    size_t at = 0;
    while (at < lines.size() && lines[at] != "NONLINEAR") ++at;
    ASSERT_LT(at + 6, lines.size());
    EXPECT_EQ(lines[at + 1], " G  R   XPROD2  2.500000e+00     V1     V2     V3   \\");
    EXPECT_EQ(lines[at + 2], "               V4     V5     V6   \\");
    EXPECT_EQ(lines[at + 3], "               V7   \\");
    EXPECT_EQ(lines[at + 4], "               5.000000e-01 \\");
    EXPECT_EQ(lines[at + 5], "              -7.000000e+00");
    EXPECT_EQ(lines[at + 6], "RHS");

    NL(m.get())->CreateNonLinearityObject(static_cast<int16_t>(1), &t);
    t->SetEquationPtr(e);
    t->AddNLConstantObject(1.0);
    for (int i = 0; i < 120; ++i) {
        t->AddVariableObject(Vars(m.get())->InsertVariable(("VARIABLE_NUMBER_" + std::to_string(i)).c_str()));
    }
    NL(m.get())->AddNonLinearityObject(t);
    const std::string text = Write(m.get());
    for (const std::string& l : Lines(text)) EXPECT_LT(l.size(), 1000u);
    Model back = Read(text);
    ASSERT_EQ(Terms(back.get()).size(), 2u);
    EXPECT_EQ(Terms(back.get())[0]->NumberOfVariableTerms(), 120);  // XLINEAR comes first
}

TEST(XMPSWriterErrors, NoModelAndAFileThatCannotBeCreated) {
    XMPSWriter writer;
    std::stringstream out;
    ZEM_Exception e = Thrown([&] { writer.WriteMPSStream(&out); });
    EXPECT_EQ(e.Name(), "MPS Stream Write Error");
    EXPECT_EQ(e.Reason(), "No ZEM Object Available");
    EXPECT_EQ(e.Routine(), "XMPSWriter::WriteMPSStream");
    e = Thrown([&] { writer.WriteZEMMPSStream(&out); });
    EXPECT_EQ(e.Routine(), "XMPSWriter::WriteZEMMPSStream");
    Model m = OneRowModel(1.0);
    try {
        XMPSWriter(m.get()).WriteMPSFile("/nonexistent-directory/model.xmps");
        FAIL() << "no exception";
    } catch (ZEM_ExcpFileError& e) {
        EXPECT_EQ(e.ErrorType(), eFileCreateForWrite);
    }
}

TEST(XMPSManagerMapping, FailuresAreWrappedAndFilesReadIntoAModelOfTheirOwn) {
    XMPSManager* mgr = nullptr;
    CreateXMPSManagerObject(&mgr);
    ASSERT_NE(mgr, nullptr);
    const auto check = [](const ZEM_Exception& e, const char* name, const char* reason) {
        EXPECT_EQ(e.Name(), name);
        EXPECT_EQ(e.Reason(), reason);
    };
    check(Thrown([&] { mgr->ReadMPSFile(); }), "MPS Read Error", "No MPS file specification provided");
    check(Thrown([&] { mgr->ReadMPSStream(nullptr); }), "MPS Read Error", "No stream provided");
    check(Thrown([&] { mgr->WriteMPSFile(); }), "XMPS Write Error", "No XMPS file specification provided");
    check(Thrown([&] { mgr->WriteMPSStream(nullptr); }), "XMPS Stream Write Error", "No XMPS stream provided");
    mgr->SetMPSFileSpec("/nonexistent-directory/none.xmps");
    try {
        mgr->ReadMPSFile();
        FAIL() << "no exception";
    } catch (ZEM_ExcpFileError& f) {
        EXPECT_EQ(f.ErrorType(), eFileNotFound);
        EXPECT_EQ(f.FileName(), "/nonexistent-directory/none.xmps");
    }
    std::stringstream bad("NAME X\nNONLINEAR\nENDATA\n");
    const ZEM_Exception e = Thrown([&] { mgr->ReadMPSStream(&bad); });
    check(e, "MPS Manager Failure", "Read of XMPS Stream Failed");
    ASSERT_NE(e.Getbufptr(), nullptr);
    EXPECT_NE(e.Getbufptr()->str().find("NONLINEAR Data section appears empty"), std::string::npos);
    // Without a model the writer fails, a file under the read texts.
    const std::string path = std::string(ZEM_BINARY_DIR) + "/xmps_manager_test.xmps";
    mgr->SetMPSFileSpec(path.c_str());
    check(Thrown([&] { mgr->WriteMPSFile(); }), "MPS Manager Failure", "Read of XMPS Failed");
    std::stringstream out;
    check(Thrown([&] { mgr->WriteMPSStream(&out); }), "MPS Manager Failure", "Write of XMPS Stream Failed");

    Model m = OneRowModel(3.0);
    mgr->SetZEMDataMgr(m.get());
    mgr->WriteMPSFile();
    mgr->SetZEMDataMgr(nullptr);
    mgr->ReadMPSFile();
    IZEMDataMgr* read = nullptr;
    mgr->GetZEMDataMgr(&read);
    ASSERT_NE(read, nullptr);
    int n = 0, rows = 0, nz = 0;
    read->ModelDimension(n, rows, nz);
    EXPECT_EQ(n, 2);
    read->IRelease();
    mgr->Destroy();
    std::remove(path.c_str());
}
