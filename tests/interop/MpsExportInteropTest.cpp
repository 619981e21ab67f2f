// Standard MPS written for other tools, read back by this library's standard
// reader and, when installed, by CoinMpsIO and GLPK: each reading must give
// the model that was written (names, bounds, types, row limits, objective,
// coefficients).
#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <map>
#include <string>
#include <vector>

#include "lpdata/ILPEquation.h"
#include "lpdata/ILPEquationList.h"
#include "lpdata/ILPMatrix.h"
#include "lpdata/ILPNonZero.h"
#include "lpdata/ILPVariable.h"
#include "lpdata/ILPVariableList.h"
#include "lpdata/ZEMException.h"
#include "lpdata/ZEMTypes.h"
#include "mpsutil/MPSStdReader.h"
#include "mpsutil/MPSTestUtil.h"
#include "mpsutil/MPSToolsReader.h"
#include "xmpsutil/MPSExportWriter.h"
#include "zemmgr/IZEMMgr.h"

#ifdef ZEM_TEST_HAVE_COINUTILS
#include <CoinMessageHandler.hpp>
#include <CoinMpsIO.hpp>
#include <CoinPackedMatrix.hpp>
#endif
#ifdef ZEM_TEST_HAVE_GLPK
#include <glpk.h>
#endif

namespace {

constexpr double kInf = HUGE_VAL;

// A linear model as every reader sees it: the objective apart, the other
// rows as limits, infinite limits as +-inf.
struct Canon {
    std::string objective;
    std::vector<std::string> rows, cols;
    std::vector<double> limits, cost;  // each row's limits, then each column's bounds
    std::vector<bool> integer;
    std::map<std::pair<std::string, std::string>, double> entries;
    void Row(const char* name, double lo, double up) { rows.push_back(name), limits.push_back(lo), limits.push_back(up); }
    void Col(const char* name, double lo, double up, bool isInt, double c) {
        cols.push_back(name), limits.push_back(lo), limits.push_back(up), integer.push_back(isInt), cost.push_back(c);
    }
};

double Limit(double v) { return v >= 1e20 ? kInf : v <= -1e20 ? -kInf : v; }

struct Release {
    void operator()(IZEMMgr* m) const { m->IRelease(); }
};
using Model = std::unique_ptr<IZEMMgr, Release>;

// The file read by the standard reader, or with `tools` as other tools
// read it.
Model ReadOurs(const std::string& path, bool tools = false) {
    IZEMMgr* raw = nullptr;
    ZEMObjectFactory(&raw);
    raw->IAddRef();
    Model m(raw);
    m->SetModelTitle("");
    if (tools) {
        MPSToolsReader(m.get()).ReadMPSFile(path.c_str());
    } else {
        MPSStdReader(m.get()).ReadMPSFile(path.c_str());
    }
    return m;
}

Canon FromOurs(IZEMMgr* m) {
    Canon c;
    ILPEquationList* eqns = nullptr;
    ILPVariableList* vars = nullptr;
    ILPMatrix* matrix = nullptr;
    m->GetEquationCollectionIntf(&eqns);
    m->GetVariableCollectionIntf(&vars);
    m->GetMatrixIntf(&matrix);
    for (ILPEquation* e = eqns->FrstEquationObject(); e; e = eqns->NextEquationObject()) {
        const double r = std::fabs(e->GetRange()), b = e->GetRHS();
        switch (e->GetType()) {
            case ZEM_EQN_OBJECTIVE: c.objective = e->GetName(); break;
            case ZEM_EQN_LE: c.Row(e->GetName(), r != 0 ? b - r : -kInf, b); break;
            case ZEM_EQN_GE: c.Row(e->GetName(), b, r != 0 ? b + r : kInf); break;
            case ZEM_EQN_EQ: c.Row(e->GetName(), b, b); break;
            default: c.Row(e->GetName(), -kInf, kInf); break;
        }
    }
    for (ILPVariable* v = vars->FrstVariableObject(); v; v = vars->NextVariableObject()) {
        const int16_t t = v->GetVarType();
        c.Col(v->GetName(), Limit(v->GetBoundLower()), Limit(v->GetBoundUpper()),
              t == ZEM_VAR_BINARY || t == ZEM_VAR_DISCRETE, 0.0);
    }
    for (ILPNonZero* nz = matrix->FrstNonZeroObject(); nz; nz = matrix->NextNonZeroObject()) {
        const ILPEquation* e = nz->GetEquationPtr();
        const int col = nz->GetVariablePtr()->GetIndex() - 1;
        if (e->GetType() == ZEM_EQN_OBJECTIVE) {
            c.cost[col] += nz->GetCoefficient();
        } else {
            c.entries[{e->GetName(), c.cols[col]}] += nz->GetCoefficient();
        }
    }
    return c;
}

#ifdef ZEM_TEST_HAVE_COINUTILS
bool FromCoin(const std::string& path, Canon& c) {
    CoinMpsIO io;
    io.messageHandler()->setLogLevel(0);
    if (io.readMps(path.c_str(), "") != 0) return false;
    c.objective = io.getObjectiveName();
    const double inf = io.getInfinity();
    auto lim = [inf](double v) { return v >= inf ? kInf : v <= -inf ? -kInf : v; };
    for (int i = 0; i < io.getNumRows(); ++i) c.Row(io.rowName(i), lim(io.getRowLower()[i]), lim(io.getRowUpper()[i]));
    const CoinPackedMatrix* byCol = io.getMatrixByCol();
    for (int j = 0; j < io.getNumCols(); ++j) {
        c.Col(io.columnName(j), lim(io.getColLower()[j]), lim(io.getColUpper()[j]), io.isInteger(j),
              io.getObjCoefficients()[j]);
        const CoinBigIndex start = byCol->getVectorStarts()[j];
        for (int k = 0; k < byCol->getVectorLengths()[j]; ++k) {
            c.entries[{c.rows[byCol->getIndices()[start + k]], c.cols[j]}] += byCol->getElements()[start + k];
        }
    }
    return true;
}
#endif

#ifdef ZEM_TEST_HAVE_GLPK
bool FromGlpk(const std::string& path, bool freeFormat, Canon& c) {
    glp_term_out(GLP_OFF);
    std::unique_ptr<glp_prob, void (*)(glp_prob*)> p(glp_create_prob(), glp_delete_prob);
    if (glp_read_mps(p.get(), freeFormat ? GLP_MPS_FILE : GLP_MPS_DECK, nullptr, path.c_str()) != 0) {
        return false;
    }
    c.objective = glp_get_obj_name(p.get()) ? glp_get_obj_name(p.get()) : "";
    auto lo = [](int type, double v) { return type == GLP_FR || type == GLP_UP ? -kInf : v; };
    auto up = [](int type, double v) { return type == GLP_FR || type == GLP_LO ? kInf : v; };
    std::vector<std::string> rowOf(glp_get_num_rows(p.get()) + 1);
    for (int i = 1; i <= glp_get_num_rows(p.get()); ++i) {
        rowOf[i] = glp_get_row_name(p.get(), i);
        if (rowOf[i] == c.objective) continue;  // GLPK keeps the objective as a free row
        const int type = glp_get_row_type(p.get(), i);
        c.Row(rowOf[i].c_str(), lo(type, glp_get_row_lb(p.get(), i)), up(type, glp_get_row_ub(p.get(), i)));
    }
    std::vector<int> ind(rowOf.size() + 1);
    std::vector<double> val(rowOf.size() + 1);
    for (int j = 1; j <= glp_get_num_cols(p.get()); ++j) {
        const int type = glp_get_col_type(p.get(), j);
        c.Col(glp_get_col_name(p.get(), j), lo(type, glp_get_col_lb(p.get(), j)), up(type, glp_get_col_ub(p.get(), j)),
              glp_get_col_kind(p.get(), j) != GLP_CV, glp_get_obj_coef(p.get(), j));
        const int n = glp_get_mat_col(p.get(), j, ind.data(), val.data());
        for (int k = 1; k <= n; ++k) {
            if (rowOf[ind[k]] != c.objective) c.entries[{rowOf[ind[k]], c.cols.back()}] += val[k];
        }
    }
    return true;
}
#endif

// CoinMpsIO converts numbers with its own routine, which may miss the
// nearest double by an ulp or two; 1e-14 relative is far below any digit
// the writer could lose.
bool Near(double a, double b) { return a == b || std::fabs(a - b) <= 1e-14 * std::fabs(a); }

void ExpectNear(const std::vector<double>& a, const std::vector<double>& b, const std::string& who) {
    ASSERT_EQ(a.size(), b.size()) << who;
    for (size_t i = 0; i < a.size(); ++i) EXPECT_PRED2(Near, a[i], b[i]) << who << " at " << i;
}

void ExpectSame(const Canon& a, const Canon& b, const std::string& who) {
    EXPECT_EQ(a.objective, b.objective) << who;
    EXPECT_EQ(a.rows, b.rows) << who;
    EXPECT_EQ(a.cols, b.cols) << who;
    ExpectNear(a.limits, b.limits, who + " row limits and bounds");
    EXPECT_EQ(a.integer, b.integer) << who;
    ExpectNear(a.cost, b.cost, who + " objective");
    ASSERT_EQ(a.entries.size(), b.entries.size()) << who;
    for (auto i = a.entries.begin(), j = b.entries.begin(); i != a.entries.end(); ++i, ++j) {
        EXPECT_EQ(i->first, j->first) << who;
        EXPECT_PRED2(Near, i->second, j->second) << who << " " << i->first.first << " " << i->first.second;
    }
}

class MpsExport : public ::testing::Test {
protected:
    void SetUp() override {
        char tmpl[] = "/tmp/zem_mps_export_XXXXXX";
        dir_ = mkdtemp(tmpl);
    }
    void TearDown() override { std::filesystem::remove_all(dir_); }

    // Writes `model`, then checks every reader against it. Returns whether
    // the writer chose free format.
    bool RoundTrip(IZEMMgr* model, const std::string& name, bool askFree = false) {
        const std::string out = dir_ + "/" + name;
        MPSExportWriter writer(model, askFree);
        writer.WriteMPSFile(out.c_str());
        const Canon want = FromOurs(model);
        if (!writer.FreeFormat()) ExpectSame(want, FromOurs(ReadOurs(out).get()), name + " (this library)");
#ifdef ZEM_TEST_HAVE_COINUTILS
        Canon coin;
        EXPECT_TRUE(FromCoin(out, coin)) << name;
        ExpectSame(want, coin, name + " (CoinMpsIO)");
#endif
#ifdef ZEM_TEST_HAVE_GLPK
        Canon glpk;
        EXPECT_TRUE(FromGlpk(out, writer.FreeFormat(), glpk)) << name;
        ExpectSame(want, glpk, name + " (GLPK)");
#endif
        return writer.FreeFormat();
    }

    std::string dir_;
};

TEST_F(MpsExport, SamplesShippedWithCoinUtilsAndGlpkReadBackAlike) {
    const std::vector<std::string> samples = {
        "/usr/share/coin/Data/Sample/afiro.mps",         "/usr/share/coin/Data/Sample/brandy.mps",
        "/usr/share/coin/Data/Sample/finnis.mps",        "/usr/share/coin/Data/Sample/galenetbnds.mps",
        "/usr/share/coin/Data/Sample/hello.mps",         "/usr/share/doc/glpk-utils/examples/murtagh.mps",
        "/usr/share/doc/glpk-utils/examples/samp2.mps"};
    int read = 0;
    for (const std::string& path : samples) {
        if (!std::filesystem::exists(path)) continue;
        ++read;
        RoundTrip(ReadOurs(path).get(), std::filesystem::path(path).filename().string());
    }
    if (read == 0) GTEST_SKIP() << "no CoinUtils or GLPK sample files installed";
}

#ifdef ZEM_TEST_HAVE_COINUTILS
// Every MPS sample of CoinUtils and GLPK: read as other tools write them, the
// model is the one CoinMpsIO reads, or the reader refuses the file.
TEST_F(MpsExport, ToolsReaderReadsEverySampleAsCoinMpsIOOrRefusesIt) {
    int compared = 0;
    for (const char* dir : {"/usr/share/coin/Data/Sample", "/usr/share/doc/glpk-utils/examples"}) {
        if (!std::filesystem::is_directory(dir)) continue;
        for (const auto& entry : std::filesystem::directory_iterator(dir)) {
            if (entry.path().extension() != ".mps") continue;
            const std::string path = entry.path().string();
            Canon coin;
            if (!FromCoin(path, coin)) continue;
            try {
                Model m = ReadOurs(path, true);
                ExpectSame(coin, FromOurs(m.get()), path);
                ++compared;
            } catch (ZEM_Exception& e) {
                // What the model cannot hold: empty rows, other sections.
                EXPECT_TRUE(e.Name() == "MPS COLUMNS Section Error - Row Without Coefficients" ||
                            e.Name() == "Unknown Header Card Read in MPS File")
                    << path << ": " << e.Name() << ": " << e.Reason();
            }
        }
    }
    if (compared == 0) GTEST_SKIP() << "no sample files installed";
    std::printf("%d samples read alike\n", compared);
}
#endif

// Every bound form and row form the writer has, in fixed and free format.
TEST_F(MpsExport, BoundsTypesAndRangesReadBackAlikeInBothLayouts) {
    using mpstest::Card;
    const std::vector<std::string> lines = {
        "NAME          MIX", "ROWS", Card("N", "COST"), Card("L", "CAP"), Card("G", "DEMAND"),
        Card("E", "BAL"), "COLUMNS",
        Card("", "FREEX", "COST", "1.5", "CAP", "1"),
        Card("", "NEGX", "COST", "-2.25", "DEMAND", "1"),
        Card("", "FIXX", "CAP", "0.1234567", "BAL", "1"),
        Card("", "BINX", "COST", "3", "BAL", "-1"),
        Card("", "INTX", "DEMAND", "2", "COST", "1"),
        Card("", "INTY", "DEMAND", "4", "BAL", "1e-9"),
        "RHS", Card("", "RHS", "CAP", "10", "DEMAND", "-3.5"), Card("", "RHS", "BAL", "2"),
        "RANGES", Card("", "RNG", "CAP", "4", "DEMAND", "-6"),
        "BOUNDS", Card("FR", "BND", "FREEX"), Card("MI", "BND", "NEGX"), Card("UP", "BND", "NEGX", "-7"),
        Card("FX", "BND", "FIXX", "2.75"), Card("BV", "BND", "BINX"), Card("LI", "BND", "INTX", "-3"),
        Card("UI", "BND", "INTX", "12"), Card("LI", "BND", "INTY", "1"), "ENDATA"};
    std::string text;
    for (const std::string& l : lines) text += l + "\n";
    const std::string in = dir_ + "/mix_in.mps";
    std::ofstream(in) << text;
    Model model = ReadOurs(in);
    EXPECT_FALSE(RoundTrip(model.get(), "mix_fixed.mps"));
    EXPECT_TRUE(RoundTrip(model.get(), "mix_asked_free.mps", true));
    ILPVariableList* vars = nullptr;
    model->GetVariableCollectionIntf(&vars);
    vars->FrstVariableObject()->SetName("A_COLUMN_NAME_LONGER_THAN_EIGHT");
    EXPECT_TRUE(RoundTrip(model.get(), "mix_long.mps"));
}

// Models the other tools would read differently are refused, naming the
// entity, and no file is made.
TEST_F(MpsExport, ModelsReadDifferentlyElsewhereAreRefusedBeforeWriting) {
    using mpstest::Card;
    const std::string head = "NAME          BAD\nROWS\n N  COST\n L  CAP\n";
    const std::string x = "COLUMNS\n" + Card("", "X", "CAP", "1", "COST", "1") + "\n";
    const struct {
        std::string body;
        const char* entity;
        const char* why;
    } cases[] = {
        {" N  SPARE\nCOLUMNS\n" + Card("", "X", "CAP", "1", "SPARE", "1") + "\n",
         "Equation \"SPARE\"", "free rows"},
        {x + "RHS\n" + Card("", "RHS", "COST", "5") + "\n",
         "Equation \"COST\"", "right-hand side on the objective"},
        {x + "BOUNDS\n" + Card("SC", "BND", "X", "5") + "\n",
         "Variable \"X\"", "semi-continuous"},
        {x + "BOUNDS\n" + Card("UP", "BND", "X", "-5") + "\n",
         "Variable \"X\"", "upper bound below 0"},
        {"COLUMNS\n" + Card("", "X", "CAP", "1e-300", "COST", "1") + "\n", "Variable \"X\"",
         "coefficient this small"},
    };
    for (const auto& c : cases) {
        const std::string in = dir_ + "/bad_in.mps", out = dir_ + "/bad_out.mps";
        std::filesystem::remove(out);
        std::ofstream(in) << head << c.body << "ENDATA\n";
        Model model = ReadOurs(in);
        try {
            MPSExportWriter(model.get()).WriteMPSFile(out.c_str());
            ADD_FAILURE() << "not refused: " << c.entity;
        } catch (ZEM_Exception& e) {
            EXPECT_NE(e.Reason().find(c.entity), std::string::npos) << e.Reason();
            EXPECT_NE(e.Reason().find(c.why), std::string::npos) << e.Reason();
        }
        EXPECT_FALSE(std::filesystem::exists(out)) << c.entity;
    }
}

}  // namespace
