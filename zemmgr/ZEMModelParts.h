// The components of a model, asked for once:
//   ZEMModelParts parts(model);
//   parts.vars->VarNameLookup("X");
// Each pointer is null when the model does not hold that component.
#pragma once

#include "zemmgr/IZEMMgr.h"

struct ZEMModelParts {
    ILPVariableList* vars = nullptr;
    ILPEquationList* eqns = nullptr;
    ILPMatrix* matrix = nullptr;
    INonLinearModel* terms = nullptr;
    ILPSpOrdSetList* sets = nullptr;

    explicit ZEMModelParts(IZEMDataMgr* model) {
        model->GetVariableCollectionIntf(&vars);
        model->GetEquationCollectionIntf(&eqns);
        model->GetMatrixIntf(&matrix);
        model->GetNonLinearModelIntf(&terms);
        model->GetSpOrdSetCollectionIntf(&sets);
    }
};
