#include "util/text/search.h"

#include <gtest/gtest.h>

using namespace plw;

TEST(Strwordstr, FindsWholeWordsOnly) {
    // -1: not
    const std::tuple<const char *, const char *, int> cases[] = {
        {"tabs tab", "tab", 5}, {"a_b b", "b", 4}, {"b1 1b (b)", "b", 7},
        {"aaa aa", "aa", 4},    {"a-b", "b", 2},   {"ab", "c", -1},
        {"\344b", "b", 1},      {"b.b", "b.b", 0}, {"", "", 0},
        {"a b", "", -1},        {"a  b", "", 2},   {"a ", "", 2}};
    for (const auto &[hay, word, found] : cases) {
        const char *hit = strwordstr(hay, word);
        EXPECT_EQ(hit ? hit - hay : -1, found) << hay << ", " << word;
    }
}

TEST(Strquotestr, FindsOutsideQuotesOnly) {
    const std::tuple<const char *, const char *, int, int> cases[] = {
        {"a \"b\" b", "b", 0, 6},    {"\"b\"", "b", 0, -1},  {"\\\"b\"", "b", 0, 2},
        {"\"a\\\"b\" b", "b", 0, 7}, {"", "", 0, 0},         {"", "b", 0, -1},
        {"\"x\"y", "\"y", 0, 2},     {"\"x", "\"x", 0, -1},  {"abc ab", "ab", 1, 4},
        {"abc ab", "ab", 0, 0},      {"ab bc b", "b", 1, 1}, {"bbb", "bb", 1, 1}};
    for (const auto &[text, needle, wholeWord, found] : cases)
        EXPECT_EQ(strquotestr(text, needle, wholeWord), found) << text << ", " << needle;
}

TEST(StrstrIgnoreBlanksInProbe, SkipsWhitespaceInTheProbeOnly) {
    const std::tuple<const char *, const char *, int> cases[] = {
        {"abc", "xa b\tc", 2}, {"abc", "aabc", 2}, {"abc", "a\n\v\f\rbc", 1},
        {"abc", "ab", -1},     {"a b", "a b", -1}, {" a", " a", -1},
        {"", "a", -1},         {"a", "", -1},      {"aab", "a a a b", 3}};
    for (const auto &[pattern, probe, found] : cases) {
        const char *hit = strstrIgnoreBlanksInProbe(pattern, probe);
        EXPECT_EQ(hit ? hit - probe : -1, found) << pattern << " in " << probe;
    }
}
