#include "util/text/word.h"

#include "util/text/charclass.h"

#include <cstring>

namespace plw {

static char *quotedWord(char *word, char quote, char **cursor, char *isEndOfLine) {
    char *end = std::strchr(word, quote);
    while (end != nullptr && end[-1] == '\\') end = std::strchr(end + 1, quote);
    if (end == nullptr) {
        *cursor = word + std::strlen(word);
        return word;
    }

    *end = '\0';
    *cursor = end + 1;
    if (**cursor == '\n') {
        *isEndOfLine = 1;
        ++*cursor;
    }
    return word;
}

// Bytes from the blank or tab at end to the byte behind a following '=', or 0 when none belongs to
// the word: three or more blanks before '=' make it a word of its own.
static int assignmentAfterBlank(const char *end) {
    if (end[1] == '=') return 2;
    return end[1] == ' ' && end[2] == '=' ? 3 : 0;
}

char *nextWord(char **cursor, char *isAssignment, char *isEndOfLine) {
    *isAssignment = 0;
    *isEndOfLine = 0;
    char *const word = skipSpaces(*cursor);
    if (*word == '\0') return nullptr;
    if (*word == '"' || *word == '\'') return quotedWord(word + 1, *word, cursor, isEndOfLine);

    // The first byte is never a delimiter: a word may begin with ',', '=' or a newline.
    char *const end = word + 1 + std::strcspn(word + 1, " ,\n\t=");
    switch (*end) {
    case '\0': *cursor = const_cast<char *>(""); return word;
    case ' ':
    case '\t': {
        const int length = assignmentAfterBlank(end);
        *isAssignment = length > 0;
        *cursor = end + (length > 0 ? length : 1);
        break;
    }
    case '=':
        *isAssignment = 1;
        *cursor = end + 1;
        break;
    case '\n':
        *isEndOfLine = 1;
        *cursor = end + 1;
        break;
    default: *cursor = end + 1;
    }
    *end = '\0';
    return word;
}

char *skipSpaces(const char *p) {
    while (isBlank(*p)) ++p;
    return const_cast<char *>(p);
}

char *quoteEnd(const char *p) {
    while (*p != '\0' && (*p != '"' || p[-1] == '\\')) ++p;
    return const_cast<char *>(p);
}

int bracketEnd(const char *s, int open, int close) {
    int depth = 0;
    for (int i = 0; s[i] != '\0'; ++i) {
        if (s[i] == static_cast<char>(open)) ++depth;
        if (s[i] == static_cast<char>(close)) {
            if (depth == 1) return i;
            --depth;
        }
    }
    return 0;
}

} // namespace plw
