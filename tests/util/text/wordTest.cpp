#include "util/text/word.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

using namespace plw;

// The words of a line, each behind a '|', or '=' for an assignment, and '$' for an end of line.
static std::string wordsOf(std::string line) {
    std::string words;
    char *cursor = line.data();
    char isAssignment;
    char isEndOfLine;
    while (const char *word = nextWord(&cursor, &isAssignment, &isEndOfLine))
        words.append(isAssignment ? "=" : "|").append(isEndOfLine ? "$" : "").append(word);
    return words;
}

// Cases as "line -> words".
static void expectWords(const std::vector<std::string> &cases) {
    for (const std::string &c : cases) {
        const auto arrow = c.find(" -> ");
        EXPECT_EQ(wordsOf(c.substr(0, arrow)), c.substr(arrow + 4)) << c;
    }
}

TEST(NextWord, CutsWordsAndTellsAssignmentsAndLineEnds) {
    expectWords({" -> ", " \t  -> ", "  abc -> |abc", "name = 5\n -> =name|$5",
                 "a=b a\t=b a  =b -> =a|b=a|b=a|b", "a   =b -> |a|=b", "a \t=b -> |a|=b",
                 "a\t\t=b -> |a|=b", "a= -> =a", "== -> ==", "a, b -> |a|b", "x,,y -> |x|,y",
                 "a \n b -> |a|\n|b", "a\n\nb\n -> |$a|$\nb"});
    expectWords({"-a 'b c' \"d'e\" -> |-a|b c|d'e", "'a'b -> |a|b", "'a'=b -> |a|=b",
                 "'a',b -> |a|,b", "\"a\"\nb -> |$a|b", "\"\" '' -> ||",
                 "\"a\\\"b\" c -> |a\\\"b|c", "\"a\\\\\" b\" c -> |a\\\\\" b|c", "'a\\' -> |a\\'",
                 "it's -> |it's", "\"abc -> |abc", "\" -> |", "\xe9 \xa0z -> |\xe9|\xa0z"});
}

TEST(NextWord, LeavesTheCursorBehindWhatItConsumed) {
    const struct {
        const char *line;
        int word, cursor; // where they are; no word: -1
    } cases[] = {{"'abc", 1, 4}, {"  ", -1, 0}, {"'a' b", 1, 3}, {"a  =b", 0, 4}};
    char flag = 7;
    for (const auto &c : cases) {
        std::string line = c.line;
        char *cursor = line.data();
        const char *word = nextWord(&cursor, &flag, &flag);
        EXPECT_EQ(word ? word - line.data() : -1, c.word) << c.line;
        EXPECT_EQ(cursor - line.data(), c.cursor) << c.line;
    }
    EXPECT_EQ(flag, 1) << "one variable may serve for both flags";

    char last[] = "abc\0def";
    char *cursor = last;
    EXPECT_EQ(nextWord(&cursor, &flag, &flag), last);
    EXPECT_STREQ(cursor, "");
    EXPECT_EQ(nextWord(&cursor, &flag, &flag), nullptr);
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
