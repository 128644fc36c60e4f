#include "plotwerk/model/fitResult.h"

#include <boost/math/distributions/students_t.hpp>

#include <algorithm>
#include <cstddef>

namespace plotwerk {

std::vector<int> variedParameters(const FitResult &fit) {
    std::vector<int> varied;
    for (int j = 0; const FitParameter &parameter : fit.parameters) {
        if (!parameter.fixed && !parameter.atBound) varied.push_back(j);
        ++j;
    }
    return varied;
}

double covarianceOf(const FitResult &fit, int i, int j) {
    const auto row = static_cast<std::size_t>(std::max(i, j));
    const std::size_t at = row * (row + 1) / 2 + static_cast<std::size_t>(std::min(i, j));
    return at < fit.covariance.values.size() ? fit.covariance.values[at] : unset;
}

std::string leftOutOf(const FitResult &fit) {
    std::string text;
    const auto add = [&](int count, const char *without) {
        if (count == 0) return;
        if (!text.empty()) text += ", ";
        text += std::to_string(count) + (count == 1 ? " point" : " points") + " without " + without;
    };
    add(fit.withoutError, "an error above 0");
    add(fit.withoutValue, "a finite value");
    return text;
}

double factorOf95Percent(const FitResult &fit) {
    if (fit.absoluteErrors) return 1.959963984540054;
    if (fit.freedom < 1) return unset;
    return boost::math::quantile(boost::math::students_t(fit.freedom), 0.975);
}

} // namespace plotwerk
