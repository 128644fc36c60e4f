// Every command: which messages it sends with which arguments, and what it prints.
#include "client/commandTable.h"
#include "tests/client/clientTest.h"
#include "tests/support/expect.h"

#include <algorithm>
#include <regex>
#include <set>
#include <unistd.h>

static const std::string question = "documentNameOfFrontWindow\n";

// The answers that the cases below count on.
static const Script answers = {
    {"YValueOfDoc", {reply({"1234567.5"})}},
    {"valueOfDoc", {reply({"-2.5e-7"})}},
    {"indexOfPointOfDoc:atX:indexSerie", {reply({"42"})}},
    {"indexOfPointOfDoc:atX:atY", {reply({"3", "17", "0.1", "-8.25"})}},
    {"indexOfSelectedCurveOf", {reply({"5"})}},
    {"indexOfFitCurveOf", {reply({"-1"})}},
    {"mouseEventsShiftKeyDownOf", {reply({"1.5", "2.5", "3", "4.5", "2"})}},
    {"indexOfCurveNameOf", {reply({"11"})}},
    {"nameOfNextMarkedCurveOf", {reply({"a name", "a.txt", "yes", "3", "7"})}},
    {"markSelectedCurvesOf", {reply({"4"})}},
    {"statisticOfSelectionOf", {reply({"a name", "100", "-1", "1", "12.5", "0.25", "33"})}},
    {"getXRangeOf", {reply({"-1", "1.5"})}},
    {"getFitRangeOf", {reply({"nan", "2.5"})}},
    {"getYRangeOf", {reply({"-3", "3.5"})}},
    {"getVarOf", {reply({"0.125"})}},
    {"formulaTextOf", {reply({"y = pow(x, 2)\n  + b\n"})}},
    {"formulaParameterListOf", {reply({"a = 1,5\nb = 2,25"})}},
    {"startFitOf", {reply({"0", "12", "0.001", "1.5"})}},
    {"didSaveSucceed", {reply({"yes"})}},
    {"inventoryOf", {reply({"2", "3", "5"})}},
};

// Integers are given with a fraction, which they lose, reals with one that they keep, and texts in
// ISO 8859-1. The rows of a command together tell each of its flags from every other.
static const std::vector<CommandCase> cases = {
    {"parentPID", "", "PPID = " + std::to_string(getpid())},
    {"sync", "waitForEmptyReply", "synced"},
    {"activeDoc", "documentNameOfFrontWindow", "doc"},

    {"YatX -a 2.5 -s 3.9", "YValueOfDoc:'doc' atX:2.5 indexSerie:3", "1.23457e+06"},
    {"Yi -i 7.9 -s 3", "valueOfDoc:'doc' atIndex:7 indexSerie:3", "-2.5e-07"},
    {"iAtX -a -2.5 -s 3", "indexOfPointOfDoc:'doc' atX:-2.5 indexSerie:3", "42"},
    {"iAtXY -a 2.5 -b 4.5",
     "indexOfPointOfDoc:'doc' atX:2.5 atY:4.5 curve:0 index:0 dataX:nan dataY:nan",
     "3 17 0.1 -8.25"},
    {"iAtXY", "indexOfPointOfDoc:'doc' atX:nan atY:nan curve:0 index:0 dataX:nan dataY:nan",
     "3 17 0.1 -8.25"},
    {"setYi -i 7 -s 3 -a 0.1",
     "setValueOfDoc:'doc' atIndex:7 indexSerie:3 toValue:0.10000000000000001"},
    {"selectedIndex", "indexOfSelectedCurveOf:'doc'", "5"},
    {"fitCurveIndex", "indexOfFitCurveOf:'doc'", "-1"},
    {"mouseClick", "mouseEventsShiftKeyDownOf:'doc' x1: y1: x2: y2: keyMode:", "1.5 2.5 3 4.5 2"},

    {"selectCurve -s \xe4.txt -t 2.9 -c '\xf6 column' -a yes",
     "selectCurvesOf:'doc' sourceName:'ä.txt' table:2 column:'ö column' appendSelection:yes"},
    {"selectCurveByPosition -s 1 -e 2.9 -t 3 -u 4 -c 5 -f 6.9 -a yes",
     "selectCurvesOf:'doc' sourceIndexFirst:1 sourceIndexLast:2 tableFirst:3 tableLast:4 "
     "columnFirst:5 columnLast:6 appendSelection:yes"},
    {"selectCurveByIndex -i 3 -j 5.9 -a yes",
     "selectCurvesOf:'doc' indexFirst:3 indexLast:5 appendSelection:yes"},
    {"indexOfCurveName -s \xe4.txt -t 2 -c \xf6",
     "indexOfCurveNameOf:'doc' source:'ä.txt' table:2 column:'ö'", "11"},
    {"nextMarkedCurve", "nameOfNextMarkedCurveOf:'doc' name: source: yData: table: index:",
     "7 y a name Table 3 a.txt"},
    {"markSelectedCurves", "markSelectedCurvesOf:'doc'", "4"},
    {"markSelectionAsFitData", "markSelectionAsFitDataOf:'doc'"},

    {"setAttributes -l no -s keep -y yes -e No -a Keep -f n -t 1 -r k -m on -S K",
     "setAttributesOfSelectionOf:'doc' line:0 stepped:2 yerr:1 xerr:0 dash:2 fill:0 topX:1 "
     "rightY:2 marker:1 sym:2"},
    {"setAttributes -l n -s n -y n -e y -a y -t y -S no",
     "setAttributesOfSelectionOf:'doc' line:0 stepped:0 yerr:0 xerr:1 dash:1 fill:2 topX:1 "
     "rightY:2 marker:2 sym:0"},
    {"setAttributes", "setAttributesOfSelectionOf:'doc' line:2 stepped:2 yerr:2 xerr:2 dash:2 "
                      "fill:2 topX:2 rightY:2 marker:2 sym:2"},
    {"setAttributes2 -s 1 -p 2.5 -t 3 -y 4.5 -c 5 -m 6 -n 7 -w 8.5 -h 9.5 -i 10.5 -j 11.5 -k 12.5 "
     "-r 13.5 -g 14.5 -b 15.5 -o 16.5 -R 17.5 -G 18.5 -B 19.5",
     "setAttributes2OfSelectionOf:'doc' sum:1 interpolationPoints:2.5 interpolationType:3 "
     "symbolSize:4.5 symbolInc:5 symbol1:6 symbol2:7 symbol3:-1 symbol4:-1 lineThickness:8.5 "
     "dashLength1:9.5 dashLength2:10.5 dashLength3:11.5 dashLength4:12.5 lineColorRed:13.5 "
     "lineColorGreen:14.5 lineColorBlue:15.5 lineColorOpacity:16.5 fillColorRed:17.5 "
     "fillColorGreen:18.5 fillColorBlue:19.5 fillColorOpacity:nan"},
    {"setDocAttributes -w 1.5 -h 2.5 -t 3.5 -a 4.5 -e 5.5 -y 6.5 -m yes -r no",
     "setDocAttributes:'doc' xAxisLength:1.5 yAxisLength:2.5 tickLength:3.5 axisThickness:4.5 "
     "yAxisPos:5.5 xAxisPos:6.5 multiDimFit:1 noLineOnRev:0"},
    {"setDocAttributes", "setDocAttributes:'doc' xAxisLength:nan yAxisLength:nan tickLength:nan "
                         "axisThickness:nan yAxisPos:nan xAxisPos:nan multiDimFit:0 noLineOnRev:0"},
    {"setAxis -a 2 -i 0.25 -t 5 -p 3 -l y -u n -w k -m y -n n -e k -r 45.5 -o yes -k no -b 6 -c 7 "
     "-s Keep -g 1.5",
     "setAxisOf:'doc' axisCode:2 inc:0.25 ticks:5 prec:-1 log:1 insideticks:0 outsideticks:2 "
     "majorgrid:1 minorgrid:0 expnumbers:2 labelAngle:45.5 noline:1 numbersinside:2 nonumbers:0 "
     "arrow:2 logticksAt:6 lognumberAt:7 reverse:2 labelDensity:1.5"},
    {"setAxis -l y -u y -w y -m n -n n -e n",
     "setAxisOf:'doc' axisCode:1 inc:nan ticks:-1 prec:-1 log:1 insideticks:1 outsideticks:1 "
     "majorgrid:0 minorgrid:0 expnumbers:0 labelAngle:nan noline:2 numbersinside:2 nonumbers:2 "
     "arrow:2 logticksAt:-1 lognumberAt:-1 reverse:2 labelDensity:nan"},
    {"setAxis",
     "setAxisOf:'doc' axisCode:1 inc:nan ticks:-1 prec:-1 log:2 insideticks:2 outsideticks:2 "
     "majorgrid:2 minorgrid:2 expnumbers:2 labelAngle:nan noline:2 numbersinside:2 nonumbers:2 "
     "arrow:2 logticksAt:-1 lognumberAt:-1 reverse:2 labelDensity:nan"},
    {"placeText -t 'a b' -r 0.25 -u 0.75 -a 45.5 -f yes -g yes",
     "setRTFTextOf:'doc' to:'{\\rtf1\\ansi\\uc1 a b}' at_X:0.25 at_Y:0.75 angle:45.5 xFloating:1 "
     "yFloating:1"},
    {"placeText -f yes -g no", "setRTFTextOf:'doc' to:'{\\rtf1\\ansi\\uc1 }' at_X:0.5 at_Y:0.5 "
                               "angle:0 xFloating:1 yFloating:0"},
    {"placeText", "setRTFTextOf:'doc' to:'{\\rtf1\\ansi\\uc1 }' at_X:0.5 at_Y:0.5 angle:0 "
                  "xFloating:0 yFloating:0"},

    {"getXRange", "getXRangeOf:'doc' xmin: xmax:", "xmin= -1 xmax= 1.5"},
    {"getFitRange", "getFitRangeOf:'doc' xmin: xmax:", "xmin= nan xmax= 2.5"},
    {"getYRange", "getYRangeOf:'doc' ymin: ymax:", "ymin= -3 ymax= 3.5"},
    {"setXRange -s -1.5 -e 2.5", "setXRangeOf:'doc' xmin:-1.5 xmax:2.5"},
    {"setFitRange -s -1.5 -e 2.5", "setFitRangeOf:'doc' xmin:-1.5 xmax:2.5"},
    {"setYRange -s 2.5 -e -1.5", "setYRangeOf:'doc' ymin:2.5 ymax:-1.5"},
    {"getVar -s \xe4", "getVarOf:'doc' varName:'ä'", "0.125"},
    {"setFormulaParameters -p '\xe4 = 1' -f x",
     "readFormulaParameterOf:'doc' parameterList:'ä = 1'"},
    {"getFormulaParameters", "formulaParameterListOf:'doc'", "a = 1.5 b = 2.25"},
    {"setFormula -f '\xe4 = pow(x, 2)' -p x", "setFormulaOf:'doc' formulaText:'ä = pow(x, 2)'"},
    {"getFormula", "formulaTextOf:'doc'", "y = pow(x, 2)   + b "},
    {"fit", "startFitOf:'doc' iterations: lambda: chiq:", "fit succeeded 12 0.001 1.5"},

    {"activate", "actify:'doc'"},
    {"print", "printDoc:'doc'"},
    {"close -a yes", "closeDocument:'doc' askForSave:yes"},
    {"newDocument", "newDocumentWithName:'doc'"},
    {"display -r yes", "display:'doc' doRangeOverAll:yes"},
    {"open -f '\xe4 b.plw' -r yes", "openFile:'doc' file:'ä b.plw' doRangeOverAll:yes"},
    {"saveDocument -f a.plw -k yes -b yes",
     "saveDocument:'doc' to:'a.plw' binary:yes\ndidSaveSucceed:'doc'", "save succeeded"},
    {"saveDocument -f a.plw -k no", "saveDocument:'doc' as:'a.plw' binary:no\ndidSaveSucceed:'doc'",
     "save succeeded"},
    {"savePDF -f \xe4.pdf", "savePicturePDF:'doc' as:'ä.pdf'\ndidSaveSucceed:'doc'",
     "save succeeded"},
    {"saveEPS -f a.eps", "savePictureEPS:'doc' as:'a.eps'\ndidSaveSucceed:'doc'", "save succeeded"},
    {"saveTIFF -f a.tif", "savePictureTIFF:'doc' as:'a.tif'\ndidSaveSucceed:'doc'",
     "save succeeded"},
    {"copyPDF", "copyPDF:'doc'"},
    {"copyTIFF", "copyTIFF:'doc'"},
    {"newComposition -X 0.1 -Y 2.5 -w 3.5 -h 1e300",
     "newCompositionView:{0.10000000149011612 2.5 3.5 inf}"},
    {"newComposition", "newCompositionView:{0 0 0 0}"},
    {"addPDFtoComposition -X 1.5 -Y 2.5 -w 3.5 -h 4.5 -a 0.1 -s 6.5",
     "addPDFtoCompositionView:'doc' inRect:{1.5 2.5 3.5 4.5} angle:0.10000000000000001 sheer:6.5"},
    {"addPDFtoComposition", "addPDFtoCompositionView:'doc' inRect:{0 0 0 0} angle:0 sheer:0"},
    {"savePDFofComposition -f \xe4.pdf -a \xf6", "savePDFofCompositionView:'ä.pdf' openWith:'ö'"},

    {"replaceData -p '\xe4 2, 3' -s \xf6.txt -r yes",
     "replaceDataformText:'ä 2, 3' of:'doc' source:'ö.txt' doRangeOverAll:yes"},
    {"readData -p '\xe4 2, 3' -s \xf6.txt -r yes -a no",
     "readDataformText:'ä 2, 3' of:'doc' source:'ö.txt' doRangeOverAll:yes "
     "appendToExistingData:no"},
    {"copy -i yes", "copySelectedCurvesOf:'doc' includeX:yes"},
    {"setDecimalSeparator -s 44", "setDeciSeparator:44"},
    {"setDecimalSeparator", "setDeciSeparator:0"},
    {"pasteData", "pasteDataOf:'doc'"},
    {"duplicateAsPlotted", "duplicateAsPlottedOf:'doc'"},
    {"inventory -t yes -s no",
     "inventoryOf:'doc' sources: tables: columns: justInSelTable:yes justInSelSource:no", "5 3 2"},

    {"statistic", "statisticOfSelectionOf:'doc' name: dataPoints: min: max: sum: std: area:",
     "100 -1 1 12.5 0.25 33 a name"},
    {"searchMaxima -g yes -s no -w 5.9 -h 0.5",
     "searchMaximaOfSelectionOf:'doc' searchMaxima:yes searchMinima:no minwidth:5 minheight:0.5"},
    {"searchMaxima",
     "searchMaximaOfSelectionOf:'doc' searchMaxima:no searchMinima:no minwidth:10 minheight:10"},
    {"createCurveAtSelection -s 1.5 -e 2.5 -i 3.5 -y 4.5 -j 5.5",
     "createCurveAtSelectionOf:'doc' minx:1.5 maxx:2.5 incx:3.5 miny:4.5 incy:5.5"},
    {"createCurveAtSelection",
     "createCurveAtSelectionOf:'doc' minx:0 maxx:100 incx:1 miny:0 incy:1"},
    {"changeNameOfSelection -t \xfc", "changeNameOfSelectionOf:'doc' to:'ü'"},
    {"modifyX", "modifyDataOf:'doc' Ydata:no"},
    {"modifyY", "modifyDataOf:'doc' Ydata:yes"},
    {"show", "showCurveOf:'doc'"},
    {"diff", "diffOf:'doc'"},
    {"delete", "deleteSelectedCurvesOf:'doc'"},
    {"sortByX", "sortSelectedCurvesByXdata:'doc'"},
    {"sortBySelection -r yes", "sortSelectedCurvesBySelection:'doc' ascending:yes"},
    {"swapWithX", "swapSelectedCurvesWithXdata:'doc'"},
};

static std::string nameIn(const CommandCase &c) {
    return c.line.substr(0, c.line.find(' '));
}

// Behind them the commands of one row without its options: these are then sent as empty texts, -1,
// NaN and no.
const std::vector<CommandCase> &commandCases() {
    static const std::vector<CommandCase> all = [] {
        std::vector<CommandCase> result = cases;
        for (const CommandCase &c : cases) {
            const std::string name = nameIn(c);
            if (c.line == name || std::ranges::count(cases, name, nameIn) > 1) continue;
            std::string messages = c.messages;
            for (const auto &[given, none] : {std::pair{":'(?!doc')[^']*'", ":''"},
                                              {":-?\\d+\\.\\d+", ":nan"},
                                              {":-?\\d+(?= |$)", ":-1"},
                                              {":yes", ":no"}})
                messages = std::regex_replace(messages, std::regex(given), none);
            result.push_back({name, messages, c.out});
        }
        return result;
    }();
    return all;
}

using CommandsTest = ClientTest;

static bool needsDocument(const CommandCase &c) {
    return c.line != "parentPID" && c.line != "sync" && c.line != "activeDoc";
}

static std::string lines(const std::string &text) {
    return text.empty() ? "" : text + '\n';
}

TEST_F(CommandsTest, SendAndPrintInBothModes) {
    std::set<std::string> commands;
    startPlotwerk(answers);
    for (const CommandCase &c : commandCases()) {
        SCOPED_TRACE(c.line);
        commands.insert(nameIn(c));
        const std::string messages = (needsDocument(c) ? question : "") + lines(c.messages);
        expectOutput(runShell("-x " + c.line), lines(c.out));
        expectOutput(runLines("-x " + c.line), lines(c.out));
        EXPECT_EQ(takeMessages(), messages + messages);
    }
    for (const CommandTable *table : command::allTables) {
        for (const CommandRow &row : *table) EXPECT_TRUE(commands.contains(row.name)) << row.name;
    }
}

TEST_F(CommandsTest, DoNothingWithoutADocument) {
    startPlotwerk({{"documentNameOfFrontWindow", {reply({""})}}});
    for (const CommandCase &c : commandCases()) {
        if (!needsDocument(c)) continue;
        SCOPED_TRACE(c.line);
        expectOutput(runLines("-x " + c.line), "");
        EXPECT_EQ(takeMessages(), question);
    }
    expectOutput(runLines("-x nonsense -a 1\n-x activeDoc\n-x sync\n-x newDocument -d new\n"),
                 "none\nsynced\n");
    EXPECT_EQ(takeMessages(),
              question + question + "waitForEmptyReply\nnewDocumentWithName:'new'\n");
}

TEST_F(CommandsTest, PrintWhateverPlotwerkAnswers) {
    const std::tuple<std::string, std::vector<std::string>, std::string, std::string> given[] = {
        {"mouseEvents", {"nan", "2", "3", "4", "5"}, "mouseClick", "none"},
        {"mouseEvents", {"1", "nan", "nan", "nan", "0"}, "mouseClick", "1 nan nan nan 0"},
        {"nameOfNextMarked", {"", "", "no", "-1", "-1"}, "nextMarkedCurve", "-1 x  Table -1 "},
        {"statisticOfSelectionOf", {"", "0", "nan", "inf", "0"}, "statistic", "0 nan inf 0 0 0 "},
        {"startFitOf", {"1", "3", "1e10", "nan"}, "fit", "fit ERROR 3 1e+10 nan"},
        {"indexOfPointOfDoc:atX:atY", {"-1", "-1", "nan", "-inf"}, "iAtXY", "-1 -1 nan -inf"},
        {"getVarOf", {"1,5\n%s \xc3\xa4"}, "getVar", "1,5\n%s \xc3\xa4"},
        {"formulaTextOf", {"\n\na,b\r\n%d"}, "getFormula", "  a,b\r %d"},
        {"formulaParameterListOf", {"\na,b\n"}, "getFormulaParameters", " a.b "},
        {"documentNameOfFrontWindow", {"a %s\nb"}, "activeDoc", "a %s\nb"},
        {"didSaveSucceed", {"no"}, "saveDocument", "save ERROR"},
    };
    for (const auto &[selector, values, command, out] : given) {
        SCOPED_TRACE(command + " answered " + testing::PrintToString(values));
        startPlotwerk({{selector, {reply(values)}}});
        expectOutput(runLines("-x " + command), out + '\n');
    }
}

TEST(Options, AreReadByTheFirstCharacterOrAsFarAsANumberGoes) {
    const std::tuple<const char *, bool, int, int, double> texts[] = {
        {"", false, 2, 10, 10},    {"n", false, 0, 0, 0},      {"Nein", false, 0, 0, 0},
        {"k", true, 2, 0, 0},      {"Keep", true, 2, 0, 0},    {"false", true, 1, 0, 0},
        {" n", true, 1, 0, 0},     {"-", true, 1, 0, 0},       {"\xc3\xb1", true, 1, 0, 0},
        {"1,5", true, 1, 1, 1},    {" 7", true, 1, 7, 7},      {"+3.75", true, 1, 3, 3.75},
        {"1e3", true, 1, 1, 1000}, {"0x10", true, 1, 0, 16},   {"inf", true, 1, 0, infinity},
        {"nan", false, 0, 0, NaN}, {"-0.0", true, 1, 0, -0.0}, {"1e400", true, 1, 1, infinity}};
    for (const auto &[text, yes, state, whole, number] : texts) {
        EXPECT_EQ(yesNo(text), yes) << text;
        EXPECT_EQ(triState(text), state) << text;
        const OptionText option{text, 'a', "YatX"};
        EXPECT_EQ(integer(option, 10), whole) << text;
        EXPECT_TRUE(same(real(option, 10), number)) << text;
    }
}
