#include <sstream>

#include "cases/ZEMCaseMgr.h"
#include "cases/ZEMEdit.h"
#include "cases/CaseTestModel.h"
#include "lpdata/ILPMatrix.h"
#include "lpdata/ILPNonZero.h"
#include "nlpdata/INonLinearModel.h"
#include "zemmgr/IZEMOptionTable.h"

namespace {

// Every scalar the nine kinds touch on the refinery model, as one snapshot.
struct Snapshot {
    double value, lower, upper, rhs, range, coeff, mult;
    int16_t vtype, etype;
    std::string option;
    bool operator==(const Snapshot& o) const {
        return value == o.value && lower == o.lower && upper == o.upper && rhs == o.rhs &&
               range == o.range && coeff == o.coeff && mult == o.mult && vtype == o.vtype &&
               etype == o.etype && option == o.option;
    }
};

struct EditTest : ::testing::Test {
    RefineryModel m;
    ILPVariable* crude = m.Var("CRUDE1");
    ILPEquation* cap = m.Eqn("CDUCAP");
    NonLinearity* term = nullptr;
    IZEMOptionTable* options = nullptr;

    EditTest() {
        INonLinearModel* nl = nullptr;
        m.mgr->GetNonLinearModelIntf(&nl);
        term = dynamic_cast<NonLinearity*>(nl->FrstNonLinearityObject());
        m.mgr->GetOptionTableIntf(&options);
    }
    Snapshot Take() {
        ILPMatrix* mx = nullptr;
        m.mgr->GetMatrixIntf(&mx);
        const char* opt = options->GetOptionValue("ITERLIM");
        return {crude->GetVarValue(), crude->GetBoundLower(), crude->GetBoundUpper(),
                cap->GetRHS(), cap->GetRange(),
                mx->ExistIncidence(cap->GetIndex(), crude->GetIndex())->GetCoefficient(),
                term->GetFrstConstVal(), crude->GetVarType(), cap->GetType(), opt ? opt : "-"};
    }
    void AddAll(CZEMCaseMgr& c) {
        c.AddVarValueEdit(crude, 1.5);
        c.AddVarBoundEdit("CRUDE1", ZEMEditVarBoundValue::kBoth, 7.0);
        c.AddVarTypeEdit(crude, 2);
        c.AddEqnRHSEdit("CDUCAP", 99.0);
        c.AddEqnRangeEdit(cap, 3.0);
        c.AddMatrixCoeffEdit("CDUCAP", "CRUDE1", 4.0);
        c.AddEqnTypeEdit(cap, 4);
        c.AddMatrixNonLinearityCoeffEdit(term, 8.0);
        c.AddOptionTableEdit("ITERLIM", "900");
    }
};

TEST_F(EditTest, CaseOfEveryKindAppliesAndUndoesExactly) {
    const Snapshot before = Take();
    CZEMCaseMgr c(1, "ALL", "every kind", m.mgr);
    AddAll(c);
    c.Apply();
    EXPECT_TRUE(Take() == (Snapshot{1.5, 7.0, 7.0, 99.0, 3.0, 4.0, 8.0, 2, 4, "900"}));
    c.UnApply();
    EXPECT_TRUE(Take() == before);
    // Nothing applied: UnApply changes nothing.
    c.Apply();
    c.UnApply();
    crude->SetVarValue(42.0);
    c.UnApply();
    EXPECT_EQ(crude->GetVarValue(), 42.0);
}

TEST_F(EditTest, BoundSelectorsKeepOldBoundsApart) {
    const double lo = crude->GetBoundLower(), up = crude->GetBoundUpper();
    for (int16_t sel : {int16_t(-1), int16_t(1), int16_t(0), int16_t(5)}) {
        ZEMEditVarBoundValue e(m.mgr, crude, sel, 33.0);
        e.Apply();
        EXPECT_EQ(crude->GetBoundLower(), sel == -1 || sel == 0 ? 33.0 : lo) << sel;
        EXPECT_EQ(crude->GetBoundUpper(), sel == 1 || sel == 0 ? 33.0 : up) << sel;
        e.UnApply();
        EXPECT_EQ(crude->GetBoundLower(), lo);
        EXPECT_EQ(crude->GetBoundUpper(), up);
    }
}

TEST_F(EditTest, InactiveEditsAndRepeatedApplication) {
    ZEMEditEqnRHS e(m.mgr, cap, 50.0);
    e.DeActivate();
    e.Apply();
    EXPECT_EQ(cap->GetRHS(), 120.0);
    cap->SetRHS(10.0);
    e.UnApply();
    EXPECT_EQ(cap->GetRHS(), 10.0);
    e.Activate();
    e.Apply();
    e.Apply();  // the kept value is now 50, the one before the second Apply
    e.UnApply();
    EXPECT_EQ(cap->GetRHS(), 50.0);

    // A case applied twice and taken back once undoes only the second pass.
    CZEMCaseMgr c(2, "TWICE", "", m.mgr);
    c.AddEqnRHSEdit(cap, 70.0);
    c.AddEqnRHSEdit(cap, 80.0);
    cap->SetRHS(1.0);
    c.Apply();
    c.Apply();
    EXPECT_EQ(c.AppliedCount(), 2u);
    c.UnApply();
    EXPECT_EQ(cap->GetRHS(), 80.0);  // what stood before the second pass
    EXPECT_FALSE(c.Applied());
}

TEST_F(EditTest, OptionEditRestoresOrRemoves) {
    CZEMCaseMgr c(3, "OPT", "", m.mgr);
    c.AddOptionTableEdit("NEWOPT", "1");
    c.AddOptionTableEdit("OBJSENSE", "");
    c.Apply();
    EXPECT_STREQ(options->GetOptionValue("NEWOPT"), "1");
    EXPECT_EQ(options->GetOptionValue("OBJSENSE"), nullptr);
    c.UnApply();
    EXPECT_EQ(options->GetOptionValue("NEWOPT"), nullptr);
    EXPECT_STREQ(options->GetOptionValue("OBJSENSE"), "MAX");
    EXPECT_NE(FailureOf([&] { c.AddOptionTableEdit(std::string(100, 'A').c_str(), "1"); }), "none");
    EXPECT_EQ(FailureOf([&] { c.AddOptionTableEdit(std::string(99, 'A').c_str(), "1"); }), "none");
}

TEST_F(EditTest, AddingRefusesWhatTheModelLacks) {
    CZEMCaseMgr c(4, "BAD", "", m.mgr);
    EXPECT_EQ(FailureOf([&] { c.AddVarValueEdit("NOSUCH", 1.0); }),
              "CZEMCaseMgr Error: Unknown variable: NOSUCH @ CZEMCaseMgr::AddEdit");
    EXPECT_NE(FailureOf([&] { c.AddEqnRHSEdit("NOSUCH", 1.0); }), "none");
    EXPECT_NE(FailureOf([&] { c.AddMatrixCoeffEdit("CDUCAP", "DIESEL", 1.0); }), "none");
    EXPECT_TRUE(c.CaseEditListPtr()->empty());

    std::vector<double> values(18);
    for (size_t i = 0; i < values.size(); ++i) values[i] = double(i);
    c.AddInitialVectorEdits(nullptr);
    c.AddInitialVectorEdits(values.data());
    ASSERT_EQ(c.CaseEditListPtr()->size(), 18u);
    c.Apply();
    EXPECT_EQ(m.Var("CRUDE1")->GetVarValue(), double(m.Var("CRUDE1")->GetIndex() - 1));
}

TEST_F(EditTest, DisplayNamesTheCaseAndItsEdits) {
    CZEMCaseMgr c(7, "", "crude price", m.mgr);
    AddAll(c);
    std::ostringstream os;
    c.Display(os);
    const std::string text = os.str();
    for (const char* piece : {"Z E M   C A S E   - NO NAME", "\nID = (7", "DESCRIPTION : \"crude price",
                              "\nEDIT LIST - ORDER OF APPLICATION\n\n", "CDUCAP / CRUDE1",
                              "ITERLIM = \"900\"", "\nEND EDIT LIST\n\n"})
        EXPECT_NE(text.find(piece), std::string::npos) << piece;
}

}  // namespace
