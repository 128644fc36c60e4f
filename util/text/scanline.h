// scanline.h - the numbers of one line of data.
#ifndef PLW_UTIL_TEXT_SCANLINE_H
#define PLW_UTIL_TEXT_SCANLINE_H

namespace plw {

// Reads up to max numbers, separated by blanks and tabs, from the line at s into values, and sets
// *count to how many were read. Returns where reading stopped, or the byte behind it when that is
// a newline. Numbers are what strtod reads in the "C" locale, which the process must be in: also
// "inf", "nan" and "0x1p-3". Stops at the first text that is no number (in front of it) and at the
// first number that overflows or underflows (behind it, errno ERANGE); errno is 0 otherwise.
// With max < 1 nothing is read, and errno stays.
//   "1 2 3\n4", max 10: 3 values, returns "4"      "1 2 3", max 2: 2 values, returns "3"
//   "1 x", max 10:      1 value, returns "x"       "1 1e999 2":    1 value, returns " 2"
// Each attempt stores its value, a failed one too: values[*count] may change unless *count is max.
// Like strtod's other whitespace a '\r' does not end the line: "1\r\n2" gives 2 values. An empty
// line stores the first number of the text after it in values[0] without counting it, and what is
// returned lies behind that number:
//   "\n7 8": 0 values, values[0] = 7, returns " 8"
char *scanline(const char *s, double *values, int max, int *count);

} // namespace plw

#endif
