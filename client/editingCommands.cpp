#include "client/answer.h"
#include "client/commandTable.h"
#include "client/execute.h"

namespace command {

static void statistic(PlotwerkControl &plotwerk, const Options &) {
    const auto [name, dataPoints, min, max, sum, std, area] =
        plotwerk.statisticOfSelectionOf_name_dataPoints_min_max_sum_std_area_(documentName);
    answer("%d %g %g %g %g %g %s\n", dataPoints, min, max, sum, std, area, name.c_str());
}

static void searchMaxima(PlotwerkControl &plotwerk, const Options &options) {
    const bool maxima = yesNo(options['g']);
    const bool minima = yesNo(options['s']);
    const int minWidth = integer(options['w'], 10);
    const double minHeight = real(options['h'], 10.0);
    plotwerk.searchMaximaOfSelectionOf_searchMaxima_searchMinima_minwidth_minheight_(
        documentName, maxima, minima, minWidth, minHeight);
}

static void createCurveAtSelection(PlotwerkControl &plotwerk, const Options &options) {
    const double minX = real(options['s'], 0.0);
    const double maxX = real(options['e'], 100.0);
    const double incX = real(options['i'], 1.0);
    const double minY = real(options['y'], 0.0);
    const double incY = real(options['j'], 1.0);
    plotwerk.createCurveAtSelectionOf_minx_maxx_incx_miny_incy_(documentName, minX, maxX, incX,
                                                                minY, incY);
}

static void changeNameOfSelection(PlotwerkControl &plotwerk, const Options &options) {
    plotwerk.changeNameOfSelectionOf_to_(documentName, textOf(options['t']));
}

static void modifyX(PlotwerkControl &plotwerk, const Options &) {
    plotwerk.modifyDataOf_Ydata_(documentName, false);
}

static void modifyY(PlotwerkControl &plotwerk, const Options &) {
    plotwerk.modifyDataOf_Ydata_(documentName, true);
}

static void show(PlotwerkControl &plotwerk, const Options &) {
    plotwerk.showCurveOf_(documentName);
}

static void diff(PlotwerkControl &plotwerk, const Options &) {
    plotwerk.diffOf_(documentName);
}

static void deleteSelection(PlotwerkControl &plotwerk, const Options &) {
    plotwerk.deleteSelectedCurvesOf_(documentName);
}

static void sortByX(PlotwerkControl &plotwerk, const Options &) {
    plotwerk.sortSelectedCurvesByXdata_(documentName);
}

static void sortBySelection(PlotwerkControl &plotwerk, const Options &options) {
    plotwerk.sortSelectedCurvesBySelection_ascending_(documentName, yesNo(options['r']));
}

static void swapWithX(PlotwerkControl &plotwerk, const Options &) {
    plotwerk.swapSelectedCurvesWithXdata_(documentName);
}

static constexpr CommandRow rows[] = {
    {"statistic", "", statistic},
    {"searchMaxima", "[-g yes-or-no] [-s yes-or-no] [-w integer] [-h real]", searchMaxima},
    {"createCurveAtSelection", "[-s real] [-e real] [-i real] [-y real] [-j real]",
     createCurveAtSelection},
    {"changeNameOfSelection", "-t text", changeNameOfSelection},
    {"modifyX", "", modifyX},
    {"modifyY", "", modifyY},
    {"show", "", show},
    {"diff", "", diff},
    {"delete", "", deleteSelection},
    {"sortByX", "", sortByX},
    {"sortBySelection", "[-r yes-or-no]", sortBySelection},
    {"swapWithX", "", swapWithX},
};

constinit const CommandTable editingCommands = rows;

} // namespace command
