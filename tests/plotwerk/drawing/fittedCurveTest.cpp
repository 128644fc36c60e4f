#include "plotwerk/drawing/fittedCurve.h"

#include "plotwerk/drawing/curves.h"
#include "plotwerk/drawing/hitTest.h"
#include "tests/plotwerk/drawing/samples.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

using namespace plotwerk;

namespace {

// The curve that a fit of two parameters has drawn from 1 to 10000, of a few points.
Document fitted(const std::string &formula, double (*f)(double)) {
    std::vector<double> x{1, 30, 500, 10000};
    std::vector<double> y;
    for (const double at : x) y.push_back(f(at));
    Document document = documentWith(x, y);
    onlyCurve(document).drawnByFit = true;
    document.fit.formula = formula;
    document.fit.parameters = {{"a", 2, 0.1}, {"b", 3, 0.2}};
    document.fit.freedom = 4; // Student's factor 2.776
    document.fit.covariance.values = {0.01, -0.005, 0.04};
    return document;
}

Path lineOf(const Document &document, std::vector<Path> *band = nullptr) {
    const Placed placed(document);
    const auto curve = FittedCurve::of(document, placed.curves[0]);
    if (!curve) return {};
    if (band) *band = curve->band(placed.curves[0], placed.frame);
    return curve->line(placed.curves[0], placed.frame);
}

} // namespace

// y = a x + b from 1 to 10000, with a deviation of nearly 0.1 x at the right end, 277 % of it
// either way; near 1 of 0.2. The data were fitted as far as their residuals go.
TEST(FittedCurve, WidensAutomaticLimitsByItsBandAtTheData) {
    const struct {
        const char *what;
        double dataTo;
        double scatter; // factor of the covariance
        Range limits;
        double top; // of the axis, less room
    } cases[] = {{"data to the end", 10000, 1e-2, {}, 20003 + 277.6},
                 {"data in the first half", 600, 1e-2, {}, 20003},
                 {"hardly determined", 10000, 1e4, {}, 20003 + 9999},
                 {"limits that are set", 10000, 1e-2, {0, 15000}, 15000}};
    for (int i = 0; i < 8; ++i) {
        const auto &c = cases[i % 4];
        const bool falling = i >= 4; // the same, upside down
        Document document = falling ? fitted("-a*x-b", [](double x) { return -2 * x - 3; })
                                    : fitted("a*x+b", [](double x) { return 2 * x + 3; });
        document.sources[0].tables[0].y[0].look.filled = true;
        document.axes[yAxis].range = falling ? Range{-c.limits.max, -c.limits.min} : c.limits;
        for (double &each : document.fit.covariance.values) each *= c.scatter;
        Table residuals;
        residuals.x.values = {1, c.dataTo};
        residuals.y.push_back({.name = "Residuals", .values = {0, 0}});
        residuals.y[0].residuals = true;
        residuals.y[0].look.visible = false;
        document.sources[0].tables.push_back(residuals);
        const ScaledFrame frame = Placed(document).frame;
        const Scale &scale = frame.scales[yAxis];
        const double bottom = scale.value(0);
        const double height = scale.value(scale.length) - bottom;
        const double room = std::isnan(c.limits.max) ? 0.04 / 1.08 * height : 0;
        const double top = falling ? -(bottom + room) : bottom + height - room;
        EXPECT_NEAR(top, c.top, 1) << c.what << falling;
    }
}

TEST(FittedCurve, IsTheFormulaWhateverTheAxesShow) {
    Document document = fitted("a*log(x)+b", [](double x) { return 2 * std::log(x) + 3; });
    Table &table = document.sources[0].tables[0]; // what isn't fitted, or not shown
    table.x.values.insert(table.x.values.end(), {unset, INFINITY});
    table.y[0].values.insert(table.y[0].values.end(), {unset, INFINITY});
    for (const bool logarithmic : {false, true})
        for (const Range &range : {Range{}, Range{2, 40}, Range{0.5, 1e5}}) {
            document.axes[xAxis].logarithmic = logarithmic;
            document.axes[xAxis].range = range;
            document.axes[xAxis].reversed = document.frame.noLineOnReverse = !logarithmic;
            const ScaledFrame frame = Placed(document).frame;
            Path line = lineOf(document);
            ASSERT_GT(line.size(), 100U);
            const Point middle = line[line.size() / 2 + 10];
            EXPECT_LT(nearestPoint(document, frame, middle)->distance, 1e-9);
            const std::vector<Drawn> drawn = drawnCurve(document);
            for (const Drawn &part : drawn) EXPECT_GT(part.path.size(), 1U);
            EXPECT_TRUE(std::ranges::none_of(drawn[0].path, isBreak)) << "joined";
            if (!logarithmic) std::ranges::reverse(line);
            for (std::size_t i = 1; i < line.size(); ++i)
                EXPECT_LE(std::abs(line[i].x - line[i - 1].x), pathResolution);
            for (const Point &point : line) {
                const auto [x, y] = frame.valuesAt(point);
                ASSERT_NEAR(y, 2 * std::log(x) + 3, 1e-9 * 30);
            }
            EXPECT_NEAR(frame.valuesAt(line.front()).x, std::fmax(range.min, 1), 1e-6);
            EXPECT_NEAR(frame.valuesAt(line.back()).x, std::fmin(range.max, 10000), 1e-5);
        }
    Document straight = fitted("a*x+b", [](double x) { return 2 * x + 3; });
    straight.sources[0].tables[0].x.values[0] = -5;
    onlyCurve(straight).values[0] = -7;
    for (const bool logarithmic : {false, true}) {
        straight.axes[xAxis].logarithmic = logarithmic;
        const double first = Placed(straight).frame.valuesAt(lineOf(straight).front()).x;
        EXPECT_NEAR(first, logarithmic ? 30 : -5, 1e-5);
    }
}

// y = a x + b: the variance at x is 0.01 x^2 - 2 * 0.005 x + 0.04.
TEST(FittedCurve, HasABandThatHolds95Percent) {
    Document document = fitted("a*x+b", [](double x) { return 2 * x + 3; });
    for (const bool absolute : {false, true}) {
        document.fit.absoluteErrors = absolute;
        std::vector<Path> band;
        const Path line = lineOf(document, &band);
        const ScaledFrame frame = Placed(document).frame;
        ASSERT_EQ(band.size(), 1U);
        ASSERT_EQ(band[0].size(), 2 * line.size());
        onlyCurve(document).look.filled = absolute;
        const auto drawn = drawnBy(
            [&](cairo_t *cr) { drawBand(cr, drawnCurvesOf(document)[0], frame, document, 0); });
        EXPECT_EQ(drawn.size(), absolute ? 1U : 0U);
        for (std::size_t i = 0; i < line.size(); i += 100) {
            const double x = frame.valuesAt(line[i]).x;
            const double half = frame.valuesAt(band[0][i]).y - (2 * x + 3);
            const double deviation = std::sqrt(0.01 * x * x - 0.01 * x + 0.04);
            EXPECT_NEAR(half / deviation, absolute ? 1.95996 : 2.77645, 1e-3) << x;
            const Point &below = band[0][band[0].size() - 1 - i];
            EXPECT_NEAR(below.y - line[i].y, line[i].y - band[0][i].y, 1e-6);
        }
    }
    document.axes[yAxis].range = {5000, 6000};
    const ScaledFrame frame = Placed(document).frame;
    const Box ink =
        inkOf([&](cairo_t *cr) { drawBand(cr, drawnCurvesOf(document)[0], frame, document, 0); });
    expectNear(ink, {ink.left, 0, ink.right, frame.height}); // as far as the frame goes

    document.fit.freedom = 0;
    document.fit.absoluteErrors = false;
    std::vector<Path> band;
    lineOf(document, &band);
    EXPECT_TRUE(band.empty()) << "the scatter isn't known";
}

TEST(FittedCurve, HasABandDownToTheEndOfALogarithmicAxis) {
    for (const bool reversed : {false, true}) {
        Document document = fitted("a*x+b", [](double x) { return 2 * x + 3; });
        document.fit.covariance.values = {0.01, 0, 1e4}; // to less than zero for small x
        document.axes[yAxis].logarithmic = true;
        document.axes[yAxis].reversed = reversed;
        std::vector<Path> band;
        lineOf(document, &band);
        ASSERT_EQ(band.size(), 1U);
        const double end = Placed(document).frame.height;
        EXPECT_EQ(band[0].back().y, reversed ? 0 : end);
        EXPECT_NE(band[0][band[0].size() / 2].y, reversed ? 0 : end);
    }
}

TEST(FittedCurve, IsNoneOnceThePointsAreOthers) {
    const Document drawn = fitted("a*x+b", [](double x) { return 2 * x + 3; });
    EXPECT_FALSE(lineOf(drawn).empty());
    Document beyond = drawn;
    EXPECT_TRUE(nearestPoint(beyond, 30, 63));
    beyond.axes[xAxis].range = {20000, 30000};
    EXPECT_FALSE(nearestPoint(beyond, 20000, 63)) << "nothing of it is drawn";
    void (*const changes[])(Document &) = {
        [](Document &d) { onlyCurve(d).values[2] += 1; },
        [](Document &d) { onlyCurve(d).values[2] = unset; },
        [](Document &d) { d.sources[0].tables[0].x.values[1] = 31; },
        [](Document &d) { onlyCurve(d).drawnByFit = false; },
        [](Document &d) { onlyCurve(d).look.stepped = true; },
        [](Document &d) { onlyCurve(d).look.sum = 2; },
        [](Document &d) { d.fit.formula = "a*'T (K)'+b"; },
        [](Document &d) { d.fit.formula = "a*x+b+0*T"; },
        [](Document &d) { d.fit.formula.clear(); }};
    for (const auto change : changes) {
        Document document = drawn;
        change(document);
        EXPECT_TRUE(lineOf(document).empty()) << &change - changes;
    }
}
