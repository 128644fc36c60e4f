#include "util/text/copy.h"

#include <gtest/gtest.h>

#include <string>

using namespace plw;

TEST(StrMycpy, CutsTerminatesAndWritesNoMore) {
    const std::tuple<const char *, int, const char *> cases[] = {
        {"abc", 4, "abc"}, {"abc", 3, "ab"}, {"abc", 1, ""}, {"abc", -3, ""}, {"a", 5, "a"}};
    for (const auto &[src, size, want] : cases) {
        char dst[] = "zzzzzz";
        strMycpy(dst, src, size);
        EXPECT_STREQ(dst, want) << src << ", " << size;
        EXPECT_EQ(dst[std::string(want).size() + 1], 'z') << "no padding: " << size;
    }
}

TEST(ReplaceChr, ReplacesOverTheLengthOnEntry) {
    char s[] = "a.b.c";
    replaceChr(s, '.', '\0');
    EXPECT_EQ(std::string(s, 6), std::string("a\0b\0c\0", 6));

    char bytes[] = "\xe9x";
    replaceChr(bytes, 0xe9, 0xe8);
    EXPECT_STREQ(bytes, "\xe8x");
}
