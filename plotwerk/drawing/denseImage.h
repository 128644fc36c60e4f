// denseImage.h - a one-colour image in which what is too dense for a vector picture is drawn.
//
// Hundreds of thousands of lines or symbols make a file of many megabytes that no printer can tell
// from an image of 600 dpi. The image has one bit per pixel, so that its size has a bound.
#ifndef PLOTWERK_DRAWING_DENSEIMAGE_H
#define PLOTWERK_DRAWING_DENSEIMAGE_H

#include "plotwerk/drawing/geometry.h"

#include <cairo.h>
#include <cstdint>
#include <functional>
#include <memory>
#include <vector>

namespace plotwerk {

class DenseImage {
  public:
    // A blank image of that part of the paper, as fine as 50 megapixels allow.
    DenseImage(const Box &box, double dpi);
    ~DenseImage();
    DenseImage(const DenseImage &) = delete;
    DenseImage &operator=(const DenseImage &) = delete;

    // For drawing in the paper's coordinates; any colour sets pixels.
    cairo_t *context() const { return cr; }

    // A straight line with square ends, in the paper's coordinates; at least a pixel wide. Much
    // faster than a stroke of the context.
    void addLine(const Point &from, const Point &to, double thickness);

    // Repeats what `draw` draws around (0, 0), within `radius`, at each of the points.
    void stamp(const std::vector<Point> &points, double radius,
               const std::function<void(cairo_t *)> &draw);

    // Paints the pixels in the current colour of another context.
    void paintOn(cairo_t *target) const;

  private:
    uint32_t *rowAt(int y) const { return bits + static_cast<size_t>(y) * wordsPerRow; }
    void setBits(int y, double left, double right);

    Box box;
    double scale = 1; // pixels per point
    cairo_surface_t *surface = nullptr;
    cairo_t *cr = nullptr;
    int columns = 0;
    int rows = 0;
    int wordsPerRow = 0;
    uint32_t *bits = nullptr; // the surface's
};

} // namespace plotwerk

#endif
