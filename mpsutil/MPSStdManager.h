// Front object of the standard MPS dialect: reads a model from the file set
// with SetMPSFileSpec (or from a stream) with an MPSStdReader, and writes it
// with an MPSStdWriter.
//
//   MPSStdManager* mgr = nullptr;
//   CreateMPSStdManagerObject(&mgr);
//   mgr->SetLPDataMgr(model);          // optional: else the read makes one
//   mgr->SetMPSFileSpec("blend.mps");
//   mgr->ReadMPSFile();                // throws ZEM_Exception on failure
//   mgr->GetLPDataMgr(&model);
//   mgr->Destroy();
//
// The model is never owned by the manager: one that a read had to make is
// handed to the caller through GetLPDataMgr and released with its Destroy.
//
// Failures: a file that cannot be opened or created passes on as the
// reader's or writer's ZEM_ExcpFileError; every other ZEM_Exception becomes
// "MPS Manager Failure" / "Read of MPS Failed" (or "Write of MPS Failed"),
// whose traceback buffer carries the original traceback and the original
// exception's Display text; anything else becomes "MPS Manager Failure" /
// "Read of MPS Unknown Exception" (or "Write of MPS Unknown Exception").
#pragma once

#include <sstream>
#include <string>

#include "mpsutil/IMPSManagerBase.h"

class ILPStdDataMgr;

class MPSStdManager : public IMPSManagerBase {
public:
    MPSStdManager() = default;
    MPSStdManager(const MPSStdManager&) = delete;
    MPSStdManager& operator=(const MPSStdManager&) = delete;
    ~MPSStdManager() override = default;

    void SetMPSFileSpec(const char* path) override;
    void ReadMPSFile() override;
    // Writes the section header cards of the model (see MPSStdWriter).
    void WriteMPSFile() override;
    void ReadMPSStream(std::stringstream* ss) override;
    void WriteMPSStream(std::stringstream* ss) override;
    // The standard dialect has no XML form: these do nothing.
    void ReadMPSXMLStream(std::stringstream* ss) override;
    void WriteMPSXMLStream(std::stringstream* ss) override;
    void Destroy() override;
    virtual void GetLPDataMgr(ILPStdDataMgr** out);
    virtual void SetLPDataMgr(ILPStdDataMgr* model);

private:
    ILPStdDataMgr* m_model = nullptr;
    std::string m_fileSpec;
};

// Stores a new manager in *out, or null when it cannot be made.
void CreateMPSStdManagerObject(MPSStdManager** out);
