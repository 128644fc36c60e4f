#include "tests/fuzz/fuzz.h"
#include "util/text/word.h"

#include <algorithm>

namespace {

struct Word {
    std::string text;
    bool isAssignment = false;
    bool isEndOfLine = false;
    bool operator==(const Word &) const = default;
};

Word quotedWord(const std::string &line, std::size_t *at) {
    const char quote = line[*at];
    const std::size_t start = *at + 1;
    std::size_t end = start;
    while (end < line.size() && (line[end] != quote || line[end - 1] == '\\')) ++end;
    *at = end + 1;
    Word word{line.substr(start, end - start)};
    if (end < line.size() && line.substr(*at, 1) == "\n") {
        word.isEndOfLine = true;
        ++*at;
    }
    return word;
}

Word plainWord(const std::string &line, std::size_t *at) {
    const std::size_t end = std::min(line.find_first_of(" ,\n\t=", *at + 1), line.size());
    Word word{line.substr(*at, end - *at)};
    *at = end + 1;
    if (end == line.size()) return word;
    if (line[end] == ' ' || line[end] == '\t') {
        for (const std::string tail : {"=", " ="}) {
            if (line.substr(end + 1, tail.size()) != tail) continue;
            word.isAssignment = true;
            *at = end + 1 + tail.size();
            break;
        }
    }
    word.isAssignment = word.isAssignment || line[end] == '=';
    word.isEndOfLine = line[end] == '\n';
    return word;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    std::vector<char> text = exactText(std::string(data, data + size));
    const std::string line = text.data();
    char *cursor = text.data();
    char isAssignment;
    char isEndOfLine;
    for (std::size_t at = 0;;) {
        at = at < line.size() ? line.find_first_not_of(" \t", at) : std::string::npos;
        const char *word = plw::nextWord(&cursor, &isAssignment, &isEndOfLine);
        require((word == nullptr) == (at == std::string::npos));
        if (word == nullptr) return 0;
        const bool quoted = line[at] == '"' || line[at] == '\'';
        const Word want = quoted ? quotedWord(line, &at) : plainWord(line, &at);
        require(Word{word, isAssignment == 1, isEndOfLine == 1} == want);
    }
}
