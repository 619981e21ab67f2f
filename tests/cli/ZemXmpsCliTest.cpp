// zem on extended MPS files: reading by extension, eval (text and JSON) and
// convert, checked against the same evaluation done in this process.
#include <gtest/gtest.h>
#include <sys/wait.h>

#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <map>
#include <sstream>
#include <string>

#include "JsonTestParser.h"
#include "lpdata/ILPEquation.h"
#include "lpdata/ILPEquationList.h"
#include "lpdata/ILPMatrix.h"
#include "lpdata/ILPNonZero.h"
#include "lpdata/ILPVariable.h"
#include "mpsutil/MPSStdReader.h"
#include "nlpdata/INonLinearModel.h"
#include "xmpsutil/XMPSReader.h"
#include "zemmgr/IZEMMgr.h"

namespace {

struct Result {
    int status = -1;
    std::string out;
    std::string err;
};

std::string Slurp(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    std::ostringstream ss;
    ss << in.rdbuf();
    return ss.str();
}

struct Release {
    void operator()(IZEMMgr* m) const { m->IRelease(); }
};
using Model = std::unique_ptr<IZEMMgr, Release>;

// The file read and evaluated in this process.
Model EvaluateHere(const std::string& path) {
    IZEMMgr* raw = nullptr;
    ZEMObjectFactory(&raw);
    raw->IAddRef();
    Model m(raw);
    if (path.size() > 5 && path.substr(path.size() - 5) == ".xmps") {
        XMPSReader reader(m.get(), false);
        reader.ReadMPSFile(path.c_str());
    } else {
        MPSStdReader reader(m.get());
        reader.ReadMPSFile(path.c_str());
    }
    INonLinearModel* nl = nullptr;
    m->GetNonLinearModelIntf(&nl);
    nl->EvaluateModel();
    nl->EvaluateJacobian();
    return m;
}

// Row values and entry derivatives by name.
struct Evaluation {
    std::map<std::string, double> rows;
    std::map<std::pair<std::string, std::string>, double> jacobian;
};

Evaluation Collect(IZEMMgr* m) {
    Evaluation e;
    ILPEquationList* eqns = nullptr;
    ILPMatrix* matrix = nullptr;
    m->GetEquationCollectionIntf(&eqns);
    m->GetMatrixIntf(&matrix);
    for (ILPEquation* q = eqns->FrstEquationObject(); q != nullptr; q = eqns->NextEquationObject()) {
        e.rows[q->GetName()] = q->GetEqnValue();
    }
    for (ILPNonZero* nz = matrix->FrstNonZeroObject(); nz != nullptr; nz = matrix->NextNonZeroObject()) {
        e.jacobian[{nz->GetEquationPtr()->GetName(), nz->GetVariablePtr()->GetName()}] =
            nz->GetPartialDeriv();
    }
    return e;
}

// zem eval's text output read back.
Evaluation ParseText(const std::string& text) {
    Evaluation e;
    std::istringstream in(text);
    std::string line;
    while (std::getline(in, line)) {
        std::istringstream fields(line);
        std::string a, b, c, extra;
        fields >> a >> b >> c >> extra;
        EXPECT_TRUE(extra.empty()) << line;
        if (c.empty()) {
            e.rows[a] = std::strtod(b.c_str(), nullptr);
        } else {
            e.jacobian[{a, b}] = std::strtod(c.c_str(), nullptr);
        }
    }
    return e;
}

class ZemXmps : public ::testing::Test {
protected:
    void SetUp() override {
        char tmpl[] = "/tmp/zem_xmps_test_XXXXXX";
        dir_ = mkdtemp(tmpl);
        zem_ = std::string(ZEM_BINARY_DIR) + "/zem";
        if (!std::filesystem::exists(zem_)) GTEST_SKIP() << zem_ << " was not built";
    }
    void TearDown() override {
        std::error_code ec;
        std::filesystem::remove_all(dir_, ec);
    }
    Result Run(const std::string& args) {
        const std::string out = dir_ + "/stdout";
        const std::string err = dir_ + "/stderr";
        const std::string cmd = "'" + zem_ + "' " + args + " > '" + out + "' 2> '" + err + "'";
        const int raw = std::system(cmd.c_str());
        Result r;
        r.status = WIFEXITED(raw) ? WEXITSTATUS(raw) : -1;
        r.out = Slurp(out);
        r.err = Slurp(err);
        return r;
    }
    std::string Refinery() const { return std::string(ZEM_SOURCE_DIR) + "/examples/refinery.xmps"; }
    std::string Blend() const { return std::string(ZEM_SOURCE_DIR) + "/examples/blend.mps"; }

    std::string dir_;
    std::string zem_;
};

}  // namespace

TEST_F(ZemXmps, EvalPrintsEveryRowAndEveryEntry) {
    const Result r = Run("eval '" + Refinery() + "'");
    ASSERT_EQ(r.status, 0) << r.err;
    Model here = EvaluateHere(Refinery());
    const Evaluation expected = Collect(here.get());
    const Evaluation got = ParseText(r.out);
    // Shortest round-trip texts: the values are exact.
    EXPECT_EQ(got.rows, expected.rows);
    EXPECT_EQ(got.jacobian, expected.jacobian);
    // The nonlinear rows really are nonlinear: the octane blend.
    EXPECT_NEAR(got.rows.at("OCTANE"), (71.0 * 30 + 98.0 * 20) / 50.0 - 81.8, 1e-9);
}

TEST_F(ZemXmps, EvalJsonHoldsTheSameNumbers) {
    const Result r = Run("eval --json '" + Refinery() + "'");
    ASSERT_EQ(r.status, 0) << r.err;
    const jsontest::Value doc = jsontest::Parser(r.out).Parse();
    EXPECT_EQ(doc.Keys(), (std::vector<std::string>{"rows", "jacobian"}));
    Model here = EvaluateHere(Refinery());
    const Evaluation expected = Collect(here.get());
    ASSERT_EQ(doc["rows"].items.size(), expected.rows.size());
    for (const jsontest::Value& row : doc["rows"].items) {
        EXPECT_EQ(row.Keys(), (std::vector<std::string>{"name", "value"}));
        EXPECT_EQ(row["value"].number, expected.rows.at(row["name"].text)) << row["name"].text;
    }
    ASSERT_EQ(doc["jacobian"].items.size(), expected.jacobian.size());
    for (const jsontest::Value& e : doc["jacobian"].items) {
        EXPECT_EQ(e.Keys(), (std::vector<std::string>{"equation", "variable", "derivative"}));
        EXPECT_EQ(e["derivative"].number,
                  expected.jacobian.at({e["equation"].text, e["variable"].text}));
    }
}

TEST_F(ZemXmps, EvalOfALinearMpsModelGivesItsCoefficients) {
    const Result r = Run("eval '" + Blend() + "'");
    ASSERT_EQ(r.status, 0) << r.err;
    Model here = EvaluateHere(Blend());
    const Evaluation got = ParseText(r.out);
    EXPECT_EQ(got.rows, Collect(here.get()).rows);
    // Every entry of a linear model has its coefficient as derivative.
    ILPMatrix* matrix = nullptr;
    here->GetMatrixIntf(&matrix);
    ASSERT_EQ(got.jacobian.size(), static_cast<size_t>(matrix->NumberOfNonZeros()));
    for (ILPNonZero* nz = matrix->FrstNonZeroObject(); nz != nullptr; nz = matrix->NextNonZeroObject()) {
        EXPECT_EQ(got.jacobian.at({nz->GetEquationPtr()->GetName(), nz->GetVariablePtr()->GetName()}),
                  nz->GetCoefficient());
    }
}

TEST_F(ZemXmps, InfoReadsXmpsByExtension) {
    const Result r = Run("info --json '" + Refinery() + "'");
    ASSERT_EQ(r.status, 0) << r.err;
    const jsontest::Value doc = jsontest::Parser(r.out).Parse();
    EXPECT_EQ(doc["title"].text, "REFINERY");
}

TEST_F(ZemXmps, ConvertWritesXmpsThatEvaluatesTheSame) {
    const std::string out = dir_ + "/copy.xmps";
    Result r = Run("convert '" + Refinery() + "' '" + out + "'");
    ASSERT_EQ(r.status, 0) << r.err;
    ASSERT_TRUE(std::filesystem::exists(out));
    const Evaluation original = Collect(EvaluateHere(Refinery()).get());
    const Evaluation copy = Collect(EvaluateHere(out).get());
    ASSERT_EQ(copy.rows.size(), original.rows.size());
    for (const auto& [name, value] : original.rows) {
        EXPECT_NEAR(copy.rows.at(name), value, 1e-5 * (1 + std::fabs(value))) << name;
    }
    // A standard MPS model converts too.
    const std::string blend = dir_ + "/blend.xmps";
    r = Run("convert '" + Blend() + "' '" + blend + "'");
    ASSERT_EQ(r.status, 0) << r.err;
    EXPECT_EQ(Run("eval '" + blend + "'").out, Run("eval '" + Blend() + "'").out);
}

TEST_F(ZemXmps, ConvertAndEvalRefuseWhatTheyCannotDo) {
    EXPECT_EQ(Run("convert '" + Refinery() + "' '" + dir_ + "/out.lp'").status, 2);
    EXPECT_EQ(Run("convert '" + Refinery() + "'").status, 2);
    std::ofstream(dir_ + "/bad.xmps") << "NAME X\nNONLINEAR\nENDATA\n";
    const Result r = Run("eval '" + dir_ + "/bad.xmps'");
    EXPECT_EQ(r.status, 1);
    EXPECT_NE(r.err.find("MPS Manager Failure"), std::string::npos) << r.err;
    const Result help = Run("--help");
    EXPECT_NE(help.out.find("xmps"), std::string::npos);
    EXPECT_NE(help.out.find("eval"), std::string::npos);
}
