// Tests of the term base class and of its constants.
#include <gtest/gtest.h>

#include <cstring>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include "lpdata/LPEquation.h"
#include "lpdata/LPNonZero.h"
#include "lpdata/LPVariable.h"
#include "nlpdata/NLConstant.h"
#include "nlpdata/NonLinearity.h"

namespace {

// The smallest concrete term: the bare base plus a text form that prints the
// multiplier with the numeric format and the argument names.
class TextTerm : public NonLinearity {
public:
    TextTerm() { SetTypeAndID(42, "TEXTTERM"); }
    using NonLinearity::TermString;
    void TermString(std::string& out) override {
        out = FormatNumber(GetFrstConstVal());
        for (ILPVariable* v = FrstVar(); v; v = NextVar()) out += std::string(" * ") + v->GetName();
    }
};

std::unique_ptr<LPVariable> Var(const char* name, double value = 1.0) {
    std::unique_ptr<LPVariable> v(new LPVariable());
    v->SetName(name);
    v->SetVarValue(value);
    return v;
}

}  // namespace

TEST(NonLinearityBase, RepeatedVariablesCountOnceAmongUniqueOnes) {
    TextTerm t;
    auto a = Var("A"), b = Var("B");
    EXPECT_EQ(t.AddVariableObject(a.get()), 1);
    EXPECT_EQ(t.AddVariableObject(a.get()), 2);
    EXPECT_EQ(t.AddVariableObject(b.get()), 3);
    EXPECT_EQ(t.AddVariableObject(nullptr), 3);
    EXPECT_EQ(t.NumberOfVariableTerms(), 3);
    EXPECT_EQ(t.NumberOfUniqueVariableEntries(), 2);
    std::vector<ILPVariable*> args, uniq;
    for (ILPVariable* v = t.FrstVar(); v; v = t.NextVar()) args.push_back(v);
    for (ILPVariable* v = t.FrstUniqueVar(); v; v = t.NextUniqueVar()) uniq.push_back(v);
    EXPECT_EQ(args, (std::vector<ILPVariable*>{a.get(), a.get(), b.get()}));
    EXPECT_EQ(uniq, (std::vector<ILPVariable*>{a.get(), b.get()}));
    // A walk past its end stays at the end; Frst starts over.
    EXPECT_EQ(t.NextVar(), nullptr);
    EXPECT_EQ(t.FrstVar(), a.get());
}

TEST(NonLinearityBase, ManyArgumentsKeepFirstOccurrenceOrder) {
    // Enough distinct arguments to pass the switch to the hashed search.
    TextTerm t;
    std::vector<std::unique_ptr<LPVariable>> vars;
    for (int i = 0; i < 40; ++i) vars.push_back(Var(("V" + std::to_string(i)).c_str()));
    for (int round = 0; round < 3; ++round)
        for (int i = 0; i < 40; ++i)
            if (round == 0 || i % 3 == 0) t.AddVariableObject(vars[i].get());
    EXPECT_EQ(t.NumberOfUniqueVariableEntries(), 40);
    EXPECT_EQ(t.NumberOfVariableTerms(), 40 + 2 * 14);
    int i = 0;
    for (ILPVariable* v = t.FrstUniqueVar(); v; v = t.NextUniqueVar(), ++i)
        EXPECT_EQ(v, vars[i].get());
    EXPECT_EQ(i, 40);
}

TEST(NonLinearityBase, ConstantsAreCopiedOrKeptByPointerAndTheFirstIsCached) {
    NLConstant external(7.5);
    {
        TextTerm t;
        EXPECT_EQ(t.AddNLConstantObject(&external), 1);
        EXPECT_EQ(t.AddNLConstantObject(static_cast<INLConstant*>(nullptr)), 1);
        EXPECT_EQ(t.AddNLConstantObject(5.0), 2);
        EXPECT_EQ(t.GetFrstConstVal(), 7.5);
        t.setFrstConstVal(4.0);
        EXPECT_EQ(t.GetFrstConstVal(), 4.0);
        EXPECT_EQ(t.FrstNLConst(), &external);
        EXPECT_EQ(external.GetValue(), 7.5);
        EXPECT_EQ(t.NextNLConst()->GetValue(), 5.0);
        EXPECT_EQ(t.NextNLConst(), nullptr);
        EXPECT_EQ(t.NumberOfNLConstants(), 2);
    }
    // The term is gone and did not delete the caller's constant.
    external.SetValue(2.0);
    EXPECT_EQ(external.GetValue(), 2.0);
}

TEST(NonLinearityBase, ConcatVarListNamesSkipsUnderscoreBeforeUnderscoredNames) {
    TextTerm t;
    auto a = Var("A"), b = Var("_B"), c = Var("C");
    t.AddVariableObject(a.get());
    t.AddVariableObject(b.get());
    t.AddVariableObject(c.get());
    std::string s = "ID";
    t.ConcatVarListNames(s);
    EXPECT_EQ(s, "ID_A_B_C");
}

TEST(NonLinearityTermString, UsesTheGivenFormatOrTheDefault) {
    TextTerm t;
    auto x = Var("X");
    t.AddNLConstantObject(2.5);
    t.AddVariableObject(x.get());
    char buf[64];
    t.TermString("%.2f", buf, sizeof buf);
    EXPECT_STREQ(buf, "2.50 * X");
    EXPECT_STREQ(t.GetNumericFormat(), "%.2f");
    t.TermString(nullptr, buf, sizeof buf);
    EXPECT_STREQ(buf, " 2.500000e+00 * X");
    // 16 characters is still accepted; the field holds it whole.
    t.TermString("<<<<<<<<<%9.3f>>", buf, sizeof buf);
    EXPECT_STREQ(t.GetNumericFormat(), "<<<<<<<<<%9.3f>>");
    EXPECT_STREQ(buf, "<<<<<<<<<    2.500>> * X");
    // 17 characters falls back to the default.
    t.TermString("<<<<<<<<<%9.3f>>>", buf, sizeof buf);
    EXPECT_STREQ(t.GetNumericFormat(), "% #12.6e");
    // Wide fields are not cut.
    EXPECT_TRUE(t.SetNumericFormat("%90.1f"));
    EXPECT_EQ(t.FormatNumber(1.0).size(), 90u);
}

TEST(NonLinearityTermString, RefusesFormatsThatAreNotOneDoubleConversion) {
    TextTerm t;
    for (const char* bad : {"%s", "%d", "%e %e", "abc", "%*e", "%.3", "%n", "%5.2e%"}) {
        EXPECT_FALSE(t.SetNumericFormat(bad)) << bad;
        EXPECT_STREQ(t.GetNumericFormat(), "% #12.6e") << bad;
    }
    EXPECT_TRUE(t.SetNumericFormat("100%% of %g"));
    EXPECT_EQ(t.FormatNumber(0.5), "100% of 0.5");
    EXPECT_TRUE(t.SetNumericFormat("%-+#012.4E"));
}

TEST(NonLinearityTermString, CopiesLikeStrncpy) {
    TextTerm t;
    auto x = Var("X");
    t.AddNLConstantObject(1.0);
    t.AddVariableObject(x.get());
    char buf[8];
    std::memset(buf, '#', sizeof buf);
    t.TermString("%.1f", buf, 4);
    EXPECT_EQ(std::string(buf, 8), "1.0 ####");  // no terminator written
    std::memset(buf, '#', sizeof buf);
    t.TermString("%.0f", buf, 8);
    EXPECT_EQ(std::string(buf, 8), std::string("1 * X\0\0\0", 8));  // padded
    std::memset(buf, '#', sizeof buf);
    t.TermString("%.0f", buf, 0);
    t.TermString("%.0f", nullptr, 8);
    EXPECT_EQ(std::string(buf, 8), "########");
}

TEST(NonLinearityDisplay, ListsArgumentsConstantsAndFormulaOmittingEmptyLists) {
    TextTerm t;
    std::ostringstream empty;
    t.Display(empty);  // no row either
    EXPECT_EQ(empty.str(), "NonLinearity [0] EqnIdx = 0\n 0.000000e+00\n\n");
    LPEquation row;
    row.SetIndex(4);
    auto x = Var("X"), y = Var("Y");
    t.SetIndex(2);
    t.SetEquationPtr(&row);
    t.AddVariableObject(x.get());
    t.AddVariableObject(y.get());
    t.AddNLConstantObject(1.5);
    t.AddNLConstantObject(-2.0);
    std::ostringstream os;
    t.Display(os);
    EXPECT_EQ(os.str(),
              "NonLinearity [2] EqnIdx = 4\n"
              " Variable Participant List ...\n"
              "   X\n"
              "   Y\n"
              " Constant Pool for Term : ( 1.5, -2 )\n"
              " 1.500000e+00 * X * Y\n\n");
}

TEST(NonLinearityCompare, ConstantsDecideAndTheReportNamesRowAndVariables) {
    LPEquation row;
    row.SetName("R1");
    auto x = Var("X"), y = Var("Y"), x2 = Var("X"), y2 = Var("Y"), z2 = Var("Z");
    const char* p12 = " Problem p1 Nonlinearity for Equation R1 matches a Problem p2 Nonlinearity in Variables X Y ";
    const struct {
        std::vector<double> ca, cb;
        int mode;
        bool fromB;  // b holds X, Y and Z; seen from b, Z is missing in a
        int result;
        std::string text;
    } cases[] = {
        {{2.0}, {2.0 + 1e-9}, 1, false, 0, ""},  // equal within the tolerance
        {{2.0}, {2.0 + 1e-9, 0.0}, 1, false, -1, "?"},  // the counts must match
        {{2.0}, {0.0, 3.0}, 1, false, -1, std::string(p12) + " but NOT in constants (p1 = 2, p2 = 3)\n\n"},
        {{2.0, 4.0}, {2.0, 5.0}, 3, false, -1,
         " Problem old MG Nonlinearity for Equation R1 matches a Problem zem MG Nonlinearity in Variables X Y but "
         "NOT in constants\n\n"},
        {{1.0}, {9.0}, 1, true, 1, ""},
    };
    for (const auto& c : cases) {
        TextTerm a, b;
        a.SetEquationPtr(&row);
        a.AddVariableObject(x.get());
        a.AddVariableObject(y.get());
        b.AddVariableObject(y2.get());
        b.AddVariableObject(z2.get());
        b.AddVariableObject(x2.get());
        for (double v : c.ca) a.AddNLConstantObject(v);
        for (double v : c.cb) b.AddNLConstantObject(v);
        std::ostringstream os;
        EXPECT_EQ(c.fromB ? b.Compare(&a, c.mode, 1e-6, os) : a.Compare(&b, c.mode, 1e-6, os), c.result) << c.text;
        if (c.fromB) {
            EXPECT_EQ(a.Compare(nullptr, 1, 1e-6, os), 1);
        }
        if (c.text != "?") {
            EXPECT_EQ(os.str(), c.text);
        }
    }
}

TEST(NLConstantTest, HoldsAndShowsItsValue) {
    INLConstant* c = new NLConstant(1.25);
    EXPECT_EQ(c->GetValue(), 1.25);
    c->SetValue(-3.0);
    std::ostringstream os;
    c->Display(os);
    EXPECT_EQ(os.str(), "NLConstant = -3\n");
    c->Destroy();
}
