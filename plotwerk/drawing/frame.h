// frame.h - the frame of a picture with what is set in type: the marks and numbers of its axes.
//
// The axes form a closed frame, whose upper and right sides repeat the ticks of the lower and left
// ones unless they have curves of their own. When an axis has a position or an arrow, there are two
// axes that cross instead.
#ifndef PLOTWERK_DRAWING_FRAME_H
#define PLOTWERK_DRAWING_FRAME_H

#include "plotwerk/drawing/axisNumbers.h"
#include "plotwerk/drawing/scaledFrame.h"

#include <array>
#include <optional>
#include <vector>

namespace plotwerk {

struct PlacedAxis {
    AxisCode code = xAxis;
    const Axis *settings = nullptr;
    bool drawn = false;
    AxisMarks marks;                    // the opposite axis's where the axis repeats it
    std::vector<PlacedNumber> numbers;  // in the coordinates of the picture; none where it repeats
    std::optional<PlacedNumber> common; // to them, beside them at the axis's end

    bool horizontal() const { return isHorizontal(code); }
    // Towards the inside of the frame.
    double inwards() const { return code == xAxis || code == rightYAxis ? -1 : 1; }
};

struct PlacedFrame : ScaledFrame {
    double tickLength = 0; // in points, at most a quarter of the shorter axis
    double thickness = 0;
    std::array<PlacedAxis, axisCount> axes{};

    // How far ticks and numbers reach to each side, but for what those below have in common: that
    // stands in the title's line.
    Box outside{};
};

PlacedFrame frameOf(const Document &document, const std::vector<DrawnCurve> &curves,
                    const Typesetter &typesetter, const FrameSize &size);

inline PlacedFrame frameOf(const Document &document, const std::vector<DrawnCurve> &curves,
                           const Typesetter &typesetter) {
    return frameOf(document, curves, typesetter, frameSizeOf(document));
}

} // namespace plotwerk

#endif
