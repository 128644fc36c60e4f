#include "util/geometry/plane.h"

#include "tests/support/expect.h"

#include <numbers>
#include <tuple>

using namespace plw;
using std::numbers::pi;

TEST(LinInterpol, GoesAlongTheLineAndBeyondItsEnds) {
    for (double t : {-1.0, 0.25, 1.0}) {
        double x = NaN, y = NaN;
        linInterpol(1, 10, 3, 6, t, &x, &y);
        EXPECT_EQ(Values({x, y}), Values({1 + 2 * t, 10 - 4 * t}));
    }
}

TEST(LinInterpolx, ReplacesOneGapAndAveragesAVerticalLine) {
    const std::tuple<double, double, double, double, double, double> cases[] = {
        {1, 2, 3, 6, 2, 4}, {1, 2, 3, 6, 5, 10},  {1, NaN, 3, 6, 2, 6},    {1, 2, 3, NaN, 9, 2},
        {1, 2, 1, 4, 7, 3}, {1, 2, 1, NaN, 7, 2}, {1, NaN, 3, NaN, 2, NaN}};
    for (const auto &[x0, y0, x1, y1, x, want] : cases)
        EXPECT_TRUE(same(linInterpolx(x0, y0, x1, y1, x), want)) << x;
}

TEST(LineCross, FindsTheCrossingOrLeavesParallelLines) {
    const double l1[] = {0, 1, 4, 0}, l2[] = {4, 0, 0, -0.5}, l3[] = {5, 5, -1, 0};
    double t1 = 7, t2 = 8;
    for (const double *other : {l2, l3}) {
        char parallel = 7;
        LineCross(l1, other, &t1, &t2, &parallel);
        EXPECT_EQ(parallel, other == l3);
        EXPECT_EQ(Values({t1, t2}), Values({1, -2}));
    }
}

TEST(DistPoint, IsTheSquaredScaledDistanceOfLineAndSegment) {
    // beyond the end, before the start, beside the line only, scaled, far beside, on the line but
    // for rounding, no segment, three times the same point, gaps
    const struct {
        double px, py, ax, ay, bx, by, sx, sy, line, path;
    } cases[] = {{2, 0, 0, 0, 1, 0, 1, 1, 0, 1},         {-3, 4, 0, 0, 1, 0, 1, 1, 16, 25},
                 {2, 1, 0, 0, 1, 0, 1, 1, 1, 2},         {1, 3, 0, 0, 2, 0, 10, 2, 36, 36},
                 {0.5, 100, 0, 0, 1, 0, 1, 1, 1e4, 1e4}, {0.1, 0.01, 0, 0, 1.2, 0.12, 1, 1, 0, 0},
                 {3, 4, 0, 0, 0, 0, 1, 1, NaN, 25},      {1, 1, 1, 1, 1, 1, 1, 1, NaN, NaN},
                 {NaN, 0, 0, 0, 1, 0, 1, 1, NaN, NaN},   {0, 1, 0, 0, 1, NaN, 1, 1, NaN, NaN}};
    for (const auto &c : cases) {
        const double line = DistPointLineQ(c.px, c.py, c.ax, c.ay, c.bx, c.by, c.sx, c.sy);
        const double path = DistPointPathQ(c.px, c.py, c.ax, c.ay, c.bx, c.by, c.sx, c.sy);
        EXPECT_TRUE(same({line, path}, {c.line, c.path})) << c.px << ", " << c.py;
    }
}

// The difference of squares would lose what the sine keeps.
TEST(DistPointPathQ, StaysExactWhereTheMagnitudesAreFarApart) {
    const double d = 1e-6, w = 1e3 - 1e-4;
    const std::tuple<const char *, double, double, double, double> cases[] = {
        {"close to A: distance times the sine of 45 degrees", d, d, 1e3, d * d},
        {"behind A", -d, d, 1e3, 2 * d * d},
        {"the segment is a point from there", 1e3, 1e3, 1e-4, w * w + 1e6}};
    for (const auto &[where, px, py, bx, want] : cases)
        EXPECT_DOUBLE_EQ(DistPointPathQ(px, py, 0, 0, bx, 0, 1, 1), want) << where;
}

TEST(VectorAngle2D, IsMeasuredClockwise) {
    const std::tuple<double, double, double, double, double> cases[] = {
        {0, 1, 1, 0, pi / 2},       {1, 0, 3, 0, 0},
        {1, 0, -2, 0, pi},          {1, 0, -1, 1, 5 * pi / 4},
        {1, 0, -1, -1, 3 * pi / 4}, {2, 0, 2, 2, -pi / 4}};
    for (const auto &[x1, y1, x2, y2, want] : cases)
        EXPECT_DOUBLE_EQ(vectorAngle2D(x1, y1, x2, y2), want) << x2 << ", " << y2;
    EXPECT_TRUE(std::isnan(vectorAngle2D(0, 0, 1, 0)));
}

TEST(Turning, IsCounterClockwise) {
    double x = 2, y = 1;
    rotate2D(&x, &y, pi / 2);
    EXPECT_NEAR(x, -1, 1e-15); // cos(pi / 2) is 6e-17
    EXPECT_NEAR(y, 2, 1e-15);
    EXPECT_EQ(Vec2DxMul(2, 1, 5, 3), 1);
}

TEST(Polygon, AreaAndInsideDoNotDependOnClosureNorInsideOnOrientation) {
    // an L: the square 2 x 2 without its upper right quarter; clockwise; both closed
    const double left[] = {0, 0, 2, 0, 2, 1, 1, 1, 1, 2, 0, 2, 0, 0};
    const double right[] = {0, 2, 1, 2, 1, 1, 2, 1, 2, 0, 0, 0, 0, 2};
    for (const auto &[poly, n, area] :
         {std::tuple{left, 6, 3.0}, {left, 7, 3.0}, {right, 6, -3.0}, {right, 7, -3.0}}) {
        EXPECT_EQ(areaOfPoly(poly, n), area);
        EXPECT_EQ(isPointInPoly(poly, n, 0.5, 1.75), 1);
        EXPECT_EQ(isPointInPoly(poly, n, 1.5, 1.5), 0) << "in the notch";
        EXPECT_EQ(isPointInPoly(poly, n, -5, 0.5), 0) << "the angle jumps on the left";
        EXPECT_EQ(isPointInPoly(poly, n, NaN, 0.5), -1);
    }
    // the closing side of a closed polygon has no length, and no products that overflow
    const double huge[] = {1e200, 1e200, 0, 0, 1, 0, 1e200, 1e200};
    EXPECT_EQ(areaOfPoly(huge, 4), 5e199);

    const double twice[] = {0, 0, 1, 0, 1, 1, 0, 1, 0, 0, 1, 0, 1, 1, 0, 1};
    const double clockwise[] = {0, 1, 1, 1, 1, 0, 0, 0};
    EXPECT_EQ(isPointInPoly(twice, 4, 0.5, 0), 0) << "on an edge: a half turn is clockwise";
    EXPECT_EQ(isPointInPoly(clockwise, 4, 0.5, 0), 1) << "on an edge: a half turn is clockwise";
    EXPECT_EQ(isPointInPoly(twice, 8, 0.5, 0.5), -1) << "wound around twice";

    for (int n : {0, 1}) EXPECT_EQ(areaOfPoly(clockwise, n), 0) << n;
    for (int n : {0, 1}) EXPECT_EQ(isPointInPoly(clockwise, n, 0, 2), 0) << n;
}

TEST(PointInTriangle, HasItsEdgesAndCornersInside) {
    const double a[] = {1, 2}, b[] = {5, 2}, c[] = {1, 6}, onAB[] = {9, 2};
    const std::pair<Values, int> cases[] = {{{3, 2}, 1},   {{3, 4}, 1},     {{1, 2}, 1},
                                            {{5, 2}, 1},   {{1, 6}, 1},     {{4, 4}, 0},
                                            {{NaN, 3}, 0}, {{0.999, 3}, 0}, {{2, 1.999}, 0}};
    for (const auto &[p, want] : cases) {
        EXPECT_EQ(pointInTriangle(a, b, c, p.data()), want) << testing::PrintToString(p);
        EXPECT_EQ(pointInTriangle(a, c, b, p.data()), want) << testing::PrintToString(p);
    }
    EXPECT_EQ(pointInTriangle(a, b, onAB, b), 0) << "degenerate";
}
