// Listings of the linear model: heading, full display, matrix by row or
// column, and the algebraic display.
#include <cmath>
#include <string>

#include "lpdata/ILPEquation.h"
#include "lpdata/ILPNonZero.h"
#include "lpdata/ILPVariable.h"
#include "lpdata/LPEquationList.h"
#include "lpdata/LPFormat.h"
#include "lpdata/LPMatrix.h"
#include "lpdata/LPStdDataMgr.h"
#include "lpdata/LPVariableList.h"

namespace {

// Terms printed on one line of the algebraic display before it continues.
constexpr int kTermsPerLine = 6;

}  // namespace

void LPStdDataMgr::DisplayHeading(std::ostream& os) {
    int n = 0, m = 0, nz = 0;
    ModelDimension(n, m, nz);
    os << "\nD I S P L A Y   O F   L P   D A T A   O B J E C T\n";
    os << "- - - - - - -   - -   - -   - - - -   - - - - - -\n\n";
    os << "M O D E L   T I T L E   : " << m_title << "\n";
    os << "D I M E N S I O N S   : N = " << n << " M = " << m << " NZ = " << nz << "\n";
}

void LPStdDataMgr::Display(std::ostream& os) {
    DisplayHeading(os);
    m_vars->Display(os);
    m_eqns->Display(os);
    m_matrix->Display(os);
}

void LPStdDataMgr::DisplayByRow(std::ostream& os) {
    DisplayHeading(os);
    m_matrix->DisplayByRow(os);
}

void LPStdDataMgr::DisplayByColumn(std::ostream& os) {
    DisplayHeading(os);
    m_matrix->DisplayByColumn(os);
}

// Each row is printed as an equation under its name (the objective as
// "OBJEQN"): the lower limit before the terms ("lo <= ") for >= rows and
// ranged <= rows, the upper limit after them ("<= up") for <= rows and
// ranged >= rows, and "== rhs" after an equality row. Terms read
// "+ 2.000 X1"; a nonlinear entry separates its coefficient from the column
// name with '*'. Rows of more than six terms continue on further lines.
void LPStdDataMgr::AlgebraicDisplay(std::ostream& os) {
    os << "\nA L G E B R A I C   D I S P L A Y   O F   M A T R I X\n";
    for (ILPEquation* e = m_eqns->FrstEquationObject(); e; e = m_eqns->NextEquationObject()) {
        const int16_t type = e->GetType();
        const bool ranged = e->GetRange() != 0.0;
        os << "\n" << (type == ZEM_EQN_OBJECTIVE ? "OBJEQN" : e->GetName()) << " :\n   ";
        if (type == ZEM_EQN_GE)
            os << lpfmt::format("%6.3g <= ", e->GetRHS());
        else if (type == ZEM_EQN_LE && ranged)
            os << lpfmt::format("%6.3g <= ", e->GetRHSLo());
        int terms = 0;
        for (ILPNonZero* nz = m_matrix->RowFrstNonZeroObject(e->GetIndex()); nz;
             nz = m_matrix->RowNextNonZeroObject()) {
            if (terms > 0 && terms % kTermsPerLine == 0) os << "\n" << lpfmt::format("%8s ...", "");
            const double coef = nz->GetCoefficient();
            const ILPVariable* v = nz->GetVariablePtr();
            os << (terms == 0 ? "" : " ")
               << lpfmt::format("%c %.3f%c%s", coef < 0 ? '-' : '+', std::fabs(coef),
                                nz->GetNonlinear() != 0 ? '*' : ' ', v ? v->GetName() : "");
            ++terms;
        }
        if (type == ZEM_EQN_EQ)
            os << " " << lpfmt::format("== %6.3g", e->GetRHS());
        else if (type == ZEM_EQN_LE)
            os << " " << lpfmt::format("<= %6.3g", e->GetRHS());
        else if (type == ZEM_EQN_GE && ranged)
            os << " " << lpfmt::format("<= %6.3g", e->GetRHSUp());
        os << "\n";
    }
    os << "\nV A R I A B L E   S U M M A R Y\n";
    for (ILPVariable* v = m_vars->FrstVariableObject(); v; v = m_vars->NextVariableObject())
        os << lpfmt::format("%6.3g <= %8s <= %6.3g    %s\n", v->GetBoundLower(), v->GetName(),
                            v->GetBoundUpper(), ZEMVarTypeSummaryWord(v->GetVarType()));
}

// The XLR listing has nothing to show for a purely linear model.
void LPStdDataMgr::AlgebraicDisplayXLR(std::ostream& /*os*/) {}
