// Listings of the model manager: heading, full listing, matrix by row and by
// column, the algebraic listings and the nonlinear matrix listing.
#include <cstdlib>
#include <fstream>
#include <string>

#include "lpdata/ILPEquation.h"
#include "lpdata/ILPEquationList.h"
#include "lpdata/ILPMatrix.h"
#include "lpdata/ILPNonZero.h"
#include "lpdata/ILPSpOrdSet.h"
#include "lpdata/ILPVariable.h"
#include "lpdata/ILPVariableCollection.h"
#include "lpdata/ILPVariableList.h"
#include "nlpdata/INonLinearBlockList.h"
#include "nlpdata/INonLinearModel.h"
#include "zemmgr/ZEMFormat.h"
#include "zemmgr/ZEMMgr.h"
#include "zemmgr/ZEMOptionTable.h"
#include "zemmgr/ZEMRowLimits.h"

namespace {

char sign(double v) { return v < 0 ? '-' : '+'; }

// The listing word of a variable: its integer kind, or BASIC for a basic
// continuous variable.
const char* summaryWord(const ILPVariable* v) {
    switch (v->GetVarType()) {
    case ZEM_VAR_BINARY:
        return "BINARY";
    case ZEM_VAR_DISCRETE:
        return "INTEGER";
    case ZEM_VAR_SEMICONTINUOUS:
        return "SEMI-CONTIN";
    default:
        return v->GetVarStatus() == ZEM_STATUS_BASIC ? "BASIC" : "";
    }
}

const char* rowKind(const ILPEquation* e) { return e->GetNonlinear() > 0 ? "NONLINEAR" : "LINEAR"; }

}  // namespace

void ZEMMgr::DisplayHeading(std::ostream& os) {
    int n = 0, m = 0, nz = 0;
    ModelDimension(n, m, nz);
    os << "\nD I S P L A Y   O F   Z E M   D A T A   O B J E C T\n";
    os << "- - - - - - -   - -   - - -   - - - -   - - - - - -\n\n";
    os << "M O D E L   T I T L E   :  " << m_title << "\n\n";
    os << "D I M E N S I O N S : N = " << n << "; M = " << m
       << "; M (Nonlinear) = " << m_eqns->NumberOfNLEquations() << "; NZ = " << nz
       << "; NZ (Nonlinear) = " << m_nonlinear->NumberOfNonLinearNonZeros() << ";\n\n";
    m_options->Display(os);
}

void ZEMMgr::Display(std::ostream& os) {
    DisplayHeading(os);
    m_vars->Display(os);
    m_eqns->Display(os);
    m_nonlinear->Display(os);
    m_sets->Display(os);
    for (ILPVariableCollection* col : m_collections) col->Display(os);
}

void ZEMMgr::DisplayByRow(std::ostream& os) {
    DisplayHeading(os);
    os << "\nD I S P L A Y   O F   M A T R I X   B Y   R O W\n";
    Matrix()->DisplayByRow(os);
    m_nonlinear->DisplayByRow(os);
}

void ZEMMgr::DisplayByColumn(std::ostream& os) {
    DisplayHeading(os);
    os << "\nD I S P L A Y   O F   M A T R I X   B Y   C O L U M N\n";
    Matrix()->DisplayByColumn(os);
    m_nonlinear->DisplayByColumn(os);
}

void ZEMMgr::AlgebraicDisplay(std::ostream& os) { WriteAlgebraic(os, false); }

void ZEMMgr::AlgebraicDisplayXLR(std::ostream& os) { WriteAlgebraic(os, true); }

// One line per row: limits, name, kind, current value, then the linear
// entries and the nonlinear terms. With SHOW_HYBRID_MODEL set in the
// environment and a hybrid model, terms are listed as hybrid functions of
// their variables instead of their formulas.
void ZEMMgr::WriteAlgebraic(std::ostream& os, bool xlr) {
    const char* hybridEnv = std::getenv("SHOW_HYBRID_MODEL");
    const bool showHybrid = hybridEnv != nullptr && hybridEnv[0] != '\0' && m_hybrid;
    const std::string heading =
        " A L G E B R A I C   D I S P L A Y   O F   N O N L I N E A R   M O D E L\n";
    const std::string rule(heading.size() - 1, '=');
    os << "\n" << rule << "\n" << heading << rule << "\n\n";

    if (xlr) {
        int nInt = m_vars->VarTypeCount(ZEM_VAR_BINARY) + m_vars->VarTypeCount(ZEM_VAR_DISCRETE);
        int n = 0, m = 0, nz = 0;
        ModelDimension(n, m, nz);
        os << ZEMFormat("     Total Number of Variables  = %7d  (%7d integer   ) ", n, nInt) << "\n";
        os << ZEMFormat("     Total Number of Equations  = %7d  (%7d nonlinear ) ", m,
                  m_eqns->NumberOfNLEquations())
           << "\n";
        os << ZEMFormat("     Total Number of Non-zeroes = %7d  (%7d nonlinear ) ", nz,
                  m_nonlinear->NumberOfNonLinearNonZeros())
           << "\n\n";
    }

    ILPMatrix* matrix = Matrix();
    for (ILPEquation* e = m_eqns->FrstEquationObject(); e; e = m_eqns->NextEquationObject()) {
        const ZEMRowLimits lim = ZEMGetRowLimits(e);
        std::string terms;
        const int row = e->GetIndex();
        for (ILPNonZero* nz = matrix->RowFrstNonZeroObject(row); nz;
             nz = matrix->RowNextNonZeroObject()) {
            const double c = nz->GetCoefficient();
            if (c == 0.0 && nz->GetNonlinear() != 0) continue;  // carries terms only
            terms += ZEMFormat(xlr ? "%c %#.6g%c%s " : "%c %#.4g%c%s ", sign(c), c < 0 ? -c : c, '*',
                         nz->GetVariablePtr()->GetName());
        }
        for (INonLinearity* t = m_nonlinear->RowFrstNonLinearityObject(row); t;
             t = m_nonlinear->RowNextNonLinearityObject()) {
            if (showHybrid) {
                const char* id = t->GetNonLinearityID();
                terms += ZEMFormat("%s .%c.   HybridFn(", id ? id : "", 'H');
                bool first = true;
                for (ILPVariable* v = t->FrstVar(); v; v = t->NextVar()) {
                    terms += (first ? "" : ", ");
                    terms += v->GetName();
                    first = false;
                }
                terms += ") ";
            } else {
                std::string text;
                t->TermString(text);
                terms += "+ " + text + " ";
            }
        }
        os << ZEMFormat(" % #10.4e <= %13s <= % #10.4e  %11s (%#10.4e)  %s", lim.lower, e->GetName(),
                  lim.upper, rowKind(e), e->GetEqnValue(), terms.c_str())
           << "\n";
    }

    os << "\nV A R I A B L E   S U M M A R Y\n\n";
    for (ILPVariable* v = m_vars->FrstVariableObject(); v; v = m_vars->NextVariableObject())
        os << ZEMFormat(" % #10.4e <= %13s <= % #10.4e  (% #10.4e)  %s", v->GetBoundLower(),
                  v->GetName(), v->GetBoundUpper(), v->GetVarValue(), summaryWord(v))
           << "\n";

    os << "\nN A M E D   V A R I A B L E   C O L L E C T I O N   S U M M A R Y\n\n";
    for (ILPVariableCollection* col : m_collections) col->Display(os);

    os << "\nE X T E R N A L   M O D E L   B L O C K S   S U M M A R Y\n\n";
    INonLinearBlockList* blocks = m_nonlinear->NLBlockList();
    os << "Number of External Blocks = " << (blocks ? blocks->NumberOfBlocks() : 0) << "\n\n";
}

// Rows with their entries; an entry that carries nonlinear terms shows its
// coefficient and its partial derivative at the current point.
void ZEMMgr::NonLinearMatrixDisplay(std::ostream& os) {
    os << "\nD I S P L A Y   O F   N O N L I N E A R   M O D E L   M A T R I X\n";
    os << "- - - - - - -   - -   - - - - - - - - -   - - - - -   - - - - - -\n\n";
    ILPMatrix* matrix = Matrix();
    for (ILPEquation* e = m_eqns->FrstEquationObject(); e; e = m_eqns->NextEquationObject()) {
        const ZEMRowLimits lim = ZEMGetRowLimits(e);
        std::string entries;
        for (ILPNonZero* nz = matrix->RowFrstNonZeroObject(e->GetIndex()); nz;
             nz = matrix->RowNextNonZeroObject()) {
            const double c = nz->GetCoefficient();
            const char* name = nz->GetVariablePtr()->GetName();
            if (nz->GetNonlinear() != 0)
                entries += ZEMFormat("%c (%.3f|%.3f)%c%s ", sign(c), c < 0 ? -c : c,
                               nz->GetPartialDeriv(), '*', name);
            else
                entries += ZEMFormat("%c %.3f%c%s ", sign(c), c < 0 ? -c : c, '*', name);
        }
        os << ZEMFormat(" %6.3g <= %13s <= %6.3g  %11s (%10f)  %s", lim.lower, e->GetName(), lim.upper,
                  rowKind(e), e->GetEqnValue(), entries.c_str())
           << "\n";
    }
    os << "\n";
}

void ZEMMgr::WriteZEMSummary(const char* path) {
    std::ofstream out(path ? path : "", std::ios::out | std::ios::trunc);
    if (!out.is_open()) return;
    DisplayHeading(out);
    AlgebraicDisplay(out);
    Display(out);
}
