#include "util/text/search.h"

#include "util/text/copy.h"
#include "util/text/name.h"

#include <gtest/gtest.h>
#include <string>

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
