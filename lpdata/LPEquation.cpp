#include "lpdata/LPEquation.h"

#include <cmath>

#include "lpdata/LPCompareReport.h"

#if defined(__x86_64__)
// The measured goal of the layout (152 bytes before; see LPEquation.h).
static_assert(sizeof(LPEquation) <= 96, "LPEquation grew beyond its 96 bytes");
#endif

void LPEquation::SetRange(double v) {
    m_cold.Set(&Cold::range, v);
    ProcessRangeRHS();
}

void LPEquation::SetRHS(double v) {
    m_rhs = v;
    ProcessRangeRHS();
}

void LPEquation::SetRHSLo(double v) {
    m_rhsLower = v;
    if (m_type == ZEM_EQN_GE) m_rhs = v;
}

void LPEquation::SetRHSUp(double v) {
    m_rhsUpper = v;
    if (m_type == ZEM_EQN_LE) m_rhs = v;
}

void LPEquation::ProcessRangeRHS() {
    const double range = m_cold.Get(&Cold::range);
    if (m_type == ZEM_EQN_GE) {
        m_rhsLower = m_rhs;
        m_rhsUpper = m_rhs + std::fabs(range);
    } else if (m_type == ZEM_EQN_LE) {
        m_rhsUpper = m_rhs;
        m_rhsLower = m_rhs - std::fabs(range);
    }
}

void LPEquation::Display(std::ostream& os) {
    os << "Equation [" << m_index << "] : " << m_name.c_str() << "\n";
    os << " RHS = " << m_rhs << ", Range = " << m_cold.Get(&Cold::range) << "\n";
    os << " Type = " << ZEMEqnTypeWord(m_type) << "\n";
    os << " EqnValue w/o RHS = " << m_value << "\n";
    os << " Matrix Nonzeros = " << m_numberNZ << "\n";
    os << " Number NonLinearities = " << m_nonlinear << "\n";
    os << "\n";
}

int LPEquation::Compare(ILPEquation* other, std::ostream& os, int mode, bool checkValues,
                        double tol, int nz1, int nz2, bool /*shortForm*/) {
    if (other == nullptr) return 0;
    LPCompareReport rep(os, "Equation", m_name.c_str(), mode);
    const bool bcap = mode == 3 && m_name.StartsWith("BCAP");
    const bool eopn = mode == 3 && m_name.StartsWith("EOPN");
    const Cold& cold = m_cold.Read();

    if (!bcap && !ZEMValuesEqual(cold.range, other->GetRange(), tol))
        rep.Line(" ranges do not match: ", cold.range, other->GetRange());
    if (m_type != other->GetType())
        rep.Line(" types do not match: ", std::string(ZEMEqnTypeCompareWord(m_type)),
                 std::string(ZEMEqnTypeCompareWord(other->GetType())));
    if (!bcap && !eopn && !ZEMValuesEqual(m_rhs, other->GetRHS(), tol))
        rep.Line(" RHSs do not match: ", m_rhs, other->GetRHS());
    if (!bcap && !ZEMValuesEqual(m_rhsLower, other->GetRHSLo(), tol))
        rep.Line(" RHSLo do not match: ", m_rhsLower, other->GetRHSLo());
    if (!bcap && !ZEMValuesEqual(m_rhsUpper, other->GetRHSUp(), tol))
        rep.Line(" RHSUp do not match: ", m_rhsUpper, other->GetRHSUp());
    if (!bcap && !eopn && nz1 != nz2) rep.Line(" number NZ do not match: ", nz1, nz2);
    if (!ZEMValuesEqual(cold.scale, other->GetEqnScale(), tol))
        rep.Line(" scales do not match: ", cold.scale, other->GetEqnScale());
    if (m_nonlinear != other->GetNonlinear())
        rep.Line(" number nonlinear do not match: ", m_nonlinear, other->GetNonlinear());
    if (checkValues) {
        if (!ZEMValuesEqual(m_value, other->GetEqnValue(), tol))
            rep.Line(" value does not match: ", m_value, other->GetEqnValue());
        if (!ZEMValuesEqual(m_residual, other->GetResidualValue(), tol))
            rep.Line(" residual value does not match: ", m_residual, other->GetResidualValue());
        if (!ZEMValuesEqual(cold.infeas, other->GetInfeasValue(), tol))
            rep.Line(" infeasibility value does not match: ", cold.infeas,
                     other->GetInfeasValue());
    }
    return rep.Found() ? -1 : 0;
}

void LPEquation::PopulateEqnIterStruct(tEqnIterDataStruct& rec) const {
    rec.value = m_value;
    rec.baseValue = m_cold.Get(&Cold::baseValue);
    rec.shadowPrice = m_cold.Get(&Cold::shadowPrice);
}
