#include "plotwerk/drawing/curveBars.h"

#include "plotwerk/drawing/curveStrokes.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <utility>
#include <vector>

namespace plotwerk {

namespace {

// A straight line along one direction of the paper, at a place in the other.
struct Bar {
    double at = 0;
    double low = 0; // low <= high
    double high = 0;
};

} // namespace

static std::int64_t columnOf(const Bar &bar) {
    return static_cast<std::int64_t>(std::floor(bar.at / pathResolution));
}

static Bar barBetween(double at, double from, double to) {
    return {at, std::min(from, to), std::max(from, to)};
}

// Bars in the same column that overlap become one.
static std::vector<Bar> mergedBars(const std::vector<Bar> &bars) {
    std::vector<std::pair<std::int64_t, const Bar *>> sorted;
    sorted.reserve(bars.size());
    for (const Bar &bar : bars) sorted.emplace_back(columnOf(bar), &bar);
    std::sort(sorted.begin(), sorted.end(), [](const auto &a, const auto &b) {
        return a.first != b.first ? a.first < b.first : a.second->low < b.second->low;
    });
    std::vector<Bar> merged;
    std::int64_t column = 0;
    for (const auto &[barColumn, bar] : sorted) {
        if (!merged.empty() && column == barColumn && bar->low <= merged.back().high)
            merged.back().high = std::max(merged.back().high, bar->high);
        else
            merged.push_back(*bar);
        column = barColumn;
    }
    return merged;
}

static void addBars(Path &path, const std::vector<Bar> &bars, bool upright) {
    for (const Bar &bar : mergedBars(bars)) {
        path.push_back(upright ? Point{bar.at, bar.low} : Point{bar.low, bar.at});
        path.push_back(upright ? Point{bar.at, bar.high} : Point{bar.high, bar.at});
        path.push_back(pathBreak);
    }
}

static void strokeBars(cairo_t *cr, const std::vector<Bar> &upright, const std::vector<Bar> &level,
                       const CurveLook &look, const ScaledFrame &frame) {
    if (look.lineThickness == 0) return;
    Path path;
    addBars(path, upright, true);
    addBars(path, level, false);
    const Box box = frame.box().grownBy(look.lineThickness);
    strokePath(cr, clippedPath(path, box), look, false, box);
}

void drawDropLines(cairo_t *cr, const Path &points, double base, const CurveLook &look,
                   const ScaledFrame &frame) {
    std::vector<Bar> bars;
    for (const Point &p : points)
        if (p.x >= 0 && p.x <= frame.width) bars.push_back(barBetween(p.x, base, p.y));
    strokeBars(cr, bars, {}, look, frame);
}

// Both ends of an error bar as positions on an axis. What reaches below the values of a logarithmic
// axis goes far beyond its lower end.
static void errorEnds(double value, double error, const Scale &scale, double &low, double &high) {
    low = scale.position(value - error);
    high = scale.position(value + error);
    if (std::isnan(low)) low = scale.reversed ? 1e6 : -1e6;
}

void drawErrorBars(cairo_t *cr, const DrawnCurve &curve, const ScaledFrame &frame) {
    const CurveLook &look = curve.column->look;
    const Column *yError = curve.yErrors;
    const Column *xError = curve.xErrors;
    if (!yError && !xError) return;

    const double halfCap = std::max(look.symbolSize, 3.0) / 2;
    const Scale &horizontal = frame.scales[curve.horizontalAxis()];
    const Scale &vertical = frame.scales[curve.verticalAxis()];
    const std::vector<double> &x = curve.table->x.values;
    const std::vector<double> &y = curve.column->values;
    const Box near = frame.box().grownBy(halfCap);
    std::vector<Bar> upright;
    std::vector<Bar> level;
    double low = 0;
    double high = 0;
    for (std::size_t i = 0; i < std::min(x.size(), y.size()); ++i) {
        const Point at{horizontal.position(x[i]), frame.height - vertical.position(y[i])};
        if (isBreak(at)) continue;
        if (yError && yError->values[i] > 0 && at.x >= near.left && at.x <= near.right) {
            errorEnds(y[i], yError->values[i], vertical, low, high);
            upright.push_back(barBetween(at.x, frame.height - low, frame.height - high));
            for (const double end : {frame.height - low, frame.height - high})
                level.push_back({end, at.x - halfCap, at.x + halfCap});
        }
        if (xError && xError->values[i] > 0 && at.y >= near.top && at.y <= near.bottom) {
            errorEnds(x[i], xError->values[i], horizontal, low, high);
            level.push_back(barBetween(at.y, low, high));
            for (const double end : {low, high})
                upright.push_back({end, at.y - halfCap, at.y + halfCap});
        }
    }
    strokeBars(cr, upright, level, look, frame);
}

} // namespace plotwerk
