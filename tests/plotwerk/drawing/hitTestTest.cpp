#include "plotwerk/drawing/hitTest.h"

#include "plotwerk/drawing/scaledFrame.h"
#include "tests/plotwerk/drawing/samples.h"

#include <cmath>

using namespace plotwerk;

// A curve through the points, and another one of a single point.
static Document curveAndPoint(std::vector<double> x, std::vector<double> y, double px, double py) {
    std::vector<double> lone(x.size() + 1, nan_);
    x.insert(x.end(), {nan_, px});
    y.insert(y.end(), {nan_, nan_});
    lone.push_back(py);
    return documentOf(table(std::move(x), {column("curve", std::move(y)), column("point", lone)}));
}

TEST(NearestPoint, IsMeasuredOnPaper) {
    const auto lookOf = [](Document &document, size_t curve) -> CurveLook & {
        return document.sources[0].tables[0].y[curve].look;
    };
    const Document apart = // 12 cm for 0..1000, 8 cm for 0..8
        documentOf(table({0, 500, 1000}, {column("low", {0, 0, 0}), column("high", {8, 8, 8}),
                                          column("low error", {4, 4, 4})}));
    Document areas = documentOf(table({0, 5, 10}, {column("A", {1000.1, 1000, 1000.1})}));
    areas.sources[0].tables.push_back(table({0, 7, 10}, {column("B", {1000.2, 1000.5, 1000.2})}));
    for (Table &each : areas.sources[0].tables) {
        each.y[0].look.filled = true;
        each.y[0].look.line = false;
    }
    Document logarithmic = documentWith({1, 10, 100}, {1, 10, 1000});
    logarithmic.axes[xAxis].logarithmic = logarithmic.axes[yAxis].logarithmic = true;

    // the right axis shows 0..1 where the left one shows 1000..0
    Document reversed =
        documentOf(table({0, 1}, {column("left", {0, 1000}), column("right", {1, 0})}));
    lookOf(reversed, 1).rightY = true;
    reversed.axes[yAxis].reversed = true;

    Document equals = documentOf(table({0, 1}, {column("a", {0, 1}), column("b", {0, 1})}));
    lookOf(equals, 0).layer = 5;
    const Document line = curveAndPoint({0, 10}, {0, 0}, 5, 3);
    Document noLine = line;
    lookOf(noLine, 0).line = false;
    Document far = curveAndPoint({-1e9, 0}, {0, 0}, 2, 2);
    far.axes[xAxis].range = {0, 10};
    Document steps = curveAndPoint({0, 10}, {0, 10}, 6, 3);
    lookOf(steps, 0).stepped = true;
    Document back = curveAndPoint({10, 0}, {10, 0}, 6, 3);
    back.frame.noLineOnReverse = true;

    using Hit = std::pair<int, int>; // the curve and its point
    const Hit none{-1, -1};
    const struct {
        const char *what;
        const Document &document;
        double x, y;
        Hit want;
    } cases[] = {
        {"below the middle", apart, 400, 3.9, {0, 1}},
        {"above the middle", apart, 400, 4.1, {1, 1}},
        {"below the frame", apart, -50, -9, {0, 0}},
        {"no number", apart, nan_, 0, none},
        {"infinite", apart, 0, -INFINITY, none},
        {"no curve", Document(), 0, 0, none},
        {"the axis reaches to zero, where areas begin", areas, 5, 1000.5, {0, 1}},
        {"logarithmic", logarithmic, 40, 100, {0, 2}},
        {"not on a logarithmic axis", logarithmic, -1, 100, none},
        {"right axis beside a reversed one", reversed, 0, 100, {1, 0}},
        {"the first of equals", equals, 1, 1, {0, 1}},
        {"nearer to the line", line, 5, 1, {0, 0}},
        {"nearer to the point", noLine, 5, 1, {1, 3}},
        {"beside the end of a very long line", far, 0.9, 2, {1, 3}},
        {"within the step", steps, 6, 4.9, {1, 3}},
        {"beside the step", steps, 9.5, 5, {0, 1}},
        {"where no line runs back", back, 6, 5.5, {1, 3}},
    };
    for (const auto &c : cases) {
        const NearestPoint got = nearestPoint(c.document, c.x, c.y).value_or(NearestPoint());
        EXPECT_EQ(Hit(got.curve, got.index), c.want) << c.what;

        // a point of a curve on the x and y axes is itself the nearest, or another in its place
        const std::vector<DrawnCurve> curves = drawnCurvesOf(c.document);
        const ScaledFrame frame = scaledFrameOf(c.document, curves);
        for (const DrawnCurve &curve : curves)
            for (size_t row = 0; row < curve.table->x.values.size(); ++row) {
                const Point place = frame.at(curve.table->x.values[row], curve.column->values[row]);
                if (curve.column->look.rightY || !frame.box().grownBy(500).contains(place))
                    continue;
                const auto [index, at, x, y] = *nearestPoint(c.document, curve.table->x.values[row],
                                                             curve.column->values[row]);
                const Point found = frame.at(x, y);
                EXPECT_TRUE(index == curve.index || curves[index].column->look.rightY ||
                            std::hypot(found.x - place.x, found.y - place.y) < 1e-6)
                    << c.what << ' ' << row << ' ' << curve.index << ' ' << index << ' ' << at;
            }
    }
}
