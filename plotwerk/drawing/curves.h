// curves.h - draws the curves of a picture.
#ifndef PLOTWERK_DRAWING_CURVES_H
#define PLOTWERK_DRAWING_CURVES_H

#include "plotwerk/drawing/drawnCurves.h"
#include "plotwerk/drawing/scaledFrame.h"

#include <cairo.h>

namespace plotwerk {

// Of a filled curve that a fit has drawn its 95 % band: it lies below all curves, since it would
// veil the data.
void drawBand(cairo_t *cr, const DrawnCurve &curve, const ScaledFrame &frame,
              const Document &document, double resolution);

// Area (but no band), line, drop lines, error bars and symbols of one curve, in this order, cut at
// the frame; symbols whose point is inside stay whole. Points that fall on the same spot are drawn
// once. Above 0, the resolution tells what can be seen, in points: long curves are thinned to that.
void drawCurve(cairo_t *cr, const DrawnCurve &curve, const ScaledFrame &frame,
               const Document &document, double resolution);

// How far the curve's symbols may reach beyond the frame, in points.
double reachOf(const DrawnCurve &curve);

} // namespace plotwerk

#endif
