// ranges.h - the ranges of the four axes and of the fit.
//
// A limit is either set, or unset (NaN) and then follows the data: all points, with x and y, that
// are shown (see shownPoints) of the plotted curves (see plottedCurves) that are drawn against the
// axis, and the ends of their error bars where these are drawn; on a logarithmic axis only positive
// values. Infinite values don't count.
#ifndef PLOTWERK_MODEL_RANGES_H
#define PLOTWERK_MODEL_RANGES_H

#include "plotwerk/model/document.h"

namespace plotwerk {

bool hasBothLimits(const Range &range);
bool hasAnyLimit(const Range &range);

// The limits that the axis shows. Unset where the limit is unset and there are no data, or none on
// this side of the limit that is set.
Range rangeOf(const Document &document, AxisCode axis);

// NaN leaves that limit as it is, two NaN unset both. Two limits may come in either order. Refused:
// infinite and equal limits, and one limit that would lie beyond the other that is set.
void setRange(Document &document, AxisCode axis, double min, double max);

// Unsets the limits of all axes: they follow all data.
void rangeOverAll(Document &document);

// Sets the limits, of x or else of y, to those of the selected curves' points and error bars, for
// each axis of that direction that they are drawn against. Refused without a selection, and without
// a point in it.
void setLocalRange(Document &document, bool xDirection);

// Unset limits are those of the fit data's x, or, without fit data, of all rows that are drawn
// against the x axis, each by itself.
Range fitRangeOf(const Document &document);

// As setRange.
void setFitRange(Document &document, double min, double max);

} // namespace plotwerk

#endif
