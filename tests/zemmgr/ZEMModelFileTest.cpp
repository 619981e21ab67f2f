// Saving and restoring whole models through the model file and stream.
#include <gtest/gtest.h>

#include <cstdio>
#include <limits>

#include "ZEMTestModel.h"
#include "lpdata/ILPStdDataMgr.h"
#include "lpdata/ZEMBinaryIO.h"

namespace {

// The message of the ZEM_Exception that restoring `bytes` throws, or "" when
// it throws none.
std::string restoreError(const std::string& bytes, std::string* routine = nullptr) {
    ZEMMgrPtr mgr = NewMgr();
    try {
        Restore(mgr.get(), bytes);
    } catch (ZEM_Exception& e) {
        if (routine != nullptr) *routine = e.Routine();
        return e.Reason().empty() ? e.Name() : e.Reason();
    }
    return "";
}

std::string withVersion(std::string bytes, double version) {
    unsigned char v[8];
    zembin::putF64(v, version);
    bytes.replace(0, 8, reinterpret_cast<const char*>(v), 8);
    return bytes;
}

std::string with32(std::string bytes, size_t at, int32_t value) {
    unsigned char c[4];
    zembin::put32(c, value);
    bytes.replace(at, 4, reinterpret_cast<const char*>(c), 4);
    return bytes;
}

double versionOf(const std::string& bytes) {
    return zembin::getF64(reinterpret_cast<const unsigned char*>(bytes.data()));
}

constexpr size_t kFlagsAt = 144 + 28;

}  // namespace

// Whole models round trip in the property harness (tests/xmpsutil); here the
// ways in and out of the manager.
TEST(ZEMModelFile, LocalStreamMissingFileAndVersionOverride) {
    ZEMMgrPtr a = RichMgr();
    const std::string bytes = ModelBytes(a.get());
    // Restoring replaces what was there.
    ZEMMgrPtr b = RichMgr("Q_");
    Restore(b.get(), bytes);
    EXPECT_EQ(ModelBytes(b.get()), bytes);

    // The local stream: a second save replaces the first.
    a->PersistToLocalStream();
    a->PersistToLocalStream();
    std::stringstream* ss = nullptr;
    a->GetLastSerializationStream(&ss);
    ASSERT_NE(ss, nullptr);
    EXPECT_EQ(ss->str(), bytes);

    // A file that cannot be opened leaves the model alone.
    EXPECT_FALSE(b->RestoreFromFile(TempPath("no_such_file.zem").c_str()));
    EXPECT_EQ(ModelBytes(b.get()), bytes);

    // A version given to one save is used for that save only; the flag
    // bytes are written whatever the version (so a 1.05 file as written does
    // not read back: its reader takes no hybrid byte).
    const std::string path = TempPath("roundtrip.zem");
    a->PersistAsFile(path.c_str(), 1.05);
    const std::string old = ReadFile(path);
    EXPECT_EQ(versionOf(old), 1.05);
    EXPECT_EQ(static_cast<unsigned char>(old[kFlagsAt + 1]), 1);
    EXPECT_EQ(versionOf(ModelBytes(a.get(), 2020.0)), 2020.0);
    std::remove(path.c_str());
}

TEST(ZEMModelFile, HeaderCountsAndFlagsLayout) {
    ZEMMgrPtr a = RichMgr();
    const std::string bytes = ModelBytes(a.get());
    ASSERT_GT(bytes.size(), kFlagsAt + 2);
    const auto* p = reinterpret_cast<const unsigned char*>(bytes.data());
    EXPECT_EQ(zembin::getF64(p), 2020.1);
    EXPECT_EQ(zembin::getName(p + 8, 129), "RICHMODEL");
    // Variables, equations, nonzeros, sets, set members, terms.
    const int32_t counts[] = {5, 5, Dims(a.get())[2], 2, 5, 4};
    for (size_t k = 0; k < 6; ++k) EXPECT_EQ(zembin::get32(p + 144 + 4 * k), counts[k]) << k;
    EXPECT_EQ(p[168], 1);           // objective in matrix
    EXPECT_EQ(p[kFlagsAt], 0);      // values initialized: off
    EXPECT_EQ(p[kFlagsAt + 1], 1);  // hybrid: on

    // An empty model: header, counts, two flags, empty sections, 8-byte
    // option table, no collections.
    ZEMMgrPtr e = NewMgr();
    const std::string empty = ModelBytes(e.get());
    ASSERT_EQ(empty.size(), 144u + 28u + 2u + 8u + 4u);
    EXPECT_EQ(zembin::getName(reinterpret_cast<const unsigned char*>(empty.data()) + 8, 129),
              "MDL");
    ZEMMgrPtr b = NewMgr();
    Restore(b.get(), empty);
    ExpectSameModel(e.get(), b.get());
}

TEST(ZEMModelFile, VersionBranches) {
    ZEMMgrPtr a = RichMgr();

    // 2020.0 and later read the hybrid byte: the files round-trip.
    for (double v : {2020.0, 2021.5}) {
        SCOPED_TRACE(v);
        ZEMMgrPtr b = NewMgr();
        Restore(b.get(), ModelBytes(a.get(), v));
        ExpectSameModel(a.get(), b.get());
    }

    // Below 2020.0 the reader takes no hybrid byte. A file of such a version
    // without that byte reads back (hybrid off), through every record
    // layout of the lists and of the terms; the older layouts do not carry
    // the scale (up to 2017.5) nor the shadow prices (up to 2011.5).
    ZEMMgrPtr reduced = NewMgr();
    Restore(reduced.get(), ModelBytes(a.get()));
    ILPVariableList* rv = Vars(reduced.get());
    ILPEquationList* re = Eqns(reduced.get());
    for (double v : {2020.0 - 1e-9, 2019.0, 2017.6, 2017.5, 2011.6, 2011.5, 2011.1, 2011.0,
                     2009.5, 2008.5, 2007.5, 2007.0, 1.05}) {
        SCOPED_TRACE(v);
        if (v <= 2017.5)
            for (ILPEquation* e = re->FrstEquationObject(); e; e = re->NextEquationObject())
                e->SetEqnScale(1.0);
        if (v <= 2011.5) {
            for (ILPEquation* e = re->FrstEquationObject(); e; e = re->NextEquationObject())
                e->SetShadowPrice(0.0);
            for (ILPVariable* x = rv->FrstVariableObject(); x; x = rv->NextVariableObject())
                x->SetVarShadowPrice(0.0);
        }
        std::string bytes = ModelBytes(a.get(), v);
        bytes.erase(kFlagsAt + 1, 1);
        ZEMMgrPtr b = NewMgr();
        Restore(b.get(), bytes);
        EXPECT_FALSE(b->IsHybridModel());
        ExpectSameModel(reduced.get(), b.get(), false);
    }
    // 1.04 is refused although the reader knows 1.03/1.04 layouts.
    std::string routine;
    EXPECT_EQ(restoreError(withVersion(ModelBytes(a.get()), 1.04), &routine),
              "Incompatible ZEMFile Version Error");
    EXPECT_EQ(routine, "ZEMMgr::RestoreFromFile");
    EXPECT_EQ(restoreError(withVersion(ModelBytes(a.get()), -3.0)),
              "Incompatible ZEMFile Version Error");
    // A NaN version passes the version test (it fails later, out of step).
    EXPECT_NE(restoreError(withVersion(ModelBytes(a.get()),
                                       std::numeric_limits<double>::quiet_NaN())),
              "Incompatible ZEMFile Version Error");
}

TEST(ZEMModelFile, HeaderErrors) {
    const std::string bytes = ModelBytes(RichMgr().get());
    // Below 172 bytes the header or its counts block is short; from 172 the
    // counts are read and the values-initialized byte is missing.
    const struct {
        size_t cut;
        const char* reason;
    } cases[] = {{100, "Error during read of ZEMFile Header from binary file"},
                 {171, "Error during read of ZEMFile Header from binary file"},
                 {172, "Error during read of ZEMFile element from binary file"}};
    for (const auto& c : cases) {
        std::string routine;
        EXPECT_EQ(restoreError(bytes.substr(0, c.cut), &routine), c.reason) << c.cut;
        EXPECT_EQ(routine, "ZEMMgr::RestoreFromFile") << c.cut;
    }
}

TEST(ZEMModelFile, DamagedOrTruncatedInputThrowsAndReleasesCleanly) {
    const std::string bytes = ModelBytes(RichMgr().get());
    // Impossible counts are refused before anything is allocated.
    for (size_t at = 144; at < 168; at += 4)
        for (int32_t bad : {-1, std::numeric_limits<int32_t>::max()}) {
            ZEMMgrPtr b = NewMgr();
            EXPECT_THROW(Restore(b.get(), with32(bytes, at, bad)), ZEM_Exception) << at;
        }
    for (size_t cut = 0; cut < bytes.size(); ++cut) {
        ZEMMgrPtr b = NewMgr();
        EXPECT_THROW(Restore(b.get(), bytes.substr(0, cut)), ZEM_Exception) << cut;
        // The partly read model can still be written (or is refused, when
        // the cut left a row without entries) and released.
        try {
            ModelBytes(b.get());
        } catch (ZEM_Exception& e) {
            EXPECT_NE(e.Reason().find("has no entries"), std::string::npos) << cut << e.Reason();
        }
    }
    // Every 4-byte word after the flags, one at a time, set to an index far
    // outside the model: any failure must be the library's exception, never
    // a crash (the sanitizer build reports any invalid access).
    for (size_t at = kFlagsAt + 2; at + 4 <= bytes.size(); at += 4) {
        ZEMMgrPtr b = NewMgr();
        try {
            Restore(b.get(), with32(bytes, at, 99999));
        } catch (ZEM_Exception&) {
        }
    }
}

TEST(ZEMModelFile, AppendAddsContentAndKeepsTitle) {
    ZEMMgrPtr a = RichMgr();
    ZEMMgrPtr other = RichMgr("P_");
    other->SetModelTitle("OTHER");
    other->SetValuesInitialized(true);
    other->SetHybridModel(false);

    ZEMMgrPtr b = NewMgr();
    Restore(b.get(), ModelBytes(a.get()));
    b->SetModelTitle("KEEP");
    std::istringstream in(ModelBytes(other.get()));
    b->AppendFromStream(&in);

    std::string title;
    b->GetModelTitle(title);
    EXPECT_EQ(title, "KEEP");
    EXPECT_TRUE(b->MatrixIncludesObjective());
    EXPECT_TRUE(b->GetValuesInitialized());  // taken from the file
    EXPECT_FALSE(b->IsHybridModel());        // taken from the file
    const std::array<int, 3> d = Dims(a.get());
    EXPECT_EQ(Dims(b.get()), (std::array<int, 3>{2 * d[0], 2 * d[1], 2 * d[2]}));
    ASSERT_NE(Var(b.get(), "P_X3"), nullptr);
    EXPECT_EQ(Var(b.get(), "P_X3")->GetIndex(), 8);
    ILPVariableCollection* col = nullptr;
    b->FindNamedVarCollection("P_OUT", &col);
    ASSERT_NE(col, nullptr);
    EXPECT_STREQ(col->FrstVariableObject()->GetName(), "P_X5");

    // A missing file appends nothing and says nothing.
    const std::string before = ModelBytes(a.get());
    a->AppendFromFile(TempPath("missing_append.zem").c_str());
    EXPECT_EQ(ModelBytes(a.get()), before);

    // Appending a model's own file would repeat every name: refused at the
    // first list, before any of its entities is added.
    std::istringstream self(before);
    EXPECT_EQ(FailureOf([&] { a->AppendFromStream(&self); }).reason,
              "Error Safe Append - Variable of same name already exists: X1");
    EXPECT_EQ(ModelBytes(a.get()), before);
}

// Refusals of what the file cannot carry are checked by the property
// harness (tests/xmpsutil); a path that cannot be created is a file error.
TEST(ZEMModelFile, UncreatablePathIsAFileError) {
    try {
        NewMgr()->PersistAsFile(TempPath("no_dir/x.zem").c_str());
        FAIL() << "no exception";
    } catch (ZEM_ExcpFileError& e) {
        EXPECT_EQ(e.ErrorType(), eFileCreateForWrite);
    }
}

// The linear data manager writes and reads through the same frame: a
// manager reads its file, it reads its own file back over what it holds,
// and it refuses a file that carries terms (it has no pool).
TEST(ZEMModelFile, LinearDataManagerFilesAndFilesWithTerms) {
    ILPStdDataMgr* lp = nullptr;
    CreateLPStdDataObject(&lp);
    std::string title;
    lp->GetModelTitle(title);
    EXPECT_EQ(std::make_tuple(title, lp->GetValuesInitialized(), lp->MatrixIncludesObjective()),
              std::make_tuple(std::string("ZEMMODEL"), true, false));  // a new model's defaults
    ILPVariableList* vars = nullptr;
    ILPEquationList* eqns = nullptr;
    lp->GetVariableCollectionIntf(&vars);
    lp->GetEquationCollectionIntf(&eqns);
    ILPVariable* x = vars->InsertVariable("X");
    x->SetBoundUpper(8.0);
    eqns->InsertEquation("R")->SetType(3);
    lp->InsertMatrixEntry("R", "X", 2.0, nullptr);
    ILPSpOrdSetList* sets = nullptr;
    lp->GetSpOrdSetCollectionIntf(&sets);
    ILPSpOrdSet* set = nullptr;
    sets->CreateNewSpOrdSetObject(&set);
    set->SetName("S");
    set->AddVariableObject(x);
    sets->AddSpOrdSetObject(set);
    lp->SetModelTitle("LP");
    lp->IncludeObjectiveInMatrix();
    lp->SetValuesInitialized(false);
    std::stringstream ss;
    lp->PersistAsStream(&ss);

    // Read back over a variable it held, then written again: the same bytes.
    ILPStdDataMgr* copy = nullptr;
    CreateLPStdDataObject(&copy);
    ILPVariableList* held = nullptr;
    copy->GetVariableCollectionIntf(&held);
    held->InsertVariable("STALE");
    EXPECT_FALSE(copy->RestoreFromFile(TempPath("no_such_file.zem").c_str()));
    std::istringstream in(ss.str());
    copy->RestoreFromStream(&in);
    std::stringstream again;
    copy->PersistAsStream(&again);
    EXPECT_EQ(again.str(), ss.str());
    copy->GetVariableCollectionIntf(&held);
    EXPECT_EQ(held->VarNameLookup("STALE"), nullptr);
    copy->Destroy();

    ZEMMgrPtr m = NewMgr();
    Restore(m.get(), ss.str());
    m->GetModelTitle(title);
    EXPECT_EQ(title, "LP");
    EXPECT_EQ(Dims(m.get()), (std::array<int, 3>{1, 1, 1}));
    EXPECT_EQ(Var(m.get(), "X")->GetBoundUpper(), 8.0);

    std::istringstream richIn(ModelBytes(RichMgr().get()));
    Failure f = FailureOf([&] { lp->RestoreFromStream(&richIn); });
    EXPECT_EQ(f.reason, "Error during read of ZEMFile element from binary file");
    lp->Destroy();
}
