#include "util/arrays/search.h"

#include <algorithm>
#include <cmath>

namespace plw {

static int firstValid(const double *a, int low, int high) {
    while (low < high && std::isnan(a[low])) ++low;
    return low;
}

static int lastValid(const double *a, int low, int high) {
    while (low < high && std::isnan(a[high])) --high;
    return high;
}

// The valid entry nearest to mid, a gap, strictly between low and high: on the left if there is
// one, else on the right; -1 if there is none.
static int validBeside(const double *a, int low, int mid, int high) {
    for (int i = mid - 1; i > low; --i)
        if (!std::isnan(a[i])) return i;
    for (int i = mid + 1; i < high; ++i)
        if (!std::isnan(a[i])) return i;
    return -1;
}

namespace {

struct Bracket {
    int low;
    int high;
};

} // namespace

// Narrows [low, high] around x, a[low] < x < a[high], until no valid entry is left in between; both
// ends are the index of an entry equal to x if one is met.
static Bracket bisect(double x, const double *a, int low, int high) {
    while (low < high - 1) {
        int mid = low + (high - low) / 2;
        const int eighth = (high - low) / 8;
        if (eighth > 8) { // what the step after the next may read: memory answers slowly
            __builtin_prefetch(a + low + eighth);
            __builtin_prefetch(a + mid - eighth);
            __builtin_prefetch(a + mid + eighth);
            __builtin_prefetch(a + high - eighth);
        }
        if (a[mid] > x) {
            high = mid;
        } else if (a[mid] < x) {
            low = mid;
        } else { // equal or a gap
            if (std::isnan(a[mid])) mid = validBeside(a, low, mid, high);
            if (mid < 0) break;
            if (a[mid] == x) return {mid, mid};
            (a[mid] > x ? high : low) = mid;
        }
    }
    return {low, high};
}

int search_le(double x, const double *a, int n, int hint) {
    int low = 0;
    int high = n - 1;

    if (hint >= 0 && hint < n - 1) {
        if (a[hint] <= x && x < a[hint + 1]) return hint;
        if (hint < n - 2 && a[hint + 1] <= x && x < a[hint + 2]) return hint + 1;
        if (a[hint] <= x) low = hint;
        if (a[hint] > x) high = hint;
    }
    if (std::isnan(x)) return 0;

    low = firstValid(a, low, high);
    if (low >= high || x < a[low]) return 0;
    if (x == a[low]) return low;

    high = lastValid(a, low, high);
    if (x >= a[high]) return high;

    return bisect(x, a, low, high).low;
}

int search_ge(double x, const double *a, int n) {
    if (n < 1) return -1;

    const int low = firstValid(a, 0, n - 1);
    if (low >= n - 1) return 0;
    if (a[low] >= x) return low;

    const int high = lastValid(a, low, n - 1);
    if (!(x < a[high])) return high; // x NaN too

    return bisect(x, a, low, high).high;
}

int searchLeftForValid(const double *x, const double *y, int i) {
    for (; i >= 0; --i)
        if (!std::isnan(x[i]) && !std::isnan(y[i])) return i;
    return -1;
}

int searchRightForValid(const double *x, const double *y, int n, int i) {
    for (i = std::max(i, 0); i < n; ++i)
        if (!std::isnan(x[i]) && !std::isnan(y[i])) return i;
    return n - 1;
}

int isArrIncreasing(const double *a, int n) {
    for (int i = 0; i < n - 1; ++i)
        if (a[i] > a[i + 1]) return 0;
    return 1;
}

} // namespace plw
