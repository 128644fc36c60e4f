#include "plotwerk/model/points.h"

#include "plotwerk/model/curves.h"
#include "tests/plotwerk/model/documents.h"

#include <cmath>

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
        {"below, with gaps", {nan_, 0, nan_, 2, nan_}, {9, 1, 9, 5, 9}, -1, 0, -1},
        {"one x only", {nan_, 1, nan_}, {9, 5, 9}, 1, 5, 1},
        {"above it", {nan_, 1, nan_}, {9, 5, 9}, 2, 0, 1},
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
