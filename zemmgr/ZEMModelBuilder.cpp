#include "zemmgr/ZEMModelBuilder.h"

#include <string>

#include "lpdata/ILPEquation.h"
#include "lpdata/ILPEquationList.h"
#include "lpdata/ILPMatrix.h"
#include "lpdata/ILPNonZero.h"
#include "lpdata/ILPSpOrdSet.h"
#include "lpdata/ILPVariable.h"
#include "lpdata/ILPVariableList.h"
#include "lpdata/ZEMException.h"
#include "nlpdata/INonLinearModel.h"
#include "zemmgr/IZEMMgr.h"

namespace {

// Type codes of the kinds that have their own maker.
enum : int16_t {
    kLog = 2,
    kExp = 3,
    kUnknown = 7,
    kPow = 14,
    kXPow = 15,
    kEvap = 16,
    kEI = 17,
    kTPercent = 18,
    kFltqb = 20,
    kDiv = 21
};

[[noreturn]] void fail(const char* category, const std::string& message, const char* routine) {
    ZEM_RAISE(zemsrc::kZemMgr, category, message, routine);
}

}  // namespace

ZEMModelBuilder::ZEMModelBuilder(IZEMDataMgr* mgr) : m_mgr(mgr) {
    mgr->GetVariableCollectionIntf(&m_vars);
    mgr->GetEquationCollectionIntf(&m_eqns);
    mgr->GetMatrixIntf(&m_matrix);
    mgr->GetSpOrdSetCollectionIntf(&m_sets);
    mgr->GetNonLinearModelIntf(&m_nonlinear);
}

// ---- variables and equations --------------------------------------------

void ZEMModelBuilder::MakeAddVariable(const char* name) { m_vars->InsertVariable(name); }

void ZEMModelBuilder::MakeAddReturnVariable(const char* name, ILPVariable** out) {
    ILPVariable* v = m_vars->InsertVariable(name);
    if (out != nullptr) *out = v;
}

void ZEMModelBuilder::MakeAddVariableNew(const char* name, double lower, double upper,
                                         double value, int16_t type) {
    ILPVariable* v = nullptr;
    m_vars->CreateNewVariableObject(&v);
    if (v == nullptr)
        fail("ZEM Model Builder Error", "Unable to create new Variable data object",
             "ZEMModelBuilder::MakeAddVariableNew");
    v->SetName(name);
    v->SetBoundLower(lower);
    v->SetBoundUpper(upper);
    v->SetVarValue(value);
    v->SetVarType(type);
    m_vars->AddVariableObject(v);
}

void ZEMModelBuilder::MakeAddReturnVariableNew(const char* name, double lower, double upper,
                                               double value, int16_t type, ILPVariable** out) {
    ILPVariable* v = nullptr;
    m_vars->CreateNewVariableObject(&v);
    if (v == nullptr)
        fail("ZEM Model Builder Error", "Unable to create new Variable data object",
             "ZEMModelBuilder::MakeAddReturnVariableNew");
    v->SetName(name);
    v->SetBoundLower(lower);
    v->SetBoundUpper(upper);
    v->SetVarValue(value);
    v->SetVarType(type);
    m_vars->AddVariableObject(v);
    if (out != nullptr) *out = v;
}

void ZEMModelBuilder::MakeAddEquation(const char* name) { m_eqns->InsertEquation(name); }

void ZEMModelBuilder::MakeAddReturnEquation(const char* name, ILPEquation** out) {
    ILPEquation* e = m_eqns->InsertEquation(name);
    if (out != nullptr) *out = e;
}

void ZEMModelBuilder::MakeAddEquationNew(const char* name, int16_t type, double rhs,
                                         double range) {
    ILPEquation* e = nullptr;
    m_eqns->CreateNewEquationObject(&e);
    if (e == nullptr)
        fail("ZEM Model Builder Error", "Unable to create new Equation data object",
             "ZEMModelBuilder::MakeAddEquationNew");
    e->SetName(name);
    e->SetType(type);
    e->SetRHS(rhs);
    e->SetRange(range);
    m_eqns->AddEquationObject(e);
}

void ZEMModelBuilder::MakeAddReturnEquationNew(const char* name, int16_t type, double rhs,
                                               double range, ILPEquation** out) {
    ILPEquation* e = nullptr;
    m_eqns->CreateNewEquationObject(&e);
    if (e == nullptr)
        fail("ZEM Model Builder Error", "Unable to create new Equation data object",
             "ZEMModelBuilder::MakeAddReturnEquationNew");
    e->SetName(name);
    e->SetType(type);
    e->SetRHS(rhs);
    e->SetRange(range);
    m_eqns->AddEquationObject(e);
    if (out != nullptr) *out = e;
}

// ---- linear entries -----------------------------------------------------

void ZEMModelBuilder::MakeAddLinearNonZero(const char* eqnName, const char* varName,
                                           double coef) {
    m_mgr->InsertMatrixEntry(eqnName, varName, coef, nullptr);
}

void ZEMModelBuilder::MakeAddReturnLinearNonZero(const char* eqnName, const char* varName,
                                                 double coef, ILPNonZero** out) {
    ILPNonZero* nz = nullptr;
    m_mgr->InsertMatrixEntry(eqnName, varName, coef, &nz);
    if (out != nullptr) *out = nz;
}

void ZEMModelBuilder::MakeAddLinearNonZeroNew(ILPEquation* eqn, ILPVariable* var, double coef) {
    ILPNonZero* nz = nullptr;
    if (eqn != nullptr && var != nullptr) m_matrix->CreateNewNonZeroObject(&nz);
    if (nz == nullptr)
        fail("ZEMModelBuilder Error",
             "MakeAddLinearNonZeroNew - Unable to create new NonZero object",
             "ZEMModelBuilder::MakeAddLinearNonZeroNew");
    nz->SetEquationPtr(eqn);
    nz->SetVariablePtr(var);
    nz->SetCoefficient(coef);
    m_matrix->AddNonZeroObject(nz);
}

void ZEMModelBuilder::MakeAddReturnLinearNonZeroNew(ILPEquation* eqn, ILPVariable* var,
                                                    double coef, ILPNonZero** out) {
    ILPNonZero* nz = nullptr;
    if (eqn != nullptr && var != nullptr) m_matrix->CreateNewNonZeroObject(&nz);
    if (nz == nullptr)
        fail("ZEMModelBuilder Error",
             "MakeAddReturnLinearNonZeroNew - Unable to create new NonZero object",
             "ZEMModelBuilder::MakeAddReturnLinearNonZeroNew");
    nz->SetEquationPtr(eqn);
    nz->SetVariablePtr(var);
    nz->SetCoefficient(coef);
    ILPNonZero* added = m_matrix->AddNonZeroObject(nz);
    if (out != nullptr) *out = added;
}

// ---- nonlinear terms ----------------------------------------------------

void ZEMModelBuilder::MakeNonLinearityByName(const char* name, ILPEquation* eqn,
                                             INonLinearity** out) {
    static const char* const kMessage =
        "MakeNonLinearityByName - Could not resolve nonlinearity by name";
    static const char* const kRoutine = "ZEMModelBuilder::MakeNonLinearityByName";
    if (name == nullptr || name[0] == '\0') fail("ZEMModelBuilder Error", kMessage, kRoutine);
    int16_t code = kUnknown;
    m_nonlinear->NonlinearityTypeNameToTypeID(name, &code);
    // Only the unknown kind's own keyword may resolve to it.
    const std::string key = std::string(name).substr(0, std::string(name).find(':'));
    if (code == kUnknown && key != "NLUNKNOWN") fail("ZEMModelBuilder Error", kMessage, kRoutine);
    INonLinearity* term = nullptr;
    m_nonlinear->CreateNonLinearityObject(name, &term);
    if (term == nullptr) fail("ZEMModelBuilder Error", kMessage, kRoutine);
    term->SetEquationPtr(eqn);
    if (out != nullptr)
        *out = term;
    else
        term->Destroy();  // nobody could add it to the pool
}

void ZEMModelBuilder::MakeNonLinearityByCode(int16_t code, ILPEquation* eqn,
                                             INonLinearity** out) {
    INonLinearity* term = nullptr;
    m_nonlinear->CreateNonLinearityObject(code, &term);
    if (term == nullptr)
        fail("ZEMModelBuilder Error",
             "MakeNonLinearityByCode - Unable to create new Nonlinearity object",
             "ZEMModelBuilder::MakeNonLinearityByCode");
    term->SetEquationPtr(eqn);
    if (out != nullptr)
        *out = term;
    else
        term->Destroy();
}

int ZEMModelBuilder::AddNonLinearity(INonLinearity* term) {
    if (term == nullptr || term->GetEquationPtr() == nullptr)
        fail("ZEMModelBuilder Error", "AddNonLinearity - Nonlinearity has no Equation",
             "ZEMModelBuilder::AddNonLinearity");
    return m_nonlinear->AddNonLinearityObject(term);
}

void ZEMModelBuilder::Complete(const MakerTexts& texts, INonLinearity* term, ILPEquation* eqn,
                               int nVars, ILPVariable** vars, int nConsts, const double* consts,
                               INonLinearity** out) {
    const std::string message = std::string(texts.maker) + " - Unable to create new Nonlinearity object";
    if (term == nullptr) fail("ZEMModelBuilder Error", message, texts.routine);
    // A term needs its row, and every argument it is given must exist.
    bool usable = eqn != nullptr && nVars >= 0 && nConsts >= 0 &&
                  (nVars == 0 || vars != nullptr) && (nConsts == 0 || consts != nullptr);
    for (int i = 0; usable && i < nVars; ++i) usable = vars[i] != nullptr;
    if (!usable) {
        term->Destroy();
        fail("ZEMModelBuilder Error", message, texts.routine);
    }
    term->SetEquationPtr(eqn);
    for (int i = 0; i < nConsts; ++i) term->AddNLConstantObject(consts[i]);
    for (int i = 0; i < nVars; ++i) term->AddVariableObject(vars[i]);
    try {
        m_nonlinear->AddNonLinearityObject(term);
    } catch (...) {
        term->Destroy();  // refused terms stay with the maker
        throw;
    }
    if (out != nullptr) *out = term;
}

void ZEMModelBuilder::MakeByCode(const MakerTexts& texts, int16_t code, ILPEquation* eqn,
                                 int nVars, ILPVariable** vars, int nConsts, const double* consts,
                                 INonLinearity** out) {
    INonLinearity* term = nullptr;
    m_nonlinear->CreateNonLinearityObject(code, &term);
    Complete(texts, term, eqn, nVars, vars, nConsts, consts, out);
}

void ZEMModelBuilder::MakeNonLinearityFast(int16_t code, ILPEquation* eqn, int nVars,
                                           ILPVariable** vars, int nConsts, const double* consts,
                                           INonLinearity** out) {
    MakeByCode({"MakeNonLinearityFast", "ZEMModelBuilder::MakeNonLinearityFast"}, code, eqn,
               nVars, vars, nConsts, consts, out);
}

void ZEMModelBuilder::MakeNonLinearityLog(ILPEquation* eqn, int nVars, ILPVariable** vars,
                                          int nConsts, const double* consts, INonLinearity** out) {
    MakeByCode({"MakeNonLinearityLog", "ZEMModelBuilder::MakeNonLinearityLog"}, kLog, eqn, nVars,
               vars, nConsts, consts, out);
}

void ZEMModelBuilder::MakeNonLinearityExp(ILPEquation* eqn, int nVars, ILPVariable** vars,
                                          int nConsts, const double* consts, INonLinearity** out) {
    MakeByCode({"MakeNonLinearityExp", "ZEMModelBuilder::MakeNonLinearityExp"}, kExp, eqn, nVars,
               vars, nConsts, consts, out);
}

// The two power makers report the exponential maker's function text.
void ZEMModelBuilder::MakeNonLinearityPow(ILPEquation* eqn, int nVars, ILPVariable** vars,
                                          int nConsts, const double* consts, INonLinearity** out) {
    MakeByCode({"MakeNonLinearityPow", "ZEMModelBuilder::MakeNonLinearityExp"}, kPow, eqn, nVars,
               vars, nConsts, consts, out);
}

void ZEMModelBuilder::MakeNonLinearityDivision(ILPEquation* eqn, int nVars, ILPVariable** vars,
                                               int nConsts, const double* consts,
                                               INonLinearity** out) {
    MakeByCode({"MakeNonLinearityDivision", "ZEMModelBuilder::MakeNonLinearityDivision"}, kDiv,
               eqn, nVars, vars, nConsts, consts, out);
}

void ZEMModelBuilder::MakeNonLinearityEVAPGDOT(ILPEquation* eqn, int nVars, ILPVariable** vars,
                                               int nConsts, const double* consts,
                                               INonLinearity** out) {
    MakeByCode({"MakeNonLinearityEVAPGDOT", "ZEMModelBuilder::MakeNonLinearityEVAPGDOT"}, kEvap,
               eqn, nVars, vars, nConsts, consts, out);
}

void ZEMModelBuilder::MakeNonLinearityXPow(ILPEquation* eqn, int nVars, ILPVariable** vars,
                                           int nConsts, const double* consts,
                                           INonLinearity** out) {
    MakeByCode({"MakeNonLinearityXPow", "ZEMModelBuilder::MakeNonLinearityExp"}, kXPow, eqn,
               nVars, vars, nConsts, consts, out);
}

void ZEMModelBuilder::MakeNonLinearityEI(ILPEquation* eqn, int nVars, ILPVariable** vars,
                                         int nConsts, const double* consts, INonLinearity** out) {
    MakeByCode({"MakeNonLinearityEI", "ZEMModelBuilder::MakeNonLinearityEI"}, kEI, eqn, nVars,
               vars, nConsts, consts, out);
}

void ZEMModelBuilder::MakeNonLinearityTPercent(ILPEquation* eqn, int nVars, ILPVariable** vars,
                                               int nConsts, const double* consts,
                                               INonLinearity** out) {
    MakeByCode({"MakeNonLinearityTPercent", "ZEMModelBuilder::MakeNonLinearityTPercent"},
               kTPercent, eqn, nVars, vars, nConsts, consts, out);
}

void ZEMModelBuilder::MakeNonLinearityFastQCL(const char* id, ILPEquation* eqn, int nVars,
                                              ILPVariable** vars, int nConsts,
                                              const double* consts, INonLinearity** out) {
    INonLinearity* term = nullptr;
    if (id != nullptr) m_nonlinear->CreateNLQclObject(id, &term);
    Complete({"MakeNonLinearityFastQCL", "ZEMModelBuilder::MakeNonLinearityFastQCL"}, term, eqn,
             nVars, vars, nConsts, consts, out);
}

// Reports exactly the texts of the correlation maker before it.
void ZEMModelBuilder::MakeNonLinearityFastNLE(const char* id, const char* text1,
                                              const char* text2, ILPEquation* eqn, int nVars,
                                              ILPVariable** vars, int nConsts,
                                              const double* consts, INonLinearity** out) {
    INonLinearity* term = nullptr;
    if (id != nullptr)
        m_nonlinear->CreateNLNleObject(id, &term, text1 ? text1 : "", text2 ? text2 : "");
    Complete({"MakeNonLinearityFastQCL", "ZEMModelBuilder::MakeNonLinearityFastQCL"}, term, eqn,
             nVars, vars, nConsts, consts, out);
}

void ZEMModelBuilder::MakeNonLinearityFastSCD(const char* id, ILPEquation* eqn, int nVars,
                                              ILPVariable** vars, int nConsts,
                                              const double* consts, INonLinearity** out) {
    INonLinearity* term = nullptr;
    if (id != nullptr) m_nonlinear->CreateNLScdObject(id, &term);
    Complete({"MakeNonLinearityFastSCD", "ZEMModelBuilder::MakeNonLinearityFastSCD"}, term, eqn,
             nVars, vars, nConsts, consts, out);
}

void ZEMModelBuilder::MakeNonLinearityFLTQB(ILPEquation* eqn, int nVars, ILPVariable** vars,
                                            int nConsts, const double* consts,
                                            INonLinearity** out) {
    MakeByCode({"MakeNonLinearityFLTQB", "ZEMModelBuilder::MakeNonLinearityFLTQB"}, kFltqb, eqn,
               nVars, vars, nConsts, consts, out);
}

// ---- special ordered sets -----------------------------------------------

void ZEMModelBuilder::MakeSpecialOrderedSet(const char* name, int16_t type, int nVars,
                                            ILPVariable** vars, ILPSpOrdSet** out) {
    ILPSpOrdSet* set = nullptr;
    if (nVars >= 0 && (nVars == 0 || vars != nullptr)) m_sets->CreateNewSpOrdSetObject(&set);
    if (set == nullptr)
        fail("ZEMModelBuilder Error",
             "MakeSpecialOrderedSet - Unable to create new Special Ordered Set object",
             "ZEMModelBuilder::MakeSpecialOrderedSet");
    set->SetName(name ? name : "");
    set->SetType(type);
    for (int i = 0; i < nVars; ++i)
        if (vars[i] != nullptr) set->AddVariableObject(vars[i]);
    m_sets->AddSpOrdSetObject(set);
    if (out != nullptr) *out = set;
}

// ---- edits of what was built --------------------------------------------

void ZEMModelBuilder::MakeNonLinearityFastWRAP(const char* id, ILPEquation* eqn, int nVars,
                                               ILPVariable** vars, int nConsts,
                                               const double* consts, INonLinearity** out) {
    INonLinearity* term = nullptr;
    if (id != nullptr) m_nonlinear->CreateNLWrapObject(id, &term);
    Complete({"MakeNonLinearityFastWRAP", "ZEMModelBuilder::MakeNonLinearityFastWRAP"}, term, eqn,
             nVars, vars, nConsts, consts, out);
}

void ZEMModelBuilder::EliminateVariable(ILPVariable* var) { m_mgr->RemoveVariable(var); }

bool ZEMModelBuilder::EliminateVariableByName(const char* name) {
    ILPVariable* var = name ? m_vars->VarNameLookup(name) : nullptr;
    if (var == nullptr) return false;
    m_mgr->RemoveVariable(var);
    return true;
}

void ZEMModelBuilder::EliminateEquation(ILPEquation* eqn) { m_mgr->RemoveEquation(eqn); }

bool ZEMModelBuilder::EliminateEquationByName(const char* name) {
    ILPEquation* eqn = name ? m_eqns->EqnNameLookup(name) : nullptr;
    if (eqn == nullptr) return false;
    m_mgr->RemoveEquation(eqn);
    return true;
}

void ZEMModelBuilder::AddSoftBounds(ILPVariable* var, double relaxedLower, double relaxedUpper) {
    if (var == nullptr) return;
    var->SetRelaxedBoundLower(relaxedLower);
    var->SetRelaxedBoundUpper(relaxedUpper);
}

int ZEMModelBuilder::AddSpecialOrderedSetVariable(ILPSpOrdSet* set, ILPVariable* var) {
    if (set == nullptr) return 0;
    return var != nullptr ? set->AddVariableObject(var) : set->GetSize();
}

int ZEMModelBuilder::AddSpecialOrderedSetVariableByName(ILPSpOrdSet* set, const char* varName) {
    ILPVariable* var = varName ? m_vars->VarNameLookup(varName) : nullptr;
    if (set == nullptr || var == nullptr) return -1;
    return set->AddVariableObject(var);
}

void ZEMModelBuilder::FindSpecialOrderedSet(const char* name, ILPSpOrdSet** out) {
    *out = name ? m_sets->SOSNameLookup(name) : nullptr;
}

int ZEMModelBuilder::AddNonLinearityValue(INonLinearity* term, double value) {
    return term != nullptr ? term->AddNLConstantObject(value) : 0;
}

int ZEMModelBuilder::AddNonLinearityVariable(INonLinearity* term, ILPVariable* var) {
    if (term == nullptr) return 0;
    return var != nullptr ? term->AddVariableObject(var) : term->NumberOfVariableTerms();
}

int ZEMModelBuilder::AddNonLinearityVariableByName(INonLinearity* term, const char* varName) {
    ILPVariable* var = varName ? m_vars->VarNameLookup(varName) : nullptr;
    if (term == nullptr || var == nullptr) return -1;
    return term->AddVariableObject(var);
}

void ZEMModelBuilder::TrashNonLinearity(INonLinearity* term) {
    if (term != nullptr) m_nonlinear->TrashNonLinearity(term);
}

void ZEMModelBuilder::EmptyNonLinearityTrash() { m_nonlinear->EmptyNonLinearityTrash(); }
