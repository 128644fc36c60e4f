#include "plotwerk/model/curves.h"

#include "plotwerk/base/refusal.h"
#include "plotwerk/model/names.h"

#include <algorithm>
#include <cmath>
#include <set>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
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

namespace {

// The columns of errors in a table, all looked up at once: a table may have very many columns.
struct Errors {
    std::unordered_map<std::string_view, const Column *> of; // by the name of what they belong to
    std::vector<bool> columns;                               // for each y column whether it is one

    explicit Errors(const Table &table) : columns(table.y.size()) {
        for (const Column &column : table.y)
            if (column.name.ends_with(errorSuffix)) of.emplace(nameOfErrors(column), &column);
        if (of.empty()) return;

        std::unordered_set<std::string_view> names{table.x.name, "X"};
        for (const Column &column : table.y) names.insert(column.name);
        for (std::size_t i = 0; i < table.y.size(); ++i)
            columns[i] =
                table.y[i].name.ends_with(errorSuffix) && names.contains(nameOfErrors(table.y[i]));
    }

    const Column *find(std::string_view name) const {
        const auto found = of.find(name);
        return found == of.end() ? nullptr : found->second;
    }

  private:
    // of what the errors belong to
    static std::string_view nameOfErrors(const Column &column) {
        return std::string_view(column.name).substr(0, column.name.size() - errorSuffix.size());
    }
};

} // namespace

std::vector<bool> errorColumns(const Table &table) {
    return Errors(table).columns;
}

std::vector<PlottedCurve> plottedCurves(const Document &document) {
    std::vector<PlottedCurve> curves;
    CurveRef curve;
    for (const Source &source : document.sources) {
        curve.table = 0;
        for (const Table &table : source.tables) {
            const Errors errors(table);
            const Column *ofX = errors.find(table.x.name);
            if (ofX == nullptr) ofX = errors.find("X");
            curve.column = 0;
            for (const Column &column : table.y) {
                const CurveLook &look = column.look;
                if (look.visible && !errors.columns[curve.column])
                    curves.push_back({curve, look.yError ? errors.find(column.name) : nullptr,
                                      look.xError ? ofX : nullptr});
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
            const std::vector<bool> columns = errorColumns(table);
            holdsErrors.insert(holdsErrors.end(), columns.begin(), columns.end());
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

const Column *yErrorOf(const Table &table, const Column &curve) {
    const std::string name = errorNameOf(curve.name);
    const auto found = std::ranges::find(table.y, name, &Column::name);
    return found == table.y.end() ? nullptr : &*found;
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

ValidPoints validPoints(const Table &table, const Column &y) {
    const auto isValid = [&](std::size_t row) {
        return !std::isnan(table.x.values[row]) && !std::isnan(y.values[row]);
    };
    ValidPoints points;
    for (std::size_t row = 0; row < y.values.size(); ++row) points.n += isValid(row);
    points.x.reserve(points.n);
    points.y.reserve(points.n);
    points.row.reserve(points.n);
    for (std::size_t row = 0; row < y.values.size(); ++row) {
        if (!isValid(row)) continue;
        points.x.push_back(table.x.values[row]);
        points.y.push_back(y.values[row]);
        points.row.push_back(static_cast<int>(row));
    }
    return points;
}

} // namespace plotwerk
