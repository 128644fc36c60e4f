// digamma.h - the logarithmic derivative of the gamma function.
#ifndef PLOTWERK_FORMULA_DIGAMMA_H
#define PLOTWERK_FORMULA_DIGAMMA_H

#include <cmath>
#include <limits>
#include <numbers>

namespace plotwerk {

// psi(u) = gamma'(u) / gamma(u); NaN at the poles 0, -1, -2, ... and for NaN. Reflection below 0,
// recurrence up to 16 and from there the asymptotic series (Abramowitz and Stegun 6.3.5, 6.3.7 and
// 6.3.18), whose first term left out is below the rounding of a long double.
//   psi(1) = -0.57721566490153286   psi(0.5) = -1.96351002602142347
template<class Real> Real digamma(Real u) {
    if (u <= 0) {
        if (u == std::floor(u)) return std::numeric_limits<Real>::quiet_NaN();
        const Real pi = std::numbers::pi_v<Real>;
        return digamma(1 - u) - pi / std::tan(pi * u);
    }

    Real shift = 0;
    while (u < 16) {
        shift += 1 / u;
        u += 1;
    }

    // B(2k) / 2k, k = 1..10
    constexpr long double series[] = {
        1.0L / 12,       -1.0L / 120, 1.0L / 252,      -1.0L / 240,      1.0L / 132,
        -691.0L / 32760, 1.0L / 12,   -3617.0L / 8160, 43867.0L / 14364, -174611.0L / 6600};
    const Real inverseSquare = 1 / (u * u);
    Real sum = 0;
    for (int k = 9; k >= 0; k--) sum = (sum + static_cast<Real>(series[k])) * inverseSquare;
    return std::log(u) - 1 / (2 * u) - sum - shift;
}

} // namespace plotwerk

#endif
