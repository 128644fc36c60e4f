#include "plotwerk/model/shownPoints.h"

#include "plotwerk/model/sampledFunction.h"

#include <cmath>
#include <utility>

namespace plotwerk {

static std::span<const double> hold(ShownPoints &points, std::vector<double> values) {
    return points.held.emplace_back(std::move(values));
}

static BarLengths barsOf(const Errors &errors, ShownPoints &points) {
    if (!errors) return {};
    if (!errors.isPair()) return {errors.above->values, errors.above->values};
    std::vector<double> below = errors.below->values;
    for (double &length : below) length = std::abs(length);
    return {errors.above->values, hold(points, std::move(below))};
}

ShownPoints rowPoints(const Table &table, const Column &curve, const Errors &xErrors,
                      const Errors &yErrors) {
    ShownPoints points{table.x.values, curve.values, {}, {}, {}};
    points.xBars = barsOf(xErrors, points);
    points.yBars = barsOf(yErrors, points);
    return points;
}

// For the blocks that averageBlocks makes of the rows.
static std::vector<double> errorsOfMeans(const ShownPoints &rows, std::span<const double> errors,
                                         int block) {
    std::vector<double> result;
    double squares = 0;
    int count = 0;
    const auto close = [&] {
        if (count > 0) result.push_back(std::sqrt(squares) / count);
        squares = count = 0;
    };
    for (std::size_t i = 0; i < errors.size(); ++i) {
        if (!std::isfinite(rows.x[i]) || !std::isfinite(rows.y[i])) continue;
        if (errors[i] > 0) squares += errors[i] * errors[i];
        if (++count == block) close();
    }
    close();
    return result;
}

static BarLengths barsOfMeans(const ShownPoints &rows, const BarLengths &bars, int block,
                              ShownPoints &means) {
    if (bars.above.empty()) return {};
    return {hold(means, errorsOfMeans(rows, bars.above, block)),
            hold(means, errorsOfMeans(rows, bars.below, block))};
}

ShownPoints shownPoints(const Table &table, const Column &curve, const Errors &xErrors,
                        const Errors &yErrors) {
    ShownPoints rows = rowPoints(table, curve, xErrors, yErrors);
    const int block = curve.look.sum;
    if (block <= 1) return rows;

    std::vector<double> x = table.x.values;
    std::vector<double> y = curve.values;
    const int n = averageBlocks(x, y, block);
    x.resize(n);
    y.resize(n);
    ShownPoints means;
    means.x = hold(means, std::move(x));
    means.y = hold(means, std::move(y));
    means.xBars = barsOfMeans(rows, rows.xBars, block, means);
    means.yBars = barsOfMeans(rows, rows.yBars, block, means);
    return means;
}

} // namespace plotwerk
