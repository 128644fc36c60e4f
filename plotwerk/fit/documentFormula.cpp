#include "plotwerk/fit/documentFormula.h"

#include "plotwerk/base/bounds.h"
#include "plotwerk/base/refusal.h"
#include "plotwerk/fit/parameterList.h"
#include "plotwerk/model/curves.h"
#include "plotwerk/model/names.h"
#include "plotwerk/model/parameterText.h"

#include <algorithm>
#include <utility>

namespace plotwerk {

bool isOfFit(const Column &column) {
    return column.drawnByFit || column.residuals;
}

std::optional<CurveRef> curveToFit(const Document &document) {
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

void requireFormula(const Document &document) {
    if (document.formula.empty()) throw Refusal("no formula");
}

// Every word is looked for among the variables.
static double compilingTimeOf(const std::string &text, const Document &document,
                              const CurveRef &curve) {
    const auto bytes = static_cast<double>(text.size());
    const auto columns = static_cast<double>(tableOf(document, curve).y.size());
    return 1000 + 200 * bytes + (document.frame.multiDimFit ? columns * (30 + 2.5 * bytes) : 0);
}

static Formula compiled(const std::string &text, const Document &document, const CurveRef &curve) {
    requireTime(compilingTimeOf(text, document, curve));
    return Formula(text, variablesFor(document, curve));
}

Formula formulaFor(const Document &document, const CurveRef &curve) {
    return compiled(document.formula, document, curve);
}

double compilingTime(const Document &document, const CurveRef &curve) {
    return compilingTimeOf(document.formula, document, curve);
}

static Formula formulaToFit(const Document &document, const std::string &text) {
    const auto fitted = curveToFit(document);
    return fitted ? compiled(text, document, *fitted) : Formula(text);
}

void setFormula(Document &document, const std::string &text) {
    const Formula formula = formulaToFit(document, text);
    std::string shown = formulaOf(text);
    if (shown == document.formula) return;

    const std::vector<std::string> &names = formula.parameterNames();
    std::ranges::for_each(names, requireName); // as other names that are saved
    std::vector<FitParameter> parameters = parametersNamed(names, document.parameters);
    for (FitParameter &parameter : parameters) {
        parameter.error = unset;
        parameter.atBound = false;
    }
    document.formula = std::move(shown);
    document.parameters = std::move(parameters);
    document.fit.done = false;
}

void changeFrameWithFormula(Document &document, const FrameChange &change) {
    const Frame before = document.frame;
    changeFrame(document, change);
    if (document.frame.multiDimFit == before.multiDimFit || document.formula.empty()) return;
    try {
        const Formula formula = formulaToFit(document, document.formula);
        document.parameters = parametersNamed(formula.parameterNames(), document.parameters);
    } catch (const Refusal &) { // the formula needs columns: what uses it next says so
    } catch (...) {
        document.frame = before;
        throw;
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

std::vector<FitParameter> parametersFor(const Document &document, const Formula &formula) {
    return parametersNamed(formula.parameterNames(), document.parameters);
}

std::vector<double> valuesOf(const std::vector<FitParameter> &parameters) {
    std::vector<double> values(parameters.size());
    std::ranges::transform(parameters, values.begin(), &FitParameter::value);
    return values;
}

} // namespace plotwerk
