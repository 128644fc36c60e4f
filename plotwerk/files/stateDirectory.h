// stateDirectory.h - where the user's unsaved work is kept.
#ifndef PLOTWERK_FILES_STATEDIRECTORY_H
#define PLOTWERK_FILES_STATEDIRECTORY_H

#include <filesystem>

namespace plotwerk {

// $XDG_STATE_HOME/plotwerk, or ~/.local/state/plotwerk where that isn't an absolute path; or a
// folder in there, by createPrivately. Throws Refusal.
std::filesystem::path stateDirectory(const std::filesystem::path &folder = {});

// A missing directory is created, and those above it, for the user alone. Throws Refusal.
void createPrivately(const std::filesystem::path &directory);

} // namespace plotwerk

#endif
