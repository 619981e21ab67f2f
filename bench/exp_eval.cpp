// Speed of the expression evaluator and of user equations.
//
//   Parse50                 tokenizing and parsing a 50-token expression
//   Evaluate50              evaluating it again with changed symbol values
//   Gradient50              its value and derivatives by all 8 symbols
//   ModelUserEquations      EvaluateModel + EvaluateJacobian of 100,000 rows,
//                           each with one user equation "2*Xi*Yi+Xi*Xi*Yi"
//   ModelElementaryTerms    the same rows with the formula written as two
//                           elementary product terms (XPROD 2: Xi Yi and
//                           XPROD 1: Xi Xi Yi)
// The last two report nanoseconds per row; their ratio is the cost of
// evaluating formulas instead of elementary terms.
#include <benchmark/benchmark.h>

#include <string>
#include <vector>

#include "lpdata/ILPEquation.h"
#include "lpdata/ILPVariable.h"
#include "lpdata/LPEquationList.h"
#include "lpdata/LPVariableList.h"
#include "nlpdata/CExpEval.h"
#include "nlpdata/NonLinearModel.h"

namespace {

// 50 tokens (the end marker included), 8 symbols.
const char* const kFifty = "a*b + c/d - e + sqrt(f*f + 1) - ln(g) * h + (a - b) * (c + d) / (e + 1) - exp(-h)";

void BM_Parse50(benchmark::State& state) {
    CExpEval ev;
    for (const char* n : {"a", "b", "c", "d", "e", "f", "g", "h"}) ev.AddSymbol(n, 1.5);
    for (auto _ : state) benchmark::DoNotOptimize(ev.Parse(kFifty));
    state.counters["tokens"] = ev.NumberOfTokens();
}

void BM_Evaluate50(benchmark::State& state) {
    CExpEval ev;
    for (const char* n : {"a", "b", "c", "d", "e", "f", "g", "h"}) ev.AddSymbol(n, 1.5);
    ev.Parse(kFifty);
    double r = 0.0, x = 1.0;
    for (auto _ : state) {
        x += 1e-9;
        ev.SetSymbolValue(0, x);
        ev.SetSymbolValue(5, x);
        benchmark::DoNotOptimize(ev.EvaluatePostfix(r));
        benchmark::DoNotOptimize(r);
    }
}

void BM_Gradient50(benchmark::State& state) {
    CExpEval ev;
    for (const char* n : {"a", "b", "c", "d", "e", "f", "g", "h"}) ev.AddSymbol(n, 1.5);
    ev.Parse(kFifty);
    double r = 0.0, grad[8];
    for (auto _ : state) {
        benchmark::DoNotOptimize(ev.EvaluateGradient(r, grad));
        benchmark::DoNotOptimize(grad[0]);
    }
}

constexpr int kRows = 100000;

struct Rows {
    LPVariableList* vars = new LPVariableList();
    LPEquationList* eqns = new LPEquationList();
    NonLinearModel* model = new NonLinearModel(vars, eqns);

    explicit Rows(bool user) {
        for (int i = 0; i < kRows; ++i) {
            const std::string x = "X" + std::to_string(i), y = "Y" + std::to_string(i);
            ILPVariable* vx = vars->InsertVariable(x.c_str());
            ILPVariable* vy = vars->InsertVariable(y.c_str());
            vx->SetVarValue(1.0 + i % 7);
            vy->SetVarValue(2.0 + i % 5);
            ILPEquation* row = eqns->InsertEquation(("R" + std::to_string(i)).c_str());
            if (user) {
                Add(("USEREQ:2*" + x + "*" + y + "+" + x + "*" + x + "*" + y).c_str(), row, {vx, vy}, {1.0});
            } else {
                Add("XPROD", row, {vx, vy}, {2.0});
                Add("XPROD", row, {vx, vx, vy}, {1.0});
            }
        }
        model->ProcessNonLinearModel();
    }
    ~Rows() {
        model->Destroy();
        vars->Destroy();
        eqns->Destroy();
    }
    void Add(const char* keyword, ILPEquation* row, std::vector<ILPVariable*> args, std::vector<double> consts) {
        INonLinearity* t = nullptr;
        model->CreateNonLinearityObject(keyword, &t);
        t->SetEquationPtr(row);
        for (double c : consts) t->AddNLConstantObject(c);
        for (ILPVariable* v : args) t->AddVariableObject(v);
        model->AddNonLinearityObject(t);
    }
};

void RunRows(benchmark::State& state, bool user) {
    static Rows* built[2] = {nullptr, nullptr};
    Rows*& m = built[user ? 1 : 0];
    if (!m) m = new Rows(user);
    for (auto _ : state) {
        benchmark::DoNotOptimize(m->model->EvaluateModel());
        benchmark::DoNotOptimize(m->model->EvaluateJacobian());
    }
    state.counters["s_per_row"] = benchmark::Counter(static_cast<double>(kRows) * state.iterations(),
                                                     benchmark::Counter::kIsRate | benchmark::Counter::kInvert);
}

void BM_ModelUserEquations(benchmark::State& state) { RunRows(state, true); }
void BM_ModelElementaryTerms(benchmark::State& state) { RunRows(state, false); }

}  // namespace

BENCHMARK(BM_Parse50);
BENCHMARK(BM_Evaluate50);
BENCHMARK(BM_Gradient50);
BENCHMARK(BM_ModelUserEquations)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_ModelElementaryTerms)->Unit(benchmark::kMillisecond);
BENCHMARK_MAIN();
