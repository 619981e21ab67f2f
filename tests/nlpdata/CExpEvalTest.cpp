#include <gtest/gtest.h>

#include <cmath>
#include <string>

#include "nlpdata/CExpEval.h"

namespace {

struct Outcome {
    bool ok;
    double value;
    std::string message;
    int position;
    int code;
};

Outcome Eval(const std::string& text, CExpEval&& ev = CExpEval()) {
    ev.AddSymbol("x", 3.0);
    ev.SetExpression(text.c_str());
    double r = -1.0;
    const bool ok = ev.Evaluate(r);
    return {ok, r, ev.GetErrorMessage(), ev.GetErrorPosition(), ev.GetErrorCode()};
}

}  // namespace

TEST(CExpEval, ReadsPrecedenceSignsFunctionsAndLogic) {
    const struct {
        const char* text;
        double value;
    } cases[] = {
        {"2+3*4", 14},        {"2^3^2", 512},        {"-2^2", 4},        {"2^-1", 0.5},
        {"(-3)", -3},         {"+2-1-1", 0},          {"8/4/2", 1},       {"1/0.000001", 1e6},
        {"sqrt(4)+abs(-2)", 4}, {"SQRT(x*3)", 3},     {"ln(exp(2))", 2},  {"lg(1000)", 3},
        {"1<2 && 3>=3", 1},   {"!0", 1},              {"!5", 0},          {"0 || 2 == 2", 1},
        {"1 != 1 || 2 <= 1", 0}, {"x > 2 && x < 4", 1}, {"1+2<4", 1},     {" 1.5e+1 + .5 + 5. ", 20.5},
        {"2^-x", 0.125},      {"-(x-1)^2", 4},        {"X", 3},
    };
    for (const auto& c : cases) {
        const Outcome r = Eval(c.text);
        EXPECT_TRUE(r.ok) << c.text << " : " << r.message;
        EXPECT_DOUBLE_EQ(r.value, c.value) << c.text;
    }
}

TEST(CExpEval, RefusesWithMessageCodeAndPosition) {
    const struct {
        const char* text;
        const char* message;
        int code;
        int position;
    } cases[] = {
        {"", "Error: Empty Expression.", 5, -1},
        {"2*-3", "Error: Expected an operand.", 8, 2},
        {"1/0", "Error: Divide by zero error.", 3, 1},
        {"sqrt 4", "Error: Expected '('.", 10, 5},
        {"sqrt", "Error: Expected '('.", 10, 4},
        {"2 & 3", "Error: Expected a logical operator.", 1, 2},
        {"3 = 3", "Error: Expected a comparison or relational operator.", 1, 2},
        {"2 3", "Error: Expected an operator.", 9, 2},
        {"x(2)", "Error: Expected an operator.", 9, 1},
        {"()", "Error: Expected an operand.", 8, 1},
        {"1+", "Unexpected end of expression.", 5, 2},
        {"(1+2", "Error: Syntax error.", 5, 4},
        {"1+2)", "Error: Syntax error.", 5, 3},
        {"1 \x01", "Error: Illegal character.", 1, 2},
        {".", "Error: Expected a digit.", 1, 1},
        {"1e+", "Error: Expected a digit.", 1, 3},
        {"2x", "Error: Invalid number.", 1, 0},
        {"1.2.3", "Error: Invalid number.", 1, 0},
        {"2 + y", "Error: Unknown symbol.", 2, 4},
    };
    for (const auto& c : cases) {
        const Outcome r = Eval(c.text);
        EXPECT_FALSE(r.ok) << c.text;
        EXPECT_EQ(r.message, c.message) << c.text;
        EXPECT_EQ(r.code, c.code) << c.text;
        EXPECT_EQ(r.position, c.position) << c.text;
    }
}

TEST(CExpEval, NamesFollowTheTableFlags) {
    // Symbol characters make up names; & < > end them.
    CExpEval declared(true);
    declared.SetExpression("a#b$+?*2");
    double r = 0;
    ASSERT_TRUE(declared.Evaluate(r));
    EXPECT_EQ(declared.NumberOfSymbols(), 2);
    EXPECT_STREQ(declared.SymbolName(0), "a#b$");
    EXPECT_STREQ(declared.SymbolName(1), "?");
    EXPECT_TRUE(Eval("x<4&&x>2").ok);
    // Exact names: X is another symbol, and SQRT no function.
    EXPECT_EQ(Eval("X", CExpEval(false, true)).message, "Error: Unknown symbol.");
    CExpEval exact(false, true);
    EXPECT_NE(exact.AddSymbol("X"), exact.AddSymbol("x"));
    CExpEval folded;
    EXPECT_EQ(folded.AddSymbol("X"), folded.AddSymbol("x"));
}

TEST(CExpEval, LimitsParsedFlagAndReuse) {
    std::string text = "1";
    for (int i = 0; i < 249; ++i) text += "+1";  // 499 tokens and the end marker
    EXPECT_DOUBLE_EQ(Eval(text).value, 250);
    const Outcome over = Eval(text + "+1");
    EXPECT_EQ(over.code, CExpEval::kLimit);
    EXPECT_EQ(over.message, "Error: Too many tokens.");

    CExpEval table;
    for (int i = 0; i < CExpEval::kMaxSymbols; ++i) ASSERT_EQ(table.AddSymbol(("s" + std::to_string(i)).c_str()), i);
    EXPECT_EQ(table.AddSymbol("one_more"), -1);
    CExpEval declared(true);
    for (int i = 0; i < CExpEval::kMaxSymbols; ++i) declared.AddSymbol(("s" + std::to_string(i)).c_str());
    EXPECT_EQ(declared.Parse("s499+s500"), CExpEval::kLimit);
    EXPECT_EQ(std::string(declared.GetErrorMessage()), "Error: Too many symbols.");
    EXPECT_EQ(declared.GetErrorPosition(), 5);
    double r = 0;

    CExpEval ev;
    const int x = ev.AddSymbol("x");
    EXPECT_EQ(ev.EvaluatePostfix(r), CExpEval::kNotParsed);
    ASSERT_EQ(ev.Parse("x*x+1"), 0);
    ev.SetSymbolValue(x, 4.0);
    ASSERT_EQ(ev.EvaluatePostfix(r), 0);
    EXPECT_DOUBLE_EQ(r, 17.0);
    EXPECT_NE(ev.Parse("x*"), 0);
    EXPECT_EQ(ev.EvaluatePostfix(r), CExpEval::kNotParsed);
}

TEST(CExpEval, GradientMatchesCentralDifferences) {
    const char* formulas[] = {"x*y/z - x^y + sqrt(z)*ln(y)", "exp(-x)*abs(y-5)^2 + lg(z)/x",
                              "-(x+y)*z^2 + (x>y)*3 + y^2^0.5 - (-x)^2", "2^x*z + x/(y*z)"};
    for (const char* f : formulas) {
        CExpEval ev;
        const double at[] = {1.3, 2.1, 0.7};
        for (const char* n : {"x", "y", "z"}) ev.AddSymbol(n);
        ASSERT_EQ(ev.Parse(f), 0) << f;
        for (int i = 0; i < 3; ++i) ev.SetSymbolValue(i, at[i]);
        double value = 0, grad[3];
        ASSERT_EQ(ev.EvaluateGradient(value, grad), 0) << f;
        for (int i = 0; i < 3; ++i) {
            const double h = 1e-6;
            double up = 0, down = 0;
            ev.SetSymbolValue(i, at[i] + h);
            ev.EvaluatePostfix(up);
            ev.SetSymbolValue(i, at[i] - h);
            ev.EvaluatePostfix(down);
            ev.SetSymbolValue(i, at[i]);
            EXPECT_NEAR(grad[i], (up - down) / (2 * h), 1e-5 * (1 + std::fabs(grad[i]))) << f << " d" << i;
        }
    }
}
