#include "mpsutil/MPSStdManager.h"

#include <memory>
#include <new>

#include "lpdata/ZEMException.h"
#include "mpsutil/MPSManagerFailure.h"
#include "mpsutil/MPSStdReader.h"
#include "mpsutil/MPSStdWriter.h"

namespace {

struct DestroyReader {
    void operator()(MPSStdReader* r) const { r->Destroy(); }
};
struct DestroyWriter {
    void operator()(MPSStdWriter* w) const { w->Destroy(); }
};

using ReaderPtr = std::unique_ptr<MPSStdReader, DestroyReader>;
using WriterPtr = std::unique_ptr<MPSStdWriter, DestroyWriter>;

ReaderPtr MakeReader(ILPStdDataMgr* model, const char* routine) {
    MPSStdReader* raw = nullptr;
    CreateMPSStdReaderObject(&raw, model);
    if (raw == nullptr) {
        ZEM_RAISE(zemsrc::kMpsUtil, "MPS Read Error", "Could not allocate the MPS reader object",
                  routine);
    }
    return ReaderPtr(raw);
}

WriterPtr MakeWriter(ILPStdDataMgr* model, const char* routine) {
    MPSStdWriter* raw = nullptr;
    CreateMPSStdWriterObject(&raw, model);
    if (raw == nullptr) {
        ZEM_RAISE(zemsrc::kMpsUtil, "MPS Write Error", "Could not allocate the MPS writer object",
                  routine);
    }
    return WriterPtr(raw);
}

template <typename Operation>
void RunWrapped(Operation op, const char* failed, const char* unknown, const char* routine) {
    RunAsManagerOperation(op, failed, unknown, routine, zemsrc::kMpsUtil);
}

}  // namespace

void MPSStdManager::SetMPSFileSpec(const char* path) { m_fileSpec = path != nullptr ? path : ""; }

void MPSStdManager::Destroy() { delete this; }

void MPSStdManager::GetLPDataMgr(ILPStdDataMgr** out) {
    if (out != nullptr) *out = m_model;
}

void MPSStdManager::SetLPDataMgr(ILPStdDataMgr* model) { m_model = model; }

void MPSStdManager::ReadMPSFile() {
    static const char* const kRoutine = "MPSStdManager::ReadMPSFile";
    if (m_fileSpec.empty()) {
        ZEM_RAISE(zemsrc::kMpsUtil, "MPS Read Error", "No MPS file specification provided",
                  kRoutine);
    }
    ReaderPtr reader = MakeReader(m_model, kRoutine);
    RunWrapped(
        [&] {
            reader->ReadMPSFile(m_fileSpec.c_str());
            if (m_model == nullptr) reader->TakeLPStdDataObject(&m_model);
        },
        "Read of MPS Failed", "Read of MPS Unknown Exception", kRoutine);
}

void MPSStdManager::ReadMPSStream(std::stringstream* ss) {
    static const char* const kRoutine = "MPSStdManager::ReadMPSStream";
    if (ss == nullptr) {
        ZEM_RAISE(zemsrc::kMpsUtil, "MPS Read Error", "No stream provided", kRoutine);
    }
    ReaderPtr reader = MakeReader(m_model, kRoutine);
    RunWrapped(
        [&] {
            reader->ReadMPSFromStream(*ss);
            if (m_model == nullptr) reader->TakeLPStdDataObject(&m_model);
        },
        "Read of MPS Stream Failed", "Read of MPS Stream Unknown Exception", kRoutine);
}

void MPSStdManager::WriteMPSFile() {
    static const char* const kRoutine = "MPSStdManager::WriteMPSFile";
    if (m_fileSpec.empty()) {
        ZEM_RAISE(zemsrc::kMpsUtil, "MPS Write Error", "No MPS file specification provided",
                  kRoutine);
    }
    WriterPtr writer = MakeWriter(m_model, kRoutine);
    RunWrapped([&] { writer->WriteMPSFile(m_fileSpec.c_str()); }, "Write of MPS Failed",
               "Write of MPS Unknown Exception", kRoutine);
}

void MPSStdManager::WriteMPSStream(std::stringstream* ss) {
    static const char* const kRoutine = "MPSStdManager::WriteMPSStream";
    if (ss == nullptr) {
        ZEM_RAISE(zemsrc::kMpsUtil, "MPS Write Error", "No stream provided", kRoutine);
    }
    WriterPtr writer = MakeWriter(m_model, kRoutine);
    RunWrapped([&] { writer->WriteMPSToStream(*ss); }, "Write of MPS Stream Failed",
               "Write of MPS Stream Unknown Exception", kRoutine);
}

void MPSStdManager::ReadMPSXMLStream(std::stringstream*) {}

void MPSStdManager::WriteMPSXMLStream(std::stringstream*) {}

void CreateMPSStdManagerObject(MPSStdManager** out) {
    if (out == nullptr) return;
    *out = new (std::nothrow) MPSStdManager();
}
