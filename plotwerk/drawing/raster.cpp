#include "plotwerk/drawing/raster.h"

#include "plotwerk/base/refusal.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <vector>

namespace plotwerk {

static constexpr double scale = rasterDpi / 72;
static constexpr int mostColumns = 32767;        // of a surface of cairo's
static constexpr int mostPixelsAtOnce = 8000000; // drawn together

RasterSize rasterSizeOf(const Page &page) {
    return {static_cast<int>(std::ceil(page.width * scale)),
            static_cast<int>(std::ceil(page.height * scale))};
}

// The rows from `top` on.
static Surface drawnRows(const Page &page, int width, int top, int rows) {
    Surface surface(cairo_image_surface_create(CAIRO_FORMAT_RGB24, width, rows));
    const Context cr(cairo_create(surface.get()));
    cairo_set_source_rgb(cr.get(), 1, 1, 1);
    cairo_paint(cr.get());
    cairo_translate(cr.get(), 0, -top);
    cairo_scale(cr.get(), scale, scale);
    page.draw(cr.get());
    requireDrawn(cairo_status(cr.get()));
    cairo_surface_flush(surface.get());
    return surface;
}

// A row of the surface as red, green, blue.
static void readRow(cairo_surface_t *surface, int y, std::vector<unsigned char> &rgb) {
    const unsigned char *pixels =
        cairo_image_surface_get_data(surface) +
        static_cast<std::size_t>(y) * cairo_image_surface_get_stride(surface);
    for (std::size_t x = 0; 3 * x < rgb.size(); ++x) {
        std::uint32_t pixel = 0;
        std::memcpy(&pixel, pixels + 4 * x, 4);
        rgb[3 * x] = static_cast<unsigned char>(pixel >> 16);
        rgb[3 * x + 1] = static_cast<unsigned char>(pixel >> 8);
        rgb[3 * x + 2] = static_cast<unsigned char>(pixel);
    }
}

void drawRows(const Page &page, const std::function<void(unsigned char *row)> &take) {
    const auto [width, height] = rasterSizeOf(page);
    if (width > mostColumns) throw Refusal("a picture of pixels can't be wider than 277 cm");
    const int rowsAtOnce = std::clamp(mostPixelsAtOnce / width, 1, height);
    std::vector<unsigned char> rgb(static_cast<std::size_t>(width) * 3);
    for (int top = 0; top < height; top += rowsAtOnce) {
        const int rows = std::min(rowsAtOnce, height - top);
        const Surface surface = drawnRows(page, width, top, rows);
        for (int y = 0; y < rows; ++y) {
            readRow(surface.get(), y, rgb);
            take(rgb.data());
        }
    }
}

} // namespace plotwerk
