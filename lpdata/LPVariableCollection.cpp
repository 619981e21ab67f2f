#include "lpdata/LPVariableCollection.h"

#include <unordered_set>
#include <vector>

#include "lpdata/ILPVariable.h"
#include "lpdata/LPCompareReport.h"
#include "lpdata/LPRecordIO.h"
#include "lpdata/ZEMException.h"

namespace {

constexpr size_t kRecord = 72;
constexpr size_t kNameField = 61;

std::vector<std::string> MissingFrom(ILPVariableCollection* a, ILPVariableCollection* b) {
    std::unordered_set<std::string> names;
    for (ILPVariable* v = b->FrstVariableObject(); v; v = b->NextVariableObject())
        names.insert(v->GetName());
    std::vector<std::string> missing;
    for (ILPVariable* v = a->FrstVariableObject(); v; v = a->NextVariableObject())
        if (!names.count(v->GetName())) missing.push_back(v->GetName());
    return missing;
}

}  // namespace

int LPVariableCollection::AddVariableObject(ILPVariable* var) {
    m_members.Add(var);
    return m_members.Size();
}

void LPVariableCollection::Display(std::ostream& os) {
    os << "Collection Name = " << m_name << " Size = " << m_members.Size() << " Direction:";
    if (m_direction == 1)
        os << " Input\n";
    else if (m_direction == -1)
        os << " Output\n";
    else
        os << " UnSpecified\n";
    if (m_members.Size() == 0) os << "  -- Empty -- \n";
    for (const ILPVariable* v : m_members.Items()) os << "  " << v->GetName() << "\n";
}

void LPVariableCollection::StreamWrite(std::ostream* os) {
    if (os == nullptr) return;
    unsigned char rec[kRecord] = {};
    zembin::putName(rec, kNameField, zembin::cutName(m_name, lprec::kNameChars));
    zembin::put32(rec + 64, m_members.Size());
    zembin::put16(rec + 68, m_direction);
    zembin::put16(rec + 70, m_type);
    zembin::writeBytes(os, rec, kRecord);
    lprec::RecordWriter writer(os, 4);
    for (const ILPVariable* v : m_members.Items()) zembin::put32(writer.Next(), v->GetIndex());
}

void LPVariableCollection::StreamRead(ILPVariable** vars, std::istream* is) {
    const auto fail = [] {
        ZEM_RAISE(zemsrc::kLpData, "LPVariableCollection Error",
                  "Error during read of Variable Collection from binary file",
                  "LPVariableCollection::StreamRead");
    };
    unsigned char rec[kRecord];
    if (is == nullptr || !zembin::readExact(is, rec, kRecord)) fail();
    const int32_t count = zembin::get32(rec + 64);
    if (count < 0 || !zembin::canHold(is, count, 4)) fail();
    const size_t nVars = lprec::TableLength(vars);
    LPMemberList members;
    lprec::RecordReader reader(is, 4, static_cast<uint64_t>(count));
    for (int32_t i = 0; i < count; ++i) {
        const unsigned char* idx = reader.Next();
        if (idx == nullptr) fail();
        const int32_t vi = zembin::get32(idx);
        if (vi < 1 || static_cast<size_t>(vi) > nVars) fail();
        members.Add(vars[vi - 1]);
    }
    m_name = zembin::getName(rec, kNameField);
    m_direction = zembin::get16(rec + 68);
    m_type = zembin::get16(rec + 70);
    m_members = std::move(members);
}

int LPVariableCollection::Compare(ILPVariableCollection* other, std::ostream& os) {
    if (other == nullptr) return 0;
    LPCompareReport rep(os, "named variable collection", m_name.c_str(), 0);
    if (m_direction != other->GetDirection())
        rep.Line(" directions do not match: p1 is ", static_cast<int>(m_direction),
                 static_cast<int>(other->GetDirection()));
    bool differs = rep.Found();
    for (const std::string& name : MissingFrom(this, other)) {
        os << "Problem named variable collection " << m_name << " " << name
           << " is in named var col in p1, but not in p2\n";
        differs = true;
    }
    for (const std::string& name : MissingFrom(other, this)) {
        os << "Problem named variable collection " << m_name << " " << name
           << " is in named var col in p2, but not in p1\n";
        differs = true;
    }
    return differs ? -1 : 0;
}

void LPVariableCollection::CopyCollection(ILPVariableCollection* src, ILPVariable** map) {
    if (src == nullptr || src == this) return;
    const size_t nMap = lprec::TableLength(map);
    LPMemberList members;
    for (ILPVariable* v = src->FrstVariableObject(); v; v = src->NextVariableObject()) {
        if (map == nullptr) {
            members.Add(v);
            continue;
        }
        const int idx = v->GetIndex();
        if (idx >= 1 && static_cast<size_t>(idx) <= nMap) members.Add(map[idx - 1]);
    }
    m_name = src->Name();
    m_direction = src->GetDirection();
    m_type = src->GetType();
    m_members = std::move(members);
}
