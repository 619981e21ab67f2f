// Displays and binary records of the matrix.
#include <algorithm>
#include <memory>
#include <new>
#include <string>

#include "lpdata/ILPEquation.h"
#include "lpdata/ILPNonZero.h"
#include "lpdata/ILPVariable.h"
#include "lpdata/LPFormat.h"
#include "lpdata/LPMatrix.h"
#include "lpdata/LPNonZero.h"
#include "lpdata/LPNonZeroPool.h"
#include "lpdata/LPRecordIO.h"
#include "lpdata/ZEMException.h"

namespace {

constexpr size_t kNonZeroRecord = 16;

const char* RowName(const ILPNonZero* nz) {
    const ILPEquation* e = nz->GetEquationPtr();
    return e ? e->GetName() : "";
}

const char* ColName(const ILPNonZero* nz) {
    const ILPVariable* v = nz->GetVariablePtr();
    return v ? v->GetName() : "";
}

}  // namespace

void LPMatrix::Display(std::ostream& os) {
    os << "\nD I S P L A Y   O F   M A T R I X   N O N Z E R O S\n";
    os << "- - - - - - -   - -   - - - - - -   - - - - - - - -\n\n";
    for (ILPNonZero* nz : m_all) nz->Display(os);
}

void LPMatrix::DisplayByRow(std::ostream& os) {
    os << "\nD I S P L A Y   O F   M A T R I X   N O N Z E R O S   B Y   R O W\n";
    for (ILPNonZero* nz = InternalFrstNonZeroObjectByRow(); nz; nz = InternalNextNonZeroObjectByRow()) {
        if (nz->GetNonlinear() != 0)
            os << lpfmt::format("NonZero [%7d] %-12s : %-12s : (% #9.3e|% #9.3e)\n", nz->GetIndex(),
                                RowName(nz), ColName(nz), nz->GetCoefficient(),
                                nz->GetPartialDeriv());
        else
            os << lpfmt::format("NonZero [%7d] %-12s : %-12s :  % #10.4e\n", nz->GetIndex(),
                                RowName(nz), ColName(nz), nz->GetCoefficient());
    }
}

void LPMatrix::DisplayByColumn(std::ostream& os) {
    os << "\nD I S P L A Y   O F   M A T R I X   N O N Z E R O S   B Y   C O L U M N\n";
    Walk walk;
    for (ILPNonZero* nz = ColWalkFirst(walk); nz; nz = ColWalkNext(walk)) {
        if (nz->GetNonlinear() != 0)
            os << lpfmt::format("NonZero [%7d] %-12s : %-12s : (% #9.3e|% #9.4e|)\n", nz->GetIndex(),
                                RowName(nz), ColName(nz), nz->GetCoefficient(),
                                nz->GetPartialDeriv());
        else
            os << lpfmt::format("NonZero [%7d] %-12s : %-12s :  % #10.4e|\n", nz->GetIndex(),
                                RowName(nz), ColName(nz), nz->GetCoefficient());
    }
}

void LPMatrix::StreamWrite(std::ostream* os) {
    if (os == nullptr) return;
    lprec::RecordWriter writer(os, kNonZeroRecord);
    for (const ILPNonZero* nz : m_all) {
        const ILPEquation* e = nz->GetEquationPtr();
        if (e != nullptr && e->GetBlkMember() != 0) continue;
        unsigned char* rec = writer.Next();
        zembin::put32(rec + 0, nz->GetVariableIdx());
        zembin::put32(rec + 4, nz->GetEquationIdx());
        zembin::putF64(rec + 8, nz->GetCoefficient());
    }
}

void LPMatrix::ReadRecords(int n, ILPNonZero*** out, ILPVariable** vars, ILPEquation** eqns,
                           std::istream* is, const char* routine) {
    constexpr const char* kReadError = "Error during read of NonZero List from binary file";
    if (is == nullptr || n < 0 || !zembin::canHold(is, n, kNonZeroRecord))
        ZEM_RAISE(zemsrc::kLpData, "LPStdDataMgr Error", kReadError, routine);
    const size_t nVars = lprec::TableLength(vars);
    const size_t nEqns = lprec::TableLength(eqns);
    // The whole section is read and checked first; then each entry is made
    // and inserted while it is fresh in the cache.
    std::vector<unsigned char> records;
    if (!lprec::ReadBlock(is, static_cast<uint64_t>(n) * kNonZeroRecord, records))
        ZEM_RAISE(zemsrc::kLpData, "LPStdDataMgr Error", kReadError, routine);
    for (size_t i = 0; i < static_cast<size_t>(n); ++i) {
        const unsigned char* rec = records.data() + i * kNonZeroRecord;
        const int32_t vi = zembin::get32(rec + 0);
        const int32_t ei = zembin::get32(rec + 4);
        if (vi < 1 || static_cast<size_t>(vi) > nVars || ei < 1 || static_cast<size_t>(ei) > nEqns)
            ZEM_RAISE(zemsrc::kLpData, "LPStdDataMgr Error", kReadError, routine);
    }
    Sync();
    // When the equation table is the list in order (a fresh read), a
    // record's equation number is its row: the rows' entry counts are kept
    // up to date without visiting the equations.
    bool rowsKnown = nEqns <= static_cast<size_t>(std::max(RowLimit(), 0));
    for (size_t k = 0; rowsKnown && k < nEqns; ++k) rowsKnown = eqns[k]->GetIndex() == static_cast<int>(k + 1);
    // The table of the entries read, handed out through `out`.
    std::unique_ptr<ILPNonZero*[]> table(out != nullptr ? new ILPNonZero*[static_cast<size_t>(n) + 1] : nullptr);
    for (size_t i = 0; i < static_cast<size_t>(n); ++i) {
        const unsigned char* rec = records.data() + i * kNonZeroRecord;
        ILPNonZero* nz = m_pool->Make();
        if (nz == nullptr) throw std::bad_alloc();
        const int32_t row = zembin::get32(rec + 4);
        ILPEquation* eqn = eqns[row - 1];
        nz->SetVariablePtr(vars[zembin::get32(rec + 0) - 1]);
        nz->SetEquationPtr(eqn);
        nz->SetCoefficient(zembin::getF64(rec + 8));
        try {
            FastInsertNonZeroObject(nz);
        } catch (...) {
            nz->Destroy();
            throw;
        }
        if (rowsKnown) m_rows.NoteAppended(m_all.size() - 1, static_cast<size_t>(row), RowLimit());
        if (table) table[i] = nz;
    }
    if (table) {
        table[n] = nullptr;
        *out = table.release();
    }
}

void LPMatrix::StreamRead(int n, ILPNonZero*** out, ILPVariable** vars, ILPEquation** eqns,
                          std::istream* is) {
    ReadRecords(n, out, vars, eqns, is, "LPMatrix::StreamRead");
}

void LPMatrix::StreamReadSafe(int n, ILPNonZero*** out, ILPVariable** vars, ILPEquation** eqns,
                              std::istream* is) {
    ReadRecords(n, out, vars, eqns, is, "LPMatrix::StreamRead");
}
