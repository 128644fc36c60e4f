// Peak search in Fct.
#include "fct/fct.h"

#include "fct/completeness.h"
#include "fct/extremes.h"
#include "fct/storage.h"

#include <algorithm>
#include <cstdlib>

namespace plw {

// R - L at positions half a mean sample spacing apart, R and L being the integrals of f over h > 0
// to the right and to the left: positive where f rises across the window.
static Fct *windowDifference(Fct *f, double h) {
    Fct *d = newFct(f->n);
    const double first = f->t[0];
    const double last = f->t[f->n - 1];
    const double step = (last - first) / f->n * 0.5;
    Fct right = *f; // each integral keeps its own search index
    double x = first + h;
    while (x <= last - h) {
        appendFct(d, x, integralFct(x, x + h, &right) - integralFct(x - h, x, f));
        // a step too small to move x would never end
        if (!(x + step > x)) break;
        x += step;
    }
    return d;
}

// Sets next and previous, of count elements each, to what nextExtreme and prevExtreme give for
// every start. Found at once, because every sample of a flat stretch is a crossing.
static void findExtremes(const double *y, int count, int *next, int *previous) {
    std::fill_n(next, count, -1);
    std::fill_n(previous, count, -1);
    for (int i = 1; i < count - 1; ++i) previous[i] = isExtreme(y, i) ? i : previous[i - 1];
    for (int i = count - 2; i >= 1; --i) next[i] = isExtreme(y, i) ? i : next[i + 1];
}

// Appends the crossings of d that are strong enough.
static void appendPeaks(Fct *d, double threshold, double h, Fct *peaks) {
    const int n = d->n;
    int *next = allocate<int>(n);
    int *previous = allocate<int>(n);
    char *begun = allocate<char>(n + 1);
    findExtremes(d->y, n, next, previous);
    std::fill_n(begun, n + 1, 0); // 1: a crossing was looked for from here on

    bool mayGoBack = true;
    double p;
    for (int start = 1, crossing; (crossing = crossingFrom(d, start, 0.0, &p)) >= 0;) {
        const int below = indexFct(d, p);
        const int after = next[std::min(n - 1, below + 1)];
        const int before = previous[below];
        if (after == -1 && before == -1) break;

        // an extreme on one side only counts twice
        const double drop = after == -1    ? 2 * d->y[before]
                            : before == -1 ? -2.0 * d->y[after]
                                           : d->y[before] - d->y[after];
        if (drop / h >= threshold) appendFct(peaks, p, drop / h);

        // The search goes on from p, which lies anywhere where the crossing is none, and just below
        // its crossing by rounding. If that would lead it round for ever, it begins anew and only
        // goes forward.
        begun[start] = 1;
        start = mayGoBack ? (p < d->t[0] ? 0 : below + 1) : std::max(below, crossing) + 1;
        if (mayGoBack && begun[start]) {
            mayGoBack = false;
            clearFct(peaks);
            start = 1;
        }
    }
    std::free(begun);
    std::free(previous);
    std::free(next);
}

Fct *peaksFct(Fct *f, double threshold, double width) {
    requireComplete(f, "ERROR in peaksFct: function incomplete");
    Fct *peaks = newFct(20);
    const double h = width * 0.5;
    if (f->n < 1 || !(h > 0)) return peaks;

    Fct *d = windowDifference(f, h);
    appendPeaks(d, threshold, h, peaks);
    freeFct(d);
    return peaks;
}

int parabola(const double *x, const double *y, double *curvature, double *xVertex,
             double *yVertex) {
    const double d1 = x[1] - x[0];
    const double d2 = x[2] - x[0];
    if (d1 == 0 || d1 == d2) return 0;

    const double s1 = (y[1] - y[0]) / d1;
    const double a = (s1 - (y[1] - y[2]) / (d1 - d2)) / -d2;
    *curvature = a;
    if (a == 0) return 0;

    const double u = d1 * 0.5 + (y[1] - y[0]) / (d1 * (a * -2.0));
    *yVertex = y[0] + a * (u * u) + (s1 - a * d1) * u;
    *xVertex = x[0] + u;
    return 1;
}

} // namespace plw
