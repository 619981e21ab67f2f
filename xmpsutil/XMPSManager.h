// Front object of the extended MPS dialect.
//
//   XMPSManager* mgr = nullptr;
//   CreateXMPSManagerObject(&mgr);
//   mgr->SetZEMDataMgr(model);          // optional: else the read makes one
//   mgr->SetMPSFileSpec("refinery.xmps");
//   mgr->ReadMPSFile();                 // throws ZEM_Exception on failure
//   mgr->Destroy();
//
// The model is not owned by the manager. Failures of the reader or writer
// are reported under the manager's own category: a file that cannot be
// opened or created passes on as ZEM_ExcpFileError; any other ZEM_Exception
// becomes "MPS Manager Failure" with a text naming the operation (the write
// of a file deliberately reports the read texts "Read of XMPS Failed" and
// "Read of XMPS Unknown Exception"), its traceback buffer carrying the
// original exception's listing and traceback.
#pragma once

#include <sstream>
#include <string>

#include "xmpsutil/IXMPSManager.h"

class XMPSManager : public IXMPSManager {
public:
    XMPSManager() = default;
    XMPSManager(const XMPSManager&) = delete;
    XMPSManager& operator=(const XMPSManager&) = delete;
    ~XMPSManager() override = default;

    void SetMPSFileSpec(const char* path) override;
    void ReadMPSFile() override;
    void WriteMPSFile() override;
    void ReadMPSStream(std::stringstream* ss) override;
    void WriteMPSStream(std::stringstream* ss) override;
    // Forwarded to the reader's and writer's XML stream operations, which
    // do nothing.
    void ReadMPSXMLStream(std::stringstream* ss) override;
    void WriteMPSXMLStream(std::stringstream* ss) override;
    void Destroy() override;
    void GetZEMDataMgr(IZEMDataMgr** out) override;
    void SetZEMDataMgr(IZEMDataMgr* model) override;

private:
    IZEMDataMgr* m_model = nullptr;
    std::string m_fileSpec;
};

// Stores a new manager in *out, or null when it cannot be made.
void CreateXMPSManagerObject(XMPSManager** out);
