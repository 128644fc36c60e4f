#include "plotwerk/model/duplicate.h"

#include "plotwerk/model/change.h"
#include "plotwerk/model/points.h"
#include "plotwerk/model/ranges.h"
#include "tests/plotwerk/model/documents.h"

using namespace plotwerk;

TEST(DuplicateAsPlotted, HoldsTheVisiblePointsInsideTheRange) {
    Table t = table({0, 1, nan_, 2, 3},
                    {column("a", {1, 2, 3, 4, 5}), column("hidden", {6, 7, 8, 9, 1}),
                     column("a error", {1, 2, 3, 4, 5}), column("upper", {5, 4, 3, 2, 1})});
    t.y[0].look.dashed = t.y[3].look.upperX = true;
    t.y[1].look.visible = false;
    Document document = documentOf(t);
    document.sources.push_back({"gone", {table({1}, {column("b", {1}), column("b error", {1})})}});
    document.sources[1].tables[0].y[0].look.visible = false;
    document.path = "a.plw";
    setRange(document, xAxis, 1, 2);
    setRange(document, upperXAxis, 2, 3);
    document.markWalk = 2;
    valueAtX(document, 1, 0);

    const Document copy = duplicateAsPlotted(document);
    EXPECT_EQ(textOf(copy), "Data: x=1,2,3 a=2,4,nan a error=2,4,5 upper=nan,2,1");
    EXPECT_EQ(valueAtX(copy, 1.5, 0), 3) << "x has moved";
    EXPECT_EQ(copy.markWalk, 0);
    EXPECT_EQ(copy.name, "test copy");
    EXPECT_TRUE(copy.path.empty());
    EXPECT_TRUE(hasUnsavedChanges(copy));
    EXPECT_TRUE(copy.sources[0].tables[0].y[0].look.dashed && copy.axes[xAxis].range.max == 2);
}
