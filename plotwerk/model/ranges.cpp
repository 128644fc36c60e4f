#include "plotwerk/model/ranges.h"

#include "plotwerk/model/curves.h"
#include "plotwerk/refusal.h"
#include "util/number/format.h"

#include <cmath>
#include <string>
#include <utility>

namespace plotwerk {

namespace {

bool isDrawnAgainst(const CurveLook &look, AxisCode axis) {
    switch (axis) {
    case xAxis: return !look.upperX;
    case upperXAxis: return look.upperX;
    case yAxis: return !look.rightY;
    default: return look.rightY;
    }
}

bool isXDirection(AxisCode axis) {
    return axis == xAxis || axis == upperXAxis;
}

// Widens range to the points of a curve, for an axis of x or of y.
void include(const Table &table, const Column &column, bool xDirection, bool logarithmic,
             Range &range) {
    const std::vector<double> &x = table.x.values;
    const std::vector<double> &y = column.values;
    const std::vector<double> &values = xDirection ? x : y;
    const std::vector<double> &others = xDirection ? y : x;
    for (std::size_t i = 0; i < values.size(); ++i) {
        const double value = values[i];
        if (!std::isfinite(value) || std::isnan(others[i]) || (logarithmic && value <= 0)) continue;
        if (!(range.min <= value)) range.min = value;
        if (!(range.max >= value)) range.max = value;
    }
}

Range dataRange(const Document &document, AxisCode axis) {
    Range range;
    for (const Source &source : document.sources)
        for (const Table &table : source.tables)
            for (const Column &column : table.y)
                if (column.look.visible && isDrawnAgainst(column.look, axis))
                    include(table, column, isXDirection(axis), document.axes[axis].logarithmic,
                            range);
    return range;
}

bool isUnset(double limit) {
    return std::isnan(limit);
}

void change(Range &range, double min, double max) {
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

Range withData(const Range &range, const Range &data) {
    return {isUnset(range.min) ? data.min : range.min, isUnset(range.max) ? data.max : range.max};
}

bool isSet(const Range &range) {
    return !isUnset(range.min) && !isUnset(range.max);
}

} // namespace

Range rangeOf(const Document &document, AxisCode axis) {
    const Range &range = document.axes[axis].range;
    return isSet(range) ? range : withData(range, dataRange(document, axis));
}

void setRange(Document &document, AxisCode axis, double min, double max) {
    change(document.axes[axis].range, min, max);
    document.changed = true;
}

void rangeOverAll(Document &document) {
    for (Axis &axis : document.axes) axis.range = {};
    document.changed = true;
}

void setLocalRange(Document &document, bool xDirection) {
    const std::vector<CurveRef> selected = requireSelection(document);
    const AxisCode axes[] = {xDirection ? xAxis : yAxis, xDirection ? upperXAxis : rightYAxis};
    Range ranges[2];
    for (int i = 0; i < 2; ++i)
        for (const CurveRef &curve : selected) {
            const Column &column = columnOf(document, curve);
            if (isDrawnAgainst(column.look, axes[i]))
                include(tableOf(document, curve), column, xDirection,
                        document.axes[axes[i]].logarithmic, ranges[i]);
        }
    if (!isSet(ranges[0]) && !isSet(ranges[1])) throw Refusal("the selected curves have no points");
    for (int i = 0; i < 2; ++i)
        if (isSet(ranges[i])) document.axes[axes[i]].range = ranges[i];
    document.changed = true;
}

Range fitRangeOf(const Document &document) {
    if (isSet(document.fitRange)) return document.fitRange;
    Range data;
    bool hasFitData = false;
    for (const Source &source : document.sources)
        for (const Table &table : source.tables)
            for (const Column &column : table.y)
                if (column.fitData) {
                    hasFitData = true;
                    include(table, column, true, false, data);
                }
    if (!hasFitData) data = dataRange(document, xAxis);
    return withData(document.fitRange, data);
}

void setFitRange(Document &document, double min, double max) {
    change(document.fitRange, min, max);
    document.changed = true;
}

} // namespace plotwerk
