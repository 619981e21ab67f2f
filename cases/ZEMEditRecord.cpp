#include "cases/ZEMEditRecord.h"

#include <cstdint>

#include "cases/ZEMEdit.h"
#include "lpdata/ILPEquationList.h"
#include "lpdata/ILPMatrix.h"
#include "lpdata/ILPNonZero.h"
#include "lpdata/ILPVariableList.h"
#include "lpdata/ZEMBinaryIO.h"
#include "lpdata/ZEMException.h"
#include "nlpdata/INonLinearModel.h"
#include "zemmgr/IZEMMgr.h"

void CaseReadError(const std::string& message) {
    ZEM_RAISE(zemsrc::kCases, "CZEMCaseMgr Error", message, "CZEMCaseMgr::RestoreFromStream");
}

namespace {

template <class T>
T* at(const std::vector<T*>& table, int32_t index, const char* what) {
    T* object = (index > 0 && static_cast<size_t>(index) < table.size()) ? table[index] : nullptr;
    if (object == nullptr)
        CaseReadError(std::string("XLMFile edit names ") + what + " index " +
                      std::to_string(index) + ", which the model does not have");
    return object;
}

ILPVariable* var(const unsigned char* b, const ZEMEditTargets& t) {
    return at(t.vars, zembin::get32(b), "variable");
}
ILPEquation* eqn(const unsigned char* b, const ZEMEditTargets& t) {
    return at(t.eqns, zembin::get32(b), "equation");
}

// An edit of one entity's scalar: the entity's index, then the value.
template <class E, auto Find, auto Get>
IZEMEdit* scalar(const unsigned char* b, const ZEMEditTargets& t) {
    return new E(t.mgr, Find(b, t), Get(b + 4));
}

IZEMEdit* bound(const unsigned char* b, const ZEMEditTargets& t) {
    return new ZEMEditVarBoundValue(t.mgr, var(b, t), zembin::get16(b + 4), zembin::getF64(b + 6));
}

IZEMEdit* coefficient(const unsigned char* b, const ZEMEditTargets& t) {
    ILPEquation* row = eqn(b, t);
    ILPVariable* col = at(t.vars, zembin::get32(b + 4), "variable");
    ILPNonZero* nz = FindMatrixEntry(t.matrix, row, col);
    if (nz == nullptr)
        CaseReadError(std::string("XLMFile edit names a matrix entry the model does not have: ") +
                      row->GetName() + " / " + col->GetName());
    return new ZEMEditNZCoeff(t.mgr, nz, zembin::getF64(b + 8));
}

IZEMEdit* termCoefficient(const unsigned char* b, const ZEMEditTargets& t) {
    auto* term = dynamic_cast<NonLinearity*>(at(t.terms, zembin::get32(b), "nonlinear term"));
    if (term == nullptr) CaseReadError("XLMFile edit names a term whose multiplier cannot be edited");
    return new ZEMEditNonLinearityCoeff(t.mgr, term, zembin::getF64(b + 4));
}

IZEMEdit* option(const unsigned char* b, const ZEMEditTargets& t) {
    const std::string name = zembin::getName(b, ZEMEditOptionTable::kField);
    const std::string value = zembin::getName(b + ZEMEditOptionTable::kField, ZEMEditOptionTable::kField);
    // The 100-byte fields hold at most 99 characters and their terminator.
    if (name.size() >= ZEMEditOptionTable::kField || value.size() >= ZEMEditOptionTable::kField)
        CaseReadError("XLMFile option edit without the terminator of its name or value");
    if (name.empty()) CaseReadError("XLMFile option edit without a name");
    return new ZEMEditOptionTable(t.mgr, name.c_str(), value.c_str());
}

struct EditKind {
    size_t bodySize;  // bytes after the code
    IZEMEdit* (*make)(const unsigned char* body, const ZEMEditTargets& t);
};

// By edit code; index 0 is no edit.
const EditKind kKinds[] = {
    {0, nullptr},
    {12, scalar<ZEMEditVarValue, var, zembin::getF64>},
    {14, bound},
    {6, scalar<ZEMEditVarType, var, zembin::get16>},
    {12, scalar<ZEMEditEqnRHS, eqn, zembin::getF64>},
    {12, scalar<ZEMEditEqnRange, eqn, zembin::getF64>},
    {16, coefficient},
    {6, scalar<ZEMEditEqnType, eqn, zembin::get16>},
    {12, termCoefficient},
    {2 * ZEMEditOptionTable::kField, option},
};

const char* const kShortEdit = "Error during read of XLMFile edit record from binary file";

// Straight from the stream's buffer: a million small records would spend
// much of their time in the checks each formatted read makes.
bool readRaw(std::istream* is, unsigned char* p, size_t n) {
    return is->rdbuf()->sgetn(reinterpret_cast<char*>(p), static_cast<std::streamsize>(n)) ==
           static_cast<std::streamsize>(n);
}

}  // namespace

ILPNonZero* FindMatrixEntry(ILPMatrix* matrix, ILPEquation* row, ILPVariable* col) {
    constexpr int kWalkLimit = 32;
    if (matrix == nullptr || row == nullptr || col == nullptr) return nullptr;
    const int c = col->GetIndex();
    if (matrix->NonZerosInColumn(c) > kWalkLimit) return matrix->ExistIncidence(row->GetIndex(), c);
    for (ILPNonZero* nz = matrix->ColFrstNonZeroObject(c); nz; nz = matrix->ColNextNonZeroObject())
        if (nz->GetEquationPtr() == row && nz->GetIndex() != 0) return nz;
    return nullptr;
}

ZEMEditTargets ZEMEditTargets::FromModel(IZEMMgr* mgr) {
    ZEMEditTargets t;
    t.mgr = mgr;
    if (mgr == nullptr) return t;
    ILPVariableList* vars = nullptr;
    ILPEquationList* eqns = nullptr;
    INonLinearModel* nl = nullptr;
    mgr->GetVariableCollectionIntf(&vars);
    mgr->GetEquationCollectionIntf(&eqns);
    mgr->GetMatrixIntf(&t.matrix);
    mgr->GetNonLinearModelIntf(&nl);
    // Each object goes in at its own index, so a table is as long as the
    // largest index seen (indices are consecutive, so that is the count).
    auto enter = [](auto& table, auto* object) {
        const int index = object->GetIndex();
        if (index <= 0) return;
        if (static_cast<size_t>(index) >= table.size()) table.resize(static_cast<size_t>(index) + 1);
        table[static_cast<size_t>(index)] = object;
    };
    if (vars != nullptr) {
        t.vars.reserve(static_cast<size_t>(vars->NumberOfVariables()) + 1);
        for (ILPVariable* v = vars->FrstVariableObject(); v; v = vars->NextVariableObject()) enter(t.vars, v);
    }
    if (eqns != nullptr) {
        t.eqns.reserve(static_cast<size_t>(eqns->NumberOfEquations()) + 1);
        for (ILPEquation* e = eqns->FrstEquationObject(); e; e = eqns->NextEquationObject()) enter(t.eqns, e);
    }
    if (nl != nullptr) {
        for (INonLinearity* n = nl->FrstNonLinearityObject(); n; n = nl->NextNonLinearityObject())
            enter(t.terms, n);
    }
    return t;
}

IZEMEdit* ReadEditRecord(std::istream* is, const ZEMEditTargets& targets) {
    unsigned char buf[kMaxEditRecord];
    if (!*is || !readRaw(is, buf, 2)) CaseReadError(kShortEdit);
    const int16_t code = zembin::get16(buf);
    if (code < eEditVarValue || code > eEditOptionTable)
        CaseReadError("Unknown edit code in XLMFile: " + std::to_string(code));
    const EditKind& kind = kKinds[code];
    if (!readRaw(is, buf + 2, kind.bodySize)) CaseReadError(kShortEdit);
    return kind.make(buf + 2, targets);
}
