#include "util/text/line.h"

#include <gtest/gtest.h>

#include <bit>
#include <cerrno>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <iterator>
#include <random>
#include <string>
#include <vector>

using namespace plw;

namespace {

struct Scan {
    int count;
    std::vector<double> values;
    long rest;
    int error;
};

Scan scan(const char *text, int max) {
    Scan s{-1, std::vector<double>(max, -77.0), 0, 0};
    errno = 0;
    s.rest = scanline(text, s.values.data(), max, &s.count) - text;
    s.error = errno;
    return s;
}

// The same by strtod alone.
Scan slowScan(const char *text, int max) {
    Scan s{0, std::vector<double>(max, -77.0), 0, 0};
    const char *p = text;
    while (*p == ' ' || *p == '\t') ++p;
    errno = 0;
    while (s.count < max) {
        errno = 0;
        char *end;
        s.values[s.count] = std::strtod(p, &end);
        const bool refused = errno != 0 || end == p || *p == '\n';
        p = end;
        if (refused) break;
        ++s.count;
        while (*p == ' ' || *p == '\t') ++p;
        if (*p == '\0' || *p == '\n') break;
    }
    s.error = errno;
    s.rest = (*p == '\n' ? p + 1 : p) - text;
    return s;
}

// Bit by bit, so that -0.0 and NaN's sign count.
void expectSameScan(const std::string &text, int max) {
    const Scan got = scan(text.c_str(), max);
    const Scan want = slowScan(text.c_str(), max);
    EXPECT_EQ(got.count, want.count) << text;
    EXPECT_EQ(got.rest, want.rest) << text;
    EXPECT_EQ(got.error, want.error) << text;
    for (int i = 0; i < max; ++i)
        EXPECT_EQ(std::bit_cast<std::uint64_t>(got.values[i]),
                  std::bit_cast<std::uint64_t>(want.values[i]))
            << text << " value " << i << ": " << got.values[i] << ", not " << want.values[i];
}

} // namespace

TEST(Scanline, StopsWhereItSays) {
    const struct {
        const char *what, *text;
        int max, count;
        const char *rest;
    } cases[] = {
        {"one line", "1 2 3\n4", 10, 3, "4"},
        {"max", "1 2 3", 2, 2, "3"},
        {"max, then a newline", " 1\t2 \n3", 2, 2, "3"},
        {"nothing wanted", " \n3", 0, 0, "3"},
        {"end of text", "1 2 ", 10, 2, ""},
        {"no number", "1 x", 10, 1, "x"},
        {"comma", "1,2", 10, 1, ",2"},
        {"overflow", "1 1e999 2", 10, 1, " 2"},
        {"underflow", "1 1e-310 2", 10, 1, " 2"},
        {"carriage return is skipped as strtod skips it", "1\r\n2", 10, 2, ""},
        {"empty line eats a number", "\n7 8", 10, 0, " 8"},
        {"empty line before text", "\nx", 10, 0, "x"},
        {"empty", "", 10, 0, ""},
    };
    for (const auto &c : cases) {
        const Scan s = scan(c.text, c.max);
        EXPECT_EQ(s.count, c.count) << c.what;
        EXPECT_STREQ(c.text + s.rest, c.rest) << c.what;
    }
}

TEST(Scanline, StoresTheNumberBehindAnEmptyLineUncounted) {
    const Scan s = scan("\n7 8", 2);
    EXPECT_EQ(s.count, 0);
    EXPECT_EQ(s.values[0], 7);
}

TEST(Scanline, AgreesWithStrtodOnEveryShapeOfNumber) {
    const char *const texts[] = {
        "0 -0 +0 .0 0. -.0e5 0e999 0e-999 0x0",
        "1 +1 -1 +-1",
        "1. .5 -.5 . 5",
        "1e 2",
        "1e+ 2",
        "1e+x",
        "1E5 1e05 1e+0005 1e-0005",
        "1e22 1e23 1e-22 1e-23 9007199254740992 9007199254740993 9007199254740993e22",
        "9007199254740993.0000000000000000000000000001",
        "1234567890123456789 12345678901234567890 123456789012345678901234567890",
        "18446744073709551615 18446744073709551616 18446744073709551617e-3",
        "0.00000000000000000000000000000000000000000000001",
        "100000000000000000000000000000000000000000e-41",
        "1.7976931348623157e308 1.7976931348623158e308 1.7976931348623159e308",
        "2.2250738585072014e-308 2.2250738585072011e-308",
        "2.2250738585072012e-308",
        "4.9406564584124654e-324",
        "0x1p-1074 5e-324",
        "1e-99999999999999999999",
        "1e99999999999999999999",
        "0e99999999999999999999 3",
        "inf INFINITY -inf nan -nan NaN(0x7) infinit",
        "0x10 0X1.8p3 0x 1",
        "0x.8 0xg",
        "1e5e5",
        "1..5",
        "1.5.5",
        "1\v2\f3\r4 \n5",
        "1_000 2",
        "1e1\n2e2",
        "- 1",
        "\2401",
    };
    for (const char *text : texts)
        for (const int max : {1, 3, 12}) expectSameScan(text, max);
}

TEST(Scanline, AgreesWithStrtodOnRandomNumbers) {
    std::mt19937_64 random(1);
    const char *const formats[] = {"%.17g ", "%.15g\t", "%g ", "%.3f ", "%.20e\n", "%a "};
    for (int i = 0; i < 20000; ++i) {
        std::string line;
        for (int j = 0; j < 4; ++j) {
            // Half of them any bit pattern, half of them of everyday size.
            const double any = std::bit_cast<double>(random());
            const double plain = std::ldexp(static_cast<double>(random()), -50) - 5000;
            char text[400];
            std::snprintf(text, sizeof text, formats[random() % std::size(formats)],
                          random() % 2 ? any : plain);
            line += text;
        }
        expectSameScan(line, 5);
        if (HasFailure()) break;
    }
}

namespace {

using Lines = std::vector<std::string>;

// Lines read until the end is reported, from memory and from a stream with the same bytes.
Lines linesFromRam(std::string bytes, int size) {
    Lines lines;
    std::vector<char> buf(size);
    char *pos = bytes.data();
    const char *last = bytes.data() + bytes.size() - 1;
    char atEnd = 0;
    while (!atEnd && lines.size() < 20) {
        getlineFromRam(&pos, last, buf.data(), size, &atEnd);
        lines.emplace_back(buf.data());
    }
    return lines;
}

Lines linesFromFile(const std::string &bytes, int size) {
    Lines lines;
    std::vector<char> buf(size);
    std::FILE *f = std::tmpfile();
    std::fwrite(bytes.data(), 1, bytes.size(), f);
    std::rewind(f);
    char atEof = 0;
    while (!atEof && lines.size() < 20) {
        const int result = getlineFromFile(f, buf.data(), size, &atEof);
        EXPECT_EQ(result, atEof);
        lines.emplace_back(buf.data());
    }
    std::fclose(f);
    return lines;
}

} // namespace

TEST(Getline, ReadsLinesWithAnyLineEndAndReportsTheLast) {
    const struct {
        const char *bytes;
        Lines lines;
        int size;
        bool pairAtEnd; // of a stream only the next read then meets the end
    } cases[] = {
        {"a\r\nb\n\nc", {"a", "b", "", "c"}, 50, false},
        {"a\n\rb\r\rc", {"a", "b", "", "c"}, 50, false},
        {"a\n", {"a"}, 50, false},
        {"a\r\n", {"a"}, 50, true},
        {"\n\n\r", {"", ""}, 50, true},
        {"\xff\n\xff", {"\xff", "\xff"}, 50, false},
        {"", {""}, 50, false},
        {"abcdef\ng", {"abc", "def", "", "g"}, 4, false},
        {"abcd\r\ne", {"abcd", "", "e"}, 5, false},
    };
    for (const auto &c : cases) {
        Lines fromFile = c.lines;
        if (c.pairAtEnd) fromFile.emplace_back();
        EXPECT_EQ(linesFromRam(c.bytes, c.size), c.lines) << c.bytes;
        EXPECT_EQ(linesFromFile(c.bytes, c.size), fromFile) << c.bytes;
    }
}

TEST(Getline, ABufferWithoutRoomTakesNothing) {
    for (const int size : {1, 0, -5}) {
        char text[] = "\nabc";
        char *pos = text;
        char buf[] = "x";
        char atEnd = 7;
        getlineFromRam(&pos, text + 3, buf, size, &atEnd);
        EXPECT_EQ(pos, text) << size;
        EXPECT_STREQ(buf, "") << size;
        EXPECT_EQ(atEnd, 0) << size;
    }
}

TEST(GetlineFromRam, CopiesNulBytes) {
    char bytes[] = {'a', '\0', 'b', '\n', 'c'};
    char *pos = bytes;
    char buf[10];
    char atEnd;
    getlineFromRam(&pos, bytes + 4, buf, sizeof buf, &atEnd);
    EXPECT_EQ(std::string(buf, 4), std::string("a\0b\0", 4));
    EXPECT_EQ(pos, bytes + 4);
}

TEST(RangeOfLine, StartsEveryLineOneByteBehindALineStart) {
    const struct {
        const char *text;
        int line, start, length;
    } cases[] = {
        {"abc\ndef", 1, 1, 2},   {"abc\ndef", 2, 4, 3},    {"abc\ndef", 3, -7, -7},
        {"\nabc\n", 1, 1, 3},    {"\nabc\n", 2, 5, 0},     {"a", 1, 1, 0},
        {"", 1, -7, -7},         {"a\n\nb", 2, 2, 0},      {"a\n\nb", 3, 3, 1},
        {"abc\ndef", 0, -7, -7}, {"abc\ndef", -1, -7, -7},
    };
    for (const auto &c : cases) {
        int start = -7;
        int length = -7;
        rangeOfLine(c.text, c.line, &start, &length);
        EXPECT_EQ(start, c.start) << c.text << " line " << c.line;
        EXPECT_EQ(length, c.length) << c.text << " line " << c.line;
    }
}

TEST(Firstline, CutsAtTheFirstNewlineThenAtACarriageReturn) {
    const struct {
        const char *text, *line;
    } cases[] = {{"a\r\nb", "a"}, {"a\rb\nc", "a"}, {"a\nb\r", "a"}, {"abc", "abc"}, {"\n", ""}};
    for (const auto &c : cases) {
        std::string s = c.text;
        firstline(s.data());
        EXPECT_STREQ(s.c_str(), c.line) << c.text;
    }
}

TEST(Linetoascii, ReplacesWhatDoesNotPrint) {
    char s[] = " ~\x7f\x1f\t\n\x80\xc3\xa4\xff@";
    linetoascii(s);
    EXPECT_STREQ(s, " ~????????@");
}
