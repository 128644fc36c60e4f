#include "util/number/decimal.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>

namespace plw {

char decimalSeparator = '.';

void decimalSeparatorToDot(char *s) {
    const char foreign = decimalSeparator != '.' ? decimalSeparator : ',';
    std::replace(s, s + std::strlen(s), foreign, '.');
}

void dotToDecimalSeparator(char *s) {
    std::replace(s, s + std::strlen(s), '.', decimalSeparator);
}

double valueOfString(const char *s) {
    char text[256];
    const std::size_t length = strnlen(s, sizeof text - 1);
    std::memcpy(text, s, length);
    text[length] = '\0';
    decimalSeparatorToDot(text);
    return std::strtod(text, nullptr);
}

} // namespace plw
