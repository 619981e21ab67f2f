// The duplicate-name check: names that collide once screened and folded to
// upper case (see ZEMModelOperations.h for the report's form).
#include <cctype>
#include <fstream>
#include <sstream>
#include <string>
#include <unordered_map>
#include <vector>

#include "lpdata/ILPEquation.h"
#include "lpdata/ILPEquationList.h"
#include "lpdata/ILPVariable.h"
#include "lpdata/ILPVariableList.h"
#include "lpdata/ZEMException.h"
#include "zemmgr/IZEMMgr.h"
#include "zemmgr/ZEMModelFile.h"
#include "zemoper/ZEMModelOperations.h"

namespace {

struct NameOwner {
    const char* kind;
    std::string name;
};

// Groups in order of their first member, members in model order.
class CollisionIndex {
public:
    void Add(IZEMDataMgr* model, const char* kind, const char* name) {
        std::string screened = name ? name : "";
        model->NameScreen(screened);
        for (char& c : screened) c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
        const auto [it, fresh] = m_slot.emplace(std::move(screened), m_groups.size());
        if (fresh) m_groups.push_back({it->first, {}});
        m_groups[it->second].members.push_back({kind, name ? name : ""});
    }

    int Report(std::ostream& os) const {
        int found = 0;
        for (const Group& g : m_groups) {
            if (g.members.size() < 2) continue;
            ++found;
            os << "Duplicate screened name " << g.screened << "\n";
            for (const NameOwner& m : g.members) os << "  " << m.kind << " " << m.name << "\n";
        }
        if (found == 0)
            os << "No duplicate names\n";
        else
            os << found << " duplicate name group(s)\n";
        return found;
    }

private:
    struct Group {
        std::string screened;
        std::vector<NameOwner> members;
    };
    std::unordered_map<std::string, size_t> m_slot;
    std::vector<Group> m_groups;
};

}  // namespace

int ZEMModelOperations::DuplicateNames(IZEMDataMgr* model, std::ostream& os) {
    CollisionIndex index;
    ILPVariableList* vars = nullptr;
    ILPEquationList* eqns = nullptr;
    model->GetVariableCollectionIntf(&vars);
    model->GetEquationCollectionIntf(&eqns);
    if (vars)
        for (ILPVariable* v = vars->FrstVariableObject(); v; v = vars->NextVariableObject())
            index.Add(model, "Variable", v->GetName());
    if (eqns)
        for (ILPEquation* e = eqns->FrstEquationObject(); e; e = eqns->NextEquationObject())
            index.Add(model, "Equation", e->GetName());
    return index.Report(os);
}

int ZEMModelOperations::CheckDuplicateNames(IZEMDataMgr* model, const char* path) {
    // The whole report is made before the file is opened, so a name the
    // screen refuses leaves no partial file behind.
    std::ostringstream report;
    const int found = DuplicateNames(model, report);
    ZEMModelFile::WriteToPath(path, "ZEMModelOperations::CheckDuplicateNames", zemsrc::kZemOper,
                [&](std::ofstream* os) { *os << report.str(); });
    return found;
}
