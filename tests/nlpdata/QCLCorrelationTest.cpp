// The correlation binding: the project's correlation library against
// hand-computed values and finite differences, the instance's buffers and
// log, the loader's refusals, and correlation terms in a model.
#include <dlfcn.h>
#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <limits>
#include <sstream>
#include <string>

#include "lpdata/ZEMException.h"
#include "nlpdata/NLQCLEquation.h"
#include "nlpdata/QCLCorrelation.h"
#include "nlpdata/QCLLibrary.h"
#include "tests/nlpdata/NLRig.h"

namespace {

const std::string kRealLib = std::string(ZEM_BINARY_DIR) + "/libzemqcl.so";

// The test library's misbehaviour switch, set through its own handle.
struct TestLibMode {
    explicit TestLibMode(double mode) : handle(dlopen(ZEM_QCL_TEST_LIB, RTLD_NOW)) { Set(mode); }
    ~TestLibMode() {
        Set(0.0);
        dlclose(handle);
    }
    void Set(double mode) {
        auto set = reinterpret_cast<decltype(&gfx_setCorParms)>(dlsym(handle, "gfx_setCorParms"));
        ASSERT_NE(set, nullptr);
        set(-1, &mode, 1);
    }
    void* handle;
};

std::string ReasonOf(const std::function<void()>& f) {
    try {
        f();
    } catch (const ZEM_Exception& e) {
        return e.Reason();
    }
    return "(no exception)";
}

}  // namespace

TEST(QCLLibrary, RealCorrelationsMatchHandComputedValuesAndFiniteDifferences) {
    QCLLibrary lib(kRealLib);
    ASSERT_EQ(lib.initializeAllocate(), 0);
    struct Case {
        const char* id;
        std::vector<double> in;
        double expected;
    } cases[] = {
        {"RVP", {10.0}, 17.78279410038923},          // 10^1.25
        {"VISC", {10.0}, 23.574666590676497},        // 14.534 ln(ln 10.8) + 10.975
        {"POUR", {0.0}, 6.03360687410258e-05},       // (459.67 / 1000)^12.5
        {"CLOUD", {20.0}, 4.157680807534089e-07},    // (479.67 / 1000)^20
        {"FLASH", {100.0}, 15.27421693641622},       // 10^(-6.1188 + 2414 / 330.56)
        {"SULW", {0.5, 0.85}, 0.425},                // 0.5 wt% * SG 0.85
        {"LINEAR", {0.7}, 0.7},
    };
    ASSERT_EQ(lib.CorrelationCount(), 7);
    for (int32_t c = 0; c < 7; ++c) {
        const Case& k = cases[c];
        SCOPED_TRACE(k.id);
        EXPECT_EQ(lib.Text(lib.correlationId, c), k.id);
        QCLCorrelation corr(lib);
        ASSERT_TRUE(corr.Initialise(c));
        const int n = corr.GetInputCount();
        ASSERT_EQ(n, static_cast<int>(k.in.size()));
        ASSERT_EQ(corr.SetInputs(n, k.in.data()), 0);
        ASSERT_EQ(corr.Calculate("R", 1.0, nullptr), 0);
        double out = 0.0;
        std::vector<double> d(static_cast<size_t>(n));
        corr.GetOutputs(1, &out);
        corr.GetDerivatives(n, d.data());
        EXPECT_NEAR(out, k.expected, 1e-9 * std::fabs(k.expected));
        for (int i = 0; i < n; ++i) {
            std::vector<double> x = k.in;
            const double h = 1e-6 * std::max(1.0, std::fabs(x[i]));
            x[i] += h;
            corr.SetInputs(n, x.data());
            ASSERT_EQ(corr.Calculate("R", 1.0, nullptr), 0);
            double up = 0.0;
            corr.GetOutputs(1, &up);
            EXPECT_NEAR((up - out) / h, d[i], 1e-4 * std::max(1e-6, std::fabs(d[i]))) << i;
        }
    }
    // Coefficients are read and set through the flat functions' test.
    double in = 9.0, out = 0.0, d = 0.0;
    EXPECT_EQ(lib.genCalc(1, &in, 1, 1.0, &out, 1, &d, 2), 1) << "a wrong buffer size is refused";
    in = -0.5;
    EXPECT_EQ(lib.genCalc(1, &in, 1, 1.0, &out, 1, &d, 1), 2) << "outside the viscosity range";
    lib.free();
}

TEST(QCLCorrelation, BuffersLogAndLimits) {
    QCLLibrary lib(ZEM_QCL_TEST_LIB);
    QCLCorrelation echo(lib);
    double buf[4] = {};
    EXPECT_EQ(echo.GetOutputs(4, buf), -1);
    EXPECT_EQ(echo.GetDerivatives(4, buf), -1);
    EXPECT_EQ(echo.Calculate("R", 1.0, nullptr), -1);
    ASSERT_TRUE(echo.Initialise(0));
    EXPECT_EQ(echo.GetType(), 5);
    EXPECT_EQ(echo.GetIndexPair(), 1);
    EXPECT_EQ(echo.GetCoefCount(), 1);
    EXPECT_EQ(echo.GetSlackCount(), 1);
    EXPECT_EQ(echo.GetDerivatives(4, buf), 0);
    EXPECT_EQ(buf[3], 0.0) << "derivatives start at zero";
    EXPECT_EQ(echo.GetOutputs(1, buf), -2);
    EXPECT_EQ(echo.GetDerivatives(3, buf), -2);

    // Output X = A is exactly 1e9 (not flagged), Y = A * B is above it, and
    // so is the derivative of Y by A (= B).
    const double in[2] = {1e9, 1.0000001};
    echo.SetInputs(2, in);
    echo.SetLogFlag(1);
    std::ostringstream log;
    ASSERT_EQ(echo.Calculate("BLEND", 2.5, &log), 0);
    EXPECT_EQ(log.str(),
              "Equation: BLEND\nPCC Flow: 2.5\nCorrIndex: 0\nInput Values: A = 1000000000, B = 1.0000001\n"
              "Output Property: X = 1000000000\n"
              "Output Property: Y = 1000000100 Unbounded property values - Check correlation validity range. \n"
              "Coefficients: K = 2\nPartial Derivatives: \nOutput Prop X: A = 1, B = 0\n"
              "Output Prop Y: A = 1.0000001, B = 1000000000\n");
    const double small[2] = {2.0, 3.0};
    echo.SetInputs(2, small);
    echo.Calculate("BLEND", 1.0, nullptr);
    echo.GetDerivatives(4, buf);
    EXPECT_EQ(std::vector<double>(buf, buf + 4), (std::vector<double>{1.0, 0.0, 3.0, 2.0}));

    TestLibMode failing(3);
    log.str("");
    EXPECT_EQ(echo.Calculate("BLEND", 1.0, &log), 42);
    EXPECT_EQ(log.str(), "Equation: BLEND HQCL FAILED ****** Error code 42\n");

    // No inputs: an empty derivative array, copied with capacity 0.
    failing.Set(4);
    QCLCorrelation none(lib);
    ASSERT_TRUE(none.Initialise(1));
    EXPECT_EQ(none.GetCoefCount(), 0) << "a negative coefficient count is kept as 0";
    EXPECT_EQ(none.GetDerivatives(0, nullptr), 0);
}

TEST(QCLLibrary, RefusesMissingFilesEntryPointsAndBadCounts) {
    EXPECT_NE(ReasonOf([] { QCLLibrary("/nonexistent/libqcl.so"); }).find("/nonexistent/libqcl.so"),
              std::string::npos);
    EXPECT_NE(ReasonOf([] { QCLLibrary lib(ZEM_QCL_INCOMPLETE_LIB); }).find("lacks the entry point gfx_qclGenCalc"),
              std::string::npos);
    QCLLibrary lib(ZEM_QCL_TEST_LIB);
    TestLibMode mode(1);
    EXPECT_NE(ReasonOf([&] { lib.CorrelationCount(); }).find("the count -5 for its number of correlations"),
              std::string::npos);
    mode.Set(2);
    QCLCorrelation echo(lib);
    EXPECT_NE(ReasonOf([&] { echo.Initialise(0); }).find("the count -1 for the input count of correlation 0"),
              std::string::npos);
    mode.Set(0);
    EXPECT_NE(ReasonOf([&] { echo.Initialise(9); }).find("does not know correlation 9"), std::string::npos);
}

class QCLTerm : public ::testing::Test {
protected:
    void SetUp() override {
        row = rig.Row("BLEND");
        flow = rig.Var("FLOW", 2.0);
        a = rig.Var("A", 3.0);
        b = rig.Var("B", 5.0);
        rig.model->SetQCLLibraryPath(ZEM_QCL_TEST_LIB);
    }
    ModelRig rig;
    ILPEquation* row = nullptr;
    ILPVariable *flow = nullptr, *a = nullptr, *b = nullptr;
};

TEST_F(QCLTerm, EvaluatesValueAndJacobianThroughTheLibrary) {
    // -0.5 * FLOW * Y(A, B) with Y = A * B.
    rig.Term("QCLEQ:ECHO:Y", row, {-0.5}, {flow, a, b});
    EXPECT_DOUBLE_EQ(rig.model->EvaluateRow(1), -0.5 * 2.0 * 15.0);
    rig.model->JacobianRow(1);
    std::vector<double> d;
    for (ILPNonZero* nz = rig.matrix->RowFrstNonZeroObject(1); nz; nz = rig.matrix->RowNextNonZeroObject())
        d.push_back(nz->GetPartialDeriv());
    EXPECT_EQ(d, (std::vector<double>{-7.5, -5.0, -3.0}));
    EXPECT_EQ(rig.model->GetQCLCorrelationCount(), 2);
    std::string id;
    EXPECT_TRUE(rig.model->GetQCLCorrelationId(1, id));
    EXPECT_EQ(id, "NONE");
    EXPECT_EQ(rig.model->GetQCLCorrelationIndex("ECHO"), 0);
    EXPECT_EQ(rig.model->GetQCLCorrelationIndex("NOSUCH"), -1);
    // Unbounded derivatives are flagged in the term's own listing.
    b->SetVarValue(2e9);
    std::ostringstream os;
    rig.Pool()[0]->TermJacobian(os);
    EXPECT_NE(os.str().find("*** WARNING: Unbounded derivatives - Check correlation validity range. \n\n"),
              std::string::npos);
}

TEST_F(QCLTerm, BadTermsAndFailedCalculationsThrowNamingTheRow) {
    INonLinearity* t = rig.Term("QCLEQ:ECHO:Y", row, {1.0}, {flow, a, b});
    rig.Term("QCLEQ:NOSUCH", rig.Row("R2"), {1.0}, {flow});
    rig.Term("QCLEQ:ECHO:Z", rig.Row("R3"), {1.0}, {flow, a, b});
    rig.Term("QCLEQ:ECHO", rig.Row("R4"), {1.0}, {flow, a});
    EXPECT_NE(ReasonOf([&] { rig.model->EvaluateRow(2); }).find("has no correlation named 'NOSUCH'"),
              std::string::npos);
    EXPECT_NE(ReasonOf([&] { rig.model->EvaluateRow(3); }).find("of row R3: correlation ECHO has no output Z"),
              std::string::npos);
    EXPECT_NE(ReasonOf([&] { rig.model->EvaluateRow(4); }).find("takes a flow and 2 inputs, the term has 2"),
              std::string::npos);
    a->SetVarValue(std::numeric_limits<double>::quiet_NaN());
    EXPECT_NE(ReasonOf([&] { t->EvaluateTerm(); }).find("output Y is not finite"), std::string::npos);
    a->SetVarValue(1.0);
    TestLibMode failing(3);
    EXPECT_NE(ReasonOf([&] { t->EvaluateTerm(); }).find("of row BLEND: the calculation failed with error code 42"),
              std::string::npos);
    // A term outside a model cannot evaluate.
    NonLinearityQCLEquation loose("QCLEQ:ECHO");
    EXPECT_NE(ReasonOf([&] { loose.EvaluateTerm(); }).find("belongs to no nonlinear model"), std::string::npos);
}

TEST_F(QCLTerm, LibraryIsOpenedOnlyWhenACorrelationIsUsed) {
    rig.model->SetQCLLibraryPath(ZEM_QCL_INCOMPLETE_LIB);
    rig.Term("XPROD", row, {1.0}, {a, b});
    EXPECT_DOUBLE_EQ(rig.model->EvaluateRow(1), 15.0);
    rig.Term("QCLEQ:ECHO", row, {1.0}, {flow, a, b});
    EXPECT_NE(ReasonOf([&] { rig.model->EvaluateRow(1); }).find("lacks the entry point gfx_qclGenCalc"),
              std::string::npos);
}
