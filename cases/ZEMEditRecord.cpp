#include "cases/ZEMEditRecord.h"

#include <cstdint>
#include <cstring>

#include "cases/ZEMEdit.h"
#include "lpdata/ILPEquationList.h"
#include "lpdata/ILPMatrix.h"
#include "lpdata/ILPNonZero.h"
#include "lpdata/ILPVariableList.h"
#include "lpdata/ZEMBinaryIO.h"
#include "lpdata/ZEMException.h"
#include "nlpdata/INonLinearModel.h"
#include "zemmgr/IZEMMgr.h"
#include "zemmgr/ZEMModelParts.h"

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
    const ZEMModelParts parts(mgr);
    ILPVariableList* vars = parts.vars;
    ILPEquationList* eqns = parts.eqns;
    INonLinearModel* nl = parts.terms;
    t.matrix = parts.matrix;
    // The lists hand out each object by its index, so the tables are
    // filled without visiting the objects themselves.
    if (vars != nullptr) {
        t.vars.assign(static_cast<size_t>(vars->NumberOfVariables()) + 1, nullptr);
        for (size_t i = 1; i < t.vars.size(); ++i) vars->RetrieveVariableObject(static_cast<int>(i), &t.vars[i]);
    }
    if (eqns != nullptr) {
        t.eqns.assign(static_cast<size_t>(eqns->NumberOfEquations()) + 1, nullptr);
        for (size_t i = 1; i < t.eqns.size(); ++i) eqns->RetrieveEquationObject(static_cast<int>(i), &t.eqns[i]);
    }
    // The term pool finds a term by index only by a walk, so the terms are
    // entered at their own indices in one walk.
    if (nl != nullptr) {
        for (INonLinearity* n = nl->FrstNonLinearityObject(); n; n = nl->NextNonLinearityObject()) {
            const int index = n->GetIndex();
            if (index <= 0) continue;
            if (static_cast<size_t>(index) >= t.terms.size()) t.terms.resize(static_cast<size_t>(index) + 1);
            t.terms[static_cast<size_t>(index)] = n;
        }
    }
    return t;
}

EditRecordSource::EditRecordSource(std::istream* is) : m_is(is) {
    std::streambuf* buf = is != nullptr && *is ? is->rdbuf() : nullptr;
    m_seekable = buf != nullptr && buf->pubseekoff(0, std::ios::cur, std::ios::in) != std::streampos(-1);
    if (buf == nullptr) m_is = nullptr;
}

EditRecordSource::~EditRecordSource() {
    // What was read ahead and not used goes back to the stream.
    if (m_is != nullptr && m_end > m_pos)
        m_is->rdbuf()->pubseekoff(-static_cast<std::streamoff>(m_end - m_pos), std::ios::cur, std::ios::in);
}

const unsigned char* EditRecordSource::Take(size_t n) {
    if (m_end - m_pos < n) {
        if (m_is == nullptr) return nullptr;
        // Keep the unused tail, then read a block (seekable streams) or just
        // what is missing.
        if (m_pos > 0 && m_end > m_pos) std::memmove(m_buf.data(), m_buf.data() + m_pos, m_end - m_pos);
        m_end -= m_pos;
        m_pos = 0;
        const size_t want = m_seekable ? kBlock : n - m_end;
        if (m_buf.size() < m_end + want) m_buf.resize(m_end + want);
        m_end += static_cast<size_t>(
            m_is->rdbuf()->sgetn(reinterpret_cast<char*>(m_buf.data() + m_end), static_cast<std::streamsize>(want)));
        if (m_end < n) return nullptr;
    }
    const unsigned char* p = m_buf.data() + m_pos;
    m_pos += n;
    return p;
}

IZEMEdit* ReadEditRecord(EditRecordSource& source, const ZEMEditTargets& targets) {
    const unsigned char* p = source.Take(2);
    if (p == nullptr) CaseReadError(kShortEdit);
    const int16_t code = zembin::get16(p);
    if (code < eEditVarValue || code > eEditOptionTable)
        CaseReadError("Unknown edit code in XLMFile: " + std::to_string(code));
    const EditKind& kind = kKinds[code];
    const unsigned char* body = source.Take(kind.bodySize);
    if (body == nullptr) CaseReadError(kShortEdit);
    return kind.make(body, targets);
}
