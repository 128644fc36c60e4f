#include "plotwerk/drawing/curveBars.h"

#include "plotwerk/drawing/curveStrokes.h"
#include "plotwerk/drawing/symbols.h"
#include "plotwerk/model/shownPoints.h"

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

namespace {

// The bars of all points in one direction, and the caps at their ends, across it.
class ErrorBars {
  public:
    ErrorBars(const Scale &along_, double halfCap_) : along(along_), halfCap(halfCap_) {}

    // Of a value at that place across the axis; `from` is where its axis begins on paper.
    void add(double value, double above, double below, double at, double from, double direction) {
        if (!(above > 0) && !(below > 0)) return;
        const auto place = [&](double end) {
            const double position = along.position(end);
            // what reaches below the values of a logarithmic axis goes far beyond its lower end
            return from +
                   direction * (std::isnan(position) ? (along.reversed ? 1e6 : -1e6) : position);
        };
        const double middle = place(value);
        double ends[] = {middle, middle};
        if (above > 0) caps.push_back({ends[0] = place(value + above), at - halfCap, at + halfCap});
        if (below > 0) caps.push_back({ends[1] = place(value - below), at - halfCap, at + halfCap});
        bars.push_back(barBetween(at, ends[0], ends[1]));
    }

    std::vector<Bar> bars;
    std::vector<Bar> caps;

  private:
    const Scale &along;
    double halfCap;
};

} // namespace

// As wide as the curve's symbols, so that the caps don't hide them.
static double halfCapOf(const CurveLook &look) {
    static constexpr double halfCapAlone = 2; // in points
    if (!look.symbols) return halfCapAlone;
    double half = halfWidthOfSymbol(look.symbol[0], look.symbolSize);
    for (std::size_t i = 1; i < look.symbol.size(); ++i)
        if (look.symbol[i] > 0)
            half = std::max(half, halfWidthOfSymbol(look.symbol[i], look.symbolSize));
    return half;
}

void drawErrorBars(cairo_t *cr, const DrawnCurve &curve, const ScaledFrame &frame) {
    if (!curve.xErrors && !curve.yErrors) return;
    const CurveLook &look = curve.column->look;
    const ShownPoints points =
        shownPoints(*curve.table, *curve.column, curve.xErrors, curve.yErrors);
    const double halfCap = halfCapOf(look);
    const Scale &horizontal = frame.scales[curve.horizontalAxis()];
    const Scale &vertical = frame.scales[curve.verticalAxis()];
    const Box near = frame.box().grownBy(halfCap);
    ErrorBars ofX(horizontal, halfCap);
    ErrorBars ofY(vertical, halfCap);
    for (std::size_t i = 0; i < points.y.size(); ++i) {
        const double x = points.x[i];
        const double y = points.y[i];
        const Point at{horizontal.position(x), frame.height - vertical.position(y)};
        if (isBreak(at)) continue;
        if (curve.yErrors && at.x >= near.left && at.x <= near.right)
            ofY.add(y, points.yBars.above[i], points.yBars.below[i], at.x, frame.height, -1);
        if (curve.xErrors && at.y >= near.top && at.y <= near.bottom)
            ofX.add(x, points.xBars.above[i], points.xBars.below[i], at.y, 0, 1);
    }
    ofY.bars.insert(ofY.bars.end(), ofX.caps.begin(), ofX.caps.end());
    ofX.bars.insert(ofX.bars.end(), ofY.caps.begin(), ofY.caps.end());
    strokeBars(cr, ofY.bars, ofX.bars, look, frame);
}

} // namespace plotwerk
