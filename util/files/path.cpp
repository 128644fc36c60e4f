#include "util/files/path.h"

#include <cstring>

namespace plw {

void convertBlankToUnderline(char *s) {
    for (; *s != '\0'; ++s)
        if (*s == ' ') *s = '_';
}

const char *limitfilename(const char *path, int maxLen) {
    const long len = static_cast<long>(std::strlen(path));
    if (len <= maxLen) return path;
    if (maxLen < 1) return path + len;

    const char *cut = path + (len - maxLen);
    const char *slash = std::strchr(cut, '/');
    return slash != nullptr ? slash : cut + 1;
}

char *fileextension(char *path) {
    char *name = fileNameOfPath(path);
    char *dot = std::strrchr(name, '.');
    return dot != nullptr ? dot + 1 : name + std::strlen(name);
}

char *fileNameOfPath(char *path) {
    char *slash = std::strrchr(path, '/');
    return slash != nullptr ? slash + 1 : path;
}

char *dirOfPath(const char *path, char *dir) {
    const char *slash = std::strrchr(path, '/');
    const std::size_t len = slash != nullptr ? static_cast<std::size_t>(slash - path) : 0;
    std::memmove(dir, path, len);
    dir[len] = '\0';
    return dir;
}

char *removeExtension(char *path) {
    char *dot = std::strrchr(path, '.');
    if (dot != nullptr) *dot = '\0';
    return dot;
}

} // namespace plw
