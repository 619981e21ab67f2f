// Saving and restoring whole models through the model file and stream.
#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <limits>
#include <sstream>
#include <string>

#include "ZEMTestModel.h"
#include "lpdata/ILPEquation.h"
#include "lpdata/ILPEquationList.h"
#include "lpdata/ILPMatrix.h"
#include "lpdata/ILPSpOrdSet.h"
#include "lpdata/ILPStdDataMgr.h"
#include "lpdata/ILPVariable.h"
#include "lpdata/ILPVariableCollection.h"
#include "lpdata/ILPVariableList.h"
#include "lpdata/ZEMBinaryIO.h"
#include "lpdata/ZEMException.h"
#include "zemmgr/ZEMMgr.h"
#include "zemmgr/ZEMModelFile.h"

namespace {

std::string tempPath(const std::string& name) {
    return std::string(ZEM_BINARY_DIR) + "/zemmgr_test_" + name;
}

std::string readFile(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    std::ostringstream ss;
    ss << in.rdbuf();
    return ss.str();
}

void restore(IZEMMgr* mgr, const std::string& bytes) {
    std::istringstream in(bytes);
    mgr->RestoreFromStream(&in);
}

// The message of the ZEM_Exception that restoring `bytes` throws, or "" when
// it throws none.
std::string restoreError(const std::string& bytes, std::string* routine = nullptr) {
    ZEMMgrPtr mgr = NewMgr();
    try {
        restore(mgr.get(), bytes);
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

constexpr size_t kFlagsAt = 144 + 28;

}  // namespace

TEST(ZEMModelFile, StreamRoundTripKeepsEveryField) {
    ZEMMgrPtr a = NewMgr();
    BuildRichModel(a.get());
    ZEMMgrPtr b = NewMgr();
    restore(b.get(), ModelBytes(a.get()));
    ExpectSameModel(a.get(), b.get());
    // And the restored model writes the same bytes again.
    EXPECT_EQ(ModelBytes(a.get()), ModelBytes(b.get()));
}

TEST(ZEMModelFile, FileRoundTripAndMissingFile) {
    ZEMMgrPtr a = NewMgr();
    BuildRichModel(a.get());
    const std::string path = tempPath("roundtrip.zem");
    a->PersistAsFile(path.c_str());
    EXPECT_EQ(readFile(path), ModelBytes(a.get()));

    ZEMMgrPtr b = NewMgr();
    EXPECT_TRUE(b->RestoreFromFile(path.c_str()));
    ExpectSameModel(a.get(), b.get());

    // A file that cannot be opened leaves the model alone.
    EXPECT_FALSE(b->RestoreFromFile(tempPath("no_such_file.zem").c_str()));
    ExpectSameModel(a.get(), b.get());
    std::remove(path.c_str());
}

TEST(ZEMModelFile, HeaderCountsAndFlagsLayout) {
    ZEMMgrPtr a = NewMgr();
    BuildRichModel(a.get());
    const std::string bytes = ModelBytes(a.get());
    ASSERT_GT(bytes.size(), kFlagsAt + 2);
    const auto* p = reinterpret_cast<const unsigned char*>(bytes.data());
    EXPECT_EQ(zembin::getF64(p), 2020.1);
    EXPECT_EQ(zembin::getName(p + 8, 129), "RICHMODEL");
    EXPECT_EQ(zembin::get32(p + 144), 5);       // variables
    EXPECT_EQ(zembin::get32(p + 148), 5);       // equations
    int n, m, nz;
    a->ModelDimension(n, m, nz);
    EXPECT_EQ(zembin::get32(p + 152), nz);      // nonzeros
    EXPECT_EQ(zembin::get32(p + 156), 2);       // sets
    EXPECT_EQ(zembin::get32(p + 160), 5);       // set members
    EXPECT_EQ(zembin::get32(p + 164), 4);       // terms
    EXPECT_EQ(p[168], 1);                       // objective in matrix
    EXPECT_EQ(p[kFlagsAt], 0);                  // values initialized: off
    EXPECT_EQ(p[kFlagsAt + 1], 1);              // hybrid: on
}

TEST(ZEMModelFile, EmptyModelFrame) {
    ZEMMgrPtr a = NewMgr();
    const std::string bytes = ModelBytes(a.get());
    // Header, counts, two flags, empty sections, 8-byte option table, no
    // collections.
    ASSERT_EQ(bytes.size(), 144u + 28u + 2u + 8u + 4u);
    EXPECT_EQ(zembin::getName(reinterpret_cast<const unsigned char*>(bytes.data()) + 8, 129),
              "MDL");
    ZEMMgrPtr b = NewMgr();
    restore(b.get(), bytes);
    ExpectSameModel(a.get(), b.get());
}

TEST(ZEMModelFile, VersionOverrideIsTemporary) {
    ZEMMgrPtr a = NewMgr();
    BuildRichModel(a.get());
    const std::string path = tempPath("v105.zem");
    a->PersistAsFile(path.c_str(), 1.05);
    const std::string old = readFile(path);
    EXPECT_EQ(zembin::getF64(reinterpret_cast<const unsigned char*>(old.data())), 1.05);
    // The flag bytes are written whatever the version.
    EXPECT_EQ(static_cast<unsigned char>(old[kFlagsAt + 1]), 1);
    EXPECT_EQ(zembin::getF64(reinterpret_cast<const unsigned char*>(ModelBytes(a.get()).data())),
              2020.1);
    EXPECT_EQ(dynamic_cast<ZEMMgr*>(a.get())->GetFileVersion(), 2020.1);

    std::stringstream ss;
    a->PersistAsStream(&ss, 2020.0);
    EXPECT_EQ(zembin::getF64(reinterpret_cast<const unsigned char*>(ss.str().data())), 2020.0);
    EXPECT_EQ(dynamic_cast<ZEMMgr*>(a.get())->GetFileVersion(), 2020.1);
    std::remove(path.c_str());
}

TEST(ZEMModelFile, VersionBranches) {
    ZEMMgrPtr a = NewMgr();
    BuildRichModel(a.get());

    // 2020.0 and later read the hybrid byte: the files round-trip.
    for (double v : {2020.1, 2020.0, 2021.5}) {
        SCOPED_TRACE(v);
        ZEMMgrPtr b = NewMgr();
        restore(b.get(), ModelBytes(a.get(), v));
        ExpectSameModel(a.get(), b.get());
    }

    // Below 2020.0 the reader takes no hybrid byte. A file of such a version
    // without that byte reads back (hybrid off), through every record
    // layout of the lists and of the terms; the older layouts do not carry
    // the scale (up to 2017.5) nor the shadow prices (up to 2011.5).
    ZEMMgrPtr reduced = NewMgr();
    restore(reduced.get(), ModelBytes(a.get()));
    ILPVariableList* rv = nullptr;
    ILPEquationList* re = nullptr;
    reduced->GetVariableCollectionIntf(&rv);
    reduced->GetEquationCollectionIntf(&re);
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
        restore(b.get(), bytes);
        EXPECT_FALSE(b->IsHybridModel());
        ExpectSameModel(reduced.get(), b.get(), false);
    }
    {
        // The 1.05 asymmetry: the extra hybrid byte puts the sections out of
        // step, so the model cannot come back as it was.
        const std::string bytes = ModelBytes(a.get(), 1.05);
        ZEMMgrPtr b = NewMgr();
        bool threw = false;
        try {
            restore(b.get(), bytes);
        } catch (ZEM_Exception&) {
            threw = true;
        }
        if (!threw) {
            int n, m, nz;
            b->ModelDimension(n, m, nz);
            EXPECT_NE(ModelBytes(a.get()), ModelBytes(b.get()));
        }
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
    ZEMMgrPtr a = NewMgr();
    BuildRichModel(a.get());
    const std::string bytes = ModelBytes(a.get());
    std::string routine;
    EXPECT_EQ(restoreError(bytes.substr(0, 100), &routine),
              "Error during read of ZEMFile Header from binary file");
    EXPECT_EQ(routine, "ZEMMgr::RestoreFromFile");
    // Exactly the 144-byte header: the counts block is missing.
    EXPECT_EQ(restoreError(bytes.substr(0, 144)),
              "Error during read of ZEMFile Header from binary file");
    EXPECT_EQ(restoreError(bytes.substr(0, 171)),
              "Error during read of ZEMFile Header from binary file");
    // Counts read, the values-initialized byte missing.
    EXPECT_EQ(restoreError(bytes.substr(0, 172)),
              "Error during read of ZEMFile element from binary file");
    EXPECT_EQ(restoreError(bytes.substr(0, 173)),
              "Error during read of ZEMFile element from binary file");
}

TEST(ZEMModelFile, ImpossibleCountsAreRefusedBeforeAllocating) {
    ZEMMgrPtr a = NewMgr();
    BuildRichModel(a.get());
    const std::string bytes = ModelBytes(a.get());
    for (size_t at = 144; at < 168; at += 4) {
        for (int32_t bad : {-1, std::numeric_limits<int32_t>::max()}) {
            SCOPED_TRACE(at);
            std::string patched = bytes;
            unsigned char c[4];
            zembin::put32(c, bad);
            patched.replace(at, 4, reinterpret_cast<const char*>(c), 4);
            ZEMMgrPtr b = NewMgr();
            EXPECT_THROW(restore(b.get(), patched), ZEM_Exception);
        }
    }
}

TEST(ZEMModelFile, TruncatedAnywhereThrowsAndReleasesCleanly) {
    ZEMMgrPtr a = NewMgr();
    BuildRichModel(a.get());
    const std::string bytes = ModelBytes(a.get());
    for (size_t cut = 0; cut < bytes.size(); ++cut) {
        ZEMMgrPtr b = NewMgr();
        EXPECT_THROW(restore(b.get(), bytes.substr(0, cut)), ZEM_Exception) << cut;
        // The partly read model can still be written and released.
        EXPECT_NO_THROW(ModelBytes(b.get())) << cut;
    }
}

TEST(ZEMModelFile, IndicesOutsideTheModelAreErrors) {
    ZEMMgrPtr a = NewMgr();
    BuildRichModel(a.get());
    const std::string bytes = ModelBytes(a.get());
    // Change every 4-byte word after the flags, one at a time, to an index
    // far outside the model: any resulting failure must be the library's
    // exception, never a crash.
    for (size_t at = kFlagsAt + 2; at + 4 <= bytes.size(); at += 4) {
        std::string patched = bytes;
        unsigned char c[4];
        zembin::put32(c, 99999);
        patched.replace(at, 4, reinterpret_cast<const char*>(c), 4);
        ZEMMgrPtr b = NewMgr();
        try {
            restore(b.get(), patched);
        } catch (ZEM_Exception&) {
        }
    }
}

TEST(ZEMModelFile, RestoreReplacesContent) {
    ZEMMgrPtr a = NewMgr();
    BuildRichModel(a.get());
    ZEMMgrPtr b = NewMgr();
    BuildRichModel(b.get(), "Q_");
    restore(b.get(), ModelBytes(a.get()));
    ExpectSameModel(a.get(), b.get());
}

TEST(ZEMModelFile, AppendAddsContentAndKeepsTitle) {
    ZEMMgrPtr a = NewMgr();
    BuildRichModel(a.get());
    ZEMMgrPtr other = NewMgr();
    BuildRichModel(other.get(), "P_");
    other->SetModelTitle("OTHER");
    other->SetValuesInitialized(true);
    other->SetHybridModel(false);

    ZEMMgrPtr b = NewMgr();
    restore(b.get(), ModelBytes(a.get()));
    b->SetModelTitle("KEEP");
    std::istringstream in(ModelBytes(other.get()));
    b->AppendFromStream(&in);

    std::string title;
    b->GetModelTitle(title);
    EXPECT_EQ(title, "KEEP");
    EXPECT_TRUE(b->MatrixIncludesObjective());
    EXPECT_TRUE(b->GetValuesInitialized());  // taken from the file
    EXPECT_FALSE(b->IsHybridModel());        // taken from the file
    int n, m, nz, n1, m1, nz1;
    a->ModelDimension(n1, m1, nz1);
    b->ModelDimension(n, m, nz);
    EXPECT_EQ(n, 2 * n1);
    EXPECT_EQ(m, 2 * m1);
    EXPECT_EQ(nz, 2 * nz1);
    ILPVariableList* vars = nullptr;
    b->GetVariableCollectionIntf(&vars);
    ASSERT_NE(vars->VarNameLookup("P_X3"), nullptr);
    EXPECT_EQ(vars->VarNameLookup("P_X3")->GetIndex(), 8);
    ILPVariableCollection* col = nullptr;
    b->FindNamedVarCollection("P_OUT", &col);
    ASSERT_NE(col, nullptr);
    EXPECT_STREQ(col->FrstVariableObject()->GetName(), "P_X5");
}

TEST(ZEMModelFile, AppendFromMissingFileIsSilent) {
    ZEMMgrPtr a = NewMgr();
    BuildRichModel(a.get());
    const std::string before = ModelBytes(a.get());
    a->AppendFromFile(tempPath("missing_append.zem").c_str());
    EXPECT_EQ(ModelBytes(a.get()), before);
}

TEST(ZEMModelFile, TitleOf128FitsAnd129IsRefusedWritingNothing) {
    ZEMMgrPtr a = NewMgr();
    a->SetModelTitle(std::string(128, 'T').c_str());
    const std::string bytes = ModelBytes(a.get());
    ZEMMgrPtr b = NewMgr();
    restore(b.get(), bytes);
    std::string title;
    b->GetModelTitle(title);
    EXPECT_EQ(title, std::string(128, 'T'));

    a->SetModelTitle(std::string(129, 'T').c_str());
    const std::string path = tempPath("long_title.zem");
    std::remove(path.c_str());
    EXPECT_THROW(a->PersistAsFile(path.c_str()), ZEM_Exception);
    EXPECT_FALSE(std::ifstream(path).good());
    std::stringstream ss;
    EXPECT_THROW(a->PersistAsStream(&ss), ZEM_Exception);
    EXPECT_TRUE(ss.str().empty());
}

TEST(ZEMModelFile, UnwritablePathIsAFileError) {
    ZEMMgrPtr a = NewMgr();
    const std::string path = tempPath("no_dir/x.zem");
    try {
        a->PersistAsFile(path.c_str());
        FAIL() << "no exception";
    } catch (ZEM_ExcpFileError& e) {
        EXPECT_EQ(e.ErrorType(), eFileCreateForWrite);
    }
}

TEST(ZEMModelFile, LocalStreamRoundTrip) {
    ZEMMgrPtr a = NewMgr();
    BuildRichModel(a.get());
    a->PersistToLocalStream();
    a->PersistToLocalStream();  // a second save replaces the first
    std::stringstream* ss = nullptr;
    a->GetLastSerializationStream(&ss);
    ASSERT_NE(ss, nullptr);
    EXPECT_EQ(ss->str(), ModelBytes(a.get()));
    ZEMMgrPtr b = NewMgr();
    b->RestoreFromStream(ss);
    ExpectSameModel(a.get(), b.get());
}

TEST(ZEMModelFile, SafeAppendRefusesASetOfTheSameName) {
    ZEMMgrPtr a = NewMgr();
    BuildRichModel(a.get());
    std::istringstream in(ModelBytes(a.get()));
    try {
        a->AppendFromStream(&in);
        FAIL() << "no exception";
    } catch (ZEM_Exception& e) {
        const std::string text = e.Name() + " " + e.Reason();
        EXPECT_NE(text.find("Error Safe Append - SOS of same name already exists"),
                  std::string::npos)
            << text;
    }
}

// The frame works on bare components too: a linear container without terms
// or options (what the standard data manager holds) saves and restores
// through it, and refuses a file that carries terms.
TEST(ZEMModelFile, FrameOverLinearComponents) {
    ZEMMgrPtr rich = NewMgr();
    BuildRichModel(rich.get());

    ILPStdDataMgr* lp = nullptr;
    CreateLPStdDataObject(&lp);
    ASSERT_NE(lp, nullptr);
    ZEMModelContent parts;
    lp->GetVariableCollectionIntf(&parts.vars);
    lp->GetEquationCollectionIntf(&parts.eqns);
    lp->GetMatrixIntf(&parts.matrix);
    lp->GetSpOrdSetCollectionIntf(&parts.sets);
    ILPVariable* x = parts.vars->InsertVariable("X");
    ILPEquation* r = parts.eqns->InsertEquation("R");
    lp->InsertMatrixEntry("R", "X", 2.0, nullptr);
    r->SetType(3);
    r->SetRHS(5.0);
    x->SetBoundUpper(8.0);

    ZEMModelState state;
    state.title = "LP";
    std::stringstream ss;
    ZEMModelFile::Write(&ss, ZEMModelFile::kCurrentVersion, state, parts, {});

    // A manager reads the linear file.
    ZEMMgrPtr m = NewMgr();
    restore(m.get(), ss.str());
    std::string title;
    m->GetModelTitle(title);
    EXPECT_EQ(title, "LP");
    int n, rows, nz;
    m->ModelDimension(n, rows, nz);
    EXPECT_EQ(n + rows + nz, 3);

    // Another bare container reads it back.
    ILPStdDataMgr* lp2 = nullptr;
    CreateLPStdDataObject(&lp2);
    ZEMModelContent parts2;
    lp2->GetVariableCollectionIntf(&parts2.vars);
    lp2->GetEquationCollectionIntf(&parts2.eqns);
    lp2->GetMatrixIntf(&parts2.matrix);
    lp2->GetSpOrdSetCollectionIntf(&parts2.sets);
    ZEMModelState state2;
    ss.seekg(0);
    ZEMModelFile::Read(&ss, ZEMModelFile::Mode::Replace, parts2, state2, "", {});
    EXPECT_EQ(state2.title, "LP");
    EXPECT_EQ(parts2.vars->VarNameLookup("X")->GetBoundUpper(), 8.0);
    EXPECT_EQ(parts2.eqns->EqnNameLookup("R")->GetRHS(), 5.0);
    EXPECT_EQ(parts2.matrix->NumberOfNonZeros(), 1);

    // A file with terms cannot go into a container without a pool.
    ILPStdDataMgr* lp3 = nullptr;
    CreateLPStdDataObject(&lp3);
    ZEMModelContent parts3;
    lp3->GetVariableCollectionIntf(&parts3.vars);
    lp3->GetEquationCollectionIntf(&parts3.eqns);
    lp3->GetMatrixIntf(&parts3.matrix);
    lp3->GetSpOrdSetCollectionIntf(&parts3.sets);
    std::istringstream richIn(ModelBytes(rich.get()));
    ZEMModelState state3;
    try {
        ZEMModelFile::Read(&richIn, ZEMModelFile::Mode::Replace, parts3, state3, "", {});
        FAIL() << "no exception";
    } catch (ZEM_Exception& e) {
        EXPECT_EQ(e.Reason(), "Error during read of ZEMFile element from binary file");
    }
    lp->Destroy();
    lp2->Destroy();
    lp3->Destroy();
}
