// The one place where the MPS readers touch the model: it holds the model's
// variable list, equation list and matrix, finds and creates rows, columns
// and coefficients by name, remembers the row and column of the last card
// and asks the name indexes for the next card's names ahead of use. Section
// handlers check a card and call the sink; both readers use it.
//
//   MPSModelSink sink;
//   if (!sink.Attach(model)) ...                  // a part is missing
//   ILPEquation* row = sink.FindEquation("LIM1", index);
//   ILPVariable* col = sink.FindColumn("X1");     // the last column first
//   if (col == nullptr) col = sink.NewColumn("X1");
//   sink.AddCoefficient(row, index, col, 1.0);    // false: no nonzero made
//
// With the library's own lists and matrix it takes their faster paths (an
// equation's index from the lookup, a coefficient added with its row known,
// name prefetch); with other implementations it goes through the interfaces
// alone, with the same result. The calls made for every card are inline:
// out of line they cost about 3% of a standard read.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <utility>
#include <vector>

#include "lpdata/ILPEquation.h"
#include "lpdata/ILPNonZero.h"
#include "lpdata/ILPVariable.h"
#include "lpdata/LPEquationList.h"
#include "lpdata/LPMatrix.h"
#include "lpdata/LPVariableList.h"
#include "mpsutil/MPSFieldParser.h"

class ILPStdDataMgr;

// Longest name the recent-name caches keep; a longer one is looked up.
constexpr size_t kRecentNameMax = 128;

// A name remembered with its length, to tell whether a card names the same
// row or column as the one before.
class RecentName {
public:
    // Keeps the n bytes at s; false, and nothing kept, for a name longer
    // than kRecentNameMax.
    bool Set(const char* s, size_t n) {
        if (n > kRecentNameMax) {
            m_n = kNone;
            return false;
        }
        MPSCopyText(m_text, s, n);
        m_n = n;
        return true;
    }
    void Clear() { m_n = kNone; }
    bool Is(const char* s, size_t n) const {
        return n == m_n && MPSSameBytes(m_text, s, n);
    }

private:
    static constexpr size_t kNone = ~size_t(0);
    char m_text[kRecentNameMax + 1] = {};
    size_t m_n = kNone;
};

class MPSModelSink {
public:
    // Takes the variable list, equation list and matrix of `model`; false
    // when the model is null or lacks one of them.
    bool Attach(ILPStdDataMgr* model);
    // Takes the variable list alone (sections that touch columns only).
    bool AttachVariables(ILPStdDataMgr* model);
    // Drops the parts and everything remembered (the model is handed out).
    void Detach();
    // Forgets the last row and column (rows and columns may be removed).
    void Forget();

    ILPVariableList* Variables() const { return m_varList; }
    ILPEquationList* Equations() const { return m_eqnList; }

    // Lookups by name (null when absent). The indexed form also gives the
    // equation's index when the list tells it without a visit (else 0).
    ILPEquation* FindEquation(const char* name) const;
    ILPEquation* FindEquation(const char* name, int& index) const;
    ILPVariable* FindVariable(const char* name) const;
    // Create, name and add a row (of `type`, unless 0) or column; null when
    // none can be made.
    ILPEquation* NewEquation(const char* name, int16_t type = 0);
    ILPVariable* NewVariable(const char* name);

    // COLUMNS: the column of that name, the last column found or made
    // tried first; null when there is none.
    ILPVariable* FindColumn(const char* name);
    // NewVariable that becomes the last column.
    ILPVariable* NewColumn(const char* name);

    // Term cards: the row or column named by the n characters at name
    // (NUL-terminated), found or else made; the last one is tried first.
    // Null when none can be made. `index` is the row's index when known
    // without a visit (else 0).
    ILPEquation* FindOrCreateEquation(const char* name, size_t n, int& index);
    ILPVariable* FindOrCreateVariable(const char* name, size_t n);
    // True when the n characters at name are the last column of a term card.
    bool IsLastVariable(const char* name, size_t n) const {
        return m_lastVariable != nullptr && m_lastVariableName.Is(name, n);
    }
    // True when the row's type can be kept by index (see FindOrCreateEquation).
    bool IndexesEquations() const { return m_eqnImpl != nullptr; }

    // Row types given by the keys of term cards, set when the section ends
    // (ApplyDeferredRowTypes, also when a card fails): a key sets its row's
    // type unless the row is the objective, so the keys of one row come down
    // to the first objective key, or else the last key. Setting each type at
    // its card waits on a row object for nearly every card: a whole XMPS read
    // of the benchmark model then takes 1.5 times as long. Kept per row
    // index when it is known (logged in card order and folded into the
    // per-row table in batches, so that the processor waits for many rows at
    // once), else in card order.
    void DeferRowType(ILPEquation* eqn, int index, int16_t type);
    void ApplyDeferredRowTypes();

    // Adds the coefficient `value` of `var` in `row` (index `rowIndex`, 0:
    // unknown); false when the matrix cannot make a nonzero.
    bool AddCoefficient(ILPEquation* row, int rowIndex, ILPVariable* var, double value);

    // Asks the name index for the slot of a name the next card will look
    // up, so that the lookup finds it in cache (without this a standard read
    // of the benchmark model takes 1.6 to 1.7 times as long). Only a hint;
    // nothing is looked up or checked.
    void PrefetchVariable(const char* name, size_t n) const;
    void PrefetchEquation(const char* name, size_t n) const;

private:
    void NoteLibraryParts();
    ILPVariable* LookUpColumn(const char* name);
    void FoldTypeLog();

    ILPVariableList* m_varList = nullptr;
    ILPEquationList* m_eqnList = nullptr;
    ILPMatrix* m_matrix = nullptr;
    // The library's own parts behind the three (null for others).
    const LPVariableList* m_varImpl = nullptr;
    const LPEquationList* m_eqnImpl = nullptr;
    LPMatrix* m_matrixImpl = nullptr;

    ILPVariable* m_lastColumn = nullptr;
    ILPEquation* m_lastEquation = nullptr;
    int m_lastEquationIndex = 0;
    ILPVariable* m_lastVariable = nullptr;
    RecentName m_lastEquationName;
    RecentName m_lastVariableName;

    // Deferred row types: a log of (index in the low 32 bits, type above),
    // the per-index table it is folded into (0: none), and rows without a
    // known index in card order.
    std::vector<uint64_t> m_typeLog;
    std::vector<int16_t> m_pendingTypeAt;
    std::vector<std::pair<ILPEquation*, int16_t>> m_pendingTypes;
};

inline ILPEquation* MPSModelSink::FindEquation(const char* name, int& index) const {
    index = 0;
    return m_eqnImpl != nullptr ? m_eqnImpl->EqnNameLookupIndexed(name, index) : FindEquation(name);
}

inline ILPVariable* MPSModelSink::FindColumn(const char* name) {
    // Cards of one column usually come together.
    if (m_lastColumn != nullptr && std::strcmp(m_lastColumn->GetName(), name) == 0) {
        return m_lastColumn;
    }
    return LookUpColumn(name);
}

inline bool MPSModelSink::AddCoefficient(ILPEquation* row, int rowIndex, ILPVariable* var,
                                         double value) {
    ILPNonZero* nz = nullptr;
    m_matrix->CreateNewNonZeroObject(&nz);
    if (nz == nullptr) return false;
    nz->SetEquationPtr(row);
    nz->SetVariablePtr(var);
    nz->SetCoefficient(value);
    if (m_matrixImpl != nullptr) {
        m_matrixImpl->AddNonZeroObject(nz, rowIndex);
    } else {
        m_matrix->AddNonZeroObject(nz);
    }
    return true;
}

inline void MPSModelSink::PrefetchVariable(const char* name, size_t n) const {
    // The column in hand (a column's cards usually come together) needs none.
    if (m_varImpl != nullptr && !IsLastVariable(name, n)) m_varImpl->PrefetchName(name, n);
}

inline void MPSModelSink::PrefetchEquation(const char* name, size_t n) const {
    if (m_eqnImpl != nullptr) m_eqnImpl->PrefetchName(name, n);
}
