// Evaluation: row values, whole-row Jacobians, residuals, the linearised
// model, the value cache and the pre-evaluation log.
#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <fstream>
#include <map>
#include <sstream>

#include "nlpdata/INonLinearBlockList.h"
#include "NLRig.h"

namespace {

// Row 1: 2x - y + 3xy + 1.5 ln(x) + 0.5 exp(y + z) + x*x (as a product)
// Row 2: 4z + 0.25 ln(x + z)                          (>= row)
// Row 3: CONST 7 only, no matrix entries              (<= row)
// Row 4: y - z, linear only                           (free row)
class NonLinearModelEval : public ::testing::Test {
protected:
    void SetUp() override {
        x = m.Var("X", 1.3);
        y = m.Var("Y", 0.7);
        z = m.Var("Z", -0.2);
        r1 = m.Row("R1", 2, 1.0);
        r2 = m.Row("R2", 4, 2.0);
        r3 = m.Row("R3", 3, 5.0);
        r4 = m.Row("R4", 5, 0.0);
        m.Coef(r1, x, 2.0);
        m.Coef(r1, y, -1.0);
        m.Coef(r2, z, 4.0);
        m.Coef(r4, y, 1.0);
        m.Coef(r4, z, -1.0);
        m.Term("XPROD", r1, {3.0}, {x, y});
        m.Term("LNX", r1, {1.5}, {x});
        m.Term("EXPX", r1, {0.5}, {y, z});
        m.Term("XPROD", r1, {1.0}, {x, x});
        m.Term("LNX", r2, {0.25}, {x, z});
        m.Term("CONST", r3, {7.0}, {});
    }
    double Row1() const {
        const double X = x->GetVarValue(), Y = y->GetVarValue(), Z = z->GetVarValue();
        return 2 * X - Y + 3 * X * Y + 1.5 * std::log(X) + 0.5 * std::exp(Y + Z) + X * X;
    }
    double Row2() const { return 4 * z->GetVarValue() + 0.25 * std::log(x->GetVarValue() + z->GetVarValue()); }
    double D(int row, ILPVariable* v) { return m.matrix->ExistIncidence(row, v->GetIndex())->GetPartialDeriv(); }

    ModelRig m;
    ILPVariable *x, *y, *z;
    ILPEquation *r1, *r2, *r3, *r4;
};

TEST_F(NonLinearModelEval, RowJacobianIsTheSumOfItsPartsAndModelFormsAgree) {
    const double X = x->GetVarValue(), Y = y->GetVarValue(), Z = z->GetVarValue();
    for (int pass = 0; pass < 2; ++pass) {  // a second pass must not accumulate
        m.model->JacobianRow(1);
        EXPECT_NEAR(D(1, x), 2 + 3 * Y + 1.5 / X + 2 * X, 1e-12);
        EXPECT_NEAR(D(1, y), -1 + 3 * X + 0.5 * std::exp(Y + Z), 1e-12);
        EXPECT_NEAR(D(1, z), 0.5 * std::exp(Y + Z), 1e-12);
    }
    // Coefficients themselves are not touched.
    EXPECT_EQ(m.matrix->ExistIncidence(1, x->GetIndex())->GetCoefficient(), 2.0);
    EXPECT_EQ(m.matrix->ExistIncidence(1, z->GetIndex())->GetCoefficient(), 0.0);

    std::map<ILPNonZero*, double> byRow;
    for (int r = 1; r <= 4; ++r) {
        m.model->JacobianRow(r);
        for (ILPNonZero* nz = m.matrix->RowFrstNonZeroObject(r); nz; nz = m.matrix->RowNextNonZeroObject())
            byRow[nz] = nz->GetPartialDeriv();
    }
    EXPECT_EQ(static_cast<int>(byRow.size()), m.matrix->NumberOfNonZeros());
    for (int form = 0; form < 2; ++form) {
        for (ILPNonZero* nz = m.matrix->FrstNonZeroObject(); nz; nz = m.matrix->NextNonZeroObject())
            nz->SetPartialDeriv(form == 0 ? -123.0 : nz->GetCoefficient());
        if (form == 0)
            EXPECT_TRUE(m.model->EvaluateJacobian());
        else
            m.model->EvaluateNonlinearRowsJacobian();
        for (const auto& e : byRow) EXPECT_EQ(e.first->GetPartialDeriv(), e.second) << form;
    }

    // The terms-only Jacobian leaves linear entries alone and does not accumulate.
    m.matrix->ExistIncidence(4, y->GetIndex())->SetPartialDeriv(42.0);
    m.model->EvaluateNonlinearityJacobian();
    m.model->EvaluateNonlinearityJacobian();
    EXPECT_EQ(D(4, y), 42.0);
    EXPECT_NEAR(D(2, z), 4 + 0.25 / (X + Z), 1e-12);

    // Inactive terms take no part.
    m.RowTerms(1)[1]->DeActivate();
    EXPECT_NEAR(m.model->EvaluateRow(1), Row1() - 1.5 * std::log(X), 1e-12);
    m.model->JacobianRow(1);
    EXPECT_NEAR(D(1, x), 2 + 3 * Y + 2 * X, 1e-12);
}

TEST_F(NonLinearModelEval, RowsModelLinearPartsAndResiduals) {
    EXPECT_NEAR(m.model->EvaluateRow(1), Row1(), 1e-12);
    EXPECT_NEAR(r1->GetEqnValue(), Row1(), 1e-12);
    EXPECT_EQ(m.model->EvaluateRow(3), 7.0);  // terms only: row found through its term
    EXPECT_EQ(m.model->EvaluateRow(99), 0.0);
    for (ILPEquation* e : {r1, r2, r3, r4}) e->SetEqnValue(1e9);
    EXPECT_TRUE(m.model->EvaluateModel());
    EXPECT_NEAR(r1->GetEqnValue(), Row1(), 1e-12);
    EXPECT_NEAR(r2->GetEqnValue(), Row2(), 1e-12);
    EXPECT_EQ(r3->GetEqnValue(), 7.0);
    EXPECT_NEAR(r4->GetEqnValue(), 0.9, 1e-15);
    EXPECT_NEAR(r1->GetResidualValue(), std::fabs(Row1() - 1.0), 1e-12);      // equality
    EXPECT_NEAR(r2->GetResidualValue(), std::max(0.0, 2.0 - Row2()), 1e-12);  // >=
    EXPECT_EQ(r3->GetResidualValue(), 2.0);                                   // <= 5 with value 7
    EXPECT_EQ(r4->GetResidualValue(), 0.0);                                   // free

    // Linear part plus nonlinearities gives the model again.
    const double v1 = r1->GetEqnValue(), v2 = r2->GetEqnValue(), v4 = r4->GetEqnValue();
    for (ILPEquation* e : {r1, r2, r3, r4}) e->SetEqnValue(1e9);
    EXPECT_TRUE(m.model->EvaluateLinearEqns());
    EXPECT_DOUBLE_EQ(r1->GetEqnValue(), 2 * 1.3 - 0.7);
    EXPECT_EQ(r3->GetEqnValue(), 0.0);
    m.model->EvaluateNonlinearities();
    EXPECT_NEAR(r1->GetEqnValue(), v1, 1e-12);
    EXPECT_NEAR(r2->GetEqnValue(), v2, 1e-12);
    EXPECT_EQ(r3->GetEqnValue(), 7.0);
    EXPECT_EQ(r4->GetEqnValue(), v4);
    for (ILPEquation* e : {r1, r2, r3, r4}) e->SetEqnValue(1e9);
    EXPECT_TRUE(m.model->EvaluateNonlinearRows());
    EXPECT_NEAR(r1->GetEqnValue(), v1, 1e-12);
    EXPECT_EQ(r3->GetEqnValue(), 7.0);
    EXPECT_EQ(r4->GetEqnValue(), 1e9);  // a linear row is not a nonlinear row
}

TEST_F(NonLinearModelEval, LinearisedModelIsExactAtTheBaseAndFirstOrderAway) {
    m.model->EvaluateModel();
    m.model->EvaluateJacobian();
    m.vars->UpdateBasePointValues();
    m.eqns->UpdateBasePointValues();
    const double base1 = r1->GetEqnValue();
    m.model->EvaluateLinearizedModel();
    EXPECT_NEAR(r1->GetEqnValue(), base1, 1e-12);
    EXPECT_EQ(r3->GetEqnValue(), 7.0);
    const double dx = 1e-3, dy = -2e-3;
    m.model->JacobianRow(1);
    const double gx = D(1, x), gy = D(1, y);
    x->SetVarValue(x->GetVarValue() + dx);
    y->SetVarValue(y->GetVarValue() + dy);
    m.model->EvaluateLinearizedModel();
    EXPECT_NEAR(r1->GetEqnValue(), base1 + gx * dx + gy * dy, 1e-12);
    EXPECT_NEAR(r1->GetEqnValue(), Row1(), 1e-4);     // close to the true value
    EXPECT_NEAR(r4->GetEqnValue(), 0.9 + dy, 1e-12);  // linear row: exact
    EXPECT_EQ(r3->GetEqnValue(), 7.0);                // constant row keeps its base value
}

TEST(NonLinearModelResidual, RangesCountOnlyWhenSet) {
    ModelRig m;
    ILPVariable* x = m.Var("X", 0.0);
    ILPEquation* le = m.Row("LE", 3, 10.0);
    ILPEquation* ge = m.Row("GE", 4, 10.0);
    m.Coef(le, x, 1.0);
    m.Coef(ge, x, 1.0);
    auto residuals = [&](double value) {
        x->SetVarValue(value);
        m.model->EvaluateModel();
        return std::make_pair(le->GetResidualValue(), ge->GetResidualValue());
    };
    EXPECT_EQ(residuals(4.0), std::make_pair(0.0, 6.0));
    EXPECT_EQ(residuals(12.0), std::make_pair(2.0, 0.0));
    le->SetRange(5.0);  // limits [5, 10]
    ge->SetRange(5.0);  // limits [10, 15]
    EXPECT_EQ(residuals(4.0), std::make_pair(1.0, 6.0));
    EXPECT_EQ(residuals(17.0), std::make_pair(7.0, 2.0));
}

// A block list whose pre-evaluation fails on demand.
class FailingBlocks : public INonLinearBlockList {
public:
    explicit FailingBlocks(bool* fail) : m_fail(fail) {}
    void Destroy() override { delete this; }
    int NumberOfBlocks() override { return 1; }
    void StreamWrite(std::ostream*) override {}
    void StreamRead(std::istream*) override {}
    bool PreEvaluateBlocks() override { return !*m_fail; }
    void Display(std::ostream&) override {}

private:
    bool* m_fail;
};

TEST(NonLinearModelLog, EachPointStartsTheLogAndFailuresAreReported) {
    const std::string path = testing::TempDir() + "nlmodel_eqn.log";
    bool fail = false;
    {
        ModelRig m;
        ILPEquation* r = m.Row("R1");
        ILPVariable* x = m.Var("X", 2.0);
        m.Coef(r, x, 3.0);
        m.model->SetNLBlockList(new FailingBlocks(&fail));
        m.model->SetEqnLogFile(path.c_str());
        EXPECT_TRUE(m.model->OpenLogFiles());  // flag off: nothing opened
        EXPECT_EQ(m.model->EqnLog(), nullptr);
        m.model->SetEqn(true);
        ASSERT_TRUE(m.model->OpenLogFiles());
        EXPECT_TRUE(m.model->EvaluateModel());
        EXPECT_EQ(r->GetEqnValue(), 6.0);
        fail = true;
        x->SetVarValue(1.0);
        EXPECT_FALSE(m.model->EvaluateModel());
        EXPECT_EQ(r->GetEqnValue(), 6.0);  // not evaluated
        EXPECT_FALSE(m.model->EvaluateNonlinearRows());
        m.model->CloseLogFiles();
    }
    std::ifstream in(path);
    std::stringstream got;
    got << in.rdbuf();
    const std::string iter = "---------------------------- New Iteration ---------------------------- \n\n";
    const std::string err = "*** ERROR: PreEvaluateModel Failed for Block Residuals or Sensitivity. \n\n";
    EXPECT_EQ(got.str(), iter + iter + err + iter + err);
    std::remove(path.c_str());

    ModelRig m;
    m.model->SetHqcl(true);
    m.model->SetHqclLogFile("/nonexistent-dir/for/sure/hqcl.log");
    EXPECT_FALSE(m.model->OpenLogFiles());
    EXPECT_EQ(m.model->HqclLog(), nullptr);
}

}  // namespace
