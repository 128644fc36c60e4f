#include "plotwerk/model/statistic.h"

#include "tests/plotwerk/model/documents.h"

#include <cmath>
#include <limits>
#include <tuple>

using namespace plotwerk;

TEST(Statistic, CoversAllValidPointsOfTheSelection) {
    Table t = table({0, 1, nan_, 3}, {column("a", {1, 3, 100, 5}), column("b", {nan_, 2, 7, -2})});
    t.y[0].rank = 2;
    t.y[1].rank = 1;
    const Statistic s = statisticOfSelection(documentOf(t));
    EXPECT_EQ(std::tuple(s.name, s.points, s.min, s.max, s.sum, s.area),
              std::tuple("b", 5, -2.0, 5.0, 9.0, 2.0 + 8 + 0));
    EXPECT_DOUBLE_EQ(s.deviation, std::sqrt(26.8 / 5));
}

TEST(Statistic, TakesTheAreaInTheOrderOfX) {
    using Values = std::vector<double>;
    const std::tuple<Values, Values, double> cases[] = {{{1, 2, 0}, {2, 4, 0}, 4},
                                                        {{0, 1, 1, 2}, {1, 1, 3, 3}, 4},
                                                        {{1}, {5}, 0},
                                                        {{1, 1}, {5, 6}, 0}};
    for (const auto &[x, y, area] : cases)
        EXPECT_EQ(statisticOfSelection(selectedOf(table(x, {column("a", y)}))).area, area)
            << testing::PrintToString(x);
}

TEST(Statistic, IsStableFarFromZeroAndAgainstCancellation) {
    const auto of = [](const std::vector<double> &y) {
        return statisticOfSelection(selectedOf(table(y, {column("a", y)})));
    };
    EXPECT_DOUBLE_EQ(of({1e9, 1e9 + 1, 1e9 + 2}).deviation, std::sqrt(2.0 / 3));
    EXPECT_EQ(of({1e16, 1e16 + 2}).deviation, 1); // whose mean isn't a double
    EXPECT_EQ(of({1, 1e100, 1, -1e100}).sum, 2);
    const Statistic endless = of({1e308, 1e308, std::numeric_limits<double>::infinity()});
    EXPECT_EQ(endless.sum, std::numeric_limits<double>::infinity());
    EXPECT_TRUE(std::isnan(endless.deviation));
    EXPECT_FALSE(std::signbit(endless.deviation)) << "printed as nan, not as -nan";
    const Statistic same = of(std::vector<double>(1'000'000, 0.1));
    EXPECT_DOUBLE_EQ(same.sum, 100'000);
    EXPECT_LT(same.deviation, 1e-16); // the mean is rounded once

    const Statistic none = of({nan_, nan_});
    EXPECT_TRUE(std::isnan(none.min) && std::isnan(none.max) && std::isnan(none.deviation));
    EXPECT_TRUE(none.points == 0 && none.sum == 0 && none.area == 0);
    EXPECT_THROW(statisticOfSelection(sample()), Refusal);
}
