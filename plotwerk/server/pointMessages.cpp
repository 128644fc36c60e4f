// The messages about single points, and the curves that are selected and to be fitted.
#include "plotwerk/drawing/hitTest.h"
#include "plotwerk/model/points.h"
#include "plotwerk/model/selection.h"
#include "plotwerk/server/controlObject.h"

namespace plotwerk {

double ControlObject::YValueOfDoc_atX_indexSerie_(const std::string &name, const double &x,
                                                  const std::int32_t &series) {
    return answer(name, nan,
                  [&](const Document &document) { return valueAtX(document, x, series); });
}

double ControlObject::valueOfDoc_atIndex_indexSerie_(const std::string &name,
                                                     const std::int32_t &index,
                                                     const std::int32_t &series) {
    return answer(name, nan,
                  [&](const Document &document) { return valueAtIndex(document, index, series); });
}

std::int32_t ControlObject::indexOfPointOfDoc_atX_indexSerie_(const std::string &name,
                                                              const double &x,
                                                              const std::int32_t &series) {
    return answer(name, -1,
                  [&](const Document &document) { return indexAtX(document, x, series); });
}

std::tuple<std::int32_t, std::int32_t, double, double>
ControlObject::indexOfPointOfDoc_atX_atY_curve_index_dataX_dataY_(const std::string &name,
                                                                  const double &x, const double &y,
                                                                  const std::int32_t &,
                                                                  const std::int32_t &,
                                                                  const double &, const double &) {
    const NearestPoint point = answer(name, NearestPoint{}, [&](const Document &document) {
        return nearestPoint(document, x, y).value_or(NearestPoint{});
    });
    return {point.curve, point.index, point.x, point.y};
}

void ControlObject::setValueOfDoc_atIndex_indexSerie_toValue_(const std::string &name,
                                                              const std::int32_t &index,
                                                              const std::int32_t &series,
                                                              const double &value) {
    actOn(name, [&](Document &document) { setValueAtIndex(document, index, series, value); });
}

std::int32_t ControlObject::indexOfSelectedCurveOf_(const std::string &name) {
    return answer(name, -1, indexOfSelectedCurve);
}

std::int32_t ControlObject::indexOfFitCurveOf_(const std::string &name) {
    return answer(name, -1, indexOfFitCurve);
}

std::tuple<double, double, double, double, std::int32_t>
ControlObject::mouseEventsShiftKeyDownOf_x1_y1_x2_y2_keyMode_(const std::string &name) {
    const MouseSelection mouse = answer(name, MouseSelection{}, [&](const Document &document) {
        return application.mouseSelection(document);
    });
    return {mouse.x1, mouse.y1, mouse.x2, mouse.y2, mouse.keys};
}

} // namespace plotwerk
