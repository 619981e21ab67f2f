#include "nlpdata/QCLBinding.h"

#include "lpdata/ZEMException.h"
#include "nlpdata/QCLCorrelation.h"
#include "nlpdata/QCLLibrary.h"

QCLBinding::QCLBinding() = default;

QCLBinding::~QCLBinding() { Uninitialize(); }

bool QCLBinding::Initialize() {
    if (m_lib) return true;
    auto lib = std::make_unique<QCLLibrary>(QCLLibrary::Locate(m_path));
    const int32_t status = lib->initializeAllocate();
    if (status != 0) {
        const std::string reason = "The correlation library " + lib->Path() +
                                   " failed to initialise with error code " + std::to_string(status);
        ZEM_RAISE(zemsrc::kNlpData, "QCL Library Error", reason.c_str(), "QCLBinding::Initialize");
    }
    m_lib = std::move(lib);
    return true;
}

void QCLBinding::CreateIdMap() {
    Initialize();
    const int32_t n = m_lib->CorrelationCount();
    m_ids.clear();
    m_index.clear();
    m_ids.reserve(static_cast<size_t>(n));
    for (int32_t i = 0; i < n; ++i) {
        m_ids.push_back(m_lib->Text(m_lib->correlationId, i));
        m_index.emplace(m_ids.back(), i);  // the first of equal names wins
    }
    m_mapped = true;
}

int QCLBinding::Count() {
    if (!m_mapped) CreateIdMap();
    return static_cast<int>(m_ids.size());
}

bool QCLBinding::Id(int index, std::string& id) {
    if (index < 0 || index >= Count()) return false;
    id = m_ids[static_cast<size_t>(index)];
    return true;
}

int QCLBinding::Index(const std::string& id) {
    if (!m_mapped) CreateIdMap();
    const auto it = m_index.find(id);
    return it == m_index.end() ? -1 : it->second;
}

IQCLCorrelation* QCLBinding::AddInstance(int index, bool log) {
    Initialize();
    auto made = std::make_unique<QCLCorrelation>(*m_lib);
    made->Initialise(index);
    made->SetLogFlag(log ? 1 : 0);
    m_instances.push_back(std::move(made));
    return m_instances.back().get();
}

IQCLCorrelation* QCLBinding::InstanceFor(const std::string& id, bool log) {
    const auto found = m_byId.find(id);
    if (found != m_byId.end()) return found->second;
    const int index = Index(id);
    if (index < 0) {
        const std::string reason =
            "The correlation library " + m_lib->Path() + " has no correlation named '" + id + "'";
        ZEM_RAISE(zemsrc::kNlpData, "QCL Library Error", reason.c_str(), "QCLBinding::InstanceFor");
    }
    IQCLCorrelation* inst = AddInstance(index, log);
    m_byId.emplace(id, inst);
    return inst;
}

void QCLBinding::SetLog(bool on) {
    for (auto& inst : m_instances) inst->SetLogFlag(on ? 1 : 0);
}

void QCLBinding::Uninitialize() {
    m_byId.clear();
    m_instances.clear();
    m_ids.clear();
    m_index.clear();
    m_mapped = false;
    if (m_lib) {
        m_lib->free();
        m_lib.reset();
    }
}
