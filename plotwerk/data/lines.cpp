#include "plotwerk/data/lines.h"

#include <cstring>

namespace plotwerk {

void unifyLineEnds(std::string &text) {
    for (std::size_t at = 0; (at = text.find('\r', at)) != std::string::npos; ++at)
        text[at] = text[at + 1] == '\n' ? ' ' : '\n';
}

// The end of the text where there is none.
static char *nextLineFeed(char *p, char *end) {
    auto *found = static_cast<char *>(std::memchr(p, '\n', end - p));
    return found == nullptr ? end : found;
}

// Where the line ends that begins there: a cell in quotes may hold line ends, which become blanks.
// Quotes that nothing closes soon belong to a line of their own. *lines becomes how many were
// joined.
static char *endOfLine(char *line, char *const end, std::size_t *lines, ReadingTime &time) {
    constexpr std::ptrdiff_t longestCell = 4096;
    char *lineEnd = nextLineFeed(line, end);
    const auto *quote = static_cast<char *>(std::memchr(line, '"', lineEnd - line));
    if (quote == nullptr) return lineEnd;

    char *open = nullptr; // the quote that begins the cell, while it isn't closed
    char *const last = end - lineEnd > longestCell ? lineEnd + longestCell : end;
    char before = ',';
    char *breaks[32];
    int count = 0;
    const auto join = [&](char *joinedEnd) {
        time.addQuotes(joinedEnd - line);
        for (int i = 0; i < count; ++i) *breaks[i] = ' ';
        *lines += static_cast<std::size_t>(count);
        return joinedEnd;
    };
    char *p = line;
    for (; p < last; ++p) {
        if (*p == '\n') {
            if (open == nullptr) return join(p);
            if (count == 32) break;
            breaks[count++] = p;
        } else if (*p == '"') {
            if (open == nullptr) {
                if (std::strchr(",;\t", before) != nullptr) open = p;
            } else if (p[1] == '"') {
                ++p;
            } else if (p[-1] != '\\') {
                open = nullptr;
            }
        }
        if (*p != ' ' && open == nullptr) before = *p;
    }
    if (open == nullptr && last == end) return join(end);
    time.addQuotes(p - line);
    return lineEnd;
}

Lines::Lines(std::string &text, ReadingTime &readingTime)
    : following(text.data()),
      end(text.data() + text.size()),
      hasQuotes(text.find('"') != std::string::npos),
      time(readingTime) {
}

const char *Lines::next() {
    if (following >= end) return nullptr;
    lineNumber += joined;
    joined = 1;
    char *const line = following;
    char *const lineEnd = hasQuotes ? endOfLine(line, end, &joined, time) : nextLineFeed(line, end);
    *lineEnd = '\0';
    following = lineEnd + 1;
    return line;
}

} // namespace plotwerk
