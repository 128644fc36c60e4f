// scale.h - from the values of an axis to positions along it, and back.
#ifndef PLOTWERK_DRAWING_SCALE_H
#define PLOTWERK_DRAWING_SCALE_H

#include "plotwerk/model/document.h"

#include <algorithm>
#include <cmath>

namespace plotwerk {

// A scale that can be drawn, whatever the range: min < max, both finite and far enough apart for
// numbers that differ, both positive when logarithmic.
struct Scale {
    double min = 0;
    double max = 1;
    bool logarithmic = false;
    bool reversed = false; // min is at the far end
    double length = 1;     // in points

    // Distance of a value from the beginning of the axis, negative or beyond the length for values
    // outside of the limits; finite, at most 1e12 in magnitude. NaN for NaN and, on a logarithmic
    // scale, for values that aren't positive.
    double position(double value) const {
        double distance = 0;
        if (!logarithmic) {
            distance = (value - min) * factor;
        } else if (!(value > 0)) {
            return unset;
        } else {
            // the quotient keeps the digits of a narrow range and would overflow on a wide one
            distance = (narrow ? std::log10(value / min) : std::log10(value) - logMin) * factor;
        }
        distance = std::clamp(distance, -1e12, 1e12);
        return reversed ? length - distance : distance;
    }

    // The value at a distance from the beginning, the inverse of position: exact but for what
    // doubles near that value can tell. NaN for NaN; beyond the largest double an infinity, on a
    // logarithmic scale also 0.
    double value(double position) const {
        const double distance = (reversed ? length - position : position) / factor;
        if (!logarithmic) return min + distance;
        return narrow ? min * std::pow(10, distance) : std::pow(10, logMin + distance);
    }

    // Whether the value lies on the axis, its ends included.
    bool shows(double value) const {
        const double tolerance = 1e-6 * length;
        const double at = position(value);
        return at >= -tolerance && at <= length + tolerance;
    }

    double factor = 1; // points per value, or per decade
    double logMin = 0;
    bool narrow = true;
};

// The scale of an axis of that length with those limits. Limits in descending order reverse the
// axis. Limits that are missing, equal or not positive on a logarithmic axis are replaced:
//   none -> 0..1, logarithmic 1..10    5, 5 -> 4.5..5.5    0, 0 -> -1..1    logarithmic -3, 100 ->
//   0.1, 100
Scale scaleOf(const Axis &axis, Range range, double length);

} // namespace plotwerk

#endif
