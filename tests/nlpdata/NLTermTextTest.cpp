// Text forms of the term types: Display headers, TermString formulas and the
// numeric format, the diagnostic Jacobian listing, and the equation-type
// terms' identifiers.
#include <gtest/gtest.h>

#include <memory>
#include <sstream>
#include <string>

#include "NLRig.h"
#include "nlpdata/NLEquationTerms.h"
#include "nlpdata/NLQCLEquation.h"

namespace {

std::string DisplayOf(INonLinearity* t) {
    std::ostringstream os;
    t->Display(os);
    return os.str();
}

std::string TextOf(INonLinearity* t) {
    std::string s;
    t->TermString(s);
    return s;
}

struct TextCase {
    const char* keyword;
    const char* header;
    const char* word;  // a function word the formula must hold
};

}  // namespace

TEST(TermText, EveryTypeHasItsHeaderAndFunctionWord) {
    const TextCase cases[] = {
        {"XPROD", "NONLINEARITY TYPE : PRODUCT \n", " * X0"},
        {"XPROD2", "NONLINEARITY TYPE : PRODUCT2 \n", " * X0"},
        {"POW", "NONLINEARITY TYPE : POWER\n", "* POW("},
        {"XPOW", "NONLINEARITY TYPE : X POWER\n", "* POW("},
        {"DIV", "NONLINEARITY TYPE : DIV\n", "* DIV("},
        {"EI", "NONLINEARITY TYPE : EI\n", "* EI("},
        {"CONST", "NONLINEARITY TYPE : CONSTANT (SUM) \n", " + "},
        {"CONSTPROD", "NONLINEARITY TYPE : CONSTANT PRODUCT \n", " * "},
        {"EVAP", "NONLINEARITY TYPE : EVAPORATION GDOT\n", "EVAP("},
        {"FLTQB", "NONLINEARITY TYPE : FLTQB\n", "* FLTQB("},
        {"TPERCENT", "NONLINEARITY TYPE : TPERCENT\n", "* TPERCENT("},
        {"LNX", "NONLINEARITY TYPE : NATURAL LOG\n", "* LN("},
        {"EXPX", "NONLINEARITY TYPE : EXPONENTIAL X\n", "* EXP("},
        {"GNREQ", "NONLINEARITY TYPE : GNREQ CURVE\n", "* GNREQ("},
        {"DIBIFUNC", "NONLINEARITY TYPE : DIBI DISTRIBUTION (ECP)\n", "* DIBIDIST("},
        {"DIBIFUNCX", "NONLINEARITY TYPE : DIBI DISTRIBUTION (FULL)\n", "* DIBIFUNCX("},
        {"SIMDISTINTRP", "NONLINEARITY TYPE : SIM DIST INTERPOLATION\n", "* SIMDISTINTRP("},
        {"SIMDISTINTRPFVT", "NONLINEARITY TYPE : SIM DIST INTERPOLATION FVT\n", "* SIMDISTINTRP("},
    };
    TermRig rig;
    for (const TextCase& c : cases) {
        BuiltTerm t = rig.Build(c.keyword, {2.0, 3.0, 4.0, 5.0, 6.0}, {1.0, 2.0, 3.0, 4.0, 5.0});
        const std::string display = DisplayOf(t.term);
        EXPECT_EQ(display.rfind(c.header, 0), 0u) << c.keyword << ":\n" << display;
        // Then the common listing with the formula.
        EXPECT_NE(display.find("NonLinearity [0] EqnIdx = 1\n"), std::string::npos) << c.keyword;
        const std::string text = TextOf(t.term);
        EXPECT_NE(text.find(c.word), std::string::npos) << c.keyword << ": " << text;
        EXPECT_NE(display.find(text + "\n\n"), std::string::npos) << c.keyword;
    }
}

TEST(TermText, FormulasInDetail) {
    TermRig rig;
    EXPECT_EQ(TextOf(rig.Build("XPROD", {2.0}, {1.0, 1.0}).term), " 2.000000e+00 * X0 * X1");
    EXPECT_EQ(TextOf(rig.Build("EXPX", {1.5, -0.5}, {1.0}).term),
              " 1.500000e+00 * EXP( -5.000000e-01 + X0 )");
    EXPECT_EQ(TextOf(rig.Build("XPOW", {1.0, 2.5, 3.0}, {1.0, 1.0}).term),
              " 1.000000e+00 * POW(  3.000000e+00 + X0 + X1,  2.500000e+00 )");
    EXPECT_EQ(TextOf(rig.Build("DIV", {1, 1, 2.0, 4.0, 3.0}, {1.0, 1.0}).term),
              " 2.000000e+00 * DIV(  3.000000e+00 * X1,  4.000000e+00 * X0 )");
    EXPECT_EQ(TextOf(rig.Build("TPERCENT", {1.0, 50.0, 100.0, 200.0}, {1.0, 1.0}).term),
              " 1.000000e+00 * TPERCENT(  5.000000e+01, (  1.000000e+02, X0 ) + (  2.000000e+02, X1 ) )");
    EXPECT_EQ(TextOf(rig.Build("DIBIFUNC", {3.0, 0.5, 0.2, 4.0, 2.0}, {1.0}).term),
              " 3.000000e+00 * DIBIDIST( X0, NBP= 5.0000e-01, OFS= 2.0000e-01, ST= 4.0000e+00, "
              "SB= 2.0000e+00 )");
    EXPECT_EQ(TextOf(rig.Build("EVAP", {50.0, 3.0}, {1.0, 1.0, 1.0}).term),
              "EVAP(  5.000000e+01, 3, X0 + X1, X2 )");
    EXPECT_EQ(TextOf(rig.Build("CONST", {}, {}).term), " 0.000000e+00");
    EXPECT_EQ(TextOf(rig.Build("CONSTPROD", {2.0, 3.0}, {}).term), " 2.000000e+00 *  3.000000e+00");
    // A long boiling-point list is cut short.
    const std::string sd = TextOf(rig.Build("SIMDISTINTRP",
                                            {1.0, 50.0, 1.0, 1, 2, 3, 4, 5, 6, 7, 8},
                                            {1, 1, 1, 1, 1, 1, 1, 1})
                                      .term);
    EXPECT_NE(sd.find("VDIST= 1.0000e+00, 2.0000e+00,"), std::string::npos) << sd;
    EXPECT_NE(sd.find(" 6.0000e+00, ..."), std::string::npos) << sd;
    EXPECT_EQ(sd.find("7.0000e+00"), std::string::npos) << sd;
}

TEST(TermText, DiagnosticJacobianListsEveryDistinctArgument) {
    TermRig rig;
    BuiltTerm t = rig.Build("XPROD", {1.0}, {2.0, 3.0});
    std::ostringstream os;
    t.term->TermJacobian(os);
    EXPECT_EQ(os.str(),
              "Jacobian of NonLinearity [0] EqnIdx = 1 : XPROD\n"
              "   X0 =  3.000000e+00\n"
              "   X1 =  2.000000e+00\n");
    // The listing leaves the entries alone.
    for (ILPNonZero* nz = t.term->FrstNZ(); nz; nz = t.term->NextNZ())
        EXPECT_EQ(nz->GetPartialDeriv(), 0.0);
    BuiltTerm c = rig.Build("CONST", {1.0}, {});
    std::ostringstream none;
    c.term->TermJacobian(none);
    EXPECT_EQ(none.str(), "Jacobian of NonLinearity [0] EqnIdx = 1 : CONST\n   no derivatives\n");
}

TEST(EquationTerms, KeepTheirFullIdentifierAndAddNothing) {
    TermRig rig;
    struct {
        std::unique_ptr<NonLinearityEquationTerm> term;
        int16_t code;
        const char* keyword;
        const char* title;
    } cases[] = {
        {std::unique_ptr<NonLinearityEquationTerm>(new NonLinearityBlockEquation("NLBLKEQ:B1")), 8,
         "NLBLKEQ", "BLOCK EQUATION"},
        {std::unique_ptr<NonLinearityEquationTerm>(new NonLinearityWrap("WRAPEQ:w")), 12, "WRAPEQ",
         "WRAPPED TERM"},
        {std::unique_ptr<NonLinearityEquationTerm>(new NonLinearitySCDEquation("SCDEQ:COL1")), 13,
         "SCDEQ", "SCD EQUATION"},
    };
    for (auto& c : cases) {
        INonLinearity* t = c.term.get();
        rig.Fill(t, {1.5}, {rig.Var("A", 2.0), rig.Var("B", 3.0)});
        EXPECT_EQ(t->GetType(), c.code);
        const std::string id = t->GetNonLinearityID();
        EXPECT_EQ(id.rfind(std::string(c.keyword) + ":", 0), 0u) << id;
        EXPECT_EQ(t->EvaluateTerm(), 0.0) << id;
        EXPECT_EQ(TermRig::Jacobian(t), (std::vector<double>{0.0, 0.0})) << id;
        EXPECT_EQ(TextOf(t), id + "( A, B ;  1.500000e+00 )");
        EXPECT_EQ(DisplayOf(t).rfind(std::string("NONLINEARITY TYPE : ") + c.title + " : " + id + "\n",
                                     0),
                  0u);
        EXPECT_EQ(t->NumberOfVariableTerms(), 2);
        EXPECT_EQ(t->NumberOfNLConstants(), 1);
    }
    // Without an identifier they carry their keyword.
    NonLinearitySCDEquation plain;
    EXPECT_STREQ(plain.GetNonLinearityID(), "SCDEQ");
    NonLinearityQCLEquation empty("");
    EXPECT_STREQ(empty.GetNonLinearityID(), "QCLEQ");
}

