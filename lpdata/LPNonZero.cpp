#include "lpdata/LPNonZero.h"

#include "lpdata/ILPEquation.h"
#include "lpdata/ILPVariable.h"
#include "lpdata/LPNonZeroPool.h"
#include "lpdata/ZEMTypes.h"

std::atomic<uint64_t> LPNonZero::s_changes{0};

LPNonZero::LPNonZero(const LPNonZero& other)
    : ILPNonZero(other), m_equation(other.m_equation), m_variable(other.m_variable),
      m_coefficient(other.m_coefficient), m_partial(other.m_partial), m_index(other.m_index),
      m_modelIndex(other.m_modelIndex), m_nonlinear(other.m_nonlinear),
      m_diffed(other.m_diffed) {
    Changed();
}

LPNonZero& LPNonZero::operator=(const LPNonZero& other) {
    ILPNonZero::operator=(other);
    m_index = other.m_index;
    m_modelIndex = other.m_modelIndex;
    m_equation = other.m_equation;
    m_variable = other.m_variable;
    m_coefficient = other.m_coefficient;
    m_partial = other.m_partial;
    m_nonlinear = other.m_nonlinear;
    m_diffed = other.m_diffed;
    Changed();
    return *this;
}

void LPNonZero::Destroy() {
    if (m_pooled)
        LPNonZeroPool::PoolOf(this)->Give(this);
    else
        delete this;
}

int LPNonZero::GetEquationIdx() const { return m_equation ? m_equation->GetIndex() : 0; }

int LPNonZero::GetVariableIdx() const { return m_variable ? m_variable->GetIndex() : 0; }

void LPNonZero::GetCoordinates(int& row, int& col) const {
    row = GetEquationIdx();
    col = GetVariableIdx();
}

void LPNonZero::Display(std::ostream& os) {
    os << "Nonzero [" << m_index << "]"
       << " EqnIdx = " << GetEquationIdx() << " : VarIdx = " << GetVariableIdx()
       << " : Coeff = " << m_coefficient;
    os << (m_nonlinear != 0 ? " : Nonlinear\n" : "\n");
}

int LPNonZero::Compare(ILPNonZero* other, int mode, double tol, std::ostream& os) {
    if (other == nullptr) return 0;
    const char* col = m_variable ? m_variable->GetName() : "";
    const char* row = m_equation ? m_equation->GetName() : "";
    const char* label1 = mode == 3 ? "old MG" : "p1";
    const char* label2 = mode == 3 ? "zem MG" : "p2";
    const bool nl1 = m_nonlinear != 0;
    const bool nl2 = other->GetNonlinear() != 0;
    if (nl1 != nl2) {
        os << "Problem Linear NonZero for Variable " << col << " getnonlinear() does not match: "
           << label1 << " is " << m_nonlinear << ", " << label2 << " is "
           << other->GetNonlinear() << " in Equation " << row << "\n";
        return -1;
    }
    if (!nl1 && !ZEMValuesEqual(m_coefficient, other->GetCoefficient(), tol)) {
        os << "Problem Linear NonZero for Variable " << col << " coefficients do not match: "
           << label1 << " is " << m_coefficient << ", " << label2 << " is "
           << other->GetCoefficient() << " in Equation " << row << "\n";
        return -1;
    }
    return 0;
}
