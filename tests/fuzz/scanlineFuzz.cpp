#include "tests/fuzz/fuzz.h"
#include "tests/util/text/strtodScan.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    const std::vector<char> text = exactText(afterFirstByte(data, size));
    const int max = size > 0 ? data[0] % 8 : 0;
    require(scanWithScanline(text.data(), max) == scanWithStrtod(text.data(), max));
    return 0;
}
