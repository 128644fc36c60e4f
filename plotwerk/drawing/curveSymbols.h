// curveSymbols.h - the symbols at the points of a curve.
#ifndef PLOTWERK_DRAWING_CURVESYMBOLS_H
#define PLOTWERK_DRAWING_CURVESYMBOLS_H

#include "plotwerk/drawing/curvePath.h"
#include "plotwerk/drawing/scaledFrame.h"

#include <cairo.h>

namespace plotwerk {

// One symbol of the curve: the second to fourth are drawn over the first.
void drawSymbolOf(cairo_t *cr, const CurveLook &look, const Point &at, const Colour &colour,
                  bool whiteInside);

// At every symbolInc-th point that lies in the frame; the resolution as for drawCurve.
void drawSymbols(cairo_t *cr, const Path &points, const CurveLook &look, const ScaledFrame &frame,
                 double resolution);

} // namespace plotwerk

#endif
