// The messages about the ranges of the axes and of the fit.
#include "plotwerk/model/ranges.h"
#include "plotwerk/server/controlObject.h"

namespace plotwerk {

using Limits = std::tuple<double, double>;

static constexpr Limits none{unset, unset};

template<AxisCode axis> static Limits limitsOf(const Document &document) {
    const Range range = rangeOf(document, axis);
    return {range.min, range.max};
}

Limits ControlObject::getXRangeOf_xmin_xmax_(const std::string &name) {
    return answer(name, none, limitsOf<xAxis>);
}

Limits ControlObject::getYRangeOf_ymin_ymax_(const std::string &name) {
    return answer(name, none, limitsOf<yAxis>);
}

Limits ControlObject::get2XRangeOf_xmin_xmax_(const std::string &name) {
    return answer(name, none, limitsOf<upperXAxis>);
}

Limits ControlObject::get2YRangeOf_ymin_ymax_(const std::string &name) {
    return answer(name, none, limitsOf<rightYAxis>);
}

void ControlObject::setXRangeOf_xmin_xmax_(const std::string &name, const double &min,
                                           const double &max) {
    actOn(name, [&](Document &document) { setRange(document, xAxis, min, max); });
}

void ControlObject::setYRangeOf_ymin_ymax_(const std::string &name, const double &min,
                                           const double &max) {
    actOn(name, [&](Document &document) { setRange(document, yAxis, min, max); });
}

void ControlObject::set2XRangeOf_xmin_xmax_(const std::string &name, const double &min,
                                            const double &max) {
    actOn(name, [&](Document &document) { setRange(document, upperXAxis, min, max); });
}

void ControlObject::set2YRangeOf_ymin_ymax_(const std::string &name, const double &min,
                                            const double &max) {
    actOn(name, [&](Document &document) { setRange(document, rightYAxis, min, max); });
}

// yes is the x axis, as the keyword puts it first.
void ControlObject::setLocalRangeOf_XorYAxis_(const std::string &name, const bool &xDirection) {
    actOn(name, [&](Document &document) { setLocalRange(document, xDirection); });
}

Limits ControlObject::getFitRangeOf_xmin_xmax_(const std::string &name) {
    return answer(name, none, [](const Document &document) -> Limits {
        const Range range = fitRangeOf(document);
        return {range.min, range.max};
    });
}

void ControlObject::setFitRangeOf_xmin_xmax_(const std::string &name, const double &min,
                                             const double &max) {
    actOn(name, [&](Document &document) { setFitRange(document, min, max); });
}

} // namespace plotwerk
