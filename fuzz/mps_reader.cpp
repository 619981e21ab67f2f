// libFuzzer target: any bytes given to the standard MPS reader, or to the
// reader of other tools' files, must end in a model or in the library's
// exception, never in a crash, a hang or a leak.
#include <cstddef>
#include <cstdint>
#include <sstream>
#include <string>

#include "lpdata/ILPStdDataMgr.h"
#include "lpdata/ZEMException.h"
#include "mpsutil/MPSStdReader.h"
#include "mpsutil/MPSToolsReader.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    for (const bool tools : {false, true}) {
        ILPStdDataMgr* model = nullptr;
        CreateLPStdDataObject(&model);
        if (model == nullptr) return 0;
        {
            MPSStdReader standard(model);
            MPSToolsReader other(model);
            MPSStdReader& reader = tools ? other : standard;
            std::istringstream in(std::string(reinterpret_cast<const char*>(data), size));
            try {
                reader.ReadMPSFromStream(in);
            } catch (ZEM_Exception&) {
                // Refusing the input is a correct outcome.
            }
        }
        model->Destroy();
    }
    return 0;
}
