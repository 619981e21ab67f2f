#include "nlpdata/NLConstant.h"

void NLConstant::Display(std::ostream& os) { os << "NLConstant = " << m_value << "\n"; }
