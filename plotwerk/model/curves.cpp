#include "plotwerk/model/curves.h"

#include "plotwerk/base/refusal.h"

#include <algorithm>
#include <cmath>
#include <numeric>
#include <set>
#include <string>
#include <utility>

namespace plotwerk {

Table &tableOf(Document &document, const CurveRef &curve) {
    return document.sources[curve.source].tables[curve.table];
}

const Table &tableOf(const Document &document, const CurveRef &curve) {
    return document.sources[curve.source].tables[curve.table];
}

Column &columnOf(Document &document, const CurveRef &curve) {
    return tableOf(document, curve).y[curve.column];
}

const Column &columnOf(const Document &document, const CurveRef &curve) {
    return tableOf(document, curve).y[curve.column];
}

std::vector<CurveRef> curvesOf(const Document &document) {
    std::vector<CurveRef> curves;
    CurveRef curve;
    for (curve.source = 0; curve.source < std::ssize(document.sources); ++curve.source) {
        const Source &source = document.sources[curve.source];
        for (curve.table = 0; curve.table < std::ssize(source.tables); ++curve.table) {
            const Table &table = source.tables[curve.table];
            for (curve.column = 0; curve.column < std::ssize(table.y); ++curve.column) {
                curves.push_back(curve);
                ++curve.index;
            }
        }
    }
    return curves;
}

int numberOfCurves(const Document &document) {
    std::size_t count = 0;
    for (const Source &source : document.sources)
        for (const Table &table : source.tables) count += table.y.size();
    return static_cast<int>(count);
}

std::optional<CurveRef> curveAt(const Document &document, int index, CurveRef from) {
    if (index < from.index) return std::nullopt;
    CurveRef curve = from;
    curve.column += index - from.index;
    curve.index = index;
    for (; curve.source < std::ssize(document.sources); ++curve.source) {
        const std::vector<Table> &tables = document.sources[curve.source].tables;
        for (; curve.table < std::ssize(tables); ++curve.table) {
            const int columns = static_cast<int>(tables[curve.table].y.size());
            if (curve.column < columns) return curve;
            curve.column -= columns;
        }
        curve.table = 0;
    }
    return std::nullopt;
}

std::vector<CurveRef> selectedCurves(const Document &document) {
    std::vector<CurveRef> selected = curvesOf(document);
    const auto rank = [&](const CurveRef &curve) { return columnOf(document, curve).rank; };
    std::erase_if(selected, [&](const CurveRef &curve) { return rank(curve) == 0; });
    std::stable_sort(selected.begin(), selected.end(),
                     [&](const CurveRef &a, const CurveRef &b) { return rank(a) < rank(b); });
    return selected;
}

std::vector<CurveRef> requireSelection(const Document &document) {
    std::vector<CurveRef> selected = selectedCurves(document);
    if (selected.empty()) throw Refusal("no curve is selected");
    return selected;
}

std::vector<CurveRef> firstOfEachTable(std::vector<CurveRef> curves) {
    std::set<std::pair<int, int>> seen;
    std::erase_if(curves, [&](const CurveRef &curve) {
        return !seen.emplace(curve.source, curve.table).second;
    });
    return curves;
}

std::optional<CurveRef> firstSelectedCurve(const Document &document) {
    std::optional<CurveRef> first;
    int lowest = 0;
    CurveRef curve;
    for (const Source &source : document.sources) {
        curve.table = 0;
        for (const Table &table : source.tables) {
            curve.column = 0;
            for (const Column &column : table.y) {
                if (column.rank > 0 && (!first || column.rank < lowest)) {
                    first = curve;
                    lowest = column.rank;
                }
                ++curve.column;
                ++curve.index;
            }
            ++curve.table;
        }
        ++curve.source;
    }
    return first;
}

std::vector<PlottedCurve> plottedCurves(const Document &document) {
    std::vector<PlottedCurve> curves;
    CurveRef curve;
    for (const Source &source : document.sources) {
        curve.table = 0;
        for (const Table &table : source.tables) {
            const ErrorColumns errors(table);
            curve.column = 0;
            for (const Column &column : table.y) {
                const CurveLook &look = column.look;
                if (look.visible && !errors.holdsErrors(curve.column))
                    curves.push_back({curve, look.yError ? errors.ofY(curve.column) : Errors(),
                                      look.xError ? errors.ofX() : Errors()});
                ++curve.column;
                ++curve.index;
            }
            ++curve.table;
        }
        ++curve.source;
    }
    return curves;
}

std::optional<CurveRef> onlyCurve(const Document &document) {
    std::vector<bool> holdsErrors; // by index
    for (const Source &source : document.sources)
        for (const Table &table : source.tables) {
            const ErrorColumns errors(table);
            for (std::size_t i = 0; i < table.y.size(); ++i)
                holdsErrors.push_back(errors.holdsErrors(i));
        }
    std::vector<CurveRef> curves = curvesOf(document);
    std::erase_if(curves, [&](const CurveRef &curve) { return holdsErrors[curve.index]; });
    if (curves.size() > 1)
        std::erase_if(curves,
                      [&](const CurveRef &curve) { return columnOf(document, curve).residuals; });
    if (curves.size() > 1)
        std::erase_if(curves,
                      [&](const CurveRef &curve) { return columnOf(document, curve).drawnByFit; });
    if (curves.size() != 1) return std::nullopt;
    return curves.front();
}

std::optional<CurveRef> fitCurve(const Document &document) {
    for (const CurveRef &curve : curvesOf(document))
        if (columnOf(document, curve).fitData) return curve;
    return std::nullopt;
}

CurveRef curveOfSeries(const Document &document, int series) {
    if (series != -1) {
        const auto curve = curveAt(document, series);
        if (!curve) throw Refusal("no curve " + std::to_string(series));
        return *curve;
    }
    if (const auto selected = firstSelectedCurve(document)) return *selected;
    if (const auto only = onlyCurve(document)) return *only;
    throw Refusal("no curve is selected");
}

std::span<const double> yErrorsOf(const Table &table, const Column &curve,
                                  std::vector<double> &means) {
    const Errors errors = ErrorColumns(table).ofY(&curve - table.y.data());
    if (!errors) return {};
    if (!errors.isPair()) return errors.above->values;
    means.resize(curve.values.size());
    for (std::size_t row = 0; row < means.size(); ++row)
        means[row] = (errors.above->values[row] + std::abs(errors.below->values[row])) / 2;
    return means;
}

int rowsOf(const Table &table) {
    return static_cast<int>(table.x.values.size());
}

void setX(Table &table, std::vector<double> values) {
    table.x.values = std::move(values);
    table.xOrder = {};
}

const XOrder &orderOfX(const Table &table) {
    XOrder &order = table.xOrder;
    const std::vector<double> &x = table.x.values;
    for (; order.rows < x.size(); ++order.rows) {
        const double value = x[order.rows];
        if (std::isnan(value)) {
            order.gaps = true;
            continue;
        }
        if (order.first < 0)
            order.first = static_cast<int>(order.rows);
        else if (value < x[order.last])
            order.ascending = false;
        order.last = static_cast<int>(order.rows);
    }
    return order;
}

// Most data are complete, and copied as a whole.
ValidPoints validPoints(const Table &table, const Column &y) {
    const std::size_t rows = y.values.size();
    const double *const x = table.x.values.data();
    const double *const values = y.values.data();
    const auto isValid = [&](std::size_t row) {
        return !std::isnan(x[row]) && !std::isnan(values[row]);
    };
    ValidPoints points;
    for (std::size_t row = 0; row < rows; ++row) points.n += isValid(row);
    const auto count = static_cast<std::size_t>(points.n);
    if (count == rows) {
        points.x.assign(x, x + rows);
        points.y.assign(values, values + rows);
        points.row.resize(rows);
        std::iota(points.row.begin(), points.row.end(), 0);
        return points;
    }
    points.x.reserve(count);
    points.y.reserve(count);
    points.row.reserve(count);
    for (std::size_t row = 0; row < rows; ++row) {
        if (!isValid(row)) continue;
        points.x.push_back(x[row]);
        points.y.push_back(values[row]);
        points.row.push_back(static_cast<int>(row));
    }
    return points;
}

std::vector<double> atRows(std::span<const double> values, const std::vector<int> &rows) {
    std::vector<double> taken;
    taken.reserve(rows.size());
    for (const int row : rows) taken.push_back(values[row]);
    return taken;
}

} // namespace plotwerk
