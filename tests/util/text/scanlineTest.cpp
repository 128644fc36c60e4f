#include "util/text/scanline.h"

#include <gtest/gtest.h>

#include <bit>
#include <cerrno>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <iterator>
#include <random>
#include <string>
#include <vector>

using namespace plw;

namespace {

struct Scan {
    int count;
    std::vector<double> values;
    long rest;
    int error;
};

Scan scan(const char *text, int max) {
    Scan s{-1, std::vector<double>(max, -77.0), 0, 0};
    errno = 0;
    s.rest = scanline(text, s.values.data(), max, &s.count) - text;
    s.error = errno;
    return s;
}

// The same by strtod alone.
Scan slowScan(const char *text, int max) {
    Scan s{0, std::vector<double>(max, -77.0), 0, 0};
    const char *p = text;
    while (*p == ' ' || *p == '\t') ++p;
    errno = 0;
    while (s.count < max) {
        errno = 0;
        char *end;
        s.values[s.count] = std::strtod(p, &end);
        const bool refused = errno != 0 || end == p || *p == '\n';
        p = end;
        if (refused) break;
        ++s.count;
        while (*p == ' ' || *p == '\t') ++p;
        if (*p == '\0' || *p == '\n') break;
    }
    s.error = errno;
    s.rest = (*p == '\n' ? p + 1 : p) - text;
    return s;
}

// Bit by bit, so that -0.0 and NaN's sign count.
void expectSameScan(const std::string &text, int max) {
    const Scan got = scan(text.c_str(), max);
    const Scan want = slowScan(text.c_str(), max);
    EXPECT_EQ(got.count, want.count) << text;
    EXPECT_EQ(got.rest, want.rest) << text;
    EXPECT_EQ(got.error, want.error) << text;
    for (int i = 0; i < max; ++i)
        EXPECT_EQ(std::bit_cast<std::uint64_t>(got.values[i]),
                  std::bit_cast<std::uint64_t>(want.values[i]))
            << text << " value " << i << ": " << got.values[i] << ", not " << want.values[i];
}

} // namespace

TEST(Scanline, StopsWhereItSays) {
    const struct {
        const char *what, *text;
        int max, count;
        const char *rest;
    } cases[] = {
        {"one line", "1 2 3\n4", 10, 3, "4"},
        {"max", "1 2 3", 2, 2, "3"},
        {"max, then a newline", " 1\t2 \n3", 2, 2, "3"},
        {"nothing wanted", " \n3", 0, 0, "3"},
        {"end of text", "1 2 ", 10, 2, ""},
        {"no number", "1 x", 10, 1, "x"},
        {"comma", "1,2", 10, 1, ",2"},
        {"overflow", "1 1e999 2", 10, 1, " 2"},
        {"underflow", "1 1e-310 2", 10, 1, " 2"},
        {"carriage return is skipped as strtod skips it", "1\r\n2", 10, 2, ""},
        {"empty line eats a number", "\n7 8", 10, 0, " 8"},
        {"empty line before text", "\nx", 10, 0, "x"},
        {"empty", "", 10, 0, ""},
    };
    for (const auto &c : cases) {
        const Scan s = scan(c.text, c.max);
        EXPECT_EQ(s.count, c.count) << c.what;
        EXPECT_STREQ(c.text + s.rest, c.rest) << c.what;
    }
}

TEST(Scanline, StoresTheNumberBehindAnEmptyLineUncounted) {
    const Scan s = scan("\n7 8", 2);
    EXPECT_EQ(s.count, 0);
    EXPECT_EQ(s.values[0], 7);
}

TEST(Scanline, AgreesWithStrtodOnEveryShapeOfNumber) {
    const char *const texts[] = {
        "0 -0 +0 .0 0. -.0e5 0e999 0e-999 0x0",
        "1 +1 -1 +-1",
        "1. .5 -.5 . 5",
        "1e 2",
        "1e+ 2",
        "1e+x",
        "1E5 1e05 1e+0005 1e-0005",
        "1e22 1e23 1e-22 1e-23 9007199254740992 9007199254740993 9007199254740993e22",
        "9007199254740993.0000000000000000000000000001",
        "1234567890123456789 12345678901234567890 123456789012345678901234567890",
        "18446744073709551615 18446744073709551616 18446744073709551617e-3",
        "0.00000000000000000000000000000000000000000000001",
        "100000000000000000000000000000000000000000e-41",
        "1.7976931348623157e308 1.7976931348623158e308 1.7976931348623159e308",
        "2.2250738585072014e-308 2.2250738585072011e-308",
        "2.2250738585072012e-308",
        "4.9406564584124654e-324",
        "0x1p-1074 5e-324",
        "1e-99999999999999999999",
        "1e99999999999999999999",
        "0e99999999999999999999 3",
        "inf INFINITY -inf nan -nan NaN(0x7) infinit",
        "0x10 0X1.8p3 0x 1",
        "0x.8 0xg",
        "1e5e5",
        "1..5",
        "1.5.5",
        "1\v2\f3\r4 \n5",
        "1_000 2",
        "1e1\n2e2",
        "- 1",
        "\2401",
    };
    for (const char *text : texts)
        for (const int max : {1, 3, 12}) expectSameScan(text, max);
}

TEST(Scanline, AgreesWithStrtodOnRandomNumbers) {
    std::mt19937_64 random(1);
    const char *const formats[] = {"%.17g ", "%.15g\t", "%g ", "%.3f ", "%.20e\n", "%a "};
    for (int i = 0; i < 20000; ++i) {
        std::string line;
        for (int j = 0; j < 4; ++j) {
            // Half of them any bit pattern, half of them of everyday size.
            const double any = std::bit_cast<double>(random());
            const double plain = std::ldexp(static_cast<double>(random()), -50) - 5000;
            char text[400];
            std::snprintf(text, sizeof text, formats[random() % std::size(formats)],
                          random() % 2 ? any : plain);
            line += text;
        }
        expectSameScan(line, 5);
        if (HasFailure()) break;
    }
}
