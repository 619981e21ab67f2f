#include "cli/ModelParts.h"

#include <map>
#include <sstream>
#include <unordered_set>

#include "lpdata/ILPVariableCollection.h"
#include "lpdata/ZEMBinaryIO.h"
#include "lpdata/ZEMException.h"
#include "nlpdata/INonLinearModel.h"
#include "zemmgr/IZEMMgr.h"
#include "zemmgr/IZEMOptionTable.h"

NonlinearCounts CountNonlinear(IZEMMgr* zem) {
    NonlinearCounts counts;
    std::unordered_set<const ILPEquation*> rows;
    ForEachTerm(zem, [&](INonLinearity* term) {
        ++counts.terms;
        if (const ILPEquation* row = term->GetEquationPtr()) rows.insert(row);
    });
    counts.equations = static_cast<int>(rows.size());
    return counts;
}

void ForEachTerm(IZEMMgr* zem, const std::function<void(INonLinearity*)>& visit) {
    if (zem == nullptr) return;
    INonLinearModel* nl = nullptr;
    zem->GetNonLinearModelIntf(&nl);
    if (nl == nullptr) return;
    for (INonLinearity* t = nl->FrstNonLinearityObject(); t != nullptr; t = nl->NextNonLinearityObject()) {
        visit(t);
    }
}

void ForEachCollection(IZEMMgr* zem, const std::function<void(ILPVariableCollection*)>& visit) {
    if (zem == nullptr) return;
    ILPVariableCollection* c = nullptr;
    for (zem->FrstNamedVarCollection(&c); c != nullptr; zem->NextNamedVarCollection(&c)) visit(c);
}

namespace {

// Reads one column block (length, then name NUL value NUL pairs) from
// `bytes` at `pos` into the first or the second value of `entries`,
// advancing `pos`.
void readColumn(const std::string& bytes, size_t& pos, bool second,
                std::map<std::string, OptionEntry>& entries) {
    auto fail = [] {
        throw ZEM_Exception("ZEMDataMgr Error", "Option table listing is malformed", "zem");
    };
    if (bytes.size() - pos < 4) fail();
    const uint32_t length =
        static_cast<uint32_t>(zembin::get32(reinterpret_cast<const unsigned char*>(bytes.data() + pos)));
    pos += 4;
    if (bytes.size() - pos < length) fail();
    const size_t end = pos + length;
    while (pos < end) {
        const size_t nameEnd = bytes.find('\0', pos);
        if (nameEnd == std::string::npos || nameEnd >= end) fail();
        const size_t valueEnd = bytes.find('\0', nameEnd + 1);
        if (valueEnd == std::string::npos || valueEnd >= end) fail();
        const std::string name = bytes.substr(pos, nameEnd - pos);
        OptionEntry& entry = entries[name];
        entry.name = name;
        (second ? entry.second : entry.value) = bytes.substr(nameEnd + 1, valueEnd - nameEnd - 1);
        pos = valueEnd + 1;
    }
}

}  // namespace

std::vector<OptionEntry> ListOptions(IZEMOptionTable* table) {
    std::vector<OptionEntry> out;
    if (table == nullptr) return out;
    std::ostringstream image(std::ios::out | std::ios::binary);
    table->StreamWrite(&image);
    const std::string bytes = image.str();
    // std::map keeps the names in byte order, as the table does.
    std::map<std::string, OptionEntry> entries;
    size_t pos = 0;
    readColumn(bytes, pos, false, entries);
    readColumn(bytes, pos, true, entries);
    out.reserve(entries.size());
    for (auto& [name, entry] : entries) out.push_back(std::move(entry));
    return out;
}

std::vector<OptionEntry> ListOptions(IZEMMgr* zem) {
    if (zem == nullptr) return {};
    IZEMOptionTable* table = nullptr;
    zem->GetOptionTableIntf(&table);
    return ListOptions(table);
}
