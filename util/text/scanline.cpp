#include "util/text/scanline.h"

#include "util/text/charclass.h"

#include <algorithm>
#include <bit>
#include <cerrno>
#include <cfloat>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <iterator>

namespace plw {

// The powers of ten that are exact: in an integer of eight digits at most, in a double, and in a
// long double of 64 bits.
static constexpr std::uint64_t integerPower[] = {1,      10,      100,      1000,     10000,
                                                 100000, 1000000, 10000000, 100000000};
static constexpr double power[] = {1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                   1e8,  1e9,  1e10, 1e11, 1e12, 1e13, 1e14, 1e15,
                                   1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};
static constexpr long double longPower[] = {1e0L,  1e1L,  1e2L,  1e3L,  1e4L,  1e5L,  1e6L,
                                            1e7L,  1e8L,  1e9L,  1e10L, 1e11L, 1e12L, 1e13L,
                                            1e14L, 1e15L, 1e16L, 1e17L, 1e18L, 1e19L, 1e20L,
                                            1e21L, 1e22L, 1e23L, 1e24L, 1e25L, 1e26L, 1e27L};

// A digit string that any 64-bit integer holds.
static constexpr std::ptrdiff_t mostDigits = 18;

// The number that eight digits make, each in a byte as 0 to 9, the first in the lowest byte: pairs
// are joined, then fours, then all.
static std::uint64_t joinEightDigits(std::uint64_t digits) {
    const std::uint64_t pairs = 10 * digits + (digits >> 8);
    const std::uint64_t outer =
        (pairs & 0x000000ff000000ff) * (100 + (std::uint64_t{1000000} << 32));
    const std::uint64_t inner =
        (pairs >> 16 & 0x000000ff000000ff) * (1 + (std::uint64_t{10000} << 32));
    return (outer + inner) >> 32;
}

static const char *gatherDigitsOneByOne(const char *p, std::uint64_t *integer) {
    for (; isDigit(*p); ++p) *integer = 10 * *integer + (*p - '0');
    return p;
}

// Appends the digits at p to *integer (modulo 2 to the 64) and returns where they end. Looks at
// eight bytes at once where they lie before last: no branch depends on the number of digits then.
static inline const char *gatherDigits(const char *p, const char *last, std::uint64_t *integer) {
    if (std::endian::native != std::endian::little) return gatherDigitsOneByOne(p, integer);

    for (; last - p >= 8; p += 8) {
        std::uint64_t bytes;
        std::memcpy(&bytes, p, 8);
        bytes ^= 0x3030303030303030;
        const std::uint64_t others = ((bytes + 0x7676767676767676) | bytes) & 0x8080808080808080;
        if (others != 0) {
            const int n = std::countr_zero(others) / 8;
            const std::uint64_t digits = bytes << (56 - 8 * n) << 8;
            *integer = *integer * integerPower[n] + joinEightDigits(digits);
            return p + n;
        }
        *integer = *integer * integerPower[8] + joinEightDigits(bytes);
    }
    return gatherDigitsOneByOne(p, integer);
}

// Whether the digit string with count digits fits into a 64-bit integer: leading zeros always do.
static bool fitsIntoInteger(const char *digits, std::ptrdiff_t count) {
    for (; *digits == '0' || *digits == '.'; ++digits) count -= *digits == '0';
    return count <= mostDigits;
}

// Adds the exponent behind the 'e' at p and returns where it ends; NULL when there is none or it is
// long.
static const char *addExponent(const char *p, std::ptrdiff_t *exponent) {
    const bool negative = p[1] == '-';
    const char *const digits = p + 1 + (negative || p[1] == '+');
    std::uint64_t e = 0;
    const char *const end = gatherDigitsOneByOne(digits, &e);
    if (end == digits || end - digits > 4) return nullptr;
    *exponent += negative ? -static_cast<std::ptrdiff_t>(e) : static_cast<std::ptrdiff_t>(e);
    return end;
}

// integer * 10 to the exponent, correctly rounded: true, or false for what is out of reach. One
// multiplication or division of exact numbers rounds once (W. D. Clinger, How to read floating
// point numbers accurately, 1990). A long double of 64 bits rounds once more to a double, which
// does harm only when it lies halfway between two of them.
static bool scale(std::int64_t integer, std::ptrdiff_t exponent, double *value) {
    const std::ptrdiff_t size = std::abs(exponent);
    const std::ptrdiff_t up = std::max<std::ptrdiff_t>(exponent, 0);
    const std::ptrdiff_t down = up - exponent;
    if (integer <= std::int64_t{1} << DBL_MANT_DIG && size < std::ssize(power)) {
        *value = static_cast<double>(integer) * power[up] / power[down];
        return true;
    }
    if (LDBL_MANT_DIG != 64 || size >= std::ssize(longPower)) return false;

    const long double product = static_cast<long double>(integer) * longPower[up] / longPower[down];
    std::uint64_t mantissa;
    std::memcpy(&mantissa, &product, sizeof mantissa);
    *value = static_cast<double>(product);
    return (mantissa & 0x7ff) != 0x400;
}

// strtod of a process in the "C" locale: same value to the last bit, same end, same errno. What is
// no plain decimal number of everyday size is left to strtod itself. No NUL lies in [s, last).
static inline double readNumber(const char *s, const char *last, char **end) {
    const bool negative = *s == '-';
    const char *const digits = s + (negative || *s == '+');
    std::uint64_t integer = 0;
    const char *p = gatherDigits(digits, last, &integer);
    std::ptrdiff_t count = p - digits;
    std::ptrdiff_t exponent = 0;
    if (*p == '.') {
        const char *const fraction = p + 1;
        p = gatherDigits(fraction, last, &integer);
        exponent = fraction - p;
        count -= exponent;
    }
    if (count == 0 || (count > mostDigits && !fitsIntoInteger(digits, count)) || *p == 'x' ||
        *p == 'X')
        return std::strtod(s, end);
    if (*p == 'e' || *p == 'E') {
        p = addExponent(p, &exponent);
        if (p == nullptr) return std::strtod(s, end);
    }

    double value;
    if (!scale(static_cast<std::int64_t>(integer), exponent, &value)) return std::strtod(s, end);
    *end = const_cast<char *>(p);
    // Not a branch: no processor foresees the sign of data.
    return std::copysign(value, 1 - 2 * negative);
}

char *scanline(const char *s, double *values, int max, int *count) {
    // No NUL lies in [p, last). How far to look ahead, and when anew, matters for speed alone.
    constexpr int lookahead = 256;
    constexpr int longNumber = 32;
    const char *p = s;
    while (isBlank(*p)) ++p;
    const char *last = p;
    *count = 0;
    if (max > 0) errno = 0;
    while (*count < max) {
        if (last - p < longNumber) last = p + strnlen(p, lookahead);
        char *end;
        values[*count] = readNumber(p, last, &end);
        if (errno != 0 || end == p || *p == '\n') {
            p = end;
            break;
        }
        ++*count;
        p = end;
        while (isBlank(*p)) ++p;
        if (*p == '\0' || *p == '\n') break;
    }
    return const_cast<char *>(*p == '\n' ? p + 1 : p);
}

} // namespace plw
