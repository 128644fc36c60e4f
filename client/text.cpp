#include "client/text.h"

#include <cstdint>
#include <cstdio>
#include <string_view>

// The code point that begins the text, and its bytes in length; length 0 where no UTF-8 that the
// bus carries begins (truncated, overlong, beyond U+10FFFF, a surrogate, a non-character).
static uint32_t firstCodePoint(std::string_view text, size_t &length) {
    const auto byte = [&](size_t i) { return static_cast<unsigned char>(text[i]); };
    length = 0;

    const unsigned char lead = byte(0);
    if (lead < 0x80) {
        length = 1;
        return lead;
    }
    const size_t size = lead >= 0xf0 ? 4 : lead >= 0xe0 ? 3 : 2;
    if (lead < 0xc2 || lead > 0xf4 || text.size() < size) return 0;

    uint32_t code = lead & (0x7fu >> size);
    for (size_t i = 1; i < size; ++i) {
        if ((byte(i) & 0xc0) != 0x80) return 0;
        code = code << 6 | (byte(i) & 0x3fu);
    }
    const bool overlong = (size == 3 && code < 0x800) || (size == 4 && code < 0x10000);
    const bool surrogate = code >= 0xd800 && code <= 0xdfff;
    const bool nonCharacter = (code >= 0xfdd0 && code <= 0xfdef) || (code & 0xfffe) == 0xfffe;
    if (overlong || surrogate || nonCharacter || code > 0x10ffff) return 0;

    length = size;
    return code;
}

static bool isUtf8(std::string_view text) {
    while (!text.empty()) {
        size_t length = 0;
        firstCodePoint(text, length);
        if (length == 0) return false;
        text.remove_prefix(length);
    }
    return true;
}

std::string utf8Text(const char *text) {
    const std::string_view bytes = text;
    if (isUtf8(bytes)) return std::string(bytes);

    std::string converted;
    for (const char c : bytes) {
        const auto code = static_cast<unsigned char>(c);
        if (code < 0x80) {
            converted += c;
        } else {
            converted += static_cast<char>(0xc0 | code >> 6);
            converted += static_cast<char>(0x80 | (code & 0x3f));
        }
    }
    return converted;
}

// One UTF-16 code unit as RTF writes it: a signed number, and '?' for readers without Unicode. A
// plain '?' would take the word that follows with it in readers that skip by words.
static void appendCodeUnit(std::string &rtf, uint32_t unit) {
    rtf += "\\u" + std::to_string(static_cast<int16_t>(unit)) + "\\'3f";
}

static void appendCharacter(std::string &rtf, uint32_t code) {
    if (code >= 0x10000) {
        appendCodeUnit(rtf, 0xd800 + ((code - 0x10000) >> 10));
        appendCodeUnit(rtf, 0xdc00 + ((code - 0x10000) & 0x3ff));
    } else if (code >= 0x80) {
        appendCodeUnit(rtf, code);
    } else if (code == '\n' || code == '\r') {
        rtf += "\\par\n";
    } else if (code == '\t') {
        rtf += "\\tab ";
    } else if (code < 0x20 || code == 0x7f) {
        char escape[8];
        std::snprintf(escape, sizeof escape, "\\'%02x", code);
        rtf += escape;
    } else {
        if (code == '{' || code == '}' || code == '\\') rtf += '\\';
        rtf += static_cast<char>(code);
    }
}

std::string rtfOfText(const char *text) {
    const std::string utf8 = utf8Text(text);
    std::string rtf = "{\\rtf1\\ansi\\uc1 ";
    for (std::string_view rest = utf8; !rest.empty();) {
        if (rest.substr(0, 2) == "\r\n") rest.remove_prefix(1);
        size_t length = 0;
        appendCharacter(rtf, firstCodePoint(rest, length));
        rest.remove_prefix(length);
    }
    return rtf + '}';
}
