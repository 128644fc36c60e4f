#include "util/text/line.h"

#include <gtest/gtest.h>

#include <climits>
#include <cstdio>
#include <string>

using namespace plw;

TEST(Getline, ReadsLinesWithAnyLineEndAndReportsTheLast) {
    const struct {
        const char *bytes, *lines; // each line with a '|' behind it
        int size;
        bool pairAtEnd; // of a stream only the next read then meets the end
    } cases[] = {{"a\r\nb\n\nc", "a|b||c|", 50, false},
                 {"a\n\rb\r\rc", "a|b||c|", 50, false},
                 {"a\n", "a|", 50, false},
                 {"\n\n\r", "||", 50, true},
                 {"\xff\n\xff", "\xff|\xff|", 50, false},
                 {"", "|", 50, false},
                 {"abcdef\ng", "abc|def||g|", 4, false},
                 {"abcd\r\ne", "abcd||e|", 5, false}};
    for (const auto &c : cases) {
        std::string bytes = c.bytes, fromRam, fromFile;
        char buf[50];
        char *pos = bytes.data();
        for (char atEnd = 0; !atEnd && fromRam.size() < 20; fromRam.append(buf).append("|"))
            getlineFromRam(&pos, bytes.data() + bytes.size() - 1, buf, c.size, &atEnd);
        EXPECT_EQ(fromRam, c.lines) << bytes;

        std::FILE *f = std::tmpfile();
        std::fputs(c.bytes, f);
        std::rewind(f);
        for (char atEnd = 0; !atEnd && fromFile.size() < 20; fromFile.append(buf).append("|"))
            EXPECT_EQ(getlineFromFile(f, buf, c.size, &atEnd), atEnd);
        std::fclose(f);
        EXPECT_EQ(fromFile, std::string(c.lines) + (c.pairAtEnd ? "|" : "")) << bytes;
    }
}

TEST(GetlineFromRam, TakesNothingWithoutRoomAndNothingBehindTheLastByte) {
    char bytes[] = {'a', '\0', 'b', '\r', '\n'};
    char buf[10], *pos = bytes;
    char atEnd = 7;
    for (const int size : {1, 0, INT_MIN}) {
        buf[0] = 'x';
        getlineFromRam(&pos, bytes + 3, buf, size, &atEnd);
        EXPECT_EQ(pos, bytes) << size;
        EXPECT_STREQ(buf, "") << size;
        EXPECT_EQ(atEnd, 0) << size;
    }
    getlineFromRam(&pos, bytes + 3, buf, sizeof buf, &atEnd);
    EXPECT_EQ(std::string(buf, 4), std::string("a\0b\0", 4));
    EXPECT_EQ(pos, bytes + 4) << "not behind the line feed";
    EXPECT_EQ(atEnd, 1);
}

TEST(RangeOfLine, StartsEveryLineOneByteBehindALineStart) {
    const std::tuple<const char *, int, int, int> cases[] = {
        {"abc\ndef", 1, 1, 2},  {"abc\ndef", 2, 4, 3}, {"abc\ndef", 3, -7, -7},
        {"\nabc\n", 1, 1, 3},   {"\nabc\n", 2, 5, 0},  {"a", 1, 1, 0},
        {"", 1, -7, -7},        {"a\n\nb", 2, 2, 0},   {"a\n\nb", 3, 3, 1},
        {"abc\ndef", 0, -7, -7}};
    for (const auto &[text, line, wantStart, wantLength] : cases) {
        int start = -7, length = -7;
        rangeOfLine(text, line, &start, &length);
        EXPECT_EQ(std::pair(start, length), std::pair(wantStart, wantLength))
            << text << " line " << line;
    }
}

TEST(Firstline, CutsAtTheFirstNewlineThenAtACarriageReturn) {
    for (std::string s : {"a\r\nb", "a\rb\nc", "a\nb\r", "a"})
        EXPECT_STREQ((firstline(s.data()), s.c_str()), "a");
}

TEST(Linetoascii, ReplacesWhatDoesNotPrint) {
    char s[] = " ~\x7f\x1f\t\n\x80\xc3\xa4\xff@";
    linetoascii(s);
    EXPECT_STREQ(s, " ~????????@");
}
