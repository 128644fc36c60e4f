// statistics.h - small statistics of functions and arrays. Moments are those of the population:
// sums are divided by the count.
#ifndef PLW_FCT_STATISTICS_H
#define PLW_FCT_STATISTICS_H

#include "fct/fct.h"

namespace plw {

// The least-squares line y = intercept + slope t through the samples, the correlation coefficient
// of t and y, and the standard deviation of y. All are NaN for an empty function or with a NaN
// among the ordinates; all but the last with a NaN among the positions. With all positions equal
// all but the last, and with all ordinates equal the correlation, are NaN, infinite or a matter of
// rounding alone. The sums are those of plain powers, so values that are large against their spread
// cost digits: of 100 positions 1 apart, all are left at 1e6, four at 1e7 and none at 1e9. Shift
// them first.
//   (0, 1), (1, 3), (2, 5) -> intercept 1, slope 2, correlation 1, sigma sqrt(8 / 3)
// Ends the process: "ERROR in linRegFct: function incomplete".
void linRegFct(const Fct *f, double *intercept, double *slope, double *correlation, double *sigma);

// The correlation coefficient of two arrays of n values (not the covariance, whatever the name
// says); NaN for n < 1 or with a NaN among the values. With a constant array it is NaN, infinite or
// a matter of rounding alone. Values far from 0 against their spread cost digits as in linRegFct,
// and beyond 1e77 or below 1e-81 the powers overflow or underflow. Shift and scale them first.
//   an array with itself -> 1, with its negative -> -1
double covariance(const double *a, const double *b, int n);

// Minimum and maximum, and whether the values never fall (1) or do (0). NaN is passed over, except
// that a NaN in v[0] makes both NaN. For n <= 0 or v NULL: 1, DBL_MAX, -DBL_MAX; the minimum is
// never above DBL_MAX nor the maximum below -DBL_MAX.
//   1, 2, 2, 3 -> 1, 1, 3        3, 1 -> 0, 1, 3        1, NaN, 0.5 -> 1, 0.5, 1
void miniStatitic(const double *v, int n, char *increasing, double *min, double *max);

// 1 if a value is NaN or infinite, else 0.
int arrHasNAN(const double *v, int n);

// Replaces each block of k pairs (x, y) by its mean, in place, and a shorter block at the end by
// its own; *m becomes the number of means. Pairs with NaN or infinity do not count. What follows
// the first *m pairs stays. k <= 1 leaves every valid pair by itself.
//   x = 1, 2, NaN, 3, 4, 5 and k = 2 -> 1.5, 3.5, 5
void average(double *x, double *y, int n, int k, int *m);

} // namespace plw

#endif
