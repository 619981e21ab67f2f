// Fuzzes the model-file reader: restore into an empty model, append the same
// bytes into what was read, and write the result out again. Every failure
// must be the library's exception, and the model must release cleanly after
// any of them.
#include <cstddef>
#include <cstdint>
#include <sstream>
#include <string>

#include "lpdata/ZEMException.h"
#include "zemmgr/IZEMMgr.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const std::string bytes(reinterpret_cast<const char*>(data), size);
    IZEMMgr* mgr = nullptr;
    ZEMObjectFactory(&mgr);
    if (mgr == nullptr) return 0;
    mgr->IAddRef();
    {
        std::istringstream in(bytes);
        try {
            mgr->RestoreFromStream(&in);
        } catch (ZEM_Exception&) {
        }
    }
    {
        std::istringstream in(bytes);
        try {
            mgr->AppendFromStream(&in);
        } catch (ZEM_Exception&) {
        }
    }
    try {
        std::stringstream out;
        mgr->PersistAsStream(&out);
    } catch (ZEM_Exception&) {
    }
    mgr->IRelease();
    return 0;
}
