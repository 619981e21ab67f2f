#include "cli/Compressed.h"

#include <cctype>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <vector>

#include <unistd.h>
#include <zlib.h>

#include "lpdata/ZEMException.h"

namespace {

[[noreturn]] void fail(const std::string& path, const std::string& why) {
    throw ZEM_Exception("Compressed Input Error", ("'" + path + "': " + why).c_str(), "zem");
}

}  // namespace

bool InflatedInput::IsCompressed(const std::string& path) {
    if (path.size() < 3) return false;
    std::string tail = path.substr(path.size() - 3);
    for (char& c : tail) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    return tail == ".gz";
}

std::string InflatedInput::Inner(const std::string& path) {
    return IsCompressed(path) ? path.substr(0, path.size() - 3) : path;
}

InflatedInput::InflatedInput(const std::string& path) {
    gzFile in = gzopen(path.c_str(), "rb");
    if (in == nullptr) throw ZEM_ExcpFileError(eFileNotFound, "", path.c_str(), "zem", "zem");
    std::unique_ptr<gzFile_s, int (*)(gzFile)> closer(in, gzclose);
    // zlib passes data that is not gzip through unchanged; a ".gz" name on
    // such a file is a mistake, not a plain model.
    if (gzdirect(in)) fail(path, "not gzip-compressed data");

    const char* tmp = std::getenv("TMPDIR");
    std::string dirTemplate = std::string(tmp && *tmp ? tmp : "/tmp") + "/zem-XXXXXX";
    std::vector<char> dirName(dirTemplate.begin(), dirTemplate.end());
    dirName.push_back('\0');
    if (mkdtemp(dirName.data()) == nullptr) fail(path, "cannot make a temporary folder");
    m_dir = dirName.data();
    const std::string inner = Inner(path);
    const size_t slash = inner.find_last_of('/');
    m_path = m_dir + "/" + (slash == std::string::npos ? inner : inner.substr(slash + 1));

    try {
        FILE* out = std::fopen(m_path.c_str(), "wb");
        if (out == nullptr) fail(path, "cannot write its inflated copy " + m_path);
        std::vector<char> buffer(1 << 16);
        int n = 0;
        bool written = true;
        while ((n = gzread(in, buffer.data(), static_cast<unsigned>(buffer.size()))) > 0) {
            written = written && std::fwrite(buffer.data(), 1, static_cast<size_t>(n), out) ==
                                     static_cast<size_t>(n);
        }
        written = std::fclose(out) == 0 && written;
        int code = Z_OK;
        const char* message = gzerror(in, &code);
        if (n < 0 || code != Z_OK) {
            fail(path, std::string("truncated or corrupt compressed data (") + message + ")");
        }
        // The end of the stream is checked (length and CRC) when it is closed.
        if (gzclose(closer.release()) != Z_OK) {
            fail(path, "truncated or corrupt compressed data");
        }
        if (!written) fail(path, "cannot write its inflated copy " + m_path);
    } catch (...) {
        Remove();
        throw;
    }
}

InflatedInput::~InflatedInput() { Remove(); }

void InflatedInput::Remove() {
    if (!m_path.empty()) std::remove(m_path.c_str());
    if (!m_dir.empty()) ::rmdir(m_dir.c_str());
    m_path.clear();
    m_dir.clear();
}
