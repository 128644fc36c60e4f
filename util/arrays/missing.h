// missing.h - value pairs freed from missing values.
#ifndef PLW_UTIL_ARRAYS_MISSING_H
#define PLW_UTIL_ARRAYS_MISSING_H

namespace plw {

// Copies, in order, the pairs (x[i], y[i]) of the n given in which neither value is NaN. *xOut and
// *yOut get the values, *indexOut the i of each, *nOut their number. All three arrays have room
// for n, come from malloc even for n = 0, and are the caller's to free. Returns *indexOut.
//   x = 1, NaN, 3, 4  y = 5, 6, NaN, 8:  x = 1, 4  y = 5, 8  index = 0, 3
int *removeNAN(const double *x, const double *y, int n, double **xOut, double **yOut, int *nOut,
               int **indexOut);

} // namespace plw

#endif
