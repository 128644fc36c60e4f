#include "plotwerk/fit/documentFit.h"
#include "plotwerk/fit/documentFormula.h"
#include "plotwerk/fit/documentVariables.h"
#include "plotwerk/fit/modifyByFormula.h"

#include "plotwerk/data/exchange.h"
#include "plotwerk/fit/fitVariables.h"
#include "plotwerk/model/curves.h"
#include "plotwerk/model/editing.h"
#include "plotwerk/model/selection.h"
#include "tests/plotwerk/model/documents.h"

#include <cmath>
#include <set>
#include <tuple>

using namespace plotwerk;

namespace {

// y = 2x + 1 with a bend at the end.
Document line() {
    Document document = documentOf(table({0, 1, 2, 3}, {column("y", {1, 3, 5, 10})}));
    setFormula(document, "a * x + b");
    return document;
}

double parameter(const Document &document, const std::string &name) {
    return std::stod(variableOf(document, name));
}

void expectReported(const Document &document, std::initializer_list<const char *> parts) {
    const std::string report = variableOf(document, "report");
    for (const char *part : parts) EXPECT_NE(report.find(part), std::string::npos) << report;
}

} // namespace

// More points than are worked on at once: the last of them count for nothing.
TEST(DocumentFit, WeighsEveryPointByItsOwnError) {
    std::vector<double> x(5000), y(5000), errors(5000, 1);
    for (std::size_t i = 0; i < x.size(); ++i) {
        x[i] = static_cast<double>(i);
        y[i] = i < 4000 ? 2 * x[i] + 1 : 1e5;
        errors[i] = i < 4000 ? 1 : 1e9;
    }
    Document document = selectedOf(table(x, {column("y", y), column("y error", errors)}));
    setFormula(document, "a * x + b");
    fitDocument(document);
    EXPECT_NEAR(parameter(document, "a"), 2, 1e-6);
}

TEST(DocumentFit, DrawsTheFormulaAsACurveOfItsOwn) {
    Document document = line();
    CurveLook &look = document.sources[0].tables[0].y[0].look;
    look.layer = 3;
    look.rightY = true;
    document.fitRange = {-1, unset};
    Table &data = document.sources[0].tables[0];
    data.x.isTime = data.y[0].isTime = true;
    data.x.values.push_back(data.x.values.back() + 1);
    data.y[0].values.push_back(unset);
    fitDocument(document);
    EXPECT_EQ(document.sources.back().name, "Fit");
    const Table &drawn = document.sources.back().tables.front();
    const Column &fit = drawn.y.front();
    EXPECT_EQ(fit.name + drawn.x.name, "Fitx");
    EXPECT_EQ(drawn.x.values.front(), -1) << "as far as the fit range goes";
    EXPECT_EQ(drawn.x.values.back(), 3) << "as far as the data go";
    EXPECT_TRUE(fit.look.rightY && fit.look.layer == 3 && !fit.fitData && fit.rank == 0);
    EXPECT_TRUE(drawn.x.isTime && fit.isTime && document.sources.back().tables[1].x.isTime);
    for (int i : {0, 250, 499})
        EXPECT_NEAR(fit.values[i],
                    parameter(document, "a") * drawn.x.values[i] + parameter(document, "b"), 1e-12);
}

TEST(DocumentFit, SamplesTheAxisEvenlyAsFinelyAsTheData) {
    // the first of the data, which go to 100, and the second sample
    const std::tuple<double, AxisCode, int, int, double> cases[] = {
        {2, xAxis, 3, 500, 2 * std::pow(50, 1. / 499)},
        {1, upperXAxis, 3, 500, std::pow(100, 1. / 499)},
        {-100, xAxis, 3, 500, -100 + 200. / 499},
        {0, yAxis, 1001, 1001, 0.1},
        {0, yAxis, 20'000, 10'000, 100. / 9'999}};
    for (const auto &[from, logarithmic, points, samples, second] : cases) {
        std::vector<double> x;
        for (int i = 0; i < points; ++i) x.push_back(std::lerp(from, 100, i / (points - 1.)));
        Document document = documentOf(table(x, {column("y", x)}));
        document.axes[logarithmic].logarithmic = true;
        document.sources[0].tables[0].y[0].look.upperX = logarithmic == upperXAxis;
        setFormula(document, "a * x");
        fitDocument(document);
        const std::vector<double> &drawn = document.sources.back().tables[0].x.values;
        ASSERT_EQ(std::ssize(drawn), samples);
        EXPECT_NEAR(drawn[1], second, 1e-12) << from << ' ' << points;
        EXPECT_EQ(drawn.back(), 100);
    }
}

TEST(DocumentFit, IsReplacedByTheNextOneThatSucceeds) {
    Document document = line();
    fitDocument(document);
    addData(document, "Later", "1 2\n", '.');
    Column &mine = columnOf(document, *curveAt(document, 1));
    mine.name = "mine";
    mine.look.lineThickness = 5;
    mine.rank = 1;
    mine.marked = true;
    columnOf(document, *curveAt(document, 0)).fitData = true;
    document.fitRange = {unset, 2};

    EXPECT_EQ(fitDocument(document).status, fitConverged);
    ASSERT_EQ(numberOfCurves(document), 4);
    const Column &drawn = columnOf(document, *curveAt(document, 1));
    EXPECT_EQ(drawn.name, "mine");
    EXPECT_TRUE(drawn.look.lineThickness == 5 && drawn.rank == 1 && drawn.marked);
    EXPECT_NEAR(drawn.values.back(), 5, 1e-12);
    EXPECT_EQ(columnOf(document, *curveAt(document, 3)).values, std::vector<double>{2});

    std::swap(document.sources[0], document.sources[1]); // whichever comes first
    selectByIndex(document, {2, 2}, false);
    fitDocument(document);
    ASSERT_EQ(numberOfCurves(document), 4);

    const std::string before = textOf(document);
    document.fitRange = {1.5, 2};
    EXPECT_EQ(fitDocument(document).reason,
              "fit status 1, impossible: 2 parameters for only 1 point; hold some fixed (a = 1!), "
              "or widen the fit range");
    EXPECT_EQ(textOf(document), before);
    EXPECT_EQ(variableOf(document, "status"), "1");
}

// What the user has added to, replaced or fits himself is not the fit's to overwrite.
TEST(DocumentFit, LeavesWhatTheUserHasMadeHisOwn) {
    void (*const takenOver[])(Document &) = {
        [](Document &d) {
            selectByName(d, "Fit", -1, "Fit", false);
            differentiateSelection(d);
        },
        [](Document &d) { appendData(d, "Fit", "5 6\n", '.'); },
        [](Document &d) { replaceData(d, "Fit", "5 6\n", '.'); },
        [](Document &d) { d.sources[1].tables[0].y[0].fitData = true; },
        [](Document &d) { d.sources[1].tables[1].y[0].fitData = true; },
    };
    for (const auto takeOver : takenOver) {
        Document document = line();
        fitDocument(document);
        takeOver(document);
        selectByIndex(document, {0, 0}, false);
        const std::string before = textOf(document);
        ASSERT_EQ(fitDocument(document).status, fitConverged);
        ASSERT_EQ(document.sources.size(), 3U);
        EXPECT_NE(document.sources[2].name, "Fit") << "that is taken";
        document.sources.pop_back();
        EXPECT_EQ(textOf(document), before);
    }
}

TEST(DocumentFit, HasOneColourWhateverElseIsThereButForKeptFits) {
    const auto colours = [](const Document &document, int source) {
        std::set<std::tuple<double, double, double>> found;
        for (const Table &each : document.sources[source].tables)
            for (const Column &column : each.y) {
                const auto &[red, green, blue, opacity] = column.look.lineColour;
                found.emplace(red, green, blue);
            }
        return found;
    };
    Document alone = line();
    fitDocument(alone);
    Document crowded =
        selectedOf(table({0, 1, 2, 3}, {column("y", {1, 3, 5, 10}), column("y error", {1, 1, 1, 1}),
                                        column("z", {1, 1, 1, 1})}));
    setFormula(crowded, "a * x + b");
    fitDocument(crowded);
    EXPECT_EQ(colours(alone, 1).size(), 1U);
    EXPECT_EQ(colours(crowded, 1), colours(alone, 1));

    crowded.sources[1].tables[0].y[0].fitData = true; // its own from now on
    fitDocument(crowded);
    ASSERT_EQ(crowded.sources.size(), 3U);
    EXPECT_NE(colours(crowded, 2), colours(crowded, 1));
}

TEST(DocumentFit, LeavesResidualsAtThePointsHidden) {
    Document document = documentOf(table({3, nan_, 1, 2}, {column("y", {9, 5, 1, 5})}));
    document.sources[0].tables[0].y[0].fitData = true;
    setFormula(document, "2*x");
    document.fitRange = {unset, 2.5};
    fitDocument(document);
    EXPECT_EQ(textOf(document.sources[1].tables[1].x), "x=1,2");
    const auto residuals = [&] {
        std::string text;
        for (const Column &each : document.sources[1].tables[1].y) text += textOf(each) + ' ';
        return text;
    };
    EXPECT_EQ(residuals(), "Residuals=-1,1 ");

    // a walk of marks goes on behind, whether there are errors or not
    addData(document, "Later", "1 2\n", '.');
    for (const int curve : {0, 3}) columnOf(document, *curveAt(document, curve)).rank = 1 + curve;
    markSelection(document);
    nextMarkedCurve(document);
    selectByName(document, "Fit", -1, "Residuals", false);
    showSelection(document);
    document.sources[0].tables[0].y.push_back(column("y error", {1, 1, 0.5, 0.25}));
    fitDocument(document);
    EXPECT_EQ(residuals(), "Residuals=-1,1 Residuals/\u03c3=-2,4 ");
    EXPECT_EQ(nextMarkedCurve(document)->source, 2);
    const std::vector<Column> &shown = document.sources[1].tables[1].y;
    EXPECT_TRUE(shown[0].look.visible && shown[0].rank == 1 && !shown[1].look.visible);
    columnOf(document, *curveAt(document, 4)).name = "mine";
    fitDocument(document);
    EXPECT_EQ(residuals(), "Residuals=-1,1 mine=-2,4 ");

    selectByName(document, "", -1, "Fit", false);
    deleteSelection(document);
    EXPECT_EQ(fitDocument(document).status, fitConverged) << "residuals are no data to fit";
    EXPECT_EQ(document.sources[1].tables[0].y[0].name, "Fit");
    EXPECT_EQ(document.sources[1].tables.size(), 2U);
}

TEST(DocumentFit, FitsTheFitDataOrTheSelectionOrTheOnlyCurve) {
    Document document = documentOf(
        table({0, 1, 2}, {column("a", {1, 1, 1}), column("b", {2, 2, 2}), column("c", {3, 3, 3})}));
    std::vector<Column> &y = document.sources[0].tables[0].y;
    setFormula(document, "level + 0*x");
    const auto level = [&] {
        const std::string refusal = refusalOf(document, [](Document &d) { fitDocument(d); });
        return refusal.empty() ? std::to_string(std::lround(parameter(document, "level")))
                               : refusal;
    };
    EXPECT_EQ(level(), "no curve is fit data or selected");
    y[2].rank = 1;
    y[1].fitData = true;
    EXPECT_EQ(level(), "2");
    document.sources[0].tables[0].y[1].fitData = false;
    EXPECT_EQ(level(), "3");
    y[2].rank = 0;
    document.sources[1].tables[0].y[0].rank = 1;
    EXPECT_EQ(level(), "no curve is fit data or selected") << "but for what the fit has drawn";
    y.resize(1);
    EXPECT_EQ(level(), "1");
    document.formula = "";
    EXPECT_EQ(level(), "no formula");
    EXPECT_EQ(variableOf(document, "status"), "1") << "of the last one, not of the last result";
}

TEST(DocumentFormula, KeepsParametersOfTheSameName) {
    Document document = line();
    setParameters(document, "a = 5!, b = 7", '.');
    fitDocument(document);
    setFormula(document, document.formula);
    EXPECT_TRUE(document.fit.done) << "the same formula";

    const double b = parameter(document, "b");
    EXPECT_GT(document.parameters[1].error, 0);
    document.parameters[1].atBound = true;
    setFormula(document, "c + a * x\r + b");
    EXPECT_EQ(document.formula, "c + a * x  + b") << "as a saved one is opened again";
    EXPECT_FALSE(document.parameters[1].atBound);
    EXPECT_FALSE(document.fit.done);
    EXPECT_EQ(variableOf(document, "status"), "0") << "of the last fit";
    EXPECT_EQ(parameter(document, "a"), 5);
    EXPECT_TRUE(document.parameters[1].fixed);
    EXPECT_EQ(parameter(document, "b"), b);
    EXPECT_TRUE(std::isnan(document.parameters[2].error)) << "of another formula's fit";
    EXPECT_EQ(parameter(document, "c"), 1);
}

TEST(DocumentFormula, TakesTheColumnsOfTheTableForVariables) {
    // y = 2 x + 3 T, where all three are there
    Document document = documentOf(
        table({0, 1, 2, 3, 4}, {column("T (K)", {1, 1, 2, 5, nan_}),
                                column("y", {3, 5, 10, nan_, 8}), column("T", {1, 1, 2, 5, 0})}));
    selectByName(document, "", -1, "y", false);
    const std::string text = "a*x + b*'T (K)' + 0*T";
    EXPECT_EQ(
        refusalOf(document, [&](Document &d) { setFormula(d, text); }),
        "formula, line 1, column 9: names in quotes are other columns' (setDocAttributes -m yes)");
    setFormula(document, "a*x + b*T + 0*x");
    EXPECT_EQ(document.parameters.size(), 3U) << "T is a parameter";
    changeFrameWithFormula(document, {.multiDimFit = 1});
    EXPECT_EQ(document.parameters.size(), 2U);

    const std::pair<const char *, const char *> wrong[] = {
        {"a*'T'*'V'", "formula, line 1, column 7: no column 'V'"},
        {"a*'T", "formula, line 1, column 5: expected \"'\""}};
    for (const auto &[wrongText, why] : wrong)
        EXPECT_EQ(
            refusalOf(document, [&, given = wrongText](Document &d) { setFormula(d, given); }),
            why);
    setFormula(document, text);
    EXPECT_EQ(fitDocument(document).reason, "");
    EXPECT_NEAR(parameter(document, "a"), 2, 1e-12);
    EXPECT_NEAR(parameter(document, "b"), 3, 1e-12);
    const Table &drawn = document.sources[1].tables[0];
    EXPECT_EQ(textOf(drawn.x), "x=0,1,2") << "at the points";
    const double values[] = {3, 5, 10};
    for (std::size_t i = 0; i < 3; ++i) EXPECT_NEAR(drawn.y[0].values.at(i), values[i], 1e-12);
    setFormula(document, "a*y");
    EXPECT_TRUE(fitDocument(document).reason.find("may not use y") != std::string::npos);

    setFormula(document, "T + 10*'T (K)' + 100*y + 1000*'x'");
    modifySelection(document, true);
    EXPECT_EQ(textOf(document.sources[0].tables[0].y[1]), "y=311,1511,3022,nan,nan");

    changeFrameWithFormula(document, {.multiDimFit = 0});
    EXPECT_EQ(
        refusalOf(document, [](Document &d) { fitDocument(d); }),
        "formula, line 1, column 8: names in quotes are other columns' (setDocAttributes -m yes)");
}

TEST(DocumentVariables, AreParametersTheFitAndTheLimits) {
    Document document = line();
    document.fitRange = {unset, 2.5};
    setFormula(document, "xmin * x + b");
    EXPECT_EQ(fitDocument(document).reason, "");
    EXPECT_NEAR(std::stod(variableOf(document, "xmin")), 2, 1e-9) << "a parameter hides it";

    Column other = column("other", {-1, 8, 9, 7});
    other.look.upperX = other.look.rightY = true;
    document.sources.push_back({"Data 2", {table({40, 50, 60, 70}, {other})}});
    const std::pair<const char *, const char *> limits[] = {
        {"x2min", "40"}, {"x2max", "70"}, {"y2min", "-1"},   {"y2max", "9"},  {"ymin", "1"},
        {"xmax", "3"},   {"fitmin", "0"}, {"fitmax", "2.5"}, {"points", "3"}, {"b.error", "0.25"}};
    document.parameters[1].error = 0.25;
    for (const auto &[name, value] : limits) EXPECT_EQ(variableOf(document, name), value) << name;
    EXPECT_EQ(refusalOf(document, [](Document &d) { variableOf(d, "z"); }), "no variable \"z\"");
}

// A straight line through (0, 1), (1, 2), (2, 4), (3, 4) with errors of 1/2: by hand,
// a = 1.1, b = 1.1, sum of squares 0.7, J'J = ((14, 6), (6, 4)).
TEST(DocumentVariables, TellWhatAPaperTells) {
    Document document = documentOf(
        table({0, 1, 2, 3}, {column("y", {1, 2, 4, 4}), column("y error", {.5, .5, .5, .5})}));
    document.fit.iterations = 7; // of a result that is none
    EXPECT_EQ(variableOf(document, "iterations"), "0");
    EXPECT_EQ(variableOf(document, "report"), "no fit");
    for (const char *name : {"status", "redchi", "ndf", "rsquared"})
        EXPECT_EQ(variableOf(document, name), "NAN") << name;
    setFormula(document, "slope = a*x\nslope+b+c");
    setParameters(document, "c = 0!", '.');
    fitDocument(document);
    const auto expect = [&](const char *name, double value) {
        EXPECT_NEAR(parameter(document, name), value, 1e-12) << name;
    };
    const double scatter = 2.8 / 2;
    expect("status", 0);
    expect("ndf", 2);
    expect("redchi", scatter);
    expect("rsquared", 1 - 0.7 / 6.75);
    expect("a.error", std::sqrt(scatter / 4 * 4 / 20));
    expect("covariance.a.a", scatter / 4 * 4 / 20);
    expect("covariance.b.a", scatter / 4 * -6 / 20);
    EXPECT_EQ(variableOf(document, "covariance.c.a"), "NAN");
    expect("correlation.a.b", -6 / std::sqrt(14 * 4.));
    EXPECT_EQ(variableOf(document, "covariance.a.c"), "NAN");
    for (const char *name : {"covariance.a.d", "covariance.a", "correlation..", "redchi.a"})
        EXPECT_EQ(refusalOf(document, [&](Document &d) { variableOf(d, name); }),
                  "no variable \"" + std::string(name) + '"');
    EXPECT_EQ(variableOf(document, "report"), "formula: slope = a*x; slope+b+c\n"
                                              "points: 4\n"
                                              "degrees of freedom: 2\n"
                                              "chi-square: 2.8\n"
                                              "reduced chi-square: 1.4\n"
                                              "p value: 0.247\n"
                                              "R-squared: 0.896296\n"
                                              "errors of the parameters: scaled by the scatter of "
                                              "the data\n"
                                              "a = 1.10 +- 0.26 (24 %)\n"
                                              "b = 1.1 +- 0.5 (45 %)\n"
                                              "c = 0 (fixed)");

    setParameters(document, "absolute, b = 3 [3, 4], c = -1!", '.');
    EXPECT_EQ(parametersOf(document, ','), "a = 1,10 +- 0,26\nb = 3 [3; 4]\nc = -1 !\nabsolute");
    fitDocument(document);
    expect("a.error", std::sqrt(1 / 4. / 14));
    EXPECT_EQ(variableOf(document, "ndf"), "3");
    expectReported(document, {"b = 3 (at its bound)", "(absolute)"});
    const std::string report = variableOf(document, "report");
    const std::string fitted = parametersOf(document, '.');
    EXPECT_NE(fitted.find("b = 3 [3; 4] |\n"), std::string::npos) << fitted;
    setParameters(document, fitted, '.');
    EXPECT_EQ(document.parameters[1].bounds.max, 4);
    EXPECT_EQ(variableOf(document, "report"), report) << "of the fit, not of what is set since";

    document.sources[0].tables[0].y[1].values.assign(4, 1e-6);
    fitDocument(document);
    expectReported(document, {"p value: < 1e-300\n"});

    document.sources[0].tables[0].y.resize(1); // without errors, and with one degree of freedom
    document.sources[0].tables[0].y[0].values = {2, 1, 2, nan_};
    setFormula(document, "m + k*(x-10)");
    setParameters(document, "", '.');
    fitDocument(document);
    expect("redchi", 2. / 3);
    expectReported(document, {"unknown without errors", "correlation of m and k: 0.996"});
    setFormula(document, "m + k*(x+10)");
    fitDocument(document);
    expectReported(document, {"correlation of m and k: -0.997"});

    FitResult result{.done = true};
    result.parameters = {{"k", 0, 0.5}, {"l", -1, 0.9951}, {"m", 2}};
    const std::string parameters = fitReport(result);
    EXPECT_TRUE(parameters.ends_with("\nk = 0e+00 +- 5e-01\nl = -1.0 +- 1.0 (100 %)\n"
                                     "m = 2 (error unknown)"))
        << parameters;
    EXPECT_EQ(parameters.find("reduced"), std::string::npos) << "without a degree of freedom";
    result.weighted = true;
    result.chiSquare = result.freedom = 1;
    EXPECT_NE(fitReport(result).find("p value: 0.317\n"), std::string::npos);
}

TEST(DocumentFit, TellsHowManyPointsItLeftOutAndWhy) {
    Document document =
        documentOf(table({0, 1, 2, 3, 4, 5, 6, 7, 8, nan_},
                         {column("y", {1, 3, 5, 7, 9, infinity, nan_, 15, 90, nan_}),
                          column("y error", {1, 1, 1, 0, -1, 1, 1, nan_, 0, 0})}));
    document.sources[0].tables[0].y[0].rank = 1;
    document.fitRange = {unset, 7.5}; // what is beyond isn't left out, but not asked for
    setFormula(document, "a*x+b");
    testing::internal::CaptureStderr();
    fitDocument(document);
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "plotwerkd: warning: \"" + document.name +
                  "\": the fit left out 3 points without an error above 0, 2 points without a "
                  "finite value\n");
    expectReported(document, {"points: 3\nleft out: 3 points without an error above 0, 2 points "
                              "without a finite value\ndegrees"});
    const std::string report = variableOf(document, "report");

    document.fitRange = {2.5, 4.5};
    EXPECT_EQ(fitDocument(document).reason,
              "fit status 1, impossible: no data with an error above 0 in the fit range; widen it, "
              "or check the column of errors (left out: 2 points without an error above 0)");
    EXPECT_EQ(variableOf(document, "report"), report) << "of the fit that converged";

    document.frame.multiDimFit = true;
    document.sources[0].tables[0].y.push_back(column("T", {1, 1, nan_, 1, 1, 1, 1, 1, 1, 1}));
    setFormula(document, "a*x*T");
    document.fitRange = {unset, 2.5};
    testing::internal::CaptureStderr();
    fitDocument(document);
    const std::string logged = testing::internal::GetCapturedStderr();
    EXPECT_NE(logged.find("left out 1 point without a finite value\n"), std::string::npos)
        << logged;
}
