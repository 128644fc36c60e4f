#include "util/text/copy.h"

#include <algorithm>
#include <cstring>

namespace plw {

void strMycpy(char *dst, const char *src, int size) {
    const std::size_t n = size > 1 ? strnlen(src, size - 1) : 0;
    std::memmove(dst, src, n);
    dst[n] = '\0';
}

void replaceChr(char *s, int from, int to) {
    std::replace(s, s + std::strlen(s), static_cast<char>(from), static_cast<char>(to));
}

} // namespace plw
