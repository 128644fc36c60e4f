// equation.h - assignments of the form name = value, cut out of a line in place.
#ifndef PLW_UTIL_TEXT_EQUATION_H
#define PLW_UTIL_TEXT_EQUATION_H

namespace plw {

// Reads the assignment at *cursor. 1: *name and *value lie in the line, each ended by a NUL written
// over the byte behind it, and *cursor has moved behind what was consumed. 0: there is none; the
// cursor stays, but the name may have been set and cut off.
//
// The name ends at whitespace or '='; blanks and tabs may stand around the '='. The value ends at a
// blank, tab, newline, ',' or the end of the text, and may be empty. A value that begins with '"'
// runs to the next '"' that does not follow a backslash (backslashes stay in it), or to the end of
// the text.
//   "a=1, b = \"x, y\"":  a, 1; b, "x, y"; then 0      "a b", "a", "= 5", "\"q\" = 5":  0
int scanEquation(char **cursor, char **name, char **value);

} // namespace plw

#endif
