#include "plotwerk/model/ranges.h"

#include "tests/plotwerk/model/documents.h"

#include <cmath>

using namespace plotwerk;

static std::string textOf(const Range &range) {
    char text[64];
    std::snprintf(text, sizeof text, "%g..%g", range.min, range.max);
    return text;
}

static Document ranged() {
    Table t = table({-1, 1, 5, 9}, {column("a", {2, -3, 4, nan_}), column("hidden", {0, 99, 0, 0}),
                                    column("right", {7, infinity, 8, 9})});
    t.y[1].look.visible = false;
    t.y[2].look.rightY = true;
    t.y[2].look.upperX = true;
    return documentOf(t);
}

TEST(Ranges, UnsetLimitsFollowTheVisibleDataOfTheAxis) {
    Document document = ranged();
    EXPECT_EQ(textOf(rangeOf(document, xAxis)), "-1..5");
    EXPECT_EQ(textOf(rangeOf(document, yAxis)), "-3..4");
    EXPECT_EQ(textOf(rangeOf(document, upperXAxis)), "-1..9");
    EXPECT_EQ(textOf(rangeOf(document, rightYAxis)), "7..9");
    document.axes[xAxis].logarithmic = true;
    document.sources[0].tables[0].x.values[0] = 0;
    EXPECT_EQ(textOf(rangeOf(document, xAxis)), "1..5");
    EXPECT_TRUE(std::isnan(rangeOf(Document(), xAxis).min));
}

// Columns of errors are no data of their own; where they are drawn as bars these count.
TEST(Ranges, ShowErrorBarsButNotColumnsOfErrors) {
    Document document = documentOf(
        table({1, 2, 3}, {column("a", {4, 5, nan_}), column("a error", {4.5, 0.5, 90}),
                          column("x error", {0.5, -7, 0}), column("b error", {2, 2, 2})}));
    EXPECT_EQ(textOf(rangeOf(document, yAxis)), "2..5") << "there is no b";
    Column &a = document.sources[0].tables[0].y[0];
    a.look.yError = a.look.xError = true;
    EXPECT_EQ(textOf(rangeOf(document, yAxis)), "-0.5..8.5");
    EXPECT_EQ(textOf(rangeOf(document, xAxis)), "0.5..3");
    EXPECT_EQ(textOf(fitRangeOf(document)), "0.5..3");
    document.axes[yAxis].logarithmic = true;
    EXPECT_EQ(textOf(rangeOf(document, yAxis)), "2..8.5");
    Document pair =
        documentOf(table({1}, {column("a", {4}), column("a +", {2}), column("a -", {1})}));
    pair.sources[0].tables[0].y[0].look.yError = true;
    EXPECT_EQ(textOf(rangeOf(pair, yAxis)), "3..6");
    a.rank = 1;
    a.fitData = true;
    setLocalRange(document, false);
    EXPECT_EQ(textOf(document.axes[yAxis].range), "4..8.5");
    EXPECT_EQ(textOf(fitRangeOf(document)), "1..2") << "points, not bars";
}

TEST(Ranges, LimitsAreSetSinglyTogetherAndUnset) {
    // limits, and the range then, or why it is refused
    const std::tuple<double, double, const char *> steps[] = {
        {0, nan_, "0..5"},
        {nan_, 3, "0..3"},
        {4, nan_, "a range can't go from 4 to 3"},
        {20, 10, "10..20"},
        {1, 1, "a range can't go from 1 to 1"},
        {1, infinity, "a range can't be infinite"},
        {nan_, nan_, "-1..5"},
        {5, nan_, "5..nan"}, // no data above
        {nan_, nan_, "-1..5"},
        {nan_, -1, "nan..-1"}};
    Document document = ranged();
    for (const auto &step : steps) {
        const std::string before = textOf(rangeOf(document, xAxis));
        const std::string refused =
            refusalOf([&] { setRange(document, xAxis, std::get<0>(step), std::get<1>(step)); });
        const std::string after = textOf(rangeOf(document, xAxis));
        EXPECT_EQ(refused.empty() ? after : refused, std::get<2>(step));
        EXPECT_TRUE(refused.empty() || after == before) << refused;
    }
    setRange(document, rightYAxis, 1, 2);
    rangeOverAll(document);
    EXPECT_EQ(textOf(rangeOf(document, rightYAxis)), "7..9");
}

TEST(Ranges, LocalOnesAreTheSelectionsThatOfTheFitIsItsDatas) {
    Document document = ranged();
    std::vector<Column> &columns = document.sources[0].tables[0].y;
    EXPECT_THROW(setLocalRange(document, false), Refusal);
    columns[1].rank = 1;
    setLocalRange(document, false);
    EXPECT_EQ(textOf(document.axes[yAxis].range), "0..99");
    EXPECT_TRUE(std::isnan(document.axes[rightYAxis].range.min));
    columns[2].rank = 2;
    setLocalRange(document, true);
    EXPECT_EQ(textOf(document.axes[xAxis].range), "-1..9");
    EXPECT_EQ(textOf(document.axes[upperXAxis].range), "-1..9");

    EXPECT_EQ(textOf(fitRangeOf(document)), "-1..5") << "the x axis's data";
    for (Column &column : columns) column.look.sum = 2;
    EXPECT_EQ(textOf(fitRangeOf(document)), "-1..5") << "of rows, not of means";
    for (Column &column : columns) column.look.sum = 1;
    columns[2].fitData = true;
    EXPECT_EQ(textOf(fitRangeOf(document)), "-1..9");
    setFitRange(document, 2, nan_);
    EXPECT_EQ(textOf(fitRangeOf(document)), "2..9");
}
