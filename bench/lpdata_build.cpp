// Building linear models through the list and matrix interfaces, as the MPS
// readers do: all rows first, then column by column the variable and its
// entries (CreateNewNonZeroObject + AddNonZeroObject), then
// ProcessFullCollection.
//
//   bench_lpdata_build                                  every case
//   bench_lpdata_build --benchmark_filter=Build/4       the full-size model
//
// Each case runs once (model building is not a micro-operation) and reports
//   seconds        build + ProcessFullCollection (teardown not included),
//                  wall clock; cpu_seconds the same in process CPU time (the
//                  fairer figure on a shared machine)
//   bytes_per_nz   peak resident memory of the process during the case
//                  divided by the number of nonzeros (all-in: variables,
//                  equations, names, indexes, nonzeros and the program)
// The peak is measured from /proc/self/status (VmHWM) after resetting it
// through /proc/self/clear_refs and returning freed memory to the system, so
// each case reports its own peak. Run the cases one at a time for the most
// faithful memory figures.
#include <benchmark/benchmark.h>
#include <malloc.h>

#include <chrono>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <ctime>
#include <fstream>
#include <string>

#include "lpdata/ILPEquation.h"
#include "lpdata/ILPEquationList.h"
#include "lpdata/ILPMatrix.h"
#include "lpdata/ILPNonZero.h"
#include "lpdata/ILPStdDataMgr.h"
#include "lpdata/ILPVariable.h"
#include "lpdata/ILPVariableList.h"

namespace {

long ReadStatusKb(const char* key) {
    std::ifstream in("/proc/self/status");
    std::string line;
    const size_t len = std::strlen(key);
    while (std::getline(in, line))
        if (line.compare(0, len, key) == 0) return std::stol(line.substr(len + 1));
    return -1;
}

double CpuSeconds() {
    timespec ts{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &ts);
    return static_cast<double>(ts.tv_sec) + static_cast<double>(ts.tv_nsec) * 1e-9;
}

void ResetPeak() {
    malloc_trim(0);
    std::ofstream("/proc/self/clear_refs") << "5";
}

struct Model {
    ILPStdDataMgr* mgr = nullptr;
    ILPVariableList* vars = nullptr;
    ILPEquationList* eqns = nullptr;
    ILPMatrix* matrix = nullptr;
    Model() {
        CreateLPStdDataObject(&mgr);
        mgr->GetVariableCollectionIntf(&vars);
        mgr->GetEquationCollectionIntf(&eqns);
        mgr->GetMatrixIntf(&matrix);
    }
    ~Model() { mgr->Destroy(); }
    void AddEntry(ILPEquation* e, ILPVariable* v, double c) {
        ILPNonZero* nz = nullptr;
        matrix->CreateNewNonZeroObject(&nz);
        nz->SetEquationPtr(e);
        nz->SetVariablePtr(v);
        nz->SetCoefficient(c);
        matrix->AddNonZeroObject(nz);
    }
};

std::vector<ILPEquation*> MakeRows(Model& m, int64_t n) {
    std::vector<ILPEquation*> rows;
    rows.reserve(static_cast<size_t>(n));
    char name[32];
    for (int64_t i = 0; i < n; ++i) {
        std::snprintf(name, sizeof name, "R%lld", static_cast<long long>(i));
        rows.push_back(m.eqns->InsertEquation(name));
    }
    return rows;
}

ILPVariable* MakeColumn(Model& m, int64_t j) {
    char name[32];
    std::snprintf(name, sizeof name, "C%lld", static_cast<long long>(j));
    return m.vars->InsertVariable(name);
}

// Runs build() + ProcessFullCollection once and reports the figures.
template <class Build>
void RunCase(benchmark::State& state, Build build) {
    for (auto _ : state) {
        ResetPeak();
        const long baseKb = ReadStatusKb("VmRSS:");
        const auto start = std::chrono::steady_clock::now();
        const double cpuStart = CpuSeconds();
        Model m;
        build(m);
        m.mgr->ProcessFullCollection();
        const double seconds =
            std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
        const double cpu = CpuSeconds() - cpuStart;
        state.SetIterationTime(seconds);
        int n = 0, rows = 0, nz = 0;
        m.mgr->ModelDimension(n, rows, nz);
        const long peakKb = ReadStatusKb("VmHWM:");
        state.counters["seconds"] = seconds;
        state.counters["cpu_seconds"] = cpu;
        state.counters["vars"] = n;
        state.counters["rows"] = rows;
        state.counters["nz"] = nz;
        state.counters["bytes_per_nz"] = nz > 0 ? peakKb * 1024.0 / nz : 0;
        state.counters["base_rss_mb"] = baseKb / 1024.0;
        state.counters["peak_rss_mb"] = peakKb / 1024.0;
    }
}

// The main shape at 1/4, 1/2 and full size (argument 1, 2, 4): 1,000,000
// variables, 200,000 equations and 5,000,000 entries at full size, five
// entries a column in pseudo-random rows.
void Build(benchmark::State& state) {
    const int64_t scale = state.range(0);
    const int64_t nRows = 50000 * scale;
    const int64_t nCols = 250000 * scale;
    RunCase(state, [&](Model& m) {
        const std::vector<ILPEquation*> rows = MakeRows(m, nRows);
        uint64_t h = 88172645463325252ull;
        for (int64_t j = 0; j < nCols; ++j) {
            ILPVariable* v = MakeColumn(m, j);
            for (int k = 0; k < 5; ++k) {
                h ^= h << 13;
                h ^= h >> 7;
                h ^= h << 17;
                m.AddEntry(rows[h % static_cast<uint64_t>(nRows)], v, 1.0 + static_cast<double>(k));
            }
        }
    });
}

// One column holding an entry in every row.
void OneLongColumn(benchmark::State& state) {
    const int64_t n = state.range(0);
    RunCase(state, [&](Model& m) {
        const std::vector<ILPEquation*> rows = MakeRows(m, n);
        ILPVariable* v = MakeColumn(m, 0);
        for (ILPEquation* e : rows) m.AddEntry(e, v, 2.0);
    });
}

// One row holding an entry in every column.
void OneLongRow(benchmark::State& state) {
    const int64_t n = state.range(0);
    RunCase(state, [&](Model& m) {
        ILPEquation* row = MakeRows(m, 1).front();
        for (int64_t j = 0; j < n; ++j) m.AddEntry(row, MakeColumn(m, j), 3.0);
    });
}

// Every second row stays empty and is removed by ProcessFullCollection.
void HalfEmptyRows(benchmark::State& state) {
    const int64_t n = state.range(0);
    RunCase(state, [&](Model& m) {
        const std::vector<ILPEquation*> rows = MakeRows(m, n);
        for (int64_t j = 0; j < n / 2; ++j) m.AddEntry(rows[2 * j + 1], MakeColumn(m, j), 1.0);
    });
}

}  // namespace

BENCHMARK(Build)->Arg(1)->Arg(2)->Arg(4)->Iterations(1)->UseManualTime()->Unit(benchmark::kSecond);
BENCHMARK(OneLongColumn)->Arg(50000)->Arg(100000)->Arg(200000)->Arg(400000)->Iterations(1)->UseManualTime()
    ->Unit(benchmark::kMillisecond);
BENCHMARK(OneLongRow)->Arg(50000)->Arg(100000)->Arg(200000)->Arg(400000)->Iterations(1)->UseManualTime()
    ->Unit(benchmark::kMillisecond);
BENCHMARK(HalfEmptyRows)->Arg(50000)->Arg(100000)->Arg(200000)->Arg(400000)->Iterations(1)->UseManualTime()
    ->Unit(benchmark::kMillisecond);

BENCHMARK_MAIN();
