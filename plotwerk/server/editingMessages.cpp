// The messages that work on the selected curves.
#include "plotwerk/fit/modifyByFormula.h"
#include "plotwerk/model/editing.h"
#include "plotwerk/model/statistic.h"
#include "plotwerk/server/controlObject.h"

namespace plotwerk {

std::tuple<std::string, std::int32_t, double, double, double, double, double>
ControlObject::statisticOfSelectionOf_name_dataPoints_min_max_sum_std_area_(
    const std::string &name) {
    using Answer = std::tuple<std::string, std::int32_t, double, double, double, double, double>;
    return answer(name, Answer{"", 0, nan, nan, nan, nan, nan},
                  [](const Document &document) -> Answer {
                      const Statistic of = statisticOfSelection(document);
                      return {of.name, of.points, of.min, of.max, of.sum, of.deviation, of.area};
                  });
}

void ControlObject::searchMaximaOfSelectionOf_searchMaxima_searchMinima_minwidth_minheight_(
    const std::string &name, const bool &maxima, const bool &minima, const std::int32_t &minWidth,
    const double &minHeight) {
    actOn(name, [&](Document &document) {
        searchExtremes(document, maxima, minima, minWidth, minHeight);
    });
}

void ControlObject::createCurveAtSelectionOf_minx_maxx_incx_miny_incy_(
    const std::string &name, const double &minX, const double &maxX, const double &incX,
    const double &minY, const double &incY) {
    actOn(name, [&](Document &document) { createCurve(document, minX, maxX, incX, minY, incY); });
}

void ControlObject::changeNameOfSelectionOf_to_(const std::string &name, const std::string &to) {
    actOn(name, [&](Document &document) { renameSelection(document, to); });
}

void ControlObject::modifyDataOf_Ydata_(const std::string &name, const bool &yData) {
    actOn(name, [&](Document &document) { modifySelection(document, yData); });
}

void ControlObject::showCurveOf_(const std::string &name) {
    actOn(name, showSelection);
}

void ControlObject::diffOf_(const std::string &name) {
    actOn(name, differentiateSelection);
}

void ControlObject::deleteSelectedCurvesOf_(const std::string &name) {
    actOn(name, deleteSelection);
}

void ControlObject::deleteAllCurvesOf_(const std::string &name) {
    actOn(name, deleteAllCurves);
}

void ControlObject::sortSelectedCurvesByXdata_(const std::string &name) {
    actOn(name, sortByX);
}

void ControlObject::sortSelectedCurvesBySelection_ascending_(const std::string &name,
                                                             const bool &ascending) {
    actOn(name, [&](Document &document) { sortBySelection(document, ascending); });
}

void ControlObject::swapSelectedCurvesWithXdata_(const std::string &name) {
    actOn(name, swapSelectionWithX);
}

} // namespace plotwerk
