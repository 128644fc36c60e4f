#include "tests/fuzz/fuzz.h"
#include "util/text/line.h"

#include <algorithm>
#include <cstdio>

// The lines from memory, given back their line ends, make the block again. A stream gives the same
// ones, and an empty one more where it cannot know yet that nothing follows a whole line.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    if (size < 2) return 0;
    const std::string bytes = afterFirstByte(data, size);
    std::vector<char> block = exactBlock(bytes);
    const std::size_t room = data[0] % 32 + 2;
    std::vector<char> buf(room), fromFile(room);
    std::FILE *f = fmemopen(block.data(), block.size(), "r");

    char *pos = block.data();
    const char *end = block.data() + block.size();
    char atEnd = 0, atEof = 0;
    std::size_t at = 0;
    while (!atEnd) {
        plw::getlineFromRam(&pos, end - 1, buf.data(), static_cast<int>(room), &atEnd);
        require((pos == end) == (atEnd == 1));
        const std::size_t lineEnd = std::min(bytes.find_first_of("\r\n", at), bytes.size());
        const std::size_t length = std::min(lineEnd - at, room - 1);
        require(bytes.substr(at, length) == std::string(buf.data(), length) && buf[length] == '\0');
        at += length;
        if (length < room - 1 && at < bytes.size()) {
            const std::string pair = bytes.substr(at, 2);
            at += pair == "\r\n" || pair == "\n\r" ? 2 : 1;
        }
        require(pos == block.data() + at);

        require(!atEof);
        require(plw::getlineFromFile(f, fromFile.data(), static_cast<int>(room), &atEof) == atEof);
        require(fromFile == buf);
    }
    if (!atEof) {
        plw::getlineFromFile(f, fromFile.data(), static_cast<int>(room), &atEof);
        require(atEof && fromFile[0] == '\0');
    }
    std::fclose(f);
    return 0;
}
