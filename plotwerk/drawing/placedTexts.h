// placedTexts.h - draws the texts that are placed on a plot.
#ifndef PLOTWERK_DRAWING_PLACEDTEXTS_H
#define PLOTWERK_DRAWING_PLACEDTEXTS_H

#include "plotwerk/drawing/frame.h"

#include <cairo.h>
#include <vector>

namespace plotwerk {

// In a direction in which a text floats, its middle is at the axis's value; it is left out where
// the axis doesn't show that value. In the other, 0 puts the text beside the ticks of the near
// edge, 1 beside those of the far edge, and 0.5 its middle in the middle of the frame; it is
// limited to one frame's length outside.
void drawTexts(cairo_t *cr, const std::vector<PlacedText> &texts, const PlacedFrame &frame,
               const Typesetter &typesetter);

} // namespace plotwerk

#endif
