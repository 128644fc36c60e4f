#include "plotwerk/model/structure.h"

#include "tests/plotwerk/model/documents.h"

using namespace plotwerk;

// Curves 0 and 1 are in the first table, 2 in the second, 3 and 4 in the one that is replaced.
TEST(Structure, TheWalkOfMarksGoesOnWhereItWasWhenATableIsReplaced) {
    const Column one = column("o", {1});
    // the index before, the curves of the new table, and the index then
    for (const auto &[before, curves, after] : {std::tuple{0, 1, 0},
                                                {3, 1, 3},
                                                {3, 3, 3},
                                                {4, 1, 3},
                                                {4, 3, 5},
                                                {5, 1, 4},
                                                {6, 0, 4},
                                                {7, 4, 9}}) {
        Document document = sample();
        document.sources[1].tables = {table({1}, {one, one}), table({1}, {one, one})};
        document.markWalk = before;
        const std::vector<Column> columns(static_cast<std::size_t>(curves), one);
        replaceTable(document, 1, 0, table({2}, columns));
        EXPECT_EQ(document.markWalk, after) << before << ' ' << curves;
        EXPECT_EQ(document.sources[1].tables[0].y.size(), columns.size());
        EXPECT_EQ(document.sources[1].tables[1].y.size(), 2U);
    }
}

TEST(Structure, NewTablesStandBehindTheirsHoweverMany) {
    const auto named = [](const char *name) { return table({1}, {column(name, {1})}); };
    Document document = documentOf(named("a"));
    insertTables(document, {{0, 0, named("b")}, {0, 0, named("c")}});
    insertTables(document, {{0, 2, named("f")}, {0, 0, named("d")}, {0, 1, named("e")}});
    std::string names;
    for (const Table &each : document.sources[0].tables) names += each.y[0].name;
    EXPECT_EQ(names, "adbecf");
}
