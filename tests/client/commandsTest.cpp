// Every command: which messages it sends with which arguments, and what it prints.
#include "tests/client/clientTest.h"

#include <set>
#include <unistd.h>

// The answers that the cases below count on.
static const Script answers = {
    {"documentNameOfFrontWindow", {reply({"doc"})}},
    {"YValueOfDoc:atX:indexSerie:", {reply({"1234567.5"})}},
    {"valueOfDoc:atIndex:indexSerie:", {reply({"-2.5e-7"})}},
    {"indexOfPointOfDoc:atX:indexSerie:", {reply({"42"})}},
    {"indexOfPointOfDoc:atX:atY:curve:index:dataX:dataY:", {reply({"3", "17", "0.1", "-8.25"})}},
    {"indexOfSelectedCurveOf:", {reply({"5"})}},
    {"indexOfFitCurveOf:", {reply({"-1"})}},
    {"mouseEventsShiftKeyDownOf:x1:y1:x2:y2:keyMode:", {reply({"1.5", "2.5", "3", "4.5", "2"})}},
    {"indexOfCurveNameOf:source:table:column:", {reply({"11"})}},
    {"nameOfNextMarkedCurveOf:name:source:yData:table:index:",
     {reply({"a name", "a.txt", "yes", "3", "7"})}},
    {"markSelectedCurvesOf:", {reply({"4"})}},
    {"statisticOfSelectionOf:name:dataPoints:min:max:sum:std:area:",
     {reply({"a name", "100", "-1", "1", "12.5", "0.25", "33"})}},
    {"getXRangeOf:xmin:xmax:", {reply({"-1", "1.5"})}},
    {"getFitRangeOf:xmin:xmax:", {reply({"nan", "2.5"})}},
    {"getYRangeOf:ymin:ymax:", {reply({"-3", "3.5"})}},
    {"getVarOf:varName:", {reply({"0.125"})}},
    {"formulaTextOf:", {reply({"y = pow(x, 2)\n  + b\n"})}},
    {"formulaParameterListOf:", {reply({"a = 1,5\nb = 2,25"})}},
    {"startFitOf:iterations:lambda:chiq:", {reply({"0", "12", "0.001", "1.5"})}},
    {"didSaveSucceed:", {reply({"yes"})}},
    {"inventoryOf:sources:tables:columns:justInSelTable:justInSelSource:",
     {reply({"2", "3", "5"})}},
};

#define SET_ATTRIBUTES                                                                             \
    "setAttributesOfSelectionOf:line:stepped:yerr:xerr:dash:fill:topX:rightY:marker:sym: "
#define SET_DOC_ATTRIBUTES                                                                         \
    "setDocAttributes:xAxisLength:yAxisLength:tickLength:axisThickness:yAxisPos:xAxisPos:"         \
    "multiDimFit:noLineOnRev: "
#define SET_AXIS                                                                                   \
    "setAxisOf:axisCode:inc:ticks:prec:log:insideticks:outsideticks:majorgrid:minorgrid:"          \
    "expnumbers:labelAngle:noline:numbersinside:nonumbers:arrow:logticksAt:lognumberAt:reverse:"   \
    "labelDensity: "
#define BY_POSITION                                                                                \
    "selectCurvesOf:sourceIndexFirst:sourceIndexLast:tableFirst:tableLast:columnFirst:columnLast:" \
    "appendSelection: "

// Integers are given with a fraction, which they lose, and reals with one that they keep.
static const std::vector<CommandCase> cases = {
    {"-x parentPID", "", "PPID = " + std::to_string(getpid()) + "\n"},
    {"-x sync", "waitForEmptyReply\n", "synced\n"},
    {"-x activeDoc", "documentNameOfFrontWindow\n", "doc\n"},

    {"-x YatX -a 2.5 -s 3.9", "YValueOfDoc:atX:indexSerie: \"doc\" 2.5 3\n", "1.23457e+06\n"},
    {"-x YatX", "YValueOfDoc:atX:indexSerie: \"doc\" nan -1\n", "1.23457e+06\n"},
    {"-x Yi -i 7.9 -s 3", "valueOfDoc:atIndex:indexSerie: \"doc\" 7 3\n", "-2.5e-07\n"},
    {"-x Yi", "valueOfDoc:atIndex:indexSerie: \"doc\" -1 -1\n", "-2.5e-07\n"},
    {"-x iAtX -a -2.5 -s 3", "indexOfPointOfDoc:atX:indexSerie: \"doc\" -2.5 3\n", "42\n"},
    {"-x iAtX", "indexOfPointOfDoc:atX:indexSerie: \"doc\" nan -1\n", "42\n"},
    {"-x iAtXY -a 2.5 -b 4.5",
     "indexOfPointOfDoc:atX:atY:curve:index:dataX:dataY: \"doc\" 2.5 4.5 0 0 nan nan\n",
     "3 17 0.1 -8.25\n"},
    {"-x iAtXY", "indexOfPointOfDoc:atX:atY:curve:index:dataX:dataY: \"doc\" nan nan 0 0 nan nan\n",
     "3 17 0.1 -8.25\n"},
    {"-x setYi -i 7 -s 3 -a 0.1",
     "setValueOfDoc:atIndex:indexSerie:toValue: \"doc\" 7 3 0.10000000000000001\n", ""},
    {"-x setYi", "setValueOfDoc:atIndex:indexSerie:toValue: \"doc\" -1 -1 nan\n", ""},
    {"-x selectedIndex", "indexOfSelectedCurveOf: \"doc\"\n", "5\n"},
    {"-x fitCurveIndex", "indexOfFitCurveOf: \"doc\"\n", "-1\n"},
    {"-x mouseClick", "mouseEventsShiftKeyDownOf:x1:y1:x2:y2:keyMode: \"doc\"\n",
     "1.5 2.5 3 4.5 2\n"},

    {"-x selectCurve -s a.txt -t 2.9 -c 'my column' -a yes",
     "selectCurvesOf:sourceName:table:column:appendSelection: \"doc\" \"a.txt\" 2 \"my column\" "
     "yes\n",
     ""},
    {"-x selectCurve",
     "selectCurvesOf:sourceName:table:column:appendSelection: \"doc\" \"\" -1 \"\" no\n", ""},
    {"-x selectCurveByPosition -s 1 -e 2.9 -t 3 -u 4 -c 5 -f 6.9 -a yes",
     BY_POSITION "\"doc\" 1 2 3 4 5 6 yes\n", ""},
    {"-x selectCurveByPosition", BY_POSITION "\"doc\" -1 -1 -1 -1 -1 -1 no\n", ""},
    {"-x selectCurveByPosition -f column", BY_POSITION "\"doc\" -1 -1 -1 -1 -1 0 no\n", ""},
    {"-x selectCurveByIndex -i 3 -j 5.9 -a yes",
     "selectCurvesOf:indexFirst:indexLast:appendSelection: \"doc\" 3 5 yes\n", ""},
    {"-x selectCurveByIndex",
     "selectCurvesOf:indexFirst:indexLast:appendSelection: \"doc\" -1 -1 no\n", ""},
    {"-x indexOfCurveName -s a.txt -t 2 -c 'my column'",
     "indexOfCurveNameOf:source:table:column: \"doc\" \"a.txt\" 2 \"my column\"\n", "11\n"},
    {"-x indexOfCurveName", "indexOfCurveNameOf:source:table:column: \"doc\" \"\" -1 \"\"\n",
     "11\n"},
    {"-x nextMarkedCurve", "nameOfNextMarkedCurveOf:name:source:yData:table:index: \"doc\"\n",
     "7 y a name Table 3 a.txt\n"},
    {"-x markSelectedCurves", "markSelectedCurvesOf: \"doc\"\n", "4\n"},
    {"-x markSelectionAsFitData", "markSelectionAsFitDataOf: \"doc\"\n", ""},

    {"-x setAttributes -l no -s keep -y yes -e No -a Keep -f n -t 1 -r k -m on -S K",
     SET_ATTRIBUTES "\"doc\" 0 2 1 0 2 0 1 2 1 2\n", ""},
    {"-x setAttributes", SET_ATTRIBUTES "\"doc\" 2 2 2 2 2 2 2 2 2 2\n", ""},
    {"-x setAttributes2 -s 1 -p 2.5 -t 3 -y 4.5 -c 5 -m 6 -n 7 -w 8.5 -h 9.5 -i 10.5 -j 11.5 "
     "-k 12.5 -r 13.5 -g 14.5 -b 15.5 -o 16.5 -R 17.5 -G 18.5 -B 19.5",
     "setAttributes2OfSelectionOf: \"doc\" 1 2.5 3 4.5 5 6 7 -1 -1 8.5 9.5 10.5 11.5 12.5 13.5 "
     "14.5 15.5 16.5 17.5 18.5 19.5 nan\n",
     ""},
    {"-x setAttributes2",
     "setAttributes2OfSelectionOf: \"doc\" -1 nan -1 nan -1 -1 -1 -1 -1 nan nan nan nan nan nan "
     "nan nan nan nan nan nan nan\n",
     ""},
    {"-x setDocAttributes -w 1.5 -h 2.5 -t 3.5 -a 4.5 -e 5.5 -y 6.5 -m yes -r keep",
     SET_DOC_ATTRIBUTES "\"doc\" 1.5 2.5 3.5 4.5 5.5 6.5 1 1\n", ""},
    {"-x setDocAttributes", SET_DOC_ATTRIBUTES "\"doc\" nan nan nan nan nan nan 0 0\n", ""},
    {"-x setAxis -a 2 -i 0.25 -t 5 -p 3 -l y -u n -w k -m y -n n -e k -r 45.5 -o yes -k no -b 6 "
     "-c 7 -s Keep -g 1.5",
     SET_AXIS "\"doc\" 2 0.25 5 -1 1 0 2 1 0 2 45.5 1 2 0 2 6 7 2 1.5\n", ""},
    {"-x setAxis", SET_AXIS "\"doc\" 1 nan -1 -1 2 2 2 2 2 2 nan 2 2 2 2 -1 -1 2 nan\n", ""},
    {"-x placeText -t 'a b' -r 0.25 -u 0.75 -a 45.5 -f yes -g yes",
     R"(setRTFTextOf:to:at_X:at_Y:angle:xFloating:yFloating: "doc" "{\\rtf1\\ansi\\uc1 a b}" )"
     "0.25 0.75 45.5 1 1\n",
     ""},
    {"-x placeText",
     R"(setRTFTextOf:to:at_X:at_Y:angle:xFloating:yFloating: "doc" "{\\rtf1\\ansi\\uc1 }" )"
     "0.5 0.5 0 0 0\n",
     ""},

    {"-x getXRange", "getXRangeOf:xmin:xmax: \"doc\"\n", "xmin= -1 xmax= 1.5\n"},
    {"-x getFitRange", "getFitRangeOf:xmin:xmax: \"doc\"\n", "xmin= nan xmax= 2.5\n"},
    {"-x getYRange", "getYRangeOf:ymin:ymax: \"doc\"\n", "ymin= -3 ymax= 3.5\n"},
    {"-x setXRange -s -1.5 -e 2.5", "setXRangeOf:xmin:xmax: \"doc\" -1.5 2.5\n", ""},
    {"-x setXRange", "setXRangeOf:xmin:xmax: \"doc\" nan nan\n", ""},
    {"-x setFitRange -s -1.5 -e 2.5", "setFitRangeOf:xmin:xmax: \"doc\" -1.5 2.5\n", ""},
    {"-x setFitRange", "setFitRangeOf:xmin:xmax: \"doc\" nan nan\n", ""},
    {"-x setYRange -s 2.5 -e -1.5", "setYRangeOf:ymin:ymax: \"doc\" 2.5 -1.5\n", ""},
    {"-x setYRange", "setYRangeOf:ymin:ymax: \"doc\" nan nan\n", ""},
    {"-x getVar -s a", "getVarOf:varName: \"doc\" \"a\"\n", "0.125\n"},
    {"-x getVar", "getVarOf:varName: \"doc\" \"\"\n", "0.125\n"},
    {"-x setFormulaParameters -p 'a = 1' -f x",
     "readFormulaParameterOf:parameterList: \"doc\" \"a = 1\"\n", ""},
    {"-x setFormulaParameters", "readFormulaParameterOf:parameterList: \"doc\" \"\"\n", ""},
    {"-x getFormulaParameters", "formulaParameterListOf: \"doc\"\n", "a = 1.5 b = 2.25\n"},
    {"-x setFormula -f 'y = pow(x, 2)' -p x",
     "setFormulaOf:formulaText: \"doc\" \"y = pow(x, 2)\"\n", ""},
    {"-x setFormula", "setFormulaOf:formulaText: \"doc\" \"\"\n", ""},
    {"-x getFormula", "formulaTextOf: \"doc\"\n", "y = pow(x, 2)   + b \n"},
    {"-x fit", "startFitOf:iterations:lambda:chiq: \"doc\"\n", "fit succeeded 12 0.001 1.5\n"},

    {"-x activate", "actify: \"doc\"\n", ""},
    {"-x print", "printDoc: \"doc\"\n", ""},
    {"-x close -a yes", "closeDocument:askForSave: \"doc\" yes\n", ""},
    {"-x close", "closeDocument:askForSave: \"doc\" no\n", ""},
    {"-x newDocument", "newDocumentWithName: \"doc\"\n", ""},
    {"-x display -r yes", "display:doRangeOverAll: \"doc\" yes\n", ""},
    {"-x display", "display:doRangeOverAll: \"doc\" no\n", ""},
    {"-x open -f 'a b.plw' -r yes", "openFile:file:doRangeOverAll: \"doc\" \"a b.plw\" yes\n", ""},
    {"-x open", "openFile:file:doRangeOverAll: \"doc\" \"\" no\n", ""},
    {"-x saveDocument -f a.plw -k yes -b yes",
     "saveDocument:to:binary: \"doc\" \"a.plw\" yes\ndidSaveSucceed: \"doc\"\n",
     "save succeeded\n"},
    {"-x saveDocument -f a.plw -k no -b no",
     "saveDocument:as:binary: \"doc\" \"a.plw\" no\ndidSaveSucceed: \"doc\"\n", "save succeeded\n"},
    {"-x saveDocument", "saveDocument:as:binary: \"doc\" \"\" no\ndidSaveSucceed: \"doc\"\n",
     "save succeeded\n"},
    {"-x savePDF -f a.pdf", "savePicturePDF:as: \"doc\" \"a.pdf\"\ndidSaveSucceed: \"doc\"\n",
     "save succeeded\n"},
    {"-x savePDF", "savePicturePDF:as: \"doc\" \"\"\ndidSaveSucceed: \"doc\"\n",
     "save succeeded\n"},
    {"-x saveEPS -f a.eps", "savePictureEPS:as: \"doc\" \"a.eps\"\ndidSaveSucceed: \"doc\"\n",
     "save succeeded\n"},
    {"-x saveEPS", "savePictureEPS:as: \"doc\" \"\"\ndidSaveSucceed: \"doc\"\n",
     "save succeeded\n"},
    {"-x saveTIFF -f a.tif", "savePictureTIFF:as: \"doc\" \"a.tif\"\ndidSaveSucceed: \"doc\"\n",
     "save succeeded\n"},
    {"-x saveTIFF", "savePictureTIFF:as: \"doc\" \"\"\ndidSaveSucceed: \"doc\"\n",
     "save succeeded\n"},
    {"-x copyPDF", "copyPDF: \"doc\"\n", ""},
    {"-x copyTIFF", "copyTIFF: \"doc\"\n", ""},
    {"-x newComposition -X 0.1 -Y 2.5 -w 3.5 -h 1e300",
     "newCompositionView: {0.10000000149011612 2.5 3.5 inf}\n", ""},
    {"-x newComposition", "newCompositionView: {0 0 0 0}\n", ""},
    {"-x addPDFtoComposition -X 1.5 -Y 2.5 -w 3.5 -h 4.5 -a 0.1 -s 6.5",
     "addPDFtoCompositionView:inRect:angle:sheer: \"doc\" {1.5 2.5 3.5 4.5} 0.10000000000000001 "
     "6.5\n",
     ""},
    {"-x addPDFtoComposition",
     "addPDFtoCompositionView:inRect:angle:sheer: \"doc\" {0 0 0 0} 0 0\n", ""},
    {"-x savePDFofComposition -f a.pdf -a viewer",
     "savePDFofCompositionView:openWith: \"a.pdf\" \"viewer\"\n", ""},
    {"-x savePDFofComposition -f a.pdf -a none",
     "savePDFofCompositionView:openWith: \"a.pdf\" \"none\"\n", ""},
    {"-x savePDFofComposition", "savePDFofCompositionView:openWith: \"\" \"\"\n", ""},

    {"-x replaceData -p '1 2, 3' -s a.txt -r yes",
     "replaceDataformText:of:source:doRangeOverAll: \"1 2, 3\" \"doc\" \"a.txt\" yes\n", ""},
    {"-x replaceData", "replaceDataformText:of:source:doRangeOverAll: \"\" \"doc\" \"\" no\n", ""},
    {"-x readData -p '1 2, 3' -s a.txt -r yes -a no",
     "readDataformText:of:source:doRangeOverAll:appendToExistingData: \"1 2, 3\" \"doc\" \"a.txt\" "
     "yes no\n",
     ""},
    {"-x readData -a yes",
     "readDataformText:of:source:doRangeOverAll:appendToExistingData: \"\" \"doc\" \"\" no yes\n",
     ""},
    {"-x readData",
     "readDataformText:of:source:doRangeOverAll:appendToExistingData: \"\" \"doc\" \"\" no no\n",
     ""},
    {"-x copy -i yes", "copySelectedCurvesOf:includeX: \"doc\" yes\n", ""},
    {"-x copy", "copySelectedCurvesOf:includeX: \"doc\" no\n", ""},
    {"-x setDecimalSeparator -s 44", "setDeciSeparator: 44\n", ""},
    {"-x setDecimalSeparator", "setDeciSeparator: 0\n", ""},
    {"-x pasteData", "pasteDataOf: \"doc\"\n", ""},
    {"-x duplicateAsPlotted", "duplicateAsPlottedOf: \"doc\"\n", ""},
    {"-x inventory -t yes -s no",
     "inventoryOf:sources:tables:columns:justInSelTable:justInSelSource: \"doc\" yes no\n",
     "5 3 2\n"},
    {"-x inventory -s yes",
     "inventoryOf:sources:tables:columns:justInSelTable:justInSelSource: \"doc\" no yes\n",
     "5 3 2\n"},
    {"-x inventory",
     "inventoryOf:sources:tables:columns:justInSelTable:justInSelSource: \"doc\" no no\n",
     "5 3 2\n"},

    {"-x statistic", "statisticOfSelectionOf:name:dataPoints:min:max:sum:std:area: \"doc\"\n",
     "100 -1 1 12.5 0.25 33 a name\n"},
    {"-x searchMaxima -g yes -s no -w 5.9 -h 0.5",
     "searchMaximaOfSelectionOf:searchMaxima:searchMinima:minwidth:minheight: \"doc\" yes no 5 "
     "0.5\n",
     ""},
    {"-x searchMaxima -s yes",
     "searchMaximaOfSelectionOf:searchMaxima:searchMinima:minwidth:minheight: \"doc\" no yes 10 "
     "10\n",
     ""},
    {"-x searchMaxima",
     "searchMaximaOfSelectionOf:searchMaxima:searchMinima:minwidth:minheight: \"doc\" no no 10 "
     "10\n",
     ""},
    {"-x createCurveAtSelection -s 1.5 -e 2.5 -i 3.5 -y 4.5 -j 5.5",
     "createCurveAtSelectionOf:minx:maxx:incx:miny:incy: \"doc\" 1.5 2.5 3.5 4.5 5.5\n", ""},
    {"-x createCurveAtSelection",
     "createCurveAtSelectionOf:minx:maxx:incx:miny:incy: \"doc\" 0 100 1 0 1\n", ""},
    {"-x changeNameOfSelection -t 'a name'", "changeNameOfSelectionOf:to: \"doc\" \"a name\"\n",
     ""},
    {"-x changeNameOfSelection", "changeNameOfSelectionOf:to: \"doc\" \"\"\n", ""},
    {"-x modifyX", "modifyDataOf:Ydata: \"doc\" no\n", ""},
    {"-x modifyY", "modifyDataOf:Ydata: \"doc\" yes\n", ""},
    {"-x show", "showCurveOf: \"doc\"\n", ""},
    {"-x diff", "diffOf: \"doc\"\n", ""},
    {"-x delete", "deleteSelectedCurvesOf: \"doc\"\n", ""},
    {"-x sortByX", "sortSelectedCurvesByXdata: \"doc\"\n", ""},
    {"-x sortBySelection -r yes", "sortSelectedCurvesBySelection:ascending: \"doc\" yes\n", ""},
    {"-x sortBySelection", "sortSelectedCurvesBySelection:ascending: \"doc\" no\n", ""},
    {"-x swapWithX", "swapSelectedCurvesWithXdata: \"doc\"\n", ""},
};

const std::vector<CommandCase> &commandCases() {
    return cases;
}

using CommandsTest = ClientTest;

TEST_F(CommandsTest, AllAreCovered) {
    std::set<std::string> names;
    for (const CommandCase &c : cases) names.insert(commandOf(c));
    EXPECT_EQ(names.size(), 69);
}

TEST_F(CommandsTest, SendAndPrintInArgumentMode) {
    startPlotwerk(answers);
    for (const CommandCase &c : cases) {
        SCOPED_TRACE(c.line);
        expectOutput(runArguments(wordsOf(c.line)), c.out);
        bool targetKnown = false;
        EXPECT_EQ(takeMessages(), frontQuestion(c, targetKnown) + c.messages);
    }
}

TEST_F(CommandsTest, SendAndPrintInLineMode) {
    startPlotwerk(answers);
    std::string input, messages, out;
    bool targetKnown = false;
    for (const CommandCase &c : cases) {
        input += c.line + '\n';
        messages += frontQuestion(c, targetKnown) + c.messages;
        out += c.out;
    }
    expectOutput(runLines(input), out);
    EXPECT_EQ(takeMessages(), messages);
}

TEST_F(CommandsTest, DoNothingWithoutADocument) {
    startPlotwerk({{"documentNameOfFrontWindow", {reply({""})}}});
    for (const CommandCase &c : cases) {
        SCOPED_TRACE(c.line);
        bool targetKnown = false;
        const std::string question = frontQuestion(c, targetKnown);
        if (question.empty()) continue;
        expectOutput(runLines(c.line), "");
        EXPECT_EQ(takeMessages(), question);
    }
    expectOutput(runLines("-x nonsense -a 1\n-x activeDoc\n-x sync\n-x newDocument -d new\n"),
                 "none\nsynced\n");
    EXPECT_EQ(takeMessages(), "documentNameOfFrontWindow\ndocumentNameOfFrontWindow\n"
                              "waitForEmptyReply\nnewDocumentWithName: \"new\"\n");
}

TEST_F(CommandsTest, PrintWhateverPlotwerkAnswers) {
    const std::string selectors[] = {
        "mouseEventsShiftKeyDownOf:x1:y1:x2:y2:keyMode:",
        "nameOfNextMarkedCurveOf:name:source:yData:table:index:",
        "statisticOfSelectionOf:name:dataPoints:min:max:sum:std:area:",
        "startFitOf:iterations:lambda:chiq:", "indexOfPointOfDoc:atX:atY:curve:index:dataX:dataY:"};
    const auto &[mouse, marked, statistic, fit, nearest] = selectors;
    const struct {
        std::string selector;
        std::vector<std::string> values;
        std::string line, out;
    } answerCases[] = {
        {mouse, {"nan", "2", "3", "4", "5"}, "-x mouseClick", "none\n"},
        {mouse, {"1", "nan", "nan", "nan", "0"}, "-x mouseClick", "1 nan nan nan 0\n"},
        {marked, {"", "", "no", "-1", "-1"}, "-x nextMarkedCurve", "-1 x  Table -1 \n"},
        {statistic, {"", "0", "nan", "inf", "0"}, "-x statistic", "0 nan inf 0 0 0 \n"},
        {fit, {"1", "3", "1e10", "nan"}, "-x fit", "fit ERROR 3 1e+10 nan\n"},
        {fit, {"-1", "0", "0", "0"}, "-x fit", "fit ERROR 0 0 0\n"},
        {nearest, {"-1", "-1", "nan", "nan"}, "-x iAtXY -a 1", "-1 -1 nan nan\n"},
        {"YValueOfDoc:atX:indexSerie:", {"0.12345678"}, "-x YatX", "0.123457\n"},
        {"YValueOfDoc:atX:indexSerie:", {"-inf"}, "-x YatX", "-inf\n"},
        {"valueOfDoc:atIndex:indexSerie:", {"nan"}, "-x Yi", "nan\n"},
        {"getVarOf:varName:", {""}, "-x getVar", "\n"},
        {"getVarOf:varName:", {"1,5\n%s \xc3\xa4"}, "-x getVar", "1,5\n%s \xc3\xa4\n"},
        {"formulaTextOf:", {""}, "-x getFormula", "\n"},
        {"formulaTextOf:", {"\n\na,b\r\n%d"}, "-x getFormula", "  a,b\r %d\n"},
        {"formulaParameterListOf:", {"\na,b\n"}, "-x getFormulaParameters", " a.b \n"},
        {"documentNameOfFrontWindow", {"a %s\nb"}, "-x activeDoc", "a %s\nb\n"},
        {"didSaveSucceed:", {"no"}, "-x saveDocument", "save ERROR\n"},
        {"didSaveSucceed:", {"no"}, "-x savePDF", "save ERROR\n"},
        {"didSaveSucceed:", {"no"}, "-x saveEPS", "save ERROR\n"},
        {"didSaveSucceed:", {"no"}, "-x saveTIFF", "save ERROR\n"},
    };
    for (const auto &c : answerCases) {
        SCOPED_TRACE(c.line);
        startPlotwerk({{c.selector, {reply(c.values)}}});
        expectOutput(runLines(c.line), c.out);
    }
}

// An option's flag must reach its own argument, not a neighbour of the same value.
TEST_F(CommandsTest, EachFlagSwitchesOneSetting) {
    const struct {
        std::string command, letters;       // by argument; a blank where no option leads to
        std::string start;                  // of the message
        std::vector<std::string> arguments; // '2' where the flags are
    } flagCases[] = {
        {"setAttributes",
         "lsyeaftrmS",
         SET_ATTRIBUTES "\"doc\"",
         {"2", "2", "2", "2", "2", "2", "2", "2", "2", "2"}},
        {"setAxis",
         "luwmneo k s",
         SET_AXIS "\"doc\"",
         {"1", "nan", "-1", "-1", "2", "2", "2", "2", "2", "2", "nan", "2", "2", "2", "2", "-1",
          "-1", "2", "nan"}},
    };
    startPlotwerk();
    for (const auto &c : flagCases) {
        size_t position = 0;
        for (const char letter : c.letters) {
            while (c.arguments.at(position) != "2") ++position;
            std::vector<std::string> arguments = c.arguments;
            arguments[position++].front() = '0';
            if (letter == ' ') continue;
            std::string message = c.start;
            for (const std::string &argument : arguments) message += ' ' + argument;

            const std::string line = "-x " + c.command + " -" + letter + " no";
            expectOutput(runLines(line), "");
            EXPECT_EQ(takeMessages(), "documentNameOfFrontWindow\n" + message + "\n") << line;
        }
    }
}

TEST_F(CommandsTest, ReadYesAndNoAndKeepByTheFirstCharacter) {
    const struct {
        const char *text, *yesNo;
        int triState;
    } texts[] = {{"", "no", 2},     {"n", "no", 0},    {"N", "no", 0},        {"nein", "no", 0},
                 {"NO", "no", 0},   {"k", "yes", 2},   {"K", "yes", 2},       {"Keep", "yes", 2},
                 {"0", "yes", 1},   {"yes", "yes", 1}, {"false", "yes", 1},   {" n", "yes", 1},
                 {"off", "yes", 1}, {"-", "yes", 1},   {"\xc3\xb1", "yes", 1}};
    const auto messages = [](const std::string &yesNo, const std::string &flag) {
        const std::string floating = yesNo == "yes" ? "1" : "0";
        return "documentNameOfFrontWindow\ncopySelectedCurvesOf:includeX: \"doc\" " + yesNo +
               "\n" SET_ATTRIBUTES "\"doc\" " + flag + " 2 2 2 2 " + flag + " 2 2 2 2\n" +
               R"(setRTFTextOf:to:at_X:at_Y:angle:xFloating:yFloating: "doc" )"
               R"("{\\rtf1\\ansi\\uc1 }" 0.5 0.5 0 )" +
               floating + ' ' + floating + '\n';
    };
    startPlotwerk();
    for (const auto &t : texts) {
        expectOutput(runArguments({"-i", t.text, "-l", t.text, "-f", t.text, "-g", t.text, "-x",
                                   "copy", "-x", "setAttributes", "-x", "placeText"}),
                     "");
        EXPECT_EQ(takeMessages(), messages(t.yesNo, std::to_string(t.triState))) << t.text;
    }
}

TEST_F(CommandsTest, ReadNumbersAsFarAsTheyGo) {
    const struct {
        const char *text, *real, *integer;
    } numbers[] = {{"abc", "0", "0"},
                   {"12abc", "12", "12"},
                   {"1,5", "1", "1"},
                   {" 7", "7", "7"},
                   {"+3.9", "3.8999999999999999", "3"},
                   {"1e3", "1000", "1"},
                   {"0x10", "16", "0"},
                   {"inf", "inf", "0"},
                   {"nan", "nan", "0"},
                   {"-0.0", "-0", "0"},
                   {"1e400", "inf", "1"}};
    startPlotwerk();
    for (const auto &n : numbers) {
        runArguments({"-x", "YatX", "-a", n.text, "-s", n.text});
        EXPECT_EQ(takeMessages(), std::string("documentNameOfFrontWindow\n"
                                              "YValueOfDoc:atX:indexSerie: \"doc\" ") +
                                      n.real + ' ' + n.integer + '\n')
            << n.text;
    }
}
