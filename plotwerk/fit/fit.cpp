#include "plotwerk/fit/fit.h"

#include "plotwerk/fit/levenbergMarquardt.h"

#include <cmath>

namespace plotwerk {

static FitPoints pointsOf(const FitData &data) {
    FitPoints points;
    for (std::size_t i = 0; i < data.x.size(); i++) {
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
    for (std::size_t k = 0; k < names.size(); k++) {
        if (k > 0) list += k + 1 < names.size() ? ", " : " and ";
        list += names[k];
    }
    return list;
}

// Why a fit of that many points can't even begin; empty when it can.
static std::string obstacle(const Formula &formula, std::size_t points, std::size_t free,
                            const std::vector<FitParameter> &parameters) {
    if (formula.usesY()) return "a formula that is fitted may not use y";
    if (points == 0) return "no data in the fit range";
    if (points < free)
        return std::to_string(free) + " parameters for only " + std::to_string(points) +
               (points == 1 ? " point" : " points");
    for (const FitParameter &parameter : parameters)
        if (!std::isfinite(parameter.value)) return "parameter " + parameter.name + " has no value";
    return "";
}

// Where the formula or its derivatives fail at the start.
static std::string failingPoint(const Formula &formula, const FitPoints &points,
                                const std::vector<double> &values) {
    std::vector<double> f(points.x.size());
    formula.evaluate(points.x, {}, values, f);
    for (std::size_t i = 0; i < f.size(); i++) {
        if (std::isfinite(f[i])) continue;
        char text[80];
        std::snprintf(text, sizeof text, "the formula has no finite value at x = %.15g",
                      points.x[i]);
        return text;
    }
    return "the formula's derivatives or the residuals have no finite value at the start";
}

FitOutcome fit(const Formula &formula, const FitData &data, std::vector<FitParameter> &parameters,
               std::chrono::seconds limit) {
    const FitDeadline deadline = std::chrono::steady_clock::now() + limit;
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
        j++;
    }

    FitOutcome outcome;
    outcome.result.points = static_cast<int>(points.x.size());
    outcome.reason = obstacle(formula, points.x.size(), free.size(), parameters);
    if (!outcome.reason.empty()) {
        outcome.status = fitImpossible;
        return outcome;
    }

    Residuals<double> residuals(formula, points, values, free, deadline);
    Residuals<long double> extended(formula, points, values, free, deadline);
    Minimum minimum;
    try {
        minimum = minimise(residuals, extended, start);
    } catch (const FitTooLong &) {
        outcome.status = fitNotConverged;
        outcome.reason = "no minimum found within " + std::to_string(limit.count()) + " seconds";
        return outcome;
    }
    outcome.result.iterations = minimum.iterations;
    outcome.result.lambda = minimum.lambda;

    switch (minimum.ending) {
    case Ending::minimum: break;
    case Ending::noStart:
        outcome.status = fitWithoutValue;
        outcome.reason = failingPoint(formula, points, values);
        return outcome;
    case Ending::undetermined: {
        std::vector<std::string> names;
        for (int k : minimum.vague) names.push_back(parameters[free[k]].name);
        outcome.status = fitUndetermined;
        outcome.reason = "the data do not determine " + listed(names) +
                         (names.size() > 1 ? " independently" : "");
        return outcome;
    }
    case Ending::notFound:
        outcome.status = fitNotConverged;
        outcome.reason = "no minimum found after " + std::to_string(minimum.iterations) + " steps";
        return outcome;
    }

    outcome.result.done = true;
    outcome.result.chiSquare = minimum.chiSquare;
    const auto freedom = static_cast<double>(points.x.size() - free.size());
    for (FitParameter &parameter : parameters) parameter.error = unset;
    for (std::size_t k = 0; k < free.size(); k++) {
        parameters[free[k]].value = minimum.b[k];
        if (freedom > 0)
            parameters[free[k]].error =
                minimum.deviations[k] * std::sqrt(minimum.chiSquare / freedom);
    }
    return outcome;
}

} // namespace plotwerk
