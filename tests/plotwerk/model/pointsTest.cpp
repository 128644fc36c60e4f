#include "plotwerk/model/points.h"

#include "plotwerk/model/curves.h"
#include "tests/plotwerk/model/documents.h"

#include <cmath>

using namespace plotwerk;

static Document curve(std::vector<double> x, std::vector<double> y) {
    return documentOf(table(std::move(x), {column("a", std::move(y))}));
}

TEST(Points, ValueAndIndexAtX) {
    using Values = std::vector<double>;
    // x and y of a curve; where it is read, the value and the index there
    using Readings = std::vector<std::tuple<double, double, int>>;
    const std::tuple<Values, Values, Readings> cases[] = {
        {{0, 2},
         {1, 5},
         {{-1, 0, -1}, {0, 1, 0}, {1, 3, 0}, {2, 5, 1}, {3, 0, 1}, {nan_, nan_, -1}}},
        {{nan_, 0, nan_, nan_, 2, nan_},
         {9, 1, 9, 9, 5, 9},
         {{-1, 0, -1}, {1, 3, 1}, {2, 5, 4}, {3, 0, 4}}},
        {{nan_, 1, nan_}, {9, 5, 9}, {{1, 5, 1}, {2, 0, 1}}},
        {{nan_, nan_}, {9, 5}, {{1, 0, -1}}},
        {{}, {}, {{0, 0, -1}}},
        {{0, 1}, {1, nan_}, {{0.5, 1, 0}}},
        {{0, 1, 1, 1, 2}, {0, 1, 1, 1, 2}, {{1, 1, 3}}},
        // not ascending: the first of the segments
        {{4, 2, 0}, {1, 5, 9}, {{1, 7, 2}, {2, 5, 1}}},
        {{0, 2, 0}, {0, 2, 8}, {{1, 1, 2}}},
        {{4, nan_, 0}, {1, 5, 9}, {{5, 0, 0}}}};
    for (const auto &[x, y, readings] : cases)
        for (const auto &[at, value, index] : readings) {
            const Document document = curve(x, y);
            const double got = valueAtX(document, at, -1);
            EXPECT_TRUE(got == value || (std::isnan(got) && std::isnan(value))) << at;
            EXPECT_EQ(indexAtX(document, at, 0), index) << at << testing::PrintToString(x);
        }
}

// What is known about x must not outlive the x it was found from.
TEST(Points, KnowledgeAboutXFollowsTheRows) {
    Document document = curve({0, 1}, {0, 1});
    Table &only = document.sources[0].tables[0];
    EXPECT_EQ(valueAtX(document, 0.5, -1), 0.5);
    // the row that is added; where the curve is read then, and its value there
    for (const auto &[x, y, at, value] :
         {std::tuple{3., 5., 2., 3.}, {nan_, 7, 2, 3}, {4, 6, 3.5, 5.5}, {3.5, 0, 3.75, 5.75}}) {
        only.x.values.push_back(x);
        only.y[0].values.push_back(y);
        EXPECT_EQ(valueAtX(document, at, -1), value) << x;
    }
    EXPECT_FALSE(orderOfX(only).ascending);
}

TEST(Points, ValuesAreReadAndSetByIndex) {
    Document document = sample();
    setValueAtIndex(document, 1, 1, -nan_);
    EXPECT_EQ(textOf(document.sources[0].tables[0]), "x=1,2 a=1,2 b=3,nan");
    EXPECT_TRUE(std::isnan(valueAtIndex(document, 1, 1)));
    for (const int index : {-1, 2})
        EXPECT_EQ(refusalOf(document, [&](auto &d) { setValueAtIndex(d, index, 1, 0); }),
                  "no point " + std::to_string(index) + " in \"b\"");
}
