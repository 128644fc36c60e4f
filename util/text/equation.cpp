#include "util/text/equation.h"

#include "util/text/word.h"

#include <cstring>

namespace plw {

// Ends the text at end; returns the position behind it, or end itself at the end of the line.
static char *cutAt(char *end) {
    if (*end == '\0') return end;
    *end = '\0';
    return end + 1;
}

int scanEquation(char **cursor, char **name, char **value) {
    char *p = skipSpaces(*cursor);
    if (*p == '\0' || *p == '=' || *p == '"') return 0;

    *name = p;
    p += std::strcspn(p, " \t\n\v\f\r=");
    const char nameEnd = *p;
    if (nameEnd == '\0') return 0;
    *p = '\0';
    p = skipSpaces(p + 1);
    if (nameEnd != '=') {
        if (*p != '=') return 0;
        p = skipSpaces(p + 1);
    }

    if (*p == '"') {
        *value = p + 1;
        *cursor = cutAt(quoteEnd(*value));
    } else {
        *value = p;
        *cursor = cutAt(p + std::strcspn(p, " \t\n,"));
    }
    return 1;
}

} // namespace plw
