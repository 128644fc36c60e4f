#include "tests/util/text/strtodScan.h"

#include <gtest/gtest.h>

#include <array>
#include <bit>
#include <cmath>
#include <cstdio>
#include <random>

static void expectSameScan(const std::string &text, int max) {
    EXPECT_EQ(scanWithScanline(text.c_str(), max), scanWithStrtod(text.c_str(), max)) << text;
}

TEST(Scanline, AgreesWithStrtodOnEveryShapeOfNumber) {
    std::istringstream texts(
        "0 -0 +0 .0 0. -.0e5 0e999 0e-999 0x0|1 +1 -1 +-1|1. .5 -.5 . 5|1e 2|1e+ 2|1e+x|"
        "1E5 1e05 1e+0005 1e-0005|1e22 1e23 1e-22 1e-23 9007199254740992 9007199254740993 "
        "9007199254740993e22|9007199254740993.0000000000000000000000000001|"
        "1234567890123456789 12345678901234567890 123456789012345678901234567890|"
        "18446744073709551615 18446744073709551616 18446744073709551617e-3|"
        "0.00000000000000000000000000000000000000000000001|"
        "100000000000000000000000000000000000000000e-41|"
        "1.7976931348623157e308 1.7976931348623158e308 1.7976931348623159e308|"
        "2.2250738585072014e-308 2.2250738585072011e-308|2.2250738585072012e-308|"
        "4.9406564584124654e-324|0x1p-1074 5e-324|1e-99999999999999999999|1e99999999999999999999|"
        "0e99999999999999999999 3|inf INFINITY -inf nan -nan NaN(0x7) infinit|0x10 0X1.8p3 0x 1|"
        "0x.8 0xg|1e5e5|1..5|1.5.5|1\v2\f3\r4 \n5|1_000 2|1e1\n2e2|- 1|\2401| 1\t2 \n3| \n3|1 2 |"
        "1,2|\nx|1 1e999 2|1\r\n2|\n7 8|");
    for (std::string text; std::getline(texts, text, '|');)
        for (const int max : {0, 1, 2, 12}) expectSameScan(text, max);
    expectSameScan("", 1);
}

TEST(Scanline, AgreesWithStrtodOnRandomNumbers) {
    std::mt19937_64 random(1);
    const auto digits = [&](int most) {
        std::string s;
        // Many zeros and nines: carries and halfway cases.
        for (auto n = random() % (most + 1); n > 0; --n) s += "0123456789000999"[random() % 16];
        return s;
    };
    for (int i = 0; i < 40000 && !HasFailure(); ++i) {
        std::string line, decimals;
        char text[400];
        for (int j = 0; j < 4; ++j) {
            // Half of them any bit pattern, half of them of everyday size.
            const double any = std::bit_cast<double>(random());
            const double plain = std::ldexp(static_cast<double>(random()), -50) - 5000;
            const std::array formats{"%.17g ", "%.15g\t", "%g ", "%.3f ", "%.20e\n", "%a "};
            std::snprintf(text, sizeof text, formats[random() % 6], random() % 2 ? any : plain);
            line += text;

            decimals += std::array{"", "-", "+", ""}[random() % 4] + digits(20);
            if (random() % 4) decimals += "." + digits(20);
            if (random() % 4 == 0)
                decimals += std::array{"e", "E-", "e+", "e-"}[random() % 4] + digits(3);
            decimals += std::array{" ", "\t ", ",", "\n"}[random() % 4];
        }
        expectSameScan(line, 5);
        expectSameScan(decimals, 4);

        // 17 to 19 digits of what lies halfway between two doubles, or next to it.
        const long double half = std::ldexp(static_cast<long double>(random() >> 10 | 1),
                                            -static_cast<int>(random() % 120));
        std::snprintf(text, sizeof text, "%.*Lg", 17 + static_cast<int>(random() % 3), half);
        expectSameScan(text, 1);
    }
}
