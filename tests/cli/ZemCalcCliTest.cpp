#include "ZemCliTestSupport.h"

using namespace clitest;

using ZemCalc = ZemRun;

TEST_F(ZemCalc, PrintsTheValueOrTheMessageAndPosition) {
    const Result value = Run("calc 'x*Y^2 - 1/3' --set x=2 --set y=3");
    EXPECT_EQ(value.status, 0) << value.err;
    EXPECT_EQ(value.out, "17.666666666666668\n");

    const Result fails = Run("calc '1/0'");
    EXPECT_EQ(fails.status, 1);
    EXPECT_EQ(fails.out, "");
    EXPECT_EQ(fails.err, "Error: Divide by zero error. (position 1)\n");

    EXPECT_EQ(Run("calc x --set X=1 --exact-names").err, "Error: Unknown symbol. (position 0)\n");
    EXPECT_EQ(Run("calc -- -2^2").out, "4\n");
    EXPECT_EQ(Run("calc x --set x=abc").status, 2);
}

TEST_F(ZemCalc, JsonReportsBothOutcomesWithStatusZero) {
    const jsontest::Value ok = Json("calc '2^3^2' --json");
    EXPECT_TRUE(ok["ok"].boolean);
    EXPECT_EQ(ok["value"].number, 512);
    const jsontest::Value bad = Json("calc 'sqrt 4' --json");
    EXPECT_FALSE(bad["ok"].boolean);
    EXPECT_EQ(bad["message"].text, "Error: Expected '('.");
    EXPECT_EQ(bad["position"].number, 5);
    EXPECT_EQ(bad["code"].number, 10);
}
