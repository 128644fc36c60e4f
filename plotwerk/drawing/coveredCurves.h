// coveredCurves.h - what of the curves a text would hide.
#ifndef PLOTWERK_DRAWING_COVEREDCURVES_H
#define PLOTWERK_DRAWING_COVEREDCURVES_H

#include "plotwerk/drawing/curvePath.h"
#include "plotwerk/drawing/drawnCurves.h"
#include "plotwerk/drawing/scaledFrame.h"

#include <vector>

namespace plotwerk {

// Where a curve lies. A curve with very many points is represented by every n-th of them.
struct CurveInk {
    Path marks; // its points; empty where only the line is drawn
    Path line;
    double pointsPerMark = 1;
};

std::vector<CurveInk> inkOf(const std::vector<DrawnCurve> &curves, const ScaledFrame &frame);

// How many points lie in the box. Lines count by their length there: what a reader sees of them
// doesn't depend on how densely they are sampled.
double coveredBy(const Box &box, const std::vector<CurveInk> &inks);

} // namespace plotwerk

#endif
