#include "util/number/power.h"

#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <cstdlib>
#include <string>

using namespace plw;

TEST(Power10, TakesTheTablesUpToFiftyAndPowBeyond) {
    for (int i = -50; i <= 50; ++i)
        EXPECT_EQ(power10(i), std::strtod(("1e" + std::to_string(i)).c_str(), nullptr)) << i;
    for (const int i : {51, 308, 309, -51, -323, -324, INT_MAX, INT_MIN})
        EXPECT_EQ(power10(i), std::pow(10.0, i)) << i;
}

TEST(Exponent10, ForgivesRoundingErrorsBelowAPowerOfTen) {
    const struct {
        double x, exponent, mantissa;
    } cases[] = {{1, 0, 1},
                 {-1, 0, -1},
                 {999, 2, 9.99},
                 {0.1, -1, 1},
                 {-0.05, -2, -5},
                 {1000 - 1e-10, 3, (1000 - 1e-10) / 1000},
                 {1000 - 1e-8, 2, (1000 - 1e-8) / 100},
                 {1e-3, -3, 1},
                 {1e51, 51, 1e51 / std::pow(10.0, 51)},
                 {1.5e300, 300, 1.5e300 / std::pow(10.0, 300)},
                 {0, -300, 0},
                 {-0.0, -300, 0},
                 {5e-324, -324, INFINITY}};
    for (const auto &c : cases) {
        EXPECT_EQ(exponent10(c.x), c.exponent) << c.x;
        EXPECT_EQ(mantisse10(c.x), c.mantissa) << c.x;
    }
    EXPECT_EQ(exponent10(-INFINITY), INFINITY);
    EXPECT_EQ(mantisse10(-INFINITY), -INFINITY);
    EXPECT_TRUE(std::isnan(exponent10(NAN)));
    EXPECT_TRUE(std::isnan(mantisse10(NAN)));
}

TEST(IntPower, SquaresFromTheLowestBitUp) {
    const double x = 1.1;
    const double x2 = x * x;
    const double x4 = x2 * x2;
    EXPECT_EQ(intPower(x, 0), 1);
    EXPECT_EQ(intPower(x, 1), x);
    EXPECT_EQ(intPower(x, 2), x2);
    EXPECT_EQ(intPower(x, 3), x * x2);
    EXPECT_EQ(intPower(x, 7), x * x2 * x4);
    EXPECT_EQ(intPower(x, -1), 1 / x);
    EXPECT_EQ(intPower(x, -7), 1 / (x * x2 * x4));
    EXPECT_EQ(intPower(-2, 5), -32);
    EXPECT_EQ(intPower(-1, INT_MIN), 1);
    EXPECT_EQ(intPower(0, -1), INFINITY);
    EXPECT_EQ(intPower(NAN, 0), 1);
}

TEST(DoublePower, KeepsExactWhatNeedsNoPow) {
    EXPECT_EQ(doublePower(1.1, 1.3, 2, 1), 1.1 * 1.1 * 1.3);
    EXPECT_EQ(doublePower(NAN, 1.3, 0, 2), 1.3 * 1.3);
    EXPECT_EQ(doublePower(1.1, 1.3, 0.5, -3), std::pow(1.1, 0.5) * std::pow(1.3, -3));
}

TEST(IntFloor, IsOneBelowTheFloorForWholeNumbersUpToZero) {
    const struct {
        double x;
        int floor;
    } cases[] = {{2.7, 2},
                 {2, 2},
                 {0.5, 0},
                 {0, -1},
                 {-0.0, -1},
                 {-0.5, -1},
                 {-1, -2},
                 {-2, -3},
                 {-2.5, -3},
                 {1e10, INT_MAX},
                 {-1e10, INT_MIN},
                 {INFINITY, INT_MAX},
                 {-INFINITY, INT_MIN},
                 {NAN, INT_MIN},
                 {2147483647.5, INT_MAX},
                 {-2147483647.0, INT_MIN}};
    for (const auto &c : cases) EXPECT_EQ(intFloor(c.x), c.floor) << c.x;
}

TEST(EquDouble, ComparesRelativelyToTheSecond) {
    const struct {
        double a, b;
        int equal;
    } cases[] = {
        {1, 1 + 1e-12, 1},      {1, 1 + 1e-9, 0}, {0, 0, 1},   {-0.0, 0, 1},  {0, 1e-300, 0},
        {1e-300, 0, 0},         {1, -1, 0},       {-5, -5, 1}, {NAN, NAN, 0}, {NAN, 0, 0},
        {INFINITY, INFINITY, 0}};
    for (const auto &c : cases) EXPECT_EQ(equDouble(&c.a, &c.b), c.equal) << c.a << ", " << c.b;
}
