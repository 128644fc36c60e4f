#include "plotwerk/drawing/frame.h"

#include <algorithm>

namespace plotwerk {

// From the axis or its ticks to the numbers, in points: half a digit's height and more; wider
// below, where all numbers of an axis turn their whole width to it.
static constexpr double gapBeside = 5;
static constexpr double gapBelow = 6.5;
static constexpr double commonGap = 5; // from the numbers to what they have in common

static Side numberSide(const PlacedAxis &axis) {
    const bool inside = axis.settings->numbersInside;
    switch (axis.code) {
    case xAxis: return inside ? Side::above : Side::below;
    case yAxis: return inside ? Side::rightOf : Side::leftOf;
    case upperXAxis: return inside ? Side::below : Side::above;
    default: return inside ? Side::leftOf : Side::rightOf;
    }
}

static void placeNumbers(PlacedAxis &axis, const PlacedFrame &frame, const Typesetter &typesetter) {
    const Axis &settings = *axis.settings;
    if (settings.noNumbers) return;

    const bool ticksBetween = settings.numbersInside ? settings.insideTicks : settings.outsideTicks;
    const double gap = axis.horizontal() ? gapBelow : gapBeside;
    const double distance = gap + (ticksBetween && !settings.noLine ? frame.tickLength : 0);
    axis.numbers = placedNumbers(axis.marks.numbers, frame.scales[axis.code], numberSide(axis),
                                 settings.labelAngle, distance, typesetter);
    for (PlacedNumber &number : axis.numbers) {
        number.middle.x += axis.horizontal() ? 0 : frame.line[axis.code];
        number.middle.y += axis.horizontal() ? frame.line[axis.code] : frame.height;
    }
}

static bool boxesMeet(const Box &a, const Box &b) {
    return a.left < b.right && b.left < a.right && a.top < b.bottom && b.top < a.bottom;
}

static Box lineOf(const PlacedAxis &axis, const PlacedFrame &frame) {
    const double at = frame.line[axis.code];
    const Box line = axis.horizontal() ? Box{0, at, frame.width, at} : Box{at, 0, at, frame.height};
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

static void widen(Box &box, const Box &by) {
    box.left = std::min(box.left, by.left);
    box.top = std::min(box.top, by.top);
    box.right = std::max(box.right, by.right);
    box.bottom = std::max(box.bottom, by.bottom);
}

// What the numbers of an axis have in common goes beyond them: of a horizontal axis to its right
// end, of a vertical one above the frame, and above other numbers there.
static void placeCommon(PlacedAxis &axis, const PlacedFrame &frame, const Typesetter &typesetter) {
    if (axis.numbers.empty() || axis.marks.common.empty()) return;
    Box numbers = axis.numbers.front().bounds();
    for (const PlacedNumber &number : axis.numbers) widen(numbers, number.bounds());

    PlacedNumber common = commonNumber(axis.marks.common, typesetter);
    const Side side = numberSide(axis);
    const double away = commonGap + common.height / 2;
    switch (side) {
    case Side::below: common.middle.y = numbers.bottom + away; break;
    case Side::above: common.middle.y = numbers.top - away; break;
    case Side::leftOf: common.middle.x = numbers.left + common.width / 2; break;
    case Side::rightOf: common.middle.x = numbers.right - common.width / 2; break;
    }
    if (isHorizontal(side)) {
        common.middle.x = frame.width - common.width / 2;
    } else {
        common.middle.y = std::min(numbers.top, 0.0) - away;
        for (const PlacedNumber &number : frame.axes[upperXAxis].numbers)
            if (boxesMeet(common.bounds(), number.bounds().grownBy(commonGap)))
                common.middle.y = number.bounds().top - away;
    }
    axis.common = std::move(common);
}

static Box reachOf(const PlacedFrame &frame) {
    Box reach = frame.box();
    for (const PlacedAxis &axis : frame.axes) {
        if (axis.drawn && axis.settings->outsideTicks) {
            const double end = frame.line[axis.code] - axis.inwards() * frame.tickLength;
            if (axis.horizontal()) {
                reach.top = std::min(reach.top, end);
                reach.bottom = std::max(reach.bottom, end);
            } else {
                reach.left = std::min(reach.left, end);
                reach.right = std::max(reach.right, end);
            }
        }
        for (const PlacedNumber &number : axis.numbers) widen(reach, number.bounds());
        if (axis.common && axis.code != xAxis) widen(reach, axis.common->bounds());
    }
    return reach;
}

static bool showsTime(AxisCode code, const std::vector<DrawnCurve> &curves) {
    return std::ranges::any_of(curves, [&](const DrawnCurve &curve) {
        return (curve.horizontalAxis() == code && curve.table->x.isTime) ||
               (curve.verticalAxis() == code && curve.column->isTime);
    });
}

PlacedFrame frameOf(const Document &document, const std::vector<DrawnCurve> &curves,
                    const Typesetter &typesetter, const FrameSize &size) {
    PlacedFrame frame{scaledFrameOf(document, curves, size)};
    frame.tickLength =
        std::min(document.frame.tickLength * pointsPerCm, std::min(frame.width, frame.height) / 4);
    frame.thickness = document.frame.axisThickness;

    for (const AxisCode code : {xAxis, yAxis, upperXAxis, rightYAxis}) {
        PlacedAxis &axis = frame.axes[code];
        axis.code = code;
        axis.settings = &document.axes[code];
        axis.drawn = !axis.settings->noLine && (frame.own[code] || frame.closed);
        if (frame.own[code])
            axis.marks = marksBeside(*axis.settings, frame.scales[code], showsTime(code, curves),
                                     numberSide(axis), typesetter);
    }
    for (PlacedAxis &axis : frame.axes) {
        if (frame.own[axis.code])
            placeNumbers(axis, frame, typesetter);
        else
            axis.marks = frame.axes[opposite(axis.code)].marks;
    }
    dropCrossedNumbers(frame);
    for (PlacedAxis &axis : frame.axes) placeCommon(axis, frame, typesetter);
    frame.outside = reachOf(frame);
    return frame;
}

} // namespace plotwerk
