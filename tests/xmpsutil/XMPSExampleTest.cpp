// The bundled example model reads with its terms, evaluates to finite
// values and survives a write and read.
#include <cmath>
#include <set>
#include <string>

#include "tests/xmpsutil/XMPSTestSupport.h"

using namespace xmpstest;

TEST(XMPSExample, RefineryReadsEvaluatesAndSurvivesAWriteAndRead) {
    Model m = ReadFile(std::string(ZEM_SOURCE_DIR) + "/examples/refinery.xmps");
    std::set<int> types;
    for (INonLinearity* t : Terms(m.get())) types.insert(t->GetType());
    EXPECT_EQ(types, (std::set<int>{1, 2, 3, 4, 9, 11, 14, 15, 16, 20, 21, 91}));
    EXPECT_EQ(Eqn(m.get(), "PROFIT")->GetType(), ZEM_EQN_OBJECTIVE);
    EXPECT_DOUBLE_EQ(Var(m.get(), "TEMP")->GetTempBoundLower(), 470.0);
    EXPECT_DOUBLE_EQ(Var(m.get(), "CRUDE1")->GetVarValue(), 60.0);
    EXPECT_EQ(Var(m.get(), "SULF1")->GetVarStatus(), ZEM_STATUS_FIXED);

    ASSERT_TRUE(NL(m.get())->EvaluateModel());
    ASSERT_TRUE(NL(m.get())->EvaluateJacobian());
    ILPEquationList* eqns = Eqns(m.get());
    for (ILPEquation* e = eqns->FrstEquationObject(); e != nullptr; e = eqns->NextEquationObject()) {
        EXPECT_TRUE(std::isfinite(e->GetEqnValue())) << e->GetName();
    }
    // The octane row: blend octane (71 N + 98 R) / (N + R) minus RON.
    EXPECT_NEAR(Eqn(m.get(), "OCTANE")->GetEqnValue(), (71.0 * 30 + 98.0 * 20) / 50.0 - 81.8, 1e-9);
    ILPMatrix* matrix = Matrix(m.get());
    for (ILPNonZero* nz = matrix->FrstNonZeroObject(); nz != nullptr; nz = matrix->NextNonZeroObject()) {
        EXPECT_TRUE(std::isfinite(nz->GetPartialDeriv())) << nz->GetEquationPtr()->GetName();
    }

    Model back = Read(Write(m.get()));
    EXPECT_EQ(Terms(back.get()).size(), Terms(m.get()).size());
    EXPECT_EQ(Matrix(back.get())->NumberOfNonZeros(), matrix->NumberOfNonZeros());
    EXPECT_EQ(Eqns(back.get())->NumberOfEquations(), eqns->NumberOfEquations());
    // The correlation term reads back and evaluates alike.
    ASSERT_TRUE(NL(back.get())->EvaluateModel());
    EXPECT_EQ(Eqn(back.get(), "RVPBLEND")->GetEqnValue(), Eqn(m.get(), "RVPBLEND")->GetEqnValue());
}
