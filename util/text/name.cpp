#include "util/text/name.h"

#include "util/text/charclass.h"

#include <charconv>
#include <cstring>
#include <system_error>

namespace plw {

void indexOfName(const char *s, int *index, char *name) {
    *index = -1;
    name[0] = '\0';
    if (!isLetter(s[0])) return;

    const std::size_t length = std::strcspn(s, "0123456789");
    const char *const digits = s + length;
    const char *const end = digits + std::strlen(digits);
    int value = 0;
    const auto [stop, error] = std::from_chars(digits, end, value);
    const bool leadingZero = digits[0] == '0' && digits + 1 < end;
    if (error != std::errc() || stop != end || leadingZero) return;

    *index = value;
    std::memcpy(name, s, length);
    name[length] = '\0';
}

} // namespace plw
