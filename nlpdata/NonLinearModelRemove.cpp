// Removal of terms, variables and rows from the nonlinear model, and its
// trash.
#include <unordered_set>

#include "lpdata/ILPEquation.h"
#include "lpdata/ILPMatrix.h"
#include "lpdata/ILPNonZero.h"
#include "lpdata/ILPVariable.h"
#include "lpdata/ZEMException.h"
#include "nlpdata/NonLinearModel.h"

void NonLinearModel::Detach(INonLinearity* term) {
    if (ILPEquation* row = term->GetEquationPtr()) row->DecrNonlinear();
    for (ILPVariable* v = term->FrstUniqueVar(); v; v = term->NextUniqueVar()) {
        v->DecrNonlinear();
        auto it = m_varUse.find(v);
        if (it != m_varUse.end() && --it->second <= 0) m_varUse.erase(it);
    }
    for (ILPNonZero* nz = term->FrstNZ(); nz; nz = term->NextNZ()) nz->DecrNonlinear();
    auto tc = m_typeCounts.find(term->GetType());
    if (tc != m_typeCounts.end() && tc->second > 0) --tc->second;
    if (term->GetBlkMember() == 0) --m_persisted;
}

void NonLinearModel::BulkRemoveNonLinearity(INonLinearity** terms, int count) {
    if (!terms || count < 1) return;
    std::unordered_set<INonLinearity*> gone;
    for (int i = 0; i < count; ++i)
        if (terms[i] && InPool(terms[i]) && gone.insert(terms[i]).second) Detach(terms[i]);
    if (gone.empty()) return;

    size_t keep = 0;
    for (INonLinearity* t : m_pool)
        if (!gone.count(t)) m_pool[keep++] = t;
    m_pool.resize(keep);
    FullReIndexNonLinearities();
    if (m_poolCursor > m_pool.size()) m_poolCursor = m_pool.size();

    size_t keepTrash = 0;
    for (INonLinearity* t : m_trash)
        if (!gone.count(t)) m_trash[keepTrash++] = t;
    m_trash.resize(keepTrash);
    if (gone.count(m_firstScd)) m_firstScd = nullptr;

    MarkRowMapStale();
    m_byRowStale = true;
    m_rowCursorList = nullptr;
    for (INonLinearity* t : gone) t->Destroy();
}

void NonLinearModel::RemoveNonLinearity(INonLinearity* term) { BulkRemoveNonLinearity(&term, 1); }

void NonLinearModel::EliminateNonLinearity(INonLinearity* term) { RemoveNonLinearity(term); }

void NonLinearModel::BulkEliminateNonLinearity(INonLinearity** terms, int count) {
    BulkRemoveNonLinearity(terms, count);
}

void NonLinearModel::TrashNonLinearity(INonLinearity* term) {
    if (term && InPool(term)) m_trash.push_back(term);
}

void NonLinearModel::EmptyNonLinearityTrash() {
    std::vector<INonLinearity*> trash;
    trash.swap(m_trash);
    BulkRemoveNonLinearity(trash.data(), static_cast<int>(trash.size()));
    std::vector<ILPEquation*> rows;
    rows.swap(m_trashRows);
    for (ILPEquation* row : rows) m_matrix->TrashEquation(row);
}

void NonLinearModel::EmptyAllTrash() {
    EmptyNonLinearityTrash();
    m_matrix->EmptyNonZeroTrash();
}

void NonLinearModel::ThrowIfUsed(ILPVariable* var, const char* place) {
    INonLinearity* t = CheckNonLinearVariable(var);
    if (!t) return;
    ILPEquation* row = t->GetEquationPtr();
    ZEM_RAISE(zemsrc::kNlpData, "NonLinear Matrix Edit Error - Can't Remove NonLinear Variables",
              std::string("NonLinearity : ") + (row ? row->GetName() : "") + " : " +
                  var->GetName(),
              place);
}

void NonLinearModel::EliminateVariable(ILPVariable* var) {
    if (!var) return;
    ThrowIfUsed(var, "NonLinearModel::EliminateVariable");
    m_matrix->EliminateVariable(var);
}

void NonLinearModel::TrashVariable(ILPVariable* var) {
    if (!var) return;
    ThrowIfUsed(var, "NonLinearModel::TrashVariable");
    m_matrix->TrashVariable(var);
}

void NonLinearModel::EliminateEquation(ILPEquation* eqn) {
    if (!eqn) return;
    const std::vector<INonLinearity*>* terms = RowTerms(eqn->GetIndex());
    if (terms && !terms->empty()) {
        std::vector<INonLinearity*> rowTerms;
        for (INonLinearity* t : *terms)
            if (t->GetEquationPtr() == eqn) rowTerms.push_back(t);
        BulkRemoveNonLinearity(rowTerms.data(), static_cast<int>(rowTerms.size()));
    }
    m_matrix->EliminateEquation(eqn);
    ReIndexRowNonLinearityMap(eqn->GetIndex());
}

void NonLinearModel::TrashEquation(ILPEquation* eqn) {
    if (!eqn) return;
    const std::vector<INonLinearity*>* terms = RowTerms(eqn->GetIndex());
    if (terms)
        for (INonLinearity* t : *terms)
            if (t->GetEquationPtr() == eqn) TrashNonLinearity(t);
    m_trashRows.push_back(eqn);
}
