// axes.h - draws a frame: grid, axes, ticks, numbers, titles.
#ifndef PLOTWERK_DRAWING_AXES_H
#define PLOTWERK_DRAWING_AXES_H

#include "plotwerk/drawing/frame.h"

#include <cairo.h>

namespace plotwerk {

void drawGrid(cairo_t *cr, const PlacedFrame &frame);

// Lines, ticks, arrows and numbers.
void drawAxes(cairo_t *cr, const PlacedFrame &frame);

// The titles of the axes and, above all else, that of the document. An axis without a title gets
// the name of what is drawn against it, if that is one name: that of the x column, or that of the
// only curve.
void drawTitles(cairo_t *cr, const PlacedFrame &frame, const Document &document,
                const std::vector<DrawnCurve> &curves, const Typesetter &typesetter);

} // namespace plotwerk

#endif
