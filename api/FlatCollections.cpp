// The flat functions of the named variable collections.
#include "api/FlatSupport.h"
#include "api/zemxmps.h"
#include "lpdata/ILPVariableCollection.h"
#include "lpdata/ILPVariableList.h"
#include "zemmgr/IZEMMgr.h"

using flat::As;
using flat::StoreFound;

namespace {

IZEMMgr* Mgr(void* h) { return As<IZEMMgr>(h); }
ILPVariableCollection* Col(void* h) { return As<ILPVariableCollection>(h); }

}  // namespace

extern "C" {

int32_t MakeAddReturnNamedVarCollection(void* mgr, const char* name, void** out) {
    return flat::AskFound(Mgr(mgr), &IZEMMgr::NewNamedVarCollection, name, out);
}
int32_t FindNamedVarCollection(void* mgr, const char* name, void** out) {
    return flat::AskFound(Mgr(mgr), &IZEMMgr::FindNamedVarCollection, name, out);
}
int32_t FirstNamedVarCollection(void* mgr, void** out) {
    return flat::AskFound(Mgr(mgr), &IZEMMgr::FrstNamedVarCollection, out);
}
int32_t NextNamedVarCollection(void* mgr, void** out) {
    return flat::AskFound(Mgr(mgr), &IZEMMgr::NextNamedVarCollection, out);
}
int32_t RemoveNamedVarCollection(void* mgr, const char* name) {
    return Mgr(mgr)->RemoveNamedVarCollection(name) ? 0 : 1;
}
int32_t AddVariableToNamedVarCollection(void* collection, void* var) {
    Col(collection)->AddVariableObject(As<ILPVariable>(var));
    return 0;
}
int32_t AddVarByNameToNamedVarCollection(void* mgr, const char* collectionName,
                                         const char* varName) {
    ILPVariableCollection* c = nullptr;
    Mgr(mgr)->FindNamedVarCollection(collectionName, &c);
    if (!c) return 1;
    ILPVariableList* vars = nullptr;
    Mgr(mgr)->GetVariableCollectionIntf(&vars);
    ILPVariable* v = vars->VarNameLookup(varName);
    if (!v) return 2;
    c->AddVariableObject(v);
    return 0;
}
int32_t GetCollectionName(void* collection, char* buf) {
    flat::CopyWhole(buf, Col(collection)->Name());
    return 0;
}
ZEM_FLAT_GET(GetCollectionNumberVariables, ILPVariableCollection, int32_t, CollectionSize)
int32_t GetCollectionFirstVariable(void* collection, void** out) {
    return StoreFound(out, Col(collection)->FrstVariableObject());
}
int32_t GetCollectionNextVariable(void* collection, void** out) {
    return StoreFound(out, Col(collection)->NextVariableObject());
}
ZEM_FLAT_GET(GetDirection, ILPVariableCollection, int16_t, GetDirection)
ZEM_FLAT_SET(SetDirection, ILPVariableCollection, int16_t, SetDirection)
ZEM_FLAT_GET(GetType, ILPVariableCollection, int16_t, GetType)
ZEM_FLAT_SET(SetType, ILPVariableCollection, int16_t, SetType)

}  // extern "C"
