// utf8.h - bytes from files, paths and the environment as text that the bus carries.
#ifndef PLOTWERK_UTF8_H
#define PLOTWERK_UTF8_H

#include <string>
#include <string_view>

namespace plotwerk {

// Whether a text is UTF-8 that the bus carries: nothing overlong or cut, no zero byte, no
// surrogate, none of Unicode's non-characters. The empty text is.
bool isUtf8(std::string_view text);

// The text itself when it is UTF-8 that the bus carries. Otherwise its bytes read as ISO 8859-1,
// without the zero bytes.
//   "\xc3\xa4" -> "\xc3\xa4"   "\xe4" -> "\xc3\xa4"   "a\0b" -> "ab"
std::string utf8Of(std::string text);

} // namespace plotwerk

#endif
