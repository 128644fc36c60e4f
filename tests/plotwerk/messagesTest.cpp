// Messages that can't be done: neutral answers, documents unchanged, and a line about it.
#include "tests/plotwerk/serverTest.h"

#include <climits>
#include <cmath>
#include <functional>
#include <limits>
#include <sstream>

namespace {

constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();
constexpr double infinity = std::numeric_limits<double>::infinity();

// Answers as one line: numbers by %g, texts in quotes.
std::string shown(double value) {
    return std::isnan(value) ? "nan" : (std::ostringstream() << value).str();
}
std::string shown(int value) {
    return std::to_string(value);
}
std::string shown(bool value) {
    return value ? "yes" : "no";
}
std::string shown(const std::string &text) {
    return '"' + text + '"';
}
template<class... Members> std::string shown(const std::tuple<Members...> &members) {
    std::string line;
    std::apply([&](const auto &...member) { ((line += shown(member) + ' '), ...); }, members);
    line.pop_back();
    return line;
}

struct Message {
    const char *what;
    std::string answer; // empty for a message that has none
    std::function<std::string(Plotwerk &)> send;
};

template<class Send> Message asking(const char *what, const char *answer, Send send) {
    return {what, answer, [send](Plotwerk &plotwerk) { return shown(send(plotwerk)); }};
}

template<class Send> Message telling(const char *what, Send send) {
    return {what, "", [send](Plotwerk &plotwerk) {
                send(plotwerk);
                return std::string();
            }};
}

} // namespace

#define ASK(answer, call) asking(#call, answer, [](Plotwerk &p) { return p.call; })
#define TELL(call) telling(#call, [](Plotwerk &p) { p.call; })

// Every message that names a document, but names one that isn't there.
static const Message toNobody[] = {
    TELL(actify_("nix")),
    TELL(actify_("")),
    TELL(actify_("doc ")),
    TELL(actify_(std::string(1'000'000, 'n'))),
    TELL(closeDocument_askForSave_("nix", true)),
    TELL(display_doRangeOverAll_("nix", true)),
    TELL(saveDocument_to_binary_("nix", "/nowhere/file", false)),
    TELL(saveDocument_as_binary_("nix", "/nowhere/file", true)),
    ASK("no", didSaveSucceed_("nix")),
    ASK("nan", YValueOfDoc_atX_indexSerie_("nix", 1, 0)),
    ASK("nan", valueOfDoc_atIndex_indexSerie_("nix", 0, 0)),
    ASK("-1", indexOfPointOfDoc_atX_indexSerie_("nix", 0, 0)),
    ASK("-1 -1 nan nan",
        indexOfPointOfDoc_atX_atY_curve_index_dataX_dataY_("nix", 0, 0, 1, 1, 1, 1)),
    TELL(setValueOfDoc_atIndex_indexSerie_toValue_("nix", 0, 0, 1)),
    ASK("-1", indexOfSelectedCurveOf_("nix")),
    ASK("-1", indexOfFitCurveOf_("nix")),
    ASK("nan nan nan nan 0", mouseEventsShiftKeyDownOf_x1_y1_x2_y2_keyMode_("nix")),
    TELL(selectCurvesOf_sourceName_table_column_appendSelection_("nix", "", -1, "", false)),
    TELL(selectCurvesOf_regexSourceName_table_regexColumn_appendSelection_("nix", "", -1, "",
                                                                           false)),
    TELL(
        selectCurvesOf_sourceIndexFirst_sourceIndexLast_tableFirst_tableLast_columnFirst_columnLast_appendSelection_(
            "nix", -1, -1, -1, -1, -1, -1, false)),
    TELL(selectCurvesOf_indexFirst_indexLast_appendSelection_("nix", -1, -1, false)),
    ASK("-1", indexOfCurveNameOf_source_table_column_("nix", "", -1, "")),
    ASK("-1", indexOfCurveNameOf_regexSource_table_regexColumn_("nix", "", -1, "")),
    ASK("\"\" \"\" no 0 -1", nameOfNextMarkedCurveOf_name_source_yData_table_index_("nix")),
    ASK("0", markSelectedCurvesOf_("nix")),
    TELL(markSelectionAsFitDataOf_("nix")),
    ASK("\"\" 0 nan nan nan nan nan",
        statisticOfSelectionOf_name_dataPoints_min_max_sum_std_area_("nix")),
    TELL(searchMaximaOfSelectionOf_searchMaxima_searchMinima_minwidth_minheight_("nix", true, true,
                                                                                 1, 0)),
    TELL(createCurveAtSelectionOf_minx_maxx_incx_miny_incy_("nix", 0, 1, 1, 0, 0)),
    TELL(changeNameOfSelectionOf_to_("nix", "")),
    TELL(showCurveOf_("nix")),
    TELL(diffOf_("nix")),
    TELL(deleteSelectedCurvesOf_("nix")),
    TELL(deleteAllCurvesOf_("nix")),
    TELL(sortSelectedCurvesByXdata_("nix")),
    TELL(sortSelectedCurvesBySelection_ascending_("nix", true)),
    TELL(swapSelectedCurvesWithXdata_("nix")),
    ASK("nan nan", getXRangeOf_xmin_xmax_("nix")),
    ASK("nan nan", getYRangeOf_ymin_ymax_("nix")),
    ASK("nan nan", get2XRangeOf_xmin_xmax_("nix")),
    ASK("nan nan", get2YRangeOf_ymin_ymax_("nix")),
    TELL(setXRangeOf_xmin_xmax_("nix", 0, 1)),
    TELL(setYRangeOf_ymin_ymax_("nix", 0, 1)),
    TELL(set2XRangeOf_xmin_xmax_("nix", 0, 1)),
    TELL(set2YRangeOf_ymin_ymax_("nix", 0, 1)),
    TELL(setLocalRangeOf_XorYAxis_("nix", true)),
    ASK("nan nan", getFitRangeOf_xmin_xmax_("nix")),
    TELL(setFitRangeOf_xmin_xmax_("nix", 0, 1)),
    ASK("\"\"", getVarOf_varName_("nix", "xmin")),
    TELL(replaceDataformText_of_source_doRangeOverAll_("1 2\n", "nix", "", true)),
    TELL(readDataformText_of_source_doRangeOverAll_appendToExistingData_("1 2\n", "nix", "", true,
                                                                         true)),
    TELL(appendDataAndDrawInFastMode_of_source_("1 2\n", "nix", "")),
    ASK("\"\"", dataOfSelectedCurvesOf_("nix")),
    TELL(copySelectedCurvesOf_includeX_("nix", true)),
    TELL(pasteDataOf_("nix")),
    TELL(duplicateAsPlottedOf_("nix")),
    TELL(printDoc_("nix")),
    TELL(modifyDataOf_Ydata_("nix", true)),
    TELL(setAttributesOfSelectionOf_line_stepped_yerr_xerr_dash_fill_topX_rightY_marker_sym_(
        "nix", 2, 2, 2, 2, 2, 2, 2, 2, 2, 2)),
    TELL(setAttributes2OfSelectionOf_("nix", 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0,
                                      0, 0, 0, 0)),
    TELL(
        setDocAttributes_xAxisLength_yAxisLength_tickLength_axisThickness_yAxisPos_xAxisPos_multiDimFit_noLineOnRev_(
            "nix", 1, 1, 1, 1, 1, 1, 0, 0)),
    TELL(
        setAxisOf_axisCode_inc_ticks_prec_log_insideticks_outsideticks_majorgrid_minorgrid_expnumbers_labelAngle_noline_numbersinside_nonumbers_arrow_logticksAt_lognumberAt_reverse_labelDensity_(
            "nix", 1, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0)),
    TELL(setRTFTextOf_to_at_X_at_Y_angle_xFloating_yFloating_("nix", "", 0, 0, 0, 0, 0)),
    TELL(setXTitleOf_to_("nix", "")),
    TELL(setYTitleOf_to_("nix", "")),
    TELL(setRTFxTitleOf_to_("nix", "")),
    TELL(setRTFyTitleOf_to_("nix", "")),
    TELL(setFormulaOf_formulaText_("nix", "x")),
    ASK("\"\"", formulaTextOf_("nix")),
    TELL(readFormulaParameterOf_parameterList_("nix", "a = 1")),
    ASK("\"\"", formulaParameterListOf_("nix")),
    ASK("1 0 nan nan", startFitOf_iterations_lambda_chiq_("nix")),
    TELL(copyPDF_("nix")),
    TELL(copyTIFF_("nix")),
    TELL(savePicturePDF_as_("nix", "/nowhere/file")),
    TELL(savePictureEPS_as_("nix", "/nowhere/file")),
    TELL(savePictureTIFF_as_("nix", "/nowhere/file")),
    TELL(addPDFtoCompositionView_inRect_angle_sheer_("nix", {0, 0, 1, 1}, 0, 0)),
    ASK("0 0 0",
        inventoryOf_sources_tables_columns_justInSelTable_justInSelSource_("nix", false, false)),
};

// Messages to "doc", which has two curves of three points and no selection.
static const Message outOfBounds[] = {
    ASK("nan", YValueOfDoc_atX_indexSerie_("doc", 1, 2)),
    ASK("nan", YValueOfDoc_atX_indexSerie_("doc", 1, -1)),
    ASK("nan", YValueOfDoc_atX_indexSerie_("doc", 1, INT_MAX)),
    ASK("nan", YValueOfDoc_atX_indexSerie_("doc", 1, INT_MIN)),
    ASK("nan", valueOfDoc_atIndex_indexSerie_("doc", 3, 0)),
    ASK("nan", valueOfDoc_atIndex_indexSerie_("doc", -1, 0)),
    ASK("nan", valueOfDoc_atIndex_indexSerie_("doc", INT_MAX, 1)),
    ASK("nan", valueOfDoc_atIndex_indexSerie_("doc", INT_MIN, 1)),
    ASK("-1", indexOfPointOfDoc_atX_indexSerie_("doc", 0, -2)),
    TELL(setValueOfDoc_atIndex_indexSerie_toValue_("doc", 3, 0, 1)),
    TELL(setValueOfDoc_atIndex_indexSerie_toValue_("doc", -1, 0, notANumber)),
    TELL(selectCurvesOf_regexSourceName_table_regexColumn_appendSelection_("doc", "(", -1, "",
                                                                           true)),
    TELL(selectCurvesOf_regexSourceName_table_regexColumn_appendSelection_(
        "doc", "", -1, std::string(1'000'000, '('), true)),
    TELL(
        selectCurvesOf_sourceIndexFirst_sourceIndexLast_tableFirst_tableLast_columnFirst_columnLast_appendSelection_(
            "doc", 1, 2, INT_MIN, INT_MAX, 0, 0, true)),
    TELL(selectCurvesOf_indexFirst_indexLast_appendSelection_("doc", INT_MIN, INT_MAX, true)),
    ASK("-1", indexOfCurveNameOf_regexSource_table_regexColumn_("doc", "*", -1, "")),
    ASK("-1", indexOfCurveNameOf_regexSource_table_regexColumn_(
                  "doc", "", -1, std::string(900, '(') + std::string(900, ')'))),
    TELL(markSelectionAsFitDataOf_("doc")),
    TELL(changeNameOfSelectionOf_to_("doc", "name")),
    TELL(diffOf_("doc")),
    TELL(deleteSelectedCurvesOf_("doc")),
    TELL(swapSelectedCurvesWithXdata_("doc")),
    TELL(createCurveAtSelectionOf_minx_maxx_incx_miny_incy_("doc", 0, 1, 0, 0, 0)),
    TELL(createCurveAtSelectionOf_minx_maxx_incx_miny_incy_("doc", 0, 1, -1, 0, 0)),
    TELL(createCurveAtSelectionOf_minx_maxx_incx_miny_incy_("doc", 0, 1, notANumber, 0, 0)),
    TELL(createCurveAtSelectionOf_minx_maxx_incx_miny_incy_("doc", 0, 1e300, 1, 0, 0)),
    TELL(createCurveAtSelectionOf_minx_maxx_incx_miny_incy_("doc", 0, infinity, 1, 0, 0)),
    TELL(createCurveAtSelectionOf_minx_maxx_incx_miny_incy_("doc", 0, 1e9, 5e-324, 0, 0)),
    TELL(setXRangeOf_xmin_xmax_("doc", -infinity, 1)),
    TELL(setYRangeOf_ymin_ymax_("doc", 1, infinity)),
    TELL(set2XRangeOf_xmin_xmax_("doc", 1, 1)),
    TELL(setFitRangeOf_xmin_xmax_("doc", infinity, notANumber)),
    TELL(setLocalRangeOf_XorYAxis_("doc", false)),
    ASK("\"\"", getVarOf_varName_("doc", "")),
    ASK("\"\"", getVarOf_varName_("doc", std::string(1'000'000, '\n'))),
    TELL(setDeciSeparator_(2)),
    TELL(setDeciSeparator_(-1)),
    TELL(replaceDataformText_of_source_doRangeOverAll_("", "doc", "", true)),
    TELL(replaceDataformText_of_source_doRangeOverAll_("words only\n", "doc", "Data", true)),
    ASK("\"\"", dataOfSelectedCurvesOf_("doc")),
    TELL(copySelectedCurvesOf_includeX_("doc", true)),
    TELL(pasteDataOf_("doc")),
    TELL(saveDocument_to_binary_("doc", "/", false)),
    TELL(modifyDataOf_Ydata_("doc", true)),
    TELL(setAttributesOfSelectionOf_line_stepped_yerr_xerr_dash_fill_topX_rightY_marker_sym_(
        "doc", 1, 1, 1, 1, 1, 1, 1, 1, 1, 1)),
    TELL(setRTFTextOf_to_at_X_at_Y_angle_xFloating_yFloating_("doc", "t", infinity, 0, 0, 0, 0)),
    TELL(setFormulaOf_formulaText_("doc", "")),
    TELL(setFormulaOf_formulaText_("doc", "a * (x")),
    TELL(setFormulaOf_formulaText_("doc", std::string(1'000'000, '('))),
    TELL(readFormulaParameterOf_parameterList_("doc", "nix = 1")),
    ASK("1 0 nan nan", startFitOf_iterations_lambda_chiq_("doc")),
    TELL(
        setAxisOf_axisCode_inc_ticks_prec_log_insideticks_outsideticks_majorgrid_minorgrid_expnumbers_labelAngle_noline_numbersinside_nonumbers_arrow_logticksAt_lognumberAt_reverse_labelDensity_(
            "doc", 5, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0)),
    TELL(
        setDocAttributes_xAxisLength_yAxisLength_tickLength_axisThickness_yAxisPos_xAxisPos_multiDimFit_noLineOnRev_(
            "doc", -infinity, 1, 1, 1, 1, 1, 0, 0)),
    TELL(savePicturePDF_as_("doc", "/")),
    TELL(savePictureEPS_as_("doc", "/nowhere/file")),
    TELL(savePictureTIFF_as_("doc", "")),
    TELL(addPDFtoCompositionView_inRect_angle_sheer_("doc", {0, 0, 1, 1}, 0, 0)),
    TELL(savePDFofCompositionView_openWith_("/nowhere/file", "none")),
    TELL(openFile_file_doRangeOverAll_("doc", "", true)),
    TELL(openFile_file_doRangeOverAll_("doc", "/dev/zero", true)),
    TELL(openFile_file_doRangeOverAll_("doc", std::string(1'000'000, 'n'), true)),
};

class MessagesTest : public ServerTest {
  protected:
    MessagesTest() {
        start();
        plotwerk->newDocumentWithName_("doc");
        plotwerk->replaceDataformText_of_source_doRangeOverAll_("x a b\n0 1 2\n1 3 4\n2 5 6\n",
                                                                "doc", "Data", false);
        EXPECT_EQ(lastError(), "");
    }

    void clearLastError() { plotwerk->actify_("doc"); }
};

TEST_F(MessagesTest, ThatCannotBeDoneAnswerNeutrallyAndChangeNothing) {
    const std::string contents = contentsOf("doc");
    std::vector<Message> messages(std::begin(toNobody), std::end(toNobody));
    messages.insert(messages.end(), std::begin(outOfBounds), std::end(outOfBounds));
    for (const Message &message : messages) {
        clearLastError();
        EXPECT_EQ(message.send(*plotwerk), message.answer) << message.what;
        EXPECT_NE(lastError(), "") << message.what;
        EXPECT_LT(lastError().size(), 4000U) << message.what;
        EXPECT_EQ(lastError().find('\n'), std::string::npos) << message.what;
        ASSERT_EQ(contentsOf("doc"), contents) << message.what;
        EXPECT_EQ(plotwerk->documentNameOfFrontWindow(), "doc") << message.what;
    }
    // The separator is the old one, too.
    plotwerk->replaceDataformText_of_source_doRangeOverAll_("1.5,2.5\n", "doc", "Data", false);
    EXPECT_EQ(plotwerk->YValueOfDoc_atX_indexSerie_("doc", 1.5, 0), 2.5);
}

// A new client asks for the front document before it can ask for lastError.
TEST_F(MessagesTest, LastErrorStaysUntilADocumentIsServed) {
    plotwerk->valueOfDoc_atIndex_indexSerie_("a\nb", 0, 0);
    const std::string line = "valueOfDoc:atIndex:indexSerie: no document \"a\\x0ab\"";
    for (const char *document : {"", "a\nb", "doc"}) {
        plotwerk->documentNameOfFrontWindow();
        plotwerk->waitForEmptyReply();
        plotwerk->didSaveSucceed_("doc");
        plotwerk->getVarOf_varName_("doc", "xmin");
        EXPECT_EQ(plotwerk->getVarOf_varName_(document, "lastError"), line);
    }
    plotwerk->indexOfFitCurveOf_("doc");
    EXPECT_EQ(lastError(), "");

    plotwerk->openFile_file_doRangeOverAll_("", pathOf("none"), false);
    EXPECT_EQ(lastError(), "openFile:file:doRangeOverAll: can't read " + pathOf("none") +
                               ": No such file or directory");
}

TEST_F(MessagesTest, VariablesAreTheLimitsOfTheRanges) {
    plotwerk->setXRangeOf_xmin_xmax_("doc", 0.1, notANumber);
    plotwerk->setFitRangeOf_xmin_xmax_("doc", -1e-300, 1.0 / 3);
    const std::pair<const char *, const char *> cases[] = {
        {"xmin", "0.1"},       {"xmax", "2"},
        {"ymin", "1"},         {"ymax", "6"},
        {"x2min", "NAN"},      {"y2max", "NAN"},
        {"fitmin", "-1e-300"}, {"fitmax", "0.3333333333333333"}};
    for (const auto &[name, value] : cases) {
        EXPECT_EQ(plotwerk->getVarOf_varName_("doc", name), value) << name;
    }
}

TEST_F(MessagesTest, TheClipboardIsPastedAsItWasCopied) {
    plotwerk->replaceDataformText_of_source_doRangeOverAll_("x a\n0.5 1.25\n", "doc", "Data",
                                                            false);
    plotwerk->selectCurvesOf_indexFirst_indexLast_appendSelection_("doc", 0, -1, false);
    plotwerk->copySelectedCurvesOf_includeX_("doc", true);
    plotwerk->setDeciSeparator_(1);
    plotwerk->newDocumentWithName_("other");
    plotwerk->pasteDataOf_("other");
    EXPECT_EQ(plotwerk->YValueOfDoc_atX_indexSerie_("other", 0.5, 0), 1.25);
    EXPECT_EQ(plotwerk->indexOfCurveNameOf_source_table_column_("other", "Clipboard", 1, "a"), 0);

    plotwerk->selectCurvesOf_indexFirst_indexLast_appendSelection_("other", 0, -1, false);
    EXPECT_NE(plotwerk->dataOfSelectedCurvesOf_("other").find("0,5\t1,25"), std::string::npos)
        << "the separator is still the comma";
}

TEST_F(MessagesTest, ADuplicateIsANewDocumentInFront) {
    plotwerk->setXRangeOf_xmin_xmax_("doc", 0.5, 3);
    plotwerk->duplicateAsPlottedOf_("doc");
    EXPECT_EQ(plotwerk->documentNameOfFrontWindow(), "doc copy");
    EXPECT_EQ(plotwerk->valueOfDoc_atIndex_indexSerie_("doc copy", 0, 0), 3);
    plotwerk->closeDocument_askForSave_("doc copy", true);
    EXPECT_TRUE(std::filesystem::exists(stateDirectory / "doc copy.json")) << "never saved";
}

// 64 MB; an eighth of it with the address sanitizer, which copies everything at each reallocation.
#ifndef __has_feature
#define __has_feature(feature) 0
#endif
constexpr int rowsOfLargeText = __has_feature(address_sanitizer) ? 500'000 : 4'000'000;

TEST_F(MessagesTest, LargeTextsArriveAndComeBack) {
    constexpr int rows = rowsOfLargeText;
    constexpr std::string_view row = "1.25 1234567.25\n"; // 16 bytes
    std::string text;
    text.reserve(rows * row.size());
    for (int i = 0; i < rows; ++i) text += row;
    text.replace(text.size() - row.size(), row.size(), "9.75 7654321.25\n");

    plotwerk->replaceDataformText_of_source_doRangeOverAll_(text, "doc", "Data", true);
    EXPECT_EQ(lastError(), "");
    EXPECT_EQ(plotwerk->valueOfDoc_atIndex_indexSerie_("doc", rows - 1, 0), 7654321.25);
    EXPECT_EQ(plotwerk->getXRangeOf_xmin_xmax_("doc"), std::tuple(1.25, 9.75));

    plotwerk->selectCurvesOf_indexFirst_indexLast_appendSelection_("doc", 0, 0, false);
    const std::string back = plotwerk->dataOfSelectedCurvesOf_("doc");
    EXPECT_GE(back.size(), text.size());
    EXPECT_EQ(back.substr(back.rfind('\n', back.size() - 2)), "\n9.75\t7.65432125e+06\n");
}
