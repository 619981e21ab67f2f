#include "lpdata/LPSpOrdSet.h"

#include <memory>
#include <new>
#include <unordered_set>

#include "lpdata/ILPVariable.h"
#include "lpdata/LPCompareReport.h"
#include "lpdata/LPFormat.h"
#include "lpdata/LPRecordIO.h"
#include "lpdata/ZEMException.h"

namespace {

constexpr size_t kSetRecord = 68;
constexpr size_t kNameField = 61;

// Names of the members of `set` that are not members of `other`.
std::vector<std::string> MissingFrom(ILPSpOrdSet* set, ILPSpOrdSet* other) {
    std::unordered_set<std::string> names;
    for (ILPVariable* v = other->FrstSetVar(); v; v = other->NextSetVar()) names.insert(v->GetName());
    std::vector<std::string> missing;
    for (ILPVariable* v = set->FrstSetVar(); v; v = set->NextSetVar())
        if (!names.count(v->GetName())) missing.push_back(v->GetName());
    return missing;
}

}  // namespace

// ---- LPSpOrdSet ------------------------------------------------------------------

int LPSpOrdSet::AddVariableObject(ILPVariable* var) {
    m_members.Add(var);
    return m_members.Size();
}

int LPSpOrdSet::AddVariableObjectPlain(ILPVariable* var) {
    m_members.Add(var);
    return m_members.Size();
}

void LPSpOrdSet::Display(std::ostream& os) {
    os << "Special Ordered Set [" << m_index << "] : " << m_name << "\n";
    os << " SOSType = " << m_type << "\n";
    os << " Variable List:\n";
    for (const ILPVariable* v : m_members.Items()) os << "  " << v->GetName() << "\n";
}

int LPSpOrdSet::Compare(ILPSpOrdSet* other, std::ostream& os) {
    if (other == nullptr) return 0;
    LPCompareReport rep(os, "SOS", m_name.c_str(), 0);
    if (m_type != other->GetType())
        rep.Line(" types do not match: p1 is ", static_cast<int>(m_type),
                 static_cast<int>(other->GetType()));
    if (GetSize() != other->GetSize()) rep.Line(" sizes do not match: p1 is ", GetSize(), other->GetSize());
    bool differs = rep.Found();
    for (const std::string& name : MissingFrom(this, other)) {
        os << "Problem SOS " << m_name << " " << name << " is in SOS1, but not in SOS2\n";
        differs = true;
    }
    for (const std::string& name : MissingFrom(other, this)) {
        os << "Problem SOS " << m_name << " " << name << " is in SOS2, but not in SOS1\n";
        differs = true;
    }
    return differs ? -1 : 0;
}

// ---- LPSpOrdSetList --------------------------------------------------------------

LPSpOrdSetList::~LPSpOrdSetList() {
    for (ILPSpOrdSet* s : m_sets) delete s;
}

void LPSpOrdSetList::CreateNewSpOrdSetObject(ILPSpOrdSet** out) {
    if (out != nullptr) *out = new (std::nothrow) LPSpOrdSet();
}

int LPSpOrdSetList::AddSpOrdSetObject(ILPSpOrdSet* set) {
    if (set == nullptr) return 0;
    const int idx = set->GetIndex();
    if (idx >= 1 && static_cast<size_t>(idx) <= m_sets.size() && m_sets[idx - 1] == set) return idx;
    m_sets.push_back(set);
    const int newIdx = static_cast<int>(m_sets.size());
    set->SetIndex(newIdx);
    m_names.emplace(set->GetName(), set);
    return newIdx;
}

ILPSpOrdSet* LPSpOrdSetList::SOSNameLookup(const char* name) {
    if (name == nullptr) return nullptr;
    const auto it = m_names.find(name);
    return it == m_names.end() ? nullptr : it->second;
}

void LPSpOrdSetList::RetrieveSpOrdSetObject(int index, ILPSpOrdSet** out) {
    if (out == nullptr) return;
    if (m_sets.empty() || index > NumberOfSpOrdSets())
        *out = nullptr;
    else
        *out = index <= 1 ? m_sets.front() : m_sets[static_cast<size_t>(index) - 1];
}

int LPSpOrdSetList::SOSTypeCount(int16_t type) {
    const auto it = m_typeCounts.find(type);
    return it == m_typeCounts.end() ? 0 : it->second;
}

int LPSpOrdSetList::TotalSOSVars() {
    int total = 0;
    for (const ILPSpOrdSet* s : m_sets) total += s->GetSize();
    return total;
}

ILPSpOrdSet* LPSpOrdSetList::FrstSpOrdSetObject() {
    m_cursor = kNoWalk;
    if (m_sets.empty()) return nullptr;
    m_cursor = 0;
    return m_sets.front();
}

ILPSpOrdSet* LPSpOrdSetList::NextSpOrdSetObject() {
    if (m_cursor == kNoWalk) return nullptr;
    if (++m_cursor < m_sets.size()) return m_sets[m_cursor];
    m_cursor = kNoWalk;
    return nullptr;
}

void LPSpOrdSetList::RemoveVariable(ILPVariable* var) {
    for (ILPSpOrdSet* s : m_sets) s->RemoveVariableIfInSet(var);
}

void LPSpOrdSetList::ProcessSpOrdSetCollection() {
    ResetSpOrdSetCollection();
    for (const ILPSpOrdSet* s : m_sets) IncrTypeCount(s->GetType());
}

void LPSpOrdSetList::ClearDiffFlags() {
    for (ILPSpOrdSet* s : m_sets) s->SetDiffed(false);
}

void LPSpOrdSetList::Display(std::ostream& os) {
    int counts[3] = {0, 0, 0};
    for (const ILPSpOrdSet* s : m_sets)
        if (s->GetType() >= 1 && s->GetType() <= 3) ++counts[s->GetType() - 1];
    os << "\nD I S P L A Y   O F   S P E C I A L   O R D E R E D   S E T S\n";
    os << lpfmt::format("%10d  ", counts[0]) << "Type 1\n";
    os << lpfmt::format("%10d  ", counts[1]) << "Type 2\n";
    os << lpfmt::format("%10d  ", counts[2]) << "Type 3\n";
    os << "\n";
    for (ILPSpOrdSet* s : m_sets) s->Display(os);
}

void LPSpOrdSetList::StreamWrite(std::ostream* os) {
    if (os == nullptr || m_sets.empty()) return;
    {
        lprec::RecordWriter writer(os, kSetRecord);
        for (ILPSpOrdSet* s : m_sets) {
            unsigned char* rec = writer.Next();
            zembin::putName(rec, kNameField, zembin::cutName(s->GetName(), lprec::kNameChars));
            zembin::put16(rec + 62, s->GetType());
            zembin::put32(rec + 64, s->GetSize());
        }
    }
    lprec::RecordWriter writer(os, 4);
    for (ILPSpOrdSet* s : m_sets)
        for (ILPVariable* v = s->FrstSetVar(); v; v = s->NextSetVar())
            zembin::put32(writer.Next(), v->GetIndex());
}

void LPSpOrdSetList::Read(int nSets, int nMembers, ILPSpOrdSet*** out, ILPVariable** vars,
                          std::istream* is, bool safe) {
    constexpr const char* kReadError = "Error during read of SpOrdSet List from binary file";
    constexpr const char* kRoutine = "LPSpOrdSetList::StreamRead";
    const auto fail = [&] { ZEM_RAISE(zemsrc::kLpData, "LPStdDataMgr Error", kReadError, kRoutine); };
    if (is == nullptr || nSets < 0 || nMembers < 0 || !zembin::canHold(is, nSets, kSetRecord)) fail();

    std::vector<std::unique_ptr<LPSpOrdSet>> sets;
    std::vector<int32_t> sizes;
    int64_t total = 0;
    lprec::RecordReader records(is, kSetRecord, static_cast<uint64_t>(nSets));
    for (int i = 0; i < nSets; ++i) {
        const unsigned char* rec = records.Next();
        if (rec == nullptr) fail();
        auto set = std::make_unique<LPSpOrdSet>();
        set->SetName(zembin::getName(rec, kNameField).c_str());
        set->SetType(zembin::get16(rec + 62));
        const int32_t size = zembin::get32(rec + 64);
        if (size < 0) fail();
        total += size;
        sizes.push_back(size);
        sets.push_back(std::move(set));
    }
    if (total != nMembers || !zembin::canHold(is, nMembers, 4)) fail();

    const size_t nVars = lprec::TableLength(vars);
    lprec::RecordReader members(is, 4, static_cast<uint64_t>(nMembers));
    for (size_t s = 0; s < sets.size(); ++s) {
        for (int32_t k = 0; k < sizes[s]; ++k) {
            const unsigned char* rec = members.Next();
            if (rec == nullptr) fail();
            const int32_t vi = zembin::get32(rec);
            if (vi < 1 || static_cast<size_t>(vi) > nVars) fail();
            sets[s]->AddVariableObject(vars[vi - 1]);
        }
    }
    if (safe) {
        for (const auto& s : sets)
            if (SOSNameLookup(s->GetName()) != nullptr)
                ZEM_RAISE(zemsrc::kLpData, "LPStdDataMgr Error",
                          "Error Safe Append - SOS of same name already exists",
                          "LPSpOrdSetList::StreamReadSafe");
    }
    std::vector<ILPSpOrdSet*> added;
    added.reserve(sets.size());
    for (auto& s : sets) {
        ILPSpOrdSet* set = s.release();
        added.push_back(set);
        AddSpOrdSetObject(set);
    }
    if (out != nullptr) *out = lprec::MakeTable(added);
}

void LPSpOrdSetList::StreamRead(int nSets, int nMembers, ILPSpOrdSet*** out, ILPVariable** vars,
                                std::istream* is) {
    Read(nSets, nMembers, out, vars, is, false);
}

void LPSpOrdSetList::StreamReadSafe(int nSets, int nMembers, ILPSpOrdSet*** out,
                                    ILPVariable** vars, std::istream* is) {
    Read(nSets, nMembers, out, vars, is, true);
}
