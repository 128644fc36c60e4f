#include "plotwerk/files/directory.h"

#include <cerrno>
#include <dirent.h>
#include <memory>
#include <new>
#include <string_view>

namespace plotwerk {

namespace fs = std::filesystem;

// The standard library's iterator ends the process where it finds no memory.
std::vector<fs::path> pathsIn(const fs::path &directory) {
    std::vector<fs::path> paths;
    const std::unique_ptr<DIR, int (*)(DIR *)> opened(opendir(directory.c_str()), closedir);
    if (!opened) {
        if (errno == ENOMEM) throw std::bad_alloc();
        return paths;
    }
    while (const dirent *entry = readdir(opened.get())) {
        const std::string_view name = entry->d_name;
        if (name != "." && name != "..") paths.push_back(directory / name);
    }
    return paths;
}

} // namespace plotwerk
