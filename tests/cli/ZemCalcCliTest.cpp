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
    const Doc ok = Json("calc '2^3^2' --json");
    EXPECT_TRUE(ok.at("ok").get<bool>());
    EXPECT_EQ(ok.at("value").get<double>(), 512);
    const Doc bad = Json("calc 'sqrt 4' --json");
    EXPECT_FALSE(bad.at("ok").get<bool>());
    EXPECT_EQ(bad.at("message").get<std::string>(), "Error: Expected '('.");
    EXPECT_EQ(bad.at("position").get<double>(), 5);
    EXPECT_EQ(bad.at("code").get<double>(), 10);
}
