#include "plotwerk/data/dataText.h"
#include "plotwerk/data/dataTextWriter.h"

#include "plotwerk/base/refusal.h"
#include "tests/plotwerk/model/documents.h"

#include <bit>
#include <cmath>
#include <random>

using namespace plotwerk;

namespace {

using Reader = std::vector<DataTable>(std::string, char);

std::string read(const std::string &text, char decimalSeparator, Reader *reader = readDataText) {
    std::string result;
    for (const DataTable &each : reader(text, decimalSeparator))
        result.append(result.empty() ? "" : "; ").append(textOf(each.table));
    return result;
}

// A case is "TEXT -> TABLES".
void expectRead(const std::vector<std::string> &cases, char decimalSeparator = '.',
                Reader *reader = readDataText) {
    for (const std::string &c : cases) {
        const auto arrow = c.find(" -> ");
        EXPECT_EQ(read(c.substr(0, arrow), decimalSeparator, reader), c.substr(arrow + 4)) << c;
    }
}

std::string many(const std::string &text, int times) {
    std::string all;
    for (int i = 0; i < times; ++i) all += text;
    return all;
}

} // namespace

TEST(DataText, IsReadAsPeopleWriteIt) {
    expectRead(
        {// fields and missing ones
         "1,\t2\n -> X=1 Y1=2", "1,,3; ;5\n -> X=1 Y1=nan Y2=3 Y3=nan Y4=5",
         "1\t\t3\n4 \t \t 6\n -> X=1,4 Y1=nan,nan Y2=3,6",
         "1 2 3\n4 5 6\n7\t\t9\n -> X=1,4,7 Y1=2,5,nan Y2=3,6,9", " \t,2\n -> X=nan Y1=2",
         "1;2\n;6\n3;4\n -> X=1,nan,3 Y1=2,6,4", "1,2,,\n,,\n -> X=1,nan Y1=2,nan Y2=nan,nan",
         "NAN -\n- nan\n1 NaN\n -> X=nan,nan,1 Y1=nan,nan,nan",
         "20240229;20240301\n -> X=20240229 Y1=20240301",
         "+1 -.5 1e3 0x10 -inf\n -> X=1 Y1=-0.5 Y2=1000 Y3=16 Y4=-inf",
         "1e999 -1e999 1e-999\n -> X=inf Y1=-inf Y2=0",
         // rows of different lengths
         "x a\n1 2 3\n -> x=1 a=2 Y2=3", "x a b\n1 2\n3 4 5\n -> x=1,3 a=2,4 b=nan,5",
         "Time s U V\n1 2\n -> X=1 Y1=2", "x,a,,b\n1,2,\n3,4,\n -> x=1,3 a=2,4",
         "Elapsed time  U\n1 2\n -> Elapsed time=1 U=2", "5\n7 8\n -> X=5,7 Y1=nan,8",
         "t a\n5\n -> t=0 a=5",
         // lines, tables, comments
         "1 2\r\n3 4\r\n\r\n5 6\r\n -> X=1,3 Y1=2,4; X=5 Y1=6",
         "1 2\r3 4\r\r5 6 -> X=1,3 Y1=2,4; X=5 Y1=6", "\n\n1 2\n \t\n\n3\n\n -> X=1 Y1=2; X=0 Y1=3",
         "# a b c\n1 2 # c\n#\n3 4#5\n  # d\n% 1 2\n5 6\n -> X=1,3,5 Y1=2,4,6",
         "1 2\n// 7 8\n! 7 8\n%% 7 8\n# 7 8\n3 4\n -> X=1,3 Y1=2,4",
         "1 2\n/ 8\n3 4\n -> X=1,nan,3 Y1=2,8,4", "x;\"# b\"\n1;2#3\n4;5 # 6\n -> x=1,4 # b=2,5",
         "\xEF\xBB\xBF\x31 2\n -> X=1 Y1=2",
         // words: names before the first row, NaN after
         "\"t / s\";'it''s'\n1 2\n -> t / s=1 it's=2",
         "x \"a \\\" b\" 'c\\'\\d'\n1 2 3\n -> x=1 a \" b=2 c'\\d=3", "x \"a b\n1 2\n -> x=1 a b=2",
         "2theta 5V\n1 2\n -> 2theta=1 5V=2", "1 a\n1 2\n -> 1=1 a=2",
         "x;y\n1;<0.5\n2;3\n -> x=1,2 y=nan,3", "x,,b\n1 2 3\n -> x=1 Y1=2 b=3",
         "x y=2x\n1 2\n -> x=1 y=2x=2", "title of it\nx a\n\n1 2\n -> x=1 a=2",
         "x;y\n# 1;5\n1;2\n -> x=1 y=2", "a, b; c; d\n1;2\n3;4\n -> a, b=1,3 c=2,4",
         "\"1\";\"2\"\n\"3\";\"4\"\n5;6\n -> X=1,3,5 Y1=2,4,6",
         "\"1\";\"2\"\n# 7;8\n\"3\";\"4\"\n5;6\n -> X=1,3,5 Y1=2,4,6",
         "t (s) U [V]\n1 2\n -> t (s)=1 U [V]=2", "# x;y\n;\n1;2\n -> X=nan,1 Y1=nan,2",
         ";\nx;y\n1;2\n -> x=1 y=2", "x;y\n;\n1;2\n -> x=1 y=2",
         "x a\n1 2\n\n3 4\n -> x=1 a=2; X=3 Y1=4", "1\t2 \"s\"\n3\t4\n -> X=1,3 Y1=2,4",
         "1 2\n3 4 V \"m s\"\n5V 6\n -> X=1,3,nan Y1=2,4,6"});

    expectRead({"1,5;2.5;,5\n -> X=1.5 Y1=2.5 Y2=0.5", "1 2\n3 4,5,6\n -> X=1,3 Y1=2,nan",
                "1;2\n1,e5;3\n1,;4\n1,;4 #\n,5;,\n -> X=1,nan,nan,nan,0.5 Y1=2,3,4,4,nan",
                "x a,b\n1 2\n -> x=1 a,b=2"},
               ',');
    EXPECT_EQ(read("\"t\n(s)\",U\n1,2\n" + many("3,4\n", 2000), '.').substr(0, 10), "t (s)=1,3,");
    EXPECT_EQ(read("\"t" + many("\n", 32) + "s\",U\n1,2\n", '.'), "t" + many(" ", 32) + "s=1 U=2");
}

TEST(DataText, IsReadAsProgramsExportIt) {
    expectRead(
        {// lines of names
         "Time (s),U (V),U (V) error\n0,1,2\n -> Time (s)=0 U (V)=1 U (V) error=2",
         "x y\n1\t2\n -> x=1 y=2", "p q,r\n1 2\n -> p q=1 r=2",
         "Time (s)  U [V]\n1 2\n -> Time (s)=1 U [V]=2",
         "\"t, s\",\"a \"\"b\"\"\"\n1,2\n -> t, s=1 a \"b\"=2",
         "\"t\n(s)\",\"U\r\n(V)\"\n1,2\n -> t (s)=1 U  (V)=2",
         "t, \"U\n(V)\" ,\"I \"\"\n\"\"\"\n1,2,3\n -> t=1 U (V)=2 I \" \"=3",
         "1,2\n\"3\",\"\n4\" -> X=1,3 Y1=2,4", "t,\"U\n1,2\n3,4\n -> t=1,3 U=2,4",
         "5\",3\" wide\n1,2\n -> 5\"=1 3\" wide=2", "Run of Monday\nt,U\n\n1,2\n -> t=1 U=2",
         "Run of Monday\n1,2\n -> X=1 Y1=2", "nm,300,310\n400,1,2\n -> nm=400 300=1 310=2",
         "# made by hand\n# x y err\n0 1 2\n -> x=0 y=1 err=2",
         "# x y err\n# by hand\n0 1 2\n -> x=0 y=1 err=2",
         "# x y err\n# by hand\n# again\n0 1 2\n -> X=0 Y1=1 Y2=2", "# 7 runs\n0 1\n -> X=0 Y1=1",
         "%x,y\n1,2\n\n# a b c\n3,4\n -> x=1 y=2; X=3 Y1=4",
         "t,U,I,\ns,V,,\n1,2,3,\n -> t (s)=1 U (V)=2 I=3",
         "t,,I\ns,V,A\n1,2,3\n -> t (s)=1 Y1=2 I (A)=3",
         "t,U\ns,V\nrun,one\nrun,two\nrun,six\n1,2\n -> t (s)=1 U (V)=2",
         "t,U\ns,V\nrun,one\nrun,two\nrun,six\nrun,ten\n1,2\n -> run=1 ten=2",
         "t\tU\n[s]\tm/s^2\nfirst\tsecond run\n1\t2\n -> t [s]=1 U (m/s^2)=2",
         "t,U\n(),[]\n1,2\n -> ()=1 []=2",
         "t,U\ns,m*m*m*m*m*m*m*m*m*m*m*m*m*m*m*m*m*m*m*mm\n1,2\n -> t (s)=1 U "
         "(m*m*m*m*m*m*m*m*m*m*m*m*m*m*m*m*m*m*m*mm)=2",
         "Volt Sweep\nx y\n1 2\n -> x=1 y=2", "Title,,\n,,\nx,y,z\n1,2,3\n -> x=1 y=2 z=3",
         // values
         "\"a\",\"b\"\n\"1\",\"2,5\"\n\"3\",\"1,234.5\"\n -> a=1,3 b=2.5,1234.5",
         "a,b\n1,\"2\"\n3,4\n -> a=1,3 b=2,4", "\"1\"\t\"2\"\n3\t4\n -> 1=3 2=4",
         "x\ty\n\"1\"\t\"2\"\n3\t4\n -> x=1,3 y=2,4",
         "1.5D-3 1d2\n-2.5-101 ****\n -> X=0.0015,-2.5e-101 Y1=100,nan",
         "a;b\n1;1,234.5\n2;12,345,678\n -> a=1,2 b=1234.5,12345678",
         "a,b,c\n1,NA,#N/A\n2,n.a.,--\n3,\xE2\x88\x92"
         "4,5\n -> a=1,2,3 b=nan,nan,-4 c=nan,nan,5",
         // words
         "t,U\n1,2e\n3,4E+\n5,6e5\n7,8d\n -> t=1,3,5,7 U=nan,nan,600000,nan",
         "t,Time,T\n2024-01-02 8:00,9:00:00,5\n -> t=1704182400 T=5",
         "#REF!,1\n#NAME?,2\n#N/A,3\n#DIV/0!,4\n#NV,5\n6,7 #N\n8,9 #!\n -> "
         "X=nan,nan,nan,nan,nan,6,8 Y1=1,2,3,4,5,7,9",
         "T,state,R\n1,OK,2\n3,\"too hot, really\",4\n -> T=1,3 R=2,4",
         "a;b;c\nA;1;2\nB;3;4\n -> b=1,3 c=2,4", "\ta\tb\nA\t1\t2\nB\t3\t4\n -> a=1,3 b=2,4",
         "name,b\nA,1\nB,2\n -> X=0,1 b=1,2", "1,2,OK\n3,4,\n -> X=1,3 Y1=2,4",
         "Points,3,,1,2\nSource,CH1,,3,4\n,,,5,6\n,,,7,8\n,,,9,10\n,,,1,2\n,,,1,2\n"
         ",,,1,2\n,,,1,2\n,,,1,2\n,,,1,2\n -> X=1,3,5,7,9,1,1,1,1,1,1 Y1=2,4,6,8,10,2,2,2,2,2,2",
         "Device,X 2\nPoints,2\nRange,10\n\nt,U\n0,1\n1,2\n -> t=0,1 U=1,2",
         "t,U\n0,1\n1,2\nEnd of data\n -> t=0,1 U=1,2",
         "1,2\n\n3,4\nEnd,of it\n5,6\n -> X=1 Y1=2; X=3,5 Y1=4,6",
         "t,U\n0,1\nEnd\nof data\n1,2\n -> t=0,1 U=1,2",
         "t,U,I\n1,2 V,3\n2,3 V,4\n -> t=1,2 I=3,4"});
}

TEST(DataText, ReadsTimesAsSecondsSince1970) {
    // a time, and how it is written
    const std::pair<double, std::vector<std::string>> times[] = {
        {1709210096.25,
         {"2024-02-29T12:34:56.25Z", "2024-02-29 12:34:56.25", "\"2024-02-29 12:34:56.25\"",
          "2024/02/29t13:34:56.25+01:00", "2024-02-29T07:04:56.25-0530", "20240229T123456.25"}},
        {1709210040,
         {"20240229T1334+01:00", "2024-02-29T13:34+01", "2024-03-01T11:34+23:00",
          "2024-02-29T12:34-0000", "20240229t123400Z"}},
        {1709213696, // of 24 hours, too, as some loggers write it
         {"2024-02-29 1:34:56 PM", "2024-02-29 13:34:56 PM"}},
        {1709166840, {"2024-02-29T12:34am", "2024-02-29 00:34 AM"}},
        {0.123456789012345, {"1970-01-01T00:00:00.1234567890123456789012345"}},
        {-0.5, {"1969-12-31T23:59:59.5"}},
        {1483228800, {"2016-12-31T23:59:60Z"}},
        {946771200, {"2000-01-01T24:00"}},
        {-62135596800, {"0001-01-01"}},
        {253402300799, {"9999-12-31T23:59:59"}}};
    for (const char separator : {',', ';', '\t', ' '})
        for (const auto &[want, texts] : times)
            for (const std::string &text : texts) {
                const Table table = readDataText(text + separator + "7\n", '.')[0].table;
                EXPECT_TRUE(table.x.isTime && !table.y[0].isTime) << text;
                EXPECT_EQ(table.x.values[0], want) << text;
                EXPECT_EQ(table.y[0].values[0], 7) << text;
            }
    for (const char *text :
         {"2023-02-29", "1900-02-29", "2024-13-01", "0000-01-01", "2024-1-1", "2024-01/01",
          "2024-01-01T25:00", "2024-01-01T10:60", "2024-01-01T10:00:61", "10:00:00",
          "20241301T1000", "20240101T10:00", "20240101T100", "20240101T10005"})
        EXPECT_EQ(read(text + std::string(",1,2\n3,4,5\n"), '.'), text + std::string("=3 1=4 2=5"));

    for (const char *text :
         {"Date,Time,T\n2024-01-02,9:00:00,5\n2024-01-02,10:00:01,6\n",
          "\"Date\",\"Time\",\"T\"\n\"2024-01-02\",\"9:00:00\",\"5\"\n"
          "\"2024-01-02\",\"10:00:01,0\",\"6\"\n",
          "Date\tTime\tT\n2024-01-02\t\"9:00 AM\"\t5\n\"2024-01-02\"\t10:00:01 AM\t6\n",
          "Date;Time;T\n2024-01-02;\" 9:00  AM\";5\n\"2024-01-02\";\"10:00:01 AM  \";6\n",
          "Date,Time,T\n2024-01-02,\"  9:00\",5\n\" 2024-01-02\", \"10:00:01  \" ,6\n"})
        EXPECT_EQ(read(text, '.'), "Date Time=1704186000,1704189601 T=5,6") << text;
    expectRead({"T,Date,Time,U\n5,1970-01-02,0:01,7\n -> T=5 Date Time=86460 U=7"});

    // a column of times is one in which at least half are, wherever it stands
    const std::pair<const char *, bool> columns[] = {
        {"a,b,c\nA,2024-01-01,1\nB,2024-01-02,2\n", true},
        {"2024-01-01,1\n5,2\n", true},
        {"2024-01-01,1\n5,2\n6,3\n", false}};
    for (const auto &[text, isTime] : columns) {
        const Table table = readDataText(text, '.')[0].table;
        EXPECT_TRUE(table.x.isTime == isTime && !table.y[0].isTime) << text;
    }
}

TEST(DataFile, SaysItselfWhatItsCommasAre) {
    for (const char setting : {'.', ','})
        expectRead({"1,5;2,5\n -> X=1.5 Y1=2.5", "a\tb\n1\t2,5e3\n -> a=1 b=2500",
                    "0,50 1,50\n -> X=0.5 Y1=1.5", "1234,5;2\n -> X=1234.5 Y1=2",
                    "1;1.234,5\n -> X=1 Y1=1234.5", "1;1,234.5\n -> X=1 Y1=1234.5",
                    "1,5,7\n -> X=1 Y1=5 Y2=7", "1.5,7\n -> X=1.5 Y1=7", ".5,7\n -> X=0.5 Y1=7",
                    "a,b\n1,5\n -> a=1 b=5", "\"t, s\",\"U; V\"\n1,5\n -> t, s=1 U; V=5",
                    "1, 5\n -> X=1 Y1=5", "1,234.5\n999.5\n -> X=0,1 Y1=1234.5,999.5",
                    "2024-01-02T10:00:00,5;1,5\n -> X=1704189600.5 Y1=1.5"},
                   setting, readDataFile);
    expectRead({"1;1,234\n -> X=1 Y1=1234", "1,5\n2,25\n -> X=1,2 Y1=5,25"}, '.', readDataFile);
    expectRead({"1;1,234\n -> X=1 Y1=1.234", "1,5\n2,25\n -> X=0,1 Y1=1.5,2.25"}, ',',
               readDataFile);
    EXPECT_EQ(read("1,5;2,5\n", '.'), "X=1 Y1=5 Y2=2 Y3=5") << "a text, not a file";
}

TEST(DataFile, IsReadInTheEncodingsOfSpreadsheets) {
    using namespace std::string_literals;
    const std::pair<std::string, const char *> cases[] = {
        {"\xEF\xBB\xBF\xC2\xB5 b\n1 2\n", "\u00b5=1 b=2"},
        {"\xB5 b\n1 2\n", "\u00b5=1 b=2"},
        {"\xFF\xFE\xB5\0\t\0b\0\r\0\n\0001\0\t\0002\0"s, "\u00b5=1 b=2"},
        {"\xFF\xFE\xA9\3\xAC\x20\t\0b\0\n\0001\0\t\0002\0"s, "\u03a9\u20ac=1 b=2"},
        {"\xFE\xFF\xD8\0\xDC\0\0\t\0b\0\n\0001\0\t\0002"s, "\U00010000=1 b=2"},
        {"\xFE\xFF\xD8\x34\xDD\x1E\0\t\xD8\x34\0b\xDD\x1E\0\n\0001\0\t\0002"s,
         "\U0001D11E=1 \uFFFDb\uFFFD=2"},
        {"\xC3\xA4\xEF\xBF\xBE\xEF\xB7\x90\xF0\x9F\xBF\xBF\xF4\x8F\xBF\xBF b\n1 2\n",
         "\u00e4\uFFFD\uFFFD\uFFFD\uFFFD=1 b=2"}};
    for (const auto &[bytes, want] : cases)
        EXPECT_EQ(textOf(readDataFile(bytes, '.')[0].table), want);
    EXPECT_THROW(readDataFile("1\0 2\n"s, '.'), Refusal);
}

TEST(DataText, NamesOnTheLogWhatItDidNotRead) {
    const std::pair<std::string, const char *> cases[] = {
        {"T,state\n1,OK\n2,OK\n", "left out, since they hold words: \"state\""},
        {"1 2\n3 x4\n5 6\n",
         "1 word read as missing values, the first is \"x4\" in line 2, column 2"},
        {"\"t\n(s)\";U\n1;2\n3;x4\n", "is \"x4\" in line 4"},
        {"1 2\n2024-01-01 5\n2 3\n", "both times and numbers in column 1"},
        {"1,5\n", "though they could be decimal"},
        {"1,234,567\n2,345,678\n", "commas separate columns, though they could group digits"},
        {"t,U\n0,1\nPause\n1,2\nall,over\n",
         "2 lines of words below the first row passed over, the first is line 3"},
        {"1 2\n\nA 5 6\n# that was it\n",
         "1 line of words below the first row passed over, the first is line 3"},
        {"1;2\n\n" + many("words\n", 2000),
         "2000 lines of words below the first row passed over, the first is line 3"},
        {"1;2\nNA;broken\n3;4\n",
         "1 word read as missing values, the first is \"broken\" in line 2, column 2"},
        {"1;2\n;;note\n3;4\n", "left out, since they hold words: column 3"},
        {"Run 7\n1;<0.5\n3;4\n", "1 line with a leading number taken for words above the rows, the "
                                 "first is line 2"},
        {"t,U\n1,2,3,4,5,6,7,8,9,10,11\n",
         "column 3, column 4, column 5, column 6, column 7, column 8, "
         "column 9, column 10 and 1 more"},
        {"t,U\n1,234.5,2\n", "more columns than names, without one: column 3"},
        {"x,a,b\n1,2,\n", "more names than columns, not used: \"b\""},
        {"by hand\n1\n", ""},
        {"T,state,R\n1,OK,2\n", "words: \"state\""},
        {"Points,2\nt,U\ns,V\n\n0,1\n1,2,\n", ""}};
    for (const auto &[text, want] : cases) {
        testing::internal::CaptureStderr();
        readDataFile(text, '.');
        const std::string logged = testing::internal::GetCapturedStderr();
        EXPECT_NE(logged.find(want), std::string::npos) << text << logged;
        EXPECT_EQ(std::count(logged.begin(), logged.end(), '\n'), *want == '\0' ? 0 : 1)
            << text << logged;
    }
}

TEST(DataText, RefusesWhatHoldsNoNumbersOrTooMany) {
    const std::string wide(20'000, ',');
    const std::pair<std::string, const char *> cases[] = {
        {"\n# 1 2\n", "data text has no numbers, nothing but empty lines and comments"},
        {"no numbers\n", "data text has no numbers: line 1, cell 1: \"no\" is no number"},
        {"x,y\n# 1\n\n,five,six\nseven\n",
         "data text has no numbers: line 4, cell 2: \"five\" is no number"},
        {std::string("1 2\n\0", 5), "data text has a NUL byte"},
        {many("1\n", 6'000) + wide + "1\n", "data text has too many values"},
        {std::string(600'000, ';') + "1\n\n" + std::string(400'000, ';') + "1",
         "data text has too many columns"}};
    for (const auto &c : cases) EXPECT_EQ(refusalOf([&] { readDataText(c.first, '.'); }), c.second);
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

    // what is just long enough is written, though its length is estimated first
    const Column many = column("2b", std::vector<double>(100'000, 0.1));
    std::string whole, cut;
    writeDataText({&many}, '.', whole, 400'005);
    EXPECT_EQ(whole.substr(0, 9) + std::to_string(whole.size()), "\"2b\"\n0.1\n400005");
    EXPECT_THROW(writeDataText({&many}, '.', cut, 400'000), Refusal);
}

// Any bit pattern is a number that must come back, whatever the separator and the names.
TEST(DataText, ReadsBackWhatItWroteBitForBit) {
    std::vector<double> numbers{0.0, -0.0, 5e-324, INFINITY, -INFINITY, 999999, 0.1 + 0.2, nan_};
    std::mt19937_64 random(7);
    while (numbers.size() < 400) {
        const auto number = std::bit_cast<double>(random());
        if (number == number) numbers.push_back(number);
    }
    std::vector<std::string> names{"",     "a b",        "-",        "nan",    "12", "1e5",
                                   "1.5V", "say \"a\"",  "it's 'b'", "\"'\\.", "#1", "%",
                                   "//a",  "2024-01-01", "12:30",    "1.5D3",  "NA", "**",
                                   "(s)",  "x;y,",       "2b",       "µ",      "'",  "a\\b c"};
    constexpr std::string_view characters = "aE1\"5' .,;:#%-+/()\\";
    while (names.size() < 300) {
        std::string &name = names.emplace_back(names.size() % 2 == 0 ? "" : "1");
        for (std::size_t n = 1 + random() % 6; n > 0; --n)
            name += characters[random() % characters.size()];
        name += 'z';
    }
    for (const char separator : {'.', ','}) {
        Table written{column("\xEF\xBB\xBFz", numbers), {}, {}};
        for (const std::string &name : names) written.y.push_back(column(name, numbers));
        std::vector<const Column *> columns{&written.x};
        for (const Column &y : written.y) columns.push_back(&y);
        std::string text;
        writeDataText(columns, separator, text);
        EXPECT_TRUE(read(text, separator) == textOf(written)) << separator; // of 17 digits
    }
}
