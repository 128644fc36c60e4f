#include "plotwerk/fit/fitCurves.h"

#include "plotwerk/base/bounds.h"
#include "plotwerk/fit/documentFormula.h"
#include "plotwerk/model/curves.h"
#include "plotwerk/model/palette.h"
#include "plotwerk/model/structure.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace plotwerk {

static constexpr const char *nameOfSource = "Fit";

// The limits between which the formula is drawn: of the points where the fit range leaves them.
static Range drawnRange(const FitData &data) {
    Range range;
    for (std::size_t i = 0; i < data.x.size(); ++i) {
        const double x = data.x[i];
        if (!std::isfinite(x) || !std::isfinite(data.y[i])) continue;
        if (x < data.range.min || x > data.range.max) continue;
        range = {std::fmin(range.min, x), std::fmax(range.max, x)};
    }
    if (std::isfinite(data.range.min)) range.min = data.range.min;
    if (std::isfinite(data.range.max)) range.max = data.range.max;
    return range;
}

// As many points as the data have, so that peaks that the data resolve show, spaced evenly along
// the axis; but enough for a smooth line, and no more than a line of the paper's width can show.
static std::vector<double> samplesOf(const Range &range, int points, bool logarithmic) {
    const int n = std::clamp(points, 500, 10'000);
    if (!(range.min < range.max)) return {range.min};

    const bool inDecades = logarithmic && range.min > 0;
    std::vector<double> x;
    x.reserve(n);
    for (int i = 0; i < n; ++i) {
        const double part = static_cast<double>(i) / (n - 1);
        x.push_back(inDecades ? std::exp(std::lerp(std::log(range.min), std::log(range.max), part))
                              : std::lerp(range.min, range.max, part));
    }
    x.front() = range.min;
    x.back() = range.max;
    return x;
}

// The rows of a fit, and the formula there.
struct FittedRows {
    std::vector<int> rows;
    std::vector<double> x;
    std::vector<double> formula;
};

static FittedRows fittedRows(const FitData &data, const Formula &formula,
                             const std::vector<double> &parameters) {
    FittedRows fitted;
    fitted.rows = rowsOfFit(data);
    fitted.x = atRows(data.x, fitted.rows);
    fitted.formula.resize(fitted.rows.size());
    std::vector<std::vector<double>> columns;
    for (const auto &column : data.columns) columns.push_back(atRows(column, fitted.rows));
    formula.evaluate({fitted.x, {}, {columns.begin(), columns.end()}}, parameters, fitted.formula);
    return fitted;
}

// Line and residuals of a fit have one colour, which differs from that of the fits before.
static CurveLook lookOfFit(const Document &document, const CurveLook &fitted) {
    const auto fits = std::ranges::count_if(document.sources, [](const Source &source) {
        return source.name.starts_with(nameOfSource);
    });
    return lookOfNewFit(static_cast<int>(fits), fitted);
}

// The formula over the range or, where it takes columns, at the points.
static Table lineOfFit(const Document &document, const CurveRef &curve, const FitData &data,
                       const Formula &formula, const std::vector<double> &parameters,
                       const FittedRows &fitted) {
    const CurveLook &look = columnOf(document, curve).look;
    const AxisCode axis = look.upperX ? upperXAxis : xAxis;
    Table table;
    table.x.name = tableOf(document, curve).x.name;
    table.x.isTime = tableOf(document, curve).x.isTime;
    Column &column = table.y.emplace_back();
    column.name = "Fit";
    column.isTime = columnOf(document, curve).isTime;
    column.drawnByFit = true;
    column.look = lookOfFit(document, look);
    for (const CurveRef &each : curvesOf(document))
        column.look.layer = std::max(column.look.layer, columnOf(document, each).look.layer);
    if (!formula.columns().empty()) {
        table.x.values = fitted.x;
        column.values = fitted.formula;
        return table;
    }
    table.x.values = samplesOf(drawnRange(data), static_cast<int>(fitted.rows.size()),
                               document.axes[axis].logarithmic);
    column.values.resize(table.x.values.size());
    formula.evaluate({table.x.values}, parameters, column.values);
    return table;
}

// What the formula leaves of the data, also in units of their errors where there are any.
static Table tableOfResiduals(const Document &document, const CurveRef &curve, const FitData &data,
                              const FittedRows &fitted) {
    Table table;
    table.x.name = tableOf(document, curve).x.name;
    table.x.isTime = tableOf(document, curve).x.isTime;
    table.x.values = fitted.x;
    const auto add = [&](const char *name) -> Column & {
        Column &column = table.y.emplace_back();
        column.name = name;
        column.residuals = true;
        column.look = lookOfFit(document, columnOf(document, curve).look);
        column.look.visible = column.look.line = false;
        column.look.symbols = true;
        column.values = atRows(data.y, fitted.rows);
        for (std::size_t i = 0; i < column.values.size(); ++i)
            column.values[i] = stored(column.values[i] - fitted.formula[i]);
        return column;
    };
    add("Residuals");
    if (data.errors.empty()) return table;
    Column &relative = add("Residuals/\u03c3");
    for (std::size_t i = 0; i < relative.values.size(); ++i)
        relative.values[i] = stored(relative.values[i] / data.errors[fitted.rows[i]]);
    return table;
}

FitTables fitTables(const Document &document, const CurveRef &curve, const FitData &data,
                    const Formula &formula, const std::vector<double> &parameters) {
    const FittedRows fitted = fittedRows(data, formula, parameters);
    return {lineOfFit(document, curve, data, formula, parameters, fitted),
            tableOfResiduals(document, curve, data, fitted)};
}

// The number of the source that the last fit has drawn in; -1 without one. It is the user's from
// now on when he has added to a table of the fit's, or is fitting a curve of it.
static int sourceOfFit(Document &document, const CurveRef &fitted) {
    int found = -1;
    for (int s = 0; s < std::ssize(document.sources); ++s) {
        bool drawn = false;
        bool taken = fitted.source == s && isOfFit(columnOf(document, fitted));
        for (const Table &table : document.sources[s].tables) {
            const auto ofFit = std::ranges::count_if(table.y, isOfFit);
            drawn = drawn || ofFit > 0;
            taken = taken || (ofFit > 0 && ofFit < std::ssize(table.y));
        }
        if (drawn && !taken) found = s;
        if (taken) giveToUser(document.sources[s]);
    }
    return found;
}

// Puts the table in the place of the source's one of that kind, whose name, look and selection it
// keeps, or else behind the table `after`.
static int exchange(Document &document, int source, bool Column::*kind, Table table, int after) {
    const std::vector<Table> &tables = document.sources[source].tables;
    const auto old =
        std::ranges::find_if(tables, [&](const Table &each) { return each.y.front().*kind; });
    if (old == tables.end()) {
        std::vector<NewTable> added;
        added.push_back({source, after, std::move(table)});
        insertTables(document, std::move(added));
        return after + 1;
    }
    for (std::size_t c = 0; c < std::min(table.y.size(), old->y.size()); ++c) {
        table.y[c].name = old->y[c].name;
        table.y[c].look = old->y[c].look;
        table.y[c].marked = old->y[c].marked;
        table.y[c].rank = old->y[c].rank;
    }
    const int place = static_cast<int>(old - tables.begin());
    replaceTable(document, source, place, std::move(table));
    return place;
}

void showFit(FitTables drawn, const CurveRef &fitted, Document &document) {
    const int source = sourceOfFit(document, fitted);
    if (source >= 0) {
        const int place =
            exchange(document, source, &Column::drawnByFit, std::move(drawn.line), -1);
        exchange(document, source, &Column::residuals, std::move(drawn.residuals), place);
        return;
    }
    std::vector<Table> tables;
    tables.push_back(std::move(drawn.line));
    tables.push_back(std::move(drawn.residuals));
    addSource(document, nameOfSource, std::move(tables));
}

} // namespace plotwerk
