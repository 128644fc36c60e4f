// raster.h - a page as rows of pixels.
#ifndef PLOTWERK_DRAWING_RASTER_H
#define PLOTWERK_DRAWING_RASTER_H

#include "plotwerk/drawing/page.h"

#include <functional>

namespace plotwerk {

constexpr double rasterDpi = 300;

struct RasterSize {
    int width = 0; // in pixels
    int height = 0;
};

// A started pixel is counted as one.
RasterSize rasterSizeOf(const Page &page);

// Draws the page on white, and calls take(row) for each row from above: its pixels from the left
// as red, green and blue, a byte each, which it may change. Memory stays small, however large the
// page.
void drawRows(const Page &page, const std::function<void(unsigned char *row)> &take);

} // namespace plotwerk

#endif
