// Every message, its arguments told from each other by what it does with them.
#include "tests/plotwerk/server/serverTest.h"

#include <algorithm>
#include <cstdlib>
#include <map>
#include <nlohmann/json.hpp>
#include <regex>
#include <set>
#include <sstream>

namespace fs = std::filesystem;
using nlohmann::json;

namespace {

// A message, or several in turn, as in
//   setXRangeOf:'doc' xmin:0.5 xmax:1.5
// and what comes of it: its answer, lastError, the document in front unless that is
// still "other", new files, and what has become another in the document "doc".
struct MessageCase {
    std::string messages;
    std::string outcome = "";
};

// The document "doc" at the beginning of each case: the source A with the tables (t, u, v, u error)
// and (t, z), the source B with (x, w). v is selected, u is the data to fit, u and w are marked, x
// has a range. "other" is in front, v on the clipboard, and there is a page.
const std::string dataOfA = "t u v \"u error\"\n0 1 5 .1\n1 4 3 .2\n2 2 8 .1\n3 0 6 .2\n\n"
                            "t z\n3 7\n1 9\n";
const std::string dataOfB = "x w\n0 0\n1 0\n2 5\n3 0\n4 0\n5 2\n6 2\n7 2\n8 0\n9 0\n";

const MessageCase cases[] = {
    {"documentNameOfFrontWindow", "'other'"},
    {"waitForEmptyReply"},
    {"actify:'doc'", "front doc"},
    {"printDoc:'doc'", "printDoc: \"doc\": can't start lp: No such file or directory"},
    {"closeDocument:'doc' askForSave:no"},
    {"closeDocument:'doc' askForSave:yes", "state/plotwerk/doc.json JSON"},
    {"newDocumentWithName:'new'", "front new"},
    {"openFile:'doc' file:'DIR/text' doRangeOverAll:no", "front text"},
    {"display:'doc' doRangeOverAll:no", "front doc"},
    {"display:'doc' doRangeOverAll:yes", "front doc; axes/0/range/max null; axes/0/range/min null"},
    {"saveDocument:'doc' to:'DIR/copy' binary:no\ncloseDocument:'doc' askForSave:yes",
     "copy JSON; state/plotwerk/doc.json JSON"},
    {"saveDocument:'doc' as:'DIR/own' binary:yes\ncloseDocument:'doc' askForSave:yes", "own CBOR"},
    {"didSaveSucceed:'doc'\nsavePicturePDF:'doc' as:'DIR/a'\ndidSaveSucceed:'doc'",
     "yes; yes; a PDF"},
    {"YValueOfDoc:'doc' atX:1.5 indexSerie:4", "2.5"},
    {"YValueOfDoc:'doc' atX:1.5 indexSerie:-1", "5.5"},
    {"valueOfDoc:'doc' atIndex:2 indexSerie:0", "2"},
    {"indexOfPointOfDoc:'doc' atX:1.5 indexSerie:1", "1"},
    {"indexOfPointOfDoc:'doc' atX:1 atY:9 curve:0 index:0 dataX:0 dataY:0", "3 1 1 9"},
    {"setValueOfDoc:'doc' atIndex:2 indexSerie:0 toValue:1.5", "0/0/y/0/values 1 4 1.5 0"},
    {"indexOfSelectedCurveOf:'doc'", "1"},
    {"indexOfFitCurveOf:'doc'", "0"},
    {"mouseEventsShiftKeyDownOf:'doc'", "nan nan nan nan 0"},
    {"selectCurvesOf:'doc' sourceName:'A' table:2 column:'' appendSelection:yes",
     "0/1/y/0/place 2"},
    {"selectCurvesOf:'doc' sourceName:'' table:-1 column:'w' appendSelection:no",
     "0/0/y/1/place 0; 1/0/y/0/place 1"},
    {"selectCurvesOf:'doc' regexSourceName:'[Bx]' table:1 regexColumn:'.' appendSelection:yes",
     "1/0/y/0/place 2"},
    {"selectCurvesOf:'doc' regexSourceName:'A' table:-1 regexColumn:'[uz]' appendSelection:no",
     "0/0/y/0/place 1; 0/0/y/1/place 0; 0/1/y/0/place 2"},
    {"selectCurvesOf:'doc' sourceIndexFirst:1 sourceIndexLast:1 tableFirst:1 tableLast:1 "
     "columnFirst:3 columnLast:3 appendSelection:yes",
     "0/0/y/2/place 2"},
    {"selectCurvesOf:'doc' sourceIndexFirst:1 sourceIndexLast:2 tableFirst:1 tableLast:1 "
     "columnFirst:1 columnLast:2 appendSelection:no",
     "0/0/y/0/place 1; 0/0/y/1/place 2; 1/0/y/0/place 3"},
    {"selectCurvesOf:'doc' sourceIndexFirst:1 sourceIndexLast:-1 tableFirst:2 tableLast:-1 "
     "columnFirst:1 columnLast:-1 appendSelection:no",
     "0/0/y/1/place 0; 0/1/y/0/place 1"},
    {"selectCurvesOf:'doc' indexFirst:3 indexLast:4 appendSelection:yes",
     "0/1/y/0/place 2; 1/0/y/0/place 3"},
    {"selectCurvesOf:'doc' indexFirst:3 indexLast:-1 appendSelection:no",
     "0/0/y/1/place 0; 0/1/y/0/place 1; 1/0/y/0/place 2"},
    {"indexOfCurveNameOf:'doc' source:'A' table:2 column:'z'", "3"},
    {"indexOfCurveNameOf:'doc' source:'' table:-1 column:'w'", "4"},
    {"indexOfCurveNameOf:'doc' regexSource:'[AB]' table:1 regexColumn:'[wz]'", "4"},
    {"nameOfNextMarkedCurveOf:'doc'\nnameOfNextMarkedCurveOf:'doc'\nnameOfNextMarkedCurveOf:'doc'",
     "'u' 'A' yes 1 0; 'w' 'B' yes 1 4; '' '' no 0 -1"},
    {"markSelectedCurvesOf:'doc'",
     "1; 0/0/y/0/marked false; 0/0/y/1/marked true; 1/0/y/0/marked false"},
    {"markSelectionAsFitDataOf:'doc'", "0/0/y/0/fitData false; 0/0/y/1/fitData true"},
    {"statisticOfSelectionOf:'doc'", "'v' 4 3 8 22 1.80278 16.5"},
    {"selectCurvesOf:'doc' indexFirst:4 indexLast:4 "
     "appendSelection:no\nsearchMaximaOfSelectionOf:'doc' searchMaxima:yes searchMinima:no "
     "minwidth:0 minheight:3",
     "0/0/y/1/place 0; 1/0/y/0/place 1; 1/1/x/name \"x\"; 1/1/x/values 2; 1/1/y/0/name \"w "
     "maxima\"; 1/1/y/0/values 5"},
    {"selectCurvesOf:'doc' indexFirst:4 indexLast:4 "
     "appendSelection:no\nsearchMaximaOfSelectionOf:'doc' searchMaxima:yes searchMinima:no "
     "minwidth:2 minheight:0.5",
     "0/0/y/1/place 0; 1/0/y/0/place 1; 1/1/x/name \"x\"; 1/1/x/values 5; 1/1/y/0/name \"w "
     "maxima\"; 1/1/y/0/values 2"},
    {"selectCurvesOf:'doc' indexFirst:4 indexLast:4 "
     "appendSelection:no\nsearchMaximaOfSelectionOf:'doc' searchMaxima:no searchMinima:yes "
     "minwidth:0 minheight:1",
     "0/0/y/1/place 0; 1/0/y/0/place 1; 1/1/x/name \"x\"; 1/1/x/values 3; 1/1/y/0/name \"w "
     "minima\"; 1/1/y/0/values 0"},
    {"selectCurvesOf:'doc' indexFirst:4 indexLast:4 "
     "appendSelection:no\ncreateCurveAtSelectionOf:'doc' minx:1 maxx:2 incx:0.5 miny:7 incy:3",
     "0/0/y/1/place 0; 1/0/y/0/place 1; 1/1/x/name \"X\"; 1/1/x/values 1 1.5 2; 1/1/y/0/name "
     "\"Y1\"; 1/1/y/0/values 7 10 13"},
    {"changeNameOfSelectionOf:'doc' to:'new'", "0/0/y/1/name \"new\""},
    {"modifyDataOf:'doc' Ydata:yes", "0/0/y/1/values 1 2 3 4"},
    {"modifyDataOf:'doc' Ydata:no", "0/0/x/values 1 2 3 4"},
    {"showCurveOf:'doc'", "0/0/y/1/layer 1"},
    {"diffOf:'doc'", "0/0/y/3/name \"v'\"; 0/0/y/3/values -5.5 1.5 1.5 -5.5"},
    {"selectCurvesOf:'doc' indexFirst:4 indexLast:4 "
     "appendSelection:no\ndeleteSelectedCurvesOf:'doc'",
     "0/0/y/1/place 0; 1/0/x/name gone; 1/0/y/0/name gone; 1/name gone"},
    {"deleteAllCurvesOf:'doc'",
     "0/0/x/name gone; 0/0/y/0/name gone; 0/0/y/1/name gone; 0/0/y/2/name gone; 0/1/x/name gone; "
     "0/1/y/0/name gone; 0/name gone; 1/0/x/name gone; 1/0/y/0/name gone; 1/name gone"},
    {"selectCurvesOf:'doc' indexFirst:3 indexLast:3 "
     "appendSelection:no\nsortSelectedCurvesByXdata:'doc'",
     "0/0/y/1/place 0; 0/1/x/values 1 3; 0/1/y/0/place 1; 0/1/y/0/values 9 7"},
    {"sortSelectedCurvesBySelection:'doc' ascending:yes",
     "0/0/x/values 1 0 3 2; 0/0/y/0/values 4 1 0 2; 0/0/y/1/values 3 5 6 8; 0/0/y/2/values 0.2 0.1 "
     "0.2 0.1"},
    {"sortSelectedCurvesBySelection:'doc' ascending:no",
     "0/0/x/values 2 3 0 1; 0/0/y/0/values 2 0 1 4; 0/0/y/1/values 8 6 5 3"},
    {"swapSelectedCurvesWithXdata:'doc'",
     "0/0/x/name \"v\"; 0/0/x/values 5 3 8 6; 0/0/y/1/name \"t\"; 0/0/y/1/values 0 1 2 3"},
    {"setAttributesOfSelectionOf:'doc' line:0 stepped:1 yerr:1 xerr:0 dash:1 fill:0 topX:1 "
     "rightY:0 marker:1 sym:0",
     "0/0/y/1/dashed true; 0/0/y/1/line false; 0/0/y/1/marker true; 0/0/y/1/stepped true; "
     "0/0/y/1/upperX true; 0/0/y/1/yError true"},
    {"setAttributesOfSelectionOf:'doc' line:2 stepped:1 yerr:2 xerr:1 dash:1 fill:0 topX:0 "
     "rightY:1 marker:1 sym:2",
     "0/0/y/1/dashed true; 0/0/y/1/marker true; 0/0/y/1/rightY true; 0/0/y/1/stepped true; "
     "0/0/y/1/xError true"},
    {"setAttributesOfSelectionOf:'doc' line:2 stepped:2 yerr:1 xerr:1 dash:1 fill:0 topX:0 "
     "rightY:0 marker:0 sym:1",
     "0/0/y/1/dashed true; 0/0/y/1/symbols true; 0/0/y/1/xError true; 0/0/y/1/yError true"},
    {"setAttributesOfSelectionOf:'doc' line:2 stepped:2 yerr:2 xerr:2 dash:2 fill:1 topX:1 "
     "rightY:1 marker:1 sym:1",
     "0/0/y/1/filled true; 0/0/y/1/marker true; 0/0/y/1/rightY true; 0/0/y/1/symbols true; "
     "0/0/y/1/upperX true"},
    {"setAttributes2OfSelectionOf:'doc' sum:3 interpolationPoints:4 interpolationType:1 "
     "symbolSize:5 symbolInc:6 symbol1:7 symbol2:8 symbol3:-1 symbol4:9 lineThickness:0.5 "
     "dashLength1:11 dashLength2:12 dashLength3:13 dashLength4:14 lineColorRed:0.1 "
     "lineColorGreen:0.2 lineColorBlue:0.3 lineColorOpacity:0.4 fillColorRed:0.5 "
     "fillColorGreen:0.6 fillColorBlue:0.7 fillColorOpacity:nan",
     "0/0/y/1/dashLength 11 12 13 14; 0/0/y/1/fillColour/blue 0.7; 0/0/y/1/fillColour/green 0.6; "
     "0/0/y/1/fillColour/red 0.5; 0/0/y/1/interpolationPoints 4; 0/0/y/1/interpolationType 1; "
     "0/0/y/1/lineColour/blue 0.3; 0/0/y/1/lineColour/green 0.2; 0/0/y/1/lineColour/opacity 0.4; "
     "0/0/y/1/lineColour/red 0.1; 0/0/y/1/lineThickness 0.5; 0/0/y/1/sum 3; 0/0/y/1/symbol 7 8 0 "
     "9; 0/0/y/1/symbolInc 6; 0/0/y/1/symbolSize 5"},
    {"setAttributes2OfSelectionOf:'doc' sum:-1 interpolationPoints:nan interpolationType:-1 "
     "symbolSize:nan symbolInc:-1 symbol1:-1 symbol2:-1 symbol3:10 symbol4:-1 lineThickness:nan "
     "dashLength1:nan dashLength2:nan dashLength3:nan dashLength4:nan lineColorRed:nan "
     "lineColorGreen:nan lineColorBlue:nan lineColorOpacity:nan fillColorRed:nan "
     "fillColorGreen:nan fillColorBlue:nan fillColorOpacity:0.9",
     "0/0/y/1/fillColour/opacity 0.9; 0/0/y/1/symbol 0 0 10 0"},
    {"setDocAttributes:'doc' xAxisLength:10 yAxisLength:9 tickLength:0.3 axisThickness:2 "
     "yAxisPos:1.5 xAxisPos:2.5 multiDimFit:1 noLineOnRev:0",
     "frame/axisThickness 2; frame/multiDimFit true; frame/tickLength 0.3; frame/xAxisLength 10; "
     "frame/xAxisPos 2.5; frame/yAxisLength 9; frame/yAxisPos 1.5"},
    {"setDocAttributes:'doc' xAxisLength:nan yAxisLength:nan tickLength:nan axisThickness:nan "
     "yAxisPos:nan xAxisPos:nan multiDimFit:2 noLineOnRev:1",
     "frame/noLineOnReverse true"},
    {"setAxisOf:'doc' axisCode:4 inc:0.5 ticks:3 prec:2 log:1 insideticks:0 outsideticks:2 "
     "majorgrid:1 minorgrid:2 expnumbers:1 labelAngle:30 noline:0 numbersinside:1 nonumbers:2 "
     "arrow:1 logticksAt:5 lognumberAt:6 reverse:0 labelDensity:0.75",
     "axes/3/arrow true; axes/3/exponents true; axes/3/increment 0.5; axes/3/insideTicks false; "
     "axes/3/labelAngle 30; axes/3/labelDensity 0.75; axes/3/logNumbersAt 6; axes/3/logTicksAt 5; "
     "axes/3/logarithmic true; axes/3/majorGrid true; axes/3/numbersInside true; axes/3/precision "
     "2; axes/3/ticks 3"},
    {"setAxisOf:'doc' axisCode:3 inc:nan ticks:-1 prec:-1 log:1 insideticks:2 outsideticks:1 "
     "majorgrid:1 minorgrid:2 expnumbers:2 labelAngle:nan noline:1 numbersinside:1 nonumbers:0 "
     "arrow:0 logticksAt:-1 lognumberAt:-1 reverse:1 labelDensity:nan",
     "axes/2/logarithmic true; axes/2/majorGrid true; axes/2/noLine true; axes/2/numbersInside "
     "true; axes/2/outsideTicks true; axes/2/reversed true"},
    {"setAxisOf:'doc' axisCode:2 inc:nan ticks:-1 prec:-1 log:1 insideticks:2 outsideticks:1 "
     "majorgrid:2 minorgrid:1 expnumbers:1 labelAngle:nan noline:1 numbersinside:2 nonumbers:0 "
     "arrow:2 logticksAt:-1 lognumberAt:-1 reverse:2 labelDensity:nan",
     "axes/1/exponents true; axes/1/logarithmic true; axes/1/minorGrid true; axes/1/noLine true; "
     "axes/1/outsideTicks true"},
    {"setAxisOf:'doc' axisCode:1 inc:nan ticks:-1 prec:-1 log:2 insideticks:2 outsideticks:2 "
     "majorgrid:2 minorgrid:1 expnumbers:2 labelAngle:nan noline:1 numbersinside:1 nonumbers:1 "
     "arrow:1 logticksAt:-1 lognumberAt:-1 reverse:1 labelDensity:nan",
     "axes/0/arrow true; axes/0/minorGrid true; axes/0/noLine true; axes/0/noNumbers true; "
     "axes/0/numbersInside true; axes/0/reversed true"},
    {"setRTFTextOf:'doc' to:'{\\rtf1 here}' at_X:0.25 at_Y:7 angle:90 xFloating:0 yFloating:1",
     "texts/0/angle 90; texts/0/text \"{\\\\rtf1 here}\"; texts/0/x 0.25; texts/0/y 7; "
     "texts/0/yFloating true"},
    {"setRTFTextOf:'doc' to:'here' at_X:0.25 at_Y:0.5 angle:0 xFloating:1 "
     "yFloating:nan\nsetRTFTextOf:'doc' to:'there' at_X:0.25 at_Y:0.75 angle:0 xFloating:0 "
     "yFloating:0\nsetRTFTextOf:'doc' to:'{\\rtf1 }' at_X:0.25 at_Y:0.5 angle:0 xFloating:1 "
     "yFloating:0",
     "texts/0/text \"there\"; texts/0/x 0.25; texts/0/y 0.75"},
    {"setXTitleOf:'doc' to:'title'", "axes/0/title \"title\""},
    {"setYTitleOf:'doc' to:'title'", "axes/1/title \"title\""},
    {"setRTFxTitleOf:'doc' to:'title'", "axes/0/title \"title\""},
    {"setRTFyTitleOf:'doc' to:'title'", "axes/1/title \"title\""},
    {"getXRangeOf:'doc'", "0.25 2.5"},
    {"getYRangeOf:'doc'", "0 9"},
    {"set2XRangeOf:'doc' xmin:0.5 xmax:1.5\nget2XRangeOf:'doc'",
     "0.5 1.5; axes/2/range/max 1.5; axes/2/range/min 0.5"},
    {"set2YRangeOf:'doc' ymin:0.5 ymax:1.5\nget2YRangeOf:'doc'",
     "0.5 1.5; axes/3/range/max 1.5; axes/3/range/min 0.5"},
    {"setXRangeOf:'doc' xmin:0.5 xmax:1.5", "axes/0/range/max 1.5; axes/0/range/min 0.5"},
    {"setYRangeOf:'doc' ymin:0.5 ymax:1.5", "axes/1/range/max 1.5; axes/1/range/min 0.5"},
    {"setLocalRangeOf:'doc' XorYAxis:yes", "axes/0/range/max 3; axes/0/range/min 0"},
    {"setLocalRangeOf:'doc' XorYAxis:no", "axes/1/range/max 8; axes/1/range/min 3"},
    {"getFitRangeOf:'doc'", "0 3"},
    {"setFitRangeOf:'doc' xmin:0.5 xmax:1.5", "fitRange/max 1.5; fitRange/min 0.5"},
    {"startFitOf:'doc'\ngetVarOf:'doc' varName:'points'",
     "0 4 1.23457e-05 258.621; '4'; 2/0/x/name \"t\"; 2/0/x/values 500 values; 2/0/y/0/name "
     "\"Fit\"; 2/0/y/0/values 500 values; 2/name \"Fit\"; fit/chiSquare 258.621; fit/done true; "
     "fit/iterations 4; fit/lambda 1.23457e-05; fit/points 4; parameters/0/error 0.667756; "
     "parameters/0/value 0.0689655; parameters/1/error 1.07672; parameters/1/value 1.51724"},
    {"getVarOf:'doc' varName:'xmax'", "'2.5'"},
    {"formulaTextOf:'doc'", "'a*x+b'"},
    {"setFormulaOf:'doc' formulaText:'c*x'",
     "formula \"c*x\"; parameters/0/name \"c\"; parameters/1/name gone"},
    {"formulaParameterListOf:'doc'", "'a = 1\nb = 1'"},
    {"readFormulaParameterOf:'doc' parameterList:'b = 2 !'",
     "parameters/1/fixed true; parameters/1/value 2"},
    {"setDeciSeparator:1\nreplaceDataformText:'1,5;2,5' of:'doc' source:'B' doRangeOverAll:no",
     "1/0/x/name \"X\"; 1/0/x/values 1.5; 1/0/y/0/name \"Y1\"; 1/0/y/0/values 2.5"},
    {"replaceDataformText:'1 2' of:'doc' source:'B' doRangeOverAll:yes",
     "1/0/x/name \"X\"; 1/0/x/values 1; 1/0/y/0/name \"Y1\"; 1/0/y/0/values 2; axes/0/range/max "
     "null; axes/0/range/min null"},
    {"replaceDataformText:'1 2' of:'doc' source:'B' doRangeOverAll:no",
     "1/0/x/name \"X\"; 1/0/x/values 1; 1/0/y/0/name \"Y1\"; 1/0/y/0/values 2"},
    {"readDataformText:'1 2' of:'doc' source:'B' doRangeOverAll:no appendToExistingData:yes",
     "1/0/x/values 0 1 2 3 4 5 6 7 8 9 1; 1/0/y/0/values 0 0 5 0 0 2 2 2 0 0 2"},
    {"readDataformText:'1 2' of:'doc' source:'B' doRangeOverAll:yes appendToExistingData:no",
     "1/0/x/name \"X\"; 1/0/x/values 1; 1/0/y/0/name \"Y1\"; 1/0/y/0/values 2; axes/0/range/max "
     "null; axes/0/range/min null"},
    {"appendDataAndDrawInFastMode:'1 2' of:'doc' source:'B'",
     "1/0/x/values 0 1 2 3 4 5 6 7 8 9 1; 1/0/y/0/values 0 0 5 0 0 2 2 2 0 0 2"},
    {"dataOfSelectedCurvesOf:'doc'", "'t\tv\n0\t5\n1\t3\n2\t8\n3\t6\n'"},
    {"copySelectedCurvesOf:'doc' includeX:no\npasteDataOf:'doc'",
     "2/0/x/name \"X\"; 2/0/x/values 0 1 2 3; 2/0/y/0/name \"v\"; 2/0/y/0/values 5 3 8 6; 2/name "
     "\"Clipboard\""},
    {"pasteDataOf:'doc'", "2/0/x/name \"t\"; 2/0/x/values 0 1 2 3; 2/0/y/0/name \"v\"; "
                          "2/0/y/0/values 5 3 8 6; 2/name \"Clipboard\""},
    {"duplicateAsPlottedOf:'doc'", "front doc copy"},
    {"inventoryOf:'doc' justInSelTable:no justInSelSource:no", "2 3 5"},
    {"inventoryOf:'doc' justInSelTable:yes justInSelSource:no", "1 1 3"},
    {"inventoryOf:'doc' justInSelTable:no justInSelSource:yes", "1 2 4"},
    {"copyPDF:'doc'", "plotwerk/clipboard.pdf PDF"},
    {"copyTIFF:'doc'", "plotwerk/clipboard.tiff TIFF"},
    {"savePicturePDF:'doc' as:'DIR/a'", "a PDF"},
    {"savePictureEPS:'doc' as:'DIR/a'", "a EPS"},
    {"savePictureTIFF:'doc' as:'DIR/a'", "a TIFF"},
    {"newCompositionView:{10 20 500 400}\nsavePDFofCompositionView:'DIR/page' openWith:'none'",
     "page PDF"},
    {"addPDFtoCompositionView:'doc' inRect:{10 20 100 100} angle:30 "
     "sheer:0.5\nsavePDFofCompositionView:'DIR/page' openWith:'no viewer'",
     "savePDFofCompositionView:openWith: can't start no viewer: No such file or directory; page "
     "PDF"},
};

std::string shown(const json &value) {
    std::ostringstream text;
    if (value.is_number())
        text << value.get<double>();
    else if (!value.is_array())
        text << value.dump();
    else if (value.size() > 16)
        text << value.size() << " values";
    else
        for (const json &each : value) text << (text.tellp() > 0 ? " " : "") << shown(each);
    return text.str();
}

// All that the document holds, by paths as in "axes/0/range/min" and, for the second curve of a
// source's first table, "0/0/y/1/values" and "0/0/y/1/line". The look of x is never drawn.
using Values = std::map<std::string, json>;

void collect(const json &value, const std::string &path, Values &values) {
    const bool numbers = value.is_array() && !value.empty() && value.front().is_primitive();
    if (value.is_primitive() || numbers) {
        values[path] = value;
        return;
    }
    for (const auto &[key, inner] : value.items()) {
        if (key == "look" && path.ends_with("/x")) continue;
        const bool named = key != "sources" && key != "tables" && key != "look";
        collect(inner, named ? (fs::path(path) / key).string() : path, values);
    }
}

Values valuesOf(const std::string &saved) {
    Values values;
    collect(json::parse(saved).at("document"), "", values);
    return values;
}

// What has changed, is new or gone; of new columns only names and values, nothing that is empty.
std::string changes(const Values &before, const Values &after) {
    const json nothing{nullptr, false, 0, ""};
    std::string text;
    for (const auto &[path, value] : after) {
        const auto old = before.find(path);
        if (old == before.end()) {
            const bool says = std::find(nothing.begin(), nothing.end(), value) == nothing.end();
            const bool setting = path.find("/y/") != std::string::npos &&
                                 !path.ends_with("/name") && !path.ends_with("/values");
            if (!says || setting) continue;
        } else if (old->second == value) {
            continue;
        }
        text += path + ' ' + shown(value) + "; ";
    }
    for (const auto &[path, value] : before) {
        if (path.ends_with("/name") && !after.contains(path)) text += path + " gone; ";
    }
    return text;
}

std::string kindOf(const std::string &bytes) {
    for (const auto &[begin, kind] : {std::pair{"{", "JSON"},
                                      {"%PDF", "PDF"},
                                      {"%!PS", "EPS"},
                                      {"II*", "TIFF"},
                                      {"\xd9\xd9\xf7", "CBOR"}}) {
        if (bytes.starts_with(begin)) return kind;
    }
    return "of no kind";
}

} // namespace

class EveryMessage : public ServerTest {
  protected:
    EveryMessage() {
        setenv("PATH", directory.c_str(), 1);
        setenv("XDG_RUNTIME_DIR", directory.c_str(), 1);
        start({"--no-journal"});
        methods = methodsOf(*connection);
    }
    ~EveryMessage() override { setenv("PATH", path.c_str(), 1); }

    void startOver() {
        for (std::string name; !(name = plotwerk->documentNameOfFrontWindow()).empty();)
            plotwerk->closeDocument_askForSave_(name, false);
        for (const fs::path &entry : files()) fs::remove(entry);
        file("text", "1 2\n3 4\n");
        send("setDeciSeparator:0\n"
             "newDocumentWithName:'doc'\n"
             "replaceDataformText:'" +
             dataOfA +
             "' of:'doc' source:'A' doRangeOverAll:no\n"
             "replaceDataformText:'" +
             dataOfB +
             "' of:'doc' source:'B' doRangeOverAll:no\n"
             "setXRangeOf:'doc' xmin:0.25 xmax:2.5\n"
             "setFormulaOf:'doc' formulaText:'a*x+b'\n"
             "selectCurvesOf:'doc' indexFirst:0 indexLast:0 appendSelection:no\n"
             "markSelectionAsFitDataOf:'doc'\n"
             "selectCurvesOf:'doc' indexFirst:4 indexLast:4 appendSelection:yes\n"
             "markSelectedCurvesOf:'doc'\n"
             "selectCurvesOf:'doc' indexFirst:1 indexLast:1 appendSelection:no\n"
             "copySelectedCurvesOf:'doc' includeX:yes\n"
             "newCompositionView:{0 0 300 200}\n"
             "newDocumentWithName:'other'\n");
        ASSERT_EQ(lastError(), "");
    }

    // Sends messages, a line each. Returns what is answered.
    std::string send(const std::string &messages) {
        static const std::string value = "('[^']*'|\\{[^}]*\\}|\\S+)";
        static const std::regex message("(\\w+:" + value + " ?|\\w+)+");
        static const std::regex argument("(\\w+):" + value);
        std::string answers;
        const std::sregex_iterator end;
        for (std::sregex_iterator line(messages.begin(), messages.end(), message); line != end;
             ++line) {
            const std::string text = line->str();
            std::vector<std::string> names, values;
            for (std::sregex_iterator match(text.begin(), text.end(), argument); match != end;
                 ++match) {
                names.push_back((*match)[1]);
                const std::string given = (*match)[2];
                const bool enclosed = given.front() == '\'' || given.front() == '{';
                values.push_back(enclosed ? given.substr(1, given.size() - 2) : given);
            }
            const Method &method = names.empty() ? methodNamed(text) : methodWith(names);
            latest.insert(method.name);
            const std::string answer = answerTo(method, values);
            if (!answer.empty()) answers.append(answer).append("; ");
        }
        return answers;
    }

    const Method &methodNamed(const std::string &name) const {
        const auto found = std::find_if(methods.begin(), methods.end(),
                                        [&](const Method &each) { return each.name == name; });
        if (found == methods.end()) throw std::runtime_error("no message " + name);
        return *found;
    }

    const Method &methodWith(const std::vector<std::string> &names) const {
        const auto named = [](const Method::Argument &argument, const std::string &name) {
            return argument.name == name;
        };
        const auto found = std::find_if(methods.begin(), methods.end(), [&](const Method &each) {
            return std::equal(each.arguments.begin(), each.arguments.end(), names.begin(),
                              names.end(), named);
        });
        if (found == methods.end())
            throw std::runtime_error("no message has " + testing::PrintToString(names));
        return *found;
    }

    std::string outcomeOf(const std::string &messages) {
        const Values before = valuesOf(contentsOf("doc"));
        fs::remove(pathOf("contents"));
        latest.clear();
        std::string outcome =
            send(std::regex_replace(messages, std::regex("DIR"), directory.string()));
        tried.merge(latest);

        if (!lastError().empty()) outcome += lastError() + "; ";
        const std::string front = plotwerk->documentNameOfFrontWindow();
        if (front != "other") outcome += "front " + front + "; ";
        for (const fs::path &made : files()) {
            const std::string name = made.lexically_relative(directory).string();
            if (name != "text") outcome += name + ' ' + kindOf(bytesOf(made)) + "; ";
        }
        plotwerk->actify_("doc");
        if (lastError().empty()) outcome += changes(before, valuesOf(contentsOf("doc")));
        if (!outcome.empty()) outcome.resize(outcome.size() - 2); // the last "; "
        return std::regex_replace(outcome, std::regex(directory.string()), "DIR");
    }

    std::set<fs::path> files() const {
        std::set<fs::path> found;
        for (const auto &entry : fs::recursive_directory_iterator(directory)) {
            if (entry.is_regular_file()) found.insert(entry.path());
        }
        return found;
    }

    std::vector<Method> methods;
    std::set<std::string> latest, tried; // messages since startOver, and of all cases

  private:
    const std::string path = std::getenv("PATH");
};

TEST_F(EveryMessage, DoesWithItsArgumentsWhatItSays) {
    for (const MessageCase &c : cases) {
        startOver();
        EXPECT_EQ(outcomeOf(c.messages), c.outcome) << c.messages;
    }
    for (const Method &method : methods) EXPECT_TRUE(tried.contains(method.name)) << method.name;
}
