#include "tests/fuzz/fuzz.h"
#include "util/number/decimal.h"

#include <algorithm>
#include <bit>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    const std::vector<char> text = exactText(std::string(data, data + size));

    std::string want = std::string(text.data()).substr(0, 255);
    std::replace(want.begin(), want.end(), ',', '.');
    const double value = plw::valueOfString(text.data());
    require(std::bit_cast<std::uint64_t>(value) ==
            std::bit_cast<std::uint64_t>(std::strtod(want.c_str(), nullptr)));
    return 0;
}
