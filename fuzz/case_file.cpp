// Fuzzes the case file reader against a small model (three variables, two
// rows, four entries and one product term): read the bytes into a
// collection, apply and take back every case read, display the collection
// and write it again. Every failure must be the library's exception, and the
// model must come back to its values after each case is taken back.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <sstream>
#include <string>

#include "cases/ZEMCaseCollection.h"
#include "lpdata/ILPEquation.h"
#include "lpdata/ILPEquationList.h"
#include "lpdata/ILPVariable.h"
#include "lpdata/ILPVariableList.h"
#include "lpdata/ZEMException.h"
#include "nlpdata/INonLinearModel.h"
#include "nlpdata/INonLinearity.h"
#include "zemmgr/IZEMMgr.h"

namespace {

IZEMMgr* BuildFuzzModel() {
    IZEMMgr* mgr = nullptr;
    ZEMObjectFactory(&mgr);
    if (mgr == nullptr) return nullptr;
    mgr->IAddRef();
    mgr->SetModelTitle("FUZZ");
    ILPVariableList* vars = nullptr;
    ILPEquationList* eqns = nullptr;
    INonLinearModel* nl = nullptr;
    mgr->GetVariableCollectionIntf(&vars);
    mgr->GetEquationCollectionIntf(&eqns);
    mgr->GetNonLinearModelIntf(&nl);
    for (const char* v : {"X1", "X2", "X3"}) vars->InsertVariable(v);
    for (const char* e : {"R1", "R2"}) eqns->InsertEquation(e);
    mgr->InsertMatrixEntry("R1", "X1", 1.0, nullptr);
    mgr->InsertMatrixEntry("R1", "X2", 2.0, nullptr);
    mgr->InsertMatrixEntry("R2", "X2", 3.0, nullptr);
    mgr->InsertMatrixEntry("R2", "X3", 4.0, nullptr);
    INonLinearity* t = nullptr;
    nl->CreateNonLinearityObject("XPROD", &t);
    t->SetEquationPtr(eqns->EqnNameLookup("R2"));
    t->AddNLConstantObject(2.0);
    t->AddVariableObject(vars->VarNameLookup("X1"));
    t->AddVariableObject(vars->VarNameLookup("X3"));
    nl->AddNonLinearityObject(t);
    mgr->ProcessFullCollection();
    return mgr;
}

std::string State(IZEMMgr* mgr) {
    std::ostringstream os;
    mgr->Display(os);
    return os.str();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    IZEMMgr* mgr = BuildFuzzModel();
    if (mgr == nullptr) return 0;
    {
        CZEMCaseCollection cases(mgr);
        std::stringstream in(std::string(reinterpret_cast<const char*>(data), size));
        try {
            cases.RestoreXLMStream(&in);
        } catch (ZEM_Exception&) {
        }
        std::ostringstream sink;
        const std::string before = State(mgr);
        for (IZEMCaseMgr* c : *cases.CaseListPtr()) {
            try {
                c->Apply();
                c->Display(sink);
                c->UnApply();
            } catch (ZEM_Exception&) {
                c->UnApply();
            }
            if (State(mgr) != before) std::abort();
        }
        cases.Display(sink);
        std::stringstream out;
        cases.PersistXLMAsStream(&out);
    }
    mgr->IRelease();
    return 0;
}
