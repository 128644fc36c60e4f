// decimal.h - number text with the user's decimal separator.
#ifndef PLW_UTIL_NUMBER_DECIMAL_H
#define PLW_UTIL_NUMBER_DECIMAL_H

namespace plw {

// The decimal point of number text in the whole process: '.' until a program assigns another.
// Nothing here changes it.
extern char decimalSeparator;

// Replaces in place every decimalSeparator in s by '.'. When decimalSeparator is '.' itself, commas
// are taken for decimal points and replaced.
void decimalSeparatorToDot(char *s);

// Replaces in place every '.' in s by decimalSeparator.
void dotToDecimalSeparator(char *s);

// The number that the first 255 bytes of s begin with, read by strtod ("C" locale) after
// decimalSeparatorToDot; 0.0 when there is none.
//   "1,5 mm": 1.5
double valueOfString(const char *s);

} // namespace plw

#endif
