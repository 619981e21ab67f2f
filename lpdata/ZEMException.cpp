#include "lpdata/ZEMException.h"

#include <cstring>

namespace {

void boundedCopy(const std::string& text, char* dst, int len) {
    if (dst == nullptr || len <= 0) return;
    std::strncpy(dst, text.c_str(), static_cast<size_t>(len));
}

}  // namespace

ZEM_Exception::ZEM_Exception(const char* name, const char* reason, const char* routine,
                             const char* srcFile, int line, std::ostringstream* buffer)
    : m_buffer(std::make_shared<TraceBuffer>()),
      m_name(name ? name : ""),
      m_reason(reason ? reason : ""),
      m_routine(routine ? routine : ""),
      m_srcFile(srcFile ? srcFile : ""),
      m_line(line) {
    m_buffer->stream.reset(buffer ? buffer : new std::ostringstream);
}

const char* ZEM_Exception::what() const noexcept {
    try {
        m_what = m_name + ": " + m_reason;
        return m_what.c_str();
    } catch (...) {
        return "ZEM_Exception";
    }
}

void ZEM_Exception::HandleExcp() {
    if (std::ostringstream* buf = Getbufptr()) Display(*buf);
}

void ZEM_Exception::Display(std::ostream& os) const {
    os << "Exception Name : " << m_name << std::endl;
    os << "Exception Reason : " << m_reason << std::endl;
    if (!m_routine.empty()) os << "Exception Routine: " << m_routine << std::endl;
    if (!m_srcFile.empty()) os << "Exception Src File: " << m_srcFile << std::endl;
    if (m_line != 0) os << "Exception Line No: " << m_line << std::endl;
    os << std::endl;
}

void ZEM_Exception::DumpTo(std::ostream* os, FILE* fp) {
    std::ostringstream* buf = Getbufptr();
    if (buf == nullptr) {
        static const char kNull[] = "NULL Error Traceback Buffer\n";
        if (os) *os << kNull;
        if (fp) std::fwrite(kNull, 1, sizeof(kNull) - 1, fp);
        return;
    }
    const std::string text = buf->str();
    if (fp && !text.empty()) std::fwrite(text.data(), 1, text.size(), fp);
    if (os) *os << text << std::endl;
    m_buffer->stream.reset();
}

void ZEM_Exception::DumpErrorBuf(std::ostream& os, FILE* fp) { DumpTo(&os, fp); }
void ZEM_Exception::DumpErrorBuf(FILE* fp) { DumpTo(nullptr, fp); }
void ZEM_Exception::DumpErrorBuf(std::ostream& os) { DumpTo(&os, nullptr); }

void ZEM_Exception::GetExcpName(char* dst, int len) const { boundedCopy(m_name, dst, len); }
void ZEM_Exception::GetExcpReason(char* dst, int len) const { boundedCopy(m_reason, dst, len); }
void ZEM_Exception::GetExcpRoutine(char* dst, int len) const { boundedCopy(m_routine, dst, len); }

std::ostringstream* ZEM_Exception::Getbufptr() const {
    return m_buffer ? m_buffer->stream.get() : nullptr;
}

ZEM_ExcpBadAllocation::ZEM_ExcpBadAllocation(const char* objectId, uint64_t size,
                                             const char* routine, const char* srcFile,
                                             int line, std::ostringstream* buffer)
    : ZEM_Exception("ZEM_ExcpBadAllocation", "Allocation (new) Exception", routine, srcFile, line,
                    buffer),
      m_objectId(objectId ? objectId : ""),
      m_size(size) {}

void ZEM_ExcpBadAllocation::Display(std::ostream& os) const {
    ZEM_Exception::Display(os);
    os << "Allocation Failed for Object :\n";
    os << "Object ID : " << m_objectId << "   SizeOf : " << m_size << std::endl;
    os << std::endl;
}

ZEM_ExcpFileError::ZEM_ExcpFileError(tExcpFileErrorType type, const char* directory,
                                     const char* fileName, const char* routine,
                                     const char* srcFile, int line, std::ostringstream* buffer)
    : ZEM_Exception("ZEM_ExcpFileError", "File Operation Exception", routine, srcFile, line,
                    buffer),
      m_fileName(fileName ? fileName : ""),
      m_fileDir(directory ? directory : ""),
      m_type(type) {}

void ZEM_ExcpFileError::Display(std::ostream& os) const {
    ZEM_Exception::Display(os);
    os << "File Directory : " << m_fileDir << std::endl;
    os << "File Name : " << m_fileName << std::endl;
    switch (m_type) {
        case eFileNotFound: os << "File Not Found\n"; break;
        case eFileCreateForWrite: os << "Error Creating File for Write\n"; break;
        case eFileReadError: os << "Error during data READ\n"; break;
        case eFileWriteError: os << "Error during data WRITE\n"; break;
        default: os << "General File Operation Error - Type Unknown\n"; break;
    }
}

void ZEMRaise(const char* name, const std::string& reason, const char* routine, const char* src,
              int line) {
    throw ZEM_Exception(name, reason.c_str(), routine, src, line);
}
