#include "zemmgr/ZEMModelTransform.h"

#include <cmath>

#include "lpdata/ILPEquation.h"
#include "lpdata/ILPEquationList.h"
#include "lpdata/ILPMatrix.h"
#include "lpdata/ILPNonZero.h"
#include "lpdata/ILPVariable.h"
#include "lpdata/ILPVariableList.h"
#include "zemmgr/IZEMMgr.h"

bool ZEMModelTransform::FixVariable(const char* varName, double value) {
    ILPVariableList* vars = nullptr;
    m_mgr->GetVariableCollectionIntf(&vars);
    ILPVariable* v = varName ? vars->VarNameLookup(varName) : nullptr;
    if (v == nullptr) return false;
    v->SetBoundLower(value);
    v->SetBoundUpper(value);
    v->SetVarValue(value);
    v->SetVarStatus(ZEM_STATUS_FIXED);
    return true;
}

bool ZEMModelTransform::ScaleEquation(const char* eqnName, double factor) {
    ILPEquationList* eqns = nullptr;
    m_mgr->GetEquationCollectionIntf(&eqns);
    ILPEquation* e = eqnName ? eqns->EqnNameLookup(eqnName) : nullptr;
    if (e == nullptr || e->GetNonlinear() > 0 || factor == 0.0 || !std::isfinite(factor))
        return false;
    ILPMatrix* matrix = nullptr;
    m_mgr->GetMatrixIntf(&matrix);
    for (ILPNonZero* nz = matrix->RowFrstNonZeroObject(e->GetIndex()); nz;
         nz = matrix->RowNextNonZeroObject())
        nz->SetCoefficient(nz->GetCoefficient() * factor);
    if (factor < 0) {
        if (e->GetType() == ZEM_EQN_LE)
            e->SetType(ZEM_EQN_GE);
        else if (e->GetType() == ZEM_EQN_GE)
            e->SetType(ZEM_EQN_LE);
    }
    e->SetRHS(e->GetRHS() * factor);
    e->SetRange(std::fabs(e->GetRange() * factor));
    e->SetEqnValue(e->GetEqnValue() * factor);
    e->SetEqnScale(e->GetEqnScale() * factor);
    e->SetShadowPrice(e->GetShadowPrice() / factor);
    return true;
}

int ZEMModelTransform::ProjectValuesOntoBounds() {
    ILPVariableList* vars = nullptr;
    m_mgr->GetVariableCollectionIntf(&vars);
    int moved = 0;
    for (ILPVariable* v = vars->FrstVariableObject(); v; v = vars->NextVariableObject()) {
        const double x = v->GetVarValue();
        double y = x;
        if (y < v->GetBoundLower()) y = v->GetBoundLower();
        if (y > v->GetBoundUpper()) y = v->GetBoundUpper();
        if (y != x) {
            v->SetVarValue(y);
            ++moved;
        }
    }
    return moved;
}

int ZEMModelTransform::DropRanges() {
    ILPEquationList* eqns = nullptr;
    m_mgr->GetEquationCollectionIntf(&eqns);
    int changed = 0;
    for (ILPEquation* e = eqns->FrstEquationObject(); e; e = eqns->NextEquationObject()) {
        const bool inequality = e->GetType() == ZEM_EQN_LE || e->GetType() == ZEM_EQN_GE;
        if (inequality && e->GetRange() != 0.0) {
            e->SetRange(0.0);
            ++changed;
        }
    }
    return changed;
}
