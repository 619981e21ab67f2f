// The same read by two builds of the library, loaded side by side in one
// process (each in its own link namespace) and alternated, so that both
// see the same machine load. Used to decide whether a speed trick pays:
//
//   build/bench/bench_reader_ab OLD/libzemxmps.so build/libzemxmps.so
//       build/bench/mps_data/mps_full.mps [ROUNDS]       (one command line)
//
// A file ending in ".xmps" is read with the XMPS reader, any other with the
// standard MPS reader. Each round reads with A, then with B, and prints the
// CPU time of each read (to the end of the model's ProcessFullCollection;
// releasing the model is not counted) and B/A; the last line gives the
// median of B/A. Put each build first in one run: the first of a pair tends
// to lose a few percent.
#include <dlfcn.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <string>
#include <vector>

#include "mpsutil/MPSStdReader.h"
#include "xmpsutil/XMPSReader.h"
#include "zemmgr/IZEMMgr.h"

namespace {

// The factory functions of one loaded build, found by their C++ names.
struct Build {
    void (*makeModel)(IZEMMgr**);
    void (*makeXmpsReader)(XMPSReader**, IZEMDataMgr*);
    void (*makeMpsReader)(MPSStdReader**, ILPStdDataMgr*);
};

template <typename F>
F Symbol(void* lib, const char* name, const char* path) {
    void* sym = dlsym(lib, name);
    if (sym == nullptr) {
        std::fprintf(stderr, "%s: no %s\n", path, name);
        std::exit(2);
    }
    return reinterpret_cast<F>(sym);
}

Build Load(const char* path) {
    void* lib = dlmopen(LM_ID_NEWLM, path, RTLD_NOW | RTLD_LOCAL);
    if (lib == nullptr) {
        std::fprintf(stderr, "%s\n", dlerror());
        std::exit(2);
    }
    Build b;
    b.makeModel = Symbol<decltype(b.makeModel)>(lib, "_Z16ZEMObjectFactoryPP7IZEMMgr", path);
    b.makeXmpsReader = Symbol<decltype(b.makeXmpsReader)>(
        lib, "_Z22CreateXMPSReaderObjectPP10XMPSReaderP11IZEMDataMgr", path);
    b.makeMpsReader = Symbol<decltype(b.makeMpsReader)>(
        lib, "_Z24CreateMPSStdReaderObjectPP12MPSStdReaderP13ILPStdDataMgr", path);
    return b;
}

double CpuMs() {
    timespec t;
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &t);
    return t.tv_sec * 1e3 + t.tv_nsec / 1e6;
}

double TimedRead(const Build& b, const char* path, bool xmps) {
    IZEMMgr* model = nullptr;
    b.makeModel(&model);
    model->IAddRef();
    const double start = CpuMs();
    if (xmps) {
        XMPSReader* r = nullptr;
        b.makeXmpsReader(&r, model);
        r->ReadMPSFile(path);
        r->Destroy();
    } else {
        MPSStdReader* r = nullptr;
        b.makeMpsReader(&r, model);
        r->ReadMPSFile(path);
        r->Destroy();
    }
    const double ms = CpuMs() - start;
    model->IRelease();
    return ms;
}

}  // namespace

int main(int argc, char** argv) {
    if (argc < 4) {
        std::fprintf(stderr, "usage: %s LIB_A LIB_B FILE [ROUNDS]\n", argv[0]);
        return 2;
    }
    const Build a = Load(argv[1]);
    const Build b = Load(argv[2]);
    const std::string file = argv[3];
    const bool xmps = file.size() > 5 && file.compare(file.size() - 5, 5, ".xmps") == 0;
    const int rounds = argc > 4 ? std::max(1, std::atoi(argv[4])) : 6;
    std::vector<double> ratios;
    for (int i = 0; i < rounds; ++i) {
        const double ta = TimedRead(a, argv[3], xmps);
        const double tb = TimedRead(b, argv[3], xmps);
        ratios.push_back(tb / ta);
        std::printf("A %.0f ms  B %.0f ms  B/A %.3f\n", ta, tb, tb / ta);
        std::fflush(stdout);
    }
    std::sort(ratios.begin(), ratios.end());
    std::printf("B/A median %.3f, range %.3f-%.3f\n", ratios[ratios.size() / 2], ratios.front(),
                ratios.back());
    return 0;
}
