#include "plotwerk/fit/documentFit.h"

#include "plotwerk/base/bounds.h"
#include "plotwerk/base/log.h"
#include "plotwerk/base/refusal.h"
#include "plotwerk/fit/documentFormula.h"
#include "plotwerk/fit/fitCurves.h"
#include "plotwerk/model/curves.h"
#include "plotwerk/model/errorColumns.h"
#include "plotwerk/model/fitResult.h"

#include <utility>

namespace plotwerk {

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

FitOutcome fitDocument(Document &document, const FitRunner &run) {
    document.fitStatus = fitImpossible; // where the fit is refused
    requireFormula(document);
    const auto fitted = curveToFit(document);
    if (!fitted) throw Refusal("no curve is fit data or selected");
    const Formula formula = formulaFor(document, *fitted);
    std::vector<FitParameter> parameters = parametersFor(document, formula);
    const double bytes = sizeof(double) * rowsOf(tableOf(document, *fitted));
    requireRoom(3 * bytes); // for the residuals
    requireMemory((9.5 + 2.0 * static_cast<double>(formula.columns().size())) * bytes);
    std::vector<double> means;
    const FitData data = dataOf(document, *fitted, formula, means);
    FitOutcome outcome = fit(formula, data, parameters, mostSeconds(), run);
    document.fitStatus = outcome.status;
    if (outcome.status != fitConverged) return outcome;

    if (const std::string leftOut = leftOutOf(outcome.result); !leftOut.empty())
        log(LogLevel::warning, '"' + document.name + "\": the fit left out " + leftOut);
    showFit(fitTables(document, *fitted, data, formula, valuesOf(parameters)), *fitted, document);
    outcome.result.formula = document.formula;
    document.parameters = std::move(parameters);
    document.fit = outcome.result;
    return outcome;
}

} // namespace plotwerk
