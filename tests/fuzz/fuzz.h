// fuzz.h - what the fuzz targets share.
#ifndef PLW_TESTS_FUZZ_FUZZ_H
#define PLW_TESTS_FUZZ_FUZZ_H

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size);

// Stops the fuzzer, which then saves its input.
inline void require(bool holds) {
    if (!holds) std::abort();
}

// Bytes in a heap block of exactly their size, so that no read beyond them goes unseen.
inline std::vector<char> exactBlock(const std::string &bytes) {
    return std::vector<char>(bytes.begin(), bytes.end());
}

// The same, terminated; what stands behind a NUL is cut off.
inline std::vector<char> exactText(const std::string &bytes) {
    const std::string text = bytes.substr(0, bytes.find('\0'));
    return std::vector<char>(text.c_str(), text.c_str() + text.size() + 1);
}

// The input after its first byte, which a target uses for a number of its own.
inline std::string afterFirstByte(const std::uint8_t *data, std::size_t size) {
    return std::string(data + (size > 0 ? 1 : 0), data + size);
}

#endif
