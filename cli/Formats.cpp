#include "cli/Formats.h"

#include <algorithm>
#include <cctype>
#include <cstdio>
#include <fstream>
#include <memory>
#include <sstream>

#include <unistd.h>

#include "cli/Args.h"
#include "cli/CliModel.h"
#include "lpdata/ILPStdDataMgr.h"
#include "lpdata/ZEMException.h"
#include "mpsutil/MPSStdManager.h"
#include "mpsutil/MPSToolsReader.h"
#include "xmpsutil/MPSExportWriter.h"
#include "xmpsutil/XMPSManager.h"
#include "zemmgr/IZEMMgr.h"

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

// MPS as other tools write it: free format, integer markers, OBJSENSE.
void loadToolsMps(const std::string& path, CliModel& model) {
    model.Data()->SetModelTitle("");
    MPSToolsReader(model.Data()).ReadMPSFile(path.c_str());
}

using XMPSManagerPtr = std::unique_ptr<XMPSManager, void (*)(XMPSManager*)>;

XMPSManagerPtr makeXmpsManager(IZEMMgr* model, const std::string& path) {
    XMPSManager* raw = nullptr;
    CreateXMPSManagerObject(&raw);
    if (raw == nullptr) {
        throw ZEM_Exception("MPS Read Error", "Could not allocate the XMPS manager object", "zem");
    }
    XMPSManagerPtr manager(raw, [](XMPSManager* m) { m->Destroy(); });
    manager->SetZEMDataMgr(model);
    manager->SetMPSFileSpec(path.c_str());
    return manager;
}

void loadXmps(const std::string& path, CliModel& model) {
    IZEMMgr* zem = model.Zem();
    // An empty title is replaced by the name on the file's NAME card.
    zem->SetModelTitle("");
    makeXmpsManager(zem, path)->ReadMPSFile();
}

void saveXmps(const std::string& path, CliModel& model) {
    makeXmpsManager(model.Zem(), path)->WriteMPSFile();
}

// Standard MPS for other tools; a model they would read differently is
// refused before the file is made.
void saveStandardMps(const std::string& path, CliModel& model) {
    MPSExportWriter(model.Zem()).WriteMPSFile(path.c_str());
}

void saveStandardMpsFree(const std::string& path, CliModel& model) {
    MPSExportWriter(model.Zem(), true).WriteMPSFile(path.c_str());
}

// The model file: a whole model, linear and nonlinear, in the manager's own
// binary image.
void loadZem(const std::string& path, CliModel& model) {
    if (!model.Zem()->RestoreFromFile(path.c_str())) {
        throw ZEM_ExcpFileError(eFileNotFound, "", path.c_str(), "ZEMMgr::RestoreFromFile", "zem");
    }
}

void saveZem(const std::string& path, CliModel& model) { model.Zem()->PersistAsFile(path.c_str()); }

// Opens `path` for writing (truncating it) or throws the library's file error.
std::ofstream openOutput(const std::string& path) {
    std::ofstream out(path, std::ios::out | std::ios::trunc);
    if (!out.is_open()) {
        throw ZEM_ExcpFileError(eFileCreateForWrite, "", path.c_str(), "zem convert", "zem");
    }
    return out;
}

void closeOutput(std::ofstream& out, const std::string& path) {
    out.close();
    if (out.fail()) throw ZEM_ExcpFileError(eFileWriteError, "", path.c_str(), "zem convert", "zem");
}

// GAMS model input. The text is made in memory first, so that a model the
// writer refuses leaves no half-written file behind.
void saveGams(const std::string& path, CliModel& model) {
    std::ostringstream text;
    model.Zem()->GAMSModelInput(text);
    std::ofstream out = openOutput(path);
    out << text.str();
    closeOutput(out, path);
}

// The manager's summary: heading, algebraic listing and full display. The
// manager skips a file it cannot open, so the path is tried here first.
void saveSummary(const std::string& path, CliModel& model) {
    std::ofstream probe = openOutput(path);
    closeOutput(probe, path);
    model.Zem()->WriteZEMSummary(path.c_str());
}

std::string lower(std::string s) {
    std::transform(s.begin(), s.end(), s.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return s;
}

// The path's extension in lower case, with the dot ("" when it has none).
std::string extensionOf(const std::string& path) {
    const size_t dot = path.find_last_of("./");
    return (dot != std::string::npos && path[dot] == '.') ? lower(path.substr(dot)) : "";
}

// A temporary path in the same folder as `path`, so that renaming it over
// `path` stays on one file system.
std::string temporaryBeside(const std::string& path) {
    const size_t slash = path.find_last_of('/');
    const std::string dir = slash == std::string::npos ? "" : path.substr(0, slash + 1);
    const std::string base = slash == std::string::npos ? path : path.substr(slash + 1);
    return dir + "." + base + ".zem-" + std::to_string(::getpid()) + ".tmp";
}

}  // namespace

void SaveOutput(const OutputFormat& format, const std::string& path, CliModel& model) {
    const std::string temp = temporaryBeside(path);
    try {
        format.save(temp, model);
    } catch (ZEM_ExcpFileError& e) {
        std::remove(temp.c_str());
        // The user named the target, not the temporary file.
        throw ZEM_ExcpFileError(e.ErrorType(), "", path.c_str(), e.Routine().c_str(), "zem");
    } catch (...) {
        std::remove(temp.c_str());
        throw;
    }
    if (std::rename(temp.c_str(), path.c_str()) != 0) {
        std::remove(temp.c_str());
        throw ZEM_ExcpFileError(eFileWriteError, "", path.c_str(), "zem convert", "zem");
    }
}

const std::vector<InputFormat>& InputFormats() {
    static const std::vector<InputFormat> formats = {
        {"mps", ".mps", "standard fixed-field MPS", loadStandardMps},
        {"mps-tools", ".mps", "MPS as other tools write it: free or fixed, MARKER, OBJSENSE", loadToolsMps},
        {"xmps", ".xmps", "extended MPS (XMPS): linear and nonlinear model", loadXmps},
        {"zem", ".zem", "model file: the whole model in binary", loadZem},
    };
    return formats;
}

const std::vector<OutputFormat>& OutputFormats() {
    static const std::vector<OutputFormat> formats = {
        {"xmps", ".xmps", "extended MPS (XMPS): linear and nonlinear model", saveXmps},
        {"zem", ".zem", "model file: the whole model in binary", saveZem},
        {"gams", ".gms", "GAMS model input", saveGams},
        {"mps", ".mps", "standard MPS (linear), fixed fields when the names fit", saveStandardMps},
        {"mps-free", ".mps", "standard MPS in free format (zem convert --free)", saveStandardMpsFree},
        {"summary", ".txt", "summary: heading, algebraic listing and display", saveSummary},
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
    const std::string ext = extensionOf(path);
    for (const InputFormat& f : formats) {
        if (ext == f.extension) return f;
    }
    throw UsageError("cannot tell the format of '" + path +
                     "' from its extension: use --format NAME");
}

const OutputFormat& OutputFormatNamed(const std::string& name) {
    for (const OutputFormat& f : OutputFormats()) {
        if (name == f.name) return f;
    }
    throw UsageError("unknown output format '" + name + "'");
}

const OutputFormat& ResolveOutputFormat(const std::string& path) {
    const std::string ext = extensionOf(path);
    for (const OutputFormat& f : OutputFormats()) {
        if (ext == f.extension) return f;
    }
    std::string known;
    for (const OutputFormat& f : OutputFormats()) {
        if (known.find(f.extension) == std::string::npos) known += std::string(known.empty() ? "" : ", ") + f.extension;
    }
    throw UsageError("cannot write '" + path + "': the output formats are " + known);
}
