// characters.h - characters that do something where a text is shown, instead of being seen.
#ifndef PLOTWERK_BASE_CHARACTERS_H
#define PLOTWERK_BASE_CHARACTERS_H

#include <cstdint>

namespace plotwerk {

// A control character (C0, DEL, C1), which a terminal may obey, or one of Unicode's two line ends.
constexpr bool isControl(std::uint32_t code) {
    return code < 0x20 || (code >= 0x7f && code < 0xa0) || code == 0x2028 || code == 0x2029;
}

// One that turns the direction of all that is shown behind it until another ends that: of what
// others print, too.
constexpr bool turnsDirection(std::uint32_t code) {
    return (code >= 0x202a && code <= 0x202e) || (code >= 0x2066 && code <= 0x2069);
}

// One that can't be seen but joins, parts or turns round what is near it. Names in many scripts
// have them by right.
constexpr bool isFormat(std::uint32_t code) {
    return code == 0xad || code == 0x61c || code == 0x180e || (code >= 0x200b && code <= 0x200f) ||
           (code >= 0x202a && code <= 0x202e) || (code >= 0x2060 && code <= 0x206f) ||
           code == 0xfeff || (code >= 0xfff9 && code <= 0xfffb) ||
           (code >= 0xe0000 && code <= 0xe007f);
}

} // namespace plotwerk

#endif
