// temporaryFolder.h - a folder for the files of one test or benchmark.
#ifndef PLW_TESTS_SUPPORT_TEMPORARYFOLDER_H
#define PLW_TESTS_SUPPORT_TEMPORARYFOLDER_H

#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <system_error>

// Empty at first; it goes with this object, and all that is in it.
struct TemporaryFolder {
    TemporaryFolder() {
        std::string pattern = (std::filesystem::temp_directory_path() / "plotwerk-XXXXXX").string();
        if (!mkdtemp(pattern.data()))
            throw std::system_error(errno, std::generic_category(), pattern);
        path = pattern;
    }
    ~TemporaryFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(path, ignored);
    }
    TemporaryFolder(const TemporaryFolder &) = delete;
    TemporaryFolder &operator=(const TemporaryFolder &) = delete;

    std::filesystem::path path;
};

#endif
