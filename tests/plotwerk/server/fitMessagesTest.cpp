// The formula, its parameters and the fit, asked for from outside.
#include "tests/plotwerk/server/serverTest.h"

#include <cmath>

class FitMessages : public ServerTest {
  protected:
    FitMessages() {
        start();
        plotwerk->replaceDataformText_of_source_doRangeOverAll_("x y\n0 1\n1 3\n2 6\n3 7\n",
                                                                "Untitled", "", false);
    }

    std::string variable(const std::string &name) {
        return plotwerk->getVarOf_varName_("Untitled", name);
    }
};

TEST_F(FitMessages, AnswerWhatTheFitFoundAndKeepIt) {
    plotwerk->setFormulaOf_formulaText_("Untitled", "a*x + b");
    const auto [status, iterations, lambda, chiSquare] =
        plotwerk->startFitOf_iterations_lambda_chiq_("Untitled");
    EXPECT_EQ(status, 0) << lastError();
    EXPECT_NEAR(chiSquare, 0.7, 1e-14);
    const double want[] = {2.1, std::sqrt(0.35 / 5), chiSquare, lambda, 4};
    for (int i = 0; const char *name : {"a", "a.error", "chiq", "lambda", "points"})
        EXPECT_NEAR(std::stod(variable(name)), want[i++], 1e-14) << name;
    EXPECT_EQ(variable("iterations"), std::to_string(iterations));
    const std::string list = "a = 2.10 +- 0.26\nb = 1.1 +- 0.5";
    EXPECT_EQ(plotwerk->formulaParameterListOf_("Untitled"), list);

    const std::string contents = contentsOf("Untitled");
    plotwerk->saveDocument_as_binary_("Untitled", pathOf("saved"), true);
    plotwerk->closeDocument_askForSave_("Untitled", false);
    plotwerk->openFile_file_doRangeOverAll_("", pathOf("saved"), false);
    EXPECT_EQ(contentsOf("Untitled"), contents);
    EXPECT_EQ(plotwerk->formulaParameterListOf_("Untitled"), list);
    EXPECT_EQ(plotwerk->indexOfCurveNameOf_source_table_column_("Untitled", "Fit", 1, "Fit"), 1);
    EXPECT_NEAR(plotwerk->YValueOfDoc_atX_indexSerie_("Untitled", 2, 1), 5.3, 1e-14);
}

TEST_F(FitMessages, ChangeNothingWhenRefusedAndSayWhy) {
    plotwerk->setFormulaOf_formulaText_("Untitled", "(a+b)*x");
    plotwerk->readFormulaParameterOf_parameterList_("Untitled", "a = 7\nb = 0.5 !");
    EXPECT_EQ(lastError(), "");
    plotwerk->readFormulaParameterOf_parameterList_("Untitled", "b = 0.5");
    const std::string contents = contentsOf("Untitled");

    plotwerk->setFormulaOf_formulaText_("Untitled", "c*(x");
    EXPECT_EQ(lastError(),
              "setFormulaOf:formulaText: \"Untitled\": formula, line 1, column 5: expected ')'");
    plotwerk->readFormulaParameterOf_parameterList_("Untitled", "a = 1, c = 2");
    EXPECT_EQ(lastError(),
              "readFormulaParameterOf:parameterList: \"Untitled\": no parameter \"c\"");
    const auto [status, iterations, lambda, chiSquare] =
        plotwerk->startFitOf_iterations_lambda_chiq_("Untitled");
    EXPECT_NE(status, 0);
    EXPECT_TRUE(std::isnan(chiSquare));
    EXPECT_EQ(lastError(),
              "startFitOf:iterations:lambda:chiq: \"Untitled\": the data do not determine a and b "
              "independently");
    EXPECT_EQ(plotwerk->formulaTextOf_("Untitled"), "(a+b)*x");
    EXPECT_EQ(plotwerk->formulaParameterListOf_("Untitled"), "a = 7\nb = 0.5");
    EXPECT_EQ(variable("chiq"), "NAN");
    EXPECT_EQ(contentsOf("Untitled"), contents);
}

TEST_F(FitMessages, CommasInParametersAreThoseOfTheSeparator) {
    plotwerk->setDeciSeparator_(1);
    plotwerk->setFormulaOf_formulaText_("Untitled", "a*x + b*atan2(0.5,1)");
    plotwerk->readFormulaParameterOf_parameterList_("Untitled", "a = 1,5, b = 2,25");
    EXPECT_EQ(plotwerk->formulaParameterListOf_("Untitled"), "a = 1,5\nb = 2,25");
    EXPECT_EQ(variable("a"), "1.5") << "variables have points";
}

TEST_F(FitMessages, ModifyTheSelectionByTheFormula) {
    plotwerk->setFormulaOf_formulaText_("Untitled", "y - x");
    plotwerk->selectCurvesOf_indexFirst_indexLast_appendSelection_("Untitled", 0, 0, false);
    plotwerk->modifyDataOf_Ydata_("Untitled", true);
    plotwerk->modifyDataOf_Ydata_("Untitled", false);
    EXPECT_EQ(plotwerk->dataOfSelectedCurvesOf_("Untitled"), "x\ty\n1\t1\n1\t2\n2\t4\n1\t4\n");
}
