#include "plotwerk/model/editing.h"

#include "plotwerk/model/curves.h"
#include "plotwerk/model/palette.h"
#include "plotwerk/model/points.h"
#include "plotwerk/model/selection.h"
#include "tests/plotwerk/model/documents.h"

#include <cmath>

using namespace plotwerk;

TEST(Editing, IsRefusedWithoutASelection) {
    void (*const edits[])(Document &) = {showSelection,
                                         deleteSelection,
                                         sortByX,
                                         swapSelectionWithX,
                                         differentiateSelection,
                                         [](Document &d) { renameSelection(d, "n"); },
                                         [](Document &d) { sortBySelection(d, true); },
                                         [](Document &d) { searchExtremes(d, true, true, 1, 0); }};
    for (const auto edit : edits) {
        Document document = sample();
        EXPECT_EQ(refusalOf(document, edit), "no curve is selected");
    }
}

TEST(Editing, RenamesTheSelectionAndShowsItInFront) {
    Document document = sample();
    for (const CurveRef &curve : curvesOf(document)) columnOf(document, curve).look.visible = false;
    document.sources[0].tables[1].y[0].look.layer = 7; // of those that aren't selected the highest
    document.sources[1].tables[0].y[0].look.layer = 20;
    selectByIndex(document, {3, 3}, false);
    selectByIndex(document, {1, 1}, true);
    renameSelection(document, "n");
    showSelection(document);
    EXPECT_EQ(textOf(document), "A: x=1,2 a=1,2 n=3,4; x=1 c=5 | B: x=1 n=6");
    const std::vector<Column> &first = document.sources[0].tables[0].y;
    EXPECT_TRUE(!first[0].look.visible && first[1].look.visible);
    EXPECT_EQ(document.sources[1].tables[0].y[0].look.layer, 8);
    EXPECT_EQ(first[1].look.layer, 9);
}

// Which takes minutes where each curve looks at all the others.
TEST(Editing, RenamesManyCurvesOfOneTable) {
    Document document = documentOf(table({0}, std::vector<Column>(30'000, column("a", {0}))));
    selectByIndex(document, {0, 29'999}, false);
    renameSelection(document, "n");
    for (const Column &each : document.sources[0].tables[0].y) ASSERT_EQ(each.name, "n");
}

TEST(Sorting, MovesWholeRowsStablyWithMissingOnesLast) {
    const Table unsorted =
        table({3, nan_, 1, 3, 2}, {column("a", {5, 4, nan_, 2, 5}), column("i", {0, 1, 2, 3, 4})});
    Document byX = selectedOf(unsorted), ascending = byX, descending = byX;
    valueAtX(byX, 1, -1);
    sortByX(byX);
    EXPECT_EQ(textOf(byX), "Data: x=1,2,3,3,nan a=nan,5,5,2,4 i=2,4,0,3,1");
    EXPECT_EQ(valueAtX(byX, 2.5, -1), 5);
    sortBySelection(ascending, true);
    EXPECT_EQ(textOf(ascending), "Data: x=3,nan,3,2,1 a=2,4,5,5,nan i=3,1,0,4,2");
    sortBySelection(descending, false);
    EXPECT_EQ(textOf(descending), "Data: x=3,2,nan,3,1 a=5,5,4,2,nan i=0,4,1,3,2");
}

TEST(Sorting, ByXTakesAllTablesBySelectionJustTheFirst) {
    Document document = sample();
    for (Source &source : document.sources)
        source.tables = {table({2, 1}, {column(source.name, {1, 2})})};
    selectByName(document, "B", -1, "", false);
    selectByName(document, "A", 1, "", true);
    sortBySelection(document, false);
    EXPECT_EQ(textOf(document), "A: x=2,1 A=1,2 | B: x=1,2 B=2,1");
    sortByX(document);
    EXPECT_EQ(textOf(document), "A: x=1,2 A=2,1 | B: x=1,2 B=2,1");
}

TEST(Swapping, ExchangesNamesAndValuesAndForgetsTheOrder) {
    Document document = sample();
    Table &table = document.sources[0].tables[0];
    valueAtX(document, 1, 0);
    table.y[1].values = {9, 8};
    table.y[1].rank = 1;
    table.y[0].rank = 2;
    table.x.isTime = true;
    swapSelectionWithX(document);
    EXPECT_EQ(textOf(table), "b=9,8 a=1,2 x=1,2");
    EXPECT_TRUE(table.y[1].isTime && !table.x.isTime && table.y[1].rank == 1);
    EXPECT_EQ(valueAtX(document, 8.5, 0), 1.5);
}

TEST(Derivative, IsExactForParabolasOnAnyGrid) {
    const std::tuple<std::vector<double>, std::vector<double>, const char *> cases[] = {
        {{0, 1, 3}, {0, 1, 9}, "a'=0,2,6"},
        {{4, 2, 1, -1}, {16, 4, 1, 1}, "a'=8,4,2,-2"},
        {{0, nan_, 1, 2, 3}, {0, 5, 1, nan_, 9}, "a'=0,nan,2,nan,6"},
        {{1, 3}, {1, 5}, "a'=2,2"},
        {{0, 1, 1, 2, 3}, {0, 1, 4, 4, 4}, "a'=nan,nan,nan,0,0"}};
    for (const auto &[x, y, want] : cases) {
        Document document = selectedOf(table(x, {column("a", y), column("b", y)}));
        std::vector<Column> &curves = document.sources[0].tables[0].y;
        curves[0].look.upperX = true;
        curves[0].look.sum = 3;
        differentiateSelection(document);
        ASSERT_EQ(curves.size(), 3u) << want;
        EXPECT_EQ(textOf(curves[2]), want);
        EXPECT_TRUE(curves[2].look.upperX && curves[2].look.sum == 3) << "over the same x";
    }
}

TEST(CreatedCurve, RunsFromMinToMaxAndStandsAfterTheSelectionsTable) {
    Document document = sample();
    selectByIndex(document, {0, 0}, false);
    createCurve(document, 0, 1, 0.25, 10, -1);
    EXPECT_EQ(textOf(document.sources[0].tables[1]), "X=0,0.25,0.5,0.75,1 Y1=10,9,8,7,6");
    EXPECT_EQ(textOf(document.sources[0].tables[2]), "x=1 c=5");

    document = sample();
    createCurve(document, 0, 0, 1, 7, 0);
    const Table &last = document.sources[1].tables[1];
    EXPECT_EQ(textOf(last), "X=0 Y1=7") << "after the last source's";
    EXPECT_EQ(last.y[0].look.lineColour.green, palette[4].green);

    Document empty;
    createCurve(empty, 1, 1, 5, 2, 0);
    createCurve(empty, 0, 1, 0.75, 0, 1);
    createCurve(empty, 0, 0.3, 0.1, 0, 1); // 0.3 / 0.1 is just below 3
    EXPECT_EQ(textOf(empty), "Data: X=1 Y1=2; X=0,0.75 Y1=0,1; X=0,0.10000000000000001,"
                             "0.20000000000000001,0.29999999999999999 Y1=0,1,2,3");
}

TEST(CreatedCurve, IsRefusedWhenItWouldNotEnd) {
    Document document = sample();
    const double cases[][5] = {
        {0, 1, 0, 0, 1},      {0, 1, nan_, 0, 1},     {0, 1, -1, 0, 1},
        {1, 0, 1, 0, 1},      {0, infinity, 1, 0, 1}, {0, 1e8, 1, 0, 1},
        {0, 1, 1e-320, 0, 1}, {0, 1, 1, nan_, 1},     {0, 1, 1, 0, infinity}};
    for (const auto &[x, end, step, y, rise] : cases)
        EXPECT_THROW(createCurve(document, x, end, step, y, rise), Refusal)
            << x << ' ' << end << ' ' << step << ' ' << y << ' ' << rise;
    EXPECT_EQ(textOf(document), textOf(sample()));
}

namespace {

// Gaussian peaks of these heights and widths (full, at half height) at these positions, on 0..999.
struct Peak {
    double position, height, width;
};

Document peaks(const std::vector<Peak> &all, double noise = 0.3) {
    std::vector<double> x(1000);
    std::vector<double> y(1000);
    for (int i = 0; i < 1000; ++i) {
        x[i] = 100 + 0.5 * i;
        y[i] = noise * std::sin(13.0 * i * i);
        for (const Peak &peak : all)
            y[i] += peak.height * std::exp2(-4 * std::pow((i - peak.position) / peak.width, 2));
    }
    return selectedOf(table(x, {column("a", y)}));
}

// The points (not x) of the maxima that are found, to the nearest fifty.
std::vector<long> maxima(Document document, int width, double height) {
    std::vector<long> points;
    if (refusalOf(document, [&](auto &d) {
            searchExtremes(d, true, false, width, height);
        }).empty())
        for (const double x : document.sources[0].tables[1].x.values)
            points.push_back(std::lround((x - 100) / 25) * 50);
    return points;
}

} // namespace

TEST(Extremes, AreThoseAtLeastSoWideAndHigh) {
    const Document four = peaks({{100, 20, 30}, {300, 5, 30}, {500, 20, 4}, {700, 30, 200}});
    const Document twins = peaks({{400, 20, 30}, {460, 20, 30}}, 0); // 17.5 above the valley
    const Document spiked = peaks({{400, 30, 8}, {430, 20, 30}}, 0); // no peak beside one
    const Document broad = peaks({{400, 20, 300}}); // wider than the blocks that are averaged
    const std::tuple<const Document &, int, double, std::vector<long>> cases[] = {
        {twins, 5, 18, {400, 450}},     {spiked, 20, 5, {450}},
        {four, 10, 10, {100, 700}},     {four, 10, 2, {100, 300, 700}},
        {four, 3, 10, {100, 500, 700}}, {four, 100, 1, {700}},
        {four, 10, 25, {700}},          {four, 10, 50, {}},
        {broad, 250, 10, {400}}};
    for (const auto &[document, width, height, want] : cases)
        EXPECT_EQ(maxima(document, width, height), want) << width << ' ' << height;
    for (const std::size_t n : {0, 1, 2, 3, 1000}) {
        const std::vector<double> flat(n, 2);
        EXPECT_TRUE(maxima(selectedOf(table(flat, {column("a", flat)})), -5, nan_).empty()) << n;
    }
}

TEST(Extremes, BecomeCurvesAfterTheTableOnTheSameAxes) {
    Document document = peaks({{300, 20, 30}, {500, -20, 30}}, 0);
    std::vector<Table> &tables = document.sources[0].tables;
    tables[0].y[0].look.rightY = tables[0].x.isTime = tables[0].y[0].isTime = true;
    tables.push_back(table({1}, {column("z", {1})}));
    searchExtremes(document, true, true, 10, 10);
    ASSERT_EQ(tables.size(), 4u);
    EXPECT_EQ(textOf(tables[1]).substr(0, 17), "x=250 a maxima=20");
    EXPECT_EQ(textOf(tables[2]).substr(0, 18), "x=350 a minima=-20");
    EXPECT_EQ(textOf(tables[3]), "x=1 z=1");
    const Column &minima = tables[2].y[0];
    EXPECT_TRUE(minima.look.marker && minima.look.rightY && tables[2].x.isTime && minima.isTime);
    EXPECT_NE(tables[1].y[0].look.lineColour.blue, tables[2].y[0].look.lineColour.blue);

    const std::string before = textOf(document);
    searchExtremes(document, false, false, 10, 10);
    EXPECT_EQ(textOf(document), before);
    EXPECT_EQ(refusalOf(document, [](auto &d) { searchExtremes(d, true, false, 10, 1e6); }),
              "the selected curves have no such extremes");
}

TEST(SearchExtremes, EndsWhereDifferencesOverflow) {
    for (const double huge : {1e308, infinity}) {
        Document document = selectedOf(
            table({0, 1, 2, 3, 4, 5, 6, 7}, {column("a", {0, 1, huge, huge, 1, 0, 5, 0})}));
        refusalOf(document, [](auto &d) { searchExtremes(d, true, true, 2, 0); });
        EXPECT_EQ(textOf(document.sources[0].tables[0].x), "x=0,1,2,3,4,5,6,7") << huge;
    }
}
