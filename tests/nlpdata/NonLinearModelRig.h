// A small model for the nonlinear model's tests: real variable and equation
// lists, the nonlinear model over them, and helpers that add rows, variables,
// linear coefficients and terms by keyword.
#pragma once

#include <gtest/gtest.h>

#include <cmath>
#include <initializer_list>
#include <string>
#include <vector>

#include "lpdata/ILPEquation.h"
#include "lpdata/ILPMatrix.h"
#include "lpdata/ILPNonZero.h"
#include "lpdata/ILPVariable.h"
#include "lpdata/LPEquationList.h"
#include "lpdata/LPVariableList.h"
#include "nlpdata/NonLinearModel.h"

class ModelRig {
public:
    ModelRig()
        : vars(new LPVariableList()), eqns(new LPEquationList()),
          model(new NonLinearModel(vars, eqns)) {
        model->GetMatrixIntf(&matrix);
    }
    ~ModelRig() {
        model->Destroy();
        vars->Destroy();
        eqns->Destroy();
    }
    ModelRig(const ModelRig&) = delete;
    ModelRig& operator=(const ModelRig&) = delete;

    ILPVariable* Var(const std::string& name, double value = 1.0) {
        ILPVariable* v = vars->InsertVariable(name.c_str());
        v->SetVarValue(value);
        return v;
    }

    ILPEquation* Row(const std::string& name, int16_t type = 2, double rhs = 0.0) {
        ILPEquation* e = eqns->InsertEquation(name.c_str());
        e->SetType(type);
        e->SetRHS(rhs);
        return e;
    }

    ILPNonZero* Coef(ILPEquation* row, ILPVariable* var, double c) {
        ILPNonZero* nz = nullptr;
        matrix->CreateNewNonZeroObject(&nz);
        nz->SetEquationPtr(row);
        nz->SetVariablePtr(var);
        nz->SetCoefficient(c);
        return matrix->AddNonZeroObject(nz);
    }

    // A term of `keyword` over `row`, its constants and arguments, not added.
    INonLinearity* Make(const char* keyword, ILPEquation* row, std::initializer_list<double> consts,
                        std::initializer_list<ILPVariable*> args) {
        INonLinearity* t = nullptr;
        model->CreateNonLinearityObject(keyword, &t);
        EXPECT_NE(t, nullptr) << keyword;
        t->SetEquationPtr(row);
        for (double c : consts) t->AddNLConstantObject(c);
        for (ILPVariable* v : args) t->AddVariableObject(v);
        return t;
    }

    // As Make, and added to the pool.
    INonLinearity* Term(const char* keyword, ILPEquation* row, std::initializer_list<double> consts,
                        std::initializer_list<ILPVariable*> args) {
        INonLinearity* t = Make(keyword, row, consts, args);
        model->AddNonLinearityObject(t);
        return t;
    }

    std::vector<INonLinearity*> RowTerms(int row) {
        std::vector<INonLinearity*> out;
        for (INonLinearity* t = model->RowFrstNonLinearityObject(row); t;
             t = model->RowNextNonLinearityObject())
            out.push_back(t);
        return out;
    }

    std::vector<INonLinearity*> Pool() {
        std::vector<INonLinearity*> out;
        for (INonLinearity* t = model->FrstNonLinearityObject(); t; t = model->NextNonLinearityObject())
            out.push_back(t);
        return out;
    }

    LPVariableList* vars;
    LPEquationList* eqns;
    NonLinearModel* model;
    ILPMatrix* matrix = nullptr;
};
