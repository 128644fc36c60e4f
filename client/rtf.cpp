#include "client/rtf.h"

#include "util/text/utf8.h"

#include <cstdint>
#include <cstdio>
#include <string_view>

// One UTF-16 code unit as RTF writes it: a signed number, then a '?' for readers without Unicode.
// The '?' is escaped because some readers skip a whole word there, not a character.
static void appendCodeUnit(std::string &rtf, std::uint32_t unit) {
    rtf += "\\u" + std::to_string(static_cast<std::int16_t>(unit)) + "\\'3f";
}

static void appendCharacter(std::string &rtf, std::uint32_t code) {
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
    const std::string utf8 = plw::utf8Of(text);
    std::string rtf = "{\\rtf1\\ansi\\uc1 ";
    for (std::string_view rest = utf8; !rest.empty();) {
        if (rest.substr(0, 2) == "\r\n") rest.remove_prefix(1);
        std::size_t length = 0;
        appendCharacter(rtf, plw::firstCodePoint(rest, &length));
        rest.remove_prefix(length);
    }
    return rtf + '}';
}
