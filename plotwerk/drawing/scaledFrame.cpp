#include "plotwerk/drawing/scaledFrame.h"

#include "plotwerk/drawing/fittedCurve.h"
#include "plotwerk/model/ranges.h"

#include <algorithm>
#include <cmath>

namespace plotwerk {

// Between data and frame, as a part of the axis: 5 mm of 12 cm, so that a line doesn't run along
// the frame, and a symbol or an error bar's cap at the outermost point is not cut.
static constexpr double room = 0.04;

AxisCode opposite(AxisCode code) {
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
    if (isUsed(code, curves) || hasAnyLimit(document.axes[code].range)) return true;
    const bool primary = code == xAxis || code == yAxis;
    return primary && !isUsed(opposite(code), curves) &&
           !hasAnyLimit(document.axes[opposite(code)].range);
}

// Whether areas or drop lines rise against the axis.
static bool hasBase(AxisCode code, const std::vector<DrawnCurve> &curves) {
    return std::ranges::any_of(curves, [&](const DrawnCurve &curve) {
        const CurveLook &look = curve.column->look;
        return curve.verticalAxis() == code &&
               (look.marker || (look.filled && !curve.column->drawnByFit));
    });
}

// Limits widened to the bands of fits that are drawn, but on either side by no more than half of
// what lies between them: a band that the data hardly determine doesn't squeeze the data.
static Range withBands(const Range &data, const Document &document, AxisCode code,
                       const std::vector<DrawnCurve> &curves) {
    const Axis &axis = document.axes[code];
    const double half = (data.max - data.min) / 2;
    const double factor = std::sqrt(data.max / data.min);
    const Range most = axis.logarithmic ? Range{data.min / factor, data.max * factor}
                                        : Range{data.min - half, data.max + half};
    Range range = data;
    for (const DrawnCurve &curve : curves) {
        if (curve.verticalAxis() != code || !curve.column->look.filled) continue;
        const auto fitted = FittedCurve::of(document, curve);
        if (!fitted) continue;
        const Range band = fitted->bandAtData(document, curve);
        if (std::isnan(axis.range.min) && band.min < range.min)
            range.min = std::max(band.min, most.min);
        if (std::isnan(axis.range.max) && band.max > range.max)
            range.max = std::min(band.max, most.max);
    }
    return range;
}

// The limits of the data; those that aren't set take in bands of fits, and where drop lines and
// areas begin.
static Range drawnRange(const Document &document, AxisCode code,
                        const std::vector<DrawnCurve> &curves, bool fromBase) {
    const Axis &axis = document.axes[code];
    Range range = rangeOf(document, code);
    if (range.min < range.max) range = withBands(range, document, code, curves);
    if (!fromBase || axis.logarithmic) return range;
    const double base = baseValue(document.frame);
    if (std::isnan(axis.range.min)) range.min = std::min(range.min, base);
    if (std::isnan(axis.range.max)) range.max = std::max(range.max, base);
    return range;
}

// That range with some room beyond the limits that aren't set, but none below or above a zero on
// which areas or drop lines stand.
static Range shownRange(const Document &document, AxisCode code,
                        const std::vector<DrawnCurve> &curves) {
    const Axis &axis = document.axes[code];
    const bool fromBase = hasBase(code, curves);
    Range range = drawnRange(document, code, curves, fromBase);
    if (!(range.min < range.max)) return range;

    if (axis.logarithmic) {
        const double factor = std::pow(range.max / range.min, room);
        if (!(range.min > 0) || !std::isfinite(factor)) return range;
        if (std::isnan(axis.range.min)) range.min /= factor;
        if (std::isnan(axis.range.max)) range.max *= factor;
    } else {
        const double margin = room * (range.max - range.min);
        const auto standOn = [&](double limit) { return fromBase && limit == 0; };
        if (std::isnan(axis.range.min) && !standOn(range.min)) range.min -= margin;
        if (std::isnan(axis.range.max) && !standOn(range.max)) range.max += margin;
    }
    return range;
}

// y of a horizontal axis or x of a vertical one that shall stand at a value of the axis it crosses.
static double crossing(double value, const Scale &scale) {
    return limited(scale.position(value), 0, scale.length, 0);
}

static void placeLines(ScaledFrame &frame, const Frame &settings) {
    frame.line[xAxis] = frame.height;
    frame.line[rightYAxis] = frame.width;
    if (!std::isnan(settings.xAxisPos))
        frame.line[xAxis] -= crossing(settings.xAxisPos, frame.scales[yAxis]);
    if (!std::isnan(settings.yAxisPos))
        frame.line[yAxis] = crossing(settings.yAxisPos, frame.scales[xAxis]);
}

FrameSize frameSizeOf(const Document &document) {
    return {document.frame.xAxisLength * pointsPerCm, document.frame.yAxisLength * pointsPerCm};
}

ScaledFrame scaledFrameOf(const Document &document, const std::vector<DrawnCurve> &curves) {
    return scaledFrameOf(document, curves, frameSizeOf(document));
}

ScaledFrame scaledFrameOf(const Document &document, const std::vector<DrawnCurve> &curves,
                          const FrameSize &size) {
    const Frame &settings = document.frame;
    ScaledFrame frame;
    frame.width = size.width;
    frame.height = size.height;
    frame.closed = std::isnan(settings.xAxisPos) && std::isnan(settings.yAxisPos) &&
                   std::none_of(document.axes.begin(), document.axes.end(),
                                [](const Axis &axis) { return axis.arrow; });

    for (const AxisCode code : {xAxis, yAxis, upperXAxis, rightYAxis}) {
        frame.own[code] = hasOwnScale(document, code, curves);
        if (!frame.own[code]) continue;
        frame.scales[code] = scaleOf(document.axes[code], shownRange(document, code, curves),
                                     isHorizontal(code) ? frame.width : frame.height);
    }
    for (const AxisCode code : {xAxis, yAxis, upperXAxis, rightYAxis})
        if (!frame.own[code]) frame.scales[code] = frame.scales[opposite(code)];
    placeLines(frame, settings);
    return frame;
}

} // namespace plotwerk
