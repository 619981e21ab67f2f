// The flat functions of the nonlinear blocks. Manifests are real records;
// building, adding and initialising blocks needs the external modelling
// host, which this library build does not have, so those functions report
// ZEM_FLAT_NO_BLOCK_HOST (or 1, nothing made) and change nothing.
#include "api/FlatSupport.h"
#include "api/zemxmps.h"
#include "nlpdata/NLBlockManifest.h"

using flat::As;

namespace {

NLBlockManifest* Manifest(void* h) { return As<NLBlockManifest>(h); }

int32_t GetField(void* manifest, NLBlockManifest::Field f, char* buf) {
    flat::CopyWhole(buf, Manifest(manifest)->Get(f).c_str());
    return 0;
}

int32_t SetField(void* manifest, NLBlockManifest::Field f, const char* text) {
    Manifest(manifest)->Set(f, text);
    return 0;
}

}  // namespace

#define ZEM_FLAT_MANIFEST_FIELD(field)                                      \
    int32_t NLBlkManifestGet##field(void* manifest, char* buf) {            \
        return GetField(manifest, NLBlockManifest::k##field, buf);          \
    }                                                                       \
    int32_t NLBlkManifestSet##field(void* manifest, const char* text) {     \
        return SetField(manifest, NLBlockManifest::k##field, text);         \
    }

extern "C" {

int32_t CreateNonLinearBlock(void*, const char*, void**) { return 1; }

int32_t CreateNonLinearBlockManifest(void*, void** out) {
    return flat::StoreFound(out, new NLBlockManifest());
}

int32_t DestroyNonLinearBlockManifest(void* manifest) {
    Manifest(manifest)->Destroy();
    return 0;
}

int32_t AddNonLinearBlock(void*, void*) { return ZEM_FLAT_NO_BLOCK_HOST; }
int32_t NLBlkConstructBlock(void*, void*, void**) { return ZEM_FLAT_NO_BLOCK_HOST; }
int32_t NLBlkInitializeBlockHost(void*, const char*) { return ZEM_FLAT_NO_BLOCK_HOST; }

int32_t NLBlkManifestVerify(void* manifest) { return Manifest(manifest)->Verify() ? 0 : 1; }

ZEM_FLAT_MANIFEST_FIELD(GQTModelType)
ZEM_FLAT_MANIFEST_FIELD(KebDfFileSpec)
ZEM_FLAT_MANIFEST_FIELD(BlockInstanceName)
ZEM_FLAT_MANIFEST_FIELD(DelayLoad)
ZEM_FLAT_MANIFEST_FIELD(InitScriptSpec)
ZEM_FLAT_MANIFEST_FIELD(InputOutputMap)
ZEM_FLAT_MANIFEST_FIELD(ModelSourceType)
ZEM_FLAT_MANIFEST_FIELD(PerioModelTags)
ZEM_FLAT_MANIFEST_FIELD(Solver)
ZEM_FLAT_MANIFEST_FIELD(SourceDirSpec)
ZEM_FLAT_MANIFEST_FIELD(SourceFileSpec)

}  // extern "C"
