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

std::string parameterList(const std::vector<FitParameter> &parameters, char decimalSeparator) {
    const auto localized = [&](std::string number) {
        std::ranges::replace(number, '.', decimalSeparator);
        return number;
    };
    std::string list;
    for (const FitParameter &parameter : parameters) {
        if (!list.empty()) list += '\n';
        list += parameter.name + " = ";
        if (parameter.error > 0 && std::isfinite(parameter.error)) {
            list +=
                localized(plw::stringOfDoubleConsideringError(parameter.value, parameter.error, 0));
            list += " +- ";
            list +=
                localized(plw::stringOfDoubleConsideringError(parameter.value, parameter.error, 1));
        } else {
            list += localized(allDigits(parameter.value));
        }
        if (parameter.fixed) list += " !";
    }
    return list;
}

} // namespace plotwerk
