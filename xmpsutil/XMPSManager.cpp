#include "xmpsutil/XMPSManager.h"

#include <new>
#include <sstream>

#include "lpdata/ZEMException.h"
#include "mpsutil/MPSManagerFailure.h"
#include "xmpsutil/XMPSReader.h"
#include "xmpsutil/XMPSWriter.h"

namespace {

[[noreturn]] void Fail(const char* category, const char* message, const char* routine, int line) {
    throw ZEM_Exception(category, message, routine, zemsrc::kXmpsUtil, line);
}

// Runs a reader or writer operation and rethrows its failure under the
// manager's category; the object is destroyed in every case.
template <class Worker, class Op>
void RunMapped(Worker* worker, Op op, const char* failed, const char* unknown,
               const char* routine) {
    try {
        RunAsManagerOperation([&] { op(worker); }, failed, unknown, routine, zemsrc::kXmpsUtil);
    } catch (...) {
        worker->Destroy();
        throw;
    }
}

XMPSReader* MakeReader(IZEMDataMgr* model, const char* routine) {
    XMPSReader* reader = nullptr;
    CreateXMPSReaderObject(&reader, model);
    if (reader == nullptr) {
        Fail("MPS Read Error", "Could not allocate the MPS reader object", routine, __LINE__);
    }
    return reader;
}

XMPSWriter* MakeWriter(IZEMDataMgr* model, const char* routine) {
    XMPSWriter* writer = nullptr;
    CreateXMPSWriterObject(&writer, model);
    if (writer == nullptr) {
        Fail("MPS Write Error", "Could not allocate the XMPS writer object", routine, __LINE__);
    }
    return writer;
}

}  // namespace

void XMPSManager::SetMPSFileSpec(const char* path) { m_fileSpec = path != nullptr ? path : ""; }

void XMPSManager::GetZEMDataMgr(IZEMDataMgr** out) {
    if (out != nullptr) *out = m_model;
}

void XMPSManager::SetZEMDataMgr(IZEMDataMgr* model) { m_model = model; }

void XMPSManager::Destroy() { delete this; }

void XMPSManager::ReadMPSFile() {
    static const char* const kRoutine = "XMPSManager::ReadMPSFile";
    if (m_fileSpec.empty()) {
        Fail("MPS Read Error", "No MPS file specification provided", kRoutine, __LINE__);
    }
    XMPSReader* reader = MakeReader(m_model, kRoutine);
    const std::string path = m_fileSpec;
    RunMapped(reader, [&](XMPSReader* r) { r->ReadMPSFile(path.c_str()); }, "Read of XMPS Failed",
              "Read of XMPS Unknown Exception", kRoutine);
    if (m_model == nullptr) reader->TakeZEMDataObject(&m_model);
    reader->Destroy();
}

void XMPSManager::ReadMPSStream(std::stringstream* ss) {
    static const char* const kRoutine = "XMPSManager::ReadMPSStream";
    if (ss == nullptr) Fail("MPS Read Error", "No stream provided", kRoutine, __LINE__);
    XMPSReader* reader = MakeReader(m_model, kRoutine);
    RunMapped(reader, [&](XMPSReader* r) { r->ReadMPSStream(ss); }, "Read of XMPS Stream Failed",
              "Read of XMPS Stream Unknown Exception", kRoutine);
    if (m_model == nullptr) reader->TakeZEMDataObject(&m_model);
    reader->Destroy();
}

void XMPSManager::WriteMPSFile() {
    static const char* const kRoutine = "XMPSManager::WriteMPSFile";
    if (m_fileSpec.empty()) {
        Fail("XMPS Write Error", "No XMPS file specification provided", kRoutine, __LINE__);
    }
    XMPSWriter* writer = MakeWriter(m_model, kRoutine);
    const std::string path = m_fileSpec;
    // The write of a file reports the read texts.
    RunMapped(writer, [&](XMPSWriter* w) { w->WriteMPSFile(path.c_str()); }, "Read of XMPS Failed",
              "Read of XMPS Unknown Exception", kRoutine);
    writer->Destroy();
}

void XMPSManager::WriteMPSStream(std::stringstream* ss) {
    static const char* const kRoutine = "XMPSManager::WriteMPSStream";
    if (ss == nullptr) Fail("XMPS Stream Write Error", "No XMPS stream provided", kRoutine, __LINE__);
    // A writer that cannot be made is reported at the file operation's place.
    XMPSWriter* writer = MakeWriter(m_model, "XMPSManager::WriteMPSFile");
    RunMapped(writer, [&](XMPSWriter* w) { w->WriteMPSStream(ss); }, "Write of XMPS Stream Failed",
              "Write of XMPS Unknown Exception", kRoutine);
    writer->Destroy();
}

void XMPSManager::ReadMPSXMLStream(std::stringstream* ss) {
    XMPSReader* reader = MakeReader(m_model, "XMPSManager::ReadMPSXMLStream");
    reader->ReadMPSXMLStream(ss);
    reader->Destroy();
}

void XMPSManager::WriteMPSXMLStream(std::stringstream* ss) {
    XMPSWriter* writer = MakeWriter(m_model, "XMPSManager::WriteMPSXMLStream");
    writer->WriteMPSXMLStream(ss);
    writer->Destroy();
}

void CreateXMPSManagerObject(XMPSManager** out) {
    if (out == nullptr) return;
    *out = new (std::nothrow) XMPSManager();
}
