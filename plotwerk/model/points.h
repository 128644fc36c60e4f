// points.h - single points of a curve: values, indexes, and the point nearest to a place on paper.
//
// Points count from 0. The series is a curve's index, or -1: see curveOfSeries. A series without a
// curve and a point index out of range are refused.
#ifndef PLOTWERK_MODEL_POINTS_H
#define PLOTWERK_MODEL_POINTS_H

#include "plotwerk/model/document.h"

#include <optional>

namespace plotwerk {

// Value of the curve at x, as evalFct gives it: linear between points, 0.0 outside of them, one NaN
// y replaced by its neighbour's; NaN for a NaN x. Points without x don't count. Where x doesn't
// ascend, the first segment in the order of the points that spans x is taken. Ascending x in call
// after call cost constant time where the table's x ascends.
//   points (0, 1), (2, 5):   -1 -> 0   0 -> 1   1 -> 3   2 -> 5   3 -> 0
double valueAtX(const Document &document, double x, int series);

double valueAtIndex(const Document &document, int index, int series);

void setValueAtIndex(Document &document, int index, int series, double value);

// Index of the last point at or below x; -1 when all are above, for NaN, and without points. Where
// x doesn't ascend, of the point with the largest x that is not above.
int indexAtX(const Document &document, double x, int series);

struct NearestPoint {
    int curve = -1;
    int index = -1;
    double x = unset;
    double y = unset;
};

// The plotted curve (see plottedCurves) that comes nearest to the place (x, y) of the x and y axes,
// and of that curve's points the nearest. Distances are measured on paper: by axis length over axis
// range, of decades where an axis is logarithmic, and for each curve by the axes it is drawn
// against. A curve is its lines where they are drawn, otherwise its points. Nothing when there is
// no such point, or when the place is not on paper (NaN, or not positive on a logarithmic axis).
std::optional<NearestPoint> nearestPoint(const Document &document, double x, double y);

} // namespace plotwerk

#endif
