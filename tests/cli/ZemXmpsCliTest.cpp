// zem eval (text and JSON) and convert on extended MPS files, checked
// against the same evaluation done in this process.
#include <map>
#include <sstream>
#include <string>

#include "ZemCliTestSupport.h"
#include "lpdata/ILPEquation.h"
#include "lpdata/ILPEquationList.h"
#include "lpdata/ILPMatrix.h"
#include "lpdata/ILPNonZero.h"
#include "lpdata/ILPVariable.h"
#include "nlpdata/INonLinearModel.h"

using namespace clitest;

namespace {

class ZemXmps : public ZemRun {};

// Row values and entry derivatives by name.
struct Evaluation {
    std::map<std::string, double> rows;
    std::map<std::pair<std::string, std::string>, double> jacobian;
};

// The file read and evaluated in this process.
Evaluation EvaluateHere(const std::string& path) {
    Model m = ReadHere(path);
    INonLinearModel* nl = nullptr;
    m->GetNonLinearModelIntf(&nl);
    nl->EvaluateModel();
    nl->EvaluateJacobian();
    Evaluation e;
    ILPEquationList* eqns = nullptr;
    ILPMatrix* matrix = nullptr;
    m->GetEquationCollectionIntf(&eqns);
    m->GetMatrixIntf(&matrix);
    for (ILPEquation* q = eqns->FrstEquationObject(); q != nullptr; q = eqns->NextEquationObject()) {
        e.rows[q->GetName()] = q->GetEqnValue();
    }
    for (ILPNonZero* nz = matrix->FrstNonZeroObject(); nz != nullptr; nz = matrix->NextNonZeroObject()) {
        e.jacobian[{nz->GetEquationPtr()->GetName(), nz->GetVariablePtr()->GetName()}] = nz->GetPartialDeriv();
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

}  // namespace

TEST_F(ZemXmps, EvalPrintsEveryRowAndEveryEntryInTextAndJson) {
    const Evaluation expected = EvaluateHere(Refinery());
    const Result r = Run("eval '" + Refinery() + "'");
    ASSERT_EQ(r.status, 0) << r.err;
    const Evaluation got = ParseText(r.out);
    // Shortest round-trip texts: the values are exact.
    EXPECT_EQ(got.rows, expected.rows);
    EXPECT_EQ(got.jacobian, expected.jacobian);
    // The nonlinear rows really are nonlinear: the octane blend.
    EXPECT_NEAR(got.rows.at("OCTANE"), (71.0 * 30 + 98.0 * 20) / 50.0 - 81.8, 1e-9);

    const Doc doc = Json("eval --json '" + Refinery() + "'");
    EXPECT_EQ(KeyList(doc), "rows,jacobian");
    ASSERT_EQ(doc.at("rows").size(), expected.rows.size());
    for (const Doc& row : doc.at("rows")) {
        EXPECT_EQ(KeyList(row), "name,value");
        EXPECT_EQ(row.at("value").get<double>(), expected.rows.at(row.at("name").get<std::string>())) << row.at("name").get<std::string>();
    }
    ASSERT_EQ(doc.at("jacobian").size(), expected.jacobian.size());
    for (const Doc& e : doc.at("jacobian")) {
        EXPECT_EQ(KeyList(e), "equation,variable,derivative");
        EXPECT_EQ(e.at("derivative").get<double>(), expected.jacobian.at({e.at("equation").get<std::string>(), e.at("variable").get<std::string>()}));
    }
}

