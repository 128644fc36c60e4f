#include "plotwerk/fit/documentFit.h"

#include "plotwerk/base/bounds.h"
#include "plotwerk/base/refusal.h"
#include "plotwerk/fit/parameterList.h"
#include "plotwerk/formula/formula.h"
#include "plotwerk/model/curves.h"
#include "plotwerk/model/palette.h"
#include "plotwerk/model/parameterText.h"
#include "plotwerk/model/ranges.h"
#include "plotwerk/model/structure.h"

#include <algorithm>
#include <cmath>
#include <optional>
#include <utility>

namespace plotwerk {

void setFormula(Document &document, const std::string &text) {
    const Formula formula(text);
    if (text == document.formula) return;

    std::vector<FitParameter> parameters =
        parametersNamed(formula.parameterNames(), document.parameters);
    for (FitParameter &parameter : parameters) parameter.error = unset;
    document.formula = text;
    document.parameters = std::move(parameters);
    document.fit = {};
}

void setParameters(Document &document, const std::string &list, char decimalSeparator) {
    readParameterList(list, decimalSeparator, document.parameters);
}

static Formula formulaOf(const Document &document) {
    if (document.formula.empty()) throw Refusal("no formula");
    return Formula(document.formula);
}

static std::vector<double> valuesOf(const std::vector<FitParameter> &parameters) {
    std::vector<double> values(parameters.size());
    std::ranges::transform(parameters, values.begin(), &FitParameter::value);
    return values;
}

static CurveRef curveToFit(const Document &document) {
    if (const auto marked = fitCurve(document)) return *marked;

    const auto isDrawnByFit = [&](const CurveRef &curve) {
        return columnOf(document, curve).drawnByFit;
    };
    std::vector<CurveRef> selected = selectedCurves(document);
    std::erase_if(selected, isDrawnByFit);
    if (!selected.empty()) return selected.front();
    const auto only = onlyCurve(document);
    if (!only || isDrawnByFit(*only)) throw Refusal("no curve is fit data or selected");
    return *only;
}

static FitData dataOf(const Document &document, const CurveRef &curve) {
    const Table &table = tableOf(document, curve);
    const Column &column = columnOf(document, curve);
    FitData data{table.x.values, column.values, {}, document.fitRange};
    if (const Column *errors = yErrorOf(table, column)) data.errors = errors->values;
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

static Table tableOfFit(const Document &document, const CurveRef &fitted, const Formula &formula,
                        const std::vector<FitParameter> &parameters, int points) {
    const CurveLook &look = columnOf(document, fitted).look;
    const AxisCode axis = look.upperX ? upperXAxis : xAxis;
    Table table;
    table.x.name = tableOf(document, fitted).x.name;
    table.x.values =
        samplesOf(drawnRange(dataOf(document, fitted)), points, document.axes[axis].logarithmic);
    Column &column = table.y.emplace_back();
    column.name = "Fit";
    column.drawnByFit = true;
    column.look = lookOfNewCurve(numberOfCurves(document), look);
    for (const CurveRef &curve : curvesOf(document))
        column.look.layer = std::max(column.look.layer, columnOf(document, curve).look.layer);
    column.values.resize(table.x.values.size());
    formula.evaluate(table.x.values, {}, valuesOf(parameters), column.values);
    return table;
}

// Replaces the curve that the last fit has drawn, or adds a source.
static void show(Table table, const CurveRef &fitted, Document &document) {
    Column &drawn = table.y.front();
    for (const CurveRef &curve : curvesOf(document)) {
        Column &old = columnOf(document, curve);
        if (!old.drawnByFit) continue;
        Table &last = tableOf(document, curve);
        if (curve == fitted || last.y.size() > 1) {
            old.drawnByFit = false; // the user's own from now on
            continue;
        }
        drawn.name = old.name;
        drawn.look = old.look;
        drawn.marked = old.marked;
        drawn.rank = old.rank;
        last = std::move(table);
        return;
    }
    std::vector<Table> tables;
    tables.push_back(std::move(table));
    addSource(document, "Fit", std::move(tables));
}

FitOutcome fitDocument(Document &document) {
    const Formula formula = formulaOf(document);
    const CurveRef fitted = curveToFit(document);
    std::vector<FitParameter> parameters = document.parameters;
    FitOutcome outcome = fit(formula, dataOf(document, fitted), parameters);
    if (outcome.status != fitConverged) return outcome;

    show(tableOfFit(document, fitted, formula, parameters, outcome.result.points), fitted,
         document);
    document.parameters = std::move(parameters);
    document.fit = outcome.result;
    return outcome;
}

void modifySelection(Document &document, bool yData) {
    std::vector<CurveRef> curves = requireSelection(document);
    if (!yData) curves = firstOfEachTable(curves);
    const Formula formula = formulaOf(document);
    const std::vector<double> parameters = valuesOf(document.parameters);
    double rows = 0;
    for (const CurveRef &curve : curves) rows += rowsOf(tableOf(document, curve));
    requireTime(rows * nanosecondsPerPoint(formula.tape()));

    struct Modified {
        ValidPoints points;
        std::vector<double> values;
    };
    std::vector<Modified> modified;
    for (const CurveRef &curve : curves) {
        Modified each{validPoints(tableOf(document, curve), columnOf(document, curve)), {}};
        each.values.resize(each.points.x.size());
        formula.evaluate(each.points.x, each.points.y, parameters, each.values);
        modified.push_back(std::move(each));
    }

    for (std::size_t i = 0; i < curves.size(); ++i) {
        Table &table = tableOf(document, curves[i]);
        Column &column = columnOf(document, curves[i]);
        std::vector<double> values = yData ? std::move(column.values) : table.x.values;
        for (std::size_t k = 0; k < modified[i].values.size(); ++k)
            values[modified[i].points.row[k]] = stored(modified[i].values[k]);
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
    throw Refusal("no variable \"" + name + '"');
}

} // namespace plotwerk
