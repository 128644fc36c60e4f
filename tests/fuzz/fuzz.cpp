#include "tests/fuzz/fuzz.h"

#include <cstdint>

namespace fuzz {
void FUZZ_TARGET(const std::string &input);
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    fuzz::FUZZ_TARGET(std::string(data, data + size));
    return 0;
}
