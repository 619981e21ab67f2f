// zem with correlation terms: the library's default place, --correlations
// and the environment variable, and the correlation log of zem display.
#include "ZemCliTestSupport.h"

using namespace clitest;

using ZemCorrelations = ZemRun;

// The library's default place is where zem eval finds it in the other tests.
TEST_F(ZemCorrelations, EvalHonoursTheOptionAndTheEnvironment) {
    const std::string incomplete = std::string(ZEM_BINARY_DIR) + "/tests/qcltest/libzemqcl_incomplete.so";
    Result r = Run("eval '" + Refinery() + "' --correlations '" + incomplete + "'");
    EXPECT_EQ(r.status, 1);
    EXPECT_NE(r.err.find("lacks the entry point gfx_qclGenCalc"), std::string::npos) << r.err;
    // The option wins over the environment variable, which wins over the default.
    r = Run("eval '" + Refinery() + "' --correlations '" + std::string(ZEM_BINARY_DIR) + "/libzemqcl.so'");
    EXPECT_EQ(r.status, 0) << r.err;
    setenv("ZEM_QCL_LIBRARY", "/nonexistent/libqcl.so", 1);
    r = Run("eval '" + Refinery() + "'");
    unsetenv("ZEM_QCL_LIBRARY");
    EXPECT_EQ(r.status, 1);
    EXPECT_NE(r.err.find("/nonexistent/libqcl.so"), std::string::npos) << r.err;
}

TEST_F(ZemCorrelations, DisplayShowsTheCorrelationLog) {
    const Result r = Run("display '" + Refinery() + "' --correlation-log");
    ASSERT_EQ(r.status, 0) << r.err;
    EXPECT_NE(r.out.find("C O R R E L A T I O N   L O G\n\nEquation: RVPBLEND\nPCC Flow: 50\nCorrIndex: 0\n"
                         "Input Values: RVP = 8\nOutput Property: RVPI = 13.45434264\n"),
              std::string::npos);
}
