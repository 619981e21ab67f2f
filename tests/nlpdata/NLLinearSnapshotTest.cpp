// Tests that whole-model evaluation, which reads the linear part from a
// row-ordered copy of the matrix, always agrees with the matrix itself after
// every kind of edit: coefficient writes by any path, entries added, summed,
// removed or retargeted, variables and rows removed.
#include <gtest/gtest.h>

#include <cstdint>
#include <vector>

#include "lpdata/LPMatrix.h"
#include "lpdata/LPNonZero.h"
#include "nlpdata/NLLinearSnapshot.h"
#include "tests/nlpdata/NonLinearModelRig.h"

namespace {

constexpr double kUnset = -987654.25;

// Every row's linear part summed straight from the matrix's row walk.
std::vector<double> Reference(ModelRig& m) {
    std::vector<double> out;
    const int n = m.eqns->NumberOfEquations();
    for (int r = 1; r <= n; ++r) {
        double sum = 0.0;
        for (ILPNonZero* nz = m.matrix->RowFrstNonZeroObject(r); nz; nz = m.matrix->RowNextNonZeroObject())
            sum += nz->GetCoefficient() * nz->GetVariablePtr()->GetVarValue();
        out.push_back(sum);
    }
    return out;
}

// Evaluates the linear part of every row and checks it against the matrix;
// rows with entries must have been written.
void ExpectLinearPartsMatch(ModelRig& m) {
    const int n = m.eqns->NumberOfEquations();
    for (int r = 1; r <= n; ++r) {
        ILPEquation* e = nullptr;
        m.eqns->RetrieveEquationObject(r, &e);
        e->SetEqnValue(kUnset);
    }
    ASSERT_TRUE(m.model->EvaluateLinearEqns());
    const std::vector<double> want = Reference(m);
    for (int r = 1; r <= n; ++r) {
        ILPEquation* e = nullptr;
        m.eqns->RetrieveEquationObject(r, &e);
        if (m.matrix->NonZerosInRow(r) == 0) {
            EXPECT_EQ(e->GetEqnValue(), kUnset) << "row " << r << " has no entries";
            continue;
        }
        EXPECT_DOUBLE_EQ(e->GetEqnValue(), want[static_cast<size_t>(r) - 1]) << "row " << e->GetName();
    }
}

class SnapshotEdits : public ::testing::Test {
protected:
    void SetUp() override {
        a = m.Var("A", 2.0);
        b = m.Var("B", 3.0);
        c = m.Var("C", 5.0);
        r1 = m.Row("R1");
        r2 = m.Row("R2");
        ab = m.Coef(r1, a, 1.0);
        m.Coef(r1, b, 10.0);
        m.Coef(r2, c, 1.0);
        ExpectLinearPartsMatch(m);  // the snapshot now exists
        ASSERT_EQ(r1->GetEqnValue(), 32.0);
    }
    ModelRig m;
    ILPVariable *a, *b, *c;
    ILPEquation *r1, *r2;
    ILPNonZero* ab;
};

TEST_F(SnapshotEdits, CoefficientWritesByEveryPathAreSeen) {
    // Directly through the entry.
    ab->SetCoefficient(4.0);
    ASSERT_TRUE(m.model->EvaluateModel());
    EXPECT_EQ(r1->GetEqnValue(), 38.0);

    // A duplicate added to the matrix is summed into the existing entry.
    m.Coef(r1, a, 0.5);
    ASSERT_TRUE(m.model->EvaluateModel());
    EXPECT_EQ(r1->GetEqnValue(), 39.0);

    // Copy assignment overwrites the coefficient (and the pointers).
    LPNonZero source;
    source.SetEquationPtr(r1);
    source.SetVariablePtr(a);
    source.SetCoefficient(-1.0);
    *static_cast<LPNonZero*>(ab) = source;
    ASSERT_TRUE(m.model->EvaluateModel());
    EXPECT_EQ(r1->GetEqnValue(), 28.0);

    // Values are read fresh on every pass.
    b->SetVarValue(1.0);
    ASSERT_TRUE(m.model->EvaluateModel());
    EXPECT_EQ(r1->GetEqnValue(), 8.0);
    ExpectLinearPartsMatch(m);

    // The entry of (R1, B) now reads C: the snapshot must not keep B's slot.
    ILPNonZero* rb = m.matrix->ExistIncidence(r1->GetIndex(), b->GetIndex());
    ASSERT_NE(rb, nullptr);
    rb->SetVariablePtr(c);
    ASSERT_TRUE(m.model->EvaluateModel());
    EXPECT_EQ(r1->GetEqnValue(), -2.0 + 50.0);
}

TEST_F(SnapshotEdits, EntriesAddedAndRemovedAreSeen) {
    m.Coef(r2, a, 7.0);
    ExpectLinearPartsMatch(m);
    EXPECT_EQ(r2->GetEqnValue(), 5.0 + 14.0);

    m.matrix->RemoveNonZero(ab);
    ExpectLinearPartsMatch(m);
    EXPECT_EQ(r1->GetEqnValue(), 30.0);

    ILPNonZero* rc = m.matrix->ExistIncidence(r2->GetIndex(), c->GetIndex());
    m.matrix->TrashNonZero(rc);
    m.matrix->EmptyNonZeroTrash();
    ExpectLinearPartsMatch(m);
    EXPECT_EQ(r2->GetEqnValue(), 14.0);
}

TEST_F(SnapshotEdits, RemovedVariablesAndRowsRenumberTheCopy) {
    // Removing A shifts B and C down one position in the value array.
    m.model->EliminateVariable(a);
    m.vars->RemoveVariable(a);
    c->SetVarValue(6.0);
    ExpectLinearPartsMatch(m);
    EXPECT_EQ(r1->GetEqnValue(), 30.0);
    EXPECT_EQ(r2->GetEqnValue(), 6.0);

    // Removing the first row leaves R2 as row 1; a new row after it is
    // evaluated in its place.
    m.model->EliminateEquation(r1);
    m.eqns->RemoveEquation(r1);
    ILPEquation* r3 = m.Row("R3");
    m.Coef(r3, b, 2.0);
    ExpectLinearPartsMatch(m);
    EXPECT_EQ(r2->GetEqnValue(), 6.0);
    EXPECT_EQ(r3->GetEqnValue(), 6.0);
}

// An entry type of the caller's own does not report its writes, so the model
// must not evaluate it from a copy.
class OwnEntry : public LPNonZero {
public:
    void SetCoefficient(double v) override { m_own = v; }
    double GetCoefficient() const override { return m_own; }

private:
    double m_own = 0.0;
};

TEST(SnapshotFallback, EntriesOfOtherTypesAreReadLive) {
    ModelRig m;
    ILPVariable* x = m.Var("X", 3.0);
    ILPEquation* r = m.Row("R");
    OwnEntry* own = new OwnEntry();
    own->SetEquationPtr(r);
    own->SetVariablePtr(x);
    own->SetCoefficient(2.0);
    m.matrix->AddNonZeroObject(own);
    ASSERT_TRUE(m.model->EvaluateModel());
    EXPECT_EQ(r->GetEqnValue(), 6.0);
    own->SetCoefficient(5.0);
    ASSERT_TRUE(m.model->EvaluateModel());
    EXPECT_EQ(r->GetEqnValue(), 15.0);
}

TEST(SnapshotFallback, RefreshRefusesEntriesOutsideTheLists) {
    ModelRig m;
    ILPVariable* x = m.Var("X", 3.0);
    ILPEquation* r = m.Row("R");
    m.Coef(r, x, 2.0);
    LPMatrix* mx = static_cast<LPMatrix*>(m.matrix);
    NLLinearSnapshot snap;
    ASSERT_TRUE(snap.Refresh(mx, m.vars, m.eqns));
    EXPECT_EQ(snap.Rows(), 1u);
    EXPECT_EQ(snap.Entries(), 1u);
    // The entry now names a variable that is not in the list.
    LPVariableList other;
    ILPVariable* stranger = other.InsertVariable("S");
    mx->RowFrstNonZeroObject(1)->SetVariablePtr(stranger);
    EXPECT_FALSE(snap.Refresh(mx, m.vars, m.eqns));
    mx->RowFrstNonZeroObject(1)->SetVariablePtr(x);
    EXPECT_TRUE(snap.Refresh(mx, m.vars, m.eqns));
}

// Random edits of every kind against the matrix walk.
TEST(SnapshotRandomEdits, AgreesWithTheMatrixAfterEachEdit) {
    ModelRig m;
    uint64_t s = 0x9E3779B97F4A7C15ull;
    auto next = [&s](uint64_t n) {
        s ^= s << 13;
        s ^= s >> 7;
        s ^= s << 17;
        return static_cast<int>(s % n);
    };
    int names = 0;
    for (int i = 0; i < 12; ++i) m.Var("V" + std::to_string(names++), 0.5 + i);
    for (int i = 0; i < 8; ++i) m.Row("R" + std::to_string(names++));
    auto anyVar = [&]() {
        ILPVariable* v = nullptr;
        m.vars->RetrieveVariableObject(1 + next(static_cast<uint64_t>(m.vars->NumberOfVariables())), &v);
        return v;
    };
    auto anyRow = [&]() {
        ILPEquation* e = nullptr;
        m.eqns->RetrieveEquationObject(1 + next(static_cast<uint64_t>(m.eqns->NumberOfEquations())), &e);
        return e;
    };
    auto anyEntry = [&]() -> ILPNonZero* {
        const int n = m.matrix->NumberOfNonZeros();
        if (n == 0) return nullptr;
        const int pick = next(static_cast<uint64_t>(n));
        ILPNonZero* nz = m.matrix->FrstNonZeroObject();
        for (int i = 0; i < pick; ++i) nz = m.matrix->NextNonZeroObject();
        return nz;
    };
    for (int step = 0; step < 400; ++step) {
        switch (next(8)) {
            case 0:
            case 1: m.Coef(anyRow(), anyVar(), 1 + next(9)); break;
            case 2:
                if (ILPNonZero* nz = anyEntry()) nz->SetCoefficient(-3.0 + next(7));
                break;
            case 3:
                if (ILPNonZero* nz = anyEntry()) m.matrix->RemoveNonZero(nz);
                break;
            case 4: anyVar()->SetVarValue(0.25 * next(40)); break;
            case 5:
                if (m.vars->NumberOfVariables() > 4) {
                    ILPVariable* v = anyVar();
                    m.model->EliminateVariable(v);
                    m.vars->RemoveVariable(v);
                } else {
                    m.Var("V" + std::to_string(names++), 1.5);
                }
                break;
            case 6:
                if (m.eqns->NumberOfEquations() > 3) {
                    ILPEquation* e = anyRow();
                    m.model->EliminateEquation(e);
                    m.eqns->RemoveEquation(e);
                } else {
                    m.Row("R" + std::to_string(names++));
                }
                break;
            default:
                m.Var("V" + std::to_string(names++), 0.75);
                m.Row("R" + std::to_string(names++));
                break;
        }
        ExpectLinearPartsMatch(m);
        if (::testing::Test::HasFailure()) FAIL() << "after step " << step;
    }
}

}  // namespace
