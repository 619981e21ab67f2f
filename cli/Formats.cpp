#include "cli/Formats.h"

#include <algorithm>
#include <cctype>
#include <memory>

#include "cli/Args.h"
#include "cli/CliModel.h"
#include "lpdata/ILPStdDataMgr.h"
#include "lpdata/ZEMException.h"
#include "mpsutil/MPSStdManager.h"

namespace {

void loadStandardMps(const std::string& path, CliModel& model) {
    MPSStdManager* raw = nullptr;
    CreateMPSStdManagerObject(&raw);
    if (raw == nullptr) {
        throw ZEM_Exception("MPS Read Error", "Could not allocate the MPS manager object", "zem");
    }
    std::unique_ptr<MPSStdManager, void (*)(MPSStdManager*)> manager(
        raw, [](MPSStdManager* m) { m->Destroy(); });
    // An empty title is replaced by the name on the file's NAME card.
    model.Data()->SetModelTitle("");
    manager->SetLPDataMgr(model.Data());
    manager->SetMPSFileSpec(path.c_str());
    manager->ReadMPSFile();
}

std::string lower(std::string s) {
    std::transform(s.begin(), s.end(), s.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return s;
}

}  // namespace

const std::vector<InputFormat>& InputFormats() {
    static const std::vector<InputFormat> formats = {
        {"mps", ".mps", "standard fixed-field MPS", loadStandardMps},
    };
    return formats;
}

const InputFormat& ResolveInputFormat(const std::string& path, const std::string& formatName) {
    const auto& formats = InputFormats();
    if (!formatName.empty()) {
        for (const InputFormat& f : formats) {
            if (lower(formatName) == f.name) return f;
        }
        throw UsageError("unknown input format '" + formatName + "'");
    }
    const size_t dot = path.find_last_of("./");
    const std::string ext = (dot != std::string::npos && path[dot] == '.') ? lower(path.substr(dot)) : "";
    for (const InputFormat& f : formats) {
        if (ext == f.extension) return f;
    }
    throw UsageError("cannot tell the format of '" + path +
                     "' from its extension: use --format NAME");
}
