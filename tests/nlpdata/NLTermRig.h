// Test rig for the concrete term types: real LP variables, a row and the
// term's matrix entries, set up as the pool sets them up (one entry per
// distinct argument, stored in distinct-argument order), and a central
// finite-difference check of a term's derivatives.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <memory>
#include <string>
#include <vector>

#include "lpdata/LPEquation.h"
#include "lpdata/LPNonZero.h"
#include "lpdata/LPVariable.h"
#include "nlpdata/INonLinearity.h"
#include "nlpdata/INonLinearityFactory.h"

struct TermDeleter {
    void operator()(INonLinearity* t) const { t->Destroy(); }
};
using TermPtr = std::unique_ptr<INonLinearity, TermDeleter>;

// A term and its variables, for probing values at chosen points.
struct BuiltTerm {
    INonLinearity* term = nullptr;
    std::vector<LPVariable*> vars;

    double Value() { return term->EvaluateTerm(); }
    // Value and derivative with the first variable at x.
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
    void Fill(INonLinearity* t, const std::vector<double>& constants,
              const std::vector<LPVariable*>& args) {
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

    // Forward, backward and central differences of EvaluateTerm along each
    // distinct argument.
    struct Differences {
        std::vector<double> forward, backward, central;
    };
    static Differences Differentiate(INonLinearity* t) {
        Differences d;
        const double f0 = t->EvaluateTerm();
        std::vector<ILPVariable*> uv;
        for (ILPVariable* v = t->FrstUniqueVar(); v; v = t->NextUniqueVar()) uv.push_back(v);
        for (ILPVariable* v : uv) {
            const double x = v->GetVarValue();
            const double h = 1e-6 * std::max(1.0, std::fabs(x));
            v->SetVarValue(x + h);
            const double up = t->EvaluateTerm();
            v->SetVarValue(x - h);
            const double down = t->EvaluateTerm();
            v->SetVarValue(x);
            d.forward.push_back((up - f0) / h);
            d.backward.push_back((f0 - down) / h);
            d.central.push_back((up - down) / (2.0 * h));
        }
        return d;
    }

    static double Scale(double a, double b) { return std::max({1.0, std::fabs(a), std::fabs(b)}); }

    // False when a kink or branch switch lies within the difference step
    // (one-sided differences disagree); otherwise expects TermJacobian to
    // agree with the central differences.
    static bool CheckDerivativesIfSmooth(INonLinearity* t, const std::string& where) {
        const Differences d = Differentiate(t);
        for (size_t i = 0; i < d.forward.size(); ++i)
            if (std::fabs(d.forward[i] - d.backward[i]) > 1e-3 * Scale(d.forward[i], d.backward[i]))
                return false;
        const std::vector<double> analytic = Jacobian(t);
        EXPECT_EQ(analytic.size(), d.central.size()) << where;
        for (size_t i = 0; i < analytic.size() && i < d.central.size(); ++i)
            EXPECT_NEAR(analytic[i], d.central[i], 1e-5 * Scale(analytic[i], d.central[i]))
                << where << ", argument " << i;
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
