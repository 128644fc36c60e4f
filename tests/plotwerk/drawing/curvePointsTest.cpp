#include "plotwerk/drawing/curvePoints.h"
#include "tests/plotwerk/drawing/samples.h"

#include <cmath>

using namespace plotwerk;

// The y values that are drawn for the only curve, NaN at breaks.
static void expectDrawn(const Document &document, const std::vector<double> &want) {
    const std::vector<DrawnCurve> curves = drawnCurvesOf(document);
    const ScaledFrame frame = scaledFrameOf(document, curves);
    const Path got = linePath(pointsOnPaper(curves[0], frame), curves[0], frame);
    ASSERT_EQ(got.size(), want.size());
    for (size_t i = 0; i < got.size(); ++i) {
        const double y = frame.at(1, want[i]).y;
        EXPECT_TRUE(std::isnan(y) ? isBreak(got[i]) : std::abs(got[i].y - y) < 1e-9) << i;
    }
}

TEST(CurvePoints, AreTheRowsOrMeansOfThem) {
    Document document = documentWith({0, 1, 2, unset, 4, 5}, {3, unset, 5, 6, 7, INFINITY});
    document.axes[yAxis].range = {0, 10};
    expectDrawn(document, {3, unset, 5, unset, 7, unset});
    onlyCurve(document).look.sum = 2;
    expectDrawn(document, {4, 7});
}

TEST(CurvePoints, AreInterpolated) {
    Document document = documentWith({0, 1, 2}, {0, 1, 0});
    document.axes[yAxis].range = {-1, 2};
    onlyCurve(document).look.interpolationPoints = 1;
    expectDrawn(document, {0, 1, 0}); // straight: the lines are there already

    // the natural cubic spline up to x = 1 is 3/2 x - 1/2 x^3
    onlyCurve(document).look.interpolationType = 1;
    expectDrawn(document, {0, 0.6875, 1, 0.6875, 0});

    document.sources[0].tables[0].x.values = {0, 1, 1}; // no function of x
    expectDrawn(document, {0, 0.5, 1, 0.5, 0});
}

TEST(CurvePoints, OfStraightLinesAreBentOnLogarithmicAxes) {
    Document document = documentWith({0, 1, 2, 3}, {1, 100, -1, 5});
    document.axes[yAxis].range = {1, 100};
    document.axes[yAxis].logarithmic = true;
    onlyCurve(document).look.interpolationPoints = 2;
    expectDrawn(document, {1, 34, 67, 100, unset, 5});
    document.axes[yAxis].reversed = true;
    expectDrawn(document, {1, 34, 67, 100, unset, 5});
}

TEST(CurvePoints, BreakWhereXRunsBackwards) {
    const Path path{{0, 0}, {2, 0}, {1, 0}, {1, 1}, {3, 0}};
    EXPECT_EQ(described(brokenOnReverse(path, false)), "0,0 2,0 | 1,0 1,1 3,0");
    EXPECT_EQ(described(brokenOnReverse(path, true)), "0,0 | 2,0 1,0 1,1 | 3,0");
}
