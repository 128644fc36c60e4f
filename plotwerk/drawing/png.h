// png.h - a picture as a PNG file.
#ifndef PLOTWERK_DRAWING_PNG_H
#define PLOTWERK_DRAWING_PNG_H

#include "plotwerk/drawing/picture.h"

#include <string>

namespace plotwerk {

// Red, green and blue with 8 bits each, 300 dpi on white. Throws Refusal if the file can't be made.
std::string pngOfPicture(const Picture &picture);

} // namespace plotwerk

#endif
