// textOf.h - what a file holds.
#ifndef PLW_TESTS_UTIL_FILES_TEXTOF_H
#define PLW_TESTS_UTIL_FILES_TEXTOF_H

#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <string>

inline std::string textOf(const std::string &path) {
    std::ifstream file(path);
    EXPECT_TRUE(file) << "can't read " << path;
    return {std::istreambuf_iterator<char>(file), {}};
}

#endif
