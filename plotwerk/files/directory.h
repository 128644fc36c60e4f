// directory.h - what is in a directory.
#ifndef PLOTWERK_FILES_DIRECTORY_H
#define PLOTWERK_FILES_DIRECTORY_H

#include <filesystem>
#include <vector>

namespace plotwerk {

// The paths of all that is in it, in no order; none where it can't be looked into.
std::vector<std::filesystem::path> pathsIn(const std::filesystem::path &directory);

} // namespace plotwerk

#endif
