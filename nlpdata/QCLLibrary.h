// One opened correlation library: the shared object named by a path, with
// its nineteen entry points (nlpdata/QCLLibraryAbi.h) resolved by name.
//
// The library is opened with dlopen when a correlation is first used, never
// at start-up. Where it is found (Locate), first match wins:
//   1. the path set on the nonlinear model (SetQCLLibraryPath), when not empty;
//   2. the environment variable ZEM_QCL_LIBRARY, when set and not empty;
//   3. libzemqcl.so in the folder that holds libzemxmps.so.
// A file that cannot be opened, or that lacks an entry point, throws
// ZEM_Exception ("QCL Library Error") naming the file or the symbol.
//
// The checked queries (Count, Text) turn a nonzero status, a negative count
// or a count above kMaxCount into a ZEM_Exception, so no buffer is ever sized
// from an unchecked count.
//
//   QCLLibrary lib(QCLLibrary::Locate(""));
//   int32_t n = lib.Count(lib.inpPropCount, 0, "input count");
#pragma once

#include <cstdint>
#include <string>

#include "nlpdata/QCLLibraryAbi.h"

class QCLLibrary {
public:
    static constexpr const char* kEnvVar = "ZEM_QCL_LIBRARY";
    static constexpr const char* kDefaultName = "libzemqcl.so";
    // Largest count (correlations, properties, coefficients, slacks) taken
    // from a library; an output-by-input derivative array is bounded by its
    // square.
    static constexpr int32_t kMaxCount = 1024;

    // The path to open: `configured` when not empty, else the environment
    // variable, else the default next to libzemxmps.so.
    static std::string Locate(const std::string& configured);

    // Opens `path` and resolves every entry point, or throws.
    explicit QCLLibrary(const std::string& path);
    ~QCLLibrary();
    QCLLibrary(const QCLLibrary&) = delete;
    QCLLibrary& operator=(const QCLLibrary&) = delete;

    const std::string& Path() const { return m_path; }

    // A count query of correlation `corr`, checked: status 0 and
    // 0 <= count <= kMaxCount, else ZEM_Exception naming `what`.
    using CountQuery = int32_t (*)(int32_t, int32_t*);
    int32_t Count(CountQuery query, int32_t corr, const char* what) const;
    int32_t CorrelationCount() const;
    // A text query; an empty text when the library reports an error.
    using TextQuery = int32_t (*)(int32_t, char*, int32_t);
    using PropTextQuery = int32_t (*)(int32_t, int32_t, char*, int32_t);
    std::string Text(TextQuery query, int32_t corr) const;
    std::string Text(PropTextQuery query, int32_t corr, int32_t item) const;

    decltype(&gfx_qclInitializeAllocate) initializeAllocate = nullptr;
    decltype(&gfx_qclFree) free = nullptr;
    decltype(&gfx_setCorParms) setCorParms = nullptr;
    decltype(&gfx_qclGetCorrelationCount) correlationCount = nullptr;
    decltype(&gfx_qclGetCorrelationId) correlationId = nullptr;
    decltype(&gfx_qclGetCorrelationDesc) correlationDesc = nullptr;
    decltype(&gfx_qclGetCorrelationType) correlationType = nullptr;
    decltype(&gfx_qclGetCorrelationSlackCount) slackCount = nullptr;
    decltype(&gfx_qclGetCorrelationInpPropCount) inpPropCount = nullptr;
    decltype(&gfx_qclGetCorrelationOutPropCount) outPropCount = nullptr;
    decltype(&gfx_qclGetCorrelationInpPropId) inpPropId = nullptr;
    decltype(&gfx_qclGetCorrelationOutPropId) outPropId = nullptr;
    decltype(&gfx_qclGetCorrelationOutPropType) outPropType = nullptr;
    decltype(&gfx_qclGetCoefCount) coefCount = nullptr;
    decltype(&gfx_qclGetCoef) getCoef = nullptr;
    decltype(&gfx_qclSetCoefValue) setCoefValue = nullptr;
    decltype(&gfx_qclGetIndexPair) indexPair = nullptr;
    decltype(&gfx_qclGenCalc) genCalc = nullptr;
    decltype(&hqcl_GetActualNumberOutput) actualOutputCount = nullptr;

private:
    // Throws unless status is 0 and 0 <= n <= kMaxCount.
    void Check(int32_t status, int32_t n, const std::string& what, const char* place) const;

    std::string m_path;
    void* m_handle = nullptr;
};
