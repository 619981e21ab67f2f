#include "lpdata/LPVariableList.h"

#include <algorithm>
#include <new>

#include "lpdata/LPFormat.h"
#include "lpdata/LPListReader.h"
#include "lpdata/LPVariable.h"
#include "lpdata/ZEMBinaryIO.h"
#include "lpdata/ZEMException.h"

namespace {

constexpr size_t kRecord4 = 88;
constexpr size_t kRecord3 = 80;

void EncodeVariable(const ILPVariable* v, unsigned char* rec, size_t size) {
    zembin::putF64(rec + 0, v->GetVarValue());
    zembin::putF64(rec + 8, v->GetBoundLower());
    zembin::putF64(rec + 16, v->GetBoundUpper());
    zembin::putF64(rec + 24, v->GetBaseValue());
    zembin::putF64(rec + 32, v->GetPersistentValue());
    zembin::putF64(rec + 40, v->GetTempBoundLower());
    zembin::putF64(rec + 48, v->GetStepBound());
    zembin::putF64(rec + 56, v->GetSampleBoundLower());
    zembin::putF64(rec + 64, v->GetSampleBoundUpper());
    zembin::put16(rec + 72, v->GetVarType());
    zembin::put16(rec + 74, v->GetVarStatus());
    zembin::put32(rec + 76, v->GetNonlinear());
    if (size >= kRecord4) zembin::putF64(rec + 80, v->GetVarShadowPrice());
}

void DecodeVariable(ILPVariable* v, const unsigned char* rec, size_t size) {
    v->SetVarValue(zembin::getF64(rec + 0));
    v->SetBoundLower(zembin::getF64(rec + 8));
    v->SetBoundUpper(zembin::getF64(rec + 16));
    v->SetBaseValue(zembin::getF64(rec + 24));
    v->SetPersistentValue(zembin::getF64(rec + 32));
    v->SetTempBoundLower(zembin::getF64(rec + 40));
    v->SetStepBound(zembin::getF64(rec + 48));
    v->SetSampleBoundLower(zembin::getF64(rec + 56));
    v->SetSampleBoundUpper(zembin::getF64(rec + 64));
    v->SetVarType(zembin::get16(rec + 72));
    v->SetVarStatus(zembin::get16(rec + 74));
    v->SetNonlinear(zembin::get32(rec + 76));
    if (size >= kRecord4) v->SetVarShadowPrice(zembin::getF64(rec + 80));
}

}  // namespace

ILPVariable* LPVariableList::InsertVariable(const char* name) {
    const char* key = name ? name : "";
    if (ILPVariable* found = m_store.Lookup(key)) return found;
    LPVariable* var = new (std::nothrow) LPVariable();
    if (var == nullptr)
        ZEM_RAISE(zemsrc::kLpData, "LPStdDataMgr Error", "Unable to create new Variable data object",
                  "LPVariableList::InsertVariable");
    var->SetName(key);
    AddVariableObject(var);
    return var;
}

void LPVariableList::CreateNewVariableObject(ILPVariable** out) {
    if (out != nullptr) *out = new (std::nothrow) LPVariable();
}

int LPVariableList::AddVariableObject(ILPVariable* var) {
    const int before = m_store.Count();
    const int idx = m_store.Add(var);
    if (m_store.Count() > before) ++m_persisted;
    return idx;
}

void LPVariableList::RemoveVariable(ILPVariable* var) {
    if (m_store.Remove(var) && m_persisted > 0) --m_persisted;
}

void LPVariableList::EmptyTrash() {
    const size_t removed = m_store.EmptyTrash();
    m_persisted = std::max(0, m_persisted - static_cast<int>(removed));
}

void LPVariableList::RetrieveVariableObject(int index, ILPVariable** out) {
    if (out != nullptr) *out = m_store.Retrieve(index);
}

int LPVariableList::VarTypeCount(int16_t type) {
    const auto it = m_typeCounts.find(type);
    return it == m_typeCounts.end() ? 0 : it->second;
}

ILPVariable* LPVariableList::Step(size_t& cursor, bool first) {
    // A walk that ran off the end stays ended, as a list cursor would.
    if (first)
        cursor = 0;
    else if (cursor != kNoWalk)
        ++cursor;
    ILPVariable* e = cursor == kNoWalk ? nullptr : m_store.At(cursor);
    if (e == nullptr) cursor = kNoWalk;
    return e;
}

ILPVariable* LPVariableList::FrstVariableObject() { return Step(m_cursor, true); }
ILPVariable* LPVariableList::NextVariableObject() { return Step(m_cursor, false); }
ILPVariable* LPVariableList::InternalFrstVariableObject() { return Step(m_internalCursor, true); }
ILPVariable* LPVariableList::InternalNextVariableObject() { return Step(m_internalCursor, false); }

ILPVariable* LPVariableList::FrstComplementarityVar() {
    m_complementCursor = kNoWalk;
    return NextComplementarityVar();
}

ILPVariable* LPVariableList::NextComplementarityVar() {
    const auto& items = m_store.Items();
    size_t pos = m_complementCursor == kNoWalk ? 0 : m_complementCursor + 1;
    for (; pos < items.size(); ++pos) {
        if (items[pos]->GetComplementarityTarget() != nullptr) {
            m_complementCursor = pos;
            return items[pos];
        }
    }
    m_complementCursor = items.size();
    return nullptr;
}

void LPVariableList::UpdateValues(const double* values) {
    if (values == nullptr) return;
    const auto& items = m_store.Items();
    for (size_t i = 0; i < items.size(); ++i) items[i]->SetVarValue(values[i]);
}

void LPVariableList::UpdateBasePointValues() {
    for (ILPVariable* v : m_store.Items()) v->SetBaseValue(v->GetVarValue());
}

void LPVariableList::UpdateValuesFromBasePoint() {
    for (ILPVariable* v : m_store.Items()) v->SetVarValue(v->GetBaseValue());
}

void LPVariableList::UpdatePersistentValues(int16_t /*mode*/) {
    for (ILPVariable* v : m_store.Items()) v->SetPersistentValue(v->GetVarValue());
}

void LPVariableList::UpdateValuesFromPersistentPoint() {
    for (ILPVariable* v : m_store.Items()) v->SetVarValue(v->GetPersistentValue());
}

void LPVariableList::ResetVariableCollection() {
    m_typeCounts.clear();
    m_complementPairs = 0;
}

void LPVariableList::IncrTypeCount(int16_t type) { ++m_typeCounts[type]; }

void LPVariableList::ProcessVariableCollection() {
    ResetVariableCollection();
    for (ILPVariable* v : m_store.Items()) {
        IncrTypeCount(v->GetVarType());
        if (v->GetComplementarityTarget() != nullptr) ++m_complementPairs;
    }
}

void LPVariableList::ClearDiffFlags() {
    for (ILPVariable* v : m_store.Items()) v->SetDiffed(false);
}

void LPVariableList::ClearElements() {
    m_store.Clear();
    m_persisted = 0;
    ResetVariableCollection();
    m_cursor = m_internalCursor = m_complementCursor = kNoWalk;
}

void LPVariableList::Display(std::ostream& os) {
    int counts[5] = {0, 0, 0, 0, 0};  // continuous, binary, discrete, semi-continuous, unknown
    for (const ILPVariable* v : m_store.Items()) {
        const int16_t t = v->GetVarType();
        ++counts[(t >= ZEM_VAR_CONTINUOUS && t <= ZEM_VAR_SEMICONTINUOUS) ? t - 1 : 4];
    }
    os << "\nD I S P L A Y   O F   M A T R I X   V A R I A B L E S\n";
    const char* labels[5] = {"Continuous\n", "Binary\n", "Discrete\n", "Semi-continuous\n",
                             "Unknown\n"};
    for (int i = 0; i < 5; ++i) os << lpfmt::format("%10d  ", counts[i]) << labels[i];
    os << "\n";
    for (ILPVariable* v = InternalFrstVariableObject(); v; v = InternalNextVariableObject())
        v->Display(os);
}

void LPVariableList::DisplayPersistedValues(std::ostream& os) {
    os << "\nP E R S I S T E D    P O I N T\n";
    os << "N A M E           V A L U E        P V A L U E      D E L T A\n";
    os << "-------------     ------------     ------------     ------------ \n";
    for (const ILPVariable* v : m_store.Items()) {
        const double value = v->GetVarValue();
        const double persistent = v->GetPersistentValue();
        os << lpfmt::format("%-13s     % #10.4e     % #10.4e     % #10.4e", v->GetName(), value,
                            persistent, value - persistent)
           << "\n";
    }
}

// ---- binary records ----------------------------------------------------------

void LPVariableList::WriteRecords(std::ostream* os, size_t recordSize) {
    const auto& items = m_store.Items();
    if (os == nullptr || items.empty()) return;
    {
        lprec::RecordWriter writer(os, recordSize);
        for (const ILPVariable* v : items) EncodeVariable(v, writer.Next(), recordSize);
    }
    lprec::WriteNameBlock(os, items);
}

void LPVariableList::StreamWrite4(std::ostream* os) { WriteRecords(os, kRecord4); }
void LPVariableList::StreamWrite3(std::ostream* os) { WriteRecords(os, kRecord3); }
void LPVariableList::StreamWrite(std::ostream* os) { WriteRecords(os, kRecord3); }

void LPVariableList::StreamWrite(std::ostream* os, double version) {
    if (version < 2011.1)
        StreamWrite(os);
    else if (version <= 2011.5)
        StreamWrite3(os);
    else
        StreamWrite4(os);
}

void LPVariableList::ReadRecords(int n, ILPVariable*** out, std::istream* is, size_t recordSize,
                                 const char* namesRoutine) {
    const lprec::ListReadTexts texts{"Error during read of Variable List from binary file",
                                     "LPVariableList::StreamRead",
                                     "Error during read of Variable name count from binary file",
                                     "Error during read of Variable names from binary file",
                                     namesRoutine};
    ILPVariable** table = lprec::ReadEntityList<ILPVariable>(
        n, is, recordSize, texts, [] { return new LPVariable(); },
        [recordSize](ILPVariable* v, const unsigned char* rec) {
            DecodeVariable(v, rec, recordSize);
        },
        [this](const std::vector<ILPVariable*>& batch, size_t /*nameBytes*/) {
            if (m_appending) lprec::RefuseKnownNames(batch, "Variable", "LPVariableList::StreamReadSafe",
                                              [this](const char* name) { return VarNameLookup(name) != nullptr; });
            m_persisted += static_cast<int>(m_store.AddBatch(batch));
        });
    if (out != nullptr)
        *out = table;
    else
        delete[] table;
}

void LPVariableList::StreamRead4(int n, ILPVariable*** out, std::istream* is) {
    ReadRecords(n, out, is, kRecord4, "LPVariableList::StreamRead4");
}

void LPVariableList::StreamRead3(int n, ILPVariable*** out, std::istream* is) {
    ReadRecords(n, out, is, kRecord3, "LPVariableList::StreamRead3");
}

void LPVariableList::StreamRead(int n, ILPVariable*** out, std::istream* is) {
    ReadRecords(n, out, is, kRecord3, "LPVariableList::StreamRead");
}

void LPVariableList::StreamRead(int n, ILPVariable*** out, std::istream* is, double version) {
    if (version < 2011.1)
        StreamRead(n, out, is);
    else if (version <= 2011.5)
        StreamRead3(n, out, is);
    else
        StreamRead4(n, out, is);
}

void LPVariableList::StreamReadSafe(int n, ILPVariable*** out, std::istream* is, double version) {
    if (version <= 1.05)
        ZEM_RAISE(zemsrc::kLpData, "LPVariableList Error",
                  "Older formats not supported for SafeAppend from binary stream",
                  "LPVariableList::StreamReadSafe");
    const lprec::ScopedFlag appending(m_appending);
    StreamRead(n, out, is, version);
}
