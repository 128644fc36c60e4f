#include "util/text/search.h"

#include "util/text/charclass.h"

#include <cstring>

namespace plw {

static bool matchesIgnoringBlanks(const char *pattern, const char *probe) {
    for (; *pattern != '\0'; ++pattern, ++probe) {
        while (isWhitespace(*probe)) ++probe;
        if (*pattern != *probe) return false;
    }
    return true;
}

char *strwordstr(const char *hay, const char *word) {
    const std::size_t length = std::strlen(word);
    const char *hit = std::strstr(hay, word);
    while (hit != nullptr) {
        const bool begins = hit == hay || !isalnum_(hit[-1]);
        if (begins && !isalnum_(hit[length])) break;
        // Only an empty word is found on the terminator, and nothing lies behind it.
        hit = *hit == '\0' ? nullptr : std::strstr(hit + 1, word);
    }
    return const_cast<char *>(hit);
}

int strquotestr(const char *s, const char *needle, int wholeWord) {
    if (*needle == '\0') return 0;

    const std::size_t length = std::strlen(needle);
    bool quoted = false;
    for (int i = 0; s[i] != '\0'; ++i) {
        if (s[i] == '"' && (i == 0 || s[i - 1] != '\\')) quoted = !quoted;
        if (quoted || std::strncmp(s + i, needle, length) != 0) continue;
        // Each place is searched as if the text began there: the byte before it does not matter.
        if (!wholeWord || !isalnum_(s[i + length])) return i;
    }
    return -1;
}

char *strstrIgnoreBlanksInProbe(const char *pattern, const char *probe) {
    if (*pattern == '\0') return nullptr;

    for (; *probe != '\0'; ++probe)
        if (*probe == *pattern && matchesIgnoringBlanks(pattern, probe))
            return const_cast<char *>(probe + 1);
    return nullptr;
}

} // namespace plw
