#include "util/geometry/plane.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <numbers>

namespace plw {

using std::numbers::pi;

static double squaredDistance(double x1, double y1, double x2, double y2, double sx, double sy) {
    const double dx = sx * (x2 - x1);
    const double dy = sy * (y2 - y1);
    return dx * dx + dy * dy;
}

// Squared distance of P from its foot on the line; dAB, dPA, dPB as below, q = (projection of
// P - A on B - A) squared.
static double squaredHeight(double dPA, double q) {
    return dPA <= q ? 0.0 : dPA - q;
}

void linInterpol(double x0, double y0, double x1, double y1, double t, double *x, double *y) {
    *x = x0 + (x1 - x0) * t;
    *y = y0 + (y1 - y0) * t;
}

double linInterpolx(double x0, double y0, double x1, double y1, double x) {
    if (std::isnan(y0)) y0 = y1;
    if (std::isnan(y1)) y1 = y0;
    if (x1 == x0) return (y0 + y1) / 2;
    return y0 + (y1 - y0) * ((x - x0) / (x1 - x0));
}

void LineCross(const double *l1, const double *l2, double *t1, double *t2, char *parallel) {
    const double dx1 = l1[2], dy1 = l1[3];
    const double dx2 = l2[2], dy2 = l2[3];
    const double det = dy1 * dx2 - dx1 * dy2;
    *parallel = det == 0;
    if (*parallel) return;

    const double ex = l1[0] - l2[0];
    const double ey = l1[1] - l2[1];
    *t1 = (ex * dy2 - ey * dx2) / det;
    *t2 = (ex * dy1 - ey * dx1) / det;
}

double DistPointLineQ(double px, double py, double ax, double ay, double bx, double by, double sx,
                      double sy) {
    const double dPA = squaredDistance(px, py, ax, ay, sx, sy);
    const double dPB = squaredDistance(px, py, bx, by, sx, sy);
    const double dAB = squaredDistance(ax, ay, bx, by, sx, sy);

    const double h = (dAB + dPA - dPB) / 2;
    return squaredHeight(dPA, h * h / dAB);
}

double DistPointPathQ(double px, double py, double ax, double ay, double bx, double by, double sx,
                      double sy) {
    const double dPA = squaredDistance(px, py, ax, ay, sx, sy);
    const double dPB = squaredDistance(px, py, bx, by, sx, sy);
    const double dAB = squaredDistance(ax, ay, bx, by, sx, sy);
    const double nearest = std::min(dPA, dPB);

    // the segment is a point as seen from P
    if (dAB * 1e12 < dPA && dAB * 1e12 < dPB) return nearest;

    const double big = std::max({dPA, dPB, dAB});
    const double small = std::min({dPA, dPB, dAB});
    if (big <= small * 1e10) {
        const double h = (dAB + dPA - dPB) / 2;
        if (h < 0) return dPA;
        const double q = h * h / dAB;
        if (q > dAB) return dPB;
        return squaredHeight(dPA, q);
    }

    // magnitudes too far apart for the difference of squares
    const double w =
        std::abs(vectorAngle2D(sx * (px - ax), sy * (py - ay), sx * (bx - ax), sy * (by - ay)));
    if (w < pi / 2) {
        const double height = std::sqrt(nearest) * std::sin(w);
        return height * height;
    }
    return nearest;
}

double vectorAngle2D(double x1, double y1, double x2, double y2) {
    const double lengths = std::sqrt(x1 * x1 + y1 * y1) * std::sqrt(x2 * x2 + y2 * y2);
    const double s = std::asin((y1 * x2 - x1 * y2) / lengths);
    return x1 * x2 + y1 * y2 < 0 ? pi - s : s;
}

void rotate2D(double *x, double *y, double angle) {
    const double c = std::cos(angle);
    const double s = std::sin(angle);
    const double x0 = *x;
    const double y0 = *y;
    *x = c * x0 - s * y0;
    *y = s * x0 + c * y0;
}

double Vec2DxMul(double x1, double y1, double x2, double y2) {
    return x1 * y2 - y1 * x2;
}

static bool isClosed(const double *poly, int n) {
    const double *last = poly + std::ptrdiff_t{2} * (n - 1);
    return last[0] == poly[0] && last[1] == poly[1];
}

// The turn from one direction to another, each within -pi .. pi. Half a turn is always clockwise.
static double turn(double from, double to) {
    double d = to - from;
    if (d <= -pi) d += 2 * pi;
    if (d >= pi) d -= 2 * pi;
    return d;
}

int isPointInPoly(const double *poly, int n, double px, double py) {
    if (n < 1) return 0;

    const double first = std::atan2(poly[1] - py, poly[0] - px);
    double previous = first;
    double sum = 0;
    for (int i = 1; i < n; ++i) {
        const double angle =
            std::atan2(poly[std::ptrdiff_t{2} * i + 1] - py, poly[std::ptrdiff_t{2} * i] - px);
        sum += turn(previous, angle);
        previous = angle;
    }
    if (!isClosed(poly, n)) sum += turn(previous, first);

    if (std::abs(sum) < 0.5) return 0;
    if (std::abs(std::abs(sum) - 2 * pi) < 0.5) return 1;
    return -1;
}

int pointInTriangle(const double *a, const double *b, const double *c, const double *p) {
    const double ux = b[0] - a[0], uy = b[1] - a[1];
    const double vx = c[0] - a[0], vy = c[1] - a[1];
    const double wx = p[0] - a[0], wy = p[1] - a[1];

    const double det = ux * vy - uy * vx;
    const double s = (vy * wx - vx * wy) / det;
    const double t = (ux * wy - uy * wx) / det;
    return s >= 0 && t >= 0 && s + t <= 1;
}

double areaOfPoly(const double *poly, int n) {
    if (n < 1) return 0;

    double sum = 0;
    for (int i = 0; i < n - 1; ++i) {
        const double *v = poly + std::ptrdiff_t{2} * i;
        sum += v[0] * v[3] - v[2] * v[1];
    }
    if (!isClosed(poly, n)) {
        const double *last = poly + std::ptrdiff_t{2} * (n - 1);
        sum += last[0] * poly[1] - poly[0] * last[1];
    }
    return sum / 2;
}

} // namespace plw
