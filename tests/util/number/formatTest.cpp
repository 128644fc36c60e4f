#include "util/number/format.h"

#include "tests/support/expect.h"
#include "util/number/decimal.h"

#include <cfloat>
#include <climits>
#include <cstdio>
#include <random>

using namespace plw;

struct Format : testing::Test {
    ~Format() override { decimalSeparator = '.'; }
};
using Decimal = Format;

static std::string printedByPrintf(double x, int maxDigits) {
    int width, precision;
    char exponential;
    FormatOfReal(x, maxDigits, &width, &precision, &exponential);
    char text[400];
    std::snprintf(text, sizeof text, exponential ? "%*.*e" : "%*.*f", width, precision, x);
    return text;
}

TEST_F(Format, FindsWidthPrecisionAndNotation) {
    const double long11 = 8.9801894021008195, long10 = 2.606120201099948;
    // digits are counted with factors slightly above 1 and 10: the last three had one more or less
    const std::tuple<double, int, int, int, int> cases[] = {
        {0, 20, 1, 0, 0},         {-0.0, 20, 1, 0, 0},      {1234.5, 20, 6, 1, 0},
        {1.5e-7, 20, 6, 1, 1},    {-1.5e-7, 20, 7, 1, 1},   {0.1, 20, 3, 1, 0},
        {-12.25, 3, 5, 1, 0},     {999999, 20, 6, 0, 0},    {1e6, 20, 5, 0, 1},
        {0.001, 20, 5, 3, 0},     {0.0009, 20, 5, 0, 1},    {1.0 / 3, 20, 14, 12, 0},
        {1e7 / 3, 20, 12, 9, 1},  {-1e7 / 3, 20, 13, 9, 1}, {1e7 / 3, 0, 4, -1, 1},
        {0.125, -3, 1, 0, 0},     {5e-324, 20, 5, 0, 1},    {infinity, 20, 5, 0, 1},
        {-infinity, 20, 6, 0, 1}, {DBL_MAX, 20, 12, 9, 1},  {NaN, 20, 4, -1, 1},
        {6.1, 20, 3, 1, 0},       {long11, 20, 13, 11, 0},  {long10, 20, 12, 10, 0}};
    for (const auto &[x, maxDigits, wantWidth, wantPrecision, wantExponential] : cases) {
        int width = -77, precision = -77;
        char exponential = 77;
        FormatOfReal(x, maxDigits, &width, &precision, &exponential);
        EXPECT_EQ(std::tuple(width, precision, int{exponential}),
                  std::tuple(wantWidth, wantPrecision, wantExponential))
            << x << ", " << maxDigits;
    }
}

TEST_F(Format, PrintsWhatPrintfPrintsWithTheDigitsThatADoubleCarries) {
    std::mt19937_64 random(2);
    for (int i = 0; i < 200000 && !HasFailure(); ++i) {
        double x = std::bit_cast<double>(random());
        if (std::isnan(x)) continue;
        if (random() % 2) x = std::ldexp(x, -std::ilogb(x) + static_cast<int>(random() % 60) - 30);
        // Numbers of few digits, ties among them, and numbers next to a power of ten.
        if (random() % 2) x = std::round(x * 64) / 64;
        if (random() % 4 == 0)
            x = std::nextafter(std::pow(10, static_cast<int>(random() % 640) - 320), x);
        EXPECT_EQ(stringOfDouble(x), printedByPrintf(x, 20)) << std::hexfloat << x;
        const int maxDigits = static_cast<int>(random() % 16) - 2;
        EXPECT_EQ(stringOfDoubleMaxPrec(x, maxDigits), printedByPrintf(x, maxDigits))
            << std::hexfloat << x << ", " << maxDigits;
    }
    EXPECT_STREQ(stringOfDouble(NaN), "NAN");
    EXPECT_STREQ(stringOfDouble(-infinity), "  -inf");
    EXPECT_STREQ(stringOfDoubleMaxPrec(-0.0, 12), "-0");
    const char *const first = stringOfDouble(0.1 + 0.2);
    EXPECT_STREQ(stringOfDouble2(1.0 / 3), "0.333333333333");
    EXPECT_STREQ(first, "0.3") << "two numbers in one statement";
}

// The only test that may call stringOfDoubleBlank: its first call is told apart.
TEST_F(Format, UsesTheDecimalSeparatorAndABlankForASign) {
    decimalSeparator = ',';
    EXPECT_STREQ(stringOfDouble(-2.5), "-2,5");
    EXPECT_STREQ(stringOfDouble(1.5e10), "1,5e+10");
    EXPECT_STREQ(stringOfDoubleConsideringError(1.23456, 0.02, 0), "1,235");

    EXPECT_STREQ(stringOfDoubleBlank(-2.5), "-2.5") << "nothing printed before: the point stays";
    EXPECT_STREQ(stringOfDoubleBlank(-0.0), " -0");
    EXPECT_STREQ(stringOfDoubleBlank(2.5), " 2,5");
    EXPECT_STREQ(stringOfDoubleBlank(-2.5), "-2,5");
    EXPECT_STREQ(stringOfDoubleBlank(NaN), "NAN");
    EXPECT_STREQ(stringOfDoubleBlank(-1e-7 / 8), "-1,25e-08");
}

TEST_F(Format, ErrorDecidesThePrecision) {
    const double v = 1.23456, w = 1.23456e8, n = 999999, inf = infinity;
    const std::tuple<double, double, int, const char *> cases[] = {
        {v, 0.02, 1, "0.020"},    {v, 0.05, 0, "1.23"},      {v, 0.04, 0, "1.235"},
        {123.456, 50, 0, "123"},  {w, 2e5, 0, "1.2346e+08"}, {w, 2e5, 1, "2.0e+05"},
        {w, 7e5, 1, "7e+05"},     {1e-4, 1e3, 0, "1e-04"},   {0, 0.1, 0, "0e+00"},
        {n, 0.1, 0, "999999.00"}, {0.1, 0, 0, "0.1"},        {0.1, -1, 1, "0.1"},
        {NaN, 1, 0, "NAN"},       {NaN, 1, 1, "NAN"},        {NaN, 0, 0, "NAN"},
        {1.5, NaN, 0, "2"},       {1.5, NaN, 1, "NAN"},      {1.5, inf, 0, "2"},
        {1.5, inf, 1, "inf"},     {inf, 1, 0, "inf"},        {-inf, 1, 0, "-inf"}};
    for (const auto &[x, error, printError, text] : cases)
        EXPECT_STREQ(stringOfDoubleConsideringError(x, error, printError), text)
            << x << ", " << error << ", " << printError;
    EXPECT_EQ(stringOfDoubleConsideringError(1, 0, 0), stringOfDouble(2)) << "in its buffer";
}

TEST_F(Format, CutsWhatDoesNotFitIntoTheBuffer) {
    const auto cut = [](const char *format, double x) {
        char whole[1000];
        std::snprintf(whole, sizeof whole, format, x);
        return std::string(whole, 99);
    };
    EXPECT_EQ(stringOfDoubleConsideringError(1e300, 5e-324, 0), cut("%.625e", 1e300));
    EXPECT_EQ(stringOfDoubleConsideringError(1.5, 1e300, 1), cut("%f", 1e300));
    EXPECT_EQ(stringOfDoubleMaxPrec(1e7, -204), cut("%-200e", 1e7)) << "left in its width";
    EXPECT_EQ(stringOfDoubleMaxPrec(1e7, INT_MIN), cut("%-200e", 1e7));
}

TEST_F(Decimal, ConvertsToAndFromTheSeparator) {
    const std::tuple<char, std::string, std::string> cases[] = {
        {'.', "1.5;2.5", "1,5;2.5"}, {',', "1.5;2.5", "1,5;2,5"}, {';', "1,5.2.5", "1,5;2;5"}};
    for (const auto &[separator, withDots, withSeparators] : cases) {
        decimalSeparator = separator;
        std::string dots = "1,5;2.5", separators = dots;
        decimalSeparatorToDot(dots.data());
        dotToDecimalSeparator(separators.data());
        EXPECT_EQ(dots, withDots) << separator;
        EXPECT_EQ(separators, withSeparators) << separator;
    }
}

TEST_F(Decimal, ReadsNumbersTolerantly) {
    EXPECT_EQ(valueOfString("1,5 mm"), 1.5);
    EXPECT_EQ(valueOfString(" -2.5e1"), -25);
    const double longer = valueOfString("12345"), shorter = valueOfString("7");
    EXPECT_EQ(longer, 12345);
    EXPECT_EQ(shorter, 7) << "nothing is left of the longer one";
    EXPECT_EQ(valueOfString("x"), 0);
    EXPECT_EQ(valueOfString((std::string(254, ' ') + "12").c_str()), 1) << "255 bytes are read";
    decimalSeparator = ';';
    EXPECT_EQ(valueOfString("1;5"), 1.5);
    EXPECT_EQ(valueOfString("1,5"), 1);
}
