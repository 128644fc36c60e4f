#include "plotwerk/drawing/curvePoints.h"
#include "tests/plotwerk/drawing/samples.h"

#include <cmath>

using namespace plotwerk;

// The values that are drawn for the only curve, an unset y at breaks.
static void expectDrawn(const Document &document, const std::vector<double> &wantX,
                        const std::vector<double> &want) {
    const Placed placed(document);
    const ScaledFrame &frame = placed.frame;
    const Path got = linePath(pointsOnPaper(placed.curves[0], frame), placed.curves[0], frame);
    ASSERT_EQ(got.size(), want.size());
    for (std::size_t i = 0; i < got.size(); ++i) {
        const Point p = frame.at(wantX[i], want[i]);
        const double off = std::hypot(got[i].x - p.x, got[i].y - p.y);
        EXPECT_TRUE(std::isnan(want[i]) ? isBreak(got[i]) : off < 1e-9) << i << ", " << off;
    }
}

TEST(CurvePoints, AreTheRowsOrMeansOfThem) {
    Document document = documentWith({0, 1, 2, unset, 4, 5}, {3, unset, 5, 6, 7, INFINITY});
    document.axes[yAxis].range = {0, 10};
    expectDrawn(document, {0, 1, 2, unset, 4, 5}, {3, unset, 5, unset, 7, unset});
    onlyCurve(document).look.sum = 2;
    expectDrawn(document, {1, 4}, {4, 7});
}

TEST(CurvePoints, AreInterpolated) {
    Document document = documentWith({0, 1, 2}, {0, 1, 0});
    document.axes[yAxis].range = {-1, 2};
    onlyCurve(document).look.interpolationPoints = 1;
    expectDrawn(document, {0, 1, 2}, {0, 1, 0}); // straight: the lines are there already

    // the natural cubic spline has the second derivatives 0, -4, 4, 0
    Document spline = documentWith({0, 1, 2, 3}, {0, 1, 0, 1});
    spline.axes[yAxis].range = {-1, 2};
    onlyCurve(spline).look = onlyCurve(document).look;
    onlyCurve(spline).look.interpolationType = 1;
    expectDrawn(spline, {0, 0.5, 1, 1.5, 2, 2.5, 3}, {0, 0.75, 1, 0.5, 0, 0.25, 1});

    spline.sources[0].tables[0].x.values = {0, 1, 1, 2}; // no function of x
    expectDrawn(spline, {0, 0.5, 1, 1, 1, 1.5, 2}, {0, 0.5, 1, 0.5, 0, 0.5, 1});

    onlyCurve(spline).look.interpolationPoints = 1e9;
    const Placed placed(spline);
    EXPECT_EQ(pointsOfLine(placed.curves[0], placed.frame), 4 * (1 + 1e6));
}

// Those that are seen on a screen are some of the rows; on a page there are all.
TEST(CurvePoints, BetweenTwoAreAsManyAsTheRowsAllow) {
    const std::vector<double> ramp(1'000'000, 1.0);
    Document document = documentWith(ramp, ramp);
    CurveLook &look = onlyCurve(document).look;
    look.interpolationType = 1;
    look.interpolationPoints = 10;
    const auto pointsOfOne = [&] {
        const Placed placed(document);
        return linePath({{0, 0}, {9, 9}}, placed.curves[0], placed.frame).size();
    };
    EXPECT_EQ(pointsOfOne(), 2 + 4);
    look.sum = 500'000;
    EXPECT_EQ(pointsOfOne(), 2 + 10);
}

TEST(CurvePoints, OfStraightLinesAreBentOnLogarithmicAxes) {
    Document document = documentWith({0, 1, 2, 3}, {1, 100, -1, 5});
    document.axes[yAxis].range = {1, 100};
    document.axes[yAxis].logarithmic = true;
    onlyCurve(document).look.interpolationPoints = 2;
    for (const bool reversed : {false, true}) {
        document.axes[yAxis].reversed = reversed;
        expectDrawn(document, {0, 1.0 / 3, 2.0 / 3, 1, 2, 3}, {1, 34, 67, 100, unset, 5});
    }

    document = documentWith({1, 100}, {0, 1});
    document.axes[xAxis].logarithmic = true;
    document.axes[yAxis].range = {0, 2};
    onlyCurve(document).look.interpolationPoints = 1;
    expectDrawn(document, {1, 50.5, 100}, {0, 0.5, 1});
}

TEST(CurvePoints, BreakWhereXRunsBackwards) {
    const Path path{{0, 0}, {2, 0}, {1, 0}, {1, 1}, {3, 0}};
    EXPECT_EQ(described(brokenOnReverse(path, false)), "0,0 2,0 | 1,0 1,1 3,0");
    EXPECT_EQ(described(brokenOnReverse(path, true)), "0,0 | 2,0 1,0 1,1 | 3,0");
}
