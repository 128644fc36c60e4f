#include "plotwerk/model/attributes.h"

#include "plotwerk/base/refusal.h"
#include "plotwerk/model/curves.h"

#include <algorithm>
#include <climits>
#include <cmath>
#include <cstdio>
#include <vector>

namespace plotwerk {

[[noreturn]] static void refuse(const char *name, double value) {
    char text[80];
    std::snprintf(text, sizeof text, "%s can't be %g", name, value);
    throw Refusal(text);
}

static void setSwitch(bool &setting, int value, const char *name) {
    if (value == keep) return;
    if (value != 0 && value != 1) refuse(name, value);
    setting = value == 1;
}

static void setNumber(int &setting, int value, int lowest, int highest, const char *name) {
    if (value == -1) return;
    if (value < lowest || value > highest) refuse(name, value);
    setting = value;
}

static void setNumber(double &setting, double value, double lowest, double highest,
                      const char *name) {
    if (std::isnan(value)) return;
    if (value < lowest || value > highest) refuse(name, value);
    setting = value;
}

static void setColour(Colour &setting, const Colour &value) {
    setNumber(setting.red, value.red, 0, 1, "a part of a colour");
    setNumber(setting.green, value.green, 0, 1, "a part of a colour");
    setNumber(setting.blue, value.blue, 0, 1, "a part of a colour");
    setNumber(setting.opacity, value.opacity, 0, 1, "a part of a colour");
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
    setNumber(look.sum, values.sum, 0, INT_MAX, "sum");
    setNumber(look.interpolationPoints, values.interpolationPoints, 0, 1e6, "interpolationPoints");
    setNumber(look.interpolationType, values.interpolationType, 0, 1, "interpolationType");
    setNumber(look.symbolSize, values.symbolSize, 0, 200, "symbolSize");
    setNumber(look.symbolInc, values.symbolInc, 1, INT_MAX, "symbolInc");
    setNumber(look.lineThickness, values.lineThickness, 0, 50, "lineThickness");
    for (std::size_t i = 0; i < look.symbol.size(); ++i) {
        setNumber(look.symbol[i], values.symbol[i], 0, INT_MAX, "a symbol");
        setNumber(look.dashLength[i], values.dashLength[i], 0, 1000, "a dash length");
    }
    setColour(look.lineColour, values.lineColour);
    setColour(look.fillColour, values.fillColour);
}

template<class Change> static void changeLooks(Document &document, const Change &change) {
    const std::vector<CurveRef> selected = requireSelection(document);
    CurveLook trial;
    apply(change, trial); // whether it is refused doesn't depend on the look before
    for (const CurveRef &curve : selected) apply(change, columnOf(document, curve).look);
    document.changed = true;
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
    setNumber(frame.xAxisLength, change.xAxisLength, 1, 100, "xAxisLength");
    setNumber(frame.yAxisLength, change.yAxisLength, 1, 100, "yAxisLength");
    setNumber(frame.tickLength, change.tickLength, 0, 100, "tickLength");
    setNumber(frame.axisThickness, change.axisThickness, 0, 20, "axisThickness");
    setPosition(frame.yAxisPos, change.yAxisPos);
    setPosition(frame.xAxisPos, change.xAxisPos);
    setSwitch(frame.multiDimFit, change.multiDimFit, "multiDimFit");
    setSwitch(frame.noLineOnReverse, change.noLineOnReverse, "noLineOnRev");
    document.frame = frame;
    document.changed = true;
}

void changeAxis(Document &document, int axisNumber, const AxisChange &change) {
    if (axisNumber < 1 || axisNumber > axisCount)
        throw Refusal("no axis has the number " + std::to_string(axisNumber));

    Axis axis = document.axes[axisNumber - 1];
    setNumber(axis.increment, change.increment, 0, std::numeric_limits<double>::max(), "inc");
    if (axis.increment == 0) axis.increment = unset;
    setNumber(axis.ticks, change.ticks, 0, 100, "ticks");
    setNumber(axis.precision, change.precision, 0, 16, "prec");
    setSwitch(axis.logarithmic, change.logarithmic, "log");
    setSwitch(axis.insideTicks, change.insideTicks, "insideticks");
    setSwitch(axis.outsideTicks, change.outsideTicks, "outsideticks");
    setSwitch(axis.majorGrid, change.majorGrid, "majorgrid");
    setSwitch(axis.minorGrid, change.minorGrid, "minorgrid");
    setSwitch(axis.exponents, change.exponents, "expnumbers");
    setNumber(axis.labelAngle, change.labelAngle, -360, 360, "labelAngle");
    setSwitch(axis.noLine, change.noLine, "noline");
    setSwitch(axis.numbersInside, change.numbersInside, "numbersinside");
    setSwitch(axis.noNumbers, change.noNumbers, "nonumbers");
    setSwitch(axis.arrow, change.arrow, "arrow");
    setNumber(axis.logTicksAt, change.logTicksAt, 1, 600, "logticksAt");
    setNumber(axis.logNumbersAt, change.logNumbersAt, 1, 600, "lognumberAt");
    setSwitch(axis.reversed, change.reversed, "reverse");
    setNumber(axis.labelDensity, change.labelDensity, 0.1, 10, "labelDensity");
    document.axes[axisNumber - 1] = std::move(axis);
    document.changed = true;
}

void setTitle(Document &document, AxisCode axis, const std::string &title) {
    document.axes[axis].title = title;
    document.changed = true;
}

void placeText(Document &document, const PlacedText &text) {
    PlacedText placed;
    constexpr double most = std::numeric_limits<double>::max();
    setNumber(placed.x, text.x, -most, most, "at_X");
    setNumber(placed.y, text.y, -most, most, "at_Y");
    setNumber(placed.angle, text.angle, -most, most, "angle");
    placed.xFloating = text.xFloating;
    placed.yFloating = text.yFloating;
    placed.text = text.text;

    const auto isThere = [&](const PlacedText &other) {
        return other.x == placed.x && other.y == placed.y && other.xFloating == placed.xFloating &&
               other.yFloating == placed.yFloating;
    };
    if (!placed.text.empty()) document.texts.push_back(placed);
    const auto kept = document.texts.end() - (placed.text.empty() ? 0 : 1);
    document.texts.erase(std::remove_if(document.texts.begin(), kept, isThere), kept);
    document.changed = true;
}

} // namespace plotwerk
