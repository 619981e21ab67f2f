// zem with model files (.zem) and the written reports (.gms, .txt): the
// model file round trip checked through zem dump, the nonlinear parts of
// info and dump, and the refusals of truncated files and unknown outputs.
#include <filesystem>
#include <string>

#include "ZemCliTestSupport.h"
#include "lpdata/ILPVariable.h"
#include "lpdata/ILPVariableCollection.h"
#include "lpdata/ILPVariableList.h"
#include "zemmgr/IZEMOptionTable.h"

using namespace clitest;

namespace {

class ZemModelFile : public ZemRun {
protected:
    // refinery.xmps converted to a model file in the test directory.
    std::string RefineryZem() {
        const std::string path = dir_ + "/refinery.zem";
        const Result r = Run("convert '" + Refinery() + "' '" + path + "'");
        EXPECT_EQ(r.status, 0) << r.err;
        EXPECT_EQ(r.out, "");
        return path;
    }
};

}  // namespace

TEST_F(ZemModelFile, ModelFileDumpsExactlyAsTheXmpsItCameFrom) {
    const std::string zemFile = RefineryZem();
    // The same text, so the same document with every number exact.
    const Result fromXmps = Run("dump '" + Refinery() + "'");
    const Result fromZem = Run("dump '" + zemFile + "'");
    ASSERT_EQ(fromZem.status, 0) << fromZem.err;
    EXPECT_EQ(fromZem.out, fromXmps.out);

    // The comparison is not vacuous: the terms are there (the counts, the
    // collections and the options are checked below).
    const Doc terms = Doc::parse(fromZem.out).at("terms");
    ASSERT_EQ(terms.size(), 12u);
    EXPECT_EQ(terms.at(1).at("keyword").get<std::string>(), "DIV");
    EXPECT_EQ(terms.at(1).at("equation").get<std::string>(), "OCTANE");
    EXPECT_EQ(Texts(terms.at(1).at("variables")),
              (std::vector<std::string>{"NAPHTHA", "REFORMATE", "NAPHTHA", "REFORMATE"}));
    EXPECT_EQ(Numbers(terms.at(1).at("constants")), (std::vector<double>{2, 2, 1, 1, 1, 71, 98}));
}

TEST_F(ZemModelFile, DumpListsBothOptionColumnsAndEveryCollection) {
    // A model made here with options in either column and a third group.
    Model model = ReadHere(Refinery());
    IZEMOptionTable* table = nullptr;
    model->GetOptionTableIntf(&table);
    table->SetOption("BOTH", "first value", "second value");
    table->SetOption("ONLYSECOND", nullptr, "S");
    table->SetOption("ITERLIM", nullptr, "FIXED");
    ILPVariableCollection* group = nullptr;
    model->NewNamedVarCollection("EMPTYDIR", &group);
    ILPVariableList* vars = nullptr;
    model->GetVariableCollectionIntf(&vars);
    group->AddVariableObject(vars->VarNameLookup("TEMP"));
    const std::string path = dir_ + "/made.zem";
    model->PersistAsFile(path.c_str());

    const Doc doc = Json("dump '" + path + "'");
    const Doc& options = doc.at("options");
    ASSERT_EQ(options.size(), 4u);
    // By name in byte order; a column without a value is null.
    std::string seen;
    for (const Doc& o : options)
        seen += o.at("name").get<std::string>() + "=" + (o.at("value").is_null() ? "null" : o.at("value").get<std::string>()) + "/" +
                (o.at("second").is_null() ? "null" : o.at("second").get<std::string>()) + ";";
    EXPECT_EQ(seen, "BOTH=first value/second value;ITERLIM=500/FIXED;OBJSENSE=MAX/null;ONLYSECOND=null/S;");
    const Doc& collections = doc.at("collections");
    ASSERT_EQ(collections.size(), 3u);
    EXPECT_EQ(collections.at(2).at("name").get<std::string>(), "EMPTYDIR");
    EXPECT_EQ(collections.at(2).at("direction").get<double>(), group->GetDirection());
    EXPECT_EQ(Texts(collections.at(2).at("variables")), (std::vector<std::string>{"TEMP"}));
}

TEST_F(ZemModelFile, InfoCountsTermsAndTheirRowsInEveryFormat) {
    // The model file holds the same model (its dump is the same): the JSON
    // counts from one format, the text from the other.
    const Doc v = Json("info --json '" + Refinery() + "'");
    EXPECT_EQ(v.at("nonlinear_terms").get<double>(), 12);
    // ENERGYUSE holds three terms, REFCAP two; OCTANE, VAPOUR, SEVERITY,
    // TANKQ, DISTEVAP, RVPBLEND and PROFIT one each.
    EXPECT_EQ(v.at("nonlinear_equations").get<double>(), 9);
    const std::string zemFile = RefineryZem();
    const Result text = Run("info '" + zemFile + "'");
    EXPECT_NE(text.out.find("Nonlinear:  12 terms in 9 equations\n"), std::string::npos) << text.out;

    // The format can be named when the extension does not tell it.
    const std::string renamed = dir_ + "/refinery.bin";
    std::filesystem::copy_file(zemFile, renamed);
    EXPECT_EQ(Run("info '" + renamed + "'").status, 2);
    EXPECT_EQ(Json("info --json --format zem '" + renamed + "'").at("variables").get<double>(), 18);
}

TEST_F(ZemModelFile, GamsOutputWritesTermsAsAlgebraOrRefusesTheModel) {
    const std::string model = File("terms.xmps",
                                   "NAME TERMS\n"
                                   "XLINEAR\n"
                                   " N  PROFIT  1.0  X\n"
                                   " L  CAP  1.0  X\n"
                                   " E  BAL  2.0  X  Y\n"
                                   "NONLINEAR\n"
                                   " E  BAL  EXPX  1.5  Y  0.5\n"
                                   " E  BAL  LNX  2.0  X  1.0\n"
                                   "RHS\n"
                                   "    RHS1  CAP  10\n"
                                   "RANGES\n"
                                   "    RNG1  CAP  4\n"
                                   "BOUNDS\n"
                                   " UP BND1  X  8\n"
                                   "ENDATA\n");
    const std::string path = dir_ + "/terms.gms";
    const Result r = Run("convert '" + model + "' '" + path + "'");
    ASSERT_EQ(r.status, 0) << r.err;
    ExpectAll(Slurp(path), {"$OFFSYMLIST\n", "CAP_LE", "CAP_GE", "PROFIT_OBJ =E= ", "  X.UP =  8.000000e+00 ;",
                            "+ 2 * X * Y", "+ 1.5 * exp(0.5 + Y)", "+ 2 * ifThen((1 + X) >= 1e-06, log((1 + X))",
                            "\n   + 2 * X * Y\n   + 1.5 * exp(0.5 + Y)"});
    // The refinery holds terms GAMS cannot express (a user equation comes
    // first): the model is refused by name and an existing file stays as it
    // was.
    const std::string kept = File("kept.gms", "kept\n");
    const Result refused = Run("convert '" + Refinery() + "' '" + kept + "'");
    EXPECT_EQ(refused.status, 1);
    EXPECT_NE(refused.err.find("Term USEREQ:"), std::string::npos) << refused.err;
    EXPECT_EQ(Slurp(kept), "kept\n");
}

TEST_F(ZemModelFile, SummaryHoldsHeadingListingAndOptions) {
    const std::string path = dir_ + "/refinery.txt";
    // Written from the model file, so the summary shows what it restored.
    const Result r = Run("convert '" + RefineryZem() + "' '" + path + "'");
    ASSERT_EQ(r.status, 0) << r.err;
    const std::string txt = Slurp(path);
    ExpectAll(txt, {"M O D E L   T I T L E   :  REFINERY\n\n", "D I M E N S I O N S : N = 18; M = 15; M (Nonlinear) = 9;",
                    "  ITERLIM : 500\n"});
}

TEST_F(ZemModelFile, DamagedOrMissingModelFilesExitWithOne) {
    // The library's refusal (its texts are checked with the model file): a
    // failure, not a usage error.
    const std::string whole = Slurp(RefineryZem());
    // Every command loads its input through the same loader.
    const Result r = Run("dump '" + File("cut.zem", whole.substr(0, whole.size() / 2)) + "'");
    EXPECT_EQ(r.status, 1);
    EXPECT_EQ(r.out, "");
    EXPECT_NE(r.err.find("Exception Reason : "), std::string::npos) << r.err;
    EXPECT_EQ(r.err.find("Run 'zem --help'"), std::string::npos) << r.err;
    const Result missing = Run("dump '" + dir_ + "/absent.zem'");
    EXPECT_EQ(missing.status, 1);
    EXPECT_NE(missing.err.find("absent.zem"), std::string::npos) << missing.err;
}

TEST_F(ZemModelFile, OutputsThatCannotBeMadeAreRefused) {
    // An unknown extension is a usage error, and nothing is written.
    const Result unknown = Run("convert '" + Refinery() + "' '" + dir_ + "/out.json'");
    EXPECT_EQ(unknown.status, 2);
    EXPECT_NE(unknown.err.find(".zem"), std::string::npos) << unknown.err;
    EXPECT_FALSE(std::filesystem::exists(dir_ + "/out.json"));
    // A directory that does not exist is the library's file error.
    for (const char* name : {"/none/out.zem", "/none/out.gms", "/none/out.txt"}) {
        const Result r = Run("convert '" + Blend() + "' '" + dir_ + name + "'");
        EXPECT_EQ(r.status, 1) << name;
        EXPECT_NE(r.err.find("out."), std::string::npos) << name << ": " << r.err;
    }
}
