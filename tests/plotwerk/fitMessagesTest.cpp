// The formula, its parameters and the fit, asked for from outside.
#include "tests/plotwerk/serverTest.h"

#include <cmath>
#include <fstream>
#include <sstream>

namespace {

// The data of a set of NIST's regression data, lines of y and x from line 61 on, as "x y".
std::string dataText(const std::string &set) {
    std::ifstream file(std::string(TEST_DATA_DIR) + "/nist/" + set + ".dat");
    EXPECT_TRUE(file) << set;
    std::string line;
    for (int i = 0; i < 60; ++i) std::getline(file, line);
    std::string text = "x y\n";
    for (std::string y, x; file >> y >> x;) text.append(x).append(" ").append(y).append("\n");
    return text;
}

} // namespace

class FitMessages : public ServerTest {
  protected:
    FitMessages() { start(); }

    std::string variable(const std::string &name) {
        return plotwerk->getVarOf_varName_("Untitled", name);
    }
    double number(const std::string &name) { return std::stod(variable(name)); }

    void read(const std::string &text) {
        plotwerk->replaceDataformText_of_source_doRangeOverAll_(text, "Untitled", "", false);
        ASSERT_EQ(lastError(), "");
    }
};

// Thurber from its first starting values; the certified values are those of the set.
TEST_F(FitMessages, FindTheCertifiedValues) {
    read(dataText("Thurber"));
    plotwerk->setFormulaOf_formulaText_(
        "Untitled", "top = b1+b2*x+b3*x^2+b4*x^3\nbottom = 1+b5*x+b6*x^2+b7*x^3\ntop/bottom");
    plotwerk->readFormulaParameterOf_parameterList_(
        "Untitled", "b1=1000, b2=1000, b3=400, b4=40\nb5=0.7, b6=0.3, b7=0.03");
    const auto [status, iterations, lambda, chiSquare] =
        plotwerk->startFitOf_iterations_lambda_chiq_("Untitled");
    EXPECT_EQ(status, 0) << lastError();
    EXPECT_GT(iterations, 0);
    EXPECT_NEAR(chiSquare, 5.6427082397E+03, 1e-6);
    const struct {
        const char *name;
        double value, deviation;
    } certified[] = {
        {"b1", 1.2881396800E+03, 4.6647963344E+00}, {"b2", 1.4910792535E+03, 3.9571156086E+01},
        {"b3", 5.8323836877E+02, 2.8698696102E+01}, {"b4", 7.5416644291E+01, 5.5675370270E+00},
        {"b5", 9.6629502864E-01, 3.1333340687E-02}, {"b6", 3.9797285797E-01, 1.4984928198E-02},
        {"b7", 4.9727297349E-02, 6.5842344623E-03}};
    for (const auto &c : certified) {
        EXPECT_NEAR(number(c.name), c.value, 1e-8 * c.value) << c.name;
        EXPECT_NEAR(number(std::string(c.name) + ".error"), c.deviation, 1e-8 * c.deviation);
    }
    EXPECT_EQ(number("chiq"), chiSquare);
    EXPECT_EQ(number("lambda"), lambda);
    EXPECT_EQ(number("iterations"), iterations);
    EXPECT_EQ(variable("points"), "37");
    const std::string list = plotwerk->formulaParameterListOf_("Untitled");
    EXPECT_EQ(list.substr(0, list.find('\n')), "b1 = 1288 +- 5");

    // it all survives saving, and so does the curve that was drawn
    const std::string contents = contentsOf("Untitled");
    plotwerk->saveDocument_as_binary_("Untitled", pathOf("saved"), true);
    plotwerk->closeDocument_askForSave_("Untitled", false);
    plotwerk->openFile_file_doRangeOverAll_("", pathOf("saved"), false);
    EXPECT_EQ(contentsOf("Untitled"), contents);
    EXPECT_EQ(plotwerk->formulaParameterListOf_("Untitled"), list);
    EXPECT_EQ(plotwerk->indexOfCurveNameOf_source_table_column_("Untitled", "Fit", 1, "Fit"), 1);
    EXPECT_NEAR(plotwerk->YValueOfDoc_atX_indexSerie_("Untitled", 0, 1), 1288.14, 1);
}

TEST_F(FitMessages, KeepFormulaAndParametersWhenRefused) {
    read("0 1\n1 3\n2 5\n");
    plotwerk->setFormulaOf_formulaText_("Untitled", "a*x + b");
    plotwerk->readFormulaParameterOf_parameterList_("Untitled", "a = 7\nb = 0.5 !");
    EXPECT_EQ(lastError(), "");
    const std::string contents = contentsOf("Untitled");

    plotwerk->setFormulaOf_formulaText_("Untitled", "c*(x");
    EXPECT_EQ(lastError(),
              "setFormulaOf:formulaText: \"Untitled\": formula, line 1, column 5: expected ')'");
    plotwerk->readFormulaParameterOf_parameterList_("Untitled", "a = 1, c = 2");
    EXPECT_EQ(lastError(),
              "readFormulaParameterOf:parameterList: \"Untitled\": no parameter \"c\"");
    EXPECT_EQ(plotwerk->formulaTextOf_("Untitled"), "a*x + b");
    EXPECT_EQ(plotwerk->formulaParameterListOf_("Untitled"), "a = 7\nb = 0.5 !");
    EXPECT_EQ(contentsOf("Untitled"), contents);

    plotwerk->setFormulaOf_formulaText_("Untitled", "c + a*x");
    EXPECT_EQ(plotwerk->formulaParameterListOf_("Untitled"), "c = 1\na = 7");
}

TEST_F(FitMessages, LeaveTheParametersOfAFailedFitAndSayWhy) {
    read("0 1\n1 3\n2 5\n");
    plotwerk->setFormulaOf_formulaText_("Untitled", "(a+b)*x");
    const std::string contents = contentsOf("Untitled");
    const auto [status, iterations, lambda, chiSquare] =
        plotwerk->startFitOf_iterations_lambda_chiq_("Untitled");
    EXPECT_NE(status, 0);
    EXPECT_TRUE(std::isnan(chiSquare));
    EXPECT_EQ(lastError(),
              "startFitOf:iterations:lambda:chiq: \"Untitled\": the data do not determine a and b "
              "independently");
    EXPECT_EQ(contentsOf("Untitled"), contents);
    EXPECT_EQ(variable("chiq"), "NAN");
}

TEST_F(FitMessages, CommasInParametersAreThoseOfTheSeparator) {
    plotwerk->setDeciSeparator_(1);
    plotwerk->setFormulaOf_formulaText_("Untitled", "a*x + b");
    plotwerk->readFormulaParameterOf_parameterList_("Untitled", "a = 1,5, b = 2,25");
    EXPECT_EQ(plotwerk->formulaParameterListOf_("Untitled"), "a = 1,5\nb = 2,25");
    EXPECT_EQ(variable("a"), "1.5") << "variables have points";
}

TEST_F(FitMessages, ModifyTheSelectionByTheFormula) {
    read("x a\n1 10\n2 nan\n3 30\n");
    plotwerk->setFormulaOf_formulaText_("Untitled", "y - x");
    plotwerk->selectCurvesOf_indexFirst_indexLast_appendSelection_("Untitled", 0, 0, false);
    plotwerk->modifyDataOf_Ydata_("Untitled", true);
    EXPECT_EQ(plotwerk->valueOfDoc_atIndex_indexSerie_("Untitled", 2, 0), 27);
    plotwerk->modifyDataOf_Ydata_("Untitled", false);
    EXPECT_EQ(plotwerk->dataOfSelectedCurvesOf_("Untitled"), "x\ta\n8\t9\n2\tNAN\n24\t27\n");
    EXPECT_EQ(plotwerk->YValueOfDoc_atX_indexSerie_("Untitled", 24, 0), 27);
}
