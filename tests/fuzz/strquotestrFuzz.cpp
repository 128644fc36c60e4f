#include "tests/fuzz/fuzz.h"
#include "util/text/search.h"

#include <algorithm>
#include <cstring>

// The needle is the rest of the first line, the text what follows.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    const std::string input = afterFirstByte(data, size);
    const std::size_t newline = std::min(input.find('\n'), input.size());
    const std::vector<char> needle = exactText(input.substr(0, newline));
    const std::vector<char> text = exactText(input.substr(std::min(newline + 1, input.size())));
    const int wholeWord = size > 0 ? data[0] & 1 : 0;

    int want = needle[0] == '\0' ? 0 : -1;
    bool quoted = false;
    for (int i = 0; text[i] != '\0' && want == -1; ++i) {
        const char *s = text.data() + i;
        if (*s == '"' && (i == 0 || s[-1] != '\\')) quoted = !quoted;
        if (quoted) continue;
        const char *hit =
            wholeWord ? plw::strwordstr(s, needle.data()) : std::strstr(s, needle.data());
        if (hit == s) want = i;
    }
    require(plw::strquotestr(text.data(), needle.data(), wholeWord) == want);
    return 0;
}
