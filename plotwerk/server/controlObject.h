// controlObject.h - the object that clients send their messages to.
//
// A message that can't be done changes nothing, leaves a line in the log and in lastError (its
// selector, the document's name and the reason), and gets its neutral answer: NaN, -1, 0, empty,
// false. Nothing that a message says ends the server.
#ifndef PLOTWERK_SERVER_CONTROLOBJECT_H
#define PLOTWERK_SERVER_CONTROLOBJECT_H

#include "plotwerk/application/application.h"
#include "plotwerk/base/log.h"
#include "plotwerk/base/refusal.h"
#include "plotwerk/model/change.h"
#include "protocol/PlotwerkControlAdaptor.h"

#include <limits>
#include <string>
#include <type_traits>
#include <utility>

namespace plotwerk {

using Rectangle = sdbus::Struct<double, double, double, double>;

class ControlObject final
    : public sdbus::AdaptorInterfaces<org::plotwerk::PlotwerkControl_adaptor> {
  public:
    // Answers on the bus from here on.
    ControlObject(sdbus::IConnection &bus, const std::string &objectPath, Application &application);
    ~ControlObject();
    ControlObject(const ControlObject &) = delete;
    ControlObject &operator=(const ControlObject &) = delete;

  private:
    static constexpr double nan = std::numeric_limits<double>::quiet_NaN();

    // Does the work of a message. True when it was done; otherwise it has been refused.
    template<class Work> bool attempt(const char *selector, Work work) {
        try {
            log(LogLevel::debug, selector);
            work();
            return true;
        } catch (...) {
            refuse(selector);
            return false;
        }
    }

    // attempt for a message that clears lastError when it was done: all but those that only ask
    // about the application. A client asks for the front document before it can ask for lastError.
    template<class Work> void act(const char *selector, Work work) {
        if (attempt(selector, work)) application.lastError.clear();
    }

    // Work with the document; a reason not to do it is told with the document's name.
    template<class Work> void with(const std::string &name, Work work) {
        Document &document = application.document(name);
        try {
            work(document);
        } catch (const Refusal &refusal) {
            throw Refusal('"' + name + "\": " + refusal.what());
        }
    }

    // Work that asks for a document that it may change counts as a change: see change.h.
    template<class Work> void workOn(const std::string &name, Work work) {
        if constexpr (std::is_invocable_v<Work &, const Document &>)
            with(name, work);
        else
            with(name, [&](Document &document) { change(document, work); });
    }
    template<class Work> void actOn(const char *selector, const std::string &name, Work work) {
        act(selector, [&] { workOn(name, work); });
    }

    // As actOn, of what nobody would save the document for.
    template<class Work> void actOnView(const char *selector, const std::string &name, Work work) {
        act(selector, [&] { with(name, [&](Document &document) { changeView(document, work); }); });
    }

    // The answer that work finds in the document, or the neutral one.
    template<class Answer, class Work>
    Answer answer(const char *selector, const std::string &name, Answer neutral, Work work) {
        actOn(
            selector, name,
            [&](auto &document) -> void requires std::is_invocable_v<Work &, decltype(document)> {
                neutral = work(document);
            });
        return neutral;
    }

    // Logs the exception that is being handled, and keeps its line as lastError.
    void refuse(const char *selector) noexcept;

    // documentMessages.cpp
    std::string documentNameOfFrontWindow() override;
    void waitForEmptyReply() override;
    void actify_(const std::string &) override;
    void printDoc_(const std::string &) override;
    void closeDocument_askForSave_(const std::string &, const bool &) override;
    void newDocumentWithName_(const std::string &) override;
    void openFile_file_doRangeOverAll_(const std::string &, const std::string &,
                                       const bool &) override;
    void display_doRangeOverAll_(const std::string &, const bool &) override;
    void saveDocument_to_binary_(const std::string &, const std::string &, const bool &) override;
    void saveDocument_as_binary_(const std::string &, const std::string &, const bool &) override;
    bool didSaveSucceed_(const std::string &) override;

    // pointMessages.cpp
    double YValueOfDoc_atX_indexSerie_(const std::string &, const double &,
                                       const int32_t &) override;
    double valueOfDoc_atIndex_indexSerie_(const std::string &, const int32_t &,
                                          const int32_t &) override;
    int32_t indexOfPointOfDoc_atX_indexSerie_(const std::string &, const double &,
                                              const int32_t &) override;
    std::tuple<int32_t, int32_t, double, double> indexOfPointOfDoc_atX_atY_curve_index_dataX_dataY_(
        const std::string &, const double &, const double &, const int32_t &, const int32_t &,
        const double &, const double &) override;
    void setValueOfDoc_atIndex_indexSerie_toValue_(const std::string &, const int32_t &,
                                                   const int32_t &, const double &) override;
    int32_t indexOfSelectedCurveOf_(const std::string &) override;
    int32_t indexOfFitCurveOf_(const std::string &) override;
    std::tuple<double, double, double, double, int32_t>
    mouseEventsShiftKeyDownOf_x1_y1_x2_y2_keyMode_(const std::string &) override;

    // selectionMessages.cpp
    void selectCurvesOf_sourceName_table_column_appendSelection_(const std::string &,
                                                                 const std::string &,
                                                                 const int32_t &,
                                                                 const std::string &,
                                                                 const bool &) override;
    void selectCurvesOf_regexSourceName_table_regexColumn_appendSelection_(const std::string &,
                                                                           const std::string &,
                                                                           const int32_t &,
                                                                           const std::string &,
                                                                           const bool &) override;
    void
    selectCurvesOf_sourceIndexFirst_sourceIndexLast_tableFirst_tableLast_columnFirst_columnLast_appendSelection_(
        const std::string &, const int32_t &, const int32_t &, const int32_t &, const int32_t &,
        const int32_t &, const int32_t &, const bool &) override;
    void selectCurvesOf_indexFirst_indexLast_appendSelection_(const std::string &, const int32_t &,
                                                              const int32_t &,
                                                              const bool &) override;
    int32_t indexOfCurveNameOf_source_table_column_(const std::string &, const std::string &,
                                                    const int32_t &, const std::string &) override;
    int32_t indexOfCurveNameOf_regexSource_table_regexColumn_(const std::string &,
                                                              const std::string &, const int32_t &,
                                                              const std::string &) override;
    std::tuple<std::string, std::string, bool, int32_t, int32_t>
    nameOfNextMarkedCurveOf_name_source_yData_table_index_(const std::string &) override;
    int32_t markSelectedCurvesOf_(const std::string &) override;
    void markSelectionAsFitDataOf_(const std::string &) override;

    // editingMessages.cpp
    std::tuple<std::string, int32_t, double, double, double, double, double>
    statisticOfSelectionOf_name_dataPoints_min_max_sum_std_area_(const std::string &) override;
    void searchMaximaOfSelectionOf_searchMaxima_searchMinima_minwidth_minheight_(
        const std::string &, const bool &, const bool &, const int32_t &, const double &) override;
    void createCurveAtSelectionOf_minx_maxx_incx_miny_incy_(const std::string &, const double &,
                                                            const double &, const double &,
                                                            const double &,
                                                            const double &) override;
    void changeNameOfSelectionOf_to_(const std::string &, const std::string &) override;
    void modifyDataOf_Ydata_(const std::string &, const bool &) override;
    void showCurveOf_(const std::string &) override;
    void diffOf_(const std::string &) override;
    void deleteSelectedCurvesOf_(const std::string &) override;
    void deleteAllCurvesOf_(const std::string &) override;
    void sortSelectedCurvesByXdata_(const std::string &) override;
    void sortSelectedCurvesBySelection_ascending_(const std::string &, const bool &) override;
    void swapSelectedCurvesWithXdata_(const std::string &) override;

    // attributeMessages.cpp
    void setAttributesOfSelectionOf_line_stepped_yerr_xerr_dash_fill_topX_rightY_marker_sym_(
        const std::string &, const int32_t &, const int32_t &, const int32_t &, const int32_t &,
        const int32_t &, const int32_t &, const int32_t &, const int32_t &, const int32_t &,
        const int32_t &) override;
    void setAttributes2OfSelectionOf_(const std::string &, const int32_t &, const double &,
                                      const int32_t &, const double &, const int32_t &,
                                      const int32_t &, const int32_t &, const int32_t &,
                                      const int32_t &, const double &, const double &,
                                      const double &, const double &, const double &,
                                      const double &, const double &, const double &,
                                      const double &, const double &, const double &,
                                      const double &, const double &) override;
    void
    setDocAttributes_xAxisLength_yAxisLength_tickLength_axisThickness_yAxisPos_xAxisPos_multiDimFit_noLineOnRev_(
        const std::string &, const double &, const double &, const double &, const double &,
        const double &, const double &, const int32_t &, const int32_t &) override;
    void
    setAxisOf_axisCode_inc_ticks_prec_log_insideticks_outsideticks_majorgrid_minorgrid_expnumbers_labelAngle_noline_numbersinside_nonumbers_arrow_logticksAt_lognumberAt_reverse_labelDensity_(
        const std::string &, const int32_t &, const double &, const int32_t &, const int32_t &,
        const int32_t &, const int32_t &, const int32_t &, const int32_t &, const int32_t &,
        const int32_t &, const double &, const int32_t &, const int32_t &, const int32_t &,
        const int32_t &, const int32_t &, const int32_t &, const int32_t &,
        const double &) override;
    void setRTFTextOf_to_at_X_at_Y_angle_xFloating_yFloating_(const std::string &,
                                                              const std::string &, const double &,
                                                              const double &, const double &,
                                                              const double &,
                                                              const double &) override;
    void setXTitleOf_to_(const std::string &, const std::string &) override;
    void setYTitleOf_to_(const std::string &, const std::string &) override;
    void setRTFxTitleOf_to_(const std::string &, const std::string &) override;
    void setRTFyTitleOf_to_(const std::string &, const std::string &) override;

    // rangeMessages.cpp
    std::tuple<double, double> getXRangeOf_xmin_xmax_(const std::string &) override;
    std::tuple<double, double> getYRangeOf_ymin_ymax_(const std::string &) override;
    std::tuple<double, double> get2XRangeOf_xmin_xmax_(const std::string &) override;
    std::tuple<double, double> get2YRangeOf_ymin_ymax_(const std::string &) override;
    void setXRangeOf_xmin_xmax_(const std::string &, const double &, const double &) override;
    void setYRangeOf_ymin_ymax_(const std::string &, const double &, const double &) override;
    void set2XRangeOf_xmin_xmax_(const std::string &, const double &, const double &) override;
    void set2YRangeOf_ymin_ymax_(const std::string &, const double &, const double &) override;
    void setLocalRangeOf_XorYAxis_(const std::string &, const bool &) override;
    std::tuple<double, double> getFitRangeOf_xmin_xmax_(const std::string &) override;
    void setFitRangeOf_xmin_xmax_(const std::string &, const double &, const double &) override;

    // fitMessages.cpp
    std::tuple<int32_t, int32_t, double, double>
    startFitOf_iterations_lambda_chiq_(const std::string &) override;
    std::string getVarOf_varName_(const std::string &, const std::string &) override;
    std::string formulaTextOf_(const std::string &) override;
    void setFormulaOf_formulaText_(const std::string &, const std::string &) override;
    std::string formulaParameterListOf_(const std::string &) override;
    void readFormulaParameterOf_parameterList_(const std::string &, const std::string &) override;

    // dataMessages.cpp
    void setDeciSeparator_(const int32_t &) override;
    void replaceDataformText_of_source_doRangeOverAll_(const std::string &, const std::string &,
                                                       const std::string &, const bool &) override;
    void readDataformText_of_source_doRangeOverAll_appendToExistingData_(const std::string &,
                                                                         const std::string &,
                                                                         const std::string &,
                                                                         const bool &,
                                                                         const bool &) override;
    void appendDataAndDrawInFastMode_of_source_(const std::string &, const std::string &,
                                                const std::string &) override;
    std::string dataOfSelectedCurvesOf_(const std::string &) override;
    void copySelectedCurvesOf_includeX_(const std::string &, const bool &) override;
    void pasteDataOf_(const std::string &) override;
    void duplicateAsPlottedOf_(const std::string &) override;
    std::tuple<int32_t, int32_t, int32_t>
    inventoryOf_sources_tables_columns_justInSelTable_justInSelSource_(const std::string &,
                                                                       const bool &,
                                                                       const bool &) override;

    // pictureMessages.cpp
    void copyPDF_(const std::string &) override;
    void copyTIFF_(const std::string &) override;
    void savePicturePDF_as_(const std::string &, const std::string &) override;
    void savePictureEPS_as_(const std::string &, const std::string &) override;
    void savePictureTIFF_as_(const std::string &, const std::string &) override;
    void newCompositionView_(const Rectangle &) override;
    void addPDFtoCompositionView_inRect_angle_sheer_(const std::string &, const Rectangle &,
                                                     const double &, const double &) override;
    void savePDFofCompositionView_openWith_(const std::string &, const std::string &) override;

    Application &application;
};

} // namespace plotwerk

#endif
