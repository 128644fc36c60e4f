// numeral.h - a number's text read as strtod reads it, but fast.
#ifndef PLW_UTIL_TEXT_NUMERAL_H
#define PLW_UTIL_TEXT_NUMERAL_H

namespace plw {

// strtod for a process in the "C" locale: the same value to the last bit, the same *end and the
// same errno (untouched unless the number overflows or underflows).
double readNumber(const char *s, char **end);

} // namespace plw

#endif
