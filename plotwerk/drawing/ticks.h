// ticks.h - where an axis has ticks and numbers.
#ifndef PLOTWERK_DRAWING_TICKS_H
#define PLOTWERK_DRAWING_TICKS_H

#include "plotwerk/drawing/richText.h"
#include "plotwerk/drawing/scale.h"
#include "plotwerk/model/document.h"

#include <functional>
#include <vector>

namespace plotwerk {

struct AxisNumber {
    double value = 0;
    RichText text;
};

// Values in ascending order, all within the scale's limits; a thousand or two at most.
struct AxisMarks {
    std::vector<double> ticks;
    std::vector<double> smallTicks;
    std::vector<AxisNumber> numbers;
    RichText common; // to all numbers, for once beside the axis: a power of ten, a date
};

// Whether numbers can stand beside each other without touching.
using NumbersFit = std::function<bool(const std::vector<AxisNumber> &)>;

// How far numbers are from each other, in points: as far as they can be while there are five of
// them, and one for each widest, but not closer than close; than closest where fewer than four
// stood.
struct NumberSpacing {
    double closest = 0;
    double close = 0;
    double widest = 0;
    double fewest = 5;

    double least(double length) const { return std::max(fewest, length / widest); }
};

// Ticks at round numbers, at the axis's increment where it has one, else no closer than its
// precision, with numbers that are apart as spacing says, and fit.
//
// A logarithmic axis has ticks at the decades, at every n-th one where there are many, at the
// axis's logTicksAt-th and logNumbersAt-th where given, and numbers in between where there are few.
// Beyond three decades numbers are powers of ten, unless the axis asks for decimals.
AxisMarks marksOf(const Axis &axis, const Scale &scale, const NumberSpacing &spacing,
                  const NumbersFit &fit);

// Whether the value can have a tick: it lies on the scale, or beside it by no more than can be
// seen.
bool isOnAxis(double value, const Scale &scale);

// In points: of small ticks, and of those whose number the axis gives.
constexpr double leastSmallTickDistance = 3;
constexpr double leastGivenTickDistance = 0.5;

// As many of the numbers as fit: all, or every second, fifth, tenth, ...; at last only one. Counts
// so that the number with the index 0 stays, if there is one; firstIndex is that of the first.
std::vector<AxisNumber> thinned(const std::vector<AxisNumber> &numbers, double firstIndex,
                                const NumbersFit &fit);

// Whether ticks at the multiples of an axis's increment can be drawn.
bool isUsableIncrement(double increment, const Scale &scale);

// The multiples of the step on the axis; none where there are too many.
std::vector<double> multiplesOf(double step, const Scale &scale);

} // namespace plotwerk

#endif
