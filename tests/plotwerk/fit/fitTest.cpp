#include "plotwerk/fit/fit.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <future>
#include <string>
#include <tuple>
#include <vector>

using namespace plotwerk;

namespace {

using Numbers = std::vector<double>;

std::vector<FitParameter> ones(const Formula &formula) {
    std::vector<FitParameter> parameters;
    for (const std::string &name : formula.parameterNames()) parameters.push_back({name});
    return parameters;
}

struct Fitted : FitOutcome {
    std::vector<FitParameter> parameters;
};

// From these values of the parameters, or from ones.
Fitted fitted(const char *text, const FitData &data, std::vector<FitParameter> parameters = {}) {
    const Formula formula(text);
    if (parameters.empty()) parameters = ones(formula);
    FitOutcome outcome = fit(formula, data, parameters);
    return {std::move(outcome), std::move(parameters)};
}

// Data with scatter, near 2 + 3 x.
const Numbers x{0, 1, 2, 3, 4, 5};
const Numbers y{2.1, 4.8, 8.2, 10.9, 14.1, 16.9};

} // namespace

TEST(Fit, ErrorsWeighAndTheirCommonFactorDoesNot) {
    const Numbers values{1, 2, 7}, at{0, 0, 0};
    for (double unit : {1.0, 100.0}) {
        const Numbers errors{unit, unit, 2 * unit};
        const Fitted outcome = fitted("m", {at, values, errors, {}});
        ASSERT_EQ(outcome.status, fitConverged) << outcome.reason;
        // weights 1, 1, 1/4: mean 4.75 / 2.25, chi-square over 2 degrees of freedom
        const double mean = 4.75 / 2.25;
        const double chiSquare = 1 + 4 + 49 / 4. - 2.25 * mean * mean;
        EXPECT_NEAR(outcome.parameters[0].value, mean, 1e-14);
        // a damped step leaves lambda / (1 + lambda) of the way, with 1/5, 1/45 and 1/405 in turn
        EXPECT_NEAR(outcome.result.lambda, 1 / 405., 1e-15);
        EXPECT_EQ(outcome.result.iterations, 4) << "and an undamped one";
        EXPECT_TRUE(outcome.result.done);
        EXPECT_NEAR(outcome.result.chiSquare * unit * unit, chiSquare, 1e-14);
        EXPECT_NEAR(outcome.parameters[0].error, std::sqrt(chiSquare / 2 / 2.25), 1e-14);

        const Fitted absolute = fitted("m", {at, values, errors, {}, true});
        EXPECT_NEAR(absolute.parameters[0].error, unit * std::sqrt(1 / 2.25), 1e-12);
        EXPECT_TRUE(absolute.result.absoluteErrors);
    }
    const Numbers one{5}, its{0.5};
    EXPECT_EQ(fitted("m", {one, one, its, {}, true}).parameters[0].error, 0.5)
        << "also without a degree of freedom";
    const Fitted without = fitted("m", {at, values, {}, {}, true});
    EXPECT_FALSE(without.result.absoluteErrors) << "there are none";
    EXPECT_NEAR(without.parameters[0].error, std::sqrt(62 / 3. / 2 / 3), 1e-14);
}

TEST(Fit, TakesTheValidPointsOfTheRange) {
    const Numbers at{0, 1, 2, 3, NAN, 5, 6, 7, 8, 9, 4};
    const Numbers values{50, 1, 3, NAN, 60, INFINITY, 5, 7, 9, 70, 11};
    const Numbers errors{1, 1, 1, 1, 1, 1, 0, -1, NAN, 1, INFINITY};
    const std::tuple<const char *, Numbers, Range, int, double> cases[] = {
        {"limits are inside", {}, {1, 8}, 6, 6},
        {"no upper limit", {}, {2, unset}, 6, (3 + 5 + 7 + 9 + 70 + 11) / 6.0},
        {"only points with a finite error above 0", errors, {1, 8}, 2, 2}};
    for (const auto &[what, weights, range, points, mean] : cases) {
        const Fitted outcome = fitted("m", {at, values, weights, range});
        ASSERT_EQ(outcome.status, fitConverged) << what << outcome.reason;
        EXPECT_EQ(outcome.result.points, points) << what;
        EXPECT_NEAR(outcome.parameters[0].value, mean, 1e-14) << what;
    }
}

TEST(Fit, HoldsFixedParameters) {
    const char *const text = "a + b*x + 0*n + if(x<0, x^n, 0)";
    std::vector<FitParameter> parameters = ones(Formula(text));
    parameters[0] = {"a", 2, 0.5, true};
    parameters[0].atBound = true; // of an earlier fit
    parameters[2].fixed = true;
    const Fitted outcome = fitted(text, {x, y, {}, {}}, parameters);
    ASSERT_EQ(outcome.status, fitConverged) << outcome.reason;
    const FitParameter &held = outcome.parameters[0];
    EXPECT_TRUE(held.value == 2 && std::isnan(held.error) && !held.atBound);
    // slope through (0, 2): sum x (y - 2) / sum x^2
    EXPECT_NEAR(outcome.parameters[1].value, (2.8 + 12.4 + 26.7 + 48.4 + 74.5) / 55, 1e-14);

    parameters = outcome.parameters;
    parameters[1].fixed = true;
    const Fitted nothing = fitted(text, {x, y, {}, {}}, parameters);
    EXPECT_EQ(nothing.status, fitConverged) << nothing.reason;
    EXPECT_NEAR(nothing.result.chiSquare, outcome.result.chiSquare, 1e-14);
}

// The least of all points of the box, by the certainty that a parabola's least in a box has: no
// parameter can be moved alone, within bounds, to a smaller sum.
TEST(Fit, BoundsHoldAndTheRestIsFittedBesideThem) {
    const Numbers data{9, 7.1, 4.2, 4.1, 2.9, 3.2};
    const struct {
        const char *text;
        std::vector<FitParameter> parameters; // start and bounds
        const char *atBound;                  // of each
        int steps;                            // about: the way there, too, is laid down
    } cases[] = {
        {"a*exp(-b*x)+c", {{"a", 1}, {"b", 1}, {"c", 1, unset, false, {unset, 0}}}, "001", 156},
        {"a*exp(-b*x)+c", {{"a", 1}, {"b", 1}, {"c", 1, unset, false, {0, unset}}}, "000", 25},
        {"a*exp(-b*x)+c",
         {{"a", 1, unset, false, {0, 5}}, {"b", 1, unset, false, {0.3, 9}}, {"c"}},
         "100",
         128},
        {"a+b*x+c*x^2",
         {{"a", 0, unset, false, {0, 3}}, {"b", -4, unset, false, {-5, -1}}, {"c"}},
         "110",
         5},
        {"a+b*x", {{"a", 2, unset, false, {2, 4}}, {"b", 0, unset, false, {0, 1}}}, "11", 1},
        // to the bound of b and away from it again
        {"a/(1+b*x)", {{"a", 30}, {"b", 5, unset, false, {0.1, 5}}}, "00", 17},
        {"a*(1+0*x)", {{"a", 2, unset, false, {1, 3}}}, "1", 1}};
    for (const auto &c : cases) {
        const Formula formula(c.text);
        const Fitted outcome = fitted(c.text, {x, data, {}, {}}, c.parameters);
        const std::vector<FitParameter> &parameters = outcome.parameters;
        const std::string what = std::string(c.text) + ": " + outcome.reason;
        if (outcome.status != fitConverged) {
            ADD_FAILURE() << what;
            continue;
        }
        std::string atBound;
        Numbers values;
        for (const FitParameter &each : parameters) {
            atBound += each.atBound ? '1' : '0';
            values.push_back(each.value);
            EXPECT_EQ(std::isnan(each.error), each.atBound) << what << each.name;
            EXPECT_FALSE(each.value < each.bounds.min || each.value > each.bounds.max) << what;
        }
        EXPECT_EQ(atBound, c.atBound) << what;
        const auto sum = [&](const Numbers &at) {
            Numbers f(x.size());
            formula.evaluate({x}, at, f);
            double total = 0;
            for (std::size_t i = 0; i < f.size(); ++i) total += (f[i] - data[i]) * (f[i] - data[i]);
            return total;
        };
        EXPECT_NEAR(outcome.result.chiSquare, sum(values), 1e-12) << what;
        for (std::size_t j = 0; j < values.size(); ++j)
            for (const double step : {-1e-4, 1e-4}) {
                Numbers moved = values;
                moved[j] += step;
                const Range &bounds = parameters[j].bounds;
                if (moved[j] < bounds.min || moved[j] > bounds.max) continue;
                EXPECT_GT(sum(moved), outcome.result.chiSquare) << what << parameters[j].name;
            }
        EXPECT_NEAR(outcome.result.iterations, c.steps, 1 + c.steps / 20) << what;
        EXPECT_EQ(outcome.result.freedom, 6 - std::ranges::count(atBound, '0')) << what;
    }
}

TEST(Fit, ExactDataGiveTheExactParameters) {
    const std::tuple<const char *, Numbers, Numbers> cases[] = {
        {"a*exp(-b*x) + c", {3, 0.25, 0}, {1, 1, 1}},
        // on the way some steps lead to a < 5, where there is no value at x = 5
        {"b*sqrt(a-x)", {2, 5.0625}, {50, 30}},
        {"a + b*x + c*x^2 + d*x^3 + e*x^4 + f*x^5", {1, 1, 1, 1, 1, 1}, {0, 0, 0, 0, 0, 0}}};
    for (const auto &[text, truth, start] : cases) {
        const Formula formula(text);
        Numbers values(x.size());
        formula.evaluate({x}, truth, values);
        std::vector<FitParameter> parameters = ones(formula);
        for (std::size_t j = 0; j < parameters.size(); ++j) parameters[j].value = start[j];
        const Fitted outcome = fitted(text, {x, values, {}, {}}, parameters);
        ASSERT_EQ(outcome.status, fitConverged) << text << ": " << outcome.reason;
        for (std::size_t j = 0; j < parameters.size(); ++j)
            EXPECT_NEAR(outcome.parameters[j].value, truth[j], 1e-13) << text;
        // six parameters for six points leave nothing to tell the scatter by
        EXPECT_EQ(std::isnan(outcome.parameters[0].error), parameters.size() == 6) << text;
    }
}

TEST(Fit, FailuresSayWhyAndLeaveTheParameters) {
    std::string sum = "0";
    for (int j = 0; j < 501; ++j) sum += "+a" + std::to_string(j) + "*x";
    const Numbers many(501, 1), none(6, 0), huge(6, 1e300);
    const std::string startless =
        "the formula's derivatives or the residuals have no finite value at the start";
    const std::tuple<std::string, FitData, FitStatus, std::string> cases[] = {
        {"a*y", {x, y, {}, {}}, fitImpossible, "a formula that is fitted may not use y"},
        {"a*x", {x, y, {}, {10, 20}}, fitImpossible, "no data in the fit range"},
        {"a*x", {x, y, none, {}}, fitImpossible, "no data with an error above 0 in the fit range"},
        {"a+b*x", {x, y, {}, {5, 9}}, fitImpossible, "2 parameters for only 1 point"},
        {sum, {many, many, {}, {}}, fitImpossible, "501 free parameters, which is more than 500"},
        {"sqrt(a-x)", {x, y, {}, {}}, fitWithoutValue, "the formula has no finite value at x = 2"},
        {"a*sqrt(b-1)", {x, y, {}, {}}, fitWithoutValue, startless},
        {"a*x", {x, huge, {}, {}}, fitWithoutValue, startless},
        {"a*(x-x)+b*x", {x, y, {}, {}}, fitUndetermined, "a; hold"},
        {"a*x+b*(x-x)+c*x", {x, y, {}, {}}, fitUndetermined, "a, b and c independently"},
        {"a*exp(b)+c*x", {x, y, {}, {}}, fitUndetermined, "a and b independently"},
        {"a*b*x+c*d", {x, y, {}, {}}, fitUndetermined, "a, b, c and d independently"},
        {"a*sin(x)^2+b*cos(x)^2+c", {x, y, {}, {}}, fitUndetermined, "a, b and c independently"}};
    const std::string begins[] = {"", "fit status 1, impossible: ", "fit status 2, no start: ",
                                  "fit status 3, undetermined: the data do not determine "};
    for (const auto &[text, data, status, why] : cases) {
        std::vector<FitParameter> parameters = ones(Formula(text));
        parameters[0].error = 0.25;
        const Fitted outcome = fitted(text.c_str(), data, parameters);
        EXPECT_EQ(outcome.status, status) << text;
        EXPECT_TRUE(outcome.reason.starts_with(begins[status] + why)) << outcome.reason;
        EXPECT_FALSE(outcome.result.done) << text;
        for (const FitParameter &each : outcome.parameters) EXPECT_EQ(each.value, 1) << text;
        EXPECT_EQ(outcome.parameters[0].error, 0.25) << text;
    }
    EXPECT_EQ(fitted("a*x", {x, y, {}, {}}, {{"a", unset}}).reason,
              "fit status 1, impossible: parameter a has no value; set one");
}

TEST(Fit, TellsItsStepsInAnotherThreadAndIsCancelledThere) {
    const Formula formula("a*exp(b*x)");
    for (const bool cancels : {false, true}) {
        std::vector<FitParameter> parameters = ones(formula);
        int steps = 0;
        double reached = 0;
        const FitRunner run = [&](FitProgress &progress, const std::function<void()> &solve) {
            EXPECT_TRUE(std::isnan(progress.chiSquare()));
            if (cancels) progress.cancel();
            std::async(std::launch::async, solve).get();
            steps = progress.iterations();
            reached = progress.chiSquare();
        };
        const FitOutcome outcome = fit(formula, {x, y, {}, {}}, parameters, mostSeconds(), run);
        EXPECT_EQ(outcome.reason, cancels ? "fit status 4, cancelled" : "");
        EXPECT_EQ(outcome.status, cancels ? fitNotConverged : fitConverged);
        EXPECT_EQ(parameters[0].value == 1, cancels);
        EXPECT_EQ(outcome.result.iterations, steps);
        EXPECT_TRUE(cancels || outcome.result.chiSquare == reached);
    }
}

// A run over 100,000 points takes 16 to 26 ms, and another is needed to begin.
TEST(Fit, IsGivenUpWhenItsWorkIsUsedUp) {
    const Formula formula("a*sin(b*x+c)+d*exp(-f*x)+g*cos(h*x*x)");
    std::vector<double> data(100'000);
    for (std::size_t i = 0; i < data.size(); ++i) data[i] = static_cast<double>(i);
    std::vector<FitParameter> parameters = ones(formula);
    int steps = -1;
    const FitRunner run = [&](FitProgress &progress, const std::function<void()> &solve) {
        try {
            solve();
        } catch (...) {
            steps = progress.iterations();
            throw;
        }
    };
    const FitOutcome outcome = fit(formula, {data, data, {}, {}}, parameters, 0.1, run);
    EXPECT_EQ(steps, 0);
    EXPECT_EQ(outcome.status, fitNotConverged);
    EXPECT_TRUE(outcome.reason.starts_with("fit status 4, not converged: no minimum found in the "
                                           "time of one message (limit seconds); try "))
        << outcome.reason;
    EXPECT_EQ(parameters[0].value, 1);
}
