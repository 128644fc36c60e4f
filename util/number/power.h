// power.h - powers, decimal exponents and mantissas; floor and equality with their own rules.
#ifndef PLW_UTIL_NUMBER_POWER_H
#define PLW_UTIL_NUMBER_POWER_H

namespace plw {

// Powers of ten by the size of their exponent: pow10POS[i] is 10 to the i, pow10NEG[i] 10 to the
// -i.
inline constexpr int powersOf10 = 51;
extern const double pow10POS[powersOf10];
extern const double pow10NEG[powersOf10];

// Exponent of x in decimal scientific notation: 0 for x = 0, otherwise t = log10(|x|) + 1e-12 cut
// to an integer when positive and t - 1.0 cut when not. What falls short of a power of ten by
// rounding errors only counts as that power. 308 for infinity and NaN.
//   1 -> 0   999 -> 2   0.1 -> -1
int decimalExponent(double x);

// The same as a double, rounded down: floor(log10(|x|) + 1e-12). For x = 0 -300.0, a marker
// far below what numbers in use have. NaN for NaN, infinity for infinities.
double exponent10(double x);

// x divided by 10 to its decimalExponent: from 1 to 10 in magnitude, with the sign of x. 0.0 for
// x = 0, x itself for infinities and NaN; infinite for the few smallest denormals, whose power of
// ten is 0 in doubles.
double mantisse10(double x);

// 10 to the n: from the tables for -50 <= n <= 50, from pow beyond.
double power10(int n);

// x to the n without pow: squares from the lowest bit of |n| up, and the reciprocal of the result
// for negative n. 1.0 for n = 0, whatever x.
double intPower(double x, int n);

// x to the a times y to the b. An exponent of 0.0 gives the factor 1.0 whatever the base, 1.0 the
// base, 2.0 its square, any other what pow gives.
double doublePower(double x, double y, double a, double b);

// x cut to an integer when positive, x - 1.0 cut when not: one below the floor for zero and
// negative whole numbers. Beyond int's range the nearest int; INT_MIN for NaN.
//   2.7 -> 2   0.0 -> -1   -0.5 -> -1   -2.0 -> -3
int intFloor(double x);

// 1 when a and b differ by less than 1e-10 of b, else 0. 0.0 equals nothing but 0.0; NaN and
// infinities equal nothing.
int equDouble(const double *a, const double *b);

} // namespace plw

#endif
