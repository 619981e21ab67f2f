// Reading speed of the standard MPS reader, side by side with CoinUtils'
// CoinMpsIO and GLPK's glp_read_mps when they are installed, on the models
// that bench/mps_generate.py writes (full, half and quarter size).
//
//   build/bench/bench_mps_read [--data-dir DIR] [benchmark options]
//   build/bench/bench_mps_read --peak-memory zem|coin|glpk FILE
//
// A reading is timed from the call to its end (for this library: to the end
// of ProcessFullCollection); releasing the model afterwards is not timed.
// --peak-memory reads FILE once with one reader and prints the process's
// peak resident size before and after.
#include <benchmark/benchmark.h>
#include <sys/resource.h>

#include <chrono>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <iostream>
#include <string>
#include <vector>

#include "BenchDataDir.h"
#include "lpdata/ILPStdDataMgr.h"
#include "lpdata/ZEMException.h"
#include "mpsutil/MPSStdReader.h"

#ifdef ZEM_BENCH_HAVE_COINUTILS
#include <CoinMessageHandler.hpp>
#include <CoinMpsIO.hpp>
#endif
#ifdef ZEM_BENCH_HAVE_GLPK
#include <glpk.h>
#endif

namespace {

std::string g_dataDir;

std::string DataFile(const char* part) { return g_dataDir + "/mps_" + part + ".mps"; }

using Clock = std::chrono::steady_clock;

// One complete read; returns the seconds it took and the model's number of
// nonzeros.
double ReadZem(const std::string& path, int* nonzeros) {
    ILPStdDataMgr* model = nullptr;
    CreateLPStdDataObject(&model);
    const auto start = Clock::now();
    {
        MPSStdReader reader(model);
        reader.ReadMPSFile(path.c_str());
    }
    const double seconds = std::chrono::duration<double>(Clock::now() - start).count();
    int n = 0, m = 0, nz = 0;
    model->ModelDimension(n, m, nz);
    *nonzeros = nz;
    model->Destroy();
    return seconds;
}

// The text side of a read alone: every line split into cards and fields
// and every number converted, without building a model. The difference to
// ReadZem is the time spent creating and storing the model's entities.
class CardScanner : public MPSStdReader {
public:
    double Scan(const std::string& path, int* cards) {
        const auto start = Clock::now();
        OpenMPSFile(path.c_str());
        double sum = 0;
        int n = 0;
        for (int16_t code = ReadMPSCard(); code != kMPSCardEndOfFile; code = ReadMPSCard()) {
            if (code != kMPSCardData) continue;
            sum += FieldNumber(kMPSFieldNumber1) + FieldNumber(kMPSFieldNumber2);
            ++n;
        }
        CloseMPSFile();
        benchmark::DoNotOptimize(sum);
        *cards = n;
        return std::chrono::duration<double>(Clock::now() - start).count();
    }
};

double ScanCards(const std::string& path, int* cards) { return CardScanner().Scan(path, cards); }

#ifdef ZEM_BENCH_HAVE_COINUTILS
double ReadCoin(const std::string& path, int* nonzeros) {
    CoinMpsIO io;
    io.messageHandler()->setLogLevel(0);
    const auto start = Clock::now();
    const int errors = io.readMps(path.c_str(), "");
    const double seconds = std::chrono::duration<double>(Clock::now() - start).count();
    *nonzeros = errors == 0 ? static_cast<int>(io.getNumElements()) : -1;
    return seconds;
}
#endif

#ifdef ZEM_BENCH_HAVE_GLPK
double ReadGlpk(const std::string& path, int* nonzeros) {
    glp_term_out(GLP_OFF);
    glp_prob* prob = glp_create_prob();
    const auto start = Clock::now();
    const int rc = glp_read_mps(prob, GLP_MPS_DECK, nullptr, path.c_str());
    const double seconds = std::chrono::duration<double>(Clock::now() - start).count();
    *nonzeros = rc == 0 ? glp_get_num_nz(prob) : -1;
    glp_delete_prob(prob);
    return seconds;
}
#endif

void RunRead(benchmark::State& state, double (*read)(const std::string&, int*), const char* part) {
    const std::string path = DataFile(part);
    if (!std::filesystem::exists(path)) {
        state.SkipWithError(("missing " + path + ": run bench/mps_generate.py").c_str());
        return;
    }
    int nonzeros = 0;
    for (auto _ : state) {
        try {
            state.SetIterationTime(read(path, &nonzeros));
        } catch (ZEM_Exception& e) {
            state.SkipWithError((e.Name() + ": " + e.Reason()).c_str());
            return;
        }
        if (nonzeros < 0) {
            state.SkipWithError("the reader refused the file");
            return;
        }
    }
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations()) *
                            static_cast<int64_t>(std::filesystem::file_size(path)));
    state.counters["count"] = nonzeros;
}

void RegisterAll() {
    struct Reader {
        const char* name;
        double (*read)(const std::string&, int*);
    };
    std::vector<Reader> readers = {{"zem", ReadZem}, {"zem-cards-only", ScanCards}};
#ifdef ZEM_BENCH_HAVE_COINUTILS
    readers.push_back({"CoinMpsIO", ReadCoin});
#endif
#ifdef ZEM_BENCH_HAVE_GLPK
    readers.push_back({"glp_read_mps", ReadGlpk});
#endif
    for (const char* part : {"quarter", "half", "full"}) {
        for (const Reader& r : readers) {
            benchmark::RegisterBenchmark(
                (std::string("MpsRead/") + r.name + "/" + part).c_str(),
                [r, part](benchmark::State& state) { RunRead(state, r.read, part); })
                ->UseManualTime()
                ->Unit(benchmark::kMillisecond)
                ->Iterations(3);
        }
    }
}

long PeakKiB() {
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return usage.ru_maxrss;
}

int PeakMemory(const std::string& which, const std::string& path) {
    const long before = PeakKiB();
    int nonzeros = 0;
    double seconds = 0;
    if (which == "zem") {
        seconds = ReadZem(path, &nonzeros);
#ifdef ZEM_BENCH_HAVE_COINUTILS
    } else if (which == "coin") {
        seconds = ReadCoin(path, &nonzeros);
#endif
#ifdef ZEM_BENCH_HAVE_GLPK
    } else if (which == "glpk") {
        seconds = ReadGlpk(path, &nonzeros);
#endif
    } else {
        std::fprintf(stderr, "unknown or unavailable reader '%s'\n", which.c_str());
        return 2;
    }
    std::printf("%s: %.3f s, %d nonzeros, peak resident %.1f MiB (%.1f MiB before the read)\n",
                which.c_str(), seconds, nonzeros, PeakKiB() / 1024.0, before / 1024.0);
    return 0;
}

}  // namespace

int main(int argc, char** argv) {
    for (int i = 1; i + 2 < argc; ++i) {
        if (std::strcmp(argv[i], "--peak-memory") != 0) continue;
        try {
            return PeakMemory(argv[i + 1], argv[i + 2]);
        } catch (ZEM_Exception& e) {
            e.Display(std::cerr);
            return 1;
        }
    }
    return RunWithDataDir(argc, argv, g_dataDir, RegisterAll);
}
