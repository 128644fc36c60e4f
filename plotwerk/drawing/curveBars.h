// curveBars.h - straight bars at the points of a curve: drop lines and error bars.
#ifndef PLOTWERK_DRAWING_CURVEBARS_H
#define PLOTWERK_DRAWING_CURVEBARS_H

#include "plotwerk/drawing/curvePath.h"
#include "plotwerk/drawing/drawnCurves.h"
#include "plotwerk/drawing/scaledFrame.h"

#include <cairo.h>

namespace plotwerk {

// From each point inside the frame's width up or down to y = base.
void drawDropLines(cairo_t *cr, const Path &points, double base, const CurveLook &look,
                   const ScaledFrame &frame);

// From the curve's error columns where its look asks for them. Errors that aren't positive have no
// bar.
void drawErrorBars(cairo_t *cr, const DrawnCurve &curve, const ScaledFrame &frame);

} // namespace plotwerk

#endif
