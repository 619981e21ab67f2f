#include "nlpdata/NLUnknown.h"

#include "lpdata/ILPVariable.h"
#include "nlpdata/NLTypeCodes.h"

NonLinearityUnknown::NonLinearityUnknown() : NLGradientTerm(kNLUnknown, "NLUNKNOWN") {}

NonLinearityUnknown::NonLinearityUnknown(const char* name)
    : NLGradientTerm(kNLUnknown, name && *name ? name : "NLUNKNOWN") {}

void NonLinearityUnknown::TermString(std::string& out) {
    out = GetNonLinearityID();
    out += "( ";
    std::string sep;
    for (ILPVariable* v : Vars()) {
        out += sep;
        out += v->GetName();
        sep = ", ";
    }
    for (size_t i = 0; i < Constants().size(); ++i) {
        out += sep;
        out += FormatNumber(ConstValue(i, 0.0));
        sep = ", ";
    }
    out += " )";
}

void NonLinearityUnknown::WriteHeader(std::ostream& os) {
    os << "NONLINEARITY TYPE : *** WARNING UNRECOGNIZED TYPE *** : " << GetNonLinearityID()
       << "\n";
}
