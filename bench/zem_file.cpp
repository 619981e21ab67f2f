// Saving and restoring large models through the model file.
//
// Models are built in memory: R rows, 2R columns and 12R entries (each
// column in six rows). Sizes: R = 200,000 (2.4 million entries) and
// R = 416,667 (5 million entries). Reported: bytes written or
// read per second, the file size and the process's peak resident memory.
#include <benchmark/benchmark.h>

#include <sys/resource.h>

#include <cstdio>
#include <map>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include "lpdata/ILPEquation.h"
#include "lpdata/ILPEquationList.h"
#include "lpdata/ILPMatrix.h"
#include "lpdata/ILPNonZero.h"
#include "lpdata/ILPVariable.h"
#include "lpdata/ILPVariableList.h"
#include "mpsutil/MPSStdReader.h"
#include "zemmgr/IZEMMgr.h"
#include "BenchModel.h"

namespace {

long peakRssKb() {
    rusage ru{};
    getrusage(RUSAGE_SELF, &ru);
    return ru.ru_maxrss;
}

// One model per size, built once for all benchmarks of that size.
IZEMMgr* modelOfSize(int rows) {
    static std::map<int, MgrPtr> models;
    auto it = models.find(rows);
    if (it == models.end()) it = models.emplace(rows, buildModel(rows)).first;
    return it->second.get();
}

void BM_SaveToStream(benchmark::State& state) {
    IZEMMgr* mgr = modelOfSize(static_cast<int>(state.range(0)));
    size_t bytes = 0;
    for (auto _ : state) {
        std::stringstream ss;
        mgr->PersistAsStream(&ss);
        bytes = static_cast<size_t>(ss.tellp());
        benchmark::DoNotOptimize(bytes);
    }
    state.SetBytesProcessed(static_cast<int64_t>(bytes) * state.iterations());
    state.counters["file_MB"] = static_cast<double>(bytes) / 1e6;
    state.counters["peak_rss_MB"] = static_cast<double>(peakRssKb()) / 1024.0;
}

void BM_SaveToFile(benchmark::State& state) {
    IZEMMgr* mgr = modelOfSize(static_cast<int>(state.range(0)));
    const std::string path = "/tmp/zem_bench_" + std::to_string(state.range(0)) + ".zem";
    for (auto _ : state) mgr->PersistAsFile(path.c_str());
    std::FILE* fp = std::fopen(path.c_str(), "rb");
    long size = 0;
    if (fp != nullptr) {
        std::fseek(fp, 0, SEEK_END);
        size = std::ftell(fp);
        std::fclose(fp);
    }
    std::remove(path.c_str());
    state.SetBytesProcessed(static_cast<int64_t>(size) * state.iterations());
    state.counters["file_MB"] = static_cast<double>(size) / 1e6;
}

void BM_RestoreFromStream(benchmark::State& state) {
    IZEMMgr* src = modelOfSize(static_cast<int>(state.range(0)));
    std::stringstream image;
    src->PersistAsStream(&image);
    const std::string bytes = image.str();
    for (auto _ : state) {
        state.PauseTiming();
        MgrPtr dst = makeMgr();
        std::istringstream in(bytes);
        state.ResumeTiming();
        dst->RestoreFromStream(&in);
        state.PauseTiming();
        dst.reset();
        state.ResumeTiming();
    }
    state.SetBytesProcessed(static_cast<int64_t>(bytes.size()) * state.iterations());
    state.counters["file_MB"] = static_cast<double>(bytes.size()) / 1e6;
    state.counters["peak_rss_MB"] = static_cast<double>(peakRssKb()) / 1024.0;
}

// The model as a classic fixed-field MPS file (8-character names).
std::string writeMpsFile(IZEMMgr* mgr, int rows) {
    const std::string path = "/tmp/zem_bench_" + std::to_string(rows) + ".mps";
    std::FILE* fp = std::fopen(path.c_str(), "w");
    const auto [vars, eqns, matrix] = partsOf(mgr);
    std::fprintf(fp, "NAME          BENCH\nROWS\n");
    const char* keys[] = {"", "N", "E", "L", "G", "N"};
    for (ILPEquation* e = eqns->FrstEquationObject(); e; e = eqns->NextEquationObject())
        std::fprintf(fp, " %-2s %s\n", keys[e->GetType()], e->GetName());
    std::fprintf(fp, "COLUMNS\n");
    for (ILPVariable* v = vars->FrstVariableObject(); v; v = vars->NextVariableObject())
        for (ILPNonZero* nz = matrix->ColFrstNonZeroObject(v->GetIndex()); nz;
             nz = matrix->ColNextNonZeroObject())
            std::fprintf(fp, "    %-8s  %-8s  %12.6g\n", v->GetName(),
                         nz->GetEquationPtr()->GetName(), nz->GetCoefficient());
    std::fprintf(fp, "RHS\n");
    for (ILPEquation* e = eqns->FrstEquationObject(); e; e = eqns->NextEquationObject())
        std::fprintf(fp, "    RHS       %-8s  %12.6g\n", e->GetName(), e->GetRHS());
    std::fprintf(fp, "BOUNDS\n");
    for (ILPVariable* v = vars->FrstVariableObject(); v; v = vars->NextVariableObject())
        std::fprintf(fp, " UP BND       %-8s  %12.6g\n", v->GetName(), v->GetBoundUpper());
    std::fprintf(fp, "ENDATA\n");
    std::fclose(fp);
    return path;
}

long fileSize(const std::string& path) {
    std::FILE* fp = std::fopen(path.c_str(), "rb");
    if (fp == nullptr) return 0;
    std::fseek(fp, 0, SEEK_END);
    const long size = std::ftell(fp);
    std::fclose(fp);
    return size;
}

// Times `load` into a fresh manager per iteration (making and releasing the
// manager are not timed), then reports the file's size and removes it.
template <typename Load>
void timeLoads(benchmark::State& state, const std::string& path, Load load) {
    for (auto _ : state) {
        state.PauseTiming();
        MgrPtr dst = makeMgr();
        state.ResumeTiming();
        load(dst.get());
        state.PauseTiming();
        dst.reset();
        state.ResumeTiming();
    }
    state.counters["file_MB"] = static_cast<double>(fileSize(path)) / 1e6;
    std::remove(path.c_str());
}

void BM_RestoreFromFile(benchmark::State& state) {
    const int rows = static_cast<int>(state.range(0));
    const std::string path = "/tmp/zem_bench_restore_" + std::to_string(rows) + ".zem";
    modelOfSize(rows)->PersistAsFile(path.c_str());
    timeLoads(state, path, [&](IZEMMgr* dst) { dst->RestoreFromFile(path.c_str()); });
}

void BM_ReadMPSFile(benchmark::State& state) {
    const int rows = static_cast<int>(state.range(0));
    const std::string path = writeMpsFile(modelOfSize(rows), rows);
    timeLoads(state, path, [&](IZEMMgr* dst) {
        MPSStdReader reader(dst);
        reader.ReadMPSFile(path.c_str());
    });
}

// Model processing when half of the rows are empty: n rows, every other one
// with two entries, the rest empty and dropped by ProcessFullCollection.
// Timed: ProcessFullCollection alone; it should grow linearly with n.
void BM_DropEmptyRows(benchmark::State& state) {
    const int rows = static_cast<int>(state.range(0));
    char name[32];
    for (auto _ : state) {
        state.PauseTiming();
        MgrPtr mgr = makeMgr();
        const auto [vars, eqns, matrix] = partsOf(mgr.get());
        std::vector<ILPVariable*> cols;
        for (int c = 0; c < rows / 2; ++c) {
            std::snprintf(name, sizeof name, "C%07d", c);
            cols.push_back(vars->InsertVariable(name));
        }
        for (int r = 0; r < rows; ++r) {
            std::snprintf(name, sizeof name, "R%07d", r);
            ILPEquation* e = eqns->InsertEquation(name);
            if (r % 2 == 1) continue;
            for (int k = 0; k < 2; ++k) {
                ILPNonZero* nz = nullptr;
                matrix->CreateNewNonZeroObject(&nz);
                nz->SetEquationPtr(e);
                nz->SetVariablePtr(cols[static_cast<size_t>((r / 2 + k) % (rows / 2))]);
                nz->SetCoefficient(1.0 + k);
                matrix->AddNonZeroObject(nz);
            }
        }
        state.ResumeTiming();
        mgr->ProcessFullCollection();
        state.PauseTiming();
        if (eqns->NumberOfEquations() != (rows + 1) / 2) state.SkipWithError("empty rows left");
        mgr.reset();
        state.ResumeTiming();
    }
    state.SetComplexityN(rows);
}

}  // namespace

BENCHMARK(BM_DropEmptyRows)
    ->RangeMultiplier(2)
    ->Range(50000, 200000)
    ->Complexity(benchmark::oN)
    ->Unit(benchmark::kMillisecond)
    ->Iterations(2);
BENCHMARK(BM_RestoreFromFile)->Arg(200000)->Arg(416667)->Unit(benchmark::kMillisecond)->Iterations(2);
BENCHMARK(BM_ReadMPSFile)->Arg(200000)->Arg(416667)->Unit(benchmark::kMillisecond)->Iterations(2);
BENCHMARK(BM_SaveToStream)->Arg(200000)->Arg(416667)->Unit(benchmark::kMillisecond)->Iterations(3);
BENCHMARK(BM_SaveToFile)->Arg(200000)->Arg(416667)->Unit(benchmark::kMillisecond)->Iterations(3);
BENCHMARK(BM_RestoreFromStream)
    ->Arg(200000)
    ->Arg(416667)
    ->Unit(benchmark::kMillisecond)
    ->Iterations(2);

BENCHMARK_MAIN();
