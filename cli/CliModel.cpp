#include "cli/CliModel.h"

#include "lpdata/ILPStdDataMgr.h"
#include "lpdata/ZEMException.h"

CliModel::CliModel() {
    CreateLPStdDataObject(&m_data);
    if (m_data == nullptr) {
        throw ZEM_Exception("LPStdDataMgr Error", "Unable to create the model object", "zem",
                            "", 0);
    }
}

CliModel::~CliModel() {
    if (m_data != nullptr) m_data->Destroy();
}
