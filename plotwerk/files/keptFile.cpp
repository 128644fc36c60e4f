#include "plotwerk/files/keptFile.h"

#include "plotwerk/base/refusal.h"
#include "plotwerk/files/atomicFile.h"
#include "plotwerk/files/documentFile.h"
#include "util/text/utf8.h"

#include <cstdlib>
#include <sys/stat.h>

namespace plotwerk {

namespace fs = std::filesystem;

static fs::path stateDirectory() {
    const char *state = std::getenv("XDG_STATE_HOME");
    if (state && *state == '/') return fs::path(state) / "plotwerk";
    const char *home = std::getenv("HOME");
    if (home && *home == '/') return fs::path(home) / ".local/state/plotwerk";
    throw Refusal("no directory to keep unsaved changes in: HOME is not set");
}

static void createPrivately(const fs::path &directory) {
    if (directory.has_relative_path()) createPrivately(directory.parent_path());
    if (mkdir(directory.c_str(), 0700) == 0 || fs::is_directory(directory)) return;
    throw Refusal("can't create " + directory.string());
}

// The document's name as that of a file: not hidden, no slashes, no control characters, and short
// enough for every file system.
static std::string fileNameOf(const std::string &name) {
    constexpr std::size_t longest = 200;
    std::string fileName = name.substr(0, plw::prefixOfCharacters(name, longest));
    for (char &c : fileName) {
        if (c == '/' || static_cast<unsigned char>(c) < 0x20 || c == 0x7f) c = '_';
    }
    if (fileName.starts_with('.')) fileName[0] = '_';
    return fileName;
}

fs::path keepDocument(const Document &document) {
    const fs::path directory = stateDirectory();
    createPrivately(directory);

    const std::string fileName = fileNameOf(document.name);
    fs::path path = directory / (fileName + ".json");
    for (int number = 2; fs::exists(path); ++number) {
        path = directory / (fileName + ' ' + std::to_string(number) + ".json");
    }
    writeWholeFile(path, [&](std::ostream &stream) { writeDocument(stream, document, false); });
    return path;
}

} // namespace plotwerk
