#include "fct/statistics.h"

#include <gtest/gtest.h>

#include <cfloat>

#include "samples.h"

using namespace plw;

TEST(LinRegFct, IsExactOnALine) {
    double intercept, slope, correlation, sigma;
    linRegFct(function({0, 1, 2}, {1, 3, 5}).get(), &intercept, &slope, &correlation, &sigma);
    // roots of 2/3 and 8/3 are rounded, so the line comes out to the last few bits
    EXPECT_DOUBLE_EQ(intercept, 1);
    EXPECT_DOUBLE_EQ(slope, 2);
    EXPECT_DOUBLE_EQ(correlation, 1);
    EXPECT_EQ(sigma, std::sqrt(35.0 / 3 - 9));

    linRegFct(function({-1, 1, -1, 1}, {0, 2, 2, 0}).get(), &intercept, &slope, &correlation,
              &sigma);
    EXPECT_EQ(Values({intercept, slope, correlation, sigma}), Values({1, 0, 0, 1}));

    linRegFct(own(newFct(1)).get(), &intercept, &slope, &correlation, &sigma);
    EXPECT_TRUE(same({intercept, slope, correlation, sigma}, {NaN, NaN, NaN, NaN}));

    linRegFct(function({NaN, 1}, {1, 3}).get(), &intercept, &slope, &correlation, &sigma);
    EXPECT_TRUE(same({intercept, slope, correlation, sigma}, {NaN, NaN, NaN, 1}));
}

TEST(LinRegFct, FusesItsSumsOfProductsOnly) {
    const Values t = {0.1, 0.2, 0.7, 1.1}, y = {1.3, -0.4, 2.9, 0.3};
    double st = 0, stt = 0, sty = 0, sy = 0, syy = 0;
    for (int i = 0; i < 4; i++) {
        st += t[i];
        stt = std::fma(t[i], t[i], stt);
        sty = std::fma(t[i], y[i], sty);
        sy += y[i];
        syy = std::fma(y[i], y[i], syy);
    }
    const double mt = st / 4, my = sy / 4;
    const double sigmaT = std::sqrt(stt / 4 - mt * mt), sigmaY = std::sqrt(syy / 4 - my * my);
    const double c = sty / 4 - mt * my;

    double intercept, slope, correlation, sigma;
    linRegFct(function(t, y).get(), &intercept, &slope, &correlation, &sigma);
    EXPECT_EQ(correlation, c / (sigmaT * sigmaY));
    EXPECT_EQ(slope, c / (sigmaT * sigmaT));
    EXPECT_EQ(intercept, my - mt * (c / (sigmaT * sigmaT)));
    EXPECT_EQ(sigma, sigmaY);
}

TEST(LinRegFctDeathTest, RefusesAnIncompleteFunction) {
    double a, b, r, s;
    EXPECT_EXIT(linRegFct(incompleteFunction().get(), &a, &b, &r, &s), testing::ExitedWithCode(1),
                "^ERROR in linRegFct: function incomplete \\(2\\)\n$");
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
    const struct {
        Values v;
        int increasing;
        double min, max;
    } cases[] = {
        {{1, 2, 2, 3}, 1, 1, 3},
        {{3, 1}, 0, 1, 3},
        {{1, NaN, 0.5}, 1, 0.5, 1},
        {{NaN, 2, 1}, 0, NaN, NaN},
        {{}, 1, DBL_MAX, -DBL_MAX},
        {{infinity}, 1, DBL_MAX, infinity},
        {{-infinity}, 1, -infinity, -DBL_MAX},
        {{2, 1, 3}, 0, 1, 3},
    };
    for (const auto &c : cases) {
        char increasing = 7;
        double min = 0, max = 0;
        miniStatitic(c.v.data(), static_cast<int>(c.v.size()), &increasing, &min, &max);
        EXPECT_EQ(increasing, c.increasing) << text(c.v);
        EXPECT_TRUE(same(min, c.min) && same(max, c.max)) << text(c.v) << min << " " << max;
    }
    char increasing = 7;
    double min, max;
    miniStatitic(nullptr, 3, &increasing, &min, &max);
    EXPECT_EQ(increasing, 1);
}

TEST(ArrHasNAN, CountsInfinitiesToo) {
    const struct {
        Values v;
        int want;
    } cases[] = {{{}, 0}, {{1, 2}, 0}, {{1, NaN}, 1}, {{-infinity}, 1}, {{1, infinity, 1}, 1}};
    for (const auto &c : cases)
        EXPECT_EQ(arrHasNAN(c.v.data(), static_cast<int>(c.v.size())), c.want) << text(c.v);
    EXPECT_EQ(arrHasNAN(nullptr, -1), 0);
}

TEST(Average, CompactsBlocksOfValidPairs) {
    const struct {
        Values x;
        int k;
        int m;
        Values want;
    } cases[] = {
        {{1, 2, NaN, 3, 4, 5}, 2, 3, {1.5, 3.5, 5, 3, 4, 5}},
        {{1, infinity, 3}, 5, 1, {2, infinity, 3}},
        {{4, 2, NaN}, 1, 2, {4, 2, NaN}},
        {{NaN, NaN}, 2, 0, {NaN, NaN}},
        {{}, 2, 0, {}},
    };
    for (const auto &c : cases) {
        for (int side = 0; side < 2; side++) { // the gaps in x, then in y
            Values gaps = c.x, other(c.x.size(), 6);
            int m = -1;
            average((side ? other : gaps).data(), (side ? gaps : other).data(),
                    static_cast<int>(c.x.size()), c.k, &m);
            EXPECT_EQ(m, c.m) << text(c.x);
            EXPECT_TRUE(same(gaps, c.want)) << text(gaps);
            EXPECT_EQ(other, Values(c.x.size(), 6)) << text(c.x);
        }
    }
}
