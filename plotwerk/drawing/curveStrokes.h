// curveStrokes.h - strokes along paths with a curve's pen.
#ifndef PLOTWERK_DRAWING_CURVESTROKES_H
#define PLOTWERK_DRAWING_CURVESTROKES_H

#include "plotwerk/drawing/curvePath.h"
#include "plotwerk/drawing/denseImage.h"
#include "plotwerk/model/document.h"

#include <cairo.h>

namespace plotwerk {

// Points of what is drawn as vectors, not as an image: in parts, or at once, where the cost of a
// raster grows with the crossings in it.
constexpr std::size_t mostVectors = 100000;
constexpr std::size_t mostAtOnce = 10000;

// Adds the path's lines from the points begin to end - 1 to cairo's path.
void tracePath(cairo_t *cr, const Path &path, std::size_t begin, std::size_t end);

// Draws the path in the curve's line colour and thickness; points between two breaks as dots. The
// box holds all of the path. Too many points become an image, without dashes, which can't be seen
// where lines are that dense.
void strokePath(cairo_t *cr, const Path &path, const CurveLook &look, bool dashed, const Box &box);

// The parts of strokePath, in the current colour: the thickness and joins of the curve's pen;
// strokes of atOnce points each; the box enlarged by the dots of lone points; the lines as an
// image.
void setPen(cairo_t *cr, const CurveLook &look);
void strokeInParts(cairo_t *cr, const Path &path, const CurveLook &look, bool dashed,
                   std::size_t atOnce);
Box withRoomForDots(const Box &box, const Path &path, const CurveLook &look);
void strokeAsImage(cairo_t *cr, const Path &path, double thickness, DenseImage image);

} // namespace plotwerk

#endif
