#include "tests/fuzz/fuzz.h"
#include "util/text/equation.h"

#include <cstring>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    std::vector<char> text = exactText(std::string(data, data + size));
    const char *end = text.data() + text.size() - 1;
    char *cursor = text.data();
    char *name;
    char *value;
    for (;;) {
        char *const before = cursor;
        if (!plw::scanEquation(&cursor, &name, &value)) {
            require(cursor == before);
            return 0;
        }
        // In the order of the line, and the cursor moves on.
        require(before <= name && name + std::strlen(name) < value);
        require(value + std::strlen(value) <= cursor && cursor <= end);
        require(std::strpbrk(name, " \t\n\v\f\r=") == nullptr);
        require(value[-1] == '"' || std::strpbrk(value, " \t\n,") == nullptr);
    }
}
