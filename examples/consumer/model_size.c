/* The flat interface from C, built with pkg-config against the installed
 * library:
 *   cc model_size.c $(pkg-config --cflags --libs zemxmps) -o model_size_c
 *   ./model_size_c refinery.xmps   ->   libzemxmps 0.1.0: 15 rows, 18 columns
 */
#include <stdio.h>

#include "api/ZEMVersion.h"
#include "api/zemxmps.h"

int main(int argc, char** argv) {
    void *mgr = NULL, *vars = NULL, *eqns = NULL;
    int32_t rows = 0, columns = 0;
    if (argc != 2 || CreateZEMObject(&mgr) != 0) return 2;
    RestoreFromMPSFile(mgr, argv[1]);
    GetVariableCollectionIntf(mgr, &vars);
    GetEquationCollectionIntf(mgr, &eqns);
    NumberOfVariables(vars, &columns);
    NumberOfEquations(eqns, &rows);
    printf("libzemxmps %s: %d rows, %d columns\n", ZEMLibraryVersion(), (int)rows, (int)columns);
    ReleaseZEMObject(mgr);
    return 0;
}
