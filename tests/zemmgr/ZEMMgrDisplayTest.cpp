// Listings of the model manager: heading, algebraic forms, nonlinear matrix,
// GAMS source, summary and penalty files.
#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>

#include "ZEMTestModel.h"

namespace {

void expectPieces(const std::string& text, std::initializer_list<const char*> pieces) {
    for (const char* p : pieces) EXPECT_TRUE(Has(text, p)) << "missing: " << p << "\nin:\n" << text;
}

}  // namespace

TEST(ZEMMgrDisplay, HeadingIsExact) {
    ZEMMgrPtr m = SmallMgr();
    IZEMOptionTable* opt = Options(m.get());
    opt->SetOption("K", "V", nullptr);
    std::ostringstream os;
    m->DisplayHeading(os);
    EXPECT_EQ(os.str(),
              "\nD I S P L A Y   O F   Z E M   D A T A   O B J E C T\n"
              "- - - - - - -   - -   - - -   - - - -   - - - - - -\n\n"
              "M O D E L   T I T L E   :  small\n\n"
              "D I M E N S I O N S : N = 2; M = 2; M (Nonlinear) = 1; NZ = 3; "
              "NZ (Nonlinear) = 2;\n\n"
              "\nO P T I O N   T A B L E   D I S P L A Y\n"
              "- - - - - -   - - - - -   - - - - - - -\n\n"
              "  K : V\n");
}

TEST(ZEMMgrDisplay, AlgebraicForms) {
    ZEMMgrPtr m = SmallMgr();
    std::ostringstream os;
    m->AlgebraicDisplay(os);
    // Row R: limits [1, 5], linear entries with 4 significant digits.
    expectPieces(os.str(),
                 {" A L G E B R A I C   D I S P L A Y   O F   N O N L I N E A R   M O D E L\n",
                  "  1.0000e+00 <=             R <=  5.0000e+00    NONLINEAR (",
                  "+ 1.000*X - 2.000*y ", "\nV A R I A B L E   S U M M A R Y\n",
                  "  0.0000e+00 <=             X <=  5.0000e+00  ( 1.0000e+00)  BASIC\n",
                  "\nN A M E D   V A R I A B L E   C O L L E C T I O N   S U M M A R Y\n",
                  "Number of External Blocks = 0\n"});
    EXPECT_FALSE(Has(os.str(), "Total Number"));

    std::ostringstream xlr;
    m->AlgebraicDisplayXLR(xlr);
    expectPieces(xlr.str(),
                 {"     Total Number of Variables  =       2  (      0 integer   ) ",
                  "     Total Number of Equations  =       2  (      1 nonlinear ) ",
                  "     Total Number of Non-zeroes =       3  (      2 nonlinear ) ",
                  "+ 1.00000*X - 2.00000*y "});
}

TEST(ZEMMgrDisplay, HybridListingNeedsVariableAndHybridModel) {
    ZEMMgrPtr m = SmallMgr();
    ::setenv("SHOW_HYBRID_MODEL", "1", 1);
    std::ostringstream plain;
    m->AlgebraicDisplay(plain);  // not a hybrid model: formulas
    m->SetHybridModel(true);
    std::ostringstream hybrid;
    m->AlgebraicDisplay(hybrid);
    ::unsetenv("SHOW_HYBRID_MODEL");
    EXPECT_FALSE(Has(plain.str(), "HybridFn("));
    EXPECT_TRUE(Has(hybrid.str(), "XPROD .H.   HybridFn(X, y) ")) << hybrid.str();
}

TEST(ZEMMgrDisplay, NonLinearMatrixAndByColumn) {
    ZEMMgrPtr m = SmallMgr();
    m->SetupModelLinearization();
    std::ostringstream os;
    m->NonLinearMatrixDisplay(os);
    // X: coefficient 1, slope 1 + 3*2 = 7; y: -2 and -2 + 3*1 = 1.
    expectPieces(os.str(),
                 {"\nD I S P L A Y   O F   N O N L I N E A R   M O D E L   M A T R I X\n",
                  "+ (1.000|7.000)*X - (2.000|1.000)*y ",
                  "      1 <=             R <=      5    NONLINEAR"});
    std::ostringstream col;
    m->DisplayByColumn(col);
    EXPECT_TRUE(Has(col.str(), "\nD I S P L A Y   O F   M A T R I X   B Y   C O L U M N\n"));
}

TEST(ZEMMgrDisplay, GamsSource) {
    ZEMMgrPtr m = SmallMgr();
    std::ostringstream os;
    m->GAMSModelInput(os);
    EXPECT_EQ(os.str().rfind("$OFFSYMLIST\n$OFFSYMXREF\n$EOLCOM # \n\n", 0), 0u);
    expectPieces(os.str(),
                 {" POSITIVE VARIABLE  X ;\n",
                  " VARIABLE           y_y0 ;\n",  // screened lower-case name
                  "FREE VARIABLE COST_OBJ ;\n", "  X.UP =  5.000000e+00 ;\n",
                  "  y_y0.FX =  2.000000e+00 ;\n", "  X.L =  1.000000e+00 ;\n", "EQUATIONS\n",
                  "* Expanded Range Rows\n\n  R_LE\n  R_GE\n",
                  "R_LE .. \n   + 1 * X\n   - 2 * y_y0\n   + 3 * X * y_y0 =L= 5 ;\n", "R_GE .. ",
                  "COST .. COST_OBJ =E= \n   + 1 * X ;\n",
                  "MODEL small_s0m1a2l3l4 /ALL/;\nOPTION ITERLIM = 10000; \n"
                  "OPTION NLP = CONOPT3; \nsmall_s0m1a2l3l4.RESLIM = 10000; \n"
                  "small_s0m1a2l3l4.WORKSPACE = 100; \n"
                  "SOLVE small_s0m1a2l3l4 MAXIMIZING COST_OBJ USING NLP;\n"});
}

TEST(ZEMMgrDisplay, GamsRangeExpansionClash) {
    ZEMMgrPtr m = SmallMgr();
    IZEMModelBuilder* b = Builder(m.get());
    b->MakeAddEquationNew("R_LE", 3, 1.0, 0.0);
    m->InsertMatrixEntry("R_LE", "X", 1.0, nullptr);
    std::ostringstream os;
    const Failure f = FailureOf([&] { m->GAMSModelInput(os); });
    EXPECT_EQ(f.reason, "Error processing Range Rows in GAMS input generation");
    EXPECT_EQ(f.routine, "ZEMMgr::GAMSModelInput");
}

TEST(ZEMMgrDisplay, SummaryFile) {
    ZEMMgrPtr m = SmallMgr();
    const std::string path = std::string(ZEM_BINARY_DIR) + "/zemmgr_summary.txt";
    m->WriteZEMSummary(path.c_str());
    const std::string text = ReadFile(path);
    const size_t heading = text.find("D I S P L A Y   O F   Z E M   D A T A   O B J E C T");
    const size_t algebraic = text.find("A L G E B R A I C   D I S P L A Y");
    ASSERT_NE(heading, std::string::npos);
    ASSERT_NE(algebraic, std::string::npos);
    EXPECT_LT(heading, algebraic);
    // The full listing repeats the heading after the algebraic listing.
    EXPECT_NE(text.find("D I S P L A Y   O F   Z E M   D A T A", algebraic), std::string::npos);
    std::remove(path.c_str());
    m->WriteZEMSummary((std::string(ZEM_BINARY_DIR) + "/no_dir/s.txt").c_str());  // skipped
}

TEST(ZEMMgrDisplay, PenaltyFile) {
    ZEMMgrPtr m = SmallMgr();
    Var(m.get(), "X")->SetRelaxedBoundUpper(6.0);
    const std::string path = std::string(ZEM_BINARY_DIR) + "/zemmgr_penalty.dat";
    EXPECT_EQ(m->WritePenaltyFile(path.c_str()), 0);
    const std::string text = ReadFile(path);
    EXPECT_TRUE(Has(text, "\n1\nX  ")) << text;
    EXPECT_TRUE(Has(text, " 6.000000e+00\n")) << text;
    std::remove(path.c_str());
    const Failure f = FailureOf([&] { m->WritePenaltyFile((std::string(ZEM_BINARY_DIR) + "/no_dir/p.dat").c_str()); });
    EXPECT_EQ(f.name, "ZEMDataMgr Error");
    EXPECT_EQ(f.reason, "Error during writing of Penalty.dat file");
    EXPECT_EQ(f.routine, "ZEMMgr::WritePenaltyFile");
}
