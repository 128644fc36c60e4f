#include "plotwerk/model/shownPoints.h"

#include "tests/plotwerk/model/documents.h"

using namespace plotwerk;

using Values = std::vector<double>;

static Values valuesOf(std::span<const double> values) {
    return {values.begin(), values.end()};
}

// A row without both numbers belongs to no block, and what is no error adds nothing to one.
TEST(ShownPoints, AreMeansWithTheErrorsOfIndependentValues) {
    const Table rows =
        table({0, 1, nan_, 2, 3, 4, 5, 10}, {column("y", {1, 3, 9, 5, 6, 7, 8, 20}),
                                             column("y error", {3, 4, 9, 6, 8, nan_, -5, 2}),
                                             column("y -", {-6, 8, 9, 0, -12, 5, 12, -4})});
    Column curve = rows.y[0];
    const Errors errors{&rows.y[1], &rows.y[1]}, pair{&rows.y[1], &rows.y[2]};

    EXPECT_EQ(valuesOf(shownPoints(rows, curve, {}, errors).y), curve.values);
    curve.look.sum = 2;
    const ShownPoints means = shownPoints(rows, curve, errors, pair);
    EXPECT_EQ(valuesOf(means.x), (Values{0.5, 2.5, 4.5, 10}));
    EXPECT_EQ(valuesOf(means.y), (Values{2, 5.5, 7.5, 20}));
    for (const auto &above : {means.xBars.above, means.xBars.below, means.yBars.above})
        EXPECT_EQ(valuesOf(above), (Values{2.5, 5, 0, 2}));
    EXPECT_EQ(valuesOf(means.yBars.below), (Values{5, 6, 6.5, 4}));
    EXPECT_TRUE(shownPoints(rows, curve, {}, errors).xBars.above.empty());
}
