// search.h - texts found in texts: as whole words, outside quotes, across blanks.
//
// As strstr does, routines that return a position in a text take the text as const and return a
// plain char *, so that one declaration serves both kinds of caller.
#ifndef PLW_UTIL_TEXT_SEARCH_H
#define PLW_UTIL_TEXT_SEARCH_H

namespace plw {

// First place in hay where word stands as a whole word: neither the byte before nor the byte after
// it is a letter, a digit or '_'. NULL when there is none.
//   "tabs tab" with "tab": 5
char *strwordstr(const char *hay, const char *word);

// Index of the first needle in s that begins outside double quotes, -1 when there is none, 0 for an
// empty needle. The opening quote is inside, the closing one outside; a quote after a backslash is
// an ordinary byte. With wholeWord the byte after the needle must be neither a letter, a digit nor
// '_'; the byte before it is not looked at.
//   "a \"b\" b" with "b": 6      "ab bc b" with "b", wholeWord: 1
int strquotestr(const char *s, const char *needle, int wholeWord);

// Finds pattern in probe, skipping whitespace in probe (not in pattern) between the matched bytes.
// Returns the position one byte after the first byte matched, NULL for no match and when either
// text is empty. A pattern that contains whitespace is never found.
//   "abc" in "xa b\tc": " b\tc"
char *strstrIgnoreBlanksInProbe(const char *pattern, const char *probe);

} // namespace plw

#endif
