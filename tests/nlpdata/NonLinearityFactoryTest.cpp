// The term factory: the keyword table, keyword resolution, creation by code
// and by name, registration and reference counting.
#include <gtest/gtest.h>

#include <sstream>
#include <string>

#include "NLRig.h"

namespace {

class FactoryTest : public ::testing::Test {
protected:
    void SetUp() override { m_factory->IAddRef(); }
    void TearDown() override { m_factory->IRelease(); }

    int16_t Code(const char* name) {
        int16_t code = -1;
        m_factory->NameToTypeID(name, &code);
        return code;
    }
    TermPtr ByCode(int16_t code) {
        INonLinearity* t = nullptr;
        m_factory->Create(code, &t);
        return TermPtr(t);
    }
    TermPtr ByName(const char* name) {
        INonLinearity* t = nullptr;
        m_factory->Create(name, &t);
        return TermPtr(t);
    }

    INonLinearityFactory* m_factory = CreateNonLinearityFactoryObject();
};

}  // namespace

TEST_F(FactoryTest, KeywordsResolveExactlyUpToTheFirstColon) {
    const struct {
        const char* name;
        int16_t code;
    } table[] = {{"XPROD", 1},     {"LNX", 2},       {"EXPX", 3},     {"CONST", 4},
                 {"CONSTPROD", 5}, {"NLUNKNOWN", 7}, {"NLBLKEQ", 8},  {"QCLEQ", 9},
                 {"SCDEQ", 13},    {"GNREQ", 10},    {"USEREQ", 11},  {"WRAPEQ", 12},
                 {"POW", 14},      {"XPOW", 15},     {"EVAP", 16},    {"EI", 17},
                 {"XPROD2", 19},   {"FLTQB", 20},    {"TPERCENT", 18}, {"DIV", 21},
                 {"DIBIFUNC", 91}, {"DIBIFUNCX", 92}, {"SIMDISTINTRP", 93},
                 {"SIMDISTINTRPFVT", 94}, {"SCDEQ:A", 13}, {"QCLEQ:ABC", 9}, {"USEREQ:a:b", 11},
                 {"XPROD:2", 1},   {"xprod", 7},     {"XPRO", 7},     {"XPROD ", 7},   {":XPROD", 7},
                 {nullptr, 7}};
    for (const auto& k : table) EXPECT_EQ(Code(k.name), k.code) << (k.name ? k.name : "null");
    EXPECT_EQ(static_cast<NonLinearityFactoryBase*>(m_factory)->NumberOfNames(), 24);
    m_factory->NameToTypeID("XPROD", nullptr);  // nowhere to write: ignored
}

TEST_F(FactoryTest, CreateByCodeMakesTheClassOfTheCodeOrAnUnknownTerm) {
    for (int16_t code : {1, 2, 3, 4, 5, 10, 12, 14, 15, 16, 17, 18, 19, 20, 21, 91, 92, 93, 94}) {
        TermPtr t = ByCode(code);
        ASSERT_TRUE(t) << code;
        EXPECT_EQ(t->GetType(), code);
        // The identifier is the keyword registered for the code.
        EXPECT_EQ(Code(t->GetNonLinearityID()), code) << t->GetNonLinearityID();
        EXPECT_EQ(t->Active(), 1);
    }
    for (int16_t code : {6, 7, 8, 9, 11, 13, 0, -1, 22, 90, 95, 32767}) {
        TermPtr t = ByCode(code);
        ASSERT_TRUE(t) << code;
        EXPECT_EQ(t->GetType(), 7) << code;
        EXPECT_STREQ(t->GetNonLinearityID(), "NLUNKNOWN") << code;
    }
    // So are model-made types asked for by name.
    EXPECT_EQ(ByName("SCDEQ:A")->GetType(), 7);
    EXPECT_STREQ(ByName("EXPX:whatever")->GetNonLinearityID(), "EXPX");
    m_factory->Create(static_cast<int16_t>(1), nullptr);  // nowhere to put it: nothing made
    m_factory->Create("XPROD", nullptr);
}

TEST_F(FactoryTest, UnknownNameIsKeptAndShownInTheTermsOutput) {
    TermRig rig;
    TermPtr t = ByName("NOSUCH");
    rig.Fill(t.get(), {2.0}, {rig.Var("X", 3.0)});
    EXPECT_EQ(t->GetType(), 7);
    EXPECT_STREQ(t->GetNonLinearityID(), "NOSUCH");
    EXPECT_EQ(t->EvaluateTerm(), 0.0);
    EXPECT_EQ(TermRig::Jacobian(t.get()), std::vector<double>{0.0});
    std::ostringstream os;
    t->Display(os);
    EXPECT_EQ(os.str().rfind("NONLINEARITY TYPE : *** WARNING UNRECOGNIZED TYPE *** : NOSUCH\n", 0), 0u) << os.str();
    std::string text;
    t->TermString(text);
    EXPECT_EQ(text, "NOSUCH( X,  2.000000e+00 )");
    EXPECT_STREQ(ByName(nullptr)->GetNonLinearityID(), "NLUNKNOWN");
    EXPECT_STREQ(ByName("")->GetNonLinearityID(), "NLUNKNOWN");
}

TEST(FactoryRegistration, FirstRegistrationWinsAndCountingDestroysAtZero) {
    bool destroyed = false;
    CountingFactory* f = new CountingFactory(&destroyed);
    f->AddNonLinearityName("XPROD:OTHER", 50);  // taken already: ignored
    f->AddNonLinearityName("MYTERM:variant", 51);
    f->AddNonLinearityName("MYTERM", 52);  // second registration: ignored
    f->AddNonLinearityName(nullptr, 53);
    EXPECT_EQ(f->IAddRef(), 1);
    EXPECT_EQ(f->IAddRef(), 2);
    int16_t code = 0;
    f->NameToTypeID("XPROD", &code);
    EXPECT_EQ(code, 1);
    f->NameToTypeID("MYTERM:x", &code);
    EXPECT_EQ(code, 51);
    EXPECT_EQ(f->NumberOfNames(), 25);
    int registry = 0;
    auto* r = reinterpret_cast<INLModelExtCachedEvalRegistration*>(&registry);
    f->SetExtCacheEvalRegistry(r);
    EXPECT_EQ(f->GetExtCacheEvalRegistry(), r);
    EXPECT_EQ(f->IRelease(), 1);
    EXPECT_FALSE(destroyed);
    EXPECT_EQ(f->IRelease(), 0);
    EXPECT_TRUE(destroyed);
}
