#include "nlpdata/NonLinearityFactory.h"

#include <cstring>
#include <new>
#include <string_view>

#include "nlpdata/NLConstants.h"
#include "nlpdata/NLCurve.h"
#include "nlpdata/NLDistillation.h"
#include "nlpdata/NLDivision.h"
#include "nlpdata/NLEquationTerms.h"
#include "nlpdata/NLExpLog.h"
#include "nlpdata/NLPowers.h"
#include "nlpdata/NLProcess.h"
#include "nlpdata/NLProducts.h"
#include "nlpdata/NLSimDistInterp.h"
#include "nlpdata/NLTypeCodes.h"
#include "nlpdata/NLUnknown.h"

namespace {

// The keyword of a name: the part before its first ':'.
std::string_view KeyOf(const char* name) {
    const char* colon = std::strchr(name, ':');
    return colon ? std::string_view(name, static_cast<size_t>(colon - name))
                 : std::string_view(name);
}

// A new term of the class that carries `code`; an unknown term for a code
// without a class of its own or one that only the model can make.
INonLinearity* MakeTerm(int16_t code) {
    switch (code) {
        case kNLProduct: return new NonLinearityProduct();
        case kNLNaturalLogX: return new NonLinearityNaturalLogX();
        case kNLExponentialX: return new NonLinearityExponentialX();
        case kNLConstant: return new NonLinearityConstant();
        case kNLConstantProd: return new NonLinearityConstantProd();
        case kNLCurve: return new NonLinearityCurve();
        case kNLWrap: return new NonLinearityWrap();
        case kNLPower: return new NonLinearityPower();
        case kNLXPower: return new NonLinearityXPower();
        case kNLEvaporation: return new NonLinearityEvaporationGDOT();
        case kNLEI: return new NonLinearityEI();
        case kNLTPercent: return new NonLinearityTPercent();
        case kNLProduct2: return new NonLinearityProduct2();
        case kNLFloatingTankQB: return new NonLinearityFloatingTankQualityBalance();
        case kNLDivision: return new NonLinearityDivision();
        case kNLDiBiDistFunc: return new XNonLinearityDiBiDistFunc();
        case kNLDiBiFullDistFunc: return new XNonLinearityDiBiFullDistFunc();
        case kNLSimDistInterp: return new XNonLinearitySimDistInterp();
        case kNLSimDistInterpFVT: return new XNonLinearitySimDistInterpFVT();
        default: return new NonLinearityUnknown();
    }
}

}  // namespace

NonLinearityFactoryBase::NonLinearityFactoryBase() {
    static const struct {
        const char* name;
        int16_t code;
    } kTable[] = {
        {"XPROD", kNLProduct},          {"LNX", kNLNaturalLogX},
        {"EXPX", kNLExponentialX},      {"CONST", kNLConstant},
        {"CONSTPROD", kNLConstantProd}, {"NLUNKNOWN", kNLUnknown},
        {"NLBLKEQ", kNLBlockEquation},  {"QCLEQ", kNLQCLEquation},
        {"SCDEQ", kNLSCDEquation},      {"GNREQ", kNLCurve},
        {"USEREQ", kNLNLEEquation},     {"WRAPEQ", kNLWrap},
        {"POW", kNLPower},              {"XPOW", kNLXPower},
        {"EVAP", kNLEvaporation},       {"EI", kNLEI},
        {"XPROD2", kNLProduct2},        {"FLTQB", kNLFloatingTankQB},
        {"TPERCENT", kNLTPercent},      {"DIV", kNLDivision},
        {"DIBIFUNC", kNLDiBiDistFunc},  {"DIBIFUNCX", kNLDiBiFullDistFunc},
        {"SIMDISTINTRP", kNLSimDistInterp}, {"SIMDISTINTRPFVT", kNLSimDistInterpFVT},
    };
    for (const auto& e : kTable) AddNonLinearityName(e.name, e.code);
}

void NonLinearityFactoryBase::AddNonLinearityName(const char* name, int16_t code) {
    if (!name) return;
    const std::string_view key = KeyOf(name);
    if (m_names.find(key) == m_names.end()) m_names.emplace(std::string(key), code);
}

void NonLinearityFactoryBase::NameToTypeID(const char* name, int16_t* code) {
    if (!code) return;
    *code = kNLUnknown;
    if (!name) return;
    const auto it = m_names.find(KeyOf(name));
    if (it != m_names.end()) *code = it->second;
}

void NonLinearityFactoryBase::Create(int16_t code, INonLinearity** out) {
    if (!out) return;
    *out = nullptr;
    try {
        *out = MakeTerm(code);
    } catch (const std::bad_alloc&) {
        *out = nullptr;
    }
}

void NonLinearityFactoryBase::Create(const char* name, INonLinearity** out) {
    if (!out) return;
    int16_t code = kNLUnknown;
    NameToTypeID(name, &code);
    if (code != kNLUnknown) {
        Create(code, out);
        return;
    }
    *out = nullptr;
    try {
        *out = new NonLinearityUnknown(name);
    } catch (const std::bad_alloc&) {
        *out = nullptr;
    }
}

int NonLinearityFactoryBase::IAddRef() { return ++m_refCount; }

int NonLinearityFactoryBase::IRelease() {
    const int count = --m_refCount;
    if (count <= 0) Destroy();
    return count;
}

INonLinearityFactory* CreateNonLinearityFactoryObject() {
    try {
        return new NonLinearityFactoryBase();
    } catch (const std::bad_alloc&) {
        return nullptr;
    }
}
