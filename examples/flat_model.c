/* A C program driving the library through its flat interface: it builds a
 * small model with a nonlinear term, walks it, applies a case and reads it
 * back, saves the model to a model file, restores the file into a second
 * model, copies that into a third through memory and checks that every step
 * kept the model.
 *
 *   build/examples/flat_model [DIR]      (files go to DIR, default ".")
 *
 * Exit status 0 when every check holds, 1 otherwise.
 */
#include <stdio.h>
#include <string.h>

#include "api/zemxmps.h"

static int failures = 0;

static void check(int ok, const char* what) {
    if (!ok) {
        fprintf(stderr, "flat_model: %s\n", what);
        ++failures;
    }
}

/* X, Y in [0, 10]; PROFIT: 3X + 2Y + 0.5*X*Y (objective); CAP: X + Y <= 8. */
static void build(void* mgr) {
    void *b = NULL, *x = NULL, *y = NULL, *profit = NULL, *cap = NULL, *term = NULL;
    GetZEMBuilder(mgr, &b);
    SetZEMModelName(mgr, "FLATDEMO");
    MakeAddReturnVariableNew(b, "X", 0.0, 10.0, 1.0, 1, &x);
    MakeAddReturnVariableNew(b, "Y", 0.0, 10.0, 2.0, 1, &y);
    MakeAddReturnEquationNew(b, "PROFIT", 1, 0.0, 0.0, &profit);
    MakeAddReturnEquationNew(b, "CAP", 3, 8.0, 0.0, &cap);
    MakeAddReturnLinearNonZeroNew(b, profit, x, 3.0, NULL);
    MakeAddReturnLinearNonZeroNew(b, profit, y, 2.0, NULL);
    MakeAddLinearNonZero(b, "CAP", "X", 1.0);
    MakeAddLinearNonZero(b, "CAP", "Y", 1.0);
    check(MakeNonLinearityByName(b, "XPROD", profit, &term) == 0, "no XPROD term made");
    AddNonLinearityValue(b, term, 0.5);
    AddNonLinearityVariable(b, term, x);
    check(AddNonLinearityVariableByName(b, term, "Y") == 0, "Y not found for the term");
    AddNonLinearity(b, term);
}

/* Walks the model and checks what build() made. */
static void inspect(void* mgr, const char* label) {
    void *vars = NULL, *eqns = NULL, *matrix = NULL, *nl = NULL, *cap = NULL, *nz = NULL;
    void *term = NULL, *v = NULL;
    char name[128];
    int32_t n = 0, entries = 0, nonlinear = 0;
    double upper = 0.0, coef = 0.0;
    GetVariableCollectionIntf(mgr, &vars);
    GetEquationCollectionIntf(mgr, &eqns);
    GetMatrixIntf(mgr, &matrix);
    GetNonLinearModelIntf(mgr, &nl);

    fprintf(stdout, "%s:", label);
    check(NumberOfVariables(vars, &n) == 0 && n == 2, "not two variables");
    for (int32_t s = FrstVariableName(vars, name); s == 0; s = NextVariableName(vars, name))
        fprintf(stdout, " %s", name);
    for (int32_t s = FrstEquationName(eqns, name); s == 0; s = NextEquationName(eqns, name))
        fprintf(stdout, " %s", name);
    fprintf(stdout, "\n");

    FindEquationObject(eqns, "CAP", &cap);
    check(cap != NULL, "CAP not found");
    if (!cap) return;
    for (int32_t s = RowFrstNonZeroObject(matrix, cap, &nz); s == 0;
         s = RowNextNonZeroObject(matrix, &nz)) {
        GetCoefficient(nz, &coef);
        check(coef == 1.0, "CAP coefficient is not 1");
        ++entries;
    }
    check(entries == 2, "CAP does not have two entries");

    FindVariableObject(vars, "X", &v);
    VarUpperBndGet(v, &upper);
    check(upper == 10.0, "X upper bound is not 10");

    FindEquationObject(eqns, "PROFIT", &cap);
    EqnNonLinear(cap, &nonlinear);
    check(nonlinear == 1, "PROFIT is not nonlinear");
    check(RowFrstNonLinearityObject(nl, cap, &term) == 0, "PROFIT has no term");
    if (term) {
        check(GetFirstNLConstant(term, &coef) == 0 && coef == 0.5, "term constant is not 0.5");
        check(GetFirstNLVariable(term, &v) == 0, "term has no variable");
        VarNameGet(v, name);
        check(strcmp(name, "X") == 0, "term's first variable is not X");
    }
}

/* Applies a case and reads it back: a case raising CAP's right-hand side to
 * 12 is applied by name through a collection and undone by number. */
static void apply_case(void* mgr) {
    void *eqns = NULL, *cap = NULL, *cases = NULL, *c = NULL;
    double rhs = 0.0;
    GetEquationCollectionIntf(mgr, &eqns);
    FindEquationObject(eqns, "CAP", &cap);
    check(cap != NULL, "CAP not found for the case");
    if (!cap) return;
    check(CreateZEMCaseCollection(mgr, &cases) == 0, "no case collection made");
    check(CreateZEMCaseMgr(mgr, 1, "BIGCAP", "capacity 12", &c) == 0, "no case made");
    if (!cases || !c) return;
    AddEqnRHSEdit(c, cap, 12.0);
    AddZEMCaseToCollection(cases, c);
    check(ApplyCase(cases, "BIGCAP") == 0, "case BIGCAP not applied");
    EqnRHSGet(cap, &rhs);
    check(rhs == 12.0, "the case did not set CAP's right-hand side to 12");
    check(UnApplyCaseNumber(cases, 1) == 0, "case 1 not undone");
    EqnRHSGet(cap, &rhs);
    check(rhs == 8.0, "undoing the case did not give CAP its right-hand side back");
    check(ApplyCaseNumber(cases, 2) == -1, "unknown case 2 not reported");
    DestroyZEMCaseCollection(cases);
    printf("case: BIGCAP applied and undone\n");
}

int main(int argc, char** argv) {
    const char* dir = argc > 1 ? argv[1] : ".";
    char path[1024];
    void *first = NULL, *second = NULL, *third = NULL;
    snprintf(path, sizeof path, "%s/flat_model.zem", dir);

    check(CreateZEMObject(&first) == 0, "no model made");
    build(first);
    inspect(first, "built");
    apply_case(first);
    WriteZEMFile(first, path);

    CreateZEMObject(&second);
    RestoreFromZEMFile(second, path);
    inspect(second, "restored");

    CreateZEMObject(&third);
    CopyFromZEM(third, second);
    inspect(third, "copied");

    ReleaseZEMObject(first);
    ReleaseZEMObject(second);
    ReleaseZEMObject(third);
    if (failures == 0) printf("flat_model: all checks passed\n");
    return failures == 0 ? 0 : 1;
}
