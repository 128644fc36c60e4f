#include "client/answer.h"
#include "client/commandTable.h"
#include "client/execute.h"

#include <cmath>
#include <limits>

namespace command {

static void YatX(PlotwerkControl &plotwerk, const Options &options) {
    const double x = real(options['a']);
    const int series = integer(options['s']);
    answer("%g\n", plotwerk.YValueOfDoc_atX_indexSerie_(documentName, x, series));
}

static void Yi(PlotwerkControl &plotwerk, const Options &options) {
    const int index = integer(options['i']);
    const int series = integer(options['s']);
    answer("%g\n", plotwerk.valueOfDoc_atIndex_indexSerie_(documentName, index, series));
}

static void iAtX(PlotwerkControl &plotwerk, const Options &options) {
    const double x = real(options['a']);
    const int series = integer(options['s']);
    answer("%d\n", plotwerk.indexOfPointOfDoc_atX_indexSerie_(documentName, x, series));
}

static void iAtXY(PlotwerkControl &plotwerk, const Options &options) {
    constexpr double unknown = std::numeric_limits<double>::quiet_NaN();
    const double x = real(options['a']);
    const double y = real(options['b']);
    const auto [curve, index, dataX, dataY] =
        plotwerk.indexOfPointOfDoc_atX_atY_curve_index_dataX_dataY_(documentName, x, y, 0, 0,
                                                                    unknown, unknown);
    answer("%d %d %g %g\n", curve, index, dataX, dataY);
}

static void setYi(PlotwerkControl &plotwerk, const Options &options) {
    const int index = integer(options['i']);
    const int series = integer(options['s']);
    const double value = real(options['a']);
    plotwerk.setValueOfDoc_atIndex_indexSerie_toValue_(documentName, index, series, value);
}

static void selectedIndex(PlotwerkControl &plotwerk, const Options &) {
    answer("%d\n", plotwerk.indexOfSelectedCurveOf_(documentName));
}

static void fitCurveIndex(PlotwerkControl &plotwerk, const Options &) {
    answer("%d\n", plotwerk.indexOfFitCurveOf_(documentName));
}

static void mouseClick(PlotwerkControl &plotwerk, const Options &) {
    const auto [x1, y1, x2, y2, keyMode] =
        plotwerk.mouseEventsShiftKeyDownOf_x1_y1_x2_y2_keyMode_(documentName);
    if (std::isnan(x1)) {
        answer("none\n");
    } else {
        answer("%g %g %g %g %d\n", x1, y1, x2, y2, keyMode);
    }
}

static constexpr CommandRow rows[] = {
    {"YatX", "-a x [-s series]", YatX},
    {"Yi", "-i point [-s series]", Yi},
    {"iAtX", "-a x [-s series]", iAtX},
    {"iAtXY", "-a x -b y", iAtXY},
    {"setYi", "-i point -a value [-s series]", setYi},
    {"selectedIndex", "", selectedIndex},
    {"fitCurveIndex", "", fitCurveIndex},
    {"mouseClick", "", mouseClick},
};

constinit const CommandTable pointCommands = rows;

} // namespace command
