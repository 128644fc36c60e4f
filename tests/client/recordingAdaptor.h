// recordingAdaptor.h - the generated adaptor with every message passed on to one function.
#ifndef PLW_TESTS_CLIENT_RECORDINGADAPTOR_H
#define PLW_TESTS_CLIENT_RECORDINGADAPTOR_H

#include "protocol/PlotwerkControlAdaptor.h"
#include "tests/client/recordingService.h"

#include <tuple>

// Notes each message, then answers as scripted.
class RecordingAdaptor final
    : public sdbus::AdaptorInterfaces<org::plotwerk::PlotwerkControl_adaptor> {
  public:
    // The notes go to a file.
    RecordingAdaptor(sdbus::IConnection &bus, const Script &toAnswer, int notesFile);
    ~RecordingAdaptor();

  private:
    using Text = const std::string &;
    using Int = const int32_t &;
    using Real = const double &;
    using Flag = const bool &;
    using Rectangle = const sdbus::Struct<double, double, double, double> &;

    // The message's member name and arguments as a line of the notes.
    void note(const std::string &line) const;
    // The scripted values of this call; an error, the service's end or no answer at all happen
    // here.
    std::vector<std::string> nextAnswer(const std::string &selector);

    template<typename Result, typename... Arguments>
    Result take(const char *member, const Arguments &...arguments);

    std::string documentNameOfFrontWindow() override { return take<std::string>(__func__); }
    void waitForEmptyReply() override { return take<void>(__func__); }
    void actify_(Text a) override { return take<void>(__func__, a); }
    void printDoc_(Text a) override { return take<void>(__func__, a); }
    void closeDocument_askForSave_(Text a, Flag b) override { return take<void>(__func__, a, b); }
    void newDocumentWithName_(Text a) override { return take<void>(__func__, a); }
    void openFile_file_doRangeOverAll_(Text a, Text b, Flag c) override {
        return take<void>(__func__, a, b, c);
    }
    void display_doRangeOverAll_(Text a, Flag b) override { return take<void>(__func__, a, b); }
    void saveDocument_to_binary_(Text a, Text b, Flag c) override {
        return take<void>(__func__, a, b, c);
    }
    void saveDocument_as_binary_(Text a, Text b, Flag c) override {
        return take<void>(__func__, a, b, c);
    }
    bool didSaveSucceed_(Text a) override { return take<bool>(__func__, a); }
    double YValueOfDoc_atX_indexSerie_(Text a, Real b, Int c) override {
        return take<double>(__func__, a, b, c);
    }
    double valueOfDoc_atIndex_indexSerie_(Text a, Int b, Int c) override {
        return take<double>(__func__, a, b, c);
    }
    int indexOfPointOfDoc_atX_indexSerie_(Text a, Real b, Int c) override {
        return take<int>(__func__, a, b, c);
    }
    std::tuple<int, int, double, double>
    indexOfPointOfDoc_atX_atY_curve_index_dataX_dataY_(Text a, Real b, Real c, Int d, Int e, Real f,
                                                       Real g) override {
        return take<std::tuple<int, int, double, double>>(__func__, a, b, c, d, e, f, g);
    }
    void setValueOfDoc_atIndex_indexSerie_toValue_(Text a, Int b, Int c, Real d) override {
        return take<void>(__func__, a, b, c, d);
    }
    int indexOfSelectedCurveOf_(Text a) override { return take<int>(__func__, a); }
    int indexOfFitCurveOf_(Text a) override { return take<int>(__func__, a); }
    std::tuple<double, double, double, double, int>
    mouseEventsShiftKeyDownOf_x1_y1_x2_y2_keyMode_(Text a) override {
        return take<std::tuple<double, double, double, double, int>>(__func__, a);
    }
    void selectCurvesOf_sourceName_table_column_appendSelection_(Text a, Text b, Int c, Text d,
                                                                 Flag e) override {
        return take<void>(__func__, a, b, c, d, e);
    }
    void selectCurvesOf_regexSourceName_table_regexColumn_appendSelection_(Text a, Text b, Int c,
                                                                           Text d,
                                                                           Flag e) override {
        return take<void>(__func__, a, b, c, d, e);
    }
    void
    selectCurvesOf_sourceIndexFirst_sourceIndexLast_tableFirst_tableLast_columnFirst_columnLast_appendSelection_(
        Text a, Int b, Int c, Int d, Int e, Int f, Int g, Flag h) override {
        return take<void>(__func__, a, b, c, d, e, f, g, h);
    }
    void selectCurvesOf_indexFirst_indexLast_appendSelection_(Text a, Int b, Int c,
                                                              Flag d) override {
        return take<void>(__func__, a, b, c, d);
    }
    int indexOfCurveNameOf_source_table_column_(Text a, Text b, Int c, Text d) override {
        return take<int>(__func__, a, b, c, d);
    }
    int indexOfCurveNameOf_regexSource_table_regexColumn_(Text a, Text b, Int c, Text d) override {
        return take<int>(__func__, a, b, c, d);
    }
    std::tuple<std::string, std::string, bool, int, int>
    nameOfNextMarkedCurveOf_name_source_yData_table_index_(Text a) override {
        return take<std::tuple<std::string, std::string, bool, int, int>>(__func__, a);
    }
    int markSelectedCurvesOf_(Text a) override { return take<int>(__func__, a); }
    void markSelectionAsFitDataOf_(Text a) override { return take<void>(__func__, a); }
    std::tuple<std::string, int, double, double, double, double, double>
    statisticOfSelectionOf_name_dataPoints_min_max_sum_std_area_(Text a) override {
        return take<std::tuple<std::string, int, double, double, double, double, double>>(__func__,
                                                                                          a);
    }
    void searchMaximaOfSelectionOf_searchMaxima_searchMinima_minwidth_minheight_(Text a, Flag b,
                                                                                 Flag c, Int d,
                                                                                 Real e) override {
        return take<void>(__func__, a, b, c, d, e);
    }
    void createCurveAtSelectionOf_minx_maxx_incx_miny_incy_(Text a, Real b, Real c, Real d, Real e,
                                                            Real f) override {
        return take<void>(__func__, a, b, c, d, e, f);
    }
    void changeNameOfSelectionOf_to_(Text a, Text b) override { return take<void>(__func__, a, b); }
    void modifyDataOf_Ydata_(Text a, Flag b) override { return take<void>(__func__, a, b); }
    void showCurveOf_(Text a) override { return take<void>(__func__, a); }
    void diffOf_(Text a) override { return take<void>(__func__, a); }
    void deleteSelectedCurvesOf_(Text a) override { return take<void>(__func__, a); }
    void deleteAllCurvesOf_(Text a) override { return take<void>(__func__, a); }
    void sortSelectedCurvesByXdata_(Text a) override { return take<void>(__func__, a); }
    void sortSelectedCurvesBySelection_ascending_(Text a, Flag b) override {
        return take<void>(__func__, a, b);
    }
    void swapSelectedCurvesWithXdata_(Text a) override { return take<void>(__func__, a); }
    void setAttributesOfSelectionOf_line_stepped_yerr_xerr_dash_fill_topX_rightY_marker_sym_(
        Text a, Int b, Int c, Int d, Int e, Int f, Int g, Int h, Int i, Int j, Int k) override {
        return take<void>(__func__, a, b, c, d, e, f, g, h, i, j, k);
    }
    void setAttributes2OfSelectionOf_(Text a, Int b, Real c, Int d, Real e, Int f, Int g, Int h,
                                      Int i, Int j, Real k, Real l, Real m, Real n, Real o, Real p,
                                      Real q, Real r, Real s, Real t, Real u, Real v,
                                      Real w) override {
        return take<void>(__func__, a, b, c, d, e, f, g, h, i, j, k, l, m, n, o, p, q, r, s, t, u,
                          v, w);
    }
    void
    setDocAttributes_xAxisLength_yAxisLength_tickLength_axisThickness_yAxisPos_xAxisPos_multiDimFit_noLineOnRev_(
        Text a, Real b, Real c, Real d, Real e, Real f, Real g, Int h, Int i) override {
        return take<void>(__func__, a, b, c, d, e, f, g, h, i);
    }
    void
    setAxisOf_axisCode_inc_ticks_prec_log_insideticks_outsideticks_majorgrid_minorgrid_expnumbers_labelAngle_noline_numbersinside_nonumbers_arrow_logticksAt_lognumberAt_reverse_labelDensity_(
        Text a, Int b, Real c, Int d, Int e, Int f, Int g, Int h, Int i, Int j, Int k, Real l,
        Int m, Int n, Int o, Int p, Int q, Int r, Int s, Real t) override {
        return take<void>(__func__, a, b, c, d, e, f, g, h, i, j, k, l, m, n, o, p, q, r, s, t);
    }
    void setRTFTextOf_to_at_X_at_Y_angle_xFloating_yFloating_(Text a, Text b, Real c, Real d,
                                                              Real e, Real f, Real g) override {
        return take<void>(__func__, a, b, c, d, e, f, g);
    }
    void setXTitleOf_to_(Text a, Text b) override { return take<void>(__func__, a, b); }
    void setYTitleOf_to_(Text a, Text b) override { return take<void>(__func__, a, b); }
    void setRTFxTitleOf_to_(Text a, Text b) override { return take<void>(__func__, a, b); }
    void setRTFyTitleOf_to_(Text a, Text b) override { return take<void>(__func__, a, b); }
    std::tuple<double, double> getXRangeOf_xmin_xmax_(Text a) override {
        return take<std::tuple<double, double>>(__func__, a);
    }
    std::tuple<double, double> getYRangeOf_ymin_ymax_(Text a) override {
        return take<std::tuple<double, double>>(__func__, a);
    }
    std::tuple<double, double> get2XRangeOf_xmin_xmax_(Text a) override {
        return take<std::tuple<double, double>>(__func__, a);
    }
    std::tuple<double, double> get2YRangeOf_ymin_ymax_(Text a) override {
        return take<std::tuple<double, double>>(__func__, a);
    }
    void setXRangeOf_xmin_xmax_(Text a, Real b, Real c) override {
        return take<void>(__func__, a, b, c);
    }
    void setYRangeOf_ymin_ymax_(Text a, Real b, Real c) override {
        return take<void>(__func__, a, b, c);
    }
    void set2XRangeOf_xmin_xmax_(Text a, Real b, Real c) override {
        return take<void>(__func__, a, b, c);
    }
    void set2YRangeOf_ymin_ymax_(Text a, Real b, Real c) override {
        return take<void>(__func__, a, b, c);
    }
    void setLocalRangeOf_XorYAxis_(Text a, Flag b) override { return take<void>(__func__, a, b); }
    std::tuple<double, double> getFitRangeOf_xmin_xmax_(Text a) override {
        return take<std::tuple<double, double>>(__func__, a);
    }
    void setFitRangeOf_xmin_xmax_(Text a, Real b, Real c) override {
        return take<void>(__func__, a, b, c);
    }
    std::tuple<int, int, double, double> startFitOf_iterations_lambda_chiq_(Text a) override {
        return take<std::tuple<int, int, double, double>>(__func__, a);
    }
    std::string getVarOf_varName_(Text a, Text b) override {
        return take<std::string>(__func__, a, b);
    }
    std::string formulaTextOf_(Text a) override { return take<std::string>(__func__, a); }
    void setFormulaOf_formulaText_(Text a, Text b) override { return take<void>(__func__, a, b); }
    std::string formulaParameterListOf_(Text a) override { return take<std::string>(__func__, a); }
    void readFormulaParameterOf_parameterList_(Text a, Text b) override {
        return take<void>(__func__, a, b);
    }
    void setDeciSeparator_(Int a) override { return take<void>(__func__, a); }
    void replaceDataformText_of_source_doRangeOverAll_(Text a, Text b, Text c, Flag d) override {
        return take<void>(__func__, a, b, c, d);
    }
    void readDataformText_of_source_doRangeOverAll_appendToExistingData_(Text a, Text b, Text c,
                                                                         Flag d, Flag e) override {
        return take<void>(__func__, a, b, c, d, e);
    }
    void appendDataAndDrawInFastMode_of_source_(Text a, Text b, Text c) override {
        return take<void>(__func__, a, b, c);
    }
    std::string dataOfSelectedCurvesOf_(Text a) override { return take<std::string>(__func__, a); }
    void copySelectedCurvesOf_includeX_(Text a, Flag b) override {
        return take<void>(__func__, a, b);
    }
    void pasteDataOf_(Text a) override { return take<void>(__func__, a); }
    void duplicateAsPlottedOf_(Text a) override { return take<void>(__func__, a); }
    std::tuple<int, int, int>
    inventoryOf_sources_tables_columns_justInSelTable_justInSelSource_(Text a, Flag b,
                                                                       Flag c) override {
        return take<std::tuple<int, int, int>>(__func__, a, b, c);
    }
    void copyPDF_(Text a) override { return take<void>(__func__, a); }
    void copyTIFF_(Text a) override { return take<void>(__func__, a); }
    void savePicturePDF_as_(Text a, Text b) override { return take<void>(__func__, a, b); }
    void savePictureEPS_as_(Text a, Text b) override { return take<void>(__func__, a, b); }
    void savePictureTIFF_as_(Text a, Text b) override { return take<void>(__func__, a, b); }
    void newCompositionView_(Rectangle a) override { return take<void>(__func__, a); }
    void addPDFtoCompositionView_inRect_angle_sheer_(Text a, Rectangle b, Real c, Real d) override {
        return take<void>(__func__, a, b, c, d);
    }
    void savePDFofCompositionView_openWith_(Text a, Text b) override {
        return take<void>(__func__, a, b);
    }

    const Script script;
    const int notes;
    std::map<std::string, size_t> calls;
};

#endif
