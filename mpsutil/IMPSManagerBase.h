// The front object of an MPS dialect: reads and writes one model through a
// file name or a caller's stream, creating the dialect's reader or writer
// for each operation and reporting their failures under its own category.
#pragma once

#include <sstream>

class IMPSManagerBase {
public:
    virtual ~IMPSManagerBase() = default;
    virtual void SetMPSFileSpec(const char* path) = 0;
    virtual void ReadMPSFile() = 0;
    virtual void WriteMPSFile() = 0;
    virtual void ReadMPSStream(std::stringstream* ss) = 0;
    virtual void WriteMPSStream(std::stringstream* ss) = 0;
    virtual void ReadMPSXMLStream(std::stringstream* ss) = 0;
    virtual void WriteMPSXMLStream(std::stringstream* ss) = 0;
    virtual void Destroy() = 0;
};
