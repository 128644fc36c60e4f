// scaledFrame.h - the frame of a picture as scales: where values lie on paper, and what values lie
// at a place. All that a curve needs to be drawn, or to be pointed at; type has no part in it.
#ifndef PLOTWERK_DRAWING_SCALEDFRAME_H
#define PLOTWERK_DRAWING_SCALEDFRAME_H

#include "plotwerk/drawing/drawnCurves.h"
#include "plotwerk/drawing/geometry.h"
#include "plotwerk/drawing/scale.h"

#include <array>
#include <vector>

namespace plotwerk {

inline bool isHorizontal(AxisCode axis) {
    return axis == xAxis || axis == upperXAxis;
}

// Of the same direction, on the other side.
AxisCode opposite(AxisCode axis);

struct ValuePair {
    double x = unset;
    double y = unset;
};

struct FrameSize {
    double width = 0; // in points
    double height = 0;
};

FrameSize frameSizeOf(const Document &document);

// Arrays are indexed by AxisCode.
struct ScaledFrame {
    double width = 0; // in points
    double height = 0;
    bool closed = true; // else the axes cross
    std::array<Scale, axisCount> scales;
    std::array<bool, axisCount> own{};    // else the axis repeats the opposite one, with its scale
    std::array<double, axisCount> line{}; // y of a horizontal axis, x of a vertical one

    Box box() const { return {0, 0, width, height}; }

    // The place of a value pair; a break where one of them can't be shown.
    Point at(double x, double y, AxisCode horizontal = xAxis, AxisCode vertical = yAxis) const {
        return {scales[horizontal].position(x), height - scales[vertical].position(y)};
    }

    // The values at a place, also outside of the frame: the inverse of at. NaN for a break.
    ValuePair valuesAt(const Point &place, AxisCode horizontal = xAxis,
                       AxisCode vertical = yAxis) const {
        return {scales[horizontal].value(place.x), scales[vertical].value(height - place.y)};
    }
};

// The frame for these curves of the document. Limits that are set are the ends of an axis. Others
// follow the data and take in where areas and drop lines begin, with some room beyond, but none
// below or above a zero on which areas or drop lines stand.
ScaledFrame scaledFrameOf(const Document &document, const std::vector<DrawnCurve> &curves);

// The same in another size than the document's.
ScaledFrame scaledFrameOf(const Document &document, const std::vector<DrawnCurve> &curves,
                          const FrameSize &size);

} // namespace plotwerk

#endif
