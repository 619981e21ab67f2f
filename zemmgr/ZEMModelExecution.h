// The execution companion of ZEMMgr: evaluates rows by name.
#pragma once

#include "zemmgr/IZEMModelExecution.h"

class ILPEquation;
class ILPEquationList;
class INonLinearModel;
class IZEMDataMgr;

class ZEMModelExecution : public IZEMModelExecution {
public:
    explicit ZEMModelExecution(IZEMDataMgr* mgr);
    double EvaluateEquation(const char* eqnName) override;
    double GetRowValue(const char* eqnName) override;
    int EvaluateAllEquations() override;
    double EquationResidual(const char* eqnName) override;

private:
    ILPEquation* Find(const char* eqnName, const char* routine);

    ILPEquationList* m_eqns = nullptr;
    INonLinearModel* m_nonlinear = nullptr;
};
