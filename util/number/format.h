// format.h - doubles printed with no more digits than they carry, or than their error justifies.
//
// The printing routines use decimalSeparator for the decimal point and print NaN as "NAN",
// infinities as "inf", padded to the width of FormatOfReal where that is used: "  inf". Each has
// one static buffer of 100 bytes and returns a pointer into it: a text is valid until the same
// routine is called again, and what would be longer is cut to 99 bytes.
#ifndef PLW_UTIL_NUMBER_FORMAT_H
#define PLW_UTIL_NUMBER_FORMAT_H

namespace plw {

// How many digits x needs, and in which notation: width and precision for "%*.*e" (*exponential 1:
// the decimal exponent is below -3 or above 5) or "%*.*f" (*exponential 0). Counts at most 12
// digits, at most 10 in exponential notation, never more than maxDigits, and forgives the error of
// a binary fraction: 0.1 needs one. With maxDigits below 1 exponential precision is negative, which
// printf takes for 6.
//   0 -> 1, 0, 0      1234.5 -> 6, 1, 0      -1.5e-7 -> 7, 1, 1
//   infinity -> 5, 0, 1      NaN -> 4, -1, 1
void FormatOfReal(double x, int maxDigits, int *width, int *precision, char *exponential);

// x with the digits that it carries.
//   0.1 -> "0.1"   100 -> "100"   1e6 -> "1e+06"   0.0001 -> "1e-04"   1.0 / 3 -> "0.333333333333"
//   123456789 -> "1.23456789e+08"
char *stringOfDouble(double x);

// The same in a buffer of its own, so that two numbers fit into one output statement.
char *stringOfDouble2(double x);

// The same with at most maxDigits digits.
char *stringOfDoubleMaxPrec(double x, int maxDigits);

// As stringOfDouble, with a blank for the sign of what is not negative, so that columns line up.
// The '.' of a negative number stays when no number that is not negative, and no NaN, was printed
// here before.
//   2.5 -> " 2.5"   -2.5 -> "-2.5"
char *stringOfDoubleBlank(double x);

// x to the precision that its error justifies: down to the first digit of the error, and one digit
// more when the error's mantissa is up to 4. In exponential notation from 1e6 on and below 0.001.
// With printError the error instead, with as many decimals as x, or in exponential notation with
// one or two digits. For an error of 0 or less what stringOfDouble(x) returns, in its buffer; with
// a NaN error no decimals.
//   1.23456, 0.02 -> "1.235", printError: "0.020"
char *stringOfDoubleConsideringError(double x, double error, int printError);

} // namespace plw

#endif
