#include "plotwerk/drawing/png.h"

#include "plotwerk/base/refusal.h"
#include "plotwerk/drawing/raster.h"

#include <cmath>
#include <memory>
#include <png.h>

namespace plotwerk {

static void appendBytes(png_structp png, png_bytep data, png_size_t length) {
    static_cast<std::string *>(png_get_io_ptr(png))
        ->append(reinterpret_cast<const char *>(data), length);
}

// The library jumps out of its functions when they fail: each step has a frame of its own, without
// anything to be destroyed. False when it failed.
static bool begin(png_structp png, png_infop info, const RasterSize &size) {
    if (setjmp(png_jmpbuf(png))) return false;
    const auto dotsPerMetre = static_cast<png_uint_32>(std::lround(rasterDpi / 0.0254));
    png_set_IHDR(png, info, static_cast<png_uint_32>(size.width),
                 static_cast<png_uint_32>(size.height), 8, PNG_COLOR_TYPE_RGB, PNG_INTERLACE_NONE,
                 PNG_COMPRESSION_TYPE_DEFAULT, PNG_FILTER_TYPE_DEFAULT);
    // of line art unfiltered rows get smaller, by a sixth; the levels above take half as much time
    // again for 3 %
    png_set_filter(png, PNG_FILTER_TYPE_DEFAULT, PNG_FILTER_NONE);
    png_set_compression_level(png, 4);
    png_set_pHYs(png, info, dotsPerMetre, dotsPerMetre, PNG_RESOLUTION_METER);
    png_write_info(png, info);
    return true;
}

static bool addRow(png_structp png, const unsigned char *row) {
    if (setjmp(png_jmpbuf(png))) return false;
    png_write_row(png, row);
    return true;
}

static bool end(png_structp png) {
    if (setjmp(png_jmpbuf(png))) return false;
    png_write_end(png, nullptr);
    return true;
}

static void ignore(png_structp, png_const_charp) {
}

std::string pngOfPage(const Page &page) {
    std::string file;
    png_structp png = png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, nullptr, ignore);
    png_infop info = png ? png_create_info_struct(png) : nullptr;
    const auto destroy = [&info](png_structp each) { png_destroy_write_struct(&each, &info); };
    const std::unique_ptr<png_struct, decltype(destroy)> owned(png, destroy);
    const auto require = [](bool made) {
        if (!made) throw Refusal("the picture can't be made a PNG file");
    };
    require(info != nullptr);

    png_set_write_fn(png, &file, appendBytes, nullptr);
    require(begin(png, info, rasterSizeOf(page)));
    drawRows(page, [&](const unsigned char *row) { require(addRow(png, row)); });
    require(end(png));
    return file;
}

} // namespace plotwerk
