// Construction, settings, creation of terms, adding, walks and listings of
// the nonlinear model.
#include "nlpdata/NonLinearModel.h"

#include <algorithm>
#include <climits>
#include <new>
#include <unordered_set>

#include "lpdata/ILPEquation.h"
#include "lpdata/ILPEquationList.h"
#include "lpdata/ILPMatrix.h"
#include "lpdata/ILPNonZero.h"
#include "lpdata/ILPVariable.h"
#include "lpdata/ILPVariableList.h"
#include "lpdata/LPEquationList.h"
#include "lpdata/LPMatrix.h"
#include "lpdata/LPVariableList.h"
#include "lpdata/ZEMException.h"
#include "nlpdata/INonLinearityFactory.h"
#include "nlpdata/NLConstant.h"
#include "nlpdata/NLEquationTerms.h"
#include "nlpdata/NLQCLEquation.h"
#include "nlpdata/NLUserEquation.h"
#include "nlpdata/NonLinearBlockList.h"
#include "nlpdata/QCLBinding.h"
#include "nlpdata/NLTypeCodes.h"

NonLinearModel::NonLinearModel(ILPVariableList* vars, ILPEquationList* eqns)
    : m_vars(vars), m_eqns(eqns), m_eqnImpl(dynamic_cast<const LPEquationList*>(eqns)),
      m_varImpl(dynamic_cast<const LPVariableList*>(vars)) {
    if (m_eqnImpl) m_eqnEpoch = m_eqnImpl->RenumberEpoch();
    std::unique_ptr<LPMatrix> matrix(new LPMatrix(vars, eqns));
    std::unique_ptr<NonLinearBlockList> blocks(new NonLinearBlockList());
    INonLinearityFactory* factory = CreateNonLinearityFactoryObject();
    if (!factory)
        ZEM_RAISE(zemsrc::kNlpData, "NonLinearModel Error",
                  "Unable to create the NonLinearity factory", "NonLinearModel::NonLinearModel");
    factory->IAddRef();
    m_factory = factory;
    m_matrixImpl = matrix.get();
    m_matrix = matrix.release();
    m_blocks = blocks.release();
}

NonLinearModel::~NonLinearModel() {
    CloseLogFiles();
    for (INonLinearity* t : m_pool) t->Destroy();
    m_pool.clear();
    if (m_blocks) m_blocks->Destroy();
    if (m_matrix) m_matrix->Destroy();
    if (m_factory) m_factory->IRelease();
}

// ---------------------------------------------------------------- settings

bool NonLinearModel::OpenLogFiles() {
    CloseLogFiles();
    bool ok = true;
    if (m_hqcl && !m_hqclLogName.empty()) {
        m_hqclLog.open(m_hqclLogName.c_str(), std::ios::out | std::ios::trunc);
        ok = ok && m_hqclLog.is_open();
    }
    if (m_eqn && !m_eqnLogName.empty()) {
        m_eqnLog.open(m_eqnLogName.c_str(), std::ios::out | std::ios::trunc);
        ok = ok && m_eqnLog.is_open();
    }
    return ok;
}

void NonLinearModel::CloseLogFiles() {
    if (m_hqclLog.is_open()) m_hqclLog.close();
    if (m_eqnLog.is_open()) m_eqnLog.close();
    m_hqclLog.clear();
    m_eqnLog.clear();
}

void NonLinearModel::GetMatrixIntf(ILPMatrix** out) {
    if (out) *out = m_matrix;
}

void NonLinearModel::GetVarAndEqnLists(ILPVariableList** vars, ILPEquationList** eqns) {
    if (vars) *vars = m_vars;
    if (eqns) *eqns = m_eqns;
}

int NonLinearModel::NumberOfNonZeros() { return m_matrix->NumberOfNonZeros(); }

int NonLinearModel::NumberOfNonLinearNonZeros() { return m_matrix->NumberOfNonLinearNonZeros(); }

void NonLinearModel::OverrideNonLinearityFactory(INonLinearityFactory* factory) {
    if (!factory) return;
    factory->IAddRef();  // first, so that overriding with the same factory keeps it alive
    if (m_factory) m_factory->IRelease();
    m_factory = factory;
    m_factory->SetExtCacheEvalRegistry(m_extRegistry);
}

void NonLinearModel::SetNLBlockList(INonLinearBlockList* blocks) {
    if (blocks == m_blocks) return;
    if (!blocks) blocks = new NonLinearBlockList();
    if (m_blocks) m_blocks->Destroy();
    m_blocks = blocks;
}

INonLinearity* NonLinearModel::FrstNonLinearitySCDEquation() {
    if (!m_firstScd) {
        for (INonLinearity* t : m_pool)
            if (t->GetType() == kNLSCDEquation) {
                m_firstScd = t;
                break;
            }
    }
    return m_firstScd;
}

bool NonLinearModel::PreEvaluateSCDModel(INonLinearity*) { return false; }

// ---------------------------------------------------------------- creation

void NonLinearModel::NonlinearityTypeNameToTypeID(const char* name, int16_t* code) {
    m_factory->NameToTypeID(name ? name : "", code);
}

void NonLinearModel::CreateNonLinearityObject(int16_t code, INonLinearity** out) {
    if (!out) return;
    *out = nullptr;
    m_factory->Create(code, out);
}

void NonLinearModel::CreateNonLinearityObject(const char* name, INonLinearity** out,
                                              const char* p1, const char* p2) {
    if (!out) return;
    *out = nullptr;
    if (!name) name = "";
    int16_t code = kNLUnknown;
    m_factory->NameToTypeID(name, &code);
    switch (code) {
        case kNLQCLEquation: CreateNLQclObject(name, out); break;
        case kNLSCDEquation: CreateNLScdObject(name, out); break;
        case kNLNLEEquation: CreateNLNleObject(name, out, p1, p2); break;
        case kNLWrap: CreateNLWrapObject(name, out); break;
        default: m_factory->Create(name, out); break;
    }
}

void NonLinearModel::CreateNonLinearityObject(const char* name, INonLinearity** out) {
    CreateNonLinearityObject(name, out, "", "");
}

void NonLinearModel::CreateNLConstantObject(INLConstant** out) {
    if (out) *out = new NLConstant();
}

// ---------------------------------------------------------------- adding

bool NonLinearModel::InPool(INonLinearity* term) const {
    const int idx = term->GetIndex();
    return idx >= 1 && static_cast<size_t>(idx) <= m_pool.size() && m_pool[idx - 1] == term;
}

int NonLinearModel::AddNonLinearityObject(INonLinearity* term) {
    static const char* kPlace = "NonLinearModel::AddNonLinearityObject";
    if (!term) ZEM_RAISE(zemsrc::kNlpData, "NonLinearModel Error", "Null NonLinearity", kPlace);
    if (InPool(term))
        ZEM_RAISE(zemsrc::kNlpData, "NonLinearModel Error", "NonLinearity already in the pool",
                  kPlace);
    ILPEquation* row = term->GetEquationPtr();
    if (!row || row->GetIndex() < 1)
        ZEM_RAISE(zemsrc::kNlpData, "NonLinearModel Error",
                  std::string("NonLinearity without a model Equation : ") +
                      (term->GetNonLinearityID() ? term->GetNonLinearityID() : ""),
                  kPlace);
    for (ILPVariable* v = term->FrstUniqueVar(); v; v = term->NextUniqueVar())
        if (v->GetIndex() < 1)
            ZEM_RAISE(zemsrc::kNlpData, "NonLinearModel Error",
                      std::string("NonLinearity Variable not in the model : ") + v->GetName(),
                      kPlace);
    NonLinearityNLEEquation::CheckIfUserEquation(term);

    return Insert(term, nullptr);
}

int NonLinearModel::Insert(INonLinearity* term, ILPNonZero* const* entries) {
    static const char* kPlace = "NonLinearModel::AddNonLinearityObject";
    ILPEquation* row = term->GetEquationPtr();
    const int rowIdx = row->GetIndex();
    m_pool.push_back(term);
    term->SetIndex(static_cast<int>(m_pool.size()));
    if (term->GetBlkMember() == 0) ++m_persisted;
    row->IncrNonlinear();
    size_t k = 0;
    for (ILPVariable* v = term->FrstUniqueVar(); v; v = term->NextUniqueVar(), ++k) {
        ILPNonZero* nz = entries ? entries[k] : m_matrix->ExistIncidence(rowIdx, v->GetIndex());
        if (!nz) {
            ILPNonZero* fresh = nullptr;
            m_matrix->CreateNewNonZeroObject(&fresh);
            if (!fresh)
                ZEM_RAISE(zemsrc::kNlpData, "LPStdDataMgr Error",
                          "Unable to create new NonZero object", kPlace);
            fresh->SetEquationPtr(row);
            fresh->SetVariablePtr(v);
            fresh->SetCoefficient(0.0);
            nz = m_matrix->AddNonZeroObject(fresh);
        }
        nz->IncrNonlinear();
        // Read terms find their variables' counts in the variable records.
        if (!entries) v->IncrNonlinear();
        ++m_varUse[v];
        term->StoreNonZeroReference(nz);
    }
    MapNonLinearityToRow(rowIdx, term);
    IncrNLTypeCount(term->GetType());
    m_byRowStale = true;
    return static_cast<int>(m_pool.size());
}

bool NonLinearModel::RowsRenumbered() {
    bool renumbered = false;
    if (m_eqnImpl) {
        const uint64_t epoch = m_eqnImpl->RenumberEpoch();
        renumbered = epoch != m_eqnEpoch;
        m_eqnEpoch = epoch;
    }
    const int eqnCount = m_eqns->NumberOfEquations();
    if (eqnCount < m_rowMapEqnCount) renumbered = true;
    m_rowMapEqnCount = eqnCount;
    return renumbered;
}

void NonLinearModel::MapNonLinearityToRow(int row, INonLinearity* term) {
    if (RowsRenumbered()) m_rowMapStale = true;
    if (m_rowMapStale || row < 1) return;  // the next EnsureRowMap places it
    if (static_cast<size_t>(row) >= m_rowMap.size()) m_rowMap.resize(static_cast<size_t>(row) + 1);
    m_rowMap[row].push_back(term);
}

// ---------------------------------------------------------------- row lists

void NonLinearModel::EnsureRowMap() {
    if (RowsRenumbered()) m_rowMapStale = true;
    if (m_rowMapStale) BuildFastCollections();
}

void NonLinearModel::BuildFastCollections() {
    RowsRenumbered();  // the map built now is keyed by the current indices
    int maxRow = m_rowMapEqnCount;
    for (INonLinearity* t : m_pool) {
        ILPEquation* e = t->GetEquationPtr();
        if (e) maxRow = std::max(maxRow, e->GetIndex());
    }
    std::vector<std::vector<INonLinearity*>> map(static_cast<size_t>(maxRow) + 1);
    for (INonLinearity* t : m_pool) {
        ILPEquation* e = t->GetEquationPtr();
        if (e && e->GetIndex() >= 1) map[e->GetIndex()].push_back(t);
    }
    m_rowMap.swap(map);
    m_rowMapStale = false;
    m_rowCursorList = nullptr;
    m_byRow.clear();
    m_byRow.reserve(m_pool.size());
    for (const auto& terms : m_rowMap) m_byRow.insert(m_byRow.end(), terms.begin(), terms.end());
    m_byRowStale = false;
}

const std::vector<INonLinearity*>* NonLinearModel::RowTerms(int row) {
    EnsureRowMap();
    if (row < 1 || static_cast<size_t>(row) >= m_rowMap.size()) return nullptr;
    return &m_rowMap[row];
}

void NonLinearModel::ReIndexRowNonLinearityMap(int) { MarkRowMapStale(); }

INonLinearity* NonLinearModel::RowFrstNonLinearityObject(int row) {
    m_rowCursorList = RowTerms(row);
    m_rowCursor = 0;
    return RowNextNonLinearityObject();
}

INonLinearity* NonLinearModel::RowNextNonLinearityObject() {
    if (!m_rowCursorList || m_rowCursor >= m_rowCursorList->size()) return nullptr;
    return (*m_rowCursorList)[m_rowCursor++];
}

INonLinearity* NonLinearModel::InternalFrstNonLinearityObjectByRow() {
    EnsureRowMap();
    if (m_byRowStale) BuildFastCollections();
    m_byRowCursor = 0;
    return InternalNextNonLinearityObjectByRow();
}

INonLinearity* NonLinearModel::InternalNextNonLinearityObjectByRow() {
    if (m_byRowCursor >= m_byRow.size()) return nullptr;
    return m_byRow[m_byRowCursor++];
}

INonLinearity* NonLinearModel::FrstNonLinearityObjectByRow() {
    return InternalFrstNonLinearityObjectByRow();
}

INonLinearity* NonLinearModel::NextNonLinearityObjectByRow() {
    return InternalNextNonLinearityObjectByRow();
}

// ---------------------------------------------------------------- pool walks

void NonLinearModel::RetrieveNonLinearityObject(int index, INonLinearity** out) {
    if (!out) return;
    *out = nullptr;
    if (m_pool.empty() || index > static_cast<int>(m_pool.size())) return;
    *out = m_pool[index < 1 ? 0 : static_cast<size_t>(index) - 1];
}

INonLinearity* NonLinearModel::FrstNonLinearityObject() {
    m_poolCursor = 0;
    return NextNonLinearityObject();
}

INonLinearity* NonLinearModel::NextNonLinearityObject() {
    if (m_poolCursor >= m_pool.size()) return nullptr;
    return m_pool[m_poolCursor++];
}

void NonLinearModel::FullReIndexNonLinearities() {
    for (size_t i = 0; i < m_pool.size(); ++i) m_pool[i]->SetIndex(static_cast<int>(i) + 1);
}

void NonLinearModel::ResetNonLinearityCollection() { m_typeCounts.clear(); }

void NonLinearModel::IncrNLTypeCount(int16_t code) { ++m_typeCounts[code]; }

int NonLinearModel::NonLinearityTypeCount(int16_t code) {
    auto it = m_typeCounts.find(code);
    return it == m_typeCounts.end() ? 0 : it->second;
}

void NonLinearModel::ProcessNonLinearityCollection() {
    ResetNonLinearityCollection();
    for (INonLinearity* t : m_pool) IncrNLTypeCount(t->GetType());
}

void NonLinearModel::ProcessNonLinearModel() {
    ProcessNonLinearityCollection();
    BuildFastCollections();
}

void NonLinearModel::ClearDiffFlags() {
    for (INonLinearity* t : m_pool) t->SetDiffed(false);
}

INonLinearity* NonLinearModel::CheckNonLinearVariable(ILPVariable* var) {
    if (!var || m_varUse.find(var) == m_varUse.end()) return nullptr;
    for (INonLinearity* t : m_pool)
        for (ILPVariable* v = t->FrstUniqueVar(); v; v = t->NextUniqueVar())
            if (v == var) return t;
    return nullptr;
}

INonLinearity* NonLinearModel::GetFirstBiLinearVarEqn(int varIdx, int eqnIdx) {
    const std::vector<INonLinearity*>* terms = RowTerms(eqnIdx);
    if (!terms) return nullptr;
    for (INonLinearity* t : *terms) {
        const int16_t type = t->GetType();
        if ((type != kNLProduct && type != kNLProduct2) || t->NumberOfVariableTerms() != 2)
            continue;
        for (ILPVariable* v = t->FrstVar(); v; v = t->NextVar())
            if (v->GetIndex() == varIdx) return t;
    }
    return nullptr;
}

// ---------------------------------------------------------------- appending

void NonLinearModel::AppendNonLinearModel(INonLinearModel* other, ILPVariable** vars,
                                          ILPEquation** eqns) {
    static const char* kPlace = "NonLinearModel::AppendNonLinearModel";
    if (!other) return;
    auto tableLength = [](void** table) {
        size_t n = 0;
        if (table)
            while (table[n]) ++n;
        return n;
    };
    const size_t nVars = tableLength(reinterpret_cast<void**>(vars));
    const size_t nEqns = tableLength(reinterpret_cast<void**>(eqns));

    // Check every reference before anything is made.
    std::vector<INonLinearity*> source;
    for (INonLinearity* t = other->FrstNonLinearityObject(); t; t = other->NextNonLinearityObject()) {
        if (t->GetBlkMember() != 0) continue;
        ILPEquation* e = t->GetEquationPtr();
        const int r = e ? e->GetIndex() : 0;
        if (r < 1 || static_cast<size_t>(r) > nEqns)
            ZEM_RAISE(zemsrc::kNlpData, "NonLinearModel Error",
                      "Appended NonLinearity refers to an Equation outside the table", kPlace);
        for (ILPVariable* v = t->FrstVar(); v; v = t->NextVar())
            if (v->GetIndex() < 1 || static_cast<size_t>(v->GetIndex()) > nVars)
                ZEM_RAISE(zemsrc::kNlpData, "NonLinearModel Error",
                          "Appended NonLinearity refers to a Variable outside the table", kPlace);
        source.push_back(t);
    }

    // A term the row already holds, alike in every part, is the same term:
    // appending a model twice, or into itself, adds no term twice.
    auto signature = [](INonLinearity* t, ILPEquation* row, auto variableOf) {
        std::string key = std::to_string(t->GetType()) + '|' + (t->GetNonLinearityID() ? t->GetNonLinearityID() : "") +
                          '|' + std::to_string(row->GetIndex()) + '|' + std::to_string(t->Active());
        for (ILPVariable* v = t->FrstVar(); v; v = t->NextVar()) key += '|' + std::to_string(variableOf(v)->GetIndex());
        for (INLConstant* c = t->FrstNLConst(); c; c = t->NextNLConst()) {
            const double value = c->GetValue();
            key.append(reinterpret_cast<const char*>(&value), sizeof value);
        }
        return key;
    };
    std::unordered_set<std::string> held;
    std::unordered_set<ILPEquation*> rowsSeen;
    for (INonLinearity* t : source) {
        ILPEquation* row = eqns[t->GetEquationPtr()->GetIndex() - 1];
        if (rowsSeen.insert(row).second)
            for (INonLinearity* h = RowFrstNonLinearityObject(row->GetIndex()); h; h = RowNextNonLinearityObject())
                held.insert(signature(h, row, [](ILPVariable* v) { return v; }));
    }

    for (INonLinearity* t : source) {
        if (!held.empty() &&
            held.count(signature(t, eqns[t->GetEquationPtr()->GetIndex() - 1],
                                 [vars](ILPVariable* v) { return vars[v->GetIndex() - 1]; })) != 0)
            continue;
        INonLinearity* made = nullptr;
        if (t->GetNonLinearityID())
            CreateNonLinearityObject(t->GetNonLinearityID(), &made);
        else
            CreateNonLinearityObject(t->GetType(), &made);
        if (!made)
            ZEM_RAISE(zemsrc::kNlpData, "NonLinearModel Error",
                      "Unable to create new NonLinearity data object", kPlace);
        std::unique_ptr<INonLinearity, void (*)(INonLinearity*)> guard(
            made, [](INonLinearity* p) { p->Destroy(); });
        made->SetEquationPtr(eqns[t->GetEquationPtr()->GetIndex() - 1]);
        for (ILPVariable* v = t->FrstVar(); v; v = t->NextVar())
            made->AddVariableObject(vars[v->GetIndex() - 1]);
        for (INLConstant* c = t->FrstNLConst(); c; c = t->NextNLConst())
            made->AddNLConstantObject(c->GetValue());
        if (!t->Active()) made->DeActivate();
        AddNonLinearityObject(made);
        guard.release();
    }
}

// ---------------------------------------------------------------- listings

void NonLinearModel::Display(std::ostream& os) {
    os << "\nD I S P L A Y   O F   N O N L I N E A R   M O D E L\n"
       << "- - - - - - -   - -   - - - - - - - - -   - - - - -\n\n";
    m_matrix->Display(os);
    os << "\n\nN O N L I N E A R I T Y   P O O L\n"
       << "- - - - - - - - - - - -   - - - -\n\n";
    for (INonLinearity* t : m_pool) t->Display(os);
    os << "\n";
}

void NonLinearModel::DisplayByRow(std::ostream& os) {
    os << "\nD I S P L A Y   O F   N O N L I N E A R   M O D E L   B Y   R O W\n"
       << "- - - - - - -   - -   - - - - - - - - -   - - - - -   - -   - - -\n\n";
    m_matrix->DisplayByRow(os);
    os << "\n\nN O N L I N E A R I T Y   P O O L\n"
       << "- - - - - - - - - - - -   - - - -\n\n";
    for (INonLinearity* t = FrstNonLinearityObjectByRow(); t; t = NextNonLinearityObjectByRow())
        t->Display(os);
    os << "\n";
}

void NonLinearModel::DisplayByColumn(std::ostream& os) {
    os << "\nD I S P L A Y   O F   N O N L I N E A R   M O D E L   B Y   C O L U M N\n"
       << "- - - - - - -   - -   - - - - - - - - -   - - - - -   - -   - - - - - -\n\n";
    m_matrix->DisplayByColumn(os);
    os << "\n\nN O N L I N E A R I T Y   P O O L\n"
       << "- - - - - - - - - - - -   - - - -\n\n";
    std::vector<std::pair<int, INonLinearity*>> order;
    order.reserve(m_pool.size());
    for (INonLinearity* t : m_pool) {
        int key = INT_MAX;
        for (ILPVariable* v = t->FrstUniqueVar(); v; v = t->NextUniqueVar())
            key = std::min(key, v->GetIndex());
        order.emplace_back(key, t);
    }
    std::stable_sort(order.begin(), order.end(),
                     [](const std::pair<int, INonLinearity*>& a,
                        const std::pair<int, INonLinearity*>& b) { return a.first < b.first; });
    for (const auto& entry : order) entry.second->Display(os);
    os << "\n";
}

// ---------------------------------------------------------------- equation terms
//
// The correlation, distillation-model, user and wrapper equation terms keep
// the whole identifier they were asked for ("SCDEQ:name"), so it is written
// out again unchanged.

namespace {

template <typename Term>
void MakeEquationTerm(const char* name, INonLinearity** out) {
    if (!out) return;
    *out = nullptr;
    *out = new (std::nothrow) Term(name);
}

}  // namespace

void NonLinearModel::CreateNLQclObject(const char* name, INonLinearity** out) {
    if (!out) return;
    *out = new (std::nothrow) NonLinearityQCLEquation(name, this);
}

void NonLinearModel::CreateNLScdObject(const char* name, INonLinearity** out) {
    MakeEquationTerm<NonLinearitySCDEquation>(name, out);
}

// The formula comes from the name ("USEREQ:formula") or from p1; p2 is not
// used. A formula that does not parse is refused here.
void NonLinearModel::CreateNLNleObject(const char* name, INonLinearity** out, const char* p1,
                                       const char*) {
    if (!out) return;
    *out = nullptr;
    *out = new (std::nothrow) NonLinearityNLEEquation(name, p1);
}

void NonLinearModel::CreateNLWrapObject(const char* name, INonLinearity** out) {
    MakeEquationTerm<NonLinearityWrap>(name, out);
}
