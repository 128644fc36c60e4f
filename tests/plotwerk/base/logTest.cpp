// Whatever is logged is one line, and never stops the program.
#include "plotwerk/base/log.h"

#include <cstdlib>
#include <gtest/gtest.h>
#include <string>
#include <unistd.h>

using namespace plotwerk;

TEST(Log, MakesOneLineOfAnyText) {
    const std::pair<std::string, std::string> cases[] = {
        {"", ""},
        {"a\nb\r\tc\x7f", "a\\x0ab\\x0d\\x09c\\x7f"},
        {"\x1b[2J", "\\x1b[2J"},
        {"\u009b2J", "\\x9b2J"},
        {"a\u202eb\u2028c\u2066\ufeff\U000e0041", "a\\u202eb\\u2028c\\u2066\\ufeff\\ue0041"},
        {"\u05d0\u0301 \u20ac \U0001F600", "\u05d0\u0301 \u20ac \U0001F600"},
        {"K\xe4se", "K\u00e4se"},
        {std::string("a\0b", 3), "ab"},
        {std::string(800, 'n'), std::string(800, 'n')},
        {"head" + std::string(5000, 'n') + "tail",
         "head" + std::string(396, 'n') + "..." + std::string(396, 'n') + "tail"}};
    for (const auto &[text, line] : cases) EXPECT_EQ(oneLine(text), line);
}

TEST(Log, ShortensBetweenCharacters) {
    for (std::size_t shift = 0; shift < 4; ++shift) {
        std::string text(shift, 'n');
        for (int i = 0; i < 1000; ++i) text += "\U0001F600";
        EXPECT_EQ(oneLine(text).find("\u00f0"), std::string::npos)
            << shift << ": read as ISO 8859-1";
    }
}

TEST(LogDeathTest, DoesNotWaitForAReaderThatHasStopped) {
    const auto fillPipe = [] {
        int ends[2];
        if (pipe(ends) != 0) std::exit(1);
        dup2(ends[1], STDERR_FILENO);
        alarm(60);
        for (int i = 0; i < 2000; ++i) log(LogLevel::error, std::string(800, 'n'));
        std::exit(0);
    };
    EXPECT_EXIT(fillPipe(), testing::ExitedWithCode(0), "");
}
