// Test rig for the concrete term types: real LP variables, a row and the
// term's matrix entries, set up as the pool sets them up (one entry per
// distinct argument, stored in distinct-argument order), and a central
// finite-difference check of a term's derivatives.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "lpdata/LPEquation.h"
#include "lpdata/LPNonZero.h"
#include "lpdata/LPVariable.h"
#include "nlpdata/INonLinearity.h"
#include "nlpdata/INonLinearityFactory.h"

struct TermDeleter {
    void operator()(INonLinearity* t) const {
        if (t) t->Destroy();
    }
};
using TermPtr = std::unique_ptr<INonLinearity, TermDeleter>;

// A term and its variables, for tests that probe values at chosen points.
struct BuiltTerm {
    INonLinearity* term = nullptr;
    std::vector<LPVariable*> vars;

    // Value with the first variable at x.
    double At(double x) {
        vars.at(0)->SetVarValue(x);
        return term->EvaluateTerm();
    }
    // Derivative for the first variable at x.
    double DerivAt(double x);
    double Value() { return term->EvaluateTerm(); }
};

class TermRig {
public:
    TermRig() {
        m_row.SetIndex(1);
        m_row.SetName("ROW");
    }

    // A variable named `name` at `value`, owned by the rig.
    LPVariable* Var(const std::string& name, double value) {
        m_vars.emplace_back(new LPVariable());
        LPVariable* v = m_vars.back().get();
        v->SetName(name.c_str());
        v->SetIndex(static_cast<int>(m_vars.size()));
        v->SetVarValue(value);
        return v;
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

    // Fills `t`: row, constants, then arguments, and gives it one entry per
    // distinct argument, in distinct-argument order.
    INonLinearity* Fill(INonLinearity* t, const std::vector<double>& constants,
                        const std::vector<LPVariable*>& args) {
        t->SetEquationPtr(&m_row);
        for (double c : constants) t->AddNLConstantObject(c);
        for (LPVariable* v : args) t->AddVariableObject(v);
        Attach(t);
        return t;
    }

    // One entry per distinct argument of `t`, stored in the term.
    void Attach(INonLinearity* t) {
        for (ILPVariable* v = t->FrstUniqueVar(); v; v = t->NextUniqueVar()) {
            m_nonZeros.emplace_back(new LPNonZero());
            LPNonZero* nz = m_nonZeros.back().get();
            nz->SetEquationPtr(&m_row);
            nz->SetVariablePtr(v);
            nz->SetIndex(static_cast<int>(m_nonZeros.size()));
            t->StoreNonZeroReference(nz);
        }
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

    // Central differences of EvaluateTerm, one per distinct argument.
    static std::vector<double> FiniteDifferences(INonLinearity* t, double relStep = 1e-6) {
        std::vector<double> out;
        for (ILPVariable* v = t->FrstUniqueVar(); v; v = t->NextUniqueVar()) out.push_back(0.0);
        std::vector<ILPVariable*> uv;
        for (ILPVariable* v = t->FrstUniqueVar(); v; v = t->NextUniqueVar()) uv.push_back(v);
        for (size_t i = 0; i < uv.size(); ++i) {
            const double x = uv[i]->GetVarValue();
            const double h = relStep * std::max(1.0, std::fabs(x));
            uv[i]->SetVarValue(x + h);
            const double up = t->EvaluateTerm();
            uv[i]->SetVarValue(x - h);
            const double down = t->EvaluateTerm();
            uv[i]->SetVarValue(x);
            out[i] = (up - down) / (2.0 * h);
        }
        return out;
    }

    // Expects TermJacobian to agree with central differences at the current
    // point, within a relative tolerance scaled by the larger of the two.
    static void ExpectDerivativesMatch(INonLinearity* t, double tol = 1e-5,
                                       const std::string& where = "") {
        const std::vector<double> analytic = Jacobian(t);
        const std::vector<double> numeric = FiniteDifferences(t);
        ASSERT_EQ(analytic.size(), numeric.size()) << where;
        for (size_t i = 0; i < analytic.size(); ++i) {
            const double scale = std::max({1.0, std::fabs(analytic[i]), std::fabs(numeric[i])});
            EXPECT_NEAR(analytic[i], numeric[i], tol * scale)
                << where << " argument " << i << " of " << t->GetNonLinearityID();
        }
    }

    // True when the term is smooth at the current point along every distinct
    // argument: one-sided differences agree, so no kink or branch switch
    // lies within the difference step.
    static bool SmoothAt(INonLinearity* t, double relStep = 1e-6) {
        const double f0 = t->EvaluateTerm();
        std::vector<ILPVariable*> uv;
        for (ILPVariable* v = t->FrstUniqueVar(); v; v = t->NextUniqueVar()) uv.push_back(v);
        for (ILPVariable* v : uv) {
            const double x = v->GetVarValue();
            const double h = relStep * std::max(1.0, std::fabs(x));
            v->SetVarValue(x + h);
            const double fwd = (t->EvaluateTerm() - f0) / h;
            v->SetVarValue(x - h);
            const double bwd = (f0 - t->EvaluateTerm()) / h;
            v->SetVarValue(x);
            if (std::fabs(fwd - bwd) > 1e-3 * std::max({1.0, std::fabs(fwd), std::fabs(bwd)}))
                return false;
        }
        return true;
    }

    // A term of `keyword` over new variables X0, X1, ... at `values`, owned
    // by the rig.
    BuiltTerm Build(const char* keyword, const std::vector<double>& constants,
                    const std::vector<double>& values) {
        BuiltTerm b;
        m_terms.push_back(Make(keyword));
        b.term = m_terms.back().get();
        for (size_t i = 0; i < values.size(); ++i)
            b.vars.push_back(Var("X" + std::to_string(i), values[i]));
        Fill(b.term, constants, b.vars);
        return b;
    }

    LPEquation& Row() { return m_row; }

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
