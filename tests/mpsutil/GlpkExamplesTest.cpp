// Reads the example MPS models that GLPK's utilities ship and checks what
// the reader makes of them against the files themselves.
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <string>

#include "MPSTestUtil.h"

using namespace mpstest;

namespace {

const char* const kExamples = "/usr/share/doc/glpk-utils/examples";

// The path of an example, decompressed into `dir` when only a .gz copy
// exists; "" when neither is there.
std::string Example(const TempDir& dir, const std::string& name) {
    const std::string plain = std::string(kExamples) + "/" + name;
    if (std::filesystem::exists(plain)) return plain;
    if (std::filesystem::exists(plain + ".gz")) {
        const std::string out = dir.path() + "/" + name;
        const std::string cmd = "gzip -dc '" + plain + ".gz' > '" + out + "'";
        if (std::system(cmd.c_str()) == 0) return out;
    }
    return "";
}

class GlpkExamples : public ::testing::Test {
protected:
    void SetUp() override {
        if (!std::filesystem::is_directory(kExamples)) {
            GTEST_SKIP() << kExamples << " is absent (install glpk-utils)";
        }
    }

    // Reads an example into a model whose title is empty, so that the NAME
    // card names it.
    ModelPtr ReadExample(const std::string& name) {
        const std::string path = Example(dir_, name);
        if (path.empty()) {
            ADD_FAILURE() << name << " is missing from " << kExamples;
            return nullptr;
        }
        ModelPtr model = NewModel();
        model->SetModelTitle("");
        MPSStdReader reader(model.get());
        reader.ReadMPSFile(path.c_str());
        return model;
    }

    TempDir dir_;
};

}  // namespace

TEST_F(GlpkExamples, OilRefineryModelIsReadWhole) {
    ModelPtr m = ReadExample("murtagh.mps");
    ASSERT_NE(m, nullptr);
    int n = 0, rows = 0, nz = 0;
    m->ModelDimension(n, rows, nz);
    // The file's own header comment: 74 rows, 81 columns, 504 nonzeros.
    EXPECT_EQ(rows, 74);
    EXPECT_EQ(n, 81);
    EXPECT_EQ(nz, 504);
    std::string title;
    m->GetModelTitle(title);
    // "NAME          OIL REFINERY  EXAMPLE": the 8-wide field from column 11.
    EXPECT_EQ(title, "OIL");
    EXPECT_TRUE(m->MatrixIncludesObjective());
    EXPECT_EQ(Eqn(m.get(), "PROFIT")->GetType(), ZEM_EQN_OBJECTIVE);
    EXPECT_EQ(Eqn(m.get(), "MVOLLNC")->GetType(), ZEM_EQN_EQ);
    // "    VCRDBOL   MVOLBOL   1.0", "    VCRDBOL   MVOLLNB   -.537", ...
    EXPECT_EQ(Coef(m.get(), "MVOLLNB", "VCRDBOL"), -0.537);
    EXPECT_EQ(Coef(m.get(), "XVISRSD", "SELLRSD"), -10.1);
    // "    LIMITMAX  MVOLBOL   26.316"
    EXPECT_EQ(Eqn(m.get(), "MVOLBOL")->GetRHS(), 26.316);
    EXPECT_EQ(VarNames(m.get()).back(), "SELLRSD");
    // No BOUNDS section: every column keeps [0, 1e20].
    EXPECT_EQ(Var(m.get(), "SELLRSD")->GetBoundLower(), 0.0);
    EXPECT_EQ(Var(m.get(), "SELLRSD")->GetBoundUpper(), 1e20);
}

TEST_F(GlpkExamples, SmallIntegerModelKeepsItsBounds) {
    ModelPtr m = ReadExample("samp2.mps");
    ASSERT_NE(m, nullptr);
    EXPECT_EQ(EqnNames(m.get()), (std::vector<std::string>{"Z", "R1", "R2", "R3"}));
    EXPECT_EQ(VarNames(m.get()), (std::vector<std::string>{"X1", "X2", "X3", "X4"}));
    EXPECT_EQ(NonZeroCount(m.get()), 15);
    std::string title;
    m->GetModelTitle(title);
    EXPECT_EQ(title, "SAMP");  // "SAMP2" starts in column 15: four characters fit
    EXPECT_EQ(Coef(m.get(), "R2", "X3"), -6.0);
    EXPECT_EQ(Eqn(m.get(), "R2")->GetRHS(), 8.0);
    //  LO BND1 X2 2.0 / UI BND1 X2 5.0
    EXPECT_EQ(Var(m.get(), "X2")->GetBoundLower(), 2.0);
    EXPECT_EQ(Var(m.get(), "X2")->GetBoundUpper(), 5.0);
    EXPECT_EQ(Var(m.get(), "X2")->GetVarType(), ZEM_VAR_DISCRETE);
}

TEST_F(GlpkExamples, FilesOutsideTheFixedRulesAreRefused) {
    // Continuation cards without a column name, and integer markers, are
    // outside the rules this reader follows.
    const struct {
        const char* file;
        const char* card;
    } refused[] = {
        {"plan.mps", "              FE              .15000   CU              .03000"},
        {"samp1.mps", "    MARK0001  'MARKER'                 'INTORG'"},
    };
    for (const auto& r : refused) {
        const std::string path = Example(dir_, r.file);
        if (path.empty()) {
            ADD_FAILURE() << r.file << " is missing";
            continue;
        }
        MPSStdReader reader;
        try {
            reader.ReadMPSFile(path.c_str());
            ADD_FAILURE() << r.file << " was read";
        } catch (ZEM_Exception& e) {
            EXPECT_EQ(e.Name(), "MPS COLUMNS Section Error - Incomplete Data Entry") << r.file;
            EXPECT_EQ(e.Reason(), r.card) << r.file;
            EXPECT_EQ(e.Routine(), "MPSStdReader::COLUMNSData");
        }
    }
}
