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
};

// Whether numbers can stand beside each other without touching.
using NumbersFit = std::function<bool(const std::vector<AxisNumber> &)>;

// Ticks at round numbers, at the axis's increment where it has one, else no closer than its
// precision, with as many numbers as fit: one for about every `spacing` points of length, divided
// by the label density.
//
// A logarithmic axis has ticks at the decades, at every n-th one where there are many, at the
// axis's logTicksAt-th and logNumbersAt-th where given, and numbers in between where there are few.
AxisMarks marksOf(const Axis &axis, const Scale &scale, double spacing, const NumbersFit &fit);

} // namespace plotwerk

#endif
