// A correlation library for the loader tests. Correlations:
//   0 ECHO  inputs A, B -> outputs X = A, Y = A * B; coefficient K = 2
//   1 NONE  no inputs   -> output C = 7
// gfx_setCorParms(-1, &mode, 1) makes it misbehave until mode 0 is set:
//   1 a negative correlation count, 2 a negative input count of ECHO,
//   3 every calculation fails with code 42, 4 a negative coefficient count.
// Built a second time without gfx_qclGenCalc (ZEM_QCL_TEST_OMIT_GENCALC).
#include <cstring>

#include "nlpdata/QCLLibraryAbi.h"

namespace {

int g_mode = 0;

int32_t Text(const char* text, char* buf, int32_t cap) {
    if (cap < 1) return 1;
    std::strncpy(buf, text, static_cast<size_t>(cap - 1));
    buf[cap - 1] = '\0';
    return 0;
}

int32_t Put(bool ok, int32_t v, int32_t* out) {
    if (!ok) return 1;
    *out = v;
    return 0;
}

}  // namespace

extern "C" {

int32_t gfx_qclInitializeAllocate(void) { return 0; }
void gfx_qclFree(void) {}
int32_t gfx_setCorParms(int32_t corr, const double* parms, int32_t count) {
    if (corr != -1 || count != 1) return 1;
    g_mode = static_cast<int>(parms[0]);
    return 0;
}
int32_t gfx_qclGetCorrelationCount(int32_t* count) { return Put(true, g_mode == 1 ? -5 : 2, count); }
int32_t gfx_qclGetCorrelationId(int32_t corr, char* buf, int32_t cap) {
    return corr == 0 ? Text("ECHO", buf, cap) : corr == 1 ? Text("NONE", buf, cap) : 1;
}
int32_t gfx_qclGetCorrelationDesc(int32_t corr, char* buf, int32_t cap) {
    return gfx_qclGetCorrelationId(corr, buf, cap);
}
int32_t gfx_qclGetCorrelationType(int32_t corr, int32_t* type) { return Put(corr == 0 || corr == 1, 5, type); }
int32_t gfx_qclGetCorrelationSlackCount(int32_t corr, int32_t* count) {
    return Put(corr == 0 || corr == 1, corr == 0 ? 1 : 0, count);
}
int32_t gfx_qclGetCorrelationInpPropCount(int32_t corr, int32_t* count) {
    return Put(corr == 0 || corr == 1, corr == 1 ? 0 : g_mode == 2 ? -1 : 2, count);
}
int32_t gfx_qclGetCorrelationOutPropCount(int32_t corr, int32_t* count) {
    return Put(corr == 0 || corr == 1, corr == 0 ? 2 : 1, count);
}
int32_t gfx_qclGetCorrelationInpPropId(int32_t corr, int32_t prop, char* buf, int32_t cap) {
    return corr == 0 && (prop == 0 || prop == 1) ? Text(prop == 0 ? "A" : "B", buf, cap) : 1;
}
int32_t gfx_qclGetCorrelationOutPropId(int32_t corr, int32_t prop, char* buf, int32_t cap) {
    if (corr == 1 && prop == 0) return Text("C", buf, cap);
    return corr == 0 && (prop == 0 || prop == 1) ? Text(prop == 0 ? "X" : "Y", buf, cap) : 1;
}
int32_t gfx_qclGetCorrelationOutPropType(int32_t corr, int32_t, int32_t* type) {
    return Put(corr == 0 || corr == 1, 1, type);
}
int32_t gfx_qclGetCoefCount(int32_t corr, int32_t* count) {
    return Put(corr == 0 || corr == 1, g_mode == 4 ? -3 : corr == 0 ? 1 : 0, count);
}
int32_t gfx_qclGetCoef(int32_t corr, int32_t coef, char* name, int32_t cap, double* value) {
    if (corr != 0 || coef != 0) return 1;
    *value = 2.0;
    return Text("K", name, cap);
}
int32_t gfx_qclSetCoefValue(int32_t, int32_t, double) { return 1; }
int32_t gfx_qclGetIndexPair(int32_t corr, int32_t* pair) { return Put(corr == 0 || corr == 1, 1 - corr, pair); }
#ifndef ZEM_QCL_TEST_OMIT_GENCALC
int32_t gfx_qclGenCalc(int32_t corr, const double* in, int32_t, double, double* out, int32_t,
                       double* d, int32_t) {
    if (g_mode == 3) return 42;
    if (corr == 1) {
        out[0] = 7.0;
        return 0;
    }
    out[0] = in[0];
    out[1] = in[0] * in[1];
    d[0] = 1.0;
    d[1] = 0.0;
    d[2] = in[1];
    d[3] = in[0];
    return 0;
}
#endif
int32_t hqcl_GetActualNumberOutput(int32_t corr, int32_t* count) {
    return Put(corr == 0 || corr == 1, corr == 0 ? 2 : 1, count);
}

}  // extern "C"
