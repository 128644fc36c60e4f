#include "plotwerk/fit/documentFit.h"

#include "plotwerk/base/bounds.h"
#include "plotwerk/base/refusal.h"
#include "plotwerk/fit/fitVariables.h"
#include "plotwerk/fit/parameterList.h"
#include "plotwerk/formula/formula.h"
#include "plotwerk/model/curves.h"
#include "plotwerk/model/errorColumns.h"
#include "plotwerk/model/palette.h"
#include "plotwerk/model/parameterText.h"
#include "plotwerk/model/ranges.h"
#include "plotwerk/model/structure.h"

#include <algorithm>
#include <cmath>
#include <optional>
#include <unordered_map>
#include <utility>

namespace plotwerk {

static bool isOfFit(const Column &column) {
    return column.drawnByFit || column.residuals;
}

static std::optional<CurveRef> findCurveToFit(const Document &document) {
    if (const auto marked = fitCurve(document)) return marked;

    const auto ofFit = [&](const CurveRef &curve) { return isOfFit(columnOf(document, curve)); };
    std::vector<CurveRef> selected = selectedCurves(document);
    std::erase_if(selected, ofFit);
    if (!selected.empty()) return selected.front();
    const auto only = onlyCurve(document);
    return only && !ofFit(*only) ? only : std::nullopt;
}

// What a formula for that curve may use beside x and y.
static std::vector<Variable> variablesFor(const Document &document, const CurveRef &curve) {
    std::vector<Variable> variables;
    if (!document.frame.multiDimFit) return variables;
    const Table &table = tableOf(document, curve);
    variables.push_back({table.x.name, Operation::variableX});
    variables.push_back({columnOf(document, curve).name, Operation::variableY});
    for (int k = 0; k < std::ssize(table.y); ++k)
        variables.push_back({table.y[k].name, Operation::variableColumn, k});
    return variables;
}

static void requireFormula(const Document &document) {
    if (document.formula.empty()) throw Refusal("no formula");
}

static Formula formulaFor(const Document &document, const CurveRef &curve) {
    return Formula(document.formula, variablesFor(document, curve));
}

static Formula formulaToFit(const Document &document, const std::string &text) {
    const auto fitted = findCurveToFit(document);
    return fitted ? Formula(text, variablesFor(document, *fitted)) : Formula(text);
}

void setFormula(Document &document, const std::string &text) {
    const Formula formula = formulaToFit(document, text);
    if (text == document.formula) return;

    std::vector<FitParameter> parameters =
        parametersNamed(formula.parameterNames(), document.parameters);
    for (FitParameter &parameter : parameters) {
        parameter.error = unset;
        parameter.atBound = false;
    }
    document.formula = text;
    document.parameters = std::move(parameters);
    document.fit.done = false;
}

void changeFrameWithFormula(Document &document, const FrameChange &change) {
    const bool before = document.frame.multiDimFit;
    changeFrame(document, change);
    if (document.frame.multiDimFit == before || document.formula.empty()) return;
    try {
        const Formula formula = formulaToFit(document, document.formula);
        document.parameters = parametersNamed(formula.parameterNames(), document.parameters);
    } catch (const Refusal &) { // the formula needs columns: what uses it next says so
    }
}

void setParameters(Document &document, const std::string &list, char decimalSeparator) {
    readParameterList(list, decimalSeparator, document.parameters, document.absoluteErrors);
}

std::string parametersOf(const Document &document, char decimalSeparator) {
    std::string list = parameterList(document.parameters, decimalSeparator);
    if (document.absoluteErrors) list += list.empty() ? "absolute" : "\nabsolute";
    return list;
}

static std::vector<double> valuesOf(const std::vector<FitParameter> &parameters) {
    std::vector<double> values(parameters.size());
    std::ranges::transform(parameters, values.begin(), &FitParameter::value);
    return values;
}

// The errors may be held in `means`.
static FitData dataOf(const Document &document, const CurveRef &curve, const Formula &formula,
                      std::vector<double> &means) {
    const Table &table = tableOf(document, curve);
    const Column &column = columnOf(document, curve);
    FitData data{table.x.values, column.values, yErrorsOf(table, column, means), document.fitRange,
                 document.absoluteErrors};
    for (const int k : formula.columns()) data.columns.push_back(table.y[k].values);
    return data;
}

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

static std::vector<double> atRows(std::span<const double> values, const std::vector<int> &rows) {
    std::vector<double> taken;
    taken.reserve(rows.size());
    for (const int row : rows) taken.push_back(values[row]);
    return taken;
}

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
    column.look = lookOfNewCurve(numberOfCurves(document), look);
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
        column.look = lookOfNewCurve(0, columnOf(document, curve).look);
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

static void show(Table line, Table residuals, const CurveRef &fitted, Document &document) {
    const int source = sourceOfFit(document, fitted);
    if (source >= 0) {
        const int place = exchange(document, source, &Column::drawnByFit, std::move(line), -1);
        exchange(document, source, &Column::residuals, std::move(residuals), place);
        return;
    }
    std::vector<Table> tables;
    tables.push_back(std::move(line));
    tables.push_back(std::move(residuals));
    addSource(document, "Fit", std::move(tables));
}

FitOutcome fitDocument(Document &document, const FitRunner &run) {
    document.fitStatus = fitImpossible; // where the fit is refused
    requireFormula(document);
    const auto fitted = findCurveToFit(document);
    if (!fitted) throw Refusal("no curve is fit data or selected");
    const Formula formula = formulaFor(document, *fitted);
    std::vector<FitParameter> parameters =
        parametersNamed(formula.parameterNames(), document.parameters);
    const double bytes = sizeof(double) * rowsOf(tableOf(document, *fitted));
    requireRoom(3 * bytes); // for the residuals
    requireMemory((9.5 + 2.0 * static_cast<double>(formula.columns().size())) * bytes);
    std::vector<double> means;
    const FitData data = dataOf(document, *fitted, formula, means);
    FitOutcome outcome = fit(formula, data, parameters, mostSeconds(), run);
    document.fitStatus = outcome.status;
    if (outcome.status != fitConverged) return outcome;

    const std::vector<double> values = valuesOf(parameters);
    const FittedRows rows = fittedRows(data, formula, values);
    Table line = lineOfFit(document, *fitted, data, formula, values, rows);
    Table residuals = tableOfResiduals(document, *fitted, data, rows);
    show(std::move(line), std::move(residuals), *fitted, document);
    outcome.result.formula = document.formula;
    document.parameters = std::move(parameters);
    document.fit = outcome.result;
    return outcome;
}

namespace {

// A curve's valid points, and what the formula makes of them.
struct Modified {
    ValidPoints points;
    std::vector<double> values;
    Column *above = nullptr; // the errors that follow the values, null without any
    Column *below = nullptr;
    std::vector<double> slopes;
    std::vector<double> x; // as it will be
};

using ErrorsOfTables = std::unordered_map<const Table *, ErrorColumns>;

} // namespace

static Modified modified(Document &document, const CurveRef &curve, const Formula &formula,
                         ErrorsOfTables &errorsOfTables) {
    Table &table = tableOf(document, curve);
    Modified result{validPoints(table, columnOf(document, curve)), {}, nullptr, nullptr, {}, {}};
    const ValidPoints &points = result.points;
    std::vector<std::vector<double>> columns;
    for (const int k : formula.columns()) columns.push_back(atRows(table.y[k].values, points.row));
    const Inputs inputs{points.x, points.y, {columns.begin(), columns.end()}};
    const std::vector<double> parameters =
        valuesOf(parametersNamed(formula.parameterNames(), document.parameters));
    result.values.resize(points.x.size());
    formula.evaluate(inputs, parameters, result.values);
    if (!formula.usesY()) return result;

    const ErrorColumns &errorColumns = errorsOfTables.try_emplace(&table, table).first->second;
    const Errors &errors = errorColumns.ofY(static_cast<std::size_t>(curve.column));
    if (!errors || errors.above->rank > 0 || errors.below->rank > 0) return result;
    result.above = &table.y[errors.above - table.y.data()];
    result.below = &table.y[errors.below - table.y.data()];
    result.slopes.resize(points.x.size());
    formula.differentiateByY(inputs, parameters, result.slopes);
    return result;
}

// Where the formula falls with y, what was above becomes what is below.
static void scaleErrors(const Modified &modified) {
    for (std::size_t k = 0; k < modified.slopes.size(); ++k) {
        const int row = modified.points.row[k];
        const double slope = std::abs(modified.slopes[k]);
        double &above = modified.above->values[row];
        double &below = modified.below->values[row];
        above = stored(above * slope);
        if (&below == &above) continue;
        below = stored(below * slope);
        if (modified.slopes[k] < 0) std::swap(above, below);
    }
}

void modifySelection(Document &document, bool yData) {
    std::vector<CurveRef> curves = requireSelection(document);
    if (!yData) curves = firstOfEachTable(curves);
    requireFormula(document);
    std::vector<Formula> formulas;
    double time = 0;
    double rows = 0;
    for (const CurveRef &curve : curves) {
        formulas.push_back(formulaFor(document, curve));
        const int rowsOfCurve = rowsOf(tableOf(document, curve));
        rows += rowsOfCurve;
        time += rowsOfCurve * (20 + nanosecondsPerPoint(formulas.back().tape()));
    }
    requireTime(time);
    requireMemory(5.5 * sizeof(double) * rows);

    ErrorsOfTables errors;
    std::vector<Modified> all;
    for (std::size_t i = 0; i < curves.size(); ++i) {
        all.push_back(modified(document, curves[i], formulas[i], errors));
        if (yData) continue;
        all.back().slopes.clear();
        all.back().x = tableOf(document, curves[i]).x.values;
    }

    for (std::size_t i = 0; i < curves.size(); ++i) {
        Table &table = tableOf(document, curves[i]);
        Column &column = columnOf(document, curves[i]);
        scaleErrors(all[i]);
        std::vector<double> values = std::move(yData ? column.values : all[i].x);
        for (std::size_t k = 0; k < all[i].values.size(); ++k)
            values[all[i].points.row[k]] = stored(all[i].values[k]);
        (yData ? column : table.x).isTime = false;
        if (yData)
            column.values = std::move(values);
        else
            setX(table, std::move(values));
    }
}

static std::optional<double> limitNamed(const Document &document, const std::string &name) {
    static constexpr struct {
        const char *min, *max;
        AxisCode axis;
    } axes[] = {{"xmin", "xmax", xAxis},
                {"ymin", "ymax", yAxis},
                {"x2min", "x2max", upperXAxis},
                {"y2min", "y2max", rightYAxis}};
    for (const auto &row : axes) {
        if (name == row.min) return rangeOf(document, row.axis).min;
        if (name == row.max) return rangeOf(document, row.axis).max;
    }
    if (name == "fitmin") return fitRangeOf(document).min;
    if (name == "fitmax") return fitRangeOf(document).max;
    return std::nullopt;
}

std::string variableOf(const Document &document, const std::string &name) {
    if (const auto text = fitVariable(name, document.parameters, document.fit)) return *text;
    if (const auto limit = limitNamed(document, name)) return allDigits(*limit);
    if (name == "status") {
        if (document.fitStatus >= 0) return std::to_string(document.fitStatus);
        return document.fit.done ? std::to_string(fitConverged) : allDigits(unset);
    }
    throw Refusal("no variable \"" + name + '"');
}

} // namespace plotwerk
