// The messages about variables, the formula and the fit.
#include "plotwerk/base/refusal.h"
#include "plotwerk/fit/documentFit.h"
#include "plotwerk/fit/documentFormula.h"
#include "plotwerk/fit/documentVariables.h"
#include "plotwerk/model/limits.h"
#include "plotwerk/server/controlObject.h"

namespace plotwerk {

// What a fit that failed found out is answered all the same.
std::tuple<std::int32_t, std::int32_t, double, double>
ControlObject::startFitOf_iterations_lambda_chiq_(const std::string &name) {
    FitOutcome outcome;
    outcome.status = fitImpossible;
    actOn(name, [&](Document &document) {
        outcome = application.fit(document);
        if (outcome.status != fitConverged) throw Refusal(outcome.reason);
    });
    const FitResult &result = outcome.result;
    return {outcome.status, result.iterations, result.lambda, result.chiSquare};
}

// lastError belongs to the application: it can be asked for under the name of any document, also of
// one that isn't there.
std::string ControlObject::getVarOf_varName_(const std::string &name, const std::string &variable) {
    std::string text;
    attempt([&] {
        if (variable == "lastError")
            text = application.lastError;
        else
            workOn(name, [&](const Document &document) {
                std::string value = variableOf(document, variable);
                requireAnswer(value);
                text = std::move(value);
            });
    });
    return text;
}

std::string ControlObject::formulaTextOf_(const std::string &name) {
    return answer(name, std::string(), [](const Document &document) { return document.formula; });
}

void ControlObject::setFormulaOf_formulaText_(const std::string &name, const std::string &text) {
    actOn(name, [&](Document &document) {
        requireLength("a formula", text, longestText);
        setFormula(document, text);
    });
}

std::string ControlObject::formulaParameterListOf_(const std::string &name) {
    return answer(name, std::string(), [&](const Document &document) {
        return parametersOf(document, application.decimalSeparator);
    });
}

void ControlObject::readFormulaParameterOf_parameterList_(const std::string &name,
                                                          const std::string &list) {
    actOn(name, [&](Document &document) {
        requireLength("a list of parameters", list, longestList);
        setParameters(document, list, application.decimalSeparator);
    });
}

} // namespace plotwerk
