#include "plotwerk/model/points.h"

#include "plotwerk/base/refusal.h"
#include "plotwerk/model/curves.h"
#include "plotwerk/model/sampledFunction.h"

#include <cmath>
#include <string>
#include <utility>

namespace plotwerk {

// The next row from i on, in steps of step, that has an x; there is one.
static int rowWithX(const std::vector<double> &x, int i, int step) {
    while (std::isnan(x[i])) i += step;
    return i;
}

static double valueBetween(const Table &table, const Column &column, int a, int b, double x) {
    if (table.x.values[a] > table.x.values[b]) std::swap(a, b);
    const double xs[] = {table.x.values[a], table.x.values[b]};
    const double ys[] = {column.values[a], column.values[b]};
    int hint = 0;
    return interpolated(xs, ys, x, hint);
}

static double valueAcrossGaps(const Table &table, const Column &column, double x) {
    const XOrder &order = table.xOrder;
    const std::vector<double> &xs = table.x.values;
    if (x < xs[order.first] || x > xs[order.last]) return 0.0;
    if (order.first == order.last) return column.values[order.first];
    int row = searched(xs, column.values, x, table.xOrder.found);
    if (row == order.last) row = rowWithX(xs, row - 1, -1);
    return valueBetween(table, column, row, rowWithX(xs, row + 1, 1), x);
}

static double valueInDataOrder(const Table &table, const Column &column, double x) {
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

static Column &columnWithPoint(Document &document, int index, int series) {
    Column &column = columnOf(document, curveOfSeries(document, series));
    if (index < 0 || index >= std::ssize(column.values))
        throw Refusal("no point " + std::to_string(index) + " in \"" + column.name + "\"");
    return column;
}

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
    columnWithPoint(document, index, series).values[index] = stored(value);
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

} // namespace plotwerk
