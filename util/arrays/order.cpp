#include "util/arrays/order.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstring>
#include <numeric>
#include <utility>

namespace plw {

// A number that sorts as the key does: 0 for NaN, the same for -0.0 and 0.0.
static std::uint64_t rankOf(double key) {
    if (std::isnan(key)) return 0;
    const std::uint64_t sign = std::uint64_t{1} << 63;
    const auto bits = std::bit_cast<std::uint64_t>(key + 0.0); // -0.0 + 0.0 is 0.0
    return (bits & sign) != 0 ? ~bits : bits | sign;
}

// Sorts words by their upper halves; the lower ones must ascend among equals.
static void sortByUpperHalf(std::uint64_t *words, std::uint64_t *scratch, int n) {
    if (n < 256) { // too few for the tables below to pay
        std::sort(words, words + n);
        return;
    }

    // radix sort, byte by byte
    int counts[4][256] = {};
    for (int i = 0; i < n; ++i)
        for (int byte = 0; byte < 4; ++byte) ++counts[byte][words[i] >> (32 + 8 * byte) & 255];

    std::uint64_t *from = words, *to = scratch;
    for (int byte = 0; byte < 4; ++byte) {
        const int shift = 32 + 8 * byte;
        int *next = counts[byte];
        if (next[from[0] >> shift & 255] == n) continue;

        std::exclusive_scan(next, next + 256, next, 0);
        for (int i = 0; i < n; ++i) to[next[from[i] >> shift & 255]++] = from[i];
        std::swap(from, to);
    }
    if (from != words) std::memcpy(words, from, n * sizeof *words);
}

bool sortedOrder(const double *key, std::uint64_t *order, std::uint64_t *scratch, int n) {
    const std::uint64_t upper = ~std::uint64_t{0} << 32;
    for (int i = 0; i < n; ++i) order[i] = (rankOf(key[i]) & upper) | static_cast<unsigned>(i);
    sortByUpperHalf(order, scratch, n);

    // where the upper halves of the ranks are equal, the lower ones decide
    bool isStrict = n < 1 || !std::isnan(key[positionIn(order[0])]);
    for (int i = 0, end; i < n; i = end) {
        for (end = i + 1; end < n && (order[end] & upper) == (order[i] & upper);) ++end;
        if (end == i + 1) continue;

        for (int k = i; k < end; ++k) {
            const std::uint64_t position = positionIn(order[k]);
            order[k] = rankOf(key[position]) << 32 | position;
        }
        sortByUpperHalf(order + i, scratch, end - i);
        for (int k = i + 1; k < end; ++k)
            isStrict = isStrict && (order[k] & upper) != (order[k - 1] & upper);
    }
    return isStrict;
}

} // namespace plw
