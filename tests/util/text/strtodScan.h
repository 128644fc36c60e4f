// strtodScan.h - what scanline does, by strtod alone: the oracle of its tests.
#ifndef PLW_TESTS_UTIL_TEXT_STRTODSCAN_H
#define PLW_TESTS_UTIL_TEXT_STRTODSCAN_H

#include "util/text/scanline.h"

#include <algorithm>
#include <bit>
#include <cerrno>
#include <cstdint>
#include <cstdlib>
#include <vector>

struct Scan {
    std::vector<double> values;
    int count = 0;
    int error = 0; // errno
    long rest = 0;

    // To the last bit, so that -0.0 and NaN's sign count.
    bool operator==(const Scan &other) const {
        const auto bits = [](double value) { return std::bit_cast<std::uint64_t>(value); };
        return count == other.count && error == other.error && rest == other.rest &&
               std::ranges::equal(values, other.values, {}, bits, bits);
    }
};

inline Scan scanWithScanline(const char *text, int max) {
    std::vector<double> values(max, -77.0);
    int count = -1;
    errno = EDOM; // no reason to refuse a number
    const char *rest = plw::scanline(text, values.data(), max, &count);
    return {values, count, errno, rest - text};
}

inline Scan scanWithStrtod(const char *text, int max) {
    std::vector<double> values(max, -77.0);
    int count = 0;
    const char *p = text;
    while (*p == ' ' || *p == '\t') ++p;
    errno = EDOM;
    while (count < max) {
        errno = 0;
        char *end;
        values[count] = std::strtod(p, &end);
        const bool refused = errno != 0 || end == p || *p == '\n';
        p = end;
        if (refused) break;
        ++count;
        while (*p == ' ' || *p == '\t') ++p;
        if (*p == '\0' || *p == '\n') break;
    }
    return {values, count, errno, (*p == '\n' ? p + 1 : p) - text};
}

#endif
