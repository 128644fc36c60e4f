// word.h - words of a command line, cut out in place; where blanks, quotes and brackets end.
//
// As strchr does, routines that return a position in a text take the text as const and return a
// plain char *, so that one declaration serves both kinds of caller.
#ifndef PLW_UTIL_TEXT_WORD_H
#define PLW_UTIL_TEXT_WORD_H

namespace plw {

// Next word of the line at *cursor, or NULL when only blanks and tabs are left (the cursor then
// stays). The word lies in the line, ended by a NUL written over the byte that ended it, and the
// cursor moves behind what was consumed. A plain word that the end of the text ends sets it to a
// constant empty text, which is not to be written to.
//
// A plain word ends at a blank, tab, ',', '=', newline or the end of the text, but its first byte
// is never taken for its end: "x,,y" gives "x" and ",y". A word that begins with '"' or '\'' runs
// to the same quote, which is not part of it, or to the end of the text; a quote after a backslash
// does not count, and the backslash stays in the word.
//
// *isAssignment is 1 when a plain word is followed by '=', at once or after a blank or tab and at
// most one blank more: then the '=' is consumed. *isEndOfLine is 1 when a newline ended the word or
// follows its closing quote. Else both are 0. Both may be the same variable.
//   "name = 5\n":  "name" (assignment), "5" (end of line), NULL
//   "a, 'b c'=d":  "a", "b c", "=d"
char *nextWord(char **cursor, char *isAssignment, char *isEndOfLine);

// First position from p on that is neither blank nor tab; may be the terminating NUL.
char *skipSpaces(const char *p);

// First '"' from p on that does not follow a backslash, or the terminating NUL. When p points at
// a '"', the byte before p is read: it must exist.
char *quoteEnd(const char *p);

// Index of the bracket that closes the first one opened in s; 0 when there is none. A closing
// bracket too many opens a debt: ")(a)" gives 0. With open equal to close, the first of them.
//   "(a(b)c)" with '(' and ')': 6
int bracketEnd(const char *s, int open, int close);

} // namespace plw

#endif
