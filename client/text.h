// text.h - the bytes of a command line as the text of a message.
#ifndef CALLPLW_TEXT_H
#define CALLPLW_TEXT_H

#include <string>

// Text as it is when it is UTF-8 that the bus carries; any other bytes are read as ISO 8859-1. The
// bus refuses surrogates and Unicode's non-characters (U+FDD0 to U+FDEF, U+xxFFFE, U+xxFFFF), so
// text with one of them counts as other bytes.
//   "\xc3\xa4" -> "\xc3\xa4"   "\xe4" -> "\xc3\xa4"
std::string utf8Text(const char *text);

// The text as a rich text (RTF) document in ASCII without any attribute: braces and backslash
// escaped, a line end (LF, CR or CR LF) as \par, a tab as \tab, other control bytes as \'hh, and
// what is beyond ASCII as \u with its UTF-16 code units. Text is read as utf8Text reads it.
std::string rtfOfText(const char *text);

#endif
