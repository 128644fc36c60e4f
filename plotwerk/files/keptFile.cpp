#include "plotwerk/files/keptFile.h"

#include "plotwerk/files/atomicFile.h"
#include "plotwerk/files/documentFile.h"
#include "plotwerk/files/stateDirectory.h"
#include "util/text/utf8.h"

namespace plotwerk {

namespace fs = std::filesystem;

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
    const std::string fileName = fileNameOf(document.name);
    fs::path path = directory / (fileName + ".json");
    const auto write = [&](std::ostream &stream) { writeDocument(stream, document, false); };
    for (int number = 2; fs::exists(path) || !writeNewFile(path, write, userOnly); ++number)
        path = directory / (fileName + ' ' + std::to_string(number) + ".json");
    return path;
}

} // namespace plotwerk
