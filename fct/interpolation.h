// interpolation.h - the straight line between two neighbouring samples.
#ifndef PLW_FCT_INTERPOLATION_H
#define PLW_FCT_INTERPOLATION_H

#include <cmath>

#include "fct/fmaClones.h"

namespace plw {

// Value at x on the line through (t0, y0) and (t1, y1), wherever x lies. One NaN ordinate is
// replaced by the other; for t0 equal to t1 it is the mean.
PLW_ALWAYS_INLINE double interpolate(double t0, double y0, double t1, double y1, double x) {
    if (std::isnan(y0))
        y0 = y1;
    else if (std::isnan(y1))
        y1 = y0;

    if (t0 == t1) return (y0 + y1) * 0.5;

    const double slope = (y1 - y0) / (t1 - t0);
    const double intercept = std::fma(-t0, slope, y0);
    return std::fma(slope, x, intercept);
}

} // namespace plw

#endif
