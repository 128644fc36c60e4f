#include "util/text/search.h"

#include <gtest/gtest.h>

using namespace plw;

TEST(Strwordstr, FindsWholeWordsOnly) {
    const struct {
        const char *hay, *word;
        int found; // -1: not
    } cases[] = {{"tabs tab", "tab", 5}, {"a_b b", "b", 4}, {"b1 1b (b)", "b", 7},
                 {"aaa aa", "aa", 4},    {"a-b", "b", 2},   {"ab", "c", -1},
                 {"\344b", "b", 1},      {"b.b", "b.b", 0}, {"", "", 0},
                 {"a b", "", -1},        {"a  b", "", 2},   {"a ", "", 2}};
    for (const auto &c : cases) {
        const char *hit = strwordstr(c.hay, c.word);
        EXPECT_EQ(hit ? hit - c.hay : -1, c.found) << c.hay << ", " << c.word;
    }
}

TEST(Strquotestr, FindsOutsideQuotesOnly) {
    const struct {
        const char *text, *needle;
        int wholeWord, found;
    } cases[] = {{"a \"b\" b", "b", 0, 6},    {"\"b\"", "b", 0, -1},  {"\\\"b\"", "b", 0, 2},
                 {"\"a\\\"b\" b", "b", 0, 7}, {"", "", 0, 0},         {"", "b", 0, -1},
                 {"\"x\"y", "\"y", 0, 2},     {"\"x", "\"x", 0, -1},  {"abc ab", "ab", 1, 4},
                 {"abc ab", "ab", 0, 0},      {"ab bc b", "b", 1, 1}, {"bbb", "bb", 1, 1}};
    for (const auto &c : cases)
        EXPECT_EQ(strquotestr(c.text, c.needle, c.wholeWord), c.found)
            << c.text << ", " << c.needle;
}

TEST(StrstrIgnoreBlanksInProbe, SkipsWhitespaceInTheProbeOnly) {
    const struct {
        const char *pattern, *probe;
        int found;
    } cases[] = {{"abc", "xa b\tc", 2}, {"abc", "aabc", 2}, {"abc", "a\n\v\f\rbc", 1},
                 {"abc", "ab", -1},     {"a b", "a b", -1}, {" a", " a", -1},
                 {"", "a", -1},         {"a", "", -1},      {"aab", "a a a b", 3}};
    for (const auto &c : cases) {
        const char *hit = strstrIgnoreBlanksInProbe(c.pattern, c.probe);
        EXPECT_EQ(hit ? hit - c.probe : -1, c.found) << c.pattern << " in " << c.probe;
    }
}
