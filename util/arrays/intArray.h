// intArray.h - a growing array of ints.
//
// The record owns its values; freeIntArray releases both. 0 <= n <= size.
// Ends the process, when the elements no longer fit into an int: "ERROR: more elements than an int
// counts".
#ifndef PLW_UTIL_ARRAYS_INTARRAY_H
#define PLW_UTIL_ARRAYS_INTARRAY_H

namespace plw {

struct IntArray {
    int *values; // heap block of size elements
    int n;       // elements in use
    int size;    // elements allocated
};

// An empty array with room for capacity elements, at least one.
IntArray *newIntArray(int capacity);

// Appends v. A full array grows to (size + 16) * 1.5 elements, cut to an int.
void appendIntArray(IntArray *a, int v);

// Appends v[0..k-1], which must not lie in a; nothing for k <= 0. An array without room for them
// grows to (size + k) * 1.5 elements, cut to an int.
void appendManyIntArray(IntArray *a, const int *v, int k);

// Writes one element a line to the file at path, or to the standard output for nullptr or an empty
// path. See openOutput for missing directories and what ends the process.
void printIntArray(const IntArray *a, const char *path);

// Makes a empty; its room stays.
void clearIntArray(IntArray *a);

// Releases the record and its values.
void freeIntArray(IntArray *a);

// Element i. Ends the process for i outside 0..n-1: "ERROR in val: index out of range" and i.
int val(const IntArray *a, int i);

} // namespace plw

#endif
