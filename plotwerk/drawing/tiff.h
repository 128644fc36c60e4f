// tiff.h - a page as a TIFF file.
#ifndef PLOTWERK_DRAWING_TIFF_H
#define PLOTWERK_DRAWING_TIFF_H

#include "plotwerk/drawing/page.h"

#include <string>

namespace plotwerk {

// Red, green and blue with 8 bits each, 300 dpi on white, LZW compressed. Throws Refusal if the
// file can't be made.
std::string tiffOfPage(const Page &page);

} // namespace plotwerk

#endif
