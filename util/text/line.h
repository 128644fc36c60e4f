// line.h - lines: read from a stream or from memory, found in a text, and cut.
//
// A line ends with LF, CR, LF CR or CR LF where lines are read; with '\n' in a text in memory.
#ifndef PLW_UTIL_TEXT_LINE_H
#define PLW_UTIL_TEXT_LINE_H

#include <cstdio>

namespace plw {

// Reads a line from f into buf, without its line end, terminated. A line of size - 1 bytes or more
// is cut there: the next call goes on with the rest (or with the line end alone). A size below 1
// counts as 1. Reads one byte past a line end to see whether it is the line end's other half, and
// puts it back if not; so the last line reports end of file together with its text. *atEof and the
// result: 1 at end of file, else 0. A read error ends the line too and is no end of file (ferror
// tells it).
//   "a\r\nb\n\nc": "a", "b", "", "c" (at end of file)
int getlineFromFile(std::FILE *f, char *buf, int size, char *atEof);

// The same from memory: reads from *pos on, last is the address of the last byte that may be read,
// *pos moves behind what was read. NUL bytes are copied like others. A size below 1 counts as 1.
// *atEnd: 1 when *pos has passed last, else 0.
void getlineFromRam(char **pos, const char *last, char *buf, int size, char *atEnd);

// Start and length in bytes, without its newline, of line lineNo (from 1) of text. Every line is
// taken to start one byte after a newline or after the first byte of the text: line 1 of a text
// that does not begin with a newline lacks its first byte. Outputs stay as they are when there is
// no such line.
//   "abc\ndef": line 1 -> 1, 2   line 2 -> 4, 3   line 3 -> untouched
void rangeOfLine(const char *text, int lineNo, int *start, int *length);

// Cuts s in place at its first '\n', and what is left at its first '\r'.
void firstline(char *s);

// Replaces every byte of s that is no printable ASCII character by '?'.
void linetoascii(char *s);

} // namespace plw

#endif
