// equation.h - assignments of the form name = value, cut out of a line in place.
#ifndef PLW_UTIL_TEXT_EQUATION_H
#define PLW_UTIL_TEXT_EQUATION_H

namespace plw {

// Reads the assignment at *cursor. 1: *name and *value lie in the line, each ended by a NUL written
// over the byte behind it, and *cursor has moved behind what was consumed. 0: there is none; the
// cursor stays, but the name may have been set and cut off.
//
// The name ends at whitespace or '='; blanks and tabs may stand around the '='. A line end counts
// as the gap between them when it follows the name directly: "a\n=5" is a, 5, and "\n=5" has an
// empty name. The value ends at a blank, tab, newline, ',' or the end of the text, but not at '\r'
// or another '=' ("a==1" is a, =1), and may be empty. A value that begins with '"' runs to the next
// '"' that does not follow a backslash (backslashes stay in it), or to the end of the text.
//
// Of what follows a value one byte is consumed at most, and none behind a closing quote: a comma or
// line end that is left begins the next name, so callers skip these between calls. "a=1 , b=2"
// gives a, 1 and then 0; "a=\"x\",b=1" goes on with the name ",b".
//   a=1, b = "x, y":  a and 1, b and x, y (without the quotes), then 0
//   "a b", "a", "= 5", "\"q\" = 5":  0
int scanEquation(char **cursor, char **name, char **value);

} // namespace plw

#endif
