// placedTexts.h - draws the texts that are placed on a plot.
#ifndef PLOTWERK_DRAWING_PLACEDTEXTS_H
#define PLOTWERK_DRAWING_PLACEDTEXTS_H

#include "plotwerk/drawing/frame.h"

#include <cairo.h>
#include <vector>

namespace plotwerk {

// In a direction in which a text floats, its middle is at the axis's value; it is left out where
// the axis doesn't show that value. In the other, 0 puts the text's near edge on the frame's, 1 the
// far edge, and 0.5 its middle in the middle, so that texts at 0..1 lie inside of the frame; it is
// limited to one frame's length outside.
void drawTexts(cairo_t *cr, const std::vector<PlacedText> &texts, const PlacedFrame &frame,
               const Typesetter &typesetter);

} // namespace plotwerk

#endif
