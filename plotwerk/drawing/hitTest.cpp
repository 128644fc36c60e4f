#include "plotwerk/drawing/hitTest.h"

#include "plotwerk/base/bounds.h"
#include "plotwerk/drawing/curvePoints.h"
#include "plotwerk/drawing/fittedCurve.h"
#include "plotwerk/drawing/scaledFrame.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <vector>

namespace plotwerk {

static constexpr double infinity = std::numeric_limits<double>::infinity();
static constexpr double sameDistance = 1e-6; // in points: no more than rounding may part them

static double squaredDistance(const Point &a, const Point &b) {
    return (a.x - b.x) * (a.x - b.x) + (a.y - b.y) * (a.y - b.y);
}

// From the straight line between a and b, whose ends may lie as far off as paper goes: measured
// from the nearer end, where no digits are lost.
static double squaredDistance(const Point &p, const Point &a, const Point &b) {
    const Point line{b.x - a.x, b.y - a.y};
    const Point fromA{p.x - a.x, p.y - a.y};
    const Point fromB{p.x - b.x, p.y - b.y};
    const double toA = squaredDistance(p, a);
    const double toB = squaredDistance(p, b);
    if (fromA.x * line.x + fromA.y * line.y <= 0) return toA;
    if (fromB.x * line.x + fromB.y * line.y >= 0) return toB;
    const Point &way = toA < toB ? fromA : fromB;
    const double across = way.x * line.y - way.y * line.x;
    return across * across / squaredDistance(a, b);
}

// From the nearest of its points or, where they are joined, of the lines between them. Infinite for
// an empty path.
static double squaredDistance(const Point &p, const Path &path, bool joined) {
    double nearest = infinity;
    for (std::size_t i = 0; i < path.size(); ++i) {
        if (isBreak(path[i])) continue;
        const bool joins = joined && i > 0 && !isBreak(path[i - 1]);
        nearest = std::min(nearest, joins ? squaredDistance(p, path[i - 1], path[i])
                                          : squaredDistance(p, path[i]));
    }
    return nearest;
}

// From what is drawn of the curve with these rows.
static double distanceFrom(const Point &p, const DrawnCurve &curve, const Path &rows,
                           const ScaledFrame &frame, const Document &document) {
    const CurveLook &look = curve.column->look;
    const Path means = look.sum > 1 ? pointsOnPaper(curve, frame) : Path();
    const Path &points = look.sum > 1 ? means : rows;
    if (!look.line) return std::sqrt(squaredDistance(p, points, false));
    const auto fitted = FittedCurve::of(document, curve);
    Path path = fitted ? fitted->line(curve, frame) : linePath(points, curve, frame);
    if (document.frame.noLineOnReverse)
        path = brokenOnReverse(path, frame.scales[curve.horizontalAxis()].reversed);
    return std::sqrt(squaredDistance(p, path, true));
}

namespace {

struct Hit {
    double fromCurve = infinity; // in points
    double fromPoint = infinity; // squared
    NearestPoint point;
};

} // namespace

static bool isNearer(const Hit &a, const Hit &b) {
    if (std::abs(a.fromCurve - b.fromCurve) > sameDistance) return a.fromCurve < b.fromCurve;
    if (a.fromPoint != b.fromPoint) return a.fromPoint < b.fromPoint;
    return a.point.curve < b.point.curve; // curves come by layers
}

// -1 and infinity where no row has a place on paper.
static int nearestRow(const Point &p, const Path &rows, double &squared) {
    int nearest = -1;
    squared = infinity;
    for (std::size_t i = 0; i < rows.size(); ++i) {
        const double distance = squaredDistance(p, rows[i]);
        if (!(distance < squared)) continue; // also at breaks
        squared = distance;
        nearest = static_cast<int>(i);
    }
    return nearest;
}

static void requireBounded(const std::vector<DrawnCurve> &curves, const ScaledFrame &frame) {
    double time = 0;
    double largest = 0;
    for (const DrawnCurve &curve : curves) {
        const double points = pointsOfLine(curve, frame);
        time += 60 * points;
        largest = std::max(largest, 6 * sizeof(Point) * points);
    }
    requireTime(time);
    requireMemory(largest);
}

std::optional<NearestPoint> nearestPoint(const Document &document, double x, double y) {
    const std::vector<DrawnCurve> curves = drawnCurvesOf(document);
    const ScaledFrame frame = scaledFrameOf(document, curves);
    requireBounded(curves, frame);
    const Point place = frame.at(x, y);
    if (!std::isfinite(x) || !std::isfinite(y) || isBreak(place)) return std::nullopt;

    Hit nearest;
    for (const DrawnCurve &curve : curves) {
        const Path rows = rowsOnPaper(curve, frame);
        Hit hit{distanceFrom(place, curve, rows, frame, document), infinity, {}};
        if (std::isinf(hit.fromCurve) || hit.fromCurve > nearest.fromCurve + sameDistance) continue;
        const int row = nearestRow(place, rows, hit.fromPoint);
        if (row < 0) continue; // means on paper of rows that are not
        hit.point = {curve.index, row, curve.table->x.values[row], curve.column->values[row],
                     hit.fromCurve};
        if (isNearer(hit, nearest)) nearest = hit;
    }
    if (nearest.point.index < 0) return std::nullopt;
    return nearest.point;
}

} // namespace plotwerk
