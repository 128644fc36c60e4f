#include "plotwerk/drawing/scale.h"

#include <utility>

namespace plotwerk {

// Limits beyond these would overflow in differences and quotients.
static constexpr double largest = 8e307;
static constexpr double smallestPositive = 1e-307;
static constexpr double smallestSpan = 1e-290;

static void makeLinear(double &min, double &max) {
    if (std::isnan(min)) min = std::isnan(max) ? 0 : max - 1;
    if (std::isnan(max)) max = min + 1;
    if (min > max) std::swap(min, max);

    // closer than doubles can tell in a dozen steps
    const double magnitude = std::max(std::abs(min), std::abs(max));
    if (max - min <= 1e-14 * magnitude || max == min) {
        const double margin = magnitude == 0 ? 1 : std::max(0.1 * magnitude, smallestSpan);
        min -= margin;
        max += margin;
    } else if (max - min < smallestSpan) {
        min -= smallestSpan;
        max += smallestSpan;
    }
}

static void makeLogarithmic(double &min, double &max) {
    const bool haveMin = min > 0;
    const bool haveMax = max > 0;
    if (!haveMin) min = haveMax ? max / 1000 : 1;
    if (!haveMax) max = 10 * min;
    if (min > max) std::swap(min, max);
    if (max / min < 1 + 1e-13) {
        min /= std::sqrt(10.0);
        max *= std::sqrt(10.0);
    }
    min = std::clamp(min, smallestPositive, largest / 10);
    max = std::clamp(max, 10 * smallestPositive, largest);
}

Scale scaleOf(const Axis &axis, Range range, double length) {
    double min = std::clamp(range.min, -largest, largest);
    double max = std::clamp(range.max, -largest, largest);

    Scale scale;
    scale.logarithmic = axis.logarithmic;
    scale.reversed = axis.reversed != (min > max);
    scale.length = length;
    if (axis.logarithmic)
        makeLogarithmic(min, max);
    else
        makeLinear(min, max);
    scale.min = std::clamp(min, -largest, largest);
    scale.max = std::clamp(max, -largest, largest);

    if (scale.logarithmic) {
        scale.logMin = std::log10(scale.min);
        scale.narrow = scale.max / scale.min < 1e6;
        const double decades =
            scale.narrow ? std::log10(scale.max / scale.min) : std::log10(scale.max) - scale.logMin;
        scale.factor = length / decades;
    } else {
        scale.factor = length / (scale.max - scale.min);
    }
    return scale;
}

} // namespace plotwerk
