// The bundled example model reads with its terms and evaluates to finite
// values.
#include <cmath>
#include <set>
#include <string>

#include "tests/xmpsutil/XMPSTestSupport.h"

using namespace xmpstest;

TEST(XMPSExample, RefineryReadsAndEvaluates) {
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
}
