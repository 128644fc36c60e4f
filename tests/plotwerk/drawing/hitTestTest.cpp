#include "plotwerk/drawing/hitTest.h"

#include "plotwerk/drawing/curvePoints.h"
#include "tests/plotwerk/drawing/samples.h"

#include <cmath>
#include <random>

using namespace plotwerk;

// "POINT of CURVE", counted from 0, where the values are.
static std::string hitOf(const Document &document, double x, double y) {
    const auto nearest = nearestPoint(document, x, y);
    if (!nearest) return "none";
    return std::to_string(nearest->index) + " of " + std::to_string(nearest->curve);
}

TEST(NearestPoint, IsTheFirstOfEqualsOrNone) {
    const Document none;
    Document equals = documentOf(table({0, 1}, {column("a", {0, 1}), column("b", {0, 1})}));
    equals.sources[0].tables[0].y[0].look.layer = 5;
    const Document twice = documentWith({0, 5, 5, 9}, {0, 5, 5, 1});
    Document logarithmic = twice;
    logarithmic.axes[xAxis].logarithmic = true;
    Document far = documentOf(table({-1e9, 0, nan_, 2}, {column("line", {0, 0, nan_, nan_}),
                                                         column("point", {nan_, nan_, nan_, 2})}));
    far.axes[xAxis].range = {0, 10};
    Document areas = documentOf(table({0, 5, 10}, {column("A", {1000.1, 1000, 1000.1})}));
    areas.sources[0].tables.push_back(table({0, 7, 10}, {column("B", {1000.2, 1000.5, 1000.2})}));
    for (Table &each : areas.sources[0].tables) {
        each.y[0].look.filled = true;
        each.y[0].look.line = false;
    }
    const std::tuple<const char *, const Document &, double, double, const char *> cases[] = {
        {"no number", twice, nan_, 0, "none"},
        {"infinite", twice, 0, -INFINITY, "none"},
        {"no curve", none, 0, 0, "none"},
        {"not on a logarithmic axis", logarithmic, -1, 100, "none"},
        {"the first of equals", equals, 1, 1, "1 of 0"},
        {"the first of rows at one place", twice, 5, 5, "1 of 0"},
        {"beside the end of a very long line", far, 0.9, 2, "3 of 1"},
        {"the axis reaches to zero, where areas begin", areas, 5, 1000.5, "1 of 0"}};
    for (const auto &[what, document, x, y, want] : cases)
        EXPECT_EQ(hitOf(document, x, y), want) << what;
}

// Against all points of both curves, and all lines between them.
TEST(NearestPoint, IsMeasuredOnPaperFromAllThatIsDrawn) {
    std::mt19937 random(1);
    std::uniform_real_distribution<double> uniform(0, 1);
    const auto maybe = [&] { return random() % 3 == 0; };
    for (int i = 0; i < 500; ++i) {
        const int rows = i % 10 == 0 ? 3000 : 2 + i % 5;
        const bool ascending = maybe();
        const bool slow = maybe(); // rows near each other are nearly as high, or as high
        std::vector<double> x;
        std::vector<Column> y{column("a", {}), column("b", {})};
        for (int row = 0; row < rows; ++row) {
            x.push_back(ascending ? row + 1 : 1 + rows * uniform(random));
            for (Column &each : y) {
                const bool gap = row > 0 && uniform(random) < 0.01;
                const double level = each.name == "a" ? 400 : 700;
                const double wave = 500 + 450 * std::cos(row * 7. / rows) + uniform(random);
                const double value = !slow ? 1000 * uniform(random) : i % 20 == 0 ? level : wave;
                each.values.push_back(gap ? unset : value - (i % 4 == 0 ? 60 : 0));
            }
        }
        for (Column &each : y) {
            each.look.line = !maybe();
            each.look.stepped = maybe();
            each.look.rightY = maybe();
            each.look.upperX = maybe();
            each.look.layer = maybe();
        }
        Document document = documentOf(table(x, y));
        for (Axis &axis : document.axes) {
            axis.logarithmic = maybe();
            axis.reversed = maybe();
        }
        document.axes[yAxis].range = {1, 1100}; // or both curves might be the same on paper
        document.axes[upperXAxis].range = {1, 2. * rows};
        document.frame.noLineOnReverse = maybe();
        const auto &[of, curves, frame] = Placed(document);
        const Point place{(3 * uniform(random) - 1) * frame.width,
                          (3 * uniform(random) - 1) * frame.height};

        NearestPoint want{.distance = INFINITY};
        for (const DrawnCurve &curve : curves) {
            const Path points = pointsOnPaper(curve, frame);
            Path drawn;
            for (const Point &p : points) drawn.insert(drawn.end(), {p, pathBreak});
            if (curve.column->look.line) drawn = linePath(points, curve, frame);
            if (document.frame.noLineOnReverse)
                drawn = brokenOnReverse(drawn, frame.scales[curve.horizontalAxis()].reversed);
            const double distance = distanceFrom(drawn, place);
            if (distance >= want.distance) continue;
            want = {.curve = curve.index, .distance = distance};
            double least = INFINITY;
            for (int row = 0; row < rows; ++row) {
                const double away = std::hypot(points[row].x - place.x, points[row].y - place.y);
                if (!(away < least)) continue;
                least = away;
                want.index = row;
            }
        }
        const auto got = nearestPoint(document, frame, place);
        ASSERT_TRUE(got) << i;
        EXPECT_EQ(std::pair(got->curve, got->index), std::pair(want.curve, want.index)) << i;
        EXPECT_NEAR(got->distance, want.distance, 1e-6 * want.distance) << i;
    }
}
