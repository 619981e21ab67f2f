// Writing and reading speed of the extended MPS dialect on the models that
// bench/mps_generate.py writes (full, half and quarter size: 200,000 rows,
// 400,000 columns and 2,400,000 entries at full size).
//
//   python3 bench/mps_generate.py --out-dir build/bench/mps_data
//   build/bench/bench_xmps_io [--data-dir DIR] [benchmark options]
//
// For each size the MPS file is first read with the standard reader into a
// model manager (timed: "MpsRead", the reference), that model is written
// as XMPS (timed: "XmpsWrite", with bytes per second) and the XMPS file is
// read back into a fresh model manager (timed: "XmpsRead"). "XmpsOverMps"
// alternates the two reads and reports their ratio. A read is timed to the
// end of the model's ProcessFullCollection; releasing models is not timed.
// The files are written beside the MPS files.
#include <benchmark/benchmark.h>

#include <chrono>
#include <filesystem>
#include <string>

#include "BenchDataDir.h"
#include "lpdata/ZEMException.h"
#include "mpsutil/MPSStdReader.h"
#include "xmpsutil/XMPSReader.h"
#include "xmpsutil/XMPSWriter.h"
#include "zemmgr/IZEMMgr.h"

namespace {

std::string g_dataDir;
using Clock = std::chrono::steady_clock;

std::string MpsFile(const char* part) { return g_dataDir + "/mps_" + part + ".mps"; }
std::string XmpsFile(const char* part) { return g_dataDir + "/xmps_" + part + ".xmps"; }

IZEMMgr* NewModel() {
    IZEMMgr* m = nullptr;
    ZEMObjectFactory(&m);
    m->IAddRef();
    return m;
}

double Seconds(Clock::time_point start) {
    return std::chrono::duration<double>(Clock::now() - start).count();
}

// Reads the MPS file with the standard reader; returns the model.
IZEMMgr* ReadMps(const std::string& path, double* seconds) {
    IZEMMgr* m = NewModel();
    const auto start = Clock::now();
    {
        MPSStdReader reader(m);
        reader.ReadMPSFile(path.c_str());
    }
    *seconds = Seconds(start);
    return m;
}

double WriteXmps(IZEMMgr* m, const std::string& path) {
    const auto start = Clock::now();
    XMPSWriter writer(m);
    writer.WriteMPSFile(path.c_str());
    return Seconds(start);
}

double ReadXmps(const std::string& path, int* nonzeros) {
    IZEMMgr* m = NewModel();
    const auto start = Clock::now();
    {
        XMPSReader reader(m, false);
        reader.ReadMPSFile(path.c_str());
    }
    const double s = Seconds(start);
    int n = 0, rows = 0;
    m->ModelDimension(n, rows, *nonzeros);
    m->IRelease();
    return s;
}

bool HaveData(benchmark::State& state, const char* part) {
    if (std::filesystem::exists(MpsFile(part))) return true;
    state.SkipWithError(("missing " + MpsFile(part) + ": run bench/mps_generate.py").c_str());
    return false;
}

void MpsRead(benchmark::State& state, const char* part) {
    if (!HaveData(state, part)) return;
    for (auto _ : state) {
        double s = 0;
        IZEMMgr* m = ReadMps(MpsFile(part), &s);
        state.SetIterationTime(s);
        m->IRelease();
    }
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations()) *
                            static_cast<int64_t>(std::filesystem::file_size(MpsFile(part))));
}

void XmpsWrite(benchmark::State& state, const char* part) {
    if (!HaveData(state, part)) return;
    double unused = 0;
    IZEMMgr* m = ReadMps(MpsFile(part), &unused);
    for (auto _ : state) state.SetIterationTime(WriteXmps(m, XmpsFile(part)));
    m->IRelease();
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations()) *
                            static_cast<int64_t>(std::filesystem::file_size(XmpsFile(part))));
}

// Writes the XMPS file of the size from its MPS file unless it exists.
void EnsureXmps(const char* part) {
    if (std::filesystem::exists(XmpsFile(part))) return;
    double unused = 0;
    IZEMMgr* m = ReadMps(MpsFile(part), &unused);
    WriteXmps(m, XmpsFile(part));
    m->IRelease();
}

void XmpsRead(benchmark::State& state, const char* part) {
    if (!HaveData(state, part)) return;
    EnsureXmps(part);
    int nonzeros = 0;
    for (auto _ : state) state.SetIterationTime(ReadXmps(XmpsFile(part), &nonzeros));
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations()) *
                            static_cast<int64_t>(std::filesystem::file_size(XmpsFile(part))));
    state.counters["nonzeros"] = nonzeros;
}

// Both readers in turn on the same model, each iteration one standard read
// and one XMPS read back to back, so that drifts of the host's speed touch
// both alike. Reports the XMPS read's time (the iteration time) and the
// ratio of the summed XMPS times to the summed standard times.
void XmpsOverMps(benchmark::State& state, const char* part) {
    if (!HaveData(state, part)) return;
    EnsureXmps(part);
    double mpsTotal = 0, xmpsTotal = 0;
    int nonzeros = 0;
    for (auto _ : state) {
        double s = 0;
        ReadMps(MpsFile(part), &s)->IRelease();
        const double x = ReadXmps(XmpsFile(part), &nonzeros);
        mpsTotal += s;
        xmpsTotal += x;
        state.SetIterationTime(x);
    }
    state.counters["mps_ms"] = 1000.0 * mpsTotal / static_cast<double>(state.iterations());
    state.counters["xmps_over_mps"] = mpsTotal > 0 ? xmpsTotal / mpsTotal : 0.0;
}

void Guarded(benchmark::State& state, void (*run)(benchmark::State&, const char*), const char* part) {
    try {
        run(state, part);
    } catch (ZEM_Exception& e) {
        state.SkipWithError((e.Name() + ": " + e.Reason()).c_str());
    }
}

void RegisterAll() {
    // The ratio gets more rounds than the single timings: it is the figure
    // the reader is judged by, and the host's speed drifts between rounds.
    struct Kind {
        const char* name;
        void (*run)(benchmark::State&, const char*);
        int rounds;
    };
    const Kind kinds[] = {{"MpsRead", MpsRead, 3},
                          {"XmpsWrite", XmpsWrite, 3},
                          {"XmpsRead", XmpsRead, 3},
                          {"XmpsOverMps", XmpsOverMps, 5}};
    for (const char* part : {"quarter", "half", "full"}) {
        for (const Kind& k : kinds) {
            benchmark::RegisterBenchmark((std::string(k.name) + "/" + part).c_str(),
                                         [k, part](benchmark::State& state) {
                                             Guarded(state, k.run, part);
                                         })
                ->UseManualTime()
                ->Unit(benchmark::kMillisecond)
                ->Iterations(k.rounds);
        }
    }
}

}  // namespace

int main(int argc, char** argv) { return RunWithDataDir(argc, argv, g_dataDir, RegisterAll); }
