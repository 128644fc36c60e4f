// storage.h - how the records grow and shrink, over the memory of util/arrays/storage.h.
#ifndef PLW_FCT_STORAGE_H
#define PLW_FCT_STORAGE_H

#include "util/arrays/storage.h"

#include <algorithm>
#include <climits>
#include <cstddef>
#include <cstdint>
#include <cstring>

namespace plw {

// Array for a grid of sizeX * sizeY elements, contents undefined.
template<class T> T *allocateGrid(int sizeX, int sizeY) {
    return allocate<T>(static_cast<std::size_t>(sizeX) * static_cast<std::size_t>(sizeY));
}

// Capacity after growing once, bounded by what an int holds.
//   1 -> 25   25 -> 61   61 -> 115
// Ends the process when that is full: "ERROR: more elements than an int counts".
inline int grownSize(int size) {
    if (size == INT_MAX) myexit("ERROR: more elements than an int counts", size);
    return static_cast<int>(std::min((size + 16.0) * 1.5, static_cast<double>(INT_MAX)));
}

// Length after the last k of n are dropped; for a negative k it grows, at most to the capacity.
inline int lengthWithoutLast(int n, int k, int size) {
    const auto rest = std::max<std::int64_t>(std::int64_t{n} - k, 0);
    return static_cast<int>(std::min<std::int64_t>(rest, std::max(n, size)));
}

// Moves what follows the first k of n elements down to the start.
inline void dropFirst(double *array, int n, int k) {
    std::memmove(array, array + k, static_cast<std::size_t>(n - k) * sizeof(double));
}

} // namespace plw

#endif
