// storage.h - the memory of the records, and how the appendable ones grow and shrink.
#ifndef PLW_FCT_STORAGE_H
#define PLW_FCT_STORAGE_H

#include <algorithm>
#include <climits>
#include <cstdint>
#include <cstdlib>
#include <cstring>

namespace plw {

// Array of `count` elements, contents undefined; and the same array with another length.
template<class T> T *allocate(int count) {
    return static_cast<T *>(std::malloc(static_cast<size_t>(count) * sizeof(T)));
}
template<class T> T *reallocate(T *array, int count) {
    return static_cast<T *>(std::realloc(array, static_cast<size_t>(count) * sizeof(T)));
}

// Array for a grid of sizeX * sizeY elements, contents undefined.
template<class T> T *allocateGrid(int sizeX, int sizeY) {
    return static_cast<T *>(
        std::malloc(static_cast<size_t>(sizeX) * static_cast<size_t>(sizeY) * sizeof(T)));
}

// Capacity after growing once, bounded by what an int holds.
//   1 -> 25   25 -> 61   61 -> 115
inline int grownSize(int size) {
    return static_cast<int>(std::min((size + 16.0) * 1.5, static_cast<double>(INT_MAX)));
}

// Length after the last k of n are dropped; for a negative k it grows, at most to the capacity.
inline int lengthWithoutLast(int n, int k, int size) {
    const auto rest = std::max<std::int64_t>(std::int64_t{n} - k, 0);
    return static_cast<int>(std::min<std::int64_t>(rest, std::max(n, size)));
}

// Moves what follows the first k of n elements down to the start.
inline void dropFirst(double *array, int n, int k) {
    std::memmove(array, array + k, static_cast<size_t>(n - k) * sizeof(double));
}

} // namespace plw

#endif
