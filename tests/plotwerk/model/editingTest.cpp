#include "plotwerk/model/editing.h"

#include "plotwerk/model/curves.h"
#include "plotwerk/model/points.h"
#include "plotwerk/model/selection.h"
#include "tests/plotwerk/model/documents.h"

#include <cmath>
#include <limits>
#include <random>

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
        EXPECT_FALSE(document.changed);
    }
}

TEST(Editing, RenamesAndShowsTheSelectionInFront) {
    Document document = sample();
    for (const CurveRef &curve : curvesOf(document)) columnOf(document, curve).look.visible = false;
    document.sources[0].tables[1].y[0].look.layer = 7;
    selectByIndex(document, {3, 3}, false);
    selectByIndex(document, {1, 1}, true);
    renameSelection(document, "n");
    showSelection(document);
    EXPECT_EQ(textOf(document), "A: x=1,2 a=1,2 n=3,4; x=1 c=5 | B: x=1 n=6");
    EXPECT_FALSE(document.sources[0].tables[0].y[0].look.visible);
    EXPECT_TRUE(document.sources[0].tables[0].y[1].look.visible);
    EXPECT_EQ(document.sources[1].tables[0].y[0].look.layer, 8);
    EXPECT_EQ(document.sources[0].tables[0].y[1].look.layer, 9);
    EXPECT_TRUE(document.changed);
}

TEST(Editing, DeletesEmptiedTablesAndSources) {
    Document document = sample();
    document.markWalk = 3;
    selectByIndex(document, {1, -1}, false);
    deleteSelection(document);
    EXPECT_EQ(textOf(document), "A: x=1,2 a=1,2");
    EXPECT_EQ(document.markWalk, 0);
    deleteAllCurves(document);
    EXPECT_EQ(textOf(document), "");
}

TEST(Sorting, MovesWholeRowsStablyWithMissingOnesLast) {
    const Table unsorted =
        table({3, nan_, 1, 3, 2}, {column("a", {5, 4, nan_, 2, 5}), column("i", {0, 1, 2, 3, 4})});
    Document document = selectedOf(unsorted);
    valueAtX(document, 1, -1);
    sortByX(document);
    EXPECT_EQ(textOf(document), "Data: x=1,2,3,3,nan a=nan,5,5,2,4 i=2,4,0,3,1");
    EXPECT_EQ(valueAtX(document, 2.5, -1), 5);

    document = selectedOf(unsorted);
    sortBySelection(document, true);
    EXPECT_EQ(textOf(document), "Data: x=3,nan,3,2,1 a=2,4,5,5,nan i=3,1,0,4,2");
    document = selectedOf(unsorted);
    sortBySelection(document, false);
    EXPECT_EQ(textOf(document), "Data: x=3,2,nan,3,1 a=5,5,4,2,nan i=0,4,1,3,2");
}

TEST(Sorting, ByXTakesAllTablesBySelectionJustTheFirst) {
    Document document = sample();
    document.sources[0].tables[0] = table({2, 1}, {column("a", {1, 2})});
    document.sources[1].tables[0] = table({2, 1}, {column("b", {1, 2})});
    selectByName(document, "B", -1, "", false);
    selectByName(document, "A", 1, "", true);
    sortBySelection(document, false);
    EXPECT_EQ(textOf(document), "A: x=2,1 a=1,2; x=1 c=5 | B: x=1,2 b=2,1");
    sortByX(document);
    EXPECT_EQ(textOf(document), "A: x=1,2 a=2,1; x=1 c=5 | B: x=1,2 b=2,1");
}

TEST(Swapping, ExchangesNamesAndValuesAndForgetsTheOrder) {
    Document document = sample();
    valueAtX(document, 1, 0);
    document.sources[0].tables[0].y[1].values = {9, 8};
    selectByIndex(document, {1, 1}, false);
    selectByIndex(document, {0, 0}, true);
    swapSelectionWithX(document);
    EXPECT_EQ(textOf(document.sources[0].tables[0]), "b=9,8 a=1,2 x=1,2");
    EXPECT_EQ(document.sources[0].tables[0].y[1].place, 1);
    EXPECT_EQ(valueAtX(document, 8.5, 0), 1.5);
}

TEST(Derivative, IsExactForParabolasOnAnyGrid) {
    const struct {
        const char *what;
        std::vector<double> x, y;
        const char *want;
    } cases[] = {
        {"unequal steps", {0, 1, 3}, {0, 1, 9}, "a'=0,2,6"},
        {"descending", {4, 2, 1, -1}, {16, 4, 1, 1}, "a'=8,4,2,-2"},
        {"gaps", {0, nan_, 1, 2, 3}, {0, 5, 1, nan_, 9}, "a'=0,nan,2,nan,6"},
        {"two points", {1, 3}, {1, 5}, "a'=2,2"},
        {"one point", {1}, {1}, "a'=nan"},
        {"equal x", {0, 1, 1, 2, 3}, {0, 1, 4, 4, 4}, "a'=nan,nan,nan,0,0"},
    };
    for (const auto &c : cases) {
        Document document = selectedOf(table(c.x, {column("a", c.y), column("b", c.y)}));
        differentiateSelection(document);
        ASSERT_EQ(document.sources[0].tables[0].y.size(), 3u) << c.what;
        EXPECT_EQ(textOf(document.sources[0].tables[0].y[2]), c.want) << c.what;
    }
}

TEST(CreatedCurve, RunsFromMinToMaxAndStandsAfterTheSelectionsTable) {
    Document document = sample();
    selectByIndex(document, {0, 0}, false);
    createCurve(document, 0, 1, 0.25, 10, -1);
    EXPECT_EQ(textOf(document.sources[0].tables[1]), "X=0,0.25,0.5,0.75,1 Y1=10,9,8,7,6");
    EXPECT_EQ(textOf(document.sources[0].tables[2]), "x=1 c=5");

    Document empty;
    createCurve(empty, 1, 1, 5, 2, 0);
    EXPECT_EQ(textOf(empty), "Data: X=1 Y1=2");
    createCurve(empty, 0, 0.3, 0.1, 0, 1); // 0.3 / 0.1 is just below 3
    EXPECT_EQ(empty.sources[0].tables[1].x.values.size(), 4u);
    EXPECT_EQ(empty.sources[0].tables[1].x.values.back(), 0.3);
    createCurve(empty, 0, 1, 0.3, 0, 1);
    EXPECT_EQ(empty.sources[0].tables[2].x.values.size(), 4u);
}

TEST(CreatedCurve, IsRefusedWhenItWouldNotEnd) {
    constexpr double inf = std::numeric_limits<double>::infinity();
    const double cases[][5] = {{0, 1, 0, 0, 1},   {0, 1, nan_, 0, 1},   {0, 1, -1, 0, 1},
                               {1, 0, 1, 0, 1},   {0, inf, 1, 0, 1},    {nan_, 1, 1, 0, 1},
                               {0, 1e8, 1, 0, 1}, {0, 1, 1e-320, 0, 1}, {0, 1, 1, nan_, 1},
                               {0, 1, 1, 0, inf}};
    for (const auto &c : cases) {
        Document document = sample();
        EXPECT_NE(
            refusalOf(document, [&](auto &d) { createCurve(d, c[0], c[1], c[2], c[3], c[4]); }), "")
            << c[0] << ' ' << c[1] << ' ' << c[2] << ' ' << c[3] << ' ' << c[4];
    }
}

namespace {

// Gaussian peaks of these heights and widths (full, at half height) at these positions, on 0..999.
struct Peak {
    double position, height, width;
};

Document peaks(const std::vector<Peak> &all, double noise = 0) {
    std::mt19937 random(3);
    std::uniform_real_distribution<double> uniform(-noise, noise);
    std::vector<double> x(1000);
    std::vector<double> y(1000);
    for (int i = 0; i < 1000; ++i) {
        x[i] = 100 + 0.5 * i;
        y[i] = uniform(random);
        for (const Peak &peak : all)
            y[i] += peak.height * std::exp2(-4 * std::pow((i - peak.position) / peak.width, 2));
    }
    return selectedOf(table(x, {column("a", y)}));
}

// The points (not x) of the extremes that are found.
std::vector<int> extremes(Document &document, bool maxima, int width, double height) {
    const std::string refused =
        refusalOf(document, [&](auto &d) { searchExtremes(d, maxima, !maxima, width, height); });
    std::vector<int> points;
    if (!refused.empty()) return points;
    for (const double x : document.sources[0].tables[1].x.values)
        points.push_back(static_cast<int>((x - 100) * 2));
    return points;
}

} // namespace

TEST(Extremes, AreThoseAtLeastSoWideAndHigh) {
    const std::vector<Peak> all{{100, 20, 30}, {300, 5, 30}, {500, 20, 4}, {700, 30, 200}};
    const struct {
        int width;
        double height;
        std::vector<int> want;
    } cases[] = {{10, 10, {100, 700}},
                 {10, 1, {100, 300, 700}},
                 {3, 10, {100, 500, 700}},
                 {100, 1, {700}},
                 {10, 25, {700}},
                 {10, 50, {}},
                 {-5, nan_, {100, 300, 500, 700}}};
    for (const auto &c : cases) {
        Document document = peaks(all);
        EXPECT_EQ(extremes(document, true, c.width, c.height), c.want)
            << c.width << ' ' << c.height;
    }
}

TEST(Extremes, LookThroughNoise) {
    Document document = peaks({{250, 20, 60}, {600, 20, 60}}, 0.5);
    const std::vector<int> found = extremes(document, true, 20, 10);
    ASSERT_EQ(found.size(), 2u);
    EXPECT_NEAR(found[0], 250, 10); // noise of 1 in 20 moves the highest point by this much
    EXPECT_NEAR(found[1], 600, 10);
}

TEST(Extremes, BecomeCurvesAfterTheTable) {
    Document document = peaks({{300, 20, 30}, {500, -20, 30}});
    Table second = table({1}, {column("z", {1})});
    document.sources[0].tables.push_back(second);
    searchExtremes(document, true, true, 10, 10);
    const std::vector<Table> &tables = document.sources[0].tables;
    ASSERT_EQ(tables.size(), 4u);
    EXPECT_EQ(textOf(tables[1]).substr(0, 20), "x=250 a maxima=20");
    EXPECT_EQ(textOf(tables[2]).substr(0, 21), "x=350 a minima=-20");
    EXPECT_EQ(textOf(tables[3]), textOf(second));
    EXPECT_TRUE(tables[1].y[0].look.marker);

    const std::string before = textOf(document);
    searchExtremes(document, false, false, 10, 10);
    EXPECT_EQ(textOf(document), before);
    EXPECT_EQ(refusalOf(document, [](auto &d) { searchExtremes(d, true, false, 10, 1e6); }),
              "the selected curves have no such extremes");
}

// Windows much wider than the blocks that the points are averaged in, and data without any peak.
TEST(Extremes, AreFoundInWideWindowsAndNoneInFlatOrShortData) {
    Document wide = peaks({{400, 20, 300}});
    EXPECT_EQ(extremes(wide, true, 250, 10), std::vector<int>{400});
    for (const std::size_t n : {0, 1, 2, 3, 1000}) {
        Document flat =
            selectedOf(table(std::vector<double>(n, 1), {column("a", std::vector<double>(n, 2))}));
        EXPECT_TRUE(extremes(flat, true, 10, 0).empty()) << n;
    }
}
