// charclass.h - the character classes of the "C" locale, whatever locale the process runs in.
//
// Bytes from 0x80 on belong to no class, whether they arrive as negative chars or as 128 to 255.
#ifndef PLW_UTIL_TEXT_CHARCLASS_H
#define PLW_UTIL_TEXT_CHARCLASS_H

namespace plw {

// Blank or tab: what separates words and numbers within a line.
constexpr bool isBlank(int c) {
    return c == ' ' || c == '\t';
}

// Blank, tab, newline, vertical tab, form feed or carriage return.
constexpr bool isWhitespace(int c) {
    return c == ' ' || (c >= '\t' && c <= '\r');
}

constexpr bool isDigit(int c) {
    return c >= '0' && c <= '9';
}

constexpr bool isLetter(int c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

constexpr bool isPrintable(int c) {
    return c >= ' ' && c <= '~';
}

// 1 for what a whole word is made of: a letter, a digit or '_'; else 0.
constexpr int isalnum_(int c) {
    return isLetter(c) || isDigit(c) || c == '_';
}

} // namespace plw

#endif
