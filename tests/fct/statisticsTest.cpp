#include "fct/statistics.h"

#include "tests/fct/samples.h"

#include <cfloat>

using namespace plw;

// Intercept, slope, correlation and sigma.
static Values regression(const Values &t, const Values &y) {
    double intercept, slope, correlation, sigma;
    linRegFct(function(t, y), &intercept, &slope, &correlation, &sigma);
    return {intercept, slope, correlation, sigma};
}

TEST(LinRegFct, IsExactOnALine) {
    const Values line = regression({0, 1, 2}, {1, 3, 5});
    // roots of 2/3 and 8/3 are rounded, so the line comes out to the last few bits
    EXPECT_DOUBLE_EQ(line[0], 1);
    EXPECT_DOUBLE_EQ(line[1], 2);
    EXPECT_DOUBLE_EQ(line[2], 1);
    EXPECT_EQ(line[3], std::sqrt(35.0 / 3 - 9));

    EXPECT_EQ(regression({-1, 1, -1, 1}, {0, 2, 2, 0}), Values({1, 0, 0, 1}));
    EXPECT_TRUE(same(regression({}, {}), {NaN, NaN, NaN, NaN}));
    EXPECT_TRUE(same(regression({NaN, 1}, {1, 3}), {NaN, NaN, NaN, 1}));
}

TEST(LinRegFct, FusesItsSumsOfProductsOnly) {
    // with any other rounding the last digits are others
    EXPECT_TRUE(
        same(regression({1.9, 1, 0.2, 1.2}, {0.8, 0.8, -2.2, -2.2}),
             {-2.3482112436115852, 1.533219761499149, 0.61911625755974709, 1.5000000000000002}));
}

TEST(Covariance, IsTheCorrelationCoefficient) {
    const Values a = {1, 2, 3, 4}, minus = {-1, -2, -3, -4}, cross = {1, -1, -1, 1};
    EXPECT_EQ(covariance(a.data(), a.data(), 4), 1);
    EXPECT_EQ(covariance(a.data(), minus.data(), 4), -1);
    EXPECT_EQ(covariance(a.data(), cross.data(), 4), 0);
    EXPECT_TRUE(std::isnan(covariance(a.data(), a.data(), 1)));
    EXPECT_TRUE(std::isnan(covariance(nullptr, nullptr, 0)));
}

TEST(MiniStatitic, SkipsNaNAfterTheFirst) {
    const double most = DBL_MAX, inf = infinity;
    const struct {
        Values v;
        int increasing;
        double min, max;
    } cases[] = {{{1, 2, 2, 3}, 1, 1, 3},    {{3, 1, 1, 1}, 0, 1, 3},    {{1, NaN, 0.5}, 1, 0.5, 1},
                 {{NaN, 2, 1}, 0, NaN, NaN}, {Values(), 1, most, -most}, {{inf}, 1, most, inf},
                 {{-inf}, 1, -inf, -most},   {{2, 1, 3}, 0, 1, 3}};
    char increasing = 7;
    double min = 0, max = 0;
    for (const auto &c : cases) {
        miniStatitic(c.v.data(), static_cast<int>(c.v.size()), &increasing, &min, &max);
        EXPECT_EQ(increasing, c.increasing) << testing::PrintToString(c.v);
        EXPECT_TRUE(same({min, max}, {c.min, c.max})) << testing::PrintToString(c.v);
    }
    miniStatitic(nullptr, 3, &increasing, &min, &max);
    EXPECT_EQ(increasing, 1);
}

TEST(ArrHasNAN, CountsInfinitiesToo) {
    const struct {
        Values v;
        int want;
    } cases[] = {{{}, 0}, {{1, 2}, 0}, {{1, NaN}, 1}, {{-infinity}, 1}, {{1, infinity, 1}, 1}};
    for (const auto &c : cases)
        EXPECT_EQ(arrHasNAN(c.v.data(), static_cast<int>(c.v.size())), c.want)
            << testing::PrintToString(c.v);
    EXPECT_EQ(arrHasNAN(nullptr, -1), 0);
}

TEST(Average, CompactsBlocksOfValidPairs) {
    const struct {
        Values x;
        int k, m;
        Values want;
    } cases[] = {{{1, 2, NaN, 3, 4, 5}, 2, 3, {1.5, 3.5, 5, 3, 4, 5}},
                 {{1, infinity, 3}, 5, 1, {2, infinity, 3}},
                 {{4, 2, NaN}, 1, 2, {4, 2, NaN}},
                 {{NaN, NaN}, 2, 0, {NaN, NaN}}};
    for (const auto &c : cases) {
        for (int side = 0; side < 2; ++side) { // the gaps in x, then in y
            Values gaps = c.x, other(c.x.size(), 6);
            int m = -1;
            average((side ? other : gaps).data(), (side ? gaps : other).data(),
                    static_cast<int>(c.x.size()), c.k, &m);
            EXPECT_EQ(m, c.m) << testing::PrintToString(c.x);
            EXPECT_TRUE(same(gaps, c.want));
            EXPECT_EQ(other, Values(c.x.size(), 6)) << testing::PrintToString(c.x);
        }
    }
}
