#include "util/arrays/sort.h"

#include "util/arrays/order.h"
#include "util/arrays/storage.h"
#include "util/files/fatal.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <utility>

namespace plw {

void sortN(int n, double *key, double **others, int nOthers) {
    if (n < 2) return;
    if (nOthers > 499) myexit("ERROR in sortN: too many arrays", nOthers);

    auto *order = allocate<std::uint64_t>(n);
    void *scratch = allocate<std::uint64_t>(n);
    sortedOrder(key, order, static_cast<std::uint64_t *>(scratch), n);

    for (int k = 0; k < nOthers; ++k) { // each array once, however often it is listed
        if (others[k] == key || std::find(others, others + k, others[k]) != others + k) continue;
        rearrange(others[k], 1, order, static_cast<double *>(scratch), n);
    }
    rearrange(key, 1, order, static_cast<double *>(scratch), n);
    std::free(order);

    for (int k = 0; k < nOthers; ++k) --others[k];    // kept: one element below their arrays,
    others[nOthers] = static_cast<double *>(scratch); // and freed memory behind them
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

    void rearrangeFrom(int left, const std::uint64_t *order, int n) const {
        auto *scratch = allocate<double>(n);
        rearrange(x + left, 1, order, scratch, n);
        rearrange(y + left, 1, order, scratch, n);
        std::free(scratch);
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

    void rearrangeFrom(int left, const std::uint64_t *order, int n) const {
        rearrangeRecords(records, recordLen, left, order, n);
        if (extra != nullptr) rearrangeRecords(extra, extraSize, left, order, n);
    }

    template<class T> static void swapRecords(T *array, long len, int i, int j) {
        std::swap_ranges(array + i * len, array + (i + 1) * len, array + j * len);
    }

    template<class T>
    static void rearrangeRecords(T *array, long len, int left, const std::uint64_t *order, int n) {
        auto *scratch = allocate<T>(len * n);
        rearrange(array + left * len, len, order, scratch, n);
        std::free(scratch);
    }
};

} // namespace

// Gathers the elements less than the one at left, the pivot, on its left side; returns where the
// pivot is then. Counting, finding and moving them are loops of their own, because none is then
// held up by a branch that cannot be foreseen; of presorted rows most blocks need no more than
// counting.
template<class Rows> static int partition(const Rows &rows, int left, int right) {
    constexpr int blockSize = 64;
    const double pivot = rows.key(left);
    int last = left;
    for (int begin = left + 1, size; begin <= right; begin += size) {
        size = std::min(blockSize, right - begin + 1);
        if (size == blockSize) {
            int count = 0;
            for (int k = 0; k < blockSize; ++k) count += pivot > rows.key(begin + k);
            if (count == 0) continue;
            if (count == blockSize && last == begin - 1) {
                last += blockSize;
                continue;
            }
        }

        int less[blockSize];
        int count = 0;
        for (int k = 0; k < size; ++k) {
            less[count] = begin + k;
            count += pivot > rows.key(begin + k);
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

// Whether the rows ascend strictly or, having descended strictly, were turned round.
template<class Rows> static bool wereMonotone(const Rows &rows, int left, int right) {
    int i = left;
    while (i < right && rows.key(i) < rows.key(i + 1)) ++i;
    if (i == right) return true;
    if (i > left) return false;
    while (i < right && rows.key(i) > rows.key(i + 1)) ++i;
    if (i < right) return false;
    while (left < right) rows.swap(left++, right--);
    return true;
}

// Whether, of some rows spread over all, one has the key of its neighbour, two have the same, or
// one has none: there will be more.
template<class Rows> static bool areSomeEqual(const Rows &rows, int left, int right) {
    constexpr int count = 256;
    const int step = (right - left) / count;
    if (step < 16) return false; // too few to pay

    double sample[count];
    for (int k = 0; k < count; ++k) {
        sample[k] = rows.key(left + k * step);
        if (std::isnan(sample[k]) || sample[k] == rows.key(left + k * step + 1)) return true;
    }
    std::sort(sample, sample + count);
    return std::adjacent_find(sample, sample + count) != sample + count;
}

// Sorts the rows if no key is equal to another or NaN. They have one order only, and there is a
// faster way to it than the quicksort that decides about equal keys; its time doesn't depend on
// how they stood.
template<class Rows> static bool sortDistinct(const Rows &rows, int left, int right) {
    if (right - left < 64) return false; // too few to pay
    if (wereMonotone(rows, left, right)) return true;
    if (areSomeEqual(rows, left, right)) return false;

    const int n = right - left + 1;
    auto *key = allocate<double>(n);
    for (int i = 0; i < n; ++i) key[i] = rows.key(left + i);
    auto *order = allocate<std::uint64_t>(n);
    auto *scratch = allocate<std::uint64_t>(n);
    const bool isStrict = sortedOrder(key, order, scratch, n);
    std::free(scratch);
    std::free(key);
    if (isStrict) rows.rearrangeFrom(left, order, n);
    std::free(order);
    return isStrict;
}

template<class Rows> static void sortRows(const Rows &rows, int left, int right) {
    if (!sortDistinct(rows, left, right)) quicksortRows(rows, left, right);
}

void quicksort(double *x, double *y, int left, int right) {
    sortRows(Pairs{x, y}, left, right);
}

void quicksortCluster(double *records, int recordLen, int keyIndex, void *extra, int extraSize,
                      int left, int right) {
    if (extraSize > 256 || recordLen > 32)
        myexit("ERROR in quicksortCluster: cluster size too big", extraSize);
    sortRows(Clusters{records, recordLen, keyIndex, static_cast<char *>(extra), extraSize}, left,
             right);
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
