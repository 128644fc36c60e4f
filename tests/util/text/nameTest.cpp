#include "util/text/name.h"

#include <gtest/gtest.h>

using namespace plw;

TEST(IndexOfName, SplitsOffASuffixWrittenAsAnInt) {
    const std::tuple<const char *, const char *, int> cases[] = {
        {"curve12", "curve", 12}, {"curve7", "curve", 7},           {"curve0", "curve", 0},
        {"a-b 0", "a-b ", 0},     {"x2147483647", "x", 2147483647}, {"a-1", "a-", 1}};
    int index = 77;
    char name[50] = "old";
    for (const auto &[text, wantName, wantIndex] : cases) {
        indexOfName(text, &index, name);
        EXPECT_EQ(index, wantIndex) << text;
        EXPECT_STREQ(name, wantName) << text;
    }
    for (const char *text : {"x2147483648", "x4294967297", "x99999999999999999999", "curve07",
                             "curve00", "7up", "curve", "a1b", "a1b2", "a1 ", "_1", "\3441", ""}) {
        index = 77;
        name[0] = 'x';
        indexOfName(text, &index, name);
        EXPECT_EQ(index, -1) << text;
        EXPECT_STREQ(name, "") << text;
    }
}
