// expect.h - what the tests of the library compare exactly: numbers, fatal messages, files.
#ifndef PLW_TESTS_SUPPORT_EXPECT_H
#define PLW_TESTS_SUPPORT_EXPECT_H

#include <bit>
#include <cmath>
#include <cstdint>
#include <fstream>
#include <functional>
#include <gtest/gtest.h>
#include <iterator>
#include <limits>
#include <string>
#include <vector>

constexpr double NaN = std::numeric_limits<double>::quiet_NaN();
constexpr double infinity = std::numeric_limits<double>::infinity();

using Values = std::vector<double>;

// The same numbers to the last bit, or NaN both.
inline testing::AssertionResult same(const Values &got, const Values &want) {
    const auto equal = [](double a, double b) {
        const bool bits = std::bit_cast<std::uint64_t>(a) == std::bit_cast<std::uint64_t>(b);
        return bits || (std::isnan(a) && std::isnan(b));
    };
    if (std::equal(got.begin(), got.end(), want.begin(), want.end(), equal))
        return testing::AssertionSuccess();
    return testing::AssertionFailure()
           << testing::PrintToString(got) << ", not " << testing::PrintToString(want) << ' ';
}

inline testing::AssertionResult same(double got, double want) {
    return same(Values{got}, Values{want});
}

// The call ends the process with status 1, and the message is all that it says.
inline void expectFatal(const std::function<void()> &call, const std::string &message) {
    EXPECT_EXIT(call(), testing::ExitedWithCode(1), testing::Eq(message + '\n')) << message;
}

inline std::string textOf(const std::string &path) {
    std::ifstream file(path);
    EXPECT_TRUE(file) << "can't read " << path;
    return {std::istreambuf_iterator<char>(file), {}};
}

#endif
