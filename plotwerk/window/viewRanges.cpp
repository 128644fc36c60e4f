#include "plotwerk/window/viewRanges.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>

namespace plotwerk {

static constexpr double finest = 0.1; // what is told apart along an axis, in points

static std::vector<AxisCode> ownAxes(const ScaledFrame &frame) {
    std::vector<AxisCode> axes;
    for (const AxisCode axis : {xAxis, yAxis, upperXAxis, rightYAxis})
        if (frame.own[axis]) axes.push_back(axis);
    return axes;
}

std::vector<AxisCode> axesAt(const ScaledFrame &frame, const Point &place) {
    const bool beside = place.x < 0 || place.x > frame.width;
    const bool above = place.y < 0;
    const bool below = place.y > frame.height;
    if (!beside && !above && !below) return ownAxes(frame);
    if (beside && (above || below)) return {};
    AxisCode axis = xAxis;
    if (above) axis = upperXAxis;
    if (place.x < 0) axis = yAxis;
    if (place.x > frame.width) axis = rightYAxis;
    return {frame.own[axis] ? axis : opposite(axis)};
}

double roundedTo(double value, double distance) {
    distance = std::abs(distance);
    if (!std::isfinite(value) || !(distance > 0)) return value;
    const double digits =
        value == 0 ? 1 : std::floor(std::log10(std::abs(value))) - std::floor(std::log10(distance));
    char text[40];
    std::snprintf(text, sizeof text, "%.*e", static_cast<int>(std::clamp(digits, 0.0, 16.0)),
                  value);
    const double rounded = std::strtod(text, nullptr);
    return std::abs(rounded) < distance / 2 ? 0 : rounded;
}

// The range between two positions along an axis.
static std::optional<AxisRange> rangeBetween(const ScaledFrame &frame, AxisCode axis, double from,
                                             double to) {
    const Scale &scale = frame.scales[axis];
    const double part = finest * std::abs(to - from) / scale.length;
    const auto valueAt = [&](double position) {
        const double value = scale.value(position);
        return roundedTo(value, scale.value(position + part) - value);
    };
    const auto [min, max] = std::minmax({valueAt(from), valueAt(to)});
    const double least = 1e-12 * std::max(std::abs(min), std::abs(max));
    const bool usable = std::isfinite(min) && std::isfinite(max) && std::isfinite(max - min) &&
                        max - min > least && max - min > 1e-290 && (!scale.logarithmic || min > 0);
    if (!usable) return std::nullopt;
    return AxisRange{axis, min, max};
}

// Of a place on paper along the axis.
static double positionOn(const ScaledFrame &frame, AxisCode axis, const Point &place) {
    return isHorizontal(axis) ? place.x : frame.height - place.y;
}

// The ranges of axes between those positions that `ends` gives.
template<class Ends>
static std::vector<AxisRange> rangesBetween(const ScaledFrame &frame,
                                            const std::vector<AxisCode> &axes, Ends ends) {
    std::vector<AxisRange> ranges;
    for (const AxisCode axis : axes) {
        const auto [from, to] = ends(axis, frame.scales[axis].length);
        if (const auto range = rangeBetween(frame, axis, from, to)) ranges.push_back(*range);
    }
    return ranges;
}

std::vector<AxisRange> zoomedRanges(const ScaledFrame &frame, const std::vector<AxisCode> &axes,
                                    const Point &place, double factor) {
    return rangesBetween(frame, axes, [&](AxisCode axis, double length) {
        const double fixed = positionOn(frame, axis, place);
        return std::pair{fixed - factor * fixed, fixed + factor * (length - fixed)};
    });
}

std::vector<AxisRange> rangesOfBox(const ScaledFrame &frame, const Box &box) {
    const Box cut{std::max(box.left, 0.0), std::max(box.top, 0.0), std::min(box.right, frame.width),
                  std::min(box.bottom, frame.height)};
    if (!(cut.width() > 0) || !(cut.height() > 0)) return {};
    return rangesBetween(frame, ownAxes(frame), [&](AxisCode axis, double) {
        return std::pair{positionOn(frame, axis, {cut.left, cut.bottom}),
                         positionOn(frame, axis, {cut.right, cut.top})};
    });
}

std::vector<AxisRange> movedRanges(const ScaledFrame &frame, const std::vector<AxisCode> &axes,
                                   const Point &by) {
    return rangesBetween(frame, axes, [&](AxisCode axis, double length) {
        const double shift = isHorizontal(axis) ? -by.x : by.y;
        return std::pair{shift, length + shift};
    });
}

} // namespace plotwerk
