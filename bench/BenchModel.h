// The in-memory benchmark model shared by the benchmarks that need a large
// model without reading a file: R rows, 2R columns and 12R entries (each
// column in six rows), built through the lists and the matrix.
#pragma once

#include <cstdio>
#include <memory>
#include <vector>

#include "lpdata/ILPEquation.h"
#include "lpdata/ILPEquationList.h"
#include "lpdata/ILPMatrix.h"
#include "lpdata/ILPNonZero.h"
#include "lpdata/ILPVariable.h"
#include "lpdata/ILPVariableList.h"
#include "zemmgr/IZEMMgr.h"

struct MgrDeleter {
    void operator()(IZEMMgr* m) const { m->IRelease(); }
};
using MgrPtr = std::unique_ptr<IZEMMgr, MgrDeleter>;

inline MgrPtr makeMgr() {
    IZEMMgr* m = nullptr;
    ZEMObjectFactory(&m);
    m->IAddRef();
    return MgrPtr(m);
}

struct Parts {
    ILPVariableList* vars = nullptr;
    ILPEquationList* eqns = nullptr;
    ILPMatrix* matrix = nullptr;
};

inline Parts partsOf(IZEMMgr* mgr) {
    Parts p;
    mgr->GetVariableCollectionIntf(&p.vars);
    mgr->GetEquationCollectionIntf(&p.eqns);
    mgr->GetMatrixIntf(&p.matrix);
    return p;
}

inline MgrPtr buildModel(int rows) {
    MgrPtr mgr = makeMgr();
    const auto [vars, eqns, matrix] = partsOf(mgr.get());
    char name[32];
    std::vector<ILPEquation*> rowPtr;
    rowPtr.reserve(static_cast<size_t>(rows));
    for (int r = 0; r < rows; ++r) {
        std::snprintf(name, sizeof name, "R%07d", r);
        ILPEquation* e = eqns->InsertEquation(name);
        e->SetType(r % 3 == 0 ? 3 : (r % 3 == 1 ? 4 : 2));
        e->SetRHS(1.0 + r % 17);
        rowPtr.push_back(e);
    }
    const int cols = 2 * rows;
    for (int c = 0; c < cols; ++c) {
        std::snprintf(name, sizeof name, "C%07d", c);
        ILPVariable* v = vars->InsertVariable(name);
        v->SetBoundUpper(100.0 + c % 7);
        v->SetVarValue(0.5 * (c % 11));
        for (int k = 0; k < 6; ++k) {
            ILPNonZero* nz = nullptr;
            matrix->CreateNewNonZeroObject(&nz);
            nz->SetEquationPtr(rowPtr[static_cast<size_t>((c / 2 + k * 7919) % rows)]);
            nz->SetVariablePtr(v);
            nz->SetCoefficient(1.0 + 0.25 * ((c + k) % 9));
            matrix->AddNonZeroObject(nz);
        }
    }
    mgr->ProcessFullCollection();
    return mgr;
}
