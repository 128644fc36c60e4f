#include "plotwerk/fit/fit.h"

#include "plotwerk/fit/levenbergMarquardt.h"

#include <cmath>
#include <utility>

namespace plotwerk {

static FitPoints pointsOf(const FitData &data) {
    FitPoints points;
    for (std::size_t i = 0; i < data.x.size(); ++i) {
        const double x = data.x[i];
        if (!std::isfinite(x) || !std::isfinite(data.y[i])) continue;
        if (x < data.range.min || x > data.range.max) continue; // false for unset limits
        if (!data.errors.empty()) {
            if (!(data.errors[i] > 0) || !std::isfinite(data.errors[i])) continue;
            points.weight.push_back(1 / data.errors[i]);
        }
        points.x.push_back(x);
        points.y.push_back(data.y[i]);
    }
    return points;
}

// Of parameters in a row: `a`, `a and b`, `a, b and c`.
static std::string listed(const std::vector<std::string> &names) {
    std::string list;
    for (std::size_t k = 0; k < names.size(); ++k) {
        if (k > 0) list += k + 1 < names.size() ? ", " : " and ";
        list += names[k];
    }
    return list;
}

// A step costs their third power: most of a second at the limit.
constexpr std::size_t mostFree = 500;

// Why the fit can't even begin; empty when it can.
static std::string obstacle(const Formula &formula, const FitPoints &points, std::size_t free,
                            const std::vector<FitParameter> &parameters, bool weighted) {
    const std::size_t n = points.x.size();
    if (formula.usesY()) return "a formula that is fitted may not use y";
    if (n == 0)
        return weighted ? "no data with an error above 0 in the fit range"
                        : "no data in the fit range";
    if (n < free)
        return std::to_string(free) + " parameters for only " + std::to_string(n) +
               (n == 1 ? " point" : " points");
    if (free > mostFree)
        return std::to_string(free) + " free parameters, which is more than " +
               std::to_string(mostFree);
    for (const FitParameter &parameter : parameters)
        if (!std::isfinite(parameter.value)) return "parameter " + parameter.name + " has no value";
    return "";
}

// Where the formula or its derivatives fail at the start.
static std::string failingPoint(const Formula &formula, const FitPoints &points,
                                const std::vector<double> &values) {
    std::vector<double> f(points.x.size());
    formula.evaluate(points.x, {}, values, f);
    for (std::size_t i = 0; i < f.size(); ++i) {
        if (std::isfinite(f[i])) continue;
        char text[80];
        std::snprintf(text, sizeof text, "the formula has no finite value at x = %.15g",
                      points.x[i]);
        return text;
    }
    return "the formula's derivatives or the residuals have no finite value at the start";
}

FitOutcome fit(const Formula &formula, const FitData &data, std::vector<FitParameter> &parameters,
               double seconds) {
    FitWork work(seconds * 1e9);
    const FitPoints points = pointsOf(data);
    std::vector<double> values;
    std::vector<int> free;
    std::vector<double> start;
    for (int j = 0; const FitParameter &parameter : parameters) {
        values.push_back(parameter.value);
        if (!parameter.fixed) {
            free.push_back(j);
            start.push_back(parameter.value);
        }
        ++j;
    }

    FitOutcome outcome;
    const auto failed = [&](FitStatus status, std::string reason) {
        outcome.status = status;
        outcome.reason = std::move(reason);
        return outcome;
    };
    outcome.result.points = static_cast<int>(points.x.size());
    const std::string reason =
        obstacle(formula, points, free.size(), parameters, !data.errors.empty());
    if (!reason.empty()) return failed(fitImpossible, reason);

    Residuals<double> residuals(formula, points, values, free, work);
    Residuals<long double> extended(formula, points, values, free, work);
    Minimum minimum;
    try {
        minimum = minimise(residuals, extended, start);
    } catch (const FitTooLong &) {
        return failed(fitNotConverged,
                      "no minimum found in the time of one message (limit seconds)");
    }
    outcome.result.iterations = minimum.iterations;
    outcome.result.lambda = minimum.lambda;

    switch (minimum.termination) {
    case Termination::converged: break;
    case Termination::noStart:
        return failed(fitWithoutValue, failingPoint(formula, points, values));
    case Termination::notConverged:
        return failed(fitNotConverged,
                      "no minimum found after " + std::to_string(minimum.iterations) + " steps");
    case Termination::undetermined: {
        std::vector<std::string> names;
        for (int k : minimum.undetermined) names.push_back(parameters[free[k]].name);
        return failed(fitUndetermined, "the data do not determine " + listed(names) +
                                           (names.size() > 1 ? " independently" : ""));
    }
    }

    outcome.result.done = true;
    outcome.result.chiSquare = minimum.chiSquare;
    const auto freedom = static_cast<double>(points.x.size() - free.size());
    for (FitParameter &parameter : parameters) parameter.error = unset;
    for (std::size_t k = 0; k < free.size(); ++k) {
        parameters[free[k]].value = minimum.b[k];
        if (freedom > 0)
            parameters[free[k]].error =
                minimum.deviations[k] * std::sqrt(minimum.chiSquare / freedom);
    }
    return outcome;
}

} // namespace plotwerk
