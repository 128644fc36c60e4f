// curveSample.h - a short piece of a curve, as a legend shows it beside the curve's name.
#ifndef PLOTWERK_DRAWING_CURVESAMPLE_H
#define PLOTWERK_DRAWING_CURVESAMPLE_H

#include "plotwerk/drawing/geometry.h"
#include "plotwerk/model/document.h"

#include <cairo.h>

namespace plotwerk {

constexpr double sampleHeight = 6.5; // that of capitals, in points

// Whether the look draws anything of a curve.
bool showsAnything(const CurveLook &look);

// In points: enough to tell the dashes.
double sampleWidthOf(const CurveLook &look);

// Draws line, area, symbol and bar with its lower left corner at a place. Lines and symbols that
// would reach far beyond the sample are drawn smaller.
void drawSample(cairo_t *cr, const CurveLook &look, const Point &at, double width);

} // namespace plotwerk

#endif
