#include "plotwerk/model/points.h"

#include "plotwerk/model/curves.h"
#include "tests/plotwerk/model/documents.h"

#include <cmath>
#include <tuple>

using namespace plotwerk;

static Document curve(std::vector<double> x, std::vector<double> y) {
    return documentOf(table(std::move(x), {column("a", std::move(y))}));
}

TEST(Points, ValueAndIndexAtX) {
    const struct {
        const char *what;
        std::vector<double> x, y;
        double at, value;
        int index;
    } cases[] = {
        {"below", {0, 2}, {1, 5}, -1, 0, -1},
        {"first", {0, 2}, {1, 5}, 0, 1, 0},
        {"between", {0, 2}, {1, 5}, 1, 3, 0},
        {"last", {0, 2}, {1, 5}, 2, 5, 1},
        {"above", {0, 2}, {1, 5}, 3, 0, 1},
        {"NaN", {0, 2}, {1, 5}, nan_, nan_, -1},
        {"empty", {}, {}, 0, 0, -1},
        {"single, at it", {1}, {5}, 1, 5, 0},
        {"one NaN y", {0, 1}, {1, nan_}, 0.5, 1, 0},
        {"last of equal x", {0, 1, 1, 1, 2}, {0, 1, 1, 1, 2}, 1, 1, 3},
        {"x without number", {nan_, 0, nan_, nan_, 2, nan_}, {9, 1, 9, 9, 5, 9}, 1, 3, 1},
        {"last x before a gap", {nan_, 0, nan_, nan_, 2, nan_}, {9, 1, 9, 9, 5, 9}, 2, 5, 4},
        {"above, with gaps", {nan_, 0, nan_, 2, nan_}, {9, 1, 9, 5, 9}, 3, 0, 3},
        {"one x only", {nan_, 1, nan_}, {9, 5, 9}, 1, 5, 1},
        {"no x at all", {nan_, nan_}, {9, 5}, 1, 0, -1},
        {"descending", {4, 2, 0}, {1, 5, 9}, 1, 7, 2},
        {"first of two segments", {0, 2, 0}, {0, 2, 8}, 1, 1, 2},
        {"not ascending, beyond a gap", {4, nan_, 0}, {1, 5, 9}, 5, 0, 0},
    };
    for (const auto &c : cases) {
        const Document document = curve(c.x, c.y);
        const double value = valueAtX(document, c.at, -1);
        EXPECT_TRUE(value == c.value || (std::isnan(value) && std::isnan(c.value))) << c.what;
        EXPECT_EQ(indexAtX(document, c.at, 0), c.index) << c.what;
    }
}

// What is known about x must not outlive the x it was found from.
TEST(Points, KnowledgeAboutXFollowsTheRows) {
    Document document = curve({0, 1}, {0, 1});
    Table &only = document.sources[0].tables[0];
    EXPECT_EQ(valueAtX(document, 0.5, -1), 0.5);
    const struct {
        double x, y, at, value; // of the row that is added, and what is read then
    } steps[] = {{3, 5, 2, 3}, {nan_, 7, 2, 3}, {4, 6, 3.5, 5.5}, {3.5, 0, 3.75, 5.75}};
    for (const auto &step : steps) {
        only.x.values.push_back(step.x);
        only.y[0].values.push_back(step.y);
        EXPECT_EQ(valueAtX(document, step.at, -1), step.value) << step.x;
    }
    EXPECT_FALSE(orderOfX(only).ascending);
}

TEST(Points, ValuesAreReadAndSetByIndex) {
    Document document = sample();
    setValueAtIndex(document, 1, 1, nan_);
    EXPECT_TRUE(std::isnan(valueAtIndex(document, 1, 1)));
    EXPECT_EQ(textOf(document.sources[0].tables[0]), "x=1,2 a=1,2 b=3,nan");
    for (const int index : {-1, 2})
        EXPECT_EQ(refusalOf(document, [&](auto &d) { setValueAtIndex(d, index, 1, 0); }),
                  "no point " + std::to_string(index) + " in \"b\"");
}

TEST(NearestPoint, IsMeasuredOnPaper) {
    // on paper x is squeezed a hundred times more than y: 12 cm for 0..1000, 8 cm for 0..8
    Document document =
        documentOf(table({0, 500, 1000}, {column("low", {0, 0, 0}), column("high", {8, 8, 8}),
                                          column("low error", {4, 4, 4})}));
    const struct {
        double x, y;
        int curve, index;
    } cases[] = {
        {400, 3.9, 0, 1}, {400, 4.1, 1, 1}, {240, 9, 1, 0}, {-50, -9, 0, 0}, {5000, 1, 0, 2}};
    for (const auto &c : cases) {
        const auto nearest = nearestPoint(document, c.x, c.y);
        ASSERT_TRUE(nearest) << c.x;
        EXPECT_EQ(nearest->curve, c.curve) << c.x;
        EXPECT_EQ(nearest->index, c.index) << c.x;
    }
    EXPECT_FALSE(nearestPoint(document, nan_, 0));
    EXPECT_FALSE(nearestPoint(Document(), 0, 0));
}

TEST(NearestPoint, CountsLinesWhereTheyAreDrawn) {
    // above the middle of a long line, and half as near to a lone point
    Document document = documentOf(table(
        {0, 10, nan_, 5}, {column("line", {0, 0, 9, nan_}), column("points", {nan_, nan_, 9, 3})}));
    EXPECT_EQ(nearestPoint(document, 5, 1)->curve, 0);
    std::vector<Column> &columns = document.sources[0].tables[0].y;
    columns[0].look.line = false;
    const auto nearest = nearestPoint(document, 5, 1);
    EXPECT_EQ(std::tuple(nearest->curve, nearest->index, nearest->x, nearest->y),
              std::tuple(1, 3, 5.0, 3.0));
    columns[1].look.visible = false;
    EXPECT_EQ(nearestPoint(document, 5, 1)->curve, 0);
}

TEST(NearestPoint, GoesByTheAxesOfTheCurve) {
    Document document = curve({1, 10, 100}, {1, 10, 1000});
    EXPECT_EQ(nearestPoint(document, 30, 100)->index, 1);
    document.axes[xAxis].logarithmic = document.axes[yAxis].logarithmic = true;
    EXPECT_EQ(nearestPoint(document, 40, 100)->index, 2);
    EXPECT_FALSE(nearestPoint(document, -1, 100));

    // the right axis shows 0..1 where the left one shows 0..1000, or 1000..0
    document = documentOf(table({0, 1}, {column("left", {0, 1000}), column("right", {1, 0})}));
    document.sources[0].tables[0].y[1].look.rightY = true;
    for (const bool reversed : {false, true}) {
        document.axes[yAxis].reversed = reversed;
        EXPECT_EQ(nearestPoint(document, 0, reversed ? 100 : 900)->curve, 1) << reversed;
    }
}
