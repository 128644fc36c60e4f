#include "plotwerk/model/attributes.h"

#include "plotwerk/base/bounds.h"
#include "plotwerk/base/refusal.h"
#include "plotwerk/model/curves.h"
#include "plotwerk/model/limits.h"

#include <algorithm>
#include <cmath>
#include <string>
#include <utility>
#include <vector>

namespace plotwerk {

static void setSwitch(bool &setting, int value, const char *name) {
    if (value == keep) return;
    requireWithin(name, value, {0, 1});
    setting = value == 1;
}

static void setNumber(int &setting, int value) {
    if (value != -1) setting = value;
}

static void setNumber(double &setting, double value) {
    if (!std::isnan(value)) setting = value;
}

static void setColour(Colour &setting, const Colour &value) {
    setNumber(setting.red, value.red);
    setNumber(setting.green, value.green);
    setNumber(setting.blue, value.blue);
    setNumber(setting.opacity, value.opacity);
}

static void apply(const LookSwitches &switches, CurveLook &look) {
    setSwitch(look.line, switches.line, "line");
    setSwitch(look.stepped, switches.stepped, "stepped");
    setSwitch(look.yError, switches.yError, "yerr");
    setSwitch(look.xError, switches.xError, "xerr");
    setSwitch(look.dashed, switches.dashed, "dash");
    setSwitch(look.filled, switches.filled, "fill");
    setSwitch(look.upperX, switches.upperX, "topX");
    setSwitch(look.rightY, switches.rightY, "rightY");
    setSwitch(look.marker, switches.marker, "marker");
    setSwitch(look.symbols, switches.symbols, "sym");
}

static void apply(const LookValues &values, CurveLook &look) {
    setNumber(look.sum, values.sum);
    setNumber(look.interpolationPoints, values.interpolationPoints);
    setNumber(look.interpolationType, values.interpolationType);
    setNumber(look.symbolSize, values.symbolSize);
    setNumber(look.symbolInc, values.symbolInc);
    setNumber(look.lineThickness, values.lineThickness);
    for (std::size_t i = 0; i < look.symbol.size(); ++i) {
        setNumber(look.symbol[i], values.symbol[i]);
        setNumber(look.dashLength[i], values.dashLength[i]);
    }
    setColour(look.lineColour, values.lineColour);
    setColour(look.fillColour, values.fillColour);
}

template<class Change> static void changeLooks(Document &document, const Change &change) {
    const std::vector<CurveRef> selected = requireSelection(document);
    CurveLook trial;
    apply(change, trial); // whether it is refused doesn't depend on the look before
    requireWithinLimits(trial);
    for (const CurveRef &curve : selected) apply(change, columnOf(document, curve).look);
}

void changeLook(Document &document, const LookSwitches &switches) {
    changeLooks(document, switches);
}

void changeLook(Document &document, const LookValues &values) {
    changeLooks(document, values);
}

static void setPosition(double &setting, double value) {
    if (!std::isnan(value)) setting = std::isinf(value) ? unset : value;
}

void changeFrame(Document &document, const FrameChange &change) {
    Frame frame = document.frame;
    setNumber(frame.xAxisLength, change.xAxisLength);
    setNumber(frame.yAxisLength, change.yAxisLength);
    setNumber(frame.tickLength, change.tickLength);
    setNumber(frame.axisThickness, change.axisThickness);
    setPosition(frame.yAxisPos, change.yAxisPos);
    setPosition(frame.xAxisPos, change.xAxisPos);
    setSwitch(frame.multiDimFit, change.multiDimFit, "multiDimFit");
    setSwitch(frame.noLineOnReverse, change.noLineOnReverse, "noLineOnRev");
    requireWithinLimits(frame);
    document.frame = frame;
}

void changeAxis(Document &document, int axisNumber, const AxisChange &change) {
    if (axisNumber < 1 || axisNumber > axisCount)
        throw Refusal("no axis has the number " + std::to_string(axisNumber));

    Axis axis = document.axes[axisNumber - 1];
    setNumber(axis.increment, change.increment);
    if (axis.increment == 0) axis.increment = unset;
    setNumber(axis.ticks, change.ticks);
    setNumber(axis.precision, change.precision);
    setSwitch(axis.logarithmic, change.logarithmic, "log");
    setSwitch(axis.insideTicks, change.insideTicks, "insideticks");
    setSwitch(axis.outsideTicks, change.outsideTicks, "outsideticks");
    setSwitch(axis.majorGrid, change.majorGrid, "majorgrid");
    setSwitch(axis.minorGrid, change.minorGrid, "minorgrid");
    setSwitch(axis.exponents, change.exponents, "expnumbers");
    setNumber(axis.labelAngle, change.labelAngle);
    setSwitch(axis.noLine, change.noLine, "noline");
    setSwitch(axis.numbersInside, change.numbersInside, "numbersinside");
    setSwitch(axis.noNumbers, change.noNumbers, "nonumbers");
    setSwitch(axis.arrow, change.arrow, "arrow");
    setNumber(axis.logTicksAt, change.logTicksAt);
    setNumber(axis.logNumbersAt, change.logNumbersAt);
    setSwitch(axis.reversed, change.reversed, "reverse");
    setNumber(axis.labelDensity, change.labelDensity);
    requireWithinLimits(axis);
    document.axes[axisNumber - 1] = std::move(axis);
}

void setTitle(Document &document, AxisCode axis, const std::string &title) {
    requireLength("a title", title, longestText);
    (axis == axisCount ? document.title : document.axes[axis].title) = title;
}

void placeText(Document &document, const PlacedText &text) {
    PlacedText placed;
    setNumber(placed.x, text.x);
    setNumber(placed.y, text.y);
    setNumber(placed.angle, text.angle);
    placed.xFloating = text.xFloating;
    placed.yFloating = text.yFloating;
    placed.text = text.text;
    requireWithinLimits(placed);

    const auto isThere = [&](const PlacedText &other) {
        return other.x == placed.x && other.y == placed.y && other.xFloating == placed.xFloating &&
               other.yFloating == placed.yFloating;
    };
    if (!placed.text.empty()) {
        requireRoom(static_cast<double>(sizeof placed + placed.text.size()));
        document.texts.push_back(placed);
    }
    const auto kept = document.texts.end() - (placed.text.empty() ? 0 : 1);
    document.texts.erase(std::remove_if(document.texts.begin(), kept, isThere), kept);
}

} // namespace plotwerk
