#include "lpdata/LPMatrix.h"

#include <algorithm>
#include <map>
#include <set>
#include <random>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "LPTestRig.h"
#include "lpdata/LPEquation.h"
#include "lpdata/LPNonZero.h"
#include "lpdata/LPVariable.h"

using lptest::ExpectError;

namespace {

using Strings = std::vector<std::string>;

class MatrixTest : public ::testing::Test {
protected:
    void SetUp() override {
        for (int i = 1; i <= 6; ++i) eqns.InsertEquation(("R" + std::to_string(i)).c_str());
        for (int j = 1; j <= 8; ++j) vars.InsertVariable(("C" + std::to_string(j)).c_str());
    }
    ILPEquation* Row(int i) {
        ILPEquation* e = nullptr;
        eqns.RetrieveEquationObject(i, &e);
        return e;
    }
    ILPVariable* Col(int j) {
        ILPVariable* v = nullptr;
        vars.RetrieveVariableObject(j, &v);
        return v;
    }
    ILPNonZero* Add(int row, int col, double coef) { return lptest::AddEntry(matrix, Row(row), Col(col), coef); }
    Strings Walk(ILPNonZero* (LPMatrix::*first)(), ILPNonZero* (LPMatrix::*next)()) {
        Strings out;
        for (ILPNonZero* nz = (matrix.*first)(); nz; nz = (matrix.*next)())
            out.push_back(std::string(nz->GetEquationPtr()->GetName()) + nz->GetVariablePtr()->GetName());
        return out;
    }
    // Names along one row (its columns) or one column (its rows).
    Strings RowWalk(int row) {
        Strings out;
        for (ILPNonZero* nz = matrix.RowFrstNonZeroObject(row); nz; nz = matrix.RowNextNonZeroObject())
            out.push_back(nz->GetVariablePtr()->GetName());
        return out;
    }
    Strings ColWalk(int col) {
        Strings out;
        for (ILPNonZero* nz = matrix.ColFrstNonZeroObject(col); nz; nz = matrix.ColNextNonZeroObject())
            out.push_back(nz->GetEquationPtr()->GetName());
        return out;
    }
    void ExpectIndicesConsecutive() {
        int expected = 1;
        for (ILPNonZero* nz = matrix.FrstNonZeroObject(); nz; nz = matrix.NextNonZeroObject())
            EXPECT_EQ(nz->GetIndex(), expected++);
        EXPECT_EQ(expected - 1, matrix.NumberOfNonZeros());
    }

    LPVariableList vars;
    LPEquationList eqns;
    LPMatrix matrix{&vars, &eqns};
};

}  // namespace

TEST_F(MatrixTest, DuplicatesAreSummedUntilTheEntryIsTrashed) {
    ILPNonZero* first = Add(3, 5, 2.0);
    EXPECT_EQ(Add(3, 5, 1.5), first);
    EXPECT_EQ(first->GetCoefficient(), 3.5);
    EXPECT_EQ(matrix.AddNonZeroObject(first), first);  // adding the kept object again changes nothing
    EXPECT_EQ(first->GetCoefficient(), 3.5);
    // In a column past the short-column scan (where sums are checked by the
    // layout test below), a trashed entry no longer absorbs duplicates, and
    // the new entry survives the emptying of the trash.
    std::vector<ILPEquation*> rows;
    for (int i = 0; i < 100; ++i) rows.push_back(eqns.InsertEquation(("L" + std::to_string(i)).c_str()));
    for (ILPEquation* e : rows) lptest::AddEntry(matrix, e, Col(2), 1.0);
    ILPNonZero* kept = matrix.ExistIncidence(rows[57]->GetIndex(), 2);
    matrix.TrashNonZero(kept);
    ILPNonZero* fresh = lptest::AddEntry(matrix, rows[57], Col(2), 2.0);
    EXPECT_NE(fresh, kept);
    matrix.EmptyNonZeroTrash();
    EXPECT_EQ(matrix.ExistIncidence(rows[57]->GetIndex(), 2), fresh);
    EXPECT_EQ(fresh->GetCoefficient(), 2.0);
    EXPECT_EQ(matrix.NonZerosInColumn(2), 100);
    ExpectIndicesConsecutive();
}

TEST_F(MatrixTest, WalksInEveryOrder) {
    // Entered column by column, as an MPS COLUMNS section does.
    Add(2, 1, 1);
    Add(1, 1, 2);
    Add(1, 3, 3);
    Add(2, 3, 4);
    Add(1, 2, 5);
    // Insertion order and the order by column are checked against references below.
    EXPECT_EQ(Walk(&LPMatrix::FrstNonZeroObjectByRow, &LPMatrix::NextNonZeroObjectByRow),
              (Strings{"R1C1", "R1C3", "R1C2", "R2C1", "R2C3"}));
    EXPECT_EQ(RowWalk(1), (Strings{"C1", "C3", "C2"}));
    EXPECT_EQ(ColWalk(3), (Strings{"R1", "R2"}));
    EXPECT_EQ(RowWalk(4), Strings{});   // row without entries
    EXPECT_EQ(RowWalk(-1), Strings{});
    EXPECT_EQ(RowWalk(99), Strings{});
    EXPECT_EQ(ColWalk(42), Strings{});
    EXPECT_EQ(matrix.NextNonZeroObjectByRow(), nullptr);  // ended walks stay ended
    EXPECT_EQ(matrix.RowNextNonZeroObject(), nullptr);
    EXPECT_EQ(matrix.ExistIncidence(2, 3)->GetCoefficient(), 4);
    EXPECT_EQ(matrix.ExistIncidence(2, 2), nullptr);
}

TEST_F(MatrixTest, AddingDuringARowWalkIsSafe) {
    Add(1, 1, 1);
    Add(1, 2, 1);
    Strings seen;
    int added = 3;
    for (ILPNonZero* nz = matrix.RowFrstNonZeroObject(1); nz; nz = matrix.RowNextNonZeroObject()) {
        seen.push_back(nz->GetVariablePtr()->GetName());
        // Grow the row while walking it: its storage may move.
        if (added <= 8) Add(1, added++, 1);
    }
    EXPECT_EQ(seen.size(), 8u);
    EXPECT_EQ(matrix.NonZerosInRow(1), 8);
}

TEST_F(MatrixTest, NonlinearEntriesAreRefusedAndNothingChanges) {
    ILPNonZero* nz = Add(3, 4, 1.0);
    Add(3, 5, 1.0);
    nz->IncrNonlinear();
    auto expectRefused = [&](auto op, const char* routine) {
        ExpectError(op, "NonLinear Matrix Edit Error - Can't Remove NonLinear NonZeros", "NonZero : R3 : C4", routine);
    };
    expectRefused([&] { matrix.TrashNonZero(nz); }, "LPMatrix::TrasnNonZero");
    expectRefused([&] { matrix.RemoveNonZero(nz); }, "LPMatrix::RemoveNonZero");
    expectRefused([&] { matrix.EliminateVariable(Col(4)); }, "LPMatrix::EliminateVariable");
    expectRefused([&] { matrix.TrashEquation(Row(3)); }, "LPMatrix::TrashEquation");
    matrix.EmptyNonZeroTrash();
    EXPECT_EQ(nz->GetIndex(), 1);
    EXPECT_EQ(matrix.NumberOfNonZeros(), 2);
    EXPECT_EQ(matrix.NumberOfNonLinearNonZeros(), 1);
    EXPECT_EQ(RowWalk(3), (Strings{"C4", "C5"}));

    Row(3)->IncrNonlinear();
    ExpectError([&] { matrix.EliminateEquation(Row(3)); },
                "NonLinear Matrix Edit Error - Can't Remove NonLinear Equation", "Equation : R3",
                "LPMatrix::EliminateEquation");
    EXPECT_EQ(matrix.NonZerosInRow(3), 2);
}

TEST_F(MatrixTest, UnknownNonZeroCannotBeLocated) {
    Add(1, 1, 1);
    LPNonZero stray;
    stray.SetEquationPtr(Row(1));
    stray.SetVariablePtr(Col(2));
    ExpectError([&] { matrix.RemoveNonZero(&stray); }, "Matrix Structure Error - Unable to Locate NonZero object",
                "NonZero : R1 : C2", "LPMatrix::EraseByRowNonZero");
    stray.SetIndex(1);
    EXPECT_THROW(matrix.TrashNonZero(&stray), ZEM_Exception);
    EXPECT_EQ(matrix.NumberOfNonZeros(), 1);
}

TEST_F(MatrixTest, EntitiesOutsideTheListsAreRefused) {
    const std::string kIndexError = "Matrix Structure Error - Inconsistent Equation or Variable index";
    Add(1, 1, 5);
    // A variable outside the list is refused at once.
    LPVariable looseVar;
    looseVar.SetName("LV");
    looseVar.SetIndex(40);
    ILPNonZero* nz = nullptr;
    matrix.CreateNewNonZeroObject(&nz);
    nz->SetEquationPtr(Row(1));
    nz->SetVariablePtr(&looseVar);
    ExpectError([&] { matrix.AddNonZeroObject(nz); }, kIndexError, "NonZero : R1 : LV", "");
    nz->SetVariablePtr(nullptr);
    EXPECT_THROW(matrix.AddNonZeroObject(nz), ZEM_Exception);
    nz->Destroy();
    EXPECT_EQ(matrix.NumberOfNonZeros(), 1);

    // An equation outside the list is refused when the rows are derived, and
    // the entry can still be taken out again.
    LPEquation looseEqn;
    looseEqn.SetName("LE");
    looseEqn.SetIndex(40);
    ILPNonZero* bad = nullptr;
    matrix.CreateNewNonZeroObject(&bad);
    bad->SetEquationPtr(&looseEqn);
    bad->SetVariablePtr(Col(2));
    ASSERT_EQ(matrix.AddNonZeroObject(bad), bad);
    ExpectError([&] { matrix.NonZerosInRow(1); }, kIndexError, "NonZero : LE : C2", "");
    EXPECT_THROW(matrix.RowFrstNonZeroObject(1), ZEM_Exception);
    matrix.RemoveNonZero(bad);
    EXPECT_EQ(matrix.NonZerosInRow(1), 1);
    EXPECT_EQ(matrix.NumberOfNonZeros(), 1);
}

// An equation given an index behind the list's back takes another row's
// place; the clash is reported instead of mixing the two rows.
TEST_F(MatrixTest, TwoEquationsClaimingOneRowAreReported) {
    Add(2, 1, 1);
    LPEquation impostor;
    impostor.SetIndex(2);
    ILPNonZero* nz = nullptr;
    matrix.CreateNewNonZeroObject(&nz);
    nz->SetEquationPtr(&impostor);
    nz->SetVariablePtr(Col(3));
    matrix.AddNonZeroObject(nz);
    EXPECT_THROW(matrix.NonZerosInRow(2), ZEM_Exception);
    matrix.EliminateVariable(Col(3));
    EXPECT_EQ(matrix.NonZerosInRow(2), 1);
}

// Columns against the insertion-ordered list: walks, counts and lookups
// while the columns are runs of the list, after the runs are re-keyed,
// and once removals and revisited columns have given each column a line.
TEST_F(MatrixTest, ColumnsFollowTheListThroughEveryLayout) {
    for (int i = 7; i <= 30; ++i) eqns.InsertEquation(("R" + std::to_string(i)).c_str());
    auto expectColumns = [&] {
        std::map<ILPVariable*, std::vector<ILPNonZero*>> byVar;
        for (ILPNonZero* nz = matrix.FrstNonZeroObject(); nz; nz = matrix.NextNonZeroObject())
            byVar[nz->GetVariablePtr()].push_back(nz);
        std::vector<ILPNonZero*> whole, walked;
        for (int c = 1; c <= vars.NumberOfVariables(); ++c) {
            const std::vector<ILPNonZero*>& expected = byVar[Col(c)];
            std::vector<ILPNonZero*> col;
            for (ILPNonZero* nz = matrix.ColFrstNonZeroObject(c); nz; nz = matrix.ColNextNonZeroObject())
                col.push_back(nz);
            EXPECT_EQ(col, expected) << "column " << c;
            EXPECT_EQ(matrix.NonZerosInColumn(c), static_cast<int>(expected.size()));
            for (ILPNonZero* nz : expected) EXPECT_EQ(matrix.ExistIncidence(nz->GetEquationIdx(), c), nz);
            whole.insert(whole.end(), expected.begin(), expected.end());
        }
        for (ILPNonZero* nz = matrix.FrstNonZeroObjectByColumn(); nz; nz = matrix.NextNonZeroObjectByColumn())
            walked.push_back(nz);
        EXPECT_EQ(walked, whole);
    };
    // The objective row first, then column by column (as XLINEAR gives
    // them), duplicates among them and a column long enough for its hash
    // index.
    Add(7, 1, 1);
    Add(7, 2, 1);
    Add(2, 1, 1);
    Add(1, 1, 1);
    ILPNonZero* dup = Add(3, 2, 1);
    EXPECT_EQ(Add(3, 2, 2), dup);
    EXPECT_EQ(Add(7, 2, 1)->GetCoefficient(), 2);
    for (int r = 30; r >= 5; --r) Add(r, 4, r);
    EXPECT_EQ(Add(17, 4, 1)->GetCoefficient(), 18);
    expectColumns();
    // An entry-less variable leaves its list: the columns after it move down.
    vars.RemoveVariable(Col(3));
    expectColumns();
    EXPECT_EQ(Add(9, 3, 1)->GetCoefficient(), 10);  // the old column 4, still open
    Add(1, 3, 1);
    expectColumns();
    matrix.RemoveNonZero(dup);
    expectColumns();
    // Revisits and alternating columns.
    EXPECT_EQ(Add(2, 1, 5)->GetCoefficient(), 6);
    for (int r = 1; r <= 6; ++r) {
        Add(r, 5, 1);
        Add(r, 6, 1);
    }
    Add(4, 1, 1);
    EXPECT_EQ(Add(4, 5, 1)->GetCoefficient(), 2);
    expectColumns();
    matrix.EliminateVariable(Col(3));
    expectColumns();
    ExpectIndicesConsecutive();
}

// Row counts without laid-out rows: from the counting pass, and kept up to
// date by adds that name their row (as the readers add), duplicates included.
TEST_F(MatrixTest, RowCountsFollowAddsThatNameTheirRow) {
    std::mt19937 rng(5);
    std::set<std::pair<int, int>> cells;
    for (int round = 0; round < 4; ++round) {
        for (int k = 0; k < 120; ++k) {
            const int r = 1 + static_cast<int>(rng() % 6);
            const int c = 1 + static_cast<int>(rng() % 8);
            if (rng() % 3 == 0) {
                Add(r, c, 1.0);
            } else {
                ILPNonZero* nz = nullptr;
                matrix.CreateNewNonZeroObject(&nz);
                nz->SetEquationPtr(Row(r));
                nz->SetVariablePtr(Col(c));
                nz->SetCoefficient(1.0);
                matrix.AddNonZeroObject(nz, r);
            }
            cells.emplace(r, c);
        }
        for (int r = 1; r <= 6; ++r) {
            const auto n = std::count_if(cells.begin(), cells.end(), [r](const auto& rc) { return rc.first == r; });
            ASSERT_EQ(matrix.NonZerosInRow(r), n) << "row " << r << " round " << round;
        }
        const int gone = 1 + static_cast<int>(rng() % 8);  // a removal: counts are taken afresh
        matrix.EliminateVariable(Col(gone));
        for (auto it = cells.begin(); it != cells.end();) it = it->second == gone ? cells.erase(it) : std::next(it);
        matrix.NonZerosInRow(1);
    }
}

// Random edits checked against a plain map of (row name, column name) ->
// coefficient: entries, counts and walks follow adds, removals, trash and
// the renumbering of rows and columns when entities leave their lists.
TEST_F(MatrixTest, RandomEditsMatchAReferenceModel) {
    std::mt19937 rng(12345);
    for (int i = 7; i <= 40; ++i) eqns.InsertEquation(("R" + std::to_string(i)).c_str());
    for (int j = 9; j <= 60; ++j) vars.InsertVariable(("C" + std::to_string(j)).c_str());
    std::map<std::pair<std::string, std::string>, double> ref;
    std::vector<std::pair<std::string, std::string>> order;  // insertion order

    auto check = [&] {
        ASSERT_EQ(matrix.NumberOfNonZeros(), static_cast<int>(ref.size()));
        std::vector<std::pair<std::string, std::string>> seen;
        int idx = 1;
        for (ILPNonZero* nz = matrix.FrstNonZeroObject(); nz; nz = matrix.NextNonZeroObject()) {
            EXPECT_EQ(nz->GetIndex(), idx++);
            seen.emplace_back(nz->GetEquationPtr()->GetName(), nz->GetVariablePtr()->GetName());
        }
        EXPECT_EQ(seen, order);
        // Counts first: while the rows are not laid out they come from the
        // counting pass or from the adds that named their row.
        std::vector<int> counted(static_cast<size_t>(eqns.NumberOfEquations()) + 1, 0);
        for (int r = 1; r <= eqns.NumberOfEquations(); ++r) counted[r] = matrix.NonZerosInRow(r);
        int total = 0;
        for (int r = 1; r <= eqns.NumberOfEquations(); ++r) {
            const std::string rn = Row(r)->GetName();
            int n = 0;
            for (ILPNonZero* nz = matrix.RowFrstNonZeroObject(r); nz; nz = matrix.RowNextNonZeroObject()) {
                EXPECT_EQ(nz->GetEquationPtr(), Row(r));
                const auto key = std::make_pair(rn, std::string(nz->GetVariablePtr()->GetName()));
                ASSERT_TRUE(ref.count(key)) << key.first << " " << key.second;
                EXPECT_EQ(nz->GetCoefficient(), ref[key]);
                EXPECT_EQ(matrix.ExistIncidence(r, nz->GetVariableIdx()), nz);
                ++n;
            }
            EXPECT_EQ(matrix.NonZerosInRow(r), n);
            EXPECT_EQ(counted[r], n) << "row " << r;
            // Within a row, entries come in insertion order.
            Strings expected;
            for (const auto& key : order)
                if (key.first == rn) expected.push_back(key.second);
            EXPECT_EQ(RowWalk(r), expected) << rn;
            total += n;
        }
        EXPECT_EQ(total, static_cast<int>(ref.size()));
        int colTotal = 0;
        for (int c = 1; c <= vars.NumberOfVariables(); ++c) colTotal += matrix.NonZerosInColumn(c);
        EXPECT_EQ(colTotal, static_cast<int>(ref.size()));
    };
    auto forget = [&](const std::pair<std::string, std::string>& key) {
        ref.erase(key);
        order.erase(std::find(order.begin(), order.end(), key));
    };
    auto forgetAll = [&](auto match) {
        for (auto it = ref.begin(); it != ref.end();) {
            if (match(it->first)) {
                order.erase(std::find(order.begin(), order.end(), it->first));
                it = ref.erase(it);
            } else {
                ++it;
            }
        }
    };

    for (int round = 0; round < 30; ++round) {
        for (int k = 0; k < 60; ++k) {
            const int r = 1 + static_cast<int>(rng() % eqns.NumberOfEquations());
            const int c = 1 + static_cast<int>(rng() % vars.NumberOfVariables());
            const double v = static_cast<double>(rng() % 7) + 1;
            Add(r, c, v);
            const auto key = std::make_pair(std::string(Row(r)->GetName()), std::string(Col(c)->GetName()));
            if (!ref.count(key)) order.push_back(key);
            ref[key] += v;
        }
        switch (round % 5) {
            case 0: {  // remove single nonzeros
                for (int k = 0; k < 5 && matrix.NumberOfNonZeros() > 0; ++k) {
                    ILPNonZero* nz = matrix.FrstNonZeroObject();
                    for (int s = static_cast<int>(rng() % matrix.NumberOfNonZeros()); s > 0; --s)
                        nz = matrix.NextNonZeroObject();
                    forget({nz->GetEquationPtr()->GetName(), nz->GetVariablePtr()->GetName()});
                    matrix.RemoveNonZero(nz);
                }
                break;
            }
            case 1: {  // trash a few entries, a column and a row, then empty the trash
                const int before = matrix.NumberOfNonZeros();
                std::vector<ILPNonZero*> picked;
                for (ILPNonZero* nz = matrix.FrstNonZeroObject(); nz; nz = matrix.NextNonZeroObject())
                    if (rng() % 4 == 0) picked.push_back(nz);
                for (ILPNonZero* nz : picked) {
                    forget({nz->GetEquationPtr()->GetName(), nz->GetVariablePtr()->GetName()});
                    matrix.TrashNonZero(nz);
                }
                ILPVariable* v = Col(1 + static_cast<int>(rng() % vars.NumberOfVariables()));
                ILPEquation* e = Row(1 + static_cast<int>(rng() % eqns.NumberOfEquations()));
                forgetAll([&](const auto& key) { return key.second == v->GetName() || key.first == e->GetName(); });
                matrix.TrashVariable(v);
                matrix.TrashEquation(e);
                EXPECT_EQ(matrix.NumberOfNonZeros(), before);  // trashing only marks
                matrix.EmptyNonZeroTrash();
                EXPECT_EQ(matrix.NonZerosInColumn(v->GetIndex()), 0);
                EXPECT_EQ(matrix.NonZerosInRow(e->GetIndex()), 0);
                break;
            }
            case 2: {  // remove a column and its variable
                ILPVariable* v = Col(1 + static_cast<int>(rng() % vars.NumberOfVariables()));
                forgetAll([&](const auto& key) { return key.second == v->GetName(); });
                matrix.EliminateVariable(v);
                vars.RemoveVariable(v);
                vars.InsertVariable(("N" + std::to_string(round)).c_str());
                break;
            }
            case 3: {  // remove a row and its equation
                ILPEquation* e = Row(1 + static_cast<int>(rng() % eqns.NumberOfEquations()));
                forgetAll([&](const auto& key) { return key.first == e->GetName(); });
                matrix.EliminateEquation(e);
                eqns.RemoveEquation(e);
                eqns.InsertEquation(("M" + std::to_string(round)).c_str());
                break;
            }
            default:
                matrix.ProcessMatrixCollection();
                break;
        }
        check();
        if (HasFatalFailure()) return;
    }
}

TEST_F(MatrixTest, Displays) {
    Add(2, 1, 1.5);
    ILPNonZero* nl = Add(1, 2, -2.0);
    nl->IncrNonlinear();
    nl->SetPartialDeriv(0.25);
    std::ostringstream all, byRow, byCol;
    matrix.Display(all);
    EXPECT_EQ(all.str(),
              "\nD I S P L A Y   O F   M A T R I X   N O N Z E R O S\n"
              "- - - - - - -   - -   - - - - - -   - - - - - - - -\n\n"
              "Nonzero [1] EqnIdx = 2 : VarIdx = 1 : Coeff = 1.5\n"
              "Nonzero [2] EqnIdx = 1 : VarIdx = 2 : Coeff = -2 : Nonlinear\n");
    matrix.DisplayByRow(byRow);
    EXPECT_EQ(byRow.str(),
              "\nD I S P L A Y   O F   M A T R I X   N O N Z E R O S   B Y   R O W\n"
              "NonZero [      2] R1           : C2           : (-2.000e+00| 2.500e-01)\n"
              "NonZero [      1] R2           : C1           :   1.5000e+00\n");
    matrix.DisplayByColumn(byCol);
    EXPECT_EQ(byCol.str(),
              "\nD I S P L A Y   O F   M A T R I X   N O N Z E R O S   B Y   C O L U M N\n"
              "NonZero [      1] R2           : C1           :   1.5000e+00|\n"
              "NonZero [      2] R1           : C2           : (-2.000e+00| 2.5000e-01|)\n");
}
