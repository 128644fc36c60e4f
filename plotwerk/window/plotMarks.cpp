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

// Shades what the fit leaves out, and gives each edge a grip.
static void drawFitRange(const Cairo::RefPtr<Cairo::Context> &cr, const Box &range,
                         const PageView &view) {
    const Box frame = view.frame.box();
    const Point corner = view.inWidget({frame.left, frame.top});
    const Point opposite = view.inWidget({frame.right, frame.bottom});
    const double left = std::floor(view.inWidget({range.left, 0}).x) + 0.5;
    const double right = std::floor(view.inWidget({range.right, 0}).x) + 0.5;
    const double height = opposite.y - corner.y;
    cr->set_source_rgba(0.5, 0.5, 0.5, 0.12);
    cr->rectangle(corner.x, corner.y, left - corner.x, height);
    cr->rectangle(right, corner.y, opposite.x - right, height);
    cr->fill();
    cr->set_source_rgb(0.15, 0.55, 0.25);
    for (const double x : {left, right}) {
        cr->move_to(x, corner.y);
        cr->line_to(x, opposite.y);
        cr->stroke();
        cr->rectangle(x - 3.5, corner.y + height / 2 - 12, 7, 24);
        cr->fill();
    }
}

void drawMarks(const Cairo::RefPtr<Cairo::Context> &cr, const PlotMarks &marks,
               const PageView &view) {
    cr->set_line_width(1);
    if (marks.fitRange) drawFitRange(cr, *marks.fitRange, view);
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
