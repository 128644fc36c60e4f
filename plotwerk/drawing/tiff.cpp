#include "plotwerk/drawing/tiff.h"

#include "plotwerk/base/refusal.h"
#include "plotwerk/drawing/raster.h"

#include <cstdint>
#include <memory>
#include <sstream>
#include <tiffio.hxx>

namespace plotwerk {

static constexpr int rowsPerStrip = 256;

static void setFields(TIFF *tiff, const RasterSize &size) {
    TIFFSetField(tiff, TIFFTAG_IMAGEWIDTH, static_cast<std::uint32_t>(size.width));
    TIFFSetField(tiff, TIFFTAG_IMAGELENGTH, static_cast<std::uint32_t>(size.height));
    TIFFSetField(tiff, TIFFTAG_BITSPERSAMPLE, 8);
    TIFFSetField(tiff, TIFFTAG_SAMPLESPERPIXEL, 3);
    TIFFSetField(tiff, TIFFTAG_PLANARCONFIG, PLANARCONFIG_CONTIG);
    TIFFSetField(tiff, TIFFTAG_PHOTOMETRIC, PHOTOMETRIC_RGB);
    TIFFSetField(tiff, TIFFTAG_COMPRESSION, COMPRESSION_LZW);
    TIFFSetField(tiff, TIFFTAG_PREDICTOR, PREDICTOR_HORIZONTAL);
    TIFFSetField(tiff, TIFFTAG_ROWSPERSTRIP, static_cast<std::uint32_t>(rowsPerStrip));
    TIFFSetField(tiff, TIFFTAG_RESOLUTIONUNIT, RESUNIT_INCH);
    TIFFSetField(tiff, TIFFTAG_XRESOLUTION, rasterDpi);
    TIFFSetField(tiff, TIFFTAG_YRESOLUTION, rasterDpi);
}

std::string tiffOfPage(const Page &page) {
    std::ostringstream file;
    std::unique_ptr<TIFF, decltype(&TIFFClose)> tiff(TIFFStreamOpen("picture", &file), &TIFFClose);
    const auto require = [](bool made) {
        if (!made) throw Refusal("the picture can't be made a TIFF file");
    };
    require(tiff != nullptr);

    setFields(tiff.get(), rasterSizeOf(page));
    std::uint32_t y = 0;
    drawRows(page, [&](unsigned char *row) { // which the predictor changes
        require(TIFFWriteScanline(tiff.get(), row, y++) > 0);
    });
    tiff.reset(); // writes the directory
    return std::move(file).str();
}

} // namespace plotwerk
