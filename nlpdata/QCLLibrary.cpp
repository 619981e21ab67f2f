#include "nlpdata/QCLLibrary.h"

#include <dlfcn.h>

#include <cstdlib>
#include <type_traits>

#include "lpdata/ZEMException.h"

namespace {

constexpr const char* kError = "QCL Library Error";

// The folder of the shared object that holds this function, with its '/'.
std::string ThisLibraryFolder() {
    Dl_info info{};
    if (dladdr(reinterpret_cast<void*>(&QCLLibrary::Locate), &info) == 0 || !info.dli_fname)
        return "";
    const std::string file = info.dli_fname;
    const size_t slash = file.rfind('/');
    return slash == std::string::npos ? "" : file.substr(0, slash + 1);
}

}  // namespace

std::string QCLLibrary::Locate(const std::string& configured) {
    if (!configured.empty()) return configured;
    const char* env = std::getenv(kEnvVar);
    if (env && *env) return env;
    return ThisLibraryFolder() + kDefaultName;
}

QCLLibrary::QCLLibrary(const std::string& path) : m_path(path) {
    static const char* const kPlace = "QCLLibrary::QCLLibrary";
    m_handle = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
    if (!m_handle) {
        const char* why = dlerror();
        const std::string reason = "Unable to open the correlation library " + path +
                                   (why ? std::string(": ") + why : std::string());
        ZEM_RAISE(zemsrc::kNlpData, kError, reason.c_str(), kPlace);
    }
    // The slots hold function pointers; each is filled from dlsym's address.
    const auto bind = [this](const char* name, auto& slot) {
        void* sym = dlsym(m_handle, name);
        if (!sym) {
            dlclose(m_handle);
            m_handle = nullptr;
            const std::string reason =
                "The correlation library " + m_path + " lacks the entry point " + name;
            ZEM_RAISE(zemsrc::kNlpData, kError, reason.c_str(), kPlace);
        }
        slot = reinterpret_cast<std::remove_reference_t<decltype(slot)>>(sym);
    };
    bind("gfx_qclInitializeAllocate", initializeAllocate);
    bind("gfx_qclFree", free);
    bind("gfx_setCorParms", setCorParms);
    bind("gfx_qclGetCorrelationCount", correlationCount);
    bind("gfx_qclGetCorrelationId", correlationId);
    bind("gfx_qclGetCorrelationDesc", correlationDesc);
    bind("gfx_qclGetCorrelationType", correlationType);
    bind("gfx_qclGetCorrelationSlackCount", slackCount);
    bind("gfx_qclGetCorrelationInpPropCount", inpPropCount);
    bind("gfx_qclGetCorrelationOutPropCount", outPropCount);
    bind("gfx_qclGetCorrelationInpPropId", inpPropId);
    bind("gfx_qclGetCorrelationOutPropId", outPropId);
    bind("gfx_qclGetCorrelationOutPropType", outPropType);
    bind("gfx_qclGetCoefCount", coefCount);
    bind("gfx_qclGetCoef", getCoef);
    bind("gfx_qclSetCoefValue", setCoefValue);
    bind("gfx_qclGetIndexPair", indexPair);
    bind("gfx_qclGenCalc", genCalc);
    bind("hqcl_GetActualNumberOutput", actualOutputCount);
}

QCLLibrary::~QCLLibrary() {
    if (m_handle) dlclose(m_handle);
}

int32_t QCLLibrary::Count(CountQuery query, int32_t corr, const char* what) const {
    int32_t n = -1;
    const int32_t status = query(corr, &n);
    Check(status, n, std::string("the ") + what + " of correlation " + std::to_string(corr),
          "QCLLibrary::Count");
    return n;
}

int32_t QCLLibrary::CorrelationCount() const {
    int32_t n = -1;
    const int32_t status = correlationCount(&n);
    Check(status, n, "its number of correlations", "QCLLibrary::CorrelationCount");
    return n;
}

void QCLLibrary::Check(int32_t status, int32_t n, const std::string& what, const char* place) const {
    if (status == 0 && n >= 0 && n <= kMaxCount) return;
    const std::string reason = "The correlation library " + m_path + " returned " +
                               (status != 0 ? "error code " + std::to_string(status)
                                            : "the count " + std::to_string(n)) +
                               " for " + what;
    ZEM_RAISE(zemsrc::kNlpData, kError, reason.c_str(), place);
}

std::string QCLLibrary::Text(TextQuery query, int32_t corr) const {
    char buf[256] = {};
    if (query(corr, buf, sizeof buf) != 0) return "";
    buf[sizeof buf - 1] = '\0';
    return buf;
}

std::string QCLLibrary::Text(PropTextQuery query, int32_t corr, int32_t item) const {
    char buf[256] = {};
    if (query(corr, item, buf, sizeof buf) != 0) return "";
    buf[sizeof buf - 1] = '\0';
    return buf;
}
