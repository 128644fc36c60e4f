// Sums, products, convolution and smoothing of Fct.
#include "fct/fct.h"

#include "util/arrays/search.h"

#include <algorithm>
#include <functional>

namespace plw {

// Appends f op g to the empty result, on the merged samples of both.
template<class Operator> static void combine(Fct *f, Fct *g, Operator op, Fct *result) {
    if (f->n < 1 || g->n < 1) return;

    int i = 0;
    int j = 0;
    if (f->t[0] < g->t[0])
        i = search_le(g->t[0], f->t, f->n, 0);
    else
        j = search_le(f->t[0], g->t, g->n, 0);

    while (i < f->n && j < g->n) {
        double x = f->t[i];
        const double b = g->t[j];
        if (x == b) {
            ++i;
            ++j;
        } else if (x < b) {
            ++i;
        } else {
            x = b;
            ++j;
        }
        const double u = evalFct(f, x);
        const double v = evalFct(g, x);
        appendFct(result, x, op(u, v));
    }
}

template<class Operator> static Fct *combined(Fct *f, Fct *g, Operator op) {
    Fct *result = newFct(f->n + g->n);
    combine(f, g, op, result);
    return result;
}

// Makes f as if it were new, without giving its memory back.
static void restart(Fct *f) {
    clearFct(f);
    f->lastIndex = 0;
}

// (f * kernel)(x). mirrored and product are scratch.
static double convolute(Fct *f, const Fct *kernel, double x, Fct *mirrored, Fct *product) {
    restart(mirrored);
    for (int j = kernel->n - 1; j >= 0; --j) appendFct(mirrored, x - kernel->t[j], kernel->y[j]);

    restart(product);
    combine(f, mirrored, std::multiplies<>(), product);
    if (product->n < 1) return 0.0;
    return integralFct(product->t[0], product->t[product->n - 1], product);
}

Fct *addFct(Fct *f, Fct *g) {
    return combined(f, g, std::plus<>());
}

Fct *subFct(Fct *f, Fct *g) {
    return combined(f, g, std::minus<>());
}

Fct *mulFct(Fct *f, Fct *g) {
    return combined(f, g, std::multiplies<>());
}

double convoluteFct(Fct *f, const Fct *kernel, double x) {
    Fct *mirrored = newFct(kernel->n);
    Fct *product = newFct(kernel->n);
    const double result = convolute(f, kernel, x, mirrored, product);
    freeFct(product);
    freeFct(mirrored);
    return result;
}

void smoothFct(Fct *f, const Fct *kernel) {
    Fct *mirrored = newFct(kernel->n);
    Fct *product = newFct(kernel->n);
    Fct *smooth = newFct(f->n);
    for (int i = 0; i < f->n; ++i)
        appendFct(smooth, f->t[i], convolute(f, kernel, f->t[i], mirrored, product));
    std::copy(smooth->y, smooth->y + smooth->n, f->y);
    freeFct(smooth);
    freeFct(product);
    freeFct(mirrored);
}

} // namespace plw
