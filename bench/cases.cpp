// Cases over the in-memory benchmark model (200,000 rows, 400,000 columns,
// 2.4 million entries; see BenchModel.h): a collection of 100 cases of N
// edits each (N = 1,000 and 10,000, to show the cost is linear), mixing
// value, bound, type, right-hand side, range and coefficient edits.
// Reported: edits applied and undone per second (by the cases themselves,
// and through the collection, whose undo also resets the variables' saved
// values), and bytes per second writing and reading the case file.
#include <benchmark/benchmark.h>

#include <map>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include "BenchModel.h"
#include "cases/ZEMCaseCollection.h"
#include "cases/ZEMEditRecord.h"

namespace {

constexpr int kRows = 200000;
constexpr int kCases = 100;

IZEMMgr* model() {
    static MgrPtr mgr = buildModel(kRows);
    return mgr.get();
}

std::unique_ptr<CZEMCaseCollection> makeCollection(int editsPerCase) {
    IZEMMgr* mgr = model();
    auto col = std::make_unique<CZEMCaseCollection>(mgr);
    const ZEMEditTargets t = ZEMEditTargets::FromModel(mgr);
    std::vector<ILPNonZero*> entries;
    for (ILPNonZero* nz = t.matrix->FrstNonZeroObject(); nz; nz = t.matrix->NextNonZeroObject())
        entries.push_back(nz);
    const size_t nv = t.vars.size() - 1, ne = t.eqns.size() - 1;
    size_t k = 0;
    for (int c = 1; c <= kCases; ++c) {
        IZEMCaseMgr* cm = col->CreateNewCaseMgr(c, ("CASE" + std::to_string(c)).c_str(), "bench");
        for (int j = 0; j < editsPerCase; ++j, ++k) {
            ILPVariable* v = t.vars[1 + (k * 7) % nv];
            ILPEquation* e = t.eqns[1 + (k * 3) % ne];
            switch (j % 6) {
                case 0: cm->AddVarValueEdit(v, 1.5); break;
                case 1: cm->AddVarBoundEdit(v, static_cast<int16_t>(j % 3 - 1), 7.0); break;
                case 2: cm->AddVarTypeEdit(v, 2); break;
                case 3: cm->AddEqnRHSEdit(e, 3.0); break;
                case 4: cm->AddEqnRangeEdit(e, 2.0); break;
                default: cm->AddMatrixCoeffEdit(entries[(k * 11) % entries.size()], 0.5); break;
            }
        }
        col->AddCaseMgr(cm);
    }
    return col;
}

CZEMCaseCollection* collection(int editsPerCase) {
    static std::map<int, std::unique_ptr<CZEMCaseCollection>> made;
    auto& slot = made[editsPerCase];
    if (!slot) slot = makeCollection(editsPerCase);
    return slot.get();
}

void BM_ApplyUndoEdits(benchmark::State& state) {
    CZEMCaseCollection* col = collection(static_cast<int>(state.range(0)));
    for (auto _ : state) {
        for (IZEMCaseMgr* c : *col->CaseListPtr()) {
            c->Apply();
            c->UnApply();
        }
    }
    state.SetItemsProcessed(state.iterations() * kCases * state.range(0));
}

void BM_CollectionApplyUndo(benchmark::State& state) {
    CZEMCaseCollection* col = collection(static_cast<int>(state.range(0)));
    for (auto _ : state) {
        for (int c = 1; c <= kCases; ++c) {
            col->ApplyCaseNumber(c);
            col->UnApplyCaseNumber(c);
        }
    }
    state.SetItemsProcessed(state.iterations() * kCases * state.range(0));
}

void BM_SaveCaseFile(benchmark::State& state) {
    CZEMCaseCollection* col = collection(static_cast<int>(state.range(0)));
    size_t bytes = 0;
    for (auto _ : state) {
        std::stringstream ss;
        col->PersistXLMAsStream(&ss);
        bytes = static_cast<size_t>(ss.tellp());
        benchmark::DoNotOptimize(bytes);
    }
    state.SetBytesProcessed(static_cast<int64_t>(bytes) * state.iterations());
    state.counters["file_MB"] = static_cast<double>(bytes) / 1e6;
}

void BM_RestoreCaseFile(benchmark::State& state) {
    std::stringstream image;
    collection(static_cast<int>(state.range(0)))->PersistXLMAsStream(&image);
    const std::string bytes = image.str();
    for (auto _ : state) {
        state.PauseTiming();
        auto col = std::make_unique<CZEMCaseCollection>(model());
        std::stringstream in(bytes);
        state.ResumeTiming();
        col->RestoreXLMStream(&in);
        state.PauseTiming();
        col.reset();
        state.ResumeTiming();
    }
    state.SetBytesProcessed(static_cast<int64_t>(bytes.size()) * state.iterations());
    state.counters["file_MB"] = static_cast<double>(bytes.size()) / 1e6;
}

}  // namespace

BENCHMARK(BM_ApplyUndoEdits)->Arg(1000)->Arg(10000)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_CollectionApplyUndo)->Arg(1000)->Arg(10000)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_SaveCaseFile)->Arg(1000)->Arg(10000)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_RestoreCaseFile)->Arg(1000)->Arg(10000)->Unit(benchmark::kMillisecond);
BENCHMARK_MAIN();
