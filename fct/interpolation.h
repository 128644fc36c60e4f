// interpolation.h - the straight line between two neighbouring samples.
#ifndef PLW_FCT_INTERPOLATION_H
#define PLW_FCT_INTERPOLATION_H

#include "fct/fmaClones.h"

#include <cmath>

namespace plw {

// Value at x, wherever it lies, on the line through (t0, y0) and (t1, y1), t0 and t1 not being
// equal. One NaN ordinate is replaced by the other.
PLW_ALWAYS_INLINE double lineThrough(double t0, double y0, double t1, double y1, double x) {
    if (std::isunordered(y0, y1)) [[unlikely]] {
        const double valid = std::isnan(y0) ? y1 : y0;
        y0 = valid;
        y1 = valid;
    }
    const double slope = (y1 - y0) / (t1 - t0);
    const double intercept = std::fma(-t0, slope, y0);
    return std::fma(slope, x, intercept);
}

// The same for any t0 and t1: the mean of the ordinates if they are equal.
PLW_ALWAYS_INLINE double interpolate(double t0, double y0, double t1, double y1, double x) {
    if (t0 != t1) return lineThrough(t0, y0, t1, y1, x);
    if (std::isnan(y0)) y0 = y1;
    if (std::isnan(y1)) y1 = y0;
    return (y0 + y1) * 0.5;
}

} // namespace plw

#endif
