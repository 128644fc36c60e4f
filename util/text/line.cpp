#include "util/text/line.h"

#include "util/text/charclass.h"

#include <cstring>

namespace plw {

static bool isLineEnd(int c) {
    return c == '\n' || c == '\r';
}

static bool areLineEndPair(int first, int second) {
    return isLineEnd(second) && first != second;
}

int getlineFromFile(std::FILE *f, char *buf, int size, char *atEof) {
    int n = 0;
    while (n + 1 < size && !std::feof(f)) {
        const int c = std::getc(f);
        if (c == EOF) break;
        if (isLineEnd(c)) {
            if (std::feof(f)) break;
            const int next = std::getc(f);
            if (!areLineEndPair(c, next)) std::ungetc(next, f);
            break;
        }
        buf[n++] = static_cast<char>(c);
    }
    buf[n] = '\0';
    *atEof = std::feof(f) != 0;
    return *atEof;
}

void getlineFromRam(char **pos, const char *last, char *buf, int size, char *atEnd) {
    char *p = *pos;
    int n = 0;
    while (n + 1 < size && p <= last) {
        const char c = *p++;
        if (isLineEnd(c)) {
            if (p <= last && areLineEndPair(c, *p)) ++p;
            break;
        }
        buf[n++] = c;
    }
    buf[n] = '\0';
    *atEnd = p > last;
    *pos = p;
}

void rangeOfLine(const char *text, int lineNo, int *start, int *length) {
    if (lineNo < 1) return;

    int line = 0;
    for (int i = 0; text[i] != '\0'; ++i) {
        if (i > 0 && text[i] != '\n') continue;
        if (++line < lineNo) continue;
        *start = i + 1;
        *length = static_cast<int>(std::strcspn(text + i + 1, "\n"));
        return;
    }
}

void firstline(char *s) {
    s[std::strcspn(s, "\n")] = '\0';
    s[std::strcspn(s, "\r")] = '\0';
}

void linetoascii(char *s) {
    for (; *s != '\0'; ++s)
        if (!isPrintable(*s)) *s = '?';
}

} // namespace plw
