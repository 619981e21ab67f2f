// Helpers of the XMPS tests: reading text into a new model, writing a model
// to text, and looking things up in a model.
#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include "lpdata/ILPEquation.h"
#include "lpdata/ILPEquationList.h"
#include "lpdata/ILPMatrix.h"
#include "lpdata/ILPNonZero.h"
#include "lpdata/ILPSpOrdSet.h"
#include "lpdata/ILPVariable.h"
#include "lpdata/ILPVariableList.h"
#include "lpdata/ZEMException.h"
#include "mpsutil/MPSStdReader.h"
#include "nlpdata/INonLinearModel.h"
#include "nlpdata/INonLinearity.h"
#include "xmpsutil/XMPSReader.h"
#include "xmpsutil/XMPSWriter.h"
#include "zemmgr/IZEMMgr.h"
#include "zemmgr/IZEMOptionTable.h"

namespace xmpstest {

struct MgrRelease {
    void operator()(IZEMMgr* m) const { m->IRelease(); }
};
using Model = std::unique_ptr<IZEMMgr, MgrRelease>;

inline Model NewModel() {
    IZEMMgr* mgr = nullptr;
    ZEMObjectFactory(&mgr);
    mgr->IAddRef();
    return Model(mgr);
}

// Reads XMPS text into a new model (exceptions pass on). Its title is
// emptied first, so that the NAME card sets it (a model keeps a title it
// already has).
inline Model Read(const std::string& text) {
    Model model = NewModel();
    model->SetModelTitle("");
    std::stringstream in(text);
    XMPSReader reader(model.get(), false);
    reader.ReadMPSStream(&in);
    return model;
}

// Reads a file by the extended reader, or by the standard one.
inline Model ReadFile(const std::string& path, bool extended = true) {
    Model model = NewModel();
    model->SetModelTitle("");
    if (extended) {
        XMPSReader(model.get(), false).ReadMPSFile(path.c_str());
    } else {
        MPSStdReader(model.get()).ReadMPSFile(path.c_str());
    }
    return model;
}

inline std::string Write(IZEMMgr* model) {
    std::stringstream out;
    XMPSWriter(model).WriteMPSStream(&out);
    return out.str();
}

inline ILPVariableList* Vars(IZEMMgr* m) { ILPVariableList* v = nullptr; m->GetVariableCollectionIntf(&v); return v; }
inline ILPEquationList* Eqns(IZEMMgr* m) { ILPEquationList* e = nullptr; m->GetEquationCollectionIntf(&e); return e; }
inline ILPMatrix* Matrix(IZEMMgr* m) { ILPMatrix* x = nullptr; m->GetMatrixIntf(&x); return x; }
inline INonLinearModel* NL(IZEMMgr* m) { INonLinearModel* n = nullptr; m->GetNonLinearModelIntf(&n); return n; }
inline ILPSpOrdSetList* Sets(IZEMMgr* m) { ILPSpOrdSetList* s = nullptr; m->GetSpOrdSetCollectionIntf(&s); return s; }
inline IZEMOptionTable* Options(IZEMMgr* m) { IZEMOptionTable* o = nullptr; m->GetOptionTableIntf(&o); return o; }
inline ILPVariable* Var(IZEMMgr* m, const char* name) { return Vars(m)->VarNameLookup(name); }
inline ILPEquation* Eqn(IZEMMgr* m, const char* name) { return Eqns(m)->EqnNameLookup(name); }

// The coefficient of (row, column); NaN when there is no entry.
double Coefficient(IZEMMgr* m, const char* row, const char* col);

// Every term of the model, in pool order.
std::vector<INonLinearity*> Terms(IZEMMgr* m);

// Constants of a term, in order.
std::vector<double> Constants(INonLinearity* t);
// Names of a term's variables, in argument order.
std::vector<std::string> VarNames(INonLinearity* t);

// Expects the same rows, columns, entries, terms, sets, groups and options:
// numbers exactly, or within the precision of the written number forms.
void ExpectSameModel(IZEMMgr* a, IZEMMgr* b, bool exact);

// The lines of a text.
std::vector<std::string> Lines(const std::string& text);

// Runs f and returns the ZEM_Exception it throws (fails the test if none).
template <class F>
ZEM_Exception Thrown(F f) {
    try {
        f();
    } catch (ZEM_Exception& e) {
        return e;
    }
    ADD_FAILURE() << "no ZEM_Exception thrown";
    return ZEM_Exception("none", "none");
}

}  // namespace xmpstest
