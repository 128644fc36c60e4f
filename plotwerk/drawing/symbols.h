// symbols.h - the symbols of data points.
#ifndef PLOTWERK_DRAWING_SYMBOLS_H
#define PLOTWERK_DRAWING_SYMBOLS_H

#include "plotwerk/drawing/geometry.h"
#include "plotwerk/model/document.h"

#include <cairo.h>

namespace plotwerk {

// Draws a symbol about a point in the colour:
//   0 disc       1 circle      2 filled square   3 square        4 filled triangle   5 triangle
//   6 filled diamond           7 diamond         8 filled triangle pointing down     9 open one
//   10 plus      11 cross      12 star           13 vertical bar 14 horizontal bar   15 dot
// Open symbols are white inside, or see-through.
void drawSymbol(cairo_t *cr, int code, const Point &at, double size, double lineThickness,
                const Colour &colour, bool whiteInside);

// How far it reaches to either side.
double halfWidthOfSymbol(int code, double size);

void setColour(cairo_t *cr, const Colour &colour);

} // namespace plotwerk

#endif
