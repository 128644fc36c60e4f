// fuzz.h - what the fuzz targets share. A target is a function fuzz::NAME(const std::string
// &input).
#ifndef PLW_TESTS_FUZZ_FUZZ_H
#define PLW_TESTS_FUZZ_FUZZ_H

#include <cstdlib>
#include <string>
#include <vector>

namespace fuzz {

// Stops the fuzzer, which then saves its input.
inline void require(bool holds) {
    if (!holds) std::abort();
}

// The text up to a NUL, in a heap block of exactly its size, so that no read beyond goes unseen.
inline std::vector<char> exactText(const std::string &bytes) {
    return {bytes.c_str(), bytes.c_str() + std::char_traits<char>::length(bytes.c_str()) + 1};
}

// The input's first byte, which a target uses for a number of its own, and what stands behind it.
inline int firstByte(const std::string &input) {
    return static_cast<unsigned char>(input[0]);
}
inline std::string afterFirstByte(const std::string &input) {
    return input.substr(input.empty() ? 0 : 1);
}

} // namespace fuzz

#endif
