#include "plotwerk/model/structure.h"

#include "tests/plotwerk/model/documents.h"

using namespace plotwerk;

// Curves 0 and 1 are in the first table, 2 in the second, 3 and 4 in the one that is replaced.
TEST(Structure, TheWalkOfMarksGoesOnWhereItWasWhenATableIsReplaced) {
    const Column one = column("o", {1});
    const struct {
        int before, curves, after;
    } cases[] = {{0, 1, 0}, {3, 1, 3}, {4, 1, 3}, {4, 3, 5}, {5, 1, 4}, {6, 0, 4}, {7, 4, 9}};
    for (const auto &c : cases) {
        Document document = sample();
        document.sources[1].tables = {table({1}, {one, one}), table({1}, {one, one})};
        document.markWalk = c.before;
        const std::vector<Column> columns(static_cast<std::size_t>(c.curves), one);
        replaceTable(document, 1, 0, table({2}, columns));
        EXPECT_EQ(document.markWalk, c.after) << c.before << ' ' << c.curves;
        EXPECT_EQ(document.sources[1].tables[0].y.size(), columns.size());
        EXPECT_EQ(document.sources[1].tables[1].y.size(), 2U);
    }
}
