#include "nlpdata/NLEquationTerms.h"

#include "lpdata/ILPVariable.h"
#include "nlpdata/NLTypeCodes.h"

NonLinearityEquationTerm::NonLinearityEquationTerm(int16_t code, const char* keyword,
                                                   const char* identifier, const char* title)
    : NLGradientTerm(code, identifier && *identifier ? identifier : keyword), m_title(title) {}

void NonLinearityEquationTerm::TermString(std::string& out) {
    out = GetNonLinearityID();
    out += "( ";
    out += JoinArgumentNames(", ");
    if (!Constants().empty()) {
        out += " ;";
        for (size_t i = 0; i < Constants().size(); ++i) {
            out += i ? ", " : " ";
            out += FormatNumber(ConstValue(i, 0.0));
        }
    }
    out += " )";
}

void NonLinearityEquationTerm::WriteHeader(std::ostream& os) {
    os << "NONLINEARITY TYPE : " << m_title << " : " << GetNonLinearityID() << "\n";
}

NonLinearityBlockEquation::NonLinearityBlockEquation(const char* identifier)
    : NonLinearityEquationTerm(kNLBlockEquation, "NLBLKEQ", identifier, "BLOCK EQUATION") {}

NonLinearitySCDEquation::NonLinearitySCDEquation(const char* identifier)
    : NonLinearityEquationTerm(kNLSCDEquation, "SCDEQ", identifier, "SCD EQUATION") {}

NonLinearityWrap::NonLinearityWrap(const char* identifier)
    : NonLinearityEquationTerm(kNLWrap, "WRAPEQ", identifier, "WRAPPED TERM") {}
