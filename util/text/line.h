// line.h - lines: read from a stream or from memory, found in a text, cut, and read as numbers.
//
// A line ends with LF, CR, LF CR or CR LF where lines are read; with '\n' in a text in memory.
#ifndef PLW_UTIL_TEXT_LINE_H
#define PLW_UTIL_TEXT_LINE_H

#include <cstdio>

namespace plw {

// Reads up to max numbers, separated by blanks and tabs, from the line at s into values, and sets
// *count to how many were read. Returns where reading stopped, or the byte behind it when that is
// a newline. Numbers are what strtod reads in the "C" locale: also "inf", "nan" and "0x1p-3". Stops
// at the first text that is no number (in front of it) and at the first number that overflows or
// underflows (behind it, errno ERANGE); errno is 0 otherwise.
//   "1 2 3\n4", max 10: 3 values, returns "4"      "1 2 3", max 2: 2 values, returns "3"
//   "1 x", max 10:      1 value, returns "x"       "1 1e999 2":    1 value, returns " 2"
// Each attempt stores its value: values[*count] is overwritten unless *count is max. So an empty
// line stores the first number of the text after it in values[0] without counting it, and what is
// returned lies behind that number:
//   "\n7 8": 0 values, values[0] = 7, returns " 8"
char *scanline(const char *s, double *values, int max, int *count);

// Reads a line from f into buf, without its line end, terminated. A line of size - 1 bytes or more
// is cut there: the next call goes on with the rest (or with the line end alone). A size below 1
// counts as 1. Reads one byte past a line end to see whether it is the line end's other half, and
// puts it back if not; so the last line reports end of file together with its text. *atEof and the
// result: 1 at end of file, else 0.
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
