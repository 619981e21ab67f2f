#!/usr/bin/env python3
"""Drives the library through its flat interface from Python with ctypes:
builds a small model, walks it, applies a case and reads it back, saves the
model to a model file, restores it into a second model and checks that the
restored model is the one that was built.

    python3 examples/flat_model.py [LIBRARY] [DIR]

LIBRARY defaults to build/libzemxmps.so, DIR (where the model file goes) to
a fresh temporary directory. Exit status 0 when every check holds.

The library reports failures as C++ exceptions, which ctypes cannot catch:
the script only passes input the library accepts.
"""
import ctypes as C
import os
import sys
import tempfile

I32, I16, DBL, VP, CP = C.c_int32, C.c_int16, C.c_double, C.c_void_p, C.c_char_p
P = C.POINTER

# name: argument types (every function returns int32).
SIGNATURES = {
    "CreateZEMObject": [P(VP)],
    "ReleaseZEMObject": [VP],
    "GetZEMBuilder": [VP, P(VP)],
    "SetZEMModelName": [VP, CP],
    "GetVariableCollectionIntf": [VP, P(VP)],
    "GetEquationCollectionIntf": [VP, P(VP)],
    "GetMatrixIntf": [VP, P(VP)],
    "WriteZEMFile": [VP, CP],
    "RestoreFromZEMFile": [VP, CP],
    "MakeAddReturnVariableNew": [VP, CP, DBL, DBL, DBL, I16, P(VP)],
    "MakeAddReturnEquationNew": [VP, CP, I16, DBL, DBL, P(VP)],
    "MakeAddLinearNonZero": [VP, CP, CP, DBL],
    "MakeNonLinearityFast": [VP, I16, VP, I32, P(VP), I32, P(DBL), P(VP)],
    "NumberOfVariables": [VP, P(I32)],
    "NumberOfEquations": [VP, P(I32)],
    "FrstVariableName": [VP, CP],
    "NextVariableName": [VP, CP],
    "VariableNames": [VP, CP],
    "FindVariableObject": [VP, CP, P(VP)],
    "FindEquationObject": [VP, CP, P(VP)],
    "VarUpperBndGet": [VP, P(DBL)],
    "VarUpperBndSet": [VP, DBL],
    "EqnRHSGet": [VP, P(DBL)],
    "EqnNonLinear": [VP, P(I32)],
    "RowFrstNonZeroObject": [VP, VP, P(VP)],
    "RowNextNonZeroObject": [VP, P(VP)],
    "GetCoefficient": [VP, P(DBL)],
    "CreateZEMCaseCollection": [VP, P(VP)],
    "DestroyZEMCaseCollection": [VP],
    "CreateZEMCaseMgr": [VP, I32, CP, CP, P(VP)],
    "AddZEMCaseToCollection": [VP, VP],
    "AddVarBoundEdit": [VP, VP, I16, DBL],
    "ApplyCaseNumber": [VP, I32],
    "UnApplyCase": [VP, CP],
}

XPROD = 1  # type code of the product term


def load(path):
    lib = C.CDLL(path)
    for name, args in SIGNATURES.items():
        fn = getattr(lib, name)
        fn.argtypes = args
        fn.restype = I32
    return lib


def build(lib, mgr):
    b, x, y, obj, cap = VP(), VP(), VP(), VP(), VP()
    lib.GetZEMBuilder(mgr, C.byref(b))
    lib.SetZEMModelName(mgr, b"PYDEMO")
    lib.MakeAddReturnVariableNew(b, b"X", 0.0, 10.0, 1.0, 1, C.byref(x))
    lib.MakeAddReturnVariableNew(b, b"Y", 0.0, 10.0, 2.0, 1, C.byref(y))
    lib.MakeAddReturnEquationNew(b, b"PROFIT", 1, 0.0, 0.0, C.byref(obj))
    lib.MakeAddReturnEquationNew(b, b"CAP", 3, 8.0, 0.0, C.byref(cap))
    for row, col, coef in ((b"PROFIT", b"X", 3.0), (b"PROFIT", b"Y", 2.0),
                           (b"CAP", b"X", 1.0), (b"CAP", b"Y", 1.0)):
        lib.MakeAddLinearNonZero(b, row, col, coef)
    args = (VP * 2)(x, y)
    consts = (DBL * 1)(0.5)
    lib.MakeNonLinearityFast(b, XPROD, obj, 2, args, 1, consts, None)
    lib.VarUpperBndSet(x, 6.0)


def inspect(lib, mgr):
    """Returns what the walks see, as plain Python values."""
    vars_, eqns, matrix = VP(), VP(), VP()
    lib.GetVariableCollectionIntf(mgr, C.byref(vars_))
    lib.GetEquationCollectionIntf(mgr, C.byref(eqns))
    lib.GetMatrixIntf(mgr, C.byref(matrix))
    n, m = I32(-1), I32(-1)
    lib.NumberOfVariables(vars_, C.byref(n))
    lib.NumberOfEquations(eqns, C.byref(m))
    buf = C.create_string_buffer(128)
    walked = []
    status = lib.FrstVariableName(vars_, buf)
    while status == 0:
        walked.append(buf.value.decode())
        status = lib.NextVariableName(vars_, buf)
    packed = C.create_string_buffer(128 * max(n.value, 1))
    lib.VariableNames(vars_, packed)
    x, cap, profit = VP(), VP(), VP()
    lib.FindVariableObject(vars_, b"X", C.byref(x))
    lib.FindEquationObject(eqns, b"CAP", C.byref(cap))
    lib.FindEquationObject(eqns, b"PROFIT", C.byref(profit))
    upper, rhs, nonlinear = DBL(), DBL(), I32()
    lib.VarUpperBndGet(x, C.byref(upper))
    lib.EqnRHSGet(cap, C.byref(rhs))
    lib.EqnNonLinear(profit, C.byref(nonlinear))
    coefs = []
    nz = VP()
    status = lib.RowFrstNonZeroObject(matrix, cap, C.byref(nz))
    while status == 0:
        c = DBL()
        lib.GetCoefficient(nz, C.byref(c))
        coefs.append(c.value)
        status = lib.RowNextNonZeroObject(matrix, C.byref(nz))
    return {
        "counts": (n.value, m.value),
        "walked": walked,
        "packed": packed.raw.split(b"\0")[: n.value],
        "x_upper": upper.value,
        "cap_rhs": rhs.value,
        "profit_nonlinear": nonlinear.value,
        "cap_coefficients": coefs,
    }


def apply_case(lib, mgr):
    """Applies a case lowering X's upper bound to 2 by number, undoes it by
    name; returns the bound seen after each step and the status of an
    unknown case."""
    vars_, x, cases, case = VP(), VP(), VP(), VP()
    lib.GetVariableCollectionIntf(mgr, C.byref(vars_))
    lib.FindVariableObject(vars_, b"X", C.byref(x))
    assert lib.CreateZEMCaseCollection(mgr, C.byref(cases)) == 0
    assert lib.CreateZEMCaseMgr(mgr, 3, b"SMALLX", b"X at most 2", C.byref(case)) == 0
    lib.AddVarBoundEdit(case, x, 1, 2.0)
    lib.AddZEMCaseToCollection(cases, case)
    upper = DBL()
    seen = [lib.ApplyCaseNumber(cases, 3)]
    lib.VarUpperBndGet(x, C.byref(upper))
    seen.append(upper.value)
    seen.append(lib.UnApplyCase(cases, b"SMALLX"))
    lib.VarUpperBndGet(x, C.byref(upper))
    seen.append(upper.value)
    seen.append(lib.ApplyCaseNumber(cases, 4))
    lib.DestroyZEMCaseCollection(cases)
    return seen


def main():
    here = os.path.dirname(os.path.abspath(__file__))
    lib_path = sys.argv[1] if len(sys.argv) > 1 else os.path.join(here, "..", "build", "libzemxmps.so")
    work = sys.argv[2] if len(sys.argv) > 2 else tempfile.mkdtemp()
    lib = load(lib_path)

    first, second = VP(), VP()
    assert lib.CreateZEMObject(C.byref(first)) == 0
    build(lib, first)
    built = inspect(lib, first)
    case_steps = apply_case(lib, first)
    path = os.path.join(work, "flat_model_py.zem").encode()
    lib.WriteZEMFile(first, path)
    lib.CreateZEMObject(C.byref(second))
    lib.RestoreFromZEMFile(second, path)
    restored = inspect(lib, second)
    lib.ReleaseZEMObject(first)
    lib.ReleaseZEMObject(second)

    expected = {
        "counts": (2, 2),
        "walked": ["X", "Y"],
        "packed": [b"X", b"Y"],
        "x_upper": 6.0,
        "cap_rhs": 8.0,
        "profit_nonlinear": 1,
        "cap_coefficients": [1.0, 1.0],
    }
    bad = [k for k in expected if built[k] != expected[k] or restored[k] != expected[k]]
    for k in bad:
        print(f"flat_model.py: {k}: expected {expected[k]}, built {built[k]}, restored {restored[k]}",
              file=sys.stderr)
    # applied (0), bound 2, undone (0), bound 6 again, unknown case (-1)
    if case_steps != [0, 2.0, 0, 6.0, -1]:
        bad.append("case")
        print(f"flat_model.py: case: expected [0, 2.0, 0, 6.0, -1], saw {case_steps}",
              file=sys.stderr)
    if not bad:
        print("flat_model.py: all checks passed")
    return 1 if bad else 0


if __name__ == "__main__":
    sys.exit(main())
