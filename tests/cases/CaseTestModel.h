// The refinery example loaded into a model manager, for the case tests.
#pragma once

#include <gtest/gtest.h>

#include <string>

#include "lpdata/ILPEquation.h"
#include "lpdata/ILPEquationList.h"
#include "lpdata/ILPVariable.h"
#include "lpdata/ILPVariableList.h"
#include "lpdata/ZEMException.h"
#include "xmpsutil/XMPSManager.h"
#include "zemmgr/IZEMMgr.h"

struct RefineryModel {
    IZEMMgr* mgr = nullptr;

    RefineryModel() {
        ZEMObjectFactory(&mgr);
        mgr->IAddRef();
        mgr->SetModelTitle("");  // the NAME card gives the title
        XMPSManager* x = nullptr;
        CreateXMPSManagerObject(&x);
        x->SetZEMDataMgr(mgr);
        const std::string path = std::string(ZEM_SOURCE_DIR) + "/examples/refinery.xmps";
        x->SetMPSFileSpec(path.c_str());
        x->ReadMPSFile();
        x->Destroy();
    }
    ~RefineryModel() { mgr->IRelease(); }
    RefineryModel(const RefineryModel&) = delete;
    RefineryModel& operator=(const RefineryModel&) = delete;

    ILPVariable* Var(const char* name) {
        ILPVariableList* l = nullptr;
        mgr->GetVariableCollectionIntf(&l);
        return l->VarNameLookup(name);
    }
    ILPEquation* Eqn(const char* name) {
        ILPEquationList* l = nullptr;
        mgr->GetEquationCollectionIntf(&l);
        return l->EqnNameLookup(name);
    }
};

// The name and reason of the ZEM_Exception `f` throws ("none" when none).
template <typename F>
std::string FailureOf(F&& f) {
    try {
        f();
    } catch (ZEM_Exception& e) {
        return e.Name() + ": " + e.Reason() + " @ " + e.Routine();
    }
    return "none";
}
