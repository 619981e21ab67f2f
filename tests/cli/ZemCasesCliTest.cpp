// zem cases: the bundled refinery cases built, shown and applied, and the
// refusals of bad edit lists and unknown cases.
#include <nlohmann/json.hpp>

#include <filesystem>
#include <string>

#include "ZemCliTestSupport.h"
#include "lpdata/ILPEquation.h"
#include "lpdata/ILPEquationList.h"
#include "zemmgr/IZEMOptionTable.h"

using namespace clitest;

namespace {

using ZemCases = ZemRun;

TEST_F(ZemCases, BuiltFileShowsTheEditsItWasBuiltFrom) {
    const std::string edits = Example("refinery_cases.json"), xlm = dir_ + "/r.xlm";
    Result r = Run("cases build '" + edits + "' --model '" + Refinery() + "' -o '" + xlm + "'");
    ASSERT_EQ(r.status, 0) << r.err;
    EXPECT_EQ(Slurp(xlm), Slurp(Example("refinery.xlm")));
    r = Run("cases show '" + xlm + "' --model '" + Refinery() + "' --json");
    ASSERT_EQ(r.status, 0) << r.err;
    const nlohmann::json shown = nlohmann::json::parse(r.out);
    EXPECT_EQ(shown["cases"], nlohmann::json::parse(Slurp(edits))["cases"]);
    EXPECT_EQ(shown["dimension"], nlohmann::json::parse("[18, 15, 45]"));
    r = Run("cases show '" + xlm + "' --model '" + Refinery() + "'");
    ExpectAll(r.out, {"Z E M   C A S E   S T A C K I N G", "Z E M   C A S E   - CAPACITY"});
}

TEST_F(ZemCases, ApplyWritesTheEditedModel) {
    const std::string out = dir_ + "/edited.xmps";
    Result r = Run("cases apply '" + Refinery() + "' '" + Example("refinery.xlm") + "' 2 CRUDEPRICE -o '" + out + "'");
    ASSERT_EQ(r.status, 0) << r.err;
    Model m = ReadHere(out);
    ILPEquationList* eqns = nullptr;
    m->GetEquationCollectionIntf(&eqns);
    EXPECT_EQ(eqns->EqnNameLookup("CDUCAP")->GetRHS(), 150.0);
    IZEMOptionTable* options = nullptr;
    m->GetOptionTableIntf(&options);
    EXPECT_STREQ(options->GetOptionValue("ITERLIM"), "1000");

    r = Run("cases apply '" + Refinery() + "' '" + Example("refinery.xlm") + "' 3 -o '" + dir_ + "/x.xmps'");
    EXPECT_EQ(r.status, 1);
    EXPECT_NE(r.err.find("no case '3'"), std::string::npos) << r.err;
    EXPECT_FALSE(std::filesystem::exists(dir_ + "/x.xmps"));
}

TEST_F(ZemCases, RefusedEditListsWriteNothing) {
    const struct {
        const char* edits;
        const char* message;
    } bad[] = {
        {R"([{"kind": "rhs", "equation": "NOPE", "value": 1}])", "case 'A', edit 1: Unknown equation: NOPE"},
        {R"([{"kind": "rhs", "equation": "CDUCAP", "value": 1, "x": 2}])", "case 'A', edit 1: unknown field 'x'"},
        {R"([{"kind": "rhs", "value": 1}, {"kind": "swap"}])", "edit 1: missing field 'equation'"},
        {R"([{"kind": "value", "variable": "TEMP", "value": 1}, {"kind": "swap"}])", "case 'A', edit 2: unknown kind 'swap'"},
        {R"([{"kind": "bound", "variable": "TEMP", "bound": "both", "value": 1}])", "not lower, upper or fix"},
        {R"([{"kind": "coefficient", "equation": "CDUCAP", "variable": "DIESEL", "value": 1}])", "No matrix coefficient"},
        {R"([{"kind": "term_coefficient", "term": 13, "value": 1}])", "no term of index 13"},
    };
    const std::string xlm = dir_ + "/bad.xlm";
    for (const auto& b : bad) {
        const std::string json = File("e.json", std::string(R"({"cases": [{"number": 1, "name": "A", "edits": )") + b.edits + "}]}");
        const Result r = Run("cases build '" + json + "' --model '" + Refinery() + "' -o '" + xlm + "'");
        EXPECT_EQ(r.status, 1) << b.edits;
        EXPECT_NE(r.err.find(b.message), std::string::npos) << r.err;
        EXPECT_FALSE(std::filesystem::exists(xlm));
    }
}

}  // namespace
