// Which messages make changes that would have to be saved, and which only look.
#include "tests/plotwerk/server/serverTest.h"

#include <cmath>
#include <functional>

namespace fs = std::filesystem;

class UnsavedChanges : public ServerTest {
  protected:
    // Whether a document that is opened anew has something to keep after the message.
    bool areMadeBy(const std::function<void()> &message) {
        plotwerk->openFile_file_doRangeOverAll_("", pathOf("saved"), true);
        message();
        EXPECT_EQ(lastError(), "");
        fs::remove_all(stateDirectory);
        plotwerk->closeDocument_askForSave_("doc", true);
        return fs::exists(stateDirectory);
    }
};

TEST_F(UnsavedChanges, AreMadeByEveryMessageThatChangesWhatIsKept) {
    start();
    Plotwerk &p = *plotwerk;
    constexpr double nan = std::numeric_limits<double>::quiet_NaN();
    p.newDocumentWithName_("doc");
    p.replaceDataformText_of_source_doRangeOverAll_("x a b\n0 1 5\n1 3 4\n2 5 6\n3 7 4\n", "doc",
                                                    "Data", false);
    p.selectCurvesOf_indexFirst_indexLast_appendSelection_("doc", 0, 0, false);
    p.copySelectedCurvesOf_includeX_("doc", true);
    p.markSelectedCurvesOf_("doc");
    p.setFormulaOf_formulaText_("doc", "a*x+b");
    p.saveDocument_as_binary_("doc", pathOf("saved"), false);
    p.closeDocument_askForSave_("doc", true);

    const std::pair<const char *, std::function<void()>> changes[] = {
        {"display", [&] { p.display_doRangeOverAll_("doc", true); }},
        {"replace",
         [&] { p.replaceDataformText_of_source_doRangeOverAll_("1 2", "doc", "", false); }},
        {"read",
         [&] {
             p.readDataformText_of_source_doRangeOverAll_appendToExistingData_("1 2", "doc", "",
                                                                               false, true);
         }},
        {"append", [&] { p.appendDataAndDrawInFastMode_of_source_("1 2", "doc", "Data"); }},
        {"paste", [&] { p.pasteDataOf_("doc"); }},
        {"point", [&] { p.setValueOfDoc_atIndex_indexSerie_toValue_("doc", 0, 0, 9); }},
        {"mark", [&] { p.markSelectedCurvesOf_("doc"); }},
        {"fit data", [&] { p.markSelectionAsFitDataOf_("doc"); }},
        {"maxima",
         [&] {
             p.searchMaximaOfSelectionOf_searchMaxima_searchMinima_minwidth_minheight_("doc", false,
                                                                                       false, 1, 0);
         }},
        {"create",
         [&] { p.createCurveAtSelectionOf_minx_maxx_incx_miny_incy_("doc", 0, 1, 1, 0, 1); }},
        {"rename", [&] { p.changeNameOfSelectionOf_to_("doc", "n"); }},
        {"modify", [&] { p.modifyDataOf_Ydata_("doc", true); }},
        {"show", [&] { p.showCurveOf_("doc"); }},
        {"differentiate", [&] { p.diffOf_("doc"); }},
        {"delete", [&] { p.deleteSelectedCurvesOf_("doc"); }},
        {"delete all", [&] { p.deleteAllCurvesOf_("doc"); }},
        {"sort by x", [&] { p.sortSelectedCurvesByXdata_("doc"); }},
        {"sort", [&] { p.sortSelectedCurvesBySelection_ascending_("doc", false); }},
        {"swap", [&] { p.swapSelectedCurvesWithXdata_("doc"); }},
        {"look",
         [&] {
             p.setAttributesOfSelectionOf_line_stepped_yerr_xerr_dash_fill_topX_rightY_marker_sym_(
                 "doc", 0, 2, 2, 2, 2, 2, 2, 2, 2, 2);
         }},
        {"look 2",
         [&] {
             p.setAttributes2OfSelectionOf_("doc", 3, nan, -1, nan, -1, -1, -1, -1, -1, nan, nan,
                                            nan, nan, nan, nan, nan, nan, nan, nan, nan, nan, nan);
         }},
        {"frame",
         [&] {
             p.setDocAttributes_xAxisLength_yAxisLength_tickLength_axisThickness_yAxisPos_xAxisPos_multiDimFit_noLineOnRev_(
                 "doc", 5, nan, nan, nan, nan, nan, 2, 2);
         }},
        {"axis",
         [&] {
             p.setAxisOf_axisCode_inc_ticks_prec_log_insideticks_outsideticks_majorgrid_minorgrid_expnumbers_labelAngle_noline_numbersinside_nonumbers_arrow_logticksAt_lognumberAt_reverse_labelDensity_(
                 "doc", 1, nan, 3, -1, 2, 2, 2, 2, 2, 2, nan, 2, 2, 2, 2, -1, -1, 2, nan);
         }},
        {"text",
         [&] {
             p.setRTFTextOf_to_at_X_at_Y_angle_xFloating_yFloating_("doc", "t", 0, 0, 0, 0, 0);
         }},
        {"x title", [&] { p.setXTitleOf_to_("doc", "t"); }},
        {"y title", [&] { p.setYTitleOf_to_("doc", "t"); }},
        {"RTF x title", [&] { p.setRTFxTitleOf_to_("doc", "t"); }},
        {"RTF y title", [&] { p.setRTFyTitleOf_to_("doc", "t"); }},
        {"x range", [&] { p.setXRangeOf_xmin_xmax_("doc", 1, 2); }},
        {"y range", [&] { p.setYRangeOf_ymin_ymax_("doc", 1, 2); }},
        {"upper range", [&] { p.set2XRangeOf_xmin_xmax_("doc", 1, 2); }},
        {"right range", [&] { p.set2YRangeOf_ymin_ymax_("doc", 1, 2); }},
        {"local range", [&] { p.setLocalRangeOf_XorYAxis_("doc", true); }},
        {"fit range", [&] { p.setFitRangeOf_xmin_xmax_("doc", 1, 2); }},
        {"fit", [&] { p.startFitOf_iterations_lambda_chiq_("doc"); }},
        {"formula", [&] { p.setFormulaOf_formulaText_("doc", "c*x"); }},
        {"parameters", [&] { p.readFormulaParameterOf_parameterList_("doc", "a=2"); }}};
    for (const auto &[what, message] : changes) EXPECT_TRUE(areMadeBy(message)) << what;

    const std::pair<const char *, std::function<void()>> looks[] = {
        {"nothing", [] {}},
        {"display", [&] { p.display_doRangeOverAll_("doc", false); }},
        {"select by name",
         [&] {
             p.selectCurvesOf_sourceName_table_column_appendSelection_("doc", "", -1, "b", true);
         }},
        {"select by pattern",
         [&] {
             p.selectCurvesOf_regexSourceName_table_regexColumn_appendSelection_("doc", "", -1, "b",
                                                                                 true);
         }},
        {"select by position",
         [&] {
             p.selectCurvesOf_sourceIndexFirst_sourceIndexLast_tableFirst_tableLast_columnFirst_columnLast_appendSelection_(
                 "doc", 1, 1, 1, 1, 2, 2, true);
         }},
        {"select by index",
         [&] { p.selectCurvesOf_indexFirst_indexLast_appendSelection_("doc", 1, 1, true); }},
        {"next mark", [&] { p.nameOfNextMarkedCurveOf_name_source_yData_table_index_("doc"); }},
        {"save a copy", [&] { p.saveDocument_to_binary_("doc", pathOf("copy"), true); }},
        {"picture", [&] { p.savePicturePDF_as_("doc", pathOf("picture")); }},
        {"value", [&] { p.YValueOfDoc_atX_indexSerie_("doc", 1, 0); }},
        {"statistic",
         [&] { p.statisticOfSelectionOf_name_dataPoints_min_max_sum_std_area_("doc"); }},
        {"saved", [&] {
             p.diffOf_("doc");
             p.saveDocument_as_binary_("doc", pathOf("other"), false);
         }}};
    for (const auto &[what, message] : looks) EXPECT_FALSE(areMadeBy(message)) << what;

    EXPECT_TRUE(areMadeBy([&] {
        p.diffOf_("doc");
        p.saveDocument_to_binary_("doc", pathOf("copy"), false);
        p.selectCurvesOf_indexFirst_indexLast_appendSelection_("doc", 1, 1, true);
    })) << "neither a copy nor a selection makes them saved ones";
}
