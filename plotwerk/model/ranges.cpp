#include "plotwerk/model/ranges.h"

#include "plotwerk/base/refusal.h"
#include "plotwerk/model/curves.h"
#include "plotwerk/model/shownPoints.h"
#include "util/number/format.h"

#include <cmath>
#include <span>
#include <string>
#include <utility>

namespace plotwerk {

static bool isDrawnAgainst(const CurveLook &look, AxisCode axis) {
    switch (axis) {
    case xAxis: return !look.upperX;
    case upperXAxis: return look.upperX;
    case yAxis: return !look.rightY;
    default: return look.rightY;
    }
}

static bool isXDirection(AxisCode axis) {
    return axis == xAxis || axis == upperXAxis;
}

static bool isShowable(double value, bool logarithmic) {
    return std::isfinite(value) && !(logarithmic && value <= 0);
}

static void include(double value, bool logarithmic, Range &range) {
    if (!isShowable(value, logarithmic)) return;
    if (!(range.min <= value)) range.min = value;
    if (!(range.max >= value)) range.max = value;
}

// Widens range to the values where there are others, too, and to their bars.
static void include(std::span<const double> values, std::span<const double> others,
                    const BarLengths &bars, bool logarithmic, Range &range) {
    for (std::size_t i = 0; i < values.size(); ++i) {
        if (!isShowable(values[i], logarithmic) || !std::isfinite(others[i])) continue;
        include(values[i], logarithmic, range);
        if (bars.above.empty()) continue;
        if (bars.above[i] > 0) include(values[i] + bars.above[i], logarithmic, range);
        if (bars.below[i] > 0) include(values[i] - bars.below[i], logarithmic, range);
    }
}

// Widens range to those points of a curve, if it is drawn against the axis.
static void include(const Document &document, const PlottedCurve &plotted,
                    decltype(shownPoints) *pointsOf, AxisCode axis, Range &range) {
    const Column &column = columnOf(document, plotted.curve);
    if (!isDrawnAgainst(column.look, axis)) return;
    const ShownPoints points =
        pointsOf(tableOf(document, plotted.curve), column, plotted.xErrors, plotted.yErrors);
    const bool logarithmic = document.axes[axis].logarithmic;
    if (isXDirection(axis))
        include(points.x, points.y, points.xBars, logarithmic, range);
    else
        include(points.y, points.x, points.yBars, logarithmic, range);
}

static Range dataRange(const Document &document, AxisCode axis, decltype(shownPoints) *pointsOf) {
    Range range;
    for (const PlottedCurve &plotted : plottedCurves(document))
        include(document, plotted, pointsOf, axis, range);
    return range;
}

static bool isUnset(double limit) {
    return std::isnan(limit);
}

static void change(Range &range, double min, double max) {
    if (std::isinf(min) || std::isinf(max)) throw Refusal("a range can't be infinite");
    Range changed = range;
    if (isUnset(min) && isUnset(max)) {
        changed = {};
    } else if (!isUnset(min) && !isUnset(max)) {
        changed = {std::fmin(min, max), std::fmax(min, max)};
    } else {
        if (!isUnset(min)) changed.min = min;
        if (!isUnset(max)) changed.max = max;
    }
    if (changed.min >= changed.max)
        throw Refusal(std::string("a range can't go from ") + plw::stringOfDouble(changed.min) +
                      " to " + plw::stringOfDouble2(changed.max));
    range = changed;
}

static Range withData(const Range &range, const Range &data) {
    Range shown = range;
    if (isUnset(range.min) && !(data.min >= range.max)) shown.min = data.min;
    if (isUnset(range.max) && !(data.max <= range.min)) shown.max = data.max;
    return shown;
}

bool hasBothLimits(const Range &range) {
    return !isUnset(range.min) && !isUnset(range.max);
}

bool hasAnyLimit(const Range &range) {
    return !isUnset(range.min) || !isUnset(range.max);
}

Range rangeOf(const Document &document, AxisCode axis) {
    const Range &range = document.axes[axis].range;
    return hasBothLimits(range) ? range : withData(range, dataRange(document, axis, shownPoints));
}

void setRange(Document &document, AxisCode axis, double min, double max) {
    change(document.axes[axis].range, min, max);
}

void rangeOverAll(Document &document) {
    for (Axis &axis : document.axes) axis.range = {};
}

void setLocalRange(Document &document, bool xDirection) {
    const std::vector<CurveRef> selected = requireSelection(document);
    const AxisCode axes[] = {xDirection ? xAxis : yAxis, xDirection ? upperXAxis : rightYAxis};
    Range ranges[2];
    const std::vector<PlottedCurve> plotted = plottedCurves(document);
    std::vector<PlottedCurve> shown;
    shown.reserve(selected.size() + plotted.size());
    for (const CurveRef &curve : selected) shown.push_back({curve});
    for (const PlottedCurve &curve : plotted)
        if (columnOf(document, curve.curve).rank > 0) shown.push_back(curve);
    for (const PlottedCurve &curve : shown)
        for (int i = 0; i < 2; ++i) include(document, curve, shownPoints, axes[i], ranges[i]);
    if (!hasBothLimits(ranges[0]) && !hasBothLimits(ranges[1]))
        throw Refusal("the selected curves have no points");
    for (int i = 0; i < 2; ++i)
        if (hasBothLimits(ranges[i])) document.axes[axes[i]].range = ranges[i];
}

Range fitRangeOf(const Document &document) {
    if (hasBothLimits(document.fitRange)) return document.fitRange;
    const auto fitted = fitCurve(document);
    if (!fitted) return withData(document.fitRange, dataRange(document, xAxis, rowPoints));
    Range data;
    include(tableOf(document, *fitted).x.values, columnOf(document, *fitted).values, {}, false,
            data);
    return withData(document.fitRange, data);
}

void setFitRange(Document &document, double min, double max) {
    change(document.fitRange, min, max);
}

} // namespace plotwerk
