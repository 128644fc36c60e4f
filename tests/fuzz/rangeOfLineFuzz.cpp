#include "tests/fuzz/fuzz.h"
#include "util/text/line.h"

#include <algorithm>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    const std::vector<char> text = exactText(afterFirstByte(data, size));
    const std::string s = text.data();
    std::vector<int> starts;
    for (std::size_t i = 0; i < s.size(); ++i)
        if (s[i] == '\n' || i == 0) starts.push_back(static_cast<int>(i) + 1);

    const int line = size > 0 ? data[0] % 16 - 1 : 0;
    int start = -7;
    int length = -7;
    plw::rangeOfLine(text.data(), line, &start, &length);
    if (line < 1 || line > static_cast<int>(starts.size())) {
        require(start == -7 && length == -7);
    } else {
        require(start == starts[line - 1]);
        const std::size_t end = std::min(s.find('\n', start), s.size());
        require(length == static_cast<int>(end) - start);
    }
    return 0;
}
