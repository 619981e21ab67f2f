// The correlation functions against the project's correlation library
// (libzemqcl.so beside libzemxmps.so): lookups, a calculation with its
// values, the library's own codes passed through, the instance's buffer
// rules, differenced derivatives and the model's correlation log.
#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <fstream>
#include <iterator>
#include <string>

#include "api/zemxmps.h"
#include "nlpdata/INonLinearModel.h"

TEST(FlatCorrelations, RvpThroughTheFlatFunctions) {
    void *mgr = nullptr, *nl = nullptr, *rvp = nullptr;
    ASSERT_EQ(CreateZEMObject(&mgr), 0);
    ASSERT_EQ(GetNonLinearModelIntf(mgr, &nl), 0);
    const std::string log = testing::TempDir() + "zem_flat_qcl.log";
    static_cast<INonLinearModel*>(nl)->SetHqclLogFile(log.c_str());
    static_cast<INonLinearModel*>(nl)->SetHqcl(true);
    ASSERT_TRUE(static_cast<INonLinearModel*>(nl)->OpenLogFiles());

    ASSERT_EQ(InitializeQCL(nl), 0);
    int32_t n = 0, index = -7;
    char text[256] = "x";
    EXPECT_EQ(GetQCLCorrelationCount(nl, &n), 0);
    EXPECT_EQ(n, 7);
    EXPECT_EQ(GetQCLCorrelationIndex(nl, "NOPE", &index), 1);
    EXPECT_EQ(index, -7);
    EXPECT_EQ(GetQCLCorrelationId(nl, n, text), 1);
    EXPECT_STREQ(text, "");
    ASSERT_EQ(GetQCLCorrelationIndex(nl, "RVP", &index), 0);
    ASSERT_EQ(MakeAddQCLCorrelationInstance(nl, index, &rvp), 0);
    EXPECT_EQ(GetQCLCorrelationDesc(rvp, text), 0);
    EXPECT_STREQ(text, "Reid vapour pressure blending index RVP^1.25");

    // Inputs and outputs by capacity; the library's codes come back as they are.
    double out = 0.0, d = 0.0;
    EXPECT_EQ(SetQCLInputProperty(rvp, 1, 9.0), -2);
    ASSERT_EQ(SetQCLInputProperty(rvp, 0, 10.0), 0);
    ASSERT_EQ(QCLCalculate(nl, rvp, "RVPBLEND", 1.0), 0);
    EXPECT_EQ(GetQCLOutputPropertyValues(rvp, 0, &out), -2);
    ASSERT_EQ(GetQCLOutputPropertyValues(rvp, 1, &out), 0);
    ASSERT_EQ(GetQCLDerivativeValues(rvp, 1, &d), 0);
    EXPECT_NEAR(out, 17.78279410038923, 1e-12);
    const double analytic = 1.25 * std::pow(10.0, 0.25);
    EXPECT_NEAR(d, analytic, 1e-12);
    EXPECT_EQ(SetQCLCoefficient(rvp, 3, 2.0), 1);
    ASSERT_EQ(SetQCLCoefficient(rvp, 0, 2.0), 0);
    EXPECT_EQ(GetQCLCoefficientValue(rvp, 0, text, &out), 0);
    EXPECT_STREQ(text, "EXPONENT");
    EXPECT_EQ(out, 2.0);
    ASSERT_EQ(QCLCalculate(nl, rvp, "RVPBLEND", 1.0), 0);
    GetQCLOutputPropertyValues(rvp, 1, &out);
    EXPECT_NEAR(out, 100.0, 1e-12);
    SetQCLCoefficient(rvp, 0, 1.25);
    ASSERT_EQ(SetQCLInputProperty(rvp, 0, -1.0), 0);
    EXPECT_EQ(QCLCalculate(nl, rvp, "RVPBLEND", 1.0), 2);

    // Differenced derivatives: central is closer to the analytic one than
    // forward, and both are close.
    SetQCLInputProperty(rvp, 0, 10.0);
    EXPECT_EQ(SetQCLDerivativeOption(rvp, 2), -2);
    ASSERT_EQ(SetQCLDerivativeOption(rvp, 1), 0);
    double forward = 0.0, central = 0.0;
    ASSERT_EQ(QCLCalculate(nl, rvp, "RVPBLEND", 1.0), 0);
    GetQCLDerivativeValues(rvp, 1, &forward);
    SetQCLForwardOption(rvp, 0);
    ASSERT_EQ(QCLCalculate(nl, rvp, "RVPBLEND", 1.0), 0);
    GetQCLDerivativeValues(rvp, 1, &central);
    EXPECT_NEAR(forward, analytic, 1e-6);
    EXPECT_NEAR(central, analytic, 1e-8);
    EXPECT_LT(std::fabs(central - analytic), std::fabs(forward - analytic));

    static_cast<INonLinearModel*>(nl)->CloseLogFiles();
    std::ifstream in(log);
    const std::string written((std::istreambuf_iterator<char>(in)), {});
    EXPECT_NE(written.find("Equation: RVPBLEND\nPCC Flow: 1\nCorrIndex: 0\nInput Values: RVP = 10\n"),
              std::string::npos);
    EXPECT_NE(written.find("Equation: RVPBLEND HQCL FAILED ****** Error code 2"), std::string::npos);
    EXPECT_EQ(UninitializeQCL(nl), 0);
    ReleaseZEMObject(mgr);
    std::remove(log.c_str());
}
