// The command line shared by the benchmarks that read the generated MPS
// models: "--data-dir DIR" names the folder of the models (by default
// mps_data beside the benchmark program); every other argument goes to
// Google Benchmark.
#pragma once

#include <benchmark/benchmark.h>

#include <cstring>
#include <filesystem>
#include <string>
#include <vector>

// Takes --data-dir out of the arguments into dataDir, registers the
// benchmarks and runs them.
inline int RunWithDataDir(int argc, char** argv, std::string& dataDir, void (*registerAll)()) {
    dataDir = (std::filesystem::path(argv[0]).parent_path() / "mps_data").string();
    std::vector<char*> rest = {argv[0]};
    for (int i = 1; i < argc; ++i) {
        if (std::strcmp(argv[i], "--data-dir") == 0 && i + 1 < argc) {
            dataDir = argv[++i];
            continue;
        }
        rest.push_back(argv[i]);
    }
    int restCount = static_cast<int>(rest.size());
    if (registerAll != nullptr) registerAll();
    benchmark::Initialize(&restCount, rest.data());
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
