// The library's exception types.
//
// Every failure inside the library is thrown by value as a ZEM_Exception or
// one of its two specialisations, and is meant to be caught by reference:
//
//   try { reader->ReadMPSFile("model.mps"); }
//   catch (ZEM_Exception& e) { e.Display(std::cerr); }
//
// An exception carries a name (an error category such as "LPStdDataMgr Error",
// or for bad input data the specific message), a reason (the message, or the
// offending input text), the routine written "Class::Method", the source tag
// of the subsystem that threw ("lpdata", "mpsutil", "nlpdata", "zemmgr",
// "zemoper", "xmpsutil") and a line number, plus a traceback text buffer that
// callers may fill before rethrowing. Copies share the traceback buffer; the
// first DumpErrorBuf on any copy consumes it.
#pragma once

#include <cstdint>
#include <cstdio>
#include <exception>
#include <memory>
#include <ostream>
#include <sstream>
#include <string>

class ZEM_Exception : public std::exception {
public:
    ZEM_Exception(const char* name, const char* reason, const char* routine = "",
                  const char* srcFile = "", int line = 0, std::ostringstream* buffer = nullptr);
    ZEM_Exception(const ZEM_Exception&) = default;
    ZEM_Exception& operator=(const ZEM_Exception&) = default;
    ~ZEM_Exception() override = default;

    // "name: reason", for callers that only know std::exception.
    const char* what() const noexcept override;

    // Writes the Display text into the traceback buffer.
    virtual void HandleExcp();
    virtual void Display(std::ostream& os) const;
    // Writes the traceback text (to the stream, the FILE, or both) and then
    // discards the buffer, so it is written once only.
    virtual void DumpErrorBuf(std::ostream& os, FILE* fp);
    virtual void DumpErrorBuf(FILE* fp);
    virtual void DumpErrorBuf(std::ostream& os);
    // Bounded copies with strncpy semantics: no terminator when the text
    // fills the destination.
    virtual void GetExcpName(char* dst, int len) const;
    virtual void GetExcpReason(char* dst, int len) const;
    virtual void GetExcpRoutine(char* dst, int len) const;

    // The traceback buffer, or null once it was dumped.
    std::ostringstream* Getbufptr() const;

    const std::string& Name() const { return m_name; }
    const std::string& Reason() const { return m_reason; }
    const std::string& Routine() const { return m_routine; }
    const std::string& SourceFile() const { return m_srcFile; }
    int Line() const { return m_line; }

protected:
    // Shared by all copies of one exception, so a dump through one copy is
    // seen by the others.
    struct TraceBuffer {
        std::unique_ptr<std::ostringstream> stream;
    };
    std::shared_ptr<TraceBuffer> m_buffer;
    std::string m_name;
    std::string m_reason;
    std::string m_routine;
    std::string m_srcFile;
    int32_t m_line;

private:
    void DumpTo(std::ostream* os, FILE* fp);
    mutable std::string m_what;
};

class ZEM_ExcpBadAllocation : public ZEM_Exception {
public:
    ZEM_ExcpBadAllocation(const char* objectId, uint64_t size, const char* routine = "",
                          const char* srcFile = "", int line = 0,
                          std::ostringstream* buffer = nullptr);
    void Display(std::ostream& os) const override;

    const std::string& ObjectId() const { return m_objectId; }
    uint64_t Size() const { return m_size; }

private:
    std::string m_objectId;
    uint64_t m_size;
};

enum tExcpFileErrorType {
    eFileNotFound = 1,
    eFileCreateForWrite = 2,
    eFileReadError = 3,
    eFileWriteError = 4
};

class ZEM_ExcpFileError : public ZEM_Exception {
public:
    ZEM_ExcpFileError(tExcpFileErrorType type, const char* directory, const char* fileName,
                      const char* routine = "", const char* srcFile = "", int line = 0,
                      std::ostringstream* buffer = nullptr);
    void Display(std::ostream& os) const override;

    tExcpFileErrorType ErrorType() const { return m_type; }
    const std::string& FileName() const { return m_fileName; }
    const std::string& FileDirectory() const { return m_fileDir; }

private:
    std::string m_fileName;
    std::string m_fileDir;
    tExcpFileErrorType m_type;
};

// Source tags of the subsystems, used as the exception's source file.
namespace zemsrc {
constexpr const char* kLpData = "lpdata";
constexpr const char* kMpsUtil = "mpsutil";
constexpr const char* kNlpData = "nlpdata";
constexpr const char* kZemMgr = "zemmgr";
constexpr const char* kZemOper = "zemoper";
constexpr const char* kXmpsUtil = "xmpsutil";
constexpr const char* kCases = "cases";
}  // namespace zemsrc

// Throws ZEM_Exception(name, reason, routine, src, line).
[[noreturn]] void ZEMRaise(const char* name, const std::string& reason, const char* routine,
                           const char* src, int line);

// ZEM_RAISE(zemsrc::kLpData, "LPStdDataMgr Error", "message", "Class::Method")
#define ZEM_RAISE(src, name, reason, routine) ZEMRaise((name), (reason), (routine), (src), __LINE__)
