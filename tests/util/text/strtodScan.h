// strtodScan.h - what scanline does, by strtod alone: the oracle of its tests.
#ifndef PLW_TESTS_UTIL_TEXT_STRTODSCAN_H
#define PLW_TESTS_UTIL_TEXT_STRTODSCAN_H

#include "util/text/scanline.h"

#include <cerrno>
#include <cstdlib>
#include <sstream>
#include <string>
#include <vector>

// All that a scan leaves; the sign of 0.0 and NaN counts, too.
inline std::string outcome(const std::vector<double> &values, int count, long rest) {
    const int error = errno;
    std::ostringstream s;
    s << count << " values, errno " << error << ", rest at " << rest << ':' << std::hexfloat;
    for (const double value : values) s << ' ' << value;
    return s.str();
}

inline std::string scanWithScanline(const char *text, int max) {
    std::vector<double> values(max, -77.0);
    int count = -1;
    errno = EDOM; // no reason to refuse a number
    const char *rest = plw::scanline(text, values.data(), max, &count);
    return outcome(values, count, rest - text);
}

inline std::string scanWithStrtod(const char *text, int max) {
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
    return outcome(values, count, (*p == '\n' ? p + 1 : p) - text);
}

#endif
