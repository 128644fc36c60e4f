#include "util/text/utf8.h"

#include <algorithm>

namespace plw {

// How many bytes the character has that this byte, from 0xc0 on, begins.
static std::size_t sizeBegunBy(unsigned char lead) {
    return lead >= 0xf0 ? 4 : lead >= 0xe0 ? 3 : 2;
}

std::uint32_t firstCodePoint(std::string_view text, std::size_t *length) {
    const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(text[i]); };
    *length = 0;
    if (text.empty()) return 0;

    const unsigned char lead = byte(0);
    if (lead < 0x80) {
        *length = lead == 0 ? 0 : 1;
        return lead;
    }
    const std::size_t size = sizeBegunBy(lead);
    if (lead < 0xc2 || lead > 0xf4 || text.size() < size) return 0;

    std::uint32_t code = lead & (0x7fU >> size);
    for (std::size_t i = 1; i < size; ++i) {
        if (!isContinuation(text[i])) return 0;
        code = code << 6 | (byte(i) & 0x3fU);
    }
    const bool overlong = (size == 3 && code < 0x800) || (size == 4 && code < 0x10000);
    const bool surrogate = code >= 0xd800 && code <= 0xdfff;
    if (overlong || surrogate || isNonCharacter(code) || code > 0x10ffff) return 0;

    *length = size;
    return code;
}

bool isNonCharacter(std::uint32_t code) {
    return (code >= 0xfdd0 && code <= 0xfdef) || (code & 0xfffe) == 0xfffe;
}

std::string_view firstCharacter(std::string_view text) {
    std::size_t length = text.empty() ? 0 : 1;
    while (length < text.size() && isContinuation(text[length])) ++length;
    return text.substr(0, length);
}

bool isUtf8(std::string_view text) {
    while (!text.empty()) {
        std::size_t length;
        firstCodePoint(text, &length);
        if (length == 0) return false;
        text.remove_prefix(length);
    }
    return true;
}

std::string utf8Of(std::string text) {
    if (isUtf8(text)) return text;

    std::string converted;
    converted.reserve(text.size() +
                      static_cast<std::size_t>(std::count_if(
                          text.begin(), text.end(), [](char c) { return (c & 0x80) != 0; })));
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

std::size_t prefixOfCharacters(std::string_view text, std::size_t longest) {
    if (longest >= text.size()) return text.size();

    std::size_t begin = longest;
    while (begin > 0 && longest - begin < 3 && isContinuation(text[begin])) --begin;
    const auto lead = static_cast<unsigned char>(text[begin]);
    return lead >= 0xc0 && begin + sizeBegunBy(lead) > longest ? begin : longest;
}

} // namespace plw
