// screenStrokes.h - strokes along the path of a long curve where only the dots of a screen are
// seen.
#ifndef PLOTWERK_DRAWING_SCREENSTROKES_H
#define PLOTWERK_DRAWING_SCREENSTROKES_H

#include "plotwerk/drawing/curvePath.h"
#include "plotwerk/model/document.h"

#include <cairo.h>

namespace plotwerk {

// As strokePath, where nothing finer than the resolution, in points, is seen. Of many points the
// lines that are all but upright are drawn as boxes, which costs a fraction of the time, and dashes
// only where the line covers less than half of the box.
void strokeOnScreen(cairo_t *cr, const Path &path, const CurveLook &look, const Box &box,
                    double resolution);

} // namespace plotwerk

#endif
