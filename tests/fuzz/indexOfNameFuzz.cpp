#include "tests/fuzz/fuzz.h"
#include "util/text/name.h"

#include <cstdio>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    const std::vector<char> text = exactText(std::string(data, data + size));
    std::vector<char> name(text.size());
    int index;
    plw::indexOfName(text.data(), &index, name.data());

    const std::string s = text.data();
    const std::size_t length = s.find_first_of("0123456789");
    const std::string letters = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ";
    int wantIndex = -1;
    std::string wantName;
    // Beyond 18 digits "%d" is undefined, and no int has so many.
    if (!s.empty() && letters.find(s[0]) != std::string::npos && length != std::string::npos &&
        s.size() - length <= 18) {
        int value = 0;
        char printed[20];
        std::sscanf(s.c_str() + length, "%d", &value);
        std::snprintf(printed, sizeof printed, "%d", value);
        if (s.substr(length) == printed) {
            wantIndex = value;
            wantName = s.substr(0, length);
        }
    }
    require(index == wantIndex);
    require(name.data() == wantName);
    return 0;
}
