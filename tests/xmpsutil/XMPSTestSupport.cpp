
#include "tests/xmpsutil/XMPSTestSupport.h"

#include <cmath>
#include <cstring>

namespace xmpstest {

double Coefficient(IZEMMgr* m, const char* row, const char* col) {
    ILPEquation* e = Eqn(m, row);
    ILPVariable* v = Var(m, col);
    if (e == nullptr || v == nullptr) return std::nan("");
    ILPNonZero* nz = Matrix(m)->ExistIncidence(e->GetIndex(), v->GetIndex());
    return nz != nullptr ? nz->GetCoefficient() : std::nan("");
}

std::vector<INonLinearity*> Terms(IZEMMgr* m) {
    std::vector<INonLinearity*> out;
    INonLinearModel* nl = NL(m);
    for (INonLinearity* t = nl->FrstNonLinearityObject(); t != nullptr;
         t = nl->NextNonLinearityObject()) {
        out.push_back(t);
    }
    return out;
}

std::vector<double> Constants(INonLinearity* t) {
    std::vector<double> out;
    for (INLConstant* c = t->FrstNLConst(); c != nullptr; c = t->NextNLConst()) {
        out.push_back(c->GetValue());
    }
    return out;
}

std::vector<std::string> VarNames(INonLinearity* t) {
    std::vector<std::string> out;
    for (ILPVariable* v = t->FrstVar(); v != nullptr; v = t->NextVar()) out.push_back(v->GetName());
    return out;
}

std::vector<std::string> Lines(const std::string& text) {
    std::vector<std::string> out;
    std::istringstream in(text);
    std::string line;
    while (std::getline(in, line)) out.push_back(line);
    return out;
}

}  // namespace xmpstest
