// The transform companion of ZEMMgr. See IZEMModelTransform.h.
#pragma once

#include "zemmgr/IZEMModelTransform.h"

class IZEMDataMgr;

class ZEMModelTransform : public IZEMModelTransform {
public:
    explicit ZEMModelTransform(IZEMDataMgr* mgr) : m_mgr(mgr) {}
    bool FixVariable(const char* varName, double value) override;
    bool ScaleEquation(const char* eqnName, double factor) override;
    int ProjectValuesOntoBounds() override;
    int DropRanges() override;

private:
    IZEMDataMgr* m_mgr;
};
