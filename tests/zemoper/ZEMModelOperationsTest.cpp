// The model comparison and the duplicate-name check.
#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include "lpdata/ILPVariable.h"
#include "lpdata/ILPVariableList.h"
#include "nlpdata/INonLinearity.h"
#include "zemmgr/IZEMMgr.h"
#include "zemmgr/IZEMModelBuilder.h"
#include "zemoper/ZEMModelOperations.h"

namespace {

struct Release {
    void operator()(IZEMMgr* m) const { m->IRelease(); }
};
using Model = std::unique_ptr<IZEMMgr, Release>;

// X, Y in [0,10]; OBJ: 3X + 2Y + c*X*Y; CAP: X + Y <= 8.
Model Build(double termConstant = 0.5, double yUpper = 10.0, bool withTerm = true) {
    IZEMMgr* raw = nullptr;
    ZEMObjectFactory(&raw);
    raw->IAddRef();
    Model m(raw);
    IZEMModelBuilder* b = nullptr;
    m->GetModelBuilderIntf(&b);
    ILPVariable *x = nullptr, *y = nullptr;
    ILPEquation *obj = nullptr, *cap = nullptr;
    b->MakeAddReturnVariableNew("X", 0, 10, 1, 1, &x);
    b->MakeAddReturnVariableNew("Y", 0, yUpper, 1, 1, &y);
    b->MakeAddReturnEquationNew("OBJ", 1, 0, 0, &obj);
    b->MakeAddReturnEquationNew("CAP", 3, 8, 0, &cap);
    b->MakeAddLinearNonZeroNew(obj, x, 3);
    b->MakeAddLinearNonZeroNew(obj, y, 2);
    b->MakeAddLinearNonZeroNew(cap, x, 1);
    b->MakeAddLinearNonZeroNew(cap, y, 1);
    if (withTerm) {
        ILPVariable* args[] = {x, y};
        b->MakeNonLinearityFast(1, obj, 2, args, 1, &termConstant, nullptr);
    }
    return m;
}

std::vector<std::string> Texts(const std::vector<ZEMModelDifference>& d) {
    std::vector<std::string> out;
    for (const ZEMModelDifference& x : d) out.push_back(x.text);
    return out;
}

}  // namespace

TEST(ZEMModelCompare, EqualModelsHaveNoDifferenceAndEachChangedFieldGivesItsLine) {
    ZEMModelOperations ops;
    Model a = Build();
    EXPECT_TRUE(ops.CompareModels(a.get(), Build().get(), 1e-6).empty());

    // A bound beyond the tolerance, the term's constant, and within it.
    const auto bound = ops.CompareModels(a.get(), Build(0.5, 12).get(), 1e-6);
    ASSERT_EQ(bound.size(), 1u);
    EXPECT_EQ(bound[0].kind, "Variable");
    EXPECT_EQ(bound[0].name, "Y");
    EXPECT_NE(bound[0].text.find("upper bounds do not match: p1 is 10, p2 is 12"), std::string::npos);
    EXPECT_TRUE(ops.CompareModels(a.get(), Build(0.5, 10.001).get(), 1e-3).empty());

    const auto term = Texts(ops.CompareModels(a.get(), Build(0.7).get(), 1e-6));
    ASSERT_EQ(term.size(), 1u);
    EXPECT_EQ(term[0], "Problem p1 Nonlinearity for Equation OBJ matches a Problem p2 "
                       "Nonlinearity in Variables X Y  but NOT in constants (p1 = 0.5, p2 = 0.7)");
}

TEST(ZEMModelCompare, EntitiesOnOneSideAreNamedWithTheirSide) {
    ZEMModelOperations ops;
    Model a = Build();
    Model b = Build(0.5, 10, false);
    IZEMModelBuilder* builder = nullptr;
    b->GetModelBuilderIntf(&builder);
    builder->MakeAddEquationNew("EXTRA", 2, 1, 0);
    builder->MakeAddLinearNonZero("EXTRA", "X", 1);
    const auto d = Texts(ops.CompareModels(a.get(), b.get(), 1e-6));
    const std::vector<std::string> expected = {
        "Problem Equation EXTRA is in p2 but not in p1",
        "Problem NonZero EXTRA/X is in p2 but not in p1",
        "Problem Nonlinearity for Equation OBJ in Variables X Y is in p1 but not in p2"};
    for (const std::string& e : expected)
        EXPECT_NE(std::find(d.begin(), d.end(), e), d.end()) << "missing: " << e;
}

TEST(ZEMModelOperations, DuplicateNamesCollideAfterScreenAndCaseFold) {
    ZEMModelOperations ops;
    Model m = Build();
    std::string screened = "ab";
    m->NameScreen(screened);  // lower-case letters are recorded in a suffix
    for (char& c : screened) c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
    std::ostringstream clean;
    EXPECT_EQ(ops.DuplicateNames(m.get(), clean), 0);
    EXPECT_EQ(clean.str(), "No duplicate names\n");

    IZEMModelBuilder* b = nullptr;
    m->GetModelBuilderIntf(&b);
    b->MakeAddVariable("ab");
    b->MakeAddEquation(screened.c_str());
    std::ostringstream report;
    EXPECT_EQ(ops.DuplicateNames(m.get(), report), 1);
    EXPECT_EQ(report.str(), "Duplicate screened name " + screened + "\n  Variable ab\n  Equation " +
                                screened + "\n1 duplicate name group(s)\n");
}
