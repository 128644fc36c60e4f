#include "plotwerk/data/exchange.h"

#include "plotwerk/model/palette.h"
#include "plotwerk/model/selection.h"
#include "tests/plotwerk/model/documents.h"

#include <regex>
#include <set>

using namespace plotwerk;

TEST(ReplaceData, ExchangesTheTablesAndKeepsWhatTheUserMadeOfThem) {
    Document document = sample();
    Column &b = document.sources[0].tables[0].y[1];
    b.rank = 1;
    b.fitData = b.marked = b.look.dashed = true;
    replaceData(document, "A", "t u v\n1 2 3\n", '.');
    EXPECT_EQ(textOf(document), "A: t=1 u=2 v=3 | B: x=1 a=6");
    const Column &v = document.sources[0].tables[0].y[1];
    EXPECT_TRUE(v.rank == 1 && v.fitData && v.marked && v.look.dashed);

    replaceData(document, "B", "1 2 3\n", '.');
    const Column &added = document.sources[1].tables[0].y[1];
    EXPECT_EQ(added.look.lineColour.green, palette[3].green)
        << "after two curves of A and one of B";
    replaceData(document, "", "1\n", '.');
    EXPECT_EQ(textOf(document), "A: t=1 u=2 v=3 | B: X=1 Y1=2 Y2=3 | Data: X=0 Y1=1");
    for (const auto read : {replaceData, appendData, addData})
        EXPECT_NE(refusalOf(document, [&](auto &d) { read(d, "new", "none", '.'); }), "");
}

TEST(LooksOfNewCurves, DifferForFiveRoundsOfColoursByLineAndSymbol) {
    std::set<std::vector<double>> lines;
    for (int i = 0; i < 35; ++i) {
        const CurveLook look = lookOfNewCurve(i);
        std::vector<double> line{look.lineColour.red, look.lineColour.green, look.lineColour.blue};
        if (look.dashed) line.insert(line.end(), look.dashLength.begin(), look.dashLength.end());
        EXPECT_TRUE(lines.insert(line).second) << i;
        EXPECT_EQ(look.dashed, i >= 7);
        EXPECT_EQ(look.symbol[0], 2 * (i / 7)) << "filled ones";
    }
}

TEST(AppendData, ContinuesTheTablesOfAGrowingMeasurement) {
    // tables, what is appended, and all then
    const std::tuple<const char *, const char *, const char *> cases[] = {
        {"t a\n1 2\n", "u b\n3 4\n5 6\n", "S: t=1,3,5 a=2,4,6"},
        {"1 2\n", "3 4 5\n", "S: X=1 Y1=2; X=3 Y1=4 Y2=5"},
        {"1 2\n\n3 4\n", "5 6\n", "S: X=1 Y1=2; X=3,5 Y1=4,6"},
        {"1 2\n", "3 4\n\n5 6\n", "S: X=1,3 Y1=2,4; X=5 Y1=6"},
        // rows are counted on below x that is 0, 1, 2, ..., as far as it goes
        {"7\n8\n", "9\n", "S: X=0,1,2 Y1=7,8,9"},
        {"7\n", "5 8\n", "S: X=0,5 Y1=7,8"},
        {"5 7\n1 8\n", "9\n", "S: X=5,1 Y1=7,8; X=0 Y1=9"},
        {"0 7\n5 8\n", "9\n", "S: X=0,5 Y1=7,8; X=0 Y1=9"}};
    for (const auto &[first, more, want] : cases) {
        Document document;
        appendData(document, "S", first, '.');
        appendData(document, "S", more, '.');
        EXPECT_EQ(textOf(document), want);
    }
    Document document;
    appendData(document, "S", "1 2\n", '.');
    Column &curve = document.sources[0].tables[0].y[0];
    curve.drawnByFit = true;
    appendData(document, "S", "3 4 5\n", '.');
    const std::vector<Table> &tables = document.sources[0].tables;
    EXPECT_FALSE(tables[0].y[0].drawnByFit) << "it is the user's now";
    EXPECT_NE(tables[1].y[0].look.lineColour.blue, tables[0].y[0].look.lineColour.blue);
}

TEST(AddData, TakesAFreeNameHoweverManyAreTaken) {
    Document document = sample();
    const std::regex free("Clipboard( \\d\\d:\\d\\d:\\d\\d(#\\d+)?)?");
    std::set<std::string> names;
    for (int i = 0; i < 30; ++i) {
        addData(document, "Clipboard", "1 2\n", '.');
        const std::string &name = document.sources.back().name;
        EXPECT_TRUE(names.insert(name).second && std::regex_match(name, free)) << name;
    }
}

TEST(DataTextOfSelection, HasABlockForEachTable) {
    Document document = sample();
    selectByIndex(document, {1, 2}, false);
    selectByIndex(document, {0, 0}, true);
    EXPECT_EQ(dataTextOfSelection(document, true, '.'),
              "x\tb\ta\n1\t3\t1\n2\t4\t2\n\nx\tc\n1\t5\n");
    EXPECT_EQ(dataTextOfSelection(document, false, '.'), "b\ta\n3\t1\n4\t2\n\nc\n5\n");
}
