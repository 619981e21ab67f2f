// Binary records of the lists, the matrix, the set list and the collections:
// layouts, version dispatch, round trips and damaged streams.
#include <climits>
#include <sstream>
#include <string>
#include <vector>

#include "LPTestRig.h"
#include "lpdata/LPVariableCollection.h"

using namespace lptest;

namespace {
std::string Cut(const char* name) { return std::string(name).substr(0, 60); }
const char* const kMgrError = "LPStdDataMgr Error";
}  // namespace

TEST(ListRecords, VariableRecordLayout) {
    LPVariableList list;
    ILPVariable* v = list.InsertVariable("X1");
    const double values[] = {1.5, -2, 3, 4, 5, 6, 7, 8, 9};
    for (int i = 0; i < 9; ++i) (v->*kVarDoubles[i])(values[i]);
    v->SetVarType(3);
    v->SetVarStatus(-5);
    v->SetNonlinear(70000);
    v->SetVarShadowPrice(-0.25);
    std::ostringstream os;
    list.StreamWrite4(&os);
    const std::string s = os.str();
    ASSERT_EQ(s.size(), 88u + 4u + 3u);
    for (int i = 0; i < 9; ++i) EXPECT_EQ(zembin::getF64(Bytes(s) + 8 * i), values[i]) << i;
    EXPECT_EQ(zembin::get16(Bytes(s) + 72), 3);
    EXPECT_EQ(zembin::get16(Bytes(s) + 74), -5);
    EXPECT_EQ(zembin::get32(Bytes(s) + 76), 70000);
    EXPECT_EQ(zembin::getF64(Bytes(s) + 80), -0.25);
    EXPECT_EQ(zembin::get32(Bytes(s) + 88), 3);
    EXPECT_EQ(s.substr(92), std::string("X1\0", 3));
}

TEST(ListRecords, EquationRecordLayout) {
    LPEquationList list;
    ILPEquation* e = list.InsertEquation("ROW");
    e->SetType(ZEM_EQN_GE);
    for (int i = 0; i < 4; ++i) (e->*kEqnDoubles[i])(i + 1.0);
    e->SetShadowPrice(5);
    e->SetEqnScale(6);
    std::ostringstream v5, v4;
    list.StreamWrite5(&v5);
    list.StreamWrite4(&v4);
    const std::string s = v5.str();
    ASSERT_EQ(s.size(), 56u + 4u + 4u);
    EXPECT_EQ(v4.str().size(), 48u + 4u + 4u);
    for (int i = 0; i < 4; ++i) EXPECT_EQ(zembin::getF64(Bytes(s) + 8 * i), i + 1.0);
    EXPECT_EQ(zembin::get16(Bytes(s) + 32), ZEM_EQN_GE);
    EXPECT_EQ(zembin::getF64(Bytes(s) + 40), 5);
    EXPECT_EQ(zembin::getF64(Bytes(s) + 48), 6);
    EXPECT_EQ(v4.str().substr(0, 48), s.substr(0, 48));
}

// Empty lists write nothing: the empty model file's size pins that. Reading
// zero entities reads nothing and hands out an empty table.
TEST(ListRecords, ReadingNoEntitiesReadsNothing) {
    LPVariableList vars;
    std::istringstream is("unrelated");
    ILPVariable** table = nullptr;
    vars.StreamRead(0, &table, &is, 2020.1);
    ASSERT_NE(table, nullptr);
    EXPECT_EQ(table[0], nullptr);
    delete[] table;
    EXPECT_EQ(is.tellg(), 0);
}

// Write, read back, write again: the second image must equal the first (the
// layout tests pin the writer's offsets, so this pins the reader's), and the
// entities read must be the table handed out, indexed after what was there.
// Names longer than 60 characters come back cut to 60.
TEST(ListRecords, RandomListsRoundTrip) {
    std::mt19937 rng(7);
    for (double version : {2000.0, 2011.3, 2016.0, 2020.1}) {
        LPVariableList vsrc, vdst;
        LPEquationList esrc, edst;
        FillRandomVariables(vsrc, 300, rng);
        FillRandomEquations(esrc, 300, rng);
        std::stringstream ss;
        vsrc.StreamWrite(&ss, version);
        esrc.StreamWrite(&ss, version);
        const std::string image = ss.str();
        vdst.InsertVariable("ALREADY_THERE");
        ILPVariable** vt = nullptr;
        ILPEquation** et = nullptr;
        vdst.StreamReadSafe(300, &vt, &ss, version);
        edst.StreamRead(300, &et, &ss, version);
        EXPECT_EQ(ss.peek(), EOF);  // every byte consumed
        ASSERT_EQ(vdst.NumberOfVariables(), 301);
        EXPECT_EQ(vt[300], nullptr);
        for (int i = 0; i < 300; ++i) {
            EXPECT_EQ(vt[i]->GetIndex(), i + 2);
            EXPECT_EQ(et[i]->GetIndex(), i + 1);
        }
        ILPVariable* from = vsrc.FrstVariableObject();
        for (int i = 0; i < 300; ++i, from = vsrc.NextVariableObject())
            EXPECT_EQ(vdst.VarNameLookup(Cut(from->GetName()).c_str()), vt[i]);
        vdst.RemoveVariable(vdst.VarNameLookup("ALREADY_THERE"));
        std::ostringstream again;
        vdst.StreamWrite(&again, version);
        edst.StreamWrite(&again, version);
        EXPECT_EQ(again.str(), image) << version;
        // Fields the older layouts do not carry come back as defaults.
        if (version <= 2011.5) {
            EXPECT_EQ(vt[5]->GetVarShadowPrice(), 0.0);
        }
        if (version <= 2017.5) {
            EXPECT_EQ(et[5]->GetEqnScale(), 1.0);
        }
        delete[] vt;
        delete[] et;
    }
}

TEST(ListRecords, DamagedVariableStreamsThrowAndAddNothing) {
    LPVariableList src;
    for (const char* n : {"A", "BB", "CCC"}) src.InsertVariable(n);
    std::ostringstream os;
    src.StreamWrite4(&os);
    const std::string good = os.str();  // 3 * 88 records, count 9, names
    std::string zeroCount = good, hugeCount = good;
    Put32At(zeroCount, 264, 0);
    Put32At(hugeCount, 264, INT_MAX);
    const std::string list = "Error during read of Variable List from binary file";
    const std::string count = "Error during read of Variable name count from binary file";
    const std::string names = "Error during read of Variable names from binary file";
    const struct {
        std::string bytes;
        int n;
        const std::string& reason;
        const char* routine;
    } cases[] = {{good.substr(0, 200), 3, list, "LPVariableList::StreamRead"},
                 {good, -1, list, "LPVariableList::StreamRead"},
                 {good, INT_MAX, list, "LPVariableList::StreamRead"},
                 {zeroCount, 3, count, "LPVariableList::StreamRead4"},
                 {good.substr(0, good.size() - 1), 3, names, "LPVariableList::StreamRead4"},
                 {hugeCount, 3, names, "LPVariableList::StreamRead4"}};
    for (const auto& c : cases) {
        LPVariableList dst;
        std::istringstream is(c.bytes);
        ILPVariable** table = nullptr;
        ExpectError([&] { dst.StreamRead4(c.n, &table, &is); }, kMgrError, c.reason, c.routine);
        EXPECT_EQ(dst.NumberOfVariables(), 0);
        EXPECT_EQ(table, nullptr);
    }
    // A stream that cannot tell its size fails on the count without allocating for it.
    NoSeekBuf buf(good);
    std::istream noSeek(&buf);
    LPVariableList dst;
    ExpectError([&] { dst.StreamRead4(INT_MAX, nullptr, &noSeek); }, kMgrError, list, "LPVariableList::StreamRead");
    EXPECT_EQ(dst.NumberOfVariables(), 0);
    // Appending refuses the oldest layout.
    ExpectError([&] { dst.StreamReadSafe(0, nullptr, &noSeek, 1.05); }, "LPVariableList Error",
                "Older formats not supported for SafeAppend from binary stream", "LPVariableList::StreamReadSafe");
}

TEST(ListRecords, DamagedEquationStreamsNameTheirRoutines) {
    LPEquationList src;
    src.InsertEquation("E");
    std::ostringstream v5, v4;
    src.StreamWrite5(&v5);
    src.StreamWrite4(&v4);
    const struct {
        std::string bytes;
        double version;
        const char* reason;
        const char* routine;
    } cases[] = {
        {v5.str().substr(0, 50), 2020.1, "Error during read of Equation List from binary file", "LPEquationList::StreamRead"},
        {v5.str().substr(0, 56), 2020.1, "Error during read of Equation name count from binary file",
         "LPEquationList::StreamRead5"},
        {v5.str().substr(0, 61), 2020.1, "Error during read of Equation names from binary file",
         "LPEquationList::StreamRead5"},
        {v4.str().substr(0, 48), 2016.0, "Error during read of Equation name count from binary file",
         "LPEquationList::StreamRead4"}};
    for (const auto& c : cases) {
        LPEquationList dst;
        std::istringstream is(c.bytes);
        ExpectError([&] { dst.StreamRead(1, nullptr, &is, c.version); }, kMgrError, c.reason, c.routine);
    }
}

TEST(ListRecords, ShortNameBlockAddsOnlyTheNamedEntities) {
    LPVariableList src;
    src.InsertVariable("A");
    src.InsertVariable("B");
    std::ostringstream os;
    src.StreamWrite4(&os);
    std::string bytes = os.str().substr(0, 2 * 88);
    // "A" and an unterminated "B": only the complete name is used.
    bytes += std::string("\x03\x00\x00\x00", 4) + std::string("A\0B", 3);
    LPVariableList dst;
    std::istringstream is(bytes);
    ILPVariable** table = nullptr;
    dst.StreamRead4(2, &table, &is);
    EXPECT_EQ(dst.NumberOfVariables(), 1);
    EXPECT_STREQ(table[0]->GetName(), "A");
    EXPECT_EQ(table[1], nullptr);
    delete[] table;
}

// Entities read in one batch are found by name exactly as if they had been
// added one by one: the first of a name wins, names already in the list
// keep their entity, and removing that entity uncovers the next one.
TEST(ListRecords, ReadNamesAreIndexedLikeSingleInsertions) {
    LPVariableList src;
    for (int i = 0; i < 5000; ++i) {
        ILPVariable* v = nullptr;
        src.CreateNewVariableObject(&v);
        v->SetName(("N" + std::to_string(i % 4000)).c_str());
        src.AddVariableObject(v);
    }
    ASSERT_EQ(src.NumberOfVariables(), 5000);
    std::ostringstream os;
    src.StreamWrite4(&os);
    LPVariableList dst;
    ILPVariable* old = dst.InsertVariable("N7");
    std::istringstream is(os.str());
    ILPVariable** table = nullptr;
    dst.StreamRead4(5000, &table, &is);
    ASSERT_EQ(dst.NumberOfVariables(), 5001);
    EXPECT_EQ(dst.VarNameLookup("N7"), old);
    for (int i = 0; i < 4000; i += 37) {
        if (i == 7) continue;
        EXPECT_EQ(dst.VarNameLookup(("N" + std::to_string(i)).c_str()), table[i]) << i;
    }
    EXPECT_EQ(table[4001]->GetIndex(), 4003);
    dst.RemoveVariable(old);
    EXPECT_EQ(dst.VarNameLookup("N7"), table[7]);
    dst.RemoveVariable(table[7]);
    EXPECT_EQ(dst.VarNameLookup("N7"), table[4007]);
    EXPECT_EQ(dst.VarNameLookup("N4000"), nullptr);
    delete[] table;
}

// ---- matrix, sets and collections against the list tables ---------------------

TEST(ModelRecords, NonzerosOfBlockRowsAreNotWritten) {
    Model m;
    ILPVariable* x = m.vars.InsertVariable("X");
    ILPEquation* r1 = m.eqns.InsertEquation("R1");
    ILPEquation* blk = m.eqns.InsertEquation("BLK");
    blk->SetBlkMember(2);
    AddEntry(m.matrix, r1, x, 1);
    AddEntry(m.matrix, blk, x, 2);
    std::ostringstream os;
    m.matrix.StreamWrite(&os);
    ASSERT_EQ(os.str().size(), 16u);
    EXPECT_EQ(zembin::get32(Bytes(os.str())), 1);
    EXPECT_EQ(zembin::get32(Bytes(os.str()) + 4), 1);
    EXPECT_EQ(zembin::getF64(Bytes(os.str()) + 8), 1.0);
}

// The whole section is checked before any entry joins the matrix.
TEST(ModelRecords, DamagedNonzeroStreamsAddNothing) {
    Model m;
    ILPVariable* vars[] = {m.vars.InsertVariable("X"), nullptr};
    ILPEquation* eqns[] = {m.eqns.InsertEquation("R"), nullptr};
    const std::string good = NonzeroRecord(1, 1, 1.0);
    const struct {
        std::string bytes;
        int n;
    } cases[] = {{good.substr(0, 10), 1},
                 {NonzeroRecord(2, 1, 1.0), 1},
                 {NonzeroRecord(1, 0, 1.0), 1},
                 {good, INT_MAX},
                 {good + NonzeroRecord(1, 1, 2.0) + NonzeroRecord(1, 9, 3.0), 3}};
    for (const auto& c : cases) {
        std::istringstream is(c.bytes);
        ExpectError([&] { m.matrix.StreamRead(c.n, nullptr, vars, eqns, &is); }, kMgrError,
                    "Error during read of NonZero List from binary file", "LPMatrix::StreamRead");
        EXPECT_EQ(m.matrix.NumberOfNonZeros(), 0);
        EXPECT_EQ(m.matrix.NonZerosInColumn(1), 0);
    }
    NoSeekBuf buf(good + good);
    std::istream unsized(&buf);
    ExpectError([&] { m.matrix.StreamRead(INT_MAX, nullptr, vars, eqns, &unsized); }, kMgrError,
                "Error during read of NonZero List from binary file", "LPMatrix::StreamRead");
    std::istringstream dup(good + good);
    m.matrix.StreamRead(2, nullptr, vars, eqns, &dup);  // duplicate records are stored as read
    EXPECT_EQ(m.matrix.NumberOfNonZeros(), 2);
}

// Records read into columns that already hold entries (an append) go after
// them, in record order, and are found by position and by row.
TEST(ModelRecords, NonzerosReadIntoExistingColumnsFollowTheirEntries) {
    Model m;
    ILPVariable* x = m.vars.InsertVariable("X");
    ILPVariable* y = m.vars.InsertVariable("Y");
    ILPEquation* r1 = m.eqns.InsertEquation("R1");
    ILPEquation* r2 = m.eqns.InsertEquation("R2");
    ILPEquation* r3 = m.eqns.InsertEquation("R3");
    AddEntry(m.matrix, r1, x, 1.0);
    AddEntry(m.matrix, r2, x, 2.0);
    // Tables in file order: Y first, so table positions differ from indices.
    ILPVariable* vars[] = {y, x, nullptr};
    ILPEquation* eqns[] = {r3, r1, nullptr};
    std::string bytes;
    for (int i = 0; i < 20; ++i) bytes += NonzeroRecord(2, 1, 10.0 + i);  // X in R3, long column
    bytes += NonzeroRecord(1, 2, 5.0);                                 // Y in R1
    std::istringstream is(bytes);
    ILPNonZero** table = nullptr;
    m.matrix.StreamRead(21, &table, vars, eqns, &is);
    ASSERT_NE(table, nullptr);
    EXPECT_EQ(table[21], nullptr);
    EXPECT_EQ(m.matrix.NumberOfNonZeros(), 23);
    EXPECT_EQ(m.matrix.NonZerosInColumn(x->GetIndex()), 22);
    std::vector<double> column;
    for (ILPNonZero* nz = m.matrix.ColFrstNonZeroObject(x->GetIndex()); nz; nz = m.matrix.ColNextNonZeroObject())
        column.push_back(nz->GetCoefficient());
    ASSERT_EQ(column.size(), 22u);
    EXPECT_EQ(column[0], 1.0);
    EXPECT_EQ(column[1], 2.0);
    EXPECT_EQ(column[21], 29.0);
    EXPECT_EQ(m.matrix.ExistIncidence(r1->GetIndex(), y->GetIndex()), table[20]);
    EXPECT_EQ(table[20]->GetIndex(), 23);
    EXPECT_EQ(m.matrix.ExistIncidence(r2->GetIndex(), x->GetIndex())->GetCoefficient(), 2.0);
    // A later duplicate through the model is summed into the first R3 entry.
    AddEntry(m.matrix, r3, x, 0.5);
    EXPECT_EQ(table[0]->GetCoefficient(), 10.5);
    delete[] table;
}

TEST(ModelRecords, DamagedSetStreams) {
    Model m;
    ILPVariable* vars[] = {m.vars.InsertVariable("X"), m.vars.InsertVariable("Y"), nullptr};
    LPSpOrdSetList src;
    ILPSpOrdSet* s = nullptr;
    src.CreateNewSpOrdSetObject(&s);
    s->SetName("S");
    s->AddVariableObject(vars[0]);
    s->AddVariableObject(vars[1]);
    src.AddSpOrdSetObject(s);
    std::ostringstream os;
    src.StreamWrite(&os);
    const std::string good = os.str();
    ASSERT_EQ(good.size(), 68u + 8u);
    std::string badIndex = good, negative = good;
    Put32At(badIndex, 72, 3);
    Put32At(negative, 64, -1);
    // Member counts that do not add up to the total are refused even when the
    // stream holds enough bytes.
    const struct {
        std::string bytes;
        int nSets, nMembers;
    } cases[] = {{good.substr(0, 72), 1, 2}, {good + std::string(4, '\1'), 1, 3}, {good, INT_MAX, 2},
                 {badIndex, 1, 2}, {negative, 1, -1}};
    auto read = [&](const std::string& bytes, int nSets, int nMembers) {
        std::istringstream is(bytes);
        m.sets.StreamRead(nSets, nMembers, nullptr, vars, &is);
    };
    for (const auto& c : cases)
        ExpectError([&] { read(c.bytes, c.nSets, c.nMembers); }, kMgrError,
                    "Error during read of SpOrdSet List from binary file", "LPSpOrdSetList::StreamRead");
    EXPECT_EQ(m.sets.NumberOfSpOrdSets(), 0);

    read(good, 1, 2);
    EXPECT_EQ(m.sets.NumberOfSpOrdSets(), 1);
    std::istringstream again(good);
    ExpectError([&] { m.sets.StreamReadSafe(1, 2, nullptr, vars, &again); }, kMgrError,
                "Error Safe Append - SOS of same name already exists", "LPSpOrdSetList::StreamReadSafe");
    EXPECT_EQ(m.sets.NumberOfSpOrdSets(), 1);
}

TEST(ModelRecords, CollectionRecordLayoutAndDamage) {
    LPVariableList list;
    ILPVariable* vars[] = {list.InsertVariable("X"), list.InsertVariable("Y"), nullptr};
    LPVariableCollection col;
    col.SetName(std::string(75, 'C').c_str());
    col.SetDirection(1);
    col.SetType(-3);
    col.AddVariableObject(vars[1]);
    std::ostringstream os;
    col.StreamWrite(&os);
    const std::string good = os.str();
    ASSERT_EQ(good.size(), 76u);
    EXPECT_EQ(zembin::getName(Bytes(good), 61), std::string(60, 'C'));
    EXPECT_EQ(zembin::get32(Bytes(good) + 64), 1);
    EXPECT_EQ(zembin::get16(Bytes(good) + 68), 1);
    EXPECT_EQ(zembin::get16(Bytes(good) + 70), -3);
    EXPECT_EQ(zembin::get32(Bytes(good) + 72), 2);

    const std::string error = "Error during read of Variable Collection from binary file";
    const std::string kName = "LPVariableCollection Error";
    const std::string kRoutine = "LPVariableCollection::StreamRead";
    std::string badIndex = good, hugeCount = good;
    Put32At(badIndex, 72, 5);
    Put32At(hugeCount, 64, INT_MAX);
    for (const std::string& bytes : {good.substr(0, 71), good.substr(0, 74), badIndex, hugeCount}) {
        LPVariableCollection back;
        std::istringstream is(bytes);
        ExpectError([&] { back.StreamRead(vars, &is); }, kName, error, kRoutine);
    }
    NoSeekBuf buf(hugeCount);
    std::istream noSeek(&buf);
    LPVariableCollection back;
    back.AddVariableObject(vars[0]);
    ExpectError([&] { back.StreamRead(vars, &noSeek); }, kName, error, kRoutine);
    EXPECT_EQ(back.CollectionSize(), 1);  // a failed read leaves the collection as it was
    EXPECT_STREQ(back.Name(), "UNNAMED");
}
