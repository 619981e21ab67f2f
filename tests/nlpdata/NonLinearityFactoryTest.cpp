// Tests of the term factory: the keyword table, keyword resolution, creation
// by code and by name, and reference counting.
#include <gtest/gtest.h>

#include <sstream>
#include <string>

#include "NLTermRig.h"
#include "nlpdata/NonLinearityFactory.h"

namespace {

struct Keyword {
    const char* name;
    int16_t code;
};

// Every keyword of the table with its code, in registration order.
const Keyword kKeywords[] = {
    {"XPROD", 1},    {"LNX", 2},      {"EXPX", 3},          {"CONST", 4},
    {"CONSTPROD", 5}, {"NLUNKNOWN", 7}, {"NLBLKEQ", 8},      {"QCLEQ", 9},
    {"SCDEQ", 13},   {"GNREQ", 10},   {"USEREQ", 11},       {"WRAPEQ", 12},
    {"POW", 14},     {"XPOW", 15},    {"EVAP", 16},         {"EI", 17},
    {"XPROD2", 19},  {"FLTQB", 20},   {"TPERCENT", 18},     {"DIV", 21},
    {"DIBIFUNC", 91}, {"DIBIFUNCX", 92}, {"SIMDISTINTRP", 93}, {"SIMDISTINTRPFVT", 94},
};

// Codes the factory makes a class of its own for.
const int16_t kMadeCodes[] = {1, 2, 3, 4, 5, 10, 12, 14, 15, 16, 17, 18, 19, 20, 21, 91, 92, 93, 94};

// A factory that registers extra names and reports its destruction.
class ExtendedFactory : public NonLinearityFactoryBase {
public:
    explicit ExtendedFactory(bool* destroyed) : m_destroyed(destroyed) {
        AddNonLinearityName("XPROD:OTHER", 50);  // taken already: ignored
        AddNonLinearityName("MYTERM:variant", 51);
        AddNonLinearityName("MYTERM", 52);  // second registration: ignored
        AddNonLinearityName(nullptr, 53);
    }

protected:
    ~ExtendedFactory() override { *m_destroyed = true; }

private:
    bool* m_destroyed;
};

class FactoryTest : public ::testing::Test {
protected:
    void SetUp() override {
        m_factory = CreateNonLinearityFactoryObject();
        ASSERT_NE(m_factory, nullptr);
        m_factory->IAddRef();
    }
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

    INonLinearityFactory* m_factory = nullptr;
};

}  // namespace

TEST_F(FactoryTest, EveryKeywordResolvesToItsCode) {
    for (const Keyword& k : kKeywords) EXPECT_EQ(Code(k.name), k.code) << k.name;
    EXPECT_EQ(static_cast<NonLinearityFactoryBase*>(m_factory)->NumberOfNames(), 24);
}

TEST_F(FactoryTest, ResolutionCutsAtTheFirstColonAndIsExact) {
    EXPECT_EQ(Code("SCDEQ:A"), 13);
    EXPECT_EQ(Code("QCLEQ:ABC"), 9);
    EXPECT_EQ(Code("USEREQ:a:b"), 11);
    EXPECT_EQ(Code("XPROD2"), 19);  // not cut to XPROD
    EXPECT_EQ(Code("XPROD"), 1);
    EXPECT_EQ(Code("XPROD:2"), 1);
    EXPECT_EQ(Code("xprod"), 7);
    EXPECT_EQ(Code("XPRO"), 7);
    EXPECT_EQ(Code("XPROD "), 7);
    EXPECT_EQ(Code("NOSUCH"), 7);
    EXPECT_EQ(Code(""), 7);
    EXPECT_EQ(Code(":XPROD"), 7);
    EXPECT_EQ(Code(nullptr), 7);
    m_factory->NameToTypeID("XPROD", nullptr);  // nothing to write to: no crash
}

TEST_F(FactoryTest, CreateByCodeMakesTheClassOfTheCode) {
    for (int16_t code : kMadeCodes) {
        TermPtr t = ByCode(code);
        ASSERT_TRUE(t) << code;
        EXPECT_EQ(t->GetType(), code);
        // The identifier is the keyword registered for the code.
        EXPECT_EQ(Code(t->GetNonLinearityID()), code) << t->GetNonLinearityID();
        EXPECT_EQ(t->Active(), 1);
        EXPECT_EQ(t->GetIndex(), 0);
    }
    EXPECT_STREQ(ByCode(10)->GetNonLinearityID(), "GNREQ");
    EXPECT_STREQ(ByCode(21)->GetNonLinearityID(), "DIV");
    EXPECT_STREQ(ByCode(12)->GetNonLinearityID(), "WRAPEQ");
}

TEST_F(FactoryTest, CodesWithoutAFactoryClassGiveAnUnknownTerm) {
    for (int16_t code : {6, 7, 8, 9, 11, 13, 0, -1, 22, 90, 95, 32767}) {
        TermPtr t = ByCode(static_cast<int16_t>(code));
        ASSERT_TRUE(t) << code;
        EXPECT_EQ(t->GetType(), 7) << code;
        EXPECT_STREQ(t->GetNonLinearityID(), "NLUNKNOWN") << code;
    }
}

TEST_F(FactoryTest, CreateByNameResolvesThenCreatesByCode) {
    TermPtr t = ByName("XPROD2");
    EXPECT_EQ(t->GetType(), 19);
    EXPECT_STREQ(t->GetNonLinearityID(), "XPROD2");
    t = ByName("EXPX:whatever");
    EXPECT_EQ(t->GetType(), 3);
    EXPECT_STREQ(t->GetNonLinearityID(), "EXPX");
    // Model-made types asked of the factory by name are unknown terms.
    t = ByName("SCDEQ:A");
    EXPECT_EQ(t->GetType(), 7);
}

TEST_F(FactoryTest, UnknownNameIsKeptAndShownInTheTermsOutput) {
    TermRig rig;
    TermPtr t = ByName("NOSUCH");
    ASSERT_TRUE(t);
    rig.Fill(t.get(), {2.0}, {rig.Var("X", 3.0)});
    EXPECT_EQ(t->GetType(), 7);
    EXPECT_STREQ(t->GetNonLinearityID(), "NOSUCH");
    EXPECT_EQ(t->EvaluateTerm(), 0.0);
    EXPECT_EQ(TermRig::Jacobian(t.get()), std::vector<double>{0.0});
    std::ostringstream os;
    t->Display(os);
    EXPECT_NE(os.str().find("NONLINEARITY TYPE : *** WARNING UNRECOGNIZED TYPE *** : NOSUCH\n"),
              std::string::npos)
        << os.str();
    std::string text;
    t->TermString(text);
    EXPECT_EQ(text.rfind("NOSUCH( X, ", 0), 0u) << text;

    // A null or empty name still gives a term that has a name.
    EXPECT_STREQ(ByName(nullptr)->GetNonLinearityID(), "NLUNKNOWN");
    EXPECT_STREQ(ByName("")->GetNonLinearityID(), "NLUNKNOWN");
}

TEST_F(FactoryTest, NullOutputMakesNothing) {
    m_factory->Create(static_cast<int16_t>(1), nullptr);
    m_factory->Create("XPROD", nullptr);
    m_factory->Display(std::cout);  // prints nothing, must not fail
}

TEST(FactoryRegistration, FirstRegistrationWinsAndNamesAreCut) {
    bool destroyed = false;
    ExtendedFactory* f = new ExtendedFactory(&destroyed);
    f->IAddRef();
    int16_t code = 0;
    f->NameToTypeID("XPROD", &code);
    EXPECT_EQ(code, 1);
    f->NameToTypeID("MYTERM", &code);
    EXPECT_EQ(code, 51);
    f->NameToTypeID("MYTERM:x", &code);
    EXPECT_EQ(code, 51);
    EXPECT_EQ(f->NumberOfNames(), 25);
    // A registered code without a class gives an unknown term that keeps no
    // foreign name (it is made by code).
    INonLinearity* t = nullptr;
    f->Create("MYTERM", &t);
    ASSERT_NE(t, nullptr);
    EXPECT_EQ(t->GetType(), 7);
    t->Destroy();
    f->IRelease();
    EXPECT_TRUE(destroyed);
}

TEST(FactoryRegistration, ReferenceCountingDestroysAtZero) {
    bool destroyed = false;
    ExtendedFactory* f = new ExtendedFactory(&destroyed);
    EXPECT_EQ(f->IAddRef(), 1);
    EXPECT_EQ(f->IAddRef(), 2);
    EXPECT_EQ(f->IRelease(), 1);
    EXPECT_FALSE(destroyed);
    int dummy = 0;
    f->SetExtCacheEvalRegistry(reinterpret_cast<INLModelExtCachedEvalRegistration*>(&dummy));
    EXPECT_EQ(f->GetExtCacheEvalRegistry(),
              reinterpret_cast<INLModelExtCachedEvalRegistration*>(&dummy));
    EXPECT_EQ(f->IRelease(), 0);
    EXPECT_TRUE(destroyed);
}
