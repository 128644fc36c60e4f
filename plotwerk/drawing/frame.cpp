#include "plotwerk/drawing/frame.h"

#include "plotwerk/model/ranges.h"

#include <algorithm>
#include <cmath>

namespace plotwerk {

static constexpr double gapBeside = 5; // from the axis or its ticks to the numbers, in points
static constexpr double gapBelow = 6.5;
static constexpr double room = 0.04; // between data and frame, as a part of the axis

static bool isSet(const Range &range) {
    return !std::isnan(range.min) || !std::isnan(range.max);
}

static AxisCode opposite(AxisCode code) {
    switch (code) {
    case xAxis: return upperXAxis;
    case upperXAxis: return xAxis;
    case yAxis: return rightYAxis;
    default: return yAxis;
    }
}

static bool isUsed(AxisCode code, const std::vector<DrawnCurve> &curves) {
    return std::any_of(curves.begin(), curves.end(), [&](const DrawnCurve &curve) {
        return curve.horizontalAxis() == code || curve.verticalAxis() == code;
    });
}

// Lower and left axes stand for themselves also when nothing is drawn against either side.
static bool hasOwnScale(const Document &document, AxisCode code,
                        const std::vector<DrawnCurve> &curves) {
    if (isUsed(code, curves) || isSet(document.axes[code].range)) return true;
    const bool primary = code == xAxis || code == yAxis;
    return primary && !isUsed(opposite(code), curves) &&
           !isSet(document.axes[opposite(code)].range);
}

static Side numberSide(const PlacedAxis &axis) {
    const bool inside = axis.settings->numbersInside;
    switch (axis.code) {
    case xAxis: return inside ? Side::above : Side::below;
    case yAxis: return inside ? Side::rightOf : Side::leftOf;
    case upperXAxis: return inside ? Side::below : Side::above;
    default: return inside ? Side::leftOf : Side::rightOf;
    }
}

static bool hasMarks(AxisCode code, const std::vector<DrawnCurve> &curves) {
    return std::any_of(curves.begin(), curves.end(), [&](const DrawnCurve &curve) {
        const CurveLook &look = curve.column->look;
        return curve.horizontalAxis() == code &&
               (look.symbols || look.marker || look.yError || look.xError);
    });
}

// The limits of the data; those that aren't set take in where marker lines and areas begin.
static Range drawnRange(const Document &document, AxisCode code,
                        const std::vector<DrawnCurve> &curves) {
    const Axis &axis = document.axes[code];
    Range range = rangeOf(document, code);
    const bool fromBase = std::any_of(curves.begin(), curves.end(), [&](const DrawnCurve &curve) {
        const CurveLook &look = curve.column->look;
        return curve.verticalAxis() == code && (look.marker || look.filled);
    });
    if (!fromBase || axis.logarithmic) return range;
    const double base = baseValue(document.frame);
    if (std::isnan(axis.range.min)) range.min = std::min(range.min, base);
    if (std::isnan(axis.range.max)) range.max = std::max(range.max, base);
    return range;
}

// That range with some room beyond the limits that aren't set, but none below or above zero for
// data that end there.
static Range shownRange(const Document &document, AxisCode code,
                        const std::vector<DrawnCurve> &curves) {
    const Axis &axis = document.axes[code];
    Range range = drawnRange(document, code, curves);
    const bool horizontal = code == xAxis || code == upperXAxis;
    if ((horizontal && !hasMarks(code, curves)) || !(range.min < range.max)) return range;

    if (axis.logarithmic) {
        const double factor = std::pow(range.max / range.min, room);
        if (!(range.min > 0) || !std::isfinite(factor)) return range;
        if (std::isnan(axis.range.min)) range.min /= factor;
        if (std::isnan(axis.range.max)) range.max *= factor;
    } else {
        const double margin = room * (range.max - range.min);
        if (std::isnan(axis.range.min) && (horizontal || range.min != 0)) range.min -= margin;
        if (std::isnan(axis.range.max) && (horizontal || range.max != 0)) range.max += margin;
    }
    return range;
}

static void placeNumbers(PlacedAxis &axis, const PlacedFrame &frame, const Typesetter &typesetter) {
    const Axis &settings = *axis.settings;
    if (settings.noNumbers) return;

    const bool ticksBetween = settings.numbersInside ? settings.insideTicks : settings.outsideTicks;
    const double gap = axis.horizontal() ? gapBelow : gapBeside;
    const double distance = gap + (ticksBetween && !settings.noLine ? frame.tickLength : 0);
    axis.numbers = placedNumbers(axis.marks.numbers, axis.scale, numberSide(axis),
                                 limited(settings.labelAngle, -360, 360, 0), distance, typesetter);
    for (PlacedNumber &number : axis.numbers) {
        number.middle.x += axis.horizontal() ? 0 : axis.line;
        number.middle.y += axis.horizontal() ? axis.line : frame.height;
    }
}

static bool boxesMeet(const Box &a, const Box &b) {
    return a.left < b.right && b.left < a.right && a.top < b.bottom && b.top < a.bottom;
}

static Box lineOf(const PlacedAxis &axis, const PlacedFrame &frame) {
    const Box line = axis.horizontal() ? Box{0, axis.line, frame.width, axis.line}
                                       : Box{axis.line, 0, axis.line, frame.height};
    return line.grownBy(1);
}

// Numbers that would lie on another axis's line, or on its numbers, are left out.
static void dropCrossedNumbers(PlacedFrame &frame) {
    for (PlacedAxis &axis : frame.axes) {
        std::erase_if(axis.numbers, [&](const PlacedNumber &number) {
            const Box box = number.bounds();
            for (const PlacedAxis &other : frame.axes) {
                if (&other == &axis) continue;
                if (other.drawn && boxesMeet(box, lineOf(other, frame))) return true;
                if (other.code > axis.code) continue;
                for (const PlacedNumber &placed : other.numbers)
                    if (boxesMeet(box, placed.bounds().grownBy(1))) return true;
            }
            return false;
        });
    }
}

// y of a horizontal axis or x of a vertical one that shall stand at a value of the axis it crosses.
static double crossing(double value, const Scale &scale) {
    return limited(scale.position(value), 0, scale.length, 0);
}

static void placeLines(PlacedFrame &frame, const Frame &settings) {
    auto &axes = frame.axes;
    axes[xAxis].line = frame.height;
    axes[rightYAxis].line = frame.width;
    if (!std::isnan(settings.xAxisPos))
        axes[xAxis].line -= crossing(settings.xAxisPos, axes[yAxis].scale);
    if (!std::isnan(settings.yAxisPos))
        axes[yAxis].line = crossing(settings.yAxisPos, axes[xAxis].scale);
}

static Box reachOf(const PlacedFrame &frame) {
    Box reach = frame.box();
    for (const PlacedAxis &axis : frame.axes) {
        if (axis.drawn && axis.settings->outsideTicks) {
            const double end = axis.line - axis.inwards() * frame.tickLength;
            if (axis.horizontal()) {
                reach.top = std::min(reach.top, end);
                reach.bottom = std::max(reach.bottom, end);
            } else {
                reach.left = std::min(reach.left, end);
                reach.right = std::max(reach.right, end);
            }
        }
        for (const PlacedNumber &number : axis.numbers) {
            const Box box = number.bounds();
            reach.left = std::min(reach.left, box.left);
            reach.top = std::min(reach.top, box.top);
            reach.right = std::max(reach.right, box.right);
            reach.bottom = std::max(reach.bottom, box.bottom);
        }
    }
    return reach;
}

PlacedFrame frameOf(const Document &document, const std::vector<DrawnCurve> &curves,
                    const Typesetter &typesetter) {
    const Frame &settings = document.frame;
    const Frame standard;
    PlacedFrame frame;
    frame.width = limited(settings.xAxisLength, 1, 100, standard.xAxisLength) * pointsPerCm;
    frame.height = limited(settings.yAxisLength, 1, 100, standard.yAxisLength) * pointsPerCm;
    frame.tickLength =
        std::min(limited(settings.tickLength, 0, 100, standard.tickLength) * pointsPerCm,
                 std::min(frame.width, frame.height) / 4);
    frame.thickness = limited(settings.axisThickness, 0, 20, standard.axisThickness);
    frame.closed = std::isnan(settings.xAxisPos) && std::isnan(settings.yAxisPos) &&
                   std::none_of(document.axes.begin(), document.axes.end(),
                                [](const Axis &axis) { return axis.arrow; });

    for (int code = 0; code < axisCount; ++code) {
        PlacedAxis &axis = frame.axes[code];
        axis.code = static_cast<AxisCode>(code);
        axis.settings = &document.axes[code];
        axis.own = hasOwnScale(document, axis.code, curves);
        axis.drawn = !axis.settings->noLine && (axis.own || frame.closed);
        axis.scale = scaleOf(*axis.settings, shownRange(document, axis.code, curves),
                             axis.horizontal() ? frame.width : frame.height);
        if (axis.own)
            axis.marks = marksBeside(*axis.settings, axis.scale, numberSide(axis), typesetter);
    }
    for (PlacedAxis &axis : frame.axes) {
        if (axis.own) continue;
        const PlacedAxis &shown = frame.axes[opposite(axis.code)];
        axis.scale = shown.scale;
        axis.marks = shown.marks;
    }
    placeLines(frame, settings);
    for (PlacedAxis &axis : frame.axes)
        if (axis.own) placeNumbers(axis, frame, typesetter);
    dropCrossedNumbers(frame);
    frame.outside = reachOf(frame);
    return frame;
}

} // namespace plotwerk
