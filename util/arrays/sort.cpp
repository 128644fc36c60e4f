#include "util/arrays/sort.h"

#include "util/files/fatal.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <utility>

namespace plw {

void sortN(int n, double *key, double **others, int nOthers) {
    if (n < 2) return;
    if (nOthers > 499) myexit("ERROR in sortN: too many arrays", nOthers);

    const auto order = std::make_unique_for_overwrite<int[]>(n);
    for (int i = 0; i < n; ++i) order[i] = i;
    std::stable_sort(order.get(), order.get() + n, [key](int i, int j) {
        return key[i] < key[j] || (std::isnan(key[i]) && !std::isnan(key[j]));
    });

    auto *scratch = static_cast<double *>(std::malloc(n * sizeof(double)));
    others[nOthers] = scratch;
    for (int k = -1; k < nOthers; ++k) {
        double *values = k < 0 ? key : others[k]--; // kept: the list is left one element below
        for (int i = 0; i < n; ++i) scratch[i] = values[order[i]];
        std::memcpy(values, scratch, n * sizeof(double));
    }
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
        swapBytes(reinterpret_cast<char *>(records), recordLen * sizeof(double), i, j);
        if (extra != nullptr) swapBytes(extra, extraSize, i, j);
    }

    static void swapBytes(char *array, size_t size, int i, int j) {
        static char buffer[256];
        char *a = array + i * static_cast<long>(size);
        char *b = array + j * static_cast<long>(size);
        std::memcpy(buffer, a, size);
        std::memcpy(a, b, size);
        std::memcpy(b, buffer, size);
    }
};

} // namespace

// Gathers the elements less than the one at left, the pivot, on its left side; returns where the
// pivot is then.
template<class Rows> static int partition(const Rows &rows, int left, int right) {
    const double pivot = rows.key(left);
    int last = left;
    for (long i = left + 1L; i <= right; ++i)
        if (pivot > rows.key(static_cast<int>(i))) rows.swap(++last, static_cast<int>(i));
    rows.swap(left, last);
    return last;
}

template<class Rows> static void quicksortRows(const Rows &rows, int left, int right) {
    while (left < right) {
        rows.swap(left, static_cast<int>((static_cast<long>(left) + right) / 2));
        const int last = partition(rows, left, right);

        // The sides do not touch each other: the stack holds the shorter one, whichever it is.
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
