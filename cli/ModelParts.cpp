#include "cli/ModelParts.h"

#include <unordered_set>

#include "lpdata/ILPStdDataMgr.h"
#include "lpdata/ILPVariableCollection.h"
#include "nlpdata/INonLinearModel.h"
#include "zemmgr/IZEMMgr.h"
#include "zemmgr/IZEMOptionTable.h"

LinearParts LinearPartsOf(ILPStdDataMgr* data) {
    LinearParts parts;
    data->GetVariableCollectionIntf(&parts.vars);
    data->GetEquationCollectionIntf(&parts.eqns);
    data->GetMatrixIntf(&parts.matrix);
    data->GetSpOrdSetCollectionIntf(&parts.sets);
    return parts;
}

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

std::vector<OptionEntry> ListOptions(IZEMOptionTable* table) {
    std::vector<OptionEntry> out;
    if (table == nullptr) return out;
    std::vector<std::string> names;
    table->OptionNames(names);
    out.reserve(names.size());
    for (const std::string& name : names) {
        OptionEntry entry;
        entry.name = name;
        if (const char* v = table->GetOptionValue(name.c_str())) entry.value = v;
        if (const char* v = table->GetOptionSecondValue(name.c_str())) entry.second = v;
        out.push_back(std::move(entry));
    }
    return out;
}

std::vector<OptionEntry> ListOptions(IZEMMgr* zem) {
    if (zem == nullptr) return {};
    IZEMOptionTable* table = nullptr;
    zem->GetOptionTableIntf(&table);
    return ListOptions(table);
}
