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
//   setXTitleOf:doc to:'the title'
// and what comes of it: its answer, lastError, the document in front unless that is still "other",
// new files with their first bytes, and what has become another in the document "doc". When that is
// more than the selection, it counts as unsaved; where not so, the outcome ends in "unsaved" or in
// "nothing unsaved". Of an outcome with "..." at its end the rest is looked at elsewhere.
struct MessageCase {
    std::string messages;
    std::string outcome = "";
};

// The document "doc" at the beginning of each case: the source A with the tables (t, u, v, u error)
// and (t, z), the source B with (x, w). v is selected, u is the data to fit, u and w are marked, x
// has a range. All of it is saved. "other" is in front, v on the clipboard, and there is a page.
const std::string beginning =
    "setDeciSeparator:0\nnewDocumentWithName:doc\n"
    "replaceDataformText:'t u v \"u error\"\n0 1 5 .1\n1 4 3 .2\n2 2 8 .1\n3 0 6 .2\n\n"
    "t z\n3 7\n1 9\n' of:doc source:A doRangeOverAll:no\n"
    "replaceDataformText:'x w\n0 0\n1 0\n2 5\n3 0\n4 0\n5 2\n6 2\n7 2\n8 0\n9 0\n' "
    "of:doc source:B doRangeOverAll:no\n"
    "setXRangeOf:doc xmin:0.25 xmax:2.5\nsetFormulaOf:doc formulaText:a*x+b\n"
    "selectCurvesOf:doc indexFirst:0 indexLast:0 appendSelection:no\n"
    "markSelectionAsFitDataOf:doc\n"
    "selectCurvesOf:doc indexFirst:4 indexLast:4 appendSelection:yes\n"
    "markSelectedCurvesOf:doc\n"
    "selectCurvesOf:doc indexFirst:1 indexLast:1 appendSelection:no\n"
    "copySelectedCurvesOf:doc includeX:yes\nnewCompositionView:{0 0 300 200}\n";

const std::string selectW = "selectCurvesOf:doc indexFirst:4 indexLast:4 appendSelection:no\n";

const MessageCase cases[] = {
    {"documentNameOfFrontWindow", "'other'"},
    {"waitForEmptyReply"},
    {"actify:doc", "front doc"},
    {"printDoc:doc", "can't start lp: No such file or directory (\"doc\")"},
    {"closeDocument:doc askForSave:yes"},
    {"showCurveOf:doc\ncloseDocument:doc askForSave:no"},
    {"showCurveOf:doc\nselectCurvesOf:doc indexFirst:4 indexLast:4 "
     "appendSelection:no\nsaveDocument:doc to:'DIR/copy' binary:no\ncloseDocument:doc "
     "askForSave:yes",
     "copy {\"d; state/plotwerk/doc.json {\"d"},
    {"showCurveOf:doc\nsaveDocument:doc as:'DIR/own' binary:yes\ncloseDocument:doc "
     "askForSave:yes\nopenFile:'' file:'DIR/own' doRangeOverAll:no",
     "front doc; own \xd9\xd9\xf7; v layer 1; nothing unsaved"},
    {"openFile:'' file:'DIR/saved' doRangeOverAll:yes",
     "front doc; axes/0/range max null, min null; nothing unsaved"},
    {"newDocumentWithName:'new'", "front new"},
    {"openFile:doc file:'DIR/text' doRangeOverAll:no", "front text"},
    {"display:doc doRangeOverAll:no", "front doc"},
    {"display:doc doRangeOverAll:yes", "front doc; axes/0/range max null, min null"},
    {"didSaveSucceed:doc\nsavePicturePDF:doc as:'DIR/a'\ndidSaveSucceed:doc", "yes; yes; a %PD"},
    {"savePicturePDF:doc as:'DIR/no/a'\ndidSaveSucceed:doc",
     "no; can't write DIR/no/a: No such file or directory (\"doc\")"},
    {"YValueOfDoc:doc atX:1.5 indexSerie:4", "2.5"},
    {"valueOfDoc:doc atIndex:2 indexSerie:0", "2"},
    {"indexOfPointOfDoc:doc atX:1.5 indexSerie:1", "1"},
    {"indexOfPointOfDoc:doc atX:1 atY:9 curve:0 index:0 dataX:0 dataY:0", "3 1 1 9"},
    {"setValueOfDoc:doc atIndex:2 indexSerie:0 toValue:1.5", "u values 1 4 1.5 0"},
    {"setValueOfDoc:doc atIndex:0 indexSerie:1 toValue:-nan\nvalueOfDoc:doc atIndex:0 indexSerie:1",
     "nan; v values null 3 8 6"},
    {"setValueOfDoc:doc atIndex:0 indexSerie:1 toValue:inf\n"
     "setValueOfDoc:doc atIndex:1 indexSerie:1 toValue:inf\nYValueOfDoc:doc atX:0.5 indexSerie:1",
     "nan; ..."},
    {"indexOfSelectedCurveOf:doc", "1"},
    {"indexOfFitCurveOf:doc", "0"},
    {"mouseEventsShiftKeyDownOf:doc", "nan nan nan nan 0"},
    {"selectCurvesOf:doc sourceName:'A' table:2 column:'' appendSelection:yes", "z place 2"},
    {"selectCurvesOf:doc sourceName:'' table:-1 column:'w' appendSelection:no",
     "v place 0; w place 1"},
    {"selectCurvesOf:doc regexSourceName:'[Bx]' table:1 regexColumn:'.' appendSelection:yes",
     "w place 2"},
    {"selectCurvesOf:doc regexSourceName:'A' table:-1 regexColumn:'[uz]' appendSelection:no",
     "u place 1; v place 0; z place 2"},
    {"selectCurvesOf:doc sourceIndexFirst:1 sourceIndexLast:1 tableFirst:1 tableLast:1 "
     "columnFirst:3 columnLast:3 appendSelection:yes",
     "u error place 2"},
    {"selectCurvesOf:doc sourceIndexFirst:1 sourceIndexLast:2 tableFirst:1 tableLast:1 "
     "columnFirst:1 columnLast:2 appendSelection:no",
     "u place 1; v place 2; w place 3"},
    {"selectCurvesOf:doc indexFirst:3 indexLast:4 appendSelection:yes\n"
     "selectCurvesOf:doc indexFirst:0 indexLast:3 appendSelection:yes\nindexOfSelectedCurveOf:doc",
     "1; u place 4; u error place 5; z place 2; w place 3"},
    {"selectCurvesOf:doc sourceName:'C' table:1 column:'w' appendSelection:no",
     "no curve of source \"C\", table 1, column \"w\" (\"doc\"); v place 0"},
    {"indexOfCurveNameOf:doc source:'A' table:2 column:'z'", "3"},
    {"indexOfCurveNameOf:doc regexSource:'[AB]' table:1 regexColumn:'[wz]'", "4"},
    {"nameOfNextMarkedCurveOf:doc\nnameOfNextMarkedCurveOf:doc\nnameOfNextMarkedCurveOf:doc",
     "'u' 'A' yes 1 0; 'w' 'B' yes 1 4; '' '' no 0 -1"},
    {"nameOfNextMarkedCurveOf:doc\nnameOfNextMarkedCurveOf:doc\nmarkSelectedCurvesOf:"
     "doc\nnameOfNextMarkedCurveOf:doc",
     "'u' 'A' yes 1 0; 'w' 'B' yes 1 4; 1; 'v' 'A' yes 1 1; u marked false; v marked true; w "
     "marked false; markWalk 2"},
    {"selectCurvesOf:doc indexFirst:4 indexLast:4 "
     "appendSelection:yes\nmarkSelectionAsFitDataOf:doc",
     "u fitData false; v fitData true; w place 2"},
    {"statisticOfSelectionOf:doc", "'v' 4 3 8 22 1.80278 16.5"},
    {selectW +
         "searchMaximaOfSelectionOf:doc searchMaxima:yes searchMinima:no minwidth:2 minheight:0.5",
     "v place 0; w place 1; 1/1/x name \"x\", values 5; 1/1/y/0 name \"w maxima\", values 2"},
    {selectW +
         "searchMaximaOfSelectionOf:doc searchMaxima:no searchMinima:yes minwidth:0 minheight:1",
     "v place 0; w place 1; 1/1/x name \"x\", values 3; 1/1/y/0 name \"w minima\", values 0"},
    {selectW + "createCurveAtSelectionOf:doc minx:1 maxx:2 incx:0.5 miny:7 incy:3",
     "v place 0; w place 1; 1/1/x name \"X\", values 1 1.5 2; 1/1/y/0 name \"Y1\", values 7 10 13"},
    {"changeNameOfSelectionOf:doc to:'new'", "v name \"new\""},
    {"modifyDataOf:doc Ydata:yes", "v values 1 2 3 4"},
    {"modifyDataOf:doc Ydata:no", "0/0/x values 1 2 3 4"},
    {"showCurveOf:doc", "v layer 1"},
    {"diffOf:doc", "0/0/y/3 name \"v'\", values -5.5 1.5 1.5 -5.5"},
    {selectW + "deleteSelectedCurvesOf:doc",
     "v place 0; 1/0/x name gone; w name gone; 1 name gone"},
    {"deleteAllCurvesOf:doc\nindexOfSelectedCurveOf:doc\nindexOfFitCurveOf:doc\n"
     "selectCurvesOf:doc indexFirst:-1 indexLast:-1 appendSelection:no",
     "-1; -1; there are no curves (\"doc\"); 0/0/x name gone; u name gone; v name gone; ..."},
    {"selectCurvesOf:doc indexFirst:3 indexLast:3 "
     "appendSelection:no\nsortSelectedCurvesByXdata:doc",
     "v place 0; 0/1/x values 1 3; z place 1, values 9 7"},
    {"sortSelectedCurvesBySelection:doc ascending:yes",
     "0/0/x values 1 0 3 2; u values 4 1 0 2; v values 3 5 6 8; u error values 0.2 0.1 0.2 0.1"},
    {"sortSelectedCurvesBySelection:doc ascending:no",
     "0/0/x values 2 3 0 1; u values 2 0 1 4; v values 8 6 5 3"},
    {"swapSelectedCurvesWithXdata:doc",
     "0/0/x name \"v\", values 5 3 8 6; v name \"t\", values 0 1 2 3"},
    {"setAttributesOfSelectionOf:doc line:0 stepped:1 yerr:1 xerr:0 dash:1 fill:0 topX:1 rightY:0 "
     "marker:1 sym:0",
     "v dashed true, line false, marker true, stepped true, upperX true, yError true"},
    {"setAttributesOfSelectionOf:doc line:2 stepped:1 yerr:2 xerr:1 dash:1 fill:0 topX:0 rightY:1 "
     "marker:1 sym:2",
     "v dashed true, marker true, rightY true, stepped true, xError true"},
    {"setAttributesOfSelectionOf:doc line:2 stepped:2 yerr:1 xerr:1 dash:1 fill:0 topX:0 rightY:0 "
     "marker:0 sym:1",
     "v dashed true, symbols true, xError true, yError true"},
    {"selectCurvesOf:doc indexFirst:4 indexLast:4 "
     "appendSelection:yes\nsetAttributesOfSelectionOf:doc line:2 stepped:2 yerr:2 xerr:2 dash:2 "
     "fill:1 topX:1 rightY:1 marker:1 sym:1",
     "v filled true, marker true, rightY true, symbols true, upperX true; w filled true, marker "
     "true, place 2, rightY true, symbols true, upperX true"},
    {"setAttributes2OfSelectionOf:doc sum:3 interpolationPoints:4 interpolationType:1 symbolSize:5 "
     "symbolInc:6 symbol1:7 symbol2:8 symbol3:10 symbol4:9 lineThickness:0.5 dashLength1:11 "
     "dashLength2:12 dashLength3:13 dashLength4:14 lineColorRed:0.1 lineColorGreen:0.2 "
     "lineColorBlue:0.3 lineColorOpacity:0.4 fillColorRed:0.5 fillColorGreen:0.6 fillColorBlue:0.7 "
     "fillColorOpacity:0.9",
     "v dashLength 11 12 13 14; 0/0/y/1/fillColour blue 0.7, green 0.6, opacity 0.9, red 0.5; v "
     "interpolationPoints 4, interpolationType 1; 0/0/y/1/lineColour blue 0.3, green 0.2, opacity "
     "0.4, red 0.1; v lineThickness 0.5, sum 3, symbol 7 8 10 9, symbolInc 6, symbolSize 5"},
    {"setDocAttributes:doc xAxisLength:10 yAxisLength:9 tickLength:0.3 axisThickness:2 "
     "yAxisPos:1.5 xAxisPos:2.5 multiDimFit:1 noLineOnRev:0",
     "frame axisThickness 2, multiDimFit true, tickLength 0.3, xAxisLength 10, xAxisPos 2.5, "
     "yAxisLength 9, yAxisPos 1.5"},
    {"setDocAttributes:doc xAxisLength:nan yAxisLength:nan tickLength:nan axisThickness:nan "
     "yAxisPos:nan xAxisPos:nan multiDimFit:2 noLineOnRev:1",
     "frame noLineOnReverse true"},
    {"setAxisOf:doc axisCode:4 inc:0.5 ticks:3 prec:2 log:1 insideticks:0 outsideticks:2 "
     "majorgrid:1 minorgrid:2 expnumbers:1 labelAngle:30 noline:0 numbersinside:1 nonumbers:2 "
     "arrow:1 logticksAt:5 lognumberAt:6 reverse:0 labelDensity:0.75",
     "axes/3 arrow true, exponents true, increment 0.5, insideTicks false, labelAngle 30, "
     "labelDensity 0.75, logNumbersAt 6, logTicksAt 5, logarithmic true, majorGrid true, "
     "numbersInside true, precision 2, ticks 3"},
    {"setAxisOf:doc axisCode:3 inc:nan ticks:-1 prec:-1 log:1 insideticks:2 outsideticks:1 "
     "majorgrid:1 minorgrid:2 expnumbers:2 labelAngle:nan noline:1 numbersinside:1 nonumbers:0 "
     "arrow:0 logticksAt:-1 lognumberAt:-1 reverse:1 labelDensity:nan",
     "axes/2 logarithmic true, majorGrid true, noLine true, numbersInside true, outsideTicks true, "
     "reversed true"},
    {"setAxisOf:doc axisCode:2 inc:nan ticks:-1 prec:-1 log:1 insideticks:2 outsideticks:1 "
     "majorgrid:2 minorgrid:1 expnumbers:1 labelAngle:nan noline:1 numbersinside:2 nonumbers:0 "
     "arrow:2 logticksAt:-1 lognumberAt:-1 reverse:2 labelDensity:nan",
     "axes/1 exponents true, logarithmic true, minorGrid true, noLine true, outsideTicks true"},
    {"setAxisOf:doc axisCode:1 inc:nan ticks:-1 prec:-1 log:2 insideticks:2 outsideticks:2 "
     "majorgrid:2 minorgrid:1 expnumbers:2 labelAngle:nan noline:1 numbersinside:1 nonumbers:1 "
     "arrow:1 logticksAt:-1 lognumberAt:-1 reverse:1 labelDensity:nan",
     "axes/0 arrow true, minorGrid true, noLine true, noNumbers true, numbersInside true, reversed "
     "true"},
    {"setRTFTextOf:doc to:'{\\rtf1 here}' at_X:0.25 at_Y:7 angle:90 xFloating:0 yFloating:1",
     "texts/0 angle 90, text \"{\\\\rtf1 here}\", x 0.25, y 7, yFloating true"},
    {"setRTFTextOf:doc to:here at_X:0.25 at_Y:0.5 angle:0 xFloating:1 yFloating:nan",
     "texts/0 text \"here\", x 0.25, xFloating true, y 0.5"},
    {"setRTFTextOf:doc to:'{\\rtf1 }' at_X:0.25 at_Y:0.5 angle:0 xFloating:0 yFloating:0",
     "unsaved"},
    {"setRTFTextOf:doc to:'{\\rtf1\\ansi <x title>  \\u945?\\\\beta}' at_X:0.5 at_Y:0.5 angle:0 "
     "xFloating:0 "
     "yFloating:0",
     "axes/0 title \"{\\\\rtf1\\\\ansi \\\\u945?\\\\\\\\beta}\""},
    {"setXTitleOf:doc to:'title'", "axes/0 title \"title\""},
    {"setYTitleOf:doc to:'title'", "axes/1 title \"title\""},
    {"setRTFxTitleOf:doc to:'title'", "axes/0 title \"title\""},
    {"setRTFyTitleOf:doc to:'title'", "axes/1 title \"title\""},
    {"getXRangeOf:doc", "0.25 2.5"},
    {"getYRangeOf:doc", "0 9"},
    {"set2XRangeOf:doc xmin:0.5 xmax:nan\nget2XRangeOf:doc", "0.5 nan; axes/2/range min 0.5"},
    {"set2YRangeOf:doc ymin:0.5 ymax:nan\nget2YRangeOf:doc", "0.5 nan; axes/3/range min 0.5"},
    {"setXRangeOf:doc xmin:0.5 xmax:nan", "axes/0/range min 0.5"},
    {"setYRangeOf:doc ymin:0.5 ymax:nan", "axes/1/range min 0.5"},
    {"setLocalRangeOf:doc XorYAxis:yes", "axes/0/range max 3, min 0"},
    {"setLocalRangeOf:doc XorYAxis:no", "axes/1/range max 8, min 3"},
    {"getFitRangeOf:doc", "0 3"},
    {"setFitRangeOf:doc xmin:0.5 xmax:nan", "fitRange min 0.5"},
    {"startFitOf:doc\ngetVarOf:doc varName:points\ngetVarOf:doc varName:iterations\ngetVarOf:doc "
     "varName:lambda\ngetVarOf:doc varName:chiq\ngetVarOf:doc "
     "varName:a.error\nformulaParameterListOf:doc",
     "0 5 0.00027 258.621; '4'; '5'; '0.00027'; '258.62068'; '0.66775'; 'a = 0.1 +- 0.7\nb "
     "= 1.5 +- 1.1'; 2/0/x name \"t\", values 500 values; 2/0/y/0 name \"Fit\", values 500 values; "
     "..."},
    {"getVarOf:doc varName:'xmax'", "'2.5'"},
    {"formulaTextOf:doc", "'a*x+b'"},
    {"setFormulaOf:doc formulaText:'c*x'",
     "formula \"c*x\"; parameters/0 name \"c\"; parameters/1 name gone"},
    {"formulaParameterListOf:doc", "'a = 1\nb = 1'"},
    {"readFormulaParameterOf:doc parameterList:'b = 2 !'", "parameters/1 fixed true, value 2"},
    {"setDeciSeparator:1\nreadFormulaParameterOf:doc parameterList:'a = 1,5, b = "
     "2,25'\nformulaParameterListOf:doc\ngetVarOf:doc varName:a",
     "'a = 1,5\nb = 2,25'; '1.5'; parameters/0 value 1.5; parameters/1 value 2.25"},
    {"setDeciSeparator:1\nreplaceDataformText:'1,5;2,5' of:doc source:'B' doRangeOverAll:no",
     "1/0/x name \"X\", values 1.5; w name \"Y1\", values 2.5"},
    {"setDeciSeparator:2", "no decimal separator has the number 2"},
    {"replaceDataformText:'1 2' of:doc source:'B' doRangeOverAll:yes",
     "1/0/x name \"X\", values 1; w name \"Y1\", values 2; axes/0/range max null, min null"},
    {"readDataformText:'1 2' of:doc source:'B' doRangeOverAll:no appendToExistingData:yes",
     "1/0/x values 0 1 2 3 4 5 6 7 8 9 1; w values 0 0 5 0 0 2 2 2 0 0 2"},
    {"readDataformText:'1 2' of:doc source:'B' doRangeOverAll:yes appendToExistingData:no",
     "1/0/x name \"X\", values 1; w name \"Y1\", values 2; axes/0/range max null, min null"},
    {"appendDataAndDrawInFastMode:'1 2' of:doc source:'B'",
     "1/0/x values 0 1 2 3 4 5 6 7 8 9 1; w values 0 0 5 0 0 2 2 2 0 0 2"},
    {"dataOfSelectedCurvesOf:doc", "'t\tv\n0\t5\n1\t3\n2\t8\n3\t6\n'"},
    {"copySelectedCurvesOf:doc includeX:no\npasteDataOf:doc",
     "2/0/x name \"X\", values 0 1 2 3; 2/0/y/0 name \"v\", values 5 3 8 6; 2 name \"Clipboard\""},
    {"pasteDataOf:doc",
     "2/0/x name \"t\", values 0 1 2 3; 2/0/y/0 name \"v\", values 5 3 8 6; 2 name \"Clipboard\""},
    {"copyPDF:doc\npasteDataOf:doc",
     "the clipboard holds a picture, no data (\"doc\"); plotwerk/clipboard.pdf %PD"},
    {"duplicateAsPlottedOf:doc", "front doc copy"},
    {"inventoryOf:doc justInSelTable:no justInSelSource:no", "2 3 5"},
    {"inventoryOf:doc justInSelTable:yes justInSelSource:no", "1 1 3"},
    {"inventoryOf:doc justInSelTable:no justInSelSource:yes", "1 2 4"},
    {"copyTIFF:doc", "plotwerk/clipboard.tiff II*"},
    {"savePictureEPS:doc as:'DIR/a'", "a %!P"},
    {"savePictureTIFF:doc as:'DIR/a'", "a II*"},
    {"savePicturePDF:doc as:'DIR/a.svg'\nsavePictureTIFF:doc as:'DIR/b.PNG'",
     "a.svg <?x; b.PNG \x89PN"},
    {"savePicturePDF:doc as:'DIR/a.png'\nsavePictureEPS:doc as:'DIR/b.svg'",
     "a.png %PD; b.svg %!P"},
    {"addPDFtoCompositionView:doc inRect:{10 20 0 0} angle:0 sheer:0\n"
     "savePDFofCompositionView:'DIR/page.svg' openWith:''\nnewCompositionView:{0 0 0 0}\n"
     "addPDFtoCompositionView:doc inRect:{10 20 0 0} angle:0 sheer:0\n"
     "savePDFofCompositionView:'DIR/page.PNG' openWith:'none'",
     "page.PNG \x89PN; page.svg <?x"},
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
        collect(inner, !named ? path : path.empty() ? key : path + '/' + key, values);
    }
}

Values valuesOf(const std::string &saved) {
    Values values;
    collect(json::parse(saved).at("document"), "", values);
    return values;
}

// What has changed, is new or gone, as in "axes/0/range max 1, min 0; v values 1 2": curves by the
// names that they had. Of new columns only names and values, nothing that is empty.
std::string changes(const Values &before, const Values &after) {
    std::string text, last;
    const auto add = [&](const std::string &path, const std::string &what) {
        const std::size_t slash = path.find_last_of('/');
        const bool inside = slash != std::string::npos;
        std::string record = inside ? path.substr(0, slash) : "";
        const auto name = before.find(record + "/name");
        if (name != before.end() && record.find("/y/") != std::string::npos) record = name->second;
        if (inside) text += record == last ? ", " : "; " + record + ' ';
        text += (inside ? path.substr(slash + 1) : "; " + path) + what;
        last = record;
    };
    for (const auto &[path, value] : after) {
        const auto old = before.find(path);
        if (old == before.end()) {
            const bool says = !value.is_null() && value != false && value != 0 && value != "";
            const bool setting = path.find("/y/") != std::string::npos &&
                                 !path.ends_with("/name") && !path.ends_with("/values");
            if (!says || setting) continue;
        } else if (old->second == value) {
            continue;
        }
        add(path, ' ' + shown(value));
    }
    for (const auto &[path, value] : before)
        if (path.ends_with("/name") && !after.contains(path)) add(path, " gone");
    return text.empty() ? "" : text.substr(2) + "; ";
}

// But for what nobody would save a document for.
Values withoutSelection(Values values) {
    std::erase_if(values, [](const auto &value) { return value.first.ends_with("/place"); });
    return values;
}

} // namespace

class EveryMessage : public ServerTest {
  protected:
    EveryMessage() {
        setenv("PATH", directory.c_str(), 1);
        setenv("XDG_RUNTIME_DIR", directory.c_str(), 1);
        start({"--no-journal"});
        for (const Method &method : methodsOf(*connection)) {
            std::vector<std::string> key;
            for (const auto &argument : method.arguments) key.push_back(argument.name);
            if (key.empty()) key = {method.name};
            methods[key] = method;
        }
    }

    void startOver() {
        closeAll();
        for (const fs::path &entry : files()) fs::remove(entry);
        file("text", "1 2\n3 4\n");
        const std::set<std::string> triedByCases = tried;
        send(beginning + "saveDocument:doc as:" + pathOf("saved") +
             " binary:no\nnewDocumentWithName:other");
        tried = triedByCases;
        ASSERT_EQ(lastError(), "");
    }

    // Sends messages, a line each. Returns what is answered.
    std::string send(const std::string &messages) {
        static const std::string value = "('[^']*'|\\{[^}]*\\}|\\S+)";
        static const std::regex message("(\\w+:" + value + " ?|\\w+)+");
        static const std::regex argument("(\\w+):" + value);
        static const std::regex longNumber("(\\.\\d{5})\\d+");
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
            if (names.empty()) names = {text};
            if (!methods.contains(names)) throw std::runtime_error("no message " + text);
            const Method &method = methods[names];
            tried.insert(method.name);
            const std::string answer = answerTo(method, values);
            if (!answer.empty()) answers += std::regex_replace(answer, longNumber, "$1") + "; ";
        }
        return answers;
    }

    std::string outcomeOf(const std::string &messages) {
        const Values before = valuesOf(contentsOf("doc"));
        fs::remove(pathOf("contents"));
        std::string outcome =
            send(std::regex_replace(messages, std::regex("DIR"), directory.string()));

        if (!lastError().empty()) outcome += lastError() + "; ";
        const std::string front = plotwerk->documentNameOfFrontWindow();
        if (front != "other") outcome += "front " + front + "; ";
        for (const fs::path &made : files()) {
            const std::string name = made.lexically_relative(directory).string();
            if (name != "text" && name != "saved")
                outcome += name + ' ' + bytesOf(made).substr(0, 3) + "; ";
        }
        plotwerk->actify_("doc");
        if (lastError().empty()) outcome += whatChanged(before);
        if (!outcome.empty()) outcome.resize(outcome.size() - 2); // the last "; "
        return std::regex_replace(outcome, std::regex(directory.string()), "DIR");
    }

    std::string whatChanged(const Values &before) {
        const Values after = valuesOf(contentsOf("doc"));
        const bool differs = withoutSelection(before) != withoutSelection(after);
        plotwerk->closeDocument_askForSave_("doc", true);
        const bool wasUnsaved = fs::exists(stateDirectory / "doc.json");
        const char *unexpected = wasUnsaved ? "unsaved; " : "nothing unsaved; ";
        return changes(before, after) + (wasUnsaved == differs ? "" : unexpected);
    }

    std::set<fs::path> files() const {
        std::set<fs::path> found;
        for (const auto &entry : fs::recursive_directory_iterator(directory)) {
            if (entry.is_regular_file()) found.insert(entry.path());
        }
        return found;
    }

    std::map<std::vector<std::string>, Method> methods; // by their arguments
    std::set<std::string> tried;                        // messages of all cases
};

TEST_F(EveryMessage, DoesWithItsArgumentsWhatItSays) {
    for (const MessageCase &c : cases) {
        startOver();
        std::string outcome = outcomeOf(c.messages);
        if (c.outcome.ends_with("...")) outcome.replace(c.outcome.size() - 3, outcome.npos, "...");
        EXPECT_EQ(outcome, c.outcome) << c.messages;
    }
    for (const auto &[arguments, method] : methods)
        EXPECT_TRUE(tried.contains(method.name)) << method.name;
}
