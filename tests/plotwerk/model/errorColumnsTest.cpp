#include "plotwerk/model/errorColumns.h"

#include "plotwerk/model/curves.h"
#include "plotwerk/model/editing.h"
#include "plotwerk/model/selection.h"
#include "tests/plotwerk/model/documents.h"

#include <sstream>

using namespace plotwerk;

// Columns of the names, which are separated by bars, the first of x.
static Table named(const std::string &list) {
    std::istringstream names(list);
    Table result;
    std::getline(names, result.x.name, '|');
    result.x.values = {0};
    for (std::string name; std::getline(names, name, '|');) result.y.push_back(column(name, {0}));
    return result;
}

// "OWNER:ABOVE,BELOW" of what has errors, x first, then "OWNER:ERRORS", and at last "curves:" with
// those that hold none, all as numbers of columns. x is 0.
static std::string told(const Table &table) {
    const ErrorColumns errors(table);
    std::ostringstream text;
    const auto tell = [&](std::size_t owner, const Errors &of) {
        if (!of) return;
        text << owner << ':' << of.above - table.y.data() + 1;
        if (of.isPair()) text << ',' << of.below - table.y.data() + 1;
        text << ' ';
    };
    tell(0, errors.ofX());
    for (std::size_t i = 0; i < table.y.size(); ++i)
        if (!errors.holdsErrors(i)) tell(i + 1, errors.ofY(i));
    text << "curves:";
    for (std::size_t i = 0; i < table.y.size(); ++i)
        if (!errors.holdsErrors(i)) text << ' ' << i + 1;
    return text.str();
}

TEST(ErrorColumns, AreToldByTheirNamesAndPlaces) {
    const std::pair<const char *, const char *> cases[] = {
        {"t|U|U err|V|V_err|W|W_error", "1:2 3:4 5:6 curves: 1 3 5"},
        {"t|U|U \u00b1|V|\u00b1V|W|dW", "1:2 3:4 5:6 curves: 1 3 5"},
        {"t|U|sigma U|V|\u03c3 V", "1:2 3:4 curves: 1 3"},
        {"t|U error|dt|U", "0:2 3:1 curves: 3"},
        {"t|U error|U error|U|U", "3:1 4:1 curves: 3 4"},
        {"t|X error|U|t error", "0:3 curves: 2"},
        {"t|X err|U", "0:1 curves: 2"},
        // pairs
        {"t|U|U -|U +|t +|t -", "0:4,5 1:3,2 curves: 1"},
        {"t (s)|U (V)|U + (V)|U - (V)", "1:2,3 curves: 1"},
        {"t|U|U +", "curves: 1 2"},
        {"t|U|U +|U +|U -|U -", "1:2,4 curves: 1"},
        {"t|U|U +|U -|U err", "1:4 curves: 1"},
        // units
        {"t (s)|U [V]|U error [V]|t err (s)", "0:3 1:2 curves: 1"},
        {"t|U (V)|U (V) error|I [A]|dI [A]", "1:2 3:4 curves: 1 3"},
        {"t|U (V)|U error|U (mV)|dU (mV)", "1:2 3:4 curves: 1 3"},
        {"t|U (V)|U err (mV)|U err (%)", "curves: 1 2 3"},
        // by the place
        {"x|err|y|error", "0:1 2:3 curves: 2"},
        {"x|a|\u00b1|b|sigma|c|\u03c3", "1:2 3:4 5:6 curves: 1 3 5"},
        {"t|U|dx|dy", "0:2 1:3 curves: 1"},
        {"x|y|z|dx|dy|dz", "0:3 1:4 2:5 curves: 1 2"},
        {"t (s)|U (V)|err (V)|b|err (s)|err (mV)", "1:2 3:4 curves: 1 3"},
        {"t (s)|U (V)|err (mV)", "curves: 1 2"},
        {"x|y|err|y|z", "1:2 curves: 1 3 4"},
        // curves
        {"epoch|error", "curves: 1"},
        {"x|dx|X error", "curves: 1 2"},
        {"t|dy|U", "curves: 1 2"},
        {"t|U|density|V error|Uerr|error U|Error|d|d U", "curves: 1 2 3 4 5 6 7 8"}};
    for (const auto &[names, want] : cases) EXPECT_EQ(told(named(names)), want) << names;
}

TEST(ErrorColumns, GoWhereTheyAreAskedFor) {
    Document document = documentOf(named("x|y|dx|y -|y +|Fit"));
    Table &table = document.sources[0].tables[0];
    table.y[2].values = {-1};
    table.y[3].values = {4};
    std::vector<double> means;
    const auto errors = yErrorsOf(table, table.y[0], means);
    EXPECT_EQ(std::vector(errors.begin(), errors.end()), std::vector{2.5}) << "the mean of a pair";
    EXPECT_TRUE(yErrorsOf(table, table.y[4], means).empty());
    table.y[4].drawnByFit = true;
    EXPECT_EQ(onlyCurve(document)->index, 0);

    Document fitted = documentOf(named("x|y|Fit|Residuals"));
    std::vector<Column> &curves = fitted.sources[0].tables[0].y;
    curves[1].drawnByFit = true;
    curves[2].residuals = true;
    for (std::size_t first = 0; first < 3; ++first) {
        EXPECT_EQ(onlyCurve(fitted).value_or(CurveRef{.index = -1}).index, 0) << first;
        curves.erase(curves.begin());
    }
    EXPECT_FALSE(onlyCurve(fitted));

    for (const bool shown : {true, false}) {
        table.y[0].look.xError = table.y[0].look.yError = shown;
        const std::vector<PlottedCurve> plotted = plottedCurves(document);
        ASSERT_EQ(plotted.size(), 2u);
        EXPECT_EQ(plotted[0].xErrors, shown ? (Errors{&table.y[1], &table.y[1]}) : Errors());
        EXPECT_EQ(plotted[0].yErrors, shown ? (Errors{&table.y[3], &table.y[2]}) : Errors());
        EXPECT_FALSE(plotted[1].yErrors);
    }
}

TEST(ErrorColumns, GoByTheNewNameOfTheirCurve) {
    const struct {
        const char *names, *newName, *want;
        std::vector<int> selected = {0};
    } cases[] = {
        {"t|U|U error|dU|U +|U -|err", "I", "t|I|I error|dI|I +|I -|err"},
        {"t|U (V)|U error (V)|sigma U|U (V) err", "I (A)", "t|I (A)|I error (A)|sigma I|I (A) err"},
        {"t|U (V)|\u00b1U (V)|U error (V)|U error (mV)", "I", "t|I|\u00b1I|I error|U error (mV)"},
        {"t|U|U err (V)", "I", "t|I|I err (V)"},
        {"t|U|U error", "I", "t|I|I", {1, 0}}, // errors that are selected, as they are asked for
        // where names occur more than once, each curve takes the first such column that is left
        {"t|a|a error|b|a|a error|b error|c error|c",
         "c",
         "t|c|c error|c|c|c error|c|c error|c",
         {0, 2, 3, 5, 7}},
    };
    for (const auto &c : cases) {
        Document document = documentOf(named(c.names));
        for (const int selected : c.selected) selectByIndex(document, {selected, selected}, true);
        renameSelection(document, c.newName);
        const Table &table = document.sources[0].tables[0];
        std::string names = table.x.name;
        for (const Column &y : table.y) names += '|' + y.name;
        EXPECT_EQ(names, c.want);
    }
}
