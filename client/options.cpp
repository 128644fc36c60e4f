#include "client/options.h"

#include "client/failures.h"
#include "util/text/utf8.h"

#include <cerrno>
#include <climits>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <string_view>

static void failAsNo(const char *what, const OptionText &option) {
    constexpr std::size_t longestShown = 60;
    std::string_view value = option.text;
    value = value.substr(0, value.find_first_of("\r\n"));
    value = value.substr(0, plw::prefixOfCharacters(value, longestShown));
    fail(option.command, std::string("the value of -") + option.letter + " is no " + what + ": " +
                             std::string(value));
}

static bool isBlank(const char *text) {
    return text[std::strspn(text, " \t\r\n\v\f")] == '\0';
}

static bool isReal(const char *text) {
    char *end;
    std::strtod(text, &end);
    return end != text && isBlank(end);
}

static bool isInteger(const char *text) {
    char *end;
    errno = 0;
    const long value = std::strtol(text, &end, 10);
    return end != text && isBlank(end) && errno == 0 && value >= INT_MIN && value <= INT_MAX;
}

double real(const OptionText &option, double whenEmpty) {
    if (!*option) return whenEmpty;
    if (failuresAreTold() && !isReal(option)) failAsNo("number", option);
    return std::atof(option);
}

double real(const OptionText &option) {
    return real(option, std::sqrt(-1.0));
}

int integer(const OptionText &option, int whenEmpty) {
    if (!*option) return whenEmpty;
    if (failuresAreTold() && !isInteger(option)) failAsNo("integer", option);
    return std::atoi(option);
}

int integer(const OptionText &option) {
    return integer(option, -1);
}

bool yesNo(const char *text) {
    return *text && *text != 'n' && *text != 'N';
}

int triState(const char *text) {
    switch (*text) {
    case '\0':
    case 'k':
    case 'K': return 2;
    case 'n':
    case 'N': return 0;
    default: return 1;
    }
}

std::string textOf(const char *text) {
    return plw::utf8Of(text);
}
