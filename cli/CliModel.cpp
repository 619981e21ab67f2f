#include "cli/CliModel.h"

#include "lpdata/ILPStdDataMgr.h"
#include "lpdata/ZEMException.h"
#include "zemmgr/IZEMMgr.h"

CliModel::~CliModel() {
    if (m_data != nullptr) m_data->Destroy();
    if (m_zem != nullptr) m_zem->IRelease();
}

ILPStdDataMgr* CliModel::Data() {
    if (m_zem != nullptr) return m_zem;
    if (m_data == nullptr) {
        CreateLPStdDataObject(&m_data);
        if (m_data == nullptr) {
            throw ZEM_Exception("LPStdDataMgr Error", "Unable to create the model object", "zem",
                                "", 0);
        }
    }
    return m_data;
}

IZEMMgr* CliModel::Zem() {
    if (m_zem != nullptr) return m_zem;
    ZEMObjectFactory(&m_zem);
    if (m_zem == nullptr) {
        throw ZEM_Exception("ZEMMgr Error", "Unable to create the model manager object", "zem", "", 0);
    }
    m_zem->IAddRef();
    if (m_data != nullptr) {
        m_data->Destroy();
        m_data = nullptr;
    }
    return m_zem;
}
