#include "plotwerk/fit/fitVariables.h"

#include "plotwerk/model/fitResult.h"
#include "plotwerk/model/parameterText.h"

#include <boost/math/special_functions/gamma.hpp>

#include <algorithm>
#include <cmath>
#include <cstdio>

namespace plotwerk {

static constexpr double strongCorrelation = 0.9; // from here on errors alone mislead

static double reducedChiSquare(const FitResult &fit) {
    return fit.freedom > 0 ? fit.chiSquare / fit.freedom : unset;
}

static double correlationOf(const FitResult &fit, int i, int j) {
    return covarianceOf(fit, i, j) / std::sqrt(covarianceOf(fit, i, i) * covarianceOf(fit, j, j));
}

// The probability that scatter alone makes chi-square as large.
static double pValue(const FitResult &fit) {
    if (!fit.weighted || fit.freedom < 1 || !std::isfinite(fit.chiSquare)) return unset;
    using namespace boost::math::policies;
    using Quiet = policy<overflow_error<ignore_error>, evaluation_error<ignore_error>>;
    return boost::math::gamma_q(0.5 * fit.freedom, 0.5 * fit.chiSquare, Quiet());
}

// Number of a varied parameter by its name; -1 for others.
static int numberOf(const FitResult &fit, std::string_view name) {
    for (int k = 0; const int j : variedParameters(fit)) {
        if (fit.parameters[j].name == name) return k;
        ++k;
    }
    return -1;
}

static bool isParameter(const FitResult &fit, std::string_view name) {
    return std::ranges::find(fit.parameters, name, &FitParameter::name) != fit.parameters.end();
}

namespace {

struct PairVariable {
    std::string_view prefix;
    double (*value)(const FitResult &, int, int);
};

} // namespace

static constexpr PairVariable pairVariables[] = {{"covariance.", covarianceOf},
                                                 {"correlation.", correlationOf}};

// Of a pair of names "A.B": no name has a point in it.
static std::optional<std::string> ofPair(const FitResult &fit, std::string_view pair,
                                         double (*value)(const FitResult &, int, int)) {
    const std::size_t point = std::min(pair.find('.'), pair.size());
    const std::string_view a = pair.substr(0, point);
    const std::string_view b = pair.substr(std::min(point + 1, pair.size()));
    if (!isParameter(fit, a) || !isParameter(fit, b)) return std::nullopt;
    const int i = numberOf(fit, a);
    const int j = numberOf(fit, b);
    return allDigits(i < 0 || j < 0 ? unset : value(fit, i, j));
}

std::optional<std::string> fitVariable(std::string_view name,
                                       const std::vector<FitParameter> &parameters,
                                       const FitResult &result) {
    const auto parameter = [&](std::string_view called) {
        return std::ranges::find(parameters, called, &FitParameter::name);
    };
    if (const auto found = parameter(name); found != parameters.end())
        return allDigits(found->value);
    constexpr std::string_view suffix = ".error";
    if (name.ends_with(suffix)) {
        const auto found = parameter(name.substr(0, name.size() - suffix.size()));
        if (found != parameters.end()) return allDigits(found->error);
    }

    const FitResult none;
    const FitResult &fit = result.done ? result : none;
    if (name == "chiq") return allDigits(fit.chiSquare);
    if (name == "lambda") return allDigits(fit.lambda);
    if (name == "iterations") return std::to_string(fit.iterations);
    if (name == "points") return std::to_string(fit.points);
    if (name == "ndf") return fit.done ? std::to_string(fit.freedom) : allDigits(unset);
    if (name == "redchi") return allDigits(reducedChiSquare(fit));
    if (name == "rsquared") return allDigits(fit.rSquared);
    if (name == "report") return fitReport(fit);
    for (const auto &[prefix, value] : pairVariables)
        if (name.starts_with(prefix)) return ofPair(fit, name.substr(prefix.size()), value);
    return std::nullopt;
}

static std::string shown(const char *format, double value) {
    char text[40];
    std::snprintf(text, sizeof text, format, value);
    return text;
}

static std::string parameterLine(const FitParameter &parameter) {
    std::string line = valueText(parameter, '.');
    if (parameter.fixed) return line + " (fixed)";
    if (parameter.atBound) return line + " (at its bound)";
    if (std::isnan(parameter.error)) return line + " (error unknown)";
    if (parameter.value != 0) {
        const double percent = 100 * std::abs(parameter.error / parameter.value);
        line += shown(percent < 99.5 ? " (%.2g %%)" : " (%.0f %%)", percent);
    }
    return line;
}

std::string fitReport(const FitResult &fit) {
    if (!fit.done) return "no fit";
    std::string report = "formula: ";
    for (const char c : fit.formula) report += c == '\n' ? "; " : std::string(1, c);
    report += "\npoints: " + std::to_string(fit.points);
    if (const std::string leftOut = leftOutOf(fit); !leftOut.empty())
        report += "\nleft out: " + leftOut;
    report += "\ndegrees of freedom: " + std::to_string(fit.freedom) +
              "\nchi-square: " + shown("%.6g", fit.chiSquare);
    if (fit.freedom > 0) report += "\nreduced chi-square: " + shown("%.6g", reducedChiSquare(fit));
    const double p = pValue(fit);
    report += "\np value: ";
    constexpr double least = 1e-300; // below that digits are lost, at last all of them
    if (p < least)
        report += "< 1e-300";
    else if (p == p)
        report += shown("%.3g", p);
    else
        report += fit.weighted ? "unknown without degrees of freedom"
                               : "unknown without errors of the data";
    report += "\nR-squared: " + shown("%.6g", fit.rSquared);
    report += "\nerrors of the parameters: ";
    report += fit.absoluteErrors ? "from the errors of the data (absolute)"
                                 : "scaled by the scatter of the data";
    for (const FitParameter &parameter : fit.parameters) report += '\n' + parameterLine(parameter);

    const std::vector<int> varied = variedParameters(fit);
    for (int i = 1; i < std::ssize(varied); ++i)
        for (int j = 0; j < i; ++j) {
            const double correlation = correlationOf(fit, i, j);
            if (std::abs(correlation) > strongCorrelation)
                report += "\ncorrelation of " + fit.parameters[varied[j]].name + " and " +
                          fit.parameters[varied[i]].name + ": " + shown("%.3f", correlation);
        }
    return report;
}

} // namespace plotwerk
