#include "plotwerk/data/dataText.h"

#include "plotwerk/base/refusal.h"
#include "tests/plotwerk/model/documents.h"

#include <bit>
#include <cmath>
#include <random>

using namespace plotwerk;

namespace {

std::string read(const std::string &text, char decimalSeparator) {
    std::string result;
    for (const DataTable &each : readDataText(text, decimalSeparator))
        result.append(result.empty() ? "" : "; ").append(textOf(each.table));
    return result;
}

} // namespace

TEST(DataText, IsReadAsPeopleWriteIt) {
    const struct {
        const char *what, *text, *want;
    } cases[] = {
        // fields and missing ones
        {"tab beside a comma", "1,\t2\n", "X=1 Y1=2"},
        {"nothing between", "1,,3; ;5\n", "X=1 Y1=nan Y2=3 Y3=nan Y4=5"},
        {"nothing between tabs", "1\t\t3\n4 \t \t 6\n", "X=1,4 Y1=nan,nan Y2=3,6"},
        {"tabs after rows of blanks", "1 2 3\n4 5 6\n7\t\t9\n", "X=1,4,7 Y1=2,5,nan Y2=3,6,9"},
        {"nothing before the first", " \t,2\n", "X=nan Y1=2"},
        {"two after the last", "1,2,,\n,,\n", "X=1,nan Y1=2,nan Y2=nan,nan"},
        {"words for NaN", "NAN -\n- nan\n1 NaN\n", "X=nan,nan,1 Y1=nan,nan,nan"},
        {"forms of numbers", "+1 -.5 1e3 0x10 -inf\n", "X=1 Y1=-0.5 Y2=1000 Y3=16 Y4=-inf"},
        {"beyond doubles", "1e999 -1e999 1e-999\n", "X=inf Y1=-inf Y2=0"},
        // rows of different lengths
        {"longer than the names", "x a\n1 2 3\n", "x=1 a=2 Y2=3"},
        {"shorter than the names", "x a b\n1 2\n", "x=1 a=2 b=nan"},
        {"one number of a longer row", "5\n7 8\n", "X=5,7 Y1=nan,8"},
        {"one number with its name", "a\n5\n7\n", "X=0,1 a=5,7"},
        {"one number with two names", "t a\n5\n", "t=0 a=5"},
        // lines, tables, comments
        {"CR LF", "1 2\r\n3 4\r\n\r\n5 6\r\n", "X=1,3 Y1=2,4; X=5 Y1=6"},
        {"CR", "1 2\r3 4\r\r5 6", "X=1,3 Y1=2,4; X=5 Y1=6"},
        {"empty lines", "\n\n1 2\n \t\n\n3\n\n", "X=1 Y1=2; X=0 Y1=3"},
        {"comments", "# a b c\n1 2 # c\n#\n3 4#5\n  # d\n% 1 2\n5 6\n", "X=1,3,5 Y1=2,4,6"},
        {"byte order mark", "\xEF\xBB\xBF\x31 2\n", "X=1 Y1=2"},
        // words: names before the first row, NaN after
        {"quoted", "\"t / s\";'it''s'\n1 2\n", "t / s=1 it's=2"},
        {"escaped quote", "x \"a \\\" b\" 'c\\'\\d'\n1 2 3\n", "x=1 a \" b=2 c'\\d=3"},
        {"open quote", "x \"a b\n1 2\n", "x=1 a b=2"},
        {"begins like a number", "2theta 5V\n1 2\n", "2theta=1 5V=2"},
        {"one word among numbers", "1 a\n1 2\n", "1=1 a=2"},
        {"missing name", "x,,b\n1 2 3\n", "x=1 Y1=2 b=3"},
        {"equals sign", "x y=2x\n1 2\n", "x=1 y=2x=2"},
        {"later line wins", "title of it\nx a\n\n1 2\n", "x=1 a=2"},
        {"names of one table only", "x a\n1 2\n\n3 4\n", "x=1 a=2; X=3 Y1=4"},
        {"words after a row", "1 2\n3 4 V \"m s\"\n5V 6\n", "X=1,3,nan Y1=2,4,6"},
    };
    for (const auto &c : cases) EXPECT_EQ(read(c.text, '.'), c.want) << c.what;

    const std::pair<const char *, const char *> withCommas[] = {
        {"1,5;2.5;,5\n", "X=1.5 Y1=2.5 Y2=0.5"},
        {"1 2\n3 4,5,6\n", "X=1,3 Y1=2,nan"},
        {"x a,b\n1 2\n", "x=1 a,b=2"}};
    for (const auto &[text, want] : withCommas) EXPECT_EQ(read(text, ','), want) << text;
}

TEST(DataText, RefusesWhatHoldsNoNumbersOrTooMany) {
    const std::string wide(20'000, ',');
    std::string many;
    for (int i = 0; i < 6'000; ++i) many += "1\n";
    const std::pair<std::string, const char *> cases[] = {
        {"", "data text has no numbers"},
        {"no numbers\n# 1 2\n", "data text has no numbers"},
        {std::string("1 2\n\0", 5), "data text has a NUL byte"},
        {many + wide + "1\n", "data text has too many values"},
        {std::string(600'000, ';') + "1\n\n" + std::string(400'000, ';') + "1",
         "data text has too many columns"}};
    for (const auto &c : cases) {
        Document none;
        EXPECT_EQ(refusalOf(none, [&](auto &) { readDataText(c.first, '.'); }), c.second);
    }
}

TEST(DataText, WritesLinesOfTabsAndShortNumbers) {
    const Column x = column("t / s", {0, 1.5, 1e-7});
    const Column y = column("U\\", {nan_, 0.1, 1.0 / 3});
    const Column unquotable = column("a\rb\nc\\", {1, 2, 3});
    std::string text;
    writeDataText({&x, &y}, '.', text);
    writeDataText({&y, &unquotable}, ',', text);
    EXPECT_EQ(text, "\"t / s\"\tU\\\n0\tNAN\n1.5\t0.1\n1e-07\t0.3333333333333333\n"
                    "\nU\\\t\"a b c\\ \"\nNAN\t1\n0,1\t2\n0,3333333333333333\t3\n");
}

// Any bit pattern is a number that must come back, whatever the separator and the names.
TEST(DataText, ReadsBackWhatItWroteBitForBit) {
    std::vector<double> numbers{0.0, -0.0, 5e-324, INFINITY, -INFINITY, 999999, 0.1 + 0.2, nan_};
    std::mt19937_64 random(7);
    while (numbers.size() < 2'000) {
        const auto number = std::bit_cast<double>(random());
        if (number == number) numbers.push_back(number);
    }
    for (const char separator : {'.', ','}) {
        Table written{column("\xEF\xBB\xBFz", numbers), {}, {}};
        for (const char *name : {"", "a b", "-", "nan", "1e5", "say \"a\"", "it's 'b'", "\"'\\.",
                                 "#1", "x;y,", "2b", "µ", "'", "a\\b c"})
            written.y.push_back(column(name, numbers));
        std::vector<const Column *> columns{&written.x};
        for (const Column &y : written.y) columns.push_back(&y);
        std::string text;
        writeDataText(columns, separator, text);
        EXPECT_TRUE(read(text, separator) == textOf(written)) << separator; // of 17 digits
    }
}
