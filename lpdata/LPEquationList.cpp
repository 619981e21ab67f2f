#include "lpdata/LPEquationList.h"

#include <algorithm>
#include <new>

#include "lpdata/LPEquation.h"
#include "lpdata/LPFormat.h"
#include "lpdata/LPListReader.h"
#include "lpdata/ZEMBinaryIO.h"
#include "lpdata/ZEMException.h"

namespace {

constexpr size_t kRecord5 = 56;
constexpr size_t kRecord4 = 48;
constexpr size_t kRecord3 = 40;

void EncodeEquation(const ILPEquation* e, unsigned char* rec, size_t size) {
    zembin::putF64(rec + 0, e->GetEqnValue());
    zembin::putF64(rec + 8, e->GetRHS());
    zembin::putF64(rec + 16, e->GetRange());
    zembin::putF64(rec + 24, e->GetBaseValue());
    zembin::put16(rec + 32, e->GetType());
    if (size >= kRecord4) zembin::putF64(rec + 40, e->GetShadowPrice());
    if (size >= kRecord5) zembin::putF64(rec + 48, e->GetEqnScale());
}

void DecodeEquation(ILPEquation* e, const unsigned char* rec, size_t size) {
    e->SetType(zembin::get16(rec + 32));
    e->SetEqnValue(zembin::getF64(rec + 0));
    e->SetRHS(zembin::getF64(rec + 8));
    e->SetRange(zembin::getF64(rec + 16));
    e->SetBaseValue(zembin::getF64(rec + 24));
    if (size >= kRecord4) e->SetShadowPrice(zembin::getF64(rec + 40));
    if (size >= kRecord5) e->SetEqnScale(zembin::getF64(rec + 48));
}

}  // namespace

ILPEquation* LPEquationList::InsertEquation(const char* name) {
    const char* key = name ? name : "";
    if (ILPEquation* found = m_store.Lookup(key)) return found;
    LPEquation* eqn = new (std::nothrow) LPEquation();
    if (eqn == nullptr)
        ZEM_RAISE(zemsrc::kLpData, "LPStdDataMgr Error", "Unable to create new Equation data object",
                  "LPEquationList::InsertEquation");
    eqn->SetName(key);
    AddEquationObject(eqn);
    return eqn;
}

void LPEquationList::CreateNewEquationObject(ILPEquation** out) {
    if (out != nullptr) *out = new (std::nothrow) LPEquation();
}

int LPEquationList::AddEquationObject(ILPEquation* eqn) {
    const int before = m_store.Count();
    const int idx = m_store.Add(eqn);
    if (m_store.Count() > before) ++m_persisted;
    return idx;
}

void LPEquationList::RemoveEquation(ILPEquation* eqn) {
    if (m_store.Remove(eqn) && m_persisted > 0) --m_persisted;
}

void LPEquationList::EmptyTrash() {
    const size_t removed = m_store.EmptyTrash();
    m_persisted = std::max(0, m_persisted - static_cast<int>(removed));
}

void LPEquationList::RetrieveEquationObject(int index, ILPEquation** out) {
    if (out != nullptr) *out = m_store.Retrieve(index);
}

int LPEquationList::EqnTypeCount(int16_t type) {
    const auto it = m_typeCounts.find(type);
    return it == m_typeCounts.end() ? 0 : it->second;
}

int LPEquationList::NumberOfNLEquations() {
    int n = 0;
    for (const ILPEquation* e : m_store.Items())
        if (e->GetNonlinear() > 0) ++n;
    return n;
}

void LPEquationList::NLEquationProfile(int& eq, int& le, int& ge, int& fr) {
    eq = le = ge = fr = 0;
    for (const ILPEquation* e : m_store.Items()) {
        if (e->GetNonlinear() <= 0) continue;
        switch (e->GetType()) {
            case ZEM_EQN_EQ: ++eq; break;
            case ZEM_EQN_LE: ++le; break;
            case ZEM_EQN_GE: ++ge; break;
            case ZEM_EQN_FREE:
            case ZEM_EQN_OBJECTIVE: ++fr; break;
            default: break;
        }
    }
}

void LPEquationList::RangeEqnCount(int& rows, int& nonzeros) {
    rows = nonzeros = 0;
    for (const ILPEquation* e : m_store.Items()) {
        if (e->GetRange() == 0.0) continue;
        ++rows;
        nonzeros += e->GetNumberNZ();
    }
}

void LPEquationList::FreeEqnCount(int& rows, int& nonzeros, int& objNonzeros) {
    rows = nonzeros = objNonzeros = 0;
    for (const ILPEquation* e : m_store.Items()) {
        if (e->GetType() == ZEM_EQN_FREE) {
            ++rows;
            nonzeros += e->GetNumberNZ();
        } else if (e->GetType() == ZEM_EQN_OBJECTIVE) {
            objNonzeros += e->GetNumberNZ();
        }
    }
}

ILPEquation* LPEquationList::Step(size_t& cursor, bool first) {
    // A walk that ran off the end stays ended, as a list cursor would.
    if (first)
        cursor = 0;
    else if (cursor != kNoWalk)
        ++cursor;
    ILPEquation* e = cursor == kNoWalk ? nullptr : m_store.At(cursor);
    if (e == nullptr) cursor = kNoWalk;
    return e;
}

ILPEquation* LPEquationList::FrstEquationObject() { return Step(m_cursor, true); }
ILPEquation* LPEquationList::NextEquationObject() { return Step(m_cursor, false); }
ILPEquation* LPEquationList::InternalFrstEquationObject() { return Step(m_internalCursor, true); }
ILPEquation* LPEquationList::InternalNextEquationObject() { return Step(m_internalCursor, false); }

void LPEquationList::UpdateBasePointValues() {
    for (ILPEquation* e : m_store.Items()) e->SetBaseValue(e->GetEqnValue());
}

void LPEquationList::UpdateValuesFromBasePoint() {
    for (ILPEquation* e : m_store.Items()) e->SetEqnValue(e->GetBaseValue());
}

void LPEquationList::UpdateResidualValues(const double* residuals) {
    if (residuals == nullptr) return;
    const auto& items = m_store.Items();
    for (size_t i = 0; i < items.size(); ++i) items[i]->SetResidualValue(residuals[i]);
}

void LPEquationList::ProcessEquationCollection() {
    ResetEquationCollection();
    for (const ILPEquation* e : m_store.Items()) IncrTypeCount(e->GetType());
}

void LPEquationList::ClearDiffFlags() {
    for (ILPEquation* e : m_store.Items()) e->SetDiffed(false);
}

void LPEquationList::ClearElements() {
    m_store.Clear();
    m_persisted = 0;
    ResetEquationCollection();
    m_cursor = m_internalCursor = kNoWalk;
}

void LPEquationList::Display(std::ostream& os) {
    int byType[6] = {0, 0, 0, 0, 0, 0};
    for (const ILPEquation* e : m_store.Items()) {
        const int16_t t = e->GetType();
        if (t >= ZEM_EQN_OBJECTIVE && t <= ZEM_EQN_FREE) ++byType[t];
    }
    int rangeRows = 0, rangeNZ = 0, freeRows = 0, freeNZ = 0, objNZ = 0;
    RangeEqnCount(rangeRows, rangeNZ);
    FreeEqnCount(freeRows, freeNZ, objNZ);

    os << "\nD I S P L A Y   O F   M A T R I X   E Q U A T I O N S\n";
    os << lpfmt::format("%10d  ", byType[ZEM_EQN_OBJECTIVE]) << "Objective\n";
    os << lpfmt::format("%10d  ", byType[ZEM_EQN_EQ]) << "Equality\n";
    os << lpfmt::format("%10d  ", byType[ZEM_EQN_LE]) << "LessThanEqualTo\n";
    os << lpfmt::format("%10d  ", byType[ZEM_EQN_GE]) << "GreaterThanEqualTo\n";
    os << lpfmt::format("%10d  ", byType[ZEM_EQN_FREE]) << "Free\n";
    os << lpfmt::format("%10d  ", NumberOfNLEquations()) << "Nonlinear Rows\n";
    os << "Range Rows :" << lpfmt::format("%10d%10d  ", rangeRows, rangeNZ) << "Range Row NonZeros\n";
    os << "Free Rows :" << lpfmt::format("%10d%10d  ", freeRows, freeNZ)
       << "Total Free Row NonZeros\n";
    os << "Obj NonZeros :" << lpfmt::format("%10d", objNZ) << "\n\n";
    for (ILPEquation* e = InternalFrstEquationObject(); e; e = InternalNextEquationObject())
        e->Display(os);
}

// ---- binary records ----------------------------------------------------------

void LPEquationList::WriteRecords(std::ostream* os, size_t recordSize) {
    const auto& items = m_store.Items();
    if (os == nullptr || items.empty()) return;
    {
        lprec::RecordWriter writer(os, recordSize);
        for (const ILPEquation* e : items) EncodeEquation(e, writer.Next(), recordSize);
    }
    lprec::WriteNameBlock(os, items);
}

void LPEquationList::StreamWrite5(std::ostream* os) { WriteRecords(os, kRecord5); }
void LPEquationList::StreamWrite4(std::ostream* os) { WriteRecords(os, kRecord4); }
void LPEquationList::StreamWrite3(std::ostream* os) { WriteRecords(os, kRecord3); }
void LPEquationList::StreamWrite(std::ostream* os) { WriteRecords(os, kRecord3); }

void LPEquationList::StreamWrite(std::ostream* os, double version) {
    if (version < 2011.1)
        StreamWrite(os);
    else if (version <= 2011.5)
        StreamWrite3(os);
    else if (version <= 2017.5)
        StreamWrite4(os);
    else
        StreamWrite5(os);
}

void LPEquationList::ReadRecords(int n, ILPEquation*** out, std::istream* is, size_t recordSize,
                                 const char* namesRoutine) {
    const lprec::ListReadTexts texts{"Error during read of Equation List from binary file",
                                     "LPEquationList::StreamRead",
                                     "Error during read of Equation name count from binary file",
                                     "Error during read of Equation names from binary file",
                                     namesRoutine};
    ILPEquation** table = lprec::ReadEntityList<ILPEquation>(
        n, is, recordSize, texts, [] { return new LPEquation(); },
        [recordSize](ILPEquation* e, const unsigned char* rec) {
            DecodeEquation(e, rec, recordSize);
        },
        [this](const std::vector<ILPEquation*>& batch, size_t /*nameBytes*/) {
            if (m_appending) lprec::RefuseKnownNames(batch, "Equation", "LPEquationList::StreamReadSafe",
                                              [this](const char* name) { return EqnNameLookup(name) != nullptr; });
            m_persisted += static_cast<int>(m_store.AddBatch(batch));
        });
    if (out != nullptr)
        *out = table;
    else
        delete[] table;
}

void LPEquationList::StreamRead5(int n, ILPEquation*** out, std::istream* is) {
    ReadRecords(n, out, is, kRecord5, "LPEquationList::StreamRead5");
}

void LPEquationList::StreamRead4(int n, ILPEquation*** out, std::istream* is) {
    ReadRecords(n, out, is, kRecord4, "LPEquationList::StreamRead4");
}

void LPEquationList::StreamRead3(int n, ILPEquation*** out, std::istream* is) {
    ReadRecords(n, out, is, kRecord3, "LPEquationList::StreamRead3");
}

void LPEquationList::StreamRead(int n, ILPEquation*** out, std::istream* is) {
    ReadRecords(n, out, is, kRecord3, "LPEquationList::StreamRead");
}

void LPEquationList::StreamRead(int n, ILPEquation*** out, std::istream* is, double version) {
    if (version < 2011.1)
        StreamRead(n, out, is);
    else if (version <= 2011.5)
        StreamRead3(n, out, is);
    else if (version <= 2017.5)
        StreamRead4(n, out, is);
    else
        StreamRead5(n, out, is);
}

void LPEquationList::StreamReadSafe(int n, ILPEquation*** out, std::istream* is, double version) {
    const lprec::ScopedFlag appending(m_appending);
    StreamRead(n, out, is, version);
}
