#include "client/commandTable.h"
#include "client/execute.h"
#include "client/rtf.h"

namespace command {

static void setAttributes(PlotwerkControl &plotwerk, const Options &options) {
    const int line = triState(options['l']);
    const int stepped = triState(options['s']);
    const int yerr = triState(options['y']);
    const int xerr = triState(options['e']);
    const int dash = triState(options['a']);
    const int fill = triState(options.fText);
    const int topX = triState(options['t']);
    const int rightY = triState(options['r']);
    const int marker = triState(options['m']);
    const int sym = triState(options['S']);
    plotwerk.setAttributesOfSelectionOf_line_stepped_yerr_xerr_dash_fill_topX_rightY_marker_sym_(
        documentName, line, stepped, yerr, xerr, dash, fill, topX, rightY, marker, sym);
}

static void setAttributes2(PlotwerkControl &plotwerk, const Options &options) {
    constexpr int keep = -1; // the client can't set the third and the fourth symbol
    const int sum = integer(options['s']);
    const double interpolationPoints = real(options.pText);
    const int interpolationType = integer(options['t']);
    const double symbolSize = real(options['y']);
    const int symbolInc = integer(options['c']);
    const int symbol1 = integer(options['m']);
    const int symbol2 = integer(options['n']);
    const double lineThickness = real(options['w']);
    const double dashLength1 = real(options['h']);
    const double dashLength2 = real(options['i']);
    const double dashLength3 = real(options['j']);
    const double dashLength4 = real(options['k']);
    const double lineRed = real(options['r']);
    const double lineGreen = real(options['g']);
    const double lineBlue = real(options['b']);
    const double lineOpacity = real(options['o']);
    const double fillRed = real(options['R']);
    const double fillGreen = real(options['G']);
    const double fillBlue = real(options['B']);
    const double fillOpacity = real(options['O']); // no option fills slot O: always NaN
    plotwerk.setAttributes2OfSelectionOf_(
        documentName, sum, interpolationPoints, interpolationType, symbolSize, symbolInc, symbol1,
        symbol2, keep, keep, lineThickness, dashLength1, dashLength2, dashLength3, dashLength4,
        lineRed, lineGreen, lineBlue, lineOpacity, fillRed, fillGreen, fillBlue, fillOpacity);
}

static void setDocAttributes(PlotwerkControl &plotwerk, const Options &options) {
    const double xAxisLength = real(options['w']);
    const double yAxisLength = real(options['h']);
    const double tickLength = real(options['t']);
    const double axisThickness = real(options['a']);
    const double yAxisPos = real(options['e']);
    const double xAxisPos = real(options['y']);
    // Plain yes or no: left out, these two are switched off, not kept.
    const bool multiDimFit = yesNo(options['m']);
    const bool noLineOnRev = yesNo(options['r']);
    plotwerk
        .setDocAttributes_xAxisLength_yAxisLength_tickLength_axisThickness_yAxisPos_xAxisPos_multiDimFit_noLineOnRev_(
            documentName, xAxisLength, yAxisLength, tickLength, axisThickness, yAxisPos, xAxisPos,
            multiDimFit, noLineOnRev);
}

static void setAxis(PlotwerkControl &plotwerk, const Options &options) {
    const int axisCode = integer(options['a'], 1);
    const double inc = real(options['i']);
    const int ticks = integer(options['t']);
    const int prec = integer(options['p']); // -p fills the long text: this slot is always empty
    const int log = triState(options['l']);
    const int insideticks = triState(options['u']);
    const int outsideticks = triState(options['w']);
    const int majorgrid = triState(options['m']);
    const int minorgrid = triState(options['n']);
    const int expnumbers = triState(options['e']);
    const double labelAngle = real(options['r']);
    const int noline = triState(options['o']);
    const int numbersinside = triState(options['d']); // shares -d with the target document
    const int nonumbers = triState(options['k']);
    const int arrow = triState(options['p']); // always empty, as for prec
    const int logticksAt = integer(options['b']);
    const int lognumberAt = integer(options['c']);
    const int reverse = triState(options['s']);
    const double labelDensity = real(options['g']);
    plotwerk
        .setAxisOf_axisCode_inc_ticks_prec_log_insideticks_outsideticks_majorgrid_minorgrid_expnumbers_labelAngle_noline_numbersinside_nonumbers_arrow_logticksAt_lognumberAt_reverse_labelDensity_(
            documentName, axisCode, inc, ticks, prec, log, insideticks, outsideticks, majorgrid,
            minorgrid, expnumbers, labelAngle, noline, numbersinside, nonumbers, arrow, logticksAt,
            lognumberAt, reverse, labelDensity);
}

static void placeText(PlotwerkControl &plotwerk, const Options &options) {
    const std::string rtf = rtfOfText(options['t']);
    const double x = real(options['r'], 0.5);
    const double y = real(options['u'], 0.5);
    const double angle = real(options['a'], 0.0);
    const double xFloating = yesNo(options.fText) ? 1.0 : 0.0;
    const double yFloating = yesNo(options['g']) ? 1.0 : 0.0;
    plotwerk.setRTFTextOf_to_at_X_at_Y_angle_xFloating_yFloating_(documentName, rtf, x, y, angle,
                                                                  xFloating, yFloating);
}

static constexpr CommandRow rows[] = {
    {"setAttributes", "[-l | s | y | e | a | f | t | r | m | S flag]", setAttributes},
    {"setAttributes2",
     "[-s | t | c | m | n integer] [-p | y | w | h | i | j | k | r | g | b | o | R | G | B real]",
     setAttributes2},
    {"setDocAttributes", "[-w | h | t | a | e | y real] [-m | r yes-or-no]", setDocAttributes},
    {"setAxis",
     "[-a | t | b | c integer] [-i | r | g real] [-l | u | w | m | n | e | o | k | s flag]",
     setAxis},
    {"placeText", "-t text [-r x] [-u y] [-a angle] [-f yes-or-no] [-g yes-or-no]", placeText},
};

constinit const CommandTable attributeCommands = rows;

} // namespace command
