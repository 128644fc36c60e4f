#include "plotwerk/fit/documentVariables.h"

#include "plotwerk/base/refusal.h"
#include "plotwerk/fit/fit.h"
#include "plotwerk/fit/fitVariables.h"
#include "plotwerk/model/parameterText.h"
#include "plotwerk/model/ranges.h"

#include <optional>

namespace plotwerk {

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
