// Free-format MPS written by another tool (glpsol --wfreemps) is read by the
// extended reader.
#include <cmath>
#include <cstdlib>
#include <string>

#include "tests/xmpsutil/XMPSTestSupport.h"

using namespace xmpstest;

TEST(XMPSFreeMps, ReadsAFileWrittenByGlpsol) {
    // transp.mod of the GLPK examples, written with glpsol --wfreemps.
    Model m = ReadFile(std::string(ZEM_SOURCE_DIR) + "/tests/xmpsutil/data/transp_glpsol.fmps", true);
    EXPECT_EQ(Eqns(m.get())->NumberOfEquations(), 6);
    EXPECT_EQ(Vars(m.get())->NumberOfVariables(), 6);
    EXPECT_EQ(Matrix(m.get())->NumberOfNonZeros(), 18);
    EXPECT_EQ(Eqn(m.get(), "cost")->GetType(), ZEM_EQN_OBJECTIVE);
    EXPECT_EQ(Eqn(m.get(), "supply[San-Diego]")->GetType(), ZEM_EQN_LE);
    EXPECT_EQ(Eqn(m.get(), "demand[Topeka]")->GetType(), ZEM_EQN_GE);
    EXPECT_DOUBLE_EQ(Coefficient(m.get(), "cost", "x[San-Diego,Topeka]"), 0.126);
    EXPECT_DOUBLE_EQ(Eqn(m.get(), "demand[Topeka]")->GetRHS(), 275.0);
}

// glpsol writes each example model twice, as free MPS and as fixed MPS; the
// extended reader on the first and the standard reader on the second must
// give the same model.
TEST(XMPSFreeMps, AgreesWithTheStandardReaderOnGlpsolOutput) {
    if (std::system("glpsol --version >/dev/null 2>&1") != 0) GTEST_SKIP() << "glpsol not installed";
    const std::string dir = "/usr/share/doc/glpk-utils/examples/";
    const std::string out = std::string(ZEM_BINARY_DIR) + "/xmps_glpsol_";
    int compared = 0;
    for (const char* name : {"plan", "alloy", "furnace", "icecream", "murtagh"}) {
        SCOPED_TRACE(name);
        const std::string src = dir + name + ".mps";
        const std::string freeFile = out + name + ".fmps";
        const std::string fixedFile = out + name + ".mps";
        const std::string cmd = "glpsol --mps '" + src + "' --check --wfreemps '" + freeFile +
                                "' --wmps '" + fixedFile + "' >/dev/null 2>&1";
        if (std::system(cmd.c_str()) != 0) continue;
        Model fromFree = ReadFile(freeFile, true);
        Model fromFixed = ReadFile(fixedFile, false);
        ExpectSameModel(fromFixed.get(), fromFree.get(), true);
        std::remove(freeFile.c_str());
        std::remove(fixedFile.c_str());
        ++compared;
    }
    if (compared == 0) GTEST_SKIP() << "no GLPK example models found";
}
