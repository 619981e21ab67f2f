// User equations ("USEREQ:formula") read from XMPS and evaluated; the
// round-trip harness carries them through the writers.
#include <cmath>
#include <string>

#include "lpdata/ILPNonZero.h"
#include "tests/xmpsutil/XMPSTestSupport.h"

using namespace xmpstest;

namespace {

const std::string kHead = "NAME U\nNONLINEAR\n";

double Deriv(IZEMMgr* m, const char* col) {
    ILPNonZero* nz = Matrix(m)->ExistIncidence(Eqn(m, "R")->GetIndex(), Var(m, col)->GetIndex());
    return nz ? nz->GetPartialDeriv() : NAN;
}

}  // namespace

TEST(XMPSUserEquation, EvaluatesValueAndExactDerivatives) {
    Model read = Read(kHead + " E  R   USEREQ:2*A*ln(B)-A^2/B  0.5   A   B\n E  R   1.0  B\n"
                      "INITIAL\n BS    A  3.0\n BS    B  2.0\nENDATA\n");
    IZEMMgr* m = read.get();
    ASSERT_TRUE(NL(m)->EvaluateModel());
    ASSERT_TRUE(NL(m)->EvaluateJacobian());
    const double a = 3.0, b = 2.0;
    EXPECT_DOUBLE_EQ(Eqn(m, "R")->GetEqnValue(), 0.5 * (2 * a * std::log(b) - a * a / b) + b);
    EXPECT_DOUBLE_EQ(Deriv(m, "A"), 0.5 * (2 * std::log(b) - 2 * a / b));
    EXPECT_DOUBLE_EQ(Deriv(m, "B"), 0.5 * (2 * a / b + a * a / (b * b)) + 1.0);
}

TEST(XMPSUserEquation, RefusesFormulasThatDoNotReadOrNameOtherVariables) {
    const struct {
        const char* card;
        const char* says;
    } cases[] = {
        {" E  R   USEREQ:A/(B  1.0  A  B\n", "Error: Syntax error. (position 4)"},
        {" E  R   USEREQ:A*C  1.0  A  B\n", "the name 'C' in its formula is none of its variables"},
        {" E  R   USEREQ:A  1.0  A  2.0\n", "takes one constant"},
        {" E  R   USEREQ  1.0  A\n", "without a formula"},
    };
    for (const auto& c : cases) {
        const ZEM_Exception e = Thrown([&] { Read(kHead + c.card + "ENDATA\n"); });
        EXPECT_NE(e.Reason().find(c.says), std::string::npos) << c.card << " -> " << e.Reason();
    }
    // A keyword the card cannot hold whole is refused, never cut.
    const std::string longFormula = "USEREQ:" + std::string(130, 'A');
    const ZEM_Exception e = Thrown([&] { Read(kHead + " E  R   " + longFormula + "  1.0  A\nENDATA\n"); });
    EXPECT_EQ(e.Name(), "XMPS NONLINEAR Section Error - Keyword longer than 128 characters");
}
