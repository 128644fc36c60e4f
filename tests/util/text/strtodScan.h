// strtodScan.h - what scanline does, by strtod alone: the oracle of its tests.
#ifndef PLW_TESTS_UTIL_TEXT_STRTODSCAN_H
#define PLW_TESTS_UTIL_TEXT_STRTODSCAN_H

#include "util/text/scanline.h"

#include <bit>
#include <cerrno>
#include <cstdint>
#include <cstdlib>
#include <vector>

struct Scan {
    std::vector<std::uint64_t> bits; // of the values, so that -0.0 and NaN's sign count
    int count = 0;
    int error = 0; // errno
    long rest = 0;
    bool operator==(const Scan &) const = default;
};

inline Scan finishScan(const std::vector<double> &values, int count, long rest) {
    Scan scan{{}, count, errno, rest};
    for (const double value : values) scan.bits.push_back(std::bit_cast<std::uint64_t>(value));
    return scan;
}

inline Scan scanWithScanline(const char *text, int max) {
    std::vector<double> values(max, -77.0);
    int count = -1;
    errno = 0;
    const char *rest = plw::scanline(text, values.data(), max, &count);
    return finishScan(values, count, rest - text);
}

inline Scan scanWithStrtod(const char *text, int max) {
    std::vector<double> values(max, -77.0);
    int count = 0;
    const char *p = text;
    while (*p == ' ' || *p == '\t') ++p;
    errno = 0;
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
    return finishScan(values, count, (*p == '\n' ? p + 1 : p) - text);
}

#endif
