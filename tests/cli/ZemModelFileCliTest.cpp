// zem with model files (.zem) and the written reports (.gms, .txt): the
// model file round trip checked through zem dump, the nonlinear parts of
// info and dump, and the refusals of truncated files and unknown outputs.
#include <filesystem>
#include <fstream>
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

    // The comparison is not vacuous: every part of the model is there.
    const jsontest::Value doc = jsontest::Parse(fromZem.out);
    EXPECT_EQ(doc["title"].text, "REFINERY");
    EXPECT_EQ(doc["variables"].items.size(), 17u);
    const jsontest::Value& terms = doc["terms"];
    ASSERT_EQ(terms.items.size(), 11u);
    // The product written among the linear coefficients comes first.
    std::string keywords;
    for (const jsontest::Value& t : terms.items) keywords += t["keyword"].text + " ";
    EXPECT_EQ(keywords.substr(0, 15), "XPROD DIV EXPX ");
    EXPECT_EQ(terms[8]["keyword"].text + " " + terms[10]["keyword"].text, "FLTQB CONST");
    EXPECT_EQ(terms[1]["equation"].text, "OCTANE");
    EXPECT_EQ(Texts(terms[1]["variables"]),
              (std::vector<std::string>{"NAPHTHA", "REFORMATE", "NAPHTHA", "REFORMATE"}));
    EXPECT_EQ(Numbers(terms[1]["constants"]), (std::vector<double>{2, 2, 1, 1, 1, 71, 98}));
    EXPECT_EQ(Numbers(terms[0]["constants"]), (std::vector<double>{0.0002}));
    const jsontest::Value& collections = doc["collections"];
    ASSERT_EQ(collections.items.size(), 2u);
    EXPECT_EQ(collections[1]["name"].text, "PRODUCTS");
    EXPECT_EQ(collections[1]["direction"].number, -1);
    EXPECT_EQ(Texts(collections[1]["variables"]), (std::vector<std::string>{"GASOLINE", "DIESEL", "FUELOIL"}));
    const jsontest::Value& options = doc["options"];
    ASSERT_EQ(options.items.size(), 2u);
    EXPECT_EQ(KeyList(options[0]), "name,value,second");
    EXPECT_EQ(options[1]["name"].text + "=" + options[1]["value"].text, "OBJSENSE=MAX");
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

    const jsontest::Value doc = Json("dump '" + path + "'");
    const jsontest::Value& options = doc["options"];
    ASSERT_EQ(options.items.size(), 4u);
    // By name in byte order; a column without a value is null.
    std::string seen;
    for (const jsontest::Value& o : options.items)
        seen += o["name"].text + "=" + (o["value"].kind == jsontest::Value::Null ? "null" : o["value"].text) + "/" +
                (o["second"].kind == jsontest::Value::Null ? "null" : o["second"].text) + ";";
    EXPECT_EQ(seen, "BOTH=first value/second value;ITERLIM=500/FIXED;OBJSENSE=MAX/null;ONLYSECOND=null/S;");
    const jsontest::Value& collections = doc["collections"];
    ASSERT_EQ(collections.items.size(), 3u);
    EXPECT_EQ(collections[2]["name"].text, "EMPTYDIR");
    EXPECT_EQ(collections[2]["direction"].number, group->GetDirection());
    EXPECT_EQ(Texts(collections[2]["variables"]), (std::vector<std::string>{"TEMP"}));
}

TEST_F(ZemModelFile, InfoCountsTermsAndTheirRowsInEveryFormat) {
    const std::string zemFile = RefineryZem();
    for (const std::string& path : {Refinery(), zemFile}) {
        const jsontest::Value v = Json("info --json '" + path + "'");
        EXPECT_EQ(v["nonlinear_terms"].number, 11) << path;
        // ENERGYUSE holds three terms, REFCAP two; OCTANE, VAPOUR,
        // SEVERITY, TANKQ, DISTEVAP and PROFIT one each.
        EXPECT_EQ(v["nonlinear_equations"].number, 8) << path;
    }
    const Result text = Run("info '" + zemFile + "'");
    EXPECT_NE(text.out.find("Nonlinear:  11 terms in 8 equations\n"), std::string::npos) << text.out;

    // A standard MPS model converted to a model file reads back the same.
    const std::string blendZem = dir_ + "/blend.zem";
    ASSERT_EQ(Run("convert '" + Blend() + "' '" + blendZem + "'").status, 0);
    EXPECT_EQ(Run("dump '" + blendZem + "'").out, Run("dump '" + Blend() + "'").out);
    // The format can be named when the extension does not tell it.
    const std::string renamed = dir_ + "/refinery.bin";
    std::filesystem::copy_file(zemFile, renamed);
    EXPECT_EQ(Run("info '" + renamed + "'").status, 2);
    EXPECT_EQ(Json("info --json --format zem '" + renamed + "'")["variables"].number, 17);
}

TEST_F(ZemModelFile, GamsOutputDeclaresTheModel) {
    const std::string path = dir_ + "/refinery.gms";
    const Result r = Run("convert '" + Refinery() + "' '" + path + "'");
    ASSERT_EQ(r.status, 0) << r.err;
    // The listing itself is the model manager's; here: it is this model's.
    ExpectAll(Slurp(path), {"$OFFSYMLIST\n", "CDUCAP_LE", "CDUCAP_GE", "PROFIT_OBJ =E= ",
                            "  TEMP.LO =  4.500000e+02 ;", "  TEMP.UP =  5.400000e+02 ;"});
}

TEST_F(ZemModelFile, SummaryHoldsHeadingListingAndOptions) {
    const std::string path = dir_ + "/refinery.txt";
    // Written from the model file, so the summary shows what it restored.
    const Result r = Run("convert '" + RefineryZem() + "' '" + path + "'");
    ASSERT_EQ(r.status, 0) << r.err;
    const std::string txt = Slurp(path);
    ExpectAll(txt, {"M O D E L   T I T L E   :  REFINERY\n\n", "D I M E N S I O N S : N = 17; M = 14; M (Nonlinear) = 8;",
                    "  ITERLIM : 500\n"});
    // The heading comes first, then the algebraic listing.
    EXPECT_LT(txt.find("Z E M   D A T A"), txt.find("A L G E B R A I C"));
}

TEST_F(ZemModelFile, DamagedOrMissingModelFilesExitWithOne) {
    const std::string whole = Slurp(RefineryZem());
    ASSERT_GT(whole.size(), 400u);
    // Cut in the header, just after it, and in the middle of the sections.
    for (const size_t keep : {size_t(100), size_t(144), size_t(200), whole.size() / 2,
                              whole.size() - 3}) {
        const std::string cut = File("cut.zem", whole.substr(0, keep));
        for (const char* command : {"info", "dump"}) {
            const Result r = Run(std::string(command) + " '" + cut + "'");
            EXPECT_EQ(r.status, 1) << command << " of " << keep << " bytes";
            EXPECT_EQ(r.out, "") << keep;
            EXPECT_FALSE(r.err.empty()) << keep;
            EXPECT_EQ(r.err.find("Run 'zem --help'"), std::string::npos) << r.err;
            if (keep == 144) {
                EXPECT_NE(r.err.find("Error during read of ZEMFile Header from binary file"), std::string::npos)
                    << r.err;
            }
        }
    }

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
        const Result r = Run("convert '" + Refinery() + "' '" + dir_ + name + "'");
        EXPECT_EQ(r.status, 1) << name;
        EXPECT_NE(r.err.find("out."), std::string::npos) << name << ": " << r.err;
    }
}
