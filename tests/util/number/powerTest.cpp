#include "util/number/power.h"

#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <cstdlib>
#include <string>
#include <utility>

using namespace plw;

TEST(Power10, TakesTheTablesUpToFiftyAndPowBeyond) {
    for (int i = -50; i <= 50; ++i)
        EXPECT_EQ(power10(i), std::strtod(("1e" + std::to_string(i)).c_str(), nullptr)) << i;
    for (const int i : {51, 308, 309, -51, -323, -324, INT_MAX, INT_MIN})
        EXPECT_EQ(power10(i), std::pow(10.0, i)) << i;
}

TEST(Exponent10, ForgivesRoundingErrorsBelowAPowerOfTen) {
    const double near = 1000 - 1e-10, off = 1000 - 1e-8;
    const std::pair<double, int> cases[] = {{1.0, 0},    {-1, 0},        {999, 2},      {0.1, -1},
                                            {-0.05, -2}, {near, 3},      {off, 2},      {1e-3, -3},
                                            {1e51, 51},  {1.5e300, 300}, {5e-324, -324}};
    for (const auto &[x, exponent] : cases) {
        EXPECT_EQ(exponent10(x), exponent) << x;
        EXPECT_EQ(mantisse10(x), x / power10(exponent)) << x;
    }
    for (const double zero : {0.0, -0.0}) {
        EXPECT_EQ(exponent10(zero), -300);
        EXPECT_EQ(mantisse10(zero), 0);
    }
    EXPECT_EQ(mantisse10(999), 9.99);
    EXPECT_EQ(exponent10(-INFINITY), INFINITY);
    EXPECT_EQ(mantisse10(-INFINITY), -INFINITY);
    EXPECT_TRUE(std::isnan(exponent10(NAN)));
    EXPECT_TRUE(std::isnan(mantisse10(NAN)));
}

TEST(IntPower, SquaresFromTheLowestBitUp) {
    const double x = 1.1, x2 = x * x, x7 = x * x2 * (x2 * x2);
    for (const auto &[n, want] :
         {std::pair{0, 1.0}, {1, x}, {2, x2}, {3, x * x2}, {7, x7}, {-1, 1 / x}, {-7, 1 / x7}})
        EXPECT_EQ(intPower(x, n), want) << n;
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
    const int max = INT_MAX, min = INT_MIN;
    const double inf = INFINITY, most = max;
    const std::pair<double, int> cases[] = {
        {2.7, 2},    {2, 2},     {0.5, 0},          {0, -1},     {-0.0, -1},   {-0.5, -1},
        {-1, -2},    {-2, -3},   {-2.5, -3},        {1e10, max}, {-1e10, min}, {inf, max},
        {-inf, min}, {NAN, min}, {most + 0.5, max}, {-most, min}};
    for (const auto &[x, floor] : cases) EXPECT_EQ(intFloor(x), floor) << x;
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
