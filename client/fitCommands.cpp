#include "client/answer.h"
#include "client/commandTable.h"
#include "client/execute.h"
#include "util/number/decimal.h"

#include <cstring>
#include <tuple>

namespace command {

static void getXRange(PlotwerkControl &plotwerk, const Options &) {
    const auto [xmin, xmax] = plotwerk.getXRangeOf_xmin_xmax_(documentName);
    answer("xmin= %g xmax= %g\n", xmin, xmax);
}

static void getFitRange(PlotwerkControl &plotwerk, const Options &) {
    const auto [xmin, xmax] = plotwerk.getFitRangeOf_xmin_xmax_(documentName);
    answer("xmin= %g xmax= %g\n", xmin, xmax);
}

static void getYRange(PlotwerkControl &plotwerk, const Options &) {
    const auto [ymin, ymax] = plotwerk.getYRangeOf_ymin_ymax_(documentName);
    answer("ymin= %g ymax= %g\n", ymin, ymax);
}

static void setXRange(PlotwerkControl &plotwerk, const Options &options) {
    const double xmin = real(options['s']);
    const double xmax = real(options['e']);
    plotwerk.setXRangeOf_xmin_xmax_(documentName, xmin, xmax);
}

static void setFitRange(PlotwerkControl &plotwerk, const Options &options) {
    const double xmin = real(options['s']);
    const double xmax = real(options['e']);
    plotwerk.setFitRangeOf_xmin_xmax_(documentName, xmin, xmax);
}

static void setYRange(PlotwerkControl &plotwerk, const Options &options) {
    const double ymin = real(options['s']);
    const double ymax = real(options['e']);
    plotwerk.setYRangeOf_ymin_ymax_(documentName, ymin, ymax);
}

static void getVar(PlotwerkControl &plotwerk, const Options &options) {
    const std::string variable = textOf(options['s']);
    const std::string value = plotwerk.getVarOf_varName_(documentName, variable);
    answer("%s\n", value.c_str());
    // Answered or refused: lastError stays what it was unless this was refused.
    if (value.empty() && variable != "lastError") tellRefusal(plotwerk, "getVar");
}

static void setFormula(PlotwerkControl &plotwerk, const Options &options) {
    plotwerk.setFormulaOf_formulaText_(documentName, textOf(options.fText));
}

static void setFormulaParameters(PlotwerkControl &plotwerk, const Options &options) {
    plotwerk.readFormulaParameterOf_parameterList_(documentName, textOf(options.pText));
}

// A copy of the text with blanks for line feeds, which the caller never frees: losing one buffer
// per command is deliberate.
static char *oneLineOf(const std::string &text) {
    char *line = strdup(text.c_str());
    for (std::size_t i = std::strlen(line); i-- > 0;) {
        if (line[i] == '\n') line[i] = ' ';
    }
    return line;
}

static void getFormula(PlotwerkControl &plotwerk, const Options &) {
    // Its commas stay: they separate the arguments of functions.
    answer("%s\n", oneLineOf(plotwerk.formulaTextOf_(documentName)));
}

static void getFormulaParameters(PlotwerkControl &plotwerk, const Options &) {
    char *line = oneLineOf(plotwerk.formulaParameterListOf_(documentName));
    plw::decimalSeparatorToDot(line);
    answer("%s\n", line);
}

static void fit(PlotwerkControl &plotwerk, const Options &) {
    const auto [status, iterations, lambda, chiq] =
        plotwerk.startFitOf_iterations_lambda_chiq_(documentName);
    // 0 is success here, unlike didSaveSucceed's yes.
    answer("fit %s %d %g %g\n", status == 0 ? "succeeded" : "ERROR", iterations, lambda, chiq);
}

static constexpr CommandRow rows[] = {
    {"getXRange", "", getXRange},
    {"getFitRange", "", getFitRange},
    {"getYRange", "", getYRange},
    {"setXRange", "[-s min] [-e max]", setXRange},
    {"setFitRange", "[-s min] [-e max]", setFitRange},
    {"setYRange", "[-s min] [-e max]", setYRange},
    {"getVar", "-s name", getVar, false},
    {"setFormula", "-f text", setFormula},
    {"setFormulaParameters", "-p text", setFormulaParameters},
    {"getFormula", "", getFormula},
    {"getFormulaParameters", "", getFormulaParameters},
    {"fit", "", fit},
};

constinit const CommandTable fitCommands = rows;

} // namespace command
