// search.h - searches in ascending arrays of doubles. NaN marks a gap: every search skips it.
//
// Which of several equal entries is found is decided by the method: equal entries met on the way
// end the search.
#ifndef PLW_UTIL_ARRAYS_SEARCH_H
#define PLW_UTIL_ARRAYS_SEARCH_H

namespace plw {

// Index of the last entry <= x in a[0..n-1]; an entry equal to x ends the search at once. hint is
// the caller's result of the search before, negative for none: ascending x then cost constant time.
// A hint outside the array counts as none.
// 0 also for x below every entry, x NaN, n < 1, and if no entry but the last one is valid.
//   {1, 2, 3, 4}:   0.5 -> 0   2.5 -> 1   3 -> 2   9 -> 3        {NaN, 1, NaN, 3}:   2 -> 1
int search_le(double x, const double *a, int n, int hint);

// Index of the first entry >= x in a[0..n-1]; an entry equal to x ends the search at once. The last
// valid index for x above every entry and for x NaN; 0 if no entry but the last one is valid, or
// none at all; -1 for n < 1.
//   {1, 2, 3, 4}:   0.5 -> 0   2.5 -> 2   3 -> 2   9 -> 3
int search_ge(double x, const double *a, int n);

// The nearest position from i down to 0 where neither x nor y is NaN; -1 if there is none. i must
// not lie above the array; below it, there is none.
int searchLeftForValid(const double *x, const double *y, int i);

// The nearest position from i up to n - 1 where neither x nor y is NaN; n - 1 if there is none. It
// starts within the array: at 0 for i below 0, at n - 1 for i above that.
int searchRightForValid(const double *x, const double *y, int n, int i);

// 1 if no entry of a[0..n-1] is greater than the next one, else 0. Equal neighbours are fine, NaN
// is never greater or less, and n <= 1 gives 1.
//   {1, 1, 2} -> 1   {2, 1} -> 0   {2, NaN, 1} -> 1
int isArrIncreasing(const double *a, int n);

} // namespace plw

#endif
