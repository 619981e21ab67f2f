// Tests of the nonlinear model's binary section: layouts of each version,
// round trips, thresholds, and refusal of damaged input.
#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <vector>

#include "lpdata/ZEMBinaryIO.h"
#include "lpdata/ZEMException.h"
#include "nlpdata/NLTypeCodes.h"
#include "NLRig.h"

namespace {

// The entity tables a model file reader hands to the nonlinear section: the
// entities of the target model in file order, each with a trailing null.
struct Tables {
    std::vector<ILPVariable*> vars;
    std::vector<ILPEquation*> eqns;
    std::vector<ILPNonZero*> nzs;
};

// Copies the rows, columns and every matrix entry (in insertion order) of
// `from` into the empty `to`, as restoring the LP sections of a file does.
Tables CopyLinearPart(ModelRig& from, ModelRig& to) {
    Tables t;
    for (ILPVariable* v = from.vars->FrstVariableObject(); v; v = from.vars->NextVariableObject())
        t.vars.push_back(to.Var(v->GetName(), v->GetVarValue()));
    for (ILPEquation* e = from.eqns->FrstEquationObject(); e; e = from.eqns->NextEquationObject())
        t.eqns.push_back(to.Row(e->GetName(), e->GetType(), e->GetRHS()));
    for (ILPNonZero* nz = from.matrix->FrstNonZeroObject(); nz; nz = from.matrix->NextNonZeroObject())
        t.nzs.push_back(to.Coef(t.eqns[nz->GetEquationIdx() - 1], t.vars[nz->GetVariableIdx() - 1],
                                nz->GetCoefficient()));
    t.vars.push_back(nullptr);
    t.eqns.push_back(nullptr);
    t.nzs.push_back(nullptr);
    return t;
}

// One term's content, compared across models.
struct TermImage {
    int16_t type, active;
    std::string id, row;
    std::vector<std::string> vars, nzVars;
    std::vector<double> consts;
    bool operator==(const TermImage& o) const {
        return type == o.type && active == o.active && id == o.id && row == o.row &&
               vars == o.vars && nzVars == o.nzVars && consts == o.consts;
    }
};

std::vector<TermImage> Images(ModelRig& m) {
    std::vector<TermImage> out;
    for (INonLinearity* t : m.Pool()) {
        TermImage im;
        im.type = t->GetType();
        im.active = t->Active();
        im.id = t->GetNonLinearityID() ? t->GetNonLinearityID() : "";
        im.row = t->GetEquationPtr()->GetName();
        for (ILPVariable* v = t->FrstVar(); v; v = t->NextVar()) im.vars.push_back(v->GetName());
        for (ILPNonZero* nz = t->FrstNZ(); nz; nz = t->NextNZ()) {
            EXPECT_EQ(nz->GetEquationPtr(), t->GetEquationPtr());
            im.nzVars.push_back(nz->GetVariablePtr()->GetName());
        }
        for (INLConstant* c = t->FrstNLConst(); c; c = t->NextNLConst()) im.consts.push_back(c->GetValue());
        out.push_back(im);
    }
    return out;
}

class NonLinearModelStream : public ::testing::Test {
protected:
    void SetUp() override {
        x = a.Var("X", 1.5);
        y = a.Var("Y", 2.5);
        z = a.Var("Z", 0.5);
        r1 = a.Row("R1");
        r2 = a.Row("R2", 3, 4.0);
        a.Coef(r1, x, 2.0);
        a.Coef(r2, z, -1.0);
        a.Term("XPROD", r1, {3.0}, {x, y, x});
        a.Term("LNX", r2, {1.25, 0.5}, {z, y});
        a.Term("CONST", r1, {4.0, 5.0}, {})->DeActivate();
        a.Term("NOSUCH:LONG-IDENTIFIER-OF-30CH", r2, {}, {y});
    }

    std::string Section(double version) {
        std::ostringstream os;
        a.model->StreamWrite(&os, version);
        return os.str();
    }

    // Reads `bytes` into a fresh model with the same linear part.
    void ReadInto(ModelRig& b, const std::string& bytes, double version, int count, bool safe = false) {
        Tables t = CopyLinearPart(a, b);
        std::istringstream is(bytes);
        if (safe)
            b.model->StreamReadSafe(version, count, t.vars.data(), t.eqns.data(), t.nzs.data(), &is);
        else
            b.model->StreamRead(version, count, t.vars.data(), t.eqns.data(), t.nzs.data(), &is);
        EXPECT_EQ(is.tellg(), static_cast<std::streampos>(bytes.size())) << "bytes left unread";
    }

public:
    ModelRig a;

protected:
    ILPVariable *x, *y, *z;
    ILPEquation *r1, *r2;
};

// Size of the arrays for the four terms: T = 3+2+0+1, U = 2+2+0+1, K = 1+2+2+0.
constexpr size_t kArrays = 6 * 4 + 5 * 4 + 5 * 8;

TEST_F(NonLinearModelStream, FixedRecordLayoutsAndVersionThresholds) {
    struct Case {
        double version;
        size_t record;
        bool blocks;
    } cases[] = {{2007.0, 48, false}, {2007.5, 272, true}, {2008.5, 2020, true},
                 {2009.5, 520, true}, {2011.5, 520, true}, {1.05, 48, false}};
    for (const Case& c : cases) {
        const std::string s = Section(c.version);
        EXPECT_EQ(s.size(), 4 * c.record + kArrays + (c.blocks ? 4 : 0)) << c.version;
    }
}

TEST_F(NonLinearModelStream, RecordFieldsAndIdentifierCut) {
    const std::string v1 = Section(2007.0);
    const unsigned char* p = reinterpret_cast<const unsigned char*>(v1.data());
    EXPECT_EQ(zembin::get16(p), kNLProduct);
    EXPECT_EQ(zembin::get16(p + 2), 1);
    EXPECT_EQ(zembin::get32(p + 4), 1);
    EXPECT_EQ(zembin::get32(p + 8), 3);
    EXPECT_EQ(zembin::get32(p + 12), 2);
    EXPECT_EQ(zembin::get32(p + 16), 1);
    EXPECT_EQ(zembin::getName(p + 20, 25), "XPROD");
    EXPECT_EQ(zembin::get16(p + 2 * 48 + 2), 0);  // the deactivated CONST
    const unsigned char* fourth = p + 3 * 48;
    EXPECT_EQ(zembin::get16(fourth), kNLUnknown);
    EXPECT_EQ(zembin::getName(fourth + 20, 25), "NOSUCH:LONG-IDENTIFIER-O");  // 24 characters
    EXPECT_EQ(fourth[44], 0);
    // The arrays: variable indices, entry indices, constants.
    const unsigned char* arr = p + 4 * 48;
    const int32_t vars[] = {1, 2, 1, 3, 2, 2};
    for (int i = 0; i < 6; ++i) EXPECT_EQ(zembin::get32(arr + 4 * i), vars[i]);
    const unsigned char* consts = arr + 6 * 4 + 5 * 4;
    const double k[] = {3.0, 1.25, 0.5, 4.0, 5.0};
    for (int i = 0; i < 5; ++i) EXPECT_EQ(zembin::getF64(consts + 8 * i), k[i]);
}

TEST_F(NonLinearModelStream, V5WritesShortRecordsAndAnIdentifierBlock) {
    const std::string s = Section(2020.1);
    const std::string ids = std::string("XPROD") + '\0' + "LNX" + '\0' + "CONST" + '\0' +
                            "NOSUCH:LONG-IDENTIFIER-OF-30CH" + '\0';
    ASSERT_EQ(s.size(), 4 * 20 + 4 + ids.size() + kArrays + 4);
    const unsigned char* p = reinterpret_cast<const unsigned char*>(s.data());
    EXPECT_EQ(zembin::get32(p + 80), static_cast<int32_t>(ids.size()));
    EXPECT_EQ(s.substr(84, ids.size()), ids);
    EXPECT_EQ(zembin::get32(p + s.size() - 4), 0);  // empty block list
}

TEST_F(NonLinearModelStream, V5CutsIdentifiersAt500BytesWithTheirTerminator) {
    ModelRig m;
    ILPEquation* r = m.Row("R");
    m.Term(("NOSUCH" + std::string(600, 'A')).c_str(), r, {}, {});
    std::ostringstream os;
    m.model->StreamWrite(&os, 2020.1);
    const std::string s = os.str();
    EXPECT_EQ(zembin::get32(reinterpret_cast<const unsigned char*>(s.data()) + 20), 500);
    EXPECT_EQ(s.size(), 20u + 4 + 500 + 4);
    EXPECT_EQ(s[24 + 499], '\0');
}

TEST_F(NonLinearModelStream, EveryVersionRoundTrips) {
    for (double version : {1.05, 2007.0, 2007.5, 2008.5, 2009.5, 2011.5, 2020.1}) {
        SCOPED_TRACE(version);
        ModelRig b;
        ReadInto(b, Section(version), version, a.model->NumberOfPersistedNonLinearities());
        std::vector<TermImage> want = Images(a);
        if (version <= 2007.0) want[3].id = "NOSUCH:LONG-IDENTIFIER-O";
        EXPECT_TRUE(Images(b) == want);
        // Read terms go in through the same insertion as added ones, which
        // marks rows and entries (checked where terms are added).
        EXPECT_EQ(b.matrix->NumberOfNonZeros(), a.matrix->NumberOfNonZeros());
    }
}

TEST_F(NonLinearModelStream, SafeReadAppendsToExistingTerms) {
    ModelRig b;
    Tables t = CopyLinearPart(a, b);
    b.Term("EXPX", t.eqns[0], {1.0}, {t.vars[2]});
    const std::string s = Section(2020.1);
    std::istringstream is(s);
    b.model->StreamReadSafe(2020.1, 4, t.vars.data(), t.eqns.data(), t.nzs.data(), &is);
    ASSERT_EQ(b.model->NumberOfNonLinearities(), 5);
    EXPECT_EQ(b.Pool()[4]->GetIndex(), 5);
    EXPECT_STREQ(b.Pool()[1]->GetNonLinearityID(), "XPROD");
}

// An empty pool writes nothing (the empty model file's size pins that);
// block members are not written either.
TEST_F(NonLinearModelStream, BlockMembersAreNotWritten) {
    ModelRig m;
    ILPEquation* r = m.Row("R");
    ILPVariable* v = m.Var("V");
    INonLinearity* t = m.Make("EXPX", r, {1.0}, {v});
    t->SetBlkMember(1);
    m.model->AddNonLinearityObject(t);
    for (double version : {2020.1, 2009.5}) {
        std::ostringstream bs;
        m.model->StreamWrite(&bs, version);
        EXPECT_EQ(bs.str(), std::string(4, '\0')) << version;  // only the empty block list
    }
    EXPECT_EQ(m.model->NumberOfPersistedNonLinearities(), 0);
    ModelRig b;  // a count of zero reads nothing
    ReadInto(b, "", 2020.1, 0);
    EXPECT_EQ(b.model->NumberOfNonLinearities(), 0);
}

// Expects reading `bytes` to throw with `name` and `reason`, and the target
// model to receive no term.
void ExpectReadError(NonLinearModelStream* f, ModelRig& b, const std::string& bytes, double version,
                     int count, const std::string& name, const std::string& reasonStart) {
    Tables t = CopyLinearPart(f->a, b);
    std::istringstream is(bytes);
    try {
        b.model->StreamRead(version, count, t.vars.data(), t.eqns.data(), t.nzs.data(), &is);
        ADD_FAILURE() << "no exception";
    } catch (ZEM_Exception& e) {
        if (name.empty()) return;  // only the refusal is checked
        EXPECT_EQ(e.Name(), name);
        EXPECT_EQ(e.Reason().substr(0, reasonStart.size()), reasonStart);
        EXPECT_EQ(e.Routine(), "NonLinearModel::StreamRead");
    }
    EXPECT_EQ(b.model->NumberOfNonLinearities(), 0);
}

TEST_F(NonLinearModelStream, ShortSectionsAndNameBlockErrors) {
    const std::string v4 = Section(2009.5), v5 = Section(2020.1);
    std::string zeroLength = v5, fewNames = v5;
    zembin::put32(reinterpret_cast<unsigned char*>(&zeroLength[80]), 0);
    // A block without enough terminators for the terms.
    for (size_t i = 84; i < 84 + 30; ++i)
        if (fewNames[i] == '\0') fewNames[i] = 'Q';
    const char* list = "Error during read of NonLinearity List from binary file";
    const char* names = "Error during read of NonLinearity names from binary file";
    const struct {
        std::string bytes;
        double version;
        const char* name;
        const char* reason;
    } cases[] = {{v4.substr(0, 4 * 520 + 10), 2009.5, "ZEMDataMgr Error", list},
                 {zeroLength, 2020.1, "LPStdDataMgr Error", "Error during read of NonLinearity name count from binary file"},
                 {fewNames, 2020.1, "ZEMDataMgr Error", names}};
    for (const auto& c : cases) {
        ModelRig b;
        ExpectReadError(this, b, c.bytes, c.version, 4, c.name, c.reason);
    }
    // A block list section that is not empty.
    std::string blocks = v5;
    zembin::put32(reinterpret_cast<unsigned char*>(&blocks[blocks.size() - 4]), 2);
    ModelRig b;
    ExpectReadError(this, b, blocks, 2020.1, 4, "", "");
}

TEST_F(NonLinearModelStream, EveryTruncationThrowsAndAddsNothing) {
    for (double version : {2007.0, 2020.1}) {
        const std::string s = Section(version);
        for (size_t cut = 0; cut < s.size(); ++cut) {
            ModelRig b;
            Tables t = CopyLinearPart(a, b);
            std::istringstream is(s.substr(0, cut));
            EXPECT_THROW(b.model->StreamRead(version, 4, t.vars.data(), t.eqns.data(), t.nzs.data(), &is),
                         ZEM_Exception)
                << version << " cut at " << cut;
            if (version <= 2007.0 || cut < s.size() - 4) {
                EXPECT_EQ(b.model->NumberOfNonLinearities(), 0);
            }
        }
    }
}

TEST_F(NonLinearModelStream, ReferencesOutsideTheTablesAreRefused) {
    const std::string s = Section(2011.5);  // V4: records of 520 bytes
    auto patched = [&](size_t at, int32_t v) {
        std::string c = s;
        zembin::put32(reinterpret_cast<unsigned char*>(&c[at]), v);
        return c;
    };
    const size_t arrays = 4 * 520;
    const char* list = "Error during read of NonLinearity List from binary file";
    struct Case {
        size_t at;
        int32_t value;
    } cases[] = {
        {4, 3},                    // row index past the two rows
        {4, 0},                    // row index 0
        {8, -1},                   // negative argument count
        {12, 4},                   // more distinct arguments than arguments
        {arrays + 4, 4},           // variable index past the three variables
        {arrays + 4, 0},           // variable index 0
        {arrays + 24, 99},         // entry index past the table
        {arrays + 24, 2},          // entry of another row and column
        {16, 1 << 30},             // constant count larger than the stream
        {8 + 520, 1},              // distinct count no longer matches the arguments
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.at);
        ModelRig b;
        ExpectReadError(this, b, patched(c.at, c.value), 2011.5, 4, "ZEMDataMgr Error", list);
    }
    ModelRig neg;
    ExpectReadError(this, neg, s, 2011.5, -1, "ZEMDataMgr Error", list);
    ModelRig huge;
    ExpectReadError(this, huge, s, 2011.5, 1 << 30, "ZEMDataMgr Error", list);
}

TEST_F(NonLinearModelStream, AppendMapsThroughTables) {
    // The target holds the same names in another order, plus an extra row.
    ModelRig b;
    ILPVariable* bz = b.Var("Z");
    ILPVariable* by = b.Var("Y");
    ILPVariable* bx = b.Var("X");
    b.Row("EXTRA");
    ILPEquation* br2 = b.Row("R2");
    ILPEquation* br1 = b.Row("R1");
    std::vector<ILPVariable*> vt = {bx, by, bz, nullptr};
    std::vector<ILPEquation*> et = {br1, br2, nullptr};
    b.model->AppendNonLinearModel(a.model, vt.data(), et.data());
    EXPECT_TRUE(Images(b) == Images(a));
    EXPECT_EQ(b.matrix->NumberOfNonZeros(), 4);  // X, Y in R1; Z, Y in R2 (shared); none for CONST
    EXPECT_EQ(bx->GetNonlinear(), 1);

    ModelRig c;
    ILPVariable* cx = c.Var("X");
    ILPEquation* cr = c.Row("R1");
    std::vector<ILPVariable*> shortVars = {cx, nullptr};
    std::vector<ILPEquation*> shortEqns = {cr, cr, nullptr};
    EXPECT_THROW(c.model->AppendNonLinearModel(a.model, shortVars.data(), shortEqns.data()),
                 ZEM_Exception);
    EXPECT_EQ(c.model->NumberOfNonLinearities(), 0);
}

}  // namespace
