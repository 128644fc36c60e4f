// attributes.h - how curves, the frame, axes and texts look, changed by messages.
//
// In every change an integer -1, a switch 2 and a NaN leave their setting as it is; that is what
// the members begin with. Switches are 0 (off), 1 (on) or 2. Other switches and numbers beyond
// limits.h are refused, and then nothing is changed.
#ifndef PLOTWERK_MODEL_ATTRIBUTES_H
#define PLOTWERK_MODEL_ATTRIBUTES_H

#include "plotwerk/model/document.h"

#include <array>
#include <string>

namespace plotwerk {

constexpr int keep = 2;

struct LookSwitches {
    int line = keep;
    int stepped = keep;
    int yError = keep;
    int xError = keep;
    int dashed = keep;
    int filled = keep;
    int upperX = keep;
    int rightY = keep;
    int marker = keep;
    int symbols = keep;
};

struct LookValues {
    int sum = -1;
    double interpolationPoints = unset;
    int interpolationType = -1;
    double symbolSize = unset;
    int symbolInc = -1;
    std::array<int, 4> symbol{-1, -1, -1, -1};
    double lineThickness = unset;
    std::array<double, 4> dashLength{unset, unset, unset, unset};
    Colour lineColour{unset, unset, unset, unset};
    Colour fillColour{unset, unset, unset, unset};
};

// Of all selected curves. Refused without a selection.
void changeLook(Document &document, const LookSwitches &switches);
void changeLook(Document &document, const LookValues &values);

// Positions may be infinite: that puts the axis back to its side.
struct FrameChange {
    double xAxisLength = unset; // in cm
    double yAxisLength = unset;
    double tickLength = unset;
    double axisThickness = unset; // in points
    double yAxisPos = unset;
    double xAxisPos = unset;
    int multiDimFit = keep;
    int noLineOnReverse = keep;
};

void changeFrame(Document &document, const FrameChange &change);

struct AxisChange {
    double increment = unset; // 0: automatic again
    int ticks = -1;
    int precision = -1;
    int logarithmic = keep;
    int insideTicks = keep;
    int outsideTicks = keep;
    int majorGrid = keep;
    int minorGrid = keep;
    int exponents = keep;
    double labelAngle = unset; // in degrees
    int noLine = keep;
    int numbersInside = keep;
    int noNumbers = keep;
    int arrow = keep;
    int logTicksAt = -1;
    int logNumbersAt = -1;
    int reversed = keep;
    double labelDensity = unset;
};

// Axes are numbered from 1 here: x, y, upper x, right y.
void changeAxis(Document &document, int axisNumber, const AxisChange &change);

// Text that begins with "{\rtf" is RTF. axisCount stands for the title of the document.
void setTitle(Document &document, AxisCode axis, const std::string &title);

// Adds a text. One that is placed just where another is takes its place, and an empty one takes it
// away. NaN stands for a new text's position and angle.
void placeText(Document &document, const PlacedText &text);

} // namespace plotwerk

#endif
