// Test rigs for the nonlinear terms and model:
//  - TermRig: real LP variables, a row and a term's matrix entries, set up as
//    the pool sets them up (one entry per distinct argument, in
//    distinct-argument order), and a finite-difference check of derivatives;
//  - ModelRig: variable and equation lists with the nonlinear model over them;
//  - CountingFactory: the library's factory, counting what it is asked.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <initializer_list>
#include <limits>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include "lpdata/ILPMatrix.h"
#include "lpdata/LPEquation.h"
#include "lpdata/LPEquationList.h"
#include "lpdata/LPNonZero.h"
#include "lpdata/LPVariable.h"
#include "lpdata/LPVariableList.h"
#include "nlpdata/INonLinearityFactory.h"
#include "nlpdata/NonLinearModel.h"
#include "nlpdata/NonLinearityFactory.h"

struct TermDeleter {
    void operator()(INonLinearity* t) const { t->Destroy(); }
};
using TermPtr = std::unique_ptr<INonLinearity, TermDeleter>;

// A term and its variables, for probing values at chosen points.
struct BuiltTerm {
    INonLinearity* term = nullptr;
    std::vector<LPVariable*> vars;

    double Value() { return term->EvaluateTerm(); }
    // Value and first derivative with the first variable at x.
    double At(double x) {
        vars.at(0)->SetVarValue(x);
        return Value();
    }
    double DerivAt(double x);
};

class TermRig {
public:
    TermRig() { m_row.SetIndex(1); }

    LPVariable* Var(const std::string& name, double value) {
        m_vars.emplace_back(new LPVariable());
        m_vars.back()->SetName(name.c_str());
        m_vars.back()->SetVarValue(value);
        return m_vars.back().get();
    }

    // A term of `keyword` from the library's factory.
    static TermPtr Make(const char* keyword) {
        INonLinearityFactory* f = CreateNonLinearityFactoryObject();
        f->IAddRef();
        INonLinearity* t = nullptr;
        f->Create(keyword, &t);
        f->IRelease();
        return TermPtr(t);
    }

    // Gives `t` the row, the constants and the arguments, then one entry per
    // distinct argument, in distinct-argument order.
    void Fill(INonLinearity* t, const std::vector<double>& constants, const std::vector<LPVariable*>& args) {
        t->SetEquationPtr(&m_row);
        for (double c : constants) t->AddNLConstantObject(c);
        for (LPVariable* v : args) t->AddVariableObject(v);
        for (ILPVariable* v = t->FrstUniqueVar(); v; v = t->NextUniqueVar()) {
            m_nonZeros.emplace_back(new LPNonZero());
            m_nonZeros.back()->SetEquationPtr(&m_row);
            m_nonZeros.back()->SetVariablePtr(v);
            t->StoreNonZeroReference(m_nonZeros.back().get());
        }
    }

    // A term of `keyword` over new variables X0, X1, ... at `values`.
    BuiltTerm Build(const char* keyword, const std::vector<double>& constants, const std::vector<double>& values) {
        BuiltTerm b;
        m_terms.push_back(Make(keyword));
        b.term = m_terms.back().get();
        for (size_t i = 0; i < values.size(); ++i) b.vars.push_back(Var("X" + std::to_string(i), values[i]));
        Fill(b.term, constants, b.vars);
        return b;
    }

    // The derivatives TermJacobian() adds, one per distinct argument.
    static std::vector<double> Jacobian(INonLinearity* t) {
        std::vector<ILPNonZero*> nzs;
        for (ILPNonZero* nz = t->FrstNZ(); nz; nz = t->NextNZ()) {
            nz->SetPartialDeriv(0.0);
            nzs.push_back(nz);
        }
        t->TermJacobian();
        std::vector<double> out;
        for (ILPNonZero* nz : nzs) out.push_back(nz->GetPartialDeriv());
        return out;
    }

    // False when a kink or branch switch lies within the difference step
    // (forward and backward differences disagree); otherwise expects
    // TermJacobian to agree with central differences along each distinct
    // argument.
    static bool CheckDerivativesIfSmooth(INonLinearity* t, const std::string& where) {
        auto scale = [](double a, double b) { return std::max({1.0, std::fabs(a), std::fabs(b)}); };
        const double f0 = t->EvaluateTerm();
        std::vector<double> central;
        for (ILPVariable* v = t->FrstUniqueVar(); v; v = t->NextUniqueVar()) {
            const double x = v->GetVarValue(), h = 1e-6 * std::max(1.0, std::fabs(x));
            v->SetVarValue(x + h);
            const double up = t->EvaluateTerm();
            v->SetVarValue(x - h);
            const double down = t->EvaluateTerm();
            v->SetVarValue(x);
            const double fwd = (up - f0) / h, bwd = (f0 - down) / h;
            if (std::fabs(fwd - bwd) > 1e-3 * scale(fwd, bwd)) return false;
            central.push_back((up - down) / (2.0 * h));
        }
        const std::vector<double> analytic = Jacobian(t);
        EXPECT_EQ(analytic.size(), central.size()) << where;
        for (size_t i = 0; i < analytic.size() && i < central.size(); ++i)
            EXPECT_NEAR(analytic[i], central[i], 1e-5 * scale(analytic[i], central[i])) << where << ", argument " << i;
        return true;
    }

private:
    LPEquation m_row;
    std::vector<std::unique_ptr<LPVariable>> m_vars;
    std::vector<std::unique_ptr<LPNonZero>> m_nonZeros;
    std::vector<TermPtr> m_terms;
};

inline double BuiltTerm::DerivAt(double x) {
    vars.at(0)->SetVarValue(x);
    return TermRig::Jacobian(term).at(0);
}

// Point checks of terms: the term of `keyword` with `constants` over new
// variables at `values`; its value and its derivatives along the distinct
// arguments, compared exactly (kExact), to 4 ulps (kUlps) or within a relative
// tolerance. A NaN value or empty derivatives are not checked.
constexpr double kExact = -1.0, kUlps = 0.0, kSkip = std::numeric_limits<double>::quiet_NaN();
struct Probe {
    const char* keyword;
    std::vector<double> constants, values;
    double value;
    std::vector<double> derivs;
    double tol;
};

inline void ExpectClose(double want, double got, double tol, const std::string& where) {
    if (tol == kExact)
        EXPECT_EQ(got, want) << where;
    else if (tol == kUlps)
        EXPECT_DOUBLE_EQ(got, want) << where;
    else
        EXPECT_NEAR(got, want, tol * std::fabs(want)) << where;
}

inline void ExpectProbes(const std::vector<Probe>& probes) {
    TermRig rig;
    for (size_t i = 0; i < probes.size(); ++i) {
        const Probe& p = probes[i];
        std::ostringstream where;
        where << "probe " << i << ": " << p.keyword << " at";
        for (double x : p.values) where << ' ' << x;
        BuiltTerm t = rig.Build(p.keyword, p.constants, p.values);
        if (!std::isnan(p.value)) ExpectClose(p.value, t.Value(), p.tol, where.str());
        if (p.derivs.empty()) continue;
        const std::vector<double> d = TermRig::Jacobian(t.term);
        EXPECT_EQ(d.size(), p.derivs.size()) << where.str();
        for (size_t k = 0; k < d.size() && k < p.derivs.size(); ++k)
            ExpectClose(p.derivs[k], d[k], p.tol, where.str() + ", derivative " + std::to_string(k));
    }
}

class ModelRig {
public:
    ModelRig() : vars(new LPVariableList()), eqns(new LPEquationList()), model(new NonLinearModel(vars, eqns)) {
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
        for (INonLinearity* t = model->RowFrstNonLinearityObject(row); t; t = model->RowNextNonLinearityObject())
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

// The library's factory, counting the terms it makes by name and the registry
// settings, and reporting its destruction through `*destroyed`.
class CountingFactory : public NonLinearityFactoryBase {
public:
    explicit CountingFactory(bool* destroyed) : m_destroyed(destroyed) {}
    using NonLinearityFactoryBase::AddNonLinearityName;
    void Create(const char* name, INonLinearity** out) override {
        ++made;
        NonLinearityFactoryBase::Create(name, out);
    }
    void SetExtCacheEvalRegistry(INLModelExtCachedEvalRegistration* r) override {
        ++registrySet;
        NonLinearityFactoryBase::SetExtCacheEvalRegistry(r);
    }
    int made = 0, registrySet = 0;

protected:
    ~CountingFactory() override { *m_destroyed = true; }

private:
    bool* m_destroyed;
};
