#include "plotwerk/drawing/fittedCurve.h"

#include "plotwerk/base/refusal.h"
#include "plotwerk/model/fitResult.h"

#include <algorithm>
#include <cmath>
#include <string>

namespace plotwerk {

// Another machine's functions may differ in the last digits.
static bool isSame(double a, double b) {
    if (std::isnan(a) || std::isinf(a)) return std::isnan(a) ? std::isnan(b) : a == b;
    return std::abs(a - b) <= 1e-9 * std::max(std::abs(a), std::abs(b));
}

std::optional<FittedCurve> FittedCurve::of(const Document &document, const DrawnCurve &curve) {
    const CurveLook &look = curve.column->look;
    const FitResult &fit = document.fit;
    if (!curve.column->drawnByFit || fit.formula.empty() || look.stepped || look.sum > 1)
        return std::nullopt;
    try {
        FittedCurve fitted(Formula(fit.formula), fit);
        const std::vector<std::string> &names = fitted.formula.parameterNames();
        if (fitted.formula.usesY() ||
            !std::ranges::equal(names, fit.parameters, {}, {}, &FitParameter::name))
            return std::nullopt; // it takes columns
        std::vector<double> values(curve.table->x.values.size());
        fitted.formula.evaluate({curve.table->x.values}, fitted.parameters(), values);
        if (!std::ranges::equal(values, curve.column->values, isSame)) return std::nullopt;
        return fitted;
    } catch (const Refusal &) { // columns in quotes
        return std::nullopt;
    }
}

std::vector<double> FittedCurve::parameters() const {
    std::vector<double> values;
    for (const FitParameter &parameter : fit->parameters) values.push_back(parameter.value);
    return values;
}

// Where the curve is drawn: from its least x to its largest, as far as the frame shows them.
static std::vector<double> samplesOf(const DrawnCurve &curve, const ScaledFrame &frame) {
    const Scale &scale = frame.scales[curve.horizontalAxis()];
    double least = unset;
    double most = unset;
    for (const double x : curve.table->x.values) {
        if (!std::isfinite(x) || (scale.logarithmic && x <= 0)) continue;
        least = std::fmin(least, x);
        most = std::fmax(most, x);
    }
    std::vector<double> x;
    if (!(least < most)) return x;
    double from = scale.position(least);
    double to = scale.position(most);
    if (from > to) std::swap(from, to);
    from = std::max(from, 0.0);
    to = std::min(to, scale.length);
    if (!(from < to)) return x;

    const int n = static_cast<int>((to - from) / pathResolution) + 2;
    for (int i = 0; i < n; ++i)
        x.push_back(std::clamp(scale.value(std::lerp(from, to, i / (n - 1.0))), least, most));
    return x;
}

static Path onPaper(const std::vector<double> &x, const std::vector<double> &y,
                    const DrawnCurve &curve, const ScaledFrame &frame) {
    Path path;
    path.reserve(x.size());
    for (std::size_t i = 0; i < x.size(); ++i)
        path.push_back(std::isfinite(y[i])
                           ? frame.at(x[i], y[i], curve.horizontalAxis(), curve.verticalAxis())
                           : pathBreak);
    return path;
}

Path FittedCurve::line(const DrawnCurve &curve, const ScaledFrame &frame) const {
    const std::vector<double> x = samplesOf(curve, frame);
    std::vector<double> y(x.size());
    formula.evaluate({x}, parameters(), y);
    return onPaper(x, y, curve, frame);
}

std::vector<double> FittedCurve::deviations(const std::vector<double> &x) const {
    const std::vector<int> varied = variedParameters(*fit);
    const auto p = static_cast<int>(varied.size());
    std::vector<double> deviations;
    deviations.reserve(x.size());
    Evaluator<double> evaluator(formula.tape());
    evaluator.setParameters(parameters());
    const Inputs inputs{x};
    for (int first = 0; first < std::ssize(x); first += evaluator.blockSize()) {
        const int n = std::min(evaluator.blockSize(), static_cast<int>(std::ssize(x)) - first);
        evaluator.values(inputs, first, n);
        evaluator.differentiate();
        for (int k = 0; k < n; ++k) {
            double variance = 0;
            for (int i = 0; i < p; ++i) {
                const double slope = evaluator.derivative(varied[i])[k];
                double others = 0;
                for (int j = 0; j < i; ++j)
                    others += covarianceOf(*fit, i, j) * evaluator.derivative(varied[j])[k];
                variance += slope * (covarianceOf(*fit, i, i) * slope + 2 * others);
            }
            deviations.push_back(std::sqrt(std::max(variance, 0.0)));
        }
    }
    return deviations;
}

FittedCurve::Band FittedCurve::bandAt(const std::vector<double> &x) const {
    const double factor = factorOf95Percent(*fit);
    if (fit->covariance.values.empty() || std::isnan(factor)) return {};

    Band band;
    band.upper.resize(x.size());
    formula.evaluate({x}, parameters(), band.upper);
    band.lower = band.upper;
    const std::vector<double> deviation = deviations(x);
    for (std::size_t i = 0; i < x.size(); ++i) {
        band.upper[i] += factor * deviation[i];
        band.lower[i] -= factor * deviation[i];
    }
    return band;
}

static void include(double value, bool logarithmic, Range &range) {
    if (!std::isfinite(value) || (logarithmic && value <= 0)) return;
    range = {std::fmin(range.min, value), std::fmax(range.max, value)};
}

static Range rangeOfResiduals(const Document &document) {
    Range range;
    for (const Source &source : document.sources)
        for (const Table &table : source.tables)
            if (!table.y.empty() && table.y.front().residuals)
                for (const double x : table.x.values) include(x, false, range);
    return range;
}

Range FittedCurve::bandAtData(const Document &document, const DrawnCurve &curve) const {
    const Range data = rangeOfResiduals(document);
    std::vector<double> x;
    for (const double each : curve.table->x.values)
        if (each >= data.min && each <= data.max) x.push_back(each);

    const auto [lower, upper] = bandAt(x);
    const bool logarithmic = document.axes[curve.verticalAxis()].logarithmic;
    Range range;
    for (std::size_t i = 0; i < upper.size(); ++i) {
        include(lower[i], logarithmic, range);
        include(upper[i], logarithmic, range);
    }
    return range;
}

std::vector<Path> FittedCurve::band(const DrawnCurve &curve, const ScaledFrame &frame) const {
    std::vector<Path> rings;
    const std::vector<double> x = samplesOf(curve, frame);
    const auto [lower, upper] = bandAt(x);
    if (upper.empty()) return rings;

    const Path above = onPaper(x, upper, curve, frame);
    Path below = onPaper(x, lower, curve, frame);
    const Scale &scale = frame.scales[curve.verticalAxis()];
    const double farBelow =
        scale.reversed ? 0 : frame.height; // where a logarithmic axis has no place
    Path ring;
    std::size_t begin = 0;
    for (std::size_t i = 0; i <= above.size(); ++i) {
        const bool ends = i == above.size() || isBreak(above[i]);
        if (!ends) {
            ring.push_back(above[i]);
            if (isBreak(below[i])) below[i] = {above[i].x, farBelow};
            continue;
        }
        for (std::size_t k = i; k-- > begin;) ring.push_back(below[k]);
        if (ring.size() > 2) rings.push_back(std::move(ring));
        ring = {};
        begin = i + 1;
    }
    return rings;
}

} // namespace plotwerk
