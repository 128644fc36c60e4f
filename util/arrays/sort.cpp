#include "util/arrays/sort.h"

#include "util/files/fatal.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <numeric>
#include <utility>

namespace plw {

// A number that sorts as the key does: 0 for NaN, the same for -0.0 and 0.0.
static std::uint64_t rankOf(double key) {
    if (std::isnan(key)) return 0;
    const std::uint64_t sign = 1UL << 63;
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

// Leaves in the lower half of order[i] the position of the key that belongs at i.
static void sortedOrder(const double *key, std::uint64_t *order, std::uint64_t *scratch, int n) {
    const std::uint64_t upper = ~0UL << 32;
    for (int i = 0; i < n; ++i) order[i] = (rankOf(key[i]) & upper) | static_cast<unsigned>(i);
    sortByUpperHalf(order, scratch, n);

    // where the upper halves of the ranks are equal, the lower ones decide
    for (int i = 0, end; i < n; i = end) {
        for (end = i + 1; end < n && (order[end] & upper) == (order[i] & upper);) ++end;
        if (end == i + 1) continue;

        for (int k = i; k < end; ++k) {
            const auto position = static_cast<unsigned>(order[k]);
            order[k] = rankOf(key[position]) << 32 | position;
        }
        sortByUpperHalf(order + i, scratch, end - i);
    }
}

static void rearrange(double *values, const std::uint64_t *order, double *scratch, int n) {
    for (int i = 0; i < n; ++i) scratch[i] = values[static_cast<unsigned>(order[i])];
    std::memcpy(values, scratch, n * sizeof(double));
}

void sortN(int n, double *key, double **others, int nOthers) {
    if (n < 2) return;
    if (nOthers > 499) myexit("ERROR in sortN: too many arrays", nOthers);

    const auto order = std::make_unique_for_overwrite<std::uint64_t[]>(n);
    void *scratch = std::malloc(n * sizeof(double));
    sortedOrder(key, order.get(), static_cast<std::uint64_t *>(scratch), n);

    rearrange(key, order.get(), static_cast<double *>(scratch), n);
    for (int k = 0; k < nOthers; ++k) {
        rearrange(others[k], order.get(), static_cast<double *>(scratch), n);
        --others[k]; // kept: the list is left one element below its arrays,
    }
    others[nOthers] = static_cast<double *>(scratch); // and ends with freed memory
    std::free(scratch);
}

namespace {

struct Pairs {
    double *x;
    double *y;

    double key(int i) const { return x[i]; }

    void swap(int i, int j) const {
        std::swap(x[i], x[j]);
        std::swap(y[i], y[j]);
    }
};

struct Clusters {
    double *records;
    int recordLen;
    int keyIndex;
    char *extra;
    int extraSize;

    double key(int i) const { return records[static_cast<long>(i) * recordLen + keyIndex]; }

    void swap(int i, int j) const {
        if (i == j) return;
        swapRecords(records, recordLen, i, j);
        if (extra != nullptr) swapRecords(extra, extraSize, i, j);
    }

    template<class T> static void swapRecords(T *array, long len, int i, int j) {
        std::swap_ranges(array + i * len, array + (i + 1) * len, array + j * len);
    }
};

} // namespace

// Gathers the elements less than the one at left, the pivot, on its left side; returns where the
// pivot is then. Finding them and moving them are loops of their own, because neither is then
// held up by a branch that cannot be foreseen.
template<class Rows> static int partition(const Rows &rows, int left, int right) {
    const double pivot = rows.key(left);
    int last = left;
    for (long begin = left + 1L; begin <= right; begin += 64) {
        const long end = std::min(begin + 64, right + 1L);
        int less[64];
        int count = 0;
        for (long i = begin; i < end; ++i) {
            less[count] = static_cast<int>(i);
            count += pivot > rows.key(static_cast<int>(i));
        }
        for (int k = 0; k < count; ++k) rows.swap(++last, less[k]);
    }
    rows.swap(left, last);
    return last;
}

template<class Rows> static bool isAnyAbove(const Rows &rows, int left, int right) {
    const double pivot = rows.key(left);
    for (long i = left + 1L; i <= right; ++i)
        if (rows.key(static_cast<int>(i)) > pivot) return true;
    return false;
}

template<class Rows> static void middleToLeft(const Rows &rows, int left, int right) {
    rows.swap(left, static_cast<int>((static_cast<long>(left) + right) / 2));
}

template<class Rows> static void quicksortRows(const Rows &rows, int left, int right) {
    while (left < right) {
        middleToLeft(rows, left, right);
        if (std::isnan(rows.key(left))) { // nothing is less
            ++left;
            continue;
        }
        const int last = partition(rows, left, right);

        // Nothing less and nothing greater: from here on all that happens is this. It spares many
        // equal keys the square of their number.
        if (last == left && !isAnyAbove(rows, left, right)) {
            while (++left < right) middleToLeft(rows, left, right);
            return;
        }

        // The sides do not touch each other, so the shorter one may come first: that bounds the
        // stack.
        if (last - left < right - last) {
            quicksortRows(rows, left, last - 1);
            left = last + 1;
        } else {
            quicksortRows(rows, last + 1, right);
            right = last - 1;
        }
    }
}

void quicksort(double *x, double *y, int left, int right) {
    quicksortRows(Pairs{x, y}, left, right);
}

void quicksortCluster(double *records, int recordLen, int keyIndex, void *extra, int extraSize,
                      int left, int right) {
    if (extraSize > 256 || recordLen > 32)
        myexit("ERROR in quicksortCluster: cluster size too big", extraSize);
    quicksortRows(Clusters{records, recordLen, keyIndex, static_cast<char *>(extra), extraSize},
                  left, right);
}

void qsortFlex(int left, int right, void *context, int (*compare)(int, int, void *),
               void (*swap)(int, int, void *)) {
    while (left < right) {
        int i = left - 1;
        int j = right;
        for (;;) {
            do ++i;
            while (compare(i, right, context) < 0);
            do --j;
            while (i < j && compare(j, right, context) > 0);
            if (i >= j) break;
            swap(i, j, context);
        }
        swap(i, right, context);

        if (i - left > right - i) {
            qsortFlex(i + 1, right, context, compare, swap);
            right = i - 1;
        } else {
            qsortFlex(left, i - 1, context, compare, swap);
            left = i + 1;
        }
    }
}

} // namespace plw
