#include "plotwerk/drawing/tiff.h"

#include "plotwerk/base/refusal.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <memory>
#include <sstream>
#include <tiffio.hxx>
#include <vector>

namespace plotwerk {

static constexpr double dpi = 300;
static constexpr int rowsPerStrip = 256;
static constexpr int mostPixelsAtOnce = 8000000; // drawn together, so that memory stays small

static void setFields(TIFF *tiff, int width, int height) {
    TIFFSetField(tiff, TIFFTAG_IMAGEWIDTH, static_cast<std::uint32_t>(width));
    TIFFSetField(tiff, TIFFTAG_IMAGELENGTH, static_cast<std::uint32_t>(height));
    TIFFSetField(tiff, TIFFTAG_BITSPERSAMPLE, 8);
    TIFFSetField(tiff, TIFFTAG_SAMPLESPERPIXEL, 3);
    TIFFSetField(tiff, TIFFTAG_PLANARCONFIG, PLANARCONFIG_CONTIG);
    TIFFSetField(tiff, TIFFTAG_PHOTOMETRIC, PHOTOMETRIC_RGB);
    TIFFSetField(tiff, TIFFTAG_COMPRESSION, COMPRESSION_LZW);
    TIFFSetField(tiff, TIFFTAG_PREDICTOR, PREDICTOR_HORIZONTAL);
    TIFFSetField(tiff, TIFFTAG_ROWSPERSTRIP, static_cast<std::uint32_t>(rowsPerStrip));
    TIFFSetField(tiff, TIFFTAG_RESOLUTIONUNIT, RESUNIT_INCH);
    TIFFSetField(tiff, TIFFTAG_XRESOLUTION, dpi);
    TIFFSetField(tiff, TIFFTAG_YRESOLUTION, dpi);
}

// The rows from `top` on.
static Surface drawnRows(const Picture &picture, int width, int top, int rows) {
    Surface surface(cairo_image_surface_create(CAIRO_FORMAT_RGB24, width, rows));
    const Context cr(cairo_create(surface.get()));
    cairo_set_source_rgb(cr.get(), 1, 1, 1);
    cairo_paint(cr.get());
    cairo_translate(cr.get(), 0, -top);
    cairo_scale(cr.get(), dpi / 72, dpi / 72);
    picture.drawOn(cr.get());
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

std::string tiffOfPicture(const Picture &picture) {
    const int width = static_cast<int>(std::ceil(picture.page().width() * dpi / 72));
    const int height = static_cast<int>(std::ceil(picture.page().height() * dpi / 72));

    std::ostringstream file;
    std::unique_ptr<TIFF, decltype(&TIFFClose)> tiff(TIFFStreamOpen("picture", &file), &TIFFClose);
    if (!tiff) throw Refusal("the picture can't be made a TIFF file");

    setFields(tiff.get(), width, height);
    const int rowsAtOnce = std::clamp(mostPixelsAtOnce / width, 1, height);
    std::vector<unsigned char> rgb(static_cast<std::size_t>(width) * 3);
    bool written = true;
    for (int top = 0; top < height; top += rowsAtOnce) {
        const int rows = std::min(rowsAtOnce, height - top);
        const Surface surface = drawnRows(picture, width, top, rows);
        for (int y = 0; y < rows && written; ++y) {
            readRow(surface.get(), y, rgb);
            written =
                TIFFWriteScanline(tiff.get(), rgb.data(), static_cast<std::uint32_t>(top + y)) > 0;
        }
    }
    tiff.reset(); // writes the directory
    if (!written) throw Refusal("the picture can't be made a TIFF file");
    return std::move(file).str();
}

} // namespace plotwerk
