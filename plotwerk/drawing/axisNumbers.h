// axisNumbers.h - the numbers of an axis, set in type and placed beside it.
#ifndef PLOTWERK_DRAWING_AXISNUMBERS_H
#define PLOTWERK_DRAWING_AXISNUMBERS_H

#include "plotwerk/drawing/geometry.h"
#include "plotwerk/drawing/ticks.h"
#include "plotwerk/drawing/typesetter.h"

namespace plotwerk {

constexpr double numberSize = 9; // in points

// The side of its line on which an axis has its numbers.
enum class Side { below, leftOf, above, rightOf };

inline bool isHorizontal(Side side) {
    return side == Side::below || side == Side::above;
}

// A text in a box that is turned about its middle.
struct PlacedNumber {
    double value = 0;
    SetText text;
    Point middle;
    double width = 0;
    double height = 0;
    double angle = 0; // in degrees, counter-clockwise

    // The upright box around it.
    Box bounds() const;

    void draw(cairo_t *cr) const;
};

// Whether the boxes of two numbers with the same angle, each grown by half the gap, meet.
bool numbersMeet(const PlacedNumber &a, const PlacedNumber &b, double gap);

// The numbers beside an axis line at x or y = 0, where it begins at 0: `distance` away from the
// line, each at its tick. Turned numbers end at their tick, or begin there, so that they read
// towards it.
std::vector<PlacedNumber> placedNumbers(const std::vector<AxisNumber> &numbers, const Scale &scale,
                                        Side side, double angle, double distance,
                                        const Typesetter &typesetter);

// Whether they stand apart by what a reader needs.
bool standApart(const std::vector<PlacedNumber> &numbers, Side side);

// Marks for an axis on that side, whose numbers stand apart: dates and times where its values are
// such, seconds since 1970-01-01 UTC.
AxisMarks marksBeside(const Axis &axis, const Scale &scale, bool isTime, Side side,
                      const Typesetter &typesetter);

// What the numbers have in common, without a place yet.
PlacedNumber commonNumber(const RichText &common, const Typesetter &typesetter);

} // namespace plotwerk

#endif
