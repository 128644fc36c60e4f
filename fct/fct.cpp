// Container, searches and printing of Fct.
#include "fct/fct.h"

#include "fct/completeness.h"
#include "fct/fmaClones.h"
#include "fct/storage.h"
#include "fct/table.h"
#include "util/arrays/search.h"
#include "util/arrays/sort.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace plw {

static constexpr double pi = 3.141592653589793;
static constexpr double twoPi = 6.283185307179586;

static void grow(Fct *f) {
    if (f->fixedLen) myexit("ERROR in appendFct: function with fixed length full", f->n);
    f->size = grownSize(f->size);
    f->y = reallocate(f->y, f->size);
    f->t = reallocate(f->t, f->size);
}

Fct *newFct(int capacity) {
    Fct *f = allocate<Fct>(1);
    f->size = std::max(capacity, 1);
    f->y = allocate<double>(f->size);
    f->t = allocate<double>(f->size);
    f->n = 0;
    f->lastIndex = 0;
    f->fixedLen = 0;
    f->linked = 0;
    return f;
}

Fct *newFctFixedLen(int capacity) {
    Fct *f = newFct(capacity);
    f->fixedLen = 1;
    return f;
}

PLW_FMA_CLONES
Fct *newFctWith(const double *ordinates, int count, double t0, double dt) {
    Fct *f = newFct(count);
    f->n = count;
    for (int i = 0; i < count; ++i) {
        f->y[i] = ordinates[i];
        f->t[i] = std::fma(i, dt, t0);
    }
    return f;
}

Fct *copyFct(const Fct *f) {
    Fct *copy = newFct(f->n);
    copy->n = f->n;
    std::copy(f->y, f->y + f->n, copy->y);
    std::copy(f->t, f->t + f->n, copy->t);
    return copy;
}

Fct *linkFct(const Fct *f) {
    Fct *link = allocate<Fct>(1);
    *link = *f;
    link->size = 0;
    link->lastIndex = 0;
    link->linked = 1;
    return link;
}

void appendFct(Fct *f, double t, double y) {
    if (f->n >= f->size) grow(f);
    f->y[f->n] = y;
    f->t[f->n] = t;
    ++f->n;
}

void removeAtEndFct(Fct *f, int k) {
    if (f->fixedLen) myexit("ERROR in appendFct: function with fixed length full", f->n);
    f->n = lengthWithoutLast(f->n, k, f->size);
    f->lastIndex = 0;
}

void removeAtBeginFct(Fct *f, int k) {
    if (f->fixedLen) myexit("ERROR in removeAtBeginFct: function with fixed length full", f->n);
    const int dropped = std::max(std::min(k, f->n), 0);
    dropFirst(f->t, f->n, dropped);
    dropFirst(f->y, f->n, dropped);
    f->n -= dropped;
    f->lastIndex = 0;
}

void clearFct(Fct *f) {
    f->n = 0;
}

void freeFct(Fct *f) {
    if (f->size != 0 && !f->linked) {
        std::free(f->y);
        std::free(f->t);
    }
    std::free(f);
}

void negFct(Fct *f) {
    for (int i = 0; i < f->n; ++i) f->y[i] = -f->y[i];
}

void sortByTFct(Fct *f) {
    quicksort(f->t, f->y, 0, f->n - 1);
}

void sortByYFct(Fct *f) {
    quicksort(f->y, f->t, 0, f->n - 1);
}

PLW_FMA_CLONES
void unwrapPhaseFct(Fct *f, int m) {
    if (f->n < 2) return;

    double *y = f->y;
    const double weight = 1.0 / m;
    double reference = y[0]; // mean of the last m unwrapped ordinates
    double offset = 0.0;
    for (int i = 1; i < f->n; ++i) {
        const double v = y[i] + offset;
        if (v - reference > pi)
            offset -= twoPi;
        else if (v - reference < -pi)
            offset += twoPi;
        y[i] += offset;

        const int oldest = i > m ? i - m : 0;
        reference = std::fma(weight, y[i] - y[oldest], reference);
    }
}

void printFct(const Fct *f, const char *path) {
    Table table;
    openTable(&table, path);
    for (int i = 0; i < f->n; ++i) {
        const double row[] = {f->t[i], f->y[i]};
        addRow(&table, row, 2);
    }
    closeTable(&table);
}

void pp(const Fct *f) {
    printFct(f, "");
}

int indexFct(Fct *f, double x) {
    requireComplete(f, "ERROR in indexFct: function incomplete");
    f->lastIndex = search_le(x, f->t, f->n, f->lastIndex);
    return f->lastIndex;
}

double closestTFct(Fct *f, double x) {
    requireComplete(f, "ERROR in closestTFct: function incomplete");
    const int i = search_le(x, f->t, f->n, f->lastIndex);
    f->lastIndex = i;
    if (f->n < 1) return std::numeric_limits<double>::quiet_NaN();
    if (i == f->n - 1) return f->t[i];

    // equal distances and NaN go to the larger position
    return std::fabs(f->t[i] - x) - std::fabs(f->t[i + 1] - x) < 0 ? f->t[i] : f->t[i + 1];
}

void maximumFct(const Fct *f, double *t, double *y, int *index) {
    requireComplete(f, "ERROR in maximumFct: function incomplete");
    *y = -1e300;
    for (int i = 0; i < f->n; ++i) {
        if (f->y[i] > *y) {
            *y = f->y[i];
            *t = f->t[i];
            *index = i;
        }
    }
}

} // namespace plw
