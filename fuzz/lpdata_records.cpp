// Feeds arbitrary bytes to the binary record readers of the linear model (as
// a model file's sections would reach them), then processes, walks and
// displays whatever was read. Every outcome must be a clean read or a
// ZEM_Exception.
//
// Input: a 12-byte prefix picks the counts and the file version, the rest is
// the record stream.
#include <cstddef>
#include <cstdint>
#include <sstream>
#include <string>

#include "lpdata/ILPEquationList.h"
#include "lpdata/ILPMatrix.h"
#include "lpdata/ILPNonZero.h"
#include "lpdata/ILPSpOrdSet.h"
#include "lpdata/ILPStdDataMgr.h"
#include "lpdata/ILPVariableList.h"
#include "lpdata/LPVariableCollection.h"
#include "lpdata/ZEMException.h"

namespace {

const double kVersions[] = {1.05, 2011.3, 2015.0, 2020.1};

void Exercise(ILPStdDataMgr* mgr) {
    std::ostringstream sink;
    mgr->ProcessFullCollection();
    mgr->Display(sink);
    mgr->DisplayByRow(sink);
    mgr->DisplayByColumn(sink);
    mgr->AlgebraicDisplay(sink);
    ILPMatrix* matrix = nullptr;
    mgr->GetMatrixIntf(&matrix);
    ILPNonZero* first = matrix->FrstNonZeroObject();
    if (first != nullptr) {
        matrix->TrashNonZero(first);
        matrix->EmptyNonZeroTrash();
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    if (size < 12) return 0;
    const int nVars = data[0] % 16;
    const int nEqns = data[1] % 16;
    const int nNonZeros = data[2] % 64;
    const int nSets = data[3] % 4;
    const int nMembers = data[4] % 32;
    const double version = kVersions[data[5] % 4];
    const bool collection = (data[6] & 1) != 0;
    std::istringstream is(std::string(reinterpret_cast<const char*>(data) + 12, size - 12));

    ILPStdDataMgr* mgr = nullptr;
    CreateLPStdDataObject(&mgr);
    ILPVariableList* vars = nullptr;
    ILPEquationList* eqns = nullptr;
    ILPMatrix* matrix = nullptr;
    ILPSpOrdSetList* sets = nullptr;
    mgr->GetVariableCollectionIntf(&vars);
    mgr->GetEquationCollectionIntf(&eqns);
    mgr->GetMatrixIntf(&matrix);
    mgr->GetSpOrdSetCollectionIntf(&sets);
    ILPVariable** vt = nullptr;
    ILPEquation** et = nullptr;
    ILPNonZero** nt = nullptr;
    ILPSpOrdSet** st = nullptr;
    try {
        vars->StreamRead(nVars, &vt, &is, version);
        eqns->StreamRead(nEqns, &et, &is, version);
        matrix->StreamRead(nNonZeros, &nt, vt, et, &is);
        sets->StreamRead(nSets, nMembers, &st, vt, &is);
        if (collection) {
            LPVariableCollection col;
            col.StreamRead(vt, &is);
        }
    } catch (const ZEM_Exception&) {
    }
    try {
        Exercise(mgr);
    } catch (const ZEM_Exception&) {
    }
    delete[] vt;
    delete[] et;
    delete[] nt;
    delete[] st;
    mgr->Destroy();
    return 0;
}
