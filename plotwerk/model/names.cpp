#include "plotwerk/model/names.h"

#include "util/files/uniqueName.h"

#include <algorithm>

namespace plotwerk {

static int timesNamed = 0;

int namesOfTheTime() {
    return timesNamed;
}

std::string freeName(const std::string &name, const std::vector<std::string> &taken) {
    std::vector<const char *> names;
    names.reserve(taken.size());
    for (const std::string &each : taken) names.push_back(each.c_str());
    std::string free;
    do {
        // room for " hh:mm:ss#" and the counter; the counter's name isn't compared, but the next is
        // another
        free = name;
        free.resize(name.size() + 32);
        plw::uniqueName(free.data(), names.data(), static_cast<int>(names.size()));
        free.resize(std::char_traits<char>::length(free.c_str()));
    } while (std::find(taken.begin(), taken.end(), free) != taken.end());
    timesNamed += free != name;
    return free;
}

} // namespace plotwerk
