// png.h - a page as a PNG file.
#ifndef PLOTWERK_DRAWING_PNG_H
#define PLOTWERK_DRAWING_PNG_H

#include "plotwerk/drawing/page.h"

#include <string>

namespace plotwerk {

// Red, green and blue with 8 bits each, 300 dpi on white. Throws Refusal if the file can't be made.
std::string pngOfPage(const Page &page);

} // namespace plotwerk

#endif
