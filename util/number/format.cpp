#include "util/number/format.h"

#include "util/number/decimal.h"
#include "util/number/power.h"

#include <algorithm>
#include <charconv>
#include <climits>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <system_error>

namespace plw {

static constexpr int bufferSize = 100;

static void replacePoint(char *s) {
    if (decimalSeparator == '.') return;
    char *const point = std::strchr(s, '.');
    if (point != nullptr) *point = decimalSeparator;
}

// Significant digits of the mantissa in decimal, at most 12. The factors are a little large to
// absorb the error of binary fractions.
static int countDigits(double mantissa) {
    double v = std::fabs(mantissa) * 1.00000000000002;
    if (std::isinf(v)) return 1;

    double threshold = 1e-12;
    int count = 0;
    while (v > threshold && count != 12) {
        ++count;
        threshold *= 10;
        v = (v - static_cast<int>(v)) * 10.00000000000001;
    }
    return count;
}

// Prints x, not NaN, with as many digits as FormatOfReal finds; the point stays '.'.
static void printReal(char *buffer, int size, double x, int maxDigits) {
    int width;
    int precision;
    char exponential;
    FormatOfReal(x, maxDigits, &width, &precision, &exponential);

    // to_chars prints the digits that printf prints, but neither pads nor knows a default
    // precision.
    if (precision >= 0) {
        const auto notation =
            exponential ? std::chars_format::scientific : std::chars_format::fixed;
        const auto [end, error] = std::to_chars(buffer, buffer + size - 1, x, notation, precision);
        if (error == std::errc() && end - buffer >= width) {
            *end = '\0';
            return;
        }
    }
    width = std::clamp(width, -bufferSize, bufferSize);
    std::snprintf(buffer, size, exponential ? "%*.*e" : "%*.*f", width, precision, x);
}

static char *printInto(char *buffer, double x, int maxDigits) {
    if (std::isnan(x)) return std::strcpy(buffer, "NAN");
    printReal(buffer, bufferSize, x, maxDigits);
    replacePoint(buffer);
    return buffer;
}

static constexpr int usualDigits = 20;

void FormatOfReal(double x, int maxDigits, int *width, int *precision, char *exponential) {
    const int e = decimalExponent(x);
    const int count = countDigits(x / power10(e));

    // Half of INT_MIN: a hugely negative maxDigits must not overflow below.
    int digits = std::max(std::min(maxDigits, count), INT_MIN / 2);
    if (e < -3 || e > 5) {
        digits = std::min(digits, 10);
        *exponential = 1;
        *precision = digits - 1;
        *width = std::min(digits + 4, 12);
    } else {
        *exponential = 0;
        *precision = std::max(digits - e - 1, 0);
        *width = *precision + std::max(e + 2, 2);
        if (*precision == 0) --*width;
    }
    if (x < 0) ++*width;
}

char *stringOfDouble(double x) {
    static char buffer[bufferSize];
    return printInto(buffer, x, usualDigits);
}

char *stringOfDouble2(double x) {
    static char buffer[bufferSize];
    return printInto(buffer, x, usualDigits);
}

char *stringOfDoubleMaxPrec(double x, int maxDigits) {
    static char buffer[bufferSize];
    return printInto(buffer, x, maxDigits);
}

char *stringOfDoubleBlank(double x) {
    static char buffer[bufferSize];
    if (std::isnan(x)) return std::strcpy(buffer, "NAN");

    printReal(buffer + 1, bufferSize - 1, x, usualDigits);
    if (x >= 0) buffer[0] = ' ';
    // For a negative number the first byte is what an earlier call left: NUL hides the point.
    replacePoint(buffer);
    return x >= 0 ? buffer : buffer + 1;
}

char *stringOfDoubleConsideringError(double x, double error, int printError) {
    if (error <= 0) return stringOfDouble(x);

    static char buffer[bufferSize];
    if (std::isnan(x) || (printError && std::isnan(error))) return std::strcpy(buffer, "NAN");

    const bool exponential = std::fabs(x) >= 1e6 || std::fabs(x) < 0.001;
    const int extra = mantisse10(std::fabs(error)) <= 4.0 ? 1 : 0;
    const double decimals = extra - exponent10(error) + (exponential ? exponent10(x) : 0);
    // From NaN and infinities an int as well: none, none or far more decimals than are ever
    // printed.
    int precision = static_cast<int>(std::fmin(std::fmax(decimals, 0), 1000));
    if (printError && exponential) precision = extra;
    std::snprintf(buffer, bufferSize, exponential ? "%.*e" : "%.*f", precision,
                  printError ? error : x);
    replacePoint(buffer);
    return buffer;
}

} // namespace plw
