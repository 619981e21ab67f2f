#include "lpdata/LPVariable.h"

#include <cstring>

#include "lpdata/LPCompareReport.h"

LPVariable::LPVariable(const LPVariable& other) { *this = other; }

LPVariable& LPVariable::operator=(const LPVariable& other) {
    if (this == &other) return *this;
    m_index = other.m_index;
    m_name = other.m_name;
    m_description = other.m_description ? std::make_unique<std::string>(*other.m_description)
                                         : nullptr;
    m_value = other.m_value;
    m_baseValue = other.m_baseValue;
    m_persistentValue = other.m_persistentValue;
    m_shadowPrice = other.m_shadowPrice;
    m_upper = other.m_upper;
    m_lower = other.m_lower;
    m_stepBound = other.m_stepBound;
    m_tempLower = other.m_tempLower;
    m_sampleUpper = other.m_sampleUpper;
    m_sampleLower = other.m_sampleLower;
    m_relaxedUpper = other.m_relaxedUpper;
    m_relaxedLower = other.m_relaxedLower;
    m_numberNZ = other.m_numberNZ;
    m_type = other.m_type;
    m_status = other.m_status;
    m_modelIndex = other.m_modelIndex;
    m_nonlinear = other.m_nonlinear;
    m_complement = other.m_complement;
    m_diffed = other.m_diffed;
    m_blkMember = other.m_blkMember;
    return *this;
}

void LPVariable::SetDescription(const char* text) {
    if (text == nullptr || *text == '\0') {
        m_description.reset();
    } else {
        m_description = std::make_unique<std::string>(text);
    }
}

const char* LPVariable::GetDescription() const {
    return m_description ? m_description->c_str() : "";
}

void LPVariable::Display(std::ostream& os) {
    os << "Variable [" << m_index << "] : " << m_name << "\n";
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

    // A bound is violated when the other side's value lies outside it.
    const double lo2 = other->GetBoundLower();
    if (!ZEMValuesEqual(m_lower, lo2, tol)) {
        const bool bad = m_value < lo2 || other->GetVarValue() < m_lower;
        rep.Line(" lower bounds do not match: ", m_lower, lo2, bad ? violated : plain);
    }
    const bool upperExempt =
        mode == 3 && (m_name.compare(0, 4, "IEXC") == 0 || m_name.compare(0, 4, "CDEC") == 0);
    const double up2 = other->GetBoundUpper();
    if (!upperExempt && !ZEMValuesEqual(m_upper, up2, tol)) {
        const bool bad = m_value > up2 || other->GetVarValue() > m_upper;
        rep.Line(" upper bounds do not match: ", m_upper, up2, bad ? violated : plain);
    }
    if (mode < 3) {
        if (!ZEMValuesEqual(m_stepBound, other->GetStepBound(), tol))
            rep.Line(" step bounds do not match: p1 is ", m_stepBound, other->GetStepBound());
        if (!ZEMValuesEqual(m_tempLower, other->GetTempBoundLower(), tol))
            rep.Line(" temp lower bounds do not match: p1 is ", m_tempLower,
                     other->GetTempBoundLower());
        if (!ZEMValuesEqual(m_sampleLower, other->GetSampleBoundLower(), tol))
            rep.Line(" sample lower bounds do not match: p1 is ", m_sampleLower,
                     other->GetSampleBoundLower());
        if (!ZEMValuesEqual(m_sampleUpper, other->GetSampleBoundUpper(), tol))
            rep.Line(" sample upper bounds do not match: p1 is ", m_sampleUpper,
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
    if (checkPersistent && !ZEMValuesEqual(m_persistentValue, other->GetPersistentValue(), tol))
        rep.Line(" persistent values do not match: p1 is ", m_persistentValue,
                 other->GetPersistentValue());
    if (nz1 != nz2) rep.Line(" number NZs do not match: ", nz1, nz2);
    if ((mode == 1 || mode == 2) && m_nonlinear != other->GetNonlinear())
        rep.Line(" number nonlinear do not match: p1 is ", m_nonlinear, other->GetNonlinear());
    return rep.Found() ? -1 : 0;
}

void LPVariable::PopulateVarIterStruct(tVarIterDataStruct& rec) const {
    rec.value = m_value;
    rec.baseValue = m_baseValue;
    rec.shadowPrice = m_shadowPrice;
}
