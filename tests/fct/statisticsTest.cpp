#include "fct/statistics.h"

#include "tests/fct/samples.h"

#include <cfloat>

using namespace plw;

TEST(LinRegFct, FusesItsSumsOfProductsOnly) {
    // want: intercept, slope, correlation and sigma
    const std::tuple<Values, Values, Values> cases[] = {
        {{0, 1, 2},
         {1, 3, 5},
         {1.0000000000000004, 1.9999999999999996, 0.9999999999999998, 1.6329931618554518}},
        {{-1, 1, -1, 1}, {0, 2, 2, 0}, {1, 0, 0, 1}},
        {{}, {}, {NaN, NaN, NaN, NaN}},
        {{NaN, 1}, {1, 3}, {NaN, NaN, NaN, 1}},
        // with any other rounding the last digits are others
        {{1.9, 1, 0.2, 1.2},
         {0.8, 0.8, -2.2, -2.2},
         {-2.3482112436115852, 1.533219761499149, 0.61911625755974709, 1.5000000000000002}}};
    for (const auto &[t, y, want] : cases) {
        Values line(4);
        linRegFct(function(t, y), &line[0], &line[1], &line[2], &line[3]);
        EXPECT_TRUE(same(line, want)) << text(function(t, y));
    }
}

TEST(Covariance, IsTheCorrelationCoefficient) {
    const Values a = {1, 2, 3, 4}, minus = {-1, -2, -3, -4}, cross = {1, -1, -1, 1};
    EXPECT_EQ(covariance(a.data(), a.data(), 4), 1);
    EXPECT_EQ(covariance(a.data(), minus.data(), 4), -1);
    EXPECT_EQ(covariance(a.data(), cross.data(), 4), 0);
    EXPECT_TRUE(std::isnan(covariance(a.data(), a.data(), 1)));
}

TEST(MiniStatitic, SkipsNaNAfterTheFirst) {
    const double most = DBL_MAX, inf = infinity;
    const std::tuple<Values, int, double, double> cases[] = {
        {{1, 2, 2, 3}, 1, 1, 3},    {{3, 1, 1, 1}, 0, 1, 3},    {{1, NaN, 0.5}, 1, 0.5, 1},
        {{NaN, 2, 1}, 0, NaN, NaN}, {Values(), 1, most, -most}, {{inf}, 1, most, inf},
        {{-inf}, 1, -inf, -most},   {{2, 1, 3}, 0, 1, 3},       {{-0.0, 0.0}, 1, -0.0, -0.0},
        {{0.0, -0.0}, 1, 0.0, 0.0}};
    char increasing = 7;
    double min = 0, max = 0;
    for (const auto &[v, ascends, least, greatest] : cases) {
        miniStatitic(v.data(), static_cast<int>(v.size()), &increasing, &min, &max);
        EXPECT_EQ(increasing, ascends) << testing::PrintToString(v);
        EXPECT_TRUE(same({min, max}, {least, greatest})) << testing::PrintToString(v);
    }
    miniStatitic(nullptr, 3, &increasing, &min, &max);
    EXPECT_EQ(increasing, 1);
}

TEST(ArrHasNAN, CountsInfinitiesToo) {
    for (const auto &[v, want] :
         {std::pair{Values{}, 0}, {{1, 2}, 0}, {{1, NaN}, 1}, {{-infinity}, 1}})
        EXPECT_EQ(arrHasNAN(v.data(), static_cast<int>(v.size())), want)
            << testing::PrintToString(v);
    EXPECT_EQ(arrHasNAN(nullptr, -1), 0);
}

TEST(Average, CompactsBlocksOfValidPairs) {
    const std::tuple<Values, int, int, Values> cases[] = {
        {{1, 2, NaN, 3, 4, 5}, 2, 3, {1.5, 3.5, 5, 3, 4, 5}},
        {{1, infinity, 3}, 5, 1, {2, infinity, 3}},
        {{4, 2, NaN}, 1, 2, {4, 2, NaN}},
        {{NaN, NaN}, 2, 0, {NaN, NaN}}};
    for (const auto &[x, k, count, want] : cases) {
        const int n = static_cast<int>(x.size());
        for (const bool gapsInX : {true, false}) {
            Values gaps = x, other(n, 6);
            int m = -1;
            average((gapsInX ? gaps : other).data(), (gapsInX ? other : gaps).data(), n, k, &m);
            EXPECT_EQ(m, count) << testing::PrintToString(x);
            EXPECT_TRUE(same(gaps, want));
            EXPECT_EQ(other, Values(n, 6)) << testing::PrintToString(x);
        }
    }
}
