// libzemqcl: the standard blending-index correlations of refinery planning,
// behind the correlation-library contract of nlpdata/QCLLibraryAbi.h.
//
// A blending index turns a property that does not blend linearly into one
// that does by volume: the index of a blend is the volume-weighted mean of
// its components' indices. Each correlation maps its input properties to its
// output index and gives the analytic partial derivatives. Correlations, in
// library order (number: identifier, input -> output):
//   0 RVP    RVP [psi]                     -> RVPI = RVP^EXPONENT
//   1 VISC   VISCOSITY [cSt]               -> VBN (Refutas blending number)
//   2 POUR   POUR [degF]                   -> POURI (Hu-Burns power law)
//   3 CLOUD  CLOUD [degF]                  -> CLOUDI (Hu-Burns power law)
//   4 FLASH  FLASH [degF]                  -> FLASHI (Wickey-Chittenden index)
//   5 SULW   SULFUR [wt%], SG              -> SULFVOL = SULFUR * SG
//   6 LINEAR PROPERTY                      -> PROPERTY (volume-linear)
// Coefficients are readable (gfx_qclGetCoef) and settable
// (gfx_qclSetCoefValue, or all at once in order through gfx_setCorParms);
// they return to their published values when the library is first
// initialised. The flow argument of gfx_qclGenCalc is not used: indices are
// per unit volume. Error codes: 1 a bad correlation, property or coefficient
// number or buffer size; 2 an input outside the correlation's range.
#include <cmath>
#include <cstring>

#include "nlpdata/QCLLibraryAbi.h"

namespace {

constexpr int32_t kBadArgument = 1;
constexpr int32_t kOutOfRange = 2;
constexpr int kMaxCoefs = 3;

// Correlation types and output property types of this library.
constexpr int32_t kTypeIndex = 1;   // property -> blending index
constexpr int32_t kTypeWeight = 2;  // weight-based property -> volume basis
constexpr int32_t kTypeLinear = 3;  // blends linearly by volume
constexpr int32_t kOutVolumeBlended = 1;

// Computes output 0 and its derivatives by each input; false outside range.
using CalcFn = bool (*)(const double* in, const double* coef, double* out, double* deriv);

struct Correlation {
    const char* id;
    const char* desc;
    int32_t type;
    int32_t nIn;
    const char* inputs[2];
    const char* output;
    int32_t nCoef;
    const char* coefNames[kMaxCoefs];
    double defaults[kMaxCoefs];
    CalcFn calc;
};

// Reid vapour pressure blending index, RVPI = RVP^1.25 (the Chevron index:
// W. E. Stewart, "Predict RVP of blends accurately", Petroleum Refiner 38(6),
// 1959; as used in J. H. Gary, G. E. Handwerk, Petroleum Refining, ch. on
// product blending).
bool Rvp(const double* in, const double* k, double* out, double* d) {
    if (in[0] < 0.0) return false;
    out[0] = std::pow(in[0], k[0]);
    d[0] = in[0] == 0.0 ? 0.0 : k[0] * std::pow(in[0], k[0] - 1.0);
    return true;
}

// Refutas viscosity blending number, VBN = 14.534 ln(ln(v + 0.8)) + 10.975
// with v the kinematic viscosity in cSt (R. E. Maples, Petroleum Refinery
// Process Economics, 2nd ed., 2000, ch. on blending). Needs v + 0.8 > 1.
bool Visc(const double* in, const double* k, double* out, double* d) {
    const double x = in[0] + k[2];
    if (!(x > 1.0)) return false;
    const double lx = std::log(x);
    out[0] = k[0] * std::log(lx) + k[1];
    d[0] = k[0] / (x * lx);
    return true;
}

// Hu-Burns blending index for cold properties, I = (T_R / TREF)^EXPONENT with
// T_R = T[degF] + 459.67 (J. Hu, A. M. Burns, "Index predicts cloud, pour and
// flash points of distillate fuel blends", Hydrocarbon Processing 49(11),
// 1970: exponent 1/0.08 for pour point, 1/0.05 for cloud point). TREF only
// scales every index alike, which leaves blends unchanged and keeps the
// numbers readable.
bool ColdIndex(const double* in, const double* k, double* out, double* d) {
    const double r = (in[0] + k[1]) / k[2];
    if (!(r > 0.0)) return false;
    out[0] = std::pow(r, k[0]);
    d[0] = k[0] * std::pow(r, k[0] - 1.0) / k[2];
    return true;
}

// Flash point blending index, log10 FPI = -6.1188 + 2414 / (T + 230.56) with
// T in degF (W. A. Wickey, D. H. Chittenden, "Flash points of blends
// correlated", Hydrocarbon Processing 42(6), 1963).
bool Flash(const double* in, const double* k, double* out, double* d) {
    const double t = in[0] + k[2];
    if (!(t > 0.0)) return false;
    out[0] = std::pow(10.0, k[0] + k[1] / t);
    d[0] = -out[0] * std::log(10.0) * k[1] / (t * t);
    return true;
}

// Sulphur by weight blended by volume: weight of sulphur per volume is
// wt% * specific gravity (a mass balance, as in Gary and Handwerk, Petroleum
// Refining, ch. on product blending).
bool SulphurByWeight(const double* in, const double*, double* out, double* d) {
    out[0] = in[0] * in[1];
    d[0] = in[1];
    d[1] = in[0];
    return true;
}

// Properties that blend linearly by volume (specific gravity, aromatics
// vol%, ...): the index is the property itself.
bool Linear(const double* in, const double*, double* out, double* d) {
    out[0] = in[0];
    d[0] = 1.0;
    return true;
}

const Correlation kTable[] = {
    {"RVP", "Reid vapour pressure blending index RVP^1.25", kTypeIndex, 1, {"RVP", nullptr}, "RVPI",
     1, {"EXPONENT"}, {1.25}, Rvp},
    {"VISC", "Refutas viscosity blending number", kTypeIndex, 1, {"VISCOSITY", nullptr}, "VBN", 3,
     {"A", "B", "C"}, {14.534, 10.975, 0.8}, Visc},
    {"POUR", "Hu-Burns pour point blending index", kTypeIndex, 1, {"POUR", nullptr}, "POURI", 3,
     {"EXPONENT", "OFFSET", "TREF"}, {12.5, 459.67, 1000.0}, ColdIndex},
    {"CLOUD", "Hu-Burns cloud point blending index", kTypeIndex, 1, {"CLOUD", nullptr}, "CLOUDI", 3,
     {"EXPONENT", "OFFSET", "TREF"}, {20.0, 459.67, 1000.0}, ColdIndex},
    {"FLASH", "Wickey-Chittenden flash point blending index", kTypeIndex, 1, {"FLASH", nullptr},
     "FLASHI", 3, {"A", "B", "C"}, {-6.1188, 2414.0, 230.56}, Flash},
    {"SULW", "sulphur by weight on a volume basis", kTypeWeight, 2, {"SULFUR", "SG"}, "SULFVOL", 0,
     {}, {}, SulphurByWeight},
    {"LINEAR", "volume-linear property", kTypeLinear, 1, {"PROPERTY", nullptr}, "PROPERTY", 0, {}, {},
     Linear},
};
constexpr int32_t kCount = static_cast<int32_t>(sizeof kTable / sizeof kTable[0]);

int g_users = 0;
double g_coef[kCount][kMaxCoefs];
int32_t g_actual[kCount];

const Correlation* Find(int32_t corr) { return corr >= 0 && corr < kCount ? &kTable[corr] : nullptr; }

int32_t CopyText(const char* text, char* buf, int32_t capacity) {
    if (!buf || capacity < 1) return kBadArgument;
    std::strncpy(buf, text, static_cast<size_t>(capacity - 1));
    buf[capacity - 1] = '\0';
    return 0;
}

int32_t Put(int32_t value, int32_t* out) {
    if (!out) return kBadArgument;
    *out = value;
    return 0;
}

}  // namespace

extern "C" {

int32_t gfx_qclInitializeAllocate(void) {
    if (g_users++ == 0) {
        for (int32_t c = 0; c < kCount; ++c) {
            for (int i = 0; i < kTable[c].nCoef; ++i) g_coef[c][i] = kTable[c].defaults[i];
            g_actual[c] = 0;
        }
    }
    return 0;
}

void gfx_qclFree(void) {
    if (g_users > 0) --g_users;
}

int32_t gfx_setCorParms(int32_t corr, const double* parms, int32_t count) {
    const Correlation* c = Find(corr);
    if (!c || count < 0 || count > c->nCoef || (count > 0 && !parms)) return kBadArgument;
    for (int32_t i = 0; i < count; ++i) g_coef[corr][i] = parms[i];
    return 0;
}

int32_t gfx_qclGetCorrelationCount(int32_t* count) { return Put(kCount, count); }

int32_t gfx_qclGetCorrelationId(int32_t corr, char* buf, int32_t capacity) {
    const Correlation* c = Find(corr);
    return c ? CopyText(c->id, buf, capacity) : kBadArgument;
}

int32_t gfx_qclGetCorrelationDesc(int32_t corr, char* buf, int32_t capacity) {
    const Correlation* c = Find(corr);
    return c ? CopyText(c->desc, buf, capacity) : kBadArgument;
}

int32_t gfx_qclGetCorrelationType(int32_t corr, int32_t* type) {
    const Correlation* c = Find(corr);
    return c ? Put(c->type, type) : kBadArgument;
}

int32_t gfx_qclGetCorrelationSlackCount(int32_t corr, int32_t* count) {
    return Find(corr) ? Put(0, count) : kBadArgument;
}

int32_t gfx_qclGetCorrelationInpPropCount(int32_t corr, int32_t* count) {
    const Correlation* c = Find(corr);
    return c ? Put(c->nIn, count) : kBadArgument;
}

int32_t gfx_qclGetCorrelationOutPropCount(int32_t corr, int32_t* count) {
    return Find(corr) ? Put(1, count) : kBadArgument;
}

int32_t gfx_qclGetCorrelationInpPropId(int32_t corr, int32_t prop, char* buf, int32_t capacity) {
    const Correlation* c = Find(corr);
    if (!c || prop < 0 || prop >= c->nIn) return kBadArgument;
    return CopyText(c->inputs[prop], buf, capacity);
}

int32_t gfx_qclGetCorrelationOutPropId(int32_t corr, int32_t prop, char* buf, int32_t capacity) {
    const Correlation* c = Find(corr);
    if (!c || prop != 0) return kBadArgument;
    return CopyText(c->output, buf, capacity);
}

int32_t gfx_qclGetCorrelationOutPropType(int32_t corr, int32_t prop, int32_t* type) {
    if (!Find(corr) || prop != 0) return kBadArgument;
    return Put(kOutVolumeBlended, type);
}

int32_t gfx_qclGetCoefCount(int32_t corr, int32_t* count) {
    const Correlation* c = Find(corr);
    return c ? Put(c->nCoef, count) : kBadArgument;
}

int32_t gfx_qclGetCoef(int32_t corr, int32_t coef, char* name, int32_t capacity, double* value) {
    const Correlation* c = Find(corr);
    if (!c || coef < 0 || coef >= c->nCoef || !value) return kBadArgument;
    *value = g_coef[corr][coef];
    return CopyText(c->coefNames[coef], name, capacity);
}

int32_t gfx_qclSetCoefValue(int32_t corr, int32_t coef, double value) {
    const Correlation* c = Find(corr);
    if (!c || coef < 0 || coef >= c->nCoef) return kBadArgument;
    g_coef[corr][coef] = value;
    return 0;
}

int32_t gfx_qclGetIndexPair(int32_t corr, int32_t* pair) { return Find(corr) ? Put(-1, pair) : kBadArgument; }

int32_t gfx_qclGenCalc(int32_t corr, const double* inputs, int32_t nIn, double, double* outputs,
                       int32_t nOut, double* derivs, int32_t nDerivs) {
    const Correlation* c = Find(corr);
    if (!c || nIn != c->nIn || nOut != 1 || nDerivs != c->nIn || !inputs || !outputs || !derivs)
        return kBadArgument;
    if (!c->calc(inputs, g_coef[corr], outputs, derivs)) return kOutOfRange;
    g_actual[corr] = 1;
    return 0;
}

int32_t hqcl_GetActualNumberOutput(int32_t corr, int32_t* count) {
    return Find(corr) ? Put(g_actual[corr], count) : kBadArgument;
}

}  // extern "C"
