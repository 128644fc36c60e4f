#include "plotwerk/model/statistic.h"

#include "plotwerk/base/bounds.h"
#include "plotwerk/model/curves.h"
#include "plotwerk/model/sampledFunction.h"

#include <algorithm>
#include <cmath>
#include <vector>

namespace plotwerk {

namespace {

// Neumaier's compensated sum.
struct Sum {
    double sum = 0;
    double lost = 0; // low-order bits that the additions so far have cut off

    void add(double value) {
        const double total = sum + value;
        lost += std::abs(sum) >= std::abs(value) ? (sum - total) + value : (value - total) + sum;
        sum = total;
    }

    // beyond the range of doubles the correction is no number
    double value() const { return std::isfinite(sum) ? sum + lost : sum; }
};

} // namespace

Statistic statisticOfSelection(const Document &document) {
    const std::vector<CurveRef> selected = requireSelection(document);
    Statistic statistic;
    statistic.name = columnOf(document, selected.front()).name;

    double rows = 0;
    double memory = 0;
    for (const CurveRef &curve : selected) {
        const Table &table = tableOf(document, curve);
        rows += rowsOf(table);
        memory = std::max(memory,
                          (orderOfX(table).ascending ? 2.5 : 9) * sizeof(double) * rowsOf(table));
    }
    requireMemory(memory);
    requireTime(130 * rows);

    Sum sum;
    Sum area;
    for (const CurveRef &curve : selected) {
        ValidPoints points = validPoints(tableOf(document, curve), columnOf(document, curve));
        for (int i = 0; i < points.n; ++i) {
            const double y = points.y[i];
            if (!(statistic.min <= y)) statistic.min = y;
            if (!(statistic.max >= y)) statistic.max = y;
            sum.add(y);
        }
        statistic.points += points.n;
        area.add(integral(points.x, points.y));
    }
    statistic.sum = sum.value();
    statistic.area = area.value();
    if (statistic.points == 0) return statistic;

    // squares of deviations, less what the rounding of the mean adds to them
    const double mean = statistic.sum / statistic.points;
    Sum deviations;
    Sum squares;
    for (const CurveRef &curve : selected) {
        const std::vector<double> &x = tableOf(document, curve).x.values;
        const std::vector<double> &y = columnOf(document, curve).values;
        for (std::size_t row = 0; row < y.size(); ++row) {
            if (std::isnan(x[row]) || std::isnan(y[row])) continue;
            const double deviation = y[row] - mean;
            deviations.add(deviation);
            squares.add(deviation * deviation);
        }
    }
    const double rest = deviations.value();
    const double variance = (squares.value() - rest * rest / statistic.points) / statistic.points;
    statistic.deviation = std::sqrt(std::max(variance, 0.0));
    if (std::isnan(variance)) statistic.deviation = unset; // without the sign that it may have
    return statistic;
}

} // namespace plotwerk
