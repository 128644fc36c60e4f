#include "plotwerk/fit/modifyByFormula.h"

#include "plotwerk/base/bounds.h"
#include "plotwerk/fit/documentFormula.h"
#include "plotwerk/formula/evaluationTime.h"
#include "plotwerk/formula/formula.h"
#include "plotwerk/model/curves.h"
#include "plotwerk/model/errorColumns.h"
#include "plotwerk/model/structure.h"

#include <cmath>
#include <unordered_map>
#include <utility>
#include <vector>

namespace plotwerk {

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

// A formula as it is for a curve.
struct Compiled {
    Formula formula;
    std::vector<double> parameters;
};

using ErrorsOfTables = std::unordered_map<const Table *, ErrorColumns>;

} // namespace

static Compiled compiledFor(const Document &document, const CurveRef &curve) {
    Formula formula = formulaFor(document, curve);
    std::vector<double> parameters = valuesOf(parametersFor(document, formula));
    return {std::move(formula), std::move(parameters)};
}

// The formula for each of the curves, or one for all where it knows no names of columns.
static std::vector<Compiled> compiledFor(const Document &document,
                                         const std::vector<CurveRef> &curves) {
    std::vector<Compiled> all;
    all.push_back(compiledFor(document, curves.front()));
    if (!document.frame.multiDimFit) return all;
    const auto count = static_cast<double>(curves.size());
    const auto size = static_cast<double>(all[0].formula.tape().instructions.size());
    const auto names = static_cast<double>(all[0].parameters.size());
    double time = 2 * count * names * names;
    for (const CurveRef &curve : curves) time += compilingTime(document, curve);
    requireTime(time);
    requireMemory(count * 60 * size);
    while (all.size() < curves.size()) all.push_back(compiledFor(document, curves[all.size()]));
    return all;
}

static Modified modified(Document &document, const CurveRef &curve, const Compiled &compiled,
                         ErrorsOfTables &errorsOfTables) {
    const auto &[formula, parameters] = compiled;
    Table &table = tableOf(document, curve);
    Modified result{validPoints(table, columnOf(document, curve)), {}, nullptr, nullptr, {}, {}};
    const ValidPoints &points = result.points;
    std::vector<std::vector<double>> columns;
    for (const int k : formula.columns()) columns.push_back(atRows(table.y[k].values, points.row));
    const Inputs inputs{points.x, points.y, {columns.begin(), columns.end()}};
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

static double nanosecondsPerRow(const Formula &formula) {
    const EvaluationTime time = evaluationTime<double>(formula.tape());
    const double copying = 40 + 5 * static_cast<double>(formula.columns().size());
    return copying + time.values + (formula.usesY() ? time.values + time.derivatives : 0);
}

void modifySelection(Document &document, bool yData) {
    std::vector<CurveRef> curves = requireSelection(document);
    if (!yData) curves = firstOfEachTable(curves);
    requireFormula(document);
    const std::vector<Compiled> compiled = compiledFor(document, curves);
    const auto compiledAt = [&](std::size_t i) -> const Compiled & {
        return compiled[compiled.size() == 1 ? 0 : i];
    };
    constexpr double begun = 60; // for an instruction: what each curve begins with
    double time = 0;
    double rows = 0;
    for (std::size_t i = 0; i < curves.size(); ++i) {
        const Formula &formula = compiledAt(i).formula;
        const int rowsOfCurve = rowsOf(tableOf(document, curves[i]));
        rows += rowsOfCurve;
        time += rowsOfCurve * nanosecondsPerRow(formula);
        time += begun * static_cast<double>(formula.tape().instructions.size());
    }
    requireTime(time);
    requireMemory(5.5 * sizeof(double) * rows);

    ErrorsOfTables errors;
    std::vector<Modified> all;
    for (std::size_t i = 0; i < curves.size(); ++i) {
        all.push_back(modified(document, curves[i], compiledAt(i), errors));
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

} // namespace plotwerk
