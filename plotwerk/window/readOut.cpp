#include "plotwerk/window/readOut.h"

#include "plotwerk/model/curves.h"
#include "plotwerk/window/viewRanges.h"

#include <charconv>
#include <cmath>
#include <glibmm.h>

namespace plotwerk {

// The shortest text that reads as the value.
static std::string shortest(double value) {
    char text[40];
    const auto end = std::to_chars(text, text + sizeof text, value).ptr;
    return {text, end};
}

// The value of an axis at a place on paper.
static std::string valueAt(const PageView &view, AxisCode axis, const Point &place) {
    const Scale &scale = view.frame.scales[axis];
    const double position = isHorizontal(axis) ? place.x : view.frame.height - place.y;
    const double value = scale.value(position);
    return shortest(roundedTo(value, scale.value(position + 1 / view.scale) - value));
}

static Glib::ustring placeText(const PageView &view, const Point &place) {
    const auto value = [&](AxisCode axis) { return valueAt(view, axis, place); };
    const bool upper = view.frame.own[upperXAxis] && view.frame.own[xAxis];
    const bool right = view.frame.own[rightYAxis] && view.frame.own[yAxis];
    Glib::ustring text = Glib::ustring::sprintf("x = %s   y = %s", value(xAxis), value(yAxis));
    if (upper) text += Glib::ustring::sprintf("   upper x = %s", value(upperXAxis));
    if (right) text += Glib::ustring::sprintf("   right y = %s", value(rightYAxis));
    return text;
}

ReadOut readOutAt(const Document &document, const PageView &view, const Point &place,
                  const std::optional<NearestPoint> &nearest) {
    ReadOut readOut{placeText(view, place), ""};
    if (!nearest) return readOut;
    if (const auto curve = curveAt(document, nearest->curve)) {
        readOut.point =
            Glib::ustring::sprintf("%s   point %d: %s, %s", columnOf(document, *curve).name,
                                   nearest->index, shortest(nearest->x), shortest(nearest->y));
    }
    return readOut;
}

std::string ReadOut::text() const {
    return point.empty() ? place : place + '\t' + point;
}

} // namespace plotwerk
