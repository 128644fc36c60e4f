// coveredCurves.h - what of the curves a text would hide.
#ifndef PLOTWERK_DRAWING_COVEREDCURVES_H
#define PLOTWERK_DRAWING_COVEREDCURVES_H

#include "plotwerk/drawing/drawnCurves.h"
#include "plotwerk/drawing/scaledFrame.h"

#include <vector>

namespace plotwerk {

// For each box how many points of the curves lie in it. A line counts by its length there: what a
// reader sees of it doesn't depend on how densely it is sampled.
std::vector<double> coveredBy(const std::vector<Box> &boxes, const std::vector<DrawnCurve> &curves,
                              const ScaledFrame &frame);

} // namespace plotwerk

#endif
