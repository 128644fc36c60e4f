#include "plotwerk/drawing/ticks.h"

#include "plotwerk/drawing/numberText.h"
#include "util/number/format.h"
#include "util/number/power.h"

#include <algorithm>
#include <cmath>
#include <numeric>

namespace plotwerk {

// Guards memory and time: ticks 2 points apart fill the longest axis, of 100 cm, with 1400.
static constexpr double mostTicks = 1000;

// In points. Lines of 0.75 points, the default, are told apart from 2 points on, and don't look
// crowded from 3 on (leastSmallTickDistance); who asks for more gets it as long as ticks don't
// merge into a bar. A tick beyond the axis by a quarter of its line is seen on it.
static constexpr double leastTickDistance = 2;
static constexpr double mostBeyond = 0.2;

// Points per decade from which every decade has its tick, and those from which it also has small
// ones at 2..9: the narrowest gap, from 9 to 10, is log10(10/9) = 0.046 of a decade, there 0.9
// points.
static constexpr double leastDecade = 12;
static constexpr double leastDividedDecade = 20;

// In decades. Below 0.7, a factor of 5, steps of equal size make more round numbers than digits of
// decades; below 2 powers of ten alone could leave a single number.
static constexpr double fewestDecades = 0.7;
static constexpr double fewDecades = 2;

// Numbers that seem few where there is room for more; from four on a finer step would make many.
static constexpr double few = 4;

// k * step through whole numbers and one rounding where the step is one over a whole number, so
// that three steps of 0.1 are 0.3; zero without a sign.
static double multiple(double k, double step) {
    const double parts = std::round(1 / step);
    return (step < 1 && std::abs(parts * step - 1) < 1e-12 ? k / parts : k * step) + 0.0;
}

namespace {

// A step of 1, 2 or 5 times a power of ten.
struct RoundStep {
    int digit = 1;
    int exponent = 0;

    double value() const { return multiple(digit, std::pow(10.0, exponent)); }

    RoundStep finer() const {
        if (digit == 5) return {2, exponent};
        if (digit == 2) return {1, exponent};
        return {5, exponent - 1};
    }

    RoundStep coarser() const {
        if (digit == 1) return {2, exponent};
        if (digit == 2) return {5, exponent};
        return {1, exponent + 1};
    }
};

} // namespace

static RoundStep finestStepFrom(double least) {
    RoundStep step{1, static_cast<int>(std::floor(std::log10(least)))};
    while (step.value() < least * (1 - 1e-9)) step = step.coarser();
    return step;
}

bool isOnAxis(double value, const Scale &scale) {
    const double at = scale.position(value);
    return at >= -mostBeyond && at <= scale.length + mostBeyond;
}

std::vector<double> multiplesOf(double step, const Scale &scale) {
    const double first = std::floor(scale.min / step);
    const double last = std::ceil(scale.max / step);
    std::vector<double> values;
    if (!(last - first <= 2 * mostTicks)) return values;
    const int count = static_cast<int>(last - first) + 1;
    for (int i = 0; i < count; ++i)
        if (const double value = multiple(first + i, step); isOnAxis(value, scale))
            values.push_back(value);
    return values;
}

static std::vector<AxisNumber> numbersAt(const std::vector<double> &values,
                                         const NumberFormat &format) {
    std::vector<AxisNumber> numbers;
    numbers.reserve(values.size());
    for (const double value : values) numbers.push_back({value, numberText(value, format)});
    return numbers;
}

std::vector<AxisNumber> thinned(const std::vector<AxisNumber> &numbers, double firstIndex,
                                const NumbersFit &fit) {
    if (numbers.size() <= 1 || fit(numbers)) return numbers;
    for (RoundStep n{2, 0}; n.value() < static_cast<double>(numbers.size()); n = n.coarser()) {
        std::vector<AxisNumber> chosen;
        for (std::size_t i = 0; i < numbers.size(); ++i)
            if (std::fmod(firstIndex + static_cast<double>(i), n.value()) == 0)
                chosen.push_back(numbers[i]);
        if (chosen.size() > 1 && fit(chosen)) return chosen;
    }
    std::vector<AxisNumber> ends{numbers.front(), numbers.back()};
    if (!fit(ends)) ends.pop_back();
    return ends;
}

// Small ticks that divide the step, as many between two ticks as the axis says.
static std::vector<double> dividing(double step, int between, const Scale &scale) {
    if (between <= 0) return {};
    std::vector<double> values = multiplesOf(step / (between + 1), scale);
    std::erase_if(values, [&](double value) {
        const double steps = value / step;
        return std::abs(steps - std::round(steps)) < 0.5 / (between + 1);
    });
    return values;
}

// The axis's own choice where it can be drawn, else what divides the step's first digit evenly.
static int smallTicksBetween(const Axis &axis, int digit, double tickDistance) {
    const double mostGiven = tickDistance / leastGivenTickDistance - 1;
    if (axis.ticks >= 0 && axis.ticks <= mostGiven) return axis.ticks;
    const int fine = digit == 2 ? 3 : 4;
    const int coarse = digit == 5 ? 0 : 1;
    if (tickDistance / (fine + 1) >= leastSmallTickDistance) return fine;
    return tickDistance / (coarse + 1) >= leastSmallTickDistance ? coarse : 0;
}

bool isUsableIncrement(double increment, const Scale &scale) {
    return increment > 0 && // false where it is unset
           (scale.max - scale.min) / increment <=
               std::min(mostTicks, scale.length / leastTickDistance) &&
           (scale.max - scale.min) / increment >= 1e-3 &&
           // beyond 2^53, about 9e15, multiples are no longer whole
           std::max(std::abs(scale.max), std::abs(scale.min)) / increment < 1e15;
}

static AxisMarks marksAtIncrement(const Axis &axis, const Scale &scale, const NumbersFit &fit) {
    const double increment = axis.increment;
    AxisMarks marks;
    marks.ticks = multiplesOf(increment, scale);
    const NumberFormat format =
        formatOfNumbers(increment, marks.ticks, axis.precision, axis.exponents);
    marks.common = commonText(format);
    marks.numbers =
        thinned(numbersAt(marks.ticks, format), std::round(marks.ticks.front() / increment), fit);

    const int digit = static_cast<int>(std::round(plw::mantisse10(increment)));
    const double distance = scale.length * increment / (scale.max - scale.min);
    marks.smallTicks = dividing(increment, smallTicksBetween(axis, digit, distance), scale);
    return marks;
}

static AxisMarks linearMarks(const Axis &axis, const Scale &scale, const NumberSpacing &spacing,
                             const NumbersFit &fit) {
    if (isUsableIncrement(axis.increment, scale) && !multiplesOf(axis.increment, scale).empty())
        return marksAtIncrement(axis, scale, fit);

    const double span = scale.max - scale.min;
    const auto countAt = [&](const RoundStep &at) {
        return static_cast<double>(multiplesOf(at.value(), scale).size());
    };
    const double most = std::clamp(scale.length / spacing.close, 2.0, mostTicks);
    RoundStep step = finestStepFrom(span / most);
    while (countAt(step) < 2) step = step.finer();
    const double least = spacing.least(scale.length);
    while (countAt(step.coarser()) >= least) step = step.coarser();
    if (countAt(step) < std::min(few, least) &&
        scale.length * step.finer().value() / span >= spacing.closest)
        step = step.finer();
    const RoundStep wanted = step;

    // a wider step until the numbers fit, in no more decimals than the axis asks for; but rather a
    // common power of ten than few numbers, and never less than two
    AxisMarks marks;
    bool precise = true;
    const auto markAt = [&](const RoundStep &at, bool narrow = false) {
        marks.ticks = multiplesOf(at.value(), scale);
        const NumberFormat format =
            formatOfNumbers(at.value(), marks.ticks, axis.precision, axis.exponents, narrow);
        marks.numbers = numbersAt(marks.ticks, format);
        marks.common = commonText(format);
        precise = axis.precision < 0 || format.decimals <= axis.precision;
    };
    const auto fits = [&] { return precise && fit(marks.numbers); };
    markAt(step);
    while (marks.numbers.size() > 1 && !fits()) {
        if (axis.precision < 0 && countAt(step.coarser()) < few) {
            markAt(step, true);
            if (fits()) break;
        }
        step = step.coarser();
        markAt(step);
    }
    if (marks.numbers.size() < 2) {
        step = wanted;
        markAt(step);
        marks.numbers = thinned(marks.numbers, 0, fit);
    }
    const double distance = scale.length * step.value() / span;
    marks.smallTicks = dividing(step.value(), smallTicksBetween(axis, step.digit, distance), scale);
    return marks;
}

// The multiples of the given digits in every decade that lie within the limits.
static std::vector<double> digitsOfDecades(const Scale &scale, std::initializer_list<int> digits,
                                           int everyDecade = 1) {
    const int first = static_cast<int>(std::floor(std::log10(scale.min))) - 1;
    const int last = static_cast<int>(std::floor(std::log10(scale.max))) + 1;
    std::vector<double> values;
    for (int decade = first; decade <= last; ++decade) {
        if (decade % everyDecade != 0) continue;
        for (const int digit : digits) {
            const double value = multiple(digit, std::pow(10.0, decade));
            if (isOnAxis(value, scale)) values.push_back(value);
        }
    }
    return values;
}

static std::vector<AxisNumber> logNumbersAt(const std::vector<double> &values, const Axis &axis) {
    const bool wide = !values.empty() && values.back() > 1001 * values.front();
    const bool powers = axis.exponents || (wide && axis.precision < 0) ||
                        std::any_of(values.begin(), values.end(), needsPowers);
    std::vector<AxisNumber> numbers;
    numbers.reserve(values.size());
    for (const double value : values)
        numbers.push_back({value, logNumberText(value, powers, axis.precision)});
    return numbers;
}

// Small ticks at 2..9 times the decades, or, where the ticks are n decades apart, at a part of
// that.
static std::vector<double> smallLogTicks(const Axis &axis, const Scale &scale,
                                         const std::vector<double> &ticks, int decadesApart) {
    if (axis.ticks == 0) return {};
    std::vector<double> small;
    if (decadesApart == 1 && scale.factor >= leastDividedDecade)
        small = digitsOfDecades(scale, {2, 3, 4, 5, 6, 7, 8, 9});
    for (const int parts : {decadesApart, 5, 2}) {
        if (decadesApart == 1 || decadesApart % parts != 0) continue;
        const int step = decadesApart / parts;
        if (scale.factor * step < leastSmallTickDistance) continue;
        small = digitsOfDecades(scale, {1}, step);
        break;
    }
    std::erase_if(small, [&](double value) {
        return std::find(ticks.begin(), ticks.end(), value) != ticks.end();
    });
    return small;
}

// Numbers at every n-th decade, n as small as they fit.
static AxisMarks decadeMarks(const Axis &axis, const Scale &scale, double closest,
                             const NumbersFit &fit) {
    AxisMarks marks;
    int n = axis.logNumbersAt;
    if (n < 1) {
        for (const int step : {1, 2, 3, 5, 10, 20, 50, 100, 200}) {
            const std::vector<double> values = digitsOfDecades(scale, {1}, step);
            if (step > 1 && values.size() < 2) break;
            n = step;
            if (n * scale.factor < closest) continue;
            if (fit(logNumbersAt(values, axis))) break;
        }
    }
    const std::vector<double> numbered = digitsOfDecades(scale, {1}, n);
    marks.numbers = thinned(logNumbersAt(numbered, axis), 0, fit);

    const bool everyDecadeHasRoom = scale.factor >= leastDecade;
    const int tickAt = axis.logTicksAt >= 1 ? axis.logTicksAt : everyDecadeHasRoom ? 1 : n;
    marks.ticks = digitsOfDecades(scale, {1}, tickAt);
    if (scale.factor * tickAt < leastTickDistance) marks.ticks = numbered;
    marks.smallTicks = smallLogTicks(axis, scale, marks.ticks, tickAt);
    return marks;
}

// Less than two decades: numbers at the digits 1, 2 and 5, or at all digits that fit.
static AxisMarks digitMarks(const Axis &axis, const Scale &scale, const NumbersFit &fit) {
    AxisMarks marks;
    for (const auto &digits :
         {std::initializer_list<int>{1, 2, 3, 4, 5, 6, 7, 8, 9},
          std::initializer_list<int>{1, 2, 3, 5, 7}, std::initializer_list<int>{1, 2, 5},
          std::initializer_list<int>{1, 3}, std::initializer_list<int>{1}}) {
        marks.ticks = digitsOfDecades(scale, digits);
        marks.numbers = logNumbersAt(marks.ticks, axis);
        if (fit(marks.numbers)) break;
    }
    marks.numbers = thinned(marks.numbers, 0, fit);
    marks.smallTicks = smallLogTicks(axis, scale, marks.ticks, 1);
    return marks;
}

static AxisMarks logarithmicMarks(const Axis &axis, const Scale &scale,
                                  const NumberSpacing &spacing, const NumbersFit &fit) {
    const double decades = scale.length / scale.factor;
    if (decades < fewestDecades) return linearMarks(axis, scale, spacing, fit);
    if (decades < fewDecades && axis.logNumbersAt < 1 && axis.logTicksAt < 1) {
        AxisMarks marks = digitMarks(axis, scale, fit);
        if (marks.numbers.size() > 1) return marks;
    }
    return decadeMarks(axis, scale, spacing.close, fit);
}

AxisMarks marksOf(const Axis &axis, const Scale &scale, const NumberSpacing &spacing,
                  const NumbersFit &fit) {
    return scale.logarithmic ? logarithmicMarks(axis, scale, spacing, fit)
                             : linearMarks(axis, scale, spacing, fit);
}

} // namespace plotwerk
