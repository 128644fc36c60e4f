// order.h - the order that sorts keys, for all that is moved along with them.
//
// The order of n keys has n words; the lower half of word i is the position of the key that belongs
// at i.
#ifndef PLW_UTIL_ARRAYS_ORDER_H
#define PLW_UTIL_ARRAYS_ORDER_H

#include <algorithm>
#include <cstddef>
#include <cstdint>

namespace plw {

constexpr std::uint32_t positionIn(std::uint64_t word) {
    return static_cast<std::uint32_t>(word);
}

// The order of key[0..n-1], ascending: NaN keys first, equal ones (-0.0 and 0.0 too) as they stand.
// Whether it is strict: no key is equal to another or NaN, and so any method of sorting gives this
// order. scratch has room for n words, too. Takes time n: one byte of the keys after the other.
bool sortedOrder(const double *key, std::uint64_t *order, std::uint64_t *scratch, int n);

// Moves n records of len elements each into the order, with room for as many in scratch.
template<class T>
void rearrange(T *records, std::size_t len, const std::uint64_t *order, T *scratch, int n) {
    T *next = scratch;
    for (int i = 0; i < n; ++i) next = std::copy_n(records + positionIn(order[i]) * len, len, next);
    std::copy(scratch, next, records);
}

} // namespace plw

#endif
