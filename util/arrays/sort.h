// sort.h - sorting of parallel arrays of doubles, of records, and of anything through callbacks.
#ifndef PLW_UTIL_ARRAYS_SORT_H
#define PLW_UTIL_ARRAYS_SORT_H

namespace plw {

// Sorts key[0..n-1] ascending and moves the nOthers arrays others[0..nOthers-1] of n doubles along.
// Stable: equal keys (-0.0 and 0.0 too) keep their order. NaN keys come first, in their order.
//   {3, NaN, 1, 3} -> {NaN, 1, 3, 3}
// An array that is listed twice, or is the key, is sorted once.
// others needs room for nOthers + 1 pointers and is spent afterwards: others[0..nOthers-1] point
// one element below their arrays, others[nOthers] at freed memory. Pass a copy if the list is still
// needed. n < 2 leaves everything as it is, the list too.
// Ends the process: "ERROR in sortN: too many arrays" for nOthers > 499.
void sortN(int n, double *key, double **others, int nOthers);

// Sorts x[left..right] ascending and moves y along. Not stable, but laid down: among equal keys
// the order is that of a quicksort which takes the middle element as pivot, gathers the lesser
// ones at the left by exchanges from left to right, and sorts both sides. NaN is less than
// nothing and nothing is less than NaN: the numbers ascend, with the NaN keys anywhere among them.
// Stack: log2 of the length. Time: n log n at most whatever the order, if no key is equal
// to another or NaN; otherwise n log n as well, but the square of the length where middle elements
// keep being extremes, as those of a peak or a valley are. Takes memory for the order of distinct
// keys.
void quicksort(double *x, double *y, int left, int right);

// quicksort for records of recordLen doubles (at most 32), keyed on the double at keyIndex of each.
// Moves along, unless extra is nullptr, a parallel array of records of extraSize bytes (at most
// 256). left and right count records.
// Ends the process: "ERROR in quicksortCluster: cluster size too big" and extraSize, whichever
// of the two is too big, for an empty range too.
void quicksortCluster(double *records, int recordLen, int keyIndex, void *extra, int extraSize,
                      int left, int right);

// Quicksort of elements that only the callbacks know, at positions left..right. compare(i, j,
// context) is negative, 0 or positive as element i sorts before, with or after element j, and not
// negative for i = j; swap(i, j, context) exchanges the two (i = j happens). Both get positions
// left..right only. Not stable. Stack: log2 of the length. Time: n log n, but the square of the
// length for elements that ascend or descend already.
void qsortFlex(int left, int right, void *context, int (*compare)(int, int, void *),
               void (*swap)(int, int, void *));

} // namespace plw

#endif
