#include "util/number/power.h"

#include <climits>
#include <cmath>

namespace plw {

const double pow10POS[powersOf10] = {
    1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,  1e8,  1e9,  1e10, 1e11, 1e12,
    1e13, 1e14, 1e15, 1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22, 1e23, 1e24, 1e25,
    1e26, 1e27, 1e28, 1e29, 1e30, 1e31, 1e32, 1e33, 1e34, 1e35, 1e36, 1e37, 1e38,
    1e39, 1e40, 1e41, 1e42, 1e43, 1e44, 1e45, 1e46, 1e47, 1e48, 1e49, 1e50};
const double pow10NEG[powersOf10] = {
    1e0,   1e-1,  1e-2,  1e-3,  1e-4,  1e-5,  1e-6,  1e-7,  1e-8,  1e-9,  1e-10, 1e-11, 1e-12,
    1e-13, 1e-14, 1e-15, 1e-16, 1e-17, 1e-18, 1e-19, 1e-20, 1e-21, 1e-22, 1e-23, 1e-24, 1e-25,
    1e-26, 1e-27, 1e-28, 1e-29, 1e-30, 1e-31, 1e-32, 1e-33, 1e-34, 1e-35, 1e-36, 1e-37, 1e-38,
    1e-39, 1e-40, 1e-41, 1e-42, 1e-43, 1e-44, 1e-45, 1e-46, 1e-47, 1e-48, 1e-49, 1e-50};

int decimalExponent(double x) {
    if (x == 0) return 0;

    // 308, the exponent of the largest double, also serves infinity and NaN.
    const double t = std::fmin(std::log10(std::fabs(x)) + 1e-12, 308);
    return static_cast<int>(t > 0 ? t : t - 1.0);
}

double exponent10(double x) {
    if (x == 0) return -300.0;
    return std::floor(std::log10(std::fabs(x)) + 1e-12);
}

double mantisse10(double x) {
    if (x == 0) return 0.0;
    return x / power10(decimalExponent(x));
}

double power10(int n) {
    if (n >= 0 && n < powersOf10) return pow10POS[n];
    if (n < 0 && n > -powersOf10) return pow10NEG[-n];
    return std::pow(10.0, n);
}

double intPower(double x, int n) {
    if (n == 2) return x * x;
    if (n == 3) return x * (x * x);

    double power = 1.0;
    for (unsigned bits = n < 0 ? 0u - n : n; bits != 0; bits >>= 1) {
        if (bits & 1) power *= x;
        x *= x;
    }
    return n < 0 ? 1.0 / power : power;
}

static double factor(double base, double exponent) {
    if (exponent == 0.0) return 1.0;
    if (exponent == 1.0) return base;
    if (exponent == 2.0) return base * base;
    return std::pow(base, exponent);
}

double doublePower(double x, double y, double a, double b) {
    return factor(x, a) * factor(y, b);
}

int intFloor(double x) {
    if (x > 0) return static_cast<int>(std::fmin(x, INT_MAX));
    return static_cast<int>(std::fmax(x - 1.0, INT_MIN));
}

int equDouble(const double *a, const double *b) {
    if (*b == 0) return *a == 0;
    return std::fabs(1 - *a / *b) < 1e-10;
}

} // namespace plw
