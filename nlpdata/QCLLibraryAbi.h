/* The contract that a blending-correlation library meets: the nineteen entry
 * points that the nonlinear model resolves by name (dlsym) when a correlation
 * is first used. Any shared library that exports these C functions with these
 * argument lists can stand in for the project's own (qcllib/).
 *
 * Conventions:
 *  - A correlation is named by its number `corr`, 0 .. count-1, where count
 *    comes from gfx_qclGetCorrelationCount. Properties and coefficients of a
 *    correlation are numbered from 0 in the same way.
 *  - Functions returning int32_t return 0 on success and a nonzero error code
 *    otherwise (an unknown correlation, property or coefficient number, a
 *    buffer too small, a calculation outside the correlation's range). On an
 *    error the output arguments are left unspecified.
 *  - Counts and integer results come back through pointers to int32_t.
 *  - Text results (identifiers, descriptions, names) are copied into the
 *    caller's buffer `buf` of `capacity` bytes, NUL-terminated and cut to
 *    capacity - 1 bytes; a capacity below 1 is an error.
 *  - gfx_qclInitializeAllocate is called before any other function and
 *    gfx_qclFree after the last; the pairs may nest (one per model that uses
 *    the library), and storage is released by the last gfx_qclFree.
 *
 * Example (a correlation with one input and one output):
 *   int32_t n = 0; gfx_qclGetCorrelationInpPropCount(0, &n);    // n == 1
 *   double in = 10.0, out = 0.0, d = 0.0;
 *   if (gfx_qclGenCalc(0, &in, 1, 1.0, &out, 1, &d, 1) == 0) ...  // out, d
 */
#ifndef ZEM_QCL_LIBRARY_ABI_H
#define ZEM_QCL_LIBRARY_ABI_H

#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

/* Prepares the library's storage; 0 on success. */
int32_t gfx_qclInitializeAllocate(void);
/* Releases what the matching gfx_qclInitializeAllocate prepared. */
void gfx_qclFree(void);
/* Passes `count` parameters to correlation `corr` (their meaning is the
 * correlation's own; a library may ignore them); 0 on success. */
int32_t gfx_setCorParms(int32_t corr, const double* parms, int32_t count);
/* Number of correlations the library offers. */
int32_t gfx_qclGetCorrelationCount(int32_t* count);
/* Identifier of correlation `corr`: a short name without blanks or ':'. */
int32_t gfx_qclGetCorrelationId(int32_t corr, char* buf, int32_t capacity);
/* One-line description of correlation `corr`. */
int32_t gfx_qclGetCorrelationDesc(int32_t corr, char* buf, int32_t capacity);
/* Type of correlation `corr` (the library's own classification). */
int32_t gfx_qclGetCorrelationType(int32_t corr, int32_t* type);
/* Number of slack values correlation `corr` uses. */
int32_t gfx_qclGetCorrelationSlackCount(int32_t corr, int32_t* count);
/* Number of input properties of correlation `corr`. */
int32_t gfx_qclGetCorrelationInpPropCount(int32_t corr, int32_t* count);
/* Number of output properties of correlation `corr`. */
int32_t gfx_qclGetCorrelationOutPropCount(int32_t corr, int32_t* count);
/* Name of input property `prop` of correlation `corr`. */
int32_t gfx_qclGetCorrelationInpPropId(int32_t corr, int32_t prop, char* buf, int32_t capacity);
/* Name of output property `prop` of correlation `corr`. */
int32_t gfx_qclGetCorrelationOutPropId(int32_t corr, int32_t prop, char* buf, int32_t capacity);
/* Type of output property `prop` (the library's own classification). */
int32_t gfx_qclGetCorrelationOutPropType(int32_t corr, int32_t prop, int32_t* type);
/* Number of coefficients of correlation `corr`. */
int32_t gfx_qclGetCoefCount(int32_t corr, int32_t* count);
/* Name and value of coefficient `coef` of correlation `corr`. */
int32_t gfx_qclGetCoef(int32_t corr, int32_t coef, char* name, int32_t capacity, double* value);
/* Sets the value of coefficient `coef` of correlation `corr`. */
int32_t gfx_qclSetCoefValue(int32_t corr, int32_t coef, double value);
/* The correlation paired with `corr` (for example the one that maps an index
 * back to its property), or -1 when there is none. */
int32_t gfx_qclGetIndexPair(int32_t corr, int32_t* pair);
/* Computes correlation `corr` at `inputs` (nIn values, the input count) for
 * a stream of `flow`: fills `outputs` (nOut values, the output count) and
 * `derivs` (nDerivs = nOut * nIn values, output-major: the derivative of
 * output o with respect to input i is derivs[o * nIn + i]). Returns 0 on
 * success, else the library's error code. */
int32_t gfx_qclGenCalc(int32_t corr, const double* inputs, int32_t nIn, double flow,
                       double* outputs, int32_t nOut, double* derivs, int32_t nDerivs);
/* Number of outputs the last successful gfx_qclGenCalc of `corr` produced
 * (at most the output count; the rest of the output buffer is untouched). */
int32_t hqcl_GetActualNumberOutput(int32_t corr, int32_t* count);

#ifdef __cplusplus
}
#endif

#endif
