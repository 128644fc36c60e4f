// Crossings and local extremes of Fct and of bare arrays.
#include "fct/extremes.h"

#include "fct/completeness.h"
#include "fct/fct.h"
#include "util/arrays/search.h"

#include <algorithm>
#include <limits>

namespace plw {

static constexpr double nan = std::numeric_limits<double>::quiet_NaN();

static bool hasNeighbours(int i, int count) {
    return i >= 1 && i < count - 1;
}

static double extremeAt(const Fct *f, int i, double *t) {
    if (i == -1) return nan;
    *t = f->t[i];
    return f->y[i];
}

bool isExtreme(const double *y, int i) {
    const double change = y[i + 1] - y[i];
    return (y[i] - y[i - 1]) * change <= 0 && change != 0;
}

int crossingFrom(const Fct *f, int start, double value, double *t) {
    for (int i = start; i < f->n - 1; ++i) {
        const double d0 = f->y[i] - value;
        const double d1 = f->y[i + 1] - value;
        if (!(d0 * d1 <= 0)) continue;

        if (d0 == 0)
            *t = f->t[i];
        else if (d1 == 0)
            *t = f->t[i + 1];
        else
            *t = (d1 * f->t[i] - d0 * f->t[i + 1]) / (d1 - d0);
        return i;
    }
    return -1;
}

int findValueBeyondFct(double x, Fct *f, double value, double *t) {
    if (f->n < 1) return 0;
    requireComplete(f, "ERROR in findRootBeyondFct: function incomplete");
    const int start = f->t[0] > x ? 0 : indexFct(f, x) + 1;
    return crossingFrom(f, start, value, t) >= 0;
}

double extremeBeyondFct(double x, Fct *f, double *t) {
    requireComplete(f, "ERROR in extremeBeyondFct: function incomplete");
    return extremeAt(f, nextExtreme(f->y, f->n, std::min(f->n - 1, indexFct(f, x) + 1)), t);
}

double extremeBeforeFct(double x, Fct *f, double *t) {
    requireComplete(f, "ERROR in extremeBeforeFct: function incomplete");
    return extremeAt(f, prevExtreme(f->y, f->n, indexFct(f, x)), t);
}

int nextExtreme(const double *y, int count, int start) {
    if (!hasNeighbours(start, count)) return -1;
    for (int i = start; i < count - 1; ++i)
        if (isExtreme(y, i)) return i;
    return -1;
}

int prevExtreme(const double *y, int count, int start) {
    if (!hasNeighbours(start, count)) return -1;
    for (int i = start; i >= 1; --i)
        if (isExtreme(y, i)) return i;
    return -1;
}

double nextZero(const double *y, int count, int start) {
    for (int i = std::max(start, 0); i < count - 1; ++i) {
        const double a = y[i];
        const double b = y[i + 1];
        if (!(a * b <= 0) || (a == 0 && b == 0)) continue;

        // NaN, from an infinite a, stays NaN
        return std::clamp(i - a / (b - a), static_cast<double>(i), i + 1.0);
    }
    return -1.0;
}

} // namespace plw
