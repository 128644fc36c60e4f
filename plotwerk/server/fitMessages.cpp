// The messages about variables, the formula and the fit.
#include "plotwerk/model/ranges.h"
#include "plotwerk/refusal.h"
#include "plotwerk/server/controlObject.h"

#include <charconv>
#include <cmath>

namespace plotwerk {

std::tuple<int32_t, int32_t, double, double>
ControlObject::startFitOf_iterations_lambda_chiq_(const std::string &) {
    refuseUnsupported("startFitOf:iterations:lambda:chiq:");
}

// All digits that the number carries.
static std::string textOf(double value) {
    if (std::isnan(value)) return "NAN";
    char text[32];
    const auto end = std::to_chars(std::begin(text), std::end(text), value).ptr;
    return {text, end};
}

static std::string variableOf(const Document &document, const std::string &name) {
    static constexpr struct {
        const char *min, *max;
        AxisCode axis;
    } axes[] = {{"xmin", "xmax", xAxis},
                {"ymin", "ymax", yAxis},
                {"x2min", "x2max", upperXAxis},
                {"y2min", "y2max", rightYAxis}};
    for (const auto &row : axes) {
        if (name == row.min) return textOf(rangeOf(document, row.axis).min);
        if (name == row.max) return textOf(rangeOf(document, row.axis).max);
    }
    if (name == "fitmin") return textOf(fitRangeOf(document).min);
    if (name == "fitmax") return textOf(fitRangeOf(document).max);
    throw Refusal("no variable \"" + name + '"');
}

// lastError belongs to the application: it can be asked for under the name of any document, also of
// one that isn't there.
std::string ControlObject::getVarOf_varName_(const std::string &name, const std::string &variable) {
    std::string text;
    attempt("getVarOf:varName:", [&] {
        text = variable == "lastError" ? application.lastError
                                       : variableOf(application.document(name), variable);
    });
    return text;
}

std::string ControlObject::formulaTextOf_(const std::string &) {
    refuseUnsupported("formulaTextOf:");
}

void ControlObject::setFormulaOf_formulaText_(const std::string &, const std::string &) {
    refuseUnsupported("setFormulaOf:formulaText:");
}

std::string ControlObject::formulaParameterListOf_(const std::string &) {
    refuseUnsupported("formulaParameterListOf:");
}

void ControlObject::readFormulaParameterOf_parameterList_(const std::string &,
                                                          const std::string &) {
    refuseUnsupported("readFormulaParameterOf:parameterList:");
}

} // namespace plotwerk
