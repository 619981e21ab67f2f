// The iteration data snapshot. See IIterationData.h.
#pragma once

#include <vector>

#include "zemmgr/IIterationData.h"

class ZEMIterationData : public IIterationData {
public:
    ZEMIterationData(int nVars, int nEqns);
    explicit ZEMIterationData(IZEMMgr* mgr);

    tVarIterDataStruct* ArrayVarDataStruct() override { return m_vars.data(); }
    tEqnIterDataStruct* ArrayEqnDataStruct() override { return m_eqns.data(); }
    int NumberOfVarRecords() const override { return static_cast<int>(m_vars.size()); }
    int NumberOfEqnRecords() const override { return static_cast<int>(m_eqns.size()); }
    void UpdateVarandEqnArrays(IZEMMgr* mgr) override;
    void Destroy() override { delete this; }

private:
    void AllocateAndPopulateVarEqnArrays(IZEMMgr* mgr);

    std::vector<tVarIterDataStruct> m_vars;
    std::vector<tEqnIterDataStruct> m_eqns;
};
