// rtf.h - a plain text as rich text.
#ifndef CALLPLW_RTF_H
#define CALLPLW_RTF_H

#include <string>

// The text as a rich text (RTF) document in ASCII without any attribute: braces and backslash
// escaped, a line end (LF, CR or CR LF) as \par, a tab as \tab, other control bytes as \'hh, and
// what is beyond ASCII as \u with its UTF-16 code units. Bytes that are not UTF-8 are read as
// ISO 8859-1.
std::string rtfOfText(const char *text);

#endif
