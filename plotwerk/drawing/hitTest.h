// hitTest.h - the point of a document that lies nearest to a place on its picture.
#ifndef PLOTWERK_DRAWING_HITTEST_H
#define PLOTWERK_DRAWING_HITTEST_H

#include "plotwerk/drawing/scaledFrame.h"

#include <optional>

namespace plotwerk {

struct NearestPoint {
    int curve = -1;
    int index = -1;
    double x = unset;
    double y = unset;
    double distance = unset; // of the place from the curve, in points on paper
};

// The drawn curve that comes nearest to the place where (x, y) lies on the x and y axes, and of
// that curve's points the nearest; of several curves as near the one whose point is nearer, then
// the first. Distances are measured on paper, within the frame and beyond it. For a curve that is
// drawn against the upper x or the right y axis it is the place on paper that counts, not the value
// there.
//
// A curve is its line where that is drawn (see linePath: interpolated, stepped, of means, broken
// where x runs backwards), otherwise its points on paper, which may be means. Areas, drop lines and
// error bars don't count. The point, though, is one of the data.
//
// Nothing when there is no such point, or when the place is not on paper (NaN or infinite, or not
// positive on a logarithmic axis).
std::optional<NearestPoint> nearestPoint(const Document &document, double x, double y);

// The same of a place in a frame of the document.
std::optional<NearestPoint> nearestPoint(const Document &document, const ScaledFrame &frame,
                                         const Point &place);

} // namespace plotwerk

#endif
