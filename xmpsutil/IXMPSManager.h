// The front object of the extended MPS dialect: reads a model from an XMPS
// file or stream into a model data manager and writes one out, creating an
// XMPSReader or XMPSWriter for each operation.
#pragma once

#include "mpsutil/IMPSManagerBase.h"

class IZEMDataMgr;

class IXMPSManager : public IMPSManagerBase {
public:
    ~IXMPSManager() override = default;
    // The model read into or written from; after a read into no model, the
    // model the reader made (the caller then owns it and releases it).
    virtual void GetZEMDataMgr(IZEMDataMgr** out) = 0;
    virtual void SetZEMDataMgr(IZEMDataMgr* model) = 0;
};
