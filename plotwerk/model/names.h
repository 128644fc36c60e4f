// names.h - the names of columns, sources and documents: those that mean something, and free ones.
#ifndef PLOTWERK_MODEL_NAMES_H
#define PLOTWERK_MODEL_NAMES_H

#include <string>
#include <string_view>
#include <vector>

namespace plotwerk {

// How the names of curves of extremes end.
inline constexpr std::string_view maximaSuffix = " maxima";
inline constexpr std::string_view minimaSuffix = " minima";

// The name itself when it isn't among the taken ones, otherwise one that uniqueName makes of it
// ("NAME 14:03:09", "NAME 14:03:09#1", ...).
std::string freeName(const std::string &name, const std::vector<std::string> &taken);

// How many names freeName has made of the time. What has made one has another effect next time.
int namesOfTheTime();

} // namespace plotwerk

#endif
