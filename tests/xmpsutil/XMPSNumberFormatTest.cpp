#include "xmpsutil/XMPSNumberFormat.h"
#include "xmpsutil/XMPSNumericLocale.h"

#include <gtest/gtest.h>

#include <clocale>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <limits>
#include <random>
#include <string>

using namespace xmpsnum;

namespace {
template <int (*Form)(char*, double)>
std::string Text(double v) {
    char b[kNumberBufSize];
    Form(b, v);
    return b;
}
const auto shortForm = Text<ShortForm>;
const auto longForm = Text<LongForm>;
const auto constantForm = Text<ConstantForm>;
const auto exactForm = Text<ExactForm>;
// The forms spelt out with printf, as a reference.
std::string shiftedByPrintf(double v, const char* fmt) {
    char b[64];
    std::snprintf(b, sizeof b, fmt, v * 10.0);
    std::swap(b[1], b[2]);
    if (b[0] == ' ') b[0] = '0';
    return b;
}
}  // namespace

TEST(XMPSNumberForms, Examples) {
    struct {
        std::string (*form)(double);
        double value;
        const char* text;
    } cases[] = {
        {shortForm, -1.2345, "-.123450E+01"},     {shortForm, 0.0, "0.000000E+00"},
        {shortForm, 1e-7, "0.100000E-06"},        {shortForm, 1.0, "0.100000E+01"},
        {longForm, -250.125, "-.2501250000E+03"},
        // Snapping near plus and minus one; just outside the band the value
        // keeps its digits.
        {shortForm, 0.999995, "0.100000E+01"},    {shortForm, -1.000004, "-.100000E+01"},
        {longForm, 1.000009, "0.1000000000E+01"}, {longForm, 1.00002, "0.1000020000E+01"},
        {longForm, -0.99998, "-.9999800000E+00"},
        // The constant form is printf's text.
        {constantForm, -0.001, "-1.000000e-03"},  {constantForm, 0.0, " 0.000000e+00"},
    };
    for (const auto& c : cases) EXPECT_EQ(c.form(c.value), c.text) << c.value;
}

TEST(XMPSNumberForms, MatchPrintfOnRandomValues) {
    std::mt19937_64 rng(12345);
    std::uniform_real_distribution<double> mant(-10.0, 10.0);
    std::uniform_int_distribution<int> expo(-300, 300);
    for (int i = 0; i < 20000; ++i) {
        const double v = mant(rng) * std::pow(10.0, expo(rng));
        if (std::fabs(std::fabs(v) - 1.0) < 1e-5) continue;
        ASSERT_EQ(shortForm(v), shiftedByPrintf(v, "% 12.5E")) << v;
        ASSERT_EQ(longForm(v), shiftedByPrintf(v, "% 16.9E")) << v;
        char b[64];
        std::snprintf(b, sizeof b, "% #12.6e", v);
        ASSERT_EQ(constantForm(v), b) << v;
    }
    // Decimal halfway cases, where rounding must agree with printf.
    for (double v : {0.125, 1.25e-3, 2.5, 0.0000125, 123456.5, 9.999995, 9.9999995e10}) {
        EXPECT_EQ(shortForm(v), shiftedByPrintf(v, "% 12.5E")) << v;
        EXPECT_EQ(longForm(v), shiftedByPrintf(v, "% 16.9E")) << v;
    }
}

TEST(XMPSNumberForms, ExtremeValuesStayReadable) {
    // Ten times the value overflows: the text is still the value.
    const double big = std::numeric_limits<double>::max();
    EXPECT_EQ(shortForm(big), "0.179769E+309");
    EXPECT_EQ(longForm(-big), "-.1797693135E+309");
    EXPECT_EQ(shortForm(5e-324), shiftedByPrintf(5e-324, "% 12.5E"));
    // Non-finite values come out as printf prints them, not as garbage.
    EXPECT_NE(shortForm(std::numeric_limits<double>::infinity()).find("INF"), std::string::npos);
    EXPECT_NE(constantForm(std::nan("")).find("nan"), std::string::npos);
}

TEST(XMPSNumericLocaleGuard, SwitchesToCAndRestoresAtTheEndOfItsScope) {
    const std::string before = std::setlocale(LC_NUMERIC, nullptr);
    // A locale with a decimal comma where one is installed, else C.UTF-8.
    const char* start = nullptr;
    for (const char* name : {"de_DE.UTF-8", "de_DE.utf8", "fr_FR.UTF-8", "de_DE", "C.UTF-8"}) {
        if (std::setlocale(LC_NUMERIC, name) != nullptr) {
            start = name;
            break;
        }
    }
    if (start == nullptr) GTEST_SKIP() << "no locale to switch from";
    const std::string active = std::setlocale(LC_NUMERIC, nullptr);
    const bool comma = std::strtod("2,5", nullptr) == 2.5;
    {
        XMPSNumericLocale guard;
        EXPECT_STREQ(std::setlocale(LC_NUMERIC, nullptr), "C");
        EXPECT_DOUBLE_EQ(std::strtod("2.5", nullptr), 2.5);
    }
    EXPECT_EQ(std::setlocale(LC_NUMERIC, nullptr), active);
    if (comma) {
        EXPECT_DOUBLE_EQ(std::strtod("2,5", nullptr), 2.5);
    }
    std::setlocale(LC_NUMERIC, before.c_str());
}

TEST(XMPSNumberForms, ExactFormReadsBackExactly) {
    std::mt19937_64 rng(99);
    std::uniform_real_distribution<double> mant(-10.0, 10.0);
    std::uniform_int_distribution<int> expo(-30, 30);
    for (int i = 0; i < 5000; ++i) {
        const double v = mant(rng) * std::pow(10.0, expo(rng));
        ASSERT_EQ(std::strtod(exactForm(v).c_str(), nullptr), v) << exactForm(v);
    }
    EXPECT_EQ(exactForm(250.0), "250");
    EXPECT_EQ(exactForm(-1e20), "-1e+20");
    EXPECT_EQ(exactForm(0.999999), "0.999999");  // no snapping to 1
}
