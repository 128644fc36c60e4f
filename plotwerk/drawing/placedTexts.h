// placedTexts.h - the texts that are placed on a plot, laid out and drawn.
#ifndef PLOTWERK_DRAWING_PLACEDTEXTS_H
#define PLOTWERK_DRAWING_PLACEDTEXTS_H

#include "plotwerk/drawing/frame.h"

#include <cairo.h>
#include <vector>

namespace plotwerk {

struct LaidText {
    SetText text;
    Point middle = pathBreak; // of its ink; a break before it has a place
    double angle = 0;         // in degrees, counter-clockwise
    double padding = 0;
    bool framed = false;
    bool cornered = false; // goes into a corner
    bool overData = false;
};

// In a direction in which a text floats, its middle is at the axis's value; it is left out where
// the axis doesn't show that value. In the other, 0 puts the text beside the ticks of the near
// edge, 1 beside those of the far edge, and 0.5 its middle in the middle of the frame, in
// proportion between them; it is limited to one frame's length outside. Lines are flush left at 0,
// flush right at 1, else centred, but flush left always in a text with a legend or parameters.
//
// A legend that stands where texts stand that were given no place, in the middle, goes into the
// corner where it and the other texts hide the least of each other and of the curves.
std::vector<LaidText> laidTextsOf(const Document &document, const std::vector<DrawnCurve> &curves,
                                  const PlacedFrame &frame, const Typesetter &typesetter);

// The white grounds of texts over data, which let some of it through, and of legends. Below axes.
void drawGrounds(cairo_t *cr, const std::vector<LaidText> &texts, const PlacedFrame &frame);

void drawTexts(cairo_t *cr, const std::vector<LaidText> &texts);

} // namespace plotwerk

#endif
