#include "util/text/word.h"

#include "util/text/equation.h"

#include <gtest/gtest.h>

#include <sstream>
#include <string>

using namespace plw;

TEST(NextWord, CutsWordsAndTellsAssignmentsAndLineEnds) {
    // each word behind a '|', or '=' for an assignment, and '$' for an end of line
    std::istringstream cases(
        " -> # \t  -> #  abc -> |abc#name = 5\n -> =name|$5#a=b a\t=b a  =b -> =a|b=a|b=a|b#"
        "a   =b -> |a|=b#a \t=b -> |a|=b#a\t\t=b -> |a|=b#a= -> =a#== -> ==#a, b -> |a|b#"
        "x,,y -> |x|,y#a \n b -> |a|\n|b#a\n\nb\n -> |$a|$\nb#\xe9 \xa0z -> |\xe9|\xa0z#"
        "-a 'b c' \"d'e\" -> |-a|b c|d'e#'a'b -> |a|b#'a'=b -> |a|=b#'a',b -> |a|,b#"
        "\"a\"\nb -> |$a|b#\"\" '' -> ||#\"a\\\"b\\\"c\" d -> |a\\\"b\\\"c|d#"
        "\"a\\\\\" b\" c -> |a\\\\\" b|c#'a\\' -> |a\\'#it's -> |it's#\"abc -> |abc#\" -> |");
    for (std::string c; std::getline(cases, c, '#');) {
        const auto arrow = c.find(" -> ");
        std::string line = c.substr(0, arrow), words;
        char *cursor = line.data();
        char isAssignment, isEndOfLine;
        while (const char *word = nextWord(&cursor, &isAssignment, &isEndOfLine))
            words.append(isAssignment ? "=" : "|").append(isEndOfLine ? "$" : "").append(word);
        EXPECT_EQ(words, c.substr(arrow + 4)) << c;
    }
}

TEST(NextWord, LeavesTheCursorBehindWhatItConsumed) {
    const std::tuple<std::string, int, int> cases[] = {
        {"'abc", 1, 4}, {"  ", -1, 0}, {"'a' b", 1, 3}, {"a  =b", 0, 4}};
    for (auto [line, wantWord, wantCursor] : cases) {
        char *cursor = line.data();
        char flag = 7; // one variable may serve for both flags
        const char *word = nextWord(&cursor, &flag, &flag);
        EXPECT_EQ(word ? word - line.data() : -1, wantWord) << line;
        EXPECT_EQ(cursor - line.data(), wantCursor) << line;
    }
    char last[] = "abc\0def";
    char *cursor = last;
    char flag;
    EXPECT_EQ(nextWord(&cursor, &flag, &flag), last);
    EXPECT_STREQ(cursor, "");
}

TEST(QuoteEnd, StopsAtAQuoteThatNoBackslashHides) {
    const std::pair<const char *, int> cases[] = {
        {"xabc", 4}, {"xa\"b\"", 2}, {"xa\\\"b\"", 5}, {"\\\"\"", 2}, {"\"\"", 1}};
    for (const auto &[text, end] : cases) EXPECT_EQ(quoteEnd(text + 1) - text, end) << text;
}

TEST(BracketEnd, FindsTheClosingBracket) {
    const std::tuple<const char *, int, int, int> cases[] = {
        {"a(b)c)", '(', ')', 3},    {"((a)", '(', ')', 0}, {")(a)", '(', ')', 0},
        {")((a))", '(', ')', 4},    {"a|b|", '|', '|', 1}, {"", '(', ')', 0},
        {"\xab\xbb", 0xab, 0xbb, 1}};
    for (const auto &[text, open, close, end] : cases)
        EXPECT_EQ(bracketEnd(text, open, close), end) << text;
}

TEST(ScanEquation, CutsOutNamesAndValuesOneAfterTheOther) {
    // every equation as "name:value;", and where the cursor stays when there are no more
    for (const std::string c :
         {"  x = 5, y=7 -> x:5;y:7;|", "title = \"a, b\" -> title:a, b;|",
          "a=1 b =2\tc= 3\nd = 4 -> a:1;b:2;c:3;d:4;|", "a=\"x\\\"y\",b=1 -> a:x\\\"y;,b:1;|",
          "a=\"x\"b=1 -> a:x;b:1;|", "a= -> a:;|", "a=,b== -> a:;b:=;|", "a\n=1 -> a:1;|",
          "a=\n1=2 -> a:;1:2;|", "\n=1 -> :1;|", "a=\"open, b -> a:open, b;|",
          "a=x\"y\"  -> a:x\"y\";|", "= 5 -> |= 5", "\"q\" = 5 -> |\"q\" = 5", "a\"=5 -> a\":5;|",
          " a b=1 -> | a", "\xe4\xa0=\xa0 -> \xe4\xa0:\xa0;|", "name -> |name", " -> |"}) {
        const auto arrow = c.find(" -> ");
        std::string line = c.substr(0, arrow), equations;
        char *cursor = line.data();
        char *name;
        char *value;
        while (scanEquation(&cursor, &name, &value))
            equations.append(name).append(":").append(value).append(";");
        EXPECT_EQ(equations + "|" + cursor, c.substr(arrow + 4)) << c;
    }
}
