// viewRanges.h - the ranges that axes get by zooming and panning, on any scale.
//
// Only axes with a scale of their own have ranges; those are numbers that tell apart what the paper
// tells apart, and no longer. An axis whose range would be too narrow or too wide for doubles is
// left out.
#ifndef PLOTWERK_WINDOW_VIEWRANGES_H
#define PLOTWERK_WINDOW_VIEWRANGES_H

#include "plotwerk/drawing/scaledFrame.h"

#include <optional>
#include <vector>

namespace plotwerk {

struct AxisRange {
    AxisCode axis;
    double min;
    double max;
};

// The axes that a place on paper is about: all within the frame, the one beside which it lies
// outside of it, none at the corners.
std::vector<AxisCode> axesAt(const ScaledFrame &frame, const Point &place);

// So that each axis shows `factor` times as much, and the place stays where it is.
std::vector<AxisRange> zoomedRanges(const ScaledFrame &frame, const std::vector<AxisCode> &axes,
                                    const Point &place, double factor);

// So that what lies in the box, cut at the frame, fills the frame. None for an empty one.
std::vector<AxisRange> rangesOfBox(const ScaledFrame &frame, const Box &box);

// So that what is drawn moves by that much, to the right and downwards.
std::vector<AxisRange> movedRanges(const ScaledFrame &frame, const std::vector<AxisCode> &axes,
                                   const Point &by);

// The value with as many digits as tell it from one at `distance` from it.
double roundedTo(double value, double distance);

} // namespace plotwerk

#endif
