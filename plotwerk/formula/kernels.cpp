#include "plotwerk/formula/kernels.h"

#include <boost/math/special_functions/digamma.hpp>

#include <cmath>
#include <numbers>

namespace plotwerk {

template<class Real> static constexpr Real ln2 = std::numbers::ln2_v<Real>;
template<class Real> static constexpr Real ln10 = std::numbers::ln10_v<Real>;
// 2 / sqrt(pi)
template<class Real> static constexpr Real erfScale = 2 * std::numbers::inv_sqrtpi_v<Real>;

template<class Real> static Real signOf(Real a) {
    return a > 0 ? 1 : a < 0 ? -1 : a;
}

// d pow(a, b) / da. Where a is 0 the quotient of the fast form has no value.
template<class Real> static Real powerSlope(Real a, Real b, Real power) {
    return a != 0 && std::isfinite(power) && power != 0 ? b * (power / a) : b * std::pow(a, b - 1);
}

// d pow(a, b) / db. At a = 0 the power stays 0 for every b > 0.
template<class Real> static Real powerGrowth(Real a, Real b, Real power) {
    return a == 0 && b > 0 ? 0 : power * std::log(a);
}

// The logarithmic derivative of gamma; NaN at the poles 0, -1, -2, ... A double's is computed in
// double precision, five times as fast as in extended.
template<class Real> static Real digamma(Real u) {
    using namespace boost::math::policies;
    using Quiet =
        policy<pole_error<ignore_error>, overflow_error<ignore_error>, promote_double<false>>;
    return boost::math::digamma(u, Quiet());
}

// lgamma also tells the sign by a variable that all threads share.
static double logOfGamma(double u) {
    int sign = 0;
    return lgamma_r(u, &sign);
}
static long double logOfGamma(long double u) {
    int sign = 0;
    return lgammal_r(u, &sign);
}

template<class Real>
void computeValues(Operation operation, std::array<const Real *, 3> from, Real *out, int n) {
    const Real *a = from[0];
    const Real *b = from[1];
    const Real *c = from[2];
    const auto unary = [&](auto f) {
        for (int i = 0; i < n; ++i) out[i] = f(a[i]);
    };
    const auto binary = [&](auto f) {
        for (int i = 0; i < n; ++i) out[i] = f(a[i], b[i]);
    };

    switch (operation) {
    case Operation::negate: return unary([](Real u) { return -u; });
    case Operation::logicalNot: return unary([](Real u) { return Real(u == 0); });
    case Operation::exp: return unary([](Real u) { return std::exp(u); });
    case Operation::expm1: return unary([](Real u) { return std::expm1(u); });
    case Operation::log: return unary([](Real u) { return std::log(u); });
    case Operation::log1p: return unary([](Real u) { return std::log1p(u); });
    case Operation::log2: return unary([](Real u) { return std::log2(u); });
    case Operation::log10: return unary([](Real u) { return std::log10(u); });
    case Operation::sqrt: return unary([](Real u) { return std::sqrt(u); });
    case Operation::sin: return unary([](Real u) { return std::sin(u); });
    case Operation::cos: return unary([](Real u) { return std::cos(u); });
    case Operation::tan: return unary([](Real u) { return std::tan(u); });
    case Operation::asin: return unary([](Real u) { return std::asin(u); });
    case Operation::acos: return unary([](Real u) { return std::acos(u); });
    case Operation::atan: return unary([](Real u) { return std::atan(u); });
    case Operation::sinh: return unary([](Real u) { return std::sinh(u); });
    case Operation::cosh: return unary([](Real u) { return std::cosh(u); });
    case Operation::tanh: return unary([](Real u) { return std::tanh(u); });
    case Operation::abs: return unary([](Real u) { return std::abs(u); });
    case Operation::erf: return unary([](Real u) { return std::erf(u); });
    case Operation::erfc: return unary([](Real u) { return std::erfc(u); });
    case Operation::gamma: return unary([](Real u) { return std::tgamma(u); });
    case Operation::lgamma: return unary([](Real u) { return logOfGamma(u); });
    case Operation::floor: return unary([](Real u) { return std::floor(u); });
    case Operation::ceil: return unary([](Real u) { return std::ceil(u); });
    case Operation::round: return unary([](Real u) { return std::round(u); });
    case Operation::sign: return unary([](Real u) { return signOf(u); });

    case Operation::add: return binary([](Real u, Real v) { return u + v; });
    case Operation::subtract: return binary([](Real u, Real v) { return u - v; });
    case Operation::multiply: return binary([](Real u, Real v) { return u * v; });
    case Operation::divide: return binary([](Real u, Real v) { return u / v; });
    case Operation::power: return binary([](Real u, Real v) { return std::pow(u, v); });
    case Operation::atan2: return binary([](Real u, Real v) { return std::atan2(u, v); });
    // NaN on either side wins
    case Operation::minimum:
        return binary([](Real u, Real v) { return u <= v || std::isnan(u) ? u : v; });
    case Operation::maximum:
        return binary([](Real u, Real v) { return u >= v || std::isnan(u) ? u : v; });
    case Operation::less: return binary([](Real u, Real v) { return Real(u < v); });
    case Operation::lessEqual: return binary([](Real u, Real v) { return Real(u <= v); });
    case Operation::greater: return binary([](Real u, Real v) { return Real(u > v); });
    case Operation::greaterEqual: return binary([](Real u, Real v) { return Real(u >= v); });
    case Operation::equal: return binary([](Real u, Real v) { return Real(u == v); });
    case Operation::notEqual: return binary([](Real u, Real v) { return Real(u != v); });
    case Operation::logicalAnd:
        return binary([](Real u, Real v) { return Real(u != 0 && v != 0); });
    case Operation::logicalOr: return binary([](Real u, Real v) { return Real(u != 0 || v != 0); });

    case Operation::choose:
        for (int i = 0; i < n; ++i) out[i] = std::isnan(a[i]) ? a[i] : a[i] != 0 ? b[i] : c[i];
        return;

    case Operation::constant:
    case Operation::variableX:
    case Operation::variableY:
    case Operation::variableColumn:
    case Operation::parameter: return;
    }
}

template<class Real>
void propagateAdjoints(Operation operation, std::array<const Real *, 3> from, const Real *out,
                       const Real *adjoint, std::array<AdjointSum<Real> *, 3> to, int n) {
    const Real *a = from[0];
    const Real *b = from[1];
    const auto add = [&](AdjointSum<Real> *sum, auto part) {
        if (sum == nullptr) return;
        Real *into = sum->values;
        if (sum->begun)
            for (int i = 0; i < n; ++i) into[i] += part(i);
        else
            for (int i = 0; i < n; ++i) into[i] = part(i);
        sum->begun = true;
    };
    // slope(k): derivative by one operand at point k
    const auto propagate = [&](AdjointSum<Real> *sum, auto slope) {
        add(sum, [&](int i) {
            const Real part = adjoint[i] * slope(i);
            return adjoint[i] != 0 ? part : Real(0);
        });
    };
    // the same where the slope is 1 or -1
    const auto pass = [&](AdjointSum<Real> *sum, auto part) {
        add(sum, [&](int i) { return part(adjoint[i]); });
    };
    const auto plus = [](Real u) { return u; };
    const auto minus = [](Real u) { return -u; };
    const auto unary = [&](auto slope) { propagate(to[0], [&](int i) { return slope(a[i]); }); };
    const auto outOnly = [&](auto slope) {
        propagate(to[0], [&](int i) { return slope(out[i]); });
    };
    const auto binary = [&](auto slope0, auto slope1) {
        propagate(to[0], [&](int i) { return slope0(a[i], b[i], out[i]); });
        propagate(to[1], [&](int i) { return slope1(a[i], b[i], out[i]); });
    };

    switch (operation) {
    case Operation::negate: return pass(to[0], minus);
    case Operation::exp: return outOnly([](Real o) { return o; });
    case Operation::expm1: return unary([](Real u) { return std::exp(u); });
    case Operation::log: return unary([](Real u) { return 1 / u; });
    case Operation::log1p: return unary([](Real u) { return 1 / (1 + u); });
    case Operation::log2: return unary([](Real u) { return 1 / (u * ln2<Real>); });
    case Operation::log10: return unary([](Real u) { return 1 / (u * ln10<Real>); });
    case Operation::sqrt: return outOnly([](Real o) { return 1 / (2 * o); });
    case Operation::sin: return unary([](Real u) { return std::cos(u); });
    case Operation::cos: return unary([](Real u) { return -std::sin(u); });
    case Operation::tan: return outOnly([](Real o) { return 1 + o * o; });
    case Operation::asin: return unary([](Real u) { return 1 / std::sqrt((1 - u) * (1 + u)); });
    case Operation::acos: return unary([](Real u) { return -1 / std::sqrt((1 - u) * (1 + u)); });
    case Operation::atan: return unary([](Real u) { return 1 / (1 + u * u); });
    case Operation::sinh: return unary([](Real u) { return std::cosh(u); });
    case Operation::cosh: return unary([](Real u) { return std::sinh(u); });
    case Operation::tanh:
        return unary([](Real u) {
            const Real cosine = std::cosh(u);
            return 1 / (cosine * cosine);
        });
    case Operation::abs: return unary([](Real u) { return signOf(u); });
    case Operation::erf: return unary([](Real u) { return erfScale<Real> * std::exp(-u * u); });
    case Operation::erfc: return unary([](Real u) { return -erfScale<Real> * std::exp(-u * u); });
    case Operation::gamma: return propagate(to[0], [&](int i) { return out[i] * digamma(a[i]); });
    case Operation::lgamma: return unary([](Real u) { return digamma(u); });

    case Operation::add: pass(to[0], plus); return pass(to[1], plus);
    case Operation::subtract: pass(to[0], plus); return pass(to[1], minus);
    case Operation::multiply:
        return binary([](Real, Real v, Real) { return v; }, [](Real u, Real, Real) { return u; });
    case Operation::divide:
        return binary([](Real, Real v, Real) { return 1 / v; },
                      [](Real, Real v, Real o) { return -o / v; });
    case Operation::power: return binary(powerSlope<Real>, powerGrowth<Real>);
    case Operation::atan2:
        return binary([](Real u, Real v, Real) { return v / (u * u + v * v); },
                      [](Real u, Real v, Real) { return -u / (u * u + v * v); });
    case Operation::minimum:
        return binary([](Real u, Real v, Real) { return Real(u <= v); },
                      [](Real u, Real v, Real) { return Real(!(u <= v)); });
    case Operation::maximum:
        return binary([](Real u, Real v, Real) { return Real(u >= v); },
                      [](Real u, Real v, Real) { return Real(!(u >= v)); });

    case Operation::choose:
        propagate(to[1], [&](int i) { return Real(a[i] != 0); });
        propagate(to[2], [&](int i) { return Real(a[i] == 0); });
        return;

    default: return; // steps: flat wherever they have a derivative
    }
}

template void computeValues(Operation, std::array<const double *, 3>, double *, int);
template void computeValues(Operation, std::array<const long double *, 3>, long double *, int);
template void propagateAdjoints(Operation, std::array<const double *, 3>, const double *,
                                const double *, std::array<AdjointSum<double> *, 3>, int);
template void propagateAdjoints(Operation, std::array<const long double *, 3>, const long double *,
                                const long double *, std::array<AdjointSum<long double> *, 3>, int);

} // namespace plotwerk
