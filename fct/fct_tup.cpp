#include "fct/fct_tup.h"

#include "fct/storage.h"
#include "util/arrays/order.h"
#include "util/arrays/sort.h"
#include "util/files/fatal.h"

#include <algorithm>
#include <cstdarg>
#include <cstdint>
#include <utility>

namespace plw {

static constexpr int maxMembers = 64; // that appendFct_tup2 and setFct_tupByIndex can fill

// Gives the table at least m members; new ones are zero in all rows allocated.
static void widen(Fct_tup *T, int m) {
    if (m <= T->m) return;
    T->members = reallocate(T->members, m);
    for (; T->m < m; ++T->m) {
        T->members[T->m] = allocate<double>(T->size);
        std::fill_n(T->members[T->m], T->size, 0.0);
    }
}

// Adds a row of `given` values, and zeros in the members beyond them.
static void appendRow(Fct_tup *T, const double *values, int given) {
    if (T->n >= T->size) {
        if (T->fixedLen) myexit("ERROR in appendFct_tup: function with fixed length full", T->n);
        T->size = grownSize(T->size);
        for (int c = 0; c < T->m; ++c) T->members[c] = reallocate(T->members[c], T->size);
    }
    for (int c = 0; c < T->m; ++c) T->members[c][T->n] = c < given ? values[c] : 0.0;
    ++T->n;
}

static void requireMember(const Fct_tup *T, int c, const char *message) {
    if (c < 0 || c >= T->m) myexit(message, c);
}

static void requireRows(const Fct_tup *T, int a, int b, const char *message) {
    if (a >= T->n) myexit(message, a);
    if (b >= T->n) myexit(message, b);
}

Fct_tup *newFct_tup(int capacity, int memberCount) {
    Fct_tup *T = allocate<Fct_tup>(1);
    *T = {};
    T->m = std::max(memberCount, 2);
    T->size = std::max(capacity, 1);
    T->members = allocate<double *>(T->m);
    for (int c = 0; c < T->m; ++c) T->members[c] = allocate<double>(T->size);
    return T;
}

void freeFct_tup(Fct_tup *T) {
    if (T->size != 0 && !T->linked)
        for (int c = 0; c < T->m; ++c) std::free(T->members[c]);
    std::free(T->members);
    std::free(T);
}

void appendFct_tup(Fct_tup *T, const double *values, int k) {
    widen(T, k);
    appendRow(T, values, T->m);
}

void appendFct_tup2(Fct_tup *T, int k, ...) {
    if (k > maxMembers) myexit("ERROR: implementation missing in 'appendFct_tup2'", k);
    double values[maxMembers];
    va_list list;
    va_start(list, k);
    for (int c = 0; c < k; ++c) values[c] = va_arg(list, double);
    va_end(list);

    widen(T, k);
    appendRow(T, values, k);
}

void setFct_tupByIndex(Fct_tup *T, int i, int c, double value) {
    widen(T, c + 1);
    if (i >= T->n && T->m > maxMembers)
        myexit("ERROR: implementation missing in 'setFct_tupByIndex'", T->m);
    while (i >= T->n) appendRow(T, nullptr, 0);
    T->members[c][i] = value;
}

double fct_tupAt(const Fct_tup *T, int i, int c) {
    const char *message = "ERROR in fct_tupAt: index out of range";
    if (i < 0 || i >= T->n) myexit(message, i);
    requireMember(T, c, message);
    return T->members[c][i];
}

void removeAtEndFct_tup(Fct_tup *T, int k) {
    if (T->fixedLen) myexit("ERROR in removeAtEndFct_tup: function with fixed length full", T->n);
    T->n = lengthWithoutLast(T->n, k, T->size);
    T->lastIndex = 0;
}

void removeAtBeginFct_tup(Fct_tup *T, int k) {
    if (T->fixedLen) myexit("ERROR in removeAtBeginFct_tup: function with fixed length full", T->n);
    const int dropped = std::max(std::min(k, T->n), 0);
    for (int c = 0; c < T->m; ++c) dropFirst(T->members[c], T->n, dropped);
    T->n -= dropped;
    T->lastIndex = 0;
}

// Equal neighbours allowed, NaN not.
static bool doesAscend(const double *key, int n) {
    for (int i = 0; i < n - 1; ++i)
        if (!(key[i] <= key[i + 1])) return false;
    return true;
}

// What qsortFlex does to rows left .. right whose keys ascend, equal ones among them, without
// looking at what does not move.
static void sortAscendingRows(Fct_tup *T, int left, int right) {
    const double *key = T->members[T->sortMember];
    while (left < right) {
        if (key[right - 1] < key[right]) {
            --right;
            continue;
        }
        int i = static_cast<int>(std::lower_bound(key + left, key + right, key[right]) - key);
        for (int j = right - 1; i < j; ++i, --j) swap_sortFct_tup(i, j, T);
        swap_sortFct_tup(i, right, T);
        sortAscendingRows(T, i + 1, right);
        right = i - 1;
    }
}

// Sorts rows of which no two have equal keys and none has NaN: they have one order only.
static bool sortDistinctRows(Fct_tup *T) {
    auto *order = allocate<std::uint64_t>(T->n);
    auto *scratch = allocate<std::uint64_t>(T->n);
    const bool isStrict = sortedOrder(T->members[T->sortMember], order, scratch, T->n);
    std::free(scratch);
    if (isStrict) {
        auto *values = allocate<double>(T->n);
        for (int c = 0; c < T->m; ++c) rearrange(T->members[c], 1, order, values, T->n);
        std::free(values);
    }
    std::free(order);
    return isStrict;
}

void sortFct_tup(Fct_tup *T, int c) {
    requireMember(T, c, "ERROR in sortFct_tup: index out of range");
    T->sortMember = c;
    if (doesAscend(T->members[c], T->n))
        sortAscendingRows(T, 0, T->n - 1);
    else if (!sortDistinctRows(T))
        qsortFlex(0, T->n - 1, T, cmp_sortFct_tup, swap_sortFct_tup);
}

int cmp_sortFct_tup(int a, int b, void *table) {
    const auto *T = static_cast<const Fct_tup *>(table);
    requireRows(T, a, b, "ERROR in cmp_sortFct_tup: index out of range");
    const double u = T->members[T->sortMember][a];
    const double v = T->members[T->sortMember][b];
    if (u == v) return 0;
    return u < v ? -1 : 1;
}

void swap_sortFct_tup(int a, int b, void *table) {
    const auto *T = static_cast<const Fct_tup *>(table);
    requireRows(T, a, b, "ERROR in swap_sortFct_tup: index out of range");
    for (int c = 0; c < T->m; ++c) std::swap(T->members[c][a], T->members[c][b]);
}

Fct *memberFct_tup(const Fct_tup *T, int c) {
    requireMember(T, c, "ERROR in memberFct_tup: index out of range");
    Fct *f = allocate<Fct>(1);
    *f = {.y = T->members[c],
          .t = T->members[0],
          .n = T->n,
          .size = 0,
          .lastIndex = 0,
          .fixedLen = 1,
          .linked = 1};
    return f;
}

Fct *copyMemberFct_tup(const Fct_tup *T, int c) {
    requireMember(T, c, "ERROR in memberFct_tup: index out of range");
    Fct *f = newFct(T->n);
    f->n = T->n;
    std::copy_n(T->members[0], T->n, f->t);
    std::copy_n(T->members[c], T->n, f->y);
    return f;
}

} // namespace plw
