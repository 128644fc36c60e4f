// expectFatal.h - a call that must end the process.
#ifndef PLW_TESTS_UTIL_FILES_EXPECTFATAL_H
#define PLW_TESTS_UTIL_FILES_EXPECTFATAL_H

#include <functional>
#include <gtest/gtest.h>
#include <regex>
#include <string>

// The call ends the process with status 1, and the message is all that it says.
inline void expectFatal(const std::function<void()> &call, const std::string &message) {
    const std::string pattern = std::regex_replace(message, std::regex("[().]"), "\\$&");
    EXPECT_EXIT(call(), testing::ExitedWithCode(1), "^" + pattern + "\n$") << message;
}

#endif
