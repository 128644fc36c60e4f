#include "util/text/word.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

using namespace plw;

namespace {

// The words of a line as "word", with '=' or '$' in front for an assignment or an end of line.
std::vector<std::string> wordsOf(std::string line) {
    std::vector<std::string> words;
    char *cursor = line.data();
    char isAssignment;
    char isEndOfLine;
    while (const char *word = nextWord(&cursor, &isAssignment, &isEndOfLine)) {
        std::string &entry = words.emplace_back();
        if (isAssignment) entry += '=';
        if (isEndOfLine) entry += '$';
        entry += word;
    }
    return words;
}

} // namespace

TEST(NextWord, CutsWordsAndTellsAssignmentsAndLineEnds) {
    const struct {
        const char *line;
        std::vector<std::string> words;
    } cases[] = {{"", {}},
                 {" \t ", {}},
                 {"  abc", {"abc"}},
                 {"name = 5\n", {"=name", "$5"}},
                 {"a=b a\t=b a  =b", {"=a", "b", "=a", "b", "=a", "b"}},
                 {"a   =b", {"a", "=b"}},
                 {"a \t=b", {"a", "=b"}},
                 {"a\t\t=b", {"a", "=b"}},
                 {"a=", {"=a"}},
                 {"==", {"=="}},
                 {"a, b", {"a", "b"}},
                 {"x,,y", {"x", ",y"}},
                 {"a \n b", {"a", "\n", "b"}},
                 {"a\n\nb\n", {"$a", "$\nb"}},
                 {"-a 'b c' \"d'e\"", {"-a", "b c", "d'e"}},
                 {"'a'b", {"a", "b"}},
                 {"'a'=b", {"a", "=b"}},
                 {"'a',b", {"a", ",b"}},
                 {"\"a\"\nb", {"$a", "b"}},
                 {"\"\" ''", {"", ""}},
                 {R"("a\"b" c)", {R"(a\"b)", "c"}},
                 {R"("a\\" b" c)", {R"(a\\" b)", "c"}},
                 {R"('a\')", {R"(a\')"}},
                 {"it's", {"it's"}},
                 {"\"abc", {"abc"}},
                 {"\"", {""}},
                 {"\xe9 \xa0z", {"\xe9", "\xa0z"}}};
    for (const auto &c : cases) EXPECT_EQ(wordsOf(c.line), c.words) << c.line;
}

TEST(NextWord, LeavesTheCursorBehindWhatItConsumed) {
    char isAssignment;
    char isEndOfLine;

    char unclosed[] = "'abc";
    char *cursor = unclosed;
    EXPECT_EQ(nextWord(&cursor, &isAssignment, &isEndOfLine), unclosed + 1);
    EXPECT_EQ(cursor, unclosed + 4) << "on the line's own terminator";

    char blanks[] = "  ";
    cursor = blanks;
    EXPECT_EQ(nextWord(&cursor, &isAssignment, &isEndOfLine), nullptr);
    EXPECT_EQ(cursor, blanks) << "unchanged when no word is left";

    char last[] = "abc\0def";
    cursor = last;
    EXPECT_EQ(nextWord(&cursor, &isAssignment, &isEndOfLine), last);
    EXPECT_STREQ(cursor, "");
    EXPECT_EQ(nextWord(&cursor, &isAssignment, &isEndOfLine), nullptr);

    char flags[] = "a=b";
    cursor = flags;
    char both = 7;
    nextWord(&cursor, &both, &both);
    EXPECT_EQ(both, 1) << "one variable may serve for both flags";
}

TEST(QuoteEnd, StopsAtAQuoteThatNoBackslashHides) {
    const struct {
        const char *text;
        int end;
    } cases[] = {{"xabc", 4}, {"xa\"b\"", 2}, {"xa\\\"b\"", 5}, {"\\\"\"", 2}, {"\"\"", 1}};
    for (const auto &c : cases) EXPECT_EQ(quoteEnd(c.text + 1) - c.text, c.end) << c.text;
}

TEST(BracketEnd, FindsTheClosingBracket) {
    const struct {
        const char *text;
        int open, close, end;
    } cases[] = {{"(a(b)c)", '(', ')', 6}, {"a(b)c)", '(', ')', 3},    {"((a)", '(', ')', 0},
                 {")(a)", '(', ')', 0},    {")((a))", '(', ')', 4},    {"a|b|", '|', '|', 1},
                 {"", '(', ')', 0},        {"\xab\xbb", 0xab, 0xbb, 1}};
    for (const auto &c : cases) EXPECT_EQ(bracketEnd(c.text, c.open, c.close), c.end) << c.text;
}
