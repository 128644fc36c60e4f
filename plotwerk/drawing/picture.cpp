#include "plotwerk/drawing/picture.h"

#include "plotwerk/drawing/axes.h"
#include "plotwerk/drawing/curves.h"
#include "plotwerk/drawing/placedTexts.h"
#include "plotwerk/refusal.h"

#include <cmath>
#include <string>

namespace plotwerk {

static constexpr double margin = 3;      // around what is drawn, in points
static constexpr double farthest = 1500; // from the frame that a picture reaches, in points

static void draw(cairo_t *cr, const Document &document, const PlacedFrame &frame,
                 const std::vector<DrawnCurve> &curves, const Typesetter &typesetter) {
    drawGrid(cr, frame);
    for (const DrawnCurve &curve : curves) drawCurve(cr, curve, frame, document.frame);
    drawAxes(cr, frame);
    drawTitles(cr, frame, curves, typesetter);
    drawTexts(cr, document.texts, frame, typesetter);
}

void requireDrawn(cairo_status_t status) {
    if (status != CAIRO_STATUS_SUCCESS)
        throw Refusal(std::string("the picture can't be drawn: ") + cairo_status_to_string(status));
}

void Picture::drawOn(cairo_t *cr) const {
    cairo_save(cr);
    cairo_translate(cr, -page.left, -page.top);
    cairo_set_source_surface(cr, recording.get(), 0, 0);
    cairo_rectangle(cr, page.left, page.top, page.width(), page.height());
    cairo_fill(cr);
    cairo_restore(cr);
}

Picture pictureOf(const Document &document) {
    const std::vector<DrawnCurve> curves = drawnCurvesOf(document);
    const Typesetter typesetter;
    const PlacedFrame frame = frameOf(document, curves, typesetter);

    Picture picture;
    picture.recording.reset(cairo_recording_surface_create(CAIRO_CONTENT_COLOR_ALPHA, nullptr));
    const Context pen(cairo_create(picture.recording.get()));
    draw(pen.get(), document, frame, curves, typesetter);
    requireDrawn(cairo_status(pen.get()));

    double left = 0;
    double top = 0;
    double width = 0;
    double height = 0;
    cairo_recording_surface_ink_extents(picture.recording.get(), &left, &top, &width, &height);
    const Box reach = frame.box().grownBy(farthest);
    picture.page.left = std::floor(std::max(left, reach.left) - margin);
    picture.page.top = std::floor(std::max(top, reach.top) - margin);
    picture.page.right = std::ceil(std::min(left + width, reach.right) + margin);
    picture.page.bottom = std::ceil(std::min(top + height, reach.bottom) + margin);
    return picture;
}

} // namespace plotwerk
