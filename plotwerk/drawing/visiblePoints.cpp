#include "plotwerk/drawing/visiblePoints.h"

#include "plotwerk/drawing/curvePoints.h"
#include "plotwerk/model/curves.h"

#include <algorithm>
#include <cmath>

namespace plotwerk {

namespace {

struct Rows {
    std::size_t begin = 0;
    std::size_t end = 0;
};

} // namespace

// Those within the frame, and one more on either side, to which the line leads.
static Rows rowsWithin(const Table &table, const Scale &scale) {
    const std::vector<double> &x = table.x.values;
    const XOrder &order = orderOfX(table);
    if (!order.ascending || order.gaps) return {0, x.size()};
    const auto first = std::lower_bound(x.begin(), x.end(), scale.min);
    const auto last = std::upper_bound(first, x.end(), scale.max);
    const auto begin = static_cast<std::size_t>(first - x.begin());
    const auto end = static_cast<std::size_t>(last - x.begin());
    return {begin - std::min<std::size_t>(begin, 1), std::min(end + 1, x.size())};
}

static bool isBroken(const DrawnCurve &curve, bool breaksOnReverse) {
    return breaksOnReverse && !orderOfX(*curve.table).ascending;
}

Path visiblePoints(const DrawnCurve &curve, const ScaledFrame &frame, bool breaksOnReverse,
                   double resolution) {
    const Table &table = *curve.table;
    if (curve.column->look.sum > 1 || hasPointsBetween(curve, frame) ||
        isBroken(curve, breaksOnReverse))
        return pointsOnPaper(curve, frame);

    const std::vector<double> &x = table.x.values;
    const std::vector<double> &y = curve.column->values;
    const Scale horizontal = frame.scales[curve.horizontalAxis()];
    const Scale vertical = frame.scales[curve.verticalAxis()];
    const Rows rows = rowsWithin(table, horizontal);
    ColumnExtremes visible(resolution);
    for (std::size_t i = rows.begin; i < rows.end; ++i) {
        const bool valid = std::isfinite(x[i]) && std::isfinite(y[i]);
        visible.add(valid ? Point{horizontal.position(x[i]), frame.height - vertical.position(y[i])}
                          : pathBreak);
    }
    return visible.take();
}

Path visibleLine(const DrawnCurve &curve, const ScaledFrame &frame, bool breaksOnReverse,
                 double resolution) {
    const double thinnedTo = isBroken(curve, breaksOnReverse) ? 0 : resolution;
    return linePath(visiblePoints(curve, frame, breaksOnReverse, resolution), curve, frame,
                    thinnedTo);
}

} // namespace plotwerk
