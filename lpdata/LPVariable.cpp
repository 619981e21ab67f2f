#include "lpdata/LPVariable.h"

#include <string>

#include "lpdata/LPCompareReport.h"

#if defined(__x86_64__)
// The measured goal of the layout (184 bytes before; see LPVariable.h).
static_assert(sizeof(LPVariable) <= 88, "LPVariable grew beyond its 88 bytes");
#endif

void LPVariable::SetDescription(const char* text) {
    // A null or empty text clears the description; neither makes a block.
    if (m_cold.Made() || (text != nullptr && *text != '\0')) m_cold.Write().description.Assign(text);
}

void LPVariable::Display(std::ostream& os) {
    os << "Variable [" << m_index << "] : " << m_name.c_str() << "\n";
    os << " Lower = " << m_lower << ", Value = " << m_value << ", Upper = " << m_upper << "\n";
    os << " Type = " << ZEMVarTypeWord(m_type) << ", Status = " << ZEMVarStatusWord(m_status)
       << "\n";
    os << " Matrix Nonzeros = " << m_numberNZ << "\n";
    os << " Number NonLinearities = " << m_nonlinear << "\n";
    os << "\n";
}

int LPVariable::Compare(ILPVariable* other, std::ostream& os, int mode, bool checkValues,
                        bool checkPersistent, bool shortForm, double tol, int nz1, int nz2) {
    if (other == nullptr) return 0;
    LPCompareReport rep(os, "Variable", m_name.c_str(), mode);
    const char* violated = shortForm ? "   * VIOLATED \n" : "   ******* VIOLATED \n";
    const char* plain = shortForm ? " \n" : "   ******* \n";
    const Cold& cold = m_cold.Read();

    // A bound is violated when the other side's value lies outside it.
    const double lo2 = other->GetBoundLower();
    if (!ZEMValuesEqual(m_lower, lo2, tol)) {
        const bool bad = m_value < lo2 || other->GetVarValue() < m_lower;
        rep.Line(" lower bounds do not match: ", m_lower, lo2, bad ? violated : plain);
    }
    const bool upperExempt =
        mode == 3 && (m_name.StartsWith("IEXC") || m_name.StartsWith("CDEC"));
    const double up2 = other->GetBoundUpper();
    if (!upperExempt && !ZEMValuesEqual(m_upper, up2, tol)) {
        const bool bad = m_value > up2 || other->GetVarValue() > m_upper;
        rep.Line(" upper bounds do not match: ", m_upper, up2, bad ? violated : plain);
    }
    if (mode < 3) {
        if (!ZEMValuesEqual(cold.stepBound, other->GetStepBound(), tol))
            rep.Line(" step bounds do not match: p1 is ", cold.stepBound, other->GetStepBound());
        if (!ZEMValuesEqual(cold.tempLower, other->GetTempBoundLower(), tol))
            rep.Line(" temp lower bounds do not match: p1 is ", cold.tempLower,
                     other->GetTempBoundLower());
        if (!ZEMValuesEqual(cold.sampleLower, other->GetSampleBoundLower(), tol))
            rep.Line(" sample lower bounds do not match: p1 is ", cold.sampleLower,
                     other->GetSampleBoundLower());
        if (!ZEMValuesEqual(cold.sampleUpper, other->GetSampleBoundUpper(), tol))
            rep.Line(" sample upper bounds do not match: p1 is ", cold.sampleUpper,
                     other->GetSampleBoundUpper());
    }
    if (m_type != other->GetVarType())
        rep.Line(" types do not match: ", std::string(ZEMVarTypeCompareWord(m_type)),
                 std::string(ZEMVarTypeCompareWord(other->GetVarType())));
    if (checkValues) {
        if (!ZEMValuesEqual(m_value, other->GetVarValue(), tol))
            rep.Line(" values do not match: p1 is ", m_value, other->GetVarValue());
        if (!ZEMValuesEqual(m_baseValue, other->GetBaseValue(), tol))
            rep.Line(" base values do not match: p1 is ", m_baseValue, other->GetBaseValue());
    }
    if (checkPersistent && !ZEMValuesEqual(cold.persistentValue, other->GetPersistentValue(), tol))
        rep.Line(" persistent values do not match: p1 is ", cold.persistentValue,
                 other->GetPersistentValue());
    if (nz1 != nz2) rep.Line(" number NZs do not match: ", nz1, nz2);
    if ((mode == 1 || mode == 2) && m_nonlinear != other->GetNonlinear())
        rep.Line(" number nonlinear do not match: p1 is ", m_nonlinear, other->GetNonlinear());
    return rep.Found() ? -1 : 0;
}

void LPVariable::PopulateVarIterStruct(tVarIterDataStruct& rec) const {
    rec.value = m_value;
    rec.baseValue = m_baseValue;
    rec.shadowPrice = m_cold.Get(&Cold::shadowPrice);
}
