// Whole-model evaluation reads the linear part from a row-ordered copy of the
// matrix; it must agree with the matrix itself after every kind of edit.
#include <gtest/gtest.h>

#include <cstdint>
#include <vector>

#include "lpdata/LPMatrix.h"
#include "lpdata/LPNonZero.h"
#include "nlpdata/NLLinearSnapshot.h"
#include "NLRig.h"

namespace {

constexpr double kUnset = -987654.25;

// Evaluates every row's linear part and checks it against a sum over the
// matrix's row walk; rows without entries must be left unwritten.
void ExpectLinearPartsMatch(ModelRig& m) {
    const int n = m.eqns->NumberOfEquations();
    std::vector<ILPEquation*> rows(static_cast<size_t>(n) + 1);
    for (int r = 1; r <= n; ++r) {
        m.eqns->RetrieveEquationObject(r, &rows[r]);
        rows[r]->SetEqnValue(kUnset);
    }
    ASSERT_TRUE(m.model->EvaluateLinearEqns());
    for (int r = 1; r <= n; ++r) {
        double want = kUnset;
        for (ILPNonZero* nz = m.matrix->RowFrstNonZeroObject(r); nz; nz = m.matrix->RowNextNonZeroObject())
            want = (want == kUnset ? 0.0 : want) + nz->GetCoefficient() * nz->GetVariablePtr()->GetVarValue();
        EXPECT_DOUBLE_EQ(rows[r]->GetEqnValue(), want) << "row " << rows[r]->GetName();
    }
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

TEST(SnapshotFallback, OwnEntryTypesAreReadLiveAndStrangersRefused) {
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

    ModelRig n;
    ILPVariable* y = n.Var("Y", 3.0);
    n.Coef(n.Row("R"), y, 2.0);
    LPMatrix* mx = static_cast<LPMatrix*>(n.matrix);
    NLLinearSnapshot snap;
    ASSERT_TRUE(snap.Refresh(mx, n.vars, n.eqns));
    EXPECT_EQ(snap.Rows(), 1u);
    EXPECT_EQ(snap.Entries(), 1u);
    // The entry now names a variable that is not in the list.
    LPVariableList other;
    mx->RowFrstNonZeroObject(1)->SetVariablePtr(other.InsertVariable("S"));
    EXPECT_FALSE(snap.Refresh(mx, n.vars, n.eqns));
    mx->RowFrstNonZeroObject(1)->SetVariablePtr(y);
    EXPECT_TRUE(snap.Refresh(mx, n.vars, n.eqns));

    // An entry that now reads another column must not keep its old slot.
    ASSERT_TRUE(n.model->EvaluateModel());
    ILPVariable* z = n.Var("Z", 5.0);
    mx->RowFrstNonZeroObject(1)->SetVariablePtr(z);
    ASSERT_TRUE(n.model->EvaluateModel());
    EXPECT_EQ(n.eqns->FrstEquationObject()->GetEqnValue(), 10.0);
}

// Random edits of every kind: entries added (duplicates are summed), written,
// copy-assigned, removed and trashed; values changed; variables
// and rows added and removed (renumbering the copy).
TEST(SnapshotRandomEdits, AgreesWithTheMatrixAfterEachEdit) {
    ModelRig m;
    uint64_t s = 0x9E3779B97F4A7C15ull;
    auto next = [&s](int n) {
        s ^= s << 13;
        s ^= s >> 7;
        s ^= s << 17;
        return static_cast<int>(s % static_cast<uint64_t>(n));
    };
    int names = 0;
    for (int i = 0; i < 12; ++i) m.Var("V" + std::to_string(names++), 0.5 + i);
    for (int i = 0; i < 8; ++i) m.Row("R" + std::to_string(names++));
    auto anyVar = [&]() {
        ILPVariable* v = nullptr;
        m.vars->RetrieveVariableObject(1 + next(m.vars->NumberOfVariables()), &v);
        return v;
    };
    auto anyRow = [&]() {
        ILPEquation* e = nullptr;
        m.eqns->RetrieveEquationObject(1 + next(m.eqns->NumberOfEquations()), &e);
        return e;
    };
    auto anyEntry = [&]() -> ILPNonZero* {
        const int n = m.matrix->NumberOfNonZeros();
        if (n == 0) return nullptr;
        ILPNonZero* nz = m.matrix->FrstNonZeroObject();
        for (int i = next(n); i > 0; --i) nz = m.matrix->NextNonZeroObject();
        return nz;
    };
    for (int step = 0; step < 500; ++step) {
        ILPNonZero* nz = anyEntry();
        switch (next(10)) {
            case 0:
            case 1: m.Coef(anyRow(), anyVar(), 1 + next(9)); break;
            case 2:
                if (nz) nz->SetCoefficient(-3.0 + next(7));
                break;
            case 3:
                if (nz) m.matrix->RemoveNonZero(nz);
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
            case 7:  // copy assignment overwrites the coefficient
                if (nz) {
                    LPNonZero source;
                    source.SetEquationPtr(nz->GetEquationPtr());
                    source.SetVariablePtr(nz->GetVariablePtr());
                    source.SetCoefficient(-1.0 - next(5));
                    *static_cast<LPNonZero*>(nz) = source;
                }
                break;
            case 8:
                if (nz) {
                    m.matrix->TrashNonZero(nz);
                    m.matrix->EmptyNonZeroTrash();
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
