// The library's functions that read text, each beside a plainer way to the same end.
#include "tests/fuzz/fuzz.h"
#include "tests/util/text/strtodScan.h"
#include "util/number/decimal.h"
#include "util/text/equation.h"
#include "util/text/line.h"
#include "util/text/name.h"
#include "util/text/search.h"
#include "util/text/word.h"

#include <algorithm>
#include <cstdio>
#include <cstring>

namespace fuzz {

// Lines go on through the memory to its end, and are the same from a file.
void getline(const std::string &input) {
    if (input.size() < 2) return;
    const std::string bytes = afterFirstByte(input);
    std::vector<char> block(bytes.begin(), bytes.end());
    const int room = firstByte(input) % 32 + 2;
    std::vector<char> buf(room), fromFile(room);
    std::FILE *f = fmemopen(block.data(), block.size(), "r");
    char *pos = block.data();
    char atEnd = 0, atEof = 0;
    while (!atEnd) {
        const char *before = pos;
        plw::getlineFromRam(&pos, &block.back(), buf.data(), room, &atEnd);
        require(before < pos && pos <= &block.back() + 1);
        require(!atEof && plw::getlineFromFile(f, fromFile.data(), room, &atEof) == atEof);
        require(fromFile == buf);
    }
    require(pos == &block.back() + 1);
    std::fclose(f);
}

// Words are cut out of the text in their order.
void nextWord(const std::string &input) {
    std::vector<char> text = exactText(input);
    const std::string line = text.data();
    char *cursor = text.data();
    const char *before = cursor;
    char isAssignment, isEndOfLine;
    while (const char *word = plw::nextWord(&cursor, &isAssignment, &isEndOfLine)) {
        const std::size_t length = std::strlen(word);
        const char *end = *cursor == '\0' ? &text.back() : cursor; // which may be another text's
        require(before <= word && word + length <= end && end <= &text.back());
        require(line.compare(word - text.data(), length, word) == 0);
        before = end;
    }
}

// Equations come in the order of the line, and the cursor moves on.
void scanEquation(const std::string &input) {
    std::vector<char> text = exactText(input);
    char *cursor = text.data(), *before = cursor, *name, *value;
    for (; plw::scanEquation(&cursor, &name, &value); before = cursor) {
        require(before <= name && name + std::strlen(name) < value);
        require(value + std::strlen(value) <= cursor && cursor <= &text.back());
        require(std::strpbrk(name, " \t\n\v\f\r=") == nullptr);
        require(value[-1] == '"' || std::strpbrk(value, " \t\n,") == nullptr);
    }
    require(cursor == before);
}

void scanline(const std::string &input) {
    const std::vector<char> text = exactText(afterFirstByte(input));
    const int max = firstByte(input) % 8;
    require(scanWithScanline(text.data(), max) == scanWithStrtod(text.data(), max));
}

// What only reads a text reads nothing beyond it. The needle is the rest of the first line.
void readers(const std::string &input) {
    const std::string lines = afterFirstByte(input);
    const std::size_t newline = std::min(lines.find('\n'), lines.size());
    const std::vector<char> needle = exactText(lines.substr(0, newline));
    const std::vector<char> text = exactText(lines.substr(std::min(newline + 1, lines.size())));
    const int number = firstByte(input) % 16 - 1, length = static_cast<int>(text.size());
    int index, start = 0, count = 0;
    std::vector<char> name(text.size());
    plw::indexOfName(text.data(), &index, name.data());
    plw::rangeOfLine(text.data(), number, &start, &count);
    require(start >= 0 && count >= 0 && start + count <= length);
    const int found = plw::strquotestr(text.data(), needle.data(), number & 1);
    require(found < 0 || std::strncmp(&text[found], needle.data(), needle.size() - 1) == 0);
    plw::valueOfString(text.data());
}

} // namespace fuzz
