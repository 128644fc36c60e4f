#include "plotwerk/drawing/hitTest.h"

#include "plotwerk/drawing/curvePoints.h"
#include "plotwerk/drawing/scaledFrame.h"

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
    for (size_t i = 0; i < path.size(); ++i) {
        if (isBreak(path[i])) continue;
        const bool joins = joined && i > 0 && !isBreak(path[i - 1]);
        nearest = std::min(nearest, joins ? squaredDistance(p, path[i - 1], path[i])
                                          : squaredDistance(p, path[i]));
    }
    return nearest;
}

static Path drawnPath(const DrawnCurve &curve, const ScaledFrame &frame, const Frame &settings) {
    if (!curve.column->look.line) return pointsOnPaper(curve, frame);
    Path path = linePath(curve, frame);
    return settings.noLineOnReverse
               ? brokenOnReverse(path, frame.scales[curve.horizontalAxis()].reversed)
               : path;
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

// The curve's point that is nearest; infinitely far without one that has a place on paper.
static Hit hitOn(const DrawnCurve &curve, double fromCurve, const Point &p,
                 const ScaledFrame &frame) {
    const std::vector<double> &x = curve.table->x.values;
    const std::vector<double> &y = curve.column->values;
    Hit hit{fromCurve, infinity, {}};
    for (size_t i = 0; i < x.size(); ++i) {
        if (!std::isfinite(x[i]) || !std::isfinite(y[i])) continue;
        const Point at = frame.at(x[i], y[i], curve.horizontalAxis(), curve.verticalAxis());
        const double distance = squaredDistance(p, at);
        if (!(distance < hit.fromPoint)) continue;
        hit.fromPoint = distance;
        hit.point = {curve.index, static_cast<int>(i), x[i], y[i]};
    }
    return hit;
}

std::optional<NearestPoint> nearestPoint(const Document &document, double x, double y) {
    const std::vector<DrawnCurve> curves = drawnCurvesOf(document);
    const ScaledFrame frame = scaledFrameOf(document, curves);
    const Point place = frame.at(x, y);
    if (!std::isfinite(x) || !std::isfinite(y) || isBreak(place)) return std::nullopt;

    Hit nearest;
    for (const DrawnCurve &curve : curves) {
        const Path path = drawnPath(curve, frame, document.frame);
        const double distance = std::sqrt(squaredDistance(place, path, curve.column->look.line));
        if (std::isinf(distance) || distance > nearest.fromCurve + sameDistance) continue;
        const Hit hit = hitOn(curve, distance, place, frame);
        if (hit.point.index >= 0 && isNearer(hit, nearest)) nearest = hit;
    }
    if (nearest.point.index < 0) return std::nullopt;
    return nearest.point;
}

} // namespace plotwerk
