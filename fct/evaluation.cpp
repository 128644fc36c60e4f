// Evaluation and integrals of Fct and of bare arrays.
#include "fct/fct.h"

#include "fct/completeness.h"
#include "fct/fmaClones.h"
#include "fct/interpolation.h"
#include "util/arrays/search.h"

#include <algorithm>
#include <cmath>

namespace plw {

// The integral from a to b by trapezoids over points i = 0, 1, ... n - 1 at t(i) with ordinate
// y(i), n >= 2. *hint is where the walk begins if that lies below a; it becomes the index before
// the start.
template<class Position, class Ordinate>
PLW_ALWAYS_INLINE double trapezoids(double a, double b, int n, Position t, Ordinate y, int *hint) {
    int i = *hint >= 0 && *hint < n && t(*hint) < a ? *hint : 0;
    while (!(a <= t(i))) {
        if (b <= t(i)) return 0.0;
        if (++i == n) return 0.0;
    }
    *hint = std::max(i - 1, 0);
    if (i == 0 && b <= t(0)) return 0.0;

    // before the first point nothing counts, however far away a is
    double previousT = i > 0 ? a : t(0);
    double previousY = i > 0 ? interpolate(t(i - 1), y(i - 1), t(i), y(i), a) : -y(0);
    double sum = 0.0;
    for (; i < n; ++i) {
        const double ti = t(i);
        const double yi = y(i);
        if (b <= ti) {
            const double atB = interpolate(t(i - 1), y(i - 1), ti, yi, b);
            sum += (previousY + atB) * (b - previousT);
            break;
        }
        sum += (previousY + yi) * (ti - previousT);
        previousT = ti;
        previousY = yi;
    }
    return sum * 0.5;
}

PLW_ALWAYS_INLINE double power(double base, double exponent) {
    if (exponent == 0) return 1.0;
    if (exponent == 1) return base;
    if (exponent == 2) return base * base;
    return std::pow(base, exponent);
}

PLW_FMA_CLONES
static double evalBySearch(Fct *f, double x) {
    const int n = f->n;
    if ((f->fixedLen && n != f->size) || n < 1) myexit("ERROR in evalFct: function incomplete", n);
    const double *t = f->t;
    const double *y = f->y;
    if (x < t[0] || x > t[n - 1]) return 0.0;
    if (n == 1) return y[0];

    const int i = std::min(search_le(x, t, n, f->lastIndex), n - 2);
    f->lastIndex = i;
    return interpolate(t[i], y[i], t[i + 1], y[i + 1], x);
}

PLW_FMA_CLONES
double evalFct(Fct *f, double x) {
    const int n = f->n;
    const int hint = f->lastIndex;
    const bool complete = !f->fixedLen || n == f->size;
    // most often the hint is still right, or the next sample is: what search_le would find, without
    // the call
    if (complete && hint >= 0 && hint < n - 2 && f->t[0] <= x && x <= f->t[n - 1]) {
        const double *t = f->t + hint;
        const double *y = f->y + hint;
        if (t[0] <= x && x < t[1]) return lineThrough(t[0], y[0], t[1], y[1], x);
        if (t[1] <= x && x < t[2]) {
            ++f->lastIndex;
            return lineThrough(t[1], y[1], t[2], y[2], x);
        }
    }
    return evalBySearch(f, x);
}

PLW_FMA_CLONES
double integralFct(double a, double b, Fct *f) {
    requireComplete(f, "ERROR in integral: function incomplete");
    const int n = f->n;
    const double *t = f->t;
    const double *y = f->y;
    if (n <= 1 || t[0] > b || t[n - 1] < a || b <= a) return 0.0;

    return trapezoids(
        a, b, n, [t](int i) { return t[i]; }, [y](int i) { return y[i]; }, &f->lastIndex);
}

PLW_FMA_CLONES
double integralXY(double a, double b, const double *pairs, int count) {
    static int iStart = 0;
    const auto x = [pairs](int i) { return pairs[2 * static_cast<std::size_t>(i)]; };
    const auto y = [pairs](int i) { return pairs[2 * static_cast<std::size_t>(i) + 1]; };
    if (count <= 1 || x(0) > b || x(count - 1) < a) return 0.0;

    return trapezoids(a, b, count, x, y, &iStart);
}

PLW_FMA_CLONES
double integralYarr(double a, double b, const double *x, const double *y, int count, double p,
                    double q) {
    static int iStart = 0;
    if (count <= 1 || x[0] > b || x[count - 1] < a) return 0.0;

    return trapezoids(
        a, b, count, [x](int i) { return x[i]; },
        [=](int i) { return power(x[i], p) * power(y[i], q); }, &iStart);
}

} // namespace plw
