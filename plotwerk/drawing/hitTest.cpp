#include "plotwerk/drawing/hitTest.h"

#include "plotwerk/base/bounds.h"
#include "plotwerk/drawing/curvePoints.h"
#include "plotwerk/drawing/fittedCurve.h"
#include "plotwerk/drawing/scaledFrame.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>
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

// From what is drawn of a curve through those of its points on paper.
static double squaredDistance(const Point &p, Path points, const DrawnCurve &curve,
                              const ScaledFrame &frame, const Frame &settings) {
    if (!curve.column->look.line) return squaredDistance(p, points, false);
    Path path = linePath(std::move(points), curve, frame);
    if (settings.noLineOnReverse)
        path = brokenOnReverse(path, frame.scales[curve.horizontalAxis()].reversed);
    return squaredDistance(p, path, true);
}

namespace {

// The rows of a curve in slices, each with the row that follows it, and how near to a place it may
// come: those too far away needn't be looked at.
class Slices {
  public:
    Slices(const DrawnCurve &sliced, const ScaledFrame &on, const Point &place)
        : curve(sliced), frame(on), count(curve.column->values.size()) {
        nearest.reserve(count / size + 1);
        for (std::size_t begin = 0; begin < count; begin += size)
            nearest.push_back(leastDistance(place, begin, endOf(begin)));
    }

    // The least that distanceOf(begin, path) gives of the slices on paper, from one that may come
    // nearest, to all others in their order that may come as near.
    template<class Work> double least(Work distanceOf) const {
        if (nearest.empty()) return infinity;
        const auto best = std::min_element(nearest.begin(), nearest.end()) - nearest.begin();
        const auto distance = [&](std::size_t slice) {
            const std::size_t begin = slice * size;
            return distanceOf(begin, rowsOnPaper(curve, frame, begin, endOf(begin)));
        };
        double least = distance(static_cast<std::size_t>(best));
        for (std::size_t slice = 0; slice < nearest.size(); ++slice)
            if (nearest[slice] <= least * rounding) least = std::min(least, distance(slice));
        return least;
    }

  private:
    static constexpr std::size_t size = 256;
    static constexpr double rounding = 1 + 1e-9;

    struct Limits {
        double low = infinity;
        double high = -infinity;

        void include(double value) { // NaN is left out
            low = value < low ? value : low;
            high = value > high ? value : high;
        }
    };

    std::size_t endOf(std::size_t begin) const { return std::min(begin + size + 1, count); }

    // Of a position from those of values between the limits; infinite where none has one.
    static double distance(double position, const Limits &limits, const Scale &scale) {
        const double high = scale.position(limits.high);
        if (!(limits.low <= limits.high) || std::isnan(high)) return infinity;
        const double low = scale.position(limits.low); // NaN: of some only
        if (scale.reversed)
            return std::max({0.0, high - position, std::isnan(low) ? 0 : position - low});
        return std::max({0.0, position - high, std::isnan(low) ? 0 : low - position});
    }

    double leastDistance(const Point &place, std::size_t begin, std::size_t end) const {
        const std::vector<double> &xValues = curve.table->x.values;
        const std::vector<double> &yValues = curve.column->values;
        Limits x;
        Limits y;
        for (std::size_t i = begin; i < end; ++i) {
            x.include(xValues[i]);
            y.include(yValues[i]);
        }
        const double across = distance(place.x, x, frame.scales[curve.horizontalAxis()]);
        const double along =
            distance(frame.height - place.y, y, frame.scales[curve.verticalAxis()]);
        return across * across + along * along;
    }

    const DrawnCurve &curve;
    const ScaledFrame &frame;
    std::size_t count;
    std::vector<double> nearest; // squared, for each slice
};

} // namespace

// From all that is drawn of the curve.
static double distanceFrom(const Point &p, const DrawnCurve &curve, const Slices &slices,
                           const ScaledFrame &frame, const Document &document) {
    const CurveLook &look = curve.column->look;
    const auto fitted = look.line ? FittedCurve::of(document, curve) : std::nullopt;
    if (fitted) return std::sqrt(squaredDistance(p, fitted->line(curve, frame), true));
    const auto distance = [&](Path points) {
        return squaredDistance(p, std::move(points), curve, frame, document.frame);
    };
    const bool isWhole = look.sum > 1 || (look.line && hasPointsBetween(curve, frame));
    return std::sqrt(
        isWhole ? distance(pointsOnPaper(curve, frame))
                : slices.least([&](std::size_t, Path rows) { return distance(std::move(rows)); }));
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

// -1 and infinity where no row has a place on paper; of several as near, the first.
static int nearestRow(const Point &p, const Slices &slices, double &squared) {
    int nearest = -1;
    squared = infinity;
    slices.least([&](std::size_t begin, const Path &rows) {
        for (std::size_t i = 0; i < rows.size(); ++i) {
            const double distance = squaredDistance(p, rows[i]); // NaN at breaks
            const int row = static_cast<int>(begin + i);
            if (!(distance < squared || (distance == squared && row < nearest))) continue;
            squared = distance;
            nearest = row;
        }
        return squared;
    });
    return nearest;
}

static void requireBounded(const std::vector<DrawnCurve> &curves, const ScaledFrame &frame) {
    double time = 0;
    double largest = 0;
    for (const DrawnCurve &curve : curves) {
        const double points = pointsOfLine(curve, frame);
        time += 130 * points;
        largest = std::max(largest, 6 * sizeof(Point) * points);
    }
    requireTime(time);
    requireMemory(largest);
}

std::optional<NearestPoint> nearestPoint(const Document &document, double x, double y) {
    const ScaledFrame frame = scaledFrameOf(document, drawnCurvesOf(document));
    if (!std::isfinite(x) || !std::isfinite(y)) return std::nullopt;
    return nearestPoint(document, frame, frame.at(x, y));
}

std::optional<NearestPoint> nearestPoint(const Document &document, const ScaledFrame &frame,
                                         const Point &place) {
    const std::vector<DrawnCurve> curves = drawnCurvesOf(document);
    requireBounded(curves, frame);
    if (isBreak(place)) return std::nullopt;

    Hit nearest;
    for (const DrawnCurve &curve : curves) {
        const Slices slices(curve, frame, place);
        Hit hit{distanceFrom(place, curve, slices, frame, document), infinity, {}};
        if (std::isinf(hit.fromCurve) || hit.fromCurve > nearest.fromCurve + sameDistance) continue;
        const int row = nearestRow(place, slices, hit.fromPoint);
        if (row < 0) continue; // means on paper of rows that are not
        hit.point = {curve.index, row, curve.table->x.values[row], curve.column->values[row],
                     hit.fromCurve};
        if (isNearer(hit, nearest)) nearest = hit;
    }
    if (nearest.point.index < 0) return std::nullopt;
    return nearest.point;
}

} // namespace plotwerk
