// visiblePoints.h - those points of a long curve that make its line on a screen.
#ifndef PLOTWERK_DRAWING_VISIBLEPOINTS_H
#define PLOTWERK_DRAWING_VISIBLEPOINTS_H

#include "plotwerk/drawing/curvePath.h"
#include "plotwerk/drawing/drawnCurves.h"
#include "plotwerk/drawing/scaledFrame.h"

namespace plotwerk {

// Points of the curve on paper for a line that can't be told from that through all of them (see
// pointsOnPaper) where nothing finer than the resolution, in points, is seen: the extremes of
// columns that wide. Where x ascends, none from beyond the frame but the nearest ones.
//
// All points of a curve that is drawn as means or with points between, and of one whose line is
// broken where x runs backwards.
Path visiblePoints(const DrawnCurve &curve, const ScaledFrame &frame, bool breaksOnReverse,
                   double resolution);

// The curve's line (see linePath) as it can be seen: through those points, and with the extremes of
// columns that wide alone where it has points between them.
Path visibleLine(const DrawnCurve &curve, const ScaledFrame &frame, bool breaksOnReverse,
                 double resolution);

} // namespace plotwerk

#endif
