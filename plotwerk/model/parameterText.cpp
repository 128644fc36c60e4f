#include "plotwerk/model/parameterText.h"

#include "util/number/format.h"

#include <algorithm>
#include <charconv>
#include <cmath>

namespace plotwerk {

std::string allDigits(double value) {
    if (std::isnan(value)) return "NAN";
    char text[40];
    const auto [end, error] = std::to_chars(text, text + sizeof text, value);
    return {text, end};
}

static std::string localized(std::string number, char decimalSeparator) {
    std::ranges::replace(number, '.', decimalSeparator);
    return number;
}

std::string valueText(const FitParameter &parameter, char decimalSeparator) {
    const double value = parameter.value;
    const double error = parameter.error;
    if (!(error > 0) || !std::isfinite(error))
        return parameter.name + " = " + localized(allDigits(value), decimalSeparator);
    const auto rounded = [&](int ofError) {
        return localized(plw::stringOfDoubleConsideringError(value, error, ofError),
                         decimalSeparator);
    };
    return parameter.name + " = " + rounded(0) + " +- " + rounded(1);
}

std::string parameterList(const std::vector<FitParameter> &parameters, char decimalSeparator) {
    const auto limit = [&](double value) {
        return std::isnan(value) ? "" : localized(allDigits(value), decimalSeparator);
    };
    std::string list;
    for (const FitParameter &parameter : parameters) {
        if (!list.empty()) list += '\n';
        list += valueText(parameter, decimalSeparator);
        // not by a comma, which may be a decimal one
        const std::string least = limit(parameter.bounds.min);
        const std::string most = limit(parameter.bounds.max);
        if (!least.empty() || !most.empty())
            list.append(" [").append(least).append(most.empty() ? ";" : "; ").append(most) += ']';
        if (parameter.atBound) list += " |";
        if (parameter.fixed) list += " !";
    }
    return list;
}

} // namespace plotwerk
