#include "plotwerk/fit/fit.h"

#include "plotwerk/fit/levenbergMarquardt.h"
#include "plotwerk/formula/evaluationTime.h"
#include "plotwerk/model/curves.h"
#include "plotwerk/model/fitResult.h"
#include "plotwerk/model/limits.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace plotwerk {

namespace {

enum class Part { taken, outside, withoutError, withoutValue };

} // namespace

// What becomes of a row in a fit.
static Part partOf(const FitData &data, std::size_t i) {
    const double x = data.x[i];
    const bool isEmpty = std::isnan(x) && std::isnan(data.y[i]); // other columns are longer
    if (isEmpty || x < data.range.min || x > data.range.max)     // false for unset limits
        return Part::outside;
    const auto isFinite = [&](const auto &column) { return std::isfinite(column[i]); };
    if (!std::isfinite(x) || !isFinite(data.y) || !std::ranges::all_of(data.columns, isFinite))
        return Part::withoutValue;
    if (!data.errors.empty() && (!(data.errors[i] > 0) || !isFinite(data.errors)))
        return Part::withoutError;
    return Part::taken;
}

std::vector<int> rowsOfFit(const FitData &data) {
    std::vector<int> rows;
    for (std::size_t i = 0; i < data.x.size(); ++i)
        if (partOf(data, i) == Part::taken) rows.push_back(static_cast<int>(i));
    return rows;
}

static void countLeftOut(const FitData &data, FitResult &result) {
    for (std::size_t i = 0; i < data.x.size(); ++i) {
        const Part part = partOf(data, i);
        result.withoutError += part == Part::withoutError;
        result.withoutValue += part == Part::withoutValue;
    }
}

static FitPoints pointsOf(const FitData &data) {
    const std::vector<int> rows = rowsOfFit(data);
    FitPoints points{atRows(data.x, rows), atRows(data.y, rows), {}, {}};
    for (const auto &column : data.columns) points.columns.push_back(atRows(column, rows));
    if (!data.errors.empty()) points.weight = atRows(data.errors, rows);
    for (double &weight : points.weight) weight = 1 / weight;
    return points;
}

// The weighted sum of squares about the data's weighted mean. NaN for data without any scatter.
static double scatterOf(const FitPoints &points) {
    const auto weightOf = [&](std::size_t i) {
        return points.weight.empty() ? 1 : points.weight[i] * points.weight[i];
    };
    double weights = 0;
    double mean = 0;
    for (std::size_t i = 0; i < points.y.size(); ++i) {
        weights += weightOf(i);
        mean += weightOf(i) / weights * (points.y[i] - mean);
    }
    double scatter = 0;
    for (std::size_t i = 0; i < points.y.size(); ++i)
        scatter += weightOf(i) * (points.y[i] - mean) * (points.y[i] - mean);
    return scatter > 0 ? scatter : unset;
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

// Why the fit can't even begin; empty when it can.
static std::string obstacle(const Formula &formula, const FitPoints &points, std::size_t free,
                            const std::vector<FitParameter> &parameters, bool weighted) {
    const std::size_t n = points.x.size();
    if (formula.usesY()) return "a formula that is fitted may not use y, which it is to give";
    if (n == 0)
        return weighted ? "no data with an error above 0 in the fit range; widen it, or check the "
                          "column of errors"
                        : "no data in the fit range; widen it";
    if (n < free)
        return std::to_string(free) + " parameters for only " + std::to_string(n) +
               (n == 1 ? " point" : " points") +
               "; hold some fixed (a = 1!), or widen the fit range";
    if (free > mostVaried)
        return std::to_string(free) + " free parameters, which is more than " +
               std::to_string(mostVaried) + "; hold some fixed (a = 1!)";
    for (const FitParameter &parameter : parameters)
        if (!std::isfinite(parameter.value))
            return "parameter " + parameter.name + " has no value; set one";
    return "";
}

// Where the formula or its derivatives fail at the start.
static std::string failingPoint(const Formula &formula, const FitPoints &points,
                                const std::vector<double> &values) {
    std::vector<double> f(points.x.size());
    formula.evaluate(points.inputs(), values, f);
    for (std::size_t i = 0; i < f.size(); ++i) {
        if (std::isfinite(f[i])) continue;
        char text[80];
        std::snprintf(text, sizeof text, "the formula has no finite value at x = %.15g",
                      points.x[i]);
        return text;
    }
    return "the formula's derivatives or the residuals have no finite value at the start";
}

// In nanoseconds: rows are chosen and copied, and the residuals take the formula at each.
static double timeBesideSteps(const Formula &formula, std::size_t rows) {
    return static_cast<double>(rows) * (100 + 2 * evaluationTime<double>(formula.tape()).values);
}

// What the status means, and what a user can do about it.
static std::string explained(FitStatus status, const std::string &why) {
    switch (status) {
    case fitWithoutValue:
        return "fit status 2, no start: " + why +
               "; try other first values, bounds (a = 1 [0, 5]) or another fit range";
    case fitUndetermined:
        return "fit status 3, undetermined: " + why +
               "; hold one of them fixed (a = 1!) or simplify the formula";
    case fitNotConverged:
        return "fit status 4, not converged: " + why +
               "; try first values closer to the data, bounds (a = 1 [0, 5]), or a fixed "
               "parameter (a = 1!)";
    default: return "fit status 1, impossible: " + why;
    }
}

FitOutcome fit(const Formula &formula, const FitData &data, std::vector<FitParameter> &parameters,
               double seconds, const FitRunner &run) {
    FitProgress progress;
    FitWork work(seconds * 1e9, progress);
    const FitPoints points = pointsOf(data);
    std::vector<double> values;
    std::vector<int> free;
    std::vector<double> start;
    std::vector<Range> bounds;
    for (int j = 0; const FitParameter &parameter : parameters) {
        values.push_back(parameter.value);
        if (!parameter.fixed) {
            free.push_back(j);
            start.push_back(parameter.value);
            bounds.push_back(parameter.bounds);
        }
        ++j;
    }

    FitOutcome outcome;
    const auto failed = [&](FitStatus status, const std::string &why) {
        outcome.status = status;
        outcome.reason = explained(status, why);
        if (const std::string leftOut = leftOutOf(outcome.result); !leftOut.empty())
            outcome.reason += " (left out: " + leftOut + ')';
        return outcome;
    };
    outcome.result.points = static_cast<int>(points.x.size());
    if (points.x.size() < data.x.size()) countLeftOut(data, outcome.result);
    const std::string reason =
        obstacle(formula, points, free.size(), parameters, !data.errors.empty());
    if (!reason.empty()) return failed(fitImpossible, reason);

    Residuals<double> residuals(formula, points, values, free, work);
    Residuals<long double> extended(formula, points, values, free, work);
    Minimum minimum;
    const auto solve = [&] { minimum = minimise(residuals, extended, start, bounds); };
    try {
        work.take(timeBesideSteps(formula, data.x.size()));
        run ? run(progress, solve) : solve();
    } catch (const FitCancelled &) {
        outcome.status = fitNotConverged;
        outcome.reason = "fit status 4, cancelled";
        return outcome;
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

    for (FitParameter &parameter : parameters) {
        parameter.error = unset;
        parameter.atBound = false;
    }
    int varied = 0;
    for (std::size_t k = 0; k < free.size(); ++k) {
        parameters[free[k]].value = minimum.b[k];
        parameters[free[k]].atBound = minimum.atBound[k];
        varied += !minimum.atBound[k];
    }
    FitResult &result = outcome.result;
    result.done = true;
    result.chiSquare = minimum.chiSquare;
    result.weighted = !data.errors.empty();
    result.absoluteErrors = result.weighted && data.absoluteErrors;
    result.freedom = result.points - varied;
    result.rSquared = 1 - minimum.chiSquare / scatterOf(points);
    if (result.freedom > 0 || result.absoluteErrors) {
        const double variance =
            result.absoluteErrors ? 1 : minimum.chiSquare / static_cast<double>(result.freedom);
        result.covariance.values = std::move(minimum.covariance);
        for (double &each : result.covariance.values) each *= variance;
    }
    result.parameters = parameters;
    for (int k = 0; const int j : variedParameters(result)) {
        parameters[j].error = std::sqrt(covarianceOf(result, k, k));
        ++k;
    }
    result.parameters = parameters;
    return outcome;
}

} // namespace plotwerk
