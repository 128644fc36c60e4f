#include "plotwerk/window/plotMarks.h"

#include <cmath>
#include <numbers>

namespace plotwerk {

// On a white page, whatever the theme of the desktop.
static constexpr Colour accent{0.11, 0.44, 0.85, 1};

static void setColour(const Cairo::RefPtr<Cairo::Context> &cr, double opacity) {
    cr->set_source_rgba(accent.red, accent.green, accent.blue, opacity);
}

// Its edges lie on whole pixels, and are sharp.
static void addBox(const Cairo::RefPtr<Cairo::Context> &cr, const Box &box, const PageView &view) {
    const Point a = view.inWidget({box.left, box.top});
    const Point b = view.inWidget({box.right, box.bottom});
    const double left = std::floor(a.x) + 0.5;
    const double top = std::floor(a.y) + 0.5;
    cr->rectangle(left, top, std::floor(b.x) + 0.5 - left, std::floor(b.y) + 0.5 - top);
}

static void drawBox(const Cairo::RefPtr<Cairo::Context> &cr, const Box &box, const PageView &view,
                    double opacity) {
    addBox(cr, box, view);
    setColour(cr, 0.12 * opacity);
    cr->fill_preserve();
    setColour(cr, 0.9 * opacity);
    cr->stroke();
}

void drawMarks(const Cairo::RefPtr<Cairo::Context> &cr, const PlotMarks &marks,
               const PageView &view) {
    cr->set_line_width(1);
    if (marks.band)
        drawBox(cr, *marks.band, view, 1);
    else if (marks.selection)
        drawBox(cr, *marks.selection, view, 0.6);
    if (marks.nearestPoint) {
        const Point place = view.inWidget(*marks.nearestPoint);
        cr->set_line_width(1.5);
        cr->arc(place.x, place.y, 5, 0, 2 * std::numbers::pi);
        setColour(cr, 1);
        cr->stroke();
    }
}

} // namespace plotwerk
