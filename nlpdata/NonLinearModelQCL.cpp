// The nonlinear model's correlation slots, forwarded to its QCLBinding.
#include "nlpdata/NonLinearModel.h"
#include "nlpdata/QCLBinding.h"

QCLBinding& NonLinearModel::Qcl() {
    if (!m_qcl) m_qcl = std::make_unique<QCLBinding>();
    return *m_qcl;
}

bool NonLinearModel::InitializeQCL() { return Qcl().Initialize(); }

void NonLinearModel::CreateQCLIdMap() { Qcl().CreateIdMap(); }

int NonLinearModel::GetQCLCorrelationCount() { return Qcl().Count(); }

bool NonLinearModel::GetQCLCorrelationId(int index, std::string& id) {
    id.clear();
    return Qcl().Id(index, id);
}

int NonLinearModel::GetQCLCorrelationIndex(std::string id) { return Qcl().Index(id); }

IQCLCorrelation* NonLinearModel::AddQCLCorrelationInstance(int index) {
    return Qcl().AddInstance(index, m_hqcl);
}

void NonLinearModel::UninitializeQCL() {
    if (m_qcl) m_qcl->Uninitialize();
}

void NonLinearModel::SetQCLLibraryPath(const char* path) { Qcl().SetPath(path ? path : ""); }

const char* NonLinearModel::GetQCLLibraryPath() { return Qcl().Path().c_str(); }

void NonLinearModel::SetHqcl(bool on) {
    m_hqcl = on;
    if (m_qcl) m_qcl->SetLog(on);
}

IQCLCorrelation* NonLinearModel::QCLInstance(const std::string& id) {
    return Qcl().InstanceFor(id, m_hqcl);
}
