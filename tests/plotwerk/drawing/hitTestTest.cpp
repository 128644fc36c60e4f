#include "plotwerk/drawing/hitTest.h"

#include "plotwerk/drawing/curvePoints.h"
#include "plotwerk/drawing/scaledFrame.h"
#include "tests/plotwerk/drawing/samples.h"
#include "tests/plotwerk/model/documents.h"

#include <cmath>
#include <random>

using namespace plotwerk;

namespace {

struct Hit {
    int curve, index;
};

Hit hitOf(const Document &document, double x, double y) {
    const NearestPoint nearest = nearestPoint(document, x, y).value_or(NearestPoint());
    return {nearest.curve, nearest.index};
}

bool operator==(const Hit &a, const Hit &b) {
    return a.curve == b.curve && a.index == b.index;
}

void PrintTo(const Hit &hit, std::ostream *out) {
    *out << "point " << hit.index << " of curve " << hit.curve;
}

} // namespace

// A curve through the points, and another one of a single point.
static Document curveAndPoint(std::vector<double> x, std::vector<double> y, double px, double py) {
    std::vector<double> lone(x.size() + 1, nan_);
    x.insert(x.end(), {nan_, px});
    y.insert(y.end(), {nan_, nan_});
    lone.push_back(py);
    return documentOf(table(std::move(x), {column("curve", std::move(y)), column("point", lone)}));
}

TEST(NearestPoint, IsMeasuredOnPaper) {
    const auto lookOf = [](Document &document, std::size_t curve) -> CurveLook & {
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
    const Document linear = documentWith({1, 10, 100}, {1, 10, 1000});
    Document logarithmic = linear;
    logarithmic.axes[xAxis].logarithmic = logarithmic.axes[yAxis].logarithmic = true;

    // the right axis shows 0..1 where the left one shows 0..1000, or 1000..0
    Document right =
        documentOf(table({0, 1}, {column("left", {0, 1000}), column("right", {1, 0})}));
    lookOf(right, 1).rightY = true;
    Document reversed = right;
    reversed.axes[yAxis].reversed = true;

    Document equals = documentOf(table({0, 1}, {column("a", {0, 1}), column("b", {0, 1})}));
    lookOf(equals, 0).layer = 5;
    const Document twice = documentWith({0, 5, 5, 9}, {0, 5, 5, 1});
    const Document line = curveAndPoint({0, 10}, {0, 0}, 5, 3);
    Document noLine = line;
    lookOf(noLine, 0).line = false;
    Document far = curveAndPoint({-1e9, 0}, {0, 0}, 2, 2);
    far.axes[xAxis].range = {0, 10};
    Document steps = curveAndPoint({0, 10}, {0, 10}, 6, 3);
    lookOf(steps, 0).stepped = true;
    Document back = curveAndPoint({10, 0}, {10, 0}, 6, 3);
    back.frame.noLineOnReverse = true;

    Document mirrored = curveAndPoint({0, 10}, {10, 0}, 4, 3);
    mirrored.frame.noLineOnReverse = mirrored.axes[xAxis].reversed = true;

    const Hit none{-1, -1};
    const struct {
        const char *what;
        const Document &document;
        double x, y;
        Hit want;
    } cases[] = {
        {"below the middle", apart, 400, 3.9, {0, 1}},
        {"above the middle", apart, 400, 4.1, {1, 1}},
        {"above the frame", apart, 240, 9, {1, 0}},
        {"below the frame", apart, -50, -9, {0, 0}},
        {"right of the frame", apart, 5000, 1, {0, 2}},
        {"no number", apart, nan_, 0, none},
        {"infinite", apart, 0, -INFINITY, none},
        {"no curve", Document(), 0, 0, none},
        {"the axis reaches to zero, where areas begin", areas, 5, 1000.5, {0, 1}},
        {"linear", linear, 40, 100, {0, 1}},
        {"logarithmic", logarithmic, 40, 100, {0, 2}},
        {"not on a logarithmic axis", logarithmic, -1, 100, none},
        {"right axis", right, 0, 900, {1, 0}},
        {"right axis beside a reversed one", reversed, 0, 100, {1, 0}},
        {"the first of equals", equals, 1, 1, {0, 1}},
        {"the first of rows at one place", twice, 5, 5, {0, 1}},
        {"nearer to the line", line, 4.9, 1, {0, 0}},
        {"nearer to the point", noLine, 5, 1, {1, 3}},
        {"beside the end of a very long line", far, 0.9, 2, {1, 3}},
        {"within the step", steps, 6, 4.9, {1, 3}},
        {"beside the step", steps, 9.5, 5, {0, 1}},
        {"where no line runs back", back, 6, 5.5, {1, 3}},
        {"where it runs on, to the left", mirrored, 4, 5.5, {0, 0}},
    };
    for (const auto &c : cases) EXPECT_EQ(hitOf(c.document, c.x, c.y), c.want) << c.what;
}

// Rows are looked at in slices, first those whose limits are nearest to the place.
TEST(NearestPoint, MayLieInASliceThatReachesLessFar) {
    for (const bool wideFirst : {false, true})
        for (const double direction : {-1.0, 1.0})
            for (const bool ofX : {false, true}) {
                std::vector<double> near(1000, 5);
                std::vector<double> across(1000, 5);
                for (std::size_t i = 0; i < 1000; ++i)
                    if ((i < 256) == wideFirst)
                        near[i] = across[i] = i % 2 == 0 ? 0 : 10; // about the place
                    else
                        near[i] += direction * (i == 999 || i == 255 ? 1 : 2);
                Document document = ofX ? documentWith(near, across) : documentWith(across, near);
                for (Axis &axis : document.axes) axis.range = {0, 10};
                onlyCurve(document).look.line = false;
                EXPECT_EQ(hitOf(document, 5, 5), (Hit{0, wideFirst ? 999 : 255}))
                    << direction << ofX;
            }
}

// Against all points, and all lines between them cut into small parts.
TEST(NearestPoint, OfALongCurveIsThatOfAllItsRows) {
    constexpr int rows = 3000;
    std::mt19937 random(1);
    std::uniform_real_distribution<double> uniform(0, 1);
    for (int i = 0; i < 42; ++i) {
        std::vector<double> x;
        std::vector<double> y;
        for (int row = 0; row < rows; ++row) {
            x.push_back(i % 2 == 0 ? row + 1 : 1 + rows * uniform(random));
            y.push_back(std::floor(1000 * uniform(random)) - (i % 3 == 0 ? 30 : 0));
            if (uniform(random) < 0.01) y.back() = unset;
        }
        Document document = documentWith(x, y);
        document.axes[xAxis].logarithmic = i % 5 == 0;
        document.axes[yAxis].logarithmic = i % 3 == 0;
        document.axes[yAxis].reversed = i % 4 == 0;
        document.frame.noLineOnReverse = i % 7 == 0;
        onlyCurve(document).look.line = i % 3 != 1;
        onlyCurve(document).look.stepped = i % 4 == 2;
        const Placed placed(document);
        const ScaledFrame &frame = placed.frame;
        const Point place{(3 * uniform(random) - 1) * frame.width,
                          (3 * uniform(random) - 1) * frame.height};

        const Path points = pointsOnPaper(placed.curves[0], frame);
        const auto distance = [&](const Point &p) {
            return std::hypot(p.x - place.x, p.y - place.y);
        };
        int want = -1;
        for (int row = 0; row < rows; ++row)
            if (!isBreak(points[row]) &&
                (want < 0 || distance(points[row]) < distance(points[want])))
                want = row;
        double fromDrawn = distance(points[want]);
        Path line;
        if (onlyCurve(document).look.line) line = linePath(points, placed.curves[0], frame);
        if (document.frame.noLineOnReverse) line = brokenOnReverse(line, false);
        for (std::size_t k = 1; k < line.size(); ++k)
            for (double part = 0; part <= 1; part += 5e-3)
                fromDrawn = std::fmin(
                    fromDrawn, distance({line[k - 1].x + part * (line[k].x - line[k - 1].x),
                                         line[k - 1].y + part * (line[k].y - line[k - 1].y)}));
        const auto nearest = nearestPoint(document, frame, place);
        ASSERT_TRUE(nearest) << i;
        EXPECT_EQ(nearest->index, want) << i;
        EXPECT_NEAR(nearest->distance, fromDrawn, 2) << i;
        EXPECT_LE(nearest->distance, fromDrawn + 1e-9) << i;
    }
}
