// curvePoints.h - the points of a curve on paper, from its data and its look.
#ifndef PLOTWERK_DRAWING_CURVEPOINTS_H
#define PLOTWERK_DRAWING_CURVEPOINTS_H

#include "plotwerk/drawing/curvePath.h"
#include "plotwerk/drawing/drawnCurves.h"
#include "plotwerk/drawing/scaledFrame.h"

namespace plotwerk {

// One point per row; a break where a value is missing, infinite, or not positive on a logarithmic
// axis.
Path rowsOnPaper(const DrawnCurve &curve, const ScaledFrame &frame);

// Of the rows begin to end - 1 alone.
Path rowsOnPaper(const DrawnCurve &curve, const ScaledFrame &frame, std::size_t begin,
                 std::size_t end);

// What is drawn: the rows or, with look.sum above 1, the means of look.sum valid rows each, without
// breaks.
Path pointsOnPaper(const DrawnCurve &curve, const ScaledFrame &frame);

// The curve's line, which is also the edge of its area: through its points on paper, with
// interpolationPoints more between two neighbours, and stepped, as its look says. The points
// between lie on the straight line between the values, which is bent on a logarithmic axis, or on a
// natural cubic spline through the points on paper. Where x doesn't ascend or descend throughout a
// part of the line the spline is left out; points beyond four million are left out altogether.
// Above 0, nothing finer than the resolution, in points, is seen: with points between, only the
// extremes of columns that wide are in the line.
Path linePath(Path points, const DrawnCurve &curve, const ScaledFrame &frame,
              double resolution = 0);

// Whether that line has points between those of the curve.
bool hasPointsBetween(const DrawnCurve &curve, const ScaledFrame &frame);

// About how many points that line has, told without making it.
double pointsOfLine(const DrawnCurve &curve, const ScaledFrame &frame);

// Breaks the path where its x, as values, runs backwards.
Path brokenOnReverse(const Path &path, bool reversedAxis);

} // namespace plotwerk

#endif
