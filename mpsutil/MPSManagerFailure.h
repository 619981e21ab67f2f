// The failure mapping shared by the MPS and XMPS manager objects: a reader or
// writer operation runs, and its failure reaches the caller as the manager's.
// File errors pass through unchanged; other library exceptions become
// "MPS Manager Failure" with `failed` as the reason and the inner exception's
// account (its display and traceback) in the traceback; anything else
// becomes "MPS Manager Failure" with `unknown`.
#pragma once

#include <sstream>

#include "lpdata/ZEMException.h"

[[noreturn]] inline void RethrowAsManagerFailure(ZEM_Exception& inner, const char* failed,
                                                 const char* routine, const char* src, int line) {
    auto* trace = new std::ostringstream;
    inner.Display(*trace);
    if (std::ostringstream* buf = inner.Getbufptr()) *trace << buf->str();
    throw ZEM_Exception("MPS Manager Failure", failed, routine, src, line, trace);
}

template <typename Operation>
void RunAsManagerOperation(Operation op, const char* failed, const char* unknown,
                           const char* routine, const char* src) {
    try {
        op();
    } catch (ZEM_ExcpFileError&) {
        throw;
    } catch (ZEM_Exception& e) {
        RethrowAsManagerFailure(e, failed, routine, src, __LINE__);
    } catch (...) {
        throw ZEM_Exception("MPS Manager Failure", unknown, routine, src, __LINE__);
    }
}
