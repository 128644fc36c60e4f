#include "util/number/power.h"

#include "tests/support/expect.h"

#include <climits>

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
    EXPECT_EQ(exponent10(-0.0), -300);
    EXPECT_EQ(mantisse10(-0.0), 0);
    EXPECT_EQ(exponent10(-infinity), infinity);
    EXPECT_EQ(mantisse10(-infinity), -infinity);
    EXPECT_TRUE(same({exponent10(NaN), mantisse10(NaN)}, {NaN, NaN}));
}

TEST(IntPower, SquaresFromTheLowestBitUp) {
    const double x = 1.1, x2 = x * x, x7 = x * x2 * (x2 * x2);
    const std::tuple<double, int, double> cases[] = {
        {x, 0, 1},       {x, 2, x2},       {x, 3, x * x2},    {x, 7, x7}, {x, -1, 1 / x},
        {x, -7, 1 / x7}, {-1, INT_MIN, 1}, {0, -1, infinity}, {NaN, 0, 1}};
    for (const auto &[base, n, want] : cases)
        EXPECT_EQ(intPower(base, n), want) << base << " to " << n;
}

TEST(DoublePower, KeepsExactWhatNeedsNoPow) {
    EXPECT_EQ(doublePower(1.1, 1.3, 2, 1), 1.1 * 1.1 * 1.3);
    EXPECT_EQ(doublePower(NaN, 1.3, 0, 2), 1.3 * 1.3);
    EXPECT_EQ(doublePower(1.1, 1.3, 0.5, -3), std::pow(1.1, 0.5) * std::pow(1.3, -3));
}

TEST(IntFloor, IsOneBelowTheFloorForWholeNumbersUpToZero) {
    const int max = INT_MAX, min = INT_MIN;
    const double inf = infinity, most = max;
    const std::pair<double, int> cases[] = {
        {2.7, 2},    {1, 1},     {0.5, 0},          {0, -1},     {-0.0, -1},   {-0.5, -1},
        {-1, -2},    {-2, -3},   {-2.5, -3},        {1e10, max}, {-1e10, min}, {inf, max},
        {-inf, min}, {NaN, min}, {most + 0.5, max}, {-most, min}};
    for (const auto &[x, floor] : cases) EXPECT_EQ(intFloor(x), floor) << x;
}

TEST(EquDouble, ComparesRelativelyToTheSecond) {
    const std::tuple<double, double, int> cases[] = {
        {1, 1 + 1e-12, 1}, {1, 1 + 1e-9, 0}, {-0.0, 0, 1},  {0, 1e-300, 0},         {1e-300, 0, 0},
        {1, -1, 0},        {-5, -5, 1},      {NaN, NaN, 0}, {infinity, infinity, 0}};
    for (const auto &[a, b, equal] : cases) EXPECT_EQ(equDouble(&a, &b), equal) << a << ", " << b;
}
