#include "util/files/uniqueName.h"

#include <cstring>
#include <ctime>
#include <string>

namespace plw {

static bool isTaken(const char *name, const char *const *existing, int count) {
    for (int i = 0; i < count; ++i)
        if (std::strcmp(name, existing[i]) == 0) return true;
    return false;
}

char *uniqueName(char *name, const char *const *existing, int count) {
    static int counter = 1;

    if (!isTaken(name, existing, count)) return nullptr;

    const std::time_t now = std::time(nullptr);
    const std::tm *local = std::localtime(&now);
    char suffix[16];
    std::strftime(suffix, sizeof suffix, " %H:%M:%S", local);

    // beside name, which may be one of the existing ones
    std::string longer = std::string(name) + suffix;
    if (isTaken(longer.c_str(), existing, count))
        longer.append("#").append(std::to_string(counter++));
    std::strcpy(name, longer.c_str());
    return name;
}

} // namespace plw
