#include "plotwerk/model/points.h"

#include "plotwerk/base/refusal.h"
#include "plotwerk/model/curves.h"
#include "plotwerk/model/ranges.h"
#include "plotwerk/model/sampledFunction.h"
#include "util/geometry/plane.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <string>
#include <utility>

namespace plotwerk {

namespace {

// The next row from i on, in steps of step, that has an x; there is one.
int rowWithX(const std::vector<double> &x, int i, int step) {
    while (std::isnan(x[i])) i += step;
    return i;
}

double valueBetween(const Table &table, const Column &column, int a, int b, double x) {
    if (table.x.values[a] > table.x.values[b]) std::swap(a, b);
    const double xs[] = {table.x.values[a], table.x.values[b]};
    const double ys[] = {column.values[a], column.values[b]};
    int hint = 0;
    return interpolated(xs, ys, x, hint);
}

double valueAcrossGaps(const Table &table, const Column &column, double x) {
    const XOrder &order = table.xOrder;
    const std::vector<double> &xs = table.x.values;
    if (x < xs[order.first] || x > xs[order.last]) return 0.0;
    if (order.first == order.last) return column.values[order.first];
    int row = searched(xs, column.values, x, table.xOrder.found);
    if (row == order.last) row = rowWithX(xs, row - 1, -1);
    return valueBetween(table, column, row, rowWithX(xs, row + 1, 1), x);
}

double valueInDataOrder(const Table &table, const Column &column, double x) {
    const std::vector<double> &xs = table.x.values;
    int previous = table.xOrder.first;
    for (int row = previous + 1; row <= table.xOrder.last; ++row) {
        if (std::isnan(xs[row])) continue;
        if ((xs[previous] <= x && x <= xs[row]) || (xs[row] <= x && x <= xs[previous]))
            return valueBetween(table, column, previous, row, x);
        previous = row;
    }
    return 0.0;
}

Column &columnWithPoint(Document &document, int index, int series) {
    Column &column = columnOf(document, curveOfSeries(document, series));
    if (index < 0 || index >= std::ssize(column.values))
        throw Refusal("no point " + std::to_string(index) + " in \"" + column.name + "\"");
    return column;
}

// An axis on paper: a value lies (along(value) - start) * scale cm from the left or lower end. The
// scale is negative where the axis is reversed.
struct PaperAxis {
    bool logarithmic = false;
    double start = 0;
    double scale = 1;

    double along(double value) const {
        if (!logarithmic) return value;
        return value > 0 ? std::log10(value) : unset;
    }
};

PaperAxis paperAxis(const Document &document, AxisCode code) {
    PaperAxis axis;
    axis.logarithmic = document.axes[code].logarithmic;
    const Range range = rangeOf(document, code);
    axis.start = axis.along(range.min);
    double span = axis.along(range.max) - axis.start;
    if (document.axes[code].reversed) {
        axis.start += span;
        span = -span;
    }
    const double length = code == xAxis || code == upperXAxis ? document.frame.xAxisLength
                                                              : document.frame.yAxisLength;
    axis.scale = std::abs(span) > 0 ? length / span : length;
    return axis;
}

// The place on `to` that lies over the value of `from`.
double carriedOver(double value, const PaperAxis &from, const PaperAxis &to) {
    const double along = from.along(value);
    if (std::isnan(from.start)) return along; // no data there: the axis shows nothing else
    return to.start + (along - from.start) * from.scale / to.scale;
}

struct CurveDistance {
    double curve = std::numeric_limits<double>::infinity(); // squared, of the drawn curve
    double point = std::numeric_limits<double>::infinity(); // squared, of the nearest point
    int index = -1;
};

// px and py lie along the axes.
CurveDistance distanceOf(const Table &table, const Column &column, const PaperAxis &xs,
                         const PaperAxis &ys, double px, double py) {
    CurveDistance nearest;
    double previousX = unset;
    double previousY = unset;
    for (int i = 0; i < rowsOf(table); ++i) {
        const double x = xs.along(table.x.values[i]);
        const double y = ys.along(column.values[i]);
        if (!std::isfinite(x) || !std::isfinite(y)) {
            previousX = unset;
            continue;
        }
        const double dx = (x - px) * xs.scale;
        const double dy = (y - py) * ys.scale;
        const double point = dx * dx + dy * dy;
        if (point < nearest.point) {
            nearest.point = point;
            nearest.index = i;
            nearest.curve = std::min(nearest.curve, point);
        }
        if (column.look.line && !std::isnan(previousX))
            nearest.curve =
                std::min(nearest.curve, plw::DistPointPathQ(px, py, previousX, previousY, x, y,
                                                            xs.scale, ys.scale));
        previousX = x;
        previousY = y;
    }
    return nearest;
}

} // namespace

double valueAtX(const Document &document, double x, int series) {
    const CurveRef curve = curveOfSeries(document, series);
    const Table &table = tableOf(document, curve);
    const Column &column = columnOf(document, curve);
    const XOrder &order = orderOfX(table);
    if (std::isnan(x)) return unset;
    if (order.first < 0) return 0.0;
    if (!order.ascending) return valueInDataOrder(table, column, x);
    if (order.gaps) return valueAcrossGaps(table, column, x);

    return interpolated(table.x.values, column.values, x, table.xOrder.found);
}

double valueAtIndex(const Document &document, int index, int series) {
    return columnWithPoint(const_cast<Document &>(document), index, series).values[index];
}

void setValueAtIndex(Document &document, int index, int series, double value) {
    columnWithPoint(document, index, series).values[index] = value;
    document.changed = true;
}

int indexAtX(const Document &document, double x, int series) {
    const CurveRef curve = curveOfSeries(document, series);
    const Table &table = tableOf(document, curve);
    const std::vector<double> &xs = table.x.values;
    const XOrder &order = orderOfX(table);
    int found = -1;
    if (order.first < 0 || std::isnan(x)) return found;
    if (!order.ascending) {
        for (int row = order.first; row <= order.last; ++row)
            if (xs[row] <= x && (found < 0 || xs[row] >= xs[found])) found = row;
        return found;
    }
    if (x < xs[order.first]) return found;
    if (order.first == order.last) return order.first;

    // of equal x the search may end at any
    found = searched(xs, columnOf(document, curve).values, x, table.xOrder.found);
    for (int row = found + 1; row <= order.last && !(xs[row] > x); ++row)
        if (xs[row] <= x) found = row;
    return found;
}

std::optional<NearestPoint> nearestPoint(const Document &document, double x, double y) {
    std::array<PaperAxis, axisCount> axes;
    for (int code = 0; code < axisCount; ++code)
        axes[code] = paperAxis(document, static_cast<AxisCode>(code));

    std::optional<NearestPoint> nearest;
    double shortest = std::numeric_limits<double>::infinity();
    for (const PlottedCurve &plotted : plottedCurves(document)) {
        const CurveRef &curve = plotted.curve;
        const Table &table = tableOf(document, curve);
        const Column &column = columnOf(document, curve);
        const PaperAxis &xs = axes[column.look.upperX ? upperXAxis : xAxis];
        const PaperAxis &ys = axes[column.look.rightY ? rightYAxis : yAxis];
        const double px = column.look.upperX ? carriedOver(x, axes[xAxis], xs) : xs.along(x);
        const double py = column.look.rightY ? carriedOver(y, axes[yAxis], ys) : ys.along(y);
        const CurveDistance distance = distanceOf(table, column, xs, ys, px, py);
        if (distance.index < 0 || !(distance.curve < shortest)) continue;
        shortest = distance.curve;
        nearest = {curve.index, distance.index, table.x.values[distance.index],
                   column.values[distance.index]};
    }
    return nearest;
}

} // namespace plotwerk
