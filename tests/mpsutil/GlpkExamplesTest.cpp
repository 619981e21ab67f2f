// Reads an example MPS model that GLPK's utilities ship and checks what the
// reader makes of it against the file itself.
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <string>

#include "MPSTestUtil.h"

using namespace mpstest;

TEST(GlpkExamples, OilRefineryModelIsReadWhole) {
    const std::string plain = "/usr/share/doc/glpk-utils/examples/murtagh.mps";
    TempDir dir;
    std::string path = plain;
    if (!std::filesystem::exists(plain)) {
        // Some packages ship the examples compressed.
        path = dir.path() + "/murtagh.mps";
        const std::string cmd = "gzip -dc '" + plain + ".gz' > '" + path + "' 2>/dev/null";
        if (std::system(cmd.c_str()) != 0) GTEST_SKIP() << plain << " is absent (install glpk-utils)";
    }
    // A model whose title is empty, so that the NAME card names it.
    ModelPtr m = NewModel();
    m->SetModelTitle("");
    MPSStdReader(m.get()).ReadMPSFile(path.c_str());
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
