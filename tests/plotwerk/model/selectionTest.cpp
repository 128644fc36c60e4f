#include "plotwerk/model/selection.h"

#include "plotwerk/data/exchange.h"
#include "plotwerk/model/editing.h"
#include "plotwerk/model/limits.h"
#include "tests/plotwerk/model/documents.h"
#include "tests/plotwerk/model/withinMemory.h"

using namespace plotwerk;

// Indexes of the selected curves by place, as "2 0 ".
static std::string selection(const Document &document) {
    std::string text;
    for (const CurveRef &curve : selectedCurves(document))
        text += std::to_string(curve.index) + " ";
    return text;
}

TEST(Curves, SeriesMinusOneIsTheFirstSelectedOrTheOnlyCurve) {
    Document document = sample();
    const std::pair<int, const char *> refused[] = {
        {-1, "no curve is selected"}, {4, "no curve 4"}, {-2, "no curve -2"}};
    for (const auto &c : refused)
        EXPECT_EQ(refusalOf(document, [&](auto &d) { curveOfSeries(d, c.first); }), c.second);
    selectByIndex(document, {3, 3}, false);
    selectByIndex(document, {1, 1}, true);
    EXPECT_EQ(curveOfSeries(document, -1).index, 3);
    EXPECT_EQ(curveOfSeries(document, 2).index, 2);

    Table lone = table({1}, {column("a error", {1}), column("a", {1}), column("Fit", {1})});
    lone.y[2].drawnByFit = true;
    EXPECT_EQ(curveOfSeries(documentOf(lone), -1).index, 1);
}

TEST(Selection, FindsByNameAndByPattern) {
    // source, table and column, and what they select as names and as patterns
    const std::tuple<const char *, int, const char *, const char *, const char *> cases[] = {
        {"", -1, "", "0 1 2 3 ", "0 1 2 3 "},
        {"", -1, "a", "0 3 ", "0 3 "},
        {"B", 2, "", "", ""},
        {"A|B", 1, "b", "", "1 "},
        {"", -1, "a|", "", "0 3 "}};
    const auto firstOf = [](const std::string &found) {
        return found.empty() ? -1 : found[0] - '0';
    };
    for (const auto &[source, table, column, byName, byPattern] : cases) {
        Document document = sample();
        document.sources[0].tables[0].y[1].rank = 1;
        selectByName(document, source, table, column, false);
        EXPECT_EQ(selection(document), byName) << source << ' ' << table << ' ' << column;
        EXPECT_EQ(indexOfCurveNamed(document, source, table, column), firstOf(byName));
        selectByPattern(document, source, table, column, false);
        EXPECT_EQ(selection(document), byPattern) << source << ' ' << table << ' ' << column;
        EXPECT_EQ(indexOfCurveMatching(document, source, table, column), firstOf(byPattern));
    }
}

TEST(Selection, PatternsAreUtf8AndEndInTimeOrAreRefused) {
    Document document = sample();
    std::string &name = document.sources[0].tables[0].y[0].name;
    name = "\u00b5m";
    EXPECT_EQ(selectByPattern(document, "", -1, ".m", false), 1) << "a character, not a byte";
    name = std::string(1000, 'a');
    EXPECT_EQ(selectByPattern(document, "", -1, "(a*)*z", false), 0);
    EXPECT_EQ(selectByPattern(document, "", -1, "(a?){1000}", false), 2);

    const std::pair<std::string, std::string> refused[] = {
        {"a(", "missing ): a("},
        {"(.)\\1", "invalid escape sequence: \\1"},
        {"\\pL{1000}", "pattern too large - compile failed"}};
    for (const auto &c : refused)
        EXPECT_EQ(refusalOf(document, [&](auto &d) { selectByPattern(d, "", -1, c.first, false); }),
                  "pattern \"" + c.first + "\" can't be read: " + c.second);
    EXPECT_EQ(refusalOf(document,
                        [](auto &d) { indexOfCurveMatching(d, std::string(1001, 'a'), -1, ""); }),
              "pattern is too long");
    EXPECT_EQ(selection(document), "0 3 ") << "as the last one left it";
}

// A sanitizer ends the process where an allocation fails.
#if !defined(__SANITIZE_ADDRESS__) && !defined(__clang__)
TEST(Selection, PatternsAreRefusedBeforeTheyFindNoMemory) {
    Document document = sample();
    document.sources[0].tables[0].y[0].name = std::string(1000, 'a');
    const auto selectWithin = [&](rlim_t bytes, const std::string &pattern) {
        std::set_new_handler([] { _exit(2); }); // in the midst of the library's work
        doWithin(bytes, [&] { selectByPattern(document, "", -1, pattern, false); });
    };
    std::string letters, ends(530, '$'); // that take most to be read, and to be matched
    while (letters.size() < 999) letters += "\\pL";
    for (const std::string &pattern : {letters, "a*(?:" + ends + "){3}"}) {
        for (rlim_t bytes = 0; bytes < 16 << 20; bytes += 1 << 20)
            EXPECT_EXIT(selectWithin(bytes, pattern), isDoneOrRefused, "") << bytes << pattern;
        EXPECT_EXIT(selectWithin(50 << 20, pattern), testing::ExitedWithCode(0), "");
    }
}
#endif

TEST(Selection, FindsByPositionAndIndexWithinLimits) {
    const struct {
        IndexRange sources, tables, columns;
        const char *want; // selection, or what is refused
    } cases[] = {
        {{}, {}, {}, "0 1 2 3 "},         {{}, {}, {2, 2}, "1 "},
        {{2, -1}, {}, {}, "3 "},          {{-1, 1}, {2, 2}, {}, "2 "},
        {{3, 3}, {}, {}, "no source 3"},  {{2, 2}, {2, 2}, {}, "no table 2"},
        {{0, -1}, {}, {}, "no source 0"}, {{2, 1}, {}, {}, "first source 2 is above the last, 1"},
    };
    for (const auto &c : cases) {
        Document document = sample();
        const std::string refused = refusalOf(
            document, [&](auto &d) { selectByPosition(d, c.sources, c.tables, c.columns, false); });
        EXPECT_EQ(refused.empty() ? selection(document) : refused, c.want);
    }

    Document document = sample();
    for (const auto select : {selectByName, selectByPattern})
        for (const int table : {0, 3})
            EXPECT_EQ(refusalOf(document, [&](auto &d) { select(d, "", table, "", false); }),
                      "no table " + std::to_string(table));
    EXPECT_EQ(selectByIndex(document, {2, -1}, false), 2);
    EXPECT_EQ(selection(document), "2 3 ");
    for (const IndexRange range : {IndexRange{0, 4}, {-2, 1}, {4, -1}, {2, 1}})
        EXPECT_THROW(selectByIndex(document, range, false), Refusal) << range.first;
    EXPECT_THROW(selectByName(document, "", 3, "", false), Refusal);
    EXPECT_EQ(selection(document), "2 3 ");

    Document empty;
    EXPECT_EQ(selectByIndex(empty, {}, false), 0);
    EXPECT_EQ(selectByPosition(empty, {}, {}, {}, false), 0);
}

// Counting on from numbers that a file may have must not leave what a file may have.
TEST(Selection, CountsRanksAndLayersAnewAtTheirLimit) {
    Document document = sample();
    const auto of = [&](int index) -> Column & {
        return columnOf(document, *curveAt(document, index));
    };
    of(2).rank = mostCounted;
    of(1).rank = mostCounted - 1;
    of(3).look.layer = mostCounted;
    selectByIndex(document, {0, 0}, true);
    EXPECT_EQ(selection(document), "1 2 0 ");
    EXPECT_EQ(of(0).rank, 3);

    of(2).rank = 0;
    of(2).look.layer = -1;
    showSelection(document);
    EXPECT_LT(of(2).look.layer, of(3).look.layer);
    EXPECT_LT(of(3).look.layer, of(1).look.layer);
    EXPECT_LT(of(1).look.layer, of(0).look.layer);
    requireWithinLimits(document);
}

// Where the walk goes on isn't known any more when the curves are numbered anew.
TEST(Marks, AreWalkedOverFromTheStartWhenCurvesComeOrGo) {
    void (*const startOver[])(Document &) = {
        deleteSelection,
        differentiateSelection,
        [](Document &d) { createCurve(d, 0, 1, 1, 0, 1); },
        [](Document &d) { replaceData(d, "A", "x a b\n1 2 3\n", '.'); },
        [](Document &d) { appendData(d, "A", "1 2\n\n1 2\n\n1 2\n", '.'); },
        [](Document &d) { replaceData(d, "C", "1 2\n", '.'); },
        [](Document &d) { appendData(d, "C", "1 2\n", '.'); }};
    void (*const goOn[])(Document &) = {[](Document &d) { appendData(d, "B", "1 2\n", '.'); },
                                        [](Document &d) { addData(d, "C", "1 2\n", '.'); }};
    const auto nextAfter = [](void (*work)(Document &)) {
        Document document = sample();
        document.sources[0].tables[0].y[0].marked = document.sources[1].tables[0].y[0].marked =
            true;
        EXPECT_EQ(nextMarkedCurve(document)->index, 0);
        selectByIndex(document, {1, 1}, false);
        work(document);
        return nextMarkedCurve(document)->index;
    };
    for (const auto work : startOver) EXPECT_EQ(nextAfter(work), 0);
    for (const auto work : goOn) EXPECT_EQ(nextAfter(work), 3);
}

// As after opening, where only the index is known.
TEST(Marks, AreWalkedOverFromAnyIndex) {
    for (const int start : {0, 1, 2, 3, 4, 2'000'000'000}) {
        Document document = sample();
        for (const CurveRef &curve : curvesOf(document)) columnOf(document, curve).marked = true;
        document.markWalk = start;
        for (int index = start; index < 4; ++index)
            EXPECT_EQ(nextMarkedCurve(document)->index, index) << start;
        EXPECT_FALSE(nextMarkedCurve(document)) << start;
        EXPECT_EQ(nextMarkedCurve(document)->index, 0) << start;
    }
}
