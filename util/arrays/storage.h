// storage.h - memory from malloc, for all that the caller frees or that lives in a plain record.
#ifndef PLW_UTIL_ARRAYS_STORAGE_H
#define PLW_UTIL_ARRAYS_STORAGE_H

#include "util/files/fatal.h"

#include <algorithm>
#include <climits>
#include <cstddef>
#include <cstdint>
#include <cstdlib>

namespace plw {

// The same array (nullptr: none yet) with room for `count` elements, at least one; what is new in
// it is undefined.
// Ends the process: "ERROR: out of memory, kilobytes needed" and their number.
template<class T> T *reallocate(T *array, std::size_t count) {
    constexpr std::size_t most = PTRDIFF_MAX / sizeof(T);
    const std::size_t size = std::max<std::size_t>(count, 1) * sizeof(T);
    void *memory = count <= most ? std::realloc(array, size) : nullptr;
    if (memory == nullptr) {
        const std::size_t kilobytes = std::min(count, most) * sizeof(T) / 1024;
        myexit("ERROR: out of memory, kilobytes needed",
               static_cast<int>(std::min<std::size_t>(kilobytes, INT_MAX)));
    }
    return static_cast<T *>(memory);
}

// A new array; the rest as for reallocate.
template<class T> T *allocate(std::size_t count) {
    return reallocate<T>(nullptr, count);
}

} // namespace plw

#endif
