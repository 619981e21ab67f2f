#include "nlpdata/NonLinearBlockList.h"

#include "lpdata/ZEMBinaryIO.h"
#include "lpdata/ZEMException.h"

void NonLinearBlockList::StreamWrite(std::ostream* os) { zembin::writeI32(os, 0); }

void NonLinearBlockList::StreamRead(std::istream* is) {
    int32_t count = 0;
    if (!zembin::readI32(is, count))
        ZEM_RAISE(zemsrc::kNlpData, "ZEMDataMgr Error",
                  "Error during read of NonLinear Block List from binary file",
                  "NonLinearBlockList::StreamRead");
    if (count != 0)
        ZEM_RAISE(zemsrc::kNlpData, "ZEMDataMgr Error",
                  "NonLinear Block List in binary file holds blocks; nonlinear blocks are not "
                  "supported",
                  "NonLinearBlockList::StreamRead");
}
