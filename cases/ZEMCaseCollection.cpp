#include "cases/ZEMCaseCollection.h"

#include <fstream>

#include "cases/ZEMCaseMgr.h"
#include "cases/ZEMEditRecord.h"
#include "lpdata/ILPVariable.h"
#include "lpdata/ILPVariableList.h"
#include "lpdata/ZEMBinaryIO.h"
#include "lpdata/ZEMException.h"
#include "zemmgr/IZEMMgr.h"
#include "zemmgr/ZEMModelFile.h"

namespace {

constexpr const char* kCategory = "CZEMCaseCollection Error";
constexpr const char* kReadRoutine = "CZEMCaseCollection::RestoreFromStream";

[[noreturn]] void raise(const std::string& message, const char* routine) {
    ZEM_RAISE(zemsrc::kCases, kCategory, message, routine);
}

}  // namespace

CZEMCaseCollection::CZEMCaseCollection() = default;

CZEMCaseCollection::CZEMCaseCollection(IZEMMgr* mgr) : CZEMCaseCollection(mgr, nullptr) {}

CZEMCaseCollection::CZEMCaseCollection(IZEMMgr* mgr, IORVA_Control* control)
    : m_mgr(mgr), m_control(control) {
    if (m_mgr == nullptr) return;
    m_mgr->IAddRef();
    m_mgr->ModelDimension(m_dimension[0], m_dimension[1], m_dimension[2]);
    m_mgr->GetModelTitle(m_name);
    ILPVariableList* vars = nullptr;
    m_mgr->GetVariableCollectionIntf(&vars);
    if (vars != nullptr) {
        m_initialValues.reserve(static_cast<size_t>(vars->NumberOfVariables()));
        for (ILPVariable* v = vars->FrstVariableObject(); v; v = vars->NextVariableObject())
            m_initialValues.push_back(v->GetVarValue());
    }
    m_resetAfterUndo = true;
}

CZEMCaseCollection::~CZEMCaseCollection() {
    for (IZEMCaseMgr* c : m_cases) c->Destroy();
    if (m_mgr != nullptr) m_mgr->IRelease();
}

IZEMCaseMgr* CZEMCaseCollection::CreateNewCaseMgr(int number, const char* name,
                                                  const char* description) {
    if (m_mgr == nullptr) return nullptr;
    return new CZEMCaseMgr(number, name, description, m_mgr, m_control);
}

void CZEMCaseCollection::AddCaseMgr(IZEMCaseMgr* c) {
    if (c == nullptr) return;
    m_cases.push_back(c);
    m_byNumber.emplace(c->GetCaseNumber(), c);
    m_byName.emplace(c->GetCaseName(), c);
}

IZEMCaseMgr* CZEMCaseCollection::GetCaseByIndex(int number) {
    const auto it = m_byNumber.find(number);
    return it == m_byNumber.end() ? nullptr : it->second;
}

IZEMCaseMgr* CZEMCaseCollection::GetCaseByName(const char* name) {
    if (name == nullptr) return nullptr;
    const auto it = m_byName.find(name);
    return it == m_byName.end() ? nullptr : it->second;
}

void CZEMCaseCollection::GetModelDimension(int& n, int& m, int& nz) const {
    n = m_dimension[0];
    m = m_dimension[1];
    nz = m_dimension[2];
}

// ---- applying -----------------------------------------------------------

int CZEMCaseCollection::ApplyOne(IZEMCaseMgr* c) {
    if (c == nullptr) return -1;
    PreApplyOperations();
    c->Apply();
    PostApplyOperations();
    return 0;
}

int CZEMCaseCollection::UnApplyOne(IZEMCaseMgr* c) {
    if (c == nullptr) return -1;
    PreUnApplyOperations();
    c->UnApply();
    PostUnApplyOperations();
    return 0;
}

int CZEMCaseCollection::ApplyCase(const char* name) { return ApplyOne(GetCaseByName(name)); }
int CZEMCaseCollection::ApplyCaseNumber(int number) { return ApplyOne(GetCaseByIndex(number)); }
int CZEMCaseCollection::UnApplyCase(const char* name) { return UnApplyOne(GetCaseByName(name)); }
int CZEMCaseCollection::UnApplyCaseNumber(int number) {
    return UnApplyOne(GetCaseByIndex(number));
}

int CZEMCaseCollection::ApplyCaseNumberSettings(int number) {
    IZEMCaseMgr* c = GetCaseByIndex(number);
    if (c == nullptr) return -1;
    c->ApplySettings();
    return 0;
}

int CZEMCaseCollection::PostUnApplyOperations() {
    if (m_resetAfterUndo) ResetInitialValues();
    return 0;
}

void CZEMCaseCollection::ResetInitialValues() {
    ILPVariableList* vars = nullptr;
    if (m_mgr != nullptr) m_mgr->GetVariableCollectionIntf(&vars);
    if (vars == nullptr) return;
    size_t i = 0;
    for (ILPVariable* v = vars->FrstVariableObject(); v && i < m_initialValues.size();
         v = vars->NextVariableObject()) {
        double value = m_initialValues[i++];
        const double lo = v->GetBoundLower();
        const double up = v->GetBoundUpper();
        if (lo <= up) value = value < lo ? lo : (value > up ? up : value);
        v->SetVarValue(value);
    }
}

bool CZEMCaseCollection::VerifyZEMObject() {
    if (m_mgr == nullptr) return false;
    int n = 0, m = 0, nz = 0;
    m_mgr->ModelDimension(n, m, nz);
    return n == m_dimension[0] && m == m_dimension[1] && nz == m_dimension[2] &&
           m_initialValues.size() == static_cast<size_t>(n);
}

void CZEMCaseCollection::Display(std::ostream& os) {
    os << "\nZ E M   C A S E   S T A C K I N G   S U M M A R Y ...\n\n";
    for (IZEMCaseMgr* c : m_cases) c->Display(os);
}

// ---- case file ----------------------------------------------------------

int CZEMCaseCollection::PersistXLMAsStream(std::stringstream* ss) {
    if (m_name.size() >= kNameField)
        raise("Collection name longer than 128 characters does not fit the XLMFile header",
              "CZEMCaseCollection::PersistXLMAsStream");
    unsigned char header[kHeaderSize] = {};
    zembin::putF64(header, kVersion);
    zembin::put32(header + 8, static_cast<int32_t>(m_cases.size()));
    for (int i = 0; i < 3; ++i) zembin::put32(header + 12 + 4 * i, m_dimension[i]);
    zembin::putName(header + 24, kNameField, m_name);
    zembin::writeBytes(ss, header, sizeof header);
    for (IZEMCaseMgr* c : m_cases) c->PersistAsStream(ss);
    return 0;
}

int CZEMCaseCollection::PersistXLMAsFile(const char* path) {
    // Made in memory first, so a refusal leaves no file behind.
    std::stringstream ss;
    PersistXLMAsStream(&ss);
    ZEMModelFile::WriteToPath(path, "CZEMCaseCollection::PersistXLMAsFile", zemsrc::kCases,
                              [&ss](std::ofstream* out) { *out << ss.rdbuf(); });
    return 0;
}

int CZEMCaseCollection::RestoreXLMStream(std::stringstream* ss) {
    unsigned char header[kHeaderSize];
    if (!zembin::readExact(ss, header, sizeof header))
        raise("Error during read of XLMFile Header from binary stream", kReadRoutine);
    if (zembin::getF64(header) != kVersion) return -1;
    if (m_mgr == nullptr) raise("No model to read the XLMFile against", kReadRoutine);

    int dim[3];
    for (int i = 0; i < 3; ++i) dim[i] = zembin::get32(header + 12 + 4 * i);
    int n = 0, m = 0, nz = 0;
    m_mgr->ModelDimension(n, m, nz);
    if (dim[0] != n || dim[1] != m || dim[2] != nz)
        raise("XLMFile was made for a model of " + std::to_string(dim[0]) + " variables, " +
                  std::to_string(dim[1]) + " equations and " + std::to_string(dim[2]) +
                  " nonzeros, not this one",
              kReadRoutine);
    if (zembin::getName(header + 24, kNameField).size() >= kNameField)
        raise("XLMFile collection name without its terminator", kReadRoutine);
    const int32_t count = zembin::get32(header + 8);
    if (count < 0) raise("Negative case count in XLMFile header", kReadRoutine);

    // Nothing is sized by the count: cases are read one by one until the
    // count is reached or a record falls short.
    const ZEMEditTargets targets = ZEMEditTargets::FromModel(m_mgr);
    for (int32_t i = 0; i < count; ++i) {
        IZEMCaseMgr* c = nullptr;
        CZEMCaseMgr::RestoreFromStream(ss, m_mgr, m_control, targets, &c);
        AddCaseMgr(c);
    }
    return 0;
}

int CZEMCaseCollection::RestoreXLMFile(const char* path) {
    std::ifstream in(path ? path : "", std::ios::in | std::ios::binary);
    if (!in.is_open())
        throw ZEM_ExcpFileError(eFileNotFound, "", path ? path : "",
                                "CZEMCaseCollection::RestoreXLMFile", zemsrc::kCases, __LINE__);
    std::stringstream ss;
    if (in.peek() != std::char_traits<char>::eof()) ss << in.rdbuf();
    if (in.bad())
        throw ZEM_ExcpFileError(eFileReadError, "", path, "CZEMCaseCollection::RestoreXLMFile",
                                zemsrc::kCases, __LINE__);
    return RestoreXLMStream(&ss);
}
