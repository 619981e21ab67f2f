// libFuzzer target: any bytes given to the extended MPS reader must end in a
// model or in the library's exception, never in a crash, a hang or a leak.
#include <cstddef>
#include <cstdint>
#include <sstream>
#include <string>

#include "lpdata/ZEMException.h"
#include "xmpsutil/XMPSReader.h"
#include "zemmgr/IZEMMgr.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    IZEMMgr* model = nullptr;
    ZEMObjectFactory(&model);
    if (model == nullptr) return 0;
    model->IAddRef();
    {
        XMPSReader reader(model, false);
        std::stringstream in(std::string(reinterpret_cast<const char*>(data), size));
        try {
            reader.ReadMPSStream(&in);
        } catch (ZEM_Exception&) {
            // Refusing the input is a correct outcome.
        }
    }
    model->IRelease();
    return 0;
}
