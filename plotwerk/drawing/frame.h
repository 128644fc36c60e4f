// frame.h - the frame of a picture with its four axes: laid out.
//
// The axes form a closed frame, whose upper and right sides repeat the ticks of the lower and left
// ones unless they have curves of their own. When an axis has a position or an arrow, there are two
// axes that cross instead.
#ifndef PLOTWERK_DRAWING_FRAME_H
#define PLOTWERK_DRAWING_FRAME_H

#include "plotwerk/drawing/axisNumbers.h"
#include "plotwerk/drawing/drawnCurves.h"

#include <array>
#include <optional>

namespace plotwerk {

struct PlacedAxis {
    AxisCode code = xAxis;
    const Axis *settings = nullptr;
    bool own = false; // has a scale of its own; else it repeats the opposite axis, without numbers
    bool drawn = false;
    Scale scale;
    double line = 0; // y of a horizontal axis, x of a vertical one
    AxisMarks marks;
    std::vector<PlacedNumber> numbers; // in the coordinates of the picture

    bool horizontal() const { return code == xAxis || code == upperXAxis; }
    // Towards the inside of the frame.
    double inwards() const { return code == xAxis || code == rightYAxis ? -1 : 1; }
};

struct PlacedFrame {
    double width = 0;
    double height = 0;
    double tickLength = 0;
    double thickness = 0;
    bool closed = true;
    std::array<PlacedAxis, axisCount> axes;

    // How far ticks and numbers reach to each side.
    Box outside;

    Box box() const { return {0, 0, width, height}; }
    // The place of a value pair; a break where one of them can't be shown.
    Point at(double x, double y, AxisCode horizontal = xAxis, AxisCode vertical = yAxis) const {
        return {axes[horizontal].scale.position(x), height - axes[vertical].scale.position(y)};
    }
};

// Lengths that can't be drawn are brought within bounds: axes from 1 to 100 cm, ticks up to a
// quarter of the shorter axis, lines up to 20 points thick.
PlacedFrame frameOf(const Document &document, const std::vector<DrawnCurve> &curves,
                    const Typesetter &typesetter);

} // namespace plotwerk

#endif
