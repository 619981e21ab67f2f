// zem on standard MPS files: info, dump and display checked against the
// model read in this process, and the exit statuses of usage errors and
// library failures.
#include <memory>
#include <sstream>
#include <string>

#include "ZemCliTestSupport.h"
#include "lpdata/ILPEquation.h"
#include "lpdata/ILPEquationList.h"
#include "lpdata/ILPMatrix.h"
#include "lpdata/ILPNonZero.h"
#include "lpdata/ILPStdDataMgr.h"
#include "lpdata/ILPVariable.h"
#include "lpdata/ILPVariableList.h"
#include "mpsutil/MPSTestUtil.h"

using namespace clitest;

namespace {

class ZemCli : public ZemRun {};

struct DestroyModel {
    void operator()(ILPStdDataMgr* m) const { m->Destroy(); }
};

// The same file read in this process into the model zem uses for MPS.
std::unique_ptr<ILPStdDataMgr, DestroyModel> ReadLp(const std::string& path) {
    ILPStdDataMgr* m = nullptr;
    CreateLPStdDataObject(&m);
    std::unique_ptr<ILPStdDataMgr, DestroyModel> model(m);
    model->SetModelTitle("");
    MPSStdReader(model.get()).ReadMPSFile(path.c_str());
    return model;
}

// A model with awkward names and values: a tab, a quote, a backslash, a
// byte that is not UTF-8 and one that is, and numbers that need all their
// digits.
std::string Awkward() {
    using mpstest::Card;
    return mpstest::Lines({
        "NAME      Q\"UOTE\\", "ROWS", Card("N", "COST"), Card("L", "R\tTAB"),
        Card("G", "CAF\xc3\xa9"), Card("E", "BAD\xff"), "COLUMNS",
        Card("", "X1", "COST", "0.1", "R\tTAB", "0.3333333333"),
        Card("", "X1", "CAF\xc3\xa9", "1e-300", "BAD\xff", "-1234567.125"),
        Card("", "X2", "COST", "1E20", "R\tTAB", "2.5"), "RHS",
        Card("", "RHS", "R\tTAB", "7.1", "CAF\xc3\xa9", "-0"), "RANGES", Card("", "RNG", "R\tTAB", "0.7"),
        "BOUNDS", Card("MI", "BND", "X1"), Card("UP", "BND", "X1", "1e20"), Card("SB", "BND", "X2", "0.25"),
        "SETS", Card("S2", "SET1", "X2", "1", "X1", "2"), "ENDATA",
    });
}

}  // namespace

TEST_F(ZemCli, InfoSummarisesTheExampleModel) {
    const Result r = Run("info '" + Blend() + "'");
    ASSERT_EQ(r.status, 0) << r.err;
    EXPECT_EQ(r.err, "");
    EXPECT_EQ(r.out,
              "Title:      BLEND\n"
              "Variables:  4\n"
              "  Continuous                  4\n"
              "Equations:  6\n"
              "  OBJ                         1\n"
              "  EQ                          1\n"
              "  LE                          2\n"
              "  GE                          1\n"
              "  FREE                        1\n"
              "Nonzeros:   23\n"
              "Sets:       0\n"
              "Nonlinear:  0 terms in 0 equations\n");

    const Doc v = Json("info --json '" + Blend() + "'");
    EXPECT_EQ(KeyList(v), "title,variables,equations,nonzeros,sets,nonlinear_terms,nonlinear_equations,"
                          "variable_types,equation_types");
    EXPECT_EQ(v.at("title").get<std::string>(), "BLEND");
    EXPECT_EQ(Numbers(v, {"variables", "equations", "nonzeros", "sets", "nonlinear_terms", "nonlinear_equations"}),
              (std::vector<double>{4, 6, 23, 0, 0, 0}));
    EXPECT_EQ(KeyList(v.at("variable_types")), "Continuous");
    EXPECT_EQ(v.at("variable_types").at("Continuous").get<double>(), 4);
    EXPECT_EQ(KeyList(v.at("equation_types")), "OBJ,EQ,LE,GE,FREE");
    EXPECT_EQ(Numbers(v.at("equation_types"), {"OBJ", "EQ", "LE", "GE", "FREE"}), (std::vector<double>{1, 1, 2, 1, 1}));
}

TEST_F(ZemCli, DumpMatchesTheModelFieldForField) {
    const std::string path = File("awkward.mps", Awkward());
    const Result r = Run("dump '" + path + "'");
    ASSERT_EQ(r.status, 0) << r.err;
    const Doc v = Doc::parse(r.out);
    EXPECT_EQ(KeyList(v), "title,variables,equations,nonzeros,sets,terms,collections,options");
    // A standard MPS model has none of the model manager's parts.
    EXPECT_TRUE(v.at("terms").is_array());
    EXPECT_TRUE(v.at("terms").empty());
    EXPECT_TRUE(v.at("collections").empty());
    EXPECT_TRUE(v.at("options").empty());

    auto model = ReadLp(path);
    std::string title;
    model->GetModelTitle(title);
    EXPECT_EQ(title, "Q\"UOTE\\");
    EXPECT_EQ(v.at("title").get<std::string>(), title);

    // Each object's fields are the model's, in the model's order. zem writes
    // a byte that is not UTF-8 as \u00XX, which a JSON reader takes as that
    // code point; valid UTF-8 is written as it is.
    const auto asRead = [](std::string name) {
        const size_t at = name.find('\xff');
        return at == std::string::npos ? name : name.replace(at, 1, "\xc3\xbf");
    };
    ILPVariableList* vars = nullptr;
    model->GetVariableCollectionIntf(&vars);
    size_t i = 0;
    for (ILPVariable* x = vars->FrstVariableObject(); x; x = vars->NextVariableObject(), ++i) {
        const Doc& o = v.at("variables").at(i);
        EXPECT_EQ(KeyList(o), "name,type,status,lower,upper,value,temp_lower,step");
        EXPECT_EQ(o.at("name").get<std::string>(), x->GetName());
        EXPECT_EQ(Numbers(o, {"type", "status", "lower", "upper", "value", "temp_lower", "step"}),
                  (std::vector<double>{double(x->GetVarType()), double(x->GetVarStatus()), x->GetBoundLower(),
                                       x->GetBoundUpper(), x->GetVarValue(), x->GetTempBoundLower(),
                                       x->GetStepBound()}));
    }
    EXPECT_EQ(v.at("variables").size(), 2u);
    ILPEquationList* eqns = nullptr;
    model->GetEquationCollectionIntf(&eqns);
    i = 0;
    for (ILPEquation* e = eqns->FrstEquationObject(); e; e = eqns->NextEquationObject(), ++i) {
        const Doc& o = v.at("equations").at(i);
        EXPECT_EQ(KeyList(o), "name,type,rhs,range,rhs_lower,rhs_upper,scale");
        EXPECT_EQ(o.at("name").get<std::string>(), asRead(e->GetName()));
        EXPECT_EQ(Numbers(o, {"type", "rhs", "range", "rhs_lower", "rhs_upper", "scale"}),
                  (std::vector<double>{double(e->GetType()), e->GetRHS(), e->GetRange(), e->GetRHSLo(),
                                       e->GetRHSUp(), e->GetEqnScale()}));
    }
    EXPECT_EQ(v.at("equations").size(), 4u);
    EXPECT_NE(r.out.find("\"BAD\\u00ff\""), std::string::npos);
    EXPECT_NE(r.out.find("\"CAF\xc3\xa9\""), std::string::npos);
    ILPMatrix* matrix = nullptr;
    model->GetMatrixIntf(&matrix);
    i = 0;
    for (ILPNonZero* nz = matrix->FrstNonZeroObject(); nz; nz = matrix->NextNonZeroObject(), ++i) {
        const Doc& o = v.at("nonzeros").at(i);
        EXPECT_EQ(KeyList(o), "equation,variable,coefficient");
        EXPECT_EQ(o.at("equation").get<std::string>() + "|" + o.at("variable").get<std::string>(),
                  asRead(nz->GetEquationPtr()->GetName()) + "|" + nz->GetVariablePtr()->GetName());
        EXPECT_EQ(o.at("coefficient").get<double>(), nz->GetCoefficient());
    }
    EXPECT_EQ(v.at("nonzeros").size(), 6u);
    EXPECT_NE(r.out.find("1e+20"), std::string::npos);
    const Doc& set = v.at("sets").at(0);
    EXPECT_EQ(set.at("name").get<std::string>(), "SET1");
    EXPECT_EQ(set.at("type").get<double>(), 2);
    EXPECT_EQ(Texts(set.at("variables")), (std::vector<std::string>{"X2", "X1"}));
}

TEST_F(ZemCli, DisplayPrintsTheModelsOwnListings) {
    auto model = ReadLp(Blend());
    struct {
        const char* option;
        void (ILPStdDataMgr::*display)(std::ostream&);
        const char* heading;
    } cases[] = {
        {"", &ILPStdDataMgr::Display, "D I S P L A Y   O F   L P   D A T A   O B J E C T"},
        {" --by-row", &ILPStdDataMgr::DisplayByRow, "B Y   R O W"},
        {" --by-column", &ILPStdDataMgr::DisplayByColumn, "B Y   C O L U M N"},
        {" --algebraic", &ILPStdDataMgr::AlgebraicDisplay, "A L G E B R A I C"},
    };
    for (const auto& c : cases) {
        const Result r = Run("display '" + Blend() + "'" + c.option);
        ASSERT_EQ(r.status, 0) << c.option << r.err;
        std::ostringstream expected;
        (model.get()->*c.display)(expected);
        EXPECT_EQ(r.out, expected.str()) << c.option;
        EXPECT_NE(r.out.find(c.heading), std::string::npos) << c.option;
    }
}

TEST_F(ZemCli, FormatComesFromTheExtensionOrTheOption) {
    const std::string txt = File("model.txt", Slurp(Blend()));
    const std::string upper = File("MODEL.MPS", Slurp(Blend()));
    EXPECT_EQ(Run("info '" + txt + "'").status, 2);
    EXPECT_EQ(Run("info --format mps '" + txt + "'").status, 0);
    EXPECT_EQ(Run("info --format=MPS '" + txt + "'").status, 0);
    EXPECT_EQ(Run("info '" + upper + "'").status, 0);
    const Result bad = Run("info --format lp '" + txt + "'");
    EXPECT_EQ(bad.status, 2);
    EXPECT_NE(bad.err.find("unknown input format 'lp'"), std::string::npos) << bad.err;
    EXPECT_EQ(bad.out, "");
}

TEST_F(ZemCli, UsageErrorsExitWithTwo) {
    const std::string blend = "'" + Blend() + "'";
    for (const std::string& args :
         {std::string(""), std::string("frobnicate x.mps"), std::string("info"), "info --bogus " + blend,
          "info " + blend + " extra", "display --by-row --algebraic " + blend, std::string("dump --format"),
          std::string("info --json=yes x.mps"), "convert '" + Refinery() + "' '" + dir_ + "/out.lp'",
          "convert '" + Refinery() + "'"}) {
        const Result r = Run(args);
        EXPECT_EQ(r.status, 2) << args;
        EXPECT_NE(r.err.find("zem: "), std::string::npos) << args;
        EXPECT_NE(r.err.find("zem --help"), std::string::npos) << args;
        EXPECT_EQ(r.out, "") << args;
    }
}

TEST_F(ZemCli, LibraryFailuresExitWithOneAndShowTheException) {
    const Result missing = Run("info '" + dir_ + "/absent.mps'");
    EXPECT_EQ(missing.status, 1);
    EXPECT_NE(missing.err.find("Exception Name : ZEM_ExcpFileError"), std::string::npos) << missing.err;
    EXPECT_NE(missing.err.find("File Not Found"), std::string::npos) << missing.err;
    EXPECT_EQ(missing.out, "");

    const std::string bad = File("bad.mps", "NAME\nROWS\n N  C\nCOLUMNS\n    X         NOROW        1\nENDATA\n");
    const Result r = Run("dump '" + bad + "'");
    EXPECT_EQ(r.status, 1);
    EXPECT_EQ(r.out, "");
    ExpectAll(r.err, {"Exception Name : MPS Manager Failure\n", "Exception Reason : Read of MPS Failed\n",
                      "Exception Name : MPS COLUMNS Section Error - Invalid Row Name\n", "MPS input line 5\n"});
}

TEST_F(ZemCli, HelpExplainsCommandsOptionsFormatsAndKeys) {
    struct {
        const char* args;
        std::initializer_list<const char*> words;
    } cases[] = {
        {"--help", {"info", "dump", "display", "eval", ".mps", "xmps", ".zem", ".gms", ".txt", "model file",
                    "--format", "Exit status"}},
        {"info --help", {"Usage: zem info FILE", "--json", "variable_types", "nonlinear_terms",
                         "nonlinear_equations"}},
        {"display --help", {"--by-row", "--by-column", "--algebraic"}},
        {"dump --help", {"temp_lower", "terms", "keyword", "constants", "collections", "direction", "options",
                         "second"}},
        {"convert --help", {".zem", ".gms", ".txt", ".xmps"}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.args);
        const Result r = Run(c.args);
        EXPECT_EQ(r.status, 0);
        ExpectAll(r.out, c.words);
    }
}
