#include "plotwerk/files/stateDirectory.h"

#include "plotwerk/base/refusal.h"

#include <cstdlib>
#include <sys/stat.h>

namespace plotwerk {

namespace fs = std::filesystem;

static fs::path stateHome() {
    const char *state = std::getenv("XDG_STATE_HOME");
    if (state && *state == '/') return state;
    const char *home = std::getenv("HOME");
    if (home && *home == '/') return fs::path(home) / ".local/state";
    throw Refusal("no directory to keep unsaved changes in: HOME is not set");
}

void createPrivately(const fs::path &directory) {
    std::error_code error;
    if (fs::is_directory(directory, error)) return;
    if (directory.has_relative_path()) createPrivately(directory.parent_path());
    if (mkdir(directory.c_str(), 0700) == 0 || fs::is_directory(directory, error)) return;
    throw Refusal("can't create " + directory.string());
}

fs::path stateDirectory(const fs::path &folder) {
    fs::path directory = stateHome() / "plotwerk";
    if (!folder.empty()) directory /= folder;
    createPrivately(directory);
    return directory;
}

} // namespace plotwerk
