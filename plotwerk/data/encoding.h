// encoding.h - the bytes of a file as text.
#ifndef PLOTWERK_DATA_ENCODING_H
#define PLOTWERK_DATA_ENCODING_H

#include "plotwerk/data/readingTime.h"

#include <string>
#include <string_view>

namespace plotwerk {

// Of UTF-8.
inline constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";

// The text of a file, in UTF-8 that the bus carries and without its byte order mark. Bytes behind a
// mark of UTF-16, of either order, are read so; others as UTF-8 if they are that, and else as
// ISO 8859-1. Noncharacters, and halves of surrogate pairs, become U+FFFD. Throws Refusal for a
// NUL, which no text has, and where converting would take too long or too much memory.
std::string textOfFile(std::string bytes, ReadingTime &time);

} // namespace plotwerk

#endif
