#include "tests/fuzz/fuzz.h"
#include "util/text/line.h"

#include <cstdio>

// A stream gives the lines that memory gives, and an empty one more where it cannot know yet that
// nothing follows a whole line.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    if (size < 2) return 0;
    std::vector<char> block = exactBlock(afterFirstByte(data, size));
    const int room = data[0] % 32 + 2;
    std::vector<char> fromRam(room);
    std::vector<char> fromFile(room);
    std::FILE *f = fmemopen(block.data(), block.size(), "r");

    char *pos = block.data();
    const char *last = block.data() + block.size() - 1;
    char atEnd = 0;
    char atEof = 0;
    while (!atEnd) {
        plw::getlineFromRam(&pos, last, fromRam.data(), room, &atEnd);
        require(!atEof);
        require(plw::getlineFromFile(f, fromFile.data(), room, &atEof) == atEof);
        require(fromFile == fromRam);
    }
    if (!atEof) {
        plw::getlineFromFile(f, fromFile.data(), room, &atEof);
        require(atEof && fromFile[0] == '\0');
    }
    std::fclose(f);
    return 0;
}
