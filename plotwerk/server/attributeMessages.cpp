// The messages about the look of curves, axes and texts.
#include "plotwerk/drawing/richText.h"
#include "plotwerk/fit/documentFormula.h"
#include "plotwerk/model/attributes.h"
#include "plotwerk/server/controlObject.h"

#include <algorithm>
#include <cmath>
#include <string_view>

namespace plotwerk {

void ControlObject::
    setAttributesOfSelectionOf_line_stepped_yerr_xerr_dash_fill_topX_rightY_marker_sym_(
        const std::string &name, const std::int32_t &line, const std::int32_t &stepped,
        const std::int32_t &yError, const std::int32_t &xError, const std::int32_t &dashed,
        const std::int32_t &filled, const std::int32_t &upperX, const std::int32_t &rightY,
        const std::int32_t &marker, const std::int32_t &symbols) {
    actOn(name, [&](Document &document) {
        const LookSwitches switches{
            .line = line,
            .stepped = stepped,
            .yError = yError,
            .xError = xError,
            .dashed = dashed,
            .filled = filled,
            .upperX = upperX,
            .rightY = rightY,
            .marker = marker,
            .symbols = symbols,
        };
        changeLook(document, switches);
    });
}

void ControlObject::setAttributes2OfSelectionOf_(
    const std::string &name, const std::int32_t &sum, const double &interpolationPoints,
    const std::int32_t &interpolationType, const double &symbolSize, const std::int32_t &symbolInc,
    const std::int32_t &symbol1, const std::int32_t &symbol2, const std::int32_t &symbol3,
    const std::int32_t &symbol4, const double &lineThickness, const double &dash1,
    const double &dash2, const double &dash3, const double &dash4, const double &lineRed,
    const double &lineGreen, const double &lineBlue, const double &lineOpacity,
    const double &fillRed, const double &fillGreen, const double &fillBlue,
    const double &fillOpacity) {
    actOn(name, [&](Document &document) {
        const LookValues values{
            .sum = sum,
            .interpolationPoints = interpolationPoints,
            .interpolationType = interpolationType,
            .symbolSize = symbolSize,
            .symbolInc = symbolInc,
            .symbol = {symbol1, symbol2, symbol3, symbol4},
            .lineThickness = lineThickness,
            .dashLength = {dash1, dash2, dash3, dash4},
            .lineColour = {.red = lineRed,
                           .green = lineGreen,
                           .blue = lineBlue,
                           .opacity = lineOpacity},
            .fillColour = {.red = fillRed,
                           .green = fillGreen,
                           .blue = fillBlue,
                           .opacity = fillOpacity},
        };
        changeLook(document, values);
    });
}

void ControlObject::
    setDocAttributes_xAxisLength_yAxisLength_tickLength_axisThickness_yAxisPos_xAxisPos_multiDimFit_noLineOnRev_(
        const std::string &name, const double &xAxisLength, const double &yAxisLength,
        const double &tickLength, const double &axisThickness, const double &yAxisPos,
        const double &xAxisPos, const std::int32_t &multiDimFit,
        const std::int32_t &noLineOnReverse) {
    actOn(name, [&](Document &document) {
        const FrameChange change{
            .xAxisLength = xAxisLength,
            .yAxisLength = yAxisLength,
            .tickLength = tickLength,
            .axisThickness = axisThickness,
            .yAxisPos = yAxisPos,
            .xAxisPos = xAxisPos,
            .multiDimFit = multiDimFit,
            .noLineOnReverse = noLineOnReverse,
        };
        changeFrameWithFormula(document, change);
    });
}

void ControlObject::
    setAxisOf_axisCode_inc_ticks_prec_log_insideticks_outsideticks_majorgrid_minorgrid_expnumbers_labelAngle_noline_numbersinside_nonumbers_arrow_logticksAt_lognumberAt_reverse_labelDensity_(
        const std::string &name, const std::int32_t &axisNumber, const double &increment,
        const std::int32_t &ticks, const std::int32_t &precision, const std::int32_t &logarithmic,
        const std::int32_t &insideTicks, const std::int32_t &outsideTicks,
        const std::int32_t &majorGrid, const std::int32_t &minorGrid, const std::int32_t &exponents,
        const double &labelAngle, const std::int32_t &noLine, const std::int32_t &numbersInside,
        const std::int32_t &noNumbers, const std::int32_t &arrow, const std::int32_t &logTicksAt,
        const std::int32_t &logNumbersAt, const std::int32_t &reversed,
        const double &labelDensity) {
    actOn(name, [&](Document &document) {
        const AxisChange change{
            .increment = increment,
            .ticks = ticks,
            .precision = precision,
            .logarithmic = logarithmic,
            .insideTicks = insideTicks,
            .outsideTicks = outsideTicks,
            .majorGrid = majorGrid,
            .minorGrid = minorGrid,
            .exponents = exponents,
            .labelAngle = labelAngle,
            .noLine = noLine,
            .numbersInside = numbersInside,
            .noNumbers = noNumbers,
            .arrow = arrow,
            .logTicksAt = logTicksAt,
            .logNumbersAt = logNumbersAt,
            .reversed = reversed,
            .labelDensity = labelDensity,
        };
        changeAxis(document, axisNumber, change);
    });
}

static bool isYes(double flag) {
    return flag != 0 && !std::isnan(flag);
}

// How a text begins that is no text on the plot, but the title of an axis, or of all.
static constexpr struct {
    std::string_view tag;
    AxisCode axis; // axisCount: the document's own title
} titleTags[] = {{"<x title>", xAxis},
                 {"<y title>", yAxis},
                 {"<upper x title>", upperXAxis},
                 {"<right y title>", rightYAxis},
                 {"<title>", axisCount}};

// Whether the text, RTF or plain, was a title.
static bool setTaggedTitle(Document &document, std::string text) {
    for (const auto &[tag, axis] : titleTags) {
        const std::size_t at = text.find(tag);
        if (at == std::string::npos || !plainTextOf(richTextOf(text)).starts_with(tag)) continue;
        const std::size_t end = text.find_first_not_of(' ', at + tag.size());
        text.erase(at, std::min(end, text.size()) - at);
        if (plainTextOf(richTextOf(text)).empty()) text.clear();
        setTitle(document, axis, text);
        return true;
    }
    return false;
}

void ControlObject::setRTFTextOf_to_at_X_at_Y_angle_xFloating_yFloating_(
    const std::string &name, const std::string &text, const double &x, const double &y,
    const double &angle, const double &xFloating, const double &yFloating) {
    actOn(name, [&](Document &document) {
        if (setTaggedTitle(document, text)) return;
        const bool showsNothing = plainTextOf(richTextOf(text)).empty();
        const PlacedText placed{
            .text = showsNothing ? "" : text,
            .x = x,
            .y = y,
            .angle = angle,
            .xFloating = isYes(xFloating),
            .yFloating = isYes(yFloating),
        };
        placeText(document, placed);
    });
}

void ControlObject::setXTitleOf_to_(const std::string &name, const std::string &title) {
    actOn(name, [&](Document &document) { setTitle(document, xAxis, title); });
}

void ControlObject::setYTitleOf_to_(const std::string &name, const std::string &title) {
    actOn(name, [&](Document &document) { setTitle(document, yAxis, title); });
}

void ControlObject::setRTFxTitleOf_to_(const std::string &name, const std::string &title) {
    actOn(name, [&](Document &document) { setTitle(document, xAxis, title); });
}

void ControlObject::setRTFyTitleOf_to_(const std::string &name, const std::string &title) {
    actOn(name, [&](Document &document) { setTitle(document, yAxis, title); });
}

} // namespace plotwerk
