#include "plotwerk/utf8.h"

#include <cstdint>

namespace plotwerk {

// The length in bytes of the character that begins the text, 0 when it is none that the bus
// carries.
static size_t lengthOfFirst(std::string_view text) {
    const auto byte = [&](size_t i) { return static_cast<unsigned char>(text[i]); };

    const unsigned char lead = byte(0);
    if (lead < 0x80) return lead == 0 ? 0 : 1;
    const size_t length = lead >= 0xf0 ? 4 : lead >= 0xe0 ? 3 : 2;
    if (lead < 0xc2 || lead > 0xf4 || text.size() < length) return 0;

    uint32_t code = lead & (0x7fU >> length);
    for (size_t i = 1; i < length; ++i) {
        if ((byte(i) & 0xc0) != 0x80) return 0;
        code = code << 6 | (byte(i) & 0x3fU);
    }
    const bool overlong = (length == 3 && code < 0x800) || (length == 4 && code < 0x10000);
    const bool surrogate = code >= 0xd800 && code <= 0xdfff;
    const bool nonCharacter = (code >= 0xfdd0 && code <= 0xfdef) || (code & 0xfffe) == 0xfffe;
    return overlong || surrogate || nonCharacter || code > 0x10ffff ? 0 : length;
}

bool isUtf8(std::string_view text) {
    while (!text.empty()) {
        const size_t length = lengthOfFirst(text);
        if (length == 0) return false;
        text.remove_prefix(length);
    }
    return true;
}

std::string utf8Of(std::string text) {
    if (isUtf8(text)) return text;

    std::string converted;
    converted.reserve(text.size() + text.size() / 8);
    for (const char c : text) {
        const auto code = static_cast<unsigned char>(c);
        if (code == 0) continue;
        if (code < 0x80) {
            converted += c;
        } else {
            converted += static_cast<char>(0xc0 | code >> 6);
            converted += static_cast<char>(0x80 | (code & 0x3f));
        }
    }
    return converted;
}

} // namespace plotwerk
