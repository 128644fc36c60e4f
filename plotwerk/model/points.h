// points.h - single points of a curve: values and indexes.
//
// Points count from 0. The series is a curve's index, or -1: see curveOfSeries. A series without a
// curve and a point index out of range are refused.
#ifndef PLOTWERK_MODEL_POINTS_H
#define PLOTWERK_MODEL_POINTS_H

#include "plotwerk/model/document.h"

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

} // namespace plotwerk

#endif
