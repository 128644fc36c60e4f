#include "plotwerk/fit/modifyByFormula.h"
#include "plotwerk/fit/documentFormula.h"

#include "plotwerk/model/points.h"
#include "plotwerk/model/selection.h"
#include "tests/plotwerk/model/documents.h"

using namespace plotwerk;

TEST(ModifyByFormula, SetsValidPointsOfTheSelection) {
    Document document = documentOf(
        table({1, nan_, 3, 4}, {column("a", {1, 2, nan_, -4}), column("b", {16, 20, 25, 16})}));
    selectByIndex(document, {0, -1}, false);
    EXPECT_EQ(refusalOf(document, [](Document &d) { modifySelection(d, true); }), "no formula");
    setFormula(document, "2 * sqrt(y) + x");
    Table &only = document.sources[0].tables[0];
    only.x.isTime = only.y[1].isTime = true;
    modifySelection(document, true);
    EXPECT_TRUE(only.x.isTime && !only.y[1].isTime);
    EXPECT_EQ(textOf(document), "Data: x=1,nan,3,4 a=3,2,nan,nan b=9,20,13,12");

    setFormula(document, "-x");
    valueAtX(document, 3, 1); // what is known about x now must be forgotten
    modifySelection(document, false);
    EXPECT_FALSE(only.x.isTime);
    EXPECT_EQ(textOf(document.sources[0].tables[0].x), "x=-1,nan,3,4") << "as a has y";
    EXPECT_EQ(valueAtIndex(document, 0, 1), valueAtX(document, -1, 1));
}

TEST(ModifyByFormula, IsRefusedByItsTime) {
    const std::string tooLong = "would take too long (limit seconds)";
    const auto modify = [](Document &d) { modifySelection(d, true); };
    Document large = documentOf(
        table(std::vector<double>(2'000'000, 1e300), {column("a", {}), column("b", {})}));
    for (Column &each : large.sources[0].tables[0].y) each.values.resize(2'000'000);
    selectByIndex(large, {0, -1}, false);
    std::string text = "x"; // and the slope by y for the errors
    for (int i = 0; i < 20; ++i) text += "+sin(y+" + std::to_string(i) + ')';
    setFormula(large, text);
    Document none;
    EXPECT_EQ(refusalOf(none, [&](auto &) { modify(large); }), tooLong);

    // the formula is compiled for each curve, which may use all columns
    Document wide = documentOf(table({1}, std::vector<Column>(20'000, column("a", {1}))));
    wide.frame.multiDimFit = true;
    selectByIndex(wide, {0, -1}, false);
    setFormula(wide, "x+1");
    EXPECT_EQ(refusalOf(none, [&](auto &) { modify(wide); }), tooLong);
    const std::string blanks(2'000'000, ' ');
    EXPECT_EQ(refusalOf([&] { setFormula(wide, blanks + "x"); }), tooLong);
}

// The error of sqrt(y) is that of y by 2 sqrt(y).
TEST(ModifyByFormula, ScalesErrorsByItsDerivative) {
    Document document =
        documentOf(table({1, 2, nan_}, {column("y", {4, 16, 1}), column("y error", {1, 2, 3})}));
    selectByName(document, "", -1, "y", false);
    setFormula(document, "-sqrt(y)*x");
    modifySelection(document, true);
    EXPECT_EQ(textOf(document), "Data: x=1,2,nan y=-2,-8,1 y error=0.25,0.5,3");
    setFormula(document, "x");
    modifySelection(document, true);
    EXPECT_EQ(textOf(document), "Data: x=1,2,nan y=1,2,1 y error=0.25,0.5,3") << "without y";
    selectByIndex(document, {0, 1}, false);
    setFormula(document, "2*y");
    modifySelection(document, true);
    EXPECT_EQ(textOf(document), "Data: x=1,2,nan y=2,4,1 y error=0.5,1,3") << "selected itself";

    Document pair = documentOf(
        table({1, 2}, {column("y", {4, 8}), column("y +", {1, 2}), column("y -", {3, -4})}));
    selectByIndex(pair, {0, 0}, false);
    for (const char *each : {"-2*y", "y/4"}) {
        setFormula(pair, each);
        modifySelection(pair, true);
    }
    EXPECT_EQ(textOf(pair), "Data: x=1,2 y=-2,-4 y +=1.5,-2 y -=0.5,1");
    document = documentOf(table({1}, {column("y error", {1}), column("y", {4})}));
    selectByIndex(document, {0, -1}, false);
    setFormula(document, "2*y");
    modifySelection(document, true);
    EXPECT_EQ(textOf(document), "Data: x=1 y error=2 y=8") << "not twice";
}

// More rows than are worked on at once.
TEST(ModifyByFormula, TakesOfEachRowItsOwnColumnsAndSlope) {
    constexpr std::size_t rows = 10'000;
    std::vector<double> x(rows);
    for (std::size_t i = 0; i < rows; ++i) x[i] = static_cast<double>(i);
    Document document = documentOf(table(
        x, {column("y", x), column("y error", std::vector<double>(rows, 1)), column("T", x)}));
    document.frame.multiDimFit = true;
    selectByIndex(document, {0, 0}, false);
    setFormula(document, "y*y + T");
    modifySelection(document, true);
    const std::vector<Column> &columns = document.sources[0].tables[0].y;
    for (std::size_t i = 0; i < rows; ++i) {
        ASSERT_EQ(columns[0].values[i], x[i] * x[i] + x[i]);
        ASSERT_EQ(columns[1].values[i], 2 * x[i]);
    }
}
