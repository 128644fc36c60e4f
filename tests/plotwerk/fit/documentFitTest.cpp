#include "plotwerk/fit/documentFit.h"

#include "plotwerk/model/curves.h"
#include "plotwerk/model/editing.h"
#include "plotwerk/model/exchange.h"
#include "plotwerk/model/points.h"
#include "plotwerk/model/selection.h"
#include "tests/plotwerk/model/documents.h"

#include <algorithm>
#include <cmath>

using namespace plotwerk;

namespace {

// y = 2x + 1 with a bend at the end.
Document line() {
    Document document = documentOf(table({0, 1, 2, 3}, {column("y", {1, 3, 5, 10})}));
    setFormula(document, "a * x + b");
    return document;
}

const Table &lastTable(const Document &document) {
    return document.sources.back().tables.back();
}

double parameter(const Document &document, const std::string &name) {
    for (const FitParameter &each : document.parameters)
        if (each.name == name) return each.value;
    return unset;
}

} // namespace

TEST(DocumentFit, TakesThePointsOfTheFitRange) {
    Document document = line();
    document.fitRange = {unset, 2.5};
    const FitOutcome outcome = fitDocument(document);
    EXPECT_EQ(outcome.status, fitConverged) << outcome.reason;
    EXPECT_EQ(document.fit.points, 3);
    EXPECT_NEAR(parameter(document, "a"), 2, 1e-12);
    EXPECT_NEAR(parameter(document, "b"), 1, 1e-12);
}

// Errors of 1 and of 1e6: the point that doesn't fit counts for nothing.
TEST(DocumentFit, WeighsByTheErrorsOfTheCurve) {
    Document document = line();
    document.sources[0].tables[0].y.push_back(column("y error", {1, 1, 1, 1e6}));
    selectByIndex(document, {0, 0}, false);
    EXPECT_EQ(fitDocument(document).status, fitConverged);
    EXPECT_NEAR(parameter(document, "a"), 2, 1e-6);
}

TEST(DocumentFit, DrawsTheFormulaAsACurveOfItsOwn) {
    Document document = line();
    document.sources.insert(document.sources.begin(), {"Before", {}});
    document.sources[1].tables[0].y[0].look.layer = 3;
    document.sources[1].tables[0].y[0].look.rightY = true;
    selectByIndex(document, {0, 0}, false);
    document.fitRange = {-1, unset};
    fitDocument(document);
    ASSERT_EQ(numberOfCurves(document), 2);
    EXPECT_EQ(indexOfSelectedCurve(document), 0);
    EXPECT_EQ(indexOfFitCurve(document), -1);
    EXPECT_EQ(document.sources.back().name, "Fit");

    const Table &drawn = lastTable(document);
    const Column &fit = drawn.y.front();
    EXPECT_EQ(fit.name, "Fit");
    EXPECT_EQ(drawn.x.name, "x");
    EXPECT_EQ(rowsOf(drawn), 500);
    EXPECT_EQ(drawn.x.values.front(), -1) << "as far as the fit range goes";
    EXPECT_EQ(drawn.x.values.back(), 3) << "as far as the data go";
    EXPECT_TRUE(std::ranges::is_sorted(drawn.x.values));
    EXPECT_TRUE(fit.look.rightY);
    EXPECT_EQ(fit.look.layer, 3);
    for (int i : {0, 250, 499})
        EXPECT_NEAR(fit.values[i],
                    parameter(document, "a") * drawn.x.values[i] + parameter(document, "b"), 1e-12);
}

TEST(DocumentFit, SamplesALogarithmicAxisInDecades) {
    Document document = documentOf(table({1, 10, 100}, {column("y", {1, 2, 3})}));
    document.axes[xAxis].logarithmic = true;
    setFormula(document, "a * log10(x) + b");
    fitDocument(document);
    const std::vector<double> &x = lastTable(document).x.values;
    EXPECT_NEAR(std::log10(x[1] / x[0]), 2.0 / 499, 1e-12);
    EXPECT_EQ(x.back(), 100);
}

TEST(DocumentFit, IsReplacedByTheNextOne) {
    Document document = line();
    fitDocument(document);
    addData(document, "Later", "1 2\n");
    selectByIndex(document, {1, 1}, false);
    renameSelection(document, "mine");
    columnOf(document, *curveAt(document, 1)).look.lineThickness = 5;
    document.fitRange = {unset, 2};
    selectByIndex(document, {0, 0}, false);
    markFitData(document);
    selectByIndex(document, {1, 1}, false);

    EXPECT_EQ(fitDocument(document).status, fitConverged);
    ASSERT_EQ(numberOfCurves(document), 3);
    const Column &drawn = columnOf(document, *curveAt(document, 1));
    EXPECT_EQ(drawn.name, "mine");
    EXPECT_EQ(drawn.look.lineThickness, 5);
    EXPECT_EQ(drawn.place, 1);
    EXPECT_FALSE(drawn.fitData);
    EXPECT_NEAR(drawn.values.back(), 5, 1e-12);
    EXPECT_EQ(columnOf(document, *curveAt(document, 2)).values, std::vector<double>{2});
}

// What the user has added to, replaced or fits himself is not the fit's to overwrite.
TEST(DocumentFit, LeavesWhatTheUserHasMadeHisOwn) {
    void (*const takenOver[])(Document &) = {
        [](Document &d) {
            selectByIndex(d, {1, 1}, false);
            differentiateSelection(d);
            selectByIndex(d, {0, 0}, false);
        },
        [](Document &d) { appendData(d, "Fit", "5 6\n"); },
        [](Document &d) { replaceData(d, "Fit", "5 6\n"); },
        [](Document &d) {
            selectByIndex(d, {1, 1}, false);
            markFitData(d);
        },
    };
    for (const auto takeOver : takenOver) {
        Document document = line();
        fitDocument(document);
        selectByIndex(document, {0, 0}, false);
        takeOver(document);
        const std::string before = textOf(document);
        ASSERT_EQ(fitDocument(document).status, fitConverged);
        ASSERT_EQ(document.sources.size(), 3U);
        EXPECT_NE(document.sources[2].name, "Fit") << "that is taken";
        document.sources.pop_back();
        EXPECT_EQ(textOf(document), before);
    }
}

TEST(DocumentFit, FitsTheFitDataOrTheSelectionOrTheOnlyCurve) {
    Document document = documentOf(
        table({0, 1, 2}, {column("a", {1, 1, 1}), column("b", {2, 2, 2}), column("c", {3, 3, 3})}));
    setFormula(document, "level + 0*x");
    const auto level = [&] {
        fitDocument(document);
        return std::lround(parameter(document, "level"));
    };
    EXPECT_EQ(refusalOf(document, [](Document &d) { fitDocument(d); }),
              "no curve is fit data or selected");
    selectByIndex(document, {1, 1}, false);
    EXPECT_EQ(level(), 2);
    markFitData(document);
    selectByIndex(document, {2, 2}, false);
    EXPECT_EQ(level(), 2);
    document.sources[0].tables[0].y[1].fitData = false;
    EXPECT_EQ(level(), 3);
    selectByIndex(document, {3, 3}, false); // "Fit"
    EXPECT_NE(refusalOf(document, [](Document &d) { fitDocument(d); }), "");

    document.sources[0].tables[0].y.resize(1);
    EXPECT_EQ(level(), 1);
    selectByIndex(document, {0, -1}, false);
    selectByName(document, "none", -1, "", false);
    EXPECT_EQ(valueAtX(document, 1, -1), 1) << "the fit's curve is no rival of the only one";
}

TEST(DocumentFit, LeavesEverythingWhenItFails) {
    Document document = line();
    fitDocument(document);
    document.fitRange = {1.5, 2.5};
    const std::string before = textOf(document);
    const double chiSquare = document.fit.chiSquare;
    document.changed = false;
    const FitOutcome outcome = fitDocument(document);
    EXPECT_EQ(outcome.status, fitImpossible);
    EXPECT_EQ(outcome.reason, "2 parameters for only 1 point");
    EXPECT_EQ(textOf(document), before);
    EXPECT_EQ(document.fit.chiSquare, chiSquare);
    EXPECT_FALSE(document.changed);
}

TEST(DocumentFormula, KeepsParametersOfTheSameName) {
    Document document = line();
    setParameters(document, "a = 5!, b = 7");
    fitDocument(document);
    EXPECT_EQ(parameter(document, "a"), 5);
    setFormula(document, document.formula);
    EXPECT_TRUE(document.fit.done) << "the same formula";

    setFormula(document, "c + a * x");
    EXPECT_FALSE(document.fit.done);
    ASSERT_EQ(document.parameters.size(), 2U);
    EXPECT_EQ(parameter(document, "a"), 5);
    EXPECT_TRUE(document.parameters[1].fixed);
    EXPECT_EQ(parameter(document, "c"), 1);

    EXPECT_NE(refusalOf(document, [](Document &d) { setFormula(d, "a*(x"); }), "");
    EXPECT_NE(refusalOf(document, [](Document &d) { setParameters(d, "a = 1, z = 2"); }), "");
    EXPECT_EQ(document.formula, "c + a * x");
    EXPECT_EQ(parameter(document, "a"), 5);
}

TEST(DocumentFormula, ModifiesValidPointsOfTheSelection) {
    Document document = documentOf(
        table({1, nan_, 3, 4}, {column("a", {1, 2, nan_, -4}), column("b", {10, 20, 30, 40})}));
    selectByIndex(document, {0, -1}, false);
    EXPECT_EQ(refusalOf(document, [](Document &d) { modifySelection(d, true); }), "no formula");
    setFormula(document, "f * sqrt(y) + x");
    setParameters(document, "f = 2");
    modifySelection(document, true);
    const std::vector<Column> &y = document.sources[0].tables[0].y;
    EXPECT_EQ(y[0].values[0], 3);
    EXPECT_EQ(y[0].values[1], 2) << "no x";
    EXPECT_TRUE(std::isnan(y[0].values[3])) << "no value";
    EXPECT_EQ(y[1].values[2], 2 * std::sqrt(30) + 3);

    setFormula(document, "-x");
    valueAtX(document, 3, 1); // what is known about x now must be forgotten
    modifySelection(document, false);
    EXPECT_EQ(document.sources[0].tables[0].x.values[0], -1);
    EXPECT_EQ(document.sources[0].tables[0].x.values[3], 4) << "a has no y there";
    EXPECT_EQ(valueAtIndex(document, 0, 1), valueAtX(document, -1, 1));
}

TEST(DocumentVariables, AreParametersTheFitAndTheLimits) {
    Document document = line();
    document.fitRange = {unset, 2};
    setFormula(document, "xmin * x + b");
    fitDocument(document);
    EXPECT_NEAR(std::stod(variableOf(document, "xmin")), 2, 1e-9) << "a parameter hides it";
    EXPECT_EQ(variableOf(document, "xmax"), "3");
    EXPECT_EQ(variableOf(document, "fitmin"), "0");
    EXPECT_EQ(variableOf(document, "points"), "3");
    EXPECT_NE(variableOf(document, "b.error"), "NAN");
    EXPECT_EQ(refusalOf(document, [](Document &d) { variableOf(d, "z"); }), "no variable \"z\"");
}
