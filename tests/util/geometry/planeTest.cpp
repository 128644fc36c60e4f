#include "util/geometry/plane.h"

#include "tests/support/expect.h"

#include <numbers>
#include <tuple>

using namespace plw;
using std::numbers::pi;

TEST(LinInterpol, GoesAlongTheLineAndBeyondItsEnds) {
    for (double t : {-1.0, 0.0, 0.25, 1.0, 2.0}) {
        double x = NaN, y = NaN;
        linInterpol(1, 10, 3, 6, t, &x, &y);
        EXPECT_EQ(x, 1 + 2 * t);
        EXPECT_EQ(y, 10 - 4 * t);
    }
}

TEST(LinInterpolx, ReplacesOneGapAndAveragesAVerticalLine) {
    const struct {
        double x0, y0, x1, y1, x, want;
    } cases[] = {{1, 2, 3, 6, 2, 4},      {1, 2, 3, 6, 5, 10}, {1, NaN, 3, 6, 2, 6},
                 {1, 2, 3, NaN, 9, 2},    {1, 2, 1, 4, 7, 3},  {1, 2, 1, NaN, 7, 2},
                 {1, NaN, 3, NaN, 2, NaN}};
    for (const auto &c : cases)
        EXPECT_TRUE(same(linInterpolx(c.x0, c.y0, c.x1, c.y1, c.x), c.want)) << c.x;
}

TEST(LineCross, FindsTheCrossingOrLeavesParallelLines) {
    const double l1[] = {0, 1, 2, 0}, l2[] = {4, 0, 0, -0.5}, l3[] = {5, 5, -1, 0};
    double t1 = 7, t2 = 8;
    char parallel = 1;
    LineCross(l1, l2, &t1, &t2, &parallel);
    EXPECT_EQ(parallel, 0);
    EXPECT_EQ(t1, 2);
    EXPECT_EQ(t2, -2);

    LineCross(l1, l3, &t1, &t2, &parallel);
    EXPECT_EQ(parallel, 1);
    EXPECT_EQ(t1, 2);
    EXPECT_EQ(t2, -2);
}

TEST(DistPoint, IsTheSquaredScaledDistanceOfLineAndSegment) {
    // beyond the end, before the start, beside, beside the line only, scaled, on the line, at an
    // end, far beside, on the line but for rounding, no segment, three times the same point, gaps
    const struct {
        double px, py, ax, ay, bx, by, sx, sy, line, path;
    } cases[] = {{2, 0, 0, 0, 1, 0, 1, 1, 0, 1},           {-3, 4, 0, 0, 1, 0, 1, 1, 16, 25},
                 {0.5, 1, 0, 0, 1, 0, 1, 1, 1, 1},         {2, 1, 0, 0, 1, 0, 1, 1, 1, 2},
                 {1, 3, 0, 0, 2, 0, 10, 2, 36, 36},        {1, 1, 0, 0, 4, 4, 1, 1, 0, 0},
                 {0, 0, 0, 0, 1, 0, 1, 1, 0, 0},           {0.5, 100, 0, 0, 1, 0, 1, 1, 1e4, 1e4},
                 {0.1, 0.01, 0, 0, 1.2, 0.12, 1, 1, 0, 0}, {3, 4, 0, 0, 0, 0, 1, 1, NaN, 25},
                 {1, 1, 1, 1, 1, 1, 1, 1, NaN, NaN},       {NaN, 0, 0, 0, 1, 0, 1, 1, NaN, NaN},
                 {0, 0, NaN, 0, 1, 0, 1, 1, NaN, NaN},     {0, 1, 0, 0, 1, NaN, 1, 1, NaN, NaN}};
    for (const auto &c : cases) {
        const double line = DistPointLineQ(c.px, c.py, c.ax, c.ay, c.bx, c.by, c.sx, c.sy);
        const double path = DistPointPathQ(c.px, c.py, c.ax, c.ay, c.bx, c.by, c.sx, c.sy);
        EXPECT_TRUE(same({line, path}, {c.line, c.path})) << c.px << ", " << c.py;
    }
}

// The difference of squares would lose what the sine keeps.
TEST(DistPointPathQ, StaysExactWhereTheMagnitudesAreFarApart) {
    const double near = 1e-6;
    EXPECT_DOUBLE_EQ(DistPointPathQ(near, near, 0, 0, 1e3, 0, 1, 1), near * near)
        << "close to A: nearest distance times the sine of 45 degrees, squared";
    EXPECT_DOUBLE_EQ(DistPointPathQ(-near, near, 0, 0, 1e3, 0, 1, 1), 2 * near * near)
        << "behind A: the distance from A";
    EXPECT_DOUBLE_EQ(DistPointPathQ(1e3, 1e3, 0, 0, 1e-4, 0, 1, 1),
                     (1e3 - 1e-4) * (1e3 - 1e-4) + 1e6)
        << "a segment that is a point from there";
}

TEST(VectorAngle2D, IsMeasuredClockwise) {
    const struct {
        double x1, y1, x2, y2, want;
    } cases[] = {{1, 0, 0, 1, -pi / 2}, {0, 1, 1, 0, pi / 2},      {1, 0, 3, 0, 0},
                 {1, 0, -2, 0, pi},     {1, 0, -1, 1, 5 * pi / 4}, {1, 0, -1, -1, 3 * pi / 4},
                 {2, 0, 2, 2, -pi / 4}};
    for (const auto &c : cases)
        EXPECT_DOUBLE_EQ(vectorAngle2D(c.x1, c.y1, c.x2, c.y2), c.want) << c.x2 << ", " << c.y2;
    EXPECT_TRUE(std::isnan(vectorAngle2D(0, 0, 1, 0)));
}

TEST(Turning, IsCounterClockwise) {
    double x = 2, y = 1;
    rotate2D(&x, &y, pi / 2);
    EXPECT_NEAR(x, -1, 1e-15); // cos(pi / 2) is 6e-17
    EXPECT_NEAR(y, 2, 1e-15);
    EXPECT_EQ(Vec2DxMul(2, 0, 5, 3), 6);
    EXPECT_EQ(Vec2DxMul(5, 3, 2, 0), -6);
}

TEST(Polygon, AreaAndInsideDoNotDependOnClosureNorInsideOnOrientation) {
    // an L: the square 2 x 2 without its upper right quarter; clockwise; both closed
    const double left[] = {0, 0, 2, 0, 2, 1, 1, 1, 1, 2, 0, 2, 0, 0};
    const double right[] = {0, 2, 1, 2, 1, 1, 2, 1, 2, 0, 0, 0, 0, 2};
    for (const auto &[poly, n, area] :
         {std::tuple{left, 6, 3.0}, {left, 7, 3.0}, {right, 6, -3.0}, {right, 7, -3.0}}) {
        EXPECT_EQ(areaOfPoly(poly, n), area);
        EXPECT_EQ(isPointInPoly(poly, n, 0.5, 0.5), 1);
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

    for (int n : {0, 1}) {
        EXPECT_EQ(areaOfPoly(clockwise, n), 0) << n;
        EXPECT_EQ(isPointInPoly(clockwise, n, 0, 2), 0) << n;
    }
}

TEST(PointInTriangle, HasItsEdgesAndCornersInside) {
    const double a[] = {0, 0}, b[] = {4, 0}, c[] = {0, 4}, onAB[] = {8, 0};
    const struct {
        double p[2];
        int want;
    } cases[] = {{{1, 1}, 1},      {{2, 0}, 1}, {{2, 2}, 1},  {{0, 0}, 1},
                 {{4, 0}, 1},      {{0, 4}, 1}, {{3, 2}, 0},  {{-0.001, 1}, 0},
                 {{1, -0.001}, 0}, {{5, 0}, 0}, {{NaN, 1}, 0}};
    for (const auto &t : cases) {
        EXPECT_EQ(pointInTriangle(a, b, c, t.p), t.want) << t.p[0] << ", " << t.p[1];
        EXPECT_EQ(pointInTriangle(a, c, b, t.p), t.want) << t.p[0] << ", " << t.p[1];
    }
    EXPECT_EQ(pointInTriangle(a, b, onAB, b), 0) << "degenerate";
}
