// zem diff: exit status, one line or JSON object per difference.
#include <algorithm>

#include "ZemCliTestSupport.h"
#include "lpdata/ILPVariable.h"
#include "lpdata/ILPVariableList.h"

namespace clitest {

TEST_F(ZemRun, DiffExitsZeroOnEqualModelsAndListsEachDifference) {
    EXPECT_EQ(Run("diff '" + Refinery() + "' '" + Refinery() + "'").status, 0);

    const std::string changed = dir_ + "/changed.zem";
    Model m = ReadHere(Refinery());
    ILPVariableList* vars = nullptr;
    m->GetVariableCollectionIntf(&vars);
    ILPVariable* first = vars->FrstVariableObject();
    const std::string name = first->GetName();
    first->SetBoundUpper(first->GetBoundUpper() * 2 + 1);
    m->PersistAsFile(changed.c_str());

    const Result text = Run("diff '" + Refinery() + "' '" + changed + "'");
    EXPECT_EQ(text.status, 1);
    EXPECT_EQ(text.out.find("Problem Variable " + name + " upper bounds do not match"), 0u) << text.out;
    EXPECT_EQ(std::count(text.out.begin(), text.out.end(), '\n'), 1);

    const Result json = Run("diff --json '" + Refinery() + "' '" + changed + "'");
    EXPECT_EQ(json.status, 1);
    const Doc v = Doc::parse(json.out);
    EXPECT_EQ(v.at("kind").get<std::string>(), "Variable");
    EXPECT_EQ(v.at("name").get<std::string>(), name);

    // A tolerance wide enough hides the change; a bad one is a usage error.
    EXPECT_EQ(Run("diff --tolerance 10 '" + Refinery() + "' '" + changed + "'").status, 0);
    EXPECT_EQ(Run("diff --tolerance -1 '" + Refinery() + "' '" + changed + "'").status, 2);
}

}  // namespace clitest
