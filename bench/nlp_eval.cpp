// Evaluation speed of the nonlinear model.
//
// Model: 200,000 rows, 200,000 variables, 1,000,000 linear coefficients
// (5 per row at pseudo-random columns) and 200,000 terms of mixed types (one
// per row). Timed:
//   EvaluateModel, EvaluateJacobian      the whole model
//   LinearPartByMatrix                   the linear part alone, walking the
//                                        matrix by row (EvaluateLinearEqns)
//   PlainCSR                             the same sums over plain arrays: the
//                                        memory-bandwidth floor
//   TermsOnly                            EvaluateTerm of every term
//   AddTerms/<n>, AddTermsOneRow/<n>     adding n terms to a fresh model, terms
//                                        spread over rows / all in one long row
// Counters report nanoseconds per coefficient, per term and per added term.
#include <benchmark/benchmark.h>

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "lpdata/ILPEquation.h"
#include "lpdata/ILPMatrix.h"
#include "lpdata/ILPNonZero.h"
#include "lpdata/ILPVariable.h"
#include "lpdata/LPEquationList.h"
#include "lpdata/LPVariableList.h"
#include "nlpdata/NonLinearModel.h"

namespace {

constexpr int kRows = 200000;
constexpr int kVars = 200000;
constexpr int kPerRow = 5;
const char* const kTypes[] = {"XPROD", "LNX", "EXPX", "XPROD2", "EI", "CONST", "CONSTPROD"};

uint64_t Next(uint64_t& s) {
    s ^= s << 13;
    s ^= s >> 7;
    s ^= s << 17;
    return s;
}

struct Model {
    LPVariableList* vars = new LPVariableList();
    LPEquationList* eqns = new LPEquationList();
    NonLinearModel* model = nullptr;
    ILPMatrix* matrix = nullptr;
    std::vector<ILPVariable*> v;
    std::vector<ILPEquation*> e;

    Model(int nVars, int nRows) {
        model = new NonLinearModel(vars, eqns);
        model->GetMatrixIntf(&matrix);
        uint64_t s = 88172645463325252ull;
        for (int i = 0; i < nVars; ++i) {
            v.push_back(vars->InsertVariable(("X" + std::to_string(i)).c_str()));
            v.back()->SetVarValue(0.5 + static_cast<double>(Next(s) % 1000) / 1000.0);
        }
        for (int i = 0; i < nRows; ++i) e.push_back(eqns->InsertEquation(("R" + std::to_string(i)).c_str()));
    }
    ~Model() {
        model->Destroy();
        vars->Destroy();
        eqns->Destroy();
    }

    void AddCoef(ILPEquation* row, ILPVariable* var, double c) {
        ILPNonZero* nz = nullptr;
        matrix->CreateNewNonZeroObject(&nz);
        nz->SetEquationPtr(row);
        nz->SetVariablePtr(var);
        nz->SetCoefficient(c);
        matrix->AddNonZeroObject(nz);
    }

    void AddTerm(const char* type, ILPEquation* row, ILPVariable* a, ILPVariable* b) {
        INonLinearity* t = nullptr;
        model->CreateNonLinearityObject(type, &t);
        t->SetEquationPtr(row);
        t->AddNLConstantObject(0.75);
        const std::string kind(type);
        if (kind == "CONST" || kind == "CONSTPROD") {
            t->AddNLConstantObject(1.25);
        } else {
            t->AddVariableObject(a);
            if (kind == "XPROD" || kind == "XPROD2") t->AddVariableObject(b);
        }
        model->AddNonLinearityObject(t);
    }
};

Model& Big() {
    static Model* m = [] {
        Model* mm = new Model(kVars, kRows);
        uint64_t s = 2463534242ull;
        for (int r = 0; r < kRows; ++r)
            for (int k = 0; k < kPerRow; ++k)
                mm->AddCoef(mm->e[r], mm->v[Next(s) % kVars], 1.0 + static_cast<double>(k));
        for (int r = 0; r < kRows; ++r)
            mm->AddTerm(kTypes[r % 7], mm->e[r], mm->v[Next(s) % kVars], mm->v[Next(s) % kVars]);
        mm->model->ProcessNonLinearModel();
        return mm;
    }();
    return *m;
}

void PerItem(benchmark::State& state, const char* name, double items) {
    state.counters[name] = benchmark::Counter(items * static_cast<double>(state.iterations()),
                                              benchmark::Counter::kIsRate |
                                                  benchmark::Counter::kInvert);
}

void BM_EvaluateModel(benchmark::State& state) {
    Model& m = Big();
    for (auto _ : state) benchmark::DoNotOptimize(m.model->EvaluateModel());
    PerItem(state, "s_per_coef", m.matrix->NumberOfNonZeros());
}

void BM_EvaluateJacobian(benchmark::State& state) {
    Model& m = Big();
    for (auto _ : state) benchmark::DoNotOptimize(m.model->EvaluateJacobian());
    PerItem(state, "s_per_coef", m.matrix->NumberOfNonZeros());
}

void BM_LinearPartByMatrix(benchmark::State& state) {
    Model& m = Big();
    for (auto _ : state) benchmark::DoNotOptimize(m.model->EvaluateLinearEqns());
    PerItem(state, "s_per_coef", m.matrix->NumberOfNonZeros());
}

void BM_PlainCSR(benchmark::State& state) {
    Model& m = Big();
    // The same coefficients and values in plain arrays, row by row.
    std::vector<double> coef, x(kVars), y(kRows);
    std::vector<int> col, start(1, 0);
    for (int r = 1; r <= kRows; ++r) {
        for (ILPNonZero* nz = m.matrix->RowFrstNonZeroObject(r); nz; nz = m.matrix->RowNextNonZeroObject()) {
            coef.push_back(nz->GetCoefficient());
            col.push_back(nz->GetVariableIdx() - 1);
        }
        start.push_back(static_cast<int>(coef.size()));
    }
    for (int i = 0; i < kVars; ++i) x[i] = m.v[i]->GetVarValue();
    for (auto _ : state) {
        for (int r = 0; r < kRows; ++r) {
            double sum = 0.0;
            for (int k = start[r]; k < start[r + 1]; ++k) sum += coef[k] * x[col[k]];
            y[r] = sum;
        }
        benchmark::DoNotOptimize(y.data());
        benchmark::ClobberMemory();
    }
    PerItem(state, "s_per_coef", static_cast<double>(coef.size()));
}

// The plain loop, but each coefficient read from its matrix entry object:
// the floor for any evaluation that reads the entries themselves.
void BM_EntryObjectsCSR(benchmark::State& state) {
    Model& m = Big();
    std::vector<ILPNonZero*> nzs;
    std::vector<double> x(kVars), y(kRows);
    std::vector<int> col, start(1, 0);
    for (int r = 1; r <= kRows; ++r) {
        for (ILPNonZero* nz = m.matrix->RowFrstNonZeroObject(r); nz; nz = m.matrix->RowNextNonZeroObject()) {
            nzs.push_back(nz);
            col.push_back(nz->GetVariableIdx() - 1);
        }
        start.push_back(static_cast<int>(nzs.size()));
    }
    for (int i = 0; i < kVars; ++i) x[i] = m.v[i]->GetVarValue();
    for (auto _ : state) {
        for (int r = 0; r < kRows; ++r) {
            double sum = 0.0;
            for (int k = start[r]; k < start[r + 1]; ++k) sum += nzs[k]->GetCoefficient() * x[col[k]];
            y[r] = sum;
        }
        benchmark::DoNotOptimize(y.data());
        benchmark::ClobberMemory();
    }
    PerItem(state, "s_per_coef", static_cast<double>(nzs.size()));
}

void BM_TermsOnly(benchmark::State& state) {
    Model& m = Big();
    std::vector<INonLinearity*> terms;
    for (INonLinearity* t = m.model->FrstNonLinearityObject(); t; t = m.model->NextNonLinearityObject())
        terms.push_back(t);
    for (auto _ : state) {
        double sum = 0.0;
        for (INonLinearity* t : terms) sum += t->EvaluateTerm();
        benchmark::DoNotOptimize(sum);
    }
    PerItem(state, "s_per_term", static_cast<double>(terms.size()));
}

void BM_TermJacobiansOnly(benchmark::State& state) {
    Model& m = Big();
    for (auto _ : state) m.model->EvaluateNonlinearityJacobian();
    PerItem(state, "s_per_term", m.model->NumberOfNonLinearities());
}

// Adding n terms to a model that holds only its rows and variables.
void AddTerms(benchmark::State& state, bool oneRow) {
    const int n = static_cast<int>(state.range(0));
    for (auto _ : state) {
        state.PauseTiming();
        std::unique_ptr<Model> m(new Model(n, oneRow ? 1 : n));
        uint64_t s = 97ull;
        state.ResumeTiming();
        for (int i = 0; i < n; ++i)
            m->AddTerm(kTypes[i % 5], m->e[oneRow ? 0 : i], m->v[Next(s) % n], m->v[Next(s) % n]);
        state.PauseTiming();
        m.reset();
        state.ResumeTiming();
    }
    state.SetComplexityN(n);
    PerItem(state, "s_per_term", n);
}

void BM_AddTerms(benchmark::State& state) { AddTerms(state, false); }
void BM_AddTermsOneRow(benchmark::State& state) { AddTerms(state, true); }

}  // namespace

BENCHMARK(BM_PlainCSR)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_EntryObjectsCSR)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_LinearPartByMatrix)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_EvaluateModel)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_EvaluateJacobian)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_TermsOnly)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_TermJacobiansOnly)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_AddTerms)->RangeMultiplier(2)->Range(50000, 200000)->Complexity(benchmark::oN)
    ->Unit(benchmark::kMillisecond)->Iterations(3);
BENCHMARK(BM_AddTermsOneRow)->RangeMultiplier(2)->Range(50000, 200000)->Complexity(benchmark::oN)
    ->Unit(benchmark::kMillisecond)->Iterations(3);
BENCHMARK_MAIN();
