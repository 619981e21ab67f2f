// The flat functions of the model object and of the model files.
#include <cstring>
#include <fstream>
#include <sstream>
#include <string>

#include "api/FlatSupport.h"
#include "api/zemxmps.h"
#include "lpdata/ZEMException.h"
#include "zemmgr/IZEMMgr.h"
#include "zemmgr/IZEMOptionTable.h"
#include "xmpsutil/XMPSManager.h"
#include "zemoper/ZEMModelOperations.h"

using flat::As;
using flat::StoreFound;

namespace {

IZEMMgr* Mgr(void* h) { return As<IZEMMgr>(h); }

// A manager made by the object factory holding one reference, or null.
IZEMMgr* NewModel() {
    IZEMMgr* m = nullptr;
    ZEMObjectFactory(&m);
    if (m) m->IAddRef();
    return m;
}

// An extended MPS manager working on `model`; reads or writes `path`.
void RunXMPS(void* model, const char* path, bool read) {
    XMPSManager* raw = nullptr;
    CreateXMPSManagerObject(&raw);
    flat::Destroying<XMPSManager> x(raw);
    x->SetZEMDataMgr(Mgr(model));
    x->SetMPSFileSpec(path);
    if (read)
        x->ReadMPSFile();
    else
        x->WriteMPSFile();
}

// The joined path of the duplicate-name report must fit this buffer.
constexpr size_t kReportPathBuffer = 1024;

}  // namespace

extern "C" {

int32_t CreateZEMObject(void** out) { return StoreFound(out, NewModel()); }

int32_t ReleaseZEMObject(void* mgr) {
    Mgr(mgr)->IRelease();
    return 0;
}

int32_t GetZEMBuilder(void* mgr, void** out) {
    return flat::AskFound(Mgr(mgr), &IZEMMgr::GetModelBuilderIntf, out);
}

int32_t SetZEMModelName(void* mgr, const char* title) {
    Mgr(mgr)->SetModelTitle(title);
    return 0;
}

int32_t IsHybridModel(void* mgr, int32_t* out) {
    *out = Mgr(mgr)->IsHybridModel() ? 1 : 0;
    return 0;
}

int32_t SetHybridModel(void* mgr, int32_t hybrid) {
    Mgr(mgr)->SetHybridModel(hybrid != 0);
    return 0;
}

int32_t ProcessFullCollection(void* mgr) {
    Mgr(mgr)->ProcessFullCollection();
    return 0;
}

int32_t ReIndexConnectionEqn(void* mgr) {
    Mgr(mgr)->ReIndexConnectionEqn();
    return 0;
}

int32_t LinearizeGeneralNonlinear(void* mgr) {
    Mgr(mgr)->LinearizeGeneralNonlinear();
    return 0;
}

int32_t EvaluateInitial(void* mgr, const char* eqnName, const char* varName, double* out) {
    *out = Mgr(mgr)->EvaluateInitial(eqnName, varName);
    return 0;
}

int32_t UpdateEflo(void* mgr, const char* eqnName, const char* varName) {
    return Mgr(mgr)->UpdateEflo(eqnName, varName);
}

int32_t NameScreen(void* mgr, const char* name, char* out) {
    std::string screened = name ? name : "";
    Mgr(mgr)->NameScreen(screened);
    flat::CopyWhole(out, screened.c_str());
    return 0;
}

int32_t SetSCDControl(void* mgr, void* control, const char* name) {
    Mgr(mgr)->SetSCDControl(As<ISCDControl>(control), name ? name : "");
    return 0;
}

int32_t PutOptionTable(void* mgr, const char* key, const char* value) {
    IZEMOptionTable* table = nullptr;
    Mgr(mgr)->GetOptionTableIntf(&table);
    if (!table) return 1;
    table->SetOption(key, value, "");
    return 0;
}

int32_t GetVariableCollectionIntf(void* mgr, void** out) {
    return flat::AskFound(Mgr(mgr), &IZEMMgr::GetVariableCollectionIntf, out);
}

int32_t GetEquationCollectionIntf(void* mgr, void** out) {
    return flat::AskFound(Mgr(mgr), &IZEMMgr::GetEquationCollectionIntf, out);
}

int32_t GetMatrixIntf(void* mgr, void** out) {
    return flat::AskFound(Mgr(mgr), &IZEMMgr::GetMatrixIntf, out);
}

int32_t GetNonLinearModelIntf(void* mgr, void** out) {
    return flat::AskFound(Mgr(mgr), &IZEMMgr::GetNonLinearModelIntf, out);
}

int32_t RestoreFromZEMFile(void* mgr, const char* path) {
    // A file that cannot be opened is deliberately not reported.
    Mgr(mgr)->RestoreFromFile(path);
    return 0;
}

int32_t WriteZEMFile(void* mgr, const char* path) {
    Mgr(mgr)->PersistAsFile(path);
    return 0;
}

int32_t AppendFromZEM(void* mgr, void* other, const char* prefix, const char* suffix) {
    Mgr(mgr)->AppendFromZEM(Mgr(other), prefix, suffix);
    return 0;
}

int32_t AppendFromZEMFile(void* mgr, const char* path) {
    Mgr(mgr)->AppendFromFile(path);
    return 0;
}

int32_t CopyFromZEM(void* dst, void* src) {
    std::stringstream buffer(std::ios::in | std::ios::out | std::ios::binary);
    Mgr(src)->PersistAsStream(&buffer);
    buffer.seekg(0);
    Mgr(dst)->RestoreFromStream(&buffer);
    return 0;
}

int32_t CreateZEMStream(void* mgr) {
    Mgr(mgr)->PersistToLocalStream();
    return 0;
}

int32_t WriteZEMSummary(void* mgr, const char* path) {
    Mgr(mgr)->WriteZEMSummary(path);
    return 0;
}

int32_t WritePenaltyFile(void* mgr, const char* path) { return Mgr(mgr)->WritePenaltyFile(path); }

int32_t RestoreFromMPSFile(void* mgr, const char* path) {
    RunXMPS(mgr, path, true);
    return 0;
}

int32_t RestoreFromMPSStream(void* mgr, void* stream) {
    XMPSManager* raw = nullptr;
    CreateXMPSManagerObject(&raw);
    flat::Destroying<XMPSManager> x(raw);
    x->SetZEMDataMgr(Mgr(mgr));
    x->ReadMPSStream(As<std::stringstream>(stream));
    return 0;
}

int32_t WriteXMPSFile(void* mgr, const char* path) {
    RunXMPS(mgr, path, false);
    return 0;
}

int32_t CompareZEMtoBasis(void* mgr, const char* path, const char* reportPath, double tolerance,
                          int32_t* differences) {
    IZEMMgr* basis = NewModel();
    if (!basis) return -1;
    struct Release {
        IZEMMgr* m;
        ~Release() { m->IRelease(); }
    } release{basis};
    const std::string file = std::string(path ? path : "") + "xmps.mps";
    if (!std::ifstream(file).is_open()) return -2;
    RunXMPS(basis, file.c_str(), true);
    ZEMModelOperations ops;
    const int n = ops.CompareModelsToFile(Mgr(mgr), basis, reportPath, tolerance);
    if (differences) *differences = n;
    return 0;
}

int32_t CheckDuplicateNames(void* mgr, const char* dir, const char* file) {
    std::string joined = dir ? dir : "";
    if (!joined.empty() && joined.back() != '/' && joined.back() != '\\') joined += '/';
    joined += file ? file : "";
    if (joined.size() >= kReportPathBuffer)
        ZEM_RAISE(zemsrc::kZemOper, "ZEMOper Error",
                  "report path longer than 1023 characters: " + joined.substr(0, 64) + "...",
                  "ZEMModelOperations::CheckDuplicateNames");
    ZEMModelOperations ops;
    return ops.CheckDuplicateNames(Mgr(mgr), joined.c_str());
}

}  // extern "C"
